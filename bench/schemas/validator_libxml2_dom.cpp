// libxml2: its tree, and the validation of a tree.
#include "libxml2_schema.h"
#include "validator.h"

namespace bench {
namespace {

class Libxml2DomValidator final : public Validator {
  public:
    explicit Libxml2DomValidator(const Schema &schema) : schema_(schema.file) {}
    ~Libxml2DomValidator() override { xmlFreeDoc(tree_); }
    bool ready() const { return schema_.context() != nullptr; }

    bool readAndValidate(std::string_view document) override {
        xmlDocPtr tree = readLibxml2Tree(document);
        const bool valid = tree && validate(tree);
        xmlFreeDoc(tree);
        return valid;
    }
    bool keepTree(std::string_view document) override {
        xmlFreeDoc(tree_);
        tree_ = readLibxml2Tree(document);
        return tree_ != nullptr;
    }
    bool validateTree() override { return validate(tree_); }

  private:
    bool validate(xmlDocPtr tree) { return xmlSchemaValidateDoc(schema_.context(), tree) == 0; }

    Libxml2Schema schema_;
    xmlDocPtr tree_ = nullptr;
};

std::unique_ptr<Validator> make(const Schema &schema) {
    auto validator = std::make_unique<Libxml2DomValidator>(schema);
    if (!validator->ready()) return nullptr;
    return validator;
}

}  // namespace

const ValidatorKind kLibxml2DomValidator = {"libxml2-dom", "libxml2", make};

}  // namespace bench
