// What schemas are read as.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <set>
#include <span>
#include <string>

#include "tests/tools/xsd2c/support/component_text.h"
#include "tests/tools/xsd2c/support/schema_files.h"

namespace {

using namespace xsd2c;

// A schema in one file, read without a message.
struct Schema {
    explicit Schema(const std::string &document) {
        files.write("a.xsd", document);
        readSchema(files.path("a.xsd"), components, diagnostics);
    }
    SchemaFiles files;
    Components components;
    Diagnostics diagnostics;
};

struct ReadCase {
    const char *name;
    const char *attributes;  // of xs:schema
    const char *content;
    const char *components;
};

void expectComponents(std::span<const ReadCase> cases) {
    for (const ReadCase &one : cases) {
        SCOPED_TRACE(one.name);
        const Schema schema{schemaText(one.content, one.attributes)};
        EXPECT_EQ(textOf(schema.components), one.components);
        EXPECT_EQ(schema.diagnostics.text(), "");
    }
}

#define TARGET "targetNamespace='urn:t' xmlns='urn:t' xmlns:t='urn:t'"

constexpr ReadCase kSimpleTypes[] = {
    {"facets in order, white space as they want it", "",
     "<xs:simpleType name='a'><xs:restriction base=' xs:string '>"
     "<xs:enumeration value=' x  y '/><xs:pattern value=' z '/><xs:maxLength value=' 3 '/>"
     "<xs:enumeration value=''/></xs:restriction></xs:simpleType>",
     "simpleType a restricts xs:string enumeration=' x  y ' pattern=' z ' maxLength='3'"
     " enumeration=''\n"},
    {"all facets", "",
     "<xs:simpleType name='a'><xs:restriction base='xs:decimal'>"
     "<xs:length value='1'/><xs:minLength value='2'/><xs:maxLength value='3'/>"
     "<xs:maxInclusive value='4'/><xs:maxExclusive value='5'/><xs:minInclusive value='6'/>"
     "<xs:minExclusive value='7'/><xs:totalDigits value='8'/>"
     "<xs:fractionDigits value='9' fixed='true'/></xs:restriction></xs:simpleType>",
     "simpleType a restricts xs:decimal length='1' minLength='2' maxLength='3' maxInclusive='4'"
     " maxExclusive='5' minInclusive='6' minExclusive='7' totalDigits='8' fractionDigits='9'\n"},
    {"types within types", "",
     "<xs:simpleType name='a'><xs:restriction><xs:simpleType><xs:list><xs:simpleType>"
     "<xs:union memberTypes='xs:int b'><xs:simpleType><xs:restriction base='xs:date'/>"
     "</xs:simpleType></xs:union></xs:simpleType></xs:list></xs:simpleType>"
     "<xs:length value='2'/></xs:restriction></xs:simpleType>"
     "<xs:simpleType name='b'><xs:restriction base='xs:NMTOKEN'/></xs:simpleType>",
     "simpleType a restricts (list of (union of xs:int b (restricts xs:date))) length='2'\n"
     "simpleType b restricts xs:NMTOKEN\n"},
    {"references forward and back", TARGET,
     "<xs:simpleType name='a'><xs:restriction base='t:b'/></xs:simpleType>"
     "<xs:simpleType name='b'><xs:union memberTypes='c xs:int'/></xs:simpleType>"
     "<xs:simpleType name='c'><xs:list itemType='xs:int'/></xs:simpleType>",
     "simpleType {urn:t}a restricts {urn:t}b\n"
     "simpleType {urn:t}b union of {urn:t}c xs:int\n"
     "simpleType {urn:t}c list of xs:int\n"},
    {"the schema namespace as the default one", "xmlns='http://www.w3.org/2001/XMLSchema'",
     "<simpleType name='a'><restriction base='byte'/></simpleType>",
     "simpleType a restricts xs:byte\n"},
};

TEST(ReadSchema, SimpleTypes) {
    expectComponents(kSimpleTypes);
}

constexpr ReadCase kAttributes[] = {
    {"declarations", TARGET,
     "<xs:attribute name='a'/><xs:attribute name='b' type='xs:int' fixed=' 1 '/>"
     "<xs:attribute name='c'><xs:simpleType><xs:restriction base='xs:int'/></xs:simpleType>"
     "</xs:attribute>",
     "attribute {urn:t}a: xs:anySimpleType\nattribute {urn:t}b: xs:int fixed=' 1 '\n"
     "attribute {urn:t}c: (restricts xs:int)\n"},
    {"uses", TARGET,
     "<xs:attributeGroup name='g'><xs:attribute ref='a' use='required' fixed='1'/>"
     "<xs:attribute name='b' use='optional' fixed='2'/>"
     "<xs:attribute name='c' form='qualified' use='prohibited'/>"
     "<xs:attributeGroup ref='h'/><xs:attributeGroup ref='h'/></xs:attributeGroup>"
     "<xs:attribute name='a' type='xs:int'/><xs:attributeGroup name='h'/>",
     "attributeGroup {urn:t}g @{urn:t}a! fixed='1' @b: xs:anySimpleType fixed='2'"
     " @{urn:t}c-: xs:anySimpleType @group {urn:t}h @group {urn:t}h\n"
     "attribute {urn:t}a: xs:int\nattributeGroup {urn:t}h\n"},
    {"qualified by default", TARGET " attributeFormDefault='qualified'",
     "<xs:attributeGroup name='g'><xs:attribute name='b'/>"
     "<xs:attribute name='c' form='unqualified'/></xs:attributeGroup>",
     "attributeGroup {urn:t}g @{urn:t}b: xs:anySimpleType @c: xs:anySimpleType\n"},
    {"wildcards", TARGET,
     "<xs:attributeGroup name='a'><xs:anyAttribute/></xs:attributeGroup>"
     "<xs:attributeGroup name='b'><xs:anyAttribute namespace='##other' processContents='lax'/>"
     "</xs:attributeGroup>"
     "<xs:attributeGroup name='c'><xs:anyAttribute processContents='skip'"
     " namespace='##local urn:x  ##targetNamespace urn:t urn:x'/></xs:attributeGroup>"
     "<xs:attributeGroup name='d'><xs:anyAttribute namespace=''/></xs:attributeGroup>",
     "attributeGroup {urn:t}a @any\nattributeGroup {urn:t}b @any but {urn:t} lax\n"
     "attributeGroup {urn:t}c @any of {} {urn:x} {urn:t} skip\n"
     "attributeGroup {urn:t}d @any of\n"},
};

TEST(ReadSchema, Attributes) {
    expectComponents(kAttributes);
}

constexpr ReadCase kElements[] = {
    {"types", TARGET,
     "<xs:element name='a'/><xs:element name='b' type='xs:int' abstract='1'/>"
     "<xs:element name='c'><xs:complexType/></xs:element>"
     "<xs:element name='d'><xs:simpleType><xs:restriction base='xs:int'/></xs:simpleType>"
     "</xs:element><xs:element name='e' type='xs:anyType'/>",
     "element {urn:t}a: xs:anyType\nelement {urn:t}b: xs:int abstract\nelement {urn:t}c: ()\n"
     "element {urn:t}d: (restricts xs:int)\nelement {urn:t}e: xs:anyType\n"},
    {"the type of a substitution group's head", "",
     "<xs:element name='a' substitutionGroup='b'/><xs:element name='b' substitutionGroup='c'/>"
     "<xs:element name='c' type='xs:int'/>",
     "element a: xs:int for b\nelement b: xs:int for c\nelement c: xs:int\n"},
    {"local ones", TARGET,
     "<xs:group name='g'><xs:sequence><xs:element name='a'/><xs:element name='b' form='qualified'"
     " type='xs:int'/><xs:element ref='c'/></xs:sequence></xs:group><xs:element name='c'/>",
     "group {urn:t}g sequence(a: xs:anyType, {urn:t}b: xs:int, ref {urn:t}c)\n"
     "element {urn:t}c: xs:anyType\n"},
    {"qualified by default", TARGET " elementFormDefault='qualified'",
     "<xs:group name='g'><xs:choice><xs:element name='a'/>"
     "<xs:element name='b' form='unqualified'/></xs:choice></xs:group>",
     "group {urn:t}g choice({urn:t}a: xs:anyType, b: xs:anyType)\n"},
};

TEST(ReadSchema, Elements) {
    expectComponents(kElements);
}

constexpr ReadCase kComplexTypes[] = {
    {"content", "",
     "<xs:complexType name='a'><xs:sequence minOccurs='0' maxOccurs='unbounded'>"
     "<xs:choice maxOccurs='3'><xs:element name='x' minOccurs='2' maxOccurs='2'/>"
     "<xs:any namespace='##other'/></xs:choice><xs:group ref='g' minOccurs='0'/></xs:sequence>"
     "<xs:attribute name='y'/></xs:complexType>"
     "<xs:complexType name='b' mixed='true'><xs:all minOccurs='0'>"
     "<xs:element name='x' minOccurs='0'/></xs:all></xs:complexType>"
     "<xs:complexType name='c'><xs:group ref='h'/></xs:complexType>"
     "<xs:group name='g'><xs:sequence/></xs:group><xs:group name='h'><xs:all/></xs:group>",
     "complexType a sequence(choice(x: xs:anyType[2..2], any but {})[1..3], group g[0..1])[0..*]"
     " @y: xs:anySimpleType\n"
     "complexType b mixed all(x: xs:anyType[0..1])[0..1]\n"
     "complexType c group h\n"
     "group g sequence()\n"
     "group h all()\n"},
    {"what never occurs is left out", "",
     "<xs:complexType name='a'><xs:sequence><xs:element name='x' minOccurs='0' maxOccurs='0'/>"
     "<xs:element name='y'/></xs:sequence></xs:complexType>"
     "<xs:complexType name='b'><xs:choice minOccurs='0' maxOccurs='0'><xs:element name='x'/>"
     "</xs:choice></xs:complexType>",
     "complexType a sequence(y: xs:anyType)\ncomplexType b \n"},
    {"simple content", "",
     "<xs:complexType name='a'><xs:simpleContent><xs:extension base='xs:int'>"
     "<xs:attribute name='x'/><xs:anyAttribute/></xs:extension></xs:simpleContent>"
     "</xs:complexType>"
     "<xs:complexType name='b'><xs:simpleContent><xs:restriction base='a'>"
     "<xs:maxInclusive value='9'/><xs:attribute name='x' use='prohibited'/></xs:restriction>"
     "</xs:simpleContent></xs:complexType>"
     "<xs:complexType name='c'><xs:simpleContent><xs:restriction base='a'>"
     "<xs:simpleType><xs:restriction base='xs:short'/></xs:simpleType><xs:minInclusive value='1'/>"
     "</xs:restriction></xs:simpleContent></xs:complexType>",
     "complexType a extends text of xs:int @x: xs:anySimpleType @any\n"
     "complexType b restricts text of a maxInclusive='9' @x-: xs:anySimpleType\n"
     "complexType c restricts text of a of (restricts xs:short) minInclusive='1'\n"},
    {"complex content", "",
     "<xs:complexType name='a' mixed='true'><xs:sequence/></xs:complexType>"
     "<xs:complexType name='b'><xs:complexContent mixed='true'><xs:extension base='a'>"
     "<xs:choice><xs:element name='x'/></xs:choice><xs:attribute name='y'/></xs:extension>"
     "</xs:complexContent></xs:complexType>"
     "<xs:complexType name='c' mixed='true'><xs:complexContent mixed='false'>"
     "<xs:restriction base='xs:anyType'><xs:sequence/></xs:restriction></xs:complexContent>"
     "</xs:complexType>",
     "complexType a mixed sequence()\n"
     "complexType b extends a mixed choice(x: xs:anyType) @y: xs:anySimpleType\n"
     "complexType c restricts xs:anyType sequence()\n"},
    {"a type of itself", "",
     "<xs:complexType name='a'><xs:sequence><xs:element name='x' type='a' minOccurs='0'/>"
     "</xs:sequence></xs:complexType>",
     "complexType a sequence(x: a[0..1])\n"},
};

TEST(ReadSchema, ComplexTypes) {
    expectComponents(kComplexTypes);
}

std::set<std::string> builtinNames(const Components &components) {
    std::set<std::string> names;
    for (const SimpleType &type : components.simpleTypes) {
        if (type.variety == SimpleType::Variety::kBuiltin) names.insert(type.name);
    }
    return names;
}

TEST(ReadSchema, BuiltinTypes) {
    constexpr const char *kNames[] = {"anySimpleType",
                                      "string",
                                      "boolean",
                                      "decimal",
                                      "float",
                                      "double",
                                      "duration",
                                      "dateTime",
                                      "time",
                                      "date",
                                      "gYearMonth",
                                      "gYear",
                                      "gMonthDay",
                                      "gDay",
                                      "gMonth",
                                      "hexBinary",
                                      "base64Binary",
                                      "anyURI",
                                      "QName",
                                      "NOTATION",
                                      "normalizedString",
                                      "token",
                                      "language",
                                      "NMTOKEN",
                                      "NMTOKENS",
                                      "Name",
                                      "NCName",
                                      "ID",
                                      "IDREF",
                                      "IDREFS",
                                      "ENTITY",
                                      "ENTITIES",
                                      "integer",
                                      "nonPositiveInteger",
                                      "negativeInteger",
                                      "long",
                                      "int",
                                      "short",
                                      "byte",
                                      "nonNegativeInteger",
                                      "unsignedLong",
                                      "unsignedInt",
                                      "unsignedShort",
                                      "unsignedByte",
                                      "positiveInteger"};
    std::string content;
    for (const char *name : kNames) {
        content += "<xs:element name='" + std::string(name) + "' type='xs:" + name + "'/>";
    }
    const Schema schema{schemaText(content)};
    EXPECT_FALSE(schema.diagnostics.failed()) << schema.diagnostics.text();
    EXPECT_EQ(builtinNames(schema.components),
              std::set<std::string>(std::begin(kNames), std::end(kNames)));
    for (const TopComponent &top : schema.components.top) {
        const ElementDecl &element = *std::get<const ElementDecl *>(top);
        const SimpleType &type = *std::get<const SimpleType *>(element.type);
        EXPECT_EQ(type.name, element.name);
        EXPECT_EQ(type.ns, kSchemaNamespace);
    }
}

TEST(ReadSchema, Places) {
    const Schema schema{schemaText(
        "<xs:element name='a'>\n <xs:complexType>\n  <xs:attribute name='b'/></xs:complexType>\n"
        "</xs:element>")};
    const ElementDecl &element = *std::get<const ElementDecl *>(schema.components.top.at(0));
    const ComplexType &type = *std::get<const ComplexType *>(element.type);
    const auto lineAndColumn = [](const Place &place) {
        return std::to_string(place.line) + ":" + std::to_string(place.column);
    };
    EXPECT_EQ(lineAndColumn(element.place), "2:1");
    EXPECT_EQ(lineAndColumn(type.place), "3:2");
    EXPECT_EQ(lineAndColumn(type.attributes.uses.at(0).place), "4:3");
    EXPECT_EQ(element.place.file, &schema.components.files.at(0));
}

// ---- sizes ----

std::string restriction(const std::string &name, const std::string &base) {
    return "<xs:simpleType name='" + name + "'><xs:restriction base='" + base +
           "'/></xs:simpleType>\n";
}

// Each type restricts the next one.
std::string chainOfTypes(int count) {
    std::string content;
    for (int i = 0; i < count; ++i) {
        const std::string base = i + 1 < count ? "t" + std::to_string(i + 1) : "xs:string";
        content += restriction("t" + std::to_string(i), base);
    }
    return schemaText(content);
}

TEST(ReadSchema, ChainsOfTypes) {
    EXPECT_EQ(messagesOf(chainOfTypes(256)), "");
    EXPECT_EQ(
        messagesOf(chainOfTypes(257)),
        "a.xsd:2:1: error: simpleType 't0' is more than 256 types away from built-in types\n");
    EXPECT_NE(messagesOf(chainOfTypes(20000)), "");
}

// Each group refers to the next one twice.
std::string chainOfGroups(int count, const char *kind, const char *open, const char *close) {
    std::string content;
    for (int i = 0; i < count; ++i) {
        content += std::string("<xs:") + kind + " name='g" + std::to_string(i) + "'>" + open;
        for (int k = 0; k < 2 && i + 1 < count; ++k) {
            content += std::string("<xs:") + kind + " ref='g" + std::to_string(i + 1) + "'/>";
        }
        content += std::string(close) + "</xs:" + kind + ">\n";
    }
    return schemaText(content);
}

TEST(ReadSchema, ChainsOfGroups) {
    const char *open = "<xs:sequence>", *close = "</xs:sequence>";
    EXPECT_EQ(messagesOf(chainOfGroups(256, "group", open, close)), "");
    EXPECT_EQ(messagesOf(chainOfGroups(257, "group", open, close)),
              "a.xsd:2:1: error: group 'g0' is nested more than 256 deep\n");
}

// An attribute that each of them has is told once for each, not once for each pair.
TEST(ReadSchema, ChainsOfAttributeGroupsWithTheSameAttribute) {
    const std::string text =
        messagesOf(chainOfGroups(256, "attributeGroup", "<xs:attribute name='a'/>", ""));
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 255);
}

