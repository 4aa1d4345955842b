// tools/xsd2c/pattern/char_set.h - a set of characters of Unicode.
#pragma once

#include <compare>
#include <cstddef>
#include <initializer_list>
#include <vector>

namespace xsd2c {

inline constexpr char32_t kLastChar = 0x10FFFF;

struct CharRange {
    char32_t first;
    char32_t last;
    auto operator<=>(const CharRange &) const = default;
};

class CharSet {
  public:
    CharSet() = default;
    CharSet(std::initializer_list<CharRange> ranges) : ranges_(ranges) { normalize(); }

    void add(char32_t first, char32_t last);
    void add(const CharSet &other);
    CharSet complement() const;
    CharSet minus(const CharSet &other) const;

    // In order, with room between each and the next.
    const std::vector<CharRange> &ranges() const {
        normalize();
        return ranges_;
    }
    bool empty() const noexcept { return ranges_.empty(); }
    bool contains(char32_t c) const { return overlap(c, c) != 0; }

    // How many characters of a range are in the set, whose last must not be before the first.
    std::size_t overlap(char32_t first, char32_t last) const;

  private:
    void normalize() const;
    void joinSorted() const;

    // Ranges are sorted and joined when there are twice as many as there were after the last time,
    // or when they are looked at.
    mutable std::vector<CharRange> ranges_;
    mutable std::size_t normal_ = 0;  // the number of ranges, from the beginning, that are in order
};

}  // namespace xsd2c
