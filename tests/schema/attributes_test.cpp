// Attributes of elements against their declarations, groups and wildcards.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "compactxml.h"
#include "tests/support/schema_maker.h"
#include "tests/support/written.h"

namespace {

using support::SchemaMaker;
using support::verdict;

using Uses = std::vector<const SchemaAttributeDecl *>;
using Groups = std::vector<const SchemaAttributeGroup *>;

constexpr std::int32_t kOptional = 0, kProhibited = 1, kRequired = 2;
constexpr std::int32_t kStrict = 0, kLax = 1, kSkip = 2;
constexpr std::uint32_t kByDefault = 0, kQualified = 1, kUnqualified = 2;
constexpr const char *kXml = "http://www.w3.org/XML/1998/namespace";
#define XSI "http://www.w3.org/2001/XMLSchema-instance"
#define XML_NS "http://www.w3.org/XML/1998/namespace"

constexpr SchemaSimpleType kInt{nullptr, nullptr, "int", nullptr, SCHEMA_TYPE_INT, 0, 0, 0};
constexpr SchemaSimpleType kString{nullptr, nullptr, "string", nullptr, SCHEMA_TYPE_STRING,
                                   0,       0,       0};

SchemaAttributeDecl named(const char *name, std::int32_t use = kOptional,
                          const SchemaSimpleType *type = &kInt) {
    SchemaAttributeDecl decl{};
    decl.name = name;
    decl.use = use;
    decl.type = type;
    return decl;
}

SchemaAttributeDecl inNamespace(const char *ns, SchemaAttributeDecl decl,
                                std::int32_t form = kByDefault) {
    decl.targetNamespace = ns;
    decl.form = form;
    return decl;
}

SchemaAttributeDecl fixed(const char *value, SchemaAttributeDecl decl) {
    decl.hasFixed = 1;
    decl.fixedValue = value;
    return decl;
}

// Makes elements without content of a type that has attributes.
class AttributeSchema : public SchemaMaker {
  public:
    const SchemaAttributeDecl *use(const SchemaAttributeDecl &decl) { return attribute(decl); }
    const SchemaAttributeDecl *top(const SchemaAttributeDecl &decl) {
        const SchemaAttributeDecl *made = attribute(decl);
        add(made, SCHEMA_KIND_ATTRIBUTE);
        return made;
    }
    const SchemaAttributeDecl *ref(const SchemaAttributeDecl *to, SchemaAttributeDecl own = {}) {
        own.ref = to;
        return attribute(own);
    }
    const SchemaWildcard *any(std::int32_t process, const char *constraint = "##any",
                              const char *target = nullptr) {
        return attributeWildcard({target, constraint, process});
    }
    const SchemaAttributeGroup *group(const Uses &list, const SchemaWildcard *wildcard = nullptr,
                                      const Groups &nested = {},
                                      const SchemaAttributeGroup *to = nullptr) {
        SchemaAttributeGroup made{};
        made.attributeUses = uses(list);
        made.attributeUseCount = static_cast<std::uint32_t>(list.size());
        made.attributeGroups = groups(nested);
        made.attributeGroupCount = static_cast<std::uint32_t>(nested.size());
        made.attributeWildcard = wildcard;
        made.ref = to;
        return attributeGroup(made);
    }
    const SchemaComplexType *type(const Uses &list, const SchemaWildcard *wildcard = nullptr,
                                  const Groups &nested = {},
                                  const SchemaDerivation *content = nullptr) {
        SchemaComplexType made{};
        made.attributeUses = uses(list);
        made.attributeUseCount = static_cast<std::uint32_t>(list.size());
        made.attributeGroups = groups(nested);
        made.attributeGroupCount = static_cast<std::uint32_t>(nested.size());
        made.attributeWildcard = wildcard;
        made.content = content;
        return complexType(made);
    }
    const SchemaDerivation *derived(std::int32_t kind, const SchemaComplexType *base,
                                    const Uses &list, const SchemaWildcard *wildcard = nullptr,
                                    const Groups &nested = {}) {
        SchemaDerivation made{};
        made.derivationKind = kind;
        made.baseType = base;
        made.baseTypeKind = SCHEMA_KIND_COMPLEX_TYPE;
        made.attributeUses = uses(list);
        made.attributeUseCount = static_cast<std::uint32_t>(list.size());
        made.attributeGroups = groups(nested);
        made.attributeGroupCount = static_cast<std::uint32_t>(nested.size());
        made.attributeWildcard = wildcard;
        return derivation(made);
    }
    void topElement(const char *name, const SchemaComplexType *of) {
        add(element(ofComplex(name, of)), SCHEMA_KIND_ELEMENT);
    }
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

TEST(Attributes, Uses) {
    AttributeSchema schema;
    schema.topElement("none", schema.type({}));
    schema.topElement("optional", schema.type({schema.use(named("a"))}));
    schema.topElement("three", schema.type({schema.use(named("a", 3))}));
    schema.topElement("required", schema.type({schema.use(named("a", kRequired))}));
    schema.topElement("prohibited", schema.type({schema.use(named("a", kProhibited))}));
    schema.topElement("untyped", schema.type({schema.use(named("a", kOptional, nullptr))}));
    schema.topElement("fixed", schema.type({schema.use(fixed("5", named("a")))}));
    schema.topElement("fixedRequired",
                      schema.type({schema.use(fixed("5", named("a", kRequired)))}));
    schema.topElement("fixedProhibited",
                      schema.type({schema.use(fixed("5", named("a", kProhibited)))}));
    schema.topElement("fixedText", schema.type({schema.use(fixed("x", named("a")))}));
    schema.topElement("fixedEmpty", schema.type({schema.use(fixed("", named("a")))}));
    schema.topElement("fixedNull", schema.type({schema.use(fixed(nullptr, named("a")))}));
    SchemaAttributeDecl notFixed = fixed("5", named("a"));
    notFixed.hasFixed = 2;
    schema.topElement("notFixed", schema.type({schema.use(notFixed)}));
    constexpr DocumentCase kCases[] = {
        {"<none/>", "valid"},
        {"<none xmlns='' xmlns:u='urn:u'/>", "valid"},  // declarations are no attributes
        {"<none a='1'/>", "7 node=/none attr=a: Unexpected attribute 'a' of element '/none'."},
        {"<none xmlns:u='urn:u' u:a='1'/>",
         "7 node=/none attr=a attrNs=urn:u: Unexpected attribute 'urn:u':'a' of element "
         "'/none'."},
        {"<optional/>", "valid"},
        {"<optional a='1'/>", "valid"},
        {"<optional a='x'/>",
         "4 node=/optional attr=a text=x is an invalid value of int type value.: The value of "
         "attribute 'a' for element '/optional' is invalid. x is an invalid value of int type "
         "value."},
        {"<optional a=''/>",
         "4 node=/optional attr=a text=int cannot be empty.: The value of attribute 'a' for "
         "element '/optional' is invalid. int cannot be empty."},
        {"<optional A='1'/>",
         "7 node=/optional attr=A: Unexpected attribute 'A' of element '/optional'."},
        {"<optional xmlns:u='urn:u' u:a='1'/>",
         "7 node=/optional attr=a attrNs=urn:u: Unexpected attribute 'urn:u':'a' of element "
         "'/optional'."},
        {"<three/>", "valid"},
        {"<three a='1'/>", "valid"},
        {"<required a='1'/>", "valid"},
        {"<required/>",
         "2 node=/required attr=a: The element '/required' should have an attribute 'a'."},
        {"<required a=''/>",
         "4 node=/required attr=a text=int cannot be empty.: The value of attribute 'a' for "
         "element '/required' is invalid. int cannot be empty."},
        {"<required xmlns:u='urn:u' u:a='1'/>",
         "2 node=/required attr=a: The element '/required' should have an attribute 'a'."},
        {"<prohibited/>", "valid"},
        {"<prohibited a='1'/>",
         "7 node=/prohibited name=prohibited attr=a: Unexpected attribute 'a' of element "
         "'/prohibited'."},
        {"<prohibited a='x'/>",
         "7 node=/prohibited name=prohibited attr=a: Unexpected attribute 'a' of element "
         "'/prohibited'."},
        {"<untyped a=''/>", "valid"},
        {"<untyped a='x'/>", "valid"},
        {"<fixed/>", "valid"},
        {"<fixed a='5'/>", "valid"},
        {"<fixed a='05'/>",
         "4 node=/fixed attr=a text=must equal 5: The value of attribute 'a' for element "
         "'/fixed' is invalid. must equal 5"},
        {"<fixed a=''/>",
         "4 node=/fixed attr=a text=must equal 5: The value of attribute 'a' for element "
         "'/fixed' is invalid. must equal 5"},
        {"<fixedRequired a='5'/>", "valid"},
        {"<fixedRequired/>",
         "2 node=/fixedRequired attr=a: The element '/fixedRequired' should have an attribute "
         "'a'."},
        {"<fixedProhibited a='5'/>",
         "7 node=/fixedProhibited name=fixedProhibited attr=a: Unexpected attribute 'a' of "
         "element '/fixedProhibited'."},
        // With a fixed value the type does not matter.
        {"<fixedText a='x'/>", "valid"},
        {"<fixedText a='1'/>",
         "4 node=/fixedText attr=a text=must equal x: The value of attribute 'a' for element "
         "'/fixedText' is invalid. must equal x"},
        {"<fixedEmpty/>", "valid"},
        {"<fixedEmpty a=''/>", "valid"},
        {"<fixedEmpty a='5'/>",
         "4 node=/fixedEmpty attr=a text=must be empty: The value of attribute 'a' for element "
         "'/fixedEmpty' is invalid. must be empty"},
        {"<fixedNull a=''/>", "valid"},
        {"<fixedNull a=' '/>",
         "4 node=/fixedNull attr=a text=must be empty: The value of attribute 'a' for element "
         "'/fixedNull' is invalid. must be empty"},
        {"<notFixed a='6'/>", "valid"},
        {"<notFixed a='x'/>",
         "4 node=/notFixed attr=a text=x is an invalid value of int type value.: The value of "
         "attribute 'a' for element '/notFixed' is invalid. x is an invalid value of int type "
         "value."},
    };
    expectVerdicts(schema, kCases);
}

struct FormCase {
    std::uint32_t formDefault;
    const char *document, *verdict;
};

// f0, f1 and f2 have an attribute in urn:t of that form; r0, r1 and r2 require it; p0, p1 and p2
// prohibit it.
TEST(Attributes, Forms) {
    AttributeSchema schema;
    for (std::int32_t form = 0; form <= 2; ++form) {
        const auto add = [&](const char *prefix, std::int32_t use) {
            const char *name = schema.keep(prefix + std::to_string(form));
            schema.topElement(
                name, schema.type({schema.use(inNamespace("urn:t", named("a", use), form))}));
        };
        add("f", kOptional);
        add("r", kRequired);
        add("p", kProhibited);
    }
#define T " xmlns:t='urn:t' "
#define BAD "x is an invalid value of int type value."
    constexpr FormCase kCases[] = {
        // The form as the default says.
        {kQualified, "<f0" T "t:a='1'/>", "valid"},
        {kQualified, "<f0" T "t:a='x'/>",
         "4 node=/f0 attr=a attrNs=urn:t text=" BAD
         ": The value of attribute 'urn:t':'a' for element '/f0' is invalid. " BAD},
        {kQualified, "<f0 a='1'/>",
         "7 node=/f0 attr=a: Unexpected attribute 'a' of element '/f0'."},
        {kUnqualified, "<f0 a='1'/>", "valid"},
        {kUnqualified, "<f0 a='x'/>",
         "4 node=/f0 attr=a text=" BAD
         ": The value of attribute 'a' for element '/f0' is invalid. " BAD},
        {kUnqualified, "<f0" T "t:a='1'/>",
         "7 node=/f0 attr=a attrNs=urn:t: Unexpected attribute 'urn:t':'a' of element '/f0'."},
        {kByDefault, "<f0 a='1'/>", "valid"},
        {kByDefault, "<f0" T "t:a='1'/>",
         "7 node=/f0 attr=a attrNs=urn:t: Unexpected attribute 'urn:t':'a' of element '/f0'."},
        // Always qualified.
        {kQualified, "<f1" T "t:a='1'/>", "valid"},
        {kUnqualified, "<f1" T "t:a='1'/>", "valid"},
        {kUnqualified, "<f1" T "t:a='x'/>",
         "4 node=/f1 attr=a attrNs=urn:t text=" BAD
         ": The value of attribute 'urn:t':'a' for element '/f1' is invalid. " BAD},
        {kUnqualified, "<f1 a='1'/>",
         "7 node=/f1 attr=a: Unexpected attribute 'a' of element '/f1'."},
        {kQualified, "<f1 a='1'/>",
         "7 node=/f1 attr=a: Unexpected attribute 'a' of element '/f1'."},
        // Never.
        {kQualified, "<f2 a='1'/>", "valid"},
        {kUnqualified, "<f2 a='1'/>", "valid"},
        {kQualified, "<f2 a='x'/>",
         "4 node=/f2 attr=a text=" BAD
         ": The value of attribute 'a' for element '/f2' is invalid. " BAD},
        {kQualified, "<f2" T "t:a='1'/>",
         "7 node=/f2 attr=a attrNs=urn:t: Unexpected attribute 'urn:t':'a' of element '/f2'."},
        {kUnqualified, "<f2" T "t:a='1'/>",
         "7 node=/f2 attr=a attrNs=urn:t: Unexpected attribute 'urn:t':'a' of element '/f2'."},
        // What is missing is told with the target namespace, whatever the form.
        {kQualified, "<r0/>",
         "2 node=/r0 attr=a attrNs=urn:t: The element '/r0' should have an attribute "
         "'urn:t':'a'."},
        {kUnqualified, "<r0/>",
         "2 node=/r0 attr=a attrNs=urn:t: The element '/r0' should have an attribute "
         "'urn:t':'a'."},
        {kUnqualified, "<r1/>",
         "2 node=/r1 attr=a attrNs=urn:t: The element '/r1' should have an attribute "
         "'urn:t':'a'."},
        {kQualified, "<r2/>",
         "2 node=/r2 attr=a attrNs=urn:t: The element '/r2' should have an attribute "
         "'urn:t':'a'."},
        {kUnqualified, "<r2/>",
         "2 node=/r2 attr=a attrNs=urn:t: The element '/r2' should have an attribute "
         "'urn:t':'a'."},
        {kUnqualified, "<r2" T "t:a='1'/>",
         "2 node=/r2 attr=a attrNs=urn:t: The element '/r2' should have an attribute "
         "'urn:t':'a'."},
        {kQualified, "<r0 a='1'/>",
         "2 node=/r0 attr=a attrNs=urn:t: The element '/r0' should have an attribute "
         "'urn:t':'a'."},
        {kUnqualified, "<r0 a='1'/>", "valid"},
        {kUnqualified, "<r1" T "t:a='1'/>", "valid"},
        {kQualified, "<r2 a='1'/>", "valid"},
        // What is prohibited is told as it stands there.
        {kQualified, "<p0" T "t:a='1'/>",
         "7 node=/p0 name=p0 attr=a attrNs=urn:t: Unexpected attribute 'urn:t':'a' of element "
         "'/p0'."},
        {kUnqualified, "<p0 a='1'/>",
         "7 node=/p0 name=p0 attr=a: Unexpected attribute 'a' of element '/p0'."},
        {kUnqualified, "<p1" T "t:a='1'/>",
         "7 node=/p1 name=p1 attr=a attrNs=urn:t: Unexpected attribute 'urn:t':'a' of element "
         "'/p1'."},
        {kQualified, "<p2 a='1'/>",
         "7 node=/p2 name=p2 attr=a: Unexpected attribute 'a' of element '/p2'."},
        {kQualified, "<p2" T "t:a='1'/>",
         "7 node=/p2 attr=a attrNs=urn:t: Unexpected attribute 'urn:t':'a' of element '/p2'."},
    };
    for (const FormCase &row : kCases) {
        schema.root().attributeFormDefault = row.formDefault;
        EXPECT_EQ(verdict(row.document, schema.root()), row.verdict)
            << row.document << " with the default " << row.formDefault;
    }
}

// A target namespace of "" is none.
TEST(Attributes, EmptyTargetNamespace) {
    AttributeSchema schema;
    schema.topElement(
        "e", schema.type({schema.use(inNamespace("", named("a", kRequired), kQualified))}));
    constexpr DocumentCase kCases[] = {
        {"<e a='1'/>", "valid"},
        {"<e a='x'/>", "4 node=/e attr=a attrNs= text=" BAD
                       ": The value of attribute 'a' for element '/e' is invalid. " BAD},
        {"<e/>", "2 node=/e attr=a attrNs=: The element '/e' should have an attribute 'a'."},
    };
    expectVerdicts(schema, kCases);
}

// A default namespace is one of elements.
TEST(Attributes, DefaultNamespace) {
    AttributeSchema schema;
    SchemaElementDecl decl = SchemaMaker::ofComplex(
        "e", schema.type({schema.use(named("a")),
                          schema.use(inNamespace("urn:t", named("b"), kQualified))}));
    decl.targetNamespace = "urn:t";
    schema.add(schema.element(decl), SCHEMA_KIND_ELEMENT);
    constexpr DocumentCase kCases[] = {
        {"<e xmlns='urn:t' a='1'/>", "valid"},
        {"<t:e xmlns:t='urn:t' a='1' t:b='1'/>", "valid"},
        {"<e xmlns='urn:t' b='1'/>", "7 node=/e attr=b: Unexpected attribute 'b' of element '/e'."},
        {"<t:e" T "t:a='1'/>",
         "7 node=/e attr=a attrNs=urn:t: Unexpected attribute 'urn:t':'a' of element '/e'."},
    };
    expectVerdicts(schema, kCases);
}

// Everything is read from the declaration that is referred to, and nothing from the use.
TEST(Attributes, References) {
    AttributeSchema schema;
    const auto *optional = schema.top(inNamespace("urn:t", named("g"), kUnqualified));
    const auto *required = schema.top(inNamespace("urn:t", named("g", kRequired)));
    const auto *prohibited = schema.top(inNamespace("urn:t", named("g", kProhibited)));
    const auto *fixedTo5 = schema.top(inNamespace("urn:t", fixed("5", named("g"))));
    schema.topElement("optional", schema.type({schema.ref(optional)}));
    schema.topElement("useRequired",
                      schema.type({schema.ref(optional, named("own", kRequired, &kString))}));
    schema.topElement("useProhibited",
                      schema.type({schema.ref(optional, named("g", kProhibited))}));
    schema.topElement("useFixed", schema.type({schema.ref(optional, fixed("7", named("g")))}));
    schema.topElement("required", schema.type({schema.ref(required)}));
    schema.topElement("prohibited", schema.type({schema.ref(prohibited)}));
    schema.topElement("fixed", schema.type({schema.ref(fixedTo5)}));
    constexpr DocumentCase kCases[] = {
        {"<optional" T "t:g='1'/>", "valid"},
        {"<optional" T "t:g='x'/>",
         "4 node=/optional attr=g attrNs=urn:t text=" BAD
         ": The value of attribute 'urn:t':'g' for element '/optional' is invalid. " BAD},
        {"<optional g='1'/>",
         "7 node=/optional attr=g: Unexpected attribute 'g' of element '/optional'."},
        {"<useRequired/>", "valid"},
        {"<useRequired" T "t:g='x'/>",
         "4 node=/useRequired attr=g attrNs=urn:t text=" BAD
         ": The value of attribute 'urn:t':'g' for element '/useRequired' is invalid. " BAD},
        {"<useRequired own='1'/>",
         "7 node=/useRequired attr=own: Unexpected attribute 'own' of element '/useRequired'."},
        {"<useProhibited" T "t:g='1'/>", "valid"},
        {"<useFixed" T "t:g='1'/>", "valid"},
        {"<required" T "t:g='1'/>", "valid"},
        {"<required/>",
         "2 node=/required attr=g attrNs=urn:t: The element '/required' should have an attribute "
         "'urn:t':'g'."},
        {"<required g='1'/>",
         "2 node=/required attr=g attrNs=urn:t: The element '/required' should have an attribute "
         "'urn:t':'g'."},
        {"<prohibited/>", "valid"},
        {"<prohibited" T "t:g='1'/>",
         "7 node=/prohibited name=prohibited attr=g attrNs=urn:t: Unexpected attribute "
         "'urn:t':'g' of element '/prohibited'."},
        {"<fixed" T "t:g='5'/>", "valid"},
        {"<fixed" T "t:g='6'/>",
         "4 node=/fixed attr=g attrNs=urn:t text=must equal 5: The value of attribute "
         "'urn:t':'g' for element '/fixed' is invalid. must equal 5"},
    };
    expectVerdicts(schema, kCases);
}

// Uses come in the order of the type, what is left over in that of the document.
TEST(Attributes, Order) {
    AttributeSchema schema;
    schema.topElement(
        "e", schema.type({schema.use(named("a", kRequired)), schema.use(named("b")),
                          schema.use(named("c", kRequired)),
                          schema.use(inNamespace("urn:t", named("b", kOptional, &kString), 1))}));
    schema.topElement("twice",
                      schema.type({schema.use(named("a")), schema.use(fixed("5", named("a")))}));
    constexpr DocumentCase kCases[] = {
        {"<e a='1' c='1'/>", "valid"},
        {"<e c='1' b='1' a='1'/>", "valid"},
        {"<e a='1' b='1' c='1'" T "t:b='x'/>", "valid"},
        {"<e/>", "2 node=/e attr=a: The element '/e' should have an attribute 'a'."},
        {"<e b='x'/>", "2 node=/e attr=a: The element '/e' should have an attribute 'a'."},
        {"<e a='1' b='x'/>", "4 node=/e attr=b text=" BAD
                             ": The value of attribute 'b' for element '/e' is invalid. " BAD},
        {"<e a='1' b='1'/>", "2 node=/e attr=c: The element '/e' should have an attribute 'c'."},
        {"<e z='1' a='1'/>", "2 node=/e attr=c: The element '/e' should have an attribute 'c'."},
        {"<e c='y' a='x'/>", "4 node=/e attr=a text=" BAD
                             ": The value of attribute 'a' for element '/e' is invalid. " BAD},
        {"<e z='1' y='1' a='1' c='1'/>",
         "7 node=/e attr=z: Unexpected attribute 'z' of element '/e'."},
        {"<e a='1' y='1' c='1' z='1'/>",
         "7 node=/e attr=y: Unexpected attribute 'y' of element '/e'."},
        // Each of two uses of one name counts.
        {"<twice a='5'/>", "valid"},
        {"<twice a='6'/>",
         "4 node=/twice attr=a text=must equal 5: The value of attribute 'a' for element "
         "'/twice' is invalid. must equal 5"},
        {"<twice a='x'/>", "4 node=/twice attr=a text=" BAD
                           ": The value of attribute 'a' for element '/twice' is invalid. " BAD},
    };
    expectVerdicts(schema, kCases);
}

#define LANG_OF(element, quoted)                                                                  \
    "4 node=/" element " attr=lang attrNs=" XML_NS " text=" quoted                                \
    " is not a valid value for " XML_NS ":lang: The value of attribute '" XML_NS                  \
    "':'lang' for element '/" element "' is invalid. " quoted " is not a valid value for " XML_NS \
    ":lang"
#define SURPLUS(element, ns, name)                                                          \
    "7 node=/" element " attr=" name " attrNs=" ns ": Unexpected attribute '" ns "':'" name \
    "' of element '/" element "'."
#define X " xmlns:i='" XSI "' "

// Four attributes may stand on every element: c is of a complex type, s of a simple one.
TEST(Attributes, AllowedWithoutDeclaration) {
    AttributeSchema schema;
    schema.topElement("c", schema.type({}));
    schema.add(schema.element(SchemaMaker::ofSimple("s", &kString)), SCHEMA_KIND_ELEMENT);
    constexpr DocumentCase kCases[] = {
        {"<c xml:lang='en'/>", "valid"},
        {"<c xml:space='x'/>", "valid"},
        {"<c xml:space=''/>", "valid"},
        {"<c xml:base='::'/>", "valid"},
        {"<c" X "i:nil='x'/>", "valid"},
        {"<c" X "i:nil='' xml:base='' xml:space='' xml:lang='sv-fi'/>", "valid"},
        {"<c xml:lang='EN'/>", LANG_OF("c", "EN")},
        {"<c xml:lang=''/>", LANG_OF("c", "")},
        {"<c xml:lang='en '/>", LANG_OF("c", "en ")},
        {"<c xml:lang='1234567890123456789'/>", LANG_OF("c", "1234567890123456789")},
        {"<c xml:lang='12345678901234567890'/>", LANG_OF("c", "12345678901234567890")},
        {"<c xml:lang='123456789012345678901'/>", LANG_OF("c", "12345678901234567890")},
        {"<c xml:id='x'/>", SURPLUS("c", XML_NS, "id")},
        {"<c xml:Lang='en'/>", SURPLUS("c", XML_NS, "Lang")},
        {"<c" X "i:type='x'/>", SURPLUS("c", XSI, "type")},
        {"<c" X "i:schemaLocation='x'/>", SURPLUS("c", XSI, "schemaLocation")},
        {"<c" X "i:noNamespaceSchemaLocation='x'/>",
         SURPLUS("c", XSI, "noNamespaceSchemaLocation")},
        {"<c" X "i:lang='en'/>", SURPLUS("c", XSI, "lang")},
        {"<c lang='en'/>", "7 node=/c attr=lang: Unexpected attribute 'lang' of element '/c'."},
        {"<c nil='true'/>", "7 node=/c attr=nil: Unexpected attribute 'nil' of element '/c'."},
        {"<c xmlns:u='urn:u' u:nil='x'/>", SURPLUS("c", "urn:u", "nil")},
        // Of a complex type they are looked at before what is left over.
        {"<c x='1' xml:lang='zz'/>", LANG_OF("c", "zz")},
        {"<c xml:lang='zz' x='1'/>", LANG_OF("c", "zz")},
        {"<s xml:lang='en'/>", "valid"},
        {"<s xml:space=''/>", "valid"},
        {"<s xml:base='::'/>", "valid"},
        {"<s" X "i:nil='x'/>", "valid"},
        {"<s xml:lang='sv-fi'" X "i:nil='' xml:base='' xml:space=''/>", "valid"},
        {"<s xml:lang=''/>", LANG_OF("s", "")},
        {"<s xml:lang='1234567890123456789'/>", LANG_OF("s", "1234567890123456789")},
        {"<s xml:lang='12345678901234567890'/>", LANG_OF("s", "12345678901234567890")},
        {"<s xml:lang='123456789012345678901'/>", LANG_OF("s", "12345678901234567890")},
        {"<s xml:id='x'/>", SURPLUS("s", XML_NS, "id")},
        {"<s" X "i:type='x'/>", SURPLUS("s", XSI, "type")},
        {"<s" X "i:schemaLocation='x'/>", SURPLUS("s", XSI, "schemaLocation")},
        {"<s x='1'/>", "7 node=/s attr=x: Unexpected attribute 'x' of element '/s'."},
        // Of a simple type all come in the order of the document.
        {"<s x='1' xml:lang='zz'/>", "7 node=/s attr=x: Unexpected attribute 'x' of element '/s'."},
        {"<s xml:lang='zz' x='1'/>", LANG_OF("s", "zz")},
        {"<s y='1' x='1'/>", "7 node=/s attr=y: Unexpected attribute 'y' of element '/s'."},
    };
    expectVerdicts(schema, kCases);
}

// A declaration or a wildcard may claim one of the four first; its value is then theirs to check.
TEST(Attributes, AllowedButDeclared) {
    AttributeSchema schema;
    const SchemaAttributeDecl lang = inNamespace(kXml, named("lang", kOptional, &kString), 1);
    const SchemaAttributeDecl langRequired =
        inNamespace(kXml, named("lang", kRequired, &kString), 1);
    schema.topElement("use", schema.type({schema.use(lang)}));
    schema.topElement("fixed", schema.type({schema.use(fixed("zz", lang))}));
    schema.topElement("skip", schema.type({}, schema.any(kSkip)));
    schema.topElement("lax", schema.type({}, schema.any(kLax)));
    schema.topElement("strict", schema.type({}, schema.any(kStrict)));
    schema.topElement("group", schema.type({}, nullptr, {schema.group({schema.use(lang)})}));
    schema.topElement("groupRequired",
                      schema.type({}, nullptr, {schema.group({schema.use(langRequired)})}));
    constexpr DocumentCase kCases[] = {
        {"<use xml:lang='zz'/>", "valid"},
        {"<fixed xml:lang='zz'/>", "valid"},
        {"<fixed xml:lang='en'/>", "4 node=/fixed attr=lang attrNs=" XML_NS
                                   " text=must equal zz: The value of attribute '" XML_NS
                                   "':'lang' for element '/fixed' is invalid. must equal zz"},
        {"<skip xml:lang='zz'/>", "valid"},
        {"<lax xml:lang='zz'/>", "valid"},
        // The strict wildcard knows no declaration of it and leaves it.
        {"<strict xml:lang='zz'/>", LANG_OF("strict", "zz")},
        {"<strict xml:lang='en'/>", "valid"},
        // Groups come after the sweep.
        {"<group xml:lang='zz'/>", LANG_OF("group", "zz")},
        {"<group xml:lang='en'/>", "valid"},
        {"<groupRequired xml:lang='en'/>", "valid"},
        {"<groupRequired/>",
         "2 node=/groupRequired attr=lang attrNs=" XML_NS
         ": The element '/groupRequired' should have an attribute '" XML_NS "':'lang'."},
    };
    expectVerdicts(schema, kCases);
}

TEST(Attributes, GroupsInOrder) {
    AttributeSchema schema;
    const auto required = [&](const char *name) { return schema.use(named(name, kRequired)); };
    const auto *inner = schema.group({required("a4")});
    const auto *second = schema.group({required("a3")}, nullptr, {});
    const auto *first =
        schema.group({required("a5")}, nullptr, {schema.group({}, nullptr, {second}), inner});
    // What stands beside the reference does not count.
    const auto *reference =
        schema.group({required("z")}, schema.any(kSkip), {schema.group({required("y")})}, first);
    schema.topElement("e", schema.type({required("a1"), required("a2")}, nullptr,
                                       {reference, schema.group({required("a6")})}));
    std::string attributes;
    for (char digit = '1'; digit <= '6'; ++digit) {
        const std::string missing = std::string("a") + digit;
        EXPECT_EQ(verdict("<e" + attributes + "/>", schema.root()),
                  "2 node=/e attr=" + missing + ": The element '/e' should have an attribute '" +
                      missing + "'.");
        attributes = " " + missing + "='1'" + attributes;
    }
    EXPECT_EQ(verdict("<e" + attributes + "/>", schema.root()), "valid");
    EXPECT_EQ(verdict("<e" + attributes + " z='1'/>", schema.root()),
              "7 node=/e attr=z: Unexpected attribute 'z' of element '/e'.");
}

TEST(Attributes, GroupsAfterWildcards) {
    AttributeSchema schema;
    schema.top(named("a"));
    schema.top(named("known"));
    const auto *a = schema.use(named("a"));
    const auto *b = schema.use(named("b"));
    const auto *needsB = schema.use(named("b", kRequired));
    const auto *noB = schema.use(named("b", kProhibited));
    const auto *text = schema.use(named("a", kOptional, &kString));
    schema.topElement("skip", schema.type({}, schema.any(kSkip), {schema.group({b})}));
    schema.topElement("skipNeeds", schema.type({}, schema.any(kSkip), {schema.group({needsB})}));
    schema.topElement("skipNo", schema.type({}, schema.any(kSkip), {schema.group({noB})}));
    schema.topElement("strict", schema.type({}, schema.any(kStrict), {schema.group({b})}));
    schema.topElement("strictKnown", schema.type({}, schema.any(kStrict), {schema.group({text})}));
    schema.topElement("uses", schema.type({a}, schema.any(kStrict), {schema.group({noB})}));
    schema.topElement("inGroup", schema.type({}, nullptr, {schema.group({b}, schema.any(kLax))}));
    schema.topElement(
        "twoGroups",
        schema.type({}, nullptr, {schema.group({}, schema.any(kStrict)), schema.group({b})}));
    schema.topElement(
        "nested",
        schema.type({}, nullptr,
                    {schema.group({needsB}, nullptr, {schema.group({}, schema.any(kSkip))})}));
    constexpr DocumentCase kCases[] = {
        {"<skip z='1'/>", "valid"},
        // The wildcard has claimed it; the use checks it all the same.
        {"<skip b='x'/>", "4 node=/skip attr=b text=" BAD
                          ": The value of attribute 'b' for element '/skip' is invalid. " BAD},
        {"<skipNeeds b='1'/>", "valid"},
        {"<skipNeeds z='1'/>",
         "2 node=/skipNeeds attr=b: The element '/skipNeeds' should have an attribute 'b'."},
        {"<skipNo b='1'/>",
         "7 node=/skipNo name=skipNo attr=b: Unexpected attribute 'b' of element '/skipNo'."},
        // The wildcard knows no b and leaves it to the group.
        {"<strict b='1'/>", "valid"},
        {"<strict b='1' z='1'/>",
         "7 node=/strict attr=z: Unexpected attribute 'z' of element '/strict'."},
        {"<strict b='x' known='y'/>",
         "4 node=/strict attr=known text=y is an invalid value of int type value.: The value of "
         "attribute 'known' for element '/strict' is invalid. y is an invalid value of int type "
         "value."},
        // It knows a, by a declaration other than the one of the group.
        {"<strictKnown a='1'/>", "valid"},
        {"<strictKnown a='x'/>",
         "4 node=/strictKnown attr=a text=" BAD
         ": The value of attribute 'a' for element '/strictKnown' is invalid. " BAD},
        {"<uses a='x' b='1'/>",
         "4 node=/uses attr=a text=" BAD
         ": The value of attribute 'a' for element '/uses' is invalid. " BAD},
        {"<uses known='x' b='1'/>",
         "4 node=/uses attr=known text=" BAD
         ": The value of attribute 'known' for element '/uses' is invalid. " BAD},
        {"<uses b='1'/>",
         "7 node=/uses name=uses attr=b: Unexpected attribute 'b' of element "
         "'/uses'."},
        {"<inGroup b='1' z='x'/>", "valid"},
        {"<inGroup b='x' z='x'/>",
         "4 node=/inGroup attr=b text=" BAD
         ": The value of attribute 'b' for element '/inGroup' is invalid. " BAD},
        {"<inGroup known='x'/>",
         "4 node=/inGroup attr=known text=" BAD
         ": The value of attribute 'known' for element '/inGroup' is invalid. " BAD},
        {"<twoGroups b='1' known='1'/>", "valid"},
        {"<twoGroups z='1'/>",
         "7 node=/twoGroups attr=z: Unexpected attribute 'z' of element '/twoGroups'."},
        {"<nested b='1' z='1'/>", "valid"},
        {"<nested b='x' z='1'/>",
         "4 node=/nested attr=b text=" BAD
         ": The value of attribute 'b' for element '/nested' is invalid. " BAD},
        {"<nested z='1'/>",
         "2 node=/nested attr=b: The element '/nested' should have an attribute 'b'."},
    };
    expectVerdicts(schema, kCases);
}

#define SPACES T "xmlns:u='urn:u' xmlns:v='urn:v' "
#define VALUE_OF(element, name)                                                     \
    "4 node=/" element " attr=" name " text=" BAD ": The value of attribute '" name \
    "' for element '/" element "' is invalid. " BAD
#define VALUE_NS_OF(element, ns, name)                                                          \
    "4 node=/" element " attr=" name " attrNs=" ns " text=" BAD ": The value of attribute '" ns \
    "':'" name "' for element '/" element "' is invalid. " BAD
#define SURPLUS_OF(element, name)                                                              \
    "7 node=/" element " attr=" name ": Unexpected attribute '" name "' of element '/" element \
    "'"                                                                                        \
    "."

// Top-level declarations of known (in none, urn:t and urn:u), banned, fixed and must; of twice the
// first counts.
TEST(Attributes, Wildcards) {
    AttributeSchema schema;
    schema.top(named("known"));
    schema.top(inNamespace("urn:t", named("known"), kUnqualified));
    schema.top(inNamespace("urn:u", named("known"), kByDefault));
    schema.top(inNamespace("urn:t", named("banned", kProhibited)));
    schema.top(named("banned", kProhibited));
    schema.top(fixed("5", named("fixed")));
    schema.top(named("must", kRequired));
    schema.top(named("twice"));
    schema.top(named("twice", kOptional, &kString));
    schema.topElement("none", schema.type({}));
    schema.topElement("skip", schema.type({}, schema.any(kSkip)));
    schema.topElement("lax", schema.type({}, schema.any(kLax)));
    schema.topElement("strict", schema.type({}, schema.any(kStrict)));
    schema.topElement("three", schema.type({}, schema.any(3)));
    schema.topElement("minus", schema.type({}, schema.any(-1)));
    schema.topElement("other", schema.type({}, schema.any(kLax, "##other", "urn:t")));
    schema.topElement("otherStrict", schema.type({}, schema.any(kStrict, "##other", "urn:t")));
    schema.topElement("otherNull", schema.type({}, schema.any(kSkip, "##other")));
    schema.topElement("list", schema.type({}, schema.any(kLax, "urn:t urn:u")));
    schema.topElement("one", schema.type({}, schema.any(kSkip, "urn:u")));
    schema.topElement("noNs", schema.type({}, schema.any(kSkip, nullptr)));
    schema.topElement("emptyNs", schema.type({}, schema.any(kSkip, "")));
    schema.topElement("local", schema.type({}, schema.any(kSkip, "##local", "urn:t")));
    schema.topElement("target", schema.type({}, schema.any(kSkip, "##targetNamespace", "urn:t")));
    schema.topElement("claimed", schema.type({schema.use(named("known", kOptional, &kString))},
                                             schema.any(kStrict)));
    constexpr DocumentCase kCases[] = {
        {"<none" SPACES "t:known='1'/>", SURPLUS("none", "urn:t", "known")},
        // Skipped: not looked at.
        {"<skip known='x' z='1'" SPACES "t:known='x' t:banned='1' v:z='x'/>", "valid"},
        {"<skip banned='1' fixed='6' xml:lang='zz' xml:id='x'/>", "valid"},
        // Lax: checked where there is a declaration.
        {"<lax/>", "valid"},
        {"<lax known='1' z='x'/>", "valid"},
        {"<lax known='x'/>", VALUE_OF("lax", "known")},
        {"<lax" SPACES "t:known='x'/>", VALUE_NS_OF("lax", "urn:t", "known")},
        {"<lax" SPACES "t:known='1'/>", "valid"},
        {"<lax" SPACES "v:known='x'/>", "valid"},
        {"<lax banned='1'/>",
         "7 node=/lax name=lax attr=banned: Unexpected attribute 'banned' of element '/lax'."},
        {"<lax" SPACES "t:banned='x'/>",
         "7 node=/lax name=lax attr=banned attrNs=urn:t: Unexpected attribute 'urn:t':'banned' "
         "of element '/lax'."},
        {"<lax" SPACES "u:banned='x'/>", "valid"},
        {"<lax fixed='5'/>", "valid"},
        {"<lax fixed='6'/>",
         "4 node=/lax attr=fixed text=must equal 5: The value of attribute 'fixed' for element "
         "'/lax' is invalid. must equal 5"},
        {"<lax must='1'/>", "valid"},
        {"<lax twice='x'/>", VALUE_OF("lax", "twice")},
        // Strict: nothing without one.
        {"<strict/>", "valid"},
        {"<strict known='1'/>", "valid"},
        {"<strict known='x'/>", VALUE_OF("strict", "known")},
        {"<strict z='1'/>", SURPLUS_OF("strict", "z")},
        {"<strict" SPACES "t:known='1' u:known='1' known='1'/>", "valid"},
        {"<strict" SPACES "t:known='1' u:known='x' known='x'/>",
         VALUE_NS_OF("strict", "urn:u", "known")},
        {"<strict" SPACES "t:known='1' known='x' u:known='x'/>", VALUE_OF("strict", "known")},
        {"<strict" SPACES "v:known='1'/>", SURPLUS("strict", "urn:v", "known")},
        {"<strict z='1' known='x'/>", VALUE_OF("strict", "known")},
        {"<three z='1'/>", SURPLUS_OF("three", "z")},
        {"<three known='1'/>", "valid"},
        {"<minus z='1'/>", SURPLUS_OF("minus", "z")},
        // Constraints.
        {"<other" SPACES "u:z='1'/>", "valid"},
        {"<other" SPACES "u:known='x'/>", VALUE_NS_OF("other", "urn:u", "known")},
        {"<other" SPACES "t:z='1'/>", SURPLUS("other", "urn:t", "z")},
        {"<other" SPACES "t:known='1'/>", SURPLUS("other", "urn:t", "known")},
        {"<other z='1'/>", SURPLUS_OF("other", "z")},
        {"<otherStrict" SPACES "u:known='1'/>", "valid"},
        {"<otherStrict" SPACES "u:z='1'/>", SURPLUS("otherStrict", "urn:u", "z")},
        {"<otherNull" SPACES "t:z='1' u:z='1'/>", "valid"},
        {"<otherNull z='1'/>", SURPLUS_OF("otherNull", "z")},
        {"<list" SPACES "t:z='1' u:z='1'/>", "valid"},
        {"<list" SPACES "u:known='x'/>", VALUE_NS_OF("list", "urn:u", "known")},
        {"<list" SPACES "v:z='1'/>", SURPLUS("list", "urn:v", "z")},
        {"<list z='1'/>", SURPLUS_OF("list", "z")},
        {"<list xmlns:w='urn:t urn:u' w:z='1'/>", SURPLUS("list", "urn:t urn:u", "z")},
        {"<one" SPACES "u:z='1'/>", "valid"},
        {"<one" SPACES "t:z='1'/>", SURPLUS("one", "urn:t", "z")},
        {"<noNs z='1'/>", "valid"},
        {"<noNs" SPACES "t:z='1'/>", SURPLUS("noNs", "urn:t", "z")},
        {"<emptyNs z='1'/>", "valid"},
        {"<emptyNs" SPACES "t:z='1'/>", SURPLUS("emptyNs", "urn:t", "z")},
        // These keywords are names like others.
        {"<local z='1'/>", SURPLUS_OF("local", "z")},
        {"<local xmlns:l='##local' l:z='1'/>", "valid"},
        {"<target" SPACES "t:z='1'/>", SURPLUS("target", "urn:t", "z")},
        {"<target xmlns:l='##targetNamespace' l:z='1'/>", "valid"},
        // What a use has claimed is none of the wildcard's.
        {"<claimed known='x'/>", "valid"},
        {"<claimed z='1'/>", SURPLUS_OF("claimed", "z")},
    };
    expectVerdicts(schema, kCases);
}

constexpr std::int32_t kDerivations[] = {
    SCHEMA_KIND_COMPLEX_RESTRICTION, SCHEMA_KIND_COMPLEX_EXTENSION, SCHEMA_KIND_SIMPLE_RESTRICTION,
    SCHEMA_KIND_SIMPLE_EXTENSION};

// The order in which a type that is derived twice asks for its attributes.
TEST(Attributes, DerivedInOrder) {
    for (const std::int32_t kind : kDerivations) {
        AttributeSchema schema;
        const auto required = [&](const char *name) { return schema.use(named(name, kRequired)); };
        const auto grouped = [&](const char *name) -> Groups {
            return {schema.group({required(name)})};
        };
        const auto *oldest = schema.type({required("a5")}, nullptr, grouped("a6"));
        const auto *base =
            schema.type({required("a3")}, nullptr, grouped("a8"),
                        schema.derived(kind, oldest, {required("a4")}, nullptr, grouped("a7")));
        const auto *type =
            schema.type({required("a1")}, nullptr, {grouped("b1")[0], grouped("b2")[0]},
                        schema.derived(kind, base, {required("a2")}, nullptr, grouped("a9")));
        schema.topElement("e", type);
        std::string attributes;
        for (const char *missing :
             {"a1", "a2", "a3", "a4", "a5", "a6", "a7", "a8", "a9", "b1", "b2"}) {
            EXPECT_EQ(verdict("<e" + attributes + "/>", schema.root()),
                      std::string("2 node=/e attr=") + missing +
                          ": The element '/e' should have an attribute '" + missing + "'.")
                << kind;
            attributes = std::string(" ") + missing + "='1'" + attributes;
        }
        EXPECT_EQ(verdict("<e" + attributes + "/>", schema.root()), "valid") << kind;
    }
}

TEST(Attributes, DerivedAndBase) {
    for (const std::int32_t kind : kDerivations) {
        AttributeSchema schema;
        schema.top(named("known"));
        const auto *a = schema.use(named("a"));
        const auto *text = schema.use(named("a", kOptional, &kString));
        const auto *needed = schema.use(named("a", kRequired));
        const auto *banned = schema.use(named("a", kProhibited));
        const auto *lang =
            schema.use(inNamespace(kXml, named("lang", kOptional, &kString), kQualified));
        const auto *b = schema.use(named("b", kRequired));
        const auto derive = [&](const char *name, const SchemaComplexType *base, const Uses &list,
                                const SchemaWildcard *wildcard = nullptr,
                                const Groups &nested = {}) {
            schema.topElement(
                name,
                schema.type({}, nullptr, {}, schema.derived(kind, base, list, wildcard, nested)));
        };
        const auto *baseInt = schema.type({a});
        const auto *baseText = schema.type({text});
        const auto *knownText = schema.type({schema.use(named("known", kOptional, &kString))});
        derive("both", baseInt, {text});
        derive("bannedNeeded", schema.type({needed}), {banned});
        derive("takenBanned", schema.type({banned}), {a});
        derive("skip", baseInt, {}, schema.any(kSkip));
        derive("lax", baseText, {}, schema.any(kLax));
        derive("laxKnown", knownText, {}, schema.any(kLax));
        derive("strict", baseInt, {}, schema.any(kStrict));
        derive("baseAny", schema.type({}, schema.any(kSkip)), {a});
        derive("noBase", nullptr, {a});
        derive("swept", schema.type({}), {}, nullptr, {schema.group({b})});
        derive("sweptBase", schema.type({b}), {});
        derive("langInBase", schema.type({lang}), {});
        derive("langInGroup", schema.type({}), {}, nullptr, {schema.group({lang})});
        constexpr DocumentCase kCases[] = {
            // The base's use checks it again.
            {"<both a='1'/>", "valid"},
            {"<both a='x'/>", VALUE_OF("both", "a")},
            {"<bannedNeeded a='1'/>",
             "7 node=/bannedNeeded name=bannedNeeded attr=a: Unexpected attribute 'a' of element "
             "'/bannedNeeded'."},
            {"<bannedNeeded/>",
             "2 node=/bannedNeeded attr=a: The element '/bannedNeeded' should have an attribute "
             "'a'."},
            {"<takenBanned/>", "valid"},
            {"<takenBanned a='x'/>", VALUE_OF("takenBanned", "a")},
            {"<takenBanned a='1'/>",
             "7 node=/takenBanned name=takenBanned attr=a: Unexpected attribute 'a' of element "
             "'/takenBanned'."},
            // The wildcard comes before the base's uses, which look at the element all the same.
            {"<skip a='1' z='1'/>", "valid"},
            {"<skip a='x'/>", VALUE_OF("skip", "a")},
            {"<lax a='x' z='1'/>", "valid"},
            {"<laxKnown known='1'/>", "valid"},
            {"<laxKnown known='x'/>", VALUE_OF("laxKnown", "known")},
            {"<strict a='1'/>", "valid"},
            {"<strict a='x'/>", VALUE_OF("strict", "a")},
            {"<strict a='1' z='1'/>", SURPLUS_OF("strict", "z")},
            {"<strict a='x' known='x'/>", VALUE_OF("strict", "known")},
            {"<baseAny a='1' z='x'/>", "valid"},
            {"<baseAny a='x'/>", VALUE_OF("baseAny", "a")},
            {"<noBase a='1'/>", "valid"},
            {"<noBase b='1'/>", SURPLUS_OF("noBase", "b")},
            // The attributes that need no declaration are swept up after the base, before groups.
            {"<swept xml:lang='zz'/>", LANG_OF("swept", "zz")},
            {"<swept xml:lang='en'/>",
             "2 node=/swept attr=b: The element '/swept' should have an attribute 'b'."},
            {"<sweptBase xml:lang='zz'/>",
             "2 node=/sweptBase attr=b: The element '/sweptBase' should have an attribute 'b'."},
            {"<sweptBase b='1' xml:lang='zz'/>", LANG_OF("sweptBase", "zz")},
            {"<langInBase xml:lang='zz'/>", "valid"},
            {"<langInGroup xml:lang='zz'/>", LANG_OF("langInGroup", "zz")},
        };
        SCOPED_TRACE(kind);
        expectVerdicts(schema, kCases);
    }
}

// A simple base has no attributes.
TEST(Attributes, DerivedFromSimpleType) {
    for (const std::int32_t kind : {SCHEMA_KIND_SIMPLE_RESTRICTION, SCHEMA_KIND_SIMPLE_EXTENSION}) {
        AttributeSchema schema;
        SchemaDerivation content = *schema.derived(kind, nullptr, {schema.use(named("a"))});
        content.baseType = &kString;
        content.baseTypeKind = SCHEMA_KIND_SIMPLE_TYPE;
        schema.topElement("e", schema.type({}, nullptr, {}, schema.derivation(content)));
        constexpr DocumentCase kCases[] = {
            {"<e>text</e>", "valid"},
            {"<e a='1'>text</e>", "valid"},
            {"<e a='x'>text</e>", VALUE_OF("e", "a")},
            {"<e b='1'>text</e>", SURPLUS_OF("e", "b")},
        };
        SCOPED_TRACE(kind);
        expectVerdicts(schema, kCases);
    }
}

TEST(Attributes, Hundreds) {
    constexpr int kCount = 400;
    AttributeSchema schema;
    Uses uses;
    std::string all, backwards, extra;
    for (int i = 0; i < kCount; ++i) {
        const std::string name = "a" + std::to_string(i);
        uses.push_back(schema.use(named(schema.keep(name), kRequired)));
        all += " " + name + "='1'";
        backwards = " " + name + "='1'" + backwards;
        extra += " x" + std::to_string(i) + "='1'";
    }
    schema.topElement("e", schema.type(uses));
    schema.topElement("skip", schema.type(uses, schema.any(kSkip)));
    schema.topElement("strict", schema.type(uses, schema.any(kStrict)));
    schema.topElement("c", schema.type({}));
    const auto said = [&](const std::string &name, const std::string &attributes) {
        return verdict("<" + name + attributes + "/>", schema.root());
    };
    EXPECT_EQ(said("e", all), "valid");
    EXPECT_EQ(said("e", backwards), "valid");
    EXPECT_EQ(said("e", all + " x='1'"), SURPLUS_OF("e", "x"));
    EXPECT_EQ(said("e", " x='1'" + backwards), SURPLUS_OF("e", "x"));
    const std::size_t last = all.find(" a399='1'");
    EXPECT_EQ(said("e", all.substr(0, last)),
              "2 node=/e attr=a399: The element '/e' should have an attribute 'a399'.");
    EXPECT_EQ(said("e", all.substr(0, last) + " a399='x'"), VALUE_OF("e", "a399"));
    EXPECT_EQ(said("skip", all + extra), "valid");
    EXPECT_EQ(said("strict", extra + all), SURPLUS_OF("strict", "x0"));
    EXPECT_EQ(said("c", extra), SURPLUS_OF("c", "x0"));
}

}  // namespace
