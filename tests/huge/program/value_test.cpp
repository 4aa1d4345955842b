// Values of gigabytes against the checks of simple types.
#include <cstdint>
#include <string>
#include <string_view>

#include "compactxml.h"
#include "gtest/gtest.h"
#include "schema/pattern_cache.h"
#include "tests/support/huge_string.h"

namespace {

using support::HugeString;
using support::HugeText;

constexpr std::uint64_t k31 = std::uint64_t{1} << 31;
constexpr std::uint64_t k32 = std::uint64_t{1} << 32;

class HugeValue : public testing::TestWithParam<std::uint64_t> {
  protected:
    // Whether a value of such bytes has a built-in type.
    static std::uint32_t check(std::uint32_t code, const HugeText &value) {
        const HugeString text(value);
        return text.text() ? SCHEMA_CheckBaseTypeNonNull(code, text.text()) : 2;
    }
};

TEST_P(HugeValue, IsScannedToItsEnd) {
    const std::uint64_t length = GetParam();
    EXPECT_EQ(check(SCHEMA_TYPE_HEX_BINARY, {.length = length}), 1u);
    EXPECT_EQ(check(SCHEMA_TYPE_HEX_BINARY, {.length = length, .tail = "x"}), 0u);
    EXPECT_EQ(check(SCHEMA_TYPE_BASE64_BINARY, {.length = length}), length % 4 == 0 ? 1u : 0u);
    EXPECT_EQ(check(SCHEMA_TYPE_QNAME, {.length = length}), 1u);
    EXPECT_EQ(check(SCHEMA_TYPE_QNAME, {.length = length, .tail = "?"}), 0u);
    EXPECT_EQ(check(SCHEMA_TYPE_LONG, {.length = length, .filler = "0", .tail = "17"}), 1u);
    EXPECT_EQ(check(SCHEMA_TYPE_BYTE, {.length = length, .filler = "0", .tail = "128"}), 0u);
    EXPECT_EQ(check(SCHEMA_TYPE_LONG, {.length = length, .filler = "1"}), 0u);
    EXPECT_EQ(check(SCHEMA_TYPE_DURATION, {.length = length, .filler = "1", .head = "P"}), 0u);
}

TEST_P(HugeValue, IsMatchedByAutomaton) {
    cxml::PatternCache cache;
    for (const char *last : {"c", "d"}) {
        const HugeString value({.length = GetParam(), .tail = last});
        ASSERT_TRUE(value.text());
        EXPECT_EQ(cache.matches("^(a|b)*c$", value.text()), *last == 'c');
    }
}

INSTANTIATE_TEST_SUITE_P(Huge, HugeValue, testing::Values(k31, k32 - 1, k32 + 1));

}  // namespace
