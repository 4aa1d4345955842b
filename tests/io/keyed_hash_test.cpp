// The hash of names: the same under one key, another under the next, with random numbers and without.
#include "io/keyed_hash.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "compactxml.h"
#include "tests/support/faults.h"
#include "tests/support/feeds.h"

using cxml::KeyedHash;

namespace {

// Texts of every length around the hash's words, and some that differ in one byte.
std::vector<std::string> texts() {
    std::vector<std::string> all;
    for (std::size_t length = 0; length <= 33; ++length) {
        const std::string text(length, 'x');
        all.push_back(text);
        for (std::size_t i = 0; i < length; ++i) {
            std::string other = text;
            other[i] = '\xFE';
            all.push_back(other);
        }
    }
    return all;
}

void expectHashesOfTheirOwn() {
    KeyedHash first, second;
    std::set<std::uint64_t> seen;
    for (const std::string &text : texts()) {
        const std::uint64_t hash = first(text.data(), text.size());
        EXPECT_EQ(first(text.data(), text.size()), hash);
        EXPECT_TRUE(seen.insert(hash).second) << support::printable(text);
        EXPECT_TRUE(seen.insert(second(text.data(), text.size())).second);
    }
}

TEST(KeyedHash, EachKeyHasItsOwnHashes) {
    expectHashesOfTheirOwn();
}

TEST(KeyedHash, WithoutRandomNumbersToo) {
    const support::MissingRandom missing;
    expectHashesOfTheirOwn();
    EXPECT_EQ(missing.wanted(), 2u);  // once for each key
}

// So many attributes and prefixes are looked up in tables.
TEST(KeyedHash, ParsesGoOnWithoutRandomNumbers) {
    std::string document = "<a";
    for (int i = 0; i < 20; ++i) {
        const std::string n = std::to_string(i);
        document += " xmlns:p" + n + "='u" + n + "' p" + n + ":b='' c" + n + "='" + n + "'";
    }
    const support::Feed good = support::memoryFeed(document + "/>");
    const support::Feed twice = support::memoryFeed(document + " c7=''/>");
    const support::RecordedParse expected = support::record(good);
    ASSERT_EQ(expected.result, XML_OK);
    const support::MissingRandom missing;
    EXPECT_TRUE(support::sameOutcome(expected, support::record(good)));
    EXPECT_EQ(support::record(twice).message, "attribute redefined.");
    EXPECT_GE(missing.wanted(), 2u);
}

}  // namespace
