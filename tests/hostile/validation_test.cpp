// Documents that ask the most of a schema: the work of a validation for each of their bytes, and for
// each part of long and deep schemas.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "compactxml.h"
#include "tests/hostile/work.h"
#include "tests/support/document_shapes.h"
#include "tests/support/schema_maker.h"
#include "tests/support/written.h"

namespace {

using hostile::Effort;
using hostile::effortOf;
using hostile::staysLevel;
using support::join;
using support::NodePtr;
using support::parsed;
using support::SchemaMaker;
using support::times;

// What a document costs; it ends with this code.
Effort validation(SchemaMaker &schema, const std::string &document, std::uint32_t code) {
    const NodePtr tree = parsed(document);
    EXPECT_TRUE(tree);
    return effortOf(document.size(), [&] {
        SchemaErrorInfo error;
        EXPECT_EQ(Schema_ValidateXml(tree.get(), &schema.root(), &error), XML_OK);
        EXPECT_EQ(error.code, code);
    });
}

// The document of n parts and that of 8n.
void expectLevel(SchemaMaker &schema, std::size_t n, std::string (*document)(std::size_t n),
                 std::uint32_t code) {
    EXPECT_TRUE(staysLevel(validation(schema, document(n), code),
                           validation(schema, document(hostile::kGrowth * n), code)));
}

SchemaElementDecl namedTop(SchemaMaker &schema, std::size_t i) {
    return SchemaMaker::plain(schema.keep("t" + std::to_string(i)));
}

// A root r of children that only a wildcard accepts, under so many top-level elements.
void declareWildcard(SchemaMaker &schema, std::size_t elements, std::int32_t processContents,
                     const char *namespaces) {
    SchemaElementWildcard any{};
    any.namespaceConstraint = namespaces;
    any.maxOccurs = SchemaMaker::kUnbounded;
    any.processContents = processContents;
    schema.wildcard(any);
    for (std::size_t i = 0; i < elements; ++i) {
        schema.add(schema.element(namedTop(schema, i)), SCHEMA_KIND_ELEMENT);
    }
    schema.addElement("r", "seq(any{0,u})");
}

constexpr std::int32_t kStrict = 3, kLax = 1, kSkip = 2;

// ---------------------------------------------------------------- long documents

TEST(HostileValidation, WildcardsOverThousandsOfElements) {
    for (const std::int32_t process : {kLax, kSkip}) {
        SchemaMaker schema;
        declareWildcard(schema, 3000, process, "##any");
        expectLevel(
            schema, 250, [](std::size_t n) { return "<r>" + times(n, "<unknown/>") + "</r>"; }, 0);
        expectLevel(
            schema, 250, [](std::size_t n) { return "<r>" + times(n, "<t2999/>") + "</r>"; }, 0);
    }
    SchemaMaker schema;
    declareWildcard(schema, 3000, kStrict, "##any");
    expectLevel(
        schema, 250, [](std::size_t n) { return "<r>" + times(n, "<t2999/>") + "</r>"; }, 0);
}

// One long name of a namespace, about which every attribute is asked.
TEST(HostileValidation, AttributesOfALongNamespaceUnderAWildcard) {
    SchemaMaker schema;
    SchemaWildcard any{};
    any.namespaceConstraint = "urn:a urn:b";
    any.processContents = kSkip;
    SchemaComplexType *type = schema.complexType({});
    type->attributeWildcard = schema.attributeWildcard(any);
    schema.add(schema.element(SchemaMaker::ofComplex("r", type)), SCHEMA_KIND_ELEMENT);
    const auto work = [&](std::size_t bytes) {
        const std::string document =
            "<r xmlns:p='" + times(bytes, "u") + "'" +
            join(200, [](const std::string &i) { return " p:x" + i + "=''"; }) + "/>";
        return validation(schema, document, 7).work;
    };
    EXPECT_LT(work(80000), 2 * work(100));
}

TEST(HostileValidation, DeepChoices) {
    SchemaMaker schema;
    std::string model = "choice{0,u}(a0";
    for (int i = 1; i < 60; ++i) model += ", choice(a" + std::to_string(i);
    schema.addElement("r", model + times(60, ")"));
    expectLevel(
        schema, 50, [](std::size_t n) { return "<r>" + times(n, "<a59/><a0/>") + "</r>"; }, 0);
    expectLevel(
        schema, 50, [](std::size_t n) { return "<r>" + times(n, "<a59/>") + "<x/></r>"; }, 6);
}

TEST(HostileValidation, LongChoices) {
    SchemaMaker schema;
    schema.addElement("r", "choice{0,u}(" + join(3000, [](const std::string &i) {
                               return "x" + i + ",";
                           }) + "z)");
    expectLevel(
        schema, 400,
        [](std::size_t n) {
            std::string text = "<r>";
            for (std::size_t i = 0; i < n; ++i) text += "<x" + std::to_string(i * 37 % 3000) + "/>";
            return text + "</r>";
        },
        0);
}

TEST(HostileValidation, RunsThatCouldEndAnywhere) {
    SchemaMaker schema;
    schema.addElement("r", "choice{0,u}(seq(a{1,3}, b{0,u}), seq{0,u}(c{0,2}, d{0,u}))");
    expectLevel(
        schema, 300, [](std::size_t n) { return "<r>" + times(n, "<a/>") + "</r>"; }, 0);
    expectLevel(
        schema, 300, [](std::size_t n) { return "<r>" + times(n, "<a/><b/><c/><d/>") + "</r>"; },
        0);
}

TEST(HostileValidation, AllGroups) {
    SchemaMaker schema;
    schema.addElement("r", "all(" + join(200, [](const std::string &i) {
                               return "x" + i + "{0,1},";
                           }) + "z{0,1})");
    expectLevel(
        schema, 100, [](std::size_t n) { return "<r>" + times(n, "<z/>") + "</r>"; }, 5);
}

TEST(HostileValidation, PatternsOfLongTexts) {
    SchemaMaker schema;
    const SchemaSimpleType *base = Schema_BLDIN_string();
    // Anchored as a schema compiler writes them, and searched for everywhere.
    const SchemaFacet facets[] = {
        {"^([a-z]|[0-9]{1,3})*$", SCHEMA_FACET_PATTERN, SCHEMA_TYPE_STRING},
        {"a*[0-9]a*b?", SCHEMA_FACET_PATTERN, SCHEMA_TYPE_STRING},
        {"(a|b)*a(a|b){6}", SCHEMA_FACET_PATTERN, SCHEMA_TYPE_STRING},
    };
    SchemaSimpleType value{};
    value.members = &base;
    value.facets = facets;
    value.facetCount = 3;
    SchemaElementDecl top = SchemaMaker::ofSimple("r", schema.simpleType(value));
    schema.add(schema.element(top), SCHEMA_KIND_ELEMENT);
    const auto document = [](std::size_t n) { return "<r>" + times(n, "aab") + "1aabbaabb</r>"; };
    expectLevel(schema, 20000, document, 0);
    expectLevel(
        schema, 20000, [](std::size_t n) { return "<r>" + times(n, "a") + "</r>"; }, 3);
}

TEST(HostileValidation, SimpleContentAmongManyTexts) {
    SchemaMaker schema;
    SchemaElementDecl top = SchemaMaker::ofSimple("r", Schema_BLDIN_string());
    schema.add(schema.element(top), SCHEMA_KIND_ELEMENT);
    expectLevel(
        schema, 1000, [](std::size_t n) { return "<r>" + times(n, "t<![CDATA[c]]>") + "</r>"; }, 0);
}

TEST(HostileValidation, MixedContent) {
    SchemaMaker schema;
    schema.addElement("r", "seq(a{0,u}, b{0,u})", true);
    expectLevel(
        schema, 1000, [](std::size_t n) { return "<r>" + times(n, "t<a/>") + "<b/>t</r>"; }, 0);
}

// What is wrong, told with the place where it is.
TEST(HostileValidation, MessagesOfDeepAndLateErrors) {
    const auto cost = [](std::size_t n) {
        SchemaMaker schema;
        schema.addElement("r", "seq(a{0,u})");
        const std::string document = "<r>" + times(n, "<a/>") + "<b/></r>";
        const NodePtr tree = parsed(document);
        return effortOf(document.size(), [&] {
            SchemaErrorInfo error;
            EXPECT_EQ(Schema_ValidateXml(tree.get(), &schema.root(), &error), XML_OK);
            char message[1024];
            EXPECT_EQ(Schema_GetErrorDesc(&error, sizeof message, message), XML_OK);
        });
    };
    EXPECT_TRUE(staysLevel(cost(1000), cost(8000)));
}

// ---------------------------------------------------------------- long schemas

// A child is looked for among the top-level elements one by one: so much for each of them, and no more.
TEST(HostileSchemas, TopLevelElements) {
    const auto cost = [](std::size_t elements) {
        SchemaMaker schema;
        declareWildcard(schema, elements, kLax, "##any");
        const Effort effort = validation(schema, "<r>" + times(50, "<unknown/>") + "</r>", 0);
        return Effort{elements, effort.work};
    };
    EXPECT_TRUE(staysLevel(cost(500), cost(4000)));
}

TEST(HostileSchemas, RegisteredInOrderAndDeregisteredInOrder) {
    const auto cost = [](std::size_t elements) {
        std::vector<SchemaElementDecl> decls(elements, SchemaMaker::plain("e"));
        return effortOf(elements, [&] {
            SchemaRoot root;
            Schema_InitRoot(&root);
            for (const SchemaElementDecl &decl : decls) {
                const SchemaTopObject object = {&decl, SCHEMA_KIND_ELEMENT};
                EXPECT_EQ(Schema_RegTopObject(&root, &object), XML_OK);
            }
            Schema_ExitRoot(&root);
            std::free(static_cast<void *>(root.elements.items));
        });
    };
    EXPECT_TRUE(staysLevel(cost(2000), cost(16000)));
}

}  // namespace
