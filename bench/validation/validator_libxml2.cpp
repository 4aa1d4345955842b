#include <libxml/parser.h>
#include <libxml/xmlschemas.h>

#include <cstdio>
#include <cstdlib>

#include "validator.h"

namespace bench {
namespace {

xmlSchemaPtr schema;

void ignore(void *, const char *, ...) {}

void prepare(const std::string &schemaFile) {
    xmlSchemaParserCtxtPtr context = xmlSchemaNewParserCtxt(schemaFile.c_str());
    schema = context ? xmlSchemaParse(context) : nullptr;
    xmlSchemaFreeParserCtxt(context);
    if (schema) return;
    std::fprintf(stderr, "libxml2 does not read %s\n", schemaFile.c_str());
    std::exit(1);
}

void *build(std::string_view document) {
    constexpr int kOptions = XML_PARSE_NONET | XML_PARSE_HUGE | XML_PARSE_COMPACT |
                             XML_PARSE_NOBLANKS | XML_PARSE_NOERROR | XML_PARSE_NOWARNING;
    return xmlReadMemory(document.data(), static_cast<int>(document.size()), nullptr, nullptr,
                         kOptions);
}

bool validate(void *tree) {
    xmlSchemaValidCtxtPtr context = xmlSchemaNewValidCtxt(schema);
    xmlSchemaSetValidErrors(context, ignore, ignore, nullptr);
    const bool valid = xmlSchemaValidateDoc(context, static_cast<xmlDocPtr>(tree)) == 0;
    xmlSchemaFreeValidCtxt(context);
    return valid;
}

void destroy(void *tree) {
    xmlFreeDoc(static_cast<xmlDocPtr>(tree));
}

bool readAndValidate(std::string_view document) {
    void *tree = build(document);
    const bool valid = tree && validate(tree);
    destroy(tree);
    return valid;
}

}  // namespace

const Validator kLibxml2Validator = {"libxml2", LIBXML_DOTTED_VERSION, prepare, build, validate,
                                     destroy,   readAndValidate};

}  // namespace bench
