// Splitting a text at a separator, item by item into a caller's buffer.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "compactxml.h"
#include "tests/support/faults.h"
#include "tests/support/growth.h"
#include "tests/support/small_stack.h"

namespace {

using Items = std::vector<std::string>;

constexpr std::size_t kGuard = 8;
constexpr char kUntouched = '#';

// Splits with a buffer of so many bytes, and looks at what lies behind it and at the text.
Items split(const std::string &text, const char *separator, std::uint32_t size) {
    const std::string before = text;
    std::string buffer(size + kGuard, kUntouched);
    Items items;
    SchemaSplitState state;
    char *item = Schema_GetFirstSplitStr(text.c_str(), separator, size, buffer.data(), &state);
    while (item && items.size() <= text.size()) {
        EXPECT_EQ(item, buffer.data());
        EXPECT_LT(std::strlen(item), size);
        items.emplace_back(item);
        item = Schema_GetNextSplitStr(&state);
    }
    EXPECT_EQ(item, nullptr) << "more items than characters";
    EXPECT_EQ(buffer.find_first_not_of(kUntouched, size), std::string::npos);
    EXPECT_EQ(text, before);
    return items;
}

// The same on strings: what is left shrinks by what was copied, and by one more where there was a
// separator.
Items modelSplit(std::string rest, const std::string &separator, std::size_t size) {
    Items items;
    while (size >= 2 && !rest.empty()) {
        const std::size_t at = rest.find(separator);
        const bool found = at != std::string::npos;
        const std::string item = rest.substr(0, found ? at : rest.size()).substr(0, size - 1);
        items.push_back(item);
        rest.erase(0, item.size() + (found ? 1 : 0));
    }
    return items;
}

struct Case {
    const char *name, *text, *separator;
    std::uint32_t size;
    Items items;
};

const Case kCases[] = {
    {"nothing", "", ",", 32, {}},
    {"one item", "a", ",", 32, {"a"}},
    {"two items", "a,b", ",", 32, {"a", "b"}},
    {"three items", "80,443,1000-2000", ",", 32, {"80", "443", "1000-2000"}},
    {"separator in front", ",a", ",", 32, {"", "a"}},
    {"two in front", ",,a", ",", 32, {"", "", "a"}},
    {"at the end there is no further item", "a,", ",", 32, {"a"}},
    {"two at the end", "a,,", ",", 32, {"a", ""}},
    {"in the middle", "a,,b", ",", 32, {"a", "", "b"}},
    {"alone", ",", ",", 32, {""}},
    {"alone twice", ",,", ",", 32, {"", ""}},
    {"another separator", "a;b,c", ";", 32, {"a", "b,c"}},
    {"a blank", "a b  c", " ", 32, {"a", "b", "", "c"}},
    {"no separator in the text", "a;b", ",", 32, {"a;b"}},
    {"an item that just fits", "abc,d", ",", 4, {"abc", "d"}},
    {"one byte too long: the one is lost", "abcd,e", ",", 4, {"abc", "", "e"}},
    {"two bytes too long: one is left", "abcde,f", ",", 4, {"abc", "e", "f"}},
    {"cut again and again", "abcdefghij,k", ",", 4, {"abc", "efg", "ij", "k"}},
    {"nothing is lost where no separator follows", "abcdefg", ",", 4, {"abc", "def", "g"}},
    {"the last item that just fits", "a,bcd", ",", 4, {"a", "bcd"}},
    {"the last item cut", "a,bcdef", ",", 4, {"a", "bcd", "ef"}},
    {"single bytes", "abc", ",", 2, {"a", "b", "c"}},
    {"single bytes with a separator", "ab,c", ",", 2, {"a", "", "c"}},
    {"single bytes and every second lost", "abcd,e", ",", 2, {"a", "c", "", "e"}},
    {"bytes in front of the separator lost until it is reached", "abc,d", ",", 2, {"a", "c", "d"}},
    {"31 bytes fit into 32",
     "1234567890123456789012345678901,2",
     ",",
     32,
     {"1234567890123456789012345678901", "2"}},
    {"32 bytes do not",
     "12345678901234567890123456789012,2",
     ",",
     32,
     {"1234567890123456789012345678901", "", "2"}},
    {"33 bytes do not",
     "123456789012345678901234567890123,2",
     ",",
     32,
     {"1234567890123456789012345678901", "3", "2"}},
    // A separator counts as one character.
    {"two characters: one of them is left", "a::b", "::", 32, {"a", ":b"}},
    {"two characters, apart", "a:b", "::", 32, {"a:b"}},
    {"two characters, at the end", "a::", "::", 32, {"a", ":"}},
    {"three in a row", "a:::b", "::", 32, {"a", "", ":b"}},
    {"none: found at once", "abc", "", 32, {"", "", ""}},
    {"a wide character, cut in the middle", "\xD6\xD0\xCE\xC4", ",", 4, {"\xD6\xD0\xCE", "\xC4"}},
    {"bytes above 127", "\x81\x30,\xFF", ",", 32, {"\x81\x30", "\xFF"}},
    {"no room for any item", "a,b", ",", 1, {}},
    {"no room at all", "a,b", ",", 0, {}},
};

TEST(Split, Table) {
    for (const Case &row : kCases) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(split(row.text, row.separator, row.size), row.items);
        EXPECT_EQ(modelSplit(row.text, row.separator, row.size), row.items);
    }
}

