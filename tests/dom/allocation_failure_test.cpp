// Every function that creates, changes or writes, with each of its allocations failing in turn,
// once and for good: refused, nothing leaked, the tree as it was.
#include <gtest/gtest.h>

#include <string>

#include "compactxml.h"
#include "tests/support/faults.h"
#include "tests/support/owners.h"
#include "tests/support/sample_trees.h"
#include "tests/support/tree_dump.h"

namespace {

using support::FaultyHeap;

// The tree that an operation works on, and what it made.
struct Bench {
    support::NodePtr root;
    XML_DOM_Node *element = nullptr;
    XML_DOM_Node *text = nullptr;
    XML_DOM_Node *loose = nullptr;  // in loosePtr
    support::NodePtr loosePtr;
    // What the operation gave; freed by the test.
    XML_DOM_Node *node = nullptr;
    char *buffer = nullptr;
    XML_IO_OutStream *stream = nullptr;
};

struct Operation {
    const char *name;
    bool (*run)(Bench &bench);  // whether it succeeded
    bool allocates;             // whether it needs memory at all
    bool changesTree;
};

std::uint32_t sink(void *, const char *, std::uint32_t) {
    return 0;
}

const Operation kOperations[] = {
    // The check of a name takes memory unless the name is ASCII.
    {"CreateElementNode",
     [](Bench &b) { return (b.node = XML_DOM_CreateElementNode("name")) != nullptr; }, true, false},
    {"CreateElementNode, Chinese",
     [](Bench &b) { return (b.node = XML_DOM_CreateElementNode("\xB6\xCB\xBF\xDA")) != nullptr; },
     true, false},
    {"CreateElementNodeInner",
     [](Bench &b) { return (b.node = XML_DOM_CreateElementNodeInner("1")) != nullptr; }, true,
     false},
    {"CreateTextualNodeInner",
     [](Bench &b) {
         return (b.node = XML_DOM_CreateTextualNodeInner(XML_DOM_NODE_TEXT, "abc", 3)) != nullptr;
     },
     true, false},
    {"CreateTextNode", [](Bench &b) { return (b.node = XML_DOM_CreateTextNode("")) != nullptr; },
     true, false},
    {"CreateCDataNode",
     [](Bench &b) { return (b.node = XML_DOM_CreateCDataNode("abc")) != nullptr; }, true, false},
    {"CreateElementWithText",
     [](Bench &b) { return (b.node = XML_DOM_CreateElementWithText("a", "t")) != nullptr; }, true,
     false},
    {"CreateElementWithText, no text",
     [](Bench &b) { return (b.node = XML_DOM_CreateElementWithText("a", nullptr)) != nullptr; },
     true, false},
    {"CreateElementWithCData",
     [](Bench &b) { return (b.node = XML_DOM_CreateElementWithCData("a", "t")) != nullptr; }, true,
     false},
    {"SetRoot", [](Bench &b) { return XML_DOM_SetRoot(b.loose) == XML_OK; }, true, true},
    {"SetNodeName", [](Bench &b) { return XML_DOM_SetNodeName(b.element, "other") == XML_OK; },
     true, true},
    {"SetNodeName, Chinese",
     [](Bench &b) { return XML_DOM_SetNodeName(b.element, "\xB6\xCB") == XML_OK; }, true, true},
    {"SetNodeValue", [](Bench &b) { return XML_DOM_SetNodeValue(b.text, "other") == XML_OK; }, true,
     true},
    {"AddAttr", [](Bench &b) { return XML_DOM_AddAttr(b.element, nullptr, "new", "v") != nullptr; },
     true, true},
    {"AddAttr behind others, with a prefix",
     [](Bench &b) { return XML_DOM_AddAttr(b.root.get(), "p", "new", "v") != nullptr; }, true,
     true},
    {"AddAttr, Chinese",
     [](Bench &b) { return XML_DOM_AddAttr(b.element, "xml", "\xB6\xCB", "v") != nullptr; }, true,
     true},
    {"AddAttrInner", [](Bench &b) { return XML_DOM_AddAttrInner(b.element, "n", "v") != nullptr; },
     true, true},
    {"AddNodeNameSpace",
     [](Bench &b) { return XML_DOM_AddNodeNameSpace(b.element, "n", "u") == XML_OK; }, true, true},
    {"AddNodeNameSpace, default",
     [](Bench &b) { return XML_DOM_AddNodeNameSpace(b.element, nullptr, nullptr) == XML_OK; }, true,
     true},
    {"SetNodeDefineNsVal, new",
     [](Bench &b) { return XML_DOM_SetNodeDefineNsVal(b.root.get(), "n", "u") == XML_OK; }, true,
     true},
    {"SetNodeDefineNsVal, replacing",
     [](Bench &b) { return XML_DOM_SetNodeDefineNsVal(b.root.get(), "p", "other") == XML_OK; },
     true, true},
    {"AddNodeNameSpaceInner",
     [](Bench &b) { return XML_DOM_AddNodeNameSpaceInner(b.root.get(), "n", "", 0) == XML_OK; },
     true, true},
    {"NodeBegin2Str",
     [](Bench &b) {
         return (b.buffer = XML_DOM_NodeBegin2Str(b.root.get(), 0, nullptr)) != nullptr;
     },
     true, false},
    {"NodeEnd2Str",
     [](Bench &b) { return (b.buffer = XML_DOM_NodeEnd2Str(b.root.get(), nullptr)) != nullptr; },
     true, false},
    {"TranslateStr",
     [](Bench &b) { return XML_DOM_TranslateStr(b.root.get(), 0, &b.buffer, nullptr) == XML_OK; },
     true, false},
    {"TranslateStrEx",
     [](Bench &b) {
         XML_DOM_TranslateState state{};
         return XML_DOM_TranslateStrEx(b.root.get(), 1, &state, &b.buffer, nullptr) == XML_OK;
     },
     true, false},
    {"TranslateStr4AllChild",
     [](Bench &b) {
         return XML_DOM_TranslateStr4AllChild(b.root.get(), &b.buffer, nullptr) == XML_OK;
     },
     true, false},
    {"OutPutTranslateStr",
     [](Bench &b) { return XML_DOM_OutPutTranslateStr(b.root.get(), 0, sink, nullptr) == XML_OK; },
     true, false},
    {"MemOutStreamCreate",
     [](Bench &b) { return (b.stream = XML_IO_MemOutStreamCreate(9, 0)) != nullptr; }, true, false},
    {"MemOutStreamCreate and appends of 3000 bytes",
     [](Bench &b) {
         const std::string text(1000, 'x');
         b.stream = XML_IO_MemOutStreamCreate(9, 5);
         return b.stream && XML_IO_OutStreamAppendString(b.stream, text.c_str()) == XML_OK &&
                XML_IO_OutStreamAppendSafe(b.stream, text.c_str(), 1000) == XML_OK &&
                XML_IO_OutStreamAppend(b.stream, "\xD6\xD0", 2) == XML_OK;
     },
     true, false},
    // These need no memory, so none can be missing.
    {"AddChildNode",
     [](Bench &b) {
         if (XML_DOM_AddChildNode(b.element, b.loose) != XML_OK) return false;
         b.loosePtr.release();
         return true;
     },
     false, true},
    {"InsertBeforeNode",
     [](Bench &b) {
         if (XML_DOM_InsertBeforeNode(b.element, b.loose) != XML_OK) return false;
         b.loosePtr.release();
         return true;
     },
     false, true},
    {"SetEncoding and SetVersion",
     [](Bench &b) {
         return XML_DOM_SetEncoding(b.element, 9) == XML_OK &&
                XML_DOM_SetVersion(b.element, "1.0") == XML_OK;
     },
     false, true},
    {"SetNodeNameSpace",
     [](Bench &b) { return XML_DOM_SetNodeNameSpace(b.element, "xml") == XML_OK; }, false, true},
    {"SetAttrNsInner",
     [](Bench &b) { return XML_DOM_SetAttrNsInner(b.root->firstAttr, "p") == XML_OK; }, false,
     true},
    {"OutTextString", [](Bench &) { return XML_OutTextString(" <&> ", sink, nullptr) == XML_OK; },
     false, false},
    {"CheckQName, ASCII", [](Bench &) { return XML_CheckQName("abc") == XML_OK; }, false, false},
};

// A document in UTF-16, in which writing needs a converter and more than one growth.
Bench makeBench() {
    Bench bench;
    bench.root = support::richDocument(XML_ENCODING_UTF_16);
    bench.element = bench.root->firstChild;
    bench.text = bench.element->firstChild;
    for (int i = 0; i < 40; ++i) {
        EXPECT_EQ(XML_DOM_AddChildNode(bench.root.get(),
                                       XML_DOM_CreateElementWithText("more", "\xD6\xD0 and so on")),
                  XML_OK);
    }
    bench.loosePtr.reset(XML_DOM_CreateElementNode("loose"));
    bench.loose = bench.loosePtr.get();
    return bench;
}

std::string image(const Bench &bench) {
    return support::dumpTree(bench.root.get()) + support::dumpTree(bench.loosePtr.get());
}

void freeProducts(Bench *bench) {
    XML_DOM_DelNode(bench->node);
    std::free(bench->buffer);
    XML_IO_OutStreamDestroy(bench->stream);
    bench->node = nullptr;
    bench->buffer = nullptr;
    bench->stream = nullptr;
}

TEST(AllocationFailure, EveryOperationSurvivesEveryOne) {
    for (const Operation &operation : kOperations) {
        for (const bool persistent : {false, true}) {
            std::size_t nth = 1;
            for (;; ++nth) {
                SCOPED_TRACE(testing::Message() << operation.name << ", allocation " << nth
                                                << (persistent ? " and all later ones" : ""));
                Bench bench = makeBench();
                const std::string before = image(bench);
                FaultyHeap heap(nth, persistent);
                const bool succeeded = operation.run(bench);
                if (!heap.failed()) {
                    EXPECT_TRUE(succeeded);
                    EXPECT_EQ(image(bench) != before, operation.changesTree);
                    freeProducts(&bench);
                    break;
                }
                EXPECT_FALSE(succeeded);
                EXPECT_EQ(bench.node, nullptr);
                EXPECT_EQ(bench.buffer, nullptr);
                freeProducts(&bench);
                EXPECT_EQ(heap.blocksInUse(), 0u);
                EXPECT_EQ(image(bench), before);
                ASSERT_LT(nth, 1000u);
            }
            EXPECT_EQ(nth > 1, operation.allocates) << operation.name;
        }
    }
}

// One block for each record and one for each string, so that callers and later calls can free them
// one by one.
TEST(AllocationFailure, BlocksOfWhatIsCreated) {
    struct Row {
        const char *name;
        std::size_t blocks;
        bool (*run)(Bench &bench);
    };
    const Row kRows[] = {
        {"element", 2,
         [](Bench &b) { return (b.node = XML_DOM_CreateElementNodeInner("a")) != nullptr; }},
        {"text", 2, [](Bench &b) { return (b.node = XML_DOM_CreateTextNode("")) != nullptr; }},
        {"element with text", 4,
         [](Bench &b) { return (b.node = XML_DOM_CreateElementWithText("a", "t")) != nullptr; }},
        {"document", 1, [](Bench &b) { return XML_DOM_SetRoot(b.loose) == XML_OK; }},
        {"attribute", 3,
         [](Bench &b) { return XML_DOM_AddAttr(b.element, nullptr, "n", "v") != nullptr; }},
        {"declaration", 3,
         [](Bench &b) { return XML_DOM_AddNodeNameSpace(b.element, "n", "u") == XML_OK; }},
        {"default declaration", 2,
         [](Bench &b) { return XML_DOM_AddNodeNameSpace(b.element, nullptr, "u") == XML_OK; }},
        {"new name", 1, [](Bench &b) { return XML_DOM_SetNodeName(b.element, "n") == XML_OK; }},
        {"new value", 1, [](Bench &b) { return XML_DOM_SetNodeValue(b.text, "v") == XML_OK; }},
        {"written text", 1,
         [](Bench &b) { return XML_DOM_TranslateStr(b.element, 0, &b.buffer, nullptr) == XML_OK; }},
    };
    for (const Row &row : kRows) {
        Bench bench = makeBench();
        FaultyHeap heap(0);
        EXPECT_TRUE(row.run(bench)) << row.name;
        EXPECT_EQ(heap.blocksInUse(), row.blocks) << row.name;
        freeProducts(&bench);
    }
}

}  // namespace
