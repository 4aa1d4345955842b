// Parses while memory is exhausted and files fail: refused or cut short, with nothing left behind.
#include <cerrno>
#include <string>
#include <string_view>
#include <vector>

#include "gtest/gtest.h"
#include "tests/support/expectations.h"
#include "tests/support/faults.h"
#include "tests/support/reference_iconv.h"

using namespace std::string_view_literals;
using support::FaultyFiles;
using support::FaultyHeap;
using support::Feed;
using support::memoryFeed;
using support::record;
using support::RecordedParse;

namespace {

// Calls every slot, keeps many bindings and attributes at once, nests, and holds one token of
// every kind that is longer than any buffer is at first.
std::string richDocument() {
    const std::string token(1100, 't');
    std::string text =
        "<?xml version='1.0' encoding='GBK' standalone='no'?><!--one--><?p first?>\n"
        "<!DOCTYPE a [ <!ENTITY e '>'> ]>\n<a b='1' xmlns='d' xmlns:p='u' p:c='&#65;&lt;'>text "
        "&amp;\n";
    text += "<p:" + token + " xmlns:" + token + "='" + token + "' " + token + ":" + token + "='" +
            token + "&gt;'>" + token + " &quot; " + token + "<!--" + token + "--><?" + token + ' ' +
            token + "?><![CDATA[" + token + "]]></p:" + token + ">";
    for (int i = 0; i < 12; ++i) {
        const std::string n = std::to_string(i);
        text += "<e" + n + " xmlns:n" + n + "='u" + n + "' n" + n + ":a='' b='" + n + "'>x";
    }
    for (int i = 12; i-- > 0;) text += "</e" + std::to_string(i) + ">";
    text += "<many";
    for (int i = 0; i < 20; ++i) text += " a" + std::to_string(i) + "='" + std::to_string(i) + "'";
    for (int i = 0; i < 20; ++i) text += " xmlns:m" + std::to_string(i) + "='u'";
    return text + "/></a>\n<!--end--><?q?>\n";
}

std::vector<Feed> documents() {
    std::vector<Feed> feeds;
    const auto add = [&feeds](const std::string &document) {
        feeds.push_back(memoryFeed(document));
        feeds.push_back(support::fileFeed(document));
        feeds.push_back(support::listInPieces(document, 65));
    };
    const std::string rich = richDocument();
    add(rich);
    // An open document: what is open has to be given back as well.
    const std::string plain = rich.substr(rich.find("<!--one"));
    add(plain.substr(0, plain.find("</e5>")));
    std::u32string wide(plain.begin(), plain.end());
    wide.insert(wide.find(U"text"), U"\u4E2D\u6587");
    add("\xFF\xFE" + *support::encodeBare(XML_ENCODING_UTF_16LE, wide));
    // Found by the first bytes, then declared by the name that leaves the order open.
    add(*support::encodeBare(XML_ENCODING_UTF_32BE,
                             U"<?xml version='1.0' encoding='UCS-4'?>" + wide));
    return feeds;
}

// Without the number of the encoding, which is not known where the conversion found no memory.
std::string withoutEncoding(std::string call) {
    if (call.rfind("startDocument", 0) == 0) call.erase(call.find("encoding"), 11);
    return call;
}

// Every allocation of every parse, refused once and from there on.
TEST(ParserFaults, SurvivesEachFailedAllocation) {
    for (const Feed &feed : documents()) {
        const RecordedParse whole = record(feed);
        std::size_t told = 0;
        for (const bool persistent : {false, true}) {
            if (persistent && feed.kind() == Feed::Kind::kFile) continue;
            for (std::size_t nth = 1;; ++nth) {
                FaultyFiles files({});
                FaultyHeap heap(nth, persistent);
                const RecordedParse parse = record(feed);
                SCOPED_TRACE(testing::Message() << feed.name() << ", allocation " << nth);
                ASSERT_EQ(heap.blocksInUse(), 0u);
                ASSERT_EQ(files.openDescriptors(), 0);
                if (!heap.failed()) {
                    EXPECT_TRUE(support::sameOutcome(whole, parse));
                    EXPECT_GT(nth, 3u);
                    break;
                }
                if (heap.failedOptionally()) {
                    EXPECT_TRUE(support::sameOutcome(whole, parse));
                    continue;
                }
                // What was called before is what is called when nothing fails.
                ASSERT_LE(parse.calls.size(), whole.calls.size());
                for (std::size_t i = 0; i < parse.calls.size(); ++i) {
                    ASSERT_EQ(withoutEncoding(parse.calls[i]), withoutEncoding(whole.calls[i]));
                }
                EXPECT_TRUE(parse.breaches.empty());
                ASSERT_EQ(parse.result, XML_REFUSED);
                if (parse.errors == 0) {
                    // Before there was anything to report to.
                    EXPECT_TRUE(parse.calls.empty());
                    continue;
                }
                ASSERT_EQ(parse.errors, 1);
                EXPECT_TRUE(parse.status == 2 || parse.status == 1) << parse.status;
                EXPECT_EQ(parse.message, support::messageOf(parse.status));
                told += parse.status == 2;
            }
        }
        EXPECT_GT(told, 0u) << feed.name();
    }
}

// No room for the first value at all is told as an internal error, behind its opening quote; every
// other shortage, as it says.
TEST(ParserFaults, FirstValueWithoutMemory) {
    for (const Feed &feed : support::mainFeeds("<a b='c' d='e'/>")) {
        int internal = 0;
        int exhausted = 0;
        for (std::size_t nth = 1;; ++nth) {
            FaultyHeap heap(nth);
            const RecordedParse parse = record(feed);
            if (!heap.failed()) break;
            internal += parse.status == 1;
            exhausted += parse.status == 2;
            if (parse.status == 1) {
                EXPECT_EQ(parse.text, "The Line 1 Column 7 :\"<a b='c' d='e'/>\", internal error.");
            }
        }
        EXPECT_EQ(internal, 1) << feed.name();
        EXPECT_GT(exhausted, 0) << feed.name();
    }
}

// The parses of a document with each allocation failing in turn: refused, with nothing left behind.
void expectEachFailureTold(const Feed &feed) {
    const RecordedParse whole = record(feed);
    for (std::size_t nth = 1;; ++nth) {
        FaultyHeap heap(nth);
        const RecordedParse parse = record(feed);
        SCOPED_TRACE(testing::Message() << feed.name() << ", allocation " << nth);
        ASSERT_EQ(heap.blocksInUse(), 0u);
        if (!heap.failed() || heap.failedOptionally()) {
            ASSERT_TRUE(support::sameOutcome(whole, parse));
            if (!heap.failed()) return;
            continue;
        }
        ASSERT_EQ(parse.result, XML_REFUSED);
        // 1 is the first value's own message; before there is a parser nobody is told.
        ASSERT_TRUE(parse.errors == 0 || parse.status == 1 || parse.status == 2) << parse.text;
    }
}

// First blocks hold 256 bytes. Each kind of token fills one exactly, by a byte less and by a few more,
// so that it grows behind the token, within it and at the NUL or the character that closes it.
TEST(ParserFaults, GrowthBehindEachByteOfAToken) {
    struct Token {
        const char *before, *after;
    };
    constexpr Token kTokens[] = {
        {"<!--", "--><a/>"},
        {"<?p ", "?><a/>"},
        {"<?", "?><a/>"},
        {"<a>", "&lt;"},
        {"<a>", "]</a>"},
        {"<a>", "&#x1D11E;</a>"},
        {"<a b='", "&#x1D11E;'/>"},
        {"<a b='", "&amp;'/>"},
        {"<a b='1' ", "='2'/>"},
        {"<a b='1' p:", "='2'/>"},
        {"<", "/>"},
        {"<a:", "/>"},
        {"<a xmlns:", "='u'>text</a>"},
        {"<a b='1' c=\"", "\"/>"},
        {"<a><![CDATA[", "]]></a>"},
        {"<a b='", "&#233;&#233;'/>"},
    };
    for (const Token &token : kTokens) {
        for (std::size_t length = 236; length <= 260; ++length) {
            const std::string document = token.before + std::string(length, 'x') + token.after;
            ASSERT_NO_FATAL_FAILURE(expectEachFailureTold(memoryFeed(document)));
        }
    }
}

// Converted text fills the input buffer but for less than its next character, in each of the ways.
TEST(ParserFaults, GrowthOfABufferWithoutRoomForACharacter) {
    for (std::size_t shift = 0; shift < 3; ++shift) {
        const std::u32string comment =
            std::u32string(shift, U'x') + std::u32string(1200, U'\u4E2D');
        const std::string document =
            "\xFF\xFE" +
            *support::encodeBare(XML_ENCODING_UTF_16LE, U"<!--" + comment + U"--><a/>");
        for (const Feed &feed :
             {support::fileFeed(document), support::listInPieces(document, 700)}) {
            EXPECT_EQ(record(feed).result, XML_OK);
            ASSERT_NO_FATAL_FAILURE(expectEachFailureTold(feed));
        }
    }
}

// Without a handler there is nobody to tell, but the same is given back.
TEST(ParserFaults, SurvivesEachFailedAllocationWithoutHandler) {
    for (const Feed &feed : documents()) {
        const bool accepted = feed.parse(nullptr) == XML_OK;
        for (std::size_t nth = 1;; ++nth) {
            FaultyFiles files({});
            FaultyHeap heap(nth);
            const std::uint32_t result = feed.parse(nullptr);
            ASSERT_EQ(heap.blocksInUse(), 0u) << feed.name() << ", allocation " << nth;
            ASSERT_EQ(files.openDescriptors(), 0);
            if (!heap.failed()) {
                EXPECT_EQ(result, accepted ? XML_OK : XML_REFUSED);
                break;
            }
            const bool lacksNothing = heap.failedOptionally() && accepted;
            ASSERT_EQ(result, lacksNothing ? XML_OK : XML_REFUSED)
                << feed.name() << ", allocation " << nth;
        }
    }
}

// Whatever refuses a document, everything is given back.
TEST(ParserFaults, NothingLeftAfterAnError) {
    const std::string rich = richDocument();
    const std::string plain = rich.substr(rich.find("<!--one"));
    for (std::size_t at = 0; at < plain.size(); at += 97) {
        for (const char byte : {'\x01', '<', '&', '\''}) {
            std::string broken = plain;
            broken[at] = byte;
            const Feed feed = memoryFeed(broken);
            FaultyHeap heap(0);
            const RecordedParse parse = record(feed);
            ASSERT_EQ(heap.blocksInUse(), 0u) << at << "\n" << parse.text;
        }
    }
}

TEST(ParserFaults, NothingLeftAfterAStop) {
    for (const Feed &feed : documents()) {
        for (int slot = 1; slot <= 9; ++slot) {
            for (const int call : {1, 2, 20}) {
                support::RecordOptions options;
                options.stopSlot = static_cast<support::Slot>(slot);
                options.stopCall = call;
                options.stopStatus = 7;
                FaultyFiles files({});
                FaultyHeap heap(0);
                record(feed, options);
                ASSERT_EQ(heap.blocksInUse(), 0u) << feed.name() << ' ' << slot << ' ' << call;
                ASSERT_EQ(files.openDescriptors(), 0);
            }
        }
    }
}

// ---------------------------------------------------------------- files

TEST(ParserFaults, ShortReads) {
    const std::string rich = richDocument();
    std::u32string wide(rich.begin(), rich.end());
    wide.replace(wide.find(U"GBK"), 3, U"UTF-16");
    for (const std::string &document :
         {std::string("<a/>"), std::string("\xEF\xBB\xBF<a>x</b>"), rich,
          "\xFE\xFF" + *support::encodeBare(XML_ENCODING_UTF_16BE, wide)}) {
        const RecordedParse memory = record(memoryFeed(document));
        const Feed feed = support::fileFeed(document);
        for (const std::size_t most : {1, 2, 3, 63, 64, 65, 1023}) {
            FaultyFiles files({.shortCount = most});
            const RecordedParse parse = record(feed);
            EXPECT_TRUE(support::sameOutcome(memory, parse))
                << most << "\nmemory gives " << memory.text << "\nthe file gives " << parse.text;
            EXPECT_EQ(files.openDescriptors(), 0);
        }
    }
}

// Intended: a read error ends the input, so what was read so far is the whole document.
TEST(ParserFaults, ReadErrorsEndTheInput) {
    std::string document = "<a>" + std::string(700, ' ') + "</a>";
    document += std::string(4000, '\n') + "<!--c-->";
    const Feed feed = support::fileFeed(document);
    std::size_t reads = 0;
    {
        FaultyFiles files({});
        EXPECT_EQ(record(feed).result, XML_OK);
        reads = files.reads();
    }
    ASSERT_GE(reads, 5u);
    for (const int error : {EIO, EISDIR, 0}) {
        for (std::size_t nth = 1; nth <= reads; ++nth) {
            FaultyFiles files({.failAt = nth, .failErrno = error});
            const RecordedParse parse = record(feed);
            SCOPED_TRACE(testing::Message() << "read " << nth << "\n" << parse);
            EXPECT_EQ(files.openDescriptors(), 0);
            if (nth == 1) {
                EXPECT_EQ(parse.status, 4);
                EXPECT_EQ(parse.calls.size(), 1u);
                continue;
            }
            // The root is within the first read; white space behind it may end anywhere.
            EXPECT_EQ(parse.result, XML_OK);
            EXPECT_GE(parse.calls.size(), 4u);
        }
    }
}

TEST(ParserFaults, Descriptors) {
    for (const std::string_view document :
         {"<a/>"sv, "<a></b>"sv, ""sv, "<?xml version='1.0' encoding='GBK'?><a/>"sv,
          "\xFF\xFE<"sv}) {
        const Feed feed = support::fileFeed(document);
        FaultyFiles files({});
        record(feed);
        EXPECT_EQ(files.openDescriptors(), 0) << support::printable(document);
    }
    FaultyFiles files({.failOpen = true});
    const RecordedParse parse = record(support::fileFeed("<a/>"));
    EXPECT_EQ(parse.result, XML_REFUSED);
    EXPECT_EQ(parse.errors, 0);
}

TEST(ParserFaults, DirectoryIsAnEmptyDocument) {
    struct Message {
        static void error(XML_Parser_Ctx *context, const char *, ...) {
            *static_cast<int *>(context->handler->userData) = context->status;
        }
    };
    int status = 0;
    XML_SAX_Handler handler{};
    handler.userData = &status;
    handler.error = Message::error;
    EXPECT_EQ(XML_Parser_ByFile(".", &handler), XML_REFUSED);
    EXPECT_EQ(status, 4);
}

}  // namespace
