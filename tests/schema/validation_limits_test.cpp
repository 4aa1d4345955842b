// Validation where it is hard: very deep and very wide documents, a failing heap, several threads.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "compactxml.h"
#include "tests/support/faults.h"
#include "tests/support/growth.h"
#include "tests/support/owners.h"
#include "tests/support/schema_maker.h"
#include "tests/support/small_stack.h"
#include "tests/support/written.h"

namespace {

using support::NodePtr;
using support::parsed;
using support::SchemaMaker;
using support::verdict;

std::string times(std::size_t n, const std::string &piece) {
    std::string text;
    text.reserve(n * piece.size());
    for (std::size_t i = 0; i < n; ++i) text += piece;
    return text;
}

// A type e whose elements hold elements e and f, attributes a and b, and a text value v, each as often
// as wanted; all in the namespace "u".
class RecursiveSchema {
  public:
    RecursiveSchema() {
        SchemaAttributeDecl a{}, b{};
        a.name = "a";
        a.type = Schema_BLDIN_int();
        b.name = "b";
        b.type = Schema_BLDIN_string();
        // The value of v is restricted by a pattern.
        facet_ = {"^[a-z]*$", SCHEMA_FACET_PATTERN, SCHEMA_TYPE_STRING};
        base_ = Schema_BLDIN_string();
        SchemaSimpleType value{};
        value.members = &base_;
        value.facets = &facet_;
        value.facetCount = 1;
        SchemaElementDecl v = SchemaMaker::ofSimple("v", maker_.simpleType(value));
        v.targetNamespace = "u";
        maker_.declare(v);

        SchemaComplexType *type = maker_.complexType({});
        type->attributeUses = maker_.uses({maker_.attribute(a), maker_.attribute(b)});
        type->attributeUseCount = 2;
        SchemaElementDecl e = SchemaMaker::ofComplex("e", type);
        e.targetNamespace = "u";
        maker_.declare(e);
        SchemaElementDecl f = e;
        f.name = "f";
        maker_.declare(f);
        type->particle = maker_.model("choice{0,u}(e, seq(f, v{0,u}), any{0,1})");
        maker_.add(maker_.element(e), SCHEMA_KIND_ELEMENT);
    }
    SchemaRoot &root() { return maker_.root(); }