TEST(ReadSchema, ChainsOfAttributeGroups) {
    EXPECT_EQ(messagesOf(chainOfGroups(256, "attributeGroup", "", "")), "");
    EXPECT_EQ(messagesOf(chainOfGroups(257, "attributeGroup", "", "")),
              "a.xsd:2:1: error: attributeGroup 'g0' is nested more than 256 deep\n");
}

TEST(ReadSchema, ChainsOfSubstitutionGroups) {
    std::string content;
    for (int i = 0; i < 1000; ++i) {
        content += "<xs:element name='e" + std::to_string(i) + "' substitutionGroup='e" +
                   std::to_string(i + 1) + "'/>\n";
    }
    content += "<xs:element name='e1000'/>";
    EXPECT_EQ(
        messagesOf(schemaText(content)),
        "a.xsd:231:1: error: element 'e229' is more than 256 substitution groups below a head\n"
        "a.xsd:488:1: error: element 'e486' is more than 256 substitution groups below a head\n"
        "a.xsd:745:1: error: element 'e743' is more than 256 substitution groups below a"
        " head\n");
}

// Elements within elements; nested tells for which depth that is.
std::string nested(int depth) {
    std::string text;
    for (int i = 1; i < depth; ++i) text += "<xs:annotation>";
    for (int i = 1; i < depth; ++i) text += "</xs:annotation>";
    return schemaText("<xs:annotation><xs:appinfo>" + text + "</xs:appinfo></xs:annotation>");
}

