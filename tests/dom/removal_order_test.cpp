// Deleting whole trees: each block is freed once and none is looked at afterwards, whatever shape the
// tree has and however it came about.
#include <gtest/gtest.h>

#include <cstddef>
#include <random>
#include <string>
#include <vector>

#include "compactxml.h"
#include "tests/support/faults.h"
#include "tests/support/owners.h"
#include "tests/support/small_stack.h"
#include "tests/support/tree_dump.h"

namespace {

using support::brokenLink;
using support::FaultyHeap;
using support::NodePtr;
using support::runOnSmallStack;

// Instrumented code is slow.
constexpr std::size_t kMany = support::kSanitized ? 200000 : 1000000;

// Hangs count elements below a new one, each into the place that next() gives for the last of them.
template <class Place>
XML_DOM_Node *grow(std::size_t count, const Place &place) {
    XML_DOM_Node *root = XML_DOM_CreateElementNode("r");
    XML_DOM_Node *last = root;
    for (std::size_t i = 0; last && i < count; ++i) {
        XML_DOM_Node *child = XML_DOM_CreateElementNode("e");
        if (!child || XML_DOM_AddChildNode(place(root, last, i), child) != XML_OK) {
            XML_DOM_DelNode(child);
            break;
        }
        last = child;
    }
    return root;
}

using PlaceFn = XML_DOM_Node *(*)(XML_DOM_Node *root, XML_DOM_Node *last, std::size_t index);

struct Shape {
    const char *name;
    PlaceFn place;
};
constexpr Shape kShapes[] = {
    {"siblings", [](XML_DOM_Node *root, XML_DOM_Node *, std::size_t) { return root; }},
    {"levels", [](XML_DOM_Node *, XML_DOM_Node *last, std::size_t) { return last; }},
    {"two at each level, one of them empty",
     [](XML_DOM_Node *root, XML_DOM_Node *last, std::size_t index) {
         if (index == 0) return root;
         return index % 2 == 0 ? last : XML_DOM_GetNodeParent(last);
     }},
    {"a thousand siblings at each level",
     [](XML_DOM_Node *root, XML_DOM_Node *last, std::size_t index) {
         if (index == 0) return root;
         return index % 1000 == 0 ? last : XML_DOM_GetNodeParent(last);
     }},
};

TEST(RemovalOrder, EveryShapeGivesAllBack) {
    constexpr std::size_t kCount = 20000;
    for (const Shape &shape : kShapes) {
        const FaultyHeap heap(0);
        XML_DOM_Node *root = grow(kCount, shape.place);
        EXPECT_EQ(heap.blocksInUse(), 2 * (kCount + 1)) << shape.name;  // a record and a name each
        XML_DOM_DelNode(root);
        EXPECT_EQ(heap.blocksInUse(), 0u) << shape.name;
    }
}

TEST(RemovalOrder, AMillionNodesOnASmallStack) {
    for (const Shape &shape : kShapes) {
        XML_DOM_Node *const root = grow(kMany, shape.place);
        ASSERT_TRUE(runOnSmallStack([root] { XML_DOM_DelNode(root); })) << shape.name;
    }
}

// A tree in which everything that a node may own is there, made in any order.
class RandomTree {
  public:
    explicit RandomTree(unsigned seed) : random_(seed), root_(XML_DOM_CreateElementNode("r")) {
        nodes_.push_back(root_.get());
        EXPECT_EQ(XML_DOM_SetRoot(root_.get()), XML_OK);
    }

    XML_DOM_Node *root() { return root_.get(); }

    void addSomething() {
        XML_DOM_Node *node = nodes_[random_() % nodes_.size()];
        switch (random_() % 6) {
            case 0:
                EXPECT_EQ(XML_DOM_AddChildNode(node, XML_DOM_CreateTextNode("text")), XML_OK);
                break;
            case 1:
                declareAndUse(node);
                break;
            case 2:
                EXPECT_NE(XML_DOM_AddAttr(node, nullptr, uniqueName().c_str(), "value"), nullptr);
                break;
            default:
                XML_DOM_Node *child = XML_DOM_CreateElementNode("e");
                const bool inFront = random_() % 2 == 0 && node != root_.get();
                EXPECT_EQ(inFront ? XML_DOM_InsertBeforeNode(node, child)
                                  : XML_DOM_AddChildNode(node, child),
                          XML_OK);
                nodes_.push_back(child);
        }
    }

    // Deletes an element with everything below it.
    void deleteSomething() {
        if (nodes_.size() < 2) return;
        XML_DOM_DelNode(nodes_[1 + random_() % (nodes_.size() - 1)]);
        nodes_.clear();
        for (XML_DOM_Node *node = root_.get(); node; node = following(node)) {
            if (node->type == XML_DOM_NODE_ELEMENT) nodes_.push_back(node);
        }
    }

  private:
    // The next node in the order of the document.
    static XML_DOM_Node *following(XML_DOM_Node *node) {
        if (node->firstChild) return node->firstChild;
        while (node && !node->nextSibling) node = node->parent;
        return node ? node->nextSibling : nullptr;
    }
    std::string uniqueName() { return "n" + std::to_string(++names_); }
    void declareAndUse(XML_DOM_Node *node) {
        const std::string prefix = uniqueName();
        EXPECT_EQ(XML_DOM_AddNodeNameSpace(node, prefix.c_str(), prefix.c_str()), XML_OK);
        EXPECT_NE(XML_DOM_AddAttr(node, prefix.c_str(), "a", "value"), nullptr);
        EXPECT_EQ(XML_DOM_SetNodeNameSpace(node, prefix.c_str()), XML_OK);
    }

    std::mt19937 random_;
    NodePtr root_;
    std::vector<XML_DOM_Node *> nodes_;  // the elements, the root first
    int names_ = 0;
};

TEST(RemovalOrder, TreesOfEveryShapeGiveAllBack) {
    for (unsigned seed = 0; seed < 200; ++seed) {
        const FaultyHeap heap(0);
        {
            RandomTree tree(seed);
            for (int i = 0; i < 100; ++i) tree.addSomething();
            ASSERT_EQ(brokenLink(tree.root()), "") << seed;
            // What is deleted from within leaves a tree that can be added to and deleted.
            for (int i = 0; i < 3; ++i) tree.deleteSomething();
            ASSERT_EQ(brokenLink(tree.root()), "") << seed;
            for (int i = 0; i < 20; ++i) tree.addSomething();
            ASSERT_EQ(brokenLink(tree.root()), "") << seed;
        }
        ASSERT_EQ(heap.blocksInUse(), 0u) << seed;
    }
}

}  // namespace
