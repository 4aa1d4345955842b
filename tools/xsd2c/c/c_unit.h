// tools/xsd2c/c/c_unit.h - the back end that writes C.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "xsd2c/records/records.h"

namespace xsd2c {

// How a unit is called.
struct UnitName {
    std::string schema;    // of the unit, its files and its functions: an identifier of C
    std::string document;  // file name of the schema document, without directories
    std::string prefix;    // of the accessors: Schema_<prefix>_<name>
};

// What a schema document's unit is called: from "configs/switch-1.xsd" the schema is "switch_1" and
// the prefix "SWITCH_1", unless another prefix is given.
UnitName unitNameOf(std::string_view path, std::string_view prefix = {});

// The name of the accessor of each of records.top: distinct, and by itself the same whatever else
// is declared, as far as that is possible.
std::vector<std::string> accessorNames(const UnitName &unit, const Records &records);

std::string headerText(const UnitName &unit, const Records &records);
std::string sourceText(const UnitName &unit, const Records &records);

}  // namespace xsd2c
