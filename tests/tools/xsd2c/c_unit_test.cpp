#include "xsd2c/c/c_unit.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <limits>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "tests/tools/xsd2c/support/built_unit.h"

namespace {

using support::BuiltUnit;
using support::dumpInMemory;
using support::expectSameRecords;
using support::withEachCompiler;
using xsd2c::Records;
using xsd2c::UnitName;
using xsd2c::unitNameOf;
using namespace std::string_literals;

const UnitName kSample = unitNameOf("sample.xsd");

// ---- units ------------------------------------------------------------------------------------

void declare(Records &records, const void *object, std::int32_t kind, const char *name,
             const char *ns = "") {
    records.top.push_back({{object, kind}, name, ns});
}

SchemaSimpleType *addSimpleType(Records &records, const char *name, std::uint32_t code) {
    SchemaSimpleType *type = records.simpleTypes.add();
    type->name = records.textOrNull(name);
    type->builtinCode = code;
    return type;
}

// A restriction with enumerations, one for each text.
SchemaSimpleType *addTexts(Records &records, const char *name,
                           const std::vector<std::string> &texts) {
    SchemaSimpleType *type = addSimpleType(records, name, 0);
    const SchemaSimpleType *base = addSimpleType(records, "string", SCHEMA_TYPE_STRING);
    type->members = records.members.add({base});
    SchemaFacet *facets = records.facets.add(texts.size());
    type->facets = facets;
    type->facetCount = static_cast<std::uint32_t>(texts.size());
    for (const std::string &text : texts) {
        *facets++ = {records.text(text), SCHEMA_FACET_ENUMERATION, SCHEMA_TYPE_STRING};
    }
    declare(records, type, SCHEMA_KIND_SIMPLE_TYPE, name);
    return type;
}

// An element `vlan` of a simple type `vlanId`.
void fillSmall(Records &records) {
    const char *ns = records.text("urn:switch");
    SchemaSimpleType *base = addSimpleType(records, "unsignedShort", SCHEMA_TYPE_UNSIGNED_SHORT);
    SchemaSimpleType *type = addSimpleType(records, "vlanId", 0);
    type->ns = ns;
    type->members = records.members.add({base});
    type->facets = records.facets.add({
        {records.text("1"), SCHEMA_FACET_MIN_INCLUSIVE, SCHEMA_TYPE_UNSIGNED_SHORT},
        {records.text("\\d{1,4}"), SCHEMA_FACET_PATTERN, SCHEMA_TYPE_UNSIGNED_SHORT},
    });
    type->facetCount = 2;
    SchemaElementDecl *element = records.elements.add();
    element->name = records.text("vlan");
    element->targetNamespace = ns;
    element->type = type;
    element->typeKind = SCHEMA_KIND_SIMPLE_TYPE;
    element->minOccurs = element->maxOccurs = 1;
    records.labels[base] = "built-in type unsignedShort";
    records.labels[type] = "simple type vlanId";
    records.labels[element] = "element vlan";
    declare(records, type, SCHEMA_KIND_SIMPLE_TYPE, "vlanId", "urn:switch");
    declare(records, element, SCHEMA_KIND_ELEMENT, "vlan", "urn:switch");
}

// Attributes, their groups and wildcards.
const SchemaAttributeGroup *fillAttributes(Records &records, const SchemaSimpleType *type) {
    SchemaAttributeDecl *global = records.attributes.add();
    *global = {nullptr, type, records.text("id"), records.text("urn:a"), nullptr, 0, 1, 0};
    SchemaAttributeDecl *uses = records.attributes.add(2);
    uses[0].ref = global;
    uses[1] = {nullptr, type, records.text("unit"), nullptr, records.text(""), 2, 2, 1};
    SchemaWildcard *any = records.attributeWildcards.add();
    *any = {records.text("urn:a"), records.text("##other"), 1};
    SchemaAttributeGroup *inner = records.attributeGroups.add();
    inner->attributeWildcard = any;
    SchemaAttributeGroup *reference = records.attributeGroups.add();
    reference->ref = inner;
    SchemaAttributeGroup *outer = records.attributeGroups.add();
    outer->attributeUses = records.attributeUses.add({&uses[0], &uses[1]});
    outer->attributeUseCount = 2;
    outer->attributeGroups = records.attributeGroupRefs.add({reference});
    outer->attributeGroupCount = 1;
    declare(records, global, SCHEMA_KIND_ATTRIBUTE, "id", "urn:a");
    declare(records, outer, SCHEMA_KIND_ATTRIBUTE_GROUP, "common", "urn:a");
    declare(records, inner, SCHEMA_KIND_ATTRIBUTE_GROUP, "inner", "urn:a");
    return outer;
}

SchemaElementDecl *addElement(Records &records, const char *name, const void *type,
                              std::int32_t typeKind) {
    SchemaElementDecl *element = records.elements.add();
    element->name = records.text(name);
    element->targetNamespace = records.text("urn:a");
    element->type = type;
    element->typeKind = typeKind;
    element->minOccurs = element->maxOccurs = 1;
    return element;
}

SchemaModelGroup *addGroup(Records &records, std::int32_t compositor,
                           const std::vector<SchemaTypedRef> &particles) {
    SchemaModelGroup *group = records.modelGroups.add();
    *group = {records.particles.add(particles), 0, 0xFFFFFFFFu,
              static_cast<std::uint32_t>(particles.size()), compositor};
    return group;
}

// A complex type whose elements are of that type, and one derived from it.
void fillComplexTypes(Records &records, const SchemaSimpleType *simple,
                      const SchemaAttributeGroup *attributes) {
    SchemaComplexType *node = records.complexTypes.add();
    SchemaElementDecl *global = addElement(records, "node", node, SCHEMA_KIND_COMPLEX_TYPE);
    SchemaElementDecl *reference = records.elements.add();
    reference->ref = global;
    reference->maxOccurs = 3000000000u;
    SchemaElementDecl *leaf = addElement(records, "leaf", simple, SCHEMA_KIND_SIMPLE_TYPE);
    leaf->substitutionGroupName = records.text("node");
    leaf->substitutionGroupNamespace = records.text("urn:a");
    leaf->fixedValue = records.text("5");
    leaf->hasFixed = 1;
    leaf->abstract = leaf->nillable = 1;
    leaf->form = 2;
    leaf->alternativeNamespace = records.text("urn:old");
    SchemaElementDecl *untyped = addElement(records, "untyped", nullptr, 0);
    SchemaElementWildcard *any = records.elementWildcards.add();
    *any = {records.text("urn:a"), records.text("##any"), 0, 2, 2};
    SchemaModelGroup *inner = addGroup(records, SCHEMA_KIND_CHOICE,
                                       {{leaf, SCHEMA_KIND_ELEMENT},
                                        {any, SCHEMA_KIND_ELEMENT_WILDCARD},
                                        {untyped, SCHEMA_KIND_ELEMENT}});
    SchemaModelGroup *outer =
        addGroup(records, SCHEMA_KIND_SEQUENCE,
                 {{reference, SCHEMA_KIND_ELEMENT}, {inner, SCHEMA_KIND_MODEL_GROUP}});
    node->particle = outer;
    node->name = records.text("node");
    node->targetNamespace = records.text("urn:a");
    node->mixed = 1;

    SchemaDerivation *extension = records.derivations.add();
    extension->particle = addGroup(records, SCHEMA_KIND_ALL, {});
    extension->baseType = node;
    extension->baseTypeKind = SCHEMA_KIND_COMPLEX_TYPE;
    extension->derivationKind = SCHEMA_KIND_COMPLEX_EXTENSION;
    extension->attributeGroups = records.attributeGroupRefs.add({attributes});
    extension->attributeGroupCount = 1;
    SchemaComplexType *derived = records.complexTypes.add();
    derived->content = extension;
    derived->name = records.text("derived");

    SchemaDerivation *restriction = records.derivations.add();
    restriction->baseType = simple;
    restriction->baseTypeKind = SCHEMA_KIND_SIMPLE_TYPE;
    restriction->derivationKind = SCHEMA_KIND_SIMPLE_RESTRICTION;
    restriction->facets =
        records.facets.add({{records.text("9"), SCHEMA_FACET_MAX_LENGTH, 0}, {nullptr, 99, 99}});
    restriction->facetCount = 2;
    SchemaComplexType *withText = records.complexTypes.add();
    withText->content = restriction;
    leaf->type = withText;
    leaf->typeKind = SCHEMA_KIND_COMPLEX_TYPE;

    declare(records, global, SCHEMA_KIND_ELEMENT, "node", "urn:a");
    declare(records, node, SCHEMA_KIND_COMPLEX_TYPE, "node", "urn:a");
    declare(records, derived, SCHEMA_KIND_COMPLEX_TYPE, "derived");
    declare(records, inner, SCHEMA_KIND_MODEL_GROUP, "leaves", "urn:a");
}

// Records of every kind.
void fillAll(Records &records) {
    SchemaSimpleType *number = addSimpleType(records, "int", SCHEMA_TYPE_INT);
    SchemaSimpleType *either = addSimpleType(records, "either", 0);
    SchemaSimpleType *text = addTexts(records, "text", {"a", "b", "\xD6\xD0"});
    either->members = records.members.add({number, text});
    either->memberCount = 2;
    either->flags16 = 7;
    declare(records, either, SCHEMA_KIND_SIMPLE_TYPE, "either");
    fillComplexTypes(records, either, fillAttributes(records, either));
}

// ---- the tests --------------------------------------------------------------------------------

constexpr char kSmallHeader[] = R"(/* Written by xsd2c from switch-1.xsd. Do not edit. */
#ifndef XSD2C_switch_1_H
#define XSD2C_switch_1_H

#include <compactxml.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Names the schema document. */
extern const char *g_szGatherXsd_switch_1;

/* The simple type "vlanId" of "urn:switch". */
const SchemaSimpleType *Schema_SWITCH_1_vlanId(void);

/* The element "vlan" of "urn:switch". */
const SchemaElementDecl *Schema_SWITCH_1_vlan(void);

/* Registers what the schema declares with a root. Returns 0 when all is registered, else the
 * sum of what Schema_RegTopObject returned. */
uint32_t SchemaReg_switch_1(SchemaRoot *root);

/* Removes what the schema declares from a root. Returns 0. */
uint32_t SchemaDereg_switch_1(SchemaRoot *root);

#ifdef __cplusplus
}
#endif

