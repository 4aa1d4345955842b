// Values of the built-in types by code, and what is said of those that are invalid.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "compactxml.h"
#include "tests/support/faults.h"
#include "tests/support/feeds.h"

namespace {

constexpr std::uint32_t kCodes = 61;  // 0 to 60: all there are, and some more

// By code; those behind have none. Rows 20, 34 and 46 are meant.
constexpr const char *kNames[] = {
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
static_assert(std::size(kNames) == 48);

std::string nameOf(std::uint32_t code) {
    return code < std::size(kNames) ? kNames[code] : "";
}

SchemaSimpleType typeOf(std::uint32_t code) {
    SchemaSimpleType type{};
    type.name = "t";
    type.builtinCode = code;
    return type;
}

// The outcome of a check with a buffer of this size, whose bytes behind size must stay.
struct Outcome {
    std::uint32_t result;
    bool written;         // anything at all
    std::string message;  // if so
    bool operator==(const Outcome &) const = default;
};

Outcome check(std::uint32_t code, const std::string &value, std::uint32_t size = 512) {
    constexpr char kUntouched = '\x5A';
    const SchemaSimpleType type = typeOf(code);
    // Exactly size bytes, for sanitizers; and with some more, for all others.
    std::vector<char> exact(size, kUntouched), roomy(size + 64, kUntouched);
    const std::uint32_t result = Schema_CheckBaseType(&type, value.c_str(), size, roomy.data());
    for (std::size_t i = size; i < roomy.size(); ++i) {
        EXPECT_EQ(roomy[i], kUntouched) << "byte " << i << " of a buffer of " << size;
    }
    char none = kUntouched;
    EXPECT_EQ(Schema_CheckBaseType(&type, value.c_str(), size, size ? exact.data() : &none), result)
        << code;
    EXPECT_EQ(none, kUntouched);
    roomy.resize(size);
    EXPECT_EQ(exact, roomy);
    const std::string bytes(exact.begin(), exact.end());
    const bool written = bytes != std::string(size, kUntouched);
    const std::size_t end = bytes.find('\0');
    EXPECT_EQ(written, end != std::string::npos) << code << ' ' << size;
    return {result, written, written ? bytes.substr(0, end) : ""};
}

std::string shown(std::uint32_t code, const std::string &value) {
    return std::to_string(code) + " \"" + support::printable(value) + "\"";
}

// ---------------------------------------------------------------- values

struct ValueCase {
    std::uint32_t code;
    const char *value;  // not empty
    bool valid;
};
constexpr ValueCase kValues[] = {
    {SCHEMA_TYPE_BYTE, "127", true},
    {SCHEMA_TYPE_BYTE, "128", false},
    {SCHEMA_TYPE_BYTE, "-128", true},
    {SCHEMA_TYPE_BYTE, "-129", false},
    {SCHEMA_TYPE_BYTE, "+128", false},
    {SCHEMA_TYPE_BYTE, "1234", false},
    {SCHEMA_TYPE_BYTE, "12345", false},
    {SCHEMA_TYPE_BYTE, "|999", true},
    {SCHEMA_TYPE_BYTE, "0000000000000000000000127", true},
    {SCHEMA_TYPE_BYTE, "a", false},
    {SCHEMA_TYPE_SHORT, "32767", true},
    {SCHEMA_TYPE_SHORT, "32768", false},
    {SCHEMA_TYPE_SHORT, "-32768", true},
    {SCHEMA_TYPE_SHORT, "-32769", false},
    {SCHEMA_TYPE_UNSIGNED_BYTE, "255", true},
    {SCHEMA_TYPE_UNSIGNED_BYTE, "256", false},
    {SCHEMA_TYPE_UNSIGNED_BYTE, "0", true},
    {SCHEMA_TYPE_UNSIGNED_BYTE, "-1", false},
    {SCHEMA_TYPE_UNSIGNED_SHORT, "65535", true},
    {SCHEMA_TYPE_UNSIGNED_SHORT, "65536", false},
    {SCHEMA_TYPE_UNSIGNED_SHORT, "-1", false},
    {SCHEMA_TYPE_INT, "2147483647", true},
    {SCHEMA_TYPE_INT, "2147483648", false},
    {SCHEMA_TYPE_INT, "-2147483648", true},
    {SCHEMA_TYPE_INT, "-2147483649", false},
    {SCHEMA_TYPE_LONG, "9223372036854775807", true},
    {SCHEMA_TYPE_LONG, "9223372036854775808", false},
    {SCHEMA_TYPE_LONG, "-9223372036854775808", true},
    {SCHEMA_TYPE_LONG, "-9223372036854775809", false},
    {SCHEMA_TYPE_UNSIGNED_INT, "4294967295", true},
    {SCHEMA_TYPE_UNSIGNED_INT, "4294967296", false},
    {SCHEMA_TYPE_UNSIGNED_INT, "-1", false},
    {SCHEMA_TYPE_UNSIGNED_LONG, "18446744073709551615", true},
    {SCHEMA_TYPE_UNSIGNED_LONG, "18446744073709551616", false},
    {SCHEMA_TYPE_UNSIGNED_LONG, "-1", false},
    {SCHEMA_TYPE_INTEGER, "9223372036854775807", true},
    {SCHEMA_TYPE_INTEGER, "9223372036854775808", false},
    {SCHEMA_TYPE_INTEGER, "-9223372036854775808", true},
    {SCHEMA_TYPE_INTEGER, "-9223372036854775809", false},
    {SCHEMA_TYPE_POSITIVE_INTEGER, "1", true},
    {SCHEMA_TYPE_POSITIVE_INTEGER, "+1", true},
    {SCHEMA_TYPE_POSITIVE_INTEGER, "0", false},
    {SCHEMA_TYPE_NON_POSITIVE_INTEGER, "0", true},
    {SCHEMA_TYPE_NON_POSITIVE_INTEGER, "-0", true},
    {SCHEMA_TYPE_NON_POSITIVE_INTEGER, "1", false},
    {SCHEMA_TYPE_NEGATIVE_INTEGER, "-1", true},
    {SCHEMA_TYPE_NEGATIVE_INTEGER, "0", false},
    {SCHEMA_TYPE_NEGATIVE_INTEGER, "-0", false},
    {SCHEMA_TYPE_NON_NEGATIVE_INTEGER, "0", true},
    {SCHEMA_TYPE_NON_NEGATIVE_INTEGER, "-0", false},
    {SCHEMA_TYPE_NON_NEGATIVE_INTEGER, "-1", false},
    {SCHEMA_TYPE_DURATION, "P1Y0M0DT0H0M0S", true},
    {SCHEMA_TYPE_DURATION, "P1Y", false},
    {SCHEMA_TYPE_DATE_TIME, "2000-02-29T23:59:59.5Z", true},
    {SCHEMA_TYPE_DATE_TIME, "2000-02-29", false},
    {SCHEMA_TYPE_DATE, "2000-02-29", true},
    {SCHEMA_TYPE_DATE, "1900-02-29", false},
    {SCHEMA_TYPE_TIME, "23:59:59", true},
    {SCHEMA_TYPE_TIME, "24:00:00", false},
    {SCHEMA_TYPE_G_YEAR, "2000", true},
    {SCHEMA_TYPE_G_YEAR, "0000", false},
    {SCHEMA_TYPE_G_MONTH, "--12--", true},
    {SCHEMA_TYPE_G_MONTH, "--12", false},
    {SCHEMA_TYPE_G_DAY, "---30", true},
    {SCHEMA_TYPE_G_DAY, "---31", false},
    {SCHEMA_TYPE_G_YEAR_MONTH, "2000-12", true},
    {SCHEMA_TYPE_G_YEAR_MONTH, "2000-13", false},
    {SCHEMA_TYPE_G_MONTH_DAY, "--02-28", true},
    {SCHEMA_TYPE_G_MONTH_DAY, "--02-29", false},
    {SCHEMA_TYPE_STRING, "a", true},
    {SCHEMA_TYPE_STRING, " ", true},
    {SCHEMA_TYPE_STRING, "\n", true},
    {SCHEMA_TYPE_STRING, "\xD6\xD0\xCE\xC4", true},
    {SCHEMA_TYPE_STRING, "\xFF", true},
    {SCHEMA_TYPE_BOOLEAN, "1", true},
    {SCHEMA_TYPE_BOOLEAN, "0", true},
    {SCHEMA_TYPE_BOOLEAN, "true", true},
    {SCHEMA_TYPE_BOOLEAN, "false", true},
    {SCHEMA_TYPE_BOOLEAN, "TRUE", false},
    {SCHEMA_TYPE_BOOLEAN, "True", false},
    {SCHEMA_TYPE_BOOLEAN, "2", false},
    {SCHEMA_TYPE_BOOLEAN, "01", false},
    {SCHEMA_TYPE_BOOLEAN, "10", false},
    {SCHEMA_TYPE_BOOLEAN, "true ", false},
    {SCHEMA_TYPE_BOOLEAN, " true", false},
    {SCHEMA_TYPE_BOOLEAN, "tru", false},
    {SCHEMA_TYPE_BOOLEAN, "truee", false},
    {SCHEMA_TYPE_BOOLEAN, "true\n", false},
    {SCHEMA_TYPE_HEX_BINARY, "abc", true},
    {SCHEMA_TYPE_HEX_BINARY, "0123456789abcdefABCDEF", true},
    {SCHEMA_TYPE_HEX_BINARY, "abcg", false},
    {SCHEMA_TYPE_HEX_BINARY, "0x1", false},
    {SCHEMA_TYPE_HEX_BINARY, "ab cd", false},
    {SCHEMA_TYPE_BASE64_BINARY, "QUJD", true},
    {SCHEMA_TYPE_BASE64_BINARY, "QUI=", true},
    {SCHEMA_TYPE_BASE64_BINARY, "QQ==", true},
    {SCHEMA_TYPE_BASE64_BINARY, "QUJDQQ==", true},
    {SCHEMA_TYPE_BASE64_BINARY, "+/9z", true},
    {SCHEMA_TYPE_BASE64_BINARY, "QUJ", false},
    {SCHEMA_TYPE_BASE64_BINARY, "QU", false},
    {SCHEMA_TYPE_BASE64_BINARY, "Q", false},
    {SCHEMA_TYPE_BASE64_BINARY, "Q===", false},
    {SCHEMA_TYPE_BASE64_BINARY, "QUJD=", false},
    {SCHEMA_TYPE_BASE64_BINARY, "QUI==", false},
    {SCHEMA_TYPE_BASE64_BINARY, "QQ=", false},
    {SCHEMA_TYPE_BASE64_BINARY, "====", false},
    {SCHEMA_TYPE_BASE64_BINARY, "QQ==QUJD", false},
    {SCHEMA_TYPE_BASE64_BINARY, "QUJD QUJD", false},
    {SCHEMA_TYPE_BASE64_BINARY, "QUJD\nQUJD", false},
    {SCHEMA_TYPE_BASE64_BINARY, "QU-_", false},
    {SCHEMA_TYPE_ANY_URI, "http:x", true},
    {SCHEMA_TYPE_ANY_URI, "http://a/b", true},
    {SCHEMA_TYPE_ANY_URI, "a/b", true},
    {SCHEMA_TYPE_ANY_URI, "a/b:c", true},
    {SCHEMA_TYPE_ANY_URI, "a:b", true},
    {SCHEMA_TYPE_ANY_URI, "///", true},
    {SCHEMA_TYPE_ANY_URI, "a b/c", true},
    {SCHEMA_TYPE_ANY_URI, "\xD6\xD0/\xCE\xC4", true},
    {SCHEMA_TYPE_ANY_URI, "http://a:80/", false},
    {SCHEMA_TYPE_ANY_URI, "urn:a:b", false},
    {SCHEMA_TYPE_ANY_URI, "abc", false},
    {SCHEMA_TYPE_ANY_URI, "a/", false},
    {SCHEMA_TYPE_ANY_URI, "/a", false},
    {SCHEMA_TYPE_ANY_URI, "//", false},
    {SCHEMA_TYPE_ANY_URI, "a:", false},
    {SCHEMA_TYPE_ANY_URI, ":a", false},
    {SCHEMA_TYPE_ANY_URI, "/", false},
    {SCHEMA_TYPE_ANY_URI, ":", false},
    {SCHEMA_TYPE_QNAME, "a", true},
    {SCHEMA_TYPE_QNAME, "_a-b.c1", true},
    {SCHEMA_TYPE_QNAME, "\xD6\xD0", true},
    {SCHEMA_TYPE_QNAME, "p:a", false},
    {SCHEMA_TYPE_QNAME, ":a", false},
    {SCHEMA_TYPE_QNAME, "a:", false},
    {SCHEMA_TYPE_QNAME, "1a", false},
    {SCHEMA_TYPE_QNAME, "-a", false},
    {SCHEMA_TYPE_QNAME, "a b", false},
    {SCHEMA_TYPE_QNAME, " a", false},
    {SCHEMA_TYPE_QNAME, "a ", false},
    {SCHEMA_TYPE_QNAME, "a\xFF", false},
    {SCHEMA_TYPE_LANGUAGE, "en", true},
    {SCHEMA_TYPE_LANGUAGE, "en-us", true},
    {SCHEMA_TYPE_LANGUAGE, "sv-fi", true},
    {SCHEMA_TYPE_LANGUAGE, "EN", false},
    {SCHEMA_TYPE_LANGUAGE, "en-US", false},
    {SCHEMA_TYPE_LANGUAGE, "en_us", false},
    {SCHEMA_TYPE_LANGUAGE, "en-us ", false},
    {SCHEMA_TYPE_LANGUAGE, "de-de", false},
};

TEST(BaseType, Values) {
    for (const ValueCase &row : kValues) {
        EXPECT_EQ(SCHEMA_CheckBaseTypeNonNull(row.code, row.value), row.valid ? 1u : 0u)
            << shown(row.code, row.value);
        const std::string message =
            std::string(row.value) + " is an invalid value of " + nameOf(row.code) + " type value.";
        const Outcome expected = row.valid ? Outcome{1, false, ""} : Outcome{0, true, message};
        const Outcome outcome = check(row.code, row.value);
        EXPECT_EQ(outcome, expected) << shown(row.code, row.value) << ": " << outcome.message;
    }
}

// Types whose code has no check: 0, the holes, and all behind language.
bool hasCheck(std::uint32_t code) {
    return (code >= 3 && code <= 15) || (code >= 19 && code <= 34);
}

TEST(BaseType, WithoutACheckNoValueIsValid) {
    for (std::uint32_t code = 0; code < kCodes; ++code) {
        if (hasCheck(code)) continue;
        for (const std::string value : {"1", "a", "0", "true", "1.5", " ", "en", "\xD6\xD0"}) {
            EXPECT_EQ(SCHEMA_CheckBaseTypeNonNull(code, value.c_str()), 0u) << shown(code, value);
            const std::string message =
                value + " is an invalid value of " + nameOf(code) + " type value.";
            const Outcome expected = code == 1 ? Outcome{1, false, ""} : Outcome{0, true, message};
            EXPECT_EQ(check(code, value), expected) << shown(code, value);
        }
    }
    for (const std::uint32_t code : {0x10003u, 0x80000003u, 0xFFFFFFFFu}) {
        EXPECT_EQ(SCHEMA_CheckBaseTypeNonNull(code, "1"), 0u) << code;
        EXPECT_EQ(check(code, "1"), (Outcome{0, true, "1 is an invalid value of  type value."}));
    }
}

// Every other type has a value of its own in the table above.
TEST(BaseType, EveryCheckHasBothVerdicts) {
    for (std::uint32_t code = 0; code < kCodes; ++code) {
        int valid = 0, invalid = 0;
        for (const ValueCase &row : kValues) {
            if (row.code == code) ++(row.valid ? valid : invalid);
        }
        EXPECT_EQ(valid > 0, hasCheck(code)) << code;
        EXPECT_EQ(invalid > 0, hasCheck(code) && code != SCHEMA_TYPE_STRING) << code;
    }
}

TEST(BaseType, EmptyValues) {
    for (std::uint32_t code = 0; code < kCodes; ++code) {
        const bool valid = code == SCHEMA_TYPE_ANY_SIMPLE_TYPE || code == SCHEMA_TYPE_STRING ||
                           code == SCHEMA_TYPE_BASE64_BINARY;
        const Outcome expected =
            valid ? Outcome{1, false, ""} : Outcome{0, true, nameOf(code) + " cannot be empty."};
        const Outcome outcome = check(code, "");
        EXPECT_EQ(outcome, expected) << code << ": " << outcome.message;
    }
}

// ---------------------------------------------------------------- messages

struct MessageCase {
    std::uint32_t code;
    const char *value, *message;
};
constexpr MessageCase kMessages[] = {
    {SCHEMA_TYPE_BYTE, "", "byte cannot be empty."},
    {SCHEMA_TYPE_BYTE, "128", "128 is an invalid value of byte type value."},
    {SCHEMA_TYPE_HEX_BINARY, "", "hexBinary cannot be empty."},
    {SCHEMA_TYPE_DATE_TIME, "", "datetime cannot be empty."},
    {SCHEMA_TYPE_DATE_TIME, "x", "x is an invalid value of datetime type value."},
    {SCHEMA_TYPE_LANGUAGE, "", "NOTATION cannot be empty."},
    {SCHEMA_TYPE_LANGUAGE, "EN", "EN is an invalid value of NOTATION type value."},
    {37, "", "language cannot be empty."},
    {37, "en", "en is an invalid value of language type value."},
    {46, "", "ENTITYS cannot be empty."},
    {46, "a", "a is an invalid value of ENTITYS type value."},
    {2, "", "anyType cannot be empty."},
    {16, "1.5", "1.5 is an invalid value of decimal type value."},
    {0, "", " cannot be empty."},
    {0, "a", "a is an invalid value of  type value."},
    {47, "", " cannot be empty."},
    {48, "", " cannot be empty."},
    {48, "a", "a is an invalid value of  type value."},
    {UINT32_MAX, "", " cannot be empty."},
    // Not taken for a format.
    {SCHEMA_TYPE_BOOLEAN, "%s%n%d%%", "%s%n%d%% is an invalid value of boolean type value."},
    {SCHEMA_TYPE_BOOLEAN, "a\nb", "a\nb is an invalid value of boolean type value."},
    {SCHEMA_TYPE_BOOLEAN, "\xD6\xD0", "\xD6\xD0 is an invalid value of boolean type value."},
};

TEST(BaseType, Messages) {
    for (const MessageCase &row : kMessages) {
        EXPECT_EQ(check(row.code, row.value), (Outcome{0, true, row.message}))
            << shown(row.code, row.value);
    }
}

// The value is quoted as far as size - 111 bytes of it; a buffer with less room than that cuts the
// message where it ends.
std::string messageIn(std::uint32_t size, const std::string &value, std::uint32_t code) {
    const std::string quoted = size >= 111 ? value.substr(0, size - 111) : value;
    const std::string message = quoted + " is an invalid value of " + nameOf(code) + " type value.";
    return message.substr(0, size - 1);
}

TEST(BaseType, HowMuchOfAValueIsQuoted) {
    std::string value;
    while (value.size() < 600) value += static_cast<char>('a' + value.size() % 26);
    for (const std::uint32_t size :
         {1u,   2u,   3u,   49u,  50u,  109u, 110u, 111u, 112u,  113u,
          127u, 128u, 256u, 511u, 512u, 513u, 710u, 711u, 1024u, 4096u}) {
        for (const std::uint32_t code :
             {SCHEMA_TYPE_BOOLEAN, SCHEMA_TYPE_NON_POSITIVE_INTEGER, 48u}) {
            for (const std::size_t length : {1u, 2u, 17u, 400u, 401u, 402u, 599u, 600u}) {
                const std::string beginning = value.substr(0, length);
                EXPECT_EQ(check(code, beginning, size),
                          (Outcome{0, true, messageIn(size, beginning, code)}))
                    << "code " << code << ", " << length << " bytes into " << size;
            }
        }
    }
}

TEST(BaseType, QuotesOf600BytesToTheLetter) {
    const std::string value(600, 'x');
    const std::string rest = " is an invalid value of boolean type value.";
    const auto message = [&value](std::uint32_t size) {
        return check(SCHEMA_TYPE_BOOLEAN, value, size).message;
    };
    EXPECT_EQ(check(SCHEMA_TYPE_BOOLEAN, value, 0), (Outcome{0, false, ""}));
    EXPECT_EQ(message(1), "");
    EXPECT_EQ(message(2), "x");
    EXPECT_EQ(message(50), std::string(49, 'x'));
    EXPECT_EQ(message(110), std::string(109, 'x'));
    EXPECT_EQ(message(111), rest);
    EXPECT_EQ(message(112), "x" + rest);
    EXPECT_EQ(message(113), "xx" + rest);
    EXPECT_EQ(message(128), std::string(17, 'x') + rest);
    EXPECT_EQ(message(512), std::string(401, 'x') + rest);
    EXPECT_EQ(message(710), std::string(599, 'x') + rest);
    EXPECT_EQ(message(711), value + rest);
    EXPECT_EQ(message(1024), value + rest);
}

TEST(BaseType, EmptyValueIntoSmallBuffers) {
    const std::string message = "unsignedShort cannot be empty.";
    for (std::uint32_t size = 1; size <= message.size() + 2; ++size) {
        EXPECT_EQ(check(SCHEMA_TYPE_UNSIGNED_SHORT, "", size),
                  (Outcome{0, true, message.substr(0, size - 1)}))
            << size;
    }
    EXPECT_EQ(check(SCHEMA_TYPE_UNSIGNED_SHORT, "", 0), (Outcome{0, false, ""}));
}

// A size that the caller only claims: no byte is written behind the message.
TEST(BaseType, TheGreatestSize) {
    const SchemaSimpleType type = typeOf(SCHEMA_TYPE_BOOLEAN);
    const std::string value(600, 'x');
    const std::string message = value + " is an invalid value of boolean type value.";
    std::vector<char> buffer(message.size() + 1);
    EXPECT_EQ(Schema_CheckBaseType(&type, value.c_str(), UINT32_MAX, buffer.data()), 0u);
    EXPECT_EQ(buffer.data(), message);
}

// ---------------------------------------------------------------- arguments and memory

TEST(BaseType, NullArguments) {
    const SchemaSimpleType type = typeOf(SCHEMA_TYPE_BYTE);
    char buffer[] = "before";
    EXPECT_EQ(Schema_CheckBaseType(nullptr, "1", sizeof buffer, buffer), 0u);
    EXPECT_EQ(Schema_CheckBaseType(&type, nullptr, sizeof buffer, buffer), 0u);
    EXPECT_EQ(Schema_CheckBaseType(&type, "a", sizeof buffer, nullptr), 0u);
    EXPECT_EQ(Schema_CheckBaseType(&type, "", sizeof buffer, nullptr), 0u);
    EXPECT_EQ(Schema_CheckBaseType(nullptr, nullptr, 0, nullptr), 0u);
    EXPECT_STREQ(buffer, "before");
    for (std::uint32_t code = 0; code < kCodes; ++code) {
        EXPECT_EQ(SCHEMA_CheckBaseTypeNonNull(code, nullptr), 0u) << code;
    }
}

TEST(BaseType, OnlyTheCodeOfTheRecordCounts) {
    // As a restriction of string with an enumeration: neither is looked at.
    const SchemaSimpleType base = typeOf(SCHEMA_TYPE_STRING);
    const SchemaSimpleType *const members[] = {&base, &base};
    const SchemaFacet facet{"7", 0, SCHEMA_TYPE_STRING};
    SchemaSimpleType type = typeOf(SCHEMA_TYPE_BYTE);
    type.members = members;
    type.memberCount = 2;
    type.facets = &facet;
    type.facetCount = 1;
    type.name = nullptr;
    type.flags16 = UINT16_MAX;
    char buffer[128] = "";
    EXPECT_EQ(Schema_CheckBaseType(&type, "1", sizeof buffer, buffer), 1u);
    EXPECT_EQ(Schema_CheckBaseType(&type, "a", sizeof buffer, buffer), 0u);
    EXPECT_STREQ(buffer, "a is an invalid value of byte type value.");
}

bool isAscii(std::string_view text) {
    for (const char c : text) {
        if (static_cast<unsigned char>(c) > 0x7F) return false;
    }
    return true;
}

TEST(BaseType, AsciiValuesAllocateNothing) {
    char buffer[512];
    const support::FaultyHeap heap(1, true);
    for (const ValueCase &row : kValues) {
        if (!isAscii(row.value)) continue;
        const SchemaSimpleType type = typeOf(row.code);
        EXPECT_EQ(Schema_CheckBaseType(&type, row.value, sizeof buffer, buffer),
                  row.valid ? 1u : 0u)
            << row.code << ' ' << row.value;
    }
    for (std::uint32_t code = 0; code < kCodes; ++code) {
        const SchemaSimpleType type = typeOf(code);
        Schema_CheckBaseType(&type, "", sizeof buffer, buffer);
        Schema_CheckBaseType(&type, "1", sizeof buffer, buffer);
    }
    EXPECT_EQ(heap.allocations(), 0u);
}

TEST(BaseType, NamesBeyondAsciiAreInvalidWithoutMemory) {
    std::size_t allocations = 0;
    {
        const support::FaultyHeap plenty(0);
        ASSERT_EQ(SCHEMA_CheckBaseTypeNonNull(SCHEMA_TYPE_QNAME, "\xD6\xD0"), 1u);
        allocations = plenty.allocations();
        EXPECT_EQ(plenty.blocksInUse(), 0u);
    }
    for (std::size_t nth = 1; nth <= allocations; ++nth) {
        const support::FaultyHeap heap(nth);
        EXPECT_EQ(SCHEMA_CheckBaseTypeNonNull(SCHEMA_TYPE_QNAME, "\xD6\xD0"), 0u) << nth;
        EXPECT_EQ(heap.blocksInUse(), 0u) << nth;
    }
}

}  // namespace
