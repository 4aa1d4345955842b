// Namespace declarations: making, replacing, resolving.
#include <gtest/gtest.h>

#include <string>

#include "compactxml.h"
#include "dom/namespace.h"
#include "tests/support/faults.h"
#include "tests/support/owners.h"
#include "tests/support/tree_dump.h"

namespace {

using cxml::XML_DOM_FindNsDecl;
using cxml::XML_DOM_LookupNsByPrefix;
using support::brokenLink;
using support::dumpTree;
using support::NodePtr;

constexpr char kXmlNamespace[] = "http://www.w3.org/XML/1998/namespace";

NodePtr element(const char *name = "e") {
    return NodePtr(XML_DOM_CreateElementNode(name));
}

XML_DOM_Node *addChild(XML_DOM_Node *parent) {
    XML_DOM_Node *child = XML_DOM_CreateElementNode("child");
    EXPECT_EQ(XML_DOM_AddChildNode(parent, child), XML_OK);
    return child;
}

// The declarations as "p=u (null)=d".
std::string declarations(const XML_DOM_Node *node) {
    std::string text;
    for (const XML_DOM_NsDecl *decl = node->firstNsDecl; decl; decl = decl->next) {
        if (!text.empty()) text += ' ';
        text += std::string(decl->prefix ? decl->prefix : "(null)") + "=" + decl->namespaceName;
    }
    return text;
}

// ---- declaring -----------------------------------------------------------------------------

TEST(Declare, PairsAndWhatBecomesOfThem) {
    struct Row {
        const char *prefix, *space;
        const char *declared;  // null: refused
    };
    constexpr Row kRows[] = {
        {"p", "u", "p=u"},
        {nullptr, "u", "(null)=u"},
        {"", "u", "(null)=u"},
        {nullptr, "", "(null)="},
        {nullptr, nullptr, "(null)="},
        {"", "", "(null)="},
        {"", nullptr, "(null)="},
        {"p", "", nullptr},
        {"p", nullptr, nullptr},
        // Intended: nothing is reserved here.
        {"xml", "other", "xml=other"},
        {"xmlns", "u", "xmlns=u"},
        {"not a name:", "u", "not a name:=u"},
        {"p", kXmlNamespace, "p=http://www.w3.org/XML/1998/namespace"},
        {"xml", "", nullptr},
    };
    using Function = std::uint32_t (*)(XML_DOM_Node *, const char *, const char *);
    for (const Function declare :
         {Function{XML_DOM_AddNodeNameSpace}, Function{XML_DOM_SetNodeDefineNsVal}}) {
        for (const Row &row : kRows) {
            const NodePtr node = element();
            EXPECT_EQ(declare(node.get(), row.prefix, row.space),
                      row.declared ? XML_OK : XML_REFUSED);
            EXPECT_EQ(declarations(node.get()), row.declared ? row.declared : "");
            EXPECT_EQ(brokenLink(node.get()), "");
        }
        EXPECT_EQ(declare(nullptr, "p", "u"), XML_REFUSED);
        EXPECT_EQ(declare(nullptr, nullptr, nullptr), XML_REFUSED);
    }
}

TEST(Declare, KeepsOrderAndCopies) {
    const NodePtr node = element();
    const std::string prefix = "p", space = "u";
    EXPECT_EQ(XML_DOM_AddNodeNameSpace(node.get(), prefix.c_str(), space.c_str()), XML_OK);
    EXPECT_EQ(XML_DOM_AddNodeNameSpace(node.get(), nullptr, "d"), XML_OK);
    EXPECT_EQ(XML_DOM_AddNodeNameSpace(node.get(), "a", "u"), XML_OK);
    EXPECT_EQ(declarations(node.get()), "p=u (null)=d a=u");
    EXPECT_NE(node->firstNsDecl->prefix, prefix.c_str());
    EXPECT_NE(node->firstNsDecl->namespaceName, space.c_str());
    EXPECT_EQ(brokenLink(node.get()), "");
}

TEST(Declare, OncePerPrefixAndElement) {
    const NodePtr node = element();
    EXPECT_EQ(XML_DOM_AddNodeNameSpace(node.get(), "p", "u"), XML_OK);
    EXPECT_EQ(XML_DOM_AddNodeNameSpace(node.get(), nullptr, "d"), XML_OK);
    const std::string before = dumpTree(node.get());
    EXPECT_EQ(XML_DOM_AddNodeNameSpace(node.get(), "p", "v"), XML_REFUSED);
    EXPECT_EQ(XML_DOM_AddNodeNameSpace(node.get(), "p", "u"), XML_REFUSED);
    EXPECT_EQ(XML_DOM_AddNodeNameSpace(node.get(), nullptr, ""), XML_REFUSED);
    EXPECT_EQ(XML_DOM_AddNodeNameSpace(node.get(), "", "d"), XML_REFUSED);
    EXPECT_EQ(dumpTree(node.get()), before);
    XML_DOM_Node *child = addChild(node.get());
    EXPECT_EQ(XML_DOM_AddNodeNameSpace(child, "p", "v"), XML_OK);  // another element may
}

TEST(Declare, ReplacingKeepsTheRecord) {
    const NodePtr node = element();
    EXPECT_EQ(XML_DOM_AddNodeNameSpace(node.get(), "p", "u"), XML_OK);
    EXPECT_EQ(XML_DOM_AddNodeNameSpace(node.get(), nullptr, "d"), XML_OK);
    ASSERT_NE(XML_DOM_AddAttr(node.get(), "p", "a", "1"), nullptr);
    const XML_DOM_NsDecl *record = node->firstNsDecl;
    EXPECT_EQ(XML_DOM_SetNodeDefineNsVal(node.get(), "p", "v"), XML_OK);
    EXPECT_EQ(XML_DOM_SetNodeDefineNsVal(node.get(), "", nullptr), XML_OK);
    EXPECT_EQ(XML_DOM_SetNodeDefineNsVal(node.get(), "q", "w"), XML_OK);
    EXPECT_EQ(declarations(node.get()), "p=v (null)= q=w");
    EXPECT_EQ(node->firstNsDecl, record);
    const char *space = nullptr;
    EXPECT_EQ(XML_DOM_GetAttrNameSpace(node->firstAttr, nullptr, &space), XML_OK);
    EXPECT_STREQ(space, "v");
    EXPECT_EQ(XML_DOM_SetNodeDefineNsVal(node.get(), "p", ""), XML_REFUSED);
    EXPECT_EQ(declarations(node.get()), "p=v (null)= q=w");
}

TEST(Declare, ReplacingByTheSameNameTouchesNothing) {
    const NodePtr node = element();
    EXPECT_EQ(XML_DOM_AddNodeNameSpace(node.get(), "p", "u"), XML_OK);
    const std::string before = dumpTree(node.get());
    support::FaultyHeap heap(0);
    EXPECT_EQ(XML_DOM_SetNodeDefineNsVal(node.get(), "p", "u"), XML_OK);
    EXPECT_EQ(XML_DOM_SetNodeDefineNsVal(node.get(), "p", node->firstNsDecl->namespaceName),
              XML_OK);
    EXPECT_EQ(heap.allocations(), 0u);
    EXPECT_EQ(dumpTree(node.get()), before);
}

TEST(DeclareInner, StoresThePairAsItComes) {
    struct Row {
        const char *prefix, *space, *declared;
    };
    constexpr Row kRows[] = {
        {"p", "u", "p=u"},
        {"p", "", "p="},
        {nullptr, "u", "(null)=u"},
        {nullptr, "", "(null)="},
        {"", "u", "=u"},  // Intended: stored as "", though it is the
                          // prefix null for every search
        {"xmlns", "", "xmlns="},
    };
    for (const std::uint32_t replace : {0u, 1u, 2u}) {
        for (const Row &row : kRows) {
            const NodePtr node = element();
            EXPECT_EQ(XML_DOM_AddNodeNameSpaceInner(node.get(), row.prefix, row.space, replace),
                      XML_OK);
            EXPECT_EQ(declarations(node.get()), row.declared);
        }
    }
    const NodePtr text(XML_DOM_CreateTextNode("t"));  // the type is not looked at
    EXPECT_EQ(XML_DOM_AddNodeNameSpaceInner(text.get(), "p", "u", 0), XML_OK);
    EXPECT_EQ(XML_DOM_AddNodeNameSpace(text.get(), "q", "u"), XML_OK);
    EXPECT_EQ(declarations(text.get()), "p=u q=u");
}

TEST(DeclareInner, EmptyAndNullPrefixAreOne) {
    for (const char *first : {"", static_cast<const char *>(nullptr)}) {
        for (const char *second : {"", static_cast<const char *>(nullptr)}) {
            const NodePtr node = element();
            EXPECT_EQ(XML_DOM_AddNodeNameSpaceInner(node.get(), first, "u", 0), XML_OK);
            const std::string before = dumpTree(node.get());
            EXPECT_EQ(XML_DOM_AddNodeNameSpaceInner(node.get(), second, "v", 0), XML_REFUSED);
            EXPECT_EQ(dumpTree(node.get()), before);
            EXPECT_EQ(XML_DOM_AddNodeNameSpaceInner(node.get(), second, "v", 1), XML_OK);
            EXPECT_EQ(node->firstNsDecl, node->lastNsDecl);
            EXPECT_STREQ(node->firstNsDecl->namespaceName, "v");
            EXPECT_EQ(node->firstNsDecl->prefix == nullptr, first == nullptr);
            EXPECT_EQ(XML_DOM_AddNodeNameSpaceInner(node.get(), second, "w", 0x80000000u), XML_OK);
            EXPECT_STREQ(node->firstNsDecl->namespaceName, "w");
        }
    }
}

TEST(DeclareInner, Refusals) {
    const NodePtr node = element();
    EXPECT_EQ(XML_DOM_AddNodeNameSpaceInner(nullptr, "p", "u", 0), XML_REFUSED);
    EXPECT_EQ(XML_DOM_AddNodeNameSpaceInner(node.get(), "p", nullptr, 0), XML_REFUSED);
    EXPECT_EQ(XML_DOM_AddNodeNameSpaceInner(node.get(), nullptr, nullptr, 1), XML_REFUSED);
    EXPECT_EQ(declarations(node.get()), "");
}

// ---- resolving -----------------------------------------------------------------------------

TEST(FindDeclaration, FirstOfTheListWithThatPrefix) {
    const NodePtr node = element();
    EXPECT_EQ(XML_DOM_FindNsDecl(nullptr, "p"), nullptr);
    EXPECT_EQ(XML_DOM_FindNsDecl(nullptr, nullptr), nullptr);
    EXPECT_EQ(XML_DOM_AddNodeNameSpace(node.get(), "p", "u"), XML_OK);
    EXPECT_EQ(XML_DOM_FindNsDecl(node->firstNsDecl, nullptr), nullptr);
    EXPECT_EQ(XML_DOM_AddNodeNameSpace(node.get(), nullptr, "d"), XML_OK);
    EXPECT_EQ(XML_DOM_FindNsDecl(node->firstNsDecl, "p"), node->firstNsDecl);
    EXPECT_EQ(XML_DOM_FindNsDecl(node->firstNsDecl, nullptr), node->lastNsDecl);
    EXPECT_EQ(XML_DOM_FindNsDecl(node->firstNsDecl, ""), node->lastNsDecl);
    EXPECT_EQ(XML_DOM_FindNsDecl(node->firstNsDecl, "q"), nullptr);
    EXPECT_EQ(XML_DOM_FindNsDecl(node->firstNsDecl, "xml"), nullptr);
}

TEST(ResolvePrefix, NearestDeclarationWins) {
    const NodePtr root = element();
    XML_DOM_Node *middle = addChild(root.get());
    XML_DOM_Node *leaf = addChild(middle);
    XML_DOM_Node *text = XML_DOM_CreateTextNode("t");
    ASSERT_EQ(XML_DOM_AddChildNode(leaf, text), XML_OK);
    ASSERT_EQ(XML_DOM_AddNodeNameSpace(root.get(), "p", "root"), XML_OK);
    ASSERT_EQ(XML_DOM_AddNodeNameSpace(root.get(), nullptr, "default"), XML_OK);
    ASSERT_EQ(XML_DOM_AddNodeNameSpace(middle, "p", "middle"), XML_OK);
    EXPECT_EQ(XML_DOM_LookupNsByPrefix(root.get(), "p"), root->firstNsDecl);
    EXPECT_EQ(XML_DOM_LookupNsByPrefix(middle, "p"), middle->firstNsDecl);
    EXPECT_EQ(XML_DOM_LookupNsByPrefix(leaf, "p"), middle->firstNsDecl);
    EXPECT_EQ(XML_DOM_LookupNsByPrefix(text, "p"), middle->firstNsDecl);
    EXPECT_EQ(XML_DOM_LookupNsByPrefix(leaf, nullptr), root->lastNsDecl);
    EXPECT_EQ(XML_DOM_LookupNsByPrefix(leaf, ""), root->lastNsDecl);
    EXPECT_EQ(XML_DOM_LookupNsByPrefix(leaf, "q"), nullptr);
    EXPECT_EQ(XML_DOM_LookupNsByPrefix(leaf, "xmlns"), nullptr);
    // An undeclared default namespace is a declaration too.
    ASSERT_EQ(XML_DOM_AddNodeNameSpace(middle, nullptr, ""), XML_OK);
    EXPECT_EQ(XML_DOM_LookupNsByPrefix(leaf, nullptr), middle->lastNsDecl);
}

TEST(ResolvePrefix, XmlIsBuiltInUntilSomebodyDeclaresIt) {
    const NodePtr root = element();
    const NodePtr other = element();
    XML_DOM_Node *child = addChild(root.get());
    const XML_DOM_NsDecl *builtIn = XML_DOM_LookupNsByPrefix(root.get(), "xml");
    ASSERT_NE(builtIn, nullptr);
    EXPECT_STREQ(builtIn->prefix, "xml");
    EXPECT_STREQ(builtIn->namespaceName, kXmlNamespace);
    EXPECT_EQ(builtIn->next, nullptr);
    EXPECT_EQ(XML_DOM_LookupNsByPrefix(child, "xml"), builtIn);
    EXPECT_EQ(XML_DOM_LookupNsByPrefix(other.get(), "xml"), builtIn);
    EXPECT_EQ(XML_DOM_LookupNsByPrefix(root.get(), "XML"), nullptr);
    // Intended: a declaration of xml in scope is found first, even a wrong one.
    ASSERT_EQ(XML_DOM_AddNodeNameSpace(root.get(), "xml", "other"), XML_OK);
    EXPECT_EQ(XML_DOM_LookupNsByPrefix(child, "xml"), root->firstNsDecl);
    EXPECT_EQ(XML_DOM_LookupNsByPrefix(other.get(), "xml"), builtIn);
    ASSERT_NE(XML_DOM_AddAttr(child, "xml", "a", "1"), nullptr);
    EXPECT_STREQ(XML_DOM_GetNodeNsAttribute(child, "other", "a"), "1");
}

// ---- names of elements ---------------------------------------------------------------------

TEST(ElementNamespace, SetAndRead) {
    const NodePtr root = element();
    XML_DOM_Node *child = addChild(root.get());
    ASSERT_EQ(XML_DOM_AddNodeNameSpace(root.get(), "p", "u"), XML_OK);
    const char *prefix = "?", *space = "?";
    EXPECT_EQ(XML_DOM_GetNodeNameSpace(child, &prefix, &space), XML_OK);
    EXPECT_EQ(prefix, nullptr);
    EXPECT_EQ(space, nullptr);
    EXPECT_EQ(XML_DOM_SetNodeNameSpace(child, "p"), XML_OK);
    EXPECT_EQ(child->ns, root->firstNsDecl);
    EXPECT_EQ(XML_DOM_GetNodeNameSpace(child, &prefix, &space), XML_OK);
    EXPECT_STREQ(prefix, "p");
    EXPECT_STREQ(space, "u");
    EXPECT_EQ(XML_DOM_SetNodeNameSpace(child, "q"), XML_REFUSED);
    EXPECT_EQ(child->ns, root->firstNsDecl);
    EXPECT_EQ(XML_DOM_SetNodeNameSpace(child, "xml"), XML_OK);
    EXPECT_EQ(XML_DOM_GetNodeNameSpace(child, nullptr, &space), XML_OK);
    EXPECT_STREQ(space, kXmlNamespace);
    EXPECT_EQ(XML_DOM_GetNodeNameSpace(child, &prefix, nullptr), XML_OK);
    EXPECT_STREQ(prefix, "xml");
    EXPECT_EQ(XML_DOM_SetNodeNameSpace(child, ""), XML_OK);
    EXPECT_EQ(child->ns, nullptr);
    EXPECT_EQ(XML_DOM_SetNodeNameSpace(child, "p"), XML_OK);
    EXPECT_EQ(XML_DOM_SetNodeNameSpace(child, nullptr), XML_OK);
    EXPECT_EQ(child->ns, nullptr);
}

TEST(ElementNamespace, WithoutAPrefixTheDefaultIsResolvedWhenRead) {
    const NodePtr root = element();
    XML_DOM_Node *child = addChild(root.get());
    EXPECT_EQ(XML_DOM_SetNodeNameSpace(child, nullptr), XML_OK);
    ASSERT_EQ(XML_DOM_AddNodeNameSpace(root.get(), nullptr, "d"), XML_OK);
    const char *prefix = "?", *space = "?";
    EXPECT_EQ(XML_DOM_GetNodeNameSpace(child, &prefix, &space), XML_OK);
    EXPECT_EQ(prefix, nullptr);
    EXPECT_STREQ(space, "d");
    ASSERT_EQ(XML_DOM_AddNodeNameSpace(child, nullptr, ""), XML_OK);
    EXPECT_EQ(XML_DOM_GetNodeNameSpace(child, nullptr, &space), XML_OK);
    EXPECT_STREQ(space, "");
    // Clipped out of the scope of all declarations but its own.
    XML_DOM_DelNode(child);
    child = addChild(root.get());
    XML_DOM_Clip(child);
    const NodePtr clipped(child);
    EXPECT_EQ(XML_DOM_GetNodeNameSpace(child, &prefix, &space), XML_OK);
    EXPECT_EQ(space, nullptr);
}

TEST(ElementNamespace, Refusals) {
    const NodePtr root = element();
    const NodePtr text(XML_DOM_CreateTextNode("t"));
    ASSERT_EQ(XML_DOM_AddNodeNameSpace(text.get(), "p", "u"), XML_OK);
    EXPECT_EQ(XML_DOM_SetNodeNameSpace(nullptr, nullptr), XML_REFUSED);
    EXPECT_EQ(XML_DOM_SetNodeNameSpace(nullptr, "xml"), XML_REFUSED);
    EXPECT_EQ(XML_DOM_SetNodeNameSpace(text.get(), "p"), XML_REFUSED);
    EXPECT_EQ(XML_DOM_SetNodeNameSpace(text.get(), nullptr), XML_REFUSED);
    EXPECT_EQ(text->ns, nullptr);
    const char *prefix = "?", *space = "?";
    EXPECT_EQ(XML_DOM_GetNodeNameSpace(nullptr, &prefix, &space), XML_REFUSED);
    EXPECT_EQ(XML_DOM_GetNodeNameSpace(root.get(), nullptr, nullptr), XML_REFUSED);
    EXPECT_EQ(XML_DOM_GetNodeNameSpace(nullptr, nullptr, nullptr), XML_REFUSED);
    EXPECT_STREQ(prefix, "?");
    EXPECT_STREQ(space, "?");
}

}  // namespace
