#include <climits>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "compactxml.h"
#include "schema/date_time.h"
#include "schema/lexical.h"
#include "schema/message.h"
#include "schema/same_text.h"
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

// Reads the plain spelling of a small number, which nearly all have. False for others, which are left
// to the C library's work on blanks, signs and limits.
bool readPlain(const char *text, std::int64_t *out) {
    constexpr int kSafeDigits = 18;
    std::int64_t number = 0;
    int digits = 0;
    for (; isDigit(text[digits]); ++digits) {
        if (digits == kSafeDigits) return false;
        number = number * 10 + (text[digits] - '0');
    }
    *out = number;
    return digits != 0;
}

template <class Number>
int compare(Number a, Number b) {
    return a < b ? -1 : a > b ? 1 : 0;
}

// Compares numbers as sscanf reads them.
int compareNumbers(const char *a, const char *b, bool isSigned) {
    std::int64_t left = 0, right = 0;
    if (readPlain(a, &left) && readPlain(b, &right)) return compare(left, right);
    if (isSigned) return compare(std::strtoll(a, nullptr, 10), std::strtoll(b, nullptr, 10));
    return compare(std::strtoull(a, nullptr, 10), std::strtoull(b, nullptr, 10));
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
            return compareNumbers(value, facet.value, true);
        case Comparison::kUnsigned:
            return compareNumbers(value, facet.value, false);
        case Comparison::kDuration:
            return compareAsDurations(value, facet.value);
        case Comparison::kDateTime:
            return compareAsDateTimes(facet.baseCode, value, facet.value);
        default:  // kText
            return 0;
    }
}

// The same for equality. Intended: dates and times are equal as texts alone.
bool equals(const SchemaFacet &facet, const char *value) {
    if (isSameText(value, facet.value)) return true;
    const Comparison comparison = comparisonOf(facet.baseCode);
    if (comparison == Comparison::kDateTime || comparison == Comparison::kText) return false;
    return compareInOrder(facet, value) == 0;
}

// The number that a facet of length or digits asks for.
long countOf(const SchemaFacet &facet) {
    std::int64_t count = 0;
    if (readPlain(facet.value, &count) && count <= LONG_MAX) return static_cast<long>(count);
    return std::strtol(facet.value, nullptr, 10);  // not atol, which need not stop at the limits
}

// The number of bytes, for comparing with what a facet says.
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
            return {lengthOf(value) == countOf(facet), "The length must be equal to "};
        case SCHEMA_FACET_MAX_LENGTH:
            return {lengthOf(value) <= countOf(facet), "The length must be less than or equal to "};
        case SCHEMA_FACET_MIN_LENGTH:
            return {lengthOf(value) >= countOf(facet),
                    "The length must be greater than or equal to "};
        case SCHEMA_FACET_TOTAL_DIGITS:
            return {digitsOf(value) == countOf(facet), "The total digit length must be equal to "};
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

bool isOfIntegers(std::uint32_t code) {
    const Comparison comparison = comparisonOf(code);
    return comparison == Comparison::kSigned || comparison == Comparison::kUnsigned;
}

// The integer of a value, for all facets of a step. Most bounds are plain numbers, and so is what they
// are for.
class PlainInteger {
  public:
    PlainInteger(const SchemaFacet *facets, std::uint32_t count, const char *value)
        : known_(count != 0 && isOfIntegers(facets[0].baseCode) && readPlain(value, &number_)) {}

    // Whether a facet is a plain bound and holds. False tells nothing.
    bool isWithin(const SchemaFacet &facet) const {
        std::int64_t bound = 0;
        if (!known_ || !facet.value || !isOfIntegers(facet.baseCode)) return false;
        switch (facet.kind) {
            case SCHEMA_FACET_MAX_EXCLUSIVE:
                return readPlain(facet.value, &bound) && number_ < bound;
            case SCHEMA_FACET_MAX_INCLUSIVE:
                return readPlain(facet.value, &bound) && number_ <= bound;
            case SCHEMA_FACET_MIN_EXCLUSIVE:
                return readPlain(facet.value, &bound) && number_ > bound;
            case SCHEMA_FACET_MIN_INCLUSIVE:
                return readPlain(facet.value, &bound) && number_ >= bound;
            default:
                return false;
        }
    }

  private:
    std::int64_t number_ = 0;
    bool known_;
};

// All enumerated values of a step, one of which is enough. A value that is another one leaves a message
// even so, unless nobody reads it.
class Enumeration {
  public:
    void take(const SchemaFacet &facet, const char *value, const ValueCheck &check) {
        enumerated_ = true;
        if (matched_ && (missed_ || check.onlyOfFailures)) return;
        if (equals({facet.value ? facet.value : "", facet.kind, facet.baseCode}, value)) {
            matched_ = true;
        } else if (!missed_) {
            missed_ = true;
            if (!check.onlyOfFailures) writeMessage(check.buffer, check.size, {kNoMatch});
        }
    }
    bool holds(const ValueCheck &check) const {
        if (!enumerated_ || matched_) return true;
        if (check.onlyOfFailures) writeMessage(check.buffer, check.size, {kNoMatch});
        return false;
    }

  private:
    bool enumerated_ = false, matched_ = false, missed_ = false;
};

bool matchesPattern(const char *pattern, const char *value, const ValueCheck &check) {
    if (check.patterns) return check.patterns->matches(pattern, value, check.exhausted);
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
    Enumeration enumeration;
    const PlainInteger integer{facets, count, value};
    for (std::uint32_t i = 0; i < count; ++i) {
        if (facets[i].kind == SCHEMA_FACET_ENUMERATION) {
            enumeration.take(facets[i], value, check);
        } else if (!integer.isWithin(facets[i]) && !checkFacet(facets[i], value, check)) {
            return false;
        }
    }
    return enumeration.holds(check);
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