#endif
)";

TEST(CUnit, WritesAHeader) {
    Records records;
    fillSmall(records);
    EXPECT_EQ(headerText(unitNameOf("configs/switch-1.xsd"), records), kSmallHeader);
}

constexpr char kSmallSource[] = R"(/* Written by xsd2c from switch-1.xsd. Do not edit. */
#include "switch_1.h"

#include <stddef.h>

const char *g_szGatherXsd_switch_1 =
    "____xsd2c_xsd_filename____:switch-1.xsd";

/* All in one object, in which records can refer to one another in circles. */
static const struct {
    SchemaFacet facets[2];
    SchemaSimpleType simpleTypes[2];
    const SchemaSimpleType *members[1];
    SchemaElementDecl elements[1];
} records = {
    /* facets: value, kind, baseCode */
    {
        /* 0 */ {"1", SCHEMA_FACET_MIN_INCLUSIVE, SCHEMA_TYPE_UNSIGNED_SHORT},
        /* 1 */ {"\\d{1,4}", SCHEMA_FACET_PATTERN, SCHEMA_TYPE_UNSIGNED_SHORT},
    },
    /* simpleTypes: members, facets, name, ns, builtinCode, facetCount, memberCount, flags16 */
    {
        /* 0: built-in type unsignedShort */ {NULL, NULL, "unsignedShort", NULL,
            SCHEMA_TYPE_UNSIGNED_SHORT, 0, 0, 0},
        /* 1: simple type vlanId */ {&records.members[0], &records.facets[0], "vlanId",
            "urn:switch", 0, 2, 0, 0},
    },
    /* members */
    {
        /* 0 */ &records.simpleTypes[0],
    },
    /* elements: ref, name, targetNamespace, substitutionGroupName, substitutionGroupNamespace,
       type, fixedValue, minOccurs, maxOccurs, typeKind, form, hasFixed, abstract, nillable,
       alternativeNamespace */
    {
        /* 0: element vlan */ {NULL, "vlan", "urn:switch", NULL, NULL, &records.simpleTypes[1],
            NULL, 1, 1, SCHEMA_KIND_SIMPLE_TYPE, 0, 0, 0, 0, NULL},
    },
};