TEST(Split, EveryShortText) {
    std::vector<std::string> texts = {""};
    for (std::size_t at = 0; at < texts.size(); ++at) {
        for (const char *separator : {",", "a", "ab", ",,", ""}) {
            for (const std::uint32_t size : {0u, 1u, 2u, 3u, 4u, 5u, 32u}) {
                ASSERT_EQ(split(texts[at], separator, size), modelSplit(texts[at], separator, size))
                    << texts[at] << " at " << separator << " in " << size;
            }
        }
        if (texts[at].size() == 7) continue;
        for (const char c : {'a', 'b', ','}) texts.push_back(texts[at] + c);
    }
}

TEST(Split, State) {
    const char text[] = "ab,cd,";
    char item[8] = "before";
    SchemaSplitState state;
    std::memset(&state, 0xAB, sizeof state);
    const char separator[] = ",";
    EXPECT_EQ(Schema_GetFirstSplitStr(text, separator, sizeof item, item, &state), item);
    EXPECT_STREQ(item, "ab");
    EXPECT_EQ(state.item, item);
    EXPECT_EQ(state.separator, separator);
    EXPECT_EQ(state.size, sizeof item);
    EXPECT_EQ(state.rest, text + 3);
    EXPECT_EQ(Schema_GetNextSplitStr(&state), item);
    EXPECT_STREQ(item, "cd");
    EXPECT_EQ(state.rest, text + 6);
    EXPECT_EQ(Schema_GetNextSplitStr(&state), nullptr);
    EXPECT_STREQ(item, "cd");  // as it was
    EXPECT_EQ(Schema_GetNextSplitStr(&state), nullptr);
    state.rest = "e";  // goes on with another text
    EXPECT_EQ(Schema_GetNextSplitStr(&state), item);
    EXPECT_STREQ(item, "e");
    state.rest = nullptr;
    EXPECT_EQ(Schema_GetNextSplitStr(&state), nullptr);
    // Another separator and another buffer on the way.
    char other[4] = "";
    state = {other, "x;y,z", ";", sizeof other};
    EXPECT_EQ(Schema_GetNextSplitStr(&state), other);
    EXPECT_STREQ(other, "x");
    state.separator = ",";
    EXPECT_EQ(Schema_GetNextSplitStr(&state), other);
    EXPECT_STREQ(other, "y");
}

// The buffer is emptied where there is no item; without room it is left alone.
TEST(Split, NoItem) {
    SchemaSplitState state;
    for (const std::uint32_t size : {0u, 1u, 2u, 8u}) {
        char item[8] = "before";
        EXPECT_EQ(Schema_GetFirstSplitStr("", ",", size, item, &state), nullptr);
        EXPECT_STREQ(item, size == 0 ? "before" : "") << size;
    }
    for (const std::uint32_t size : {0u, 1u}) {
        char item[8] = "before";
        EXPECT_EQ(Schema_GetFirstSplitStr("a", ",", size, item, &state), nullptr);
        EXPECT_STREQ(item, size == 0 ? "before" : "") << size;
        SchemaSplitState given = {item, "a", ",", size};
        EXPECT_EQ(Schema_GetNextSplitStr(&given), nullptr);
        EXPECT_STREQ(item, size == 0 ? "before" : "") << size;
    }
}

TEST(Split, MissingArguments) {
    char item[8] = "before";
    SchemaSplitState state = {item, "a", ",", sizeof item};
    EXPECT_EQ(Schema_GetFirstSplitStr(nullptr, ",", sizeof item, item, &state), nullptr);
    EXPECT_EQ(Schema_GetFirstSplitStr("a", nullptr, sizeof item, item, &state), nullptr);
    EXPECT_EQ(Schema_GetFirstSplitStr("a", ",", sizeof item, nullptr, &state), nullptr);
    EXPECT_EQ(Schema_GetFirstSplitStr("a", ",", sizeof item, item, nullptr), nullptr);
    EXPECT_EQ(Schema_GetNextSplitStr(nullptr), nullptr);
    state = {nullptr, "a", ",", sizeof item};
    EXPECT_EQ(Schema_GetNextSplitStr(&state), nullptr);
    state = {item, "a", nullptr, sizeof item};
    EXPECT_EQ(Schema_GetNextSplitStr(&state), nullptr);
}

// A text of n items is split in linear time, and nothing is allocated for it.
TEST(Split, CostIsLinear) {
    const auto count = [](const std::string &text) {
        char item[32];
        SchemaSplitState state;
        std::size_t items = 0;
        const support::FaultyHeap heap(1, true);
        for (const char *each =
                 Schema_GetFirstSplitStr(text.c_str(), ",", sizeof item, item, &state);
             each; each = Schema_GetNextSplitStr(&state)) {
            ++items;
        }
        EXPECT_EQ(heap.allocations(), 0u);
        return items;
    };
    constexpr std::size_t kItems = support::kSanitized ? 4096 : 65535;
    std::string shortText, longText;
    for (std::size_t i = 0; i < kItems; ++i) shortText += "12345,";
    for (std::size_t i = 0; i < 8 * kItems; ++i) longText += "12345,";
    EXPECT_EQ(count(shortText), kItems);
    if (support::kSanitized) return;  // a sanitizer's strstr measures the whole text at each call
    EXPECT_TRUE(support::growsLinearly([&] { EXPECT_EQ(count(shortText), kItems); },
                                       [&] { EXPECT_EQ(count(longText), 8 * kItems); }));
}

}  // namespace
