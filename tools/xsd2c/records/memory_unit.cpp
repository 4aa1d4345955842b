#include "xsd2c/records/memory_unit.h"

namespace xsd2c {

std::uint32_t registerRecords(const Records &records, SchemaRoot &root) {
    std::uint32_t result = 0;
    for (const TopObject &top : records.top) {
        if (top.isRegistered()) result += Schema_RegTopObject(&root, &top.object);
    }
    return result;
}

void deregisterRecords(const Records &records, SchemaRoot &root) {
    for (const TopObject &top : records.top) {
        if (top.isRegistered()) Schema_DeregTopObject(&root, &top.object);
    }
}

}  // namespace xsd2c
