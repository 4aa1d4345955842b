// Moving all children of one element under another: what moves, what is refused, what is left.
#include <gtest/gtest.h>

#include <string>

#include "compactxml.h"
#include "tests/support/faults.h"
#include "tests/support/owners.h"
#include "tests/support/tree_dump.h"
#include "tests/support/written.h"

namespace {

using support::brokenLink;
using support::NodePtr;
using support::outline;
using support::parsed;

// What AdoptChildren leaves of a document, its two parties being found by their paths.
struct Adoption {
    const char *document, *from, *to;
    std::uint32_t result;
    const char *left, *detached;  // the child that nobody owns any more, or ""
};
constexpr Adoption kAdoptions[] = {
    {"<r><a><x/><y/></a><b><z/></b></r>", "/r/a", "/r/b", XML_OK, "r(a,b(z,x,y))", ""},
    {"<r><a><x/></a><b/></r>", "/r/a", "/r/b", XML_OK, "r(a,b(x))", ""},
    {"<r><a>t<x/><![CDATA[c]]></a><b/></r>", "/r/a", "/r/b", XML_OK, "r(a,b('t',x,[c]))", ""},
    {"<r><a/><b><z/></b></r>", "/r/a", "/r/b", XML_OK, "r(a,b(z))", ""},
    // Up and down the same line.
    {"<r><a><x/><y/></a></r>", "/r/a", "/r", XML_OK, "r(a,x,y)", ""},
    {"<r><a/><b><c/></b></r>", "/r", "/r/a", XML_REFUSED, "r(b(c))", "a"},
    {"<r><x/><a><b/></a><y/></r>", "/r", "/r/a/b", XML_REFUSED, "r(y)", "a(b(x))"},
    {"<r><x/><y/></r>", "/r", "/r/y", XML_REFUSED, "r", "y(x)"},
    // Adopting one's own children is no work, however many there are.
    {"<r><x/></r>", "/r", "/r", XML_OK, "r(x)", ""},
    {"<r><x/><y/><z/></r>", "/r", "/r", XML_OK, "r(x,y,z)", ""},
};

// Deletes a detached child, once it has been looked at.
std::string take(XML_DOM_Node *detached) {
    const NodePtr owner(detached);
    return outline(detached);
}

TEST(AdoptChildren, MovesInOrderUntilOneIsRefused) {
    for (const Adoption &row : kAdoptions) {
        SCOPED_TRACE(std::string(row.document) + " " + row.from + " " + row.to);
        const NodePtr root = parsed(row.document);
        XML_DOM_Node *from = XML_DOM_SelectSingleNode(root.get(), row.from);
        XML_DOM_Node *to = XML_DOM_SelectSingleNode(root.get(), row.to);
        ASSERT_TRUE(from && to);
        XML_DOM_Node *refused = nullptr;
        for (XML_DOM_Node *child = from->firstChild; child; child = child->nextSibling) {
            if (outline(child) == row.detached || child == to || child->firstChild == to) {
                refused = child;
            }
        }
        EXPECT_EQ(XML_DOM_AdoptChildren(from, to), row.result);
        EXPECT_EQ(outline(root.get()), row.left);
        EXPECT_EQ(brokenLink(root.get()), "");
        if (row.detached[0] == '\0') continue;
        ASSERT_NE(refused, nullptr);
        EXPECT_EQ(refused->parent, nullptr);
        EXPECT_EQ(refused->nextSibling, nullptr);
        EXPECT_EQ(brokenLink(refused), "");
        EXPECT_EQ(take(refused), row.detached);
    }
}

TEST(AdoptChildren, ATextTakesNoneAndTheFirstIsDetached) {
    const NodePtr root = parsed("<r><a><x/><y/></a><b>t</b></r>");
    XML_DOM_Node *from = root->firstChild, *first = from->firstChild;
    XML_DOM_Node *text = root->lastChild->firstChild;
    EXPECT_EQ(XML_DOM_AdoptChildren(from, text), XML_REFUSED);
    EXPECT_EQ(first->parent, nullptr);
    EXPECT_EQ(take(first), "x");
    EXPECT_EQ(outline(root.get()), "r(a(y),b('t'))");
    EXPECT_EQ(text->firstChild, nullptr);
}

TEST(AdoptChildren, NullLosesTheFirstToo) {
    const NodePtr root = parsed("<r><x/><y/></r>");
    XML_DOM_Node *first = root->firstChild;
    EXPECT_EQ(XML_DOM_AdoptChildren(root.get(), nullptr), XML_REFUSED);
    EXPECT_EQ(first->parent, nullptr);
    EXPECT_EQ(take(first), "x");
    EXPECT_EQ(outline(root.get()), "r(y)");
}

TEST(AdoptChildren, WithNothingToMoveAnythingGoes) {
    const NodePtr element(XML_DOM_CreateElementNode("a")), text(XML_DOM_CreateTextNode("t"));
    EXPECT_EQ(XML_DOM_AdoptChildren(nullptr, element.get()), XML_OK);
    EXPECT_EQ(XML_DOM_AdoptChildren(nullptr, nullptr), XML_OK);
    EXPECT_EQ(XML_DOM_AdoptChildren(element.get(), nullptr), XML_OK);
    EXPECT_EQ(XML_DOM_AdoptChildren(element.get(), text.get()), XML_OK);
    EXPECT_EQ(XML_DOM_AdoptChildren(text.get(), element.get()), XML_OK);
}

TEST(AdoptChildren, ARootAmongTheChildrenStopsIt) {
    // InsertBeforeNode asks nothing of the node it inserts.
    const NodePtr from(XML_DOM_CreateElementNode("from")), to(XML_DOM_CreateElementNode("to"));
    ASSERT_EQ(XML_DOM_AddChildNode(from.get(), XML_DOM_CreateElementNode("last")), XML_OK);
    XML_DOM_Node *root = XML_DOM_CreateElementNode("root");
    ASSERT_EQ(XML_DOM_SetRoot(root), XML_OK);
    ASSERT_EQ(XML_DOM_InsertBeforeNode(from->firstChild, root), XML_OK);
    ASSERT_EQ(XML_DOM_InsertBeforeNode(from->firstChild, XML_DOM_CreateElementNode("first")),
              XML_OK);
    EXPECT_EQ(XML_DOM_AdoptChildren(from.get(), to.get()), XML_REFUSED);
    EXPECT_EQ(outline(to.get()), "to(first)");
    EXPECT_EQ(outline(from.get()), "from(last)");
    EXPECT_EQ(take(root), "root");
}

TEST(AdoptChildren, AllocatesNothingAndKeepsTheNodes) {
    const NodePtr from = parsed("<r><x a='1'><y/></x>t</r>"), to(XML_DOM_CreateElementNode("to"));
    XML_DOM_Node *first = from->firstChild;
    const support::FaultyHeap heap(1, true);
    EXPECT_EQ(XML_DOM_AdoptChildren(from.get(), to.get()), XML_OK);
    EXPECT_EQ(to->firstChild, first);
    EXPECT_EQ(heap.allocations(), 0u);
}

}  // namespace
