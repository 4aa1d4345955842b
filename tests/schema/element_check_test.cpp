// What is asked of an element but for its attributes and the order of its children: values, texts
// and elements where they may not be, fixed values, elements without content.
#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

#include "compactxml.h"
#include "tests/support/owners.h"
#include "tests/support/schema_maker.h"

namespace {

using support::NodePtr;
using support::SchemaMaker;
using support::verdict;

constexpr SchemaSimpleType kInt{nullptr, nullptr, "int", nullptr, SCHEMA_TYPE_INT, 0, 0, 0};
constexpr SchemaSimpleType kBoolean{nullptr, nullptr, "boolean", nullptr, SCHEMA_TYPE_BOOLEAN,
                                    0,       0,       0};
constexpr SchemaSimpleType kString{nullptr, nullptr, "string", nullptr, SCHEMA_TYPE_STRING,
                                   0,       0,       0};

struct DocumentCase {
    const char *document, *verdict;
};

template <std::size_t count>
void expectVerdicts(SchemaMaker &schema, const DocumentCase (&cases)[count]) {
    for (const DocumentCase &row : cases) {
        EXPECT_EQ(verdict(row.document, schema.root()), row.verdict) << row.document;
    }
}

void addTop(SchemaMaker &schema, const SchemaElementDecl &decl) {
    schema.add(schema.element(decl), SCHEMA_KIND_ELEMENT);
}

SchemaElementDecl fixedTo(const char *value, SchemaElementDecl decl) {
    decl.hasFixed = 1;
    decl.fixedValue = value;
    return decl;
}

SchemaElementDecl nillable(SchemaElementDecl decl, std::uint16_t flag = 1) {
    decl.nillable = flag;
    return decl;
}

// A child made by hand: the parser drops blanks at the ends of a text.
struct Child {
    std::uint32_t type;
    const char *text;  // or name
};

NodePtr elementOf(const char *name, std::initializer_list<Child> children) {
    NodePtr element(XML_DOM_CreateElementNode(name));
    for (const Child &child : children) {
        XML_DOM_Node *node =
            child.type == XML_DOM_NODE_ELEMENT ? XML_DOM_CreateElementNode(child.text)
            : child.type == XML_DOM_NODE_CDATA ? XML_DOM_CreateCDataNode(child.text)
                                               : XML_DOM_CreateTextNode(child.text);
        if (XML_DOM_AddChildNode(element.get(), node) != XML_OK) XML_DOM_DelNode(node);
    }
    return element;
}

constexpr std::uint32_t kElement = XML_DOM_NODE_ELEMENT, kText = XML_DOM_NODE_TEXT,
                        kCData = XML_DOM_NODE_CDATA;

#define NO_INT "x is an invalid value of int type value."
#define VALUE_OF(element, text)                                                           \
    "3 node=/" element " name=" element " text=" text ": The value of element '/" element \
    "' is invalid. " text
#define TEXT_IN(element) \
    "9 node=/" element ": Element '/" element "' can not have a textual child element."
#define CHILD_IN(element) \
    "10 node=/" element ": Element '/" element "' can not have a child element."
// The message ends with the path of the parent.
#define CHILD_AT(parent, name) \
    "6 node=/" parent "/" name "[1]: Unexpected element '':'" name "' under element '/" parent
#define SURPLUS(element, name)                                                                 \
    "7 node=/" element " attr=" name ": Unexpected attribute '" name "' of element '/" element \
    "'"                                                                                        \
    "."

TEST(ElementCheck, SimpleTypes) {
    SchemaMaker schema;
    constexpr SchemaFacet kFacets[] = {{"10", SCHEMA_FACET_MAX_INCLUSIVE, SCHEMA_TYPE_INT}};
    constexpr const SchemaSimpleType *kMembers[] = {&kInt, &kBoolean};
    addTop(schema, SchemaMaker::ofSimple("int", &kInt));
    addTop(schema, SchemaMaker::ofSimple("string", &kString));
    addTop(schema, SchemaMaker::ofSimple("ten", schema.simpleType({kMembers, kFacets, nullptr,
                                                                   nullptr, 0, 1, 1, 0})));
    addTop(schema, SchemaMaker::ofSimple("either", schema.simpleType({kMembers, nullptr, nullptr,
                                                                      nullptr, 0, 0, 2, 0})));
    constexpr DocumentCase kCases[] = {
        {"<int>5</int>", "valid"},
        {"<int>x</int>", VALUE_OF("int", NO_INT)},
        {"<int/>", VALUE_OF("int", "int cannot be empty.")},
        {"<int></int>", VALUE_OF("int", "int cannot be empty.")},
        {"<string/>", "valid"},
        {"<string>x</string>", "valid"},
        // Of several texts the last one is the value.
        {"<int>x<![CDATA[y]]>5</int>", "valid"},
        {"<int>5<![CDATA[6]]>x</int>", VALUE_OF("int", NO_INT)},
        {"<int>x<![CDATA[y]]>y<![CDATA[y]]>5</int>", "valid"},
        {"<int>5<![CDATA[x]]></int>", "valid"},
        {"<int><![CDATA[x]]>5</int>", "valid"},
        // Other character data is none.
        {"<int><![CDATA[5]]></int>", VALUE_OF("int", "int cannot be empty.")},
        {"<string><![CDATA[x]]></string>", "valid"},
        // Elements.
        {"<int><a/></int>", CHILD_AT("int", "a")},
        {"<int>x<a/></int>", CHILD_AT("int", "a")},
        {"<int><b/><a/></int>", CHILD_AT("int", "b")},
        {"<string>x<![CDATA[y]]><a/></string>", CHILD_AT("string", "a")},
        {"<int>5<a xmlns='urn:u'/></int>",
         "6 node=/int/a[1]: Unexpected element 'urn:u':'a' under element '/int"},
        // Attributes come first.
        {"<int k='1'>5</int>", SURPLUS("int", "k")},
        {"<int k='1'>x</int>", SURPLUS("int", "k")},
        {"<int k='1'><a/></int>", SURPLUS("int", "k")},
        {"<int xml:lang='en'>5</int>", "valid"},
        // Other types.
        {"<ten>10</ten>", "valid"},
        {"<ten>11</ten>", VALUE_OF("ten", "The value must be less than or equal to 10.")},
        {"<ten>x</ten>", VALUE_OF("ten", NO_INT)},
        {"<either>true</either>", "valid"},
        {"<either>x</either>", VALUE_OF("either", "x does not match any member of union")},
    };
    expectVerdicts(schema, kCases);
}

TEST(ElementCheck, SimpleTypesWithTwoTexts) {
    SchemaMaker schema;
    addTop(schema, SchemaMaker::ofSimple("int", &kInt));
    addTop(schema, fixedTo("5", SchemaMaker::ofSimple("fixed", &kInt)));
    const auto said = [&](const char *name, std::initializer_list<Child> children) {
        return verdict(elementOf(name, children).get(), schema.root());
    };
    EXPECT_EQ(said("int", {{kText, "x"}, {kText, "5"}}), "valid");
    EXPECT_EQ(said("int", {{kText, "5"}, {kText, "x"}}), VALUE_OF("int", NO_INT));
    EXPECT_EQ(said("int", {{kText, "5"}, {kText, " "}}),
              VALUE_OF("int", "  is an invalid value of int type value."));
    EXPECT_EQ(said("int", {{kText, "5"}, {kText, ""}}), VALUE_OF("int", "int cannot be empty."));
    EXPECT_EQ(said("fixed", {{kText, "5"}, {kText, "x"}}), "valid");
    EXPECT_EQ(said("fixed", {{kText, "x"}, {kText, "5"}}), VALUE_OF("fixed", "must equal 5"));
    EXPECT_EQ(said("fixed", {{kCData, "x"}, {kText, "5"}}), "valid");
}

// Messages of values are cut before they come here: a value of any length is told of in 511 bytes.
TEST(ElementCheck, LongValues) {
    SchemaMaker schema;
    addTop(schema, SchemaMaker::ofSimple("int", &kInt));
    const std::string quoted = std::string(401, 'x') + " is an invalid value of int type value.";
    EXPECT_EQ(verdict("<int>" + std::string(600, 'x') + "</int>", schema.root()),
              "3 node=/int name=int text=" + quoted + ": The value of element '/int' is invalid. " +
                  quoted);
    const std::string fixed(600, 'f');
    addTop(schema, fixedTo(fixed.c_str(), SchemaMaker::ofSimple("fixed", &kInt)));
    EXPECT_EQ(verdict("<fixed>" + fixed + "</fixed>", schema.root()), "valid");
    const std::string must = ("must equal " + fixed).substr(0, 511);
    EXPECT_EQ(verdict("<fixed>" + fixed + "f</fixed>", schema.root()),
              "3 node=/fixed name=fixed text=" + must +
                  ": The value of element '/fixed' is invalid. " + must);
}

TEST(ElementCheck, FixedSimpleTypes) {
    SchemaMaker schema;
    addTop(schema, fixedTo("5", SchemaMaker::ofSimple("five", &kInt)));
    addTop(schema, fixedTo("x", SchemaMaker::ofSimple("text", &kInt)));
    addTop(schema, fixedTo("", SchemaMaker::ofSimple("empty", &kInt)));
    addTop(schema, fixedTo(nullptr, SchemaMaker::ofSimple("null", &kInt)));
    SchemaElementDecl notFixed = fixedTo("5", SchemaMaker::ofSimple("not", &kInt));
    notFixed.hasFixed = 2;
    addTop(schema, notFixed);
    constexpr DocumentCase kCases[] = {
        {"<five>5</five>", "valid"},
        {"<five>05</five>", VALUE_OF("five", "must equal 5")},
        {"<five/>", VALUE_OF("five", "must equal 5")},
        // The first text counts here.
        {"<five>5<![CDATA[6]]>x</five>", "valid"},
        {"<five>x<![CDATA[6]]>5</five>", VALUE_OF("five", "must equal 5")},
        {"<five><![CDATA[6]]>5</five>", "valid"},
        {"<five><![CDATA[5]]></five>", VALUE_OF("five", "must equal 5")},
        {"<five>6<a/></five>", CHILD_AT("five", "a")},
        {"<five>5<a/></five>", CHILD_AT("five", "a")},
        {"<five k='1'>6</five>", SURPLUS("five", "k")},
        {"<text>x</text>", "valid"},  // the type does not count
        {"<text>5</text>", VALUE_OF("text", "must equal x")},
        {"<empty/>", "valid"},
        {"<empty><![CDATA[x]]></empty>", "valid"},
        {"<empty>5</empty>", VALUE_OF("empty", "must be empty")},
        {"<null/>", "valid"},
        {"<null>5</null>", VALUE_OF("null", "must be empty")},
        {"<not>6</not>", "valid"},
        {"<not>x</not>", VALUE_OF("not", NO_INT)},
    };
    expectVerdicts(schema, kCases);
}

TEST(ElementCheck, Nillable) {
    SchemaMaker schema;
    SchemaAttributeDecl needed{};
    needed.name = "q";
    needed.use = 2;
    needed.type = &kInt;
    SchemaComplexType type{};
    type.particle = schema.model("seq(a)");
    type.attributeUses = schema.uses({schema.attribute(needed)});
    type.attributeUseCount = 1;
    const SchemaComplexType *needs = schema.complexType(type);
    addTop(schema, nillable(SchemaMaker::ofSimple("s", &kInt)));
    addTop(schema, nillable(SchemaMaker::ofSimple("two", &kInt), 2));
    addTop(schema, nillable(fixedTo("5", SchemaMaker::ofSimple("fixed", &kInt))));
    addTop(schema, nillable(SchemaMaker::ofComplex("c", needs)));
    addTop(schema, SchemaMaker::ofComplex("plain", needs));
    addTop(schema, nillable(fixedTo("5", SchemaMaker::ofComplex("cFixed", needs))));
#define X " xmlns:i='http://www.w3.org/2001/XMLSchema-instance' "
    constexpr DocumentCase kCases[] = {
        // It takes no xsi:nil, and xsi:nil takes nothing.
        {"<s/>", "valid"},
        {"<s></s>", "valid"},
        {"<s" X "i:nil='true'/>", "valid"},
        {"<s" X "i:nil='false'/>", "valid"},
        {"<s" X "i:nil='true'>5</s>", "valid"},
        {"<s>5</s>", "valid"},
        {"<s>x</s>", VALUE_OF("s", NO_INT)},
        {"<s" X "i:nil='true'>x</s>", VALUE_OF("s", NO_INT)},
        {"<s><![CDATA[5]]></s>", VALUE_OF("s", "int cannot be empty.")},
        {"<s k='1'/>", SURPLUS("s", "k")},
        {"<two/>", VALUE_OF("two", "int cannot be empty.")},
        {"<fixed/>", "valid"},
        {"<fixed>6</fixed>", VALUE_OF("fixed", "must equal 5")},
        {"<c q='1'/>", "valid"},
        {"<c q='1'><a/></c>", "valid"},
        {"<c/>", "2 node=/c attr=q: The element '/c' should have an attribute 'q'."},
        {"<c k='1'/>", "2 node=/c attr=q: The element '/c' should have an attribute 'q'."},
        {"<c q='1' k='1'/>", SURPLUS("c", "k")},
        {"<c q='x'/>", "4 node=/c attr=q text=" NO_INT
                       ": The value of attribute 'q' for element '/c' is invalid. " NO_INT},
        {"<c q='1'>x</c>", TEXT_IN("c")},
        {"<c q='1'><b/></c>", "1 node=/c name=a: Expecting element '':'a' under element '/c'."},
        {"<plain q='1'/>",
         "5 node=/plain name=plain: The number of occurrences of element '/plain/plain' is "
         "invalid."},
        {"<plain" X "q='1' i:nil='true'/>",
         "5 node=/plain name=plain: The number of occurrences of element '/plain/plain' is "
         "invalid."},
        {"<cFixed q='1'/>", "valid"},
        {"<cFixed/>", "2 node=/cFixed attr=q: The element '/cFixed' should have an attribute 'q'."},
    };
    expectVerdicts(schema, kCases);
    // A blank is a child.
    EXPECT_EQ(verdict(elementOf("s", {{kText, " "}}).get(), schema.root()),
              VALUE_OF("s", "  is an invalid value of int type value."));
    EXPECT_EQ(verdict(elementOf("c", {{kText, " "}}).get(), schema.root()), TEXT_IN("c"));
}

TEST(ElementCheck, NullType) {
    SchemaMaker schema;
    addTop(schema, SchemaMaker::plain("none"));
    addTop(schema, fixedTo("5", nillable(SchemaMaker::plain("more"))));
    constexpr DocumentCase kCases[] = {
        {"<none/>", "valid"},
        {"<none k='1' xml:lang='zz'>text<a><b k='1'/></a><![CDATA[x]]></none>", "valid"},
        {"<more k='1'>6<a/></more>", "valid"},
    };
    expectVerdicts(schema, kCases);
}

TEST(ElementCheck, EmptyContent) {
    SchemaMaker schema;
    const SchemaComplexType *empty = schema.complexType({});
    SchemaComplexType type{};
    type.mixed = 1;
    const SchemaComplexType *mixed = schema.complexType(type);
    addTop(schema, SchemaMaker::ofComplex("empty", empty));
    addTop(schema, SchemaMaker::ofComplex("mixed", mixed));
    addTop(schema, fixedTo("5", SchemaMaker::ofComplex("fixed", empty)));
    addTop(schema, fixedTo("", SchemaMaker::ofComplex("nothing", empty)));
    constexpr DocumentCase kCases[] = {
        {"<empty/>", "valid"},
        {"<empty>x</empty>", TEXT_IN("empty")},
        {"<empty><![CDATA[x]]></empty>", TEXT_IN("empty")},
        {"<empty>&#32;</empty>", TEXT_IN("empty")},
        {"<empty><a/></empty>", CHILD_IN("empty")},
        {"<empty><a/><b/></empty>", CHILD_IN("empty")},
        // Text comes before elements, wherever it stands.
        {"<empty>x<a/></empty>", TEXT_IN("empty")},
        {"<empty><a/>x</empty>", TEXT_IN("empty")},
        {"<empty><a/><![CDATA[x]]></empty>", TEXT_IN("empty")},
        {"<empty k='1'/>", SURPLUS("empty", "k")},
        {"<empty k='1'>x</empty>", TEXT_IN("empty")},
        {"<empty k='1'><a/></empty>", CHILD_IN("empty")},
        // There is nothing to mix with.
        {"<mixed/>", "valid"},
        {"<mixed>x</mixed>", TEXT_IN("mixed")},
        {"<mixed><a/></mixed>", CHILD_IN("mixed")},
        // With a fixed value there may be text.
        {"<fixed>5</fixed>", "valid"},
        {"<fixed>6</fixed>", VALUE_OF("fixed", "must equal 5")},
        {"<fixed/>", VALUE_OF("fixed", "must equal 5")},
        {"<fixed><![CDATA[5]]></fixed>", VALUE_OF("fixed", "must equal 5")},
        {"<fixed>5<![CDATA[x]]>6</fixed>", "valid"},
        {"<fixed><a/></fixed>", CHILD_IN("fixed")},
        {"<fixed>5<a/></fixed>", CHILD_IN("fixed")},
        {"<fixed>6<a/></fixed>", CHILD_IN("fixed")},
        {"<fixed k='1'>5</fixed>", SURPLUS("fixed", "k")},
        {"<fixed k='1'>6</fixed>", VALUE_OF("fixed", "must equal 5")},
        {"<nothing/>", "valid"},
        {"<nothing><![CDATA[x]]></nothing>", "valid"},
        {"<nothing>x</nothing>", VALUE_OF("nothing", "must be empty")},
    };
    expectVerdicts(schema, kCases);
    for (const char *blank : {" ", "\n", "\t \n", ""}) {
        EXPECT_EQ(verdict(elementOf("empty", {{kText, blank}}).get(), schema.root()),
                  TEXT_IN("empty"));
        EXPECT_EQ(verdict(elementOf("empty", {{kCData, blank}}).get(), schema.root()),
                  TEXT_IN("empty"));
    }
    EXPECT_EQ(verdict(elementOf("empty", {{kElement, "a"}, {kText, " "}}).get(), schema.root()),
              TEXT_IN("empty"));
    EXPECT_EQ(verdict(elementOf("nothing", {{kText, ""}}).get(), schema.root()), "valid");
}

TEST(ElementCheck, ElementContent) {
    SchemaMaker schema;
    schema.addElement("plain", "seq(a, b{0,1})");
    schema.addElement("mixed", "seq(a, b{0,1})", true);
    SchemaComplexType type{};
    type.particle = schema.model("seq(a, b{0,1})");
    type.mixed = 2;
    addTop(schema, SchemaMaker::ofComplex("two", schema.complexType(type)));
    constexpr DocumentCase kCases[] = {
        {"<plain><a/></plain>", "valid"},
        {"<plain>x<a/></plain>", TEXT_IN("plain")},
        {"<plain><a/>x</plain>", TEXT_IN("plain")},
        {"<plain><a/><![CDATA[x]]></plain>", TEXT_IN("plain")},
        {"<plain>x</plain>", TEXT_IN("plain")},
        {"<plain><c/>x</plain>", TEXT_IN("plain")},
        {"<plain k='1'><a/>x</plain>", TEXT_IN("plain")},
        {"<mixed>x<a/></mixed>", "valid"},
        {"<mixed>x<a/>y<b/>z</mixed>", "valid"},
        {"<mixed><![CDATA[x]]><a/><![CDATA[y]]></mixed>", "valid"},
        {"<mixed>x</mixed>",
         "5 node=/mixed name=mixed: The number of occurrences of element '/mixed/mixed' is "
         "invalid."},
        {"<mixed>x<b/></mixed>",
         "1 node=/mixed name=a: Expecting element '':'a' under element '/mixed'."},
        {"<mixed>x<a/>y<c/>z</mixed>", CHILD_AT("mixed", "c")},
        {"<mixed k='1'>x<a/>y<c/></mixed>", CHILD_AT("mixed", "c")},
        {"<mixed k='1'>x<a/></mixed>", SURPLUS("mixed", "k")},
        {"<two><a/>x</two>", TEXT_IN("two")},
    };
    expectVerdicts(schema, kCases);
    EXPECT_EQ(verdict(elementOf("plain", {{kElement, "a"}, {kText, " "}}).get(), schema.root()),
              TEXT_IN("plain"));
}

TEST(ElementCheck, FixedComplexTypes) {
    SchemaMaker schema;
    SchemaAttributeDecl needed{};
    needed.name = "q";
    needed.use = 2;
    needed.type = &kInt;
    SchemaComplexType type{};
    type.particle = schema.model("seq(a)");
    addTop(schema, fixedTo("", SchemaMaker::ofComplex("plain", schema.complexType(type))));
    type.mixed = 1;
    addTop(schema, fixedTo("5", SchemaMaker::ofComplex("mixed", schema.complexType(type))));
    type.attributeUses = schema.uses({schema.attribute(needed)});
    type.attributeUseCount = 1;
    addTop(schema, fixedTo("5", SchemaMaker::ofComplex("needs", schema.complexType(type))));
    constexpr DocumentCase kCases[] = {
        // Text is still refused where it may not be, and child elements are not looked at.
        {"<plain/>", "valid"},
        {"<plain>x</plain>", TEXT_IN("plain")},
        {"<plain><z/></plain>", "valid"},
        {"<mixed>5</mixed>", "valid"},
        {"<mixed>5<z k='1'>x</z></mixed>", "valid"},
        {"<mixed><z/>5</mixed>", "valid"},
        {"<mixed>5<z/>6</mixed>", "valid"},
        {"<mixed>6<z/>5</mixed>", VALUE_OF("mixed", "must equal 5")},
        {"<mixed><a/></mixed>", VALUE_OF("mixed", "must equal 5")},
        {"<mixed><![CDATA[5]]></mixed>", VALUE_OF("mixed", "must equal 5")},
        {"<mixed k='1'>5</mixed>", SURPLUS("mixed", "k")},
        {"<needs q='1'>5<z/></needs>", "valid"},
        {"<needs>5</needs>",
         "2 node=/needs attr=q: The element '/needs' should have an attribute 'q'."},
        {"<needs>6</needs>", VALUE_OF("needs", "must equal 5")},
    };
    expectVerdicts(schema, kCases);
}

// A derivation with complex content is not empty, even if it has no particle.
TEST(ElementCheck, DerivedWithoutParticle) {
    SchemaMaker schema;
    for (const std::int32_t kind :
         {SCHEMA_KIND_COMPLEX_RESTRICTION, SCHEMA_KIND_COMPLEX_EXTENSION}) {
        for (const std::uint16_t mixed : {0, 1}) {
            SchemaDerivation content{};
            content.derivationKind = kind;
            content.baseTypeKind = SCHEMA_KIND_COMPLEX_TYPE;
            content.baseType = schema.complexType({});
            SchemaComplexType type{};
            type.content = schema.derivation(content);
            type.mixed = mixed;
            const char *name = kind == SCHEMA_KIND_COMPLEX_RESTRICTION ? (mixed ? "rm" : "r")
                                                                       : (mixed ? "em" : "e");
            addTop(schema, SchemaMaker::ofComplex(name, schema.complexType(type)));
        }
    }
    constexpr DocumentCase kCases[] = {
        {"<r/>", "valid"},
        {"<r>x</r>", TEXT_IN("r")},
        {"<r><a/></r>", CHILD_AT("r", "a")},
        {"<r><a/>x</r>", TEXT_IN("r")},
        {"<rm>x</rm>", "valid"},
        {"<rm>x<a/></rm>", CHILD_AT("rm", "a")},
        {"<e/>", "valid"},
        {"<e>x</e>", TEXT_IN("e")},
        {"<e><a/></e>", CHILD_AT("e", "a")},
        {"<em>x</em>", "valid"},
        {"<em>x<a/></em>", CHILD_AT("em", "a")},
    };
    expectVerdicts(schema, kCases);
}

}  // namespace
