// A million nested elements, and a million siblings, built by hand, written and deleted on a thread
// with little stack. A walk that recursed would overflow it; one that took time in the square of
// the number of nodes would not end within the time that a test has.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "compactxml.h"
#include "tests/support/faults.h"
#include "tests/support/owners.h"
#include "tests/support/small_stack.h"

namespace {

using support::runOnSmallStack;
using support::smallStackBytes;

// Sanitizers are slow and make up for it: their frames would fill the stack at a far lower depth.
constexpr std::uint32_t kMany = support::kSanitized ? 100 * 1000 : 1000 * 1000;

struct Chain {
    XML_DOM_Node *top = nullptr;
    XML_DOM_Node *bottom = nullptr;
};

// count elements named e, each the only child of the one before; the innermost holds a text.
Chain chain(std::uint32_t count) {
    Chain made;
    made.top = made.bottom = XML_DOM_CreateElementNodeInner("e");
    for (std::uint32_t i = 1; i < count; ++i) {
        XML_DOM_Node *child = XML_DOM_CreateElementNodeInner("e");
        if (XML_DOM_AddChildNode(made.bottom, child) != XML_OK) return made;
        made.bottom = child;
    }
    XML_DOM_AddChildNode(made.bottom, XML_DOM_CreateTextNode("deep"));
    return made;
}

std::string chainText(std::uint32_t count) {
    std::string text;
    text.reserve(count * std::size_t{7} + 4);
    for (std::uint32_t i = 0; i < count; ++i) text += "<e>";
    text += "deep";
    for (std::uint32_t i = 0; i < count; ++i) text += "</e>";
    return text;
}

bool isText(const char *buffer, std::uint32_t length, const std::string &expected) {
    return buffer && length == expected.size() &&
           std::memcmp(buffer, expected.data(), expected.size() + 1) == 0;
}

// Compares what arrives with what is expected, without keeping it.
struct Compare {
    const std::string *expected;
    std::size_t at = 0;

