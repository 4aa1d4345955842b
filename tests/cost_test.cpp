// The cost of a document is linear in its length, whatever its shape and however it is handed over.
//
// Each shape is taken at n and at 8n. Allocated bytes are counted; time is compared generously, so
// that a busy machine passes: work that grows with the square would take 64 times as long.
#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "compactxml.h"
#include "gtest/gtest.h"
#include "tests/support/expectations.h"
#include "tests/support/faults.h"
#include "tests/support/feeds.h"
#include "tests/support/growth.h"
#include "tests/support/small_stack.h"

namespace {

using support::Feed;
using support::growsLinearly;

constexpr std::size_t kGrowth = 8;
constexpr std::size_t kItems = support::kSanitized ? 2048 : 12500;    // attributes, elements, ...
constexpr std::size_t kBytes = support::kSanitized ? 40000 : 200000;  // of a single token
constexpr std::size_t kPieceShare = 8;  // lists of one-byte chunks get a document so much smaller

// Buffers below 64 KiB may grow in steps of 1 KiB, which comes to this much at most.
constexpr std::size_t kSmallSteps = 64 * 65 / 2 * 1024;

// ---------------------------------------------------------------- shapes

struct Shape {
    const char *name;
    std::size_t n;
    std::string (*document)(std::size_t n);
    const char *message = nullptr;  // of the refusal; null for a document that is accepted
};

std::ostream &operator<<(std::ostream &out, const Shape &shape) {
    return out << shape.name;
}

// n pieces, made from their numbers.
template <typename Piece>
std::string join(std::size_t n, Piece piece) {
    std::string text;
    for (std::size_t i = 0; i < n; ++i) text += piece(std::to_string(i));
    return text;
}

std::string times(std::size_t n, std::string_view piece) {
    std::string text;
    text.reserve(n * piece.size());
    for (std::size_t i = 0; i < n; ++i) text += piece;
    return text;
}

std::string nested(std::size_t n, std::string_view start, std::string_view end) {
    return times(n, start) + times(n, end);
}

// The i-th name of those that a hash of the form h * factor + byte takes for one and the same.
std::string collidingName(std::size_t i, const char *zero, const char *one) {
    std::string name;
    for (int bit = 0; bit < 17; ++bit) name += (i >> bit) & 1 ? one : zero;
    return name;
}

std::string collidingAttributes(std::size_t n, const char *zero, const char *one) {
    std::string text = "<a";
    for (std::size_t i = 0; i < n; ++i) text += ' ' + collidingName(i, zero, one) + "=''";
    return text + "/>";
}

const Shape kStructures[] = {
    {"Attributes", kItems,
     [](std::size_t n) {
         return "<a" + join(n, [](const std::string &i) { return " x" + i + "='v'"; }) + "/>";
     }},
    {"AttributesLastTwoEqual", kItems,
     [](std::size_t n) {
         return "<a" + join(n, [](const std::string &i) { return " x" + i + "='v'"; }) +
                " last='1' last='2'/>";
     },
     "attribute redefined."},
    {"AttributesOfOneNameInManyNamespaces", kItems,
     [](std::size_t n) {
         return "<a" +
                join(n,
                     [](const std::string &i) {
                         return " xmlns:p" + i + "='u" + i + "' p" + i + ":x=''";
                     }) +
                "/>";
     }},
    {"AttributesEqualByNamespaceAtTheEnd", kItems,
     [](std::size_t n) {
         return "<a" +
                join(n,
                     [](const std::string &i) {
                         return " xmlns:p" + i + "='u" + i + "' p" + i + ":x=''";
                     }) +
                " xmlns:q='u0' q:x=''/>";
     },
     "attribute redefined."},
    {"AttributesThatCollideByFactor31", kItems,
     [](std::size_t n) { return collidingAttributes(n, "Aa", "BB"); }},
    {"AttributesThatCollideByFactor33", kItems,
     [](std::size_t n) { return collidingAttributes(n, "Az", "BY"); }},
    {"Declarations", kItems,
     [](std::size_t n) {
         return "<a" + join(n, [](const std::string &i) { return " xmlns:p" + i + "='u'"; }) + "/>";
     }},
    {"DeclarationsLastTwoEqual", kItems,
     [](std::size_t n) {
         return "<a" + join(n, [](const std::string &i) { return " xmlns:p" + i + "='u'"; }) +
                " xmlns:last='1' xmlns:last='2'/>";
     },
     "attribute redefined."},
    {"NestedDeclarationsUsingTheOutermostPrefix", kItems,
     [](std::size_t n) {
         return "<p:a xmlns:p='u'>" +
                join(n, [](const std::string &i) { return "<p:b p:c='' xmlns:q" + i + "='v'>"; }) +
                times(n, "</p:b>") + "</p:a>";
     }},
    {"NestedDeclarationsThenSiblingsUsingTheOutermost", kItems,
     [](std::size_t n) {
         return "<p:a xmlns:p='u'>" +
                join(n, [](const std::string &i) { return "<b xmlns:q" + i + "='v'>"; }) +
                times(n, "<p:c p:d=''/>") + times(n, "</b>") + "</p:a>";
     }},
    {"NestedRedeclarationsOfOnePrefix", kItems,
     [](std::size_t n) {
         return join(n, [](const std::string &i) { return "<p:a xmlns:p='u" + i + "' p:x=''>"; }) +
                times(n, "</p:a>");
     }},
    {"NestedRedeclarationsOfTheDefault", kItems,
     [](std::size_t n) {
         return join(n, [](const std::string &i) { return "<a xmlns='u" + i + "'>"; }) +
                times(n, "</a>");
     }},
    {"SiblingsRedeclaringOnePrefix", kItems,
     [](std::size_t n) { return "<a>" + times(n, "<p:b xmlns:p='u' p:c=''/>") + "</a>"; }},
    {"UnprefixedElementsUnderManyBindings", kItems,
     [](std::size_t n) {
         return "<a" + join(n, [](const std::string &i) { return " xmlns:p" + i + "='u'"; }) + ">" +
                times(n, "<b c=''/>") + "</a>";
     }},
    {"PrefixedElementsUnderManyBindings", kItems,
     [](std::size_t n) {
         return "<a" + join(n, [](const std::string &i) { return " xmlns:p" + i + "='u'"; }) + ">" +
                join(n, [](const std::string &i) { return "<p0:b p" + i + ":c=''/>"; }) + "</a>";
     }},
    {"Siblings", kItems, [](std::size_t n) { return "<a>" + times(n, "<b>t</b>") + "</a>"; }},
    {"SiblingsOfDifferentNames", kItems,
     [](std::size_t n) {
         return "<a>" + join(n, [](const std::string &i) { return "<b" + i + "/>"; }) + "</a>";
     }},
    {"SiblingsWithAttributes", kItems,
     [](std::size_t n) { return "<a>" + times(n, "<b c='1' d='&lt;' e='3'>t</b>\n") + "</a>"; }},
    {"Nested", kItems, [](std::size_t n) { return nested(n, "<a>", "</a>"); }},
    {"NestedWithText", kItems, [](std::size_t n) { return nested(n, "<a>x", "y</a>"); }},
    {"NestedAndUnfinished", kItems, [](std::size_t n) { return times(n, "<a b='c'>"); },
     "tag not finished."},
    {"NestedDeclarationsAndUnfinished", kItems,
     [](std::size_t n) { return times(n, "<p:a xmlns:p='u'>"); }, "tag not finished."},
    {"Comments", kItems, [](std::size_t n) { return "<a>" + times(n, "t<!--c-->") + "</a>"; }},
    {"Instructions", kItems, [](std::size_t n) { return "<a>" + times(n, "t<?p q?>") + "</a>"; }},
    {"CDataSections", kItems,
     [](std::size_t n) { return "<a>" + times(n, "<![CDATA[x]]>") + "</a>"; }},
    {"MiscellaneaAroundTheRoot", kItems,
     [](std::size_t n) { return times(n, "<!--c--> <?p?>") + "<a/>" + times(n, "<!--c--> "); }},
};

const Shape kTokens[] = {
    {"Text", kBytes, [](std::size_t n) { return "<a>" + times(n, "t") + "</a>"; }},
    {"TextOfWords", kBytes, [](std::size_t n) { return "<a>" + times(n / 2, "t ") + "</a>"; }},
    {"TextOfReferences", kBytes,
     [](std::size_t n) { return "<a>" + times(n / 5, "&amp;") + "</a>"; }},
    {"TextOfCharacterReferences", kBytes,
     [](std::size_t n) { return "<a>" + times(n / 8, "&#x4E2D;") + "</a>"; }},
    {"TextOfLines", kBytes, [](std::size_t n) { return "<a>x" + times(n, "\n") + "x</a>"; }},
    {"TextOfCarriageReturns", kBytes,
     [](std::size_t n) { return "<a>x" + times(n / 2, "\r\n") + "x</a>"; }},
    {"TextOfMultibyteCharacters", kBytes,
     [](std::size_t n) { return "<a>" + times(n / 3, "中") + "</a>"; }},
    {"TextOfBrackets", kBytes, [](std::size_t n) { return "<a>" + times(n / 2, "] ") + "</a>"; }},
    {"Value", kBytes, [](std::size_t n) { return "<a b='" + times(n, "v") + "'/>"; }},
    {"ValueOfReferences", kBytes,
     [](std::size_t n) { return "<a b='" + times(n / 4, "&lt;") + "'/>"; }},
    {"ValueOfMultibyteCharacters", kBytes,
     [](std::size_t n) { return "<a b='" + times(n / 3, "中") + "'/>"; }},
    {"NamespaceName", kBytes, [](std::size_t n) { return "<a xmlns='" + times(n, "v") + "'/>"; }},
    {"Comment", kBytes, [](std::size_t n) { return "<a><!--" + times(n, "c") + "--></a>"; }},
    {"CommentOfHyphens", kBytes,
     [](std::size_t n) { return "<a><!--" + times(n / 2, "- ") + "--></a>"; }},
    {"CData", kBytes, [](std::size_t n) { return "<a><![CDATA[" + times(n, "c") + "]]></a>"; }},
    {"CDataOfBrackets", kBytes,
     [](std::size_t n) { return "<a><![CDATA[" + times(n, "]") + "]]></a>"; }},
    {"InstructionData", kBytes, [](std::size_t n) { return "<a><?p " + times(n, "?") + "?></a>"; }},
    {"InstructionTarget", kBytes, [](std::size_t n) { return "<a><?" + times(n, "p") + "?></a>"; }},
    {"Doctype", kBytes, [](std::size_t n) { return "<!DOCTYPE " + times(n, "d") + "><a/>"; }},
    {"DoctypeSubset", kBytes,
     [](std::size_t n) { return "<!DOCTYPE d [" + times(n / 4, ">[]x") + "]><a/>"; }},
    {"ElementName", kBytes,
     [](std::size_t n) {
         const std::string name(n / 2, 'n');
         return "<" + name + "></" + name + ">";
     }},
    {"AttributeName", kBytes, [](std::size_t n) { return "<a " + times(n, "n") + "=''/>"; }},
    {"Prefix", kBytes,
     [](std::size_t n) {
         const std::string name(n / 3, 'n');
         return "<" + name + ":a xmlns:" + name + "='u'></" + name + ":a>";
     }},
    {"NameOfMultibyteCharacters", kBytes,
     [](std::size_t n) { return "<" + times(n / 3, "名") + "/>"; }},
    {"BlanksInProlog", kBytes, [](std::size_t n) { return times(n, " ") + "<a/>"; }},
    {"BlanksInText", kBytes, [](std::size_t n) { return "<a>x" + times(n, " ") + "y</a>"; }},
    {"BlanksBehindText", kBytes, [](std::size_t n) { return "<a>x" + times(n, " \n") + "</a>"; }},
    {"BlanksInATag", kBytes, [](std::size_t n) { return "<a" + times(n, " ") + "b = ''/>"; }},
    {"BlanksInAnEndTag", kBytes, [](std::size_t n) { return "<a></a" + times(n, "\t") + ">"; }},
    {"BlanksBehindTheRoot", kBytes, [](std::size_t n) { return "<a/>" + times(n, "\n"); }},
    {"DigitsOfAReference", kBytes,
     [](std::size_t n) { return "<a>&#" + times(n, "0") + "65;</a>"; }},
};

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
    const std::size_t n = kind == Feed::Kind::kList ? shape.n / kPieceShare : shape.n;
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

INSTANTIATE_TEST_SUITE_P(Structures, Cost, testing::ValuesIn(kStructures), nameOf);
INSTANTIATE_TEST_SUITE_P(Tokens, Cost, testing::ValuesIn(kTokens), nameOf);

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
    for (const Shape &shape : kStructures) {
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
