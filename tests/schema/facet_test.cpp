// Facets: what each kind asks for, how values compare by the type they restrict, every message, and
// lists of facets.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "compactxml.h"
#include "schema/value_check.h"

namespace {

constexpr char kUntouched = '#';
constexpr std::string_view kNoMatch = "The value does not match the enumeration.";
constexpr std::string_view kNoPattern = "The value does not match the regular expression.";

// What stands in a message buffer: "" if nothing has been written.
std::string written(const char *buffer, std::size_t size) {
    if (std::all_of(buffer, buffer + size, [](char c) { return c == kUntouched; })) return "";
    const std::size_t length = ::strnlen(buffer, size);
    return length < size ? std::string(buffer, length) : "(not terminated)";
}

// "" when a value satisfies a facet, the message when it does not.
std::string checked(const SchemaFacet &facet, const char *value) {
    char buffer[512];
    std::memset(buffer, kUntouched, sizeof buffer);
    const std::uint32_t result = Schema_CheckFacet(&facet, value, sizeof buffer, buffer);
    const std::string message = written(buffer, sizeof buffer);
    if (result == XML_OK) return message.empty() ? "" : "holds, but wrote: " + message;
    return result == XML_REFUSED && !message.empty() ? message : "no message";
}

std::string nameOf(const SchemaFacet &facet, const char *value) {
    return "kind " + std::to_string(facet.kind) + " on type " + std::to_string(facet.baseCode) +
           ", \"" + facet.value + "\" against \"" + value + "\"";
}

// ---------------------------------------------------------------- lengths, digits and patterns

struct FacetCase {
    std::uint32_t kind;
    const char *facet, *value;
    bool holds;
};

constexpr FacetCase kLengths[] = {
    {SCHEMA_FACET_LENGTH, "3", "", false},
    {SCHEMA_FACET_LENGTH, "3", "ab", false},
    {SCHEMA_FACET_LENGTH, "3", "abc", true},
    {SCHEMA_FACET_LENGTH, "3", "abcd", false},
    {SCHEMA_FACET_LENGTH, "3", "   ", true},
    // Bytes, not characters.
    {SCHEMA_FACET_LENGTH, "1", "\xD6\xD0", false},
    {SCHEMA_FACET_LENGTH, "2", "\xD6\xD0", true},
    {SCHEMA_FACET_LENGTH, "3", "\xD6\xD0\xCE\xC4\xD7\xD6", false},
    {SCHEMA_FACET_LENGTH, "6", "\xD6\xD0\xCE\xC4\xD7\xD6", true},
    {SCHEMA_FACET_LENGTH, "4", "\x81\x30\x81\x30", true},
    {SCHEMA_FACET_LENGTH, "0", "", true},
    {SCHEMA_FACET_LENGTH, "0", "a", false},
    {SCHEMA_FACET_MAX_LENGTH, "2", "", true},
    {SCHEMA_FACET_MAX_LENGTH, "2", "a", true},
    {SCHEMA_FACET_MAX_LENGTH, "2", "ab", true},
    {SCHEMA_FACET_MAX_LENGTH, "2", "abc", false},
    {SCHEMA_FACET_MAX_LENGTH, "3", "\xD6\xD0\xCE\xC4", false},
    {SCHEMA_FACET_MAX_LENGTH, "4", "\xD6\xD0\xCE\xC4", true},
    {SCHEMA_FACET_MAX_LENGTH, "0", "", true},
    {SCHEMA_FACET_MAX_LENGTH, "0", "a", false},
    {SCHEMA_FACET_MAX_LENGTH, "2147483647", "a", true},
    {SCHEMA_FACET_MIN_LENGTH, "2", "", false},
    {SCHEMA_FACET_MIN_LENGTH, "2", "a", false},
    {SCHEMA_FACET_MIN_LENGTH, "2", "ab", true},
    {SCHEMA_FACET_MIN_LENGTH, "2", "abc", true},
    {SCHEMA_FACET_MIN_LENGTH, "2", "\xD6\xD0", true},
    {SCHEMA_FACET_MIN_LENGTH, "3", "\xD6\xD0", false},
    {SCHEMA_FACET_MIN_LENGTH, "0", "", true},
    {SCHEMA_FACET_MIN_LENGTH, "2147483647", "a", false},
    // Numbers as atol reads them: blanks, signs and zeros in front, anything behind.
    {SCHEMA_FACET_LENGTH, "003", "abc", true},
    {SCHEMA_FACET_LENGTH, " 3", "abc", true},
    {SCHEMA_FACET_LENGTH, "+3", "abc", true},
    {SCHEMA_FACET_LENGTH, "3 bytes", "abc", true},
    {SCHEMA_FACET_LENGTH, "three", "", true},
    {SCHEMA_FACET_LENGTH, "three", "abc", false},
    {SCHEMA_FACET_LENGTH, "", "", true},
    {SCHEMA_FACET_LENGTH, "", "a", false},
    {SCHEMA_FACET_LENGTH, "-1", "", false},
    {SCHEMA_FACET_MAX_LENGTH, "-1", "", false},
    {SCHEMA_FACET_MIN_LENGTH, "-1", "", true},
};

constexpr FacetCase kTotalDigits[] = {
    {SCHEMA_FACET_TOTAL_DIGITS, "3", "123", true},
    {SCHEMA_FACET_TOTAL_DIGITS, "3", "-00123", true},
    {SCHEMA_FACET_TOTAL_DIGITS, "3", "+123", true},
    {SCHEMA_FACET_TOTAL_DIGITS, "3", "12", false},  // exactly so many
    {SCHEMA_FACET_TOTAL_DIGITS, "3", "1234", false},
    {SCHEMA_FACET_TOTAL_DIGITS, "3", "-12", false},
    {SCHEMA_FACET_TOTAL_DIGITS, "3", "100", true},
    {SCHEMA_FACET_TOTAL_DIGITS, "3", "0100", true},
    {SCHEMA_FACET_TOTAL_DIGITS, "1", "0", false},  // zero has no digit
    {SCHEMA_FACET_TOTAL_DIGITS, "0", "0", true},
    {SCHEMA_FACET_TOTAL_DIGITS, "0", "000", true},
    {SCHEMA_FACET_TOTAL_DIGITS, "0", "-0", true},
    {SCHEMA_FACET_TOTAL_DIGITS, "0", "", true},
    {SCHEMA_FACET_TOTAL_DIGITS, "0", "-", true},
    {SCHEMA_FACET_TOTAL_DIGITS, "1", "", false},
    {SCHEMA_FACET_TOTAL_DIGITS, "3", "12.3", false},  // the point counts
    {SCHEMA_FACET_TOTAL_DIGITS, "4", "12.3", true},
    {SCHEMA_FACET_TOTAL_DIGITS, "2", "0.12", false},
    {SCHEMA_FACET_TOTAL_DIGITS, "3", "0.12", true},
    {SCHEMA_FACET_TOTAL_DIGITS, "2", "--12", false},  // one sign is no digit, another is
    {SCHEMA_FACET_TOTAL_DIGITS, "3", "--12", true},
    {SCHEMA_FACET_TOTAL_DIGITS, "3", "+-12", true},
    {SCHEMA_FACET_TOTAL_DIGITS, "3", "0-12", true},  // behind a zero, too
    {SCHEMA_FACET_TOTAL_DIGITS, "2", "|12", false},
    {SCHEMA_FACET_TOTAL_DIGITS, "3", "|12", true},
    {SCHEMA_FACET_TOTAL_DIGITS, "3", " 12", true},
    {SCHEMA_FACET_TOTAL_DIGITS, "3", "abc", true},
    {SCHEMA_FACET_TOTAL_DIGITS, "2", "\xD6\xD0", true},
    {SCHEMA_FACET_TOTAL_DIGITS, "three", "0", true},
    {SCHEMA_FACET_TOTAL_DIGITS, "three", "7", false},
    {SCHEMA_FACET_TOTAL_DIGITS, "-1", "0", false},
};

constexpr FacetCase kPatterns[] = {
    // Anywhere in the value.
    {SCHEMA_FACET_PATTERN, "[0-9]", "a1b", true},
    {SCHEMA_FACET_PATTERN, "[0-9]", "ab", false},
    {SCHEMA_FACET_PATTERN, "[0-9]", "", false},
    {SCHEMA_FACET_PATTERN, "^[0-9]$", "1", true},
    {SCHEMA_FACET_PATTERN, "^[0-9]$", "a1b", false},
    {SCHEMA_FACET_PATTERN, "^[0-9]$", "12", false},
    // Extended expressions.
    {SCHEMA_FACET_PATTERN, "a{2}", "baab", true},
    {SCHEMA_FACET_PATTERN, "a{2}", "aba", false},
    {SCHEMA_FACET_PATTERN, "^(up|down)$", "down", true},
    {SCHEMA_FACET_PATTERN, "^(up|down)$", "(up|down)", false},
    {SCHEMA_FACET_PATTERN, "^ab+$", "abbb", true},
    {SCHEMA_FACET_PATTERN, "^ab+$", "ab+", false},
    {SCHEMA_FACET_PATTERN, "abc", "ABC", false},
    {SCHEMA_FACET_PATTERN, "^$", "", true},
    {SCHEMA_FACET_PATTERN, "^$", "a", false},
    {SCHEMA_FACET_PATTERN, ".", "", false},
    {SCHEMA_FACET_PATTERN, "x*", "", true},
    {SCHEMA_FACET_PATTERN, "1\\.2", "1.2", true},
    {SCHEMA_FACET_PATTERN, "1\\.2", "1x2", false},
    // What does not compile matches nothing.
    {SCHEMA_FACET_PATTERN, "[", "[", false},
    {SCHEMA_FACET_PATTERN, "(a", "(a", false},
    {SCHEMA_FACET_PATTERN, "a{2", "a{2", false},
};

std::string messageOf(std::uint32_t kind, const std::string &facet) {
    switch (kind) {
        case SCHEMA_FACET_ENUMERATION:
            return std::string(kNoMatch);
        case SCHEMA_FACET_LENGTH:
            return "The length must be equal to " + facet + ".";
        case SCHEMA_FACET_MAX_EXCLUSIVE:
            return "The value must be less than " + facet + ".";
        case SCHEMA_FACET_MAX_INCLUSIVE:
            return "The value must be less than or equal to " + facet + ".";
        case SCHEMA_FACET_MAX_LENGTH:
            return "The length must be less than or equal to " + facet + ".";
        case SCHEMA_FACET_MIN_EXCLUSIVE:
            return "The value must be greater than " + facet + ".";
        case SCHEMA_FACET_MIN_INCLUSIVE:
            return "The value must be greater than or equal to " + facet + ".";
        case SCHEMA_FACET_MIN_LENGTH:
            return "The length must be greater than or equal to " + facet + ".";
        case SCHEMA_FACET_PATTERN:
            return std::string(kNoPattern);
        case SCHEMA_FACET_TOTAL_DIGITS:
            return "The total digit length must be equal to " + facet + ".";
        default:
            return "";
    }
}

// Checks a value against one facet, with compiled patterns kept and without.
void expectChecked(const SchemaFacet &facet, const char *value, bool holds) {
    const std::string message = holds ? "" : messageOf(facet.kind, facet.value);
    EXPECT_EQ(checked(facet, value), message) << nameOf(facet, value);
    cxml::PatternCache patterns;
    for (int round = 0; round < 2; ++round) {
        char buffer[512];
        std::memset(buffer, kUntouched, sizeof buffer);
        EXPECT_EQ(cxml::checkFacet(facet, value, {sizeof buffer, buffer, &patterns}), holds)
            << nameOf(facet, value);
        EXPECT_EQ(written(buffer, sizeof buffer), message) << nameOf(facet, value);
    }
}

// None of these looks at the type.
template <std::size_t count>
void expectOnEveryType(const FacetCase (&rows)[count]) {
    for (const FacetCase &row : rows) {
        for (std::uint32_t code = 0; code < 48; ++code) {
            expectChecked({row.facet, row.kind, code}, row.value, row.holds);
        }
    }
}

TEST(Facet, LengthsCountBytes) {
    expectOnEveryType(kLengths);
}

TEST(Facet, TotalDigitsCountWhatIsLeft) {
    expectOnEveryType(kTotalDigits);
}

TEST(Facet, PatternsMatchAnywhere) {
    for (const FacetCase &row : kPatterns) {
        for (const std::uint32_t code :
             {0u, SCHEMA_TYPE_INT, SCHEMA_TYPE_DATE, SCHEMA_TYPE_STRING}) {
            expectChecked({row.facet, row.kind, code}, row.value, row.holds);
        }
    }
}

TEST(Facet, LongValues) {
    const std::string value(100000, '7');
    expectChecked({"100000", SCHEMA_FACET_LENGTH, SCHEMA_TYPE_STRING}, value.c_str(), true);
    expectChecked({"99999", SCHEMA_FACET_LENGTH, SCHEMA_TYPE_STRING}, value.c_str(), false);
    expectChecked({"99999", SCHEMA_FACET_MAX_LENGTH, SCHEMA_TYPE_STRING}, value.c_str(), false);
    expectChecked({"100000", SCHEMA_FACET_TOTAL_DIGITS, SCHEMA_TYPE_INTEGER}, value.c_str(), true);
    expectChecked({value.c_str(), SCHEMA_FACET_ENUMERATION, SCHEMA_TYPE_STRING}, value.c_str(),
                  true);
}

// Kinds that have no check, of which there are more than those that have.
TEST(Facet, OtherKindsHoldAlways) {
    std::vector<std::uint32_t> kinds = {0x80000000, 0xFFFFFFFF, 0x10000 + SCHEMA_FACET_LENGTH};
    for (std::uint32_t kind = 0; kind <= 40; ++kind) {
        if (messageOf(kind, "").empty()) kinds.push_back(kind);
    }
    EXPECT_EQ(kinds.size(), 3 + 41u - 10u);
    for (const std::uint32_t kind : kinds) {
        for (const char *facet : {"", "5", "[", "a"}) {
            for (const char *value : {"", "6", "b", "P"}) {
                for (const std::uint32_t code : {0u, 7u, 9u, 19u, 20u, 28u}) {
                    expectChecked({facet, kind, code}, value, true);
                }
            }
        }
    }
}

// Nor is their value looked at.
TEST(Facet, OtherKindsNeedNoValue) {
    for (const std::uint32_t kind : {0u, 14u, 16u, 26u, 40u}) {
        const SchemaFacet facet = {nullptr, kind, SCHEMA_TYPE_STRING};
        EXPECT_EQ(checked(facet, "v"), "") << kind;
    }
}

// ---------------------------------------------------------------- comparison

enum class Comparison { kSigned, kUnsigned, kDuration, kDateTime, kText };

// By type code.
constexpr Comparison kComparisons[48] = {
    Comparison::kText,      // none
    Comparison::kText,      // anySimpleType
    Comparison::kText,      // not in use
    Comparison::kSigned,    // byte
    Comparison::kSigned,    // short
    Comparison::kUnsigned,  // unsignedByte
    Comparison::kUnsigned,  // unsignedShort
    Comparison::kSigned,    // int
    Comparison::kSigned,    // long
    Comparison::kUnsigned,  // unsignedInt
    Comparison::kUnsigned,  // unsignedLong
    Comparison::kSigned,    // integer
    Comparison::kUnsigned,  // positiveInteger
    Comparison::kSigned,    // nonPositiveInteger
    Comparison::kSigned,    // negativeInteger
    Comparison::kUnsigned,  // nonNegativeInteger
    Comparison::kText,      // not in use
    Comparison::kText,      // not in use
    Comparison::kText,      // not in use
    Comparison::kDuration,  // duration
    Comparison::kDateTime,  // dateTime
    Comparison::kDateTime,  // date
    Comparison::kDateTime,  // time
    Comparison::kDateTime,  // gYear
    Comparison::kDateTime,  // gMonth
    Comparison::kDateTime,  // gDay
    Comparison::kDateTime,  // gYearMonth
    Comparison::kDateTime,  // gMonthDay
    Comparison::kText,      // string
    Comparison::kText,      // boolean
    Comparison::kText,      // hexBinary
    Comparison::kText,      // base64Binary
    Comparison::kText,      // anyURI
    Comparison::kText,      // QName
    Comparison::kText,      // language
    // without a check
    Comparison::kText,
    Comparison::kText,
    Comparison::kText,
    Comparison::kText,
    Comparison::kText,
    Comparison::kText,
    Comparison::kText,
    Comparison::kText,
    Comparison::kText,
    Comparison::kText,
    Comparison::kText,
    Comparison::kText,
    Comparison::kText,
};

Comparison comparisonOf(std::uint32_t code) {
    return code < 48 ? kComparisons[code] : Comparison::kText;
}

// All five facets that compare, for a value that compares with that of the facet as order says.
void expectCompared(std::uint32_t code, const char *facet, const char *value, int order,
                    bool equal) {
    expectChecked({facet, SCHEMA_FACET_MAX_EXCLUSIVE, code}, value, order < 0);
    expectChecked({facet, SCHEMA_FACET_MAX_INCLUSIVE, code}, value, order <= 0);
    expectChecked({facet, SCHEMA_FACET_MIN_EXCLUSIVE, code}, value, order > 0);
    expectChecked({facet, SCHEMA_FACET_MIN_INCLUSIVE, code}, value, order >= 0);
    expectChecked({facet, SCHEMA_FACET_ENUMERATION, code}, value, equal);
}

struct ComparedCase {
    const char *value, *facet;
    int order;
};

constexpr ComparedCase kSigned[] = {
    {"4", "5", -1},
    {"5", "5", 0},
    {"6", "5", 1},
    {"10", "9", 1},  // not as text
    {"-5", "5", -1},
    {"5", "-5", 1},
    {"-6", "-5", -1},
    {"-4", "-5", 1},
    {"-1", "0", -1},
    {"0", "-1", 1},
    {"+01", "1", 0},
    {"1", "+01", 0},
    {"-0", "0", 0},
    {"0000000000000000000000000127", "127", 0},
    {"2147483648", "2147483647", 1},
    {"4294967296", "0", 1},
    {"9223372036854775807", "9223372036854775807", 0},
    {"9223372036854775806", "9223372036854775807", -1},
    {"-9223372036854775808", "-9223372036854775808", 0},
    {"-9223372036854775808", "-9223372036854775807", -1},
    {"-9223372036854775808", "9223372036854775807", -1},
    // Numbers beyond stay at the end of the range.
    {"9223372036854775808", "9223372036854775807", 0},
    {"99999999999999999999999999", "9223372036854775807", 0},
    {"-9223372036854775809", "-9223372036854775808", 0},
    {"18446744073709551615", "-1", 1},
    // Blanks in front and other text behind are passed over.
    {" 5", "5", 0},
    {"5x", "5", 0},
    {"5.9", "5", 0},
};

constexpr ComparedCase kUnsigned[] = {
    {"4", "5", -1},
    {"5", "5", 0},
    {"6", "5", 1},
    {"10", "9", 1},
    {"+01", "1", 0},
    {"-0", "0", 0},
    {"0000000000000000000000000127", "127", 0},
    {"4294967296", "0", 1},
    {"9223372036854775808", "9223372036854775807", 1},
    {"18446744073709551615", "18446744073709551614", 1},
    {"18446744073709551614", "18446744073709551615", -1},
    {"18446744073709551615", "18446744073709551615", 0},
    {"18446744073709551616", "18446744073709551615", 0},
    {"99999999999999999999999999", "18446744073709551615", 0},
    // A minus sign wraps around.
    {"-1", "5", 1},
    {"5", "-1", -1},
    {"-1", "18446744073709551615", 0},
    {" 5", "5", 0},
    {"5x", "5", 0},
};

constexpr ComparedCase kDurations[] = {
    {"P1Y2M3DT4H5M6S", "P1Y2M3DT4H5M6S", 0},
    {"P1Y2M3DT4H5M6S", "P2Y0M0DT0H0M0S", -1},
    {"P1Y2M3DT4H5M6S", "P1Y3M0DT0H0M0S", -1},
    {"P1Y2M3DT4H5M6S", "P1Y2M4DT0H0M0S", -1},
    {"P1Y2M3DT4H5M6S", "P1Y2M3DT5H0M0S", -1},
    {"P1Y2M3DT4H5M6S", "P1Y2M3DT4H6M0S", -1},
    {"P1Y2M3DT4H5M6S", "P1Y2M3DT4H5M7S", -1},
    {"P1Y2M3DT4H5M7S", "P1Y2M3DT4H5M6S", 1},
    {"P0001Y00002M00003DT00004H00005M00006S", "P1Y2M3DT4H5M6S", 0},
    // Carried.
    {"P0Y0M0DT0H0M59S", "P0Y0M0DT0H1M0S", -1},
    {"P0Y0M0DT0H0M60S", "P0Y0M0DT0H1M0S", 0},
    {"P0Y0M0DT0H0M61S", "P0Y0M0DT0H1M0S", 1},
    {"P0Y0M0DT0H0M61S", "P0Y0M0DT0H1M1S", 0},
    {"P0Y0M0DT0H59M0S", "P0Y0M0DT1H0M0S", -1},
    {"P0Y0M0DT0H60M0S", "P0Y0M0DT1H0M0S", 0},
    {"P0Y0M0DT23H0M0S", "P0Y0M1DT0H0M0S", -1},
    {"P0Y0M0DT24H0M0S", "P0Y0M1DT0H0M0S", 0},
    {"P0Y0M29DT0H0M0S", "P0Y1M0DT0H0M0S", -1},
    {"P0Y0M30DT0H0M0S", "P0Y1M0DT0H0M0S", 0},
    {"P0Y0M31DT0H0M0S", "P0Y1M1DT0H0M0S", 0},
    {"P0Y11M0DT0H0M0S", "P1Y0M0DT0H0M0S", -1},
    {"P0Y12M0DT0H0M0S", "P1Y0M0DT0H0M0S", 0},
    {"P0Y11M29DT23H59M60S", "P1Y0M0DT0H0M0S", 0},
    {"P0Y12M1DT0H0M0S", "P0Y11M31DT0H0M0S", 0},
    {"P0Y0M360DT0H0M0S", "P1Y0M0DT0H0M0S", 0},
    // Fields wrap around at 16 bits on the way.
    {"P0Y0M0DT0H65535M65535S", "P0Y0M0DT18H11M15S", 0},
    {"P0Y0M0DT0H65535M65535S", "P0Y0M0DT1092H0M0S", -1},
};

constexpr ComparedCase kDateTimes[] = {
    {"2001-01-01T10:00:00", "2001-01-01T10:00:01", -1},
    {"2001-01-01T10:00:00", "2001-01-01T10:01:00", -1},
    {"2001-01-01T10:00:00", "2001-01-01T11:00:00", -1},
    {"2001-01-01T23:59:59", "2001-01-02T00:00:00", -1},
    {"2001-01-31T23:59:59", "2001-02-01T00:00:00", -1},
    {"2001-12-31T23:59:59", "2002-01-01T00:00:00", -1},
    {"2002-01-01T00:00:00", "2001-12-31T23:59:59", 1},
    {"2000-02-29T00:00:00", "2000-03-01T00:00:00", -1},
    {"2001-01-01T10:00:00+01:00", "2001-01-01T09:00:00Z", 0},
    {"2001-01-01T08:00:00-01:00", "2001-01-01T09:00:00Z", 0},
    {"2001-01-01T10:00:00+01:01", "2001-01-01T09:00:00Z", -1},
    {"2001-01-01T10:00:00", "2001-01-01T10:00:00Z", 0},  // without an offset as in UTC
    {"2001-01-01T00:30:00+01:00", "2000-12-31T23:30:00Z", 0},
    {"2000-12-31T23:30:00-01:00", "2001-01-01T00:30:00Z", 0},
    {"2001-01-05T04:39:00+99:99", "2001-01-01T00:00:00Z", 0},
    {"2001-01-05T04:39:01+99:99", "2001-01-01T00:00:00Z", 1},
    {"0001-01-01T00:00:00+01:00", "0001-01-01T00:00:00Z", -1},
    {"9999-12-31T23:59:59-01:00", "9999-12-31T23:59:59Z", 1},
    {"0001-01-01T00:00:00Z", "9999-12-31T23:59:59Z", -1},
    // Fractions compare as text.
    {"2001-01-01T10:00:00.5", "2001-01-01T10:00:00.50", -1},
    {"2001-01-01T10:00:00.50", "2001-01-01T10:00:00.5", 1},
    {"2001-01-01T10:00:00.5", "2001-01-01T10:00:00", 1},
    {"2001-01-01T10:00:00.10", "2001-01-01T10:00:00.9", -1},
    {"2001-01-01T10:00:00.5+01:00", "2001-01-01T09:00:00.5Z", 0},
    {"2001-01-01T10:00:00.5", "2001-01-01T10:00:01.4", -1},
    {"2001-01-01T10:00:00.12345678901234567890", "2001-01-01T10:00:00.12345678901234567891", -1},
    // "|" is a sign that counts for nothing behind a fraction, and begins one elsewhere.
    {"2001-01-01T10:00:00.5|01:00", "2001-01-01T10:00:00.5", 0},
    {"2001-01-01T10:00:00|01:00", "2001-01-01T10:00:00", 1},
    {"2001-01-01T10:00:00|01:00", "2001-01-01T10:00:00.01", 0},
};

struct TypedCase {
    std::uint32_t code;
    const char *value, *facet;
    int order;
};

// One step, and the same moment in two spellings, for each type of times.
constexpr TypedCase kTimes[] = {
    {SCHEMA_TYPE_DATE_TIME, "2001-01-01T10:00:00+00:00", "2001-01-01T10:00:00Z", 0},
    {SCHEMA_TYPE_DATE_TIME, "2001-01-01T10:00:00Z", "2001-01-01T10:00:01Z", -1},
    {SCHEMA_TYPE_DATE, "2001-01-01+00:00", "2001-01-01Z", 0},
    {SCHEMA_TYPE_DATE, "2000-02-29", "2000-03-01", -1},
    {SCHEMA_TYPE_DATE, "1900-03-01", "1900-02-28", 1},
    {SCHEMA_TYPE_DATE, "2001-01-01-12:00", "2001-01-01", 1},
    {SCHEMA_TYPE_TIME, "10:00:00+01:00", "09:00:00Z", 0},
    {SCHEMA_TYPE_TIME, "23:59:59", "00:00:00", 1},
    {SCHEMA_TYPE_TIME, "23:59:59.1", "23:59:59.11", -1},
    {SCHEMA_TYPE_TIME, "10:00:00|01:00", "10:00:00.01", 0},
    {SCHEMA_TYPE_G_YEAR, "2001+00:00", "2001Z", 0},
    {SCHEMA_TYPE_G_YEAR, "2001", "2002", -1},
    {SCHEMA_TYPE_G_YEAR, "9999", "0001", 1},
    {SCHEMA_TYPE_G_MONTH, "--05--+00:00", "--05--Z", 0},
    {SCHEMA_TYPE_G_MONTH, "--05--", "--06--", -1},
    {SCHEMA_TYPE_G_MONTH, "--12--", "--01--", 1},
    {SCHEMA_TYPE_G_DAY, "---05+00:00", "---05Z", 0},
    {SCHEMA_TYPE_G_DAY, "---05", "---06", -1},
    {SCHEMA_TYPE_G_DAY, "---01-23:00", "---02", -1},
    {SCHEMA_TYPE_G_DAY, "---01-24:00", "---02", 0},
    {SCHEMA_TYPE_G_YEAR_MONTH, "2001-05+00:00", "2001-05Z", 0},
    {SCHEMA_TYPE_G_YEAR_MONTH, "2001-12", "2002-01", -1},
    {SCHEMA_TYPE_G_MONTH_DAY, "--05-31+00:00", "--05-31Z", 0},
    {SCHEMA_TYPE_G_MONTH_DAY, "--02-28", "--03-01", -1},
};

constexpr const char *kTexts[] = {"", "1", "+1", "01", "2", "a", "A", "true", "\xD6\xD0"};

template <std::size_t count>
void expectComparedAs(Comparison comparison, const ComparedCase (&rows)[count]) {
    for (std::uint32_t code = 0; code < 48; ++code) {
        if (comparisonOf(code) != comparison) continue;
        for (const ComparedCase &row : rows) {
            expectCompared(code, row.facet, row.value, row.order, row.order == 0);
            expectCompared(code, row.value, row.facet, -row.order, row.order == 0);
        }
    }
}

TEST(FacetComparison, SignedIntegers) {
    expectComparedAs(Comparison::kSigned, kSigned);
}

TEST(FacetComparison, UnsignedIntegers) {
    expectComparedAs(Comparison::kUnsigned, kUnsigned);
}

TEST(FacetComparison, Durations) {
    expectComparedAs(Comparison::kDuration, kDurations);
}

// In order as moments, but enumerated as texts.
TEST(FacetComparison, DatesAndTimes) {
    for (const ComparedCase &row : kDateTimes) {
        expectCompared(SCHEMA_TYPE_DATE_TIME, row.facet, row.value, row.order, false);
        expectCompared(SCHEMA_TYPE_DATE_TIME, row.value, row.facet, -row.order, false);
        expectCompared(SCHEMA_TYPE_DATE_TIME, row.value, row.value, 0, true);
    }
    for (const TypedCase &row : kTimes) {
        expectCompared(row.code, row.facet, row.value, row.order, false);
        expectCompared(row.code, row.value, row.facet, -row.order, false);
        expectCompared(row.code, row.facet, row.facet, 0, true);
    }
}

// Intended: other values are neither less nor greater, so that the exclusive facets never hold.
TEST(FacetComparison, TextsAreEqualInOrder) {
    std::vector<std::uint32_t> codes = {48, 49, 99, 0x10000 + SCHEMA_TYPE_INT, 0xFFFFFFFF};
    for (std::uint32_t code = 0; code < 48; ++code) {
        if (comparisonOf(code) == Comparison::kText) codes.push_back(code);
    }
    for (const std::uint32_t code : codes) {
        for (const char *value : kTexts) {
            for (const char *facet : kTexts) {
                expectCompared(code, facet, value, 0, std::strcmp(value, facet) == 0);
            }
        }
    }
}

// Random numbers, near each other and of all lengths, against the C library's own reading.
TEST(FacetComparison, NumbersAsScanfReadsThem) {
    std::mt19937 random(7);
    const auto number = [&random] {
        static constexpr const char *kSigns[] = {"", "", "+", "-"};
        static constexpr const char *kEdges[] = {"9223372036854775807",  "9223372036854775808",
                                                 "18446744073709551615", "18446744073709551616",
                                                 "9223372036854775806",  "0"};
        std::string text = kSigns[random() % 4];
        text.append(random() % 3, '0');
        if (random() % 2) return text + kEdges[random() % 6];
        const unsigned digits = 1 + random() % 21;
        for (unsigned i = 0; i < digits; ++i) text += static_cast<char>('0' + random() % 10);
        return text;
    };
    for (int round = 0; round < 20000; ++round) {
        const std::string value = number();
        const std::string facet = random() % 8 ? number() : value;
        long long a = 0, b = 0;
        std::sscanf(value.c_str(), "%lld", &a);
        std::sscanf(facet.c_str(), "%lld", &b);
        const SchemaFacet asSigned = {facet.c_str(), SCHEMA_FACET_MAX_EXCLUSIVE, SCHEMA_TYPE_LONG};
        EXPECT_EQ(checked(asSigned, value.c_str()).empty(), a < b)
            << nameOf(asSigned, value.c_str());
        unsigned long long c = 0, d = 0;
        std::sscanf(value.c_str(), "%llu", &c);
        std::sscanf(facet.c_str(), "%llu", &d);
        const SchemaFacet asUnsigned = {facet.c_str(), SCHEMA_FACET_MIN_INCLUSIVE,
                                        SCHEMA_TYPE_UNSIGNED_LONG};
        EXPECT_EQ(checked(asUnsigned, value.c_str()).empty(), c >= d)
            << nameOf(asUnsigned, value.c_str());
    }
}

// ---------------------------------------------------------------- messages

// Writes the message of a failing facet into a buffer of this size and compares all of its
// neighbourhood.
void expectCut(const SchemaFacet &facet, const char *value, const std::string &message,
               std::size_t size) {
    std::string buffer(message.size() + 64, kUntouched);
    std::string expected = buffer;
    if (size > 0) {
        const std::string cut = message.substr(0, size - 1);
        expected.replace(0, cut.size() + 1, std::string(cut.c_str(), cut.size() + 1));
    }
    EXPECT_EQ(Schema_CheckFacet(&facet, value, static_cast<std::uint32_t>(size), buffer.data()),
              XML_REFUSED);
    EXPECT_EQ(buffer, expected) << nameOf(facet, value) << ", " << size << " bytes";
}

TEST(FacetMessage, IsCutToItsBuffer) {
    const std::string zeros(700, '0');
    struct Failing {
        std::uint32_t kind, code;
        const char *facet, *value;
    };
    static constexpr Failing kFailing[] = {
        {SCHEMA_FACET_ENUMERATION, SCHEMA_TYPE_STRING, "3", "2"},
        {SCHEMA_FACET_LENGTH, SCHEMA_TYPE_STRING, "3", "ab"},
        {SCHEMA_FACET_MAX_EXCLUSIVE, SCHEMA_TYPE_STRING, "3", "2"},
        {SCHEMA_FACET_MAX_INCLUSIVE, SCHEMA_TYPE_LONG, "3", "4"},
        {SCHEMA_FACET_MAX_LENGTH, SCHEMA_TYPE_STRING, "3", "abcd"},
        {SCHEMA_FACET_MIN_EXCLUSIVE, SCHEMA_TYPE_STRING, "3", "4"},
        {SCHEMA_FACET_MIN_INCLUSIVE, SCHEMA_TYPE_LONG, "3", "2"},
        {SCHEMA_FACET_MIN_LENGTH, SCHEMA_TYPE_STRING, "3", "ab"},
        {SCHEMA_FACET_PATTERN, SCHEMA_TYPE_STRING, "3", "2"},
        {SCHEMA_FACET_TOTAL_DIGITS, SCHEMA_TYPE_STRING, "3", "12"},
    };
    for (const Failing &row : kFailing) {
        for (const bool isLong : {false, true}) {
            const std::string text = isLong ? zeros + row.facet : row.facet;
            const SchemaFacet facet = {text.c_str(), row.kind, row.code};
            const std::string message = messageOf(row.kind, text);
            for (const std::size_t size :
                 {std::size_t{0}, std::size_t{1}, std::size_t{2}, std::size_t{10}, std::size_t{40},
                  message.size() - 1, message.size(), message.size() + 1, message.size() + 2}) {
                expectCut(facet, row.value, message, size);
            }
        }
    }
}

TEST(FacetMessage, HasTheFacetAsItIsWritten) {
    expectChecked({" 007", SCHEMA_FACET_LENGTH, SCHEMA_TYPE_STRING}, "a", false);
    expectChecked({"%s%n%d", SCHEMA_FACET_LENGTH, SCHEMA_TYPE_STRING}, "a", false);
    expectChecked({"", SCHEMA_FACET_MIN_EXCLUSIVE, SCHEMA_TYPE_STRING}, "a", false);
    expectChecked({"\xD6\xD0", SCHEMA_FACET_MAX_EXCLUSIVE, SCHEMA_TYPE_STRING}, "a", false);
}

// ---------------------------------------------------------------- lists

struct ListResult {
    bool valid;
    std::string message;
};

// Checks a value against a list with a validation that is valid so far. What else the record holds
// must stay.
ListResult checkedList(const std::vector<SchemaFacet> &facets, const char *value) {
    char buffer[512];
    std::memset(buffer, kUntouched, sizeof buffer);
    SchemaValidateContext context;
    std::memset(&context, 0x5A, sizeof context);
    context.valid = 1;
    SchemaValidateContext expected;
    std::memcpy(&expected, &context, sizeof context);
    static constexpr SchemaFacet kNone{};
    Schema_CheckFacets(facets.empty() ? &kNone : facets.data(),
                       static_cast<std::uint32_t>(facets.size()), value, sizeof buffer, &context,
                       buffer);
    const bool valid = context.valid != 0;
    expected.valid = valid ? 1 : 0;
    EXPECT_EQ(std::memcmp(&context, &expected, sizeof context), 0) << value;
    return {valid, written(buffer, sizeof buffer)};
}

// As checkedList, from what each facet gives alone.
ListResult modelList(const std::vector<SchemaFacet> &facets, const char *value) {
    bool enumerated = false, matched = false;
    std::string last;
    for (const SchemaFacet &facet : facets) {
        const std::string message = checked(facet, value);
        if (!message.empty()) last = message;
        if (facet.kind == SCHEMA_FACET_ENUMERATION) {
            enumerated = true;
            if (message.empty()) matched = true;
        } else if (!message.empty()) {
            return {false, last};
        }
    }
    return {!enumerated || matched, last};
}

constexpr SchemaFacet kEnumA = {"a", SCHEMA_FACET_ENUMERATION, SCHEMA_TYPE_STRING};
constexpr SchemaFacet kEnumB = {"b", SCHEMA_FACET_ENUMERATION, SCHEMA_TYPE_STRING};
constexpr SchemaFacet kEnumAbc = {"abc", SCHEMA_FACET_ENUMERATION, SCHEMA_TYPE_STRING};
constexpr SchemaFacet kEnumOne = {"1", SCHEMA_FACET_ENUMERATION, SCHEMA_TYPE_INT};
constexpr SchemaFacet kEnumTwo = {"2", SCHEMA_FACET_ENUMERATION, SCHEMA_TYPE_INT};
constexpr SchemaFacet kEnumOneText = {"1", SCHEMA_FACET_ENUMERATION, SCHEMA_TYPE_STRING};
constexpr SchemaFacet kLength1 = {"1", SCHEMA_FACET_LENGTH, SCHEMA_TYPE_STRING};
constexpr SchemaFacet kMax2 = {"2", SCHEMA_FACET_MAX_LENGTH, SCHEMA_TYPE_STRING};
constexpr SchemaFacet kMin2 = {"2", SCHEMA_FACET_MIN_LENGTH, SCHEMA_TYPE_STRING};
constexpr SchemaFacet kHasA = {"a", SCHEMA_FACET_PATTERN, SCHEMA_TYPE_STRING};
constexpr SchemaFacet kHasB = {"b", SCHEMA_FACET_PATTERN, SCHEMA_TYPE_STRING};
constexpr SchemaFacet kFraction = {"1", 16, SCHEMA_TYPE_STRING};
constexpr SchemaFacet kBelow5 = {"5", SCHEMA_FACET_MAX_EXCLUSIVE, SCHEMA_TYPE_INT};
constexpr SchemaFacet kFrom1 = {"1", SCHEMA_FACET_MIN_INCLUSIVE, SCHEMA_TYPE_INT};
constexpr SchemaFacet kDay = {"2001-01-01", SCHEMA_FACET_ENUMERATION, SCHEMA_TYPE_DATE};
constexpr SchemaFacet kMinute = {"P0Y0M0DT0H1M0S", SCHEMA_FACET_ENUMERATION, SCHEMA_TYPE_DURATION};

struct ListCase {
    const char *name;
    std::vector<SchemaFacet> facets;
    const char *value;
    bool valid;
    std::string_view message;
};

const ListCase kLists[] = {
    {"no facets", {}, "a", true, ""},
    {"one that holds", {kLength1}, "a", true, ""},
    {"one that fails", {kLength1}, "ab", false, "The length must be equal to 1."},
    {"both hold", {kFrom1, kBelow5}, "1", true, ""},
    {"the lower one fails",
     {kFrom1, kBelow5},
     "0",
     false,
     "The value must be greater than or equal to 1."},
    {"the upper one fails", {kFrom1, kBelow5}, "5", false, "The value must be less than 5."},
    {"the first that fails is told",
     {kLength1, kHasB},
     "aa",
     false,
     "The length must be equal to 1."},
    {"in the order of the list", {kHasB, kLength1}, "aa", false, kNoPattern},
    {"every pattern must match", {kHasA, kHasB}, "ab", true, ""},
    {"every pattern must match, the first does", {kHasA, kHasB}, "a", false, kNoPattern},
    {"every pattern must match, the second does", {kHasA, kHasB}, "b", false, kNoPattern},
    {"contradicting ones",
     {kLength1, kMin2},
     "a",
     false,
     "The length must be greater than or equal to 2."},
    {"fractionDigits is not checked", {kFraction}, "1.234", true, ""},
    {"the only enumeration", {kEnumA}, "a", true, ""},
    {"not the only enumeration", {kEnumA}, "b", false, kNoMatch},
    {"the first of two, the other one still complains", {kEnumA, kEnumB}, "a", true, kNoMatch},
    {"the second of two, the other one has complained", {kEnumA, kEnumB}, "b", true, kNoMatch},
    {"none of two", {kEnumA, kEnumB}, "c", false, kNoMatch},
    {"the same twice", {kEnumA, kEnumA}, "a", true, ""},
    {"numbers are enumerated by value", {kEnumOne, kEnumTwo}, "+01", true, kNoMatch},
    {"numbers are enumerated by value, the second", {kEnumOne, kEnumTwo}, "02", true, kNoMatch},
    {"numbers are enumerated by value, none", {kEnumOne, kEnumTwo}, "3", false, kNoMatch},
    {"strings are enumerated as text", {kEnumOneText}, "+01", false, kNoMatch},
    {"dates are enumerated as text", {kDay}, "2001-01-01Z", false, kNoMatch},
    {"the same date", {kDay}, "2001-01-01", true, ""},
    {"durations are enumerated by value", {kMinute}, "P0Y0M0DT0H0M60S", true, ""},
    {"another duration", {kMinute}, "P0Y0M0DT0H0M59S", false, kNoMatch},
    {"enumerated, but too short",
     {kEnumA, kMin2},
     "a",
     false,
     "The length must be greater than or equal to 2."},
    {"too short, the enumeration is not reached",
     {kMin2, kEnumB},
     "a",
     false,
     "The length must be greater than or equal to 2."},
    {"a failed enumeration does not end the walk",
     {kEnumB, kMin2},
     "a",
     false,
     "The length must be greater than or equal to 2."},
    {"what follows a failed enumeration holds", {kEnumB, kLength1}, "a", false, kNoMatch},
    {"the enumeration may come last", {kLength1, kHasA, kEnumA}, "a", true, ""},
    {"enumerations around another facet", {kEnumA, kLength1, kEnumB}, "b", true, kNoMatch},
    {"enumerations around another facet, none", {kEnumA, kLength1, kEnumB}, "c", false, kNoMatch},
    // Bounds that are not spelled plainly, behind a plain one or not.
    {"less than a signed bound",
     {kFrom1, {"+5", SCHEMA_FACET_MAX_EXCLUSIVE, SCHEMA_TYPE_INT}},
     "4",
     true,
     ""},
    {"not less than a signed bound",
     {kFrom1, {"+5", SCHEMA_FACET_MAX_EXCLUSIVE, SCHEMA_TYPE_INT}},
     "5",
     false,
     "The value must be less than +5."},
    {"a signed bound itself",
     {kFrom1, {"+5", SCHEMA_FACET_MAX_INCLUSIVE, SCHEMA_TYPE_INT}},
     "5",
     true,
     ""},
    {"greater than a signed bound",
     {kBelow5, {"-1", SCHEMA_FACET_MIN_EXCLUSIVE, SCHEMA_TYPE_INT}},
     "0",
     true,
     ""},
    {"a bound behind a blank",
     {kBelow5, {" 4", SCHEMA_FACET_MIN_INCLUSIVE, SCHEMA_TYPE_INT}},
     "4",
     true,
     ""},
    // Facets that are no bounds of integers, behind one that is.
    {"the length of a number",
     {kBelow5, {"1", SCHEMA_FACET_LENGTH, SCHEMA_TYPE_INT}},
     "4",
     true,
     ""},
    {"texts are all equal",
     {kBelow5, {"5", SCHEMA_FACET_MAX_EXCLUSIVE, SCHEMA_TYPE_STRING}},
     "4",
     false,
     "The value must be less than 5."},
    // A record may lack the value, which counts as empty.
    {"a bound without a value is 0",
     {kBelow5, {nullptr, SCHEMA_FACET_MAX_INCLUSIVE, SCHEMA_TYPE_INT}},
     "0",
     true,
     ""},
    {"more than a bound without a value",
     {kBelow5, {nullptr, SCHEMA_FACET_MAX_INCLUSIVE, SCHEMA_TYPE_INT}},
     "4",
     false,
     "The value must be less than or equal to ."},
    {"an enumeration without a value",
     {{nullptr, SCHEMA_FACET_ENUMERATION, SCHEMA_TYPE_STRING}},
     "",
     true,
     ""},
    {"not in an enumeration without a value",
     {{nullptr, SCHEMA_FACET_ENUMERATION, SCHEMA_TYPE_STRING}},
     "a",
     false,
     kNoMatch},
};

TEST(FacetList, Table) {
    for (const ListCase &row : kLists) {
        SCOPED_TRACE(row.name);
        const ListResult result = checkedList(row.facets, row.value);
        EXPECT_EQ(result.valid, row.valid);
        EXPECT_EQ(result.message, row.message);
        char buffer[512];
        std::memset(buffer, kUntouched, sizeof buffer);
        cxml::PatternCache patterns;
        EXPECT_EQ(cxml::checkFacets(row.facets.data(), static_cast<uint32_t>(row.facets.size()),
                                    row.value, {sizeof buffer, buffer, &patterns}),
                  row.valid);
        EXPECT_EQ(written(buffer, sizeof buffer), row.message);
    }
}

TEST(FacetList, RandomListsFollowFromTheirFacets) {
    constexpr SchemaFacet kPool[] = {kEnumA,       kEnumB,    kEnumAbc, kEnumOne, kEnumTwo,
                                     kEnumOneText, kLength1,  kMax2,    kMin2,    kHasA,
                                     kHasB,        kFraction, kBelow5,  kFrom1};
    constexpr const char *kValues[] = {"", "a", "b", "ab", "ba", "abc", "1", "+01", "2", "5", "bb"};
    std::mt19937 random(11);
    int validOnes = 0;
    for (int round = 0; round < 20000; ++round) {
        std::vector<SchemaFacet> facets;
        for (std::size_t i = random() % 6; i > 0; --i) {
            facets.push_back(kPool[random() % std::size(kPool)]);
        }
        const char *value = kValues[random() % std::size(kValues)];
        const ListResult result = checkedList(facets, value), model = modelList(facets, value);
        ASSERT_EQ(result.valid, model.valid) << round << " " << value;
        ASSERT_EQ(result.message, model.message) << round << " " << value;
        validOnes += result.valid;
    }
    EXPECT_GT(validOnes, 2000);
    EXPECT_LT(validOnes, 18000);
}

TEST(FacetList, NeverSetsTheFlag) {
    char buffer[64] = "";
    for (const std::uint16_t before : {std::uint16_t{0}, std::uint16_t{1}, std::uint16_t{7}}) {
        SchemaValidateContext context{};
        context.valid = before;
        Schema_CheckFacets(&kEnumA, 1, "a", sizeof buffer, &context, buffer);
        EXPECT_EQ(context.valid, before);
        Schema_CheckFacets(&kEnumA, 1, "b", sizeof buffer, &context, buffer);
        EXPECT_EQ(context.valid, 0);
    }
}

// A count of 0 is nothing to check, whatever stands at facets.
TEST(FacetList, OfNone) {
    SchemaValidateContext context{};
    context.valid = 1;
    char buffer[64] = "untouched";
    Schema_CheckFacets(&kEnumA, 0, "b", sizeof buffer, &context, buffer);
    Schema_CheckFacets(nullptr, 0, "b", sizeof buffer, &context, buffer);
    EXPECT_EQ(context.valid, 1);
    EXPECT_STREQ(buffer, "untouched");
}

TEST(FacetList, OfManyEnumerations) {
    std::vector<std::string> texts;
    for (int i = 0; i < 5000; ++i) texts.push_back("v" + std::to_string(i));
    std::vector<SchemaFacet> facets;
    for (const std::string &text : texts) {
        facets.push_back({text.c_str(), SCHEMA_FACET_ENUMERATION, SCHEMA_TYPE_STRING});
    }
    EXPECT_TRUE(checkedList(facets, "v0").valid);
    EXPECT_TRUE(checkedList(facets, "v4999").valid);
    EXPECT_FALSE(checkedList(facets, "v5000").valid);
}

}  // namespace
