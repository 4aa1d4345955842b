// Documents against a schema of constant records in C.
#include "tests/schema/feature_schema.h"

#include <gtest/gtest.h>

#include <string>

#include "compactxml.h"
#include "tests/support/schema_maker.h"

namespace {

struct Case {
    const char *content, *verdict;
};
constexpr Case kCases[] = {
    {"", "valid"},
    {"<base id='1'><name>n</name></base>", "valid"},
    {"<base id='1' f:mark='100' unit='pps' note='x' o:any='y'><name>n</name>"
     "<limit>50</limit><limit>high</limit><range>80,443</range><limit>low</limit></base>",
     "valid"},
    {"<base><name>n</name></base>",
     "2 node=/features/base[1] attr=id: "
     "The element '/features/base[1]' should have an attribute 'id'."},
    {"<base id='1' old=''><name>n</name></base>",
     "7 node=/features/base[1] name=base attr=old: "
     "Unexpected attribute 'old' of element '/features/base[1]'."},
    {"<base id='1' unit='bps'><name>n</name></base>",
     "4 node=/features/base[1] attr=unit text=must equal pps: "
     "The value of attribute 'unit' for element '/features/base[1]' is invalid. must equal pps"},
    {"<base id='1' f:mark='101'><name>n</name></base>",
     "4 node=/features/base[1] attr=mark attrNs=urn:features text=The value must be less than or "
     "equal to 100.: The value of attribute 'urn:features':'mark' for element '/features/base[1]' "
     "is invalid. The value must be less than or equal to 100."},
    {"<base id='1' more=''><name>n</name></base>",
     "7 node=/features/base[1] attr=more: "
     "Unexpected attribute 'more' of element '/features/base[1]'."},
    {"<base id='1'><limit>5</limit></base>",
     "1 node=/features/base[1] name=name ns=urn:features: "
     "Expecting element 'urn:features':'name' under element '/features/base[1]'."},
    {"<base id='1'><name>n</name><limit>101</limit></base>",
     "3 node=/features/base[1]/limit[1] name=limit text=101 does not match any member of union: "
     "The value of element '/features/base[1]/limit[1]' is invalid. "
     "101 does not match any member of union"},
    {"<base id='1'><name>n</name><range>0</range></base>",
     "3 node=/features/base[1]/range[1] name=range text=Invalid PortRange: "
     "The value of element '/features/base[1]/range[1]' is invalid. Invalid PortRange"},
    {"<base id='1'><name>n</name>text</base>",
     "9 node=/features/base[1]: "
     "Element '/features/base[1]' can not have a textual child element."},
    {"<extended id='1'><name>n</name><until>2026-01-02</until><since>2026-01-01</since></extended>",
     "valid"},
    {"<extended id='1'><name>n</name><until>2026-01-02</until></extended>",
     "1 node=/features/extended[1] name=since ns=urn:features: "
     "Expecting element 'urn:features':'since' under element '/features/extended[1]'."},
    {"<restricted id='1'>text<name>n</name></restricted>", "valid"},
    {"<restricted id='1'><name>n</name><limit>5</limit></restricted>",
     "6 node=/features/restricted[1]/limit[1]: Unexpected element 'urn:features':'limit' under "
     "element '/features/restricted[1]"},
    {"<value unit='pps'>-5</value><small>7</small>", "valid"},
    {"<value>x</value>",
     "3 node=/features/value[1] name=value text=x is an invalid value of int type value.: "
     "The value of element '/features/value[1]' is invalid. x is an invalid value of int type "
     "value."},
    {"<small>101</small>",
     "3 node=/features/small[1] name=small text=The value must be less than or equal to 100.: "
     "The value of element '/features/small[1]' is invalid. "
     "The value must be less than or equal to 100."},
    {"<member>true</member>", "valid"},
    {"<member>yes</member>",
     "3 node=/features/member[1] name=member text=yes is an invalid value of boolean type value.: "
     "The value of element '/features/member[1]' is invalid. "
     "yes is an invalid value of boolean type value."},
    // Unknown to its place in the sequence, then to the strict wildcard, which finds the abstract head.
    {"<head/>",
     "6 node=/features/head[1]: Unexpected element 'urn:features':'head' under element '/features"},
    {"<nil/><fixed>v1</fixed><empty/><untyped xmlns=''><any/></untyped>", "valid"},
    {"<nil>x</nil>",
     "3 node=/features/nil[1] name=nil text=x is an invalid value of int type value.: "
     "The value of element '/features/nil[1]' is invalid. x is an invalid value of int type "
     "value."},
    {"<fixed>v2</fixed>",
     "3 node=/features/fixed[1] name=fixed text=must equal v1: "
     "The value of element '/features/fixed[1]' is invalid. must equal v1"},
    {"<empty><x/></empty>",
     "10 node=/features/empty[1]: Element '/features/empty[1]' can not have a child element."},
    {"<member>1</member><member>0</member>", "valid"},  // the second by the strict wildcard
    {"<o:one/><o:two><o:three/></o:two>", "valid"},
    {"<unknown/>",
     "6 node=/features/unknown[1]: "
     "Unexpected element 'urn:features':'unknown' under element '/features"},
};

TEST(FeatureSchema, Documents) {
    SchemaRoot root;
    Schema_InitRoot(&root);
    for (std::uint32_t i = 0; i < featureSchemaCount; ++i) {
        ASSERT_EQ(Schema_RegTopObject(&root, &featureSchema[i]), XML_OK);
    }
    for (const Case &row : kCases) {
        const std::string document =
            "<features xmlns='urn:features' xmlns:f='urn:features' xmlns:o='urn:other'>" +
            std::string(row.content) + "</features>";
        for (const std::uint32_t mode : {0u, 1u}) {
            EXPECT_EQ(support::verdict(document, root, mode), row.verdict) << document;
        }
    }
    for (std::uint32_t i = featureSchemaCount; i-- > 0;) {
        EXPECT_EQ(Schema_DeregTopObject(&root, &featureSchema[i]), XML_OK);
    }
    Schema_ExitRoot(&root);
    EXPECT_EQ(root.elements.items, nullptr);
    EXPECT_EQ(root.simpleTypes.items, nullptr);
}

}  // namespace
