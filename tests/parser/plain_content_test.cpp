// Content as most documents are written, which the parser reads in another way than the rest: what it
// tells must not show which of the two ways was taken.
#include "parser/plain_name.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "gtest/gtest.h"
#include "tests/support/faults.h"
#include "tests/support/feeds.h"
#include "tests/support/parser_model.h"

using namespace std::string_view_literals;
using cxml::Byte;
using support::FaultyHeap;
using support::Feed;
using support::listFeed;
using support::listInPieces;
using support::memoryFeed;
using support::record;
using support::RecordedParse;

namespace {

// Checks the parse of a document, handed over in some ways, against the model.
RecordedParse expectLikeModel(std::string_view document, const std::vector<Feed> &feeds) {
    const RecordedParse expected = support::modelParse(document);
    for (const Feed &feed : feeds) {
        const RecordedParse parse = record(feed);
        EXPECT_TRUE(support::sameOutcome(expected, parse))
            << support::printable(document) << "\nthe model gives " << expected << "\n"
            << feed.name() << " gives " << parse;
    }
    return expected;
}

RecordedParse expectLikeModel(std::string_view document) {
    return expectLikeModel(document, {memoryFeed(document), listInPieces(document, 65)});
}

// ---------------------------------------------------------------- names

// A name of so many bytes, no two of them alike nearby.
std::string nameOf(std::size_t length, std::size_t seed = 0) {
    constexpr std::string_view kBytes = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ_";
    std::string name;
    for (std::size_t i = 0; i < length; ++i) name += kBytes[(i * 7 + seed) % kBytes.size()];
    return name;
}

// Names as long as the blocks in which they are looked at, and around that, with the colon at every
// place; none for 0.
template <class Body>
void forEachName(const Body &body) {
    for (const std::size_t length : {1, 2, 3, 7, 8, 9, 14, 15, 16, 17, 18, 31, 32, 33}) {
        for (std::size_t colon = 0; colon + 1 < length; ++colon) {
            std::string name = nameOf(length);
            if (colon != 0) name[colon] = ':';
            body(name, name.substr(0, colon));
        }
        if (length == 1) body(nameOf(1), "");
    }
}

std::string open(const std::string &prefix) {
    return prefix.empty() ? "<r>" : "<r xmlns:" + prefix + "=\"u\">";
}

TEST(PlainContent, NamesAroundTheBlockSize) {
    forEachName([](const std::string &name, const std::string &prefix) {
        const std::string document = open(prefix) + "<" + name + " " + name + "=\"v\" z-=\"\">t</" +
                                     name + "><" + name + "/></r>";
        EXPECT_EQ(expectLikeModel(document).result, XML_OK) << document;
    });
}

// End tags of other names: another byte at each place, a byte too much and one too few.
TEST(PlainContent, EndTagsOfOtherNames) {
    constexpr std::string_view kOthers = "\0:0x\x80 >"sv;
    forEachName([&](const std::string &name, const std::string &prefix) {
        const auto expectRefused = [&](const std::string &end) {
            const std::string document = open(prefix) + "<" + name + ">t</" + end + "></r>";
            const RecordedParse parse = record(memoryFeed(document));
            const RecordedParse expected = support::modelParse(document);
            EXPECT_EQ(parse.result, XML_REFUSED) << support::printable(document);
            EXPECT_TRUE(support::sameOutcome(expected, parse))
                << support::printable(document) << "\nthe model gives " << expected
                << "\nthe parser gives " << parse;
        };
        for (std::size_t i = 0; i < name.size(); ++i) {
            for (const char other : kOthers) {
                std::string end = name;
                end[i] = other;
                if (end != name) expectRefused(end);
            }
        }
        expectRefused(name + "x");
        expectRefused(name + ":");
        expectRefused(name + '\0');
        expectRefused(name.substr(0, name.size() - 1));
    });
}

TEST(PlainContent, TagsThatAreNotQuitePlain) {
    constexpr std::string_view kTags[] = {
        "<p:a:b/>"sv,
        "<p:/>"sv,
        "<:a/>"sv,
        "<p:1a/>"sv,
        "<1/>"sv,
        "<a\xC3\xA9/>"sv,
        "<a\0/>"sv,
        "<a p:b:c=\"\"/>"sv,
        "<a p:=\"\"/>"sv,
        "<a b=\"\"c=\"\"/>"sv,
        "<a  b=\"\"/>"sv,
        "<a b=\"\" />"sv,
        "<a b=\"\"\t/>"sv,
        "<a b =\"\"/>"sv,
        "<a b= \"\"/>"sv,
        "<a b=''/>"sv,
        "<a b=\"'\" c='\"'/>"sv,
        "<a b=\"&lt;\"/>"sv,
        "<a b=\"<\"/>"sv,
        "<a b=\"\x01\"/>"sv,
        "<a b=\"\xED\xA0\x80\"/>"sv,
        "<a b=\"1\" b=\"2\"/>"sv,
        "<a p:b=\"1\" q:b=\"2\"/>"sv,
        "<a x:b=\"1\"/>"sv,
        "<x:a/>"sv,
        "<x:a b=\"1\" b=\"2\"/>"sv,
        "<xml:a xml:b=\"\"/>"sv,
        "<xmlns:a/>"sv,
        "<a xmlnsx=\"\"/>"sv,
        "<a b=\"1\" xmlns=\"v\"/>"sv,
        "<a b=\"1\" x:c=\"2\" xmlns:x=\"v\"/>"sv,
        "<x:a x:b=\"1\" xmlns:x=\"v\"/>"sv,
        "<a xmlns:x=\"v\" b=\"1\"><x:a/></a><x:a/>"sv,
        "<a b=\"1\"/ >"sv,
        "<a b=\"1\"/"sv,
        "<a b=\"1\""sv,
        "<a/ >"sv,
        "<a></a >"sv,
        "<a></ a>"sv,
        "<a>]]></a>"sv,
        "<a>]]&gt;]</a>"sv,
        "<a>\x01</a>"sv,
        "<a> \x7F </a>"sv,
        "<a>\r\n\r \n\t x\r\n y \t\r\n</a>"sv,
        "<a>\n \t<b/>\r</a>"sv,
    };
    for (const std::string_view tag : kTags) {
        const std::string document =
            "<r xmlns:p=\"u\" xmlns:q=\"u\">\n  <t k=\"v\">x</t>\n  " + std::string(tag) + "</r>";
        expectLikeModel(document, support::everyFeed(document));
    }
}

// A name that lies in a heap block of exactly its size, so that an address sanitizer sees a byte too
// many: where it ends must not depend on the size of the blocks in which it is looked at.
TEST(PlainContent, NamesAreFoundAlikeInBlocksAndBytes) {
    constexpr std::string_view kBytes = "ab_Z9-.::>=/ \n\0\x80\xFF"sv;
    std::mt19937 random(7);
    for (int round = 0; round < 100000; ++round) {
        const std::size_t size = random() % 40;
        const auto block = std::make_unique<Byte[]>(size);
        // Long names too: most of the bytes are letters.
        for (std::size_t i = 0; i < size; ++i) {
            block[i] =
                static_cast<Byte>(random() % 16 == 0 ? kBytes[random() % kBytes.size()] : 'n');
        }
        const Byte *const begin = block.get();
        const cxml::PlainName inBlocks = cxml::findPlainName(begin, begin + size);
        const cxml::PlainName inBytes = cxml::findPlainName<cxml::WordBlock>(begin, begin + size);
        // What ends at a colon is no plain name to those who ask, wherever that is.
        if (inBlocks.end && *inBlocks.end == ':') continue;
        ASSERT_EQ(inBlocks.end, inBytes.end)
            << support::printable({reinterpret_cast<const char *>(begin), size});
        if (!inBlocks.end) continue;
        ASSERT_EQ(inBlocks.local, inBytes.local) << size;

        // The same again behind it, or nearly so.
        const auto length = static_cast<std::size_t>(inBlocks.end - begin);
        const auto localOffset = static_cast<std::size_t>(inBlocks.local - begin);
        std::vector<char> kept(length + cxml::WideBlock::kBytes + 1);
        std::memcpy(kept.data(), begin, length);
        if (localOffset != 0) kept[localOffset - 1] = '\0';
        const cxml::QName name = {0, static_cast<std::uint32_t>(localOffset),
                                  static_cast<std::uint32_t>(length - localOffset)};
        if (random() % 2 == 0) block[random() % size] ^= static_cast<Byte>(1u << random() % 8);
        if (random() % 16 == 0 && localOffset != 0) block[localOffset - 1] = '\0';
        std::string whole(kept.data(), length);
        if (localOffset != 0) whole[localOffset - 1] = ':';
        const bool follows = length < size && std::memcmp(begin, whole.data(), length) == 0;
        const Byte *const expected = follows ? begin + length : nullptr;
        ASSERT_EQ(cxml::passPlainName(begin, begin + size, kept.data(), name), expected);
        ASSERT_EQ(cxml::passPlainName<cxml::WordBlock>(begin, begin + size, kept.data(), name),
                  expected);
    }
}

// ---------------------------------------------------------------- where the buffer ends

// Up to so many bytes of a stream's first buffer are read without asking for more.
constexpr std::size_t kRunLimit = 1024 - 64;

// Each piece is plain, ends in a way of its own, and may be repeated.
constexpr std::string_view kPieces[] = {
    "<e>t</e>"sv,
    "<e/>"sv,
    "<e a=\"v\" p:b=\"w\"/>"sv,
    "<p:e a=\"\">text</p:e>"sv,
    "<e>\n  <f/>\n   </e>"sv,
    "<e>two\nlines \xE4\xB8\xAD\xE6\x96\x87 </e>"sv,
    "<e a=\"\xE4\xB8\xAD\xF0\xA0\x80\x80\">\xC3\xA9</e>"sv,
    "<name.longer-than-a-block>text of some length</name.longer-than-a-block>"sv,
};

// What makes a document go on behind the first buffer.
std::string tail() {
    return "<!--" + std::string(300, '.') + "-->";
}

// A document whose piece begins after so many bytes.
std::string documentAt(std::size_t place, std::string_view piece) {
    std::string document = "<r xmlns:p=\"u\"><!--";
    document.resize(std::max(place, document.size() + 3) - 3, '.');
    return document + "-->" + std::string(piece) + std::string(piece) + "<last/>\n</r>" + tail();
}

TEST(PlainContent, PiecesAroundTheRunLimit) {
    for (const std::string_view piece : kPieces) {
        for (std::size_t place = kRunLimit - 2 * piece.size() - 8; place <= kRunLimit + 2;
             ++place) {
            const std::string document = documentAt(place, piece);
            const RecordedParse parse =
                expectLikeModel(document, {memoryFeed(document), listFeed(document)});
            ASSERT_EQ(parse.result, XML_OK) << document;
        }
    }
}

// The same around every refill of a longer document.
TEST(PlainContent, LongDocumentsOfPlainPieces) {
    for (std::size_t shift = 0; shift < 70; shift += 3) {
        std::string document = "<r xmlns:p=\"u\">" + std::string(shift, '\n');
        for (std::size_t i = 0; document.size() < 4000; ++i) {
            document += kPieces[i % std::size(kPieces)];
            if (i % 3 == 0) document += "\n    ";
        }
        document += "</r>";
        const RecordedParse parse = expectLikeModel(
            document, {memoryFeed(document), listFeed(document), listInPieces(document, 7)});
        ASSERT_EQ(parse.result, XML_OK) << shift;
    }
}

// ---------------------------------------------------------------- both ways side by side

// A document without references, one line of it in two ways of equal length: one is plain, the other
// is not, for its values stand between other quotes and its texts have brackets. Letters stand for
// both: "Q" for the quote, "B" for the bracket.
std::string written(std::string_view document, char quote, char bracket) {
    std::string text(document);
    std::replace(text.begin(), text.end(), 'Q', quote);
    std::replace(text.begin(), text.end(), 'B', bracket);
    return text;
}

std::string sameInBoth(std::string text) {
    std::replace(text.begin(), text.end(), '\'', '"');
    std::replace(text.begin(), text.end(), ']', '[');
    return text;
}

void expectSameBothWays(std::string_view document, std::size_t place) {
    const std::string filler(place, '.');
    const std::string before = "<r xmlns:p=\"u\" xmlns:q=\"u\"><!--" + filler + "-->";
    const std::string plain = before + written(document, '"', '[') + tail();
    const std::string general = before + written(document, '\'', ']') + tail();
    const std::vector<Feed> plainFeeds = {memoryFeed(plain), listFeed(plain),
                                          listInPieces(plain, 1)};
    const std::vector<Feed> generalFeeds = {memoryFeed(general), listFeed(general),
                                            listInPieces(general, 1)};
    for (std::size_t i = 0; i < plainFeeds.size(); ++i) {
        const RecordedParse a = record(plainFeeds[i]);
        const RecordedParse b = record(generalFeeds[i]);
        SCOPED_TRACE(testing::Message()
                     << plainFeeds[i].name() << " at " << place << ": " << plain);
        ASSERT_EQ(a.result, b.result);
        ASSERT_EQ(a.status, b.status);
        ASSERT_EQ(a.line, b.line);
        ASSERT_EQ(a.column, b.column);
        // What the message quotes tells how much the stream has kept before the position.
        ASSERT_EQ(sameInBoth(a.snippet), sameInBoth(b.snippet));
        ASSERT_EQ(a.calls.size(), b.calls.size());
        for (std::size_t call = 0; call < a.calls.size(); ++call) {
            ASSERT_EQ(sameInBoth(a.calls[call]), sameInBoth(b.calls[call]));
        }
    }
}

TEST(PlainContent, MarkSnippetAndPositionAreThoseOfTheGeneralWay) {
    constexpr std::string_view kDocuments[] = {
        "<e a=QvQ>tB</e></r>",
        "<e a=QvQ p:b=Q\xE4\xB8\xADQ>tB\n\xE6\x96\x87</e><f g=QhQ/></r>x",
        "<e a=QvQ a=QwQ>tB</e></r>",
        "<p:element p:attribute=QvQ>B</wrong></r>",
        "<e p:abc=QvQ q:abc=QwQ/>B</r>",
        "<e a=QvQ x:abc=QvQ/>B</r>",
        "<x:element a=QvQ/>B</r>",
        "<element-name a=QvQ>text B text</element-nam></r>",
        "<element-name a=QvQ>text B text<f g=QhQ/></wrong></r>",
        "<element-name a=QvQ>text B text</element-name",
        "<element-name attribute-name=Qsome value < thisQ>B</element-name></r>",
        "<element-name attribute-name=Qsome \x01 value\n thisQ>B</element-name></r>",
        "<e a=QvQ>text B text \xED\xA0\x80</e></r>",
        "<e a=QvQ>B<e a=QvQ>B<e a=QvQ>B<e a=QvQ>B</e></e>&bad;</e></e></r>",
        "<e a=QvQ>one\ntwo B\r\nthree\r</e>\n\n  <e a=Qv\nwQ/>\n<f></e></r>",
    };
    for (const std::string_view document : kDocuments) {
        expectSameBothWays(document, 0);
        const std::size_t before = 36;  // of each document, around its filler
        for (std::size_t place = kRunLimit - before - document.size() - 4;
             place <= kRunLimit - before + 34; ++place) {
            ASSERT_NO_FATAL_FAILURE(expectSameBothWays(document, place));
        }
    }
}

// ---------------------------------------------------------------- memory

// Plain to the last byte; every buffer grows in it at a place of its own, each more than once.
std::string growingDocument() {
    std::string document = "<r xmlns:p=\"u\">";
    for (std::size_t i = 0; i < 14; ++i) document += "<" + nameOf(40 + i, i) + " a=\"v\">";
    document += "<p:many";
    for (std::size_t i = 0; i < 30; ++i) {
        document += " " + nameOf(9 + i, i) + std::to_string(i) + "=\"" + nameOf(3 * i) + "\"";
    }
    document += " p:b=\"" + std::string(1500, 'v') + "\">" + std::string(3000, 't') + "</p:many>";
    for (std::size_t i = 14; i-- > 0;) document += "</" + nameOf(40 + i, i) + ">\n";
    return document + "</r>";
}

TEST(PlainContent, EachFailedAllocationEndsTheParse) {
    const std::string document = growingDocument();
    for (const Feed &feed : {memoryFeed(document), listFeed(document)}) {
        const RecordedParse whole = record(feed);
        ASSERT_EQ(whole.result, XML_OK);
        std::size_t told = 0;
        for (std::size_t nth = 1;; ++nth) {
            FaultyHeap heap(nth);
            const RecordedParse parse = record(feed);
            SCOPED_TRACE(testing::Message() << feed.name() << ", allocation " << nth);
            ASSERT_EQ(heap.blocksInUse(), 0u);
            if (!heap.failed()) break;
            ASSERT_EQ(parse.result, XML_REFUSED);
            ASSERT_LT(parse.calls.size(), whole.calls.size());
            EXPECT_TRUE(std::equal(parse.calls.begin(), parse.calls.end(), whole.calls.begin()));
            if (parse.errors == 0) {
                EXPECT_TRUE(parse.calls.empty());
                continue;
            }
            EXPECT_TRUE(parse.status == 2 || parse.status == 1) << parse.status;
            told += parse.status == 2;
        }
        // The names, the elements, the values, the attributes and the arguments all grow.
        EXPECT_GT(told, 12u);
    }
}

// A shortage is not forgotten where the buffer ends: the first attributes of the document, and those
// for which their arrays grow, at every place around the run limit.
TEST(PlainContent, AFailedAllocationIsNotTriedAgainAtTheRunLimit) {
    constexpr std::string_view kTag = "<e a=\"1\" b=\"2\" c=\"3\" d=\"4\" e=\"5\" f=\"6\"/>";
    for (std::size_t place = kRunLimit - kTag.size() - 2; place <= kRunLimit; ++place) {
        const Feed feed = listFeed(documentAt(place, kTag));
        for (std::size_t nth = 1;; ++nth) {
            FaultyHeap heap(nth);
            const RecordedParse parse = record(feed);
            if (!heap.failed()) break;
            ASSERT_EQ(parse.result, XML_REFUSED) << place << ", allocation " << nth;
        }
    }
}

// Text that is converted on its way into the tree.
std::string growingChineseDocument() {
    const std::string unit = "\xE4\xB8\xAD\xE6\x96\x87 and ASCII ";
    std::string text;
    std::string document = "<r a=\"\xE6\x96\x87\">\xE4\xB8\xAD";
    for (int i = 0; i < 8; ++i) {
        text += text + unit;  // each time more than twice as long
        document += "<e a=\"" + text + "\">" + text + "</e>";
    }
    return document + "</r>";
}

TEST(PlainContent, EachFailedAllocationEndsTheBuild) {
    for (const std::string &document : {growingDocument(), growingChineseDocument()}) {
        const Feed feed = memoryFeed(document);
        for (std::size_t nth = 1;; ++nth) {
            char message[512];
            FaultyHeap heap(nth);
            XML_DOM_Node *const root = feed.build(sizeof message, message);
            const bool built = root != nullptr;
            XML_DOM_DelNode(root);
            ASSERT_EQ(heap.blocksInUse(), 0u) << nth;
            const bool failed = heap.failed() && !heap.failedOptionally();
            ASSERT_NE(built, failed) << nth << ": " << document.substr(0, 16);
            if (!heap.failed()) break;
        }
    }
}

// A status that a callback sets ends the parse there, wherever it is.
TEST(PlainContent, EachCallbackCanEndTheParse) {
    std::string document = "<r xmlns:p=\"u\">";
    for (const std::string_view piece : kPieces) document += piece;
    document += "</r>";
    using support::Slot;
    for (const Slot slot : {Slot::kCharacters, Slot::kStartElementNs, Slot::kEndElementNs}) {
        support::RecordOptions options;
        options.stopSlot = slot;
        options.stopStatus = 77;
        for (options.stopCall = 1; options.stopCall < 30; ++options.stopCall) {
            const RecordedParse expected = support::modelParse(document, options);
            for (const Feed &feed : {memoryFeed(document), listInPieces(document, 65)}) {
                const RecordedParse parse = record(feed, options);
                ASSERT_TRUE(support::sameOutcome(expected, parse))
                    << "the model gives " << expected << "\n"
                    << feed.name() << " gives " << parse;
            }
        }
    }
}

}  // namespace
