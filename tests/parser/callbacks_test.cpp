// What a handler is told, in which order, and how it ends a parse.
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "gtest/gtest.h"
#include "tests/support/expectations.h"
#include "tests/support/parser_model.h"

using support::expectAccepted;
using support::Feed;
using support::record;
using support::RecordedParse;
using support::RecordOptions;
using support::Slot;

namespace {

// Every slot is called, most of them more than once.
constexpr std::string_view kSample =
    "<?xml version='1.0' encoding='UTF-8'?>\n"
    "<!--one--><?p first?>\n"
    "<!DOCTYPE a [ <!ENTITY e '>'> ]>\n"
    "<a b='1' xmlns:p='u'>\n"
    "  text &amp; more\r\n"
    "  <p:c p:d='2'/>\n"
    "  <![CDATA[<&]]><!--two--><?q?>\n"
    "  <e>\xE4\xB8\xAD<f/></e> tail\n"
    "</a>\n"
    "<!--three--><?r x?>\n";

TEST(Callbacks, OrderAndPositions) {
    const std::vector<std::string> expected = {
        R"(startDocument encoding 0 version "1.0" @1:39)",
        R"(comment "one" @2:11)",
        R"(processingInstruction "p" "first" @2:20)",
        R"(startElementNs "a" prefix null uri null ns [p="u"] attrs [b="1"] @4:21)",
        R"(characters "text & more" 11 @6:3)",
        R"(startElementNs "c" prefix "p" uri "u" ns [] attrs [p:d{u}="2"] @6:15)",
        R"(endElementNs "c" prefix "p" uri "u" @6:17)",
        R"(cdataBlock "<&" 2 @7:17)",
        R"(comment "two" @7:27)",
        R"(processingInstruction "q" null @7:30)",
        R"(startElementNs "e" prefix null uri null ns [] attrs [] @8:5)",
        R"(characters "\xE4\xB8\xAD" 3 @8:7)",
        R"(startElementNs "f" prefix null uri null ns [] attrs [] @8:9)",
        R"(endElementNs "f" prefix null uri null @8:11)",
        R"(endElementNs "e" prefix null uri null @8:15)",
        R"(characters "tail" 4 @9:1)",
        R"(endElementNs "a" prefix null uri null @9:5)",
        R"(comment "three" @10:13)",
        R"(processingInstruction "r" "x" @10:18)",
        R"(endDocument encoding 0 version "1.0" @11:1)",
    };
    const RecordedParse parse = support::expectSameThroughEveryFeed(kSample, "sample");
    EXPECT_EQ(parse.calls, expected);
    EXPECT_EQ(parse.result, XML_OK);
    EXPECT_TRUE(parse.breaches.empty());
}

TEST(Callbacks, SmallestDocument) {
    const RecordedParse parse = support::expectSameThroughEveryFeed("<a/>", "smallest");
    EXPECT_EQ(parse.calls, (std::vector<std::string>{
                               R"(startDocument encoding 0 version "1.0" @1:1)",
                               R"(startElementNs "a" prefix null uri null ns [] attrs [] @1:3)",
                               R"(endElementNs "a" prefix null uri null @1:5)",
                               R"(endDocument encoding 0 version "1.0" @1:5)"}));
}

// ---------------------------------------------------------------- ending a parse

struct SlotName {
    Slot slot;
    const char *name;
};

constexpr SlotName kSlots[] = {
    {Slot::kStartDocument, "startDocument"},
    {Slot::kEndDocument, "endDocument"},
    {Slot::kCharacters, "characters"},
    {Slot::kComment, "comment"},
    {Slot::kCdataBlock, "cdataBlock"},
    {Slot::kProcessingInstruction, "processingInstruction"},
    {Slot::kStartElementNs, "startElementNs"},
    {Slot::kEndElementNs, "endElementNs"},
};

// A status set by any callback ends the parse: nothing is called any more but error, once.
TEST(Callbacks, StatusEndsTheParse) {
    const RecordedParse whole = record(support::memoryFeed(kSample));
    const std::vector<Feed> feeds = support::mainFeeds(kSample);
    for (const SlotName &slot : kSlots) {
        std::vector<std::size_t> places;
        for (std::size_t i = 0; i < whole.calls.size(); ++i) {
            if (whole.calls[i].rfind(slot.name, 0) == 0) places.push_back(i);
        }
        ASSERT_FALSE(places.empty()) << slot.name;
        for (std::size_t nth = 0; nth < places.size(); ++nth) {
            for (const std::int32_t status : {1, -1, 2, 97, 65535, 0x7FFFFFFF}) {
                RecordOptions options;
                options.stopSlot = slot.slot;
                options.stopCall = static_cast<int>(nth + 1);
                options.stopStatus = status;
                const RecordedParse model = support::modelParse(kSample, options);
                for (const Feed &feed : feeds) {
                    const RecordedParse parse = record(feed, options);
                    SCOPED_TRACE(testing::Message()
                                 << slot.name << ' ' << nth + 1 << " sets " << status << ", "
                                 << feed.name() << "\nThe model gives " << model
                                 << "\nthe library gives " << parse);
                    EXPECT_EQ(parse.result, XML_REFUSED);
                    EXPECT_EQ(parse.errors, 1);
                    EXPECT_EQ(parse.status, status);
                    EXPECT_EQ(parse.message, support::messageOf(status));
                    EXPECT_EQ(parse.calls, std::vector<std::string>(
                                               whole.calls.begin(),
                                               whole.calls.begin() +
                                                   static_cast<std::ptrdiff_t>(places[nth]) + 1));
                    EXPECT_TRUE(parse.breaches.empty());
                    ASSERT_TRUE(support::sameOutcome(model, parse));
                }
            }
        }
    }
}

// The first error decides, even if the document has another right behind the callback.
TEST(Callbacks, StatusBeforeTheNextError) {
    constexpr struct {
        const char *document;
        Slot slot;
        int line;
        int column;
    } kRows[] = {
        {"<?xml version='1.0'?>&", Slot::kStartDocument, 1, 22},
        {"x", Slot::kStartDocument, 1, 1},
        {"<a b=''>\n<", Slot::kStartElementNs, 1, 8},
        {"<a b=''/>x", Slot::kStartElementNs, 1, 8},
        {"<a/>x", Slot::kEndElementNs, 1, 5},
        {"<a></a>\nx", Slot::kEndElementNs, 1, 8},
        {"<a>x\n", Slot::kCharacters, 2, 1},
        {"<a>x</b>", Slot::kCharacters, 1, 5},
        {"<a><![CDATA[]]>&", Slot::kCdataBlock, 1, 16},
        {"<a><!---->&", Slot::kComment, 1, 11},
        // "?>" is passed over before the status counts, as "-->" and "]]>" are.
        {"<a><?p?>&", Slot::kProcessingInstruction, 1, 9},
        {"<a><?p d?>&", Slot::kProcessingInstruction, 1, 11},
        {"<a/>\n", Slot::kEndDocument, 2, 1},
    };
    for (const auto &row : kRows) {
        for (const Feed &feed : support::everyFeed(row.document)) {
            RecordOptions options;
            options.stopSlot = row.slot;
            options.stopStatus = 1;
            const RecordedParse parse = record(feed, options);
            SCOPED_TRACE(testing::Message() << feed.name() << ": " << row.document << "\n"
                                            << parse);
            EXPECT_EQ(parse.result, XML_REFUSED);
            EXPECT_EQ(parse.errors, 1);
            EXPECT_EQ(parse.message, "internal error.");
            EXPECT_EQ(parse.line, row.line);
            EXPECT_EQ(parse.column, row.column);
        }
    }
}

// A status of 0 ends nothing.
TEST(Callbacks, StatusOfZero) {
    const RecordedParse whole = record(support::memoryFeed(kSample));
    for (const SlotName &slot : kSlots) {
        RecordOptions options;
        options.stopSlot = slot.slot;
        const RecordedParse parse = record(support::memoryFeed(kSample), options);
        EXPECT_TRUE(support::sameOutcome(whole, parse)) << slot.name << "\n" << parse;
    }
}

// ---------------------------------------------------------------- handlers with gaps

constexpr struct {
    const char *document;
    bool accepted;
} kDocuments[] = {
    {kSample.data(), true}, {"<a/>", true},
    {"<a>", false},         {"<a>x<!--c--><?p?><![CDATA[]]></b>", false},
    {"<p:a/>", false},      {"<?xml version='1.1'?><a/>", false},
    {" ", false},           {"<a/><!--c--><?p d?>x", false},
};

TEST(Callbacks, NoHandlerChecksTheDocument) {
    for (const auto &row : kDocuments) {
        for (const Feed &feed : support::mainFeeds(row.document)) {
            EXPECT_EQ(feed.parse(nullptr), row.accepted ? XML_OK : XML_REFUSED)
                << row.document << ", " << feed.name();
        }
    }
}

TEST(Callbacks, EmptyHandlerChecksTheDocument) {
    for (const auto &row : kDocuments) {
        for (const Feed &feed : support::mainFeeds(row.document)) {
            XML_SAX_Handler handler{};
            EXPECT_EQ(feed.parse(&handler), row.accepted ? XML_OK : XML_REFUSED)
                << row.document << ", " << feed.name();
        }
    }
}

// Counts its calls, whatever they are.
struct Counter {
    XML_SAX_Handler handler{};
    int calls[9] = {};

