// What becomes of simple types: each row is a type, values that it has and values that it has not.
#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

#include "tests/tools/xsd2c/support/compiled.h"

namespace {

struct TypeCase {
    const char *name;
    const char *type;  // a simpleType's content, or "@name" for a built-in type
    std::vector<const char *> valid;
    std::vector<const char *> invalid;
};

// In what tests print of their parameters.
void PrintTo(const TypeCase &row, std::ostream *stream) {
    *stream << row.name;
}

std::string restriction(const std::string &base, const std::string &facets) {
    return "<xs:restriction base=\"xs:" + base + "\">" + facets + "</xs:restriction>";
}

std::string schemaWith(const std::string &type) {
    if (type.front() == '@') {
        return "<xs:element name=\"e\"><xs:complexType><xs:attribute name=\"v\" type=\"xs:" +
               type.substr(1) + "\"/></xs:complexType></xs:element>";
    }
    return "<xs:element name=\"e\"><xs:complexType><xs:attribute name=\"v\"><xs:simpleType>" +
           type + "</xs:simpleType></xs:attribute></xs:complexType></xs:element>";
}

// The attribute keeps white space at both ends, which the parser takes from text.
std::string documentWith(const std::string &value) {
    return "<e xmlns=\"urn:t\" v=\"" + value + "\"/>";
}

class SimpleTypes : public ::testing::TestWithParam<TypeCase> {};

TEST_P(SimpleTypes, HaveTheirValues) {
    const TypeCase &type = GetParam();
    const CompiledSchema schema{schemaWith(type.type)};
    EXPECT_EQ(schema.messages(), "");
    for (const char *value : type.valid) {
        EXPECT_EQ(schema.verdict(documentWith(value)), "") << type.name << ": '" << value << "'";
    }
    for (const char *value : type.invalid) {
        EXPECT_NE(schema.verdict(documentWith(value)), "") << type.name << ": '" << value << "'";
    }
}

const std::string kFacets[] = {
    restriction("string", "<xs:length value=\"3\"/>"),
    restriction("string", "<xs:minLength value=\"2\"/><xs:maxLength value=\"3\"/>"),
    restriction("string", "<xs:maxLength value=\"0\"/>"),
    restriction("string", "<xs:pattern value=\"[a-z]+\"/><xs:maxLength value=\"3\"/>"),
    restriction("hexBinary", "<xs:length value=\"2\"/>"),
    restriction("base64Binary", "<xs:minLength value=\"2\"/><xs:maxLength value=\"3\"/>"),
    restriction("int", "<xs:totalDigits value=\"3\"/>"),
    restriction("decimal", "<xs:totalDigits value=\"4\"/><xs:fractionDigits value=\"2\"/>"),
    restriction("decimal", "<xs:minInclusive value=\"-1.5\"/><xs:maxExclusive value=\"10\"/>"),
    restriction("unsignedShort", "<xs:minInclusive value=\"1\"/><xs:maxInclusive value=\"4094\"/>"),
    restriction("byte", "<xs:minExclusive value=\"0\"/><xs:maxExclusive value=\"10\"/>"),
    restriction("date", "<xs:minInclusive value=\"2026-01-01\"/>"),
    restriction("string", "<xs:enumeration value=\"up\"/><xs:enumeration value=\"down\"/>"),
    restriction("int", "<xs:enumeration value=\"1\"/><xs:enumeration value=\"2\"/>"),
    restriction("decimal", "<xs:enumeration value=\"1.50\"/><xs:enumeration value=\"-3\"/>"),
    restriction("token", "<xs:enumeration value=\" a  b \"/>"),
    restriction("string", "<xs:pattern value=\"a|b\"/><xs:pattern value=\"\\d{2}\"/>"),
    "<xs:restriction><xs:simpleType>" + restriction("string", "<xs:pattern value=\"a.*\"/>") +
        "</xs:simpleType><xs:pattern value=\".*z\"/></xs:restriction>",
    restriction("string", "<xs:pattern value=\"[一-龥]{2}\"/>"),
    restriction("string", "<xs:pattern value=\"[^a]\"/>"),
    "<xs:list itemType=\"xs:unsignedByte\"/>",
    "<xs:list itemType=\"xs:boolean\"/>",
    "<xs:list itemType=\"xs:NMTOKEN\"/>",
    "<xs:list><xs:simpleType>" +
        restriction("string", "<xs:enumeration value=\"x\"/><xs:enumeration value=\"y\"/>") +
        "</xs:simpleType></xs:list>",
    "<xs:list><xs:simpleType>" +
        restriction("int", "<xs:minInclusive value=\"-5\"/><xs:maxExclusive value=\"12\"/>") +
        "</xs:simpleType></xs:list>",
    "<xs:list><xs:simpleType>" + restriction("string", "<xs:pattern value=\"[a-c ]+\"/>") +
        "</xs:simpleType></xs:list>",
    "<xs:restriction><xs:simpleType><xs:list itemType=\"xs:int\"/></xs:simpleType>"
    "<xs:minLength value=\"1\"/><xs:maxLength value=\"3\"/></xs:restriction>",
    "<xs:restriction><xs:simpleType><xs:list itemType=\"xs:NCName\"/></xs:simpleType>"
    "<xs:enumeration value=\"a b\"/><xs:enumeration value=\"c\"/></xs:restriction>",
    "<xs:union memberTypes=\"xs:byte xs:boolean\"/>",
    "<xs:union memberTypes=\"xs:byte\"><xs:simpleType>" +
        restriction("string", "<xs:enumeration value=\"auto\"/>") + "</xs:simpleType></xs:union>",
    "<xs:union memberTypes=\"xs:int\"/>",
    "<xs:list><xs:simpleType><xs:union memberTypes=\"xs:byte "
    "xs:boolean\"/></xs:simpleType></xs:list>",
    "<xs:restriction><xs:simpleType><xs:union memberTypes=\"xs:int xs:NCName\"/></xs:simpleType>"
    "<xs:pattern value=\".{2}\"/></xs:restriction>",
    restriction("string", "<xs:pattern value=\"[a-z三]+\"/><xs:length value=\"2\"/>"),
};

const char *facet(std::size_t index) {
    return kFacets[index].c_str();
}

const TypeCase kCases[] = {
    {"length", facet(0), {"abc", "三三三", "𠮷𠮷𠮷"}, {"", "ab", "abcd", "三三", "三三三三"}},
    {"least and most length", facet(1), {"ab", "三三三"}, {"a", "三", "abcd", "三三三三"}},
    {"no length", facet(2), {""}, {"a", "三"}},
    {"length of ASCII", facet(3), {"a", "abc"}, {"", "abcd", "ab1", "三"}},
    {"length beside a pattern of more", facet(33), {"ab", "三a", "三三"}, {"a", "三", "abc", "a1"}},
    {"length of hexBinary", facet(4), {"abcd", "0012"}, {"ab", "abcdef", "xyzw"}},
    {"length of base64Binary", facet(5), {"QUI=", "QUJD"}, {"", "QQ==", "QUJDRA=="}},
    {"digits of an integer", facet(6), {"0", "7", "-123", "+0123"}, {"1234", "-1234", "x"}},
    {"digits of a decimal",
     facet(7),
     {"12.34", "0", "1.5", "-0012.3400", "1234", ".12"},
     {"123.45", "1.234", "12345"}},
    {"bounds of a decimal",
     facet(8),
     {"-1.5", "0", "9.999", "-1.500", "+3"},
     {"-1.51", "10", "10.0", "11", "-2"}},
    {"bounds of an integer", facet(9), {"1", "4094", "0007"}, {"0", "4095", "-1", ""}},
    {"excluded bounds", facet(10), {"1", "9"}, {"0", "10", "-1"}},
    {"bound of a date", facet(11), {"2026-01-01", "2030-05-05"}, {"2025-12-31", "2026"}},
    {"enumeration", facet(12), {"up", "down"}, {"", "u", "upp", "UP"}},
    {"enumeration of numbers", facet(13), {"1", "+2", "002"}, {"3", "12"}},
    {"enumeration of decimals", facet(14), {"1.5", "1.50", "+01.500", "-3.0"}, {"1.51", "3", "15"}},
    {"enumeration of tokens", facet(15), {"a b"}, {"a", "a  b", " a b"}},
    {"patterns of a step", facet(16), {"a", "b", "12"}, {"ab", "a1", "123", "aa"}},
    {"patterns of two steps", facet(17), {"az", "a三z"}, {"a", "z", "azb", "bz"}},
    {"pattern of Chinese", facet(18), {"交换"}, {"交", "交换机", "ab"}},
    {"pattern without a letter", facet(19), {"b", "三", "𠮷"}, {"a", "", "bb"}},
    {"list of numbers",
     facet(20),
     {"", "1", "1 255 +0", " 7  8 ", "1&#9;2&#10;3"},
     {"256", "1 -1", "1,2", "a"}},
    {"list of booleans", facet(21), {"true 0 1 false"}, {"true yes"}},
    {"list of names", facet(22), {"a -b :c 9", "交换 机"}, {"a b!"}},
    {"list of words", facet(23), {"x y x", ""}, {"x z", "xy"}},
    {"list of bounded numbers", facet(24), {"-5 0 11", "+3"}, {"-6", "12"}},
    {"list of a pattern with a blank", facet(25), {"ab c", "abc"}, {"abd", "a d"}},
    {"length of a list", facet(26), {"1", "1 2 3", " 4 "}, {"", "1 2 3 4", "1 x"}},
    {"enumeration of lists", facet(27), {"a b", "c", "a  b"}, {"a", "b a", "a b c"}},
    {"union", facet(28), {"true", "-5", "0"}, {"300", "yes", ""}},
    {"union with a word", facet(29), {"auto", "12"}, {"Auto", "128"}},
    {"union of one", facet(30), {"12"}, {"x", ""}},
    {"list of a union", facet(31), {"true 5 false"}, {"true 500"}},
    {"pattern of a union", facet(32), {"12", "ab"}, {"1", "abc", "a b"}},
    {"token", "@token", {"", "a", "a b", "三 三"}, {" a", "a ", "a  b", "a&#9;b"}},
    {"normalizedString", "@normalizedString", {"", " a  b "}, {"a&#9;b", "a&#10;b", "a&#13;"}},
    {"NMTOKEN", "@NMTOKEN", {"a", "-1", "a:b", "交换"}, {"", "a b", "a!"}},
    {"Name", "@Name", {"a", "a:b", "_x", "交"}, {"", "1a", "-a", "a b"}},
    {"NCName", "@NCName", {"a", "_x.1", "交换"}, {"", "a:b", "1"}},
    {"NMTOKENS", "@NMTOKENS", {"a", "a b"}, {"", " ", "a !"}},
    {"decimal", "@decimal", {"0", "-1.5", "+.5", "5.", "00.100"}, {"", ".", "1e3", "1.2.3", "-"}},
    {"float", "@float", {"1e3", "-INF", "INF", "NaN", "1.5E-7", ".5"}, {"", "+INF", "e3", "1e"}},
    {"double", "@double", {"-1.5e+10"}, {"inf", "nan"}},
    {"anySimpleType", "@anySimpleType", {"", "anything at all"}, {}},
};

INSTANTIATE_TEST_SUITE_P(All, SimpleTypes, ::testing::ValuesIn(kCases), [](const auto &test) {
    std::string name = test.param.name;
    for (char &c : name) {
        if (c == ' ') c = '_';
    }
    return name;
});

}  // namespace
