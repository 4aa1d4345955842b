// Complex types with simple content: restrictions and extensions of simple and complex types.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "compactxml.h"
#include "tests/support/schema_maker.h"

namespace {

using support::SchemaMaker;
using support::verdict;

constexpr SchemaSimpleType kInt{nullptr, nullptr, "int", nullptr, SCHEMA_TYPE_INT, 0, 0, 0};
constexpr SchemaSimpleType kString{nullptr, nullptr, "string", nullptr, SCHEMA_TYPE_STRING,
                                   0,       0,       0};

constexpr SchemaFacet kAtMost10[] = {{"10", SCHEMA_FACET_MAX_INCLUSIVE, SCHEMA_TYPE_INT}};
constexpr SchemaFacet kAtLeast5[] = {{"5", SCHEMA_FACET_MIN_INCLUSIVE, SCHEMA_TYPE_INT}};
constexpr SchemaFacet kNotEmpty[] = {{"1", SCHEMA_FACET_MIN_LENGTH, SCHEMA_TYPE_STRING}};
constexpr SchemaFacet kThreeNames[] = {{"up", SCHEMA_FACET_ENUMERATION, SCHEMA_TYPE_STRING},
                                       {"down", SCHEMA_FACET_ENUMERATION, SCHEMA_TYPE_STRING},
                                       {"", SCHEMA_FACET_ENUMERATION, SCHEMA_TYPE_STRING}};
constexpr SchemaFacet kLower[] = {{"^[a-z]*$", SCHEMA_FACET_PATTERN, SCHEMA_TYPE_STRING}};

class ContentSchema : public SchemaMaker {
  public:
    const SchemaComplexType *over(std::int32_t kind, const void *base, std::int32_t baseKind,
                                  const SchemaFacet *facets = nullptr, std::uint32_t count = 0) {
        SchemaDerivation content{};
        content.derivationKind = kind;
        content.baseType = base;
        content.baseTypeKind = baseKind;
        content.facets = facets;
        content.facetCount = count;
        SchemaComplexType type{};
        type.content = derivation(content);
        return complexType(type);
    }
    const SchemaComplexType *extension(const SchemaSimpleType *base) {
        return over(SCHEMA_KIND_SIMPLE_EXTENSION, base, SCHEMA_KIND_SIMPLE_TYPE);
    }
    const SchemaComplexType *extension(const SchemaComplexType *base) {
        return over(SCHEMA_KIND_SIMPLE_EXTENSION, base, SCHEMA_KIND_COMPLEX_TYPE);
    }
    template <std::uint32_t count>
    const SchemaComplexType *restriction(const SchemaComplexType *base,
                                         const SchemaFacet (&facets)[count]) {
        return over(SCHEMA_KIND_SIMPLE_RESTRICTION, base, SCHEMA_KIND_COMPLEX_TYPE, facets, count);
    }
    void top(const SchemaElementDecl &decl) { add(element(decl), SCHEMA_KIND_ELEMENT); }
    void top(const char *name, const SchemaComplexType *type) { top(ofComplex(name, type)); }
};

struct DocumentCase {
    const char *document, *verdict;
};

template <std::size_t count>
void expectVerdicts(SchemaMaker &schema, const DocumentCase (&cases)[count]) {
    for (const DocumentCase &row : cases) {
        EXPECT_EQ(verdict(row.document, schema.root()), row.verdict) << row.document;
    }
}

#define NO_INT "x is an invalid value of int type value."
#define NO_VALUE "int cannot be empty."
#define VALUE_OF(element, text)                                                           \
    "3 node=/" element " name=" element " text=" text ": The value of element '/" element \
    "' is invalid. " text
#define CHILD_IN(element) \
    "10 node=/" element ": Element '/" element "' can not have a child element."

TEST(SimpleContent, Extensions) {
    ContentSchema schema;
    const auto *number = schema.extension(&kInt);
    schema.top("simple", number);
    schema.top("complex", schema.extension(number));
    schema.top("third", schema.extension(schema.extension(number)));
    schema.top("string", schema.extension(&kString));
    schema.top("empty", schema.extension(schema.complexType({})));
    SchemaElementDecl nillable = SchemaMaker::ofComplex("nillable", number);
    nillable.nillable = 1;
    schema.top(nillable);
    SchemaElementDecl fixed = SchemaMaker::ofComplex("fixed", number);
    fixed.hasFixed = 1;
    fixed.fixedValue = "x";
    schema.top(fixed);
    constexpr DocumentCase kCases[] = {
        {"<simple>5</simple>", "valid"},
        {"<simple>x</simple>", VALUE_OF("simple", NO_INT)},
        {"<simple/>", VALUE_OF("simple", NO_VALUE)},
        // The first text is the value; other character data is none.
        {"<simple>5<![CDATA[y]]>x</simple>", "valid"},
        {"<simple>x<![CDATA[y]]>5</simple>", VALUE_OF("simple", NO_INT)},
        {"<simple><![CDATA[5]]></simple>", VALUE_OF("simple", NO_VALUE)},
        {"<simple><![CDATA[x]]>5</simple>", "valid"},
        {"<simple><a/></simple>", CHILD_IN("simple")},
        {"<simple>5<a/></simple>", CHILD_IN("simple")},
        {"<simple>x<a/></simple>", CHILD_IN("simple")},
        // Attributes come last.
        {"<simple k='1'>5</simple>",
         "7 node=/simple attr=k: Unexpected attribute 'k' of element '/simple'."},
        {"<simple k='1'>x</simple>", VALUE_OF("simple", NO_INT)},
        {"<simple k='1'>5<a/></simple>", CHILD_IN("simple")},
        {"<complex>5</complex>", "valid"},
        {"<complex>x</complex>", VALUE_OF("complex", NO_INT)},
        {"<complex/>", VALUE_OF("complex", NO_VALUE)},
        {"<third>5</third>", "valid"},
        {"<third>x</third>", VALUE_OF("third", NO_INT)},
        {"<third>5<a/></third>", CHILD_IN("third")},
        {"<string/>", "valid"},
        {"<string>x</string>", "valid"},
        {"<string><![CDATA[x]]></string>", "valid"},
        {"<empty>x</empty>", "valid"},
        {"<empty/>", "valid"},
        {"<empty><a/></empty>", CHILD_IN("empty")},
        {"<nillable/>", "valid"},
        {"<nillable>x</nillable>", VALUE_OF("nillable", NO_INT)},
        {"<nillable k='1'/>",
         "7 node=/nillable attr=k: Unexpected attribute 'k' of element '/nillable'."},
        {"<fixed>x</fixed>", "valid"},
        {"<fixed>5</fixed>", VALUE_OF("fixed", "must equal x")},
        {"<fixed>x<a/></fixed>", CHILD_IN("fixed")},
    };
    expectVerdicts(schema, kCases);
}

TEST(SimpleContent, Restrictions) {
    ContentSchema schema;
    const auto *number = schema.extension(&kInt);
    const auto *text = schema.extension(&kString);
    const auto *most = schema.restriction(number, kAtMost10);
    schema.top("most", most);
    schema.top("range", schema.restriction(most, kAtLeast5));
    schema.top("extended", schema.extension(schema.restriction(most, kAtLeast5)));
    schema.top("notEmpty", schema.restriction(text, kNotEmpty));
    schema.top("names", schema.restriction(text, kThreeNames));
    schema.top("lower", schema.restriction(text, kLower));
    schema.top("noFacets",
               schema.over(SCHEMA_KIND_SIMPLE_RESTRICTION, number, SCHEMA_KIND_COMPLEX_TYPE));
    schema.top("simpleBase", schema.over(SCHEMA_KIND_SIMPLE_RESTRICTION, &kInt,
                                         SCHEMA_KIND_SIMPLE_TYPE, kAtMost10, 1));
    // Any other kind is taken for a restriction.
    schema.top("other", schema.over(99, number, SCHEMA_KIND_COMPLEX_TYPE, kAtMost10, 1));
    SchemaElementDecl fixed = SchemaMaker::ofComplex("fixed", most);
    fixed.hasFixed = 1;
    fixed.fixedValue = "11";
    schema.top(fixed);
    constexpr DocumentCase kCases[] = {
        {"<most>10</most>", "valid"},
        {"<most>11</most>", VALUE_OF("most", "The value must be less than or equal to 10.")},
        {"<most>x</most>", VALUE_OF("most", NO_INT)},
        {"<most/>", VALUE_OF("most", NO_VALUE)},
        {"<most>10<![CDATA[y]]>11</most>", "valid"},
        {"<most>11<![CDATA[y]]>10</most>",
         VALUE_OF("most", "The value must be less than or equal to 10.")},
        {"<most>10<a/></most>", CHILD_IN("most")},
        {"<most>11<a/></most>", CHILD_IN("most")},
        {"<most k='1'>11</most>", VALUE_OF("most", "The value must be less than or equal to 10.")},
        {"<most k='1'>10</most>",
         "7 node=/most attr=k: Unexpected attribute 'k' of element '/most'."},
        // The base comes first.
        {"<range>5</range>", "valid"},
        {"<range>10</range>", "valid"},
        {"<range>4</range>", VALUE_OF("range", "The value must be greater than or equal to 5.")},
        {"<range>11</range>", VALUE_OF("range", "The value must be less than or equal to 10.")},
        {"<range>x</range>", VALUE_OF("range", NO_INT)},
        {"<extended>4</extended>",
         VALUE_OF("extended", "The value must be greater than or equal to 5.")},
        {"<extended>7</extended>", "valid"},
        // Without text the value is "".
        {"<notEmpty>x</notEmpty>", "valid"},
        {"<notEmpty/>", VALUE_OF("notEmpty", "The length must be greater than or equal to 1.")},
        {"<notEmpty><![CDATA[x]]></notEmpty>",
         VALUE_OF("notEmpty", "The length must be greater than or equal to 1.")},
        {"<names>up</names>", "valid"},
        {"<names>down</names>", "valid"},
        {"<names/>", "valid"},
        {"<names>left</names>", VALUE_OF("names", "The value does not match the enumeration.")},
        {"<lower>abc</lower>", "valid"},
        {"<lower>aBc</lower>",
         VALUE_OF("lower", "The value does not match the regular expression.")},
        {"<noFacets>5</noFacets>", "valid"},
        {"<noFacets>x</noFacets>", VALUE_OF("noFacets", NO_INT)},
        {"<simpleBase>10</simpleBase>", "valid"},
        {"<simpleBase>x</simpleBase>", VALUE_OF("simpleBase", NO_INT)},
        {"<simpleBase>11</simpleBase>",
         VALUE_OF("simpleBase", "The value must be less than or equal to 10.")},
        {"<other>10</other>", "valid"},
        {"<other>11</other>", VALUE_OF("other", "The value must be less than or equal to 10.")},
        {"<other>10<a/></other>", CHILD_IN("other")},
        // With a fixed value neither type nor facets count.
        {"<fixed>11</fixed>", "valid"},
        {"<fixed>10</fixed>", VALUE_OF("fixed", "must equal 11")},
    };
    expectVerdicts(schema, kCases);
}

// Simple content may restrict a complex type that is mixed and can do without children: its content
// model is matched with none.
TEST(SimpleContent, OfElementContent) {
    ContentSchema schema;
    SchemaComplexType base{};
    base.mixed = 1;
    base.particle = schema.model("seq{0,1}(a)");
    schema.top("can", schema.restriction(schema.complexType(base), kNotEmpty));
    base.particle = schema.model("seq(a)");
    schema.top("cannot", schema.restriction(schema.complexType(base), kNotEmpty));
    constexpr DocumentCase kCases[] = {
        {"<can>x</can>", "valid"},
        {"<can/>", VALUE_OF("can", "The length must be greater than or equal to 1.")},
        {"<can>x<a/></can>", CHILD_IN("can")},
        {"<cannot>x</cannot>",
         "5 node=/cannot name=cannot: The number of occurrences of element '/cannot/cannot' is "
         "invalid."},
    };
    expectVerdicts(schema, kCases);
}

// The attributes of the derivation and of its base are those of the element.
TEST(SimpleContent, Attributes) {
    ContentSchema schema;
    SchemaAttributeDecl unit{};
    unit.name = "unit";
    unit.type = &kString;
    unit.use = 2;
    SchemaDerivation content{};
    content.derivationKind = SCHEMA_KIND_SIMPLE_EXTENSION;
    content.baseType = &kInt;
    content.baseTypeKind = SCHEMA_KIND_SIMPLE_TYPE;
    content.attributeUses = schema.uses({schema.attribute(unit)});
    content.attributeUseCount = 1;
    SchemaComplexType type{};
    type.content = schema.derivation(content);
    const SchemaComplexType *measured = schema.complexType(type);
    schema.top("m", measured);
    schema.top("most", schema.restriction(measured, kAtMost10));
    constexpr DocumentCase kCases[] = {
        {"<m unit='km'>5</m>", "valid"},
        {"<m>5</m>", "2 node=/m attr=unit: The element '/m' should have an attribute 'unit'."},
        {"<m>x</m>", VALUE_OF("m", NO_INT)},
        {"<most unit='km'>5</most>", "valid"},
        {"<most>5</most>",
         "2 node=/most attr=unit: The element '/most' should have an attribute 'unit'."},
        {"<most>11</most>", VALUE_OF("most", "The value must be less than or equal to 10.")},
    };
    expectVerdicts(schema, kCases);
}

}  // namespace
