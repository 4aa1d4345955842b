// tools/cxml/alignment.h - which children of one element are those of another.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace tool {

// Pairs of indices, both ascending.
using Pairs = std::vector<std::pair<std::size_t, std::size_t>>;

namespace alignment {

struct Range {
    std::size_t begin;
    std::size_t end;
};

// The longest part of the pairs, which ascend by the first index, that ascends by the second too.
inline Pairs longestAscending(const Pairs &pairs) {
    constexpr std::size_t kNone = static_cast<std::size_t>(-1);
    std::vector<std::size_t> before(pairs.size(), kNone);
    std::vector<std::size_t> lasts;  // lasts[n]: where the best run of n + 1 pairs ends
    for (std::size_t i = 0; i < pairs.size(); ++i) {
        const auto place = std::lower_bound(
            lasts.begin(), lasts.end(), pairs[i].second,
            [&pairs](std::size_t last, std::size_t b) { return pairs[last].second < b; });
        if (place != lasts.begin()) before[i] = place[-1];
        if (place == lasts.end()) {
            lasts.push_back(i);
        } else {
            *place = i;
        }
    }
    Pairs result;
    for (std::size_t i = lasts.empty() ? kNone : lasts.back(); i != kNone; i = before[i]) {
        result.push_back(pairs[i]);
    }
    std::reverse(result.begin(), result.end());
    return result;
}

// The items of a range that have a key, by key and then in order.
template <class Item>
std::vector<std::pair<std::uint64_t, std::size_t>> sortedKeys(const std::vector<Item> &items,
                                                              Range range, std::size_t reason) {
    std::vector<std::pair<std::uint64_t, std::size_t>> keys;
    for (std::size_t i = range.begin; i < range.end; ++i) {
        if (items[i].keys[reason] != 0) keys.emplace_back(items[i].keys[reason], i);
    }
    std::sort(keys.begin(), keys.end());
    return keys;
}

// Matches by one reason: equal heads and tails, and between them the nth item with a key and the nth
// with the same key, as far as they stand in the same order.
template <class Item>
void match(const std::vector<Item> &a, Range inA, const std::vector<Item> &b, Range inB,
           std::size_t reason, Pairs &pairs) {
    const auto same = [&](std::size_t i, std::size_t j) {
        return a[i].keys[reason] != 0 && a[i].keys[reason] == b[j].keys[reason];
    };
    while (inA.begin < inA.end && inB.begin < inB.end && same(inA.begin, inB.begin)) {
        pairs.emplace_back(inA.begin++, inB.begin++);
    }
    Pairs tail;
    while (inA.begin < inA.end && inB.begin < inB.end && same(inA.end - 1, inB.end - 1)) {
        tail.emplace_back(--inA.end, --inB.end);
    }
    if (inA.begin < inA.end && inB.begin < inB.end) {
        const auto keysA = sortedKeys(a, inA, reason);
        const auto keysB = sortedKeys(b, inB, reason);
        Pairs candidates;
        for (std::size_t i = 0, j = 0; i < keysA.size() && j < keysB.size();) {
            if (keysA[i].first == keysB[j].first) {
                candidates.emplace_back(keysA[i++].second, keysB[j++].second);
            } else if (keysA[i].first < keysB[j].first) {
                ++i;
            } else {
                ++j;
            }
        }
        std::sort(candidates.begin(), candidates.end());
        const Pairs matched = longestAscending(candidates);
        pairs.insert(pairs.end(), matched.begin(), matched.end());
    }
    pairs.insert(pairs.end(), tail.rbegin(), tail.rend());
}

}  // namespace alignment

// Matches items, each of which has an array `keys` of numbers that it may be matched by: by all the
// first ones, then what lies between matched items by the second ones, and so on. A key of 0 matches
// nothing. Takes n log n steps for n items.
template <class Item>
Pairs align(const std::vector<Item> &a, const std::vector<Item> &b, std::size_t reasons) {
    Pairs pairs;
    for (std::size_t reason = 0; reason < reasons; ++reason) {
        Pairs more;
        alignment::Range gapA{0, 0};
        alignment::Range gapB{0, 0};
        for (std::size_t i = 0; i <= pairs.size(); ++i) {
            gapA.end = i < pairs.size() ? pairs[i].first : a.size();
            gapB.end = i < pairs.size() ? pairs[i].second : b.size();
            alignment::match(a, gapA, b, gapB, reason, more);
            if (i < pairs.size()) more.push_back(pairs[i]);
            gapA.begin = gapA.end + 1;
            gapB.begin = gapB.end + 1;
        }
        pairs = std::move(more);
    }
    return pairs;
}

}  // namespace tool
