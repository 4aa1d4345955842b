#include "tools/cxml/text.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "tools/cxml/failure.h"

namespace {

using tool::displayWidth;
using tool::printable;
using tool::toTree;
using tool::toUtf8;
using namespace std::string_view_literals;

struct Same {
    const char *name;
    std::string_view utf8;
    std::string_view tree;
};

constexpr Same kSame[] = {
    {"nothing", "", ""},
    {"ASCII", "a<b>\t\n\x7F", "a<b>\t\n\x7F"},
    {"two bytes", "中文", "\xD6\xD0\xCE\xC4"},
    {"four bytes", "é😀", "\xA8\xA6\x94\x39\xFC\x36"},
    {"mixed", "端口 5/12", "\xB6\xCB\xBF\xDA 5/12"},
    {"first of two bytes of UTF-8", "\xC2\x80", "\x81\x30\x81\x30"},
    {"last character", "\xF4\x8F\xBF\xBF", "\xE3\x32\x9A\x35"},
};

TEST(ToolText, ConvertsBothWays) {
    for (const Same &same : kSame) {
        EXPECT_EQ(toTree(same.utf8, "the text"), same.tree) << same.name;
        EXPECT_EQ(toUtf8(same.tree), same.utf8) << same.name;
    }
}

TEST(ToolText, ConvertsLongTexts) {
    std::string utf8, tree;
    for (int i = 0; i < 100000; ++i) {
        utf8 += i % 3 == 0 ? "中" : "a";
        tree += i % 3 == 0 ? "\xD6\xD0" : "a";
    }
    EXPECT_EQ(toTree(utf8, "the text"), tree);
    EXPECT_EQ(toUtf8(tree), utf8);
}

TEST(ToolText, ConvertsAgainAfterAFailure) {
    EXPECT_THROW(toTree("\xE4\xB8", "the text"), tool::Failure);
    EXPECT_EQ(toTree("中", "the text"), "\xD6\xD0");
    EXPECT_EQ(toUtf8("\xD6"), "\xEF\xBF\xBD");
    EXPECT_EQ(toUtf8("\xD6\xD0"), "中");
}

// Some characters for private use are in the tables of some machines only.
TEST(ToolText, TellsWhichCharacterDoesNotConvert) {
    const std::string text = "中\xEE\x9E\x8D";
    try {
        EXPECT_EQ(toUtf8(toTree(text, "the text")), text);
    } catch (const tool::Failure &failure) {
        EXPECT_EQ(failure.what(),
                  "the text has a character that a tree cannot hold, U+E78D: " + text);
        EXPECT_EQ(failure.status(), tool::kTrouble);
    }
}

TEST(ToolText, NullIsEmpty) {
    EXPECT_EQ(toUtf8(static_cast<const char *>(nullptr)), "");
}

struct Refusal {
    const char *name;
    std::string_view utf8;
    const char *message;
};

constexpr Refusal kRefusals[] = {
    {"continuation byte alone", "a\x80", "the path is not UTF-8 text: a\xEF\xBF\xBD"},
    {"lead byte at the end", "\xC3", "the path is not UTF-8 text: \xEF\xBF\xBD"},
    {"three of four bytes", "\xF0\x9F\x98",
     "the path is not UTF-8 text: \xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},
    {"two bytes for ASCII", "\xC1\xBF", "the path is not UTF-8 text: \xEF\xBF\xBD\xEF\xBF\xBD"},
    {"three bytes where two do", "\xE0\x9F\xBF",
     "the path is not UTF-8 text: \xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},
    {"surrogate", "\xED\xA0\x80",
     "the path is not UTF-8 text: \xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},
    {"beyond the last character", "\xF4\x90\x80\x80",
     "the path is not UTF-8 text: \xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},
    {"no lead byte", "\xFF", "the path is not UTF-8 text: \xEF\xBF\xBD"},
};

TEST(ToolText, RefusesWhatIsNotUtf8) {
    for (const Refusal &refusal : kRefusals) {
        try {
            toTree(refusal.utf8, "the path");
            ADD_FAILURE() << refusal.name;
        } catch (const tool::Failure &failure) {
            EXPECT_STREQ(failure.what(), refusal.message) << refusal.name;
            EXPECT_EQ(failure.status(), tool::kTrouble) << refusal.name;
        }
    }
}

struct Shown {
    const char *name;
    std::string_view from;
    std::string_view shown;
};

constexpr Shown kDamaged[] = {
    {"byte that begins nothing", "a\x80z", "a\xEF\xBF\xBDz"},
    {"half a character at the end", "a\xD6", "a\xEF\xBF\xBD"},
    {"lead byte before ASCII", "\xD6 a", "\xEF\xBF\xBD a"},
    {"three of four bytes", "\x94\x39\xFC\xFFz",
     "\xEF\xBF\xBD"
     "9\xEF\xBF\xBD\xEF\xBF\xBDz"},
    {"among good ones", "\xD6\xD0\xFF\xCE\xC4", "中\xEF\xBF\xBD文"},
};

TEST(ToolText, ReplacesWhatIsNotGb18030) {
    for (const Shown &shown : kDamaged) EXPECT_EQ(toUtf8(shown.from), shown.shown) << shown.name;
}

constexpr Shown kPrintable[] = {
    {"text", "a 中é😀~", "a 中é😀~"},
    {"line breaks", "a\nb\tc\rd", "a\\nb\\tc\\rd"},
    {"escape sequence", "\x1B[2J", "\\x1B[2J"},
    {"NUL and the last of C0", "\0\x1F "sv, "\\x00\\x1F "},
    {"DEL", "~\x7F", "~\\x7F"},
    {"first and last of C1", "\xC2\x80\xC2\x9F\xC2\xA0", "\\x80\\x9F\xC2\xA0"},
    {"bytes that are not UTF-8",
     "a\x9B"
     "2J\xE4\xB8",
     "a\xEF\xBF\xBD"
     "2J\xEF\xBF\xBD\xEF\xBF\xBD"},
};

TEST(ToolText, ShowsControlCharacters) {
    for (const Shown &shown : kPrintable) {
        EXPECT_EQ(printable(shown.from), shown.shown) << shown.name;
        EXPECT_EQ(printable(shown.shown), shown.shown) << shown.name;
    }
}

struct Width {
    const char *name;
    std::string_view text;
    std::size_t cells;
};

constexpr Width kWidths[] = {
    {"nothing", "", 0},
    {"ASCII", "abc ~", 5},
    {"Latin, Greek, Cyrillic", "éαя", 3},
    {"Chinese", "配置", 4},
    {"full-width and half-width", "Ａｱ", 3},
    {"Hangul and kana", "한か", 4},
    {"emoji", "😀", 2},
    {"combining accent", "e\xCC\x81", 1},
    {"invisible joiner",
     "a\xE2\x80\x8D"
     "b",
     2},
    {"box drawing and punctuation", "─·—", 3},
    {"first and last of a range", "\xE1\x84\x80\xE1\x85\x9F\xE1\x83\xBF\xE1\x85\xA0", 6},
};

TEST(ToolText, MeasuresCells) {
    for (const Width &width : kWidths)
        EXPECT_EQ(displayWidth(width.text), width.cells) << width.name;
}

}  // namespace
