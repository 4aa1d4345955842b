#include "xsd2c/records/builtin_types.h"

#include "compactxml.h"

namespace xsd2c {
namespace {

constexpr bool kAscii = true, kAnyChars = false;
constexpr bool kCollapsed = true, kPreserved = false;

constexpr std::string_view kLeast64 = "-9223372036854775808", kMost64 = "9223372036854775807";

constexpr BuiltinType integer(std::string_view name, std::uint32_t code, std::string_view least,
                              std::string_view most) {
    return {name, code, Family::kInteger, kAscii, kCollapsed, least, most};
}

constexpr BuiltinType date(std::string_view name, std::uint32_t code) {
    return {name, code, Family::kDateTime, kAscii, kCollapsed};
}

// What the validator lacks.
constexpr BuiltinType missing(std::string_view name, Family family, bool ascii,
                              bool collapse = kCollapsed) {
    return {name, 0, family, ascii, collapse};
}

constexpr BuiltinType kTypes[] = {
    {"anySimpleType", SCHEMA_TYPE_ANY_SIMPLE_TYPE, Family::kAny, kAnyChars, kPreserved},
    {"string", SCHEMA_TYPE_STRING, Family::kText, kAnyChars, kPreserved},
    {"boolean", SCHEMA_TYPE_BOOLEAN, Family::kBoolean, kAscii, kCollapsed},
    {"duration", SCHEMA_TYPE_DURATION, Family::kDuration, kAscii, kCollapsed},
    {"hexBinary", SCHEMA_TYPE_HEX_BINARY, Family::kHexBinary, kAscii, kCollapsed},
    {"base64Binary", SCHEMA_TYPE_BASE64_BINARY, Family::kBase64Binary, kAscii, kCollapsed},
    {"anyURI", SCHEMA_TYPE_ANY_URI, Family::kAnyUri, kAnyChars, kCollapsed},
    {"QName", SCHEMA_TYPE_QNAME, Family::kQName, kAnyChars, kCollapsed},
    {"language", SCHEMA_TYPE_LANGUAGE, Family::kText, kAscii, kCollapsed},
    date("dateTime", SCHEMA_TYPE_DATE_TIME),
    date("date", SCHEMA_TYPE_DATE),
    date("time", SCHEMA_TYPE_TIME),
    date("gYear", SCHEMA_TYPE_G_YEAR),
    date("gYearMonth", SCHEMA_TYPE_G_YEAR_MONTH),
    date("gMonth", SCHEMA_TYPE_G_MONTH),
    date("gMonthDay", SCHEMA_TYPE_G_MONTH_DAY),
    date("gDay", SCHEMA_TYPE_G_DAY),
    integer("integer", SCHEMA_TYPE_INTEGER, kLeast64, kMost64),
    integer("nonPositiveInteger", SCHEMA_TYPE_NON_POSITIVE_INTEGER, kLeast64, "0"),
    integer("negativeInteger", SCHEMA_TYPE_NEGATIVE_INTEGER, kLeast64, "-1"),
    integer("nonNegativeInteger", SCHEMA_TYPE_NON_NEGATIVE_INTEGER, "0", kMost64),
    integer("positiveInteger", SCHEMA_TYPE_POSITIVE_INTEGER, "1", kMost64),
    integer("long", SCHEMA_TYPE_LONG, kLeast64, kMost64),
    integer("int", SCHEMA_TYPE_INT, "-2147483648", "2147483647"),
    integer("short", SCHEMA_TYPE_SHORT, "-32768", "32767"),
    integer("byte", SCHEMA_TYPE_BYTE, "-128", "127"),
    integer("unsignedLong", SCHEMA_TYPE_UNSIGNED_LONG, "0", "18446744073709551615"),
    integer("unsignedInt", SCHEMA_TYPE_UNSIGNED_INT, "0", "4294967295"),
    integer("unsignedShort", SCHEMA_TYPE_UNSIGNED_SHORT, "0", "65535"),
    integer("unsignedByte", SCHEMA_TYPE_UNSIGNED_BYTE, "0", "255"),
    missing("decimal", Family::kDecimal, kAscii),
    missing("float", Family::kFloat, kAscii),
    missing("double", Family::kFloat, kAscii),
    missing("normalizedString", Family::kText, kAnyChars, kPreserved),
    missing("token", Family::kText, kAnyChars),
    missing("NMTOKEN", Family::kText, kAnyChars),
    missing("Name", Family::kText, kAnyChars),
    missing("NCName", Family::kText, kAnyChars),
    missing("ID", Family::kText, kAnyChars),
    missing("IDREF", Family::kText, kAnyChars),
    missing("ENTITY", Family::kText, kAnyChars),
    missing("NOTATION", Family::kQName, kAnyChars),
    missing("NMTOKENS", Family::kList, kAnyChars),
    missing("IDREFS", Family::kList, kAnyChars),
    missing("ENTITIES", Family::kList, kAnyChars),
};

}  // namespace

const BuiltinType *findBuiltin(std::string_view name) {
    for (const BuiltinType &type : kTypes) {
        if (type.name == name) return &type;
    }
    return nullptr;
}

}  // namespace xsd2c
