// Copying strings block by block, against the plain loop: every length and place in a block, every byte
// at every position, every shortage of room, and the end of a page.
#include "io/text_copy.h"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <cstring>
#include <string>

using namespace cxml;

namespace {

constexpr std::size_t kLongest = 50;  // three blocks and a rest
constexpr std::size_t kOffsets = 16;
constexpr Byte kUntouched = 0xEE;

// A string in the middle of bytes of which each would end a copy, if it were looked at.
struct Source {
    alignas(16) std::array<Byte, kOffsets + kLongest + 32> memory;
    Byte *string;

    Source(std::size_t offset, std::size_t length) {
        memory.fill('<');
        string = memory.data() + offset;
        std::memset(string, 'a', length);
        string[length] = 0;
    }
};

template <class Stop>
void expectSameAsPlain(Stop stop, const Byte *string, std::size_t room) {
    std::array<Byte, kLongest + 64> fast, plain;
    fast.fill(kUntouched);
    plain.fill(kUntouched);
    const Copied expected = copyPlainly(stop, string, plain.data(), plain.data() + room);
    const Copied copied = copyUntil(stop, string, fast.data(), fast.data() + room);
    const std::ptrdiff_t count = copied.to - fast.data();
    const std::ptrdiff_t expectedCount = expected.to - plain.data();
    ASSERT_EQ(copied.from - string, count);
    // With room for a block more the two agree; otherwise the copy may end early, but at no stop.
    if (static_cast<std::ptrdiff_t>(room) - expectedCount >= kCopyRoom) {
        ASSERT_EQ(count, expectedCount);
    } else {
        ASSERT_LE(count, expectedCount);
        ASSERT_GT(count, expectedCount - kCopyRoom);
        if (count != expectedCount) {
            ASSERT_LT(static_cast<std::ptrdiff_t>(room) - count, kCopyRoom);
        }
    }
    const auto size = static_cast<std::size_t>(count);
    ASSERT_EQ(std::memcmp(fast.data(), plain.data(), size), 0);
    for (std::size_t i = room; i < fast.size(); ++i) ASSERT_EQ(fast[i], kUntouched) << i;
}

template <class Stop>
class TextCopy : public testing::Test {};
using Stops = testing::Types<CopyStop<>, CopyStop<'<', '>', '&'>>;
TYPED_TEST_SUITE(TextCopy, Stops);

TYPED_TEST(TextCopy, EveryLengthOffsetAndRoom) {
    for (std::size_t offset = 0; offset < kOffsets; ++offset) {
        for (std::size_t length = 0; length <= kLongest; ++length) {
            const Source source(offset, length);
            for (std::size_t room = 0; room <= length + 34; ++room) {
                SCOPED_TRACE(testing::Message() << offset << ' ' << length << ' ' << room);
                expectSameAsPlain(TypeParam{true}, source.string, room);
                if (this->HasFatalFailure()) return;
            }
        }
    }
}

TYPED_TEST(TextCopy, EveryByteAtEveryPosition) {
    for (const bool atMultibyte : {false, true}) {
        for (const std::size_t offset : {std::size_t{0}, std::size_t{1}, std::size_t{15}}) {
            Source source(offset, kLongest);
            for (std::size_t at = 0; at < kLongest; ++at) {
                for (int value = 0; value < 256; ++value) {
                    source.string[at] = static_cast<Byte>(value);
                    SCOPED_TRACE(testing::Message() << offset << ' ' << at << ' ' << value);
                    expectSameAsPlain(TypeParam{atMultibyte}, source.string, kLongest + 20);
                    if (this->HasFatalFailure()) return;
                }
                source.string[at] = 'a';
            }
        }
    }
}

TEST(CopyShort, TakesAllOrNothing) {
    struct Row {
        const char *string;
        bool atMultibyte, copied;
    };
    constexpr Row kRows[] = {
        {"", true, true},
        {"a", true, true},
        {"interface", true, true},
        {"fifteen-letters", true, true},
        {"sixteen-letters-", true, false},
        {"seventeen-letters", true, false},
        {"\xD6\xD0", true, false},
        {"\xD6\xD0", false, true},
        {"fourteen-chars\xD6", true, false},
        {"fourteen-chars\xD6", false, true},
        {"<&>", true, true},  // no stops among a name's
    };
    for (const Row &row : kRows) {
        SCOPED_TRACE(row.string);
        const std::size_t length = std::strlen(row.string);
        for (std::size_t offset = 0; offset < kOffsets; ++offset) {
            Source source(offset, 0);
            std::memcpy(source.string, row.string, length + 1);
            std::array<Byte, 40> out;
            out.fill(kUntouched);
            const auto *string = reinterpret_cast<const char *>(source.string);
            const Byte *end = copyShort(CopyStop<>{row.atMultibyte}, string, out.data());
            if (offset == 0) {
                EXPECT_EQ(end != nullptr, row.copied);
            }
            if (end) {
                EXPECT_TRUE(row.copied);
                EXPECT_EQ(std::string(out.data(), out.data() + (end - out.data())), row.string);
            }
            for (std::size_t i = kCopyRoom; i < out.size(); ++i) ASSERT_EQ(out[i], kUntouched);
        }
    }
}

// Whatever stands behind the page must not be needed.
TEST(CopyUntil, AStringAtTheEndOfAPage) {
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    void *pages =
        mmap(nullptr, 2 * page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(pages, MAP_FAILED);
    auto *const end = static_cast<Byte *>(pages) + page;
    ASSERT_EQ(mprotect(end, page, PROT_NONE), 0);
    for (std::size_t length = 0; length <= kLongest; ++length) {
        Byte *const string = end - length - 1;
        std::memset(string, 'n', length);
        string[length] = 0;
        expectSameAsPlain(CopyStop<'<', '>', '&'>{true}, string, kLongest + 20);
        std::array<Byte, 16> out;
        copyShort(CopyStop<>{true}, reinterpret_cast<const char *>(string), out.data());
    }
    munmap(pages, 2 * page);
}

#ifdef COMPACTXML_STRING_BLOCKS
TEST(StringBlock, BeginsAsAnother) {
    alignas(16) Byte a[16], b[16];
    for (std::size_t differs = 0; differs <= 16; ++differs) {
        std::memset(a, 'x', sizeof a);
        std::memset(b, 'x', sizeof b);
        if (differs < 16) b[differs] = 'y';
        for (std::size_t count = 0; count <= 20; ++count) {
            EXPECT_EQ(StringBlock::load(a).beginsAs(StringBlock::load(b), count),
                      differs == 16 || count <= differs)
                << differs << ' ' << count;
        }
    }
}
#endif

}  // namespace
