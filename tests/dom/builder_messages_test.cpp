// What the builder leaves in the caller's error buffer.
#include <cstdint>
#include <cstring>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "compactxml.h"
#include "gtest/gtest.h"
#include "tests/support/expectations.h"
#include "tests/support/faults.h"
#include "tests/support/feeds.h"
#include "tests/support/owners.h"
#include "tests/support/texts.h"

namespace {

using support::errorText;
using support::Feed;
using support::messageAt;
using support::messageOf;
using support::NodePtr;
using support::printable;

// ---------------------------------------------------------------- arguments

TEST(BuilderMessages, MissingArguments) {
    const auto viaMemory = [](const char *buffer, std::uint32_t length) {
        return [=](std::uint32_t size, char *error) {
            return XML_DOM_BuildTreeByMem(buffer, length, size, error);
        };
    };
    const auto check = [](const char *name, auto build) {
        for (std::uint32_t size = 0; size <= 24; ++size) {
            // A block of exactly the size told, behind which a sanitizer watches.
            const std::string untouched(size, '#');
            const std::unique_ptr<char[]> error(new char[size]);
            std::memset(error.get(), '#', size);
            support::FaultyHeap heap(0);
            const XML_DOM_Node *root = build(size, error.get());
            EXPECT_EQ(heap.blocksInUse(), 0u) << name;
            EXPECT_EQ(root, nullptr) << name;
            if (size == 0) continue;
            EXPECT_EQ(std::string(error.get()),
                      std::string("Invalid parameter.").substr(0, size - 1))
                << name << ", " << size;
        }
        EXPECT_EQ(build(512, nullptr), nullptr) << name;
        EXPECT_EQ(build(0, nullptr), nullptr) << name;
        char keep[] = "keep";
        EXPECT_EQ(build(0, keep), nullptr) << name;
        EXPECT_STREQ(keep, "keep") << name;
    };
    check("no buffer", viaMemory(nullptr, 4));
    check("length 0", viaMemory("<a/>", 0));
    check("no buffer and length 0", viaMemory(nullptr, 0));
    check("no path", [](std::uint32_t size, char *error) {
        return XML_DOM_BuildTreeByFile(nullptr, size, error);
    });
    check("no list", [](std::uint32_t size, char *error) {
        return XML_DOM_BuildTreeByMemList(nullptr, size, error);
    });
}

TEST(BuilderMessages, AFileThatCannotBeOpenedLeavesTheBufferAlone) {
    const std::string missing = testing::TempDir() + "compactxml-no-such-file/a.xml";
    for (const char *path : {missing.c_str(), ""}) {
        support::FaultyHeap heap(0);
        char error[] = "as it was";
        EXPECT_EQ(XML_DOM_BuildTreeByFile(path, sizeof error, error), nullptr);
        EXPECT_STREQ(error, "as it was");
        EXPECT_EQ(XML_DOM_BuildTreeByFile(path, 512, nullptr), nullptr);
        EXPECT_EQ(heap.blocksInUse(), 0u);
    }
}

TEST(BuilderMessages, NothingToReadIsAnEmptyDocument) {
    const std::string expected = "The Line 1 Column 1 :\"\", document is empty.";
    char error[512] = "";
    const support::TemporaryFile empty("");
    EXPECT_EQ(XML_DOM_BuildTreeByFile(empty.path(), sizeof error, error), nullptr);
    EXPECT_EQ(error, expected);

    // A directory opens but cannot be read, and what cannot be read has ended.
    error[0] = '\0';
    EXPECT_EQ(XML_DOM_BuildTreeByFile(testing::TempDir().c_str(), sizeof error, error), nullptr);
    EXPECT_EQ(error, expected);

    XML_IO_MemChunk chunk{nullptr, 0, nullptr};
    for (XML_IO_MemList list : {XML_IO_MemList{nullptr}, XML_IO_MemList{&chunk}}) {
        error[0] = '\0';
        EXPECT_EQ(XML_DOM_BuildTreeByMemList(&list, sizeof error, error), nullptr);
        EXPECT_EQ(error, expected);
    }
}

// ---------------------------------------------------------------- every message

struct Refused {
    int code;
    std::string document;
    int column;              // in line 1
    std::size_t offset = 0;  // of the position in bytes; 0 for the column less one
};

const std::vector<Refused> &refusals() {
    static const std::vector<Refused> table{
        {72, "abc", 1},
        {4, " ", 2},
        {5, "<a/><b/>", 5},
        {5, "<a>b</a>c", 9},
        {9, "<1/>", 2},
        {9, "<a>\x01</a>", 4},
        {9, "<a>&#55296;</a>", 12},
        {32, "<?xml version='1.0' encoding='latin1'?><a/>", 37},
        {33, "<a x=1/>", 6},
        {34, "<a x='1", 8},
        {45, "<!--x", 6},
        {46, "<a/><?xml ?>", 10},
        {47, "<?p x", 6},
        {57, "<?xml version='1.0' x?>", 21},
        {61, "<!DOCTYPE a", 12},
        {65, "<a x='1'y='2'/>", 9},
        {25, "<a>&#65</a>", 8},
        {75, "<a x/>", 5},
        {78, "<?xml version='1.0' standalone='maybe'?><a/>", 33},
        {80, "<!--x--y-->", 6},
        {96, "<?xml encoding='UTF-8'?><a/>", 7},
        {97, "<?xml version='1.1'?><a/>", 16},
        {42, "<a x='1' x='2'/>", 15},
        {42, "<a p:x='1' q:x='2' xmlns:p='u' xmlns:q='u'/>", 43},
        {63, "<a><![CDATA[x", 14},
        {68, "<a:", 4},
        {35, "<a xmlns:p=''/>", 14},
        {76, "<a></b>", 6},
        {77, "<a></ab>", 7},
        {77, "<a>b", 5},
        {26, "<a>&foo;</a>", 5},
        {62, "<a>x]]>y</a>", 5},
        {201, "<p:a/>", 5},
        {201, "<a p:b='1'/>", 11},
        {38, "<a b='<'/>", 7},
        {76, "<a>中文</b>", 8, 11},
        {77, "<设备 名='交换机'>端口", 15, 30},
        {1500, "<?xml version='1.0' encoding='GB2312'?><a>\xF0\x90\x80\x80</a>", 48, 50},
        {1, "<a>\xC1\x81" + std::string(40, ' ') + "</a>", 45, 45},
    };
    return table;
}

std::size_t offsetOf(const Refused &row) {
    return row.offset ? row.offset : static_cast<std::size_t>(row.column) - 1;
}

TEST(BuilderMessages, EveryMessageOfTheParser) {
    for (const Refused &row : refusals()) {
        const std::string expected = errorText(
            messageAt(row.document, offsetOf(row), 1, row.column, messageOf(row.code)), 512);
        for (const Feed &feed : support::mainFeeds(row.document)) {
            support::FaultyHeap heap(0);
            char error[512] = "";
            EXPECT_EQ(feed.build(sizeof error, error), nullptr) << printable(row.document);
            EXPECT_EQ(heap.blocksInUse(), 0u) << printable(row.document);
            EXPECT_EQ(printable(error), printable(expected)) << feed.name();
        }
    }
}

// Memory that runs out is another test's; and "attribute without value." has no document.
TEST(BuilderMessages, TheTableKnowsEveryMessageThatADocumentCanCause) {
    std::set<int> seen{2, 41};
    for (const Refused &row : refusals()) seen.insert(row.code);
    for (const int code : support::messageCodes()) EXPECT_TRUE(seen.count(code)) << code;
}

TEST(BuilderMessages, AsTheyRead) {
    struct Literal {
        const char *document;
        std::string expected;
    };
    const Literal table[] = {
        {"abc", "The Line 1 Column 1 :\"abc\", start tag expected, '<' not found."},
        {"<a>\r\n x]]>y</a>",
         "The Line 2 Column 3 :\"<a>\r\n x]]>y</a>\", sequence ']]>' not allowed in content."},
        {"<a>\n\n    &", "The Line 3 Column 6 :\"<a>\n\n    &\", undeclared entity."},
        {"<a b='<'/>",
         "The Line 1 Column 7 :\"<a b='<'/>\", unescaped '<' not allowed in attributes values"},
        {"<端口/><b/>", "The Line 1 Column 6 :\"" + support::gb("<端口/><b/>") +
                            "\", extra content at the end of the document."},
        {"<a>0123456789012345678901234567890123456789012345678901234567890123456789</b>0123456",
         "The Line 1 Column 76 :\"012345678901234567890123456789</b>0123456\", tag name mismatch."},
    };
    for (const Literal &row : table) {
        char error[512] = "";
        EXPECT_EQ(support::memoryFeed(row.document).build(sizeof error, error), nullptr);
        EXPECT_EQ(printable(error), printable(row.expected));
    }
}

// ---------------------------------------------------------------- conversion and cuts

TEST(BuilderMessages, ASnippetThatDoesNotConvertReplacesTheMessage) {
    for (const std::string document : {"<a>\xFF</a>", "<a b='\x80'/>", "<\xE4\xB8/>",
                                       "<a>\xED\xA0\x80</a>", "<a>\xC1\x81</b>"}) {
        for (const Feed &feed : support::mainFeeds(document)) {
            char error[512] = "";
            EXPECT_EQ(feed.build(sizeof error, error), nullptr) << printable(document);
            EXPECT_STREQ(error, "failed to convert encoding.") << printable(document);
        }
    }
}

// Half a character at the end of memory: nothing has been converted, the snippet shows raw bytes.
TEST(BuilderMessages, RawBytesDoNotConvertEither) {
    char error[512] = "";
    EXPECT_EQ(support::memoryFeed("\xFF\xFE<").build(sizeof error, error), nullptr);
    EXPECT_STREQ(error, "failed to convert encoding.");
}

TEST(BuilderMessages, ANulInTheDocumentEndsTheSnippet) {
    const std::string document("<a>b\0c</a>", 10);
    char error[512] = "";
    EXPECT_EQ(support::memoryFeed(document).build(sizeof error, error), nullptr);
    EXPECT_STREQ(error, "The Line 1 Column 5 :\"<a>b\", invalid character.");
}

TEST(BuilderMessages, AreCutToEverySizeOfBuffer) {
    struct Cut {
        const char *document;
        std::size_t offset;
        int column;
    };
    const Cut table[] = {
        {"<a></b>", 5, 6},     {"<a>中文端口</b>", 17, 10},  // two bytes a character in the tree
        {"<a>öäü</b>", 11, 9},  // four bytes a character, more than in the document
        {"<a>😀𠀀</b>", 13, 8}, {"<a><!--\xEE\x9E\x8D--></b>", 15, 14},  // has no form in some trees
    };
    for (const Cut &row : table) {
        const std::string message =
            messageAt(row.document, row.offset, 1, row.column, messageOf(76));
        for (std::size_t size = 1; size <= message.size() + 12; ++size) {
            const std::unique_ptr<char[]> error(new char[size]);
            std::memset(error.get(), '#', size);
            support::FaultyHeap heap(0);
            const XML_DOM_Node *root = support::memoryFeed(row.document)
                                           .build(static_cast<std::uint32_t>(size), error.get());
            EXPECT_EQ(heap.blocksInUse(), 0u);
            EXPECT_EQ(root, nullptr);
            ASSERT_NE(std::memchr(error.get(), '\0', size), nullptr) << size;
            EXPECT_EQ(printable(error.get()), printable(errorText(message, size)))
                << row.document << ", size " << size;
        }
        char keep[] = "keep";
        EXPECT_EQ(support::memoryFeed(row.document).build(0, keep), nullptr);
        EXPECT_STREQ(keep, "keep");
    }
}

TEST(BuilderMessages, SmallestBuffers) {
    const Feed feed = support::memoryFeed("<a>");
    char none[] = "##";
    EXPECT_EQ(feed.build(0, none), nullptr);
    EXPECT_STREQ(none, "##");
    char one[] = "##";
    EXPECT_EQ(feed.build(1, one), nullptr);
    EXPECT_EQ(std::string(one, 2), std::string("\0#", 2));
    char two[] = "###";
    EXPECT_EQ(feed.build(2, two), nullptr);
    EXPECT_EQ(std::string(two, 3), std::string("T\0#", 3));
}

// ---------------------------------------------------------------- memory

TEST(BuilderMessages, NoMemoryForTheBuildersOwnStreams) {
    const Feed feed = support::memoryFeed("<a/>");
    std::set<std::string> texts;
    for (std::size_t k = 1; k <= 4; ++k) {
        char error[512] = "untouched";
        support::FaultyHeap heap(k, true);
        const XML_DOM_Node *root = feed.build(sizeof error, error);
        EXPECT_EQ(root, nullptr) << k;
        EXPECT_EQ(heap.blocksInUse(), 0u) << k;
        texts.insert(error);
    }
    EXPECT_EQ(texts.count("Failed to initialize DOM SAX."), 1u);
    for (const std::uint32_t size : {0u, 1u, 10u}) {
        char error[] = "################";
        support::FaultyHeap heap(1);
        EXPECT_EQ(feed.build(size, error), nullptr);
        EXPECT_EQ(std::string(error, size ? size - 1 : 0),
                  std::string("Failed to").substr(0, size ? size - 1 : 0));
        EXPECT_EQ(error[size], '#');
    }
}

}  // namespace
