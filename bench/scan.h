// scan.h - a scan that finds all markup characters, and does nothing else.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace bench {

// How many of "<", ">" and "&" there are, and the sum of their places: what it takes to know where
// each of them is.
struct MarkupPlaces {
    std::uint64_t count = 0;
    std::uint64_t sum = 0;

    bool operator==(const MarkupPlaces &) const = default;
};

MarkupPlaces scanMarkup(std::span<const char> bytes);          // 16 bytes at a time
MarkupPlaces scanMarkupPortably(std::span<const char> bytes);  // in C++ alone, 8 bytes at a time

}  // namespace bench