/* Clang takes long over many functions that refer to all records. */
#ifdef __clang__
#define NOT_INLINE __attribute__((noinline))
#else
#define NOT_INLINE
#endif

NOT_INLINE static const SchemaSimpleType *simpleType(size_t number) {
    return &records.simpleTypes[number];
}

NOT_INLINE static const SchemaElementDecl *element(size_t number) {
    return &records.elements[number];
}

/* What is registered, in the order of the schema. */
static const SchemaTopObject topObjects[] = {
    {&records.simpleTypes[1], SCHEMA_KIND_SIMPLE_TYPE},
    {&records.elements[0], SCHEMA_KIND_ELEMENT},
};

const SchemaSimpleType *Schema_SWITCH_1_vlanId(void) {
    return simpleType(1);
}

const SchemaElementDecl *Schema_SWITCH_1_vlan(void) {
    return element(0);
}

uint32_t SchemaReg_switch_1(SchemaRoot *root) {
    uint32_t result = XML_OK;
    size_t i;
    for (i = 0; i < sizeof topObjects / sizeof topObjects[0]; i++) {
        result += Schema_RegTopObject(root, &topObjects[i]);
    }
    return result;
}

uint32_t SchemaDereg_switch_1(SchemaRoot *root) {
    uint32_t result = XML_OK;
    size_t i;
    for (i = 0; i < sizeof topObjects / sizeof topObjects[0]; i++) {
        result += Schema_DeregTopObject(root, &topObjects[i]);
    }
    return result;
}
)";

