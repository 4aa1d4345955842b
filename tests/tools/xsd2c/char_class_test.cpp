// Classes against the sets that they stand for, a character at a time.
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "pattern_support.h"
#include "xsd2c/pattern/char_classes.h"
#include "xsd2c/pattern/gb18030_classes.h"
#include "xsd2c/pattern/gb18030_map.h"
#include "xsd2c/pattern/pattern.h"

namespace {

using namespace xsd2c;
using patterns::Compiled;
using patterns::gb18030Of;
using patterns::utf8Of;

// What a test looks at: all of the characters that GB18030 has two bytes for and many others, above
// all where sets begin and end.
std::vector<char32_t> sampleOf(const CharSet &set) {
    CharSet sample;
    for (const CharRange range : set.ranges()) {
        for (const char32_t edge : {range.first, range.last}) {
            sample.add(edge == 0 ? 0 : edge - 1, edge + 1);
        }
    }
    sample.add({{0x20000, 0x20100}, {0x200CC, 0x200CC}, {0x215D7, 0x215D7}, {0x241FE, 0x241FE}});
    sample.add(0xE000, 0xE900);
    for (char32_t c = 0; c <= kLastChar; c += c < 0x10000 ? 5 : 997) sample.add(c, c);
    std::vector<char32_t> chars;
    for (const CharRange range : sample.ranges()) {
        for (char32_t c = range.first; c <= range.last; ++c) {
            const bool control = c < 0x20 && c != '\t' && c != '\n' && c != '\r';
            const bool none = control || (c >= 0xD800 && c <= 0xDFFF) || c == 0xFFFE || c == 0xFFFF;
            if (!none && c <= kLastChar) chars.push_back(c);
        }
    }
    return chars;
}

std::size_t countDifferences(const std::string &pattern, const CharSet &set) {
    const Compiled compiled(wholePattern(translatePatterns({pattern}, false).inner));
    std::size_t differences = 0;
    for (const char32_t c : sampleOf(set)) {
        const std::string bytes = gb18030Of(utf8Of(c));
        if (bytes.empty()) continue;
        if (compiled.matches(bytes) != set.contains(c) && ++differences < 5) {
            ADD_FAILURE() << pattern << " and U+" << std::hex << static_cast<unsigned>(c);
        }
    }
    return differences;
}

TEST(CharClass, ComprisesEachCategory) {
    for (const char *name :
         {"L",  "Lu", "Ll", "Lt", "Lm", "Lo", "M",  "Mn", "Mc", "Me", "N",  "Nd",
          "Nl", "No", "P",  "Pc", "Pd", "Ps", "Pe", "Pi", "Pf", "Po", "Z",  "Zs",
          "Zl", "Zp", "S",  "Sm", "Sc", "Sk", "So", "C",  "Cc", "Cf", "Co", "Cn"}) {
        const std::optional<CharSet> chars = charsOfCategory(name);
        ASSERT_TRUE(chars) << name;
        EXPECT_FALSE(chars->empty()) << name;
        EXPECT_EQ(countDifferences(std::string("\\p{") + name + "}", *chars), 0u);
    }
    EXPECT_EQ(countDifferences("\\P{Lu}", charsOfCategory("Lu")->complement()), 0u);
}

TEST(CharClass, ComprisesEachEscape) {
    EXPECT_EQ(countDifferences("\\w", wordChars()), 0u);
    EXPECT_EQ(countDifferences("\\W", wordChars().complement()), 0u);
    EXPECT_EQ(countDifferences("\\i", nameStartChars()), 0u);
    EXPECT_EQ(countDifferences("\\c", nameChars()), 0u);
    EXPECT_EQ(countDifferences("\\C", nameChars().complement()), 0u);
    EXPECT_EQ(countDifferences("\\S", whiteSpaceChars().complement()), 0u);
    EXPECT_EQ(countDifferences(".", charsWithinLine()), 0u);
    EXPECT_EQ(
        countDifferences("[^é中-龥😀]",
                         CharSet{{0xE9, 0xE9}, {0x4E2D, 0x9FA5}, {0x1F600, 0x1F600}}.complement()),
        0u);
}

// The categories lie beside each other and leave out surrogates alone.
TEST(CharClass, HasEachCharacterInOneCategory) {
    CharSet all;
    std::size_t count = 0;
    for (const char *name : {"L", "M", "N", "P", "Z", "S", "C"}) {
        const CharSet chars = *charsOfCategory(name);
        count += chars.overlap(0, kLastChar);
        all.add(chars);
    }
    EXPECT_EQ(all.ranges(), (CharSet{{0, 0xD7FF}, {0xE000, kLastChar}}.ranges()));
    EXPECT_EQ(count, kLastChar + 1 - 0x800u);
}

TEST(Gb18030Map, AgreesWithTheLibrary) {
    const Gb18030Map &map = Gb18030Map::get();
    std::size_t unlike = 0;
    for (char32_t c = 0x80; c <= kLastChar; ++c) {
        if (c >= 0xD800 && c <= 0xDFFF) continue;
        const std::string bytes = gb18030Of(utf8Of(c));
        const auto byte = [&](std::size_t at) -> unsigned {
            return static_cast<unsigned char>(bytes[at]);
        };
        if (bytes.size() == 2) {
            unlike += map.charOfTwo(byte(0), byte(1)) != c;
        } else if (bytes.size() == 4) {
            const std::size_t index =
                (((byte(0) - 0x81) * 10 + byte(1) - 0x30) * 126 + byte(2) - 0x81) * 10 + byte(3) -
                0x30;
            unlike += map.charOfFour(index) != c;
        } else {
            unlike += !bytes.empty();
        }
    }
    EXPECT_EQ(unlike, 0u);
}

TEST(CharSet, AddsAndTakesAway) {
    CharSet set;
    EXPECT_TRUE(set.empty());
    set.add(5, 9);
    set.add(20, 30);
    set.add(10, 12);
    EXPECT_EQ(set.ranges(), (std::vector<CharRange>{{5, 12}, {20, 30}}));
    set.add({{13, 19}, {40, 40}});
    EXPECT_EQ(set.ranges(), (std::vector<CharRange>{{5, 30}, {40, 40}}));
    EXPECT_EQ(set.minus({{0, 5}, {10, 11}, {30, 50}}).ranges(),
              (std::vector<CharRange>{{6, 9}, {12, 29}}));
    EXPECT_EQ(set.complement().ranges(),
              (std::vector<CharRange>{{0, 4}, {31, 39}, {41, kLastChar}}));
    EXPECT_EQ(set.complement().complement().ranges(), set.ranges());
    EXPECT_EQ(CharSet().complement().ranges(), (std::vector<CharRange>{{0, kLastChar}}));
    EXPECT_TRUE(CharSet().complement().complement().empty());
    EXPECT_EQ(set.overlap(0, 10), 6u);
    EXPECT_EQ(set.overlap(31, 39), 0u);
    EXPECT_TRUE(set.contains(40));
    EXPECT_FALSE(set.contains(39));
}

}  // namespace