    static void count(XML_Parser_Ctx *context, Slot slot) {
        ++static_cast<Counter *>(context->handler->userData)->calls[static_cast<int>(slot) - 1];
    }

    Counter() {
        handler.userData = this;
        handler.startDocument = [](XML_Parser_Ctx *c) { count(c, Slot::kStartDocument); };
        handler.endDocument = [](XML_Parser_Ctx *c) { count(c, Slot::kEndDocument); };
        handler.characters = [](XML_Parser_Ctx *c, const char *, int) {
            count(c, Slot::kCharacters);
        };
        handler.comment = [](XML_Parser_Ctx *c, const char *) { count(c, Slot::kComment); };
        handler.cdataBlock = [](XML_Parser_Ctx *c, const char *, int) {
            count(c, Slot::kCdataBlock);
        };
        handler.processingInstruction = [](XML_Parser_Ctx *c, const char *, const char *) {
            count(c, Slot::kProcessingInstruction);
        };
        handler.error = onError;
        handler.startElementNs = [](XML_Parser_Ctx *c, const char *, const char *, const char *,
                                    int, const char **, int, int,
                                    const char **) { count(c, Slot::kStartElementNs); };
        handler.endElementNs = [](XML_Parser_Ctx *c, const char *, const char *, const char *) {
            count(c, Slot::kEndElementNs);
        };
    }