TEST(CUnit, WritesASource) {
    Records records;
    fillSmall(records);
    EXPECT_EQ(sourceText(unitNameOf("configs/switch-1.xsd"), records), kSmallSource);
}

TEST(CUnit, WritesTheSameAgain) {
    Records first, second;
    fillAll(first);
    fillAll(second);
    EXPECT_EQ(headerText(kSample, first), headerText(kSample, second));
    EXPECT_EQ(sourceText(kSample, first), sourceText(kSample, second));
}

TEST(CUnit, RegistersTheSameRecords) {
    Records records;
    fillAll(records);
    expectSameRecords(kSample, records);
}

// If the dump left out something, the test above would not see whether it is the same.
constexpr char kAllRecords[] = R"(simpleTypes: simpleType1 simpleType2
complexTypes: complexType1 complexType2
elements: element1
attributes: attribute1
attributeGroups: attributeGroup1 attributeGroup2
simpleType1 name="text" ns=null builtinCode=0 flags16=0 memberCount=0 members=[simpleType3]*1 facets=["a" as 15 of 28, "b" as 15 of 28, "\xD6\xD0" as 15 of 28]*3
simpleType2 name="either" ns=null builtinCode=0 flags16=7 memberCount=2 members=[simpleType4, simpleType1]*2 facets=null[]*0
complexType1 name="node" ns="urn:a" mixed=1 content=null particle=group1 uses=null[]*0 groups=null[]*0 wildcard=null
complexType2 name="derived" ns=null mixed=0 content=derivation1 particle=null uses=null[]*0 groups=null[]*0 wildcard=null
element1 ref=null name="node" ns="urn:a" head=null headNs=null typeKind=9 type=complexType1 fixed=null hasFixed=0 min=1 max=1 form=0 abstract=0 nillable=0 alternativeNs=null
attribute1 ref=null name="id" ns="urn:a" type=simpleType2 fixed=null hasFixed=0 use=0 form=1
attributeGroup1 ref=null uses=[attribute2, attribute3]*2 groups=[attributeGroup3]*1 wildcard=null
attributeGroup2 ref=null uses=null[]*0 groups=null[]*0 wildcard=anyAttribute1
simpleType3 name="string" ns=null builtinCode=28 flags16=0 memberCount=0 members=null[]*0 facets=null[]*0
simpleType4 name="int" ns=null builtinCode=7 flags16=0 memberCount=0 members=null[]*0 facets=null[]*0
group1 compositor=13 min=0 max=4294967295 particles=[element2, group2]*2
derivation1 kind=8 baseKind=9 base=complexType1 particle=group3 facets=null[]*0 uses=null[]*0 groups=[attributeGroup1]*1 wildcard=null
attribute2 ref=attribute1 name=null ns=null type=null fixed=null hasFixed=0 use=0 form=0
attribute3 ref=null name="unit" ns=null type=simpleType2 fixed="" hasFixed=1 use=2 form=2
attributeGroup3 ref=attributeGroup2 uses=null[]*0 groups=null[]*0 wildcard=null
anyAttribute1 ns="urn:a" names="##other" process=1
element2 ref=element1 name=null ns=null head=null headNs=null typeKind=0 type=null of kind 0 fixed=null hasFixed=0 min=0 max=3000000000 form=0 abstract=0 nillable=0 alternativeNs=null
group2 compositor=12 min=0 max=4294967295 particles=[element3, anyElement1, element4]*3
group3 compositor=11 min=0 max=4294967295 particles=null[]*0
element3 ref=null name="leaf" ns="urn:a" head="node" headNs="urn:a" typeKind=9 type=complexType3 fixed="5" hasFixed=1 min=1 max=1 form=2 abstract=1 nillable=1 alternativeNs="urn:old"
anyElement1 ns="urn:a" names="##any" process=2 min=0 max=2
element4 ref=null name="untyped" ns="urn:a" head=null headNs=null typeKind=0 type=null of kind 0 fixed=null hasFixed=0 min=1 max=1 form=0 abstract=0 nillable=0 alternativeNs=null
complexType3 name=null ns=null mixed=0 content=derivation2 particle=null uses=null[]*0 groups=null[]*0 wildcard=null
derivation2 kind=26 baseKind=29 base=simpleType2 particle=null facets=["9" as 20 of 0, null as 99 of 99]*2 uses=null[]*0 groups=null[]*0 wildcard=null
)";

