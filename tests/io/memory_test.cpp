#include "io/memory.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <string>

#include "tests/support/faults.h"

using namespace cxml;

TEST(Memory, CopiesBytesAndClosesThem) {
    char *copy = copyBytes("a\0b!", 3);
    ASSERT_TRUE(copy);
    EXPECT_EQ(std::string(copy, 4), std::string("a\0b\0", 4));
    std::free(copy);
    EXPECT_EQ(copyBytes("", SIZE_MAX), nullptr);
}

TEST(Memory, BoundedCopyNeverPassesItsSize) {
    for (std::size_t size = 0; size <= 6; ++size) {
        std::string room = "######";
        copyBounded(room.data(), size, "abc");
        const std::string expected =
            size == 0 ? ""
                      : std::string("abc").substr(0, std::min<std::size_t>(size - 1, 3)) + '\0';
        EXPECT_EQ(room.substr(0, expected.size()), expected) << size;
        EXPECT_EQ(room.substr(expected.size()), std::string(6 - expected.size(), '#')) << size;
    }
}

TEST(GrowingArray, GrowsByDoublingAndKeepsItsElements) {
    support::FaultyHeap heap(0);
    {
        GrowingArray<std::uint32_t> array;
        for (std::uint32_t i = 0; i < 100000; ++i) ASSERT_TRUE(array.append(i));
        for (std::uint32_t i = 0; i < 100000; ++i) ASSERT_EQ(array[i], i);
    }
    EXPECT_LT(heap.allocations(), 20u);
    EXPECT_EQ(heap.blocksInUse(), 0u);
}

TEST(GrowingArray, RefusesWhatNoMemoryHolds) {
    GrowingArray<std::uint64_t> array;
    ASSERT_TRUE(array.append(7));
    EXPECT_FALSE(array.reserve(SIZE_MAX));
    EXPECT_FALSE(array.reserve(SIZE_MAX / 8));
    EXPECT_EQ(array.size(), 1u);
    EXPECT_EQ(array[0], 7u);
}

TEST(GrowingArray, StaysAsItWasWhenMemoryFails) {
    support::FaultyHeap heap(2);
    GrowingArray<char> array;
    std::size_t kept = 0;
    while (array.append('x')) ++kept;
    EXPECT_TRUE(heap.failed());
    EXPECT_EQ(array.size(), kept);
    EXPECT_TRUE(array.append('y'));
    EXPECT_EQ(array.back(), 'y');
}