    static std::uint32_t write(void *context, const char *bytes, std::uint32_t length) {
        auto *self = static_cast<Compare *>(context);
        const bool same = self->expected->compare(self->at, length, bytes, length) == 0;
        self->at += length;
        return same ? 0 : 1;
    }
};

const char *deepestDepth(XML_DOM_Node *text, XML_DOM_TranslateState *state, void *userData) {
    *static_cast<std::uint32_t *>(userData) = state->depth;
    return text->value;
}

TEST(Depth, AMillionNestedElementsBuiltWrittenAndDeleted) {
    const std::string expected = chainText(kMany);
    bool built = false, buffered = false, begun = false, inner = false, sunk = false;
    std::uint32_t depth = 0;
    std::size_t blocks = 1;
    ASSERT_TRUE(runOnSmallStack([&] {
        support::FaultyHeap heap(0);
        const Chain nest = chain(kMany);
        built = nest.bottom && XML_DOM_SetRoot(nest.top) == XML_OK &&
                XML_DOM_GetRoot(nest.bottom->firstChild) == nest.top &&
                XML_DOM_SetEncoding(nest.bottom, XML_ENCODING_UTF_8) == XML_OK;

        char *buffer = nullptr;
        std::uint32_t length = 0;
        buffered = XML_DOM_TranslateStr(nest.top, 1, &buffer, &length) == XML_OK &&
                   isText(buffer, length, expected);
        std::free(buffer);

        XML_DOM_TranslateState state{};
        state.userData = &depth;
        state.textCallback = deepestDepth;
        buffer = nullptr;
        begun = XML_DOM_TranslateStrEx(nest.top, 1, &state, &buffer, &length) == XML_OK &&
                isText(buffer, length, expected) && state.depth == 0;
        std::free(buffer);

        buffer = nullptr;
        inner = XML_DOM_TranslateStr4AllChild(nest.top, &buffer, &length) == XML_OK &&
                length == expected.size() - 7 &&
                std::memcmp(buffer, expected.data() + 3, length) == 0;
        std::free(buffer);

        Compare compare{&expected};
        sunk = XML_DOM_OutPutTranslateStr(nest.top, 1, Compare::write, &compare) == XML_OK &&
               compare.at == expected.size();

        XML_DOM_DelNode(nest.top);
        blocks = heap.blocksInUse();
    }));
    EXPECT_TRUE(built);
    EXPECT_TRUE(buffered);
    EXPECT_TRUE(begun);
    EXPECT_TRUE(inner);
    EXPECT_TRUE(sunk);
    EXPECT_EQ(depth, kMany);
    EXPECT_EQ(blocks, 0u);
}

TEST(Depth, NamespacesAndAttributesFromTheFarEnd) {
    bool resolved = false, refused = false;
    ASSERT_TRUE(runOnSmallStack([&] {
        const Chain nest = chain(kMany);
        resolved = XML_DOM_AddNodeNameSpace(nest.top, "p", "u") == XML_OK &&
                   XML_DOM_SetNodeNameSpace(nest.bottom, "p") == XML_OK &&
                   XML_DOM_AddAttr(nest.bottom, "p", "a", "1") != nullptr &&
                   XML_DOM_GetNodeNsAttribute(nest.bottom, "u", "a") != nullptr;
        refused = XML_DOM_AddChildNode(nest.bottom, nest.top) == XML_REFUSED &&
                  XML_DOM_AddAttr(nest.bottom, "q", "a", "1") == nullptr;
        XML_DOM_DelNode(nest.top);
    }));
    EXPECT_TRUE(resolved);
    EXPECT_TRUE(refused);
}

TEST(Depth, PartsOfADeepTree) {
    std::size_t left = 1;
    bool halves = false;
    ASSERT_TRUE(runOnSmallStack([&] {
        support::FaultyHeap heap(0);
        const Chain upper = chain(kMany / 2);
        const Chain lower = chain(kMany / 2);
        halves = XML_DOM_AddChildNode(upper.bottom, lower.top) == XML_OK;
        XML_DOM_Clip(lower.top);
        halves = halves && upper.bottom->lastChild == upper.bottom->firstChild;
        XML_DOM_DelNode(lower.top);
        XML_DOM_DelNode(upper.top->firstChild);  // all but the top
        halves = halves && upper.top->firstChild == nullptr;
        XML_DOM_DelNode(upper.top);
        left = heap.blocksInUse();
    }));
    EXPECT_TRUE(halves);
    EXPECT_EQ(left, 0u);
}

TEST(Depth, AMillionNestedElementsCopiedScannedAndFound) {
    bool copied = false, within = false, scanned = false, undone = false, adopted = false;
    std::uint32_t visits = 0, length = 0, shortLength = 0;
    char path[64] = "", deepPath[4096] = "";
    std::size_t blocks = 1;
    ASSERT_TRUE(runOnSmallStack([&] {
        support::FaultyHeap heap(0);
        const Chain nest = chain(kMany / 2);
        // Each level uses a prefix that only the far end declares.
        XML_DOM_SetRoot(nest.top);
        XML_DOM_AddNodeNameSpace(nest.top, "p", "u");
        for (XML_DOM_Node *node = nest.top; node->type == XML_DOM_NODE_ELEMENT;
             node = node->firstChild) {
            node->ns = nest.top->firstNsDecl;
        }
        XML_DOM_Node *target = XML_DOM_CreateElementNode("t");
        copied = XML_DOM_CopySubTree(target, nest.top) == XML_OK &&
                 target->firstChild->ns == target->firstChild->firstNsDecl;
        // From the bottom of the copy, which has everything above it, into itself.
        XML_DOM_Node *bottom = target;
        while (bottom->firstChild && bottom->firstChild->type == XML_DOM_NODE_ELEMENT) {
            bottom = bottom->firstChild;
        }
        within = XML_DOM_CopySubTree(bottom, target) == XML_OK &&
                 bottom->lastChild->type == XML_DOM_NODE_ELEMENT &&
                 bottom->lastChild->ns == bottom->lastChild->firstNsDecl;
        scanned = XML_DOM_ScanTree(
                      target,
                      [](XML_DOM_Node *, void *userData, std::uint32_t) -> std::uint32_t {
                          ++*static_cast<std::uint32_t *>(userData);
                          return 0;
                      },
                      &visits) == XML_OK;
        length = XML_DOM_GetXPath(nest.bottom, sizeof deepPath, deepPath);
        shortLength = XML_DOM_GetXPath(nest.bottom->firstChild, 64, path);
        // The last node cannot be copied: all that was made goes.
        XML_DOM_NsDecl nowhere{nullptr, deepPath, deepPath};
        nest.bottom->ns = &nowhere;
        XML_DOM_Node *empty = XML_DOM_CreateElementNode("t");
        undone = XML_DOM_CopySubTree(empty, nest.top) == XML_REFUSED && !empty->firstChild;
        adopted = XML_DOM_AdoptChildren(nest.top, bottom) == XML_OK && !nest.top->firstChild;
        XML_DOM_DelNode(empty);
        XML_DOM_DelNode(target);
        XML_DOM_DelNode(nest.top);
        blocks = heap.blocksInUse();
    }));
    EXPECT_TRUE(copied);
    EXPECT_TRUE(within);
    EXPECT_TRUE(scanned);
    // The target, twice what is below the top, and a text in each copy.
    EXPECT_EQ(visits, 1 + 2 * (kMany / 2 - 1) + 2);
    EXPECT_EQ(length, sizeof deepPath - 1);
    EXPECT_EQ(shortLength, sizeof path - 1);
    EXPECT_EQ(std::string(path), "/e/e[1]/e[1]/e[1]/e[1]/e[1]/e[1]/e[1]/e[1]/e[1]/e[1]/e[1]/e[1]/");
    EXPECT_TRUE(undone);
    EXPECT_TRUE(adopted);
    EXPECT_EQ(blocks, 0u);
}

TEST(Depth, AFailureDeepDown) {
    std::uint32_t result = XML_OK;
    ASSERT_TRUE(runOnSmallStack([&] {
        const Chain nest = chain(kMany);
        XML_DOM_SetNodeValue(nest.bottom->firstChild, "\xFF");
        char *buffer = nullptr;
        result = XML_DOM_TranslateStr(nest.top, 0, &buffer, nullptr);
        XML_DOM_DelNode(nest.top);
    }));
    EXPECT_NE(result, XML_OK);
}

TEST(Depth, AMillionSiblings) {
    bool written = false;
    std::size_t left = 1;
    ASSERT_TRUE(runOnSmallStack([&] {
        support::FaultyHeap heap(0);
        XML_DOM_Node *top = XML_DOM_CreateElementNode("t");
        for (std::uint32_t i = 0; i < kMany; ++i) {
            XML_DOM_AddChildNode(top, XML_DOM_CreateElementNodeInner("e"));
        }
        char *buffer = nullptr;
        std::uint32_t length = 0;
        written = XML_DOM_TranslateStr(top, 0, &buffer, &length) == XML_OK &&
                  length == kMany * 4 + 7 && std::strncmp(buffer, "<t><e/><e/>", 11) == 0;
        std::free(buffer);
        XML_DOM_DelNode(top);
        left = heap.blocksInUse();
    }));
    EXPECT_TRUE(written);
    EXPECT_EQ(left, 0u);
}

TEST(Depth, TheStackIsAsSmallAsItSays) {
    std::size_t size = 0;
    ASSERT_TRUE(runOnSmallStack([&] {
        pthread_attr_t attributes;
        if (pthread_getattr_np(pthread_self(), &attributes) != 0) return;
        void *address = nullptr;
        pthread_attr_getstack(&attributes, &address, &size);
        pthread_attr_destroy(&attributes);
    }));
    EXPECT_GT(size, 0u);
    EXPECT_LE(size, smallStackBytes());
}

}  // namespace
