// Validations as a whole: arguments, results, records.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>

#include "compactxml.h"
#include "tests/support/schema_maker.h"
#include "tests/support/written.h"

namespace {

using support::NodePtr;
using support::parsed;
using support::SchemaMaker;
using support::verdict;

constexpr SchemaSimpleType kInt{nullptr, nullptr, "int", nullptr, SCHEMA_TYPE_INT, 0, 0, 0};

// A record that nobody has written to.
SchemaErrorInfo untouched() {
    SchemaErrorInfo error;
    std::memset(static_cast<void *>(&error), 0x5A, sizeof error);
    return error;
}

bool isSame(const SchemaErrorInfo &a, const SchemaErrorInfo &b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

TEST(Validate, MissingArguments) {
    SchemaMaker schema;
    schema.addElement("r", "");
    const NodePtr tree = parsed("<r/>");
    SchemaErrorInfo error = untouched();
    const SchemaRoot *root = &schema.root();
    for (const std::uint32_t mode : {0u, 1u, 7u}) {
        EXPECT_EQ(Schema_ValidateXmlEx(nullptr, root, mode, &error), XML_REFUSED);
        EXPECT_EQ(Schema_ValidateXmlEx(tree.get(), nullptr, mode, &error), XML_REFUSED);
        EXPECT_EQ(Schema_ValidateXmlEx(tree.get(), root, mode, nullptr), XML_REFUSED);
        EXPECT_EQ(Schema_ValidateXmlEx(nullptr, nullptr, mode, nullptr), XML_REFUSED);
    }
    EXPECT_EQ(Schema_ValidateXml(nullptr, root, &error), XML_REFUSED);
    EXPECT_EQ(Schema_ValidateXml(tree.get(), nullptr, &error), XML_REFUSED);
    EXPECT_EQ(Schema_ValidateXml(tree.get(), root, nullptr), XML_REFUSED);
    EXPECT_TRUE(isSame(error, untouched()));
}

// The result is 0 for every document; a valid one leaves nothing but zeros.
TEST(Validate, Results) {
    SchemaMaker schema;
    schema.add(schema.element(SchemaMaker::ofSimple("r", &kInt)), SCHEMA_KIND_ELEMENT);
    SchemaErrorInfo error = untouched();
    EXPECT_EQ(Schema_ValidateXml(parsed("<r>5</r>").get(), &schema.root(), &error), XML_OK);
    EXPECT_TRUE(isSame(error, SchemaErrorInfo{}));
    // The record of an error is not left over from another.
    const NodePtr wrong = parsed("<r>x</r>");
    error = untouched();
    EXPECT_EQ(Schema_ValidateXml(wrong.get(), &schema.root(), &error), XML_OK);
    EXPECT_EQ(error.code, 3u);
    EXPECT_EQ(error.node, wrong.get());
    EXPECT_STREQ(error.name, "r");
    EXPECT_EQ(error.ns, nullptr);
    EXPECT_EQ(error.attrName, nullptr);
    EXPECT_EQ(error.attrNs, nullptr);
    EXPECT_STREQ(error.text, "x is an invalid value of int type value.");
    EXPECT_EQ(Schema_ValidateXml(parsed("<s/>").get(), &schema.root(), &error), XML_OK);
    SchemaErrorInfo noRoot{};
    noRoot.code = 12;
    EXPECT_TRUE(isSame(error, noRoot));
    EXPECT_EQ(Schema_ValidateXml(parsed("<r>5</r>").get(), &schema.root(), &error), XML_OK);
    EXPECT_TRUE(isSame(error, SchemaErrorInfo{}));
    char buffer[512] = "as it was";
    EXPECT_EQ(Schema_GetErrorDesc(&error, sizeof buffer, buffer), XML_OK);
    EXPECT_STREQ(buffer, "as it was");
}

// The first function is the second one with mode 0.
TEST(Validate, Modes) {
    SchemaMaker schema;
    SchemaElementDecl child = SchemaMaker::plain("a");
    child.targetNamespace = "urn:t";
    child.alternativeNamespace = "urn:alt";
    schema.declare(child);
    schema.addElement("r", "seq(a)");
    const NodePtr target = parsed("<r><a xmlns='urn:t'/></r>");
    const NodePtr alternative = parsed("<r><a xmlns='urn:alt'/></r>");
    const auto code = [&](const NodePtr &tree, std::uint32_t mode) {
        SchemaErrorInfo error = untouched();
        EXPECT_EQ(Schema_ValidateXmlEx(tree.get(), &schema.root(), mode, &error), XML_OK);
        return error.code;
    };
    for (const std::uint32_t mode : {0u, 2u, 3u, 0xFFFFu, 0x10000u, 0x20000u, 0xFFFFFFFFu}) {
        EXPECT_EQ(code(target, mode), 0u) << mode;
        EXPECT_EQ(code(alternative, mode), 1u) << mode;
    }
    // 16 bits are kept.
    for (const std::uint32_t mode : {1u, 0x10001u, 0xFFFF0001u}) {
        EXPECT_EQ(code(target, mode), 1u) << mode;
        EXPECT_EQ(code(alternative, mode), 0u) << mode;
    }
    SchemaErrorInfo error = untouched();
    EXPECT_EQ(Schema_ValidateXml(alternative.get(), &schema.root(), &error), XML_OK);
    EXPECT_EQ(error.code, 1u);
    EXPECT_EQ(error.node, alternative.get());
    EXPECT_STREQ(error.name, "a");
    EXPECT_STREQ(error.ns, "urn:t");
    EXPECT_EQ(Schema_ValidateXml(target.get(), &schema.root(), &error), XML_OK);
    EXPECT_EQ(error.code, 0u);
}

// Roots are looked up in the order of the registry.
TEST(Validate, Registry) {
    SchemaRoot root{};
    Schema_InitRoot(&root);
    const SchemaElementDecl number = SchemaMaker::ofSimple("r", &kInt);
    const SchemaElementDecl any = SchemaMaker::plain("r");
    const SchemaElementDecl other = SchemaMaker::plain("other");
    const SchemaTopObject numberTop{&number, SCHEMA_KIND_ELEMENT},
        anyTop{&any, SCHEMA_KIND_ELEMENT}, otherTop{&other, SCHEMA_KIND_ELEMENT};
    EXPECT_EQ(verdict("<r>x</r>", root), "12: The root element of XML document is invalid.");
    for (const SchemaTopObject *top : {&otherTop, &numberTop, &anyTop}) {
        ASSERT_EQ(Schema_RegTopObject(&root, top), XML_OK);
    }
    EXPECT_EQ(verdict("<r>5</r>", root), "valid");
    EXPECT_NE(verdict("<r>x</r>", root), "valid");
    // The last one takes the place of the one that is removed.
    Schema_DeregTopObject(&root, &otherTop);
    EXPECT_EQ(verdict("<r>x</r>", root), "valid");
    EXPECT_EQ(verdict("<other/>", root), "12: The root element of XML document is invalid.");
    Schema_DeregTopObject(&root, &anyTop);
    EXPECT_NE(verdict("<r>x</r>", root), "valid");
    Schema_DeregTopObject(&root, &numberTop);
    EXPECT_EQ(verdict("<r>5</r>", root), "12: The root element of XML document is invalid.");
    Schema_ExitRoot(&root);
}

// A root that was never initialized is one without elements.
TEST(Validate, EmptyRoot) {
    const SchemaRoot root{};
    EXPECT_EQ(verdict("<r/>", root), "12: The root element of XML document is invalid.");
}

// A model group of no known compositor ends a run without an error, unless one comes before it.
TEST(Validate, UnknownCompositor) {
    SchemaMaker schema;
    const SchemaModelGroup broken{nullptr, 1, 1, 0, 0};
    schema.declare(SchemaMaker::ofSimple("n", &kInt));
    const SchemaModelGroup &good = *schema.model("seq(n)");
    const SchemaTypedRef particles[] = {{&good, SCHEMA_KIND_MODEL_GROUP},
                                        {&broken, SCHEMA_KIND_MODEL_GROUP}};
    const SchemaModelGroup both{particles, 1, 1, 2, SCHEMA_KIND_SEQUENCE};
    SchemaComplexType type{};
    type.particle = &broken;
    schema.add(schema.element(SchemaMaker::ofComplex("r", schema.complexType(type))),
               SCHEMA_KIND_ELEMENT);
    type.particle = &both;
    schema.add(schema.element(SchemaMaker::ofComplex("s", schema.complexType(type))),
               SCHEMA_KIND_ELEMENT);
    EXPECT_EQ(verdict("<r/>", schema.root()), "refused valid");
    EXPECT_EQ(verdict("<r k='1'/>", schema.root()), "refused valid");
    EXPECT_EQ(verdict("<s><n>5</n></s>", schema.root()), "refused valid");
    EXPECT_EQ(verdict("<s k='1'><n>5</n></s>", schema.root()), "refused valid");
    EXPECT_EQ(verdict("<s><n>x</n></s>", schema.root()),
              "3 node=/s/n[1] name=n text=x is an invalid value of int type value.: The value of "
              "element '/s/n[1]' is invalid. x is an invalid value of int type value.");
    EXPECT_EQ(verdict("<s><z/></s>", schema.root()),
              "1 node=/s name=n: Expecting element '':'n' under element '/s'.");
}

}  // namespace
