// Copies: what they hold, how their prefixes resolve in the new place, and what a failure leaves.
#include <gtest/gtest.h>

#include <string>

#include "compactxml.h"
#include "tests/support/faults.h"
#include "tests/support/owners.h"
#include "tests/support/sample_trees.h"
#include "tests/support/tree_dump.h"
#include "tests/support/written.h"

namespace {

using support::brokenLink;
using support::dumpTree;
using support::FaultyHeap;
using support::NodePtr;
using support::outline;
using support::parsed;
using support::written;

XML_DOM_Node *at(const NodePtr &root, const char *path) {
    return XML_DOM_SelectSingleNode(root.get(), path);
}

// ---------------------------------------------------------------- one node

TEST(CopyNode, TextAndCData) {
    for (const char *value : {"", "abc", " \xB6\xCB ", "]]>"}) {
        for (const std::uint32_t type : {XML_DOM_NODE_TEXT, XML_DOM_NODE_CDATA}) {
            const NodePtr node(XML_DOM_CreateTextualNodeInner(
                type, value, static_cast<std::uint32_t>(std::string(value).size())));
            const NodePtr copy(XML_DOM_CopyNode(node.get()));
            ASSERT_TRUE(copy);
            EXPECT_EQ(copy->type, type);
            EXPECT_STREQ(copy->value, value);
            EXPECT_NE(copy->value, node->value);
            EXPECT_EQ(copy->name, nullptr);
        }
    }
}

struct CopyCase {
    const char *document, *path, *copy;
};
constexpr CopyCase kCopies[] = {
    {"<r><a>t<b/></a></r>", "/r/a", "<a/>"},
    {"<r><a y='2' x='1'/></r>", "/r/a", "<a y=\"2\" x=\"1\"/>"},
    {"<r><a xmlns:p='u' xmlns='d' p:x='1'/></r>", "/r/a",
     "<a xmlns:p=\"u\" xmlns=\"d\" p:x=\"1\"/>"},
    // What is declared above is declared on the copy, each prefix once, as it is met.
    {"<r xmlns:p='u' xmlns:q='v'><p:a/></r>", "/r/a", "<p:a xmlns:p=\"u\"/>"},
    {"<r xmlns:p='u' xmlns:q='v'><p:a q:x='1' p:y='2' q:z='3'/></r>", "/r/a",
     "<p:a xmlns:p=\"u\" xmlns:q=\"v\" q:x=\"1\" p:y=\"2\" q:z=\"3\"/>"},
    {"<r xmlns:p='u'><m xmlns:p='v'><p:a/></m></r>", "/r/m/a", "<p:a xmlns:p=\"v\"/>"},
    // The default namespace is no prefix of the name, so that it stays behind.
    {"<r xmlns='d'><a/></r>", "/r/a", "<a/>"},
    {"<r xmlns='d'><a xmlns=''/></r>", "/r/a", "<a xmlns=\"\"/>"},
    {"<r><a xml:lang='en'/></r>", "/r/a", "<a xml:lang=\"en\"/>"},
    {"<r xmlns:xml='http://www.w3.org/XML/1998/namespace'><xml:a xml:lang='en'/></r>", "/r/a",
     "<xml:a xml:lang=\"en\"/>"},
};

TEST(CopyNode, AnElementAlone) {
    for (const CopyCase &row : kCopies) {
        SCOPED_TRACE(row.document);
        const NodePtr root = parsed(row.document);
        ASSERT_TRUE(root);
        const std::string before = dumpTree(root.get());
        const NodePtr copy(XML_DOM_CopyNode(at(root, row.path)));
        EXPECT_EQ(dumpTree(root.get()), before);
        EXPECT_EQ(written(copy.get()), row.copy);
        EXPECT_EQ(brokenLink(copy.get()), "");
        EXPECT_EQ(copy->parent, nullptr);
        EXPECT_EQ(copy->nextSibling, nullptr);
    }
}

TEST(CopyNode, OfARootIsNoRoot) {
    const NodePtr root = parsed("<r a='1'><b/></r>");
    const NodePtr copy(XML_DOM_CopyNode(root.get()));
    EXPECT_EQ(written(copy.get()), "<r a=\"1\"/>");
    EXPECT_EQ(copy->docInfo, nullptr);
}

TEST(CopyNode, OwnsWhatItHas) {
    NodePtr root = parsed("<r xmlns:p='u'><p:a p:x='1'/></r>");
    const NodePtr copy(XML_DOM_CopyNode(root->firstChild));
    root.reset();
    EXPECT_EQ(written(copy.get()), "<p:a xmlns:p=\"u\" p:x=\"1\"/>");
    EXPECT_EQ(copy->ns, copy->firstNsDecl);
    EXPECT_EQ(copy->firstAttr->ns, copy->firstNsDecl);
}

TEST(CopyNode, RefusesWhatCannotBeCopied) {
    EXPECT_EQ(XML_DOM_CopyNode(nullptr), nullptr);
    // A node of another type counts as an element, and this one has no name.
    const NodePtr odd(XML_DOM_CreateTextualNodeInner(7, "x", 1));
    EXPECT_EQ(XML_DOM_CopyNode(odd.get()), nullptr);
    // A prefix that is declared nowhere any more.
    const NodePtr root = parsed("<r xmlns:p='u'><p:a/><b p:x=''/></r>");
    const NodePtr a(root->firstChild), b(root->lastChild);
    XML_DOM_Clip(a.get());
    XML_DOM_Clip(b.get());
    const FaultyHeap heap(0);
    EXPECT_EQ(XML_DOM_CopyNode(a.get()), nullptr);
    EXPECT_EQ(XML_DOM_CopyNode(b.get()), nullptr);
    EXPECT_EQ(heap.blocksInUse(), 0u);
}

// Only a hand-made tree declares a prefix twice on one element.
TEST(CopyNode, RefusesAPrefixDeclaredTwice) {
    const NodePtr root = parsed("<r xmlns:p='u' xmlns:q='v'/>");
    EXPECT_EQ(written(NodePtr(XML_DOM_CopyNode(root.get())).get()),
              "<r xmlns:p=\"u\" xmlns:q=\"v\"/>");
    root->lastNsDecl->prefix[0] = 'p';
    const FaultyHeap heap(0);
    EXPECT_EQ(XML_DOM_CopyNode(root.get()), nullptr);
    EXPECT_EQ(heap.blocksInUse(), 0u);
}

// ---------------------------------------------------------------- whole subtrees

struct SubTreeCase {
    const char *name, *source, *from, *target, *to, *result;
};
constexpr SubTreeCase kSubTrees[] = {
    {"everything below, behind what is there", "<s>a<x y='1'><z>b</z></x><![CDATA[c]]></s>", "/s",
     "<t><old/></t>", "/t", "<t><old/>a<x y=\"1\"><z>b</z></x><![CDATA[c]]></t>"},
    {"no children, nothing to do", "<s a='1' xmlns:p='u'/>", "/s", "<t>1</t>", "/t", "<t>1</t>"},
    {"not the source's own declarations and attributes", "<s a='1' xmlns:p='u'><x/></s>", "/s",
     "<t/>", "/t", "<t><x/></t>"},
    {"a prefix declared above the source is declared on the copy",
     "<s xmlns:p='u'><p:x p:a=''/></s>", "/s", "<t/>", "/t",
     "<t><p:x xmlns:p=\"u\" p:a=\"\"/></t>"},
    {"on each copy that needs it", "<s xmlns:p='u'><p:x/><y><p:z/></y><p:x/></s>", "/s", "<t/>",
     "/t", "<t><p:x xmlns:p=\"u\"/><y><p:z xmlns:p=\"u\"/></y><p:x xmlns:p=\"u\"/></t>"},
    {"once for all below it", "<s xmlns:p='u'><p:x><p:y><p:z p:a=''/></p:y></p:x></s>", "/s",
     "<t/>", "/t", "<t><p:x xmlns:p=\"u\"><p:y><p:z p:a=\"\"/></p:y></p:x></t>"},
    {"not where the target has it", "<s xmlns:p='u'><p:x/></s>", "/s", "<t xmlns:p='u'><m/></t>",
     "/t/m", "<t xmlns:p=\"u\"><m><p:x/></m></t>"},
    {"nor where the target means another namespace by it", "<s xmlns:p='u'><p:x p:a=''/></s>", "/s",
     "<t xmlns:p='other'/>", "/t", "<t xmlns:p=\"other\"><p:x p:a=\"\"/></t>"},
    {"declarations of the copied elements go with them",
     "<s><p:x xmlns:p='u'><p:y xmlns:p='v'/><p:z/></p:x></s>", "/s", "<t xmlns:p='other'/>", "/t",
     "<t xmlns:p=\"other\"><p:x xmlns:p=\"u\"><p:y xmlns:p=\"v\"/><p:z/></p:x></t>"},
    {"the nearest one above the source", "<r xmlns:p='u'><s xmlns:p='v'><p:x/></s></r>", "/r/s",
     "<t/>", "/t", "<t><p:x xmlns:p=\"v\"/></t>"},
    {"from far above", "<r xmlns:p='u' xmlns:q='w'><s xmlns:p='v'><m><q:x p:a=''/></m></s></r>",
     "/r/s/m", "<t/>", "/t", "<t><q:x xmlns:q=\"w\" xmlns:p=\"v\" p:a=\"\"/></t>"},
    {"what a sibling declares ends with it", "<s xmlns:p='v'><x xmlns:p='u'/><p:y/></s>", "/s",
     "<t/>", "/t", "<t><x xmlns:p=\"u\"/><p:y xmlns:p=\"v\"/></t>"},
    {"and what its last descendant declares",
     "<s xmlns:p='v'><x xmlns:p='u'><z xmlns:p='w'/></x><p:y/></s>", "/s", "<t/>", "/t",
     "<t><x xmlns:p=\"u\"><z xmlns:p=\"w\"/></x><p:y xmlns:p=\"v\"/></t>"},
    {"the default namespace is not taken along", "<s xmlns='d'><x/></s>", "/s", "<t xmlns='e'/>",
     "/t", "<t xmlns=\"e\"><x/></t>"},
    {"but its undeclaration is", "<s xmlns='d'><x xmlns=''/></s>", "/s", "<t/>", "/t",
     "<t><x xmlns=\"\"/></t>"},
    {"xml is declared everywhere", "<s><x xml:lang='en'/></s>", "/s", "<t/>", "/t",
     "<t><x xml:lang=\"en\"/></t>"},
    {"more prefixes than are walked",
     "<s xmlns:a='1' xmlns:b='2' xmlns:c='3' xmlns:d='4' xmlns:e='5' xmlns:f='6' xmlns:g='7' "
     "xmlns:h='8' xmlns:i='9' xmlns:j='10'><x xmlns:e='55' a:a='' b:b='' c:c='' d:d='' e:e='' "
     "f:f='' "
     "g:g='' h:h='' i:i='' j:j=''/><j:y/></s>",
     "/s", "<t xmlns:c='33'/>", "/t",
     "<t xmlns:c=\"33\"><x xmlns:e=\"55\" xmlns:a=\"1\" xmlns:b=\"2\" xmlns:d=\"4\" xmlns:f=\"6\" "
     "xmlns:g=\"7\" xmlns:h=\"8\" xmlns:i=\"9\" xmlns:j=\"10\" a:a=\"\" b:b=\"\" c:c=\"\" d:d=\"\" "
     "e:e=\"\" f:f=\"\" g:g=\"\" h:h=\"\" i:i=\"\" j:j=\"\"/><j:y xmlns:j=\"10\"/></t>"},
};

TEST(CopySubTree, IntoAnotherDocument) {
    for (const SubTreeCase &row : kSubTrees) {
        SCOPED_TRACE(row.name);
        NodePtr source = parsed(row.source);
        const NodePtr target = parsed(row.target);
        ASSERT_TRUE(source && target);
        const std::string before = dumpTree(source.get());
        EXPECT_EQ(XML_DOM_CopySubTree(at(target, row.to), at(source, row.from)), XML_OK);
        EXPECT_EQ(dumpTree(source.get()), before);
        source.reset();  // the copy must stand alone
        EXPECT_EQ(written(target.get()), row.result);
        EXPECT_EQ(brokenLink(target.get()), "");
    }
}

TEST(CopySubTree, TheCopiesMeanWhatTheTargetMeans) {
    const NodePtr source = parsed("<s xmlns:p='u'><p:x p:a='1'/></s>");
    const NodePtr target = parsed("<t xmlns:p='other'/>");
    ASSERT_EQ(XML_DOM_CopySubTree(target.get(), source.get()), XML_OK);
    EXPECT_EQ(target->firstChild->ns, target->firstNsDecl);
    EXPECT_STREQ(XML_DOM_GetNodeNsAttribute(target->firstChild, "other", "a"), "1");
    EXPECT_EQ(XML_DOM_GetNodeNsAttribute(target->firstChild, "u", "a"), nullptr);
}

TEST(CopySubTree, ANameBoundToTheDefaultNamespace) {
    // Only a hand-made tree has this: a name that points at a declaration without a prefix, which a
    // copy takes from where it stands like any other.
    const NodePtr source = parsed("<s xmlns=''><x/></s>"), target = parsed("<t xmlns='d'/>");
    source->firstChild->ns = source->firstNsDecl;
    ASSERT_EQ(XML_DOM_CopySubTree(target.get(), source.get()), XML_OK);
    EXPECT_EQ(target->firstChild->ns, target->firstNsDecl);
    const NodePtr bare = parsed("<t/>");
    ASSERT_EQ(XML_DOM_CopySubTree(bare.get(), source.get()), XML_OK);
    EXPECT_EQ(written(bare.get()), "<t><x xmlns=\"\"/></t>");
    EXPECT_EQ(bare->firstChild->ns, bare->firstChild->firstNsDecl);
}

struct SelfCase {
    const char *document, *to, *from, *result;
};
constexpr SelfCase kWithinItself[] = {
    {"<r><x><y/></x>t</r>", "/r", "/r", "<r><x><y/></x>t<x><y/></x>t</r>"},
    {"<r/>", "/r", "/r", "<r/>"},
    {"<r><x/></r>", "/r/x", "/r", "<r><x><x/></x></r>"},
    {"<r><x><y/></x></r>", "/r/x", "/r", "<r><x><y/><x><y/></x></x></r>"},
    {"<r><a/><x><y/></x><b/></r>", "/r/x", "/r", "<r><a/><x><y/><a/><x><y/></x><b/></x><b/></r>"},
    {"<r><a><b><c/></b></a></r>", "/r/a/b", "/r", "<r><a><b><c/><a><b><c/></b></a></b></a></r>"},
    {"<r><a><b><c/></b></a></r>", "/r/a/b/c", "/r",
     "<r><a><b><c><a><b><c/></b></a></c></b></a></r>"},
    {"<r><a><b><c/></b></a></r>", "/r", "/r/a/b", "<r><a><b><c/></b></a><c/></r>"},
    {"<r><a><x/></a><b><y/></b></r>", "/r/b", "/r/a", "<r><a><x/></a><b><y/><x/></b></r>"},
};

TEST(CopySubTree, WithinOneTreeItEnds) {
    for (const SelfCase &row : kWithinItself) {
        SCOPED_TRACE(std::string(row.document) + " " + row.from + " to " + row.to);
        const NodePtr root = parsed(row.document);
        EXPECT_EQ(XML_DOM_CopySubTree(at(root, row.to), at(root, row.from)), XML_OK);
        EXPECT_EQ(written(root.get()), row.result);
        EXPECT_EQ(brokenLink(root.get()), "");
    }
}

TEST(CopySubTree, Refuses) {
    const NodePtr root = parsed("<r>t<![CDATA[c]]><x/></r>");
    const std::string before = dumpTree(root.get());
    EXPECT_EQ(XML_DOM_CopySubTree(nullptr, root.get()), XML_REFUSED);
    EXPECT_EQ(XML_DOM_CopySubTree(root.get(), nullptr), XML_REFUSED);
    EXPECT_EQ(XML_DOM_CopySubTree(root->firstChild, root.get()), XML_REFUSED);
    EXPECT_EQ(XML_DOM_CopySubTree(root->firstChild->nextSibling, root.get()), XML_REFUSED);
    EXPECT_EQ(dumpTree(root.get()), before);
    // A text as the source has no children.
    EXPECT_EQ(XML_DOM_CopySubTree(root.get(), root->firstChild), XML_OK);
    EXPECT_EQ(dumpTree(root.get()), before);
}

TEST(CopySubTree, UndoesWhatItAppended) {
    // The last of several children cannot be copied, at the top and further down.
    for (const char *document : {"<s><a/><b><c/>t</b><x/></s>", "<s><a/><b>t<c/><x/></b></s>"}) {
        for (const char *into : {"<t/>", "<t><old/></t>", "<t>1<old/><old/></t>"}) {
            const NodePtr source = parsed(document), target = parsed(into);
            XML_DOM_Node *last = source->lastChild;
            if (last->lastChild) last = last->lastChild;
            const NodePtr elsewhere = parsed("<r xmlns:p='u'/>");
            last->ns = elsewhere->firstNsDecl;  // declared nowhere above the source
            const std::string before = dumpTree(target.get());
            const FaultyHeap heap(0);
            EXPECT_EQ(XML_DOM_CopySubTree(target.get(), source.get()), XML_REFUSED);
            EXPECT_EQ(heap.blocksInUse(), 0u);
            EXPECT_EQ(dumpTree(target.get()), before);
        }
    }
}

// ---------------------------------------------------------------- roots

TEST(CopyRoot, HasEverythingButChildren) {
    for (const std::uint32_t encoding :
         {XML_ENCODING_UTF_8, XML_ENCODING_GBK, XML_ENCODING_UTF_16}) {
        const NodePtr root = parsed("<p:r xmlns:p='u' xmlns='d' a='1' p:b='2'><x><y/></x>t</p:r>");
        ASSERT_EQ(XML_DOM_SetEncoding(root.get(), encoding), XML_OK);
        // Any node of the document will do.
        for (XML_DOM_Node *node : {root.get(), at(root, "x/y"), root->lastChild}) {
            const NodePtr copy(XML_DOM_CopyRoot(node));
            ASSERT_TRUE(copy);
            ASSERT_TRUE(copy->docInfo);
            EXPECT_EQ(copy->docInfo->root, copy.get());
            EXPECT_EQ(copy->docInfo->encoding, encoding);
            EXPECT_STREQ(copy->docInfo->version, "1.0");
            EXPECT_EQ(copy->firstChild, nullptr);
            ASSERT_EQ(XML_DOM_SetEncoding(copy.get(), XML_ENCODING_UTF_8), XML_OK);
            EXPECT_EQ(written(copy.get()), "<p:r xmlns:p=\"u\" xmlns=\"d\" a=\"1\" p:b=\"2\"/>");
            EXPECT_EQ(XML_DOM_GetEncoding(root.get()), encoding);
        }
    }
}

TEST(CopyRoot, WithoutADocumentThereIsNone) {
    EXPECT_EQ(XML_DOM_CopyRoot(nullptr), nullptr);
    const NodePtr loose(XML_DOM_CreateElementWithText("a", "t"));
    EXPECT_EQ(XML_DOM_CopyRoot(loose.get()), nullptr);
    EXPECT_EQ(XML_DOM_CopyRoot(loose->firstChild), nullptr);
}

// ---------------------------------------------------------------- failing memory

TEST(Copy, SurvivesEachFailedAllocation) {
    const NodePtr source = support::richDocument();
    const NodePtr many = parsed(
        "<s xmlns:a='1' xmlns:b='2' xmlns:c='3' xmlns:d='4' xmlns:e='5' xmlns:f='6' xmlns:g='7' "
        "xmlns:h='8' xmlns:i='9' xmlns:j='10'><x a:a='' b:b='' c:c='' d:d='' e:e='' f:f='' g:g='' "
        "h:h='' i:i='' j:j=''>t</x><y/></s>");
    for (const bool persistent : {false, true}) {
        for (const NodePtr *from : {&source, &many}) {
            const NodePtr target = parsed("<t><old/></t>");
            const std::string before = dumpTree(target.get());
            bool copied = false;
            for (std::size_t nth = 1; !copied; ++nth) {
                const FaultyHeap heap(nth, persistent);
                copied = XML_DOM_CopySubTree(target.get(), from->get()) == XML_OK;
                if (copied) break;
                EXPECT_EQ(heap.blocksInUse(), 0u) << nth;
                ASSERT_EQ(dumpTree(target.get()), before) << nth;
                ASSERT_TRUE(heap.failed());
            }
            // Where it went on without that memory, it made what it always makes.
            const NodePtr expected = parsed("<t><old/></t>");
            ASSERT_EQ(XML_DOM_CopySubTree(expected.get(), from->get()), XML_OK);
            EXPECT_EQ(written(target.get()), written(expected.get()));
        }
        for (XML_DOM_Node *(*copy)(const XML_DOM_Node *) : {XML_DOM_CopyNode, XML_DOM_CopyRoot}) {
            NodePtr made;
            for (std::size_t nth = 1; !made; ++nth) {
                const FaultyHeap heap(nth, persistent);
                made.reset(copy(source.get()));
                if (made) break;
                ASSERT_TRUE(heap.failed());
                EXPECT_EQ(heap.blocksInUse(), 0u) << nth;
            }
            EXPECT_EQ(written(made.get()), written(NodePtr(copy(source.get())).get()));
        }
    }
}

}  // namespace
