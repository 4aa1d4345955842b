// The text that trees are written as. Encodings and sinks have files of their own.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "compactxml.h"
#include "tests/support/model_serializer.h"
#include "tests/support/owners.h"
#include "tests/support/sample_trees.h"
#include "tests/support/tree_dump.h"

namespace {

using support::ModelSerializer;
using support::NodePtr;
using support::TextPtr;

NodePtr element(const char *name) {
    return NodePtr(XML_DOM_CreateElementNode(name));
}

XML_DOM_Node *add(XML_DOM_Node *parent, XML_DOM_Node *child) {
    EXPECT_EQ(XML_DOM_AddChildNode(parent, child), XML_OK);
    return child;
}

// Takes a buffer that the library filled; checks the length and the NUL behind it.
std::string take(char *buffer, std::uint32_t length) {
    const TextPtr owner(buffer);
    EXPECT_NE(buffer, nullptr);
    if (!buffer) return "(null)";
    EXPECT_EQ(buffer[length], '\0');
    return std::string(buffer, length);
}

std::string translate(const XML_DOM_Node *node, std::uint32_t flags = 0) {
    char *buffer = nullptr;
    std::uint32_t length = 0xDEAD;
    EXPECT_EQ(XML_DOM_TranslateStr(node, flags, &buffer, &length), XML_OK);
    return take(buffer, length);
}

std::string begin(const XML_DOM_Node *node, std::uint32_t flags = 0) {
    std::uint32_t length = 0xDEAD;
    char *buffer = XML_DOM_NodeBegin2Str(node, flags, &length);
    return take(buffer, length);
}

std::string end(const XML_DOM_Node *node) {
    std::uint32_t length = 0xDEAD;
    char *buffer = XML_DOM_NodeEnd2Str(node, &length);
    return take(buffer, length);
}

std::string children(const XML_DOM_Node *node) {
    char *buffer = nullptr;
    std::uint32_t length = 0xDEAD;
    EXPECT_EQ(XML_DOM_TranslateStr4AllChild(node, &buffer, &length), XML_OK);
    return take(buffer, length);
}

// What the model writes, in one string.
std::string modelled(const std::function<void(const ModelSerializer &)> &body) {
    std::string all;
    body(ModelSerializer([&all](std::string_view piece) {
        all += piece;
        return XML_OK;
    }));
    return all;
}

// ---- escaping ------------------------------------------------------------------------------

// A writer that records its pieces and fails as told.
struct Recorder {
    std::vector<std::string> pieces;
    std::size_t failAt = 0;  // the call, from 1, that fails; with failOn every later one too
    bool failOn = false;
    std::uint32_t failure = 0;

