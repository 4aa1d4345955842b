// Documents in every encoding: how it is found out, that the callbacks do not depend on it, and
// what happens to bytes that do not convert.
#include <string>
#include <string_view>
#include <vector>

#include "gtest/gtest.h"
#include "tests/support/expectations.h"
#include "tests/support/reference_iconv.h"

using namespace std::string_view_literals;
using support::Feed;
using support::record;
using support::RecordedParse;

namespace {

std::string utf8Of(std::u32string_view text) {
    return *support::encodeBare(XML_ENCODING_UTF_8, text);
}

std::u32string ascii(std::string_view text) {
    return {text.begin(), text.end()};
}

// How the bytes of an encoding with several names or an open byte order lie.
struct Form {
    std::uint32_t declared;  // the number that the declaration names
    std::uint32_t bytes;     // the encoding whose bytes these are
    std::string_view mark;   // its byte order mark; empty if there is none
    bool found;              // whether the first bytes tell it without mark or declaration
};

constexpr Form kForms[] = {
    {XML_ENCODING_UTF_8, XML_ENCODING_UTF_8, "\xEF\xBB\xBF"sv, true},
    {XML_ENCODING_UTF_16LE, XML_ENCODING_UTF_16LE, "\xFF\xFE"sv, true},
    {XML_ENCODING_UTF_16BE, XML_ENCODING_UTF_16BE, "\xFE\xFF"sv, true},
    {XML_ENCODING_GB2312, XML_ENCODING_GB2312, ""sv, false},
    {XML_ENCODING_UTF_32LE, XML_ENCODING_UTF_32LE, "\xFF\xFE\0\0"sv, true},
    {XML_ENCODING_UTF_32BE, XML_ENCODING_UTF_32BE, "\0\0\xFE\xFF"sv, true},
    {XML_ENCODING_UTF_16, XML_ENCODING_UTF_16LE, "\xFF\xFE"sv, true},
    {XML_ENCODING_UTF_16, XML_ENCODING_UTF_16BE, "\xFE\xFF"sv, true},
    {XML_ENCODING_UTF_32, XML_ENCODING_UTF_32LE, "\xFF\xFE\0\0"sv, true},
    {XML_ENCODING_UTF_32, XML_ENCODING_UTF_32BE, "\0\0\xFE\xFF"sv, true},
    {XML_ENCODING_GBK, XML_ENCODING_GBK, ""sv, false},
    {XML_ENCODING_GB18030, XML_ENCODING_GB18030, ""sv, false},
    {XML_ENCODING_UCS_4, XML_ENCODING_UTF_32LE, "\xFF\xFE\0\0"sv, true},
    {XML_ENCODING_UCS_4, XML_ENCODING_UTF_32BE, "\0\0\xFE\xFF"sv, true},
    {XML_ENCODING_UCS_4BE, XML_ENCODING_UTF_32BE, "\0\0\xFE\xFF"sv, true},
    {XML_ENCODING_UCS_4LE, XML_ENCODING_UTF_32LE, "\xFF\xFE\0\0"sv, true},
};

bool isWide(std::uint32_t encoding) {
    return encoding != XML_ENCODING_GB2312 && encoding != XML_ENCODING_GBK;
}

std::string nameOf(const Form &form) {
    return std::string(support::encodingName(form.declared)) + " as " +
           support::encodingName(form.bytes);
}

// Names, values and texts beyond ASCII, lines of all three kinds, and every kind of markup.
std::u32string body(std::uint32_t encoding) {
    std::u32string text =
        U"\r\n<!--\u6CE8\u91CA--><?\u6307\u4EE4 \u6570\u636E?>\n<!DOCTYPE \u6839 [\u4E2D>]>\r"
        U"<\u6839 \u540D='\u503C&#x4E2D;' xmlns:\u524D='\u7A7A\u95F4'>\n  \u6587\u672C &amp; b\n"
        U"<\u524D:\u5B50 \u524D:\u540D=\"\"/><![CDATA[\u4E2D<\u6587>]]></\u6839>\n";
    if (isWide(encoding)) text.insert(text.find(U" &amp; b"), U"\U0001F600\U00010000\u00E9");
    return text;
}

std::u32string declaration(std::uint32_t encoding) {
    return U"<?xml version='1.0' encoding='" + ascii(support::encodingName(encoding)) + U"'?>";
}

// The calls of the same document in UTF-8, with another number for its encoding.
std::vector<std::string> expectedCalls(const std::u32string &document, std::uint32_t recorded) {
    // The declared name would be obeyed: blanks of the same width leave the columns as they are.
    std::u32string plain = document;
    if (const auto at = plain.find(U"encoding='"); at != plain.npos) {
        const auto end = plain.find(U'\'', at + 10) + 1;
        plain.replace(at, end - at, end - at, U' ');
    }
    std::vector<std::string> calls = record(support::memoryFeed(utf8Of(plain))).calls;
    for (std::string &call : calls) {
        const std::string from = "encoding 0";
        if (const auto at = call.find(from); at != call.npos && call.find("ocument") != call.npos) {
            call.replace(at, from.size(), "encoding " + std::to_string(recorded));
        }
    }
    return calls;
}

void expectCalls(const std::string &name, const std::string &source, const std::u32string &document,
                 std::uint32_t recorded) {
    const std::vector<std::string> expected = expectedCalls(document, recorded);
    ASSERT_GE(expected.size(), 2u);
    for (const Feed &feed :
         source.size() > 4096 ? support::mainFeeds(source) : support::everyFeed(source)) {
        const RecordedParse parse = record(feed);
        ASSERT_EQ(parse.result, XML_OK) << name << ", " << feed.name() << "\n" << parse;
        ASSERT_EQ(parse.calls, expected) << name << ", " << feed.name();
        ASSERT_TRUE(parse.breaches.empty()) << name << ", " << feed.name() << "\n" << parse;
    }
}

// ---------------------------------------------------------------- finding the encoding

TEST(Encodings, MarkAndDeclaration) {
    for (const Form &form : kForms) {
        if (form.mark.empty()) continue;
        const std::u32string document = declaration(form.declared) + body(form.declared);
        expectCalls(nameOf(form) + ", mark and declaration",
                    std::string(form.mark) + *support::encodeBare(form.bytes, document), document,
                    form.declared);
    }
}

TEST(Encodings, DeclarationAlone) {
    for (const Form &form : kForms) {
        const std::u32string document = declaration(form.declared) + body(form.declared);
        expectCalls(nameOf(form) + ", declaration", *support::encodeBare(form.bytes, document),
                    document, form.declared);
    }
}

// A mark tells the encoding; a document without a declaration is recorded by it.
TEST(Encodings, MarkAlone) {
    for (const Form &form : kForms) {
        if (form.mark.empty() || form.declared != form.bytes) continue;
        for (const std::u32string &start :
             {std::u32string(), std::u32string(U"<?xml version='1.0'?>")}) {
            const std::u32string document = start + body(form.bytes);
            expectCalls(nameOf(form) + ", mark",
                        std::string(form.mark) + *support::encodeBare(form.bytes, document),
                        document, form.bytes);
        }
    }
}

// Intended: what the first bytes tell is not recorded; only a mark or a declaration is.
TEST(Encodings, FirstBytesAlone) {
    for (const Form &form : kForms) {
        if (!form.found || form.declared != form.bytes) continue;
        const std::u32string document = U"<?xml version='1.0'?>" + body(form.bytes);
        expectCalls(nameOf(form) + ", neither", *support::encodeBare(form.bytes, document),
                    document, XML_ENCODING_UTF_8);
    }
    // Four bytes a character tell themselves by any "<"; two bytes only by "<?".
    for (const std::uint32_t encoding : {XML_ENCODING_UTF_32LE, XML_ENCODING_UTF_32BE}) {
        const std::u32string document = U"<\u6839/>";
        expectCalls("element first", *support::encodeBare(encoding, document), document, 0);
    }
    for (const std::uint32_t encoding : {XML_ENCODING_UTF_16LE, XML_ENCODING_UTF_16BE}) {
        const std::u32string document = U"<?p?><\u6839/>";
        expectCalls("instruction first", *support::encodeBare(encoding, document), document, 0);
        const std::string element = *support::encodeBare(encoding, U"<a/>");
        const RecordedParse parse = support::expectSameThroughEveryFeed(element, "element first");
        EXPECT_EQ(parse.status, encoding == XML_ENCODING_UTF_16LE ? 9 : 72);
    }
}

TEST(Encodings, NamesIgnoreCase) {
    for (const char32_t *name : {U"gb18030", U"Gb18030", U"GB18030", U"gbk", U"gB2312"}) {
        const std::u32string document =
            std::u32string(U"<?xml version='1.0' encoding='") + name + U"'?>" + body(3);
        const std::uint32_t encoding = name[2] == U'1' ? 9 : name[2] == U'2' ? 3 : 8;
        expectCalls(utf8Of(name), *support::encodeBare(encoding, document), document, encoding);
    }
}

// A declaration against the bytes that carry it.
TEST(Encodings, DeclarationAgainstTheBytes) {
    // UTF-16 that calls itself UTF-8 is read as bytes behind the name: a NUL, no blank and no "?>".
    for (const auto &[encoding, mark] : {std::pair(XML_ENCODING_UTF_16LE, "\xFF\xFE"sv),
                                         std::pair(XML_ENCODING_UTF_16BE, "\xFE\xFF"sv),
                                         std::pair(XML_ENCODING_UTF_32LE, "\xFF\xFE\0\0"sv),
                                         std::pair(XML_ENCODING_UTF_32BE, "\0\0\xFE\xFF"sv)}) {
        const std::string document =
            std::string(mark) +
            *support::encodeBare(encoding, U"<?xml version='1.0' encoding='UTF-8'?><a/>");
        const RecordedParse parse = support::expectSameThroughEveryFeed(document, "as UTF-8");
        EXPECT_EQ(parse.status, 65) << parse;
        EXPECT_EQ(parse.line, 1);
        EXPECT_EQ(parse.column, 37);
    }
    // A mark of UTF-8 does not keep a declaration from being obeyed.
    {
        const std::u32string document = declaration(XML_ENCODING_GBK) + body(XML_ENCODING_GBK);
        expectCalls("mark of UTF-8 before GBK",
                    "\xEF\xBB\xBF" + *support::encodeBare(XML_ENCODING_GBK, document), document,
                    XML_ENCODING_GBK);
    }
    // The other byte order: the next character is none of those that may stand there.
    for (const auto &[encoding, mark, name] :
         {std::tuple(XML_ENCODING_UTF_16LE, "\xFF\xFE"sv, U"UTF-16BE"),
          std::tuple(XML_ENCODING_UTF_16BE, "\xFE\xFF"sv, U"UTF-16LE")}) {
        const std::u32string text =
            std::u32string(U"<?xml version='1.0' encoding='") + name + U"'?><a/>";
        const RecordedParse parse = support::expectSameThroughEveryFeed(
            std::string(mark) + *support::encodeBare(encoding, text), "other order");
        EXPECT_EQ(parse.status, 65) << parse;
        EXPECT_EQ(parse.column, 40);
    }
}

// ---------------------------------------------------------------- long documents

// Every character of such a document stands across some edge of a window for some shift.
TEST(Encodings, CharactersAcrossWindows) {
    for (const Form &form : kForms) {
        if (form.declared != form.bytes && form.declared != XML_ENCODING_UTF_16) continue;
        for (std::size_t shift = 0; shift < 4; ++shift) {
            std::u32string document =
                declaration(form.declared) + U"<a>" + std::u32string(shift, U'x');
            while (document.size() < 1800) {
                document += U"\u4E2D\u6587";
                if (document.size() % 7 == 0)
                    document += isWide(form.declared) ? U"\U0001F600" : U"z";
                if (document.size() % 50 < 2) document += U"\r\n";
            }
            document += U"<\u4E2D \u540D='\u503C'/>\u6587</a>";
            const std::string source =
                std::string(form.mark) + *support::encodeBare(form.bytes, document);
            const std::vector<std::string> expected = expectedCalls(document, form.declared);
            for (const Feed &feed :
                 {support::memoryFeed(source), support::fileFeed(source), support::listFeed(source),
                  support::listInPieces(source, 1), support::listInPieces(source, 1023),
                  support::listInPieces(source, 1025)}) {
                const RecordedParse parse = record(feed);
                ASSERT_EQ(parse.result, XML_OK) << nameOf(form) << ", " << feed.name() << "\n"
                                                << parse;
                ASSERT_EQ(parse.calls, expected)
                    << nameOf(form) << ", " << feed.name() << ", " << shift;
            }
        }
    }
}

// The declaration itself reaches over the edge of the first window, so that the switch happens with
// few bytes ahead and many kept.
TEST(Encodings, LongDeclaration) {
    for (const Form &form : kForms) {
        for (const std::size_t blanks : {900, 985, 990, 1000, 1024, 2000}) {
            const std::u32string document =
                U"<?xml version='1.0'" + std::u32string(blanks, U' ') + U"encoding='" +
                ascii(support::encodingName(form.declared)) + U"'?>" + body(form.declared);
            const std::string source = *support::encodeBare(form.bytes, document);
            const std::vector<std::string> expected = expectedCalls(document, form.declared);
            for (const Feed &feed : support::mainFeeds(source)) {
                const RecordedParse parse = record(feed);
                ASSERT_EQ(parse.result, XML_OK)
                    << nameOf(form) << ", " << blanks << ", " << feed.name() << "\n"
                    << parse;
                ASSERT_EQ(parse.calls, expected) << nameOf(form) << ", " << feed.name();
            }
        }
    }
}

// Errors stand where they stand in UTF-8, and quote the converted text.
TEST(Encodings, ErrorsInEveryEncoding) {
    for (const Form &form : kForms) {
        const std::u32string document =
            declaration(form.declared) + U"\n<\u6839>\n\u6587\u672C\u4E2D&\u6587;</\u6839>";
        for (const std::string &source :
             {std::string(form.mark) + *support::encodeBare(form.bytes, document),
              *support::encodeBare(form.bytes, document)}) {
            const RecordedParse parse = support::expectSameThroughEveryFeed(source, nameOf(form));
            EXPECT_EQ(parse.status, 26) << nameOf(form) << "\n" << parse;
            EXPECT_EQ(parse.line, 3);
            EXPECT_EQ(parse.column, 5);
            const std::string whole = utf8Of(document);
            EXPECT_NE(whole.find(parse.snippet), whole.npos) << parse.snippet;
            EXPECT_NE(parse.snippet.find(utf8Of(U"\u672C\u4E2D&\u6587;</")), std::string::npos);
        }
    }
}

// ---------------------------------------------------------------- bytes that do not convert

std::string declared(std::string_view encoding) {
    return "<?xml version='1.0' encoding='" + std::string(encoding) + "'?>";
}

// The declared encoding cannot be read: that shows at the end of the parse and replaces the code
// of whatever stopped it, or of nothing.
TEST(Encodings, ConversionFailure) {
    const struct {
        const char *name;
        std::string document;
        int line;
        int column;
        std::size_t calls;
    } kRows[] = {
        {"invalid byte in the root", declared("GBK") + "<a>\xFF</a>", 1, 40, 2},
        {"invalid byte in a comment", declared("GB18030") + "<!--\xFF--><a/>", 1, 45, 1},
        {"invalid byte behind the root", declared("GB2312") + "\n<a/>\n\xFF", 3, 1, 3},
        {"an earlier error", declared("GBK") + "<a></b>\xFF", 1, 42, 2},
        // Everything is ASCII: accepted, but for the encoding that was asked for.
        {"ASCII that calls itself UTF-32", declared("UTF-32LE") + "<a/>", 1, 46, 4},
        {"ASCII that calls itself UCS-4", declared("UCS-4BE") + "<a></a>\n", 2, 1, 4},
        {"ASCII of odd length that calls itself UTF-16", declared("UTF-16BE") + "<a/>", 1, 46, 4},
    };
    for (const auto &row : kRows) {
        support::Refusal refusal{row.name, row.document, 1500, row.line, row.column, {}};
        support::expectRefused(refusal);
        const RecordedParse parse = record(support::memoryFeed(row.document));
        EXPECT_EQ(parse.calls.size(), row.calls) << parse;
    }
}

// The first bytes tell an encoding that the rest is not in.
TEST(Encodings, SniffedConversionFailure) {
    constexpr support::Refusal kRows[] = {
        {"odd byte", "<\0?\0x"sv, 1500, 1, 1, "<"},
        {"odd byte, big-endian", "\0<\0?\0"sv, 1500, 1, 1, {}},
        {"three bytes of four", "<\0\0\0a\0\0"sv, 1500, 1, 1, "<"},
        {"three bytes of four, big-endian", "\0\0\0<\0\0\0"sv, 1500, 1, 1, {}},
        {"no code point", "<\0\0\0\0\0\x11\0"sv, 1500, 1, 1, "<"},
        {"low surrogate first", "<\0?\0\0\xDC"sv, 1500, 1, 1, "<"},
    };
    for (const support::Refusal &row : kRows) {
        const RecordedParse parse = record(support::memoryFeed(row.document));
        EXPECT_EQ(parse.result, XML_REFUSED) << row.name;
        EXPECT_EQ(parse.status, row.code) << row.name << "\n" << parse;
        EXPECT_EQ(parse.line, row.line);
        EXPECT_EQ(parse.column, row.column);
        EXPECT_EQ(parse.snippet, row.snippet) << row.name;
        EXPECT_TRUE(parse.calls.empty());
    }
    // What can never convert fails from every source.
    for (const support::Refusal &row : {kRows[4], kRows[5]}) support::expectRefused(row);
}

// After a mark the whole of a memory must convert; the mark is what the message then quotes.
TEST(Encodings, OddByteAtTheEnd) {
    for (const auto &[encoding, mark] : {std::pair(XML_ENCODING_UTF_16LE, "\xFF\xFE"sv),
                                         std::pair(XML_ENCODING_UTF_16BE, "\xFE\xFF"sv),
                                         std::pair(XML_ENCODING_UTF_32LE, "\xFF\xFE\0\0"sv),
                                         std::pair(XML_ENCODING_UTF_32BE, "\0\0\xFE\xFF"sv)}) {
        for (const std::size_t letters : {0, 400, 1000, 3000}) {
            const std::u32string document = U"<a>" + std::u32string(letters, U'x') + U"</a>";
            const std::string source = std::string(mark) + *support::encodeBare(encoding, document);
            const std::vector<std::string> expected = expectedCalls(document, encoding);
            for (const Feed &feed : support::mainFeeds(source + "x")) {
                const RecordedParse parse = record(feed);
                SCOPED_TRACE(testing::Message()
                             << encoding << ' ' << letters << ' ' << feed.name() << "\n"
                             << parse);
                if (feed.kind() == Feed::Kind::kMemory) {
                    EXPECT_EQ(parse.result, XML_REFUSED);
                    EXPECT_EQ(parse.status, 1500);
                    EXPECT_EQ(parse.errors, 1);
                } else {
                    // More might have come, so half a character is simply not there.
                    EXPECT_EQ(parse.result, XML_OK);
                    EXPECT_EQ(parse.calls, expected);
                }
            }
        }
    }
}

// Intended: what does not convert further on than was read ahead ends the input of a file or list.
TEST(Encodings, InvalidSequenceInTheMiddle) {
    for (const std::string_view invalid : {"\xFF\xFF"sv, "\xFF\x40"sv, "\xD6\x20"sv}) {
        for (std::size_t at = 1024; at < 1200; at += 7) {
            for (const bool insideRoot : {true, false}) {
                std::string valid = declared("GBK") + "<a>";
                if (!insideRoot) valid += "</a>";
                while (valid.size() + 2 <= at) valid += insideRoot ? "\xD6\xD0" : "\r\n";
                while (valid.size() < at) valid += ' ';
                const std::string whole = valid + std::string(invalid) + "\xD6\xD0<b></a>";
                const RecordedParse expected = record(support::memoryFeed(valid));
                EXPECT_EQ(expected.result, insideRoot ? XML_REFUSED : XML_OK) << expected;
                for (const Feed &feed : support::mainFeeds(whole)) {
                    const RecordedParse parse = record(feed);
                    if (feed.kind() == Feed::Kind::kMemory) {
                        ASSERT_EQ(parse.status, 1500) << parse;
                    } else {
                        ASSERT_TRUE(support::sameOutcome(expected, parse))
                            << at << ", " << feed.name() << "\nexpected " << expected << "\ngot "
                            << parse;
                    }
                }
            }
        }
    }
}

// A document that stops inside a character of its encoding: a memory is refused, a file whose end
// was not yet known when the encoding was declared simply ends before the character.
TEST(Encodings, CutCharacterAtTheEnd) {
    const std::string root = declared("GBK") + "<a/>";
    const std::string small = root + "\xD6";
    support::expectRefused({"small", small, 1500, 1, 41, {}});
    const std::string large = root + std::string(2000, ' ') + "\xD6";
    for (const Feed &feed : support::mainFeeds(large)) {
        const RecordedParse parse = record(feed);
        EXPECT_EQ(parse.result, feed.kind() == Feed::Kind::kMemory ? XML_REFUSED : XML_OK) << parse;
    }
}

// Every document of this file cut at every byte: nothing is read behind its end, and where the cut
// leaves whole characters all sources agree.
TEST(Encodings, CutAtEveryByte) {
    for (const Form &form : kForms) {
        const std::u32string document = declaration(form.declared) + body(form.declared);
        const std::string source =
            std::string(form.mark) + *support::encodeBare(form.bytes, document);
        for (std::size_t length = 1; length < source.size(); length += isWide(form.bytes) ? 3 : 1) {
            const std::string_view cut = std::string_view(source).substr(0, length);
            const RecordedParse memory = record(support::memoryFeed(cut));
            const RecordedParse list = record(support::listFeed(cut));
            const RecordedParse pieces = record(support::listInPieces(cut, 3));
            ASSERT_TRUE(support::sameOutcome(list, pieces)) << nameOf(form) << ' ' << length;
            ASSERT_EQ(memory.errors, memory.result == XML_OK ? 0 : 1);
            if (memory.status == 1500) continue;
            ASSERT_TRUE(support::sameOutcome(memory, list))
                << nameOf(form) << ' ' << length << "\nmemory gives " << memory << "\nlist gives "
                << list;
        }
    }
}

// The caller's bytes are read and never written: these lie in memory that cannot be.
TEST(Encodings, SourcesAreNotWritten) {
    static constexpr char kUtf8[] =
        "\xEF\xBB\xBF<a b='&lt;'> text&#10;<!--c--><?p d?><![CDATA[x]]></a>\n";
    static constexpr char kGbk[] = "<?xml version='1.0' encoding='GBK'?><a>\xD6\xD0\xCE\xC4</a>";
    static constexpr char kUtf16[] = "\xFF\xFE<\0a\0>\0-\x4E<\0/\0a\0>";
    static constexpr char kBroken[] = "<?xml version='1.0' encoding='GBK'?><a>\xFF</b>";
    constexpr std::pair<std::string_view, bool> kSources[] = {
        {{kUtf8, sizeof kUtf8 - 1}, true},
        {{kGbk, sizeof kGbk - 1}, true},
        {{kUtf16, sizeof kUtf16}, true},  // the last zero belongs to the ">"
        {{kBroken, sizeof kBroken - 1}, false}};
    for (const auto &[source, accepted] : kSources) {
        const auto length = static_cast<std::uint32_t>(source.size());
        const std::uint32_t result = accepted ? XML_OK : XML_REFUSED;
        EXPECT_EQ(XML_Parser_ByMem(source.data(), length, nullptr), result);
        const auto *bytes = reinterpret_cast<const unsigned char *>(source.data());
        XML_IO_MemChunk last{nullptr, length - length / 2, bytes + length / 2};
        XML_IO_MemChunk first{&last, length / 2, bytes};
        const XML_IO_MemList list{&first};
        EXPECT_EQ(XML_Parser_ByMemList(&list, nullptr), result);
    }
}

}  // namespace
