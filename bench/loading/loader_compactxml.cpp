#include "compactxml.h"
#include "loader.h"
#include "switch.h"
#include "xsd2c/records/compile.h"
#include "xsd2c/records/memory_unit.h"
#include "xsd2c/xsd/read_schema.h"

namespace bench {
namespace {

bool compile(const std::string &schemaFile) {
    xsd2c::Diagnostics diagnostics;
    xsd2c::Components components;
    xsd2c::Records records;
    xsd2c::readSchema(schemaFile, components, diagnostics);
    if (diagnostics.failed()) return false;
    xsd2c::compileSchema(components, records, diagnostics);
    if (diagnostics.failed()) return false;
    SchemaRoot root;
    Schema_InitRoot(&root);
    const bool done = xsd2c::registerRecords(records, root) == XML_OK;
    xsd2c::deregisterRecords(records, root);
    Schema_ExitRoot(&root);
    return done;
}

bool registerUnit(const std::string &) {
    SchemaRoot root;
    Schema_InitRoot(&root);
    const bool done = SchemaReg_switch(&root) == XML_OK;
    SchemaDereg_switch(&root);
    Schema_ExitRoot(&root);
    return done;
}

}  // namespace

const Loader kCompilingLoader = {"compactxml", "this library, compiling in memory", compile};
const Loader kRegisteringLoader = {"compactxml-unit", "this library, compiled before",
                                   registerUnit};

}  // namespace bench
