// Detaching and deleting: the links left behind, and that nothing stays allocated.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "compactxml.h"
#include "tests/support/faults.h"
#include "tests/support/owners.h"
#include "tests/support/tree_dump.h"

namespace {

using support::brokenLink;
using support::dumpTree;
using support::FaultyHeap;
using support::NodePtr;
using support::outline;

// An element p with children named a, b, c and so on.
struct Family {
    explicit Family(int count) : parent(XML_DOM_CreateElementNode("p")) {
        for (int i = 0; i < count; ++i) {
            const char name[] = {static_cast<char>('a' + i), '\0'};
            children.push_back(XML_DOM_CreateElementNode(name));
            EXPECT_EQ(XML_DOM_AddChildNode(parent.get(), children.back()), XML_OK);
        }
    }
    NodePtr parent;
    std::vector<XML_DOM_Node *> children;
};

struct Removal {
    int count, index;
    const char *left;
};
constexpr Removal kRemovals[] = {
    {1, 0, "p"},      {2, 0, "p(b)"},   {2, 1, "p(a)"},     {3, 0, "p(b,c)"},
    {3, 1, "p(a,c)"}, {3, 2, "p(a,b)"}, {4, 1, "p(a,c,d)"}, {4, 2, "p(a,b,d)"},
};

TEST(Clip, FirstMiddleLastAndOnly) {
    for (const Removal &row : kRemovals) {
        SCOPED_TRACE(row.left);
        Family family(row.count);
        XML_DOM_Node *child = family.children[static_cast<std::size_t>(row.index)];
        XML_DOM_Clip(child);
        const NodePtr clipped(child);
        EXPECT_EQ(outline(family.parent.get()), row.left);
        EXPECT_EQ(brokenLink(family.parent.get()), "");
        EXPECT_EQ(child->parent, nullptr);
        EXPECT_EQ(child->nextSibling, nullptr);
    }
}

TEST(Clip, ThenAppendAndInsertAgain) {
    for (const Removal &row : kRemovals) {
        SCOPED_TRACE(row.left);
        Family family(row.count);
        XML_DOM_Node *child = family.children[static_cast<std::size_t>(row.index)];
        XML_DOM_Clip(child);
        ASSERT_EQ(XML_DOM_AddChildNode(family.parent.get(), child), XML_OK);
        EXPECT_EQ(family.parent->lastChild, child);
        EXPECT_EQ(brokenLink(family.parent.get()), "");
        XML_DOM_Clip(child);
        if (!family.parent->firstChild) {
            XML_DOM_DelNode(child);
            continue;
        }
        ASSERT_EQ(XML_DOM_InsertBeforeNode(family.parent->firstChild, child), XML_OK);
        EXPECT_EQ(family.parent->firstChild, child);
        EXPECT_EQ(brokenLink(family.parent.get()), "");
        // The list can still be appended to at its end.
        ASSERT_EQ(XML_DOM_AddChildNode(family.parent.get(), XML_DOM_CreateTextNode("end")), XML_OK);
        EXPECT_EQ(brokenLink(family.parent.get()), "");
    }
}

TEST(Clip, TheNodeKeepsWhatItOwns) {
    Family family(3);
    XML_DOM_Node *child = family.children[1];
    ASSERT_EQ(XML_DOM_AddChildNode(child, XML_DOM_CreateTextNode("t")), XML_OK);
    ASSERT_EQ(XML_DOM_AddNodeNameSpace(child, "p", "u"), XML_OK);
    ASSERT_NE(XML_DOM_AddAttr(child, "p", "x", "1"), nullptr);
    ASSERT_EQ(XML_DOM_SetNodeNameSpace(child, "p"), XML_OK);
    XML_DOM_Clip(child);
    const NodePtr clipped(child);
    EXPECT_EQ(outline(child), "b('t')");
    EXPECT_STREQ(XML_DOM_GetNodeNsAttribute(child, "u", "x"), "1");
    EXPECT_EQ(child->ns, child->firstNsDecl);
    EXPECT_EQ(brokenLink(child), "");
}

TEST(Clip, NothingAboveMeansNothingToDo) {
    const Family family(2);
    ASSERT_EQ(XML_DOM_SetRoot(family.parent.get()), XML_OK);
    const std::string before = dumpTree(family.parent.get());
    XML_DOM_Clip(family.parent.get());
    XML_DOM_Clip(nullptr);
    EXPECT_EQ(dumpTree(family.parent.get()), before);
    EXPECT_EQ(XML_DOM_GetRoot(family.children[0]), family.parent.get());
}

TEST(Clip, ANestedRootKeepsItsDocument) {
    Family family(1);
    XML_DOM_Node *inner = XML_DOM_CreateElementNode("inner");
    ASSERT_EQ(XML_DOM_SetRoot(inner), XML_OK);
    ASSERT_EQ(XML_DOM_InsertBeforeNode(family.children[0], inner), XML_OK);
    XML_DOM_Clip(inner);
    const NodePtr clipped(inner);
    EXPECT_EQ(XML_DOM_GetRoot(inner), inner);
    EXPECT_EQ(outline(family.parent.get()), "p(a)");
}

TEST(Delete, FirstMiddleLastAndOnly) {
    for (const Removal &row : kRemovals) {
        SCOPED_TRACE(row.left);
        const Family family(row.count);
        XML_DOM_DelNode(family.children[static_cast<std::size_t>(row.index)]);
        EXPECT_EQ(outline(family.parent.get()), row.left);
        EXPECT_EQ(brokenLink(family.parent.get()), "");
        ASSERT_EQ(XML_DOM_AddChildNode(family.parent.get(), XML_DOM_CreateTextNode("end")), XML_OK);
        EXPECT_EQ(brokenLink(family.parent.get()), "");
    }
}

TEST(Delete, NullDoesNothing) {
    const FaultyHeap heap(0);
    XML_DOM_DelNode(nullptr);
    EXPECT_EQ(heap.allocations(), 0u);
}

// A tree in which every kind of record occurs.
XML_DOM_Node *fullTree() {
    XML_DOM_Node *root = XML_DOM_CreateElementNode("root");
    EXPECT_EQ(XML_DOM_SetRoot(root), XML_OK);
    EXPECT_EQ(XML_DOM_AddNodeNameSpace(root, nullptr, "default"), XML_OK);
    EXPECT_EQ(XML_DOM_AddNodeNameSpace(root, "p", "u"), XML_OK);
    XML_DOM_Node *parent = root;
    for (int i = 0; i < 5; ++i) {
        XML_DOM_Node *child = XML_DOM_CreateElementWithText("child", "text");
        EXPECT_EQ(XML_DOM_AddChildNode(parent, child), XML_OK);
        EXPECT_EQ(XML_DOM_AddChildNode(parent, XML_DOM_CreateElementWithCData("c", "x")), XML_OK);
        EXPECT_EQ(XML_DOM_AddNodeNameSpace(child, "q", "v"), XML_OK);
        EXPECT_NE(XML_DOM_AddAttr(child, "p", "a", "1"), nullptr);
        EXPECT_NE(XML_DOM_AddAttr(child, "q", "a", "2"), nullptr);
        EXPECT_NE(XML_DOM_AddAttr(child, "xml", "lang", "en"), nullptr);
        EXPECT_EQ(XML_DOM_SetNodeNameSpace(child, "q"), XML_OK);
        parent = child;
    }
    return root;
}

TEST(Delete, FreesEverythingAndAllocatesNothing) {
    FaultyHeap heap(0);
    XML_DOM_Node *root = fullTree();
    EXPECT_EQ(brokenLink(root), "");
    EXPECT_GT(heap.blocksInUse(), 50u);
    const std::size_t allocations = heap.allocations();
    XML_DOM_DelNode(root);
    EXPECT_EQ(heap.blocksInUse(), 0u);
    EXPECT_EQ(heap.allocations(), allocations);
}

TEST(Delete, ASubtreeInTheMiddle) {
    FaultyHeap heap(0);
    XML_DOM_Node *root = fullTree();
    const std::size_t all = heap.blocksInUse();
    XML_DOM_DelNode(root->firstChild);
    EXPECT_EQ(outline(root), "root(c([x]))");
    EXPECT_EQ(brokenLink(root), "");
    EXPECT_LT(heap.blocksInUse(), all / 2);
    XML_DOM_DelNode(root);
    EXPECT_EQ(heap.blocksInUse(), 0u);
}

// The deletion climbs to the node it began with and not further: siblings and parents stay.
TEST(Delete, StopsAtTheNodeItBeganWith) {
    Family family(3);
    ASSERT_EQ(XML_DOM_AddChildNode(family.children[1], XML_DOM_CreateTextNode("t")), XML_OK);
    ASSERT_EQ(XML_DOM_AddChildNode(family.children[1], XML_DOM_CreateElementNode("e")), XML_OK);
    XML_DOM_DelNode(family.children[1]);
    EXPECT_EQ(outline(family.parent.get()), "p(a,c)");
    EXPECT_EQ(brokenLink(family.parent.get()), "");
}

}  // namespace
