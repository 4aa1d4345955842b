// schema.h - the schemas by which documents are validated: as a file, and compiled by xsd2c.
#pragma once

#include <cstdint>
#include <string_view>

#include "compactxml.h"

namespace bench {

struct Schema {
    std::string_view name;
    const char *file;
    std::uint32_t (*registerUnit)(SchemaRoot *root);
    std::uint32_t (*deregisterUnit)(SchemaRoot *root);
};

extern const Schema kPortsSchema;   // a list of ports: few declarations, mostly numbers
extern const Schema kSwitchSchema;  // examples/schemas/switch.xsd, with the parts that it imports

}  // namespace bench
