#include "libxml2_schema.h"

#include <libxml/parser.h>

namespace bench {
namespace {

void ignore(void *, const char *, ...) {}

xmlSchemaPtr readSchema(const char *file) {
    xmlSchemaParserCtxtPtr parser = xmlSchemaNewParserCtxt(file);
    if (!parser) return nullptr;
    xmlSchemaSetParserErrors(parser, ignore, ignore, nullptr);
    xmlSchemaPtr schema = xmlSchemaParse(parser);
    xmlSchemaFreeParserCtxt(parser);
    return schema;
}

}  // namespace

Libxml2Schema::Libxml2Schema(const char *file)
    : schema_(readSchema(file)), context_(schema_ ? xmlSchemaNewValidCtxt(schema_) : nullptr) {
    if (context_) xmlSchemaSetValidErrors(context_, ignore, ignore, nullptr);
}

Libxml2Schema::~Libxml2Schema() {
    xmlSchemaFreeValidCtxt(context_);
    xmlSchemaFree(schema_);
}

xmlDocPtr readLibxml2Tree(std::string_view document) {
    constexpr int kOptions = XML_PARSE_NONET | XML_PARSE_HUGE | XML_PARSE_COMPACT |
                             XML_PARSE_NOBLANKS | XML_PARSE_NOERROR | XML_PARSE_NOWARNING;
    return xmlReadMemory(document.data(), static_cast<int>(document.size()), nullptr, nullptr,
                         kOptions);
}

}  // namespace bench
