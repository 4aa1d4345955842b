// Scanning a tree: which nodes are visited in which order, and what ends it.
#include <gtest/gtest.h>

#include <string>

#include "compactxml.h"
#include "tests/support/faults.h"
#include "tests/support/owners.h"
#include "tests/support/sample_trees.h"
#include "tests/support/tree_dump.h"
#include "tests/support/written.h"

namespace {

using support::NodePtr;
using support::parsed;

struct Visits {
    std::string seen;
    std::uint32_t endAt = 0;  // the visit that ends the scan
    std::uint32_t answer = 0;
    std::uint32_t count = 0;

    static std::uint32_t visit(XML_DOM_Node *node, void *userData, std::uint32_t reserved) {
        auto *self = static_cast<Visits *>(userData);
        EXPECT_EQ(reserved, 0u);
        self->seen += node->name ? node->name : node->value;
        return ++self->count == self->endAt ? self->answer : 0;
    }
};

constexpr char kDocument[] = "<r>1<a>2<b/><c><d/></c></a>3<e><![CDATA[4]]></e><f/></r>";

struct Scan {
    const char *from, *seen;
};
constexpr Scan kScans[] = {
    {"/r", "r1a2bcd3e4f"}, {"a", "a2bcd3e4f"},  // the siblings behind the start are visited too
    {"a/b", "bcd"},                             // but nothing above it
    {"a/c", "cd"},         {"a/c/d", "d"},     {"e", "e4f"}, {"f", "f"},
};

TEST(ScanTree, DocumentOrderFromTheStartToItsLastSibling) {
    const NodePtr root = parsed(kDocument);
    for (const Scan &row : kScans) {
        Visits visits;
        XML_DOM_Node *from = XML_DOM_SelectSingleNode(root.get(), row.from);
        EXPECT_EQ(XML_DOM_ScanTree(from, Visits::visit, &visits), XML_OK);
        EXPECT_EQ(visits.seen, row.seen) << row.from;
    }
}

TEST(ScanTree, AnyAnswerButZeroEndsIt) {
    const NodePtr root = parsed(kDocument);
    const std::string all = kScans[0].seen;
    for (const std::uint32_t answer : {1u, XML_REFUSED, XML_MISSING, 0x80000000u, 0xFFFFFFFFu}) {
        for (std::uint32_t endAt = 1; endAt <= all.size(); ++endAt) {
            Visits visits;
            visits.endAt = endAt;
            visits.answer = answer;
            EXPECT_EQ(XML_DOM_ScanTree(root.get(), Visits::visit, &visits), XML_REFUSED);
            EXPECT_EQ(visits.seen, all.substr(0, endAt));
        }
    }
}

TEST(ScanTree, MissingArgumentsHaveACodeOfTheirOwn) {
    const NodePtr root = parsed(kDocument);
    Visits visits;
    EXPECT_EQ(XML_DOM_ScanTree(nullptr, Visits::visit, &visits), 0x20010002u);
    EXPECT_EQ(XML_DOM_ScanTree(root.get(), nullptr, &visits), 0x20010002u);
    EXPECT_EQ(visits.count, 0u);
}

TEST(ScanTree, ADetachedTextAndNoUserData) {
    const NodePtr text(XML_DOM_CreateTextNode("t"));
    EXPECT_EQ(XML_DOM_ScanTree(
                  text.get(),
                  [](XML_DOM_Node *node, void *userData, std::uint32_t) -> std::uint32_t {
                      return node->value[0] == 't' && !userData ? 0 : 1;
                  },
                  nullptr),
              XML_OK);
}

TEST(ScanTree, AllocatesAndChangesNothing) {
    const NodePtr root = support::richDocument();
    const std::string before = support::dumpTree(root.get());
    std::uint32_t nodes = 0;
    {
        const support::FaultyHeap heap(1, true);
        EXPECT_EQ(XML_DOM_ScanTree(
                      root.get(),
                      [](XML_DOM_Node *, void *userData, std::uint32_t) -> std::uint32_t {
                          ++*static_cast<std::uint32_t *>(userData);
                          return 0;
                      },
                      &nodes),
                  XML_OK);
        EXPECT_EQ(heap.allocations(), 0u);
    }
    EXPECT_GT(nodes, 5u);
    EXPECT_EQ(support::dumpTree(root.get()), before);
}

}  // namespace
