#include <libxml/parser.h>
#include <libxml/xmlschemas.h>

#include "loader.h"

namespace bench {
namespace {

void ignore(void *, const char *, ...) {}

bool load(const std::string &schemaFile) {
    xmlSchemaParserCtxtPtr context = xmlSchemaNewParserCtxt(schemaFile.c_str());
    xmlSchemaSetParserErrors(context, ignore, ignore, nullptr);
    xmlSchemaPtr schema = xmlSchemaParse(context);
    xmlSchemaFreeParserCtxt(context);
    const bool done = schema != nullptr;
    xmlSchemaFree(schema);
    return done;
}

}  // namespace

const Loader kLibxml2Loader = {"libxml2", LIBXML_DOTTED_VERSION, load};

}  // namespace bench
