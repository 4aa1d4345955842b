// Characters, names, white space and the counting of lines and columns.
#include <string>
#include <string_view>
#include <vector>

#include "gtest/gtest.h"
#include "tests/support/expectations.h"
#include "tests/support/parser_model.h"
#include "tests/support/texts.h"

using namespace std::string_view_literals;
using support::expectAccepted;
using support::expectRefused;
using support::memoryFeed;
using support::printable;
using support::record;
using support::RecordedParse;
using support::Refusal;

namespace {

std::string utf8(long c) {
    return support::utf8(static_cast<std::uint32_t>(c));
}

bool accepts(const std::string &document) {
    return XML_Parser_ByMem(document.data(), static_cast<std::uint32_t>(document.size()),
                            nullptr) == XML_OK;
}

// ---------------------------------------------------------------- characters

// Each place that judges characters: what stands before one, what stands behind it, and the column
// of one that is illegal.
constexpr struct {
    const char *name;
    std::string_view before;
    std::string_view behind;
} kPlaces[] = {
    {"text", "<a>", "</a>"},
    {"text behind text", "<a>b", "c</a>"},
    {"value", "<a b='", "'/>"},
    {"comment", "<!--", "--><a/>"},
    {"instruction", "<?p x", "?><a/>"},
    {"CDATA", "<a><![CDATA[", "]]></a>"},
    {"DOCTYPE", "<!DOCTYPE ", "><a/>"},
    {"internal subset", "<!DOCTYPE [", "]><a/>"},
};

void expectCharacter(std::string_view bytes, bool legal) {
    for (const auto &place : kPlaces) {
        const std::string document =
            std::string(place.before) + std::string(bytes) + std::string(place.behind);
        const std::string name = std::string(place.name) + ": " + printable(bytes);
        if (legal) {
            const RecordedParse parse = support::expectSameThroughEveryFeed(document, name);
            EXPECT_EQ(parse.result, XML_OK) << name;
        } else {
            expectRefused(
                {name.c_str(), document, 9, 1, static_cast<int>(place.before.size()) + 1});
        }
    }
}

TEST(Lexical, LegalCharacters) {
    for (const long c : {0x21L, 0x7EL, 0x7FL, 0x80L, 0x9FL, 0xA0L, 0x7FFL, 0x800L, 0xD7FFL, 0xE000L,
                         0xFFFDL, 0x10000L, 0x1FFFEL, 0x10FFFFL}) {
        expectCharacter(utf8(c), true);
    }
}

TEST(Lexical, IllegalCharacters) {
    for (const long c : {0x0L, 0x1L, 0x8L, 0xBL, 0xCL, 0xEL, 0x1FL, 0xD800L, 0xDBFFL, 0xDC00L,
                         0xDFFFL, 0xFFFEL, 0xFFFFL, 0x110000L, 0x1FFFFFL}) {
        expectCharacter(utf8(c), false);
    }
}

// Bytes that follow no rule of UTF-8.
TEST(Lexical, MalformedCharacters) {
    constexpr std::string_view kMalformed[] = {
        "\x80"sv,
        "\xBF"sv,
        "\xC3"sv,
        "\xC3\xC3"sv,
        "\xE4\xB8"sv,
        "\xE4x"sv,
        "\xE4\xB8x"sv,
        "\xF0\x90\x80"sv,
        "\xF0\x90x\x80"sv,
        "\xE0\x80\x80"sv,
        "\xE0\x9F\xBF"sv,
        "\xED\xA0\x80"sv,
        "\xED\xBF\xBF"sv,
        "\xF0\x80\x80\x80"sv,
        "\xF0\x8F\xBF\xBF"sv,
        "\xF4\x90\x80\x80"sv,
        "\xF5\x80\x80\x80"sv,
        "\xF7\xBF\xBF\xBF"sv,
        "\xC0\x80"sv,
        "\xC0\x9F"sv,
        "\xF8\x80\x80\x80"sv,
        "\xFF\x80\x80\x80"sv,
        "\xFE\xFF"sv,
    };
    for (const std::string_view bytes : kMalformed) expectCharacter(bytes, false);
}

// Intended: the first bytes C0, C1 and F8 to FC are not refused. The value that they lead to
// counts, and the bytes are handed on as they are, as one column.
TEST(Lexical, LenientLeadBytes) {
    constexpr std::string_view kLenient[] = {
        "\xC1\x81"sv,         "\xC0\xA0"sv,         "\xC1\xBF"sv,         "\xF8\x90\x80\x80"sv,
        "\xFC\x90\x80\x80"sv, "\xF8\x80\x81\x81"sv, "\xFA\x80\x81\x80"sv,
    };
    for (const std::string_view bytes : kLenient) {
        const std::string text(bytes);
        const RecordedParse model = support::modelParse("<a>" + text + "</a>");
        const bool legal = model.result == XML_OK;
        expectCharacter(bytes, legal);
        if (!legal) continue;
        const RecordedParse parse = record(memoryFeed("<a>" + text + "x<b/></a>"));
        EXPECT_EQ(parse.calls[2], "characters \"" + printable(text) + "x\" " +
                                      std::to_string(text.size() + 1) + " @1:6");
    }
    expectAccepted({"C1 81 begins a name",
                    "<\xC1\x81 \xC1\x81\xC1\xA1='\xC1\x81'></\xC1\x81>",
                    {R"(startElementNs "\xC1\x81" prefix null uri null ns [] attrs )"
                     R"([\xC1\x81\xC1\xA1="\xC1\x81"])",
                     R"(endElementNs "\xC1\x81" prefix null uri null)"}});
    expectAccepted({"F8 90 80 80 begins a name",
                    "<\xF8\x90\x80\x80/>",
                    {R"(startElementNs "\xF8\x90\x80\x80" prefix null uri null ns [] attrs [])",
                     R"(endElementNs "\xF8\x90\x80\x80" prefix null uri null)"}});
    // The names are compared as bytes: an "A" does not end what C1 81 began.
    expectRefused({"A for C1 81", "<\xC1\x81></A>", 76, 1, 6});
    // Neither is a blank in two bytes white space.
    expectRefused({"C0 A0 is no white space", "<a\xC0\xA0/>", 65, 1, 3});
    expectRefused({"C0 BC is no <", "<a>\xC0\xBC/a>", 77, 1, 8});
    expectRefused({"C0 8A counts no line", "<a>\xC0\x8Ax\x01", 9, 1, 6});
}

// Every first byte with second bytes at the borders of all ranges, and too short ones.
TEST(Lexical, EveryFirstByte) {
    for (int first = 0x80; first <= 0xFF; ++first) {
        for (const int second : {0x41, 0x7F, 0x80, 0x8F, 0x90, 0x9F, 0xA0, 0xBF, 0xC0}) {
            for (const std::string_view rest : {""sv, "\x80"sv, "\xBE\xBF"sv, "A\x80"sv}) {
                std::string bytes{static_cast<char>(first), static_cast<char>(second)};
                bytes += rest;
                for (const auto &[before, behind] :
                     {std::pair("<a>"sv, "</a>"sv), std::pair("<a"sv, "/>"sv)}) {
                    const std::string document = std::string(before) + bytes + std::string(behind);
                    const RecordedParse model = support::modelParse(document);
                    const RecordedParse parse = record(memoryFeed(document));
                    ASSERT_TRUE(support::sameOutcome(model, parse) &&
                                model.snippet == parse.snippet)
                        << printable(document) << "\nThe model gives " << model
                        << "\nthe library gives " << parse;
                }
            }
        }
    }
}

// ---------------------------------------------------------------- names

TEST(Lexical, NameCharacters) {
    constexpr struct {
        long c;
        bool starts;
        bool continues;
    } kCharacters[] = {
        {'-', false, true},      {'.', false, true},       {'/', false, false},
        {'0', false, true},      {'9', false, true},       {';', false, false},
        {'@', false, false},     {'A', true, true},        {'Z', true, true},
        {'[', false, false},     {'^', false, false},      {'_', true, true},
        {'`', false, false},     {'a', true, true},        {'z', true, true},
        {'{', false, false},     {0x7F, false, false},     {0xA0, false, false},
        {0xB6, false, false},    {0xB7, false, true},      {0xB8, false, false},
        {0xBF, false, false},    {0xC0, true, true},       {0xD6, true, true},
        {0xD7, false, false},    {0xD8, true, true},       {0xF6, true, true},
        {0xF7, false, false},    {0xF8, true, true},       {0x2FF, true, true},
        {0x300, false, true},    {0x36F, false, true},     {0x370, true, true},
        {0x37D, true, true},     {0x37E, false, false},    {0x37F, true, true},
        {0x1FFF, true, true},    {0x2000, false, false},   {0x200B, false, false},
        {0x200C, true, true},    {0x200D, true, true},     {0x200E, false, false},
        {0x203E, false, false},  {0x203F, false, true},    {0x2040, false, true},
        {0x2041, false, false},  {0x206F, false, false},   {0x2070, true, true},
        {0x218F, true, true},    {0x2190, false, false},   {0x2BFF, false, false},
        {0x2C00, true, true},    {0x2FEF, true, true},     {0x2FF0, false, false},
        {0x3000, false, false},  {0x3001, true, true},     {0x4E2D, true, true},
        {0xD7FF, true, true},    {0xE000, false, false},   {0xF8FF, false, false},
        {0xF900, true, true},    {0xFDCF, true, true},     {0xFDD0, false, false},
        {0xFDEF, false, false},  {0xFDF0, true, true},     {0xFFFD, true, true},
        {0xFFFE, false, false},  {0x10000, true, true},    {0xEFFFF, true, true},
        {0xF0000, false, false}, {0x10FFFF, false, false},
    };
    for (const auto &row : kCharacters) {
        const std::string c = utf8(row.c);
        EXPECT_EQ(accepts("<" + c + "/>"), row.starts) << std::hex << row.c;
        EXPECT_EQ(accepts("<a" + c + "></a" + c + ">"), row.continues) << std::hex << row.c;
        EXPECT_EQ(accepts("<a " + c + "=''/>"), row.starts) << std::hex << row.c;
        EXPECT_EQ(accepts("<a b" + c + "=''/>"), row.continues) << std::hex << row.c;
        EXPECT_EQ(accepts("<p" + c + ":a xmlns:p" + c + "='u'/>"), row.continues)
            << std::hex << row.c;
        EXPECT_EQ(accepts("<p:" + c + " xmlns:p='u'/>"), row.starts) << std::hex << row.c;
        EXPECT_EQ(accepts("<?" + c + "?><a/>"), row.starts) << std::hex << row.c;
        EXPECT_EQ(accepts("<?a" + c + "?><a/>"), row.continues) << std::hex << row.c;
    }
}

TEST(Lexical, QualifiedNames) {
    expectAccepted({"both halves",
                    "<p:a xmlns:p='u' p:b='1'></p:a>",
                    {R"(startElementNs "a" prefix "p" uri "u" ns [p="u"] attrs [p:b{u}="1"])",
                     R"(endElementNs "a" prefix "p" uri "u")"}});
    constexpr Refusal kRefusals[] = {
        {"colon first", "<:a/>", 9, 1, 2},
        {"colon alone", "<:/>", 9, 1, 2},
        {"end behind the colon", "<a:", 68, 1, 4},
        {"end behind the colon of an attribute", "<a b:", 68, 1, 6},
        {"blank behind the colon", "<a: b/>", 9, 1, 4},
        {"> behind the colon", "<a:>", 9, 1, 4},
        {"digit behind the colon", "<a:1/>", 9, 1, 4},
        {"colon behind the colon", "<a::b/>", 9, 1, 4},
        {"stray byte behind the colon", "<a:\x80/>", 9, 1, 4},
        {"= behind the colon", "<a b:='1'/>", 9, 1, 6},
        {"blank before the colon", "<a :b/>", 9, 1, 4},
        {"three halves", "<a:b:c/>", 65, 1, 5},
        {"three halves of an attribute", "<a b:c:d='1'/>", 75, 1, 7},
    };
    for (const Refusal &refusal : kRefusals) expectRefused(refusal);
}

// ---------------------------------------------------------------- white space

TEST(Lexical, WhiteSpace) {
    for (const char blank : {' ', '\t', '\r', '\n'}) {
        const std::string s(1, blank);
        EXPECT_TRUE(accepts("<?xml" + s + "version" + s + "=" + s + "'1.0'" + s + "?>" + s + "<a" +
                            s + "b" + s + "=" + s + "'1'" + s + "/>" + s));
        EXPECT_TRUE(accepts("<!DOCTYPE" + s + "><a></a" + s + ">"));
        EXPECT_TRUE(accepts("<?p" + s + "?><a/>"));
    }
    for (const std::string_view other :
         {"\f"sv, "\v"sv, "\xC2\x85"sv, "\xC2\xA0"sv, "\xE2\x80\xA8"sv, "\xE3\x80\x80"sv,
          "\xC0\xA0"sv, "\xC0\x8A"sv, "\0"sv}) {
        const std::string s(other);
        EXPECT_FALSE(accepts("<?xml" + s + "version='1.0'?><a/>"));
        EXPECT_FALSE(accepts(s + "<a/>"));
        EXPECT_FALSE(accepts("<a" + s + "b='1'/>"));
        EXPECT_FALSE(accepts("<a b" + s + "='1'/>"));
        EXPECT_FALSE(accepts("<a b=" + s + "'1'/>"));
        EXPECT_FALSE(accepts("<!DOCTYPE" + s + "><a/>"));
        EXPECT_FALSE(accepts("<?p" + s + "?><a/>"));
        EXPECT_FALSE(accepts("<a></a" + s + ">"));
        EXPECT_FALSE(accepts("<a/>" + s));
    }
}

// ---------------------------------------------------------------- lines and columns

TEST(Lexical, LinesAndColumns) {
    constexpr Refusal kPositions[] = {
        {"third line, fifth character", "<a>\n\n    &x;", 26, 3, 6},
        {"LF", "<a>\n\n\n&", 26, 4, 2},
        {"CR", "<a>\r\r\r&", 26, 4, 2},
        {"CR LF", "<a>\r\n\r\n\r\n&", 26, 4, 2},
        {"LF CR", "<a>\n\r\n\r&", 26, 4, 2},
        {"CR CR LF", "<a>\r\r\n&", 26, 3, 2},
        {"CR last", "<a>\r", 77, 2, 1},
        {"CR LF last", "<a>\r\n", 77, 2, 1},
        {"LF last", "<a>x\n", 77, 2, 1},
        {"tab is one column", "<a>\t\t&", 26, 1, 7},
        {"two bytes are one column", "<a>\xC3\xA9\xC3\xA9&", 26, 1, 7},
        {"three bytes are one column", "<a>\xE4\xB8\xAD\xE6\x96\x87&", 26, 1, 7},
        {"four bytes are one column", "<a>\xF0\x9F\x98\x80&", 26, 1, 6},
        {"U+0085 is no line break", "<a>\xC2\x85&", 26, 1, 6},
        {"U+2028 is no line break", "<a>\xE2\x80\xA8&", 26, 1, 6},
        {"form feed in a comment is illegal", "<!--\n\f-->", 9, 2, 1},
        {"a reference is no line break", "<a>&#10;&#13;&", 26, 1, 15},
        {"lines in a name's surroundings", "<a\r\nb\r\n=\r\n'1'\r\nc='<'", 38, 5, 4},
        {"lines in a value", "<a b='\r\n\n\r' b=''/>", 42, 4, 7},
        {"lines in a comment", "<!--\r\n\r\n--><", 77, 3, 5},
        {"lines in CDATA", "<a><![CDATA[\n\r\n\r]]>&", 26, 4, 5},
        {"lines in an instruction", "<?p\n\n\r\nx\n?>\n<", 77, 6, 2},
        {"lines in a DOCTYPE", "<!DOCTYPE\n[\r\n]\r>\n\n<", 77, 6, 2},
        {"lines in an end tag", "<a></a\r\n\r\n>\n<", 5, 4, 1},
        {"characters in a name", "<\xE4\xB8\xAD\xE6\x96\x87></\xE4\xB8\xAD\xE6\x96\x87>x", 5, 1,
         10},
        {"characters in a prefix", "<\xC3\xA9:a xmlns:\xC3\xA9='u'></\xC3\xA9:b>", 76, 1, 22},
    };
    for (const Refusal &refusal : kPositions) expectRefused(refusal);
}

// CR and LF at every offset to the end of a buffer: in one chunk, and cut between the two.
TEST(Lexical, LineEndsAcrossWindows) {
    for (const std::string_view lineEnd : {"\n"sv, "\r"sv, "\r\n"sv, "\r\r\n"sv, "\n\r"sv}) {
        for (const std::size_t window : {1024, 2048}) {
            for (std::size_t at = window - 68; at <= window + 3; ++at) {
                for (const char filler : {'x', ' '}) {
                    if (window == 2048 && filler == 'x') continue;
                    std::string document =
                        "<a>" + std::string(at - 3, filler) + std::string(lineEnd);
                    document += "y\n<b/>" + std::string(90, filler) + "&";
                    const RecordedParse model = support::modelParse(document);
                    for (const support::Feed &feed :
                         {memoryFeed(document), support::listFeed(document),
                          support::listCutAt(document, at + 1)}) {
                        const RecordedParse parse = record(feed);
                        ASSERT_TRUE(support::sameOutcome(model, parse))
                            << printable(lineEnd) << " at " << at << ", " << feed.name() << "\n"
                            << model << "\n"
                            << parse;
                    }
                }
            }
        }
    }
}

// Runs of every length up to several vector registers, with one character that needs thought in
// them, at every alignment.
TEST(Lexical, RunsOfEveryLength) {
    constexpr std::string_view kInside[] = {
        "\n"sv, "\r\n"sv, "]"sv,    "&amp;"sv,    "\xC3\xA9"sv, "\xE4\xB8\xAD"sv,     " "sv,
        "-"sv,  "?"sv,    "\x7F"sv, "\xC3\x97"sv, "\xE4\xB8"sv, "\xF0\x9F\x98\x80"sv, "\xC1\x81"sv};
    constexpr std::pair<std::string_view, std::string_view> kContexts[] = {
        {"<a>", "</b>"},     {"<a b='", "'b=''/>"},       {"<!--", "--><a/>x"},
        {"<?p ", "?><a/>x"}, {"<a><![CDATA[", "]]></b>"}, {"<!DOCTYPE ", "><a/>x"},
        {"<n", "></b>"},     {"<a n", "='' b=''></b>"},   {"<?n", "?><a/>x"},
    };
    const auto compare = [](const std::string &document) {
        const RecordedParse model = support::modelParse(document);
        const RecordedParse parse = record(memoryFeed(document));
        ASSERT_TRUE(support::sameOutcome(model, parse) && model.snippet == parse.snippet)
            << printable(document) << "\nThe model gives " << model << "\nthe library gives "
            << parse;
    };
    constexpr std::pair<std::string_view, std::size_t> kFillers[] = {{"r"sv, 70},
                                                                     {"\xE4\xB8\xAD"sv, 24}};
    for (const auto &[before, behind] : kContexts) {
        for (const auto &[filler, most] : kFillers) {
            for (std::size_t length = 0; length <= most; ++length) {
                for (const std::string_view inside : kInside) {
                    for (const std::size_t at : {std::size_t{0}, length / 2, length}) {
                        std::string run;
                        for (std::size_t i = 0; i < length; ++i) run += filler;
                        run.insert(at * filler.size(), inside);
                        compare(std::string(before) + run + std::string(behind));
                        if (HasFatalFailure()) return;
                    }
                }
            }
        }
    }
}

}  // namespace
