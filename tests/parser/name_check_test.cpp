// Character classes, names without a colon, and what a namespace declaration may bind.
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>

#include "compactxml.h"
#include "parser/char_class.h"
#include "tests/support/faults.h"
#include "tests/support/reference_iconv.h"

namespace {

using support::convertWhole;

struct Range {
    std::int32_t first, last;
};

constexpr Range kNameStart[] = {
    {0x41, 0x5A},     {0x5F, 0x5F},     {0x61, 0x7A},     {0xC0, 0xD6},     {0xD8, 0xF6},
    {0xF8, 0x2FF},    {0x370, 0x37D},   {0x37F, 0x1FFF},  {0x200C, 0x200D}, {0x2070, 0x218F},
    {0x2C00, 0x2FEF}, {0x3001, 0xD7FF}, {0xF900, 0xFDCF}, {0xFDF0, 0xFFFD}, {0x10000, 0xEFFFF},
};
constexpr Range kNameMore[] = {
    {0x2D, 0x2D}, {0x2E, 0x2E}, {0x30, 0x39}, {0xB7, 0xB7}, {0x300, 0x36F}, {0x203F, 0x2040},
};
constexpr Range kLegal[] = {
    {0x9, 0xA}, {0xD, 0xD}, {0x20, 0xD7FF}, {0xE000, 0xFFFD}, {0x10000, 0x10FFFF},
};

template <std::size_t N>
bool isIn(const Range (&ranges)[N], std::int32_t c) {
    for (const Range &range : ranges) {
        if (c >= range.first && c <= range.last) return true;
    }
    return false;
}

bool mayStartName(std::int32_t c) {
    return isIn(kNameStart, c);
}
bool mayContinueName(std::int32_t c) {
    return isIn(kNameStart, c) || isIn(kNameMore, c);
}

void expectClasses(std::int32_t c) {
    ASSERT_EQ(cxml::XML_Parser_IsLegalChar(c), isIn(kLegal, c)) << std::hex << c;
    ASSERT_EQ(cxml::XML_Parser_IsNameStartChar(c), mayStartName(c)) << std::hex << c;
    ASSERT_EQ(cxml::XML_Parser_IsNameChar(c), mayContinueName(c)) << std::hex << c;
}

TEST(CharClass, EveryCodePoint) {
    for (std::int32_t c = 0; c <= 0x110000; ++c) {
        ASSERT_NO_FATAL_FAILURE(expectClasses(c));
    }
}

TEST(CharClass, NumbersThatAreNoCodePoints) {
    for (const std::int32_t c :
         {-1, -2, -0x41, 0x110001, 0x200041, 0x1000041, std::numeric_limits<std::int32_t>::max(),
          std::numeric_limits<std::int32_t>::min()}) {
        ASSERT_NO_FATAL_FAILURE(expectClasses(c));
    }
}

TEST(CharClass, WhatIsEasilyGotWrong) {
    EXPECT_TRUE(cxml::XML_Parser_IsLegalChar('\t'));
    EXPECT_TRUE(cxml::XML_Parser_IsLegalChar('\r'));
    EXPECT_TRUE(cxml::XML_Parser_IsLegalChar('\n'));
    EXPECT_FALSE(cxml::XML_Parser_IsLegalChar('\f'));
    EXPECT_FALSE(cxml::XML_Parser_IsNameStartChar(':'));  // names here have no colon
    EXPECT_FALSE(cxml::XML_Parser_IsNameChar(':'));
    EXPECT_FALSE(cxml::XML_Parser_IsNameStartChar(0x37E));  // the Greek question mark
    EXPECT_FALSE(cxml::XML_Parser_IsNameStartChar(0xD7));   // the multiplication sign
}

// ---- XML_CheckQName ------------------------------------------------------------------------

// The answer by converting the whole name and looking at every code point.
std::uint32_t expectedCheck(const std::string &name) {
    std::string terminated = name;
    terminated += '\0';
    const support::Conversion wide =
        convertWhole(XML_ENCODING_GB18030, XML_ENCODING_UTF_32BE, terminated);
    if (wide.error != 0) return XML_REFUSED;
    bool first = true;
    for (std::size_t i = 0; i + 4 <= wide.bytes.size(); i += 4) {
        std::uint32_t c = 0;
        for (std::size_t k = 0; k < 4; ++k) {
            c = c << 8 | static_cast<unsigned char>(wide.bytes[i + k]);
        }
        if (c == 0 && !first) return XML_OK;
        const auto point = static_cast<std::int32_t>(c);
        if (!(first ? mayStartName(point) : mayContinueName(point))) return XML_REFUSED;
        first = false;
    }
    return XML_REFUSED;
}

TEST(CheckQName, Table) {
    struct Row {
        const char *what;
        std::string name;
        std::uint32_t result;
    };
    const Row kRows[] = {
        {"letter", "a", XML_OK},
        {"underscore and digit", "_x1", XML_OK},
        {"e with acute accent", "\xA8\xA6", XML_OK},
        {"all that may follow", "a-.09_Zz", XML_OK},
        {"two Chinese characters", "\xD6\xD0\xCE\xC4", XML_OK},
        {"Chinese after ASCII", "port\xD6\xD0", XML_OK},
        {"four-byte letter", "\x90\x30\x81\x30", XML_OK},
        {"xml is like any other", "xml", XML_OK},
        {"xmlns too", "xmlns", XML_OK},
        {"empty", "", XML_REFUSED},
        {"digit first", "1a", XML_REFUSED},
        {"hyphen first", "-a", XML_REFUSED},
        {"full stop first", ".a", XML_REFUSED},
        {"colon inside", "a:b", XML_REFUSED},
        {"colon first", ":a", XML_REFUSED},
        {"colon last", "a:", XML_REFUSED},
        {"colon alone", ":", XML_REFUSED},
        {"blank inside", "a b", XML_REFUSED},
        {"blank first", " a", XML_REFUSED},
        {"blank last", "a ", XML_REFUSED},
        {"line feed last", "a\n", XML_REFUSED},
        {"control byte", "a\x01", XML_REFUSED},
        {"delete", "a\x7F", XML_REFUSED},
        {"slash", "a/b", XML_REFUSED},
        {"less-than", "a<", XML_REFUSED},
        {"middle dot first", "\xA1\xA4", XML_REFUSED},
        {"middle dot later", "a\xA1\xA4", XML_OK},
        {"ideographic comma", "\xA1\xA2", XML_OK},
        {"ideographic space", "a\xA1\xA1", XML_REFUSED},
        {"lone lead byte", "\xD6", XML_REFUSED},
        {"lone lead byte at the end", "a\xD6", XML_REFUSED},
        {"two of four bytes", "\x81\x30", XML_REFUSED},
        {"two of four bytes at the end", "a\x81\x30", XML_REFUSED},
        {"three of four bytes at the end", "a\x81\x30\x81", XML_REFUSED},
        {"no such byte", "a\xFF", XML_REFUSED},
        {"80 alone", "\x80", XML_REFUSED},
        // Intended: names are in GB18030, and the two bytes of an UTF-8 e with acute accent are a
        // Chinese letter there.
        {"UTF-8 letter taken for another", "\xC3\xA9", XML_OK},
        {"UTF-8 letter of three bytes", "\xE4\xB8\xAD", XML_REFUSED},
    };
    for (const Row &row : kRows) {
        EXPECT_EQ(XML_CheckQName(row.name.c_str()), row.result) << row.what;
        EXPECT_EQ(expectedCheck(row.name), row.result) << "the reference for: " << row.what;
    }
    EXPECT_EQ(XML_CheckQName(nullptr), XML_REFUSED);
}

void expectCheck(const std::string &name) {
    ASSERT_EQ(XML_CheckQName(name.c_str()), expectedCheck(name)) << testing::PrintToString(name);
}

TEST(CheckQName, EveryAsciiByteFirstAndLater) {
    for (int c = 1; c < 0x80; ++c) {
        const std::string byte(1, static_cast<char>(c));
        ASSERT_NO_FATAL_FAILURE(expectCheck(byte));
        ASSERT_NO_FATAL_FAILURE(expectCheck("a" + byte));
        ASSERT_NO_FATAL_FAILURE(expectCheck("a" + byte + "b"));
        ASSERT_NO_FATAL_FAILURE(expectCheck(byte + "\xD6\xD0"));
        ASSERT_NO_FATAL_FAILURE(expectCheck("\xD6\xD0" + byte));
    }
}

TEST(CheckQName, EveryPairOfBytes) {
    for (int first = 1; first < 0x100; ++first) {
        for (int second = 1; second < 0x100; ++second) {
            const std::string pair{static_cast<char>(static_cast<unsigned char>(first)),
                                   static_cast<char>(static_cast<unsigned char>(second))};
            ASSERT_NO_FATAL_FAILURE(expectCheck(pair));
        }
    }
}

TEST(CheckQName, CodePointsFirstAndLater) {
    // All of the basic plane; beyond it the edges of the ranges and a sample.
    for (std::int32_t c = 0x80; c <= 0x10FFFF; c += c < 0x10000 ? 1 : 251) {
        if (c >= 0xD800 && c <= 0xDFFF) continue;
        const auto point = static_cast<char32_t>(c);
        const auto bytes = support::encode(XML_ENCODING_GB18030, {&point, 1});
        if (!bytes) continue;
        ASSERT_NO_FATAL_FAILURE(expectCheck(*bytes));
        ASSERT_NO_FATAL_FAILURE(expectCheck("a" + *bytes));
    }
    for (const char32_t c : {0x10000u, 0xEFFFFu, 0xF0000u, 0x10FFFFu}) {
        const auto bytes = support::encode(XML_ENCODING_GB18030, {&c, 1});
        ASSERT_TRUE(bytes);
        EXPECT_EQ(XML_CheckQName(bytes->c_str()), c <= 0xEFFFF ? XML_OK : XML_REFUSED);
    }
}

TEST(CheckQName, LongNames) {
    for (const std::size_t length : {63u, 64u, 65u, 255u, 256u, 257u, 1023u, 1024u, 5000u}) {
        const std::string ascii(length, 'n');
        std::string chinese;
        for (std::size_t i = 0; i < length; ++i) chinese += "\xD6\xD0";
        EXPECT_EQ(XML_CheckQName(ascii.c_str()), XML_OK) << length;
        EXPECT_EQ(XML_CheckQName((ascii + ":").c_str()), XML_REFUSED) << length;
        EXPECT_EQ(XML_CheckQName(chinese.c_str()), XML_OK) << length;
        EXPECT_EQ(XML_CheckQName((chinese + "!").c_str()), XML_REFUSED) << length;
        EXPECT_EQ(XML_CheckQName((ascii + "\xD6").c_str()), XML_REFUSED) << length;
    }
}

TEST(CheckQName, ExhaustedMemoryIsARefusalAndLeavesNothing) {
    for (const char *name : {"plain", "\xD6\xD0", "a\xD6\xD0"}) {
        for (const bool persistent : {false, true}) {
            for (std::size_t nth = 1;; ++nth) {
                support::FaultyHeap heap(nth, persistent);
                const std::uint32_t result = XML_CheckQName(name);
                EXPECT_EQ(heap.blocksInUse(), 0u);
                if (!heap.failed()) {
                    EXPECT_EQ(result, XML_OK);
                    break;
                }
                EXPECT_EQ(result, XML_REFUSED);
            }
        }
    }
}

// ---- XML_CheckNamespace --------------------------------------------------------------------

TEST(CheckNamespace, Table) {
    static constexpr char kXml[] = "http://www.w3.org/XML/1998/namespace";
    static constexpr char kXmlns[] = "http://www.w3.org/2000/xmlns/";
    struct Row {
        const char *prefix;
        const char *uri;
        std::uint32_t result;
    };
    constexpr Row kRows[] = {
        {nullptr, "u", XML_OK},
        {nullptr, "", XML_OK},  // no default namespace from here on
        {"", "u", XML_OK},
        {"p", "u", XML_OK},
        {"p", " ", XML_OK},
        {"xml", kXml, XML_OK},
        {"XML", "u", XML_OK},  // only the lower-case spelling is reserved
        {"xm", "u", XML_OK},
        {"xmlx", "u", XML_OK},
        {"Xmlns", "u", XML_OK},
        {"xmlnsx", "u", XML_OK},
        {"p", "http://www.w3.org/XML/1998/namespac", XML_OK},
        {"p", "http://www.w3.org/XML/1998/namespace/", XML_OK},
        {"p", "http://www.w3.org/2000/xmlns", XML_OK},
        {"p", "", XML_REFUSED},
        {"xml", "", XML_REFUSED},
        {"xmlns", "", XML_REFUSED},
        {"xmlns", "u", XML_REFUSED},
        {"xmlns", kXml, XML_REFUSED},
        {"xmlns", kXmlns, XML_REFUSED},
        {nullptr, kXmlns, XML_REFUSED},
        {"p", kXmlns, XML_REFUSED},
        {"xml", kXmlns, XML_REFUSED},
        {"xml", "u", XML_REFUSED},
        {"p", kXml, XML_REFUSED},
        {nullptr, kXml, XML_REFUSED},
        {"XML", kXml, XML_REFUSED},
        {nullptr, nullptr, XML_REFUSED},
        {"p", nullptr, XML_REFUSED},
        {"xml", nullptr, XML_REFUSED},
    };
    for (const Row &row : kRows) {
        EXPECT_EQ(XML_CheckNamespace(row.prefix, row.uri), row.result)
            << (row.prefix ? row.prefix : "(null)") << " = " << (row.uri ? row.uri : "(null)");
    }
}

}  // namespace
