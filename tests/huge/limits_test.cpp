// Lengths that 31 and 32 bits cannot count, where looking at them is cheap; scripts/test --huge runs the
// rest.
#include <cstdint>
#include <string>

#include "compactxml.h"
#include "gtest/gtest.h"
#include "parser/position.h"
#include "tests/support/huge_string.h"
#include "tests/support/owners.h"

namespace {

using support::HugeString;
using support::StreamPtr;

constexpr std::uint64_t k31 = std::uint64_t{1} << 31;
constexpr std::uint64_t k32 = std::uint64_t{1} << 32;

TEST(Limits, PositionsStopAtTheGreatestNumber) {
    constexpr std::int64_t kMost = INT32_MAX;
    EXPECT_EQ(cxml::shownNumber(1), 1);
    EXPECT_EQ(cxml::shownNumber(kMost - 1), INT32_MAX - 1);
    for (const std::int64_t more : {std::int64_t{0}, std::int64_t{1}, std::int64_t{1} << 31,
                                    (std::int64_t{1} << 32) + 5, std::int64_t{1} << 40}) {
        EXPECT_EQ(cxml::shownNumber(kMost + more), INT32_MAX) << more;
    }
    // Told of three bytes that are one character before they are counted.
    const unsigned char bytes[3] = {};
    cxml::Position position = {1, 1, bytes};
    position.discount(3, 1);
    position.settle(bytes + 3);
    EXPECT_EQ(position.column, 2);
}

TEST(Limits, LongestBufferIsAvailableWhole) {
    const HugeString text({.length = k32 - 1});
    if (!text.text()) return;  // no room for such a buffer, so none can be handed in
    XML_IO_InStream *stream = XML_IO_ByMem(text.text(), UINT32_MAX);
    ASSERT_TRUE(stream);
    EXPECT_EQ(stream->end - stream->cur, std::int64_t{UINT32_MAX});
    EXPECT_EQ(stream->capacity, UINT32_MAX);
    XML_IO_DestroyByMem(stream);
}

// What no pointers can be subtracted in is refused before it is looked at.
TEST(Limits, BuffersBeyondHalfOfTheAddressesAreRefused) {
    if (sizeof(void *) > 4) return;
    const auto length = static_cast<std::uint32_t>(k31);
    EXPECT_EQ(XML_IO_ByMem("<a/>", length), nullptr);
    EXPECT_EQ(XML_Parser_ByMem("<a/>", length, nullptr), XML_REFUSED);
    EXPECT_EQ(XML_DOM_BuildTreeByMem("<a/>", UINT32_MAX, 0, nullptr), nullptr);
    const StreamPtr stream(XML_IO_MemOutStreamCreate(XML_ENCODING_UTF_8, XML_ENCODING_UTF_8));
    EXPECT_EQ(XML_IO_OutStreamAppend(stream.get(), "a", length), XML_REFUSED);
    EXPECT_EQ(XML_IO_OutStreamAppendSafe(stream.get(), "a", UINT32_MAX), XML_REFUSED);
    EXPECT_EQ(XML_IO_MemOutStreamGetBuf(stream.get(), nullptr), nullptr);
}

TEST(Limits, LongestAppendsReachAFile) {
    const HugeString text({.length = k32 - 1});
    if (!text.text()) return;
    const StreamPtr stream(
        XML_IO_FileOutStreamCreate("/dev/null", XML_ENCODING_UTF_8, XML_ENCODING_UTF_8));
    ASSERT_TRUE(stream);
    EXPECT_EQ(XML_IO_OutStreamAppend(stream.get(), text.text(), UINT32_MAX), XML_OK);
    EXPECT_EQ(XML_IO_OutStreamAppendString(stream.get(), text.text()), XML_OK);
}

TEST(Limits, MemoryStreamRefusesWhatItCannotCount) {
    const HugeString text({.length = k32 - 1});
    if (!text.text()) return;
    const StreamPtr stream(XML_IO_MemOutStreamCreate(XML_ENCODING_UTF_8, XML_ENCODING_UTF_8));
    EXPECT_EQ(XML_IO_OutStreamAppend(stream.get(), "abc", 3), XML_OK);
    for (const std::uint32_t length : {UINT32_MAX, UINT32_MAX - 3, UINT32_MAX - 1024 - 3}) {
        EXPECT_EQ(XML_IO_OutStreamAppend(stream.get(), text.text(), length), XML_REFUSED);
    }
    std::uint32_t length = 0;
    EXPECT_STREQ(XML_IO_MemOutStreamGetBuf(stream.get(), &length), "abc");
    EXPECT_EQ(length, 3u);
}

std::uint32_t checkLength(std::uint32_t kind, const char *count, const char *value) {
    const SchemaFacet facet = {count, kind, SCHEMA_TYPE_STRING};
    char message[200];
    return Schema_CheckFacet(&facet, value, sizeof message, message);
}

TEST(Limits, LengthFacetsCountBeyond32Bits) {
    const HugeString text({.length = k32 + 1});
    if (!text.text()) return;
    EXPECT_EQ(checkLength(SCHEMA_FACET_LENGTH, "4294967297", text.text()), XML_OK);
}

// A number that no long can hold is as good as the greatest.
TEST(Limits, NumbersOfFacetsStopAtTheLimits) {
    constexpr char kTooLong[] = "36893488147419103233";  // 2^65 + 1
    EXPECT_EQ(checkLength(SCHEMA_FACET_MAX_LENGTH, kTooLong, "ab"), XML_OK);
    EXPECT_EQ(checkLength(SCHEMA_FACET_MIN_LENGTH, kTooLong, "ab"), XML_REFUSED);
    EXPECT_EQ(checkLength(SCHEMA_FACET_LENGTH, kTooLong, "a"), XML_REFUSED);
}

// The C library counts in an int: 2^32 + 3 bytes would be three.
TEST(Limits, PatternsMatchNoTextOfTwoGigabytes) {
    const HugeString text({.length = k32 + 3});
    if (!text.text()) return;
    EXPECT_EQ(XML_IsMatchRegex("^aaa$", text.text()), 0u);
}

}  // namespace