TEST(CUnit, DumpsShowEveryRecord) {
    Records records;
    fillAll(records);
    EXPECT_EQ(dumpInMemory(records), kAllRecords);
}

TEST(CUnit, OffersTopObjectsByName) {
    Records records;
    fillAll(records);
    const std::vector<std::string> names = accessorNames(kSample, records);
    withEachCompiler(kSample, records, [&](const BuiltUnit &built) {
        SchemaRoot root{};
        ASSERT_EQ(built.call("SchemaReg_sample", &root), XML_OK);
        EXPECT_EQ(root.simpleTypes.items[1], built.access("Schema_SAMPLE_either"));
        EXPECT_EQ(root.complexTypes.items[0], built.access("Schema_SAMPLE_node"));
        EXPECT_EQ(root.elements.items[0], built.access("Schema_SAMPLE_node_element"));
        EXPECT_EQ(root.attributes.items[0], built.access("Schema_SAMPLE_id"));
        EXPECT_EQ(root.attributeGroups.items[1], built.access("Schema_SAMPLE_inner"));
        const auto *group =
            static_cast<const SchemaModelGroup *>(built.access("Schema_SAMPLE_leaves"));
        EXPECT_EQ(group->compositor, SCHEMA_KIND_CHOICE);
        for (const std::string &name : names) EXPECT_NE(built.access(name), nullptr) << name;
        EXPECT_EQ(built.call("SchemaDereg_sample", &root), XML_OK);
    });
}

TEST(CUnit, AddsUpWhatIsRefused) {
    Records records;
    fillAll(records);
    std::uint32_t sum = 0;
    for (const xsd2c::TopObject &top : records.top) {
        if (top.object.kind != SCHEMA_KIND_MODEL_GROUP) sum += XML_REFUSED;
    }
    withEachCompiler(kSample, records, [&](const BuiltUnit &built) {
        EXPECT_EQ(built.call("SchemaReg_sample", nullptr), sum);
        EXPECT_EQ(built.call("SchemaDereg_sample", nullptr), XML_OK);
    });
}

// "r--p", "rw-p" ...: how the memory at an address is mapped.
std::string protectionOf(const void *address) {
    std::ifstream maps("/proc/self/maps");
    const auto wanted = reinterpret_cast<std::uintptr_t>(address);
    for (std::string line; std::getline(maps, line);) {
        std::uintptr_t first = 0, end = 0;
        char dash = 0;
        std::string protection;
        std::istringstream(line) >> std::hex >> first >> dash >> end >> protection;
        if (first <= wanted && wanted < end) return protection;
    }
    return "";
}

// A structure that were set up at run time would lie in memory that can be written.
TEST(CUnit, HoldsRecordsInConstantMemory) {
    Records records;
    fillAll(records);
    withEachCompiler(kSample, records, [&](const BuiltUnit &built) {
        for (const std::string &name : accessorNames(kSample, records)) {
            EXPECT_EQ(protectionOf(built.access(name)), "r--p") << name;
        }
        const std::string protection = protectionOf(built.address("g_szGatherXsd_sample"));
#ifdef __powerpc__
        // Some linkers for PowerPC let what can be written be run, too.
        if (protection == "rwxp") return;
#endif
        EXPECT_EQ(protection, "rw-p");
    });
}

