// tools/xsd2c/records/memory_unit.h - the back end that registers records as they lie in memory.
#pragma once

#include "compactxml.h"
#include "xsd2c/records/records.h"

namespace xsd2c {

// What SchemaReg_ and SchemaDereg_ of a compiled unit do: 0 when all objects were registered, in
// document order. The records must outlive their registration.
std::uint32_t registerRecords(const Records &records, SchemaRoot &root);
void deregisterRecords(const Records &records, SchemaRoot &root);

}  // namespace xsd2c
