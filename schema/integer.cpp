#include "schema/integer.h"

#include <cstring>

#include "schema/lexical.h"

namespace cxml {
namespace {

struct IntegerRange {
    std::uint32_t code;
    bool isSigned;  // whether a sign may stand in front
    bool hasLowerBound;
    std::uint32_t maxLength;  // significant digits, and one for a sign
    const char *lowerBound, *upperBound;
    // The same as numbers; the greatest may be less than it is, which costs time alone.
    std::int64_t least, greatest;
};

constexpr char kLeast64[] = "-9223372036854775808";
constexpr char kGreatest64[] = "9223372036854775807";

constexpr IntegerRange g_SchemaIntegerRanges[] = {
    {3, true, true, 4, "-128", "127", -128, 127},                            // byte
    {4, true, true, 6, "-32768", "32767", -32768, 32767},                    // short
    {5, false, false, 3, "0", "255", 0, 255},                                // unsignedByte
    {6, false, false, 5, "0", "65535", 0, 65535},                            // unsignedShort
    {7, true, true, 11, "-2147483648", "2147483647", INT32_MIN, INT32_MAX},  // int
    {8, true, true, 20, kLeast64, kGreatest64, INT64_MIN, INT64_MAX},        // long
    {9, false, false, 10, "0", "4294967295", 0, UINT32_MAX},                 // unsignedInt
    {10, false, false, 20, "0", "18446744073709551615", 0, INT64_MAX},       // unsignedLong
    {11, true, true, 20, kLeast64, kGreatest64, INT64_MIN, INT64_MAX},       // integer
    {12, true, true, 20, "1", kGreatest64, 1, INT64_MAX},                    // positiveInteger
    {13, true, true, 20, kLeast64, "0", INT64_MIN, 0},                       // nonPositiveInteger
    {14, true, true, 20, kLeast64, "-1", INT64_MIN, -1},                     // negativeInteger
    {15, true, true, 20, "0", kGreatest64, 0, INT64_MAX},                    // nonNegativeInteger
};
constexpr std::uint32_t kFirstCode = 3, kLastSmallCode = 6, kLastCode = 15;

// A number as sign and significant digits, without leading zeros but for 0 itself.
struct Number {
    bool negative;
    const char *digits;
    std::size_t digitCount;
};

Number numberOf(const char *text) {
    const bool negative = *text == '-';
    const char *digits = isDigit(*text) ? text : text + 1;
    while (*digits == '0' && digits[1] != '\0') ++digits;
    return {negative, digits, std::strlen(digits)};
}

// Compares as numbers, but "-0" comes before "0", as -1 does.
int compare(const Number &a, const Number &b) {
    if (a.negative != b.negative) return a.negative ? -1 : 1;
    int magnitude = 0;
    if (a.digitCount != b.digitCount) {
        magnitude = a.digitCount < b.digitCount ? -1 : 1;
    } else {
        magnitude = std::memcmp(a.digits, b.digits, a.digitCount);
    }
    return a.negative ? -magnitude : magnitude;
}

// Whether a value is in range, if it is plain: at most 18 digits, which no type but those of small
// numbers says anything else of than their value. False tells nothing.
bool isPlainAndInRange(const IntegerRange &range, const char *text) {
    constexpr int kMostDigits = 18;
    const bool negative = range.isSigned && *text == '-';
    if (negative) ++text;
    std::int64_t number = 0;
    int digits = 0;
    for (; isDigit(text[digits]) && digits < kMostDigits; ++digits) {
        number = number * 10 + (text[digits] - '0');
    }
    if (digits == 0 || text[digits] != '\0') return false;
    if (negative && number == 0) return false;  // less than 0 here
    if (negative) number = -number;
    return number >= range.least && number <= range.greatest;
}

bool isInRange(const IntegerRange &range, const Number &number) {
    if (range.hasLowerBound && compare(number, numberOf(range.lowerBound)) < 0) return false;
    return compare(number, numberOf(range.upperBound)) <= 0;
}

}  // namespace

bool checkInteger(std::uint32_t code, const char *value) noexcept {
    if (code < kFirstCode || code > kLastCode) return false;
    const IntegerRange &range = g_SchemaIntegerRanges[code - kFirstCode];
    if (isPlainAndInRange(range, value)) return true;
    if (!(range.isSigned ? matchesSignedInteger(value) : matchesUnsignedInteger(value))) {
        return false;
    }
    const Number number = numberOf(value);
    const std::size_t length = number.digitCount + (isDigit(*value) ? 0 : 1);
    if (length > range.maxLength) return false;
    // Intended: in the types of at most 16 bits a number behind a "|" reads as none, that is as 0,
    // which is in range.
    if (code <= kLastSmallCode && *value == '|') return true;
    return isInRange(range, number);
}

}  // namespace cxml
