#include <gtest/gtest.h>

#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "xsd2c/c/c_unit.h"

namespace {

using xsd2c::accessorNames;
using xsd2c::Records;
using xsd2c::UnitName;
using xsd2c::unitNameOf;

// ---- units ------------------------------------------------------------------------------------

struct UnitCase {
    const char *path;
    const char *givenPrefix;
    const char *schema;
    const char *document;
    const char *prefix;
};

constexpr UnitCase kUnits[] = {
    {"configs/switch-1.xsd", "", "switch_1", "switch-1.xsd", "SWITCH_1"},
    {"switch.xsd", "Sw", "switch", "switch.xsd", "Sw"},
    {"/a.b/switch", "", "switch", "switch", "SWITCH"},
    {"switch.v1.xsd", "", "switch_v1", "switch.v1.xsd", "SWITCH_V1"},
    {"1588.xsd", "", "_1588", "1588.xsd", "_1588"},
    {"1588.xsd", "1588", "_1588", "1588.xsd", "1588"},
    {"端口.xsd", "", "u7AEFu53E3", "端口.xsd", "U7AEFU53E3"},
    {"a b$.xsd", "x-y", "a_b_", "a b$.xsd", "x_y"},
    {".xsd", "", "_xsd", ".xsd", "_XSD"},
    {"", "", "_", "", "_"},
    {"bldin.xsd", "", "bldin", "bldin.xsd", "BLDIN_"},
    {"debug.xsd", "Debug", "debug", "debug.xsd", "Debug_"},
};

TEST(CIdentifier, NamesUnits) {
    for (const UnitCase &c : kUnits) {
        const UnitName unit = unitNameOf(c.path, c.givenPrefix);
        EXPECT_EQ(unit.schema, c.schema) << c.path;
        EXPECT_EQ(unit.document, c.document) << c.path;
        EXPECT_EQ(unit.prefix, c.prefix) << c.path;
    }
}

// ---- accessors --------------------------------------------------------------------------------

constexpr std::int32_t kSimpleType = SCHEMA_KIND_SIMPLE_TYPE;
constexpr std::int32_t kComplexType = SCHEMA_KIND_COMPLEX_TYPE;
constexpr std::int32_t kElement = SCHEMA_KIND_ELEMENT;
constexpr std::int32_t kAttribute = SCHEMA_KIND_ATTRIBUTE;
constexpr std::int32_t kAttributeGroup = SCHEMA_KIND_ATTRIBUTE_GROUP;
constexpr std::int32_t kGroup = SCHEMA_KIND_MODEL_GROUP;

struct Object {
    std::int32_t kind;
    const char *name;
    const char *expected;  // behind "Schema_P_"
};

void expectNames(const std::vector<Object> &objects) {
    Records records;
    std::vector<std::string> expected;
    for (const Object &object : objects) {
        records.top.push_back({{nullptr, object.kind}, object.name, ""});
        expected.push_back(std::string("Schema_P_") + object.expected);
    }
    EXPECT_EQ(accessorNames(unitNameOf("p.xsd"), records), expected);
}

TEST(CIdentifier, KeepsNamesAsFarAsPossible) {
    expectNames({{kElement, "vlans", "vlans"},
                 {kSimpleType, "vlan-id.2", "vlan_id_2"},
                 {kComplexType, "_x", "_x"},
                 {kAttribute, "端口", "u7AEFu53E3"},
                 {kAttributeGroup, "int", "int"},
                 {kGroup, "1", "1"}});
}

TEST(CIdentifier, TellsKindsApart) {
    expectNames({{kElement, "a", "a_element"},
                 {kComplexType, "a", "a"},
                 {kAttribute, "a", "a_attribute"},
                 {kAttributeGroup, "a", "a_attributeGroup"},
                 {kGroup, "a", "a_group"},
                 {kElement, "b", "b_element"},
                 {kAttribute, "b", "b_attribute"},
                 {kElement, "c-d", "c_d_element"},
                 {kSimpleType, "c.d", "c_d"},
                 {kElement, "e", "e"}});
}

TEST(CIdentifier, NumbersWhatIsLeft) {
    expectNames({{kElement, "a", "a"},
                 {kElement, "a", "a_2"},
                 {kElement, "a", "a_3"},
                 {kSimpleType, "b-c", "b_c"},
                 {kComplexType, "b.c", "b_c_2"}});
}

TEST(CIdentifier, NumbersAroundNamesThatLookNumbered) {
    expectNames({{kElement, "a", "a"},
                 {kElement, "a", "a_3"},
                 {kElement, "a_2", "a_2"},
                 {kElement, "a_2", "a_2_2"},
                 {kElement, "a", "a_4"}});
}

TEST(CIdentifier, LetsTypesKeepNamesThatLookMade) {
    expectNames({{kElement, "a", "a_element_3"},
                 {kSimpleType, "a", "a"},
                 {kComplexType, "a_element", "a_element"},
                 {kElement, "a_element_2", "a_element_2_element"},
                 {kComplexType, "a_element_2", "a_element_2"}});
}

// Numbers that began anew for each name would take hours.
TEST(CIdentifier, NamesManyObjectsOfOneName) {
    Records records;
    for (int i = 0; i < 200000; ++i) {
        const char *name = i % 3 == 0 ? "a" : i % 3 == 1 ? "a_2" : "a-2";
        records.top.push_back({{nullptr, i % 2 ? kElement : kSimpleType}, name, ""});
    }
    const std::vector<std::string> names = accessorNames(unitNameOf("p.xsd"), records);
    EXPECT_EQ(std::set<std::string>(names.begin(), names.end()).size(), records.top.size());
}

}  // namespace
