#include "xsd2c/c/c_text.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace std::string_view_literals;
using xsd2c::asciiOf;
using xsd2c::charLiteral;
using xsd2c::commentText;
using xsd2c::literalPieces;
using xsd2c::WordWrap;

struct Case {
    std::string_view text;
    std::string_view expected;
};

TEST(CText, SpellsCharactersOutInAscii) {
    constexpr Case kCases[] = {
        {"", ""},
        {"a b~", "a b~"},
        {"端口1", "u7AEFu53E31"},
        {"é", "u00E9"},
        {"😀", "u1F600"},
        {"a\nb\x7F", "au000Abu007F"},
        {"\0"sv, "u0000"},
        {"\xE7\xAB", "xE7xAB"},
        {"\xFF\x80 \xC3", "xFFx80 xC3"},
        {"\xC3(", "xC3("},
        {"\xF5\x80\x80\x80", "xF5x80x80x80"},
    };
    for (const Case &c : kCases) EXPECT_EQ(asciiOf(c.text), c.expected);
}

TEST(CText, LeavesNothingInACommentThatEndsIt) {
    constexpr Case kCases[] = {
        {"element a", "element a"}, {"a*/b", "a* /b"},    {"a/*b", "a/ *b"}, {"/*/", "/ * /"},
        {"*\\\n/", "*\\u000A/"},    {"?\?\?/", "? ? ?/"}, {"**//", "** //"}, {"端*/", "u7AEF* /"},
    };
    for (const Case &c : kCases) EXPECT_EQ(commentText(c.text), c.expected);
}

TEST(CText, WritesLiterals) {
    constexpr Case kCases[] = {
        {"", R"("")"},
        {"abc", R"("abc")"},
        {"\"\\'", R"("\"\\'")"},
        {"\x01"
         "2\n",
         R"("\0012\012")"},
        {"\xD6\xD0\x7F", R"("\326\320\177")"},
        {"\0"sv, R"("\000")"},
        {"a?b?", R"("a?b?")"},
        {"?\?/?\?\?=", R"("?\?/?\?\?=")"},
    };
    for (const Case &c : kCases) {
        EXPECT_EQ(literalPieces(c.text), std::vector<std::string>{std::string(c.expected)});
    }
}

TEST(CText, DividesLongLiterals) {
    const std::vector<std::string> pieces = literalPieces(std::string(300, '?'));
    ASSERT_GT(pieces.size(), 5u);
    std::string text;
    for (const std::string &piece : pieces) {
        EXPECT_LE(piece.size(), 80u);
        ASSERT_TRUE(piece.size() > 2 && piece.front() == '"' && piece.back() == '"') << piece;
        text += piece.substr(1, piece.size() - 2);
    }
    std::string expected = "?";
    for (int i = 1; i < 300; ++i) expected += "\\?";
    EXPECT_EQ(text, expected);
}

TEST(CText, WritesSingleCharacters) {
    EXPECT_EQ(charLiteral('a'), "'a'");
    EXPECT_EQ(charLiteral('\''), "'\\''");
    EXPECT_EQ(charLiteral('\\'), "'\\\\'");
    EXPECT_EQ(charLiteral('"'), "'\"'");
    EXPECT_EQ(charLiteral('\n'), "'\\012'");
    EXPECT_EQ(charLiteral('\xFF'), "'\\377'");
}

TEST(CText, WrapsWords) {
    std::string out = "    ";
    WordWrap words(out, 4, 2);
    words.add(std::string(95, 'a'));
    words.add("b");
    words.add("c");
    words.add(std::string(200, 'd'));
    words.add("e");
    EXPECT_EQ(out, "    " + std::string(95, 'a') + "\n  b c\n  " + std::string(200, 'd') + "\n  e");
}

TEST(CText, FillsALineToItsEnd) {
    std::string out;
    WordWrap words(out, 0, 4);
    words.add(std::string(50, 'a'));
    words.add(std::string(49, 'b'));
    words.add("c");
    EXPECT_EQ(out, std::string(50, 'a') + " " + std::string(49, 'b') + "\n    c");
}

}  // namespace
