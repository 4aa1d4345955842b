// tools/xsd2c/xsd/attribute_value.h - the values that attributes of a schema document can have.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "xsd2c/xsd/grammar_table.h"
#include "xsd2c/xsd/source_tree.h"

namespace xsd2c {

// What is wrong with a value of which white space is already collapsed: "" if it is valid, else
// "not a boolean" and the like.
std::string_view whatIsWrong(ValueKind kind, const std::string &value);

// A number of minOccurs or maxOccurs, "unbounded" among them; nothing if it is not valid.
std::optional<std::uint32_t> parseOccurs(std::string_view value);

// A qualified name as written, in two parts.
struct SplitName {
    std::string_view prefix;  // "" without one
    std::string_view local;
};
SplitName splitName(std::string_view qName);

}  // namespace xsd2c