    static void onError(XML_Parser_Ctx *c, const char *, ...) { count(c, Slot::kError); }

    void remove(Slot slot) {
        switch (slot) {
            case Slot::kNone:
                break;
            case Slot::kStartDocument:
                handler.startDocument = nullptr;
                break;
            case Slot::kEndDocument:
                handler.endDocument = nullptr;
                break;
            case Slot::kCharacters:
                handler.characters = nullptr;
                break;
            case Slot::kComment:
                handler.comment = nullptr;
                break;
            case Slot::kCdataBlock:
                handler.cdataBlock = nullptr;
                break;
            case Slot::kProcessingInstruction:
                handler.processingInstruction = nullptr;
                break;
            case Slot::kError:
                handler.error = nullptr;
                break;
            case Slot::kStartElementNs:
                handler.startElementNs = nullptr;
                break;
            case Slot::kEndElementNs:
                handler.endElementNs = nullptr;
                break;
        }
    }
};

constexpr Slot kAllSlots[] = {
    Slot::kStartDocument, Slot::kEndDocument,    Slot::kCharacters,
    Slot::kComment,       Slot::kCdataBlock,     Slot::kProcessingInstruction,
    Slot::kError,         Slot::kStartElementNs, Slot::kEndElementNs};

// Every set of slots: a slot that is not set changes nothing for the others.
TEST(Callbacks, EverySetOfSlots) {
    const Feed good = support::memoryFeed(kSample);
    const Feed bad = support::memoryFeed(std::string(kSample) + "<");
    Counter all;
    Counter allOfBad;
    ASSERT_EQ(good.parse(&all.handler), XML_OK);
    ASSERT_EQ(bad.parse(&allOfBad.handler), XML_REFUSED);
    for (unsigned set = 0; set < 1u << std::size(kAllSlots); ++set) {
        Counter some;
        Counter someOfBad;
        for (std::size_t i = 0; i < std::size(kAllSlots); ++i) {
            if (set >> i & 1) continue;
            some.remove(kAllSlots[i]);
            someOfBad.remove(kAllSlots[i]);
        }
        EXPECT_EQ(good.parse(&some.handler), XML_OK);
        EXPECT_EQ(bad.parse(&someOfBad.handler), XML_REFUSED);
        for (std::size_t i = 0; i < std::size(kAllSlots); ++i) {
            const auto slot = static_cast<std::size_t>(kAllSlots[i]) - 1;
            EXPECT_EQ(some.calls[slot], set >> i & 1 ? all.calls[slot] : 0) << set << ' ' << i;
            EXPECT_EQ(someOfBad.calls[slot], set >> i & 1 ? allOfBad.calls[slot] : 0)
                << set << ' ' << i;
        }
    }
}

// What lies in the reserved slots is neither called nor changed; the same goes for userData.
TEST(Callbacks, ReservedSlotsAreLeftAlone) {
    XML_SAX_Handler handler;
    std::memset(static_cast<void *>(&handler), 0xA5, sizeof handler);
    handler.startDocument = nullptr;
    handler.endDocument = nullptr;
    handler.characters = nullptr;
    handler.comment = nullptr;
    handler.cdataBlock = nullptr;
    handler.processingInstruction = nullptr;
    handler.error = nullptr;
    handler.startElementNs = nullptr;
    handler.endElementNs = nullptr;
    unsigned char before[sizeof handler];
    std::memcpy(before, &handler, sizeof handler);
    for (const std::string &document : {std::string(kSample), std::string(kSample) + "x"}) {
        for (const Feed &feed : support::mainFeeds(document)) feed.parse(&handler);
    }
    EXPECT_EQ(std::memcmp(before, &handler, sizeof handler), 0);
}

// The error callback cannot take the refusal back, nor can it be called again.
TEST(Callbacks, StatusInTheErrorCallback) {
    struct Reset {
        static void error(XML_Parser_Ctx *context, const char *, ...) {
            ++*static_cast<int *>(context->handler->userData);
            context->status = 0;
        }
    };
    int errors = 0;
    XML_SAX_Handler handler{};
    handler.userData = &errors;
    handler.error = Reset::error;
    for (const Feed &feed : support::mainFeeds("<a></b>")) {
        EXPECT_EQ(feed.parse(&handler), XML_REFUSED) << feed.name();
    }
    EXPECT_EQ(errors, static_cast<int>(support::mainFeeds("<a></b>").size()));
}

TEST(Callbacks, CharactersBeforeTheUnfinishedEnd) {
    const RecordedParse parse = support::expectSameThroughEveryFeed("<a> x\n ", "unfinished");
    EXPECT_EQ(parse.status, 77);
    ASSERT_EQ(parse.calls.size(), 3u);
    EXPECT_EQ(parse.calls[2], "characters \"x\" 1 @2:2");
}

// ---------------------------------------------------------------- entry points

TEST(Callbacks, RefusedBeforeTheParse) {
    Counter counter;
    const char byte = '<';
    EXPECT_EQ(XML_Parser_ByFile(nullptr, &counter.handler), XML_REFUSED);
    EXPECT_EQ(XML_Parser_ByFile("", &counter.handler), XML_REFUSED);
    EXPECT_EQ(XML_Parser_ByFile("no/such/file.xml", &counter.handler), XML_REFUSED);
    EXPECT_EQ(XML_Parser_ByFile(nullptr, nullptr), XML_REFUSED);
    EXPECT_EQ(XML_Parser_ByMem(nullptr, 1, &counter.handler), XML_REFUSED);
    EXPECT_EQ(XML_Parser_ByMem(&byte, 0, &counter.handler), XML_REFUSED);
    EXPECT_EQ(XML_Parser_ByMem(nullptr, 0, nullptr), XML_REFUSED);
    EXPECT_EQ(XML_Parser_ByMemList(nullptr, &counter.handler), XML_REFUSED);
    EXPECT_EQ(XML_Parser_ByMemList(nullptr, nullptr), XML_REFUSED);
    for (const int calls : counter.calls) EXPECT_EQ(calls, 0);
}

// ---------------------------------------------------------------- a parse inside a parse

// Each callback parses another document, with a handler of its own or with none.
struct Nested {
    XML_SAX_Handler handler{};
    Feed feed = support::memoryFeed("<n:n xmlns:n='inner' n:b='&lt;'>inner<!--x--><?y z?></n:n>");
    Feed broken = support::listInPieces("<inner>\n\n<p:q/></inner>", 3);
    RecordedParse expected = record(feed);
    RecordedParse expectedBroken = record(broken);
    std::vector<std::string> calls;

