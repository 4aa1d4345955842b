// The registry of top-level objects: growth, holes and release of its lists, refusals, and random
// programs against a model.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <random>
#include <vector>

#include "compactxml.h"
#include "tests/support/faults.h"

namespace {

using support::FaultyHeap;

// Things to register: only their addresses count.
const SchemaElementDecl kObjects[200] = {};

struct Kind {
    const char *name;
    std::int32_t kind;
    SchemaObjectList SchemaRoot::*list;
};
constexpr Kind kKinds[] = {
    {"simple types", SCHEMA_KIND_SIMPLE_TYPE, &SchemaRoot::simpleTypes},
    {"attributes", SCHEMA_KIND_ATTRIBUTE, &SchemaRoot::attributes},
    {"elements", SCHEMA_KIND_ELEMENT, &SchemaRoot::elements},
    {"complex types", SCHEMA_KIND_COMPLEX_TYPE, &SchemaRoot::complexTypes},
    {"attribute groups", SCHEMA_KIND_ATTRIBUTE_GROUP, &SchemaRoot::attributeGroups},
};
constexpr SchemaObjectList SchemaRoot::*kLists[] = {
    &SchemaRoot::simpleTypes,  &SchemaRoot::attributes, &SchemaRoot::elements,
    &SchemaRoot::complexTypes, &SchemaRoot::spare,      &SchemaRoot::attributeGroups,
};

std::uint32_t add(SchemaRoot *root, const void *object, std::int32_t kind) {
    const SchemaTopObject request = {object, kind};
    return Schema_RegTopObject(root, &request);
}

std::uint32_t remove(SchemaRoot *root, const void *object, std::int32_t kind) {
    const SchemaTopObject request = {object, kind};
    return Schema_DeregTopObject(root, &request);
}

std::vector<const void *> contents(const SchemaObjectList &list) {
    return std::vector<const void *>(list.items, list.items + list.count);
}

std::vector<const void *> objects(std::initializer_list<int> numbers) {
    std::vector<const void *> result;
    for (const int number : numbers) result.push_back(&kObjects[number]);
    return result;
}

bool isReleased(const SchemaObjectList &list) {
    return list.items == nullptr && list.capacity == 0 && list.count == 0;
}

// Whether nothing but one list has anything in it.
bool othersReleased(const SchemaRoot &root, SchemaObjectList SchemaRoot::*used) {
    return std::all_of(
        std::begin(kLists), std::end(kLists),
        [&](SchemaObjectList SchemaRoot::*list) { return list == used || isReleased(root.*list); });
}

// ---------------------------------------------------------------- lists

TEST(Registry, GrowsAt33And65) {
    for (const Kind &kind : kKinds) {
        SCOPED_TRACE(kind.name);
        const FaultyHeap heap(0);
        SchemaRoot root{};
        const SchemaObjectList &list = root.*kind.list;
        std::vector<const void *> expected;
        for (int i = 0; i < 130; ++i) {
            EXPECT_EQ(add(&root, &kObjects[i], kind.kind), XML_OK);
            expected.push_back(&kObjects[i]);
            EXPECT_EQ(contents(list), expected);
            EXPECT_EQ(list.capacity, i < 32 ? 32u : i < 64 ? 64u : i < 128 ? 128u : 256u) << i;
        }
        EXPECT_EQ(heap.allocations(), 4u);
        EXPECT_TRUE(othersReleased(root, kind.list));
        for (int i = 129; i >= 0; --i) {
            EXPECT_NE(list.items, nullptr);
            EXPECT_EQ(list.capacity, 256u);  // it does not shrink
            EXPECT_EQ(remove(&root, &kObjects[i], kind.kind), 0u);
        }
        EXPECT_TRUE(isReleased(list));
        EXPECT_EQ(heap.blocksInUse(), 0u);
        // And begins anew.
        EXPECT_EQ(add(&root, &kObjects[7], kind.kind), XML_OK);
        EXPECT_EQ(list.capacity, 32u);
        EXPECT_EQ(contents(list), objects({7}));
        remove(&root, &kObjects[7], kind.kind);
        EXPECT_EQ(heap.blocksInUse(), 0u);
    }
}

// A list cannot have more slots than its numbers count.
TEST(Registry, RefusesToGrowBeyondItsNumbers) {
    for (const Kind &kind : kKinds) {
        SchemaRoot root{};
        SchemaObjectList &list = root.*kind.list;
        for (const std::uint32_t full : {0x80000000u, 0xFFFFFFFFu}) {
            list = {nullptr, full, full};
            const FaultyHeap heap(0);
            EXPECT_EQ(add(&root, &kObjects[0], kind.kind), XML_REFUSED);
            EXPECT_EQ(heap.allocations(), 0u);
            EXPECT_EQ(list.items, nullptr);
            EXPECT_EQ(list.count, full);
            EXPECT_EQ(list.capacity, full);
        }
    }
}

TEST(Registry, AFirstArrayIsCleared) {
    SchemaRoot root{};
    add(&root, &kObjects[0], SCHEMA_KIND_ELEMENT);
    for (int i = 1; i < 32; ++i) EXPECT_EQ(root.elements.items[i], nullptr) << i;
    remove(&root, &kObjects[0], SCHEMA_KIND_ELEMENT);
}

struct RemovalCase {
    const char *name;
    std::vector<int> present, removed, left;
};
const RemovalCase kRemovals[] = {
    {"the only one", {1}, {1}, {}},
    {"the first of two", {1, 2}, {1}, {2}},
    {"the last of two", {1, 2}, {2}, {1}},
    {"the first of three", {1, 2, 3}, {1}, {3, 2}},
    {"the second of three", {1, 2, 3}, {2}, {1, 3}},
    {"the last of three", {1, 2, 3}, {3}, {1, 2}},
    {"two of four", {1, 2, 3, 4}, {1, 2}, {4, 3}},
    {"two of four, the other way round", {1, 2, 3, 4}, {2, 1}, {3, 4}},
    {"one that is not there", {1, 2, 3}, {4}, {1, 2, 3}},
    {"one that is not there any more", {1, 2, 3}, {1, 1}, {3, 2}},
    {"the first of two entries", {1, 2, 1}, {1}, {1, 2}},
    {"both entries", {1, 2, 1}, {1, 1}, {2}},
    {"one entry of an object registered twice", {1, 1}, {1}, {1}},
    {"of an empty list", {}, {1}, {}},
    {"all, from the first", {1, 2, 3}, {1, 2, 3}, {}},
    {"all, from the last", {1, 2, 3}, {3, 2, 1}, {}},
};

TEST(Registry, TheLastObjectFillsTheHole) {
    for (const Kind &kind : kKinds) {
        for (const RemovalCase &row : kRemovals) {
            SCOPED_TRACE(std::string(row.name) + " of the " + kind.name);
            const FaultyHeap heap(0);
            SchemaRoot root{};
            const SchemaObjectList &list = root.*kind.list;
            for (const int number : row.present) add(&root, &kObjects[number], kind.kind);
            for (const int number : row.removed) {
                EXPECT_EQ(remove(&root, &kObjects[number], kind.kind), 0u);
            }
            std::vector<const void *> expected;
            for (const int number : row.left) expected.push_back(&kObjects[number]);
            EXPECT_EQ(contents(list), expected);
            EXPECT_EQ(list.capacity, row.left.empty() ? 0u : 32u);
            EXPECT_EQ(list.items == nullptr, row.left.empty());
            if (!row.left.empty() && row.left.size() < row.present.size()) {
                EXPECT_EQ(list.items[list.count], nullptr);  // the last used slot is cleared
            }
            for (const int number : row.left) remove(&root, &kObjects[number], kind.kind);
            EXPECT_EQ(heap.blocksInUse(), 0u);
        }
    }
}

// Every order in which five objects can go.
TEST(Registry, RemovalInEveryOrder) {
    int order[] = {0, 1, 2, 3, 4};
    do {
        SchemaRoot root{};
        std::vector<const void *> expected;
        for (int i = 0; i < 5; ++i) {
            add(&root, &kObjects[i], SCHEMA_KIND_ELEMENT);
            expected.push_back(&kObjects[i]);
        }
        for (const int number : order) {
            remove(&root, &kObjects[number], SCHEMA_KIND_ELEMENT);
            *std::find(expected.begin(), expected.end(), &kObjects[number]) = expected.back();
            expected.pop_back();
            ASSERT_EQ(contents(root.elements), expected);
        }
        ASSERT_TRUE(isReleased(root.elements));
    } while (std::next_permutation(std::begin(order), std::end(order)));
}

// An object is looked for in the list of its kind alone.
TEST(Registry, KindsAreApart) {
    SchemaRoot root{};
    for (const Kind &kind : kKinds) EXPECT_EQ(add(&root, &kObjects[0], kind.kind), XML_OK);
    for (const Kind &kind : kKinds) {
        remove(&root, &kObjects[0], kind.kind);
        EXPECT_TRUE(isReleased(root.*kind.list)) << kind.name;
        for (const Kind &other : kKinds) {
            if (&other > &kind) {
                EXPECT_EQ((root.*other.list).count, 1u) << other.name;
            }
        }
    }
    EXPECT_TRUE(isReleased(root.spare));
}

// A list that is empty but still has an array gives it up.
TEST(Registry, ReleasesAnEmptyArray) {
    const FaultyHeap heap(0);
    SchemaRoot root{};
    add(&root, &kObjects[0], SCHEMA_KIND_ELEMENT);
    root.elements.count = 0;
    remove(&root, &kObjects[1], SCHEMA_KIND_ELEMENT);
    EXPECT_TRUE(isReleased(root.elements));
    EXPECT_EQ(heap.blocksInUse(), 0u);
}

// ---------------------------------------------------------------- refusals

TEST(Registry, UnknownKinds) {
    std::vector<std::int32_t> kinds = {INT_MIN, INT_MAX, 0x10000 + SCHEMA_KIND_ELEMENT};
    for (std::int32_t kind = -1; kind <= 40; ++kind) {
        const bool known = std::any_of(std::begin(kKinds), std::end(kKinds),
                                       [kind](const Kind &each) { return each.kind == kind; });
        if (!known) kinds.push_back(kind);
    }
    EXPECT_EQ(kinds.size(), 3 + 42u - 5u);
    const FaultyHeap heap(0);
    SchemaRoot root{};
    for (const std::int32_t kind : kinds) {
        EXPECT_EQ(add(&root, &kObjects[0], kind), XML_REFUSED) << kind;
        EXPECT_EQ(remove(&root, &kObjects[0], kind), 0u) << kind;
        EXPECT_TRUE(othersReleased(root, nullptr)) << kind;
    }
    EXPECT_EQ(heap.allocations(), 0u);
}

TEST(Registry, MissingArguments) {
    const FaultyHeap heap(0);
    SchemaRoot root{};
    const SchemaTopObject request = {&kObjects[0], SCHEMA_KIND_ELEMENT};
    EXPECT_EQ(Schema_RegTopObject(nullptr, &request), XML_REFUSED);
    EXPECT_EQ(Schema_RegTopObject(&root, nullptr), XML_REFUSED);
    EXPECT_EQ(Schema_RegTopObject(nullptr, nullptr), XML_REFUSED);
    EXPECT_EQ(Schema_DeregTopObject(nullptr, &request), 0u);
    EXPECT_EQ(Schema_DeregTopObject(&root, nullptr), 0u);
    EXPECT_EQ(Schema_DeregTopObject(nullptr, nullptr), 0u);
    Schema_InitRoot(nullptr);
    Schema_ExitRoot(nullptr);
    EXPECT_TRUE(othersReleased(root, nullptr));
    EXPECT_EQ(heap.allocations(), 0u);
}

// An allocation that fails leaves the list as it is, and the next attempt succeeds.
TEST(Registry, ExhaustedMemory) {
    for (const Kind &kind : kKinds) {
        for (const std::uint32_t present : {0u, 32u, 64u, 128u}) {
            SCOPED_TRACE(std::string(kind.name) + " at " + std::to_string(present));
            SchemaRoot root{};
            SchemaObjectList &list = root.*kind.list;
            for (std::uint32_t i = 0; i < present; ++i) add(&root, &kObjects[i], kind.kind);
            const SchemaObjectList before = list;
            const std::vector<const void *> all = contents(list);
            {
                const FaultyHeap heap(1);
                EXPECT_EQ(add(&root, &kObjects[present], kind.kind), XML_REFUSED);
                EXPECT_TRUE(heap.failed());
                EXPECT_EQ(list.items, before.items);
                EXPECT_EQ(list.capacity, before.capacity);
                EXPECT_EQ(list.count, before.count);
                EXPECT_EQ(contents(list), all);
                EXPECT_TRUE(othersReleased(root, kind.list));
                EXPECT_EQ(add(&root, &kObjects[present], kind.kind), XML_OK);
                EXPECT_EQ(heap.allocations(), 2u);
            }
            EXPECT_EQ(list.count, present + 1);
            EXPECT_EQ(list.capacity, present == 0 ? 32 : 2 * present);
            for (std::uint32_t i = 0; i <= present; ++i) remove(&root, &kObjects[i], kind.kind);
            EXPECT_TRUE(isReleased(list));
        }
    }
}

// ---------------------------------------------------------------- random programs

TEST(Registry, RandomProgramsAsTheModel) {
    for (unsigned seed = 1; seed <= 20; ++seed) {
        SCOPED_TRACE(seed);
        const FaultyHeap heap(0);
        std::mt19937 random(seed);
        SchemaRoot root{};
        std::vector<const void *> model[std::size(kKinds)];
        std::uint32_t capacities[std::size(kKinds)] = {};
        for (int step = 0; step < 3000; ++step) {
            const std::size_t which = random() % std::size(kKinds);
            const Kind &kind = kKinds[which];
            const void *object = &kObjects[random() % (seed % 2 ? 200 : 20)];
            std::vector<const void *> &list = model[which];
            std::uint32_t &capacity = capacities[which];
            // Times of growth and times of decline.
            if (random() % 10 < (step / 500 % 2 ? 3u : 7u)) {
                ASSERT_EQ(add(&root, object, kind.kind), XML_OK);
                if (list.size() == capacity) capacity = capacity == 0 ? 32 : 2 * capacity;
                list.push_back(object);
            } else {
                // Mostly what is there.
                if (!list.empty() && random() % 4) object = list[random() % list.size()];
                ASSERT_EQ(remove(&root, object, kind.kind), 0u);
                const auto found = std::find(list.begin(), list.end(), object);
                if (found != list.end()) {
                    *found = list.back();
                    list.pop_back();
                }
                if (list.empty()) capacity = 0;
            }
            for (std::size_t i = 0; i < std::size(kKinds); ++i) {
                const SchemaObjectList &actual = root.*kKinds[i].list;
                ASSERT_EQ(contents(actual), model[i]) << kKinds[i].name << " after " << step;
                ASSERT_EQ(actual.capacity, capacities[i]) << kKinds[i].name << " after " << step;
                ASSERT_EQ(actual.items == nullptr, capacities[i] == 0);
            }
            ASSERT_TRUE(isReleased(root.spare));
        }
        for (std::size_t i = 0; i < std::size(kKinds); ++i) {
            for (const void *object : model[i]) remove(&root, object, kKinds[i].kind);
        }
        EXPECT_TRUE(othersReleased(root, nullptr));
        EXPECT_EQ(heap.blocksInUse(), 0u);
    }
}

// ---------------------------------------------------------------- roots

TEST(Root, InitSetsEverything) {
    const FaultyHeap heap(0);
    SchemaRoot root;
    std::memset(&root, 0xAB, sizeof root);
    Schema_InitRoot(&root);
    EXPECT_EQ(root.attributeFormDefault, 2u);
    EXPECT_EQ(root.elementFormDefault, 1u);
    EXPECT_EQ(root.simpleTypes.count, 30u);
    EXPECT_EQ(root.complexTypes.count, 1u);
    EXPECT_EQ(root.simpleTypes.items[0], Schema_BLDIN_anySimpleType());
    EXPECT_EQ(root.simpleTypes.items[29], Schema_BLDIN_language());
    EXPECT_EQ(root.complexTypes.items[0], Schema_BLDIN_anyType());
    EXPECT_TRUE(isReleased(root.attributes) && isReleased(root.elements));
    EXPECT_TRUE(isReleased(root.spare) && isReleased(root.attributeGroups));
    EXPECT_EQ(heap.blocksInUse(), 2u);
    Schema_ExitRoot(&root);
    EXPECT_TRUE(othersReleased(root, nullptr));
    EXPECT_EQ(root.attributeFormDefault, 2u);
    EXPECT_EQ(root.elementFormDefault, 1u);
    EXPECT_EQ(heap.blocksInUse(), 0u);
    Schema_ExitRoot(&root);  // nothing is left to do
    EXPECT_TRUE(othersReleased(root, nullptr));
}

// What other schemas have registered stays until they take it back.
TEST(Root, ExitLeavesOtherObjects) {
    const FaultyHeap heap(0);
    SchemaRoot root;
    Schema_InitRoot(&root);
    for (const Kind &kind : kKinds) {
        for (int i = 0; i < 5; ++i) add(&root, &kObjects[i], kind.kind);
    }
    EXPECT_EQ(root.simpleTypes.count, 35u);
    EXPECT_EQ(root.simpleTypes.capacity, 64u);
    Schema_ExitRoot(&root);
    for (const Kind &kind : kKinds) {
        std::vector<const void *> left = contents(root.*kind.list);
        std::sort(left.begin(), left.end());
        EXPECT_EQ(left, objects({0, 1, 2, 3, 4})) << kind.name;
    }
    EXPECT_EQ(root.simpleTypes.capacity, 64u);
    for (const Kind &kind : kKinds) {
        for (int i = 0; i < 5; ++i) remove(&root, &kObjects[i], kind.kind);
    }
    EXPECT_TRUE(othersReleased(root, nullptr));
    EXPECT_EQ(heap.blocksInUse(), 0u);
}

// Objects registered before the built-in types are given up, or after, make no difference.
TEST(Root, DeregistrationInAnyOrder) {
    const FaultyHeap heap(0);
    SchemaRoot root;
    Schema_InitRoot(&root);
    add(&root, &kObjects[0], SCHEMA_KIND_SIMPLE_TYPE);
    remove(&root, Schema_BLDIN_anySimpleType(), SCHEMA_KIND_SIMPLE_TYPE);
    EXPECT_EQ(root.simpleTypes.items[0], &kObjects[0]);  // in its place
    remove(&root, Schema_BLDIN_anyType(), SCHEMA_KIND_COMPLEX_TYPE);
    EXPECT_TRUE(isReleased(root.complexTypes));
    Schema_ExitRoot(&root);
    EXPECT_EQ(contents(root.simpleTypes), objects({0}));
    remove(&root, &kObjects[0], SCHEMA_KIND_SIMPLE_TYPE);
    EXPECT_EQ(heap.blocksInUse(), 0u);
}

// Intended: a root in use is forgotten, not released.
TEST(Root, InitForgetsWhatARootHolds) {
    const FaultyHeap heap(0);
    SchemaRoot root;
    Schema_InitRoot(&root);
    add(&root, &kObjects[0], SCHEMA_KIND_ELEMENT);
    root.elementFormDefault = 2;
    SchemaRoot old = root;
    Schema_InitRoot(&root);
    EXPECT_NE(root.simpleTypes.items, old.simpleTypes.items);
    EXPECT_EQ(root.simpleTypes.count, 30u);
    EXPECT_TRUE(isReleased(root.elements));
    EXPECT_EQ(root.elementFormDefault, 1u);
    EXPECT_EQ(heap.blocksInUse(), 5u);
    Schema_ExitRoot(&root);
    EXPECT_EQ(contents(old.elements), objects({0}));
    Schema_ExitRoot(&old);
    remove(&old, &kObjects[0], SCHEMA_KIND_ELEMENT);
    EXPECT_EQ(heap.blocksInUse(), 0u);
}

TEST(Root, TwoRootsAreApart) {
    SchemaRoot first, second;
    Schema_InitRoot(&first);
    Schema_InitRoot(&second);
    add(&first, &kObjects[0], SCHEMA_KIND_ELEMENT);
    EXPECT_TRUE(isReleased(second.elements));
    Schema_ExitRoot(&first);
    EXPECT_EQ(second.simpleTypes.count, 30u);
    EXPECT_EQ(contents(first.elements), objects({0}));
    remove(&first, &kObjects[0], SCHEMA_KIND_ELEMENT);
    Schema_ExitRoot(&second);
    EXPECT_TRUE(othersReleased(first, nullptr) && othersReleased(second, nullptr));
}

// InitRoot cannot tell that memory is exhausted; the root then lacks what found no room.
TEST(Root, InitWithExhaustedMemory) {
    SchemaRoot root;
    std::memset(&root, 0xAB, sizeof root);
    {
        const FaultyHeap heap(1, true);
        Schema_InitRoot(&root);
        EXPECT_TRUE(othersReleased(root, nullptr));
        EXPECT_EQ(root.attributeFormDefault, 2u);
        EXPECT_EQ(root.elementFormDefault, 1u);
        EXPECT_EQ(heap.blocksInUse(), 0u);
    }
    Schema_ExitRoot(&root);
    EXPECT_TRUE(othersReleased(root, nullptr));
}

}  // namespace
