// Every search, over vectors and over words, against the plain loop: each byte value at each place of
// blocks of each length, from each offset to a 16-byte boundary.
#include "io/byte_scan.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <vector>

#include "parser/char_class.h"
#include "tests/support/small_stack.h"

using namespace cxml;

namespace {

constexpr std::size_t kLongest = 50;  // three vectors and a rest
constexpr std::size_t kOffsets = 16;
constexpr int kStep = support::kSanitized ? 7 : 1;  // from one value to the next

// A byte that the search passes over, to fill a block with.
template <class Stop>
Byte passedByte() {
    for (int value = 'a'; value < 0x80; ++value) {
        if (!Stop::inByte(static_cast<Byte>(value))) return static_cast<Byte>(value);
    }
    return ' ';
}

template <class Stop>
void expectSameAsPlain(const char *name) {
    alignas(16) std::array<Byte, kOffsets + kLongest + 16> memory;
    const Byte filler = passedByte<Stop>();
    for (std::size_t offset = 0; offset < kOffsets; ++offset) {
        for (std::size_t length = 0; length <= kLongest; ++length) {
            // What lies behind the end must not be seen.
            memory.fill('<');
            Byte *const begin = memory.data() + offset;
            std::fill(begin, begin + length, filler);
            const Byte *const end = begin + length;
            ASSERT_EQ(scanFor<Stop>(begin, end), end) << name << ' ' << offset << ' ' << length;
            for (std::size_t at = 0; at < length; ++at) {
                for (int value = static_cast<int>(at) % kStep; value < 256; value += kStep) {
                    begin[at] = static_cast<Byte>(value);
                    const Byte *const expected = scanPlainly<Stop>(begin, end);
                    const Byte *const byVector = scanBlocks<Stop, WideBlock>(begin, end);
                    const Byte *const byWord = scanBlocks<Stop, WordBlock>(begin, end);
                    ASSERT_EQ(byVector, expected)
                        << name << " value " << value << " at " << at << " of " << length;
                    ASSERT_EQ(byWord, expected)
                        << name << " value " << value << " at " << at << " of " << length;
                }
                begin[at] = filler;
            }
        }
    }
}

// Two bytes side by side: a borrow in the lower one must not make the upper one match first.
template <class Stop>
void expectSameOnPairs(const char *name) {
    std::array<Byte, 32> memory;
    for (int first = 0; first < 256; ++first) {
        for (int second = 0; second < 256; ++second) {
            memory.fill(passedByte<Stop>());
            memory[5] = static_cast<Byte>(first);
            memory[6] = static_cast<Byte>(second);
            const Byte *const begin = memory.data();
            const Byte *const end = begin + memory.size();
            const Byte *const expected = scanPlainly<Stop>(begin, end);
            ASSERT_EQ((scanBlocks<Stop, WideBlock>(begin, end)), expected)
                << name << ' ' << first << ' ' << second;
            ASSERT_EQ((scanBlocks<Stop, WordBlock>(begin, end)), expected)
                << name << ' ' << first << ' ' << second;
        }
    }
}

template <class Stop>
void check(const char *name) {
    expectSameAsPlain<Stop>(name);
    expectSameOnPairs<Stop>(name);
}

}  // namespace

TEST(ByteScan, TextStopsWhereThePlainLoopDoes) {
    check<NotPlainOr<'<', '&', ']'>>("text");
}
TEST(ByteScan, ValueStopsWhereThePlainLoopDoes) {
    check<NotPlainOr<'"', '<', '&'>>("value");
}
TEST(ByteScan, CommentStopsWhereThePlainLoopDoes) {
    check<NotPlainOr<'-'>>("comment");
}
TEST(ByteScan, SpecialsStopWhereThePlainLoopDoes) {
    check<AnyOf<'<', '>', '&'>>("specials");
}
TEST(ByteScan, BlanksStopWhereThePlainLoopDoes) {
    check<AnythingBut<' '>>("blanks");
}
TEST(ByteScan, AsciiStopsWhereThePlainLoopDoes) {
    check<NotAscii>("ascii");
}
TEST(ByteScan, NamesStopWhereThePlainLoopDoes) {
    check<NotAsciiNameChar>("names");
}

TEST(ByteScan, AsciiOfEveryLength) {
    for (std::size_t length = 0; length < 70; ++length) {
        std::vector<char> bytes(length, 'x');
        EXPECT_TRUE(isAscii(bytes.data(), length)) << length;
        for (std::size_t at = 0; at < length; ++at) {
            bytes[at] = static_cast<char>(0x80);
            EXPECT_FALSE(isAscii(bytes.data(), length)) << length << ' ' << at;
            bytes[at] = 'x';
        }
    }
}
