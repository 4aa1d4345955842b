// What becomes of elements, attributes and complex types: each row is a schema with documents that
// are valid and documents that are not.
#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

#include "tests/tools/xsd2c/support/compiled.h"

namespace {

struct SchemaCase {
    const char *name;
    const char *declarations;  // of the namespace urn:t, prefix t, which documents have as default
    const char *messages;  // of the compiler; lines and columns count from <xs:schema> in line 1
    std::vector<const char *> valid;
    std::vector<const char *> invalid;
};

// In what tests print of their parameters.
void PrintTo(const SchemaCase &row, std::ostream *stream) {
    *stream << row.name;
}

// The start tag of a document gets the namespace that the schemas are for.
std::string inNamespace(std::string document) {
    const std::size_t end = document.find_first_of(" />");
    return document.insert(end,
                           " xmlns=\"urn:t\" xmlns:t=\"urn:t\" xmlns:u=\"urn:u\" "
                           "xmlns:v=\"urn:v\"");
}

class Schemas : public ::testing::TestWithParam<SchemaCase> {};

TEST_P(Schemas, TakeTheirDocuments) {
    const SchemaCase &row = GetParam();
    const CompiledSchema schema{row.declarations};
    EXPECT_EQ(schema.messages(), row.messages);
    for (const char *document : row.valid) {
        EXPECT_EQ(schema.verdict(inNamespace(document)), "") << document;
    }
    for (const char *document : row.invalid) {
        EXPECT_NE(schema.verdict(inNamespace(document)), "") << document;
    }
}

const SchemaCase kCases[] = {
    {"sequence",
     R"(<xs:element name="e"><xs:complexType><xs:sequence>
          <xs:element name="a" type="xs:int"/><xs:element name="b" minOccurs="0" maxOccurs="2"
          type="xs:string"/></xs:sequence></xs:complexType></xs:element>)",
     "",
     {"<e><a>1</a></e>", "<e><a>1</a><b/><b>x</b></e>"},
     {"<e/>", "<e><b/></e>", "<e><a>1</a><b/><b/><b/></e>", "<e><a>x</a></e>", "<e>t<a>1</a></e>",
      "<e><a>1</a><c/></e>", "<e><u:a>1</u:a></e>"}},
    {"choice_without_bounds",
     R"(<xs:element name="e"><xs:complexType><xs:choice minOccurs="0" maxOccurs="unbounded">
          <xs:element name="a"/><xs:element name="b"/></xs:choice></xs:complexType></xs:element>)",
     "",
     {"<e/>", "<e><a/><b/><a/></e>"},
     {"<e><c/></e>"}},
    {"all",
     R"(<xs:element name="e"><xs:complexType><xs:all><xs:element name="a"/>
          <xs:element name="b" minOccurs="0"/></xs:all></xs:complexType></xs:element>)",
     "",
     {"<e><a/></e>", "<e><b/><a/></e>", "<e><a/><b/></e>"},
     {"<e/>", "<e><b/></e>", "<e><a/><a/></e>", "<e><a/><c/></e>"}},
    {"group_with_bounds",
     R"(<xs:group name="pair"><xs:sequence><xs:element name="a"/><xs:element name="b"/>
          </xs:sequence></xs:group>
        <xs:element name="e"><xs:complexType><xs:sequence>
          <xs:group ref="t:pair" minOccurs="2" maxOccurs="3"/><xs:element name="c" minOccurs="0"/>
          </xs:sequence></xs:complexType></xs:element>
        <xs:element name="f"><xs:complexType><xs:group ref="t:pair"/></xs:complexType></xs:element>)",
     "",
     {"<e><a/><b/><a/><b/></e>", "<e><a/><b/><a/><b/><a/><b/><c/></e>", "<f><a/><b/></f>"},
     {"<e><a/><b/></e>", "<e><a/><b/><a/><b/><a/><b/><a/><b/></e>", "<e><a/><b/><a/></e>",
      "<f><a/><b/><a/><b/></f>"}},
    {"recursion",
     R"(<xs:element name="e" type="t:node"/><xs:complexType name="node"><xs:sequence>
          <xs:element name="e" type="t:node" minOccurs="0" maxOccurs="unbounded"/></xs:sequence>
          <xs:attribute name="n" type="xs:int" use="required"/></xs:complexType>)",
     "",
     {"<e n='1'/>", "<e n='1'><e n='2'><e n='3'/></e><e n='4'/></e>"},
     {"<e/>", "<e n='1'><e n='2'><e/></e></e>"}},
    {"empty_and_mixed",
     R"(<xs:element name="e"><xs:complexType mixed="true"/></xs:element>
        <xs:element name="f"><xs:complexType/></xs:element>
        <xs:element name="g"><xs:complexType mixed="true"><xs:sequence><xs:element name="a"/>
          </xs:sequence></xs:complexType></xs:element>
        <xs:element name="h"><xs:complexType mixed="true"><xs:sequence/></xs:complexType>
          </xs:element>)",
     "",
     {"<e/>", "<e>text</e>", "<f/>", "<g>x<a/>y</g>", "<h>text</h>"},
     {"<e><a/></e>", "<f>text</f>", "<f><a/></f>", "<g>x</g>", "<h><a/></h>"}},
    {"any_type",
     R"(<xs:element name="e"/><xs:element name="f" type="xs:anyType"/>
        <xs:element name="n" type="xs:int"/>)",
     "",
     {"<e/>", "<e x='1'>text<u:any y='2'><z/></u:any></e>", "<f>1<n>2</n></f>"},
     {"<f><n>x</n></f>"}},
    {"forms",
     R"(<xs:element name="e"><xs:complexType><xs:sequence>
          <xs:element name="a" form="unqualified"/><xs:element name="b"/></xs:sequence>
          <xs:attribute name="x" form="qualified"/><xs:attribute name="y"/></xs:complexType>
          </xs:element>)",
     "",
     {"<t:e t:x='1' y='2'><a xmlns=''/><t:b/></t:e>"},
     {"<t:e x='1'><a xmlns=''/><t:b/></t:e>", "<t:e t:y='1'><a xmlns=''/><t:b/></t:e>",
      "<t:e><t:a/><t:b/></t:e>", "<t:e><a xmlns=''/><b xmlns=''/></t:e>"}},
    {"attributes",
     R"(<xs:attribute name="g" type="xs:int"/>
        <xs:attribute name="k" type="xs:string" fixed="v"/>
        <xs:attributeGroup name="ag"><xs:attribute name="p" use="required"/>
          <xs:attributeGroup ref="t:inner"/></xs:attributeGroup>
        <xs:attributeGroup name="inner"><xs:attribute name="q" fixed="fix"/></xs:attributeGroup>
        <xs:element name="e"><xs:complexType><xs:attribute ref="t:g" use="required"/>
          <xs:attribute ref="t:k"/><xs:attributeGroup ref="t:ag"/></xs:complexType></xs:element>
        <xs:element name="f"><xs:complexType><xs:attribute ref="t:g"/></xs:complexType></xs:element>
        <xs:element name="h"><xs:complexType><xs:attribute ref="t:k" use="required"/>
          </xs:complexType></xs:element>)",
     "",
     {"<t:e t:g='1' p=''/>", "<t:e t:g='1' t:k='v' p='x' q='fix'/>", "<f/>", "<t:f t:g='3'/>",
      "<t:h t:k='v'/>"},
     {"<e p=''/>", "<t:e t:g='1'/>", "<t:e t:g='x' p=''/>", "<t:e t:g='1' p='' t:k='w'/>",
      "<t:e t:g='1' p='' q='other'/>", "<f g='3'/>", "<h/>", "<t:h t:k='w'/>"}},
    {"wildcard_with_a_wrong_list",
     R"(<xs:attributeGroup name="w"><xs:anyAttribute namespace="##other ##local"/>
          </xs:attributeGroup>)",
     "t.xsd:2:29: error: attribute 'namespace' is '##other ##local', not '##any', '##other' or a "
     "list "
     "of namespaces\n",
     {},
     {"<e/>"}},
    {"attribute_wildcards_of_all_kinds",
     R"(<xs:attribute name="g" type="xs:int"/>
        <xs:element name="e"><xs:complexType>
          <xs:anyAttribute namespace="##targetNamespace"/></xs:complexType></xs:element>
        <xs:element name="f"><xs:complexType>
          <xs:anyAttribute namespace="##local urn:u" processContents="skip"/></xs:complexType>
          </xs:element>
        <xs:element name="h"><xs:complexType>
          <xs:anyAttribute namespace="##other" processContents="lax"/></xs:complexType></xs:element>)",
     "",
     {"<t:e t:g='1'/>", "<f x='1' u:y='2'/>", "<h u:x='1' v:y='2'/>"},
     {"<t:e t:g='x'/>", "<t:e t:unknown='1'/>", "<e x='1'/>", "<f v:x='1'/>", "<t:f t:g='1'/>",
      "<h x='1'/>", "<t:h t:g='1'/>"}},
    {"wildcards_of_a_group_and_a_type",
     R"(<xs:attributeGroup name="w"><xs:attribute name="p" type="xs:int"/>
          <xs:anyAttribute namespace="urn:u urn:v" processContents="skip"/></xs:attributeGroup>
        <xs:element name="e"><xs:complexType><xs:attributeGroup ref="t:w"/>
          <xs:anyAttribute namespace="urn:v ##local" processContents="skip"/></xs:complexType>
          </xs:element>)",
     "",
     {"<e p='1' v:x=''/>"},
     {"<e p='x'/>", "<e u:x=''/>", "<e q=''/>"}},
    {"element_wildcards",
     R"(<xs:element name="n" type="xs:int"/>
        <xs:element name="e"><xs:complexType><xs:sequence>
          <xs:any namespace="##targetNamespace"/><xs:any namespace="##other" processContents="lax"
          minOccurs="0"/><xs:any namespace="##local" processContents="skip" minOccurs="0"
          maxOccurs="unbounded"/></xs:sequence></xs:complexType></xs:element>)",
     "",
     {"<e><n>1</n></e>", "<e><n>1</n><u:x><y/></u:x></e>",
      "<e><n>1</n><x xmlns=''/><y xmlns=''/></e>"},
     {"<e/>", "<e><n>x</n></e>", "<e><m/></e>", "<e><n>1</n><u:x/><u:y/></e>",
      "<e><n>1</n><n>2</n></e>"}},
    {"extension",
     R"(<xs:complexType name="b"><xs:sequence><xs:element name="a"/></xs:sequence>
          <xs:attribute name="x" use="required"/></xs:complexType>
        <xs:complexType name="d"><xs:complexContent><xs:extension base="t:b"><xs:sequence>
          <xs:element name="c" maxOccurs="2"/></xs:sequence><xs:attribute name="y"/></xs:extension>
          </xs:complexContent></xs:complexType>
        <xs:element name="e" type="t:d"/>)",
     "",
     {"<e x=''><a/><c/></e>", "<e x='' y=''><a/><c/><c/></e>"},
     {"<e><a/><c/></e>", "<e x=''><a/></e>", "<e x=''><c/></e>", "<e x='' z=''><a/><c/></e>"}},
    {"extension_with_wildcards",
     R"(<xs:complexType name="b"><xs:sequence><xs:element name="a"/></xs:sequence>
          <xs:attribute name="x"/><xs:anyAttribute namespace="urn:u" processContents="skip"/>
          </xs:complexType>
        <xs:complexType name="d"><xs:complexContent><xs:extension base="t:b"><xs:sequence>
          <xs:element name="c"/></xs:sequence><xs:attribute name="y" use="required"/>
          <xs:anyAttribute namespace="urn:v" processContents="skip"/></xs:extension>
          </xs:complexContent></xs:complexType>
        <xs:element name="e" type="t:d"/>)",
     "",
     {"<e y='' u:q='' v:r='' x=''><a/><c/></e>"},
     {"<e><a/><c/></e>", "<e y='' q=''><a/><c/></e>", "<e y=''><c/></e>"}},
    {"wildcards_that_have_nothing_in_common",
     R"(<xs:attributeGroup name="g"><xs:anyAttribute namespace="urn:u" processContents="skip"/>
          </xs:attributeGroup>
        <xs:element name="e"><xs:complexType><xs:sequence><xs:any namespace="" minOccurs="0"
          processContents="skip"/></xs:sequence><xs:attributeGroup ref="t:g"/>
          <xs:anyAttribute namespace="urn:v" processContents="skip"/></xs:complexType></xs:element>)",
     "",
     {"<e/>"},
     {"<e x=''/>", "<e u:x=''/>", "<e v:x=''/>", "<e><x xmlns=''/></e>", "<e><a/></e>"}},
    {"wildcards_of_groups_in_groups",
     R"(<xs:attributeGroup name="h"><xs:anyAttribute/></xs:attributeGroup>
        <xs:attributeGroup name="strict"><xs:attributeGroup ref="t:h"/></xs:attributeGroup>
        <xs:attributeGroup name="skip"><xs:anyAttribute processContents="skip"/></xs:attributeGroup>
        <xs:element name="e"><xs:complexType><xs:attributeGroup ref="t:strict"/>
          <xs:attributeGroup ref="t:skip"/></xs:complexType></xs:element>
        <xs:element name="f"><xs:complexType><xs:attributeGroup ref="t:skip"/>
          <xs:attributeGroup ref="t:strict"/></xs:complexType></xs:element>)",
     "",
     {"<e/>", "<f x=''/>"},
     {"<e x=''/>"}},
    {"prohibited_in_an_extension",
     R"(<xs:complexType name="b"><xs:attribute name="z"/></xs:complexType>
        <xs:complexType name="d"><xs:complexContent><xs:extension base="t:b">
          <xs:attribute name="z" use="prohibited"/><xs:anyAttribute namespace="urn:u"/>
          </xs:extension></xs:complexContent></xs:complexType>
        <xs:element name="e" type="t:d"/>)",
     "",
     {"<e z=''/>"},
     {"<e y=''/>"}},
    {"mixed_extension_of_nothing",
     R"(<xs:complexType name="b"/>
        <xs:element name="e"><xs:complexType><xs:complexContent mixed="true">
          <xs:extension base="t:b"/></xs:complexContent></xs:complexType></xs:element>)",
     "",
     {"<e>text</e>", "<e/>"},
     {"<e><a/></e>"}},
    {"bounds_that_exclude_each_other",
     R"(<xs:simpleType name="i"><xs:restriction base="xs:int"><xs:minInclusive value="5"/>
          <xs:maxInclusive value="4"/></xs:restriction></xs:simpleType>
        <xs:simpleType name="d"><xs:restriction base="xs:decimal"><xs:minInclusive value="1.50"/>
          <xs:maxExclusive value="1.4"/></xs:restriction></xs:simpleType>
        <xs:simpleType name="t"><xs:restriction base="xs:date"><xs:minInclusive value="2026-02-01"/>
          <xs:maxInclusive value="2026-01-01"/></xs:restriction></xs:simpleType>
        <xs:simpleType name="f"><xs:restriction base="xs:decimal"><xs:totalDigits value="2"/>
          <xs:fractionDigits value="3"/></xs:restriction></xs:simpleType>)",
     "t.xsd:2:55: error: minInclusive '5' and maxInclusive '4' of simpleType 'i' leave no value\n"
     "t.xsd:4:67: error: minInclusive '1.50' and maxExclusive '1.4' of simpleType 'd' leave no "
     "value\n"
     "t.xsd:6:64: error: minInclusive '2026-02-01' and maxInclusive '2026-01-01' of simpleType 't' "
     "leave no value\n"
     "t.xsd:8:67: error: fractionDigits of simpleType 'f' is greater than totalDigits\n",
     {},
     {"<e/>"}},
    {"extension_of_mixed_content",
     R"(<xs:complexType name="b" mixed="true"><xs:sequence><xs:element name="a"/></xs:sequence>
          </xs:complexType>
        <xs:complexType name="c"><xs:complexContent><xs:extension base="t:b">
          <xs:attribute name="x"/></xs:extension></xs:complexContent></xs:complexType>
        <xs:complexType name="d"><xs:complexContent><xs:extension base="xs:anyType">
          <xs:attribute name="x" type="xs:int"/></xs:extension></xs:complexContent></xs:complexType>
        <xs:element name="e" type="t:c"/><xs:element name="f" type="t:d"/>)",
     "",
     {"<e x=''>text<a/></e>", "<f x='1' u:y=''>text<a/></f>"},
     {"<e>text</e>", "<f x='no'/>"}},
    {"extension_of_anything",
     R"(<xs:complexType name="d" mixed="true"><xs:complexContent><xs:extension base="xs:anyType">
          <xs:sequence><xs:element name="a"/></xs:sequence></xs:extension></xs:complexContent>
          </xs:complexType><xs:element name="e" type="t:d"/>)",
     "t.xsd:2:1: error: the content of complexType 'd' is ambiguous: anything may stand before "
     "it\n",
     {},
     {"<e/>"}},
    {"restriction",
     R"(<xs:complexType name="b"><xs:sequence><xs:element name="a" minOccurs="0"/>
          <xs:element name="c" minOccurs="0"/></xs:sequence><xs:attribute name="x"/>
          <xs:attribute name="y"/><xs:attribute name="z"/></xs:complexType>
        <xs:complexType name="d"><xs:complexContent><xs:restriction base="t:b"><xs:sequence>
          <xs:element name="a"/></xs:sequence><xs:attribute name="x" use="required"/>
          <xs:attribute name="y" use="prohibited"/></xs:restriction></xs:complexContent>
          </xs:complexType>
        <xs:complexType name="again"><xs:complexContent><xs:extension base="t:d">
          <xs:attribute name="y" use="required"/></xs:extension></xs:complexContent></xs:complexType>
        <xs:element name="e" type="t:d"/><xs:element name="f" type="t:again"/>)",
     "",
     {"<e x=''><a/></e>", "<e x='' z=''><a/></e>", "<f x='' y='' z=''><a/></f>"},
     {"<e x=''/>", "<e x=''><a/><c/></e>", "<e><a/></e>", "<e x='' y=''><a/></e>",
      "<f x=''><a/></f>", "<f y=''><a/></f>"}},
    {"restriction_without_the_wildcard",
     R"(<xs:complexType name="b"><xs:attribute name="x" type="xs:int" use="required"/>
          <xs:anyAttribute processContents="skip"/></xs:complexType>
        <xs:complexType name="d"><xs:complexContent><xs:restriction base="t:b"/>
          </xs:complexContent></xs:complexType>
        <xs:element name="e" type="t:b"/><xs:element name="f" type="t:d"/>)",
     "",
     {"<e x='1' y='2'/>", "<f x='1'/>"},
     {"<e y='2'/>", "<f x='1' y='2'/>", "<f/>", "<f x='a'/>"}},
    {"simple_content",
     R"(<xs:complexType name="b"><xs:simpleContent><xs:extension base="xs:int">
          <xs:attribute name="unit" use="required"/></xs:extension></xs:simpleContent>
          </xs:complexType>
        <xs:complexType name="d"><xs:simpleContent><xs:restriction base="t:b">
          <xs:maxInclusive value="10"/><xs:totalDigits value="2"/></xs:restriction>
          </xs:simpleContent></xs:complexType>
        <xs:complexType name="x"><xs:simpleContent><xs:extension base="t:d">
          <xs:attribute name="note"/></xs:extension></xs:simpleContent></xs:complexType>
        <xs:element name="e" type="t:b"/><xs:element name="f" type="t:d"/>
        <xs:element name="g" type="t:x"/>)",
     "",
     {"<e unit='m'>11</e>", "<f unit='m'>10</f>", "<g unit='m' note=''>7</g>"},
     {"<e unit='m'>x</e>", "<e>1</e>", "<e unit='m'><a/></e>", "<f unit='m'>11</f>", "<f>1</f>",
      "<f unit='m' note=''>1</f>", "<g unit='m'>11</g>", "<g note=''>1</g>",
      "<g unit='m'>-100</g>"}},
    {"simple_content_with_a_type_and_wildcards",
     R"(<xs:complexType name="b"><xs:simpleContent><xs:extension base="xs:string">
          <xs:attribute name="x"/><xs:anyAttribute namespace="urn:u" processContents="skip"/>
          </xs:extension></xs:simpleContent></xs:complexType>
        <xs:complexType name="d"><xs:simpleContent><xs:restriction base="t:b"><xs:simpleType>
          <xs:restriction base="xs:string"><xs:enumeration value="up"/><xs:enumeration value="down"/>
          </xs:restriction></xs:simpleType><xs:pattern value=".."/></xs:restriction>
          </xs:simpleContent></xs:complexType>
        <xs:element name="e" type="t:b"/><xs:element name="f" type="t:d"/>)",
     "",
     {"<e x='' u:y=''>text</e>", "<f x=''>up</f>"},
     {"<e v:y=''>text</e>", "<f>down</f>", "<f u:y=''>up</f>", "<f>xy</f>"}},
    {"substitution_by_the_validator",
     R"(<xs:element name="h" abstract="true"/><xs:element name="a" substitutionGroup="t:h"
          type="xs:int"/><xs:element name="b" substitutionGroup="t:h" type="xs:string"/>
        <xs:element name="e"><xs:complexType><xs:sequence><xs:element ref="t:h"
          maxOccurs="unbounded"/></xs:sequence></xs:complexType></xs:element>)",
     "",
     {"<e><a>1</a><b>x</b><a>2</a></e>"},
     {"<e/>", "<e><h/></e>", "<e><a>x</a></e>", "<e><c/></e>", "<h/>"}},
    {"substitution_by_choice",
     R"(<xs:element name="h" type="xs:string"/><xs:element name="a" substitutionGroup="t:h"/>
        <xs:element name="b" substitutionGroup="t:a" abstract="true"/>
        <xs:element name="c" substitutionGroup="t:b"/>
        <xs:element name="e"><xs:complexType><xs:sequence><xs:element ref="t:h" minOccurs="2"
          maxOccurs="3"/><xs:element name="z" minOccurs="0"/></xs:sequence></xs:complexType>
          </xs:element>)",
     "",
     {"<e><h/><a/></e>", "<e><c/><a/><h/></e>", "<e><c/><c/><z/></e>"},
     {"<e><h/></e>", "<e><b/><a/></e>", "<e><a/><a/><a/><a/></e>", "<e><a/><z/></e>"}},
    {"substitution_of_several_levels",
     R"(<xs:element name="h" abstract="true"/><xs:element name="m" abstract="true"
          substitutionGroup="t:h"/><xs:element name="a" substitutionGroup="t:m" type="xs:int"/>
        <xs:element name="e"><xs:complexType><xs:choice><xs:element ref="t:h"/><xs:element
          name="z"/></xs:choice></xs:complexType></xs:element>)",
     "",
     {"<e><a>1</a></e>", "<e><z/></e>"},
     {"<e><a>x</a></e>", "<e><m/></e>", "<e><h/></e>", "<e/>"}},
    {"nillable",
     R"(<xs:element name="e" type="xs:int" nillable="true"/>)",
     "t.xsd:2:1: warning: that an empty element 'e' carries xsi:nil is not enforced\n",
     {"<e>1</e>", "<e xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' xsi:nil='true'/>"},
     {"<e>x</e>"}},
    {"fixed_element",
     R"(<xs:element name="e" type="xs:string" fixed="v"/>)",
     "t.xsd:2:1: warning: that an empty element 'e' takes its fixed value is not enforced\n",
     {"<e>v</e>"},
     {"<e>w</e>"}},
    {"fixed_attribute_of_a_list",
     R"(<xs:element name="e"><xs:complexType><xs:attribute name="a" type="xs:NMTOKENS" fixed="x y"/>
          </xs:complexType></xs:element>)",
     "t.xsd:2:38: warning: that the fixed value 'x y' of attribute 'a' has other spellings is not "
     "enforced\n",
     {"<e a='x y'/>"},
     {"<e a='x  y'/>", "<e a='x'/>"}},
    {"fixed_element_of_mixed_content",
     R"(<xs:element name="e" fixed="v"><xs:complexType mixed="true"><xs:sequence>
          <xs:element name="a" minOccurs="0"/></xs:sequence></xs:complexType></xs:element>)",
     "t.xsd:2:1: warning: that an empty element 'e' takes its fixed value is not enforced\n"
     "t.xsd:2:1: error: the fixed value of element 'e' with mixed content cannot be compiled\n",
     {},
     {"<e>v</e>"}},
    {"enumeration_compared_as_a_text",
     R"(<xs:element name="e"><xs:simpleType><xs:restriction base="xs:date">
          <xs:enumeration value="2000-01-01Z"/></xs:restriction></xs:simpleType></xs:element>)",
     "t.xsd:3:11: warning: that enumeration '2000-01-01Z' has other spellings is not enforced\n",
     {"<e>2000-01-01Z</e>"},
     {"<e>2000-01-01+00:00</e>"}},
    {"enumeration_of_a_union_with_numbers",
     R"(<xs:element name="e"><xs:simpleType><xs:restriction><xs:simpleType>
          <xs:union memberTypes="xs:byte xs:NCName"/></xs:simpleType>
          <xs:enumeration value="1"/><xs:enumeration value="a"/></xs:restriction>
          </xs:simpleType></xs:element>)",
     "t.xsd:4:11: warning: that enumeration '1' has other spellings is not enforced\n"
     "t.xsd:4:38: warning: that enumeration 'a' has other spellings is not enforced\n",
     {"<e>1</e>", "<e>a</e>"},
     {"<e>01</e>", "<e>b</e>"}},
    {"enumeration_of_a_union_with_a_list",
     R"(<xs:element name="e"><xs:simpleType><xs:restriction><xs:simpleType>
          <xs:union memberTypes="xs:NMTOKENS"/></xs:simpleType>
          <xs:enumeration value="x y"/></xs:restriction></xs:simpleType></xs:element>)",
     "t.xsd:4:11: warning: that enumeration 'x y' has other spellings is not enforced\n",
     {"<e>x y</e>"},
     {"<e>x  y</e>"}},
    {"enumeration_of_a_list_of_numbers",
     R"(<xs:element name="e"><xs:simpleType><xs:restriction><xs:simpleType>
          <xs:list itemType="xs:int"/></xs:simpleType><xs:enumeration value="1 2"/>
          </xs:restriction></xs:simpleType></xs:element>)",
     "t.xsd:3:55: warning: that enumeration '1 2' has other spellings is not enforced\n",
     {"<e>1 2</e>"},
     {"<e>01 2</e>"}},
    // Of numbers and durations, and of texts in whatever they are put together to, nothing is lost.
    {"enumeration_by_value",
     R"(<xs:element name="e"><xs:complexType><xs:sequence>
          <xs:element name="i"><xs:simpleType><xs:restriction base="xs:int">
            <xs:enumeration value="1"/></xs:restriction></xs:simpleType></xs:element>
          <xs:element name="d"><xs:simpleType><xs:restriction base="xs:decimal">
            <xs:enumeration value="1.5"/></xs:restriction></xs:simpleType></xs:element>
          <xs:element name="t"><xs:simpleType><xs:restriction base="xs:duration">
            <xs:enumeration value="P1Y0M0DT0H0M0S"/></xs:restriction></xs:simpleType></xs:element>
          <xs:element name="u"><xs:simpleType><xs:restriction><xs:simpleType>
            <xs:union memberTypes="xs:NCName xs:language"/></xs:simpleType>
            <xs:enumeration value="a"/></xs:restriction></xs:simpleType></xs:element>
          <xs:element name="l"><xs:simpleType><xs:restriction><xs:simpleType>
            <xs:list itemType="xs:token"/></xs:simpleType>
            <xs:enumeration value="a b"/></xs:restriction></xs:simpleType></xs:element>
          </xs:sequence></xs:complexType></xs:element>)",
     "",
     {"<e><i>+1</i><d>1.50</d><t>P0Y12M0DT0H0M0S</t><u>a</u><l>a  b</l></e>"},
     {"<e><i>2</i><d>1.50</d><t>P0Y12M0DT0H0M0S</t><u>a</u><l>a  b</l></e>",
      "<e><i>1</i><d>1.5</d><t>P0Y12M0DT0H0M0S</t><u>b</u><l>a b</l></e>"}},
    {"defaults",
     R"(<xs:element name="e"><xs:complexType><xs:attribute name="a" default="1" type="xs:int"/>
          </xs:complexType></xs:element>)",
     "t.xsd:2:38: warning: the default value of attribute 'a' is not enforced\n",
     {"<e/>", "<e a='2'/>"},
     {"<e a='x'/>"}},
    {"model_that_is_counted_wrongly",
     R"(<xs:element name="e"><xs:complexType><xs:choice minOccurs="0" maxOccurs="unbounded">
          <xs:choice minOccurs="2" maxOccurs="3"><xs:element name="a"/><xs:element name="b"/>
          </xs:choice></xs:choice></xs:complexType></xs:element>)",
     "t.xsd:3:11: error: the content of an anonymous complexType has a group that has to repeat "
     "within "
     "one that may repeat, which the validator would judge wrongly\n",
     {},
     {"<e><a/><a/><a/><b/></e>"}},
    {"ambiguous_model",
     R"(<xs:element name="e"><xs:complexType><xs:sequence>
          <xs:element name="a" minOccurs="0"/><xs:element name="a"/></xs:sequence>
          </xs:complexType></xs:element>)",
     "t.xsd:3:47: error: the content of an anonymous complexType is ambiguous: element 'a' may "
     "belong "
     "here or to t.xsd:3:11\n",
     {},
     {"<e><a/></e>"}},
};

INSTANTIATE_TEST_SUITE_P(All, Schemas, ::testing::ValuesIn(kCases),
                         [](const auto &test) { return test.param.name; });

}  // namespace
