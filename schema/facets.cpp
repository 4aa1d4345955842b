#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "compactxml.h"
#include "schema/date_time.h"
#include "schema/message.h"
#include "schema/value_check.h"

namespace cxml {
namespace {

constexpr char kNoMatch[] = "The value does not match the enumeration.";
constexpr char kNoPattern[] = "The value does not match the regular expression.";

enum class Comparison { kSigned, kUnsigned, kDuration, kDateTime, kText };

Comparison comparisonOf(std::uint32_t code) {
    switch (code) {
        case SCHEMA_TYPE_BYTE:
        case SCHEMA_TYPE_SHORT:
        case SCHEMA_TYPE_INT:
        case SCHEMA_TYPE_LONG:
        case SCHEMA_TYPE_INTEGER:
        case SCHEMA_TYPE_NON_POSITIVE_INTEGER:
        case SCHEMA_TYPE_NEGATIVE_INTEGER:
            return Comparison::kSigned;
        case SCHEMA_TYPE_UNSIGNED_BYTE:
        case SCHEMA_TYPE_UNSIGNED_SHORT:
        case SCHEMA_TYPE_UNSIGNED_INT:
        case SCHEMA_TYPE_UNSIGNED_LONG:
        case SCHEMA_TYPE_POSITIVE_INTEGER:
        case SCHEMA_TYPE_NON_NEGATIVE_INTEGER:
            return Comparison::kUnsigned;
        case SCHEMA_TYPE_DURATION:
            return Comparison::kDuration;
        default:
            return code >= SCHEMA_TYPE_DATE_TIME && code <= SCHEMA_TYPE_G_MONTH_DAY
                       ? Comparison::kDateTime
                       : Comparison::kText;
    }
}

// Reads a number as sscanf does; the plain spelling of a small number, which nearly all have, without
// the C library's work on blanks, signs and limits.
template <class Number>
Number readNumber(const char *text, Number (*read)(const char *, char **, int)) {
    constexpr int kSafeDigits = 18;
    Number number = 0;
    int digits = 0;
    for (; text[digits] >= '0' && text[digits] <= '9'; ++digits) {
        if (digits == kSafeDigits) return read(text, nullptr, 10);
        number = number * 10 + static_cast<Number>(text[digits] - '0');
    }
    return digits != 0 ? number : read(text, nullptr, 10);
}

template <class Number>
int compareNumbers(const char *a, const char *b, Number (*read)(const char *, char **, int)) {
    const Number left = readNumber(a, read), right = readNumber(b, read);
    return left < right ? -1 : left > right ? 1 : 0;
}

int compareAsDurations(const char *a, const char *b) {
    SchemaDurationValue left{}, right{};
    checkDuration(a, &left);
    checkDuration(b, &right);
    return compareDurations(left, right);
}

int compareAsDateTimes(std::uint32_t code, const char *a, const char *b) {
    const auto form = static_cast<DateForm>(code - SCHEMA_TYPE_DATE_TIME);
    SchemaDateTimeValue left{}, right{};
    checkDateTime(form, a, &left);
    checkDateTime(form, b, &right);
    return Schema_CmpDateTime(&left, &right);
}

// Compares a value with that of a facet, for the facets of order. Intended: texts are all equal.
int compareInOrder(const SchemaFacet &facet, const char *value) {
    switch (comparisonOf(facet.baseCode)) {
        case Comparison::kSigned:
            return compareNumbers(value, facet.value, std::strtoll);
        case Comparison::kUnsigned:
            return compareNumbers(value, facet.value, std::strtoull);
        case Comparison::kDuration:
            return compareAsDurations(value, facet.value);
        case Comparison::kDateTime:
            return compareAsDateTimes(facet.baseCode, value, facet.value);
        case Comparison::kText:
            break;
    }
    return 0;
}

// The same for equality. Intended: dates and times are equal as texts alone.
bool equals(const SchemaFacet &facet, const char *value) {
    const Comparison comparison = comparisonOf(facet.baseCode);
    if (comparison == Comparison::kDateTime || comparison == Comparison::kText) {
        return XML_Strcmp(value, facet.value) == 0;
    }
    return compareInOrder(facet, value) == 0;
}

// The number of bytes, for comparing with what atol reads.
long lengthOf(const char *value) {
    return static_cast<long>(std::strlen(value));
}

// Intended: every character behind the sign and the leading zeros counts, a decimal point too.
long digitsOf(const char *value) {
    if (*value == '+' || *value == '-') ++value;
    while (*value == '0') ++value;
    return lengthOf(value);
}

struct Requirement {
    bool holds;
    const char *message;  // what stands in front of the facet's value
};

Requirement requirementOf(const SchemaFacet &facet, const char *value) {
    switch (facet.kind) {
        case SCHEMA_FACET_LENGTH:
            return {lengthOf(value) == std::atol(facet.value), "The length must be equal to "};
        case SCHEMA_FACET_MAX_LENGTH:
            return {lengthOf(value) <= std::atol(facet.value),
                    "The length must be less than or equal to "};
        case SCHEMA_FACET_MIN_LENGTH:
            return {lengthOf(value) >= std::atol(facet.value),
                    "The length must be greater than or equal to "};
        case SCHEMA_FACET_TOTAL_DIGITS:
            return {digitsOf(value) == std::atol(facet.value),
                    "The total digit length must be equal to "};
        case SCHEMA_FACET_MAX_EXCLUSIVE:
            return {compareInOrder(facet, value) < 0, "The value must be less than "};
        case SCHEMA_FACET_MAX_INCLUSIVE:
            return {compareInOrder(facet, value) <= 0, "The value must be less than or equal to "};
        case SCHEMA_FACET_MIN_EXCLUSIVE:
            return {compareInOrder(facet, value) > 0, "The value must be greater than "};
        case SCHEMA_FACET_MIN_INCLUSIVE:
            return {compareInOrder(facet, value) >= 0,
                    "The value must be greater than or equal to "};
        default:
            return {true, ""};
    }
}

bool matchesPattern(const char *pattern, const char *value, const ValueCheck &check) {
    if (check.patterns) return check.patterns->matches(pattern, value);
    return XML_IsMatchRegex(pattern, value) == 1;
}

}  // namespace

bool checkFacet(const SchemaFacet &facet, const char *value, const ValueCheck &check) noexcept {
    if (!facet.value) return checkFacet({"", facet.kind, facet.baseCode}, value, check);
    if (facet.kind == SCHEMA_FACET_ENUMERATION) {
        if (equals(facet, value)) return true;
        writeMessage(check.buffer, check.size, {kNoMatch});
        return false;
    }
    if (facet.kind == SCHEMA_FACET_PATTERN) {
        if (matchesPattern(facet.value, value, check)) return true;
        writeMessage(check.buffer, check.size, {kNoPattern});
        return false;
    }
    const Requirement requirement = requirementOf(facet, value);
    if (requirement.holds) return true;
    writeMessage(check.buffer, check.size, {requirement.message, facet.value, "."});
    return false;
}

bool checkFacets(const SchemaFacet *facets, std::uint32_t count, const char *value,
                 const ValueCheck &check) noexcept {
    bool enumerated = false, matched = false;
    for (std::uint32_t i = 0; i < count; ++i) {
        const bool holds = checkFacet(facets[i], value, check);
        if (facets[i].kind == SCHEMA_FACET_ENUMERATION) {
            // One of them is enough; the message of another may stay.
            enumerated = true;
            matched = matched || holds;
        } else if (!holds) {
            return false;
        }
    }
    return !enumerated || matched;
}

}  // namespace cxml

using namespace cxml;

uint32_t Schema_CheckFacet(const SchemaFacet *facet, const char *value, uint32_t size,
                           char *buffer) noexcept {
    if (!facet || !value || !buffer) return XML_REFUSED;
    return checkFacet(*facet, value, {size, buffer, nullptr}) ? XML_OK : XML_REFUSED;
}

void Schema_CheckFacets(const SchemaFacet *facets, uint32_t count, const char *value, uint32_t size,
                        SchemaValidateContext *context, char *buffer) noexcept {
    if (!facets || !value || !context || !buffer) return;
    if (!checkFacets(facets, count, value, {size, buffer, nullptr})) context->valid = 0;
}
