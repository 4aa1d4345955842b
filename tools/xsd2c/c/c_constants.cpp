#include "xsd2c/c/c_constants.h"

#include <cstddef>
#include <limits>

#include "compactxml.h"

namespace xsd2c {
namespace {

struct Constant {
    std::uint32_t number;
    const char *name;
};

#define CONSTANT(name) \
    { name, #name }

constexpr Constant kKinds[] = {
    CONSTANT(SCHEMA_KIND_ELEMENT_WILDCARD),
    CONSTANT(SCHEMA_KIND_ATTRIBUTE),
    CONSTANT(SCHEMA_KIND_ATTRIBUTE_GROUP),
    CONSTANT(SCHEMA_KIND_COMPLEX_RESTRICTION),
    CONSTANT(SCHEMA_KIND_COMPLEX_EXTENSION),
    CONSTANT(SCHEMA_KIND_COMPLEX_TYPE),
    CONSTANT(SCHEMA_KIND_MODEL_GROUP),
    CONSTANT(SCHEMA_KIND_ALL),
    CONSTANT(SCHEMA_KIND_CHOICE),
    CONSTANT(SCHEMA_KIND_SEQUENCE),
    CONSTANT(SCHEMA_KIND_ELEMENT),
    CONSTANT(SCHEMA_KIND_SIMPLE_RESTRICTION),
    CONSTANT(SCHEMA_KIND_SIMPLE_EXTENSION),
    CONSTANT(SCHEMA_KIND_SIMPLE_TYPE),
};

constexpr Constant kFacets[] = {
    CONSTANT(SCHEMA_FACET_ENUMERATION),   CONSTANT(SCHEMA_FACET_LENGTH),
    CONSTANT(SCHEMA_FACET_MAX_EXCLUSIVE), CONSTANT(SCHEMA_FACET_MAX_INCLUSIVE),
    CONSTANT(SCHEMA_FACET_MAX_LENGTH),    CONSTANT(SCHEMA_FACET_MIN_EXCLUSIVE),
    CONSTANT(SCHEMA_FACET_MIN_INCLUSIVE), CONSTANT(SCHEMA_FACET_MIN_LENGTH),
    CONSTANT(SCHEMA_FACET_PATTERN),       CONSTANT(SCHEMA_FACET_TOTAL_DIGITS),
};

constexpr Constant kTypes[] = {
    CONSTANT(SCHEMA_TYPE_ANY_SIMPLE_TYPE),
    CONSTANT(SCHEMA_TYPE_BYTE),
    CONSTANT(SCHEMA_TYPE_SHORT),
    CONSTANT(SCHEMA_TYPE_UNSIGNED_BYTE),
    CONSTANT(SCHEMA_TYPE_UNSIGNED_SHORT),
    CONSTANT(SCHEMA_TYPE_INT),
    CONSTANT(SCHEMA_TYPE_LONG),
    CONSTANT(SCHEMA_TYPE_UNSIGNED_INT),
    CONSTANT(SCHEMA_TYPE_UNSIGNED_LONG),
    CONSTANT(SCHEMA_TYPE_INTEGER),
    CONSTANT(SCHEMA_TYPE_POSITIVE_INTEGER),
    CONSTANT(SCHEMA_TYPE_NON_POSITIVE_INTEGER),
    CONSTANT(SCHEMA_TYPE_NEGATIVE_INTEGER),
    CONSTANT(SCHEMA_TYPE_NON_NEGATIVE_INTEGER),
    CONSTANT(SCHEMA_TYPE_DURATION),
    CONSTANT(SCHEMA_TYPE_DATE_TIME),
    CONSTANT(SCHEMA_TYPE_DATE),
    CONSTANT(SCHEMA_TYPE_TIME),
    CONSTANT(SCHEMA_TYPE_G_YEAR),
    CONSTANT(SCHEMA_TYPE_G_MONTH),
    CONSTANT(SCHEMA_TYPE_G_DAY),
    CONSTANT(SCHEMA_TYPE_G_YEAR_MONTH),
    CONSTANT(SCHEMA_TYPE_G_MONTH_DAY),
    CONSTANT(SCHEMA_TYPE_STRING),
    CONSTANT(SCHEMA_TYPE_BOOLEAN),
    CONSTANT(SCHEMA_TYPE_HEX_BINARY),
    CONSTANT(SCHEMA_TYPE_BASE64_BINARY),
    CONSTANT(SCHEMA_TYPE_ANY_URI),
    CONSTANT(SCHEMA_TYPE_QNAME),
    CONSTANT(SCHEMA_TYPE_LANGUAGE),
};

#undef CONSTANT

template <std::size_t kCount>
const char *nameOf(const Constant (&constants)[kCount], std::uint32_t number) {
    for (const Constant &constant : constants) {
        if (constant.number == number) return constant.name;
    }
    return nullptr;
}

template <std::size_t kCount>
std::string constantOf(const Constant (&constants)[kCount], std::uint32_t number) {
    const char *name = nameOf(constants, number);
    return name ? name : unsignedConstant(number);
}

}  // namespace

std::string kindConstant(std::int32_t kind) {
    const char *name = kind < 0 ? nullptr : nameOf(kKinds, static_cast<std::uint32_t>(kind));
    return name ? name : signedConstant(kind);
}

std::string facetConstant(std::uint32_t kind) {
    return constantOf(kFacets, kind);
}

std::string typeConstant(std::uint32_t code) {
    return constantOf(kTypes, code);
}

std::string unsignedConstant(std::uint32_t number) {
    constexpr std::uint32_t kMostSigned = std::numeric_limits<std::int32_t>::max();
    if (number == std::numeric_limits<std::uint32_t>::max()) return "UINT32_MAX";
    return std::to_string(number) + (number > kMostSigned ? "u" : "");
}

std::string signedConstant(std::int32_t number) {
    // There are no negative literals: 2147483648 alone would be too large for an int.
    return number == std::numeric_limits<std::int32_t>::min() ? "INT32_MIN"
                                                              : std::to_string(number);
}

}  // namespace xsd2c
