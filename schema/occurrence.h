// schema/occurrence.h - how often something may occur.
#pragma once

#include <cstdint>

namespace cxml {

// A count of repetitions that stands for all numbers beyond 64 bits.
inline constexpr std::uint64_t kInfinite = UINT64_MAX;

inline std::uint64_t addCounts(std::uint64_t a, std::uint64_t b) noexcept {
    return a > kInfinite - b ? kInfinite : a + b;
}

inline std::uint64_t ceilDivide(std::uint64_t count, std::uint64_t divisor) noexcept {
    return count / divisor + (count % divisor != 0);
}

// Whether a run of so many equal children can be spread over repetitions that take from min to max
// of them each: whether there is a k of 1 or more with k * min <= count <= k * max. No children are
// enough when min is 0.
inline bool Schema_CheckOccurs(std::uint64_t count, std::uint32_t min, std::uint32_t max) noexcept {
    if (count < min) return false;
    if (count == 0) return true;
    if (max == 0) return false;
    return ceilDivide(count, max) <= count / (min == 0 ? 1 : min);
}

}  // namespace cxml