    static Nested &parse(XML_Parser_Ctx *context) {
        Nested &self = *static_cast<Nested *>(context->handler->userData);
        const std::int32_t line = context->line;
        const std::int32_t column = context->column;
        EXPECT_TRUE(support::sameOutcome(record(self.feed), self.expected));
        EXPECT_TRUE(support::sameOutcome(record(self.broken), self.expectedBroken));
        EXPECT_EQ(self.feed.parse(nullptr), XML_OK);
        EXPECT_EQ(context->line, line);
        EXPECT_EQ(context->column, column);
        EXPECT_EQ(context->status, 0);
        return self;
    }

    Nested() {
        handler.userData = this;
        handler.startDocument = [](XML_Parser_Ctx *c) {
            parse(c).calls.push_back("startDocument");
        };
        handler.endDocument = [](XML_Parser_Ctx *c) { parse(c).calls.push_back("endDocument"); };
        handler.characters = [](XML_Parser_Ctx *c, const char *text, int) {
            parse(c).calls.push_back(text);
        };
        handler.comment = [](XML_Parser_Ctx *c, const char *text) {
            parse(c).calls.push_back(text);
        };
        handler.cdataBlock = [](XML_Parser_Ctx *c, const char *text, int length) {
            parse(c).calls.push_back(std::string(text, static_cast<std::size_t>(length)));
        };
        handler.processingInstruction = [](XML_Parser_Ctx *c, const char *target,
                                           const char *data) {
            parse(c).calls.push_back(std::string(target) + (data ? data : ""));
        };
        handler.startElementNs = [](XML_Parser_Ctx *c, const char *name, const char *, const char *,
                                    int, const char **, int count, int, const char **attributes) {
            Nested &self = parse(c);
            self.calls.push_back(name);
            for (int i = 0; i < count; ++i) self.calls.push_back(attributes[5 * i + 3]);
        };
        handler.endElementNs = [](XML_Parser_Ctx *c, const char *name, const char *, const char *) {
            parse(c).calls.push_back(name);
        };
    }
};

TEST(Callbacks, ParseInsideEveryCallback) {
    const std::vector<std::string> expected = {"startDocument",
                                               "one",
                                               "pfirst",
                                               "a",
                                               "1",
                                               "text & more",
                                               "c",
                                               "2",
                                               "c",
                                               "<&",
                                               "two",
                                               "q",
                                               "e",
                                               "\xE4\xB8\xAD",
                                               "f",
                                               "f",
                                               "e",
                                               "tail",
                                               "a",
                                               "three",
                                               "rx",
                                               "endDocument"};
    for (const Feed &feed : support::mainFeeds(kSample)) {
        Nested nested;
        EXPECT_EQ(feed.parse(&nested.handler), XML_OK) << feed.name();
        EXPECT_EQ(nested.calls, expected) << feed.name();
    }
}

// One handler record serves an inner parse as well as the outer one that waits for it.
TEST(Callbacks, SameHandlerInsideItself) {
    struct Levels {
        XML_SAX_Handler handler{};
        int depth = 0;
        std::vector<std::string> names;

        static void start(XML_Parser_Ctx *context, const char *name, const char *, const char *,
                          int, const char **, int, int, const char **) {
            Levels &self = *static_cast<Levels *>(context->handler->userData);
            if (self.depth < 5) {
                const std::string inner = "<level" + std::to_string(self.depth++) + "/>";
                EXPECT_EQ(XML_Parser_ByMem(inner.c_str(), static_cast<std::uint32_t>(inner.size()),
                                           context->handler),
                          XML_OK);
            }
            self.names.push_back(name);
        }
    };
    Levels levels;
    levels.handler.userData = &levels;
    levels.handler.startElementNs = Levels::start;
    EXPECT_EQ(support::fileFeed("<outer/>").parse(&levels.handler), XML_OK);
    EXPECT_EQ(levels.names, (std::vector<std::string>{"level4", "level3", "level2", "level1",
                                                      "level0", "outer"}));
}

}  // namespace
