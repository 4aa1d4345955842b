// Callbacks that ask for more than was meant for them, within the rules: that use the library
// themselves, for everything it does; that run out of memory there; that fail at every position.
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "compactxml.h"
#include "tests/support/faults.h"
#include "tests/support/feeds.h"
#include "tests/support/owners.h"
#include "tests/support/sample_trees.h"
#include "tests/support/schema_maker.h"
#include "tests/support/tree_dump.h"

namespace {

using support::Feed;
using support::NodePtr;
using support::TextPtr;

// Every callback is called, and every one in the middle of something.
constexpr std::string_view kDocument =
    "<?xml version='1.0' encoding='GBK'?><!--c--><?p d?>\n"
    "<a x='&lt;' xmlns:n='\xD6\xD0'><n:b n:y='2'>text &amp; "
    "\xCE\xC4<![CDATA[<]]></n:b><e/></a><?q?>";

// A use of everything: parsing, building, selecting, writing, validating. Returns what came of it.
std::string useEverything() {
    const Feed feed = support::memoryFeed("<r><n:a xmlns:n='\xE4\xB8\xAD' x='1'>5</n:a><b/></r>");
    const support::RecordedParse parse = support::record(feed);
    std::string all = std::to_string(parse.result) + parse.text;
    for (const std::string &call : parse.calls) all += call;
    char message[256] = "";
    const NodePtr tree(feed.build(sizeof message, message));
    all += support::describeTree(tree.get()) + message;
    const NodePtr refused(support::listInPieces("<a>\n<b></a>", 3).build(sizeof message, message));
    all += message;
    char *text = nullptr;
    std::uint32_t length = 0;
    all += std::to_string(XML_DOM_TranslateStr(tree.get(), 0, &text, &length));
    const TextPtr owner(text);
    if (text) all.append(text, length);
    return all + (XML_DOM_SelectSingleNode(tree.get(), "a") ? "selected" : "not selected");
}

// What a callback does besides. The schema is made before memory runs out.
class Inside {
  public:
    Inside() {
        schema_.addElement("r", "seq(a{1,2}, choice{0,u}(b, c))");
        expected_ = use();
    }

    // Uses everything, and much of it once more while an allocation fails, or all from one on.
    void operator()() {
        EXPECT_EQ(use(), expected_);
        ++uses_;
        const support::FaultyHeap heap(1 + uses_ * 7 % 150, uses_ % 2 == 0);
        const Feed feed = support::memoryFeed("<r><\xE4\xB8\xAD x='1'>5</\xE4\xB8\xAD><b/></r>");
        const NodePtr tree(feed.build(0, nullptr));
        char *text = nullptr;
        XML_DOM_TranslateStr(tree.get(), 0, &text, nullptr);
        const TextPtr owner(text);
        SchemaErrorInfo error;
        Schema_ValidateXml(tree.get(), &schema_.root(), &error);
    }

    std::size_t uses() const { return uses_; }

  private:
    std::string use() {
        const NodePtr tree(XML_DOM_BuildTreeByMem("<r><a/><c/></r>", 15, 0, nullptr));
        return useEverything() + support::verdict(tree.get(), schema_.root());
    }

    support::SchemaMaker schema_;
    std::string expected_;
    std::size_t uses_ = 0;
};

// ---------------------------------------------------------------- parses

// Does something in each callback, of which it counts the calls.
struct Caller {
    explicit Caller(std::function<void(XML_Parser_Ctx *)> act) : doing(std::move(act)) {
        handler.userData = this;
        handler.startDocument = handler.endDocument = [](XML_Parser_Ctx *c) { called(c); };
        handler.characters =
            handler.cdataBlock = [](XML_Parser_Ctx *c, const char *text, int size) {
                called(c).told.append(text, static_cast<std::size_t>(size));
            };
        handler.comment = [](XML_Parser_Ctx *c, const char *text) { called(c).told += text; };
        handler.processingInstruction = [](XML_Parser_Ctx *c, const char *target, const char *) {
            called(c).told += target;
        };
        handler.startElementNs = [](XML_Parser_Ctx *c, const char *name, const char *, const char *,
                                    int declarations, const char **pairs, int attributes, int,
                                    const char **groups) {
            Caller &self = called(c);
            self.told += name;
            for (int i = 0; i < declarations; ++i) self.told += pairs[2 * i + 1];
            for (int i = 0; i < attributes; ++i) self.told += groups[5 * i + 3];
        };
        handler.endElementNs = [](XML_Parser_Ctx *c, const char *name, const char *, const char *) {
            called(c).told += name;
        };
        handler.error = error;
    }
    Caller(const Caller &) = delete;
    Caller &operator=(const Caller &) = delete;

