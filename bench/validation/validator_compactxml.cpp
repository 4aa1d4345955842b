#include "compactxml.h"
#include "ports_schema.h"
#include "validator.h"

namespace bench {
namespace {

SchemaRoot schemas;

void prepare(const std::string &) {
    Schema_InitRoot(&schemas);
    Schema_RegTopObject(&schemas, &portsSchema());
}

void *build(std::string_view document) {
    return XML_DOM_BuildTreeByMem(document.data(), static_cast<std::uint32_t>(document.size()), 0,
                                  nullptr);
}

bool validate(void *tree) {
    SchemaErrorInfo error;
    return Schema_ValidateXml(static_cast<XML_DOM_Node *>(tree), &schemas, &error) == XML_OK &&
           error.code == 0;
}

void destroy(void *tree) {
    XML_DOM_DelNode(static_cast<XML_DOM_Node *>(tree));
}

bool readAndValidate(std::string_view document) {
    void *tree = build(document);
    const bool valid = tree && validate(tree);
    destroy(tree);
    return valid;
}

}  // namespace

const Validator kCompactXmlValidator = {"compactxml", "this library", prepare,        build,
                                        validate,     destroy,        readAndValidate};

}  // namespace bench
