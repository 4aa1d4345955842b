// The built-in schema: its 31 objects, and registering them, also in several threads at once.
#include <gtest/gtest.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "compactxml.h"
#include "tests/support/faults.h"

namespace {

constexpr const char *kNamespace = "http://www.w3.org/2001/XMLSchema";

struct BuiltIn {
    const SchemaSimpleType *(*accessor)();
    const char *name;
    std::uint32_t code;
};

// In the order of storage and registration; anyType follows.
constexpr BuiltIn kBuiltIns[] = {
    {Schema_BLDIN_anySimpleType, "anySimpleType", 1},
    {Schema_BLDIN_byte, "byte", 3},
    {Schema_BLDIN_short, "short", 4},
    {Schema_BLDIN_unsignedByte, "unsignedByte", 5},
    {Schema_BLDIN_unsignedShort, "unsignedShort", 6},
    {Schema_BLDIN_int, "int", 7},
    {Schema_BLDIN_long, "long", 8},
    {Schema_BLDIN_unsignedInt, "unsignedInt", 9},
    {Schema_BLDIN_unsignedLong, "unsignedLong", 10},
    {Schema_BLDIN_integer, "integer", 11},
    {Schema_BLDIN_positiveInteger, "positiveInteger", 12},
    {Schema_BLDIN_nonPositiveInteger, "nonPositiveInteger", 13},
    {Schema_BLDIN_negativeInteger, "negativeInteger", 14},
    {Schema_BLDIN_nonNegativeInteger, "nonNegativeInteger", 15},
    {Schema_BLDIN_duration, "duration", 19},
    {Schema_BLDIN_dateTime, "dateTime", 20},
    {Schema_BLDIN_date, "date", 21},
    {Schema_BLDIN_time, "time", 22},
    {Schema_BLDIN_gYear, "gYear", 23},
    {Schema_BLDIN_gMonth, "gMonth", 24},
    {Schema_BLDIN_gDay, "gDay", 25},
    {Schema_BLDIN_gYearMonth, "gYearMonth", 26},
    {Schema_BLDIN_gMonthDay, "gMonthDay", 27},
    {Schema_BLDIN_string, "string", 28},
    {Schema_BLDIN_boolean, "boolean", 29},
    {Schema_BLDIN_hexBinary, "hexBinary", 30},
    {Schema_BLDIN_base64Binary, "base64Binary", 31},
    {Schema_BLDIN_anyURI, "anyURI", 32},
    {Schema_BLDIN_QName, "QName", 33},
    {Schema_BLDIN_language, "language", 34},
};
constexpr std::uint32_t kSimpleTypes = 30;
static_assert(std::size(kBuiltIns) == kSimpleTypes);

// What each accessor gives while no root has been set up yet.
const std::vector<const void *> kBefore = [] {
    std::vector<const void *> records;
    for (const BuiltIn &each : kBuiltIns) records.push_back(each.accessor());
    records.push_back(Schema_BLDIN_anyType());
    return records;
}();
const bool kNamedBefore = std::strcmp(Schema_BLDIN_language()->name, "language") == 0;

TEST(BuiltInSchema, SimpleTypes) {
    EXPECT_TRUE(kNamedBefore);
    for (const BuiltIn &row : kBuiltIns) {
        SCOPED_TRACE(row.name);
        const SchemaSimpleType *type = row.accessor();
        ASSERT_NE(type, nullptr);
        EXPECT_EQ(type, kBefore[static_cast<std::size_t>(&row - kBuiltIns)]);
        EXPECT_EQ(type->members, nullptr);
        EXPECT_EQ(type->facets, nullptr);
        EXPECT_STREQ(type->name, row.name);
        EXPECT_STREQ(type->ns, kNamespace);
        EXPECT_EQ(type->builtinCode, row.code);
        EXPECT_EQ(type->facetCount, 0u);
        EXPECT_EQ(type->memberCount, 0u);
        EXPECT_EQ(type->flags16, 0u);
    }
}

TEST(BuiltInSchema, AnyType) {
    const SchemaComplexType *type = Schema_BLDIN_anyType();
    ASSERT_NE(type, nullptr);
    EXPECT_EQ(type, kBefore[kSimpleTypes]);
    EXPECT_EQ(type->attributeUses, nullptr);
    EXPECT_EQ(type->attributeGroups, nullptr);
    EXPECT_EQ(type->content, nullptr);
    EXPECT_EQ(type->particle, nullptr);
    EXPECT_EQ(type->unread5, nullptr);
    EXPECT_EQ(type->attributeWildcard, nullptr);
    EXPECT_STREQ(type->name, "anyType");
    EXPECT_STREQ(type->targetNamespace, kNamespace);
    EXPECT_EQ(type->attributeUseCount, 0u);
    EXPECT_EQ(type->attributeGroupCount, 0u);
    EXPECT_EQ(type->mixed, 0u);
}

// One block, the records one behind the other.
TEST(BuiltInSchema, Storage) {
    const auto addressOf = [](const void *record) {
        return reinterpret_cast<std::uintptr_t>(record);
    };
    const std::uintptr_t begin = addressOf(Schema_BLDIN_anySimpleType());
    for (std::size_t i = 0; i < kSimpleTypes; ++i) {
        EXPECT_EQ(addressOf(kBuiltIns[i].accessor()), begin + i * sizeof(SchemaSimpleType))
            << kBuiltIns[i].name;
    }
    EXPECT_EQ(addressOf(Schema_BLDIN_anyType()), begin + kSimpleTypes * sizeof(SchemaSimpleType));
}

// Whether a root holds the built-in types in order, and nothing else.
void expectBuiltIns(const SchemaRoot &root) {
    ASSERT_EQ(root.simpleTypes.count, kSimpleTypes);
    EXPECT_EQ(root.simpleTypes.capacity, 32u);
    for (std::uint32_t i = 0; i < kSimpleTypes; ++i) {
        EXPECT_EQ(root.simpleTypes.items[i], kBuiltIns[i].accessor()) << kBuiltIns[i].name;
    }
    ASSERT_EQ(root.complexTypes.count, 1u);
    EXPECT_EQ(root.complexTypes.capacity, 32u);
    EXPECT_EQ(root.complexTypes.items[0], Schema_BLDIN_anyType());
    for (const SchemaObjectList *list :
         {&root.attributes, &root.elements, &root.spare, &root.attributeGroups}) {
        EXPECT_EQ(list->items, nullptr);
        EXPECT_EQ(list->capacity, 0u);
        EXPECT_EQ(list->count, 0u);
    }
}

void expectEmpty(const SchemaRoot &root) {
    for (const SchemaObjectList *list : {&root.simpleTypes, &root.attributes, &root.elements,
                                         &root.complexTypes, &root.spare, &root.attributeGroups}) {
        EXPECT_EQ(list->items, nullptr);
        EXPECT_EQ(list->capacity, 0u);
        EXPECT_EQ(list->count, 0u);
    }
}

TEST(BuiltInSchema, RegistersIntoSeveralRoots) {
    const support::FaultyHeap heap(0);
    SchemaRoot first{}, second{};
    EXPECT_EQ(SchemaReg_xml_schema_buildin(&first), 0u);
    expectBuiltIns(first);
    EXPECT_EQ(SchemaReg_xml_schema_buildin(&second), 0u);
    expectBuiltIns(second);
    EXPECT_NE(first.simpleTypes.items, second.simpleTypes.items);
    EXPECT_EQ(SchemaDereg_xml_schema_buildin(&first), 0u);
    expectEmpty(first);
    expectBuiltIns(second);
    EXPECT_EQ(SchemaReg_xml_schema_buildin(&first), 0u);  // again
    expectBuiltIns(first);
    EXPECT_EQ(SchemaDereg_xml_schema_buildin(&second), 0u);
    EXPECT_EQ(SchemaDereg_xml_schema_buildin(&first), 0u);
    EXPECT_EQ(SchemaDereg_xml_schema_buildin(&first), 0u);  // of nothing
    expectEmpty(first);
    expectEmpty(second);
    EXPECT_EQ(heap.blocksInUse(), 0u);
}

// The defaults of the root are not its business.
TEST(BuiltInSchema, LeavesTheDefaults) {
    SchemaRoot root{};
    root.attributeFormDefault = 7;
    root.elementFormDefault = 8;
    EXPECT_EQ(SchemaReg_xml_schema_buildin(&root), 0u);
    EXPECT_EQ(SchemaDereg_xml_schema_buildin(&root), 0u);
    EXPECT_EQ(root.attributeFormDefault, 7u);
    EXPECT_EQ(root.elementFormDefault, 8u);
}

TEST(BuiltInSchema, RegistersTwiceIntoOneRoot) {
    const support::FaultyHeap heap(0);
    SchemaRoot root{};
    EXPECT_EQ(SchemaReg_xml_schema_buildin(&root), 0u);
    EXPECT_EQ(SchemaReg_xml_schema_buildin(&root), 0u);
    EXPECT_EQ(root.simpleTypes.count, 2 * kSimpleTypes);
    EXPECT_EQ(root.simpleTypes.capacity, 64u);
    EXPECT_EQ(root.complexTypes.count, 2u);
    for (std::uint32_t i = 0; i < 2 * kSimpleTypes; ++i) {
        EXPECT_EQ(root.simpleTypes.items[i], kBuiltIns[i % kSimpleTypes].accessor());
    }
    EXPECT_EQ(SchemaDereg_xml_schema_buildin(&root), 0u);
    EXPECT_EQ(root.simpleTypes.count, kSimpleTypes);
    EXPECT_EQ(SchemaDereg_xml_schema_buildin(&root), 0u);
    expectEmpty(root);
    EXPECT_EQ(heap.blocksInUse(), 0u);
}

// The results of all registrations are added up, as 32-bit numbers.
TEST(BuiltInSchema, SumsOfRefusals) {
    EXPECT_EQ(SchemaReg_xml_schema_buildin(nullptr), 0xC01F001Fu);
    EXPECT_EQ(SchemaDereg_xml_schema_buildin(nullptr), 0u);
    SchemaRoot root{};
    {
        const support::FaultyHeap heap(1, true);
        EXPECT_EQ(SchemaReg_xml_schema_buildin(&root), 0xC01F001Fu);
        expectEmpty(root);
    }
    {
        const support::FaultyHeap heap(1);  // the first object finds no room
        EXPECT_EQ(SchemaReg_xml_schema_buildin(&root), 0x40010001u);
        EXPECT_EQ(root.simpleTypes.count, kSimpleTypes - 1);
        EXPECT_EQ(root.simpleTypes.items[0], Schema_BLDIN_byte());
        SchemaDereg_xml_schema_buildin(&root);
        EXPECT_EQ(heap.blocksInUse(), 0u);
    }
    {
        const support::FaultyHeap heap(2);  // anyType does not
        EXPECT_EQ(SchemaReg_xml_schema_buildin(&root), 0x40010001u);
        EXPECT_EQ(root.simpleTypes.count, kSimpleTypes);
        EXPECT_EQ(root.complexTypes.count, 0u);
        SchemaDereg_xml_schema_buildin(&root);
        EXPECT_EQ(heap.blocksInUse(), 0u);
    }
    expectEmpty(root);
}

TEST(BuiltInSchema, Marker) {
    EXPECT_STREQ(g_szGatherXsd_xml_schema_buildin,
                 "____xsd2c_xsd_filename____:xml_schema_buildin.xsd");
    const char *const before = g_szGatherXsd_xml_schema_buildin;
    g_szGatherXsd_xml_schema_buildin = "another";
    EXPECT_STREQ(g_szGatherXsd_xml_schema_buildin, "another");
    g_szGatherXsd_xml_schema_buildin = before;
}

// A name of the registered types, as a search would read it.
const SchemaSimpleType *findSimpleType(const SchemaRoot &root, const char *name) {
    for (std::uint32_t i = 0; i < root.simpleTypes.count; ++i) {
        const auto *type = static_cast<const SchemaSimpleType *>(root.simpleTypes.items[i]);
        if (std::strcmp(type->name, name) == 0) return type;
    }
    return nullptr;
}

// Each thread sets up and gives up its own root, and reads the records in between.
TEST(BuiltInSchema, RootsInSeveralThreads) {
    constexpr int kThreads = 4, kRounds = 500;
    std::atomic<int> ready{0};
    int mistakes[kThreads] = {};
    std::vector<std::thread> threads;
    for (int number = 0; number < kThreads; ++number) {
        threads.emplace_back([&ready, &mistakes, number] {
            ++ready;
            while (ready < kThreads) std::this_thread::yield();
            for (int round = 0; round < kRounds; ++round) {
                SchemaRoot root;
                Schema_InitRoot(&root);
                const BuiltIn &row = kBuiltIns[round % static_cast<int>(kSimpleTypes)];
                const SchemaSimpleType *type = findSimpleType(root, row.name);
                mistakes[number] += type != row.accessor() || type->builtinCode != row.code;
                char buffer[64];
                const SchemaTypedRef language = {Schema_BLDIN_language(), SCHEMA_KIND_SIMPLE_TYPE};
                mistakes[number] +=
                    Schema_checkValueOfElement(&language, "en", sizeof buffer, buffer) != XML_OK;
                Schema_ExitRoot(&root);
                mistakes[number] += root.simpleTypes.items != nullptr;
            }
        });
    }
    for (std::thread &thread : threads) thread.join();
    for (const int count : mistakes) EXPECT_EQ(count, 0);
}

}  // namespace
