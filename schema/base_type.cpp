// The built-in simple types: which check a code has, and what is said of a value that fails it.
#include <array>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <iterator>

#include "compactxml.h"
#include "parser/name_check.h"
#include "schema/date_time.h"
#include "schema/integer.h"
#include "schema/lexical.h"
#include "schema/message.h"
#include "schema/value_check.h"

namespace cxml {
namespace {

// Names in messages, by code. Intended: "datetime", "ENTITYS", and "NOTATION" for language, which
// has the code that the list of types gives to NOTATION.
constexpr const char *g_SchemaBuiltinTypeNames[] = {
    "",
    "anySimpleType",
    "anyType",
    "byte",
    "short",
    "unsignedByte",
    "unsignedShort",
    "int",
    "long",
    "unsignedInt",
    "unsignedLong",
    "integer",
    "positiveInteger",
    "nonPositiveInteger",
    "negativeInteger",
    "nonNegativeInteger",
    "decimal",
    "double",
    "float",
    "duration",
    "datetime",
    "date",
    "time",
    "gYear",
    "gMonth",
    "gDay",
    "gYearMonth",
    "gMonthDay",
    "string",
    "boolean",
    "hexBinary",
    "base64Binary",
    "anyURI",
    "QName",
    "NOTATION",
    "normalizedString",
    "token",
    "language",
    "NMTOKEN",
    "NMTOKENS",
    "Name",
    "NCName",
    "ID",
    "IDREF",
    "ENTITY",
    "IDREFS",
    "ENTITYS",
    "",
};
constexpr std::size_t kCodes = std::size(g_SchemaBuiltinTypeNames);

using Check = bool (*)(const char *value);

template <std::uint32_t code>
bool isInteger(const char *value) {
    return checkInteger(code, value);
}

template <DateForm form>
bool isDateTime(const char *value) {
    return checkDateTime(form, value, nullptr);
}

bool isDuration(const char *value) {
    return checkDuration(value, nullptr);
}

bool isQName(const char *value) {
    return checkName(value) == NameCheck::kName;
}

bool isLanguage(const char *value) {
    return Schema_LanguageHandler(value) == 1;
}

struct BaseTypeHandler {
    std::uint32_t code;
    Check check;
};

// Types without a check (decimal, token ...) have no row: no value of theirs is valid.
constexpr BaseTypeHandler g_SchemaBaseTypeHandlers[] = {
    {SCHEMA_TYPE_BYTE, isInteger<SCHEMA_TYPE_BYTE>},
    {SCHEMA_TYPE_SHORT, isInteger<SCHEMA_TYPE_SHORT>},
    {SCHEMA_TYPE_UNSIGNED_BYTE, isInteger<SCHEMA_TYPE_UNSIGNED_BYTE>},
    {SCHEMA_TYPE_UNSIGNED_SHORT, isInteger<SCHEMA_TYPE_UNSIGNED_SHORT>},
    {SCHEMA_TYPE_INT, isInteger<SCHEMA_TYPE_INT>},
    {SCHEMA_TYPE_LONG, isInteger<SCHEMA_TYPE_LONG>},
    {SCHEMA_TYPE_UNSIGNED_INT, isInteger<SCHEMA_TYPE_UNSIGNED_INT>},
    {SCHEMA_TYPE_UNSIGNED_LONG, isInteger<SCHEMA_TYPE_UNSIGNED_LONG>},
    {SCHEMA_TYPE_INTEGER, isInteger<SCHEMA_TYPE_INTEGER>},
    {SCHEMA_TYPE_POSITIVE_INTEGER, isInteger<SCHEMA_TYPE_POSITIVE_INTEGER>},
    {SCHEMA_TYPE_NON_POSITIVE_INTEGER, isInteger<SCHEMA_TYPE_NON_POSITIVE_INTEGER>},
    {SCHEMA_TYPE_NEGATIVE_INTEGER, isInteger<SCHEMA_TYPE_NEGATIVE_INTEGER>},
    {SCHEMA_TYPE_NON_NEGATIVE_INTEGER, isInteger<SCHEMA_TYPE_NON_NEGATIVE_INTEGER>},
    {SCHEMA_TYPE_DURATION, isDuration},
    {SCHEMA_TYPE_DATE_TIME, isDateTime<DateForm::kDateTime>},
    {SCHEMA_TYPE_DATE, isDateTime<DateForm::kDate>},
    {SCHEMA_TYPE_TIME, isDateTime<DateForm::kTime>},
    {SCHEMA_TYPE_G_YEAR, isDateTime<DateForm::kGYear>},
    {SCHEMA_TYPE_G_MONTH, isDateTime<DateForm::kGMonth>},
    {SCHEMA_TYPE_G_DAY, isDateTime<DateForm::kGDay>},
    {SCHEMA_TYPE_G_YEAR_MONTH, isDateTime<DateForm::kGYearMonth>},
    {SCHEMA_TYPE_G_MONTH_DAY, isDateTime<DateForm::kGMonthDay>},
    {SCHEMA_TYPE_STRING, matchesAnything},
    {SCHEMA_TYPE_BOOLEAN, matchesBoolean},
    {SCHEMA_TYPE_HEX_BINARY, matchesHexBinary},
    {SCHEMA_TYPE_BASE64_BINARY, matchesBase64Binary},
    {SCHEMA_TYPE_ANY_URI, matchesAnyUri},
    {SCHEMA_TYPE_QNAME, isQName},
    {SCHEMA_TYPE_LANGUAGE, isLanguage},
};

consteval auto checksByCode() {
    std::array<Check, kCodes> checks{};
    for (const BaseTypeHandler &handler : g_SchemaBaseTypeHandlers) {
        checks[handler.code] = handler.check;
    }
    return checks;
}
constexpr auto kChecks = checksByCode();

const char *typeName(std::uint32_t code) {
    return code < kCodes ? g_SchemaBuiltinTypeNames[code] : "";
}

// How much of a value a message quotes. Intended: in a buffer that is too small for the rest of the
// message the value is cut by the buffer's end alone.
std::size_t quotedBytes(std::uint32_t size) {
    constexpr std::uint32_t kRest = 111;
    return size >= kRest ? size - kRest : INT_MAX;
}

// Says what is wrong with a value.
[[gnu::cold]] void refuse(std::uint32_t code, const char *value, const ValueCheck &check) {
    if (*value == '\0') {
        writeMessage(check.buffer, check.size, {typeName(code), " cannot be empty."});
    } else {
        writeMessage(check.buffer, check.size,
                     {beginningOf(value, quotedBytes(check.size)), " is an invalid value of ",
                      typeName(code), " type value."});
    }
}

}  // namespace

bool checkBaseType(std::uint32_t code, const char *value, const ValueCheck &check) noexcept {
    // Any text is a string, as kChecks says, too.
    if (code == SCHEMA_TYPE_STRING || code == SCHEMA_TYPE_ANY_SIMPLE_TYPE) return true;
    if (*value == '\0') {
        if (code == SCHEMA_TYPE_BASE64_BINARY) return true;
    } else if (code == SCHEMA_TYPE_QNAME) {
        const NameCheck name = checkName(value);
        if (name == NameCheck::kName) return true;
        if (name == NameCheck::kUnknown && check.exhausted) *check.exhausted = true;
    } else if (code < kCodes && kChecks[code] && kChecks[code](value)) {
        return true;
    }
    refuse(code, value, check);
    return false;
}

}  // namespace cxml

using namespace cxml;

uint32_t SCHEMA_CheckBaseTypeNonNull(uint32_t code, const char *value) noexcept {
    const Check check = code < kCodes ? kChecks[code] : nullptr;
    return check && value && check(value) ? 1 : 0;
}

uint32_t Schema_CheckBaseType(const SchemaSimpleType *type, const char *value, uint32_t size,
                              char *buffer) noexcept {
    if (!type || !value || !buffer) return 0;
    return checkBaseType(type->builtinCode, value, {size, buffer, nullptr}) ? 1 : 0;
}
