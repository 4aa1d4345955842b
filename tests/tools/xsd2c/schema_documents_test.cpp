// Schemas of several documents, and documents that are no schemas.
#include <gtest/gtest.h>

#include <span>
#include <string>
#include <utility>
#include <vector>

#include "tests/tools/xsd2c/support/component_text.h"
#include "tests/tools/xsd2c/support/schema_files.h"

namespace {

constexpr const char *kStart = "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema' ";

struct File {
    const char *name;
    const char *attributes;  // of xs:schema; null for a file that is written as it is
    const char *content;
};

struct DocumentsCase {
    const char *name;
    std::vector<File> files;  // the first is read
    const char *messages;
    const char *components;
    const char *read;  // files, each followed by a blank
};

void expectDocuments(std::span<const DocumentsCase> cases) {
    for (const DocumentsCase &one : cases) {
        SCOPED_TRACE(one.name);
        const SchemaFiles files;
        for (const File &file : one.files) {
            files.write(file.name, file.attributes ? kStart + std::string(file.attributes) + ">\n" +
                                                         file.content + "</xs:schema>"
                                                   : file.content);
        }
        xsd2c::Components components;
        xsd2c::Diagnostics diagnostics;
        xsd2c::readSchema(files.path(one.files[0].name), components, diagnostics);
        EXPECT_EQ(files.shortened(diagnostics.text()), one.messages);
        if (one.components) {
            EXPECT_EQ(textOf(components), one.components);
        }
        std::string read;
        for (const std::string &file : components.files) read += files.shortened(file) + " ";
        EXPECT_EQ(read, one.read);
    }
}

const DocumentsCase kIncludes[] = {
    {"top-level components in the order in which they come",
     {{"a.xsd", "", "<xs:include schemaLocation='sub/b.xsd'/><xs:element name='a' type='t'/>"},
      {"sub/b.xsd", "", "<xs:include schemaLocation='c.xsd'/><xs:element name='b' type='t'/>"},
      {"sub/c.xsd", "", "<xs:simpleType name='t'><xs:restriction base='xs:int'/></xs:simpleType>"}},
     "",
     "simpleType t restricts xs:int\nelement b: t\nelement a: t\n",
     "a.xsd sub/b.xsd sub/c.xsd "},
    {"in a circle, and by different names",
     {{"a.xsd", "", "<xs:include schemaLocation='b.xsd'/><xs:element name='a' type='t'/>"},
      {"b.xsd", "",
       "<xs:include schemaLocation='./a.xsd'/><xs:include schemaLocation='b.xsd'/>"
       "<xs:complexType name='t'/>"}},
     "",
     "complexType t \nelement a: t\n",
     "a.xsd b.xsd "},
    {"without a namespace of its own",
     {{"a.xsd", "targetNamespace='urn:a' elementFormDefault='qualified'",
       "<xs:include schemaLocation='b.xsd'/>"},
      {"b.xsd", "",
       "<xs:complexType name='t'><xs:sequence><xs:element name='e' type='u'/>"
       "<xs:any namespace='##targetNamespace ##local'/></xs:sequence>"
       "</xs:complexType><xs:complexType name='u'/>"}},
     "",
     "complexType {urn:a}t sequence(e: {urn:a}u, any of {urn:a} {})\ncomplexType {urn:a}u \n",
     "a.xsd b.xsd "},
    {"without a namespace of its own for two others",
     {{"a.xsd", "targetNamespace='urn:a'",
       "<xs:include schemaLocation='c.xsd'/>"
       "<xs:import namespace='urn:b' schemaLocation='b.xsd'/>"},
      {"b.xsd", "targetNamespace='urn:b'", "<xs:include schemaLocation='c.xsd'/>"},
      {"c.xsd", "", "<xs:element name='e' default='1'/>"}},
     "c.xsd:2:1: warning: the default value of element 'e' is not enforced\n",
     "element {urn:a}e: xs:anyType\nelement {urn:b}e: xs:anyType\n",
     "a.xsd c.xsd b.xsd "},
    {"with another namespace",
     {{"a.xsd", "targetNamespace='urn:a'",
       "<xs:include schemaLocation='b.xsd'/>\n<xs:include schemaLocation='c.xsd'/>"},
      {"b.xsd", "targetNamespace='urn:b'", ""},
      {"c.xsd", "targetNamespace='urn:a'", ""}},
     "a.xsd:2:1: error: 'b.xsd' has the target namespace 'urn:b', not 'urn:a'\n",
     "",
     "a.xsd b.xsd c.xsd "},
    {"with a namespace, where there is none",
     {{"a.xsd", "", "<xs:include schemaLocation='b.xsd'/>"},
      {"b.xsd", "targetNamespace='urn:b'", ""}},
     "a.xsd:2:1: error: 'b.xsd' has the target namespace 'urn:b', not none\n",
     "",
     "a.xsd b.xsd "},
    {"what is not there",
     {{"a.xsd", "",
       "<xs:include schemaLocation='no.xsd'/>\n<xs:include schemaLocation='no.xsd'/>\n"
       "<xs:include/>\n<xs:include schemaLocation='http://example.com/a.xsd'/>\n"
       "<xs:include schemaLocation='.'/>"}},
     "a.xsd:2:1: error: cannot read 'no.xsd': No such file or directory\n"
     "a.xsd:3:1: error: cannot read 'no.xsd': No such file or directory\n"
     "a.xsd:4:1: error: attribute 'schemaLocation' is missing on 'include'\n"
     "a.xsd:5:1: error: schemaLocation 'http://example.com/a.xsd' is not a file\n"
     "a.xsd:6:1: error: cannot read '.': Is a directory\n",
     "",
     "a.xsd "},
    {"what is broken is told once",
     {{"a.xsd", "", "<xs:include schemaLocation='b.xsd'/><xs:include schemaLocation='b.xsd'/>"},
      {"b.xsd", nullptr, "<xs:schema>"}},
     "b.xsd:1:11: error: namespace prefix is not defined\n",
     "",
     "a.xsd b.xsd "},
    {"duplicates in two documents",
     {{"a.xsd", "", "<xs:include schemaLocation='b.xsd'/><xs:element name='e'/>"},
      {"b.xsd", "", "<xs:element name='e'/>"}},
     "a.xsd:2:37: error: element 'e' is defined twice; first at b.xsd:2:1\n",
     nullptr,
     "a.xsd b.xsd "},
};

TEST(SchemaDocuments, Includes) {
    expectDocuments(kIncludes);
}

const DocumentsCase kImports[] = {
    {"another namespace",
     {{"a.xsd", "targetNamespace='urn:a' xmlns:b='urn:b'",
       "<xs:import namespace='urn:b' schemaLocation='b.xsd'/><xs:element name='a' type='b:t'/>"},
      {"b.xsd", "targetNamespace='urn:b' xmlns:a='urn:a'",
       "<xs:import namespace='urn:a' schemaLocation='a.xsd'/><xs:complexType name='t'>"
       "<xs:sequence><xs:element ref='a:a' minOccurs='0'/></xs:sequence></xs:complexType>"}},
     "",
     "complexType {urn:b}t sequence(ref {urn:a}a[0..1])\nelement {urn:a}a: {urn:b}t\n",
     "a.xsd b.xsd "},
    {"no namespace",
     {{"a.xsd", "targetNamespace='urn:a'",
       "<xs:import schemaLocation='b.xsd'/><xs:element name='a' type='t'/>"},
      {"b.xsd", "", "<xs:complexType name='t'/>"}},
     "",
     "complexType t \nelement {urn:a}a: t\n",
     "a.xsd b.xsd "},
    {"what another document imports is not imported here",
     {{"a.xsd", "targetNamespace='urn:a' xmlns:c='urn:c'",
       "<xs:import namespace='urn:b' schemaLocation='b.xsd'/>\n"
       "<xs:element name='a' type='c:t'/>"},
      {"b.xsd", "targetNamespace='urn:b'", "<xs:import namespace='urn:c' schemaLocation='c.xsd'/>"},
      {"c.xsd", "targetNamespace='urn:c'", "<xs:complexType name='t'/>"}},
     "a.xsd:3:1: error: namespace 'urn:c' of 'c:t' is not imported\n",
     nullptr,
     "a.xsd b.xsd c.xsd "},
    {"another namespace than said",
     {{"a.xsd", "targetNamespace='urn:a'",
       "<xs:import namespace='urn:b' schemaLocation='b.xsd'/>\n"
       "<xs:import schemaLocation='b.xsd'/>\n"
       "<xs:import namespace='urn:b' schemaLocation='c.xsd'/>"},
      {"b.xsd", "targetNamespace='urn:c'", ""},
      {"c.xsd", "", ""}},
     "a.xsd:2:1: error: 'b.xsd' has the target namespace 'urn:c', not 'urn:b'\n"
     "a.xsd:3:1: error: 'b.xsd' has the target namespace 'urn:c', not none\n"
     "a.xsd:4:1: error: 'c.xsd' has no target namespace, not 'urn:b'\n",
     "",
     "a.xsd b.xsd c.xsd "},
    {"the own namespace",
     {{"a.xsd", "targetNamespace='urn:a'",
       "<xs:import namespace='urn:a'/>\n<xs:import namespace=''/>"}},
     "a.xsd:2:1: error: namespace 'urn:a' is that of the schema itself\n"
     "a.xsd:3:1: error: attribute 'namespace' is empty\n",
     "",
     "a.xsd "},
    {"no namespace from none",
     {{"a.xsd", "", "<xs:import schemaLocation='b.xsd'/>"}},
     "a.xsd:2:1: error: attribute 'namespace' is missing in a schema without targetNamespace\n",
     "",
     "a.xsd "},
    {"the XML namespace",
     {{"a.xsd", "",
       "<xs:import namespace='http://www.w3.org/XML/1998/namespace'"
       " schemaLocation='http://www.w3.org/2001/xml.xsd'/>"
       "<xs:complexType name='t'><xs:attribute ref='xml:lang' use='required'/>"
       "<xs:attribute ref='xml:space'/></xs:complexType>"
       "<xs:complexType name='u'><xs:attributeGroup ref='xml:specialAttrs'/></xs:complexType>"}},
     "",
     "attribute {http://www.w3.org/XML/1998/namespace}lang: xs:language\n"
     "attribute {http://www.w3.org/XML/1998/namespace}space: (restricts xs:NCName"
     " enumeration='default' enumeration='preserve')\n"
     "attribute {http://www.w3.org/XML/1998/namespace}base: xs:anyURI\n"
     "attribute {http://www.w3.org/XML/1998/namespace}id: xs:ID\n"
     "attributeGroup {http://www.w3.org/XML/1998/namespace}specialAttrs"
     " @{http://www.w3.org/XML/1998/namespace}lang @{http://www.w3.org/XML/1998/namespace}space"
     " @{http://www.w3.org/XML/1998/namespace}base @{http://www.w3.org/XML/1998/namespace}id\n"
     "complexType t  @{http://www.w3.org/XML/1998/namespace}lang!"
     " @{http://www.w3.org/XML/1998/namespace}space\n"
     "complexType u  @group {http://www.w3.org/XML/1998/namespace}specialAttrs\n",
     "a.xsd "},
    {"the XML namespace from a file",
     {{"a.xsd", "",
       "<xs:import namespace='http://www.w3.org/XML/1998/namespace' schemaLocation='xml.xsd'/>"},
      {"xml.xsd", "targetNamespace='http://www.w3.org/XML/1998/namespace'",
       "<xs:attribute name='lang' type='xs:string'/>"}},
     "",
     "attribute {http://www.w3.org/XML/1998/namespace}lang: xs:string\n",
     "a.xsd xml.xsd "},
};

TEST(SchemaDocuments, Imports) {
    expectDocuments(kImports);
}

const DocumentsCase kNoSchemas[] = {
    {"another root",
     {{"a.xsd", nullptr, "<!-- x -->\n<foo/>"}},
     "a.xsd:2:1: error: the root element is 'foo', not 'schema' of "
     "http://www.w3.org/2001/XMLSchema\n",
     "",
     "a.xsd "},
    {"schema of another namespace",
     {{"a.xsd", nullptr, "<x:schema xmlns:x='urn:x'/>"}},
     "a.xsd:1:1: error: the root element is 'x:schema', not 'schema' of "
     "http://www.w3.org/2001/XMLSchema\n",
     "",
     "a.xsd "},
    {"an empty file",
     {{"a.xsd", nullptr, ""}},
     "a.xsd:1:1: error: document is empty\n",
     "",
     "a.xsd "},
    {"no XML",
     {{"a.xsd", nullptr, "element a"}},
     "a.xsd:1:1: error: start tag expected, '<' not found\n",
     "",
     "a.xsd "},
};

TEST(SchemaDocuments, NoSchemas) {
    expectDocuments(kNoSchemas);
}

TEST(SchemaDocuments, NoFile) {
    const SchemaFiles files;
    xsd2c::Components components;
    xsd2c::Diagnostics diagnostics;
    xsd2c::readSchema(files.path("no.xsd"), components, diagnostics);
    EXPECT_EQ(files.shortened(diagnostics.text()), "no.xsd: error: No such file or directory\n");
}

TEST(SchemaDocuments, FileNamesArePrintable) {
    const SchemaFiles files;
    files.write("a\x1B[2J\xFF.xsd", "<a/>");
    xsd2c::Components components;
    xsd2c::Diagnostics diagnostics;
    xsd2c::readSchema(files.path("a\x1B[2J\xFF.xsd"), components, diagnostics);
    EXPECT_EQ(files.shortened(diagnostics.text()),
              "a\\x1B[2J\\xFF.xsd:1:1: error: the root element is 'a', not 'schema' of "
              "http://www.w3.org/2001/XMLSchema\n");
}

// Where the "<" of a tag is, whatever stands around it.
struct PlaceCase {
    const char *name;
    std::string document;
    const char *messages;
};

std::string utf16(std::string_view ascii, bool littleEndian, bool mark) {
    std::string result;
    if (mark) result = littleEndian ? "\xFF\xFE" : "\xFE\xFF";
    for (const char c : ascii) {
        result += littleEndian ? std::string{c, '\0'} : std::string{'\0', c};
    }
    return result;
}

const std::string kUtf16 = "<?xml version='1.0' encoding='UTF-16'?>" + std::string(kStart) +
                           ">\n\n  <xs:foo/></xs:schema>";

const PlaceCase kPlaces[] = {
    {"a tag over several lines",
     kStart +
         std::string(">\n  <xs:foo\n   a='1'\n   b='>'\n  />\n   <xs:bar>\n</xs:bar></xs:schema>"),
     "a.xsd:2:3: error: 'foo' is not allowed here: within 'schema'\n"
     "a.xsd:6:4: error: 'bar' is not allowed here: within 'schema'\n"},
    {"line breaks of all kinds",
     kStart + std::string(">\r\n\r\n<xs:foo/>\r<xs:bar\r\na='1'/>\n\r<xs:baz/></xs:schema>"),
     "a.xsd:3:1: error: 'foo' is not allowed here: within 'schema'\n"
     "a.xsd:4:1: error: 'bar' is not allowed here: within 'schema'\n"
     "a.xsd:7:1: error: 'baz' is not allowed here: within 'schema'\n"},
    {"wide characters before",
     kStart + std::string(">\n<!-- 会议室 <a> --><?x <?><xs:foo a='会'/><xs:bar/></xs:schema>"),
     "a.xsd:2:24: error: 'foo' is not allowed here: within 'schema'\n"
     "a.xsd:2:39: error: 'bar' is not allowed here: within 'schema'\n"},
    {"GB18030",
     "<?xml version='1.0' encoding='GB18030'?>" + std::string(kStart) +
         ">\n<!-- \xBB\xE1\xD2\xE9\x81\x30\x81\x30 --><xs:foo/></xs:schema>",
     "a.xsd:2:13: error: 'foo' is not allowed here: within 'schema'\n"},
    {"UTF-8 with a byte order mark", "\xEF\xBB\xBF" + std::string(kStart) + "/>x",
     "a.xsd:1:58: error: extra content at the end of the document\n"},
    {"UTF-8 with a byte order mark and a mistake in the root",
     "\xEF\xBB\xBF" + std::string(kStart) + " a='1'/>",
     "a.xsd:1:1: error: attribute 'a' is not allowed on 'schema'\n"},
    {"UTF-16, little end first", utf16(kUtf16, true, true),
     "a.xsd:3:3: error: 'foo' is not allowed here: within 'schema'\n"},
    {"UTF-16, big end first", utf16(kUtf16, false, true),
     "a.xsd:3:3: error: 'foo' is not allowed here: within 'schema'\n"},
    {"UTF-16 without a mark", utf16(kUtf16, true, false),
     "a.xsd:3:3: error: 'foo' is not allowed here: within 'schema'\n"},
};

TEST(SchemaDocuments, Places) {
    for (const PlaceCase &one : kPlaces) {
        SCOPED_TRACE(one.name);
        EXPECT_EQ(messagesOf(one.document), one.messages);
    }
}

}  // namespace
