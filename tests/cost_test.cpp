// The cost of a document is linear in its length, whatever its shape and however it is handed over.
//
// Each shape is taken at n and at 8n. Allocated bytes are counted; time is compared generously, so
// that a busy machine passes: work that grows with the square would take 64 times as long.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "compactxml.h"
#include "gtest/gtest.h"
#include "tests/support/document_shapes.h"
#include "tests/support/expectations.h"
#include "tests/support/faults.h"
#include "tests/support/feeds.h"
#include "tests/support/growth.h"
#include "tests/support/small_stack.h"

namespace {

using support::Feed;
using support::growsLinearly;
using support::join;
using support::times;
using Shape = support::DocumentShape;

constexpr std::size_t kGrowth = 8;
constexpr std::size_t kItems = support::kSanitized ? 2048 : 12500;
constexpr std::size_t kBytes = support::kSanitized ? 40000 : 200000;
constexpr std::size_t kPieceShare = 8;  // lists of one-byte chunks get a document so much smaller

// Buffers below 64 KiB may grow in steps of 1 KiB, which comes to this much at most.
constexpr std::size_t kSmallSteps = 64 * 65 / 2 * 1024;

// ---------------------------------------------------------------- measures

// What a handler with all callbacks is told.
struct Told {
    std::size_t calls = 0;
    std::size_t bytes = 0;
    std::string message;
};

Told &toldTo(XML_Parser_Ctx *context) {
    return *static_cast<Told *>(context->handler->userData);
}

void count(XML_Parser_Ctx *context, std::size_t bytes) {
    Told &told = toldTo(context);
    ++told.calls;
    told.bytes += bytes;
}

std::size_t lengthOf(const char *text) {
    return text ? std::string_view(text).size() : 0;
}

void onError(XML_Parser_Ctx *context, const char *, ...) {
    toldTo(context).message = support::messageOf(context->status);
}

XML_SAX_Handler countingHandler(Told *told) {
    XML_SAX_Handler handler{};
    handler.userData = told;
    handler.startElementNs = [](XML_Parser_Ctx *context, const char *name, const char *,
                                const char *, int declarations, const char **, int attributes, int,
                                const char **groups) {
        count(context, lengthOf(name));
        toldTo(context).calls += static_cast<std::size_t>(declarations);
        for (int i = 0; i < attributes; ++i) {
            const char **group = groups + 5 * i;
            count(context, lengthOf(group[0]) + static_cast<std::size_t>(group[4] - group[3]));
        }
    };
    handler.endElementNs = [](XML_Parser_Ctx *context, const char *, const char *, const char *) {
        count(context, 0);
    };
    handler.characters = [](XML_Parser_Ctx *context, const char *, int length) {
        count(context, static_cast<std::size_t>(length));
    };
    handler.cdataBlock = handler.characters;
    handler.comment = [](XML_Parser_Ctx *context, const char *text) {
        count(context, lengthOf(text));
    };
    handler.processingInstruction = [](XML_Parser_Ctx *context, const char *target,
                                       const char *data) {
        count(context, lengthOf(target) + lengthOf(data));
    };
    handler.error = onError;
    return handler;
}

enum class Job { kParse, kBuildAndDelete };

// Does the job once; false when the document was not accepted.
bool perform(Job job, const Feed &feed, Told *told) {
    if (job == Job::kParse) {
        XML_SAX_Handler handler = countingHandler(told);
        return feed.parse(&handler) == XML_OK;
    }
    XML_DOM_Node *root = feed.build(0, nullptr);
    XML_DOM_DelNode(root);
    return root != nullptr;
}

Feed feedOf(Feed::Kind kind, const std::string &document) {
    switch (kind) {
        case Feed::Kind::kMemory:
            return support::memoryFeed(document);
        case Feed::Kind::kFile:
            return support::fileFeed(document);
        case Feed::Kind::kList:
            break;
    }
    return support::listInPieces(document, 1);
}

void expectLinear(const Shape &shape, Feed::Kind kind) {
    const std::size_t whole = shape.unit == support::kItems ? kItems : kBytes;
    const std::size_t n = kind == Feed::Kind::kList ? whole / kPieceShare : whole;
    const Feed one = feedOf(kind, shape.document(n));
    const Feed eight = feedOf(kind, shape.document(kGrowth * n));
    SCOPED_TRACE(std::string(shape.name) + ", " + one.name());
    for (const Job job : {Job::kParse, Job::kBuildAndDelete}) {
        const char *name = job == Job::kParse ? "parse" : "build and delete";
        Told told[2];
        std::size_t bytes[2];
        for (const bool longer : {false, true}) {
            support::FaultyHeap heap(0);
            const bool accepted = perform(job, longer ? eight : one, &told[longer]);
            bytes[longer] = heap.bytesAllocated();
            EXPECT_EQ(heap.blocksInUse(), 0u) << name;
            EXPECT_EQ(accepted, shape.message == nullptr) << name;
        }
        if (job == Job::kParse) {
            EXPECT_EQ(told[1].message, shape.message ? shape.message : "");
            EXPECT_LE(told[1].calls, (kGrowth + 1) * told[0].calls + 8);
        }
        EXPECT_LE(bytes[1], 12 * bytes[0] + kSmallSteps) << name;
        Told ignored;
        EXPECT_TRUE(growsLinearly([&] { perform(job, one, &ignored); },
                                  [&] { perform(job, eight, &ignored); }))
            << name;
    }
}

class Cost : public testing::TestWithParam<Shape> {};

TEST_P(Cost, IsLinearFromMemory) {
    expectLinear(GetParam(), Feed::Kind::kMemory);
}

TEST_P(Cost, IsLinearFromAFile) {
    expectLinear(GetParam(), Feed::Kind::kFile);
}

TEST_P(Cost, IsLinearFromAListOfBytes) {
    expectLinear(GetParam(), Feed::Kind::kList);
}

std::string nameOf(const testing::TestParamInfo<Shape> &info) {
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(Structures, Cost, testing::ValuesIn(support::structures()), nameOf);
INSTANTIATE_TEST_SUITE_P(Tokens, Cost, testing::ValuesIn(support::tokens()), nameOf);

// ---------------------------------------------------------------- long namespace names

// Names of a megabyte are compared as often as there are tags with equal local names in both; that
// must not cost a megabyte each time.
TEST(CostOfNamespaces, LongNamesThatDifferAtTheirEnd) {
    constexpr std::size_t kTags = support::kSanitized ? 2000 : 20000;
    const auto document = [](std::size_t length, std::size_t tags) {
        const std::string name(length, 'u');
        return "<r xmlns:p='" + name + "1' xmlns:q='" + name + "2'>" +
               times(tags, "<p:e q:x='' p:x=''/><q:e p:x='' q:x=''/>") + "</r>";
    };
    const Feed longNames = support::memoryFeed(document(1 << 20, kTags));
    const Feed namesAlone = support::memoryFeed(document(1 << 20, 0));
    const Feed tagsAlone = support::memoryFeed(document(1, kTags));
    for (const Job job : {Job::kParse, Job::kBuildAndDelete}) {
        Told told;
        const auto run = [job, &told](const Feed &feed) { EXPECT_TRUE(perform(job, feed, &told)); };
        const auto parts = [&] {
            run(namesAlone);
            run(tagsAlone);
        };
        EXPECT_TRUE(growsLinearly(parts, [&] { run(longNames); }));
        std::size_t bytes[2];
        {
            support::FaultyHeap heap(0);
            parts();
            bytes[0] = heap.bytesAllocated();
        }
        {
            support::FaultyHeap heap(0);
            run(longNames);
            bytes[1] = heap.bytesAllocated();
        }
        EXPECT_LE(bytes[1], 2 * bytes[0]);
    }
}

TEST(CostOfNamespaces, LongNamesThatAreEqualAreStillFound) {
    const std::string name(1 << 20, 'u');
    const std::string start = "<r xmlns:p='" + name + "' xmlns:q='" + name + "'>";
    Told told;
    EXPECT_FALSE(
        perform(Job::kParse, support::memoryFeed(start + "<e p:x='' q:x=''/></r>"), &told));
    EXPECT_EQ(told.message, "attribute redefined.");
}

// One local name in many namespaces whose long names differ only at their ends.
TEST(CostOfNamespaces, LongNamesOnManyAttributes) {
    const std::string name(1 << 16, 'u');
    const auto document = [&name](std::size_t n) {
        return "<r" +
               join(n,
                    [&name](const std::string &i) {
                        return " xmlns:p" + i + "='" + name + i + "' p" + i + ":x=''";
                    }) +
               "/>";
    };
    const Feed one = support::memoryFeed(document(25));
    const Feed eight = support::memoryFeed(document(200));
    for (const Job job : {Job::kParse, Job::kBuildAndDelete}) {
        Told told;
        EXPECT_TRUE(growsLinearly([&] { EXPECT_TRUE(perform(job, one, &told)); },
                                  [&] { EXPECT_TRUE(perform(job, eight, &told)); }));
    }
}

// ---------------------------------------------------------------- memory of a parse

// A parse keeps what the deepest nesting and the longest token need, however many there are.
TEST(CostOfMemory, ManySmallTokensNeedNoMoreThanAFew) {
    for (const Shape &shape : support::structures()) {
        const std::string_view name = shape.name;
        if (name != "Siblings" && name != "SiblingsOfDifferentNames" &&
            name != "SiblingsWithAttributes" && name != "Comments" && name != "Instructions" &&
            name != "CDataSections") {
            continue;
        }
        for (const Feed::Kind kind : {Feed::Kind::kMemory, Feed::Kind::kFile, Feed::Kind::kList}) {
            std::size_t allocations[2];
            std::size_t bytes[2];
            for (const bool longer : {false, true}) {
                const Feed feed = feedOf(kind, shape.document(longer ? 4000 : 500));
                support::FaultyHeap heap(0);
                Told told;
                EXPECT_TRUE(perform(Job::kParse, feed, &told));
                allocations[longer] = heap.allocations();
                bytes[longer] = heap.bytesAllocated();
            }
            EXPECT_EQ(allocations[0], allocations[1]) << name;
            EXPECT_EQ(bytes[0], bytes[1]) << name;
            EXPECT_LE(bytes[1], 32768u) << name;
        }
    }
}

// A file is read through a window; a long document of short tokens does not make it grow.
TEST(CostOfMemory, FilesAndListsAreNotHeldWhole) {
    const std::string document = "<a>" + times(50000, "<b c='d'>text</b>\n<!-- c -->") + "</a>";
    for (const Feed &feed : {support::fileFeed(document), support::listFeed(document)}) {
        support::FaultyHeap heap(0);
        Told told;
        EXPECT_TRUE(perform(Job::kParse, feed, &told));
        EXPECT_LE(heap.largestBlock(), 8192u) << feed.name();
        EXPECT_LE(heap.bytesAllocated(), 32768u) << feed.name();
    }
}

}  // namespace
