// Documents with one thing of gigabytes in them: told in full, or refused for want of memory.
#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>

#include "compactxml.h"
#include "gtest/gtest.h"
#include "tests/support/big_events.h"
#include "tests/support/faults.h"
#include "tests/support/huge_list.h"
#include "tests/support/owners.h"

namespace {

using support::BigEvents;
using support::FaultyHeap;
using support::HugeList;
using support::HugeString;
using support::NodePtr;

constexpr std::uint64_t k31 = std::uint64_t{1} << 31;
constexpr std::uint64_t k32 = std::uint64_t{1} << 32;
constexpr std::int32_t kNoMemory = 2;

// A document with one long thing, and how long that may be: texts and CDATA sections are told with an
// int, names and what is kept in the input buffer are counted in 32 bits.
struct Thing {
    const char *name;
    std::string_view head, tail;
    std::uint64_t mostInList;    // bytes of it that a list can bring
    std::uint64_t mostInMemory;  // and a buffer
};

constexpr std::uint64_t kAny = UINT64_MAX;
constexpr Thing kThings[] = {
    {"Text", "<a>", "</a>", k31 - 1, k31 - 1},
    {"CData", "<a><![CDATA[", "]]></a>", k31 - 1, k31 - 1},
    {"Value", "<a b=\"", "\"/>", kAny, kAny},
    {"QuotedValue", "<a b='", "'/>", kAny, kAny},
    {"Name", "<", "/>", k32 - 1026, kAny},
    {"AttributeName", "<a ", "=''/>", k32 - 1026, kAny},
    {"Comment", "<!--", "--><a/>", k32 - 1026, kAny},
    {"Instruction", "<?x ", "?><a/>", k32 - 1026, kAny},
};

struct Row {
    Thing thing;
    std::uint64_t length;
};

std::string nameOfRow(const testing::TestParamInfo<Row> &info) {
    return info.param.thing.name + std::string("_") + std::to_string(info.param.length);
}
std::ostream &operator<<(std::ostream &out, const Row &row) {
    return out << row.thing.name << ' ' << row.length;
}

std::vector<Row> rows(std::initializer_list<std::uint64_t> lengths) {
    std::vector<Row> all;
    for (const Thing &thing : kThings) {
        for (const std::uint64_t length : lengths) all.push_back({thing, length});
    }
    return all;
}

void expectTold(const BigEvents &events, std::uint32_t result, const Row &row, std::uint64_t most) {
    EXPECT_TRUE(events.sound);
    if (row.length <= most) {
        EXPECT_EQ(result, XML_OK);
        EXPECT_EQ(events.longest, row.length);
    } else {
        EXPECT_EQ(result, XML_REFUSED);
        EXPECT_EQ(events.code, kNoMemory);
        EXPECT_LT(events.longest, 1000u);
    }
}

class InList : public testing::TestWithParam<Row> {};

TEST_P(InList, IsToldOrRefused) {
    const Row &row = GetParam();
    HugeList document;
    document.add(row.thing.head).repeat(row.length).add(row.thing.tail);
    const FaultyHeap heap(0);
    BigEvents events;
    const std::uint32_t result = XML_Parser_ByMemList(document.list(), events.handler());
    EXPECT_EQ(heap.blocksInUse(), 0u);
    expectTold(events, result, row, row.thing.mostInList);
}

INSTANTIATE_TEST_SUITE_P(Huge, InList, testing::ValuesIn(rows({k31 - 1, k31, k32 - 1, k32 + 1})),
                         nameOfRow);

class InMemory : public testing::TestWithParam<Row> {};

// Here the length is that of the document.
TEST_P(InMemory, IsToldOrRefused) {
    Row row = GetParam();
    const HugeString document(
        {.length = row.length, .head = row.thing.head, .tail = row.thing.tail});
    ASSERT_TRUE(document.text());
    const FaultyHeap heap(0);
    BigEvents events;
    const std::uint32_t result =
        XML_Parser_ByMem(document.text(), static_cast<std::uint32_t>(row.length), events.handler());
    EXPECT_EQ(heap.blocksInUse(), 0u);
    row.length -= row.thing.head.size() + row.thing.tail.size();
    expectTold(events, result, row, row.thing.mostInMemory);
}

INSTANTIATE_TEST_SUITE_P(Huge, InMemory, testing::ValuesIn(rows({k31 - 1, k31 + 100, k32 - 1})),
                         nameOfRow);

// ---- the tree -------------------------------------------------------------------------------------

class InTree : public testing::TestWithParam<Row> {};

const char *longStringOf(const XML_DOM_Node *root, std::string_view thing) {
    if (thing == "Text") return XML_DOM_GetFirstTextChildValue(root);
    if (thing == "CData") return XML_DOM_GetFirstCDataChildValue(root);
    if (thing == "Name") return XML_DOM_GetNodeName(root);
    return XML_DOM_GetNodeAttrValByName(root, "b");
}

TEST_P(InTree, IsBuiltOrRefused) {
    const Row &row = GetParam();
    HugeList document;
    document.add(row.thing.head).repeat(row.length).add(row.thing.tail);
    const FaultyHeap heap(0);
    char error[512] = "";
    NodePtr root(XML_DOM_BuildTreeByMemList(document.list(), sizeof error, error));
    if (row.length <= row.thing.mostInList) {
        ASSERT_TRUE(root) << error;
        EXPECT_EQ(std::strlen(longStringOf(root.get(), row.thing.name)), row.length);
    } else {
        EXPECT_FALSE(root);
        EXPECT_STRNE(error, "");
    }
    root.reset();
    EXPECT_EQ(heap.blocksInUse(), 0u);
}

INSTANTIATE_TEST_SUITE_P(Huge, InTree,
                         testing::Values(Row{kThings[0], k31 - 1}, Row{kThings[0], k31},
                                         Row{kThings[1], k31 - 1},
                                         // The longest value that a tree takes has 2^32 - 2 bytes.
                                         Row{{"Value", "<a b=\"", "\"/>", k32 - 2, 0}, k31},
                                         Row{{"Value", "<a b=\"", "\"/>", k32 - 2, 0}, k32 - 2},
                                         Row{{"Value", "<a b=\"", "\"/>", k32 - 2, 0}, k32 - 1},
                                         Row{{"Value", "<a b=\"", "\"/>", k32 - 2, 0}, k32 + 1},
                                         Row{kThings[4], k31}),
                         nameOfRow);

// ---- names ----------------------------------------------------------------------------------------

class InTwoTags : public testing::TestWithParam<std::uint64_t> {};

TEST_P(InTwoTags, NamesAreCompared) {
    for (const char *rest : {"", "a"}) {
        if (*rest != '\0' && GetParam() != k31) continue;  // once is enough for what takes a minute
        HugeList document;
        document.add("<").repeat(GetParam()).add(">t</").repeat(GetParam()).add(rest).add(">");
        BigEvents events;
        const bool same = *rest == '\0';
        EXPECT_EQ(XML_Parser_ByMemList(document.list(), events.handler()),
                  same ? XML_OK : XML_REFUSED);
        EXPECT_EQ(events.longest, GetParam());
        EXPECT_EQ(events.code, same ? 0 : 77);
    }
}

INSTANTIATE_TEST_SUITE_P(Huge, InTwoTags, testing::Values(k31 - 1, k31));

TEST(HugePrefix, IsLookedForWhole) {
    // Cut to 32 bits, or to 31, the second prefix would be the first one.
    for (const std::uint64_t length : {k31 + 2, k32 - 30}) {
        const HugeString document({.length = length, .head = "<", .tail = ":b xmlns:aa='u'/>"});
        ASSERT_TRUE(document.text());
        BigEvents events;
        EXPECT_EQ(
            XML_Parser_ByMem(document.text(), static_cast<std::uint32_t>(length), events.handler()),
            XML_REFUSED);
        EXPECT_EQ(events.code, 201);
        EXPECT_EQ(events.elements, 0u);
    }
}

}  // namespace
