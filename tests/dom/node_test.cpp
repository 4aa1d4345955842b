// Nodes and documents: creating, linking, renaming, and what every call refuses.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <string_view>

#include "compactxml.h"
#include "tests/support/faults.h"
#include "tests/support/huge_string.h"
#include "tests/support/owners.h"
#include "tests/support/tree_dump.h"

namespace {

using support::brokenLink;
using support::dumpTree;
using support::NodePtr;
using support::outline;

NodePtr element(const char *name) {
    return NodePtr(XML_DOM_CreateElementNode(name));
}
NodePtr text(const char *value) {
    return NodePtr(XML_DOM_CreateTextNode(value));
}

// Attaches a child, which the parent then owns, and returns it.
XML_DOM_Node *add(XML_DOM_Node *parent, NodePtr child) {
    EXPECT_EQ(XML_DOM_AddChildNode(parent, child.get()), XML_OK);
    return child.release();
}

// A document r(a(b,'t'),c) with handles to its nodes.
struct Sample {
    Sample() : root(element("r")) {
        EXPECT_EQ(XML_DOM_SetRoot(root.get()), XML_OK);
        a = add(root.get(), element("a"));
        b = add(a, element("b"));
        t = add(a, text("t"));
        c = add(root.get(), element("c"));
    }
    NodePtr root;
    XML_DOM_Node *a, *b, *t, *c;
};

// ---- documents -----------------------------------------------------------------------------

TEST(Document, EveryNodeAnswersForItsDocument) {
    const Sample tree;
    EXPECT_EQ(XML_DOM_SetEncoding(tree.b, XML_ENCODING_GBK), XML_OK);
    for (XML_DOM_Node *node : {tree.root.get(), tree.a, tree.b, tree.t, tree.c}) {
        EXPECT_EQ(XML_DOM_GetRoot(node), tree.root.get());
        EXPECT_STREQ(XML_DOM_GetVersion(node), "1.0");
        EXPECT_EQ(XML_DOM_GetEncoding(node), XML_ENCODING_GBK);
    }
}

TEST(Document, NodesWithoutOne) {
    const NodePtr parent = element("a");
    const XML_DOM_Node *child = add(parent.get(), text("x"));
    for (const XML_DOM_Node *node : {static_cast<const XML_DOM_Node *>(parent.get()), child,
                                     static_cast<const XML_DOM_Node *>(nullptr)}) {
        EXPECT_EQ(XML_DOM_GetRoot(node), nullptr);
        EXPECT_EQ(XML_DOM_GetVersion(node), nullptr);
        EXPECT_EQ(XML_DOM_GetEncoding(node), XML_ENCODING_UNKNOWN);
    }
    EXPECT_EQ(XML_DOM_SetEncoding(parent.get(), XML_ENCODING_UTF_8), XML_REFUSED);
    EXPECT_EQ(XML_DOM_SetVersion(parent.get(), "1.0"), XML_REFUSED);
}

TEST(Document, NewOnesAreVersion10AndUtf8) {
    const NodePtr root = element("r");
    EXPECT_EQ(XML_DOM_SetRoot(root.get()), XML_OK);
    EXPECT_EQ(XML_DOM_GetRoot(root.get()), root.get());
    EXPECT_STREQ(XML_DOM_GetVersion(root.get()), "1.0");
    EXPECT_EQ(XML_DOM_GetEncoding(root.get()), XML_ENCODING_UTF_8);
    EXPECT_EQ(root->docInfo->root, root.get());
}

TEST(Document, EncodingsThatCanBeSet) {
    const Sample tree;
    for (std::uint32_t encoding = 0; encoding < XML_ENCODING_UNKNOWN; ++encoding) {
        EXPECT_EQ(XML_DOM_SetEncoding(tree.root.get(), encoding), XML_OK);
        EXPECT_EQ(XML_DOM_GetEncoding(tree.t), encoding);
    }
    for (const std::uint32_t encoding : {13u, 14u, 200u, 0x80000000u, 0xFFFFFFFFu}) {
        EXPECT_EQ(XML_DOM_SetEncoding(tree.root.get(), encoding), XML_REFUSED) << encoding;
        EXPECT_EQ(XML_DOM_GetEncoding(tree.root.get()), XML_ENCODING_UCS_4LE);
    }
}

TEST(Document, TheOnlyVersionIs10AndTheLibrarysOwn) {
    const Sample tree;
    const char *constant = XML_DOM_GetVersion(tree.root.get());
    for (const char *version : {"1.1", "", "1", "1.", "1.00", "1.0 ", " 1.0", "2.0", "1,0"}) {
        EXPECT_EQ(XML_DOM_SetVersion(tree.root.get(), version), XML_REFUSED) << version;
    }
    const std::string own = "1.0";
    EXPECT_EQ(XML_DOM_SetVersion(tree.b, own.c_str()), XML_OK);
    EXPECT_NE(XML_DOM_GetVersion(tree.root.get()), own.c_str());
    EXPECT_EQ(XML_DOM_GetVersion(tree.root.get()), constant);
    EXPECT_STREQ(XML_DOM_GetVersion(tree.root.get()), "1.0");
}

TEST(Document, SetRootRefusals) {
    const Sample tree;
    const NodePtr loose = text("x");
    const NodePtr cdata(XML_DOM_CreateCDataNode("x"));
    for (XML_DOM_Node *node : {loose.get(), cdata.get(), tree.t, tree.a, tree.root.get(),
                               static_cast<XML_DOM_Node *>(nullptr)}) {
        const std::string before = node ? dumpTree(node) : "";
        EXPECT_EQ(XML_DOM_SetRoot(node), XML_REFUSED);
        EXPECT_EQ(node ? dumpTree(node) : "", before);
    }
}

TEST(Document, ADetachedTreeWithChildrenCanBecomeOne) {
    const NodePtr parent = element("a");
    const XML_DOM_Node *child = add(parent.get(), element("b"));
    EXPECT_EQ(XML_DOM_SetRoot(parent.get()), XML_OK);
    EXPECT_EQ(XML_DOM_GetRoot(child), parent.get());
}

// ---- navigation ----------------------------------------------------------------------------

TEST(Navigation, Links) {
    const Sample tree;
    EXPECT_EQ(XML_DOM_GetNodeParent(tree.root.get()), nullptr);
    EXPECT_EQ(XML_DOM_GetNodeParent(tree.b), tree.a);
    EXPECT_EQ(XML_DOM_GetFirstChild(tree.root.get()), tree.a);
    EXPECT_EQ(XML_DOM_GetFirstChild(tree.c), nullptr);
    EXPECT_EQ(XML_DOM_GetNextSibling(tree.a), tree.c);
    EXPECT_EQ(XML_DOM_GetNextSibling(tree.c), nullptr);
    EXPECT_EQ(XML_DOM_GetNodeParent(nullptr), nullptr);
    EXPECT_EQ(XML_DOM_GetFirstChild(nullptr), nullptr);
    EXPECT_EQ(XML_DOM_GetNextSibling(nullptr), nullptr);
}

TEST(Navigation, NamesValuesAndTypes) {
    const Sample tree;
    const NodePtr cdata(XML_DOM_CreateCDataNode("]]>"));
    EXPECT_EQ(XML_DOM_GetNodeType(tree.a), XML_DOM_NODE_ELEMENT);
    EXPECT_EQ(XML_DOM_GetNodeType(tree.t), XML_DOM_NODE_TEXT);
    EXPECT_EQ(XML_DOM_GetNodeType(cdata.get()), XML_DOM_NODE_CDATA);
    EXPECT_EQ(XML_DOM_GetNodeType(nullptr), 0u);
    EXPECT_STREQ(XML_DOM_GetNodeName(tree.a), "a");
    EXPECT_EQ(XML_DOM_GetNodeName(tree.t), nullptr);
    EXPECT_EQ(XML_DOM_GetNodeName(cdata.get()), nullptr);
    EXPECT_EQ(XML_DOM_GetNodeName(nullptr), nullptr);
    EXPECT_EQ(XML_DOM_GetNodeValue(tree.a), nullptr);
    EXPECT_STREQ(XML_DOM_GetNodeValue(tree.t), "t");
    EXPECT_STREQ(XML_DOM_GetNodeValue(cdata.get()), "]]>");
    EXPECT_EQ(XML_DOM_GetNodeValue(nullptr), nullptr);
}

TEST(Navigation, FirstTextAndFirstCData) {
    const NodePtr parent = element("p");
    EXPECT_EQ(XML_DOM_GetFirstTextChildValue(parent.get()), nullptr);
    EXPECT_EQ(XML_DOM_GetFirstCDataChildValue(parent.get()), nullptr);
    XML_DOM_Node *inner = add(parent.get(), element("e"));
    add(inner, text("deeper"));
    EXPECT_EQ(XML_DOM_GetFirstTextChildValue(parent.get()), nullptr);
    add(parent.get(), NodePtr(XML_DOM_CreateCDataNode("c1")));
    EXPECT_EQ(XML_DOM_GetFirstTextChildValue(parent.get()), nullptr);
    add(parent.get(), text("t1"));
    add(parent.get(), text("t2"));
    add(parent.get(), NodePtr(XML_DOM_CreateCDataNode("c2")));
    EXPECT_STREQ(XML_DOM_GetFirstTextChildValue(parent.get()), "t1");
    EXPECT_STREQ(XML_DOM_GetFirstCDataChildValue(parent.get()), "c1");
    EXPECT_EQ(XML_DOM_GetFirstTextChildValue(parent->lastChild), nullptr);
    EXPECT_EQ(XML_DOM_GetFirstTextChildValue(nullptr), nullptr);
    EXPECT_EQ(XML_DOM_GetFirstCDataChildValue(nullptr), nullptr);
}

// ---- creation ------------------------------------------------------------------------------

void expectDetached(const XML_DOM_Node *node) {
    ASSERT_NE(node, nullptr);
    EXPECT_EQ(node->parent, nullptr);
    EXPECT_EQ(node->nextSibling, nullptr);
    EXPECT_EQ(node->firstAttr, nullptr);
    EXPECT_EQ(node->lastAttr, nullptr);
    EXPECT_EQ(node->firstNsDecl, nullptr);
    EXPECT_EQ(node->lastNsDecl, nullptr);
    EXPECT_EQ(node->ns, nullptr);
    EXPECT_EQ(node->docInfo, nullptr);
}

TEST(Creation, ElementNamesAreChecked) {
    struct Row {
        const char *name;
        bool accepted;
    };
    constexpr Row kRows[] = {{"a", true},    {"_x-1.y", true}, {"\xD6\xD0", true}, {"1a", false},
                             {"p:a", false}, {"", false},      {"a b", false},     {"-", false},
                             {"<", false},   {"a\xFF", false}};
    for (const Row &row : kRows) {
        const NodePtr checked = element(row.name);
        EXPECT_EQ(checked != nullptr, row.accepted) << row.name;
        const NodePtr unchecked(XML_DOM_CreateElementNodeInner(row.name));
        for (const NodePtr *node : {&checked, &unchecked}) {
            if (!*node) continue;
            expectDetached(node->get());
            EXPECT_EQ((*node)->type, XML_DOM_NODE_ELEMENT);
            EXPECT_STREQ((*node)->name, row.name);
            EXPECT_NE((*node)->name, row.name);  // a copy
            EXPECT_EQ((*node)->value, nullptr);
            EXPECT_EQ((*node)->firstChild, nullptr);
            EXPECT_EQ((*node)->lastChild, nullptr);
        }
        EXPECT_TRUE(unchecked) << row.name;
    }
    EXPECT_EQ(XML_DOM_CreateElementNode(nullptr), nullptr);
    EXPECT_EQ(XML_DOM_CreateElementNodeInner(nullptr), nullptr);
}

TEST(Creation, TextualNodesFromCountedBytes) {
    struct Row {
        std::uint32_t type;
        std::string_view bytes;
        std::uint32_t length;
    };
    constexpr Row kRows[] = {
        {XML_DOM_NODE_TEXT, "abcdef", 3},
        {XML_DOM_NODE_CDATA, "abc", 3},
        {XML_DOM_NODE_TEXT, "", 0},
        {XML_DOM_NODE_TEXT, {"a\0b\0", 4}, 4},
        // Intended: the type is stored as it comes, even that of an element.
        {XML_DOM_NODE_ELEMENT, "abc", 2},
        {0, "abc", 1},
        {77, "\xFF\x80", 2},
        {0xFFFFFFFFu, "x", 1},
    };
    for (const Row &row : kRows) {
        const NodePtr node(XML_DOM_CreateTextualNodeInner(row.type, row.bytes.data(), row.length));
        ASSERT_NO_FATAL_FAILURE(expectDetached(node.get()));
        EXPECT_EQ(node->type, row.type);
        EXPECT_EQ(node->name, nullptr);
        EXPECT_EQ(std::memcmp(node->value, row.bytes.data(), row.length), 0);
        EXPECT_EQ(node->value[row.length], '\0');
    }
    EXPECT_EQ(XML_DOM_CreateTextualNodeInner(XML_DOM_NODE_TEXT, nullptr, 0), nullptr);
    EXPECT_EQ(XML_DOM_CreateTextualNodeInner(XML_DOM_NODE_TEXT, nullptr, 5), nullptr);
}

TEST(Creation, TextAndCData) {
    for (const char *value : {"abc", "", " ", "]]>", "<&>", "\xD6\xD0"}) {
        const NodePtr made = text(value);
        ASSERT_NO_FATAL_FAILURE(expectDetached(made.get()));
        EXPECT_EQ(made->type, XML_DOM_NODE_TEXT);
        EXPECT_STREQ(made->value, value);
        const NodePtr cdata(XML_DOM_CreateCDataNode(value));
        ASSERT_NO_FATAL_FAILURE(expectDetached(cdata.get()));
        EXPECT_EQ(cdata->type, XML_DOM_NODE_CDATA);
        EXPECT_STREQ(cdata->value, value);
    }
    EXPECT_EQ(XML_DOM_CreateTextNode(nullptr), nullptr);
    EXPECT_EQ(XML_DOM_CreateCDataNode(nullptr), nullptr);
}

TEST(Creation, TextsOfFourGigabytesAreRefused) {
    const support::HugeString huge;
    if (!huge.text()) return;  // no room for such a string, so none can be handed in
    EXPECT_EQ(XML_DOM_CreateTextNode(huge.text()), nullptr);
    EXPECT_EQ(XML_DOM_CreateCDataNode(huge.text()), nullptr);
    EXPECT_EQ(XML_DOM_CreateElementWithText("a", huge.text()), nullptr);
    EXPECT_EQ(XML_DOM_CreateElementWithCData("a", huge.text()), nullptr);
}

TEST(Creation, ElementsWithContent) {
    struct Row {
        const char *name, *content;
        const char *withText, *withCData;
    };
    constexpr Row kRows[] = {
        {"a", "x", "a('x')", "a([x])"},
        {"a", "", "a('')", "a([])"},
        {"a", nullptr, "a", "a"},
        {nullptr, "x", "(null)", "(null)"},
        {"1a", "x", "(null)", "(null)"},
        {"p:a", nullptr, "(null)", "(null)"},
        {nullptr, nullptr, "(null)", "(null)"},
    };
    for (const Row &row : kRows) {
        const NodePtr withText(XML_DOM_CreateElementWithText(row.name, row.content));
        EXPECT_EQ(outline(withText.get()), row.withText);
        const NodePtr withCData(XML_DOM_CreateElementWithCData(row.name, row.content));
        EXPECT_EQ(outline(withCData.get()), row.withCData);
        for (const NodePtr *node : {&withText, &withCData}) {
            if (*node) {
                EXPECT_EQ(brokenLink(node->get()), "");
            }
        }
    }
}

// ---- appending and inserting ---------------------------------------------------------------

TEST(AddChild, AppendsInOrder) {
    const NodePtr parent = element("p");
    EXPECT_EQ(parent->lastChild, nullptr);
    for (const char *name : {"a", "b", "c"}) {
        const XML_DOM_Node *child = add(parent.get(), element(name));
        EXPECT_EQ(parent->lastChild, child);
        EXPECT_EQ(brokenLink(parent.get()), "");
    }
    add(parent.get(), text("t"));
    EXPECT_EQ(outline(parent.get()), "p(a,b,c,'t')");
    EXPECT_EQ(brokenLink(parent.get()), "");
}

TEST(AddChild, Refusals) {
    const Sample tree;
    const NodePtr loose = element("loose");
    const NodePtr looseText = text("x");
    const NodePtr cdata(XML_DOM_CreateCDataNode("x"));
    const NodePtr otherRoot = element("other");
    EXPECT_EQ(XML_DOM_SetRoot(otherRoot.get()), XML_OK);
    XML_DOM_Node *grandchild = add(loose.get(), element("g"));
    struct Row {
        const char *what;
        XML_DOM_Node *parent, *child;
    };
    const Row kRows[] = {
        {"no parent", nullptr, loose.get()},
        {"no child", tree.a, nullptr},
        {"nothing", nullptr, nullptr},
        {"text as parent", looseText.get(), loose.get()},
        {"attached text as parent", tree.t, loose.get()},
        {"CDATA as parent", cdata.get(), loose.get()},
        {"child of another", tree.c, tree.b},
        {"already its child", tree.a, tree.b},
        {"root of another document", tree.a, otherRoot.get()},
        {"root of the same document", tree.a, tree.root.get()},
        {"root under itself", tree.root.get(), tree.root.get()},
        {"itself", loose.get(), loose.get()},
        {"ancestor", grandchild, loose.get()},
    };
    const std::string before = dumpTree(tree.root.get()) + dumpTree(loose.get()) +
                               dumpTree(otherRoot.get()) + dumpTree(looseText.get());
    for (const Row &row : kRows) {
        EXPECT_EQ(XML_DOM_AddChildNode(row.parent, row.child), XML_REFUSED) << row.what;
        EXPECT_EQ(dumpTree(tree.root.get()) + dumpTree(loose.get()) + dumpTree(otherRoot.get()) +
                      dumpTree(looseText.get()),
                  before)
            << row.what;
    }
}

TEST(AddChild, AFarAncestorIsRefusedAndASubtreeIsNot) {
    const NodePtr top = element("top");
    XML_DOM_Node *bottom = top.get();
    for (int i = 0; i < 50; ++i) bottom = add(bottom, element("e"));
    EXPECT_EQ(XML_DOM_AddChildNode(bottom, top.get()), XML_REFUSED);
    NodePtr subtree(XML_DOM_CreateElementWithText("s", "x"));
    EXPECT_EQ(XML_DOM_AddChildNode(bottom, subtree.get()), XML_OK);
    subtree.release();
    EXPECT_EQ(brokenLink(top.get()), "");
}

// Intended: only the links that append are written; a node handed in is expected to be detached.
TEST(AddChild, LeavesTheNextSiblingOfTheChildAlone) {
    const NodePtr parent = element("p");
    const NodePtr stray = element("stray");
    NodePtr child = element("c");
    child->nextSibling = stray.get();
    EXPECT_EQ(XML_DOM_AddChildNode(parent.get(), child.get()), XML_OK);
    EXPECT_EQ(child->nextSibling, stray.get());
    EXPECT_EQ(parent->lastChild, child.get());
    child.release()->nextSibling = nullptr;
}

TEST(Insert, BeforeFirstMiddleAndLast) {
    struct Row {
        std::size_t before;
        const char *outline;
    };
    constexpr Row kRows[] = {{0, "p(new,a,b,c)"}, {1, "p(a,new,b,c)"}, {2, "p(a,b,new,c)"}};
    for (const Row &row : kRows) {
        const NodePtr parent = element("p");
        XML_DOM_Node *children[3];
        const char *names[] = {"a", "b", "c"};
        for (std::size_t i = 0; i < 3; ++i) children[i] = add(parent.get(), element(names[i]));
        XML_DOM_Node *added = element("new").release();
        EXPECT_EQ(XML_DOM_InsertBeforeNode(children[row.before], added), XML_OK);
        EXPECT_EQ(outline(parent.get()), row.outline);
        EXPECT_EQ(parent->lastChild, children[2]);
        EXPECT_EQ(added->parent, parent.get());
        EXPECT_EQ(brokenLink(parent.get()), "");
    }
}

TEST(Insert, BeforeAnOnlyChild) {
    const NodePtr parent = element("p");
    XML_DOM_Node *only = add(parent.get(), text("t"));
    EXPECT_EQ(XML_DOM_InsertBeforeNode(only, text("s").release()), XML_OK);
    EXPECT_EQ(outline(parent.get()), "p('s','t')");
    EXPECT_EQ(parent->lastChild, only);
    EXPECT_EQ(brokenLink(parent.get()), "");
}

// Intended: nothing is asked of the new node, so what AddChildNode refuses is accepted here.
TEST(Insert, TheNewNodeIsNotChecked) {
    const Sample tree;
    XML_DOM_Node *otherRoot = element("other").release();
    EXPECT_EQ(XML_DOM_SetRoot(otherRoot), XML_OK);
    EXPECT_EQ(XML_DOM_AddChildNode(tree.root.get(), otherRoot), XML_REFUSED);
    EXPECT_EQ(XML_DOM_InsertBeforeNode(tree.c, otherRoot), XML_OK);
    EXPECT_EQ(outline(tree.root.get()), "r(a(b,'t'),other,c)");
    EXPECT_EQ(XML_DOM_GetRoot(otherRoot), otherRoot);  // still a document of its own
    EXPECT_EQ(XML_DOM_GetRoot(tree.c), tree.root.get());
    XML_DOM_Node *odd = XML_DOM_CreateTextualNodeInner(77, "x", 1);
    EXPECT_EQ(XML_DOM_InsertBeforeNode(tree.b, odd), XML_OK);
    EXPECT_EQ(tree.a->firstChild, odd);
    EXPECT_EQ(brokenLink(tree.root.get()), "");
}

// A parent lists a node no more once the sibling in front of it has been inserted elsewhere: the new
// node then comes first.
TEST(Insert, BeforeANodeThatItsParentDoesNotList) {
    const NodePtr parent = element("p");
    XML_DOM_Node *const first = add(parent.get(), element("a"));
    const NodePtr lost = element("lost");
    lost->parent = parent.get();
    XML_DOM_Node *const added = element("new").release();
    EXPECT_EQ(XML_DOM_InsertBeforeNode(lost.get(), added), XML_OK);
    EXPECT_EQ(outline(parent.get()), "p(new,a)");
    EXPECT_EQ(parent->lastChild, first);
    EXPECT_EQ(brokenLink(parent.get()), "");
    lost->parent = nullptr;
}

TEST(Insert, Refusals) {
    const Sample tree;
    const NodePtr loose = element("loose");
    const NodePtr other = element("other");
    const std::string before = dumpTree(tree.root.get()) + dumpTree(loose.get());
    EXPECT_EQ(XML_DOM_InsertBeforeNode(nullptr, loose.get()), XML_REFUSED);
    EXPECT_EQ(XML_DOM_InsertBeforeNode(tree.a, nullptr), XML_REFUSED);
    EXPECT_EQ(XML_DOM_InsertBeforeNode(nullptr, nullptr), XML_REFUSED);
    EXPECT_EQ(XML_DOM_InsertBeforeNode(tree.root.get(), loose.get()), XML_REFUSED);
    EXPECT_EQ(XML_DOM_InsertBeforeNode(other.get(), loose.get()), XML_REFUSED);
    EXPECT_EQ(dumpTree(tree.root.get()) + dumpTree(loose.get()), before);
}

// ---- changing ------------------------------------------------------------------------------

TEST(SetNodeName, RenamesElementsOnly) {
    const Sample tree;
    const std::string name = "renamed";
    EXPECT_EQ(XML_DOM_SetNodeName(tree.a, name.c_str()), XML_OK);
    EXPECT_STREQ(XML_DOM_GetNodeName(tree.a), "renamed");
    EXPECT_NE(XML_DOM_GetNodeName(tree.a), name.c_str());
    EXPECT_EQ(XML_DOM_SetNodeName(tree.a, XML_DOM_GetNodeName(tree.a)), XML_OK);  // its own
    EXPECT_STREQ(XML_DOM_GetNodeName(tree.a), "renamed");
    const std::string before = dumpTree(tree.root.get());
    for (const char *bad : {"", "1", "p:a", "a b", "\xFF"}) {
        EXPECT_EQ(XML_DOM_SetNodeName(tree.a, bad), XML_REFUSED) << bad;
    }
    EXPECT_EQ(XML_DOM_SetNodeName(tree.a, nullptr), XML_REFUSED);
    EXPECT_EQ(XML_DOM_SetNodeName(nullptr, "a"), XML_REFUSED);
    EXPECT_EQ(XML_DOM_SetNodeName(tree.t, "a"), XML_REFUSED);
    EXPECT_EQ(dumpTree(tree.root.get()), before);
}

TEST(SetNodeValue, ChangesTextAndCDataOnly) {
    const Sample tree;
    const NodePtr cdata(XML_DOM_CreateCDataNode("x"));
    const std::string value = "new \xD6\xD0 <&>";
    EXPECT_EQ(XML_DOM_SetNodeValue(tree.t, value.c_str()), XML_OK);
    EXPECT_STREQ(XML_DOM_GetNodeValue(tree.t), value.c_str());
    EXPECT_NE(XML_DOM_GetNodeValue(tree.t), value.c_str());
    EXPECT_EQ(XML_DOM_SetNodeValue(cdata.get(), "y"), XML_OK);
    EXPECT_STREQ(XML_DOM_GetNodeValue(cdata.get()), "y");
    const std::string before = dumpTree(tree.root.get());
    EXPECT_EQ(XML_DOM_SetNodeValue(tree.t, ""), XML_REFUSED);
    EXPECT_EQ(XML_DOM_SetNodeValue(tree.t, nullptr), XML_REFUSED);
    EXPECT_EQ(XML_DOM_SetNodeValue(nullptr, "x"), XML_REFUSED);
    EXPECT_EQ(XML_DOM_SetNodeValue(tree.a, "x"), XML_REFUSED);
    const NodePtr odd(XML_DOM_CreateTextualNodeInner(77, "x", 1));
    EXPECT_EQ(XML_DOM_SetNodeValue(odd.get(), "y"), XML_REFUSED);
    EXPECT_EQ(dumpTree(tree.root.get()), before);
}

TEST(SetNodeValue, PartOfTheOwnValue) {
    const NodePtr node = text("abcdef");
    EXPECT_EQ(XML_DOM_SetNodeValue(node.get(), node->value + 3), XML_OK);
    EXPECT_STREQ(node->value, "def");
}

// Intended: the pointer that the node holds already is accepted before the type is looked at, but
// not before the empty string is refused.
TEST(SetNodeValue, TheOwnPointer) {
    const NodePtr node = text("abc");
    const NodePtr typedAsElement(XML_DOM_CreateTextualNodeInner(XML_DOM_NODE_ELEMENT, "abc", 3));
    const NodePtr empty = text("");
    const char *value = node->value;
    support::FaultyHeap heap(1, true);
    EXPECT_EQ(XML_DOM_SetNodeValue(node.get(), node->value), XML_OK);
    EXPECT_EQ(node->value, value);
    EXPECT_EQ(XML_DOM_SetNodeValue(typedAsElement.get(), typedAsElement->value), XML_OK);
    EXPECT_EQ(XML_DOM_SetNodeValue(typedAsElement.get(), "abc"), XML_REFUSED);
    EXPECT_STREQ(typedAsElement->value, "abc");
    EXPECT_EQ(XML_DOM_SetNodeValue(empty.get(), empty->value), XML_REFUSED);
    EXPECT_FALSE(heap.failed());
}

TEST(Strcmp, NullCountsAsEmpty) {
    struct Row {
        const char *a, *b;
        int sign;
    };
    constexpr Row kRows[] = {
        {nullptr, nullptr, 0}, {nullptr, "", 0}, {"", nullptr, 0},      {"", "", 0},
        {"a", "a", 0},         {"a", "b", -1},   {"b", "a", 1},         {"a", nullptr, 1},
        {nullptr, "a", -1},    {"a", "", 1},     {"a", "ab", -1},       {"A", "a", -1},
        {"a", "\xFF", -1},     {"\xFF", "a", 1}, {"a\x80", "a\x7F", 1},
    };
    for (const Row &row : kRows) {
        const int result = XML_Strcmp(row.a, row.b);
        EXPECT_EQ((result > 0) - (result < 0), row.sign)
            << (row.a ? row.a : "(null)") << " and " << (row.b ? row.b : "(null)");
    }
}

}  // namespace
