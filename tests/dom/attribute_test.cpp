// Attributes: adding with its checks, removing, and the ways to find one.
#include <gtest/gtest.h>

#include <string>

#include "compactxml.h"
#include "dom/namespace.h"
#include "tests/support/owners.h"
#include "tests/support/tree_dump.h"

namespace {

using cxml::XML_DOM_LookupNsByPrefix;
using support::brokenLink;
using support::dumpTree;
using support::NodePtr;

constexpr char kXmlNamespace[] = "http://www.w3.org/XML/1998/namespace";

NodePtr element(const char *name = "e") {
    return NodePtr(XML_DOM_CreateElementNode(name));
}

XML_DOM_Node *addChild(const NodePtr &parent, const char *name = "child") {
    XML_DOM_Node *child = XML_DOM_CreateElementNode(name);
    EXPECT_EQ(XML_DOM_AddChildNode(parent.get(), child), XML_OK);
    return child;
}

// The attributes as "name=value p:name=value", with the prefix as the serializer would write it.
std::string attributes(const XML_DOM_Node *node) {
    std::string text;
    for (const XML_DOM_Attr *attr = XML_DOM_GetFirstAttr(node); attr;
         attr = XML_DOM_GetNextAttr(attr)) {
        if (!text.empty()) text += ' ';
        if (attr->ns) text += std::string(attr->ns->prefix) + ":";
        text += std::string(attr->name) + "=" + XML_DOM_GetAttrValByHandle(attr);
    }
    return text;
}

// ---- adding --------------------------------------------------------------------------------

TEST(AddAttr, KeepsOrderAndCopies) {
    const NodePtr node = element();
    const std::string name = "b", value = "2 <\"> \xD6\xD0";
    ASSERT_NE(XML_DOM_AddAttr(node.get(), nullptr, "a", "1"), nullptr);
    const XML_DOM_Attr *b = XML_DOM_AddAttr(node.get(), "", name.c_str(), value.c_str());
    ASSERT_NE(b, nullptr);
    ASSERT_NE(XML_DOM_AddAttr(node.get(), nullptr, "c", ""), nullptr);
    EXPECT_EQ(attributes(node.get()), "a=1 b=" + value + " c=");
    EXPECT_NE(b->name, name.c_str());
    EXPECT_NE(b->value, value.c_str());
    EXPECT_EQ(b->owner, node.get());
    EXPECT_EQ(b->ns, nullptr);
    EXPECT_EQ(brokenLink(node.get()), "");
}

TEST(AddAttr, Refusals) {
    const NodePtr node = element();
    ASSERT_EQ(XML_DOM_AddNodeNameSpace(node.get(), "p", "u"), XML_OK);
    ASSERT_EQ(XML_DOM_AddNodeNameSpace(node.get(), "same", "u"), XML_OK);
    ASSERT_EQ(XML_DOM_AddNodeNameSpaceInner(node.get(), "none", "", 0), XML_OK);
    ASSERT_NE(XML_DOM_AddAttr(node.get(), nullptr, "a", "1"), nullptr);
    ASSERT_NE(XML_DOM_AddAttr(node.get(), "p", "b", "2"), nullptr);
    struct Row {
        const char *what, *prefix, *name, *value;
    };
    constexpr Row kRows[] = {
        {"no value", nullptr, "x", nullptr},
        {"no name", nullptr, nullptr, "1"},
        {"no name behind a prefix", "p", nullptr, "1"},
        {"empty name", nullptr, "", "1"},
        {"name that starts with a digit", nullptr, "1x", "1"},
        {"name with a colon", nullptr, "p:x", "1"},
        {"name that does not convert", nullptr, "x\xFF", "1"},
        {"xmlns", nullptr, "xmlns", "u"},
        {"xmlns behind a prefix", "p", "xmlns", "u"},
        {"xmlns behind xml", "xml", "xmlns", "u"},
        {"xmlns behind an undeclared prefix", "q", "xmlns", "u"},
        {"same name", nullptr, "a", "2"},
        {"same name, empty prefix", "", "a", "2"},
        {"same name and prefix", "p", "b", "3"},
        {"same name and namespace, other prefix", "same", "b", "3"},
        {"same name, prefix bound to the empty name", "none", "a", "3"},
        {"undeclared prefix", "q", "x", "1"},
        {"undeclared prefix, name in use", "q", "a", "1"},
        {"the prefix xmlns", "xmlns", "p", "u"},
    };
    const std::string before = dumpTree(node.get());
    for (const Row &row : kRows) {
        EXPECT_EQ(XML_DOM_AddAttr(node.get(), row.prefix, row.name, row.value), nullptr)
            << row.what;
        EXPECT_EQ(dumpTree(node.get()), before) << row.what;
    }
    EXPECT_EQ(XML_DOM_AddAttr(nullptr, nullptr, "x", "1"), nullptr);
}

TEST(AddAttr, AnUndeclaredPrefixLeavesAnEmptyListEmpty) {
    const NodePtr node = element();
    EXPECT_EQ(XML_DOM_AddAttr(node.get(), "p", "x", "1"), nullptr);
    EXPECT_EQ(node->firstAttr, nullptr);
    EXPECT_EQ(node->lastAttr, nullptr);
    ASSERT_NE(XML_DOM_AddAttr(node.get(), nullptr, "a", "1"), nullptr);
    EXPECT_EQ(XML_DOM_AddAttr(node.get(), "p", "x", "1"), nullptr);
    ASSERT_NE(XML_DOM_AddAttr(node.get(), nullptr, "b", "2"), nullptr);
    EXPECT_EQ(attributes(node.get()), "a=1 b=2");
    EXPECT_EQ(brokenLink(node.get()), "");
}

TEST(AddAttr, SameLocalNameInOtherNamespaces) {
    const NodePtr node = element();
    ASSERT_EQ(XML_DOM_AddNodeNameSpace(node.get(), nullptr, "d"), XML_OK);
    ASSERT_EQ(XML_DOM_AddNodeNameSpace(node.get(), "p", "u"), XML_OK);
    ASSERT_EQ(XML_DOM_AddNodeNameSpace(node.get(), "q", "v"), XML_OK);
    ASSERT_EQ(XML_DOM_AddNodeNameSpace(node.get(), "d", "d"), XML_OK);
    EXPECT_NE(XML_DOM_AddAttr(node.get(), nullptr, "a", "0"), nullptr);
    EXPECT_NE(XML_DOM_AddAttr(node.get(), "p", "a", "1"), nullptr);
    EXPECT_NE(XML_DOM_AddAttr(node.get(), "q", "a", "2"), nullptr);
    EXPECT_NE(XML_DOM_AddAttr(node.get(), "xml", "a", "3"), nullptr);
    // The unprefixed one is in no namespace, even below a default declaration.
    EXPECT_NE(XML_DOM_AddAttr(node.get(), "d", "a", "4"), nullptr);
    EXPECT_EQ(attributes(node.get()), "a=0 p:a=1 q:a=2 xml:a=3 d:a=4");
}

TEST(AddAttr, PrefixesComeFromTheNearestDeclaration) {
    const NodePtr root = element();
    XML_DOM_Node *child = addChild(root);
    ASSERT_EQ(XML_DOM_AddNodeNameSpace(root.get(), "p", "far"), XML_OK);
    ASSERT_EQ(XML_DOM_AddNodeNameSpace(root.get(), "q", "up"), XML_OK);
    ASSERT_EQ(XML_DOM_AddNodeNameSpace(child, "p", "near"), XML_OK);
    const XML_DOM_Attr *p = XML_DOM_AddAttr(child, "p", "a", "1");
    const XML_DOM_Attr *q = XML_DOM_AddAttr(child, "q", "a", "1");
    ASSERT_TRUE(p && q);
    EXPECT_EQ(p->ns, child->firstNsDecl);
    EXPECT_EQ(q->ns, root->lastNsDecl);
}

TEST(AddAttr, TheXmlPrefixNeedsNoDeclaration) {
    const NodePtr node = element();
    const XML_DOM_Attr *attr = XML_DOM_AddAttr(node.get(), "xml", "lang", "en");
    ASSERT_NE(attr, nullptr);
    EXPECT_EQ(attr->ns, XML_DOM_LookupNsByPrefix(node.get(), "xml"));
    EXPECT_STREQ(attr->ns->prefix, "xml");
    EXPECT_STREQ(attr->ns->namespaceName, kXmlNamespace);
    EXPECT_EQ(XML_DOM_AddAttr(node.get(), "xml", "lang", "de"), nullptr);
    EXPECT_EQ(XML_DOM_AddAttr(node.get(), "XML", "lang", "de"), nullptr);
    // A declaration of one's own with the same namespace name makes the same expanded name.
    ASSERT_EQ(XML_DOM_AddNodeNameSpace(node.get(), "x", kXmlNamespace), XML_OK);
    EXPECT_EQ(XML_DOM_AddAttr(node.get(), "x", "lang", "de"), nullptr);
}

TEST(AddAttrInner, ChecksNothingButPointers) {
    const NodePtr node = element();
    for (const char *name : {"a", "a", "xmlns", "p:x", "1", ""}) {
        const XML_DOM_Attr *attr = XML_DOM_AddAttrInner(node.get(), name, "v");
        ASSERT_NE(attr, nullptr);
        EXPECT_EQ(node->lastAttr, attr);
        EXPECT_STREQ(attr->name, name);
        EXPECT_STREQ(attr->value, "v");
        EXPECT_EQ(attr->ns, nullptr);
        EXPECT_EQ(attr->next, nullptr);
        EXPECT_EQ(attr->owner, node.get());
    }
    EXPECT_EQ(brokenLink(node.get()), "");
    const std::string before = dumpTree(node.get());
    EXPECT_EQ(XML_DOM_AddAttrInner(nullptr, "a", "v"), nullptr);
    EXPECT_EQ(XML_DOM_AddAttrInner(node.get(), nullptr, "v"), nullptr);
    EXPECT_EQ(XML_DOM_AddAttrInner(node.get(), "a", nullptr), nullptr);
    EXPECT_EQ(dumpTree(node.get()), before);
}

TEST(SetAttrNs, SetsChangesAndRemovesThePrefix) {
    const NodePtr root = element();
    XML_DOM_Node *child = addChild(root);
    ASSERT_EQ(XML_DOM_AddNodeNameSpace(root.get(), "p", "u"), XML_OK);
    ASSERT_EQ(XML_DOM_AddNodeNameSpace(root.get(), nullptr, "d"), XML_OK);
    XML_DOM_Attr *attr = XML_DOM_AddAttr(child, nullptr, "a", "1");
    ASSERT_NE(attr, nullptr);
    EXPECT_EQ(XML_DOM_SetAttrNsInner(attr, "p"), XML_OK);
    EXPECT_EQ(attr->ns, root->firstNsDecl);
    EXPECT_EQ(XML_DOM_SetAttrNsInner(attr, "q"), XML_REFUSED);
    EXPECT_EQ(attr->ns, root->firstNsDecl);
    EXPECT_EQ(XML_DOM_SetAttrNsInner(attr, nullptr), XML_OK);
    EXPECT_EQ(attr->ns, nullptr);  // not the default declaration
    EXPECT_EQ(XML_DOM_SetAttrNsInner(attr, "xml"), XML_OK);
    EXPECT_STREQ(attr->ns->namespaceName, kXmlNamespace);
    EXPECT_EQ(XML_DOM_SetAttrNsInner(attr, ""), XML_OK);
    EXPECT_EQ(attr->ns, nullptr);
    EXPECT_EQ(XML_DOM_SetAttrNsInner(nullptr, "p"), XML_REFUSED);
    EXPECT_EQ(XML_DOM_SetAttrNsInner(nullptr, nullptr), XML_REFUSED);
}

// ---- removing ------------------------------------------------------------------------------

TEST(DelAttr, FirstMiddleLastAndOnly) {
    struct Row {
        const char *present;  // one letter an attribute
        const char *removed, *left;
    };
    constexpr Row kRows[] = {
        {"a", "a", ""},
        {"ab", "a", "b=v"},
        {"ab", "b", "a=v"},
        {"abc", "a", "b=v c=v"},
        {"abc", "b", "a=v c=v"},
        {"abc", "c", "a=v b=v"},
        {"abc", "d", "a=v b=v c=v"},
        {"aba", "a", "b=v a=v"},
        {"aa", "a", "a=v"},
        {"", "a", ""},
    };
    for (const Row &row : kRows) {
        SCOPED_TRACE(std::string(row.present) + " without " + row.removed);
        const NodePtr node = element();
        for (const char *name = row.present; *name; ++name) {
            const char one[] = {*name, '\0'};
            ASSERT_NE(XML_DOM_AddAttrInner(node.get(), one, "v"), nullptr);
        }
        XML_DOM_DelAttr(node.get(), nullptr, row.removed);
        EXPECT_EQ(attributes(node.get()), row.left);
        EXPECT_EQ(brokenLink(node.get()), "");
        EXPECT_EQ(node->firstAttr == nullptr, node->lastAttr == nullptr);
        ASSERT_NE(XML_DOM_AddAttrInner(node.get(), "z", "v"), nullptr);
        EXPECT_EQ(brokenLink(node.get()), "");
    }
}

// Intended: two prefixes for one namespace are one to AddAttr but two to DelAttr.
TEST(DelAttr, MatchesThePrefixAsText) {
    const NodePtr root = element();
    ASSERT_EQ(XML_DOM_AddNodeNameSpace(root.get(), "p", "u"), XML_OK);
    ASSERT_EQ(XML_DOM_AddNodeNameSpace(root.get(), "same", "u"), XML_OK);
    struct Row {
        const char *prefix, *name, *left;
    };
    constexpr Row kRows[] = {
        {nullptr, "a", "p:a=2 xml:a=3"},
        {"", "a", "p:a=2 xml:a=3"},
        {"p", "a", "a=1 xml:a=3"},
        {"xml", "a", "a=1 p:a=2"},
        {"same", "a", "a=1 p:a=2 xml:a=3"},
        {"u", "a", "a=1 p:a=2 xml:a=3"},
        {"P", "a", "a=1 p:a=2 xml:a=3"},
        {"p", "A", "a=1 p:a=2 xml:a=3"},
        {"p", "", "a=1 p:a=2 xml:a=3"},
        {"p", nullptr, "a=1 p:a=2 xml:a=3"},
        {nullptr, "p:a", "a=1 p:a=2 xml:a=3"},
    };
    for (const Row &row : kRows) {
        XML_DOM_Node *node = addChild(root);
        ASSERT_NE(XML_DOM_AddAttr(node, nullptr, "a", "1"), nullptr);
        ASSERT_NE(XML_DOM_AddAttr(node, "p", "a", "2"), nullptr);
        ASSERT_NE(XML_DOM_AddAttr(node, "xml", "a", "3"), nullptr);
        XML_DOM_DelAttr(node, row.prefix, row.name);
        EXPECT_EQ(attributes(node), row.left)
            << (row.prefix ? row.prefix : "(null)") << " " << (row.name ? row.name : "(null)");
        EXPECT_EQ(brokenLink(node), "");
    }
    XML_DOM_DelAttr(nullptr, nullptr, "a");
}

TEST(DelAttr, AnAttributeWithAnEmptyNameStays) {
    const NodePtr node = element();
    ASSERT_NE(XML_DOM_AddAttrInner(node.get(), "", "v"), nullptr);
    XML_DOM_DelAttr(node.get(), nullptr, "");
    EXPECT_EQ(attributes(node.get()), "=v");
}

// ---- reading -------------------------------------------------------------------------------

TEST(GetAttr, WithoutAnElementOrAttribute) {
    EXPECT_EQ(XML_DOM_GetFirstAttr(nullptr), nullptr);
    EXPECT_EQ(XML_DOM_GetNextAttr(nullptr), nullptr);
    EXPECT_EQ(XML_DOM_GetAttrValByHandle(nullptr), nullptr);
    const NodePtr node = element();
    EXPECT_EQ(XML_DOM_GetFirstAttr(node.get()), nullptr);
    EXPECT_EQ(XML_DOM_GetNodeAttrValByName(node.get(), "a"), nullptr);
    const NodePtr text(XML_DOM_CreateTextNode("t"));
    EXPECT_EQ(XML_DOM_GetFirstAttr(text.get()), nullptr);
}

TEST(GetAttrNameSpace, WritesWhatIsAskedFor) {
    const NodePtr node = element();
    ASSERT_EQ(XML_DOM_AddNodeNameSpace(node.get(), nullptr, "d"), XML_OK);
    ASSERT_EQ(XML_DOM_AddNodeNameSpace(node.get(), "p", "u"), XML_OK);
    const XML_DOM_Attr *plain = XML_DOM_AddAttr(node.get(), nullptr, "a", "1");
    const XML_DOM_Attr *prefixed = XML_DOM_AddAttr(node.get(), "p", "b", "2");
    const char *name = "?", *space = "?";
    EXPECT_EQ(XML_DOM_GetAttrNameSpace(plain, &name, &space), XML_OK);
    EXPECT_STREQ(name, "a");
    EXPECT_EQ(space, nullptr);  // the default namespace does not reach attributes here
    EXPECT_EQ(XML_DOM_GetAttrNameSpace(prefixed, &name, nullptr), XML_OK);
    EXPECT_STREQ(name, "b");
    EXPECT_EQ(space, nullptr);
    EXPECT_EQ(XML_DOM_GetAttrNameSpace(prefixed, nullptr, &space), XML_OK);
    EXPECT_STREQ(space, "u");
    EXPECT_EQ(XML_DOM_GetAttrNameSpace(prefixed, nullptr, nullptr), XML_REFUSED);
    name = space = "?";
    EXPECT_EQ(XML_DOM_GetAttrNameSpace(nullptr, &name, &space), XML_REFUSED);
    EXPECT_STREQ(name, "?");
    EXPECT_STREQ(space, "?");
}

TEST(GetNodeNsAttribute, ByNameAndNamespace) {
    const NodePtr node = element();
    ASSERT_EQ(XML_DOM_AddNodeNameSpace(node.get(), "p", "u"), XML_OK);
    ASSERT_EQ(XML_DOM_AddNodeNameSpace(node.get(), "q", "v"), XML_OK);
    ASSERT_NE(XML_DOM_AddAttr(node.get(), "p", "a", "in u"), nullptr);
    ASSERT_NE(XML_DOM_AddAttr(node.get(), nullptr, "a", "in none"), nullptr);
    ASSERT_NE(XML_DOM_AddAttr(node.get(), "q", "a", "in v"), nullptr);
    ASSERT_NE(XML_DOM_AddAttr(node.get(), "xml", "lang", "en"), nullptr);
    struct Row {
        const char *space, *name, *value;
    };
    constexpr Row kRows[] = {
        {"u", "a", "in u"},      {"v", "a", "in v"},  {nullptr, "a", "in u"},
        {"w", "a", nullptr},     {"", "a", nullptr},  {kXmlNamespace, "lang", "en"},
        {"U", "a", nullptr},     {"u", "A", nullptr}, {"u", "b", nullptr},
        {nullptr, "b", nullptr}, {"u", "", nullptr},  {nullptr, "lang", "en"},
    };
    for (const Row &row : kRows) {
        EXPECT_STREQ(XML_DOM_GetNodeNsAttribute(node.get(), row.space, row.name), row.value)
            << (row.space ? row.space : "(null)") << " " << row.name;
    }
    EXPECT_STREQ(XML_DOM_GetNodeAttrValByName(node.get(), "a"), "in u");
    EXPECT_EQ(XML_DOM_GetNodeNsAttribute(nullptr, "u", "a"), nullptr);
    EXPECT_EQ(XML_DOM_GetNodeNsAttribute(node.get(), "u", nullptr), nullptr);
    EXPECT_EQ(XML_DOM_GetNodeNsAttribute(node.get(), nullptr, nullptr), nullptr);
    EXPECT_EQ(XML_DOM_GetNodeAttrValByName(nullptr, "a"), nullptr);
    EXPECT_EQ(XML_DOM_GetNodeAttrValByName(node.get(), nullptr), nullptr);
}

// Intended: here, unlike in Namespaces in XML 1.0, the default namespace reaches an attribute
// without a prefix.
TEST(GetNodeNsAttribute, TheDefaultNamespaceReachesUnprefixedAttributes) {
    const NodePtr root = element();
    XML_DOM_Node *child = addChild(root);
    ASSERT_NE(XML_DOM_AddAttr(child, nullptr, "a", "1"), nullptr);
    EXPECT_EQ(XML_DOM_GetNodeNsAttribute(child, "n", "a"), nullptr);
    EXPECT_EQ(XML_DOM_GetNodeNsAttribute(child, "", "a"), nullptr);
    ASSERT_EQ(XML_DOM_AddNodeNameSpace(root.get(), nullptr, "n"), XML_OK);
    EXPECT_STREQ(XML_DOM_GetNodeNsAttribute(child, "n", "a"), "1");
    ASSERT_EQ(XML_DOM_AddNodeNameSpace(child, nullptr, ""), XML_OK);
    EXPECT_EQ(XML_DOM_GetNodeNsAttribute(child, "n", "a"), nullptr);
    EXPECT_STREQ(XML_DOM_GetNodeNsAttribute(child, "", "a"), "1");
    const char *name = nullptr, *space = "?";
    EXPECT_EQ(XML_DOM_GetAttrNameSpace(child->firstAttr, &name, &space), XML_OK);
    EXPECT_EQ(space, nullptr);
}

TEST(GetNodeNsAttribute, ThePrefixIsResolvedAnewEachTime) {
    const NodePtr root = element();
    ASSERT_EQ(XML_DOM_AddNodeNameSpace(root.get(), "p", "old"), XML_OK);
    XML_DOM_Node *child = addChild(root);
    ASSERT_NE(XML_DOM_AddAttr(child, "p", "a", "1"), nullptr);
    EXPECT_STREQ(XML_DOM_GetNodeNsAttribute(child, "old", "a"), "1");
    ASSERT_EQ(XML_DOM_AddNodeNameSpace(child, "p", "new"), XML_OK);
    EXPECT_EQ(XML_DOM_GetNodeNsAttribute(child, "old", "a"), nullptr);
    EXPECT_STREQ(XML_DOM_GetNodeNsAttribute(child, "new", "a"), "1");
    const char *space = nullptr;  // the declaration found when it was set
    EXPECT_EQ(XML_DOM_GetAttrNameSpace(child->firstAttr, nullptr, &space), XML_OK);
    EXPECT_STREQ(space, "old");
}

TEST(GetNodeNsAttribute, ADetachedElementLosesTheDeclarationsAbove) {
    const NodePtr root = element();
    ASSERT_EQ(XML_DOM_AddNodeNameSpace(root.get(), "p", "u"), XML_OK);
    XML_DOM_Node *child = addChild(root);
    ASSERT_NE(XML_DOM_AddAttr(child, "p", "a", "1"), nullptr);
    XML_DOM_Clip(child);
    const NodePtr clipped(child);
    EXPECT_EQ(XML_DOM_GetNodeNsAttribute(child, "u", "a"), nullptr);
    EXPECT_STREQ(XML_DOM_GetNodeNsAttribute(child, nullptr, "a"), "1");
}

}  // namespace
