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
};

constexpr char kLeast64[] = "-9223372036854775808";
constexpr char kGreatest64[] = "9223372036854775807";

constexpr IntegerRange g_SchemaIntegerRanges[] = {
    {3, true, true, 4, "-128", "127"},                    // byte
    {4, true, true, 6, "-32768", "32767"},                // short
    {5, false, false, 3, "0", "255"},                     // unsignedByte
    {6, false, false, 5, "0", "65535"},                   // unsignedShort
    {7, true, true, 11, "-2147483648", "2147483647"},     // int
    {8, true, true, 20, kLeast64, kGreatest64},           // long
    {9, false, false, 10, "0", "4294967295"},             // unsignedInt
    {10, false, false, 20, "0", "18446744073709551615"},  // unsignedLong
    {11, true, true, 20, kLeast64, kGreatest64},          // integer
    {12, true, true, 20, "1", kGreatest64},               // positiveInteger
    {13, true, true, 20, kLeast64, "0"},                  // nonPositiveInteger
    {14, true, true, 20, kLeast64, "-1"},                 // negativeInteger
    {15, true, true, 20, "0", kGreatest64},               // nonNegativeInteger
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

bool isInRange(const IntegerRange &range, const Number &number) {
    if (range.hasLowerBound && compare(number, numberOf(range.lowerBound)) < 0) return false;
    return compare(number, numberOf(range.upperBound)) <= 0;
}

}  // namespace

bool checkInteger(std::uint32_t code, const char *value) noexcept {
    if (code < kFirstCode || code > kLastCode) return false;
    const IntegerRange &range = g_SchemaIntegerRanges[code - kFirstCode];
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
