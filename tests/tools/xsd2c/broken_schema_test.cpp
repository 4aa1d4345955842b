// Schemas that are wrong, or ask for more than is enforced: what is said of them, and where.
#include <gtest/gtest.h>

#include <span>
#include <string>

#include "tests/tools/xsd2c/support/schema_files.h"

namespace {

struct SchemaCase {
    const char *name;
    const char *attributes;  // of xs:schema
    const char *content;     // from line 2 on
    const char *messages;
};

void expectMessages(std::span<const SchemaCase> cases) {
    for (const SchemaCase &one : cases) {
        SCOPED_TRACE(one.name);
        EXPECT_EQ(messagesOf(schemaText(one.content, one.attributes)), one.messages);
    }
}

constexpr SchemaCase kGrammar[] = {
    {"what no schema has", "", "<xs:thing/>",
     "a.xsd:2:1: error: 'thing' is not allowed here: within 'schema'\n"},
    {"an element of another namespace", "", "<thing xmlns='urn:x'/>",
     "a.xsd:2:1: error: 'thing' is not allowed here: within 'schema'\n"},
    {"a particle on top", "", "<xs:sequence/>",
     "a.xsd:2:1: error: 'sequence' is not allowed here: within 'schema'\n"},
    {"an include behind a declaration", "",
     "<xs:element name='a'/><xs:include schemaLocation='b.xsd'/>",
     "a.xsd:2:23: error: 'include' is not allowed here: within 'schema'\n"},
    {"text", "", "<xs:element name='a'>text</xs:element>",
     "a.xsd:2:1: error: text is not allowed within 'element'\n"},
    {"text in a CDATA section", "", "<![CDATA[text]]>",
     "a.xsd:1:1: error: text is not allowed within 'schema'\n"},
    {"an unknown attribute", "", "<xs:element name='a' foo='1'/>",
     "a.xsd:2:1: error: attribute 'foo' is not allowed on 'element'\n"},
    {"an attribute of the schema namespace", "", "<xs:element xs:name='a' name='a'/>",
     "a.xsd:2:1: error: attribute 'xs:name' is not allowed on 'element'\n"},
    {"attributes of other namespaces are nobody's business", "",
     "<xs:element x:foo='1' name='a' xmlns:x='urn:x'/>", ""},
    {"no name", "", "<xs:complexType/>",
     "a.xsd:2:1: error: attribute 'name' is missing on 'complexType'\n"},
    {"a local element without name", "",
     "<xs:group name='g'><xs:sequence><xs:element/></xs:sequence></xs:group>",
     "a.xsd:2:33: error: attribute 'name' or 'ref' is missing on 'element'\n"},
    {"a local attribute without name", "",
     "<xs:attributeGroup name='g'><xs:attribute/></xs:attributeGroup>",
     "a.xsd:2:29: error: attribute 'name' or 'ref' is missing on 'attribute'\n"},
    {"occurrence on top", "", "<xs:element name='a' minOccurs='0'/>",
     "a.xsd:2:1: error: attribute 'minOccurs' is not allowed on 'element'\n"},
    {"form on top", "", "<xs:attribute name='a' form='qualified'/>",
     "a.xsd:2:1: error: attribute 'form' is not allowed on 'attribute'\n"},
    {"ref on top", "", "<xs:element ref='a'/>",
     "a.xsd:2:1: error: attribute 'ref' is not allowed on 'element'\n"
     "a.xsd:2:1: error: attribute 'name' is missing on 'element'\n"},
    {"a name on a local type", "",
     "<xs:element name='a'><xs:simpleType name='t'><xs:restriction "
     "base='xs:int'/></xs:simpleType></xs:element>",
     "a.xsd:2:22: error: attribute 'name' is not allowed on 'simpleType'\n"},
    {"two annotations", "", "<xs:element name='a'><xs:annotation/><xs:annotation/></xs:element>",
     "a.xsd:2:38: error: 'annotation' is not allowed here: within 'element'\n"},
    {"an annotation at the end", "",
     "<xs:complexType name='a'><xs:sequence/><xs:annotation/></xs:complexType>",
     "a.xsd:2:40: error: 'annotation' is not allowed here: within 'complexType'\n"},
    {"annotations between declarations", "",
     "<xs:annotation/><xs:element name='a'/><xs:annotation/><xs:element name='b'/>", ""},
    {"what stands within annotations is not looked at", "",
     "<xs:annotation><xs:documentation><xs:foo "
     "a='1'>text</xs:foo></xs:documentation><xs:appinfo "
     "source='x'>text</xs:appinfo></xs:annotation>",
     ""},
    {"something else in an annotation", "", "<xs:annotation><xs:foo/></xs:annotation>",
     "a.xsd:2:16: error: 'foo' is not allowed here: within 'annotation'\n"},
    {"an empty simpleType", "", "<xs:simpleType name='a'/>",
     "a.xsd:2:1: error: 'restriction', 'list' or 'union' is missing within 'simpleType'\n"},
    {"a simpleType with two varieties", "",
     "<xs:simpleType name='a'><xs:restriction base='xs:int'/><xs:list "
     "itemType='xs:int'/></xs:simpleType>",
     "a.xsd:2:56: error: 'list' is not allowed here: within 'simpleType'\n"},
    {"an empty simpleContent", "", "<xs:complexType name='a'><xs:simpleContent/></xs:complexType>",
     "a.xsd:2:26: error: 'restriction' or 'extension' is missing within 'simpleContent'\n"},
    {"a misspelt child is told once", "",
     "<xs:complexType name='a'><xs:simpleContent><xs:extend "
     "base='xs:int'/></xs:simpleContent></xs:complexType>",
     "a.xsd:2:44: error: 'extend' is not allowed here: within 'simpleContent'\n"},
    {"attributes behind simpleContent", "",
     "<xs:complexType name='a'><xs:simpleContent><xs:extension "
     "base='xs:int'/></xs:simpleContent><xs:attribute name='b'/></xs:complexType>",
     "a.xsd:2:92: error: 'attribute' is not allowed here: within 'complexType'\n"},
    {"attributes before the content", "",
     "<xs:complexType name='a'><xs:attribute name='b'/><xs:sequence/></xs:complexType>",
     "a.xsd:2:50: error: 'sequence' is not allowed here: within 'complexType'\n"},
    {"two content models", "",
     "<xs:complexType name='a'><xs:sequence/><xs:choice/></xs:complexType>",
     "a.xsd:2:40: error: 'choice' is not allowed here: within 'complexType'\n"},
    {"attributes behind anyAttribute", "",
     "<xs:complexType name='a'><xs:anyAttribute/><xs:attribute name='b'/></xs:complexType>",
     "a.xsd:2:44: error: 'attribute' is not allowed here: within 'complexType'\n"},
    {"an empty group", "", "<xs:group name='g'/>",
     "a.xsd:2:1: error: 'all', 'choice' or 'sequence' is missing within 'group'\n"},
    {"occurrence of a group's content", "",
     "<xs:group name='g'><xs:sequence minOccurs='0'/></xs:group>",
     "a.xsd:2:20: error: attribute 'minOccurs' is not allowed on 'sequence'\n"},
    {"all within a sequence", "",
     "<xs:complexType name='a'><xs:sequence><xs:all/></xs:sequence></xs:complexType>",
     "a.xsd:2:39: error: 'all' is not allowed here: within 'sequence'\n"},
    {"a choice within all", "",
     "<xs:complexType name='a'><xs:all><xs:choice/></xs:all></xs:complexType>",
     "a.xsd:2:34: error: 'choice' is not allowed here: within 'all'\n"},
    {"all more than once", "", "<xs:complexType name='a'><xs:all maxOccurs='2'/></xs:complexType>",
     "a.xsd:2:26: error: attribute 'maxOccurs' is '2', not 1, as for 'all'\n"},
    {"elements of all more than once", "",
     "<xs:complexType name='a'><xs:all><xs:element name='e' "
     "maxOccurs='2'/></xs:all></xs:complexType>",
     "a.xsd:2:34: error: attribute 'maxOccurs' is '2', not 0 or 1, as within 'all'\n"},
    {"all at least twice", "", "<xs:complexType name='a'><xs:all minOccurs='2'/></xs:complexType>",
     "a.xsd:2:26: error: attribute 'minOccurs' is '2', not 0 or 1, as within 'all'\n"},
    {"redefine", "", "<xs:redefine schemaLocation='b.xsd'><xs:foo/></xs:redefine>",
     "a.xsd:2:1: error: redefine is not supported\n"},
    {"a key without fields", "",
     "<xs:element name='a'><xs:key name='k'><xs:selector xpath='b'/></xs:key></xs:element>",
     "a.xsd:2:22: error: 'field' is missing within 'key'\n"
     "a.xsd:2:22: warning: key 'k' is not enforced\n"},
    {"fields before the selector", "",
     "<xs:element name='a'><xs:key name='k'><xs:field xpath='@b'/><xs:selector "
     "xpath='b'/></xs:key></xs:element>",
     "a.xsd:2:22: warning: key 'k' is not enforced\n"
     "a.xsd:2:61: error: 'selector' is not allowed here: within 'key'\n"},
    {"a keyref without refer", "",
     "<xs:element name='a'><xs:keyref name='k'><xs:selector xpath='b'/><xs:field "
     "xpath='@b'/></xs:keyref></xs:element>",
     "a.xsd:2:22: error: attribute 'refer' is missing on 'keyref'\n"
     "a.xsd:2:22: warning: keyref 'k' is not enforced\n"},
    {"an empty target namespace", "targetNamespace=''", "",
     "a.xsd:1:1: error: attribute 'targetNamespace' is empty\n"},
    {"the schema namespace as a target", "targetNamespace='http://www.w3.org/2001/XMLSchema'", "",
     "a.xsd:1:1: error: nothing can be added to the namespace http://www.w3.org/2001/XMLSchema\n"},
};

TEST(BrokenSchema, Grammar) {
    expectMessages(kGrammar);
}

constexpr SchemaCase kValues[] = {
    {"a boolean", "", "<xs:element name='a' nillable='yes'/>",
     "a.xsd:2:1: error: attribute 'nillable' is 'yes', not a boolean\n"},
    {"a boolean with blanks around", "", "<xs:element name='a' abstract=' true '/>", ""},
    {"a name with a colon", "", "<xs:element name='x:a'/>",
     "a.xsd:2:1: error: attribute 'name' is 'x:a', not a name without a colon\n"},
    {"an empty name", "", "<xs:element name=''/>",
     "a.xsd:2:1: error: attribute 'name' is '', not a name without a colon\n"},
    {"a name that begins with a digit", "", "<xs:element name='1a'/>",
     "a.xsd:2:1: error: attribute 'name' is '1a', not a name without a colon\n"},
    {"names in Chinese", "", "<xs:element name='会议室'/>", ""},
    {"blanks around a name", "", "<xs:element name=' a '/>", ""},
    {"an id", "", "<xs:element name='a' id='1'/>",
     "a.xsd:2:1: error: attribute 'id' is '1', not a name without a colon\n"},
    {"a form", "elementFormDefault='yes'", "",
     "a.xsd:1:1: error: attribute 'elementFormDefault' is 'yes', not 'qualified' or "
     "'unqualified'\n"},
    {"a use", "",
     "<xs:attributeGroup name='g'><xs:attribute name='b' use='maybe'/></xs:attributeGroup>",
     "a.xsd:2:29: error: attribute 'use' is 'maybe', not 'optional', 'required' or "
     "'prohibited'\n"},
    {"processContents", "",
     "<xs:complexType name='a'><xs:sequence><xs:any "
     "processContents='no'/></xs:sequence></xs:complexType>",
     "a.xsd:2:39: error: attribute 'processContents' is 'no', not 'strict', 'lax' or 'skip'\n"},
    {"namespaces", "",
     "<xs:complexType name='a'><xs:sequence><xs:any namespace='##any "
     "##local'/></xs:sequence></xs:complexType>",
     "a.xsd:2:39: error: attribute 'namespace' is '##any ##local', not '##any', '##other' or a "
     "list of namespaces\n"},
    {"an unknown word among the namespaces", "",
     "<xs:complexType name='a'><xs:sequence><xs:any "
     "namespace='##all'/></xs:sequence></xs:complexType>",
     "a.xsd:2:39: error: attribute 'namespace' is '##all', not '##any', '##other' or a list of "
     "namespaces\n"},
    {"a QName with two colons", "", "<xs:element name='a' type='a:b:c'/>",
     "a.xsd:2:1: error: attribute 'type' is 'a:b:c', not a qualified name\n"},
    {"an empty QName", "", "<xs:element name='a' type=''/>",
     "a.xsd:2:1: error: attribute 'type' is '', not a qualified name\n"},
    {"an undeclared prefix", "", "<xs:element name='a' type='y:int'/>",
     "a.xsd:2:1: error: prefix 'y' is not declared\n"},
    {"undeclared prefixes in a list", "",
     "<xs:simpleType name='a'><xs:union memberTypes='xs:int y:a z:b'/></xs:simpleType>",
     "a.xsd:2:25: error: prefix 'y' is not declared\n"
     "a.xsd:2:25: error: prefix 'z' is not declared\n"},
    {"blocking", "", "<xs:element name='a' block='list'/>",
     "a.xsd:2:1: error: attribute 'block' is 'list', not '#all' or a list of 'extension', "
     "'restriction' and 'substitution'\n"},
    {"final", "",
     "<xs:simpleType name='a' final='extension'><xs:restriction base='xs:int'/></xs:simpleType>",
     "a.xsd:2:1: error: attribute 'final' is 'extension', not '#all' or a list of "
     "'restriction', 'list' and 'union'\n"},
    {"minOccurs below 0", "",
     "<xs:complexType name='a'><xs:sequence><xs:element name='e' "
     "minOccurs='-1'/></xs:sequence></xs:complexType>",
     "a.xsd:2:39: error: attribute 'minOccurs' is '-1', not a number from 0 to 4294967294\n"},
    {"minOccurs without limit", "",
     "<xs:complexType name='a'><xs:sequence><xs:element name='e' minOccurs='unbounded' "
     "maxOccurs='unbounded'/></xs:sequence></xs:complexType>",
     "a.xsd:2:39: error: attribute 'minOccurs' is 'unbounded', not a number from 0 to "
     "4294967294\n"},
    {"maxOccurs in words", "",
     "<xs:complexType name='a'><xs:sequence><xs:element name='e' "
     "maxOccurs='many'/></xs:sequence></xs:complexType>",
     "a.xsd:2:39: error: attribute 'maxOccurs' is 'many', not 'unbounded' or a number from 0 to "
     "4294967294\n"},
    {"an empty maxOccurs", "",
     "<xs:complexType name='a'><xs:sequence><xs:element name='e' "
     "maxOccurs=''/></xs:sequence></xs:complexType>",
     "a.xsd:2:39: error: attribute 'maxOccurs' is '', not 'unbounded' or a number from 0 to "
     "4294967294\n"},
    {"the greatest maxOccurs", "",
     "<xs:complexType name='a'><xs:sequence><xs:element name='e' "
     "maxOccurs='4294967294'/></xs:sequence></xs:complexType>",
     ""},
    {"a greater maxOccurs", "",
     "<xs:complexType name='a'><xs:sequence><xs:element name='e' "
     "maxOccurs='4294967295'/></xs:sequence></xs:complexType>",
     "a.xsd:2:39: error: attribute 'maxOccurs' is '4294967295', not 'unbounded' or a number "
     "from 0 to 4294967294\n"},
    {"a maxOccurs beyond all integers", "",
     "<xs:complexType name='a'><xs:sequence><xs:element name='e' "
     "maxOccurs='340282366920938463463374607431768211457'/></xs:sequence></xs:complexType>",
     "a.xsd:2:39: error: attribute 'maxOccurs' is '340282366920938463463374607431768211457', "
     "not 'unbounded' or a number from 0 to 4294967294\n"},
    {"odd numbers", "",
     "<xs:complexType name='a'><xs:sequence><xs:element name='e' minOccurs=' +01 ' "
     "maxOccurs='0002'/><xs:element name='f' minOccurs='-0'/></xs:sequence></xs:complexType>",
     ""},
    {"minOccurs above maxOccurs", "",
     "<xs:complexType name='a'><xs:sequence><xs:element name='e' minOccurs='3' "
     "maxOccurs='2'/></xs:sequence></xs:complexType>",
     "a.xsd:2:39: error: minOccurs 3 is more than maxOccurs 2\n"},
    {"minOccurs above the maxOccurs of who says nothing", "",
     "<xs:complexType name='a'><xs:sequence><xs:element name='e' "
     "minOccurs='2'/></xs:sequence></xs:complexType>",
     "a.xsd:2:39: error: minOccurs 2 is more than maxOccurs 1\n"},
    {"maxOccurs below the minOccurs of who says nothing", "",
     "<xs:complexType name='a'><xs:sequence><xs:element name='e' "
     "maxOccurs='0'/></xs:sequence></xs:complexType>",
     "a.xsd:2:39: error: minOccurs 1 is more than maxOccurs 0\n"},
    {"facets twice", "",
     "<xs:simpleType name='a'><xs:restriction base='xs:string'><xs:length "
     "value='1'/><xs:pattern value='a'/><xs:pattern value='b'/><xs:length "
     "value='2'/></xs:restriction></xs:simpleType>",
     "a.xsd:2:126: error: facet 'length' is given twice\n"},
    {"a facet without value", "",
     "<xs:simpleType name='a'><xs:restriction "
     "base='xs:string'><xs:length/></xs:restriction></xs:simpleType>",
     "a.xsd:2:58: error: attribute 'value' is missing on 'length'\n"},
    {"fixed patterns", "",
     "<xs:simpleType name='a'><xs:restriction base='xs:string'><xs:pattern value='a' "
     "fixed='true'/></xs:restriction></xs:simpleType>",
     "a.xsd:2:58: error: attribute 'fixed' is not allowed on 'pattern'\n"},
    {"a fixed facet", "",
     "<xs:simpleType name='a'><xs:restriction base='xs:string'><xs:length value='1' "
     "fixed='maybe'/></xs:restriction></xs:simpleType>",
     "a.xsd:2:58: error: attribute 'fixed' is 'maybe', not a boolean\n"},
    {"control characters are made visible", "",
     "<xs:element name='a' nillable='a&#x9;&#x7F;&#x85;b'/>",
     "a.xsd:2:1: error: attribute 'nillable' is 'a \\x7F\\x85b', not a boolean\n"},
    {"several mistakes", "",
     "<xs:element name='1' nillable='x' type='y:z' foo=''/>\n"
     "<xs:group/>",
     "a.xsd:2:1: error: attribute 'name' is '1', not a name without a colon\n"
     "a.xsd:2:1: error: attribute 'nillable' is 'x', not a boolean\n"
     "a.xsd:2:1: error: prefix 'y' is not declared\n"
     "a.xsd:2:1: error: attribute 'foo' is not allowed on 'element'\n"
     "a.xsd:3:1: error: attribute 'name' is missing on 'group'\n"
     "a.xsd:3:1: error: 'all', 'choice' or 'sequence' is missing within 'group'\n"},
};

TEST(BrokenSchema, Values) {
    expectMessages(kValues);
}

constexpr SchemaCase kCombinations[] = {
    {"default and fixed", "", "<xs:element name='a' type='xs:int' default='1' fixed='1'/>",
     "a.xsd:2:1: error: attributes 'default' and 'fixed' exclude each other\n"
     "a.xsd:2:1: warning: that an empty element 'a' takes its fixed value is not enforced\n"
     "a.xsd:2:1: warning: the default value of element 'a' is not enforced\n"},
    {"default and fixed of an attribute", "", "<xs:attribute name='a' default='1' fixed='1'/>",
     "a.xsd:2:1: error: attributes 'default' and 'fixed' exclude each other\n"
     "a.xsd:2:1: warning: the default value of attribute 'a' is not enforced\n"},
    {"a default value of what is required", "",
     "<xs:attributeGroup name='g'><xs:attribute name='b' use='required' "
     "default='1'/></xs:attributeGroup>",
     "a.xsd:2:29: error: an attribute with a default value is not 'required'\n"
     "a.xsd:2:29: warning: the default value of attribute 'b' is not enforced\n"},
    {"a type and a simpleType", "",
     "<xs:element name='a' type='xs:int'><xs:simpleType><xs:restriction "
     "base='xs:int'/></xs:simpleType></xs:element>",
     "a.xsd:2:1: error: attribute 'type' and 'simpleType' exclude each other\n"},
    {"a type and a complexType", "",
     "<xs:complexType name='a'><xs:sequence><xs:element name='a' "
     "type='xs:int'><xs:complexType/></xs:element></xs:sequence></xs:complexType>",
     "a.xsd:2:39: error: attribute 'type' and 'complexType' exclude each other\n"},
    {"a ref and all the rest", "",
     "<xs:element name='e'/><xs:complexType name='a'><xs:sequence><xs:element ref='e' name='f' "
     "type='xs:int' form='qualified' nillable='true' "
     "default='1'><xs:complexType/></xs:element></xs:sequence></xs:complexType>",
     "a.xsd:2:61: error: attribute 'name' is not allowed beside 'ref'\n"
     "a.xsd:2:61: error: attribute 'type' is not allowed beside 'ref'\n"
     "a.xsd:2:61: error: attribute 'form' is not allowed beside 'ref'\n"
     "a.xsd:2:61: error: attribute 'nillable' is not allowed beside 'ref'\n"
     "a.xsd:2:61: error: attribute 'default' is not allowed beside 'ref'\n"
     "a.xsd:2:149: error: 'complexType' is not allowed beside 'ref'\n"},
    {"an attribute's ref and all the rest", "",
     "<xs:attribute name='e'/><xs:attributeGroup name='g'><xs:attribute ref='e' name='f' "
     "type='xs:int' form='qualified' fixed='1'><xs:simpleType><xs:restriction "
     "base='xs:int'/></xs:simpleType></xs:attribute></xs:attributeGroup>",
     "a.xsd:2:53: error: attribute 'name' is not allowed beside 'ref'\n"
     "a.xsd:2:53: error: attribute 'type' is not allowed beside 'ref'\n"
     "a.xsd:2:53: error: attribute 'form' is not allowed beside 'ref'\n"
     "a.xsd:2:125: error: 'simpleType' is not allowed beside 'ref'\n"},
    {"a list of nothing", "", "<xs:simpleType name='a'><xs:list/></xs:simpleType>",
     "a.xsd:2:25: error: attribute 'itemType' or 'simpleType' is missing on 'list'\n"},
    {"a list of two things", "",
     "<xs:simpleType name='a'><xs:list itemType='xs:int'><xs:simpleType><xs:restriction "
     "base='xs:int'/></xs:simpleType></xs:list></xs:simpleType>",
     "a.xsd:2:25: error: attribute 'itemType' and 'simpleType' exclude each other\n"},
    {"a union of nothing", "", "<xs:simpleType name='a'><xs:union/></xs:simpleType>",
     "a.xsd:2:25: error: 'union' has no member types\n"},
    {"a union of nothing at all", "",
     "<xs:simpleType name='a'><xs:union memberTypes=' '/></xs:simpleType>",
     "a.xsd:2:25: error: 'union' has no member types\n"},
    {"a restriction of nothing", "", "<xs:simpleType name='a'><xs:restriction/></xs:simpleType>",
     "a.xsd:2:25: error: attribute 'base' or 'simpleType' is missing on 'restriction'\n"},
    {"a restriction of two types", "",
     "<xs:simpleType name='a'><xs:restriction base='xs:int'><xs:simpleType><xs:restriction "
     "base='xs:int'/></xs:simpleType></xs:restriction></xs:simpleType>",
     "a.xsd:2:25: error: attribute 'base' and 'simpleType' exclude each other\n"},
    {"another fixed value", "",
     "<xs:attribute name='e' fixed='1'/><xs:attributeGroup name='g'><xs:attribute ref='e' "
     "fixed='2'/></xs:attributeGroup>",
     "a.xsd:2:63: error: attribute 'e' has another fixed value where it is declared\n"},
    {"the same fixed value", "",
     "<xs:attribute name='e' fixed='1'/><xs:attributeGroup name='g'><xs:attribute ref='e' "
     "fixed='1'/></xs:attributeGroup>",
     ""},
};

TEST(BrokenSchema, Combinations) {
    expectMessages(kCombinations);
}

constexpr SchemaCase kReferences[] = {
    {"types", "",
     "<xs:element name='a' type='foo'/>\n"
     "<xs:element name='b' type='xs:foo'/>\n"
     "<xs:attribute name='c' type='foo'/>",
     "a.xsd:2:1: error: type 'foo' is not defined\n"
     "a.xsd:3:1: error: type 'xs:foo' is not defined\n"
     "a.xsd:4:1: error: type 'foo' is not defined\n"},
    {"types with a prefix", "targetNamespace='urn:t' xmlns='urn:t' xmlns:t='urn:t'",
     "<xs:element name='a' type='t:foo'/>", "a.xsd:2:1: error: type 't:foo' is not defined\n"},
    {"bases", "",
     "<xs:simpleType name='a'><xs:restriction base='foo'/></xs:simpleType>\n"
     "<xs:complexType name='b'><xs:complexContent><xs:extension "
     "base='foo'><xs:sequence><xs:element name='c' "
     "type='bar'/></xs:sequence></xs:extension></xs:complexContent></xs:complexType>\n"
     "<xs:complexType name='d'><xs:simpleContent><xs:restriction "
     "base='foo'/></xs:simpleContent></xs:complexType>",
     "a.xsd:2:25: error: type 'foo' is not defined\n"
     "a.xsd:3:45: error: type 'foo' is not defined\n"
     "a.xsd:3:83: error: type 'bar' is not defined\n"
     "a.xsd:4:44: error: type 'foo' is not defined\n"},
    {"items and members", "",
     "<xs:simpleType name='a'><xs:list itemType='foo'/></xs:simpleType>\n"
     "<xs:simpleType name='b'><xs:union memberTypes='foo xs:int bar'/></xs:simpleType>",
     "a.xsd:2:25: error: type 'foo' is not defined\n"
     "a.xsd:3:25: error: type 'foo' is not defined\n"
     "a.xsd:3:25: error: type 'bar' is not defined\n"},
    {"elements, attributes and groups", "",
     "<xs:complexType name='a'><xs:sequence><xs:element ref='foo'/><xs:group "
     "ref='foo'/></xs:sequence><xs:attribute ref='foo'/><xs:attributeGroup "
     "ref='foo'/></xs:complexType>",
     "a.xsd:2:39: error: element 'foo' is not declared\n"
     "a.xsd:2:62: error: group 'foo' is not defined\n"
     "a.xsd:2:97: error: attribute 'foo' is not declared\n"
     "a.xsd:2:122: error: attribute group 'foo' is not defined\n"},
    {"substitution groups", "targetNamespace='urn:t' xmlns='urn:t' xmlns:t='urn:t'",
     "<xs:element name='a' substitutionGroup='t:foo'/>",
     "a.xsd:2:1: error: element 't:foo' is not declared\n"},
    {"a type is no element", "",
     "<xs:complexType name='a'><xs:sequence><xs:element ref='a'/></xs:sequence></xs:complexType>",
     "a.xsd:2:39: error: element 'a' is not declared\n"},
    {"a complex type where a simple one is needed", "",
     "<xs:complexType name='c'/><xs:attribute name='a' type='c'/><xs:simpleType "
     "name='b'><xs:list itemType='xs:anyType'/></xs:simpleType>",
     "a.xsd:2:27: error: type 'c' is complex, where a simple one is needed\n"
     "a.xsd:2:84: error: type 'xs:anyType' is complex, where a simple one is needed\n"},
    {"a namespace that is not imported", "xmlns:x='urn:x'", "<xs:element name='a' type='x:foo'/>",
     "a.xsd:2:1: error: namespace 'urn:x' of 'x:foo' is not imported\n"},
    {"no namespace, not imported", "targetNamespace='urn:t'",
     "<xs:element name='b'/>\n"
     "<xs:complexType name='a'><xs:sequence><xs:element ref='b'/></xs:sequence></xs:complexType>",
     "a.xsd:3:39: error: 'b' is in no namespace, which is not imported\n"},
    {"an import that names no file", "xmlns:x='urn:x'",
     "<xs:import namespace='urn:x'/>\n"
     "<xs:element name='a' type='x:foo'/>",
     "a.xsd:3:1: error: type 'x:foo' is not defined\n"},
    {"the XML namespace, not imported", "",
     "<xs:attributeGroup name='g'><xs:attribute ref='xml:lang'/></xs:attributeGroup>",
     "a.xsd:2:29: error: namespace 'http://www.w3.org/XML/1998/namespace' of 'xml:lang' is not "
     "imported\n"},
    {"anySimpleType restricted", "",
     "<xs:simpleType name='a'><xs:restriction base='xs:anySimpleType'/></xs:simpleType>",
     "a.xsd:2:25: error: anySimpleType cannot be restricted\n"},
    {"keys", "",
     "<xs:element name='a'><xs:keyref name='k' refer='l'><xs:selector xpath='b'/><xs:field "
     "xpath='@b'/></xs:keyref></xs:element>",
     "a.xsd:2:22: warning: keyref 'k' is not enforced\n"
     "a.xsd:2:22: error: key 'l' is not defined\n"},
};

TEST(BrokenSchema, References) {
    expectMessages(kReferences);
}

constexpr SchemaCase kDuplicates[] = {
    {"types share their names", "",
     "<xs:simpleType name='a'><xs:restriction base='xs:int'/></xs:simpleType>\n"
     " <xs:complexType name='a'/>",
     "a.xsd:3:2: error: complexType 'a' is defined twice; first at a.xsd:2:1\n"},
    {"elements", "",
     "<xs:element name='a'/>\n"
     "<xs:element name='a'/>\n"
     "<xs:element name='a'/>",
     "a.xsd:3:1: error: element 'a' is defined twice; first at a.xsd:2:1\n"
     "a.xsd:4:1: error: element 'a' is defined twice; first at a.xsd:2:1\n"},
    {"attributes", "",
     "<xs:attribute name='a'/>\n"
     "<xs:attribute name='a'/>",
     "a.xsd:3:1: error: attribute 'a' is defined twice; first at a.xsd:2:1\n"},
    {"groups", "",
     "<xs:group name='a'><xs:sequence/></xs:group>\n"
     "<xs:group name='a'><xs:choice/></xs:group>",
     "a.xsd:3:1: error: group 'a' is defined twice; first at a.xsd:2:1\n"},
    {"attribute groups", "",
     "<xs:attributeGroup name='a'/>\n"
     "<xs:attributeGroup name='a'/>",
     "a.xsd:3:1: error: attributeGroup 'a' is defined twice; first at a.xsd:2:1\n"},
    {"everything else has its own names", "",
     "<xs:complexType name='a'/><xs:element name='a'/><xs:attribute name='a'/><xs:group "
     "name='a'><xs:sequence/></xs:group><xs:attributeGroup name='a'/>",
     ""},
    {"notations", "",
     "<xs:notation name='a' public='b'/>\n"
     "<xs:notation name='a' public='b'/>",
     "a.xsd:2:1: warning: notation 'a' is not enforced\n"
     "a.xsd:3:1: error: notation 'a' is defined twice; first at a.xsd:2:1\n"},
    {"keys", "",
     "<xs:element name='a'><xs:key name='k'><xs:selector xpath='b'/><xs:field "
     "xpath='@b'/></xs:key>\n"
     "<xs:unique name='k'><xs:selector xpath='b'/><xs:field "
     "xpath='@b'/></xs:unique></xs:element>",
     "a.xsd:2:22: warning: key 'k' is not enforced\n"
     "a.xsd:3:1: warning: unique 'k' is not enforced\n"
     "a.xsd:3:1: error: unique 'k' is defined twice; first at a.xsd:2:22\n"},
    {"attributes of a type", "",
     "<xs:complexType name='a'><xs:attribute name='b'/>\n"
     "<xs:attribute name='b'/></xs:complexType>",
     "a.xsd:3:1: error: attribute 'b' is given twice; first at a.xsd:2:26\n"},
    {"attributes of the same name in different namespaces",
     "targetNamespace='urn:t' xmlns='urn:t' xmlns:t='urn:t'",
     "<xs:complexType name='a'><xs:attribute name='b'/><xs:attribute name='b' "
     "form='qualified'/></xs:complexType>",
     ""},
    {"attributes that a group brings", "",
     "<xs:attributeGroup name='g'>\n"
     "<xs:attribute name='b'/></xs:attributeGroup>\n"
     "<xs:complexType name='a'><xs:attribute name='b'/>\n"
     "<xs:attributeGroup ref='g'/></xs:complexType>",
     "a.xsd:4:26: error: attribute 'b' is given twice; first at a.xsd:3:1\n"},
    {"attributes that two groups bring", "",
     "<xs:attributeGroup name='g'><xs:attribute name='b'/></xs:attributeGroup>\n"
     "<xs:attributeGroup name='h'><xs:attribute name='b'/></xs:attributeGroup>\n"
     "<xs:attributeGroup name='i'><xs:attributeGroup ref='g'/><xs:attributeGroup "
     "ref='h'/></xs:attributeGroup>",
     "a.xsd:3:29: error: attribute 'b' is given twice; first at a.xsd:2:29\n"},
    {"the same attribute by two ways", "",
     "<xs:attributeGroup name='g'><xs:attribute name='b'/></xs:attributeGroup>\n"
     "<xs:attributeGroup name='h'><xs:attributeGroup ref='g'/></xs:attributeGroup>\n"
     "<xs:attributeGroup name='i'><xs:attributeGroup ref='g'/><xs:attributeGroup "
     "ref='h'/></xs:attributeGroup>",
     ""},
    {"a declaration and a reference", "",
     "<xs:attribute name='b'/>\n"
     "<xs:complexType name='a'><xs:attribute ref='b'/><xs:attribute name='b'/></xs:complexType>",
     "a.xsd:3:49: error: attribute 'b' is given twice; first at a.xsd:3:26\n"},
    {"what is prohibited is not there", "",
     "<xs:complexType name='a'><xs:attribute name='b' use='prohibited'/><xs:attribute "
     "name='b'/></xs:complexType>",
     ""},
    {"attributes of a base", "",
     "<xs:complexType name='a'><xs:attribute name='b'/></xs:complexType>\n"
     "<xs:complexType name='c'><xs:complexContent><xs:extension "
     "base='a'/></xs:complexContent></xs:complexType>\n"
     "<xs:complexType name='d'><xs:complexContent><xs:extension base='c'>\n"
     "<xs:attribute name='b'/></xs:extension></xs:complexContent></xs:complexType>",
     "a.xsd:5:1: error: attribute 'b' is already one of the base 'a' of complexType 'd'\n"},
    {"attributes that a base leaves out", "",
     "<xs:complexType name='a'><xs:attribute name='b'/></xs:complexType>\n"
     "<xs:complexType name='c'><xs:complexContent><xs:restriction base='a'><xs:attribute "
     "name='b' use='prohibited'/></xs:restriction></xs:complexContent></xs:complexType>\n"
     "<xs:complexType name='d'><xs:complexContent><xs:extension base='c'>\n"
     "<xs:attribute name='b'/></xs:extension></xs:complexContent></xs:complexType>",
     ""},
    {"attributes that a restriction takes over", "",
     "<xs:complexType name='a'><xs:attribute name='b'/></xs:complexType>\n"
     "<xs:complexType name='c'><xs:complexContent><xs:restriction base='a'><xs:attribute "
     "name='b' use='required'/></xs:restriction></xs:complexContent></xs:complexType>",
     ""},
};

TEST(BrokenSchema, Duplicates) {
    expectMessages(kDuplicates);
}

constexpr SchemaCase kCircles[] = {
    {"a restriction of itself", "",
     "<xs:simpleType name='a'><xs:restriction base='a'/></xs:simpleType>",
     "a.xsd:2:1: error: simpleType 'a' is defined by itself\n"},
    {"two types", "",
     "<xs:simpleType name='a'><xs:restriction base='b'/></xs:simpleType>\n"
     "<xs:simpleType name='b'><xs:restriction base='a'/></xs:simpleType>",
     "a.xsd:2:1: error: simpleType 'a' is defined by itself\n"},
    {"a way into a circle", "",
     "<xs:simpleType name='c'><xs:restriction base='a'/></xs:simpleType>\n"
     "<xs:simpleType name='a'><xs:restriction base='b'/></xs:simpleType>\n"
     "<xs:simpleType name='b'><xs:restriction base='a'/></xs:simpleType>",
     "a.xsd:3:1: error: simpleType 'a' is defined by itself\n"},
    {"two circles", "",
     "<xs:simpleType name='a'><xs:restriction base='a'/></xs:simpleType>\n"
     "<xs:simpleType name='b'><xs:restriction base='b'/></xs:simpleType>",
     "a.xsd:2:1: error: simpleType 'a' is defined by itself\n"
     "a.xsd:3:1: error: simpleType 'b' is defined by itself\n"},
    {"a list of itself", "", "<xs:simpleType name='a'><xs:list itemType='a'/></xs:simpleType>",
     "a.xsd:2:1: error: simpleType 'a' is defined by itself\n"},
    {"a union of itself", "",
     "<xs:simpleType name='a'><xs:union memberTypes='xs:int a'/></xs:simpleType>",
     "a.xsd:2:1: error: simpleType 'a' is defined by itself\n"},
    {"a union of a restriction of itself", "",
     "<xs:simpleType name='a'><xs:union><xs:simpleType><xs:restriction "
     "base='a'/></xs:simpleType></xs:union></xs:simpleType>",
     "a.xsd:2:1: error: simpleType 'a' is defined by itself\n"},
    {"complex types", "",
     "<xs:complexType name='a'><xs:complexContent><xs:extension "
     "base='b'></xs:extension></xs:complexContent></xs:complexType>\n"
     "<xs:complexType name='b'><xs:complexContent><xs:extension "
     "base='a'></xs:extension></xs:complexContent></xs:complexType>",
     "a.xsd:2:1: error: complexType 'a' is defined by itself\n"},
    {"complex types with simple content", "",
     "<xs:complexType name='a'><xs:simpleContent><xs:extension "
     "base='b'></xs:extension></xs:simpleContent></xs:complexType>\n"
     "<xs:complexType name='b'><xs:simpleContent><xs:extension "
     "base='a'></xs:extension></xs:simpleContent></xs:complexType>",
     "a.xsd:2:1: error: complexType 'a' is defined by itself\n"},
    {"groups", "",
     "<xs:group name='a'><xs:sequence><xs:group ref='b'/></xs:sequence></xs:group>\n"
     "<xs:group name='b'><xs:choice><xs:sequence><xs:group "
     "ref='a'/></xs:sequence></xs:choice></xs:group>",
     "a.xsd:2:1: error: group 'a' contains itself\n"},
    {"a group that contains an element that contains it", "",
     "<xs:group name='a'><xs:sequence><xs:element name='b' "
     "minOccurs='0'><xs:complexType><xs:group "
     "ref='a'/></xs:complexType></xs:element></xs:sequence></xs:group>",
     ""},
    {"attribute groups", "",
     "<xs:attributeGroup name='a'><xs:attributeGroup ref='b'/></xs:attributeGroup>\n"
     "<xs:attributeGroup name='b'><xs:attributeGroup ref='a'/><xs:attributeGroup "
     "ref='b'/></xs:attributeGroup>",
     "a.xsd:2:1: error: attributeGroup 'a' contains itself\n"
     "a.xsd:3:1: error: attributeGroup 'b' contains itself\n"},
    {"substitution groups", "",
     "<xs:element name='a' substitutionGroup='b'/>\n"
     "<xs:element name='b' substitutionGroup='a'/>",
     "a.xsd:2:1: error: element 'a' is in its own substitution group\n"},
    {"a type that contains elements of itself", "",
     "<xs:complexType name='a'><xs:sequence><xs:element name='b' type='a' "
     "minOccurs='0'/></xs:sequence></xs:complexType>",
     ""},
};

TEST(BrokenSchema, Circles) {
    expectMessages(kCircles);
}

constexpr SchemaCase kDerivations[] = {
    {"simple content of a complex type", "",
     "<xs:complexType name='a'><xs:sequence><xs:element "
     "name='e'/></xs:sequence></xs:complexType>\n"
     "<xs:complexType name='b'><xs:simpleContent><xs:extension "
     "base='a'></xs:extension></xs:simpleContent></xs:complexType>\n"
     "<xs:complexType name='c'><xs:simpleContent><xs:restriction "
     "base='a'></xs:restriction></xs:simpleContent></xs:complexType>",
     "a.xsd:3:1: error: the base of complexType 'b', 'a', does not have simple content\n"
     "a.xsd:4:1: error: the base of complexType 'c', 'a', does not have simple content\n"},
    {"simple content of anyType", "",
     "<xs:complexType name='b'><xs:simpleContent><xs:extension "
     "base='xs:anyType'></xs:extension></xs:simpleContent></xs:complexType>",
     "a.xsd:2:1: error: the base of complexType 'b', 'anyType', does not have simple content\n"},
    {"a simple type restricted by simpleContent", "",
     "<xs:complexType name='b'><xs:simpleContent><xs:restriction "
     "base='xs:int'></xs:restriction></xs:simpleContent></xs:complexType>",
     "a.xsd:2:1: error: the base of complexType 'b', 'int', is a simple type, which "
     "simpleContent cannot restrict\n"},
    {"simple content from mixed content", "",
     "<xs:complexType name='a' mixed='true'><xs:sequence/></xs:complexType>\n"
     "<xs:complexType name='b'><xs:simpleContent><xs:restriction "
     "base='a'><xs:simpleType><xs:restriction "
     "base='xs:int'/></xs:simpleType></xs:restriction></xs:simpleContent></xs:complexType>",
     ""},
    {"simple content from mixed content without a type", "",
     "<xs:complexType name='a' mixed='true'><xs:sequence/></xs:complexType>\n"
     "<xs:complexType name='b'><xs:simpleContent><xs:restriction "
     "base='a'></xs:restriction></xs:simpleContent></xs:complexType>",
     "a.xsd:3:1: error: the base of complexType 'b', 'a', does not have simple content\n"},
    {"complex content of a simple type", "",
     "<xs:complexType name='a'><xs:complexContent><xs:extension "
     "base='xs:int'></xs:extension></xs:complexContent></xs:complexType>",
     "a.xsd:2:1: error: the base of complexType 'a', 'int', is a simple type, which needs "
     "simpleContent\n"},
    {"complex content of simple content", "",
     "<xs:complexType name='a'><xs:simpleContent><xs:extension "
     "base='xs:int'></xs:extension></xs:simpleContent></xs:complexType>\n"
     "<xs:complexType name='b'><xs:complexContent><xs:extension "
     "base='a'></xs:extension></xs:complexContent></xs:complexType>",
     "a.xsd:3:1: error: the base of complexType 'b', 'a', has simple content\n"},
    {"mixed from what is not", "",
     "<xs:complexType name='a'><xs:sequence><xs:element "
     "name='e'/></xs:sequence></xs:complexType>\n"
     "<xs:complexType name='b'><xs:complexContent mixed='true'><xs:extension "
     "base='a'><xs:sequence><xs:element "
     "name='f'/></xs:sequence></xs:extension></xs:complexContent></xs:complexType>\n"
     "<xs:complexType name='c'><xs:complexContent mixed='true'><xs:restriction "
     "base='a'><xs:sequence><xs:element "
     "name='e'/></xs:sequence></xs:restriction></xs:complexContent></xs:complexType>",
     "a.xsd:3:1: error: complexType 'b' is mixed, but its base 'a' is not\n"
     "a.xsd:4:1: error: complexType 'c' is mixed, but its base 'a' is not\n"},
    {"not mixed from mixed", "",
     "<xs:complexType name='a' mixed='true'><xs:sequence><xs:element "
     "name='e'/></xs:sequence></xs:complexType>\n"
     "<xs:complexType name='b'><xs:complexContent><xs:extension "
     "base='a'><xs:sequence><xs:element "
     "name='f'/></xs:sequence></xs:extension></xs:complexContent></xs:complexType>\n"
     "<xs:complexType name='c'><xs:complexContent><xs:restriction "
     "base='a'><xs:sequence><xs:element "
     "name='e'/></xs:sequence></xs:restriction></xs:complexContent></xs:complexType>",
     "a.xsd:3:1: error: complexType 'b' is not mixed, but its base 'a' is\n"},
    {"nothing more from mixed", "",
     "<xs:complexType name='a' mixed='true'><xs:sequence><xs:element "
     "name='e'/></xs:sequence></xs:complexType>\n"
     "<xs:complexType name='b'><xs:complexContent><xs:extension base='a'><xs:attribute "
     "name='c'/></xs:extension></xs:complexContent></xs:complexType>",
     ""},
    {"anyType extended", "",
     "<xs:complexType name='a'><xs:complexContent><xs:extension "
     "base='xs:anyType'><xs:sequence><xs:element "
     "name='e'/></xs:sequence></xs:extension></xs:complexContent></xs:complexType>\n"
     "<xs:complexType name='b'><xs:complexContent mixed='true'><xs:extension "
     "base='xs:anyType'><xs:sequence><xs:element "
     "name='e'/></xs:sequence></xs:extension></xs:complexContent></xs:complexType>",
     "a.xsd:2:1: error: complexType 'a' is not mixed, but its base 'anyType' is\n"},
    {"an extension of all", "",
     "<xs:complexType name='a'><xs:all><xs:element name='e'/></xs:all></xs:complexType>\n"
     "<xs:complexType name='b'><xs:complexContent><xs:extension "
     "base='a'><xs:sequence><xs:element "
     "name='f'/></xs:sequence></xs:extension></xs:complexContent></xs:complexType>\n"
     "<xs:complexType name='c'><xs:complexContent><xs:extension base='a'><xs:attribute "
     "name='g'/></xs:extension></xs:complexContent></xs:complexType>",
     "a.xsd:3:1: error: complexType 'b' extends 'a', the content of which is an 'all'\n"},
    {"an extension by all", "",
     "<xs:complexType name='a'><xs:sequence><xs:element "
     "name='e'/></xs:sequence></xs:complexType>\n"
     "<xs:complexType name='b'><xs:complexContent><xs:extension base='a'><xs:all><xs:element "
     "name='f'/></xs:all></xs:extension></xs:complexContent></xs:complexType>",
     "a.xsd:3:1: error: complexType 'b' extends 'a' by an 'all'\n"},
    {"nothing extended by all", "",
     "<xs:complexType name='a'></xs:complexType>\n"
     "<xs:complexType name='b'><xs:complexContent><xs:extension base='a'><xs:all><xs:element "
     "name='e'/></xs:all></xs:extension></xs:complexContent></xs:complexType>",
     ""},
    {"content where the base has none", "",
     "<xs:complexType name='a'></xs:complexType>\n"
     "<xs:complexType name='b'><xs:complexContent><xs:restriction "
     "base='a'><xs:sequence><xs:element "
     "name='e'/></xs:sequence></xs:restriction></xs:complexContent></xs:complexType>",
     "a.xsd:3:1: error: complexType 'b' has content, but its base 'a' has none\n"},
    {"a list of lists", "",
     "<xs:simpleType name='a'><xs:list itemType='xs:NMTOKENS'/></xs:simpleType>",
     "a.xsd:2:1: error: the items of a list cannot be lists\n"},
    {"a list of a union with a list", "",
     "<xs:simpleType name='l'><xs:list itemType='xs:int'/></xs:simpleType><xs:simpleType "
     "name='m'><xs:restriction base='l'/></xs:simpleType><xs:simpleType name='u'><xs:union "
     "memberTypes='xs:int m'/></xs:simpleType>\n"
     "<xs:simpleType name='a'><xs:list itemType='u'/></xs:simpleType>",
     "a.xsd:3:1: error: the items of a list cannot be lists\n"},
    {"a group of all within a sequence", "",
     "<xs:group name='g'><xs:all><xs:element name='e'/></xs:all></xs:group>\n"
     "<xs:complexType name='a'><xs:sequence><xs:group ref='g'/></xs:sequence></xs:complexType>",
     "a.xsd:3:39: error: group 'g' is an 'all', which is the whole content of a type or nothing "
     "of it, once\n"},
    {"a group of all twice", "",
     "<xs:group name='g'><xs:all><xs:element name='e'/></xs:all></xs:group>\n"
     "<xs:complexType name='a'><xs:group ref='g' maxOccurs='2'/></xs:complexType>",
     "a.xsd:3:26: error: group 'g' is an 'all', which is the whole content of a type or nothing "
     "of it, once\n"},
    {"a group of all as the whole content", "",
     "<xs:group name='g'><xs:all><xs:element name='e'/></xs:all></xs:group>\n"
     "<xs:complexType name='a'><xs:group ref='g' minOccurs='0'/></xs:complexType>",
     ""},
    {"a member of a substitution group with another type", "",
     "<xs:element name='h' type='xs:integer'/>\n"
     "<xs:element name='a' type='xs:int' substitutionGroup='h'/>\n"
     "<xs:element name='b' type='xs:string' substitutionGroup='h'/>",
     "a.xsd:4:1: error: the type of element 'b' is not derived from that of 'h', the head of "
     "its substitution group\n"},
    {"members of substitution groups of all types", "",
     "<xs:element name='h'/>\n"
     "<xs:element name='a' type='xs:int' substitutionGroup='h'/>\n"
     "<xs:element name='b' substitutionGroup='a'/>\n"
     "<xs:element name='c' type='xs:string' substitutionGroup='b'/>",
     "a.xsd:5:1: error: the type of element 'c' is not derived from that of 'b', the head of "
     "its substitution group\n"},
    {"a member of a union", "",
     "<xs:simpleType name='u'><xs:union memberTypes='xs:int xs:date'/></xs:simpleType>\n"
     "<xs:element name='h' type='u'/>\n"
     "<xs:element name='a' type='xs:short' substitutionGroup='h'/>\n"
     "<xs:element name='b' type='xs:long' substitutionGroup='h'/>",
     "a.xsd:5:1: error: the type of element 'b' is not derived from that of 'h', the head of "
     "its substitution group\n"},
    {"xsi and xmlns", "targetNamespace='http://www.w3.org/2001/XMLSchema-instance'",
     "<xs:attribute name='foo'/><xs:attributeGroup name='g'><xs:attribute "
     "name='xmlns'/></xs:attributeGroup>",
     "a.xsd:2:1: error: attributes of the namespace http://www.w3.org/2001/XMLSchema-instance "
     "cannot be declared\n"
     "a.xsd:2:55: error: 'xmlns' is no attribute\n"},
};

TEST(BrokenSchema, Derivations) {
    expectMessages(kDerivations);
}

constexpr SchemaCase kNotEnforced[] = {
    {"identity constraints", "",
     "<xs:element name='a'><xs:unique name='u'><xs:selector xpath='b'/><xs:field "
     "xpath='@b'/></xs:unique>\n"
     "<xs:key name='k'><xs:selector xpath='b'/><xs:field xpath='@b'/></xs:key>\n"
     "<xs:keyref name='r' refer='k'><xs:selector xpath='b'/><xs:field "
     "xpath='@b'/></xs:keyref></xs:element>",
     "a.xsd:2:22: warning: unique 'u' is not enforced\n"
     "a.xsd:3:1: warning: key 'k' is not enforced\n"
     "a.xsd:4:1: warning: keyref 'r' is not enforced\n"},
    {"default values", "",
     "<xs:element name='a' default='1'/>\n"
     "<xs:attribute name='b' default='1'/>\n"
     "<xs:attributeGroup name='g'><xs:attribute ref='b' default='2'/>\n"
     "<xs:attribute name='c' default='2'/></xs:attributeGroup>",
     "a.xsd:2:1: warning: the default value of element 'a' is not enforced\n"
     "a.xsd:3:1: warning: the default value of attribute 'b' is not enforced\n"
     "a.xsd:4:29: warning: the default value of attribute 'b' is not enforced\n"
     "a.xsd:5:1: warning: the default value of attribute 'c' is not enforced\n"},
    {"block and final", "blockDefault='#all' finalDefault='list'",
     "<xs:element name='a' block='#all' final='restriction'/>\n"
     "<xs:complexType name='b' block='extension' final='#all'/>\n"
     "<xs:simpleType name='c' final='union'><xs:restriction base='xs:int'/></xs:simpleType>",
     "a.xsd:1:1: warning: blockDefault is not enforced\n"
     "a.xsd:1:1: warning: finalDefault is not enforced\n"
     "a.xsd:2:1: warning: block of element 'a' is not enforced\n"
     "a.xsd:2:1: warning: final of element 'a' is not enforced\n"
     "a.xsd:3:1: warning: block of complexType 'b' is not enforced\n"
     "a.xsd:3:1: warning: final of complexType 'b' is not enforced\n"
     "a.xsd:4:1: warning: final of simpleType 'c' is not enforced\n"},
    {"empty lists block nothing", "blockDefault='' finalDefault=''",
     "<xs:element name='a' block='' final=''/>\n"
     "<xs:complexType name='b' block='' final=''/>",
     ""},
    {"abstract types", "",
     "<xs:complexType name='a' abstract='1'/>\n"
     "<xs:complexType name='b' abstract='0'/>",
     "a.xsd:2:1: warning: abstract of complexType 'a' is not enforced\n"},
    {"abstract elements are enforced", "", "<xs:element name='a' abstract='true'/>", ""},
    {"nillable and fixed", "",
     "<xs:element name='a' nillable='true' fixed='x'/>\n"
     "<xs:element name='b' nillable='false'/>",
     "a.xsd:2:1: warning: that an empty element 'a' carries xsi:nil is not enforced\n"
     "a.xsd:2:1: warning: that an empty element 'a' takes its fixed value is not enforced\n"},
    {"ID and what refers to it", "",
     "<xs:attribute name='a' type='xs:ID'/>\n"
     "<xs:element name='b' type='xs:IDREF'/>\n"
     "<xs:element name='c' type='xs:IDREFS'/>\n"
     "<xs:simpleType name='d'><xs:restriction base='xs:ENTITY'/></xs:simpleType>\n"
     "<xs:simpleType name='e'><xs:list itemType='xs:ENTITY'/></xs:simpleType>\n"
     "<xs:complexType name='f'><xs:simpleContent><xs:extension "
     "base='xs:ENTITIES'/></xs:simpleContent></xs:complexType>",
     "a.xsd:2:1: warning: the uniqueness of ID in attribute 'a' is not enforced\n"
     "a.xsd:3:1: warning: that there is an ID for IDREF in element 'b' is not enforced\n"
     "a.xsd:4:1: warning: that there is an ID for each of IDREFS in element 'c' is not "
     "enforced\n"
     "a.xsd:5:25: warning: that there is an entity for ENTITY in simpleType 'd' is not "
     "enforced\n"
     "a.xsd:6:25: warning: that there is an entity for ENTITY in simpleType 'e' is not "
     "enforced\n"
     "a.xsd:7:44: warning: that there is an entity for each of ENTITIES in complexType 'f' is "
     "not enforced\n"},
    {"notations", "", "<xs:notation name='n' public='x'/>",
     "a.xsd:2:1: warning: notation 'n' is not enforced\n"},
    {"whiteSpace", "",
     "<xs:simpleType name='a'><xs:restriction base='xs:string'>\n"
     "<xs:whiteSpace value='collapse'/></xs:restriction></xs:simpleType>",
     "a.xsd:3:1: warning: the whiteSpace facet is not enforced\n"},
};

TEST(BrokenSchema, NotEnforced) {
    expectMessages(kNotEnforced);
}

TEST(BrokenSchema, LongValuesAreCut) {
    std::string value, cut;
    for (int i = 0; i < 100; ++i) value += "会";
    for (int i = 0; i < 66; ++i) cut += "会";
    EXPECT_EQ(messagesOf(schemaText("<xs:element name='a' nillable='" + value + "'/>")),
              "a.xsd:2:1: error: attribute 'nillable' is '" + cut + "...', not a boolean\n");
}

TEST(BrokenSchema, WhatIsNotEnforcedCanBeAnError) {
    const SchemaFiles files;
    files.write("a.xsd", schemaText("<xs:element name='a' default='1'/>"));
    xsd2c::Components components;
    xsd2c::Diagnostics diagnostics{true};
    xsd2c::readSchema(files.path("a.xsd"), components, diagnostics);
    EXPECT_TRUE(diagnostics.failed());
    EXPECT_EQ(diagnostics.errors(), 1u);
    EXPECT_EQ(diagnostics.warnings(), 0u);
    EXPECT_EQ(files.shortened(diagnostics.text()),
              "a.xsd:2:1: error: the default value of element 'a' is not enforced\n");
}

TEST(BrokenSchema, MessagesAreCounted) {
    const SchemaFiles files;
    files.write("a.xsd", schemaText("<xs:element name='a' default='1' type='b'/>"));
    xsd2c::Components components;
    xsd2c::Diagnostics diagnostics;
    xsd2c::readSchema(files.path("a.xsd"), components, diagnostics);
    EXPECT_EQ(diagnostics.errors(), 1u);
    EXPECT_EQ(diagnostics.warnings(), 1u);
}

}  // namespace
