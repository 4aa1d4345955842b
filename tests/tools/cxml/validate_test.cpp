#include <gtest/gtest.h>

#include "tests/tools/support/run.h"

namespace {

// Writes ports.xsd and some documents in front of a command.
#define SCHEMA                                                                             \
    "cat >ports.xsd <<'END'\n"                                                             \
    "<xs:schema xmlns:xs=\"http://www.w3.org/2001/XMLSchema\" targetNamespace=\"urn:p\"\n" \
    "    elementFormDefault=\"qualified\">\n"                                              \
    "  <xs:element name=\"ports\"><xs:complexType><xs:sequence>\n"                         \
    "    <xs:element name=\"port\" type=\"xs:unsignedByte\" maxOccurs=\"unbounded\"/>\n"   \
    "  </xs:sequence></xs:complexType></xs:element>\n"                                     \
    "</xs:schema>\n"                                                                       \
    "END\n"                                                                                \
    "p() { echo \"<ports xmlns='urn:p'>$2</ports>\" >$1.xml; }\n"                          \
    "p good '<port>1</port>'; p bad '<port>1</port><port>300</port>'; p broken '<port>';"

constexpr CommandCase kCases[] = {
    {"valid", SCHEMA "cxml validate --schema ports.xsd good.xml", "", "", 0},
    {"invalid", SCHEMA "cxml validate --schema ports.xsd bad.xml", "",
     "bad.xml: /ports/port[2]: The value of element '/ports/port[2]' is invalid. 300 is an "
     "invalid "
     "value of unsignedByte type value.\n",
     1},
    {"several", SCHEMA "cxml validate --schema ports.xsd good.xml bad.xml nosuch.xml good.xml",
     "4 files, 2 valid, 1 invalid, 1 not read\n",
     "bad.xml: /ports/port[2]: The value of element '/ports/port[2]' is invalid. 300 is an "
     "invalid "
     "value of unsignedByte type value.\ncxml: nosuch.xml: No such file or directory\n",
     2},
    {"not well-formed", SCHEMA "cxml validate --schema ports.xsd broken.xml", "",
     "broken.xml:1:34: tag not finished.\n", 1},
    {"another root", SCHEMA "cxml validate --schema ports.xsd switch.xml", "",
     "switch.xml: /switch: The root element of XML document is invalid.\n", 1},
    {"standard input", SCHEMA "cxml validate --schema ports.xsd - <bad.xml 2>&1 | cut -c1-31",
     "standard input: /ports/port[2]:\n", "", 0},
    {"a broken schema",
     SCHEMA "sed -i s/xs:unsignedByte/byte/ ports.xsd; "
            "cxml validate --schema ports.xsd good.xml",
     "", "ports.xsd:4:5: error: 'byte' is in no namespace, which is not imported\n", 2},
    {"a missing schema", "cxml validate --schema nosuch.xsd switch.xml", "",
     "nosuch.xsd: error: No such file or directory\n", 2},
    {"no schema", "cxml validate switch.xml", "",
     "cxml: --schema or --plugin is needed\nTry 'cxml validate --help'.\n", 2},
    {"no document", "cxml validate --schema x.xsd", "",
     "cxml: FILE is required\nTry 'cxml validate --help'.\n", 2},
    {"two schemas",
     SCHEMA "sed 's/urn:p/urn:q/; s/unsignedByte/boolean/' ports.xsd >other.xsd; "
            "sed 's/urn:p/urn:q/' good.xml >o.xml; "
            "cxml validate --schema ports.xsd --schema=other.xsd good.xml o.xml",
     "2 files, 2 valid, 0 invalid\n", "", 0},
    {"what is not enforced",
     SCHEMA "sed -i 's/name=.port\"/& default=\"1\"/' ports.xsd; "
            "cxml validate --schema ports.xsd good.xml",
     "", "ports.xsd:4:5: warning: the default value of element 'port' is not enforced\n", 0},
};

TEST(Validate, Schemas) {
    expectCommands(kCases);
}

// A unit that is compiled as its users do.
#define UNIT \
    SCHEMA "xsd2c ports.xsd && cc -shared -fPIC -I'" CXML_INCLUDE "' -o libports.so.1 ports.c && "

constexpr CommandCase kPlugins[] = {
    {"valid", UNIT "cxml validate --plugin libports.so.1 good.xml", "", "", 0},
    {"invalid", UNIT "mv libports.so.1 ports.so; cxml validate --plugin ./ports.so bad.xml", "",
     "bad.xml: /ports/port[2]: The value of element '/ports/port[2]' is invalid. 300 is an "
     "invalid "
     "value of unsignedByte type value.\n",
     1},
    {"another name", UNIT "mv libports.so.1 x.so; cxml validate --plugin x.so good.xml", "",
     "cxml: x.so: there is no function SchemaReg_x\n", 2},
    {"no shared object", "cxml validate --plugin switch.xml switch.xml 2>&1 | cut -c1-18",
     "cxml: ./switch.xml\n", "", 0},
};

TEST(Validate, Plugins) {
    expectCommands(kPlugins);
}

}  // namespace