    // What it was given is looked at after doing: nothing of it may have changed.
    static Caller &called(XML_Parser_Ctx *context) {
        Caller &self = *static_cast<Caller *>(context->handler->userData);
        ++self.calls;
        self.doing(context);
        return self;
    }
    static void error(XML_Parser_Ctx *context, const char *, ...) {
        Caller &self = *static_cast<Caller *>(context->handler->userData);
        ++self.errors;
        self.status = context->status;
        self.doing(context);
    }

    XML_SAX_Handler handler{};
    std::function<void(XML_Parser_Ctx *)> doing;
    std::size_t calls = 0;
    int errors = 0;
    std::int32_t status = 0;
    std::string told;
};

TEST(CallbacksWithinTheRules, EverythingInsideEveryCallback) {
    Inside inside;
    for (const std::string &document : {std::string(kDocument), std::string(kDocument) + "x"}) {
        for (const Feed &feed : support::mainFeeds(document)) {
            SCOPED_TRACE(feed.name());
            Caller idle([](XML_Parser_Ctx *) {});
            const std::uint32_t result = feed.parse(&idle.handler);
            Caller busy([&inside](XML_Parser_Ctx *) { inside(); });
            EXPECT_EQ(feed.parse(&busy.handler), result);
            EXPECT_EQ(busy.told, idle.told);
            EXPECT_EQ(busy.calls, idle.calls);
            EXPECT_EQ(busy.errors, idle.errors);
            EXPECT_EQ(busy.status, idle.status);
        }
    }
    EXPECT_GT(inside.uses(), 100u);
}

// The refusals of what a callback does are its own affair; its status ends the parse there and then.
TEST(CallbacksWithinTheRules, StatusAtEveryPositionBehindAnotherParse) {
    const Feed feed = support::memoryFeed(kDocument);
    Caller whole([](XML_Parser_Ctx *) {});
    ASSERT_EQ(feed.parse(&whole.handler), XML_OK);
    for (std::size_t position = 1; position <= whole.calls; ++position) {
        for (const std::int32_t status : {1, -1, 7, INT32_MIN, INT32_MAX}) {
            Caller stopping([](XML_Parser_Ctx *) {});
            stopping.doing = [&](XML_Parser_Ctx *context) {
                EXPECT_EQ(XML_DOM_BuildTreeByMem("<a>", 3, 0, nullptr), nullptr);
                if (stopping.calls == position) context->status = status;
            };
            EXPECT_EQ(feed.parse(&stopping.handler), XML_REFUSED) << position;
            EXPECT_EQ(stopping.calls, position);
            EXPECT_EQ(stopping.errors, 1);
            EXPECT_EQ(stopping.status, status);
        }
    }
}

// ---------------------------------------------------------------- writers

struct Writer {
    std::function<void()> doing = [] {};
    std::size_t failAt = 0;  // and every piece behind
    std::uint32_t failure = 0;
    std::size_t pieces = 0;
    std::string written;

    static std::uint32_t write(void *context, const char *bytes, std::uint32_t length) {
        Writer &self = *static_cast<Writer *>(context);
        self.doing();
        if (++self.pieces >= self.failAt && self.failAt != 0) return self.failure;
        self.written.append(bytes, length);
        return 0;
    }
};

TEST(CallbacksWithinTheRules, EverythingInsideAWriter) {
    Inside inside;
    const NodePtr tree = support::richDocument(XML_ENCODING_UTF_16);
    Writer idle, busy;
    ASSERT_EQ(XML_DOM_OutPutTranslateStr(tree.get(), 0, Writer::write, &idle), XML_OK);
    busy.doing = [&] {
        inside();
        // The tree that is being written may be read.
        Writer inner;
        EXPECT_EQ(XML_DOM_OutPutTranslateStr(tree.get(), 0, Writer::write, &inner), XML_OK);
        EXPECT_EQ(inner.written, idle.written);
    };
    EXPECT_EQ(XML_DOM_OutPutTranslateStr(tree.get(), 0, Writer::write, &busy), XML_OK);
    EXPECT_EQ(busy.written, idle.written);
    Writer text;
    text.doing = [&inside] { inside(); };
    EXPECT_EQ(XML_OutTextString(" <&> ", Writer::write, &text), XML_OK);
    EXPECT_EQ(text.written, "&#x20;&lt;&amp;&gt;&#x20;");
}

// Sums of failures are failures, even where the numbers come to 0.
TEST(CallbacksWithinTheRules, WritersThatFailAtEveryPiece) {
    const NodePtr tree = support::richDocument();
    const std::string before = support::dumpTree(tree.get());
    Writer whole;
    ASSERT_EQ(XML_DOM_OutPutTranslateStr(tree.get(), 0, Writer::write, &whole), XML_OK);
    for (const std::uint32_t failure : {1u, XML_REFUSED, 0x80000000u, 0xFFFFFFFFu}) {
        for (std::size_t piece = 1; piece <= whole.pieces; ++piece) {
            Writer failing;
            failing.failAt = piece;
            failing.failure = failure;
            EXPECT_NE(XML_DOM_OutPutTranslateStr(tree.get(), 0, Writer::write, &failing), XML_OK)
                << failure << ", piece " << piece;
            EXPECT_EQ(whole.written.substr(0, failing.written.size()), failing.written);
        }
    }
    EXPECT_EQ(support::dumpTree(tree.get()), before);
    for (std::size_t piece = 1; piece <= 5; ++piece) {
        Writer failing;
        failing.failAt = piece;
        failing.failure = 0x80000000u;
        EXPECT_NE(XML_OutTextString(" <&> ", Writer::write, &failing), XML_OK) << piece;
    }
}

// ---------------------------------------------------------------- text callbacks and scans

struct TextSource {
    std::function<void()> doing = [] {};
    std::size_t failAt = 0;
    std::size_t calls = 0;

