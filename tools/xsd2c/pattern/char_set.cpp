#include "xsd2c/pattern/char_set.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace xsd2c {

void CharSet::normalize() const {
    if (normal_ == ranges_.size()) return;
    std::sort(ranges_.begin(), ranges_.end());
    joinSorted();
}

void CharSet::joinSorted() const {
    std::size_t count = 0;
    for (const CharRange range : ranges_) {
        if (count != 0 && range.first <= ranges_[count - 1].last + 1) {
            ranges_[count - 1].last = std::max(ranges_[count - 1].last, range.last);
        } else {
            ranges_[count++] = range;
        }
    }
    ranges_.resize(count);
    normal_ = count;
}

void CharSet::add(char32_t first, char32_t last) {
    constexpr std::size_t kFew = 64;
    ranges_.push_back({first, last});
    if (ranges_.size() > 2 * normal_ + kFew) normalize();
}

void CharSet::add(const CharSet &other) {
    std::vector<CharRange> both;
    both.reserve(ranges().size() + other.ranges().size());
    std::merge(ranges().begin(), ranges().end(), other.ranges().begin(), other.ranges().end(),
               std::back_inserter(both));
    ranges_ = std::move(both);
    joinSorted();
}

CharSet CharSet::complement() const {
    CharSet result;
    char32_t next = 0;
    for (const CharRange range : ranges()) {
        if (range.first > next) result.add(next, range.first - 1);
        next = range.last + 1;
    }
    if (next <= kLastChar) result.add(next, kLastChar);
    return result;
}

CharSet CharSet::minus(const CharSet &other) const {
    CharSet rest = complement();
    rest.add(other);
    return rest.complement();
}

std::size_t CharSet::overlap(char32_t first, char32_t last) const {
    const std::vector<CharRange> &all = ranges();
    auto range =
        std::lower_bound(all.begin(), all.end(), first,
                         [](const CharRange &entry, char32_t c) { return entry.last < c; });
    std::size_t count = 0;
    for (; range != all.end() && range->first <= last; ++range) {
        count += std::min(range->last, last) - std::max(range->first, first) + 1;
    }
    return count;
}

}  // namespace xsd2c
