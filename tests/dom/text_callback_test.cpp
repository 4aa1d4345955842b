// Writing with a callback that supplies the text of text nodes, and what it sees of its
// surroundings.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "compactxml.h"
#include "tests/support/faults.h"
#include "tests/support/owners.h"

namespace {

using support::NodePtr;
using support::TextPtr;

XML_DOM_Node *add(XML_DOM_Node *parent, XML_DOM_Node *child) {
    EXPECT_EQ(XML_DOM_AddChildNode(parent, child), XML_OK);
    return child;
}

// Everything that the callback was shown, and what it is to answer.
struct Script {
    std::vector<std::string> paths;  // "a/b" for a text in b in a
    std::vector<std::string> values;
    std::vector<std::uint32_t> depths;
    const char *answer = nullptr;  // null: the node's own value
    bool refuse = false;

    static const char *callback(XML_DOM_Node *text, XML_DOM_TranslateState *state, void *userData) {
        auto *script = static_cast<Script *>(userData);
        EXPECT_EQ(state->userData, userData);
        EXPECT_EQ(text->type, XML_DOM_NODE_TEXT);
        std::string path;
        for (std::uint32_t i = 0; i < std::min(state->depth, 32u); ++i) {
            path += (i ? "/" : "") + std::string(state->names[i]);
        }
        script->paths.push_back(path);
        script->values.push_back(XML_DOM_GetNodeValue(text));
        script->depths.push_back(state->depth);
        if (script->refuse) return nullptr;
        return script->answer ? script->answer : XML_DOM_GetNodeValue(text);
    }
};

struct Outcome {
    std::uint32_t result;
    std::string text;
};

Outcome translate(const XML_DOM_Node *node, XML_DOM_TranslateState *state) {
    char *const untouched = reinterpret_cast<char *>(&state);
    char *buffer = untouched;
    std::uint32_t length = 0xDEAD;
    const std::uint32_t result = XML_DOM_TranslateStrEx(node, 1, state, &buffer, &length);
    if (result != XML_OK) {
        EXPECT_EQ(buffer, untouched);
        EXPECT_EQ(length, 0xDEADu);
        return {result, ""};
    }
    const TextPtr owner(buffer);
    return {result, std::string(buffer, length)};
}

// <a><b>one<c/>two</b><![CDATA[x]]>three</a>, the names qualified by a prefix.
NodePtr sample() {
    NodePtr a(XML_DOM_CreateElementNode("a"));
    EXPECT_EQ(XML_DOM_AddNodeNameSpace(a.get(), "p", "u"), XML_OK);
    XML_DOM_Node *b = add(a.get(), XML_DOM_CreateElementNode("b"));
    EXPECT_EQ(XML_DOM_SetNodeNameSpace(b, "p"), XML_OK);
    add(b, XML_DOM_CreateTextNode("one"));
    add(b, XML_DOM_CreateElementNode("c"));
    add(b, XML_DOM_CreateTextNode("two"));
    add(a.get(), XML_DOM_CreateCDataNode("x"));
    add(a.get(), XML_DOM_CreateTextNode("three"));
    return a;
}

TEST(TextCallback, WithoutStateOrCallbackTheValuesAreWritten) {
    const NodePtr root = sample();
    const std::string plain = "<a xmlns:p=\"u\"><p:b>one<c/>two</p:b><![CDATA[x]]>three</a>";
    EXPECT_EQ(translate(root.get(), nullptr).text, plain);
    XML_DOM_TranslateState state{};
    EXPECT_EQ(translate(root.get(), &state).text, plain);
    EXPECT_EQ(state.depth, 0u);
}

TEST(TextCallback, SeesEveryTextWithItsPath) {
    const NodePtr root = sample();
    Script script;
    XML_DOM_TranslateState state{};
    state.userData = &script;
    state.textCallback = Script::callback;
    EXPECT_EQ(translate(root.get(), &state).text,
              "<a xmlns:p=\"u\"><p:b>one<c/>two</p:b><![CDATA[x]]>three</a>");
    EXPECT_EQ(script.values, (std::vector<std::string>{"one", "two", "three"}));
    EXPECT_EQ(script.paths, (std::vector<std::string>{"a/b", "a/b", "a"}));
    EXPECT_EQ(state.depth, 0u);

    // The path begins where the writing does.
    script = {};
    EXPECT_EQ(translate(root->firstChild, &state).text, "<p:b>one<c/>two</p:b>");
    EXPECT_EQ(script.paths, (std::vector<std::string>{"b", "b"}));
    script = {};
    EXPECT_EQ(translate(root->lastChild, &state).text, "three");
    EXPECT_EQ(script.paths, (std::vector<std::string>{""}));
    EXPECT_EQ(script.depths, (std::vector<std::uint32_t>{0}));
    EXPECT_EQ(state.depth, 0u);
}

TEST(TextCallback, ItsAnswerIsEscapedAndConverted) {
    const NodePtr root(XML_DOM_CreateElementWithText("a", "old"));
    struct Row {
        const char *answer, *text;
    };
    constexpr Row kRows[] = {
        {"new", "<a>new</a>"},
        {"", "<a></a>"},
        {" <&> ", "<a>&#x20;&lt;&amp;&gt;&#x20;</a>"},
        {"\xD6\xD0", "<a>\xE4\xB8\xAD</a>"},
    };
    for (const Row &row : kRows) {
        Script script;
        script.answer = row.answer;
        XML_DOM_TranslateState state{};
        state.userData = &script;
        state.textCallback = Script::callback;
        EXPECT_EQ(translate(root.get(), &state).text, row.text);
    }
    EXPECT_STREQ(XML_DOM_GetFirstTextChildValue(root.get()), "old");
}

TEST(TextCallback, NullFailsTheCall) {
    const NodePtr root = sample();
    support::FaultyHeap heap(0);
    Script script;
    script.refuse = true;
    XML_DOM_TranslateState state{};
    state.userData = &script;
    state.textCallback = Script::callback;
    EXPECT_NE(translate(root.get(), &state).result, XML_OK);
    EXPECT_EQ(script.values, (std::vector<std::string>{"one"}));  // no further child after it
    EXPECT_EQ(heap.blocksInUse(), 0u);
    const NodePtr text(XML_DOM_CreateTextNode("t"));
    EXPECT_EQ(translate(text.get(), &state).result, XML_REFUSED);
}

// What is in an element is written even when its start tag fails; it knows where it is all the same.
TEST(TextCallback, SeesItsPathBelowAStartTagThatFails) {
    const NodePtr root = sample();
    ASSERT_TRUE(XML_DOM_AddAttrInner(root->firstChild, "x", "\xFF"));
    Script script;
    XML_DOM_TranslateState state{};
    state.userData = &script;
    state.textCallback = Script::callback;
    EXPECT_NE(translate(root.get(), &state).result, XML_OK);
    EXPECT_EQ(script.paths, (std::vector<std::string>{"a/b", "a/b"}));
    EXPECT_EQ(state.depth, 0u);
}

// A text that does not convert is a child that fails: its siblings are not asked for theirs.
TEST(TextCallback, IsNotAskedAgainBehindAFailure) {
    const NodePtr root = sample();
    Script script;
    script.answer = "\xFF";
    XML_DOM_TranslateState state{};
    state.userData = &script;
    state.textCallback = Script::callback;
    EXPECT_NE(translate(root.get(), &state).result, XML_OK);
    EXPECT_EQ(script.values, (std::vector<std::string>{"one"}));
}

// The names of 32 levels fit; below them only the depth goes on.
TEST(TextCallback, DeepNesting) {
    for (const std::uint32_t levels : {1u, 31u, 32u, 33u, 64u, 1000u}) {
        SCOPED_TRACE(levels);
        const NodePtr root(XML_DOM_CreateElementNode("n1"));
        std::string expectedPath = "n1";
        std::string before = "<n1>";
        std::string after = "</n1>";
        XML_DOM_Node *node = root.get();
        for (std::uint32_t level = 2; level <= levels; ++level) {
            const std::string name = "n" + std::to_string(level);
            node = add(node, XML_DOM_CreateElementNode(name.c_str()));
            if (level <= 32) expectedPath += "/" + name;
            before += "<" + name + ">";
            after = "</" + name + ">" + after;
        }
        add(node, XML_DOM_CreateTextNode("deep"));
        add(node, XML_DOM_CreateElementNode("empty"));
        add(node, XML_DOM_CreateTextNode("again"));
        add(root.get(), XML_DOM_CreateTextNode("top"));
        after.insert(after.size() - 5, "top");

        // Bytes behind the record tell whether a name went past the 32.
        struct {
            XML_DOM_TranslateState state;
            unsigned char guard[64];
        } guarded{};
        std::fill(std::begin(guarded.guard), std::end(guarded.guard),
                  static_cast<unsigned char>(7));
        Script script;
        guarded.state.userData = &script;
        guarded.state.textCallback = Script::callback;
        const Outcome outcome = translate(root.get(), &guarded.state);
        if (levels == 1) {
            EXPECT_EQ(outcome.text, "<n1>deep<empty/>againtop</n1>");
        } else {
            EXPECT_EQ(outcome.text, before + "deep<empty/>again" + after);
        }
        EXPECT_EQ(script.depths, (std::vector<std::uint32_t>{levels, levels, 1}));
        EXPECT_EQ(script.paths, (std::vector<std::string>{expectedPath, expectedPath, "n1"}));
        EXPECT_EQ(guarded.state.depth, 0u);
        EXPECT_EQ(guarded.state.userData, &script);
        for (const unsigned char byte : guarded.guard) EXPECT_EQ(byte, 7);
    }
}

}  // namespace