    static const char *text(XML_DOM_Node *node, XML_DOM_TranslateState *, void *userData) {
        TextSource &self = *static_cast<TextSource *>(userData);
        self.doing();
        return ++self.calls == self.failAt ? nullptr : node->value;
    }
    // What is written with it, or "(refused)".
    std::string written(const XML_DOM_Node *tree) {
        XML_DOM_TranslateState state{};
        state.userData = this;
        state.textCallback = text;
        char *bytes = nullptr;
        std::uint32_t length = 42;
        const std::uint32_t result = XML_DOM_TranslateStrEx(tree, 0, &state, &bytes, &length);
        const TextPtr owner(bytes);
        if (result == XML_OK) return {bytes, length};
        return bytes || length != 42 ? "refused, with an output" : "(refused)";
    }
};

TEST(CallbacksWithinTheRules, TextCallbacks) {
    Inside inside;
    const NodePtr tree = support::richDocument();
    TextSource idle, busy;
    const std::string whole = idle.written(tree.get());
    ASSERT_GT(idle.calls, 1u);
    busy.doing = [&] {
        inside();
        TextSource inner;
        EXPECT_EQ(inner.written(tree.get()), whole);
    };
    EXPECT_EQ(busy.written(tree.get()), whole);
    for (std::size_t call = 1; call <= idle.calls; ++call) {
        TextSource failing;
        failing.failAt = call;
        EXPECT_EQ(failing.written(tree.get()), "(refused)") << call;
    }
}

struct Visitor {
    std::function<void()> doing = [] {};
    std::size_t stopAt = 0;
    std::uint32_t answer = 0;
    std::vector<XML_DOM_Node *> seen;

    static std::uint32_t visit(XML_DOM_Node *node, void *userData, std::uint32_t reserved) {
        Visitor &self = *static_cast<Visitor *>(userData);
        EXPECT_EQ(reserved, 0u);
        self.doing();
        self.seen.push_back(node);
        return self.seen.size() == self.stopAt ? self.answer : 0;
    }
};

TEST(CallbacksWithinTheRules, Scans) {
    Inside inside;
    const NodePtr tree = support::richDocument();
    Visitor idle, busy;
    ASSERT_EQ(XML_DOM_ScanTree(tree.get(), Visitor::visit, &idle), XML_OK);
    busy.doing = [&] {
        inside();
        Visitor inner;
        EXPECT_EQ(XML_DOM_ScanTree(tree.get(), Visitor::visit, &inner), XML_OK);
        EXPECT_EQ(inner.seen, idle.seen);
    };
    EXPECT_EQ(XML_DOM_ScanTree(tree.get(), Visitor::visit, &busy), XML_OK);
    EXPECT_EQ(busy.seen, idle.seen);
    for (std::size_t position = 1; position <= idle.seen.size(); ++position) {
        for (const std::uint32_t answer : {1u, XML_MISSING, 0xFFFFFFFFu}) {
            Visitor stopping;
            stopping.stopAt = position;
            stopping.answer = answer;
            EXPECT_EQ(XML_DOM_ScanTree(tree.get(), Visitor::visit, &stopping), XML_REFUSED);
            EXPECT_EQ(stopping.seen.size(), position);
        }
    }
}

}  // namespace