TEST(ReadSchema, NestedElements) {
    EXPECT_EQ(messagesOf(nested(254)), "");
    const std::string tooDeep = messagesOf(nested(255));
    EXPECT_EQ(tooDeep, "a.xsd:2:3823: error: elements are nested more than 256 deep\n");
    EXPECT_EQ(messagesOf(nested(100000)), tooDeep);
}

TEST(ReadSchema, ManyDeclarations) {
    std::string content;
    for (int i = 0; i < 10000; ++i) {
        const std::string n = std::to_string(i);
        content += restriction("s" + n, "xs:int");
        content += "<xs:complexType name='c" + n + "'><xs:sequence><xs:element name='a' type='s" +
                   n + "'/></xs:sequence><xs:attribute name='b' type='s" + n +
                   "'/></xs:complexType><xs:element name='e" + n + "' type='c" + n + "'/>";
    }
    const std::string document = schemaText(content);
    const auto start = std::chrono::steady_clock::now();
    const Schema schema{document};
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
    EXPECT_EQ(schema.diagnostics.text(), "");
    EXPECT_EQ(schema.components.top.size(), 30000u);
    // A cost that grows with the square would take minutes.
    EXPECT_LT(time.count(), 20.0);
}

// ---- damage ----

const std::string kEverything = schemaText(
    "<xs:import namespace='http://www.w3.org/XML/1998/namespace'/>"
    "<xs:annotation><xs:documentation>\xE4\xBC\x9A &amp; <b/></xs:documentation></xs:annotation>"
    "<xs:simpleType name='s'><xs:restriction base='xs:string'><xs:pattern value='[a-z]'/>"
    "</xs:restriction></xs:simpleType>"
    "<xs:simpleType name='u'><xs:union memberTypes='t:s xs:int'/></xs:simpleType>"
    "<xs:simpleType name='l'><xs:list itemType='t:s'/></xs:simpleType>"
    "<xs:attributeGroup name='ag'><xs:attribute name='a' use='required'/>"
    "<xs:attribute ref='xml:lang'/><xs:anyAttribute namespace='##other'/></xs:attributeGroup>"
    "<xs:group name='g'><xs:choice><xs:element name='x' type='t:u'/><xs:any/></xs:choice>"
    "</xs:group>"
    "<xs:complexType name='c'><xs:sequence><xs:group ref='t:g' minOccurs='0'/></xs:sequence>"
    "<xs:attributeGroup ref='t:ag'/></xs:complexType>"
    "<xs:complexType name='d'><xs:complexContent><xs:extension base='t:c'><xs:sequence>"
    "<xs:element ref='t:e' maxOccurs='unbounded'/></xs:sequence></xs:extension>"
    "</xs:complexContent></xs:complexType>"
    "<xs:complexType name='v'><xs:simpleContent><xs:extension base='t:l'/></xs:simpleContent>"
    "</xs:complexType>"
    "<xs:element name='e' type='t:d'><xs:key name='k'><xs:selector xpath='x'/>"
    "<xs:field xpath='@a'/></xs:key></xs:element>"
    "<xs:element name='f' type='t:d' substitutionGroup='t:e'/>",
    "targetNamespace='urn:t' xmlns:t='urn:t'");