    static std::uint32_t write(void *context, const char *bytes, std::uint32_t length) {
        return static_cast<Recorder *>(context)->take({bytes, length});
    }
    std::uint32_t take(std::string_view piece) {
        EXPECT_FALSE(piece.empty());
        pieces.emplace_back(piece);
        const bool fails =
            failAt != 0 && (failOn ? pieces.size() >= failAt : pieces.size() == failAt);
        return fails ? failure : XML_OK;
    }
};

using Pieces = std::vector<std::string>;

struct EscapeRow {
    const char *text;
    Pieces pieces;
};

const EscapeRow kEscapes[] = {
    {"", {}},
    {"abc", {"abc"}},
    {" ", {"&#x20;"}},
    {"\t", {"&#x09;"}},
    {"\n", {"&#x0a;"}},
    {"\r", {"&#x0d;"}},
    {"  ", {"&#x20;", "&#x20;"}},
    {"   ", {"&#x20;", " ", "&#x20;"}},
    {"\r\n", {"&#x0d;", "&#x0a;"}},
    {" a<b ", {"&#x20;", "a", "&lt;", "b", "&#x20;"}},
    {"  a  ", {"&#x20;", " a ", "&#x20;"}},
    {"a ", {"a", "&#x20;"}},
    {" a", {"&#x20;", "a"}},
    {"a\n", {"a", "&#x0a;"}},
    {"a\nb\tc d", {"a\nb\tc d"}},
    {"<", {"&lt;"}},
    {">", {"&gt;"}},
    {"&", {"&amp;"}},
    {"<>&", {"&lt;", "&gt;", "&amp;"}},
    {"&lt;", {"&amp;", "lt;"}},
    {"< ", {"&lt;", "&#x20;"}},
    {" <", {"&#x20;", "&lt;"}},
    {"<  ", {"&lt;", " ", "&#x20;"}},
    {" < ", {"&#x20;", "&lt;", "&#x20;"}},
    {"a < b", {"a ", "&lt;", " b"}},
    {"]]>", {"]]", "&gt;"}},
    {"\"'", {"\"'"}},  // quotes are never escaped
    {"\v\f\x01\x7F", {"\v\f\x01\x7F"}},
    {"\xD6\xD0\xFF\xC2\x85", {"\xD6\xD0\xFF\xC2\x85"}},
    {"\xA0", {"\xA0"}},
};

TEST(Escaping, Pieces) {
    for (const EscapeRow &row : kEscapes) {
        Recorder recorder;
        EXPECT_EQ(XML_OutTextString(row.text, Recorder::write, &recorder), XML_OK);
        EXPECT_EQ(recorder.pieces, row.pieces) << testing::PrintToString(row.text);
    }
}

TEST(Escaping, Refusals) {
    Recorder recorder;
    EXPECT_EQ(XML_OutTextString(nullptr, Recorder::write, &recorder), XML_REFUSED);
    EXPECT_EQ(XML_OutTextString("a", nullptr, &recorder), XML_REFUSED);
    EXPECT_EQ(XML_OutTextString(nullptr, nullptr, nullptr), XML_REFUSED);
    EXPECT_TRUE(recorder.pieces.empty());
}

TEST(Escaping, TheContextIsTheCallersBusiness) {
    const XML_WriteFn expectNull = [](void *context, const char *, std::uint32_t) -> std::uint32_t {
        return context == nullptr ? 0 : 1;
    };
    EXPECT_EQ(XML_OutTextString(" a<b ", expectNull, nullptr), XML_OK);
}

// After a failure the escape that follows is still written, and then no more; without one the rest
// is still written.
TEST(Escaping, WhatFollowsAFailure) {
    struct Row {
        const char *text;
        std::size_t failAt;
        Pieces pieces;
    };
    const Row kRows[] = {
        {"a<b<c", 1, {"a", "&lt;"}},
        {"a<b<c", 2, {"a", "&lt;"}},
        {"a<b<c", 3, {"a", "&lt;", "b", "&lt;"}},
        {"a<b<c", 5, {"a", "&lt;", "b", "&lt;", "c"}},
        {" abc ", 1, {"&#x20;", "abc", "&#x20;"}},
        {" abc ", 2, {"&#x20;", "abc", "&#x20;"}},
        {" a<b ", 1, {"&#x20;", "a", "&lt;"}},
        {" <b", 1, {"&#x20;", "&lt;"}},
    };
    for (const Row &row : kRows) {
        for (const std::uint32_t failure : {1u, 0x80000000u, 0xFFFFFFFFu}) {
            Recorder recorder;
            recorder.failAt = row.failAt;
            recorder.failure = failure;
            EXPECT_EQ(XML_OutTextString(row.text, Recorder::write, &recorder), failure);
            EXPECT_EQ(recorder.pieces, row.pieces) << row.text << " failing at " << row.failAt;
        }
    }
}

TEST(Escaping, ResultsAddUpAndNeverWrapToSuccess) {
    for (const EscapeRow &row : kEscapes) {
        for (std::size_t nth = 1; nth <= row.pieces.size(); ++nth) {
            for (const bool failOn : {false, true}) {
                for (const std::uint32_t failure : {1u, XML_REFUSED, 0x80000000u, 0xFFFFFFFFu}) {
                    Recorder actual, expected;
                    actual.failAt = expected.failAt = nth;
                    actual.failOn = expected.failOn = failOn;
                    actual.failure = expected.failure = failure;
                    const ModelSerializer model(
                        [&expected](std::string_view piece) { return expected.take(piece); });
                    const std::uint32_t result =
                        XML_OutTextString(row.text, Recorder::write, &actual);
                    EXPECT_PRED2(support::isResultFor, result, model.text(row.text));
                    EXPECT_EQ(actual.pieces, expected.pieces);
                }
            }
        }
    }
}

// ---- nodes ---------------------------------------------------------------------------------

TEST(Serializer, ALoneElement) {
    const NodePtr node = element("a");
    EXPECT_EQ(translate(node.get()), "<a/>");
    EXPECT_EQ(begin(node.get()), "<a>");
    EXPECT_EQ(end(node.get()), "</a>");
    EXPECT_EQ(children(node.get()), "");
}

TEST(Serializer, MixedContent) {
    const NodePtr node = element("a");
    add(node.get(), element("b").release());
    add(node.get(), XML_DOM_CreateTextNode("x&y"));
    EXPECT_EQ(translate(node.get()), "<a><b/>x&amp;y</a>");
    EXPECT_EQ(begin(node.get()), "<a>");
    EXPECT_EQ(end(node.get()), "</a>");
    EXPECT_EQ(children(node.get()), "<b/>x&amp;y");
}

TEST(Serializer, TextAndCDataNodes) {
    struct Row {
        const char *value, *text, *cdata;
    };
    constexpr Row kRows[] = {
        {" a<b ", "&#x20;a&lt;b&#x20;", "<![CDATA[ a<b ]]>"},
        {"\t", "&#x09;", "<![CDATA[\t]]>"},
        {"  ", "&#x20;&#x20;", "<![CDATA[  ]]>"},
        {"", "", "<![CDATA[]]>"},
        {"]]>", "]]&gt;", "<![CDATA[]]>]]>"},  // Intended: the section then ends early
    };
    for (const Row &row : kRows) {
        const NodePtr text(XML_DOM_CreateTextNode(row.value));
        const NodePtr cdata(XML_DOM_CreateCDataNode(row.value));
        EXPECT_EQ(translate(text.get()), row.text);
        EXPECT_EQ(begin(text.get()), row.text);
        EXPECT_EQ(end(text.get()), "");
        EXPECT_EQ(children(text.get()), "");
        EXPECT_EQ(translate(cdata.get()), row.cdata);
        EXPECT_EQ(begin(cdata.get()), row.cdata);
        EXPECT_EQ(end(cdata.get()), "");
    }
}

TEST(Serializer, NodesOfOtherTypesAreNotWritten) {
    const NodePtr parent = element("a");
    add(parent.get(), XML_DOM_CreateTextualNodeInner(77, "lost", 4));
    add(parent.get(), XML_DOM_CreateTextNode("kept"));
    EXPECT_EQ(translate(parent.get()), "<a>kept</a>");
    EXPECT_EQ(translate(parent->firstChild), "");
    EXPECT_EQ(begin(parent->firstChild), "");
    EXPECT_EQ(end(parent->firstChild), "");
}

TEST(Serializer, ATextTypedAsAnElementHasNoName) {
    const NodePtr odd(XML_DOM_CreateTextualNodeInner(XML_DOM_NODE_ELEMENT, "abc", 3));
    EXPECT_EQ(translate(odd.get()), "</>");
    EXPECT_EQ(begin(odd.get()) + end(odd.get()), "<></>");
}

TEST(Serializer, NamespacesBeforeAttributes) {
    const NodePtr node = element("a");
    EXPECT_NE(XML_DOM_AddAttr(node.get(), nullptr, "first", "1"), nullptr);
    EXPECT_EQ(XML_DOM_AddNodeNameSpace(node.get(), "p", "u&v"), XML_OK);
    EXPECT_EQ(XML_DOM_AddNodeNameSpace(node.get(), nullptr, ""), XML_OK);
    EXPECT_NE(XML_DOM_AddAttr(node.get(), "p", "b", " <\"'> "), nullptr);
    EXPECT_NE(XML_DOM_AddAttr(node.get(), "xml", "lang", ""), nullptr);
    EXPECT_EQ(XML_DOM_SetNodeNameSpace(node.get(), "p"), XML_OK);
    const std::string inside =
        "p:a xmlns:p=\"u&amp;v\" xmlns=\"\" first=\"1\" p:b=\"&#x20;&lt;\"'&gt;&#x20;\" "
        "xml:lang=\"\"";
    EXPECT_EQ(translate(node.get()), "<" + inside + "/>");
    EXPECT_EQ(begin(node.get()), "<" + inside + ">");
    EXPECT_EQ(end(node.get()), "</p:a>");
    add(node.get(), XML_DOM_CreateTextNode("t"));
    EXPECT_EQ(translate(node.get()), "<" + inside + ">t</p:a>");
}

// Intended: a prefix stored as "" keeps its colon.
TEST(Serializer, AnEmptyPrefixIsNotANullPrefix) {
    const NodePtr node = element("a");
    EXPECT_EQ(XML_DOM_AddNodeNameSpaceInner(node.get(), "", "u", 0), XML_OK);
    EXPECT_EQ(translate(node.get()), "<a xmlns:=\"u\"/>");
}

// Intended: a quote in a value is written as it is, though the result is then not well-formed.
TEST(Serializer, QuotesInValuesAreNotEscaped) {
    const NodePtr node = element("a");
    EXPECT_NE(XML_DOM_AddAttr(node.get(), nullptr, "b", "say \"hi\""), nullptr);
    EXPECT_EQ(translate(node.get()), "<a b=\"say \"hi\"\"/>");
}

TEST(Serializer, TheDeclarationOfARoot) {
    const NodePtr root = element("r");
    XML_DOM_Node *child = add(root.get(), element("c").release());
    EXPECT_EQ(translate(root.get()), "<r><c/></r>");  // no document yet
    EXPECT_EQ(XML_DOM_SetRoot(root.get()), XML_OK);
    const std::string declaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>";
    EXPECT_EQ(translate(root.get()), declaration + "<r><c/></r>");
    EXPECT_EQ(begin(root.get()), declaration + "<r>");
    EXPECT_EQ(end(root.get()), "</r>");
    EXPECT_EQ(children(root.get()), "<c/>");
    EXPECT_EQ(translate(child), "<c/>");
    EXPECT_EQ(begin(child), "<c>");
    for (const std::uint32_t flags : {1u, 3u, 0xFFFFFFFFu}) {
        EXPECT_EQ(translate(root.get(), flags), "<r><c/></r>") << flags;
        EXPECT_EQ(begin(root.get(), flags), "<r>") << flags;
    }
    for (const std::uint32_t flags : {2u, 4u, 0xFFFFFFFEu}) {  // only bit 0 says anything
        EXPECT_EQ(translate(root.get(), flags), declaration + "<r><c/></r>") << flags;
        EXPECT_EQ(begin(root.get(), flags), declaration + "<r>") << flags;
    }
}

TEST(Serializer, ANestedRootGetsNoDeclarationWithinItsParent) {
    const NodePtr parent = element("p");
    XML_DOM_Node *last = add(parent.get(), element("last").release());
    XML_DOM_Node *inner = element("inner").release();
    EXPECT_EQ(XML_DOM_SetRoot(inner), XML_OK);
    EXPECT_EQ(XML_DOM_InsertBeforeNode(last, inner), XML_OK);
    EXPECT_EQ(translate(parent.get()), "<p><inner/><last/></p>");
    EXPECT_EQ(translate(inner), "<?xml version=\"1.0\" encoding=\"UTF-8\"?><inner/>");
}

TEST(Serializer, ASubtreeEndsWithItsTopNode) {
    const NodePtr root = element("r");
    XML_DOM_Node *a = add(root.get(), element("a").release());
    add(a, XML_DOM_CreateTextNode("x"));
    add(a, element("b").release());
    add(root.get(), element("c").release());
    EXPECT_EQ(translate(a), "<a>x<b/></a>");
    EXPECT_EQ(translate(a->firstChild), "x");
    EXPECT_EQ(translate(a->lastChild), "<b/>");
    EXPECT_EQ(children(a), "x<b/>");
    EXPECT_EQ(children(root.get()), "<a>x<b/></a><c/>");
}

TEST(Serializer, TheLengthMayBeLeftOut) {
    const NodePtr node = support::richDocument();
    char *buffer = nullptr;
    EXPECT_EQ(XML_DOM_TranslateStr(node.get(), 0, &buffer, nullptr), XML_OK);
    EXPECT_EQ(TextPtr(buffer).get(), std::string(translate(node.get())));
    EXPECT_EQ(XML_DOM_TranslateStr4AllChild(node.get(), &buffer, nullptr), XML_OK);
    EXPECT_EQ(TextPtr(buffer).get(), std::string(children(node.get())));
    EXPECT_EQ(TextPtr(XML_DOM_NodeBegin2Str(node.get(), 0, nullptr)).get(), begin(node.get()));
    EXPECT_EQ(TextPtr(XML_DOM_NodeEnd2Str(node.get(), nullptr)).get(), end(node.get()));
}

TEST(Serializer, WritingChangesNothing) {
    const NodePtr node = support::richDocument();
    const std::string before = support::dumpTree(node.get());
    translate(node.get());
    children(node.get());
    begin(node.get());
    end(node.get());
    EXPECT_EQ(support::dumpTree(node.get()), before);
}

TEST(Serializer, RandomTreesAsTheModelWritesThem) {
    for (std::uint32_t seed = 0; seed < 300; ++seed) {
        SCOPED_TRACE(seed);
        const NodePtr root = support::randomTree(seed, true);
        EXPECT_EQ(XML_DOM_SetEncoding(root.get(), XML_ENCODING_GB18030),
                  seed % 2 == 0 ? XML_OK : XML_REFUSED);
        if (seed % 2 != 0) {
            EXPECT_EQ(XML_DOM_SetRoot(root.get()), XML_OK);
            EXPECT_EQ(XML_DOM_SetEncoding(root.get(), XML_ENCODING_GB18030), XML_OK);
        }
        const XML_DOM_Node *node = root.get();
        for (const std::uint32_t flags : {0u, 1u}) {
            EXPECT_EQ(translate(node, flags),
                      modelled([&](const ModelSerializer &model) { model.document(node, flags); }));
        }
        for (; node; node = node->firstChild) {
            EXPECT_EQ(children(node),
                      modelled([&](const ModelSerializer &model) { model.children(node); }));
            EXPECT_EQ(begin(node, 1),
                      modelled([&](const ModelSerializer &model) { model.begin(node, false); }));
            EXPECT_EQ(end(node),
                      modelled([&](const ModelSerializer &model) { model.end(node, false); }));
        }
    }
}

}  // namespace
