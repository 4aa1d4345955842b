// Editing costs what it touches: copies, adoptions and paths at n and at 8n, in every direction in
// which a tree can grow. Work that grows with the square would take 64 times as long.
#include <gtest/gtest.h>

#include <string>

#include "compactxml.h"
#include "tests/support/faults.h"
#include "tests/support/growth.h"
#include "tests/support/owners.h"
#include "tests/support/small_stack.h"
#include "tests/support/written.h"

namespace {

using support::NodePtr;
using support::parsed;

constexpr std::size_t kItems = support::kSanitized ? 2000 : 4000;

// The shorter job may fit into a cache that the longer one does not fit into, so that walks differ
// by more than their lengths; squares of these sizes take seconds.
constexpr double kTooShort = 60e-3;

std::string times(std::size_t n, const std::string &piece) {
    std::string text;
    for (std::size_t i = 0; i < n; ++i) text += piece;
    return text;
}

std::string numbered(std::size_t n, const std::string &before, const std::string &behind) {
    std::string text;
    for (std::size_t i = 0; i < n; ++i) text += before + std::to_string(i) + behind;
    return text;
}

// Declarations of so many prefixes, each for a namespace of its own.
std::string declarations(std::size_t n) {
    std::string text;
    for (std::size_t i = 0; i < n; ++i) {
        const std::string number = std::to_string(i);
        text += " xmlns:p";
        text += number;
        text += "='u";
        text += number;
        text += '\'';
    }
    return text;
}

struct Shape {
    const char *name;
    std::string (*document)(std::size_t n);
};

const Shape kShapes[] = {
    {"Siblings", [](std::size_t n) { return "<r>" + times(n, "<e/>") + "</r>"; }},
    {"Depth", [](std::size_t n) { return "<r>" + times(n, "<e>") + times(n, "</e>") + "</r>"; }},
    {"DepthWithThePrefixOfTheTop",
     [](std::size_t n) {
         return "<p:r xmlns:p='u'>" + times(n, "<p:e p:a=''>") + times(n, "</p:e>") + "</p:r>";
     }},
    {"DepthWithADeclarationEach",
     [](std::size_t n) {
         return "<r xmlns:o='u'>" + numbered(n, "<o:e xmlns:p", "='u'>") + times(n, "</o:e>") +
                "</r>";
     }},
    {"DepthRedeclaringOnePrefix",
     [](std::size_t n) {
         return "<r>" + times(n, "<p:e xmlns:p='u'>") + times(n, "</p:e>") + "</r>";
     }},
    {"Attributes", [](std::size_t n) { return "<r><e" + numbered(n, " a", "=''") + "/></r>"; }},
    {"Declarations", [](std::size_t n) { return "<r><e" + declarations(n) + "/></r>"; }},
    {"AttributesWithAPrefixEach",
     [](std::size_t n) {
         return "<r><e" + declarations(n) + numbered(n, " p", ":a=''") + "/></r>";
     }},
    {"PrefixesDeclaredAboveTheSource",
     [](std::size_t n) {
         return "<r" + declarations(n) + ">" + numbered(n, "<p", ":e/>") + "</r>";
     }},
    {"PrefixesDeclaredAboveOnOneElement",
     [](std::size_t n) {
         return "<r" + declarations(n) + "><e" + numbered(n, " p", ":a=''") + "/></r>";
     }},
    {"Text", [](std::size_t n) { return "<r>" + std::string(8 * n, 'x') + "</r>"; }},
};

class EditCost : public testing::TestWithParam<Shape> {};

// The documents of n and of 8n, and a target for each below a chain as deep.
struct Sizes {
    explicit Sizes(const Shape &shape) {
        for (const std::size_t n : {kItems, 8 * kItems}) {
            NodePtr &source = n == kItems ? one : eight;
            source = parsed(shape.document(n));
            EXPECT_TRUE(source);
        }
    }
    NodePtr one, eight;
};

void expectLinear(const Sizes &sizes, void (*job)(const NodePtr &)) {
    EXPECT_TRUE(
        support::growsLinearly([&] { job(sizes.one); }, [&] { job(sizes.eight); }, kTooShort));
}

TEST_P(EditCost, OfACopy) {
    expectLinear(Sizes(GetParam()), [](const NodePtr &source) {
        const NodePtr target = parsed("<t><old/></t>");
        EXPECT_EQ(XML_DOM_CopySubTree(target.get(), source.get()), XML_OK);
    });
}

TEST_P(EditCost, OfACopyBelowItself) {
    expectLinear(Sizes(GetParam()), [](const NodePtr &source) {
        const NodePtr target = parsed("<t/>");
        ASSERT_EQ(XML_DOM_CopySubTree(target.get(), source.get()), XML_OK);
        XML_DOM_Node *bottom = target.get();
        while (bottom->firstChild && bottom->firstChild->type == XML_DOM_NODE_ELEMENT) {
            bottom = bottom->firstChild;
        }
        EXPECT_EQ(XML_DOM_CopySubTree(bottom, target.get()), XML_OK);
    });
}

TEST_P(EditCost, OfACopyThatIsUndone) {
    expectLinear(Sizes(GetParam()), [](const NodePtr &source) {
        XML_DOM_Node *odd = XML_DOM_CreateTextualNodeInner(7, "cannot be copied", 1);
        ASSERT_EQ(XML_DOM_AddChildNode(source.get(), odd), XML_OK);
        const NodePtr target = parsed("<t><old/></t>");
        EXPECT_EQ(XML_DOM_CopySubTree(target.get(), source.get()), XML_REFUSED);
        EXPECT_EQ(target->firstChild, target->lastChild);
        XML_DOM_DelNode(odd);
    });
}

TEST_P(EditCost, OfAnAdoptionAndOfAScan) {
    expectLinear(Sizes(GetParam()), [](const NodePtr &source) {
        const NodePtr target = parsed("<t/>");
        EXPECT_EQ(XML_DOM_AdoptChildren(source.get(), target.get()), XML_OK);
        EXPECT_EQ(
            XML_DOM_ScanTree(
                target.get(),
                [](XML_DOM_Node *, void *, std::uint32_t) { return std::uint32_t{0}; }, nullptr),
            XML_OK);
        EXPECT_EQ(XML_DOM_AdoptChildren(target.get(), source.get()), XML_OK);
    });
}

TEST_P(EditCost, OfThePathOfTheDeepestLastNode) {
    expectLinear(Sizes(GetParam()), [](const NodePtr &source) {
        const XML_DOM_Node *last = source.get();
        while (last->lastChild) last = last->lastChild;
        char small[512];
        EXPECT_GT(XML_DOM_GetXPath(last, sizeof small, small), 0u);
        static char large[2000 * 1000];
        EXPECT_GT(XML_DOM_GetXPath(last, sizeof large, large), 0u);
    });
}

INSTANTIATE_TEST_SUITE_P(Shapes, EditCost, testing::ValuesIn(kShapes),
                         [](const auto &shape) { return std::string(shape.param.name); });

// Children that are not leaves, adopted by an element far down.
TEST(EditCostOfDepth, AdoptionByADeepElement) {
    const auto make = [](std::size_t n) {
        return parsed("<r><from>" + times(n, "<e><f/></e>") + "</from>" + times(n, "<d>") +
                      times(n, "</d>") + "</r>");
    };
    const NodePtr one = make(kItems), eight = make(8 * kItems);
    const auto adopt = [](const NodePtr &root) {
        XML_DOM_Node *from = root->firstChild, *bottom = root->lastChild;
        while (bottom->firstChild && bottom->firstChild->name[0] == 'd')
            bottom = bottom->firstChild;
        EXPECT_EQ(XML_DOM_AdoptChildren(from, bottom), XML_OK);
        EXPECT_EQ(XML_DOM_AdoptChildren(bottom, from), XML_OK);
    };
    EXPECT_TRUE(support::growsLinearly([&] { adopt(one); }, [&] { adopt(eight); }, kTooShort));
}

}  // namespace
