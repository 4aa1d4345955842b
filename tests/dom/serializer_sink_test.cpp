// Writing piece by piece to a caller's sink, which may fail at any piece.
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "compactxml.h"
#include "tests/support/faults.h"
#include "tests/support/model_serializer.h"
#include "tests/support/model_stream.h"
#include "tests/support/owners.h"
#include "tests/support/reference_iconv.h"
#include "tests/support/sample_trees.h"

namespace {

using support::convertWhole;
using support::kEncodingCount;
using support::ModelSerializer;
using support::ModelStream;
using support::NodePtr;

// What a sink is given, and at which piece it fails with what.
struct Sink {
    std::size_t failAt = 0;  // from 1; 0 never
    bool failOn = false;     // every later piece fails as well
    std::uint32_t failure = 0;
    std::vector<std::string> pieces;

    static std::uint32_t write(void *context, const char *bytes, std::uint32_t length) {
        EXPECT_NE(bytes, nullptr);
        return static_cast<Sink *>(context)->take({bytes, length});
    }
    std::uint32_t take(std::string_view piece) {
        EXPECT_FALSE(piece.empty());
        pieces.emplace_back(piece);
        const bool fails =
            failAt != 0 && (failOn ? pieces.size() >= failAt : pieces.size() == failAt);
        return fails ? failure : XML_OK;
    }
    std::string joined() const {
        std::string all;
        for (const std::string &piece : pieces) all += piece;
        return all;
    }
};

// The sum that the model arrives at with the same sink behind a model stream.
ModelSerializer::Sum modelled(const XML_DOM_Node *node, std::uint32_t flags, Sink *sink) {
    std::uint32_t encoding = XML_DOM_GetEncoding(node);
    if (encoding == XML_ENCODING_UNKNOWN) encoding = XML_ENCODING_UTF_8;
    ModelStream stream(XML_ENCODING_GB18030, encoding);
    const ModelSerializer model([&stream, sink](std::string_view piece) -> std::uint32_t {
        if (const std::uint32_t status = stream.append(piece); status != XML_OK) return status;
        if (stream.content().empty()) return XML_REFUSED;  // all of it held back
        const std::uint32_t result = sink->take(stream.content());
        stream.clean();
        return result;
    });
    return model.document(node, flags);
}

void compare(const XML_DOM_Node *node, std::uint32_t flags, const Sink &plan) {
    Sink actual = plan, expected = plan;
    const ModelSerializer::Sum sum = modelled(node, flags, &expected);
    support::FaultyHeap heap(0);
    const std::uint32_t result = XML_DOM_OutPutTranslateStr(node, flags, Sink::write, &actual);
    EXPECT_EQ(heap.blocksInUse(), 0u);
    EXPECT_PRED2(support::isResultFor, result, sum);
    EXPECT_EQ(actual.pieces, expected.pieces);
}

TEST(SerializerSink, GetsWhatTheBufferGets) {
    for (std::uint32_t encoding = 0; encoding < kEncodingCount; ++encoding) {
        SCOPED_TRACE(support::encodingName(encoding));
        const NodePtr root = support::richDocument(encoding);
        for (const std::uint32_t flags : {0u, 1u}) {
            Sink sink;
            EXPECT_EQ(XML_DOM_OutPutTranslateStr(root.get(), flags, Sink::write, &sink), XML_OK);
            char *buffer = nullptr;
            std::uint32_t length = 0;
            ASSERT_EQ(XML_DOM_TranslateStr(root.get(), flags, &buffer, &length), XML_OK);
            const support::TextPtr owner(buffer);
            EXPECT_EQ(sink.joined(), std::string(buffer, length));
        }
    }
}

TEST(SerializerSink, PiecesOfALoneElement) {
    const NodePtr root(XML_DOM_CreateElementNode("a"));
    ASSERT_EQ(XML_DOM_SetRoot(root.get()), XML_OK);
    Sink sink;
    EXPECT_EQ(XML_DOM_OutPutTranslateStr(root.get(), 0, Sink::write, &sink), XML_OK);
    EXPECT_EQ(sink.pieces, (std::vector<std::string>{"<?xml version=\"", "1.0", "\" encoding=\"",
                                                     "UTF-8", "\"?>", "<", "a", "/>"}));
}

// The byte order mark comes once, in the first piece.
TEST(SerializerSink, OneMarkInUtf16) {
    const NodePtr root(XML_DOM_CreateElementWithText("a", "t"));
    ASSERT_EQ(XML_DOM_SetRoot(root.get()), XML_OK);
    for (const std::uint32_t encoding : {XML_ENCODING_UTF_16, XML_ENCODING_UTF_32}) {
        ASSERT_EQ(XML_DOM_SetEncoding(root.get(), encoding), XML_OK);
        Sink sink;
        EXPECT_EQ(XML_DOM_OutPutTranslateStr(root.get(), 1, Sink::write, &sink), XML_OK);
        std::vector<std::string> expected = {*support::encode(encoding, U"<")};
        for (const char32_t *piece : {U"a", U">", U"t", U"</", U"a", U">"}) {
            expected.push_back(*support::encodeBare(encoding, piece));
        }
        EXPECT_EQ(sink.pieces, expected);
    }
}

TEST(SerializerSink, NothingOfLengthZeroIsWritten) {
    const NodePtr root(XML_DOM_CreateElementNode("a"));
    for (XML_DOM_Node *child :
         {XML_DOM_CreateCDataNode(""), XML_DOM_CreateTextNode(""), XML_DOM_CreateTextNode(" "),
          XML_DOM_CreateTextNode("  "), XML_DOM_CreateTextNode("<>")}) {
        ASSERT_EQ(XML_DOM_AddChildNode(root.get(), child), XML_OK);
    }
    ASSERT_NE(XML_DOM_AddAttrInner(root.get(), "x", ""), nullptr);
    ASSERT_EQ(XML_DOM_AddNodeNameSpaceInner(root.get(), "", "", 0), XML_OK);
    Sink sink;  // complains about empty pieces itself
    EXPECT_EQ(XML_DOM_OutPutTranslateStr(root.get(), 0, Sink::write, &sink), XML_OK);
    EXPECT_EQ(sink.joined(), "<a xmlns:=\"\" x=\"\"><![CDATA[]]>&#x20;&#x20;&#x20;&lt;&gt;</a>");
}

TEST(SerializerSink, FailingAtEveryPiece) {
    const NodePtr root = support::richDocument();
    Sink all;
    ASSERT_EQ(XML_DOM_OutPutTranslateStr(root.get(), 0, Sink::write, &all), XML_OK);
    ASSERT_GT(all.pieces.size(), 60u);
    for (std::size_t nth = 1; nth <= all.pieces.size() + 1; ++nth) {
        for (const bool failOn : {false, true}) {
            for (const std::uint32_t failure :
                 {1u, XML_REFUSED, 0x80000000u, 0x40000000u, 0xFFFFFFFFu}) {
                SCOPED_TRACE(testing::Message() << nth << (failOn ? " on: " : ": ") << failure);
                Sink plan;
                plan.failAt = nth;
                plan.failOn = failOn;
                plan.failure = failure;
                compare(root.get(), 0, plan);
            }
        }
    }
}

TEST(SerializerSink, FailingAtEveryPieceOfRandomTrees) {
    for (std::uint32_t seed = 0; seed < 60; ++seed) {
        const NodePtr root = support::randomTree(seed, seed % 4 != 1);
        if (root->docInfo) {
            ASSERT_EQ(XML_DOM_SetEncoding(root.get(), seed / 2 % kEncodingCount), XML_OK);
        }
        Sink all;
        modelled(root.get(), 0, &all);
        const std::size_t stride = all.pieces.size() / 40 + 1;
        for (std::size_t nth = 0; nth <= all.pieces.size(); nth += stride) {
            for (const bool failOn : {false, true}) {
                SCOPED_TRACE(testing::Message() << "tree " << seed << " piece " << nth << failOn);
                Sink plan;
                plan.failAt = nth;
                plan.failOn = failOn;
                plan.failure = 0x80000000u;
                compare(root.get(), seed % 3, plan);
            }
        }
    }
}

// Two failures of 0x80000000 add up to 2^32.
TEST(SerializerSink, TwoFailuresDoNotMakeASuccess) {
    const NodePtr root(XML_DOM_CreateElementNode("a"));
    for (const std::uint32_t failure : {0x80000000u, 0x40000000u}) {
        Sink sink;
        sink.failAt = 1;
        sink.failOn = true;
        sink.failure = failure;
        EXPECT_NE(XML_DOM_OutPutTranslateStr(root.get(), 0, Sink::write, &sink), XML_OK);
        EXPECT_EQ(sink.pieces, (std::vector<std::string>{"<", "a", "/>"}));
    }
}

// Lists end with their first item that fails, and only by it; what closes an element is offered.
TEST(SerializerSink, WhereAFailureEndsWhat) {
    const NodePtr root(XML_DOM_CreateElementNode("a"));
    ASSERT_EQ(XML_DOM_AddNodeNameSpace(root.get(), "p", "u"), XML_OK);
    ASSERT_EQ(XML_DOM_AddNodeNameSpace(root.get(), "q", "v"), XML_OK);
    ASSERT_NE(XML_DOM_AddAttr(root.get(), nullptr, "x", "1"), nullptr);
    ASSERT_NE(XML_DOM_AddAttr(root.get(), nullptr, "y", "2"), nullptr);
    ASSERT_EQ(XML_DOM_AddChildNode(root.get(), XML_DOM_CreateTextNode("s")), XML_OK);
    ASSERT_EQ(XML_DOM_AddChildNode(root.get(), XML_DOM_CreateTextNode("t")), XML_OK);
    struct Row {
        std::size_t failAt;
        const char *what, *text;
    };
    constexpr Row kRows[] = {
        {1, "<", "<a xmlns:p=\"u\" xmlns:q=\"v\" x=\"1\" y=\"2\">st</a>"},
        {2, "the name", "<a xmlns:p=\"u\" xmlns:q=\"v\" x=\"1\" y=\"2\">st</a>"},
        {3, "the first declaration", "<a xmlns:p=\"u\"st</a>"},
        {8, "the end of the first declaration", "<a xmlns:p=\"u\"st</a>"},
        {9, "the second declaration", "<a xmlns:p=\"u\" xmlns:q=\"v\"st</a>"},
        {15, "the first attribute", "<a xmlns:p=\"u\" xmlns:q=\"v\" x=\"1\"st</a>"},
        {20, "the second attribute", "<a xmlns:p=\"u\" xmlns:q=\"v\" x=\"1\" y=\"2\"st</a>"},
        {25, ">", "<a xmlns:p=\"u\" xmlns:q=\"v\" x=\"1\" y=\"2\">st</a>"},
        {26, "the first child", "<a xmlns:p=\"u\" xmlns:q=\"v\" x=\"1\" y=\"2\">s</a>"},
        {27, "the second child", "<a xmlns:p=\"u\" xmlns:q=\"v\" x=\"1\" y=\"2\">st</a>"},
        {28, "</", "<a xmlns:p=\"u\" xmlns:q=\"v\" x=\"1\" y=\"2\">st</a>"},
        {30, "the last >", "<a xmlns:p=\"u\" xmlns:q=\"v\" x=\"1\" y=\"2\">st</a>"},
    };
    for (const Row &row : kRows) {
        Sink sink;
        sink.failAt = row.failAt;
        sink.failure = 5;
        EXPECT_EQ(XML_DOM_OutPutTranslateStr(root.get(), 0, Sink::write, &sink), 5u) << row.what;
        EXPECT_EQ(sink.joined(), row.text) << row.what;
    }
}

TEST(SerializerSink, AFailedChildEndsItsSiblingsAndTheirParentsSiblings) {
    // r(a(b(t1,t2),c),d)
    const NodePtr root(XML_DOM_CreateElementNode("r"));
    XML_DOM_Node *a = XML_DOM_CreateElementNode("a");
    XML_DOM_Node *b = XML_DOM_CreateElementWithText("b", "t1");
    ASSERT_EQ(XML_DOM_AddChildNode(root.get(), a), XML_OK);
    ASSERT_EQ(XML_DOM_AddChildNode(a, b), XML_OK);
    ASSERT_EQ(XML_DOM_AddChildNode(b, XML_DOM_CreateTextNode("t2")), XML_OK);
    ASSERT_EQ(XML_DOM_AddChildNode(a, XML_DOM_CreateElementNode("c")), XML_OK);
    ASSERT_EQ(XML_DOM_AddChildNode(root.get(), XML_DOM_CreateElementNode("d")), XML_OK);
    struct Row {
        const char *failing, *text;
    };
    constexpr Row kRows[] = {
        {"t1", "<r><a><b>t1</b></a></r>"},          {"t2", "<r><a><b>t1t2</b></a></r>"},
        {"b", "<r><a><b>t1t2</b></a></r>"},         {"c", "<r><a><b>t1t2</b><c/></a></r>"},
        {"a", "<r><a><b>t1t2</b><c/></a></r>"},     {"d", "<r><a><b>t1t2</b><c/></a><d/></r>"},
        {"r", "<r><a><b>t1t2</b><c/></a><d/></r>"},
    };
    for (const Row &row : kRows) {
        struct Named {
            std::string failing, text;
            static std::uint32_t write(void *context, const char *bytes, std::uint32_t length) {
                auto *self = static_cast<Named *>(context);
                self->text.append(bytes, length);
                return std::string_view(bytes, length) == self->failing ? 3 : 0;
            }
        } sink{row.failing, ""};
        EXPECT_NE(XML_DOM_OutPutTranslateStr(root.get(), 0, Named::write, &sink), XML_OK);
        EXPECT_EQ(sink.text, row.text) << row.failing;
    }
}

// A piece of which nothing comes out, because all of it is held back, is a failure.
TEST(SerializerSink, ACutCharacterAlone) {
    const NodePtr root(XML_DOM_CreateElementWithText("a", "\xD6"));
    Sink sink;
    EXPECT_NE(XML_DOM_OutPutTranslateStr(root.get(), 0, Sink::write, &sink), XML_OK);
    compare(root.get(), 0, {});
    const NodePtr text(XML_DOM_CreateTextNode("\xD6"));
    EXPECT_EQ(XML_DOM_OutPutTranslateStr(text.get(), 0, Sink::write, &sink), XML_REFUSED);
}

TEST(SerializerSink, Refusals) {
    const NodePtr root(XML_DOM_CreateElementNode("a"));
    Sink sink;
    EXPECT_EQ(XML_DOM_OutPutTranslateStr(nullptr, 0, Sink::write, &sink), XML_REFUSED);
    EXPECT_EQ(XML_DOM_OutPutTranslateStr(root.get(), 0, nullptr, &sink), XML_REFUSED);
    EXPECT_EQ(XML_DOM_OutPutTranslateStr(nullptr, 0, nullptr, nullptr), XML_REFUSED);
    EXPECT_TRUE(sink.pieces.empty());
}

}  // namespace
