// The path of a node: its steps, its positions, and where a small buffer cuts it.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "compactxml.h"
#include "tests/support/owners.h"
#include "tests/support/sample_trees.h"
#include "tests/support/texts.h"
#include "tests/support/written.h"

namespace {

using support::NodePtr;
using support::parsed;

// The path, told by plain recursion.
std::string modelPath(const XML_DOM_Node *node) {
    std::string path = node->parent ? modelPath(node->parent) : "";
    if (!node->name) return path;
    path += "/" + std::string(node->name);
    if (!node->parent) return path;
    int position = 1;
    for (const XML_DOM_Node *other = node->parent->firstChild; other != node;
         other = other->nextSibling) {
        if (other->name && std::string(other->name) == node->name) ++position;
    }
    return path + "[" + std::to_string(position) + "]";
}

std::string pathOf(const XML_DOM_Node *node) {
    char buffer[4096];
    const std::uint32_t length = XML_DOM_GetXPath(node, sizeof buffer, buffer);
    EXPECT_EQ(buffer[length], '\0');
    return {buffer, length};
}

// Checks the path of a node for every size from 1 to beyond its end; nothing else may be written.
void expectCuts(const XML_DOM_Node *node, std::uint32_t step = 1) {
    const std::string path = modelPath(node);
    for (std::uint32_t size = 1; size <= path.size() + 3; size += step) {
        std::string buffer(size + 8, '#');
        std::string expected = path.substr(0, size - 1);
        const auto length = static_cast<std::uint32_t>(expected.size());
        expected += '\0';
        expected.resize(buffer.size(), '#');
        EXPECT_EQ(XML_DOM_GetXPath(node, size, buffer.data()), length) << path << " " << size;
        EXPECT_EQ(buffer, expected) << path << " " << size;
    }
}

void eachNode(const XML_DOM_Node *node, const std::function<void(const XML_DOM_Node *)> &visit) {
    visit(node);
    for (const XML_DOM_Node *child = node->firstChild; child; child = child->nextSibling) {
        eachNode(child, visit);
    }
}

TEST(GetXPath, Steps) {
    const NodePtr root = parsed(
        "<p:r xmlns:p='u'>t<a/><a>x<b/><![CDATA[c]]></a><b/><p:a/>"
        "<\xE7\xAB\xAF\xE5\x8F\xA3/></p:r>");
    ASSERT_TRUE(root);
    std::vector<std::string> paths;
    eachNode(root.get(), [&](const XML_DOM_Node *node) { paths.push_back(pathOf(node)); });
    const std::vector<std::string> expected = {
        "/r",
        "/r",
        "/r/a[1]",
        "/r/a[2]",
        "/r/a[2]",
        "/r/a[2]/b[1]",
        "/r/a[2]",
        "/r/b[1]",
        "/r/a[3]",  // local names are counted, whatever their namespaces
        "/r/" + support::gb("\xE7\xAB\xAF\xE5\x8F\xA3") + "[1]",
    };
    EXPECT_EQ(paths, expected);
}

TEST(GetXPath, OfDetachedNodes) {
    const NodePtr element(XML_DOM_CreateElementWithText("e", "t")),
        text(XML_DOM_CreateTextNode("t"));
    const NodePtr nameless(XML_DOM_CreateElementNodeInner(""));
    EXPECT_EQ(pathOf(element.get()), "/e");
    EXPECT_EQ(pathOf(element->firstChild), "/e");
    EXPECT_EQ(pathOf(text.get()), "");
    EXPECT_EQ(pathOf(nameless.get()), "/");
}

// Only a hand-made tree has an element without a name above others.
TEST(GetXPath, NamelessElementsAddNothing) {
    const NodePtr root = parsed("<r><a><b><c/></b></a></r>");
    XML_DOM_Node *const b = root->firstChild->firstChild;
    char *const name = b->name;
    b->name = nullptr;
    EXPECT_EQ(pathOf(b->firstChild), "/r/a[1]/c[1]");
    expectCuts(b->firstChild);
    b->name = name;
}

TEST(GetXPath, NeedsANodeABufferAndRoom) {
    const NodePtr element(XML_DOM_CreateElementNode("e"));
    char buffer[8] = "#######";
    EXPECT_EQ(XML_DOM_GetXPath(nullptr, sizeof buffer, buffer), 0u);
    EXPECT_EQ(XML_DOM_GetXPath(element.get(), 0, buffer), 0u);
    EXPECT_STREQ(buffer, "#######");
    EXPECT_EQ(XML_DOM_GetXPath(element.get(), sizeof buffer, nullptr), 0u);
    EXPECT_EQ(XML_DOM_GetXPath(element.get(), 1, buffer), 0u);
    EXPECT_STREQ(buffer, "");
    EXPECT_STREQ(buffer + 1, "######");
    // A size that no buffer has is no reason to touch more than the path needs.
    EXPECT_EQ(XML_DOM_GetXPath(element.get(), UINT32_MAX, buffer), 2u);
    EXPECT_STREQ(buffer, "/e");
    EXPECT_STREQ(buffer + 3, "####");
}

TEST(GetXPath, EveryNodeOfRandomTreesInBuffersOfEverySize) {
    for (std::uint32_t seed = 0; seed < 12; ++seed) {
        const NodePtr root = support::randomTree(seed, true);
        eachNode(root.get(), [](const XML_DOM_Node *node) { expectCuts(node); });
    }
}

TEST(GetXPath, PositionsOfManyDigits) {
    const NodePtr root(XML_DOM_CreateElementNode("r"));
    for (int i = 0; i < 300; ++i) {
        ASSERT_EQ(XML_DOM_AddChildNode(root.get(), XML_DOM_CreateElementNode("port")), XML_OK);
    }
    int position = 0;
    for (const XML_DOM_Node *node = root->firstChild; node; node = node->nextSibling) {
        EXPECT_EQ(pathOf(node), "/r/port[" + std::to_string(++position) + "]");
        if (position % 50 == 49) expectCuts(node);
    }
    EXPECT_EQ(position, 300);
}

TEST(GetXPath, NamesOfEveryLengthInADeepTree) {
    // Names of 0 to 39 bytes on the way down, siblings of the same names before each.
    const NodePtr root(XML_DOM_CreateElementNode("r"));
    XML_DOM_Node *node = root.get();
    for (int level = 0; level < 60; ++level) {
        const std::string name(static_cast<std::size_t>((level * 7) % 40), 'n');
        for (int sibling = 0; sibling < level % 13; ++sibling) {
            XML_DOM_AddChildNode(node, XML_DOM_CreateElementNodeInner(name.c_str()));
        }
        XML_DOM_Node *child = XML_DOM_CreateElementNodeInner(name.c_str());
        ASSERT_EQ(XML_DOM_AddChildNode(node, child), XML_OK);
        node = child;
    }
    expectCuts(node, 1);
}

}  // namespace
