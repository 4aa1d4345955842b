// tools/xsd2c/records/builtin_types.h - the built-in types of XML Schema, and what the validator
// has of them.
#pragma once

#include <cstdint>
#include <string_view>

namespace xsd2c {

// How values of a type are written, measured and compared.
enum class Family {
    kAny,  // anySimpleType
    kText,
    kBoolean,
    kInteger,
    kDecimal,
    kFloat,  // and double
    kDateTime,
    kDuration,
    kHexBinary,
    kBase64Binary,
    kAnyUri,
    kQName,
    kList,
    kUnion,
};

struct BuiltinType {
    std::string_view name;
    std::uint32_t code;  // SCHEMA_TYPE_*; 0 for what the validator lacks: text with a pattern
    Family family;
    bool ascii;     // it has no value with a character above U+007F
    bool collapse;  // white space around values does not count
    // Of an integer type: what the validator holds it to.
    std::string_view least = {};
    std::string_view most = {};
};

// Null for a name that is none.
const BuiltinType *findBuiltin(std::string_view name);

}  // namespace xsd2c