TEST(CUnit, WritesUnitsWithLittleInThem) {
    Records nothing, noObjects, groupsAlone;
    addSimpleType(noObjects, "unused", SCHEMA_TYPE_INT);
    declare(groupsAlone, addGroup(groupsAlone, SCHEMA_KIND_SEQUENCE, {}), SCHEMA_KIND_MODEL_GROUP,
            "g");
    for (const Records *records : {&nothing, &noObjects, &groupsAlone}) {
        expectSameRecords(kSample, *records);
    }
}

TEST(CUnit, NamesTheDocument) {
    Records records;
    fillSmall(records);
    for (const char *document :
         {"plain.xsd", "端口 \"1\"?\?/*/.xsd", "back\\slash\n.xsd", "\xFF\xFE.xsd"}) {
        UnitName unit = kSample;
        unit.document = document;
        withEachCompiler(unit, records, [&](const BuiltUnit &built) {
            const void *variable = built.address("g_szGatherXsd_sample");
            EXPECT_EQ(*static_cast<const char *const *>(variable),
                      "____xsd2c_xsd_filename____:" + unit.document);
        });
    }
}

std::string allBytes() {
    std::string text;
    for (int byte = 1; byte < 256; ++byte) text += static_cast<char>(byte);
    return text;
}

TEST(CUnit, KeepsEveryByteOfTexts) {
    Records records;
    addTexts(records, "texts",
             {"", "\"quoted\"", "back\\slash\\", "?\?/ ?\?= ?\?\?\?", "%d",
              "\x01"
              "23",
              "\xD6\xD0"
              "7",
              "\n\t\r", "*/ // /*", "'", allBytes(), std::string(400, 'a'), std::string(401, 'b'),
              std::string(4095, '?'), std::string(4096, '?'), std::string(5000, '\xD6'),
              allBytes() + std::string(5000, '\\')});
    expectSameRecords(kSample, records);
}

std::size_t occurrences(const std::string &text, const std::string &part) {
    std::size_t count = 0;
    for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; ++at) ++count;
    return count;
}

TEST(CUnit, DefinesALongTextOnce) {
    Records records;
    const std::string text(5000, 'x');
    addTexts(records, "a", {text, text, text + "y", text});
    const std::string source = sourceText(kSample, records);
    EXPECT_EQ(occurrences(source, "static const char text"), 2u);
    EXPECT_EQ(occurrences(source, "{text1, SCHEMA_FACET_ENUMERATION"), 3u);
    EXPECT_EQ(occurrences(source, "{text2, SCHEMA_FACET_ENUMERATION"), 1u);
}

TEST(CUnit, KeepsExtremeNumbers) {
    Records records;
    SchemaElementDecl *element = addElement(records, "e", nullptr, 0);
    element->minOccurs = 0x7FFFFFFF;
    element->maxOccurs = 0x80000000;
    element->form = std::numeric_limits<std::int32_t>::min();
    element->hasFixed = -1;
    element->abstract = element->nillable = 0xFFFF;
    SchemaSimpleType *type = addTexts(records, "t", {"a"});
    type->builtinCode = 0xFFFFFFFE;
    type->memberCount = 0;
    declare(records, element, SCHEMA_KIND_ELEMENT, "e");
    expectSameRecords(kSample, records);
}

TEST(CUnit, TakesAnyNameAndLabel) {
    Records records;
    for (const char *name : {"端口", "a-b", "a.b", "a_b", "*/", "int"}) {
        SchemaElementDecl *element = addElement(records, "e", nullptr, 0);
        records.labels[element] = "element "s + name + " */ /* ?\?/\n\\";
        declare(records, element, SCHEMA_KIND_ELEMENT, name, "urn:*/端口");
    }
    expectSameRecords(kSample, records);
    const std::string all = headerText(kSample, records) + sourceText(kSample, records);
    EXPECT_TRUE(std::all_of(all.begin(), all.end(),
                            [](char c) { return c == '\n' || (c >= 0x20 && c <= 0x7E); }));
}

TEST(CUnit, RefusesWhatIsNoRecord) {
    Records records;
    SchemaElementDecl *element = addElement(records, "e", records.elements.add(), 99);
    declare(records, element, SCHEMA_KIND_ELEMENT, "e");
    EXPECT_THROW(sourceText(kSample, records), std::logic_error);
}

}  // namespace
