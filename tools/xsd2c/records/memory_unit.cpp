#include "xsd2c/records/memory_unit.h"

namespace xsd2c {
namespace {

// Model groups stand in content models alone.
bool isRegistered(const TopObject &top) {
    return top.object.kind != SCHEMA_KIND_MODEL_GROUP;
}

}  // namespace

std::uint32_t registerRecords(const Records &records, SchemaRoot &root) {
    std::uint32_t result = 0;
    for (const TopObject &top : records.top) {
        if (isRegistered(top)) result += Schema_RegTopObject(&root, &top.object);
    }
    return result;
}

void deregisterRecords(const Records &records, SchemaRoot &root) {
    for (const TopObject &top : records.top) {
        if (isRegistered(top)) Schema_DeregTopObject(&root, &top.object);
    }
}

}  // namespace xsd2c