TEST(ReadSchema, DamageBegins) {
    EXPECT_EQ(messagesOf(kEverything).find("error"), std::string::npos);
}

TEST(ReadSchema, CutOff) {
    const std::size_t whole = kEverything.rfind('>') + 1;
    for (std::size_t length = 0; length < whole; ++length) {
        EXPECT_NE(messagesOf(kEverything.substr(0, length)).find("error"), std::string::npos)
            << length;
    }
}

// Neither a crash nor a message without a place.
TEST(ReadSchema, Changed) {
    const SchemaFiles files;
    std::uint32_t state = 1;
    const auto random = [&](std::size_t below) {
        state = state * 1664525u + 1013904223u;
        return (state >> 8) % below;
    };
    for (int round = 0; round < 3000; ++round) {
        std::string document = kEverything;
        for (std::size_t i = 0, count = 1 + random(3); i < count; ++i) {
            const std::size_t from = random(document.size()), to = random(document.size());
            const std::size_t length = random(12);
            if (random(2) == 0) {
                document.replace(to, length, document.substr(from, length));
            } else {
                document[to] = "<>'/ :=abcst"[random(12)];
            }
        }
        files.write("a.xsd", document);
        Components components;
        Diagnostics diagnostics;
        readSchema(files.path("a.xsd"), components, diagnostics);
        const std::string text = files.shortened(diagnostics.text());
        for (std::size_t at = 0; at < text.size(); at = text.find('\n', at) + 1) {
            ASSERT_EQ(text.compare(at, 6, "a.xsd:"), 0) << document;
        }
    }
}

}  // namespace
