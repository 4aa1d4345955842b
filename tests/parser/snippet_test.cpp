// The piece of the document that an error message quotes: from 32 bytes before the position, whole
// characters only, at most 63 bytes.
#include <string>
#include <string_view>

#include "gtest/gtest.h"
#include "tests/support/expectations.h"

using namespace std::string_view_literals;
using support::memoryFeed;
using support::printable;
using support::record;
using support::RecordedParse;

namespace {

std::string snippetOf(std::string_view document) {
    return record(memoryFeed(document)).snippet;
}

// White space of no period that a snippet could hide behind, then the "x" that ends the parse.
std::string blanksThenError(std::size_t blanks) {
    std::string document;
    for (std::size_t i = 0; i < blanks; ++i) document += i * i % 7 < 3 ? ' ' : '\t';
    return document + 'x';
}

// count bytes, no two stretches of them alike.
std::string tail(std::size_t count) {
    std::string text;
    for (std::size_t i = 0; text.size() < count; ++i) text += std::to_string(i) + ',';
    text.resize(count);
    return text;
}

// The "x" that ends the parse, and so many bytes behind it.
std::string errorThenTail(std::size_t count) {
    std::string text = tail(count);
    text.insert(text.begin(), 'x');
    return text;
}

// The position at every byte of the first 100, with every number of bytes behind it.
TEST(Snippet, EveryPositionAndLength) {
    for (std::size_t before = 0; before <= 100; ++before) {
        for (std::size_t behind = 0; behind <= 70; ++behind) {
            const std::string document = blanksThenError(before) + tail(behind);
            const std::size_t from = before < 32 ? 0 : before - 32;
            ASSERT_EQ(snippetOf(document), document.substr(from, 63)) << before << ' ' << behind;
        }
    }
}

TEST(Snippet, Lengths) {
    constexpr struct {
        std::size_t before;  // bytes before the position
        std::size_t behind;  // bytes behind the one at the position
        std::size_t from;    // first byte that is quoted
        std::size_t length;
    } kRows[] = {
        {0, 0, 0, 1},        {0, 61, 0, 62},       {0, 62, 0, 63},      {0, 63, 0, 63},
        {0, 500, 0, 63},     {1, 0, 0, 2},         {31, 0, 0, 32},      {31, 30, 0, 62},
        {31, 31, 0, 63},     {31, 32, 0, 63},      {32, 0, 0, 33},      {32, 29, 0, 62},
        {32, 30, 0, 63},     {32, 31, 0, 63},      {33, 0, 1, 33},      {33, 29, 1, 62},
        {33, 30, 1, 63},     {33, 31, 1, 63},      {34, 31, 2, 63},     {960, 30, 928, 63},
        {991, 99, 959, 63},  {992, 99, 960, 63},   {1023, 99, 991, 63}, {1024, 99, 992, 63},
        {1025, 99, 993, 63}, {5000, 99, 4968, 63},
    };
    for (const auto &row : kRows) {
        const std::string document = blanksThenError(row.before) + tail(row.behind);
        EXPECT_EQ(snippetOf(document), document.substr(row.from, row.length))
            << row.before << ' ' << row.behind;
        support::expectSameThroughEveryFeed(document, "blanks and error");
    }
}

// A position at the very end has nothing behind it.
TEST(Snippet, AtTheEnd) {
    for (const std::size_t blanks : {1, 31, 32, 33, 34, 62, 63, 64, 65, 1024}) {
        std::string document = blanksThenError(blanks);
        document.pop_back();
        const std::size_t from = blanks < 32 ? 0 : blanks - 32;
        EXPECT_EQ(snippetOf(document), document.substr(from)) << blanks;
    }
}

// What stands 32 bytes before the position may be the middle of a character: the snippet begins
// with the next one.
TEST(Snippet, CharactersAtTheFront) {
    constexpr struct {
        std::string_view character;
        std::size_t length;
    } kCharacters[] = {{"\xC3\xA9", 2}, {"\xE4\xB8\xAD", 3}, {"\xF0\x9F\x98\x80", 4}};
    for (const auto &row : kCharacters) {
        for (std::size_t back = 0; back < row.length; ++back) {
            // The character begins back bytes before the 32.
            const std::string filler(32 + back - row.length - 3, '.');
            const std::string document =
                "<!--" + std::string(row.character) + filler + "-->x" + tail(40);
            const std::size_t error = document.find("-->x") + 3;
            const std::size_t from = error - 32 - back + (back ? row.length : 0);
            ASSERT_EQ(error - 32 - back, 4u);
            // 63 bytes are counted from the character that begins the snippet.
            EXPECT_EQ(snippetOf(document), document.substr(from, 63)) << row.length << ' ' << back;
            support::expectSameThroughEveryFeed(document, "character at the front");
        }
    }
}

// What would end inside a character ends before it.
TEST(Snippet, CharactersAtTheEnd) {
    constexpr std::string_view kCharacters[] = {"\xC3\xA9", "\xE4\xB8\xAD", "\xF0\x9F\x98\x80"};
    for (const std::string_view character : kCharacters) {
        for (std::size_t inside = 1; inside <= character.size(); ++inside) {
            // So many bytes of the character lie within the 63.
            const std::string front = errorThenTail(62 - inside);
            const std::string document = front + std::string(character) + "and more";
            const bool whole = inside == character.size();
            EXPECT_EQ(snippetOf(document), whole ? front + std::string(character) : front)
                << character.size() << ' ' << inside;
            support::expectSameThroughEveryFeed(document, "character at the end");
            // The same where the document ends inside the character.
            const std::string cut = errorThenTail(5) + std::string(character.substr(0, inside));
            EXPECT_EQ(snippetOf(cut), whole ? cut : errorThenTail(5));
        }
    }
}

// Bytes that belong to no character.
TEST(Snippet, StrayBytes) {
    const std::string continuations(100, '\x80');
    std::string letterFirst = continuations;
    letterFirst.insert(letterFirst.begin(), 'x');
    const struct {
        const char *name;
        std::string document;
        std::string snippet;
    } kRows[] = {
        {"nothing that begins a character", continuations, ""},
        {"one continuation byte", "\xBF", ""},
        {"continuation bytes first", "\x80\xBFx<a/>", "x<a/>"},
        {"continuation bytes behind a letter", letterFirst, letterFirst.substr(0, 63)},
        {"a few of them", "x\x80\x80\x80", "x\x80\x80\x80"},
        {"more than the character needs", "x\xC3\xA9\x80\x80", "x\xC3\xA9\x80\x80"},
        {"lead of two bytes last", "x\xC3", "x"},
        {"lead of three bytes last", "x\xE4", "x"},
        {"lead of four bytes last", "x\xF0", "x"},
        {"leads that are none count four", "x\xFF", "x"},
        {"three bytes of four", "x\xFC\x80\x80", "x"},
        {"four bytes behind FC", "x\xFC\x80\x80\x80", "x\xFC\x80\x80\x80"},
        {"five bytes behind FC", "x\xFC\x80\x80\x80\x80", "x\xFC\x80\x80\x80\x80"},
        {"two leads", "x\xC3\xC3", "x\xC3"},
        {"a lead within the 63", errorThenTail(61) + "\xE4\xB8\xAD", errorThenTail(61)},
        {"NUL ends the string", std::string("x\0<a/>"sv), "x"},
        {"NUL first", std::string("\0<a/>"sv), ""},
        {"byte order mark", "\xEF\xBB\xBFx", "\xEF\xBB\xBFx"},
    };
    for (const auto &row : kRows) {
        const RecordedParse parse = record(memoryFeed(row.document));
        EXPECT_EQ(parse.status, 72) << row.name;
        EXPECT_EQ(printable(parse.snippet), printable(row.snippet)) << row.name;
        support::expectSameThroughEveryFeed(row.document, row.name);
    }
}

// Every snippet of a document of mixed characters that fails at each byte in turn: at most 63
// bytes, no character cut at either end, and around the position.
TEST(Snippet, WholeCharactersOnly) {
    std::string text;
    for (int i = 0; i < 30; ++i) text += "a\xC3\xA9\xE4\xB8\xAD\xF0\x9F\x98\x80";
    for (std::size_t at = 0; at < text.size(); ++at) {
        if ((static_cast<unsigned char>(text[at]) & 0xC0) == 0x80) continue;
        std::string document = "<a>" + text;
        document.insert(at + 3, 1, '\x01');
        const RecordedParse parse = record(memoryFeed(document));
        ASSERT_EQ(parse.status, 9);
        ASSERT_LE(parse.snippet.size(), 63u);
        const std::size_t found = document.find(parse.snippet);
        ASSERT_NE(found, document.npos);
        EXPECT_LE(found, at + 3);
        EXPECT_TRUE(found <= 3 || found + 32 >= at + 3);
        const auto begins = [&document](std::size_t i) {
            return i == document.size() || (static_cast<unsigned char>(document[i]) & 0xC0) != 0x80;
        };
        EXPECT_TRUE(begins(found)) << at;
        EXPECT_TRUE(begins(found + parse.snippet.size())) << at;
    }
}

}  // namespace
