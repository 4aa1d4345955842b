// The scope of prefixes against a slow, obvious model: a list that is searched from its end.
#include "parser/namespace_scope.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/faults.h"

using namespace cxml;

namespace {

using Model = std::vector<std::pair<std::string, std::string>>;

const std::string *findInModel(const Model &model, const std::string &prefix) {
    for (auto at = model.rbegin(); at != model.rend(); ++at) {
        if (at->first == prefix) return &at->second;
    }
    return nullptr;
}

void expectSame(NamespaceScope &scope, const Model &model, const std::string &prefix) {
    const XML_Parser_Ns *found = scope.find(prefix.c_str(), prefix.size());
    const std::string *expected = findInModel(model, prefix);
    ASSERT_EQ(found != nullptr, expected != nullptr) << '"' << prefix << '"';
    if (found) {
        EXPECT_EQ(found->namespaceName, *expected) << '"' << prefix << '"';
    }
}

}  // namespace

TEST(NamespaceScope, AgreesWithASearchedListOnRandomWalks) {
    std::mt19937 random(20240607);
    for (int walk = 0; walk < 40; ++walk) {
        // Few prefixes shadow each other often; many make the table grow.
        const unsigned prefixes = walk % 2 == 0 ? 5 : 200;
        NamespaceScope scope;
        Model model;
        for (int step = 0; step < 600; ++step) {
            if (!model.empty() && random() % 3 == 0) {
                model.resize(random() % 20 == 0 ? 0 : model.size() - random() % 3 % model.size());
                scope.pop(model.size());
            } else {
                const unsigned number = static_cast<unsigned>(random() % prefixes);
                const std::string prefix = number == 0 ? "" : "p" + std::to_string(number);
                const std::string name = "urn:" + std::to_string(step);
                ASSERT_TRUE(scope.push(number == 0 ? nullptr : prefix.c_str(), name.c_str()));
                model.emplace_back(prefix, name);
            }
            ASSERT_EQ(scope.count(), model.size());
            expectSame(scope, model, "p" + std::to_string(random() % (prefixes + 2)));
            expectSame(scope, model, "");
        }
    }
}

TEST(NamespaceScope, ListsBindingsNewestFirst) {
    NamespaceScope scope;
    for (int i = 0; i < 30; ++i) ASSERT_TRUE(scope.push(("p" + std::to_string(i)).c_str(), "u"));
    int expected = 29;
    for (const XML_Parser_Ns *binding = scope.newest(); binding; binding = binding->next) {
        EXPECT_EQ(binding->prefix, "p" + std::to_string(expected));
        EXPECT_EQ(binding->ordinal, static_cast<std::size_t>(expected));
        --expected;
    }
    EXPECT_EQ(expected, -1);
}

TEST(NamespaceScope, ComparesNamesByContent) {
    NamespaceScope scope;
    XML_Parser_Ns *first = scope.push("a", "urn:one");
    XML_Parser_Ns *same = scope.push("b", "urn:one");
    XML_Parser_Ns *other = scope.push("c", "urn:two");
    XML_Parser_Ns *longer = scope.push("d", "urn:one1");
    EXPECT_TRUE(scope.isSameName(first, first));
    EXPECT_TRUE(scope.isSameName(first, same));
    EXPECT_FALSE(scope.isSameName(first, other));
    EXPECT_FALSE(scope.isSameName(first, longer));
    EXPECT_FALSE(scope.isSameName(first, nullptr));
    EXPECT_TRUE(scope.isSameName(nullptr, nullptr));
    EXPECT_EQ(scope.hashOfName(first), scope.hashOfName(same));
    EXPECT_EQ(scope.hashOfName(nullptr), 0u);
}

TEST(NamespaceScope, StaysWholeWhenMemoryFails) {
    for (std::size_t failAt = 1; failAt < 60; ++failAt) {
        support::FaultyHeap heap(failAt);
        {
            NamespaceScope scope;
            std::size_t pushed = 0;
            for (int i = 0; i < 40; ++i) {
                char prefix[3] = {'p', static_cast<char>('0' + i), '\0'};
                if (scope.push(prefix, "u")) ++pushed;
                EXPECT_EQ(scope.count(), pushed);
            }
            for (const XML_Parser_Ns *binding = scope.newest(); binding; binding = binding->next) {
                EXPECT_EQ(scope.find(binding->prefix, std::strlen(binding->prefix)), binding);
            }
        }
        EXPECT_EQ(heap.blocksInUse(), 0u) << failAt;
    }
}

TEST(KeyedHash, DependsOnEveryByteAndOnItsKey) {
    KeyedHash hash;
    KeyedHash other;
    const std::string text = "0123456789abcdefghij";
    for (std::size_t length = 0; length <= text.size(); ++length) {
        const std::uint64_t value = hash(text.data(), length);
        EXPECT_EQ(value, hash(text.data(), length));
        EXPECT_NE(value, other(text.data(), length)) << length;
        for (std::size_t at = 0; at < length; ++at) {
            std::string changed = text;
            changed[at] = static_cast<char>(changed[at] ^ 1);
            EXPECT_NE(value, hash(changed.data(), length)) << length << ' ' << at;
        }
    }
}