  private:
    SchemaMaker maker_;
    SchemaFacet facet_{};
    const SchemaSimpleType *base_ = nullptr;
};

constexpr std::size_t kDeep = 100000;

// <e> in <e>, so deep, around a text.
std::string nested(std::size_t depth, const std::string &innermost, const char *attributes = "") {
    return "<e xmlns='u'>" + times(depth - 1, std::string("<e") + attributes + ">") + innermost +
           times(depth, "</e>");
}

TEST(ValidationDepth, OnALittleStack) {
    RecursiveSchema schema;
    const NodePtr valid = parsed(nested(kDeep, "<f/><v>abc</v>", " a='1'"));
    const NodePtr invalid = parsed(nested(kDeep, "<f/><v>ABC</v>", " a='1'"));
    const NodePtr outermost = parsed(nested(kDeep, "<f/>") + " ");
    ASSERT_TRUE(valid && invalid && outermost);
    // The root's own attributes are checked last, when everything below it has been.
    XML_DOM_AddAttr(outermost.get(), nullptr, "a", "x");
    SchemaErrorInfo errors[3];
    std::uint32_t results[3] = {1, 1, 1};
    char message[4096] = "";
    ASSERT_TRUE(support::runOnSmallStack([&] {
        results[0] = Schema_ValidateXml(valid.get(), &schema.root(), &errors[0]);
        results[1] = Schema_ValidateXml(invalid.get(), &schema.root(), &errors[1]);
        results[2] = Schema_ValidateXml(outermost.get(), &schema.root(), &errors[2]);
        Schema_GetErrorDesc(&errors[1], sizeof message, message);
    }));
    for (const std::uint32_t result : results) EXPECT_EQ(result, XML_OK);
    EXPECT_EQ(errors[0].code, 0u);
    EXPECT_EQ(errors[1].code, 3u);
    EXPECT_STREQ(errors[1].name, "v");
    EXPECT_EQ(std::string(message).substr(0, 40), "The value of element '/e/e[1]/e[1]/e[1]/");
    EXPECT_EQ(errors[2].code, 4u);
    EXPECT_EQ(errors[2].node, outermost.get());
}

// ---------------------------------------------------------------- cost

struct Shape {
    const char *name;
    std::string (*document)(std::size_t n);
};

const Shape kShapes[] = {
    {"Depth", [](std::size_t n) { return nested(n, ""); }},
    {"DepthWithAttributes", [](std::size_t n) { return nested(n, "", " a='1' b='2'"); }},
    {"Siblings", [](std::size_t n) { return "<e xmlns='u'>" + times(n, "<e/>") + "</e>"; }},
    {"SiblingsInGroups",
     [](std::size_t n) { return "<e xmlns='u'>" + times(n, "<f/><v>x</v><v>y</v>") + "</e>"; }},
    {"OneLongRun",
     [](std::size_t n) { return "<e xmlns='u'><f/>" + times(n, "<v>x</v>") + "</e>"; }},
    {"Wildcards",
     [](std::size_t n) { return "<e xmlns='u'>" + times(n, "<w xmlns='w'/>") + "</e>"; }},
    {"UndeclaredAttributes",
     [](std::size_t n) {
         std::string text = "<e xmlns='u' xmlns:p='p'><e";
         for (std::size_t i = 0; i < n; ++i) text += " p:a" + std::to_string(i) + "=''";
         return text + "/></e>";
     }},
    {"Text",
     [](std::size_t n) { return "<e xmlns='u'><f/><v>" + std::string(16 * n, 'x') + "</v></e>"; }},
    {"DeclarationsOnTheWay",
     [](std::size_t n) {
         std::string text = "<e xmlns='u'>";
         for (std::size_t i = 0; i < n; ++i) text += "<e xmlns:p" + std::to_string(i) + "='p'>";
         return text + times(n + 1, "</e>");
     }},
};

constexpr std::size_t kItems = support::kSanitized ? 1500 : 6000;

TEST(ValidationCost, IsLinear) {
    RecursiveSchema schema;
    for (const Shape &shape : kShapes) {
        SCOPED_TRACE(shape.name);
        const NodePtr one = parsed(shape.document(kItems)),
                      eight = parsed(shape.document(8 * kItems));
        ASSERT_TRUE(one && eight);
        std::string verdicts[2];
        const auto job = [&](const NodePtr &tree, std::string *said) {
            SchemaErrorInfo error;
            EXPECT_EQ(Schema_ValidateXml(tree.get(), &schema.root(), &error), XML_OK);
            *said = std::to_string(error.code);
        };
        constexpr double kTooShort = 40e-3;
        EXPECT_TRUE(support::growsLinearly([&] { job(one, &verdicts[0]); },
                                           [&] { job(eight, &verdicts[1]); }, kTooShort));
        EXPECT_EQ(verdicts[0], verdicts[1]);
        const bool accepted = verdicts[0] == "0";
        EXPECT_EQ(accepted, std::string_view(shape.name) != "UndeclaredAttributes");
    }
}

TEST(ValidationCost, NoAllocationPerElement) {
    RecursiveSchema schema;
    std::size_t allocations[2];
    for (const bool longer : {false, true}) {
        const std::size_t n = longer ? 4000 : 500;
        // Many children of few parents, each with attributes, values and a pattern to match.
        const std::string child = "<e a='1' b='x'>" + times(8, "<f a='2'/><v>abc</v>") + "</e>";
        const NodePtr tree = parsed("<e xmlns='u'><e>" + times(n, child + "</e><e>") + "</e></e>");
        ASSERT_TRUE(tree);
        const support::FaultyHeap heap(0);
        SchemaErrorInfo error;
        EXPECT_EQ(Schema_ValidateXml(tree.get(), &schema.root(), &error), XML_OK);
        EXPECT_EQ(error.code, 0u);
        allocations[longer] = heap.allocations();
        EXPECT_EQ(heap.blocksInUse(), 0u);
    }
    // The stack of matched children doubles: eight times as many need three more allocations.
    EXPECT_LE(allocations[1], allocations[0] + 3);
}

// ---------------------------------------------------------------- a failing heap

TEST(ValidationFaults, EachFailedAllocation) {
    RecursiveSchema schema;
    const NodePtr tree = parsed(
        "<e xmlns='u' a='1'><e a='2' b='3'><f/><v>abc</v><v>def</v></e><x xmlns=''/>"
        "<e><e><e><w xmlns='w'/></e></e></e></e>");
    ASSERT_TRUE(tree);
    for (const bool persistent : {false, true}) {
        std::size_t refusals = 0;
        bool done = false;
        for (std::size_t nth = 1; !done; ++nth) {
            SchemaErrorInfo error;
            std::uint32_t result = 0;
            {
                const support::FaultyHeap heap(nth, persistent);
                result = Schema_ValidateXml(tree.get(), &schema.root(), &error);
                done = !heap.failed();
                EXPECT_EQ(heap.blocksInUse(), 0u) << nth;
            }
            if (done) {
                EXPECT_EQ(result, XML_OK);
                EXPECT_EQ(error.code, 0u);
                break;
            }
            // Either it went on without that memory, or it says so and nothing else; a pattern that
            // cannot be compiled does not match.
            if (result != XML_OK) {
                EXPECT_EQ(result, XML_REFUSED);
                const SchemaErrorInfo zeros{};
                EXPECT_EQ(std::memcmp(&error, &zeros, sizeof error), 0) << nth;
                ++refusals;
            } else {
                EXPECT_TRUE(error.code == 0 || error.code == 3) << nth << " " << error.code;
            }
        }
        EXPECT_GE(refusals, 3u);  // open elements, matched children, attributes
    }
}

TEST(ValidationFaults, AnErrorInAChildComesBeforeTheLackOfMemoryBehindIt) {
    // The counters of the all group are wanted after the first child has been taken, whose value is
    // wrong.
    SchemaMaker maker;
    maker.declare(SchemaMaker::ofSimple("a", Schema_BLDIN_int()));
    std::string all = "all(";
    for (int i = 0; i < 200; ++i) all += "x" + std::to_string(i) + "{0,1},";
    maker.addElement("r", "seq(a, " + all + "z{0,1}))");
    const NodePtr wrong = parsed("<r><a>x</a><z/></r>"), right = parsed("<r><a>1</a><z/></r>");
    std::size_t refused = 0, reported = 0;
    for (std::size_t nth = 1; nth < 20; ++nth) {
        for (const NodePtr *tree : {&wrong, &right}) {
            SchemaErrorInfo error;
            const support::FaultyHeap heap(nth);
            const std::uint32_t result = Schema_ValidateXml(tree->get(), &maker.root(), &error);
            if (result != XML_OK) {
                EXPECT_EQ(error.code, 0u);
                ++refused;
            } else {
                EXPECT_EQ(error.code, tree == &wrong ? 3u : 0u);
                if (heap.failed()) ++reported;
            }
        }
    }
    EXPECT_GE(refused, 3u);
    EXPECT_GE(reported, 1u);  // the lack of memory for the counters, behind the wrong child
}

// What a long choice took is remembered, or not, with the same results.
TEST(ValidationFaults, LongChoices) {
    constexpr int kAlternatives = 3000;
    const auto name = [](int i) { return "x" + std::to_string(i % kAlternatives); };
    SchemaMaker maker;
    std::string choice = "choice{0,u}(";
    for (int i = 0; i < kAlternatives; ++i) choice += name(i) + ",";
    maker.addElement("r", "seq(" + choice + "z), choice(a,b,c,d,e,f,g,h,i,z))");
    std::string children;
    for (int i = 0; i < 200; ++i) {
        children += "<" + name(i * 37) + "/><x7/><" + name(i * i) + "/>";
    }
    const NodePtr right = parsed("<r>" + children + "<e/></r>");
    const NodePtr wrong = parsed("<r>" + children + "<x3000/><e/></r>");
    const NodePtr twice = parsed("<r>" + children + "<e/><e/></r>");
    const NodePtr none = parsed("<r>" + children + "</r>");
    for (std::size_t nth = 0; nth < 12; ++nth) {
        const auto codeOf = [&](const NodePtr &tree) {
            SchemaErrorInfo error;
            const support::FaultyHeap heap(nth);
            const std::uint32_t result = Schema_ValidateXml(tree.get(), &maker.root(), &error);
            EXPECT_TRUE(result == XML_OK || heap.failed());
            return result == XML_OK ? static_cast<int>(error.code) : -1;
        };
        const auto expect = [&](const NodePtr &tree, int code) {
            const int found = codeOf(tree);
            EXPECT_TRUE(found == code || (nth != 0 && found == -1)) << nth << ' ' << found;
        };
        expect(right, 0);
        expect(wrong, 11);
        expect(twice, 6);
        expect(none, 11);
    }
}

// ---------------------------------------------------------------- threads

TEST(ValidationThreads, EightAgainstOneRoot) {
    RecursiveSchema schema;
    std::vector<std::thread> threads;
    std::vector<std::string> said(8);
    for (std::size_t i = 0; i < said.size(); ++i) {
        threads.emplace_back([&schema, &said, i] {
            for (int round = 0; round < 50; ++round) {
                const std::string value = i % 2 ? "abc" : "ABC";
                const NodePtr tree = parsed(nested(50 + i, "<f/><v>" + value + "</v>", " a='1'"));
                said[i] = verdict(tree.get(), schema.root()).substr(0, 5);
            }
        });
    }
    for (std::thread &thread : threads) thread.join();
    for (std::size_t i = 0; i < said.size(); ++i) EXPECT_EQ(said[i], i % 2 ? "valid" : "3 nod");
}

}  // namespace
