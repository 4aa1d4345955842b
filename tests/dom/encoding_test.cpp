// The table of encodings: numbers, names, and how forgiving the look-up is.
#include <gtest/gtest.h>

#include <cctype>
#include <clocale>
#include <string>

#include "compactxml.h"
#include "tests/support/reference_iconv.h"

namespace {

TEST(Encoding, EveryNumberHasItsName) {
    struct Row {
        std::uint32_t number;
        const char *name;
    };
    constexpr Row kRows[] = {
        {XML_ENCODING_UTF_8, "UTF-8"},       {XML_ENCODING_UTF_16LE, "UTF-16LE"},
        {XML_ENCODING_UTF_16BE, "UTF-16BE"}, {XML_ENCODING_GB2312, "GB2312"},
        {XML_ENCODING_UTF_32LE, "UTF-32LE"}, {XML_ENCODING_UTF_32BE, "UTF-32BE"},
        {XML_ENCODING_UTF_16, "UTF-16"},     {XML_ENCODING_UTF_32, "UTF-32"},
        {XML_ENCODING_GBK, "GBK"},           {XML_ENCODING_GB18030, "GB18030"},
        {XML_ENCODING_UCS_4, "UCS-4"},       {XML_ENCODING_UCS_4BE, "UCS-4BE"},
        {XML_ENCODING_UCS_4LE, "UCS-4LE"},
    };
    std::uint32_t expected = 0;
    for (const Row &row : kRows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(row.number, expected++);
        EXPECT_STREQ(XML_DOM_EncodingEnumToStr(row.number), row.name);
        EXPECT_EQ(XML_DOM_EncodingStrToEnum(row.name), row.number);
        // The string is the library's own and does not change from call to call.
        EXPECT_EQ(XML_DOM_EncodingEnumToStr(row.number), XML_DOM_EncodingEnumToStr(row.number));
    }
    EXPECT_EQ(expected, XML_ENCODING_UNKNOWN);
}

TEST(Encoding, NumbersFromUnknownOnHaveNoName) {
    for (const std::uint32_t number : {XML_ENCODING_UNKNOWN, 14u, 15u, 200u, 0x7FFFFFFFu,
                                       0x80000000u, 0xFFFFFFF3u, 0xFFFFFFFFu}) {
        EXPECT_EQ(XML_DOM_EncodingEnumToStr(number), nullptr) << number;
    }
}

TEST(Encoding, NamesMatchInAnyCase) {
    struct Row {
        const char *name;
        std::uint32_t number;
    };
    constexpr Row kRows[] = {
        {"utf-8", 0},    {"Utf-8", 0},  {"uTF-8", 0},    {"gb18030", 9},
        {"gB18030", 9},  {"utf-16", 6}, {"UTF-16le", 1}, {"utf-16be", 2},
        {"gbk", 8},      {"gb2312", 3}, {"ucs-4", 10},   {"ucs-4be", 11},
        {"ucs-4Le", 12}, {"utf-32", 7}, {"utf-32Le", 4}, {"Utf-32bE", 5},
    };
    for (const Row &row : kRows) {
        EXPECT_EQ(XML_DOM_EncodingStrToEnum(row.name), row.number) << row.name;
    }
}

TEST(Encoding, OtherNamesAreUnknown) {
    // Intended: no aliases, however common.
    for (const char *name : {"",         "UTF8",       "utf8",
                             "UTF_8",    "UTF 8",      " UTF-8",
                             "UTF-8 ",   "UTF-8\n",    "UTF-",
                             "UTF",      "U",          "UTF-80",
                             "UTF-1",    "UTF-16L",    "UTF-16LEX",
                             "UTF16",    "UTF-32XE",   "GB",
                             "GBK2",     "GB-2312",    "GB231",
                             "GB23120",  "EUC-CN",     "CP936",
                             "GB_18030", "UCS-2",      "UCS4",
                             "UCS-4XE",  "UCS-4BEE",   "ASCII",
                             "US-ASCII", "ISO-8859-1", "\xEF\xBB\xBFUTF-8",
                             "\xFF",     "NULL",       "13"}) {
        EXPECT_EQ(XML_DOM_EncodingStrToEnum(name), XML_ENCODING_UNKNOWN) << name;
    }
    EXPECT_EQ(XML_DOM_EncodingStrToEnum(nullptr), XML_ENCODING_UNKNOWN);
}

// Folding case means letters: any other single changed bit makes another name.
TEST(Encoding, OneChangedBitIsAnotherNameUnlessItIsCase) {
    for (std::uint32_t number = 0; number < support::kEncodingCount; ++number) {
        const std::string name = support::encodingName(number);
        for (std::size_t i = 0; i < name.size(); ++i) {
            for (int bit = 0; bit < 8; ++bit) {
                std::string changed = name;
                const auto byte = static_cast<unsigned char>(name[i]);
                changed[i] = static_cast<char>(byte ^ (1u << bit));
                const bool letter = byte >= 'A' && byte <= 'Z';
                std::uint32_t expected = XML_ENCODING_UNKNOWN;
                if (letter && bit == 5) expected = number;
                // One bit apart and both in the table: only L and B of the byte orders could be.
                for (std::uint32_t other = 0; other < support::kEncodingCount; ++other) {
                    if (changed == support::encodingName(other)) expected = other;
                }
                EXPECT_EQ(XML_DOM_EncodingStrToEnum(changed.c_str()), expected)
                    << name << " with byte " << i << " as " << changed;
            }
        }
    }
}

TEST(Encoding, TheLocaleDoesNotMatter) {
    const std::string before = std::setlocale(LC_ALL, nullptr);
    for (const char *locale : {"tr_TR.UTF-8", "C.UTF-8", "C"}) {
        if (!std::setlocale(LC_ALL, locale)) continue;  // not installed: nothing to see
        EXPECT_EQ(XML_DOM_EncodingStrToEnum("utf-16le"), XML_ENCODING_UTF_16LE) << locale;
        EXPECT_EQ(XML_DOM_EncodingStrToEnum("UTF-16LE"), XML_ENCODING_UTF_16LE) << locale;
    }
    std::setlocale(LC_ALL, before.c_str());
}

}  // namespace
