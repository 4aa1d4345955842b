// This library: the tree of the document, and the records that xsd2c made of the schema.
#include "compactxml.h"
#include "validator.h"

namespace bench {
namespace {

class CompactXmlValidator final : public Validator {
  public:
    explicit CompactXmlValidator(const Schema &schema) : schema_(schema) {
        Schema_InitRoot(&root_);
        ready_ = schema.registerUnit(&root_) == XML_OK;
    }
    ~CompactXmlValidator() override {
        XML_DOM_DelNode(tree_);
        schema_.deregisterUnit(&root_);
        Schema_ExitRoot(&root_);
    }
    bool ready() const { return ready_; }

    bool readAndValidate(std::string_view document) override {
        XML_DOM_Node *tree = build(document);
        const bool valid = tree && validate(tree);
        XML_DOM_DelNode(tree);
        return valid;
    }
    bool keepTree(std::string_view document) override {
        XML_DOM_DelNode(tree_);
        tree_ = build(document);
        return tree_ != nullptr;
    }
    bool validateTree() override { return validate(tree_); }

  private:
    static XML_DOM_Node *build(std::string_view document) {
        return XML_DOM_BuildTreeByMem(document.data(), static_cast<std::uint32_t>(document.size()),
                                      0, nullptr);
    }
    bool validate(XML_DOM_Node *tree) const {
        SchemaErrorInfo error;
        return Schema_ValidateXml(tree, &root_, &error) == XML_OK && error.code == 0;
    }

    const Schema &schema_;
    SchemaRoot root_;
    XML_DOM_Node *tree_ = nullptr;
    bool ready_;
};

std::unique_ptr<Validator> make(const Schema &schema) {
    auto validator = std::make_unique<CompactXmlValidator>(schema);
    if (!validator->ready()) return nullptr;
    return validator;
}

}  // namespace

const ValidatorKind kCompactXmlValidator = {"compactxml", "compactxml", make};

}  // namespace bench
