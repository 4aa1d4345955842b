// Content models and sequences of children: which are valid, and what is said of those that are not.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>

#include "compactxml.h"
#include "tests/support/schema_maker.h"
#include "tests/support/written.h"

namespace {

using support::SchemaMaker;
using support::verdict;

// "<r>" with a child for each word.
std::string documentOf(std::string_view children) {
    std::string text = "<r>";
    for (std::size_t at = 0; at < children.size();) {
        const std::size_t end = std::min(children.find(' ', at), children.size());
        text += "<" + std::string(children.substr(at, end - at)) + "/>";
        at = end + 1;
    }
    return text + "</r>";
}

// The beginning of a verdict: code, node and name.
std::string shortVerdict(const std::string &whole) {
    return whole.substr(0, whole.find(':'));
}

struct ModelCase {
    const char *model, *children, *verdict;
};

constexpr ModelCase kCases[] = {
    {"seq(a, b{0,1}, c{1,u})", "a b c c", "valid"},
    {"seq(a, b{0,1}, c{1,u})", "a", "5 node=/r name=c"},
    {"seq(a, b{0,1}, c{1,u})", "b c", "1 node=/r name=a"},
    {"seq(a, b{0,1}, c{1,u})", "", "5 node=/r name=r"},
    {"seq(a, b{0,1}, c{1,u})", "a c d", "6 node=/r/d[1]"},
    {"seq(a{2,2}, b)", "a", "5 node=/r name=a"},
    {"seq(a{2,2}, b)", "a b", "1 node=/r name=a"},
    {"seq{2,2}(a, b)", "a b a b", "valid"},
    {"seq{2,2}(a, b)", "a b", "5 node=/r name=r"},
    {"seq{2,2}(a, b)", "a a b b", "1 node=/r name=b"},
    {"seq{2,2}(a, b)", "a b a b a b", "6 node=/r/a[3]"},
    {"seq{1,3}(a, b{0,1})", "a a b", "valid"},
    {"seq{1,3}(a, b{0,1})", "a a a a", "6 node=/r/a[4]"},
    {"seq{3,3}(a{1,2})", "a a a", "valid"},
    {"seq{3,3}(a{1,2})", "a a", "5 node=/r name=r"},
    {"seq{1,u}(a{2,3})", "a a a a", "valid"},
    {"seq{1,u}(a{3,4})", "a a a a a", "5 node=/r name=a"},
    {"choice(a, b)", "", "11 node=/r"},
    {"choice(a, b)", "c", "11 node=/r"},
    {"choice(a, b)", "a a", "6 node=/r/a[2]"},
    {"choice{2,3}(a, b)", "a", "11 node=/r"},
    {"choice{2,3}(a, b)", "a a", "valid"},
    {"choice{2,3}(a, b)", "a b a", "valid"},
    {"choice{2,3}(a, b)", "a b a b", "6 node=/r/b[2]"},
    {"choice{0,u}(a{2,2}, b)", "b a a b a", "5 node=/r name=a"},
    {"choice(a{0,1}, b)", "", "valid"},
    {"seq(seq{0,1}(a, b), c)", "c", "valid"},
    {"seq(seq{0,1}(a, b), c)", "a c", "1 node=/r name=b"},
    {"seq(x, choice{1,2}(a, b), y{0,1})", "x a b b", "6 node=/r/b[2]"},
    {"seq(x, choice{1,2}(a, b), y{0,1})", "x y", "11 node=/r"},
    {"seq{1,2}(choice{1,2}(a, b))", "a a a b", "valid"},
    {"seq{1,2}(choice{1,2}(a, b))", "a a a a a", "6 node=/r/a[5]"},
    {"seq{2,2}(seq{2,2}(a))", "a a a a", "valid"},
    {"seq{2,2}(seq{2,2}(a))", "a a a", "5 node=/r name=r"},
    // All groups.
    {"all(a, b{0,1})", "b a", "valid"},
    {"all(a, b{0,1})", "a", "valid"},
    {"all(a, b{0,1})", "b", "1 node=/r name=a"},
    {"all(a, b{0,1})", "a b a", "5 node=/r name=a"},
    {"all(a, b{0,1})", "a c", "6 node=/r/c[1]"},
    {"all(a, b{0,1})", "", "1 node=/r name=a"},
    {"all{0,1}(a, b)", "", "valid"},
    {"all{0,1}(a, b)", "a", "1 node=/r name=b"},
    {"all(a{0,0}, b)", "a b", "5 node=/r name=a"},
    {"all(a{2,2})", "", "valid"},  // required means a minOccurs of exactly 1
    // Wildcards.
    {"seq(any{1,2}, a{0,1})", "x y", "valid"},
    {"seq(any{1,2}, a{0,1})", "x y a", "valid"},
    {"seq(any{1,2}, a{0,1})", "", "5 node=/r name=r"},
    {"seq(a{0,1}, any)", "a", "8 node=/r"},
    {"choice(any{0,1}, a)", "", "valid"},
    // Bounds of zero.
    {"seq(a{0,0}, b)", "b", "valid"},
    {"seq(a{0,0}, b)", "a b", "5 node=/r name=a"},
    {"seq(seq{0,0}(a), b)", "b", "valid"},
    {"seq(seq{0,0}(a), b)", "a b", "1 node=/r name=b"},
    {"seq(a{2,1})", "a", "5 node=/r name=a"},  // no number of children is right
    {"seq{0,0}(a)", "", "valid"},
    {"seq{0,0}(a)", "a", "6 node=/r/a[1]"},
    {"seq()", "", "valid"},
    {"seq()", "a", "6 node=/r/a[1]"},
    {"choice{0,0}(a)", "", "valid"},
    {"choice{0,0}(a)", "a", "6 node=/r/a[1]"},
    // What is chosen because it can begin so, but may not stand there, takes nothing.
    {"choice{0,u}(seq{0,0}(a), b)", "b b", "valid"},
    {"choice{0,u}(seq{0,0}(a), b)", "b a", "6 node=/r/a[1]"},
};

TEST(ContentModel, Examples) {
    for (const ModelCase &row : kCases) {
        SchemaMaker maker;
        maker.addElement("r", row.model);
        EXPECT_EQ(shortVerdict(verdict(documentOf(row.children), maker.root())), row.verdict)
            << row.model << " with " << row.children;
    }
}

TEST(ContentModel, ExamplesBelowAnExtension) {
    for (const ModelCase &row : kCases) {
        SchemaMaker maker;
        // The base has the content, the extension adds an element that may be left out.
        SchemaComplexType base{};
        base.particle = maker.model(row.model);
        SchemaDerivation derivation{};
        derivation.derivationKind = SCHEMA_KIND_COMPLEX_EXTENSION;
        derivation.baseTypeKind = SCHEMA_KIND_COMPLEX_TYPE;
        derivation.baseType = maker.complexType(base);
        derivation.particle = maker.model("seq(added{0,1})");
        SchemaComplexType type{};
        type.content = maker.derivation(derivation);
        maker.add(maker.element(SchemaMaker::ofComplex("r", maker.complexType(type))),
                  SCHEMA_KIND_ELEMENT);
        EXPECT_EQ(shortVerdict(verdict(documentOf(row.children), maker.root())), row.verdict)
            << row.model << " with " << row.children;
    }
}

TEST(ContentModel, ExamplesBelowARestrictionWithLeadingText) {
    for (const ModelCase &row : kCases) {
        SchemaMaker maker;
        SchemaDerivation derivation{};
        derivation.derivationKind = SCHEMA_KIND_COMPLEX_RESTRICTION;
        derivation.baseTypeKind = SCHEMA_KIND_COMPLEX_TYPE;
        derivation.baseType = maker.complexType({});
        derivation.particle = maker.model(row.model);
        SchemaComplexType type{};
        type.content = maker.derivation(derivation);
        type.mixed = 1;
        maker.add(maker.element(SchemaMaker::ofComplex("r", maker.complexType(type))),
                  SCHEMA_KIND_ELEMENT);
        std::string document = documentOf(row.children);
        document.insert(3, "text");
        EXPECT_EQ(shortVerdict(verdict(document, maker.root())), row.verdict)
            << row.model << " with " << row.children;
    }
}

// An extension of a simple type has nothing of its base but what it adds.
TEST(ContentModel, BelowAnExtensionOfASimpleType) {
    SchemaMaker maker;
    SchemaDerivation derivation{};
    derivation.derivationKind = SCHEMA_KIND_COMPLEX_EXTENSION;
    derivation.baseTypeKind = SCHEMA_KIND_SIMPLE_TYPE;
    derivation.baseType = Schema_BLDIN_int();
    derivation.particle = maker.model("seq(a)");
    SchemaComplexType type{};
    type.content = maker.derivation(derivation);
    maker.add(maker.element(SchemaMaker::ofComplex("r", maker.complexType(type))),
              SCHEMA_KIND_ELEMENT);
    EXPECT_EQ(verdict("<r><a/></r>", maker.root()), "valid");
    EXPECT_EQ(shortVerdict(verdict("<r><b/></r>", maker.root())), "1 node=/r name=a");
}

// A record may hold particles of kinds that no content model has: they match nothing.
TEST(ContentModel, ParticlesOfOtherKinds) {
    const SchemaElementDecl a = SchemaMaker::plain("a");
    const SchemaTypedRef particles[] = {{nullptr, 99}, {&a, SCHEMA_KIND_ELEMENT}};
    constexpr struct {
        std::int32_t compositor;
        std::uint32_t most;
        const char *children, *verdict;
    } kRows[] = {
        {SCHEMA_KIND_SEQUENCE, 1, "a", "valid"},
        {SCHEMA_KIND_SEQUENCE, 1, "b", "1 node=/r name=a"},
        {SCHEMA_KIND_SEQUENCE, 3, "a a a", "valid"},
        {SCHEMA_KIND_SEQUENCE, 3, "a b", "6 node=/r/b[1]"},
        {SCHEMA_KIND_CHOICE, 2, "a a", "valid"},
        {SCHEMA_KIND_CHOICE, 2, "b", "6 node=/r/b[1]"},
        {SCHEMA_KIND_ALL, 1, "a", "valid"},
        {SCHEMA_KIND_ALL, 1, "a b", "6 node=/r/b[1]"},
        {SCHEMA_KIND_ALL, 1, "b", "1 node=/r name=a"},
    };
    for (const auto &row : kRows) {
        SchemaMaker maker;
        const SchemaModelGroup group = {particles, 1, row.most, 2, row.compositor};
        SchemaComplexType type{};
        type.particle = &group;
        maker.add(maker.element(SchemaMaker::ofComplex("r", maker.complexType(type))),
                  SCHEMA_KIND_ELEMENT);
        EXPECT_EQ(shortVerdict(verdict(documentOf(row.children), maker.root())), row.verdict)
            << row.compositor << " with " << row.children;
    }
}

// Choices among many particles are remembered by name; names that fall together are told apart.
TEST(ContentModel, ChoicesAmongManyNames) {
    constexpr int kNames = 60;
    SchemaMaker maker;
    std::string model = "choice{0,u}(";
    for (int i = 0; i < kNames; ++i) {
        const std::string name = "e" + std::to_string(i);
        maker.declare(SchemaMaker::ofSimple(maker.keep(name), Schema_BLDIN_int()));
        model += name + (i + 1 < kNames ? ", " : ")");
    }
    maker.addElement("r", model);
    std::string document = "<r>";
    for (int i = 0; i < 10 * kNames; ++i) {
        const std::string name = "e" + std::to_string(i * 7 % kNames);
        document += "<" + name + ">5</" + name + ">";
    }
    EXPECT_EQ(verdict(document + "</r>", maker.root()), "valid");
    EXPECT_EQ(shortVerdict(verdict(document + "<e7>x</e7></r>", maker.root())),
              "3 node=/r/e7[11] name=e7 text=x is an invalid value of int type value.");
    EXPECT_EQ(shortVerdict(verdict(document + "<e60/></r>", maker.root())), "6 node=/r/e60[1]");
    // What was chosen for a name holds in its namespace alone.
    EXPECT_EQ(shortVerdict(verdict(document + "<e7 xmlns='other'>5</e7></r>", maker.root())),
              "6 node=/r/e7[11]");
    // Only a hand-made tree has an element without a name.
    const support::NodePtr tree = support::parsed(document + "<nameless/></r>");
    char *const name = tree->lastChild->name;
    tree->lastChild->name = nullptr;
    EXPECT_EQ(shortVerdict(verdict(tree.get(), maker.root())), "6 node=/r");
    tree->lastChild->name = name;
}

}  // namespace
