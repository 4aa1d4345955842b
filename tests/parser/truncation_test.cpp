// A document cut off at every byte: no byte behind the end is read, and every source gives the
// same.
#include <string>
#include <string_view>

#include "gtest/gtest.h"
#include "tests/support/expectations.h"
#include "tests/support/parser_model.h"

using support::Feed;
using support::record;
using support::RecordedParse;

namespace {

constexpr std::string_view kDocuments[] = {
    // Everything that the parser reads, once at least, and every way in which it may look ahead.
    "<?xml version=\"1.0\" encoding='UTF-8' standalone=\"yes\" ?>\r\n"
    "<!-- a - b -->\n<?target some data? ?><?t?>\n"
    "<!DOCTYPE p:root [ <!ENTITY x '>'> ]] x ] >\n<!--c-->\n"
    "<p:root xmlns:p='urn:p' xmlns=\"urn:d\" p:a='1' b = \"&lt;&#x41;&#66;&quot;\"\n>"
    " text &amp; &apos;more&apos; ]] > "
    "\xC3\xA9\xE4\xB8\xAD\xF0\x9F\x98\x80\xC1\x81\xF8\x90\x80\x80\r\n"
    "<child xmlns=''/><p:child xmlns:p=\"urn:q\" p:c=''></p:child\n>"
    "<![CDATA[ ]] ]> <&x; ]]]]><!--d--><?u v?>&#32;</p:root >\n<!--e--><?w?>\n",
    "\xEF\xBB\xBF<?xml version='1.0'?><a>\r<b c='d'>e</b>\r\n&#9;f&gt;</a>\r",
    "<a b='1' c='2' d='3' e='4' f='5' g='6' h='7' i='8' j='9' k='10'></a>",
    "<r y=\"\"><b y=\"\" x=\"\" xm=\"1\" xml:lang=\"e\" xmlna=\"2\" xmlns:p=\"u\" p:x=\"\"/></r>",
};

TEST(Truncation, EveryLength) {
    for (const std::string_view document : kDocuments) {
        ASSERT_EQ(record(support::memoryFeed(document)).result, XML_OK);
        for (std::size_t length = 1; length <= document.size(); ++length) {
            const std::string_view cut = document.substr(0, length);
            const RecordedParse model = support::modelParse(cut);
            const Feed feeds[] = {support::memoryFeed(cut),         support::fileFeed(cut),
                                  support::listFeed(cut),           support::listInPieces(cut, 1),
                                  support::listInPieces(cut, 2),    support::listInPieces(cut, 63),
                                  support::listWithEmptyChunks(cut)};
            for (const Feed &feed : feeds) {
                const RecordedParse parse = record(feed);
                ASSERT_TRUE(support::sameOutcome(model, parse))
                    << "cut at " << length << ", " << feed.name() << "\nThe model gives " << model
                    << "\nthe library gives " << parse;
                EXPECT_EQ(feed.parse(nullptr), parse.result);
            }
        }
    }
}

// The same around the first windows of a long document, where the end of the input comes just
// before, at and behind a refill.
TEST(Truncation, AroundTheWindows) {
    std::string document = "<a>";
    while (document.size() < 2300) {
        document +=
            "<!--" + std::string(document.size() % 50, 'c') + "--><b c='&amp;'>text</b>\r\n";
    }
    for (const std::size_t window : {960, 1024, 2048}) {
        for (std::size_t length = window - 70; length <= window + 70; ++length) {
            const std::string_view cut = std::string_view(document).substr(0, length);
            const RecordedParse model = support::modelParse(cut);
            for (const Feed &feed : {support::memoryFeed(cut), support::fileFeed(cut),
                                     support::listFeed(cut), support::listInPieces(cut, 64)}) {
                const RecordedParse parse = record(feed);
                ASSERT_TRUE(support::sameOutcome(model, parse))
                    << "cut at " << length << ", " << feed.name() << "\nThe model gives " << model
                    << "\nthe library gives " << parse;
            }
        }
    }
}

// Beginning at every byte instead: nothing is read before the beginning either, and most of these
// documents fail in their first bytes.
TEST(Truncation, EveryBeginning) {
    for (const std::string_view document : kDocuments) {
        for (std::size_t from = 1; from < document.size(); ++from) {
            const std::string_view rest = document.substr(from);
            const RecordedParse model = support::modelParse(rest);
            for (const Feed &feed : {support::memoryFeed(rest), support::listInPieces(rest, 3)}) {
                const RecordedParse parse = record(feed);
                ASSERT_TRUE(support::sameOutcome(model, parse))
                    << "from " << from << ", " << feed.name() << "\nThe model gives " << model
                    << "\nthe library gives " << parse;
            }
        }
    }
}

}  // namespace
