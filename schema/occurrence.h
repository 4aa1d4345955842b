// schema/occurrence.h - how often something may occur.
#pragma once

#include <cstdint>

namespace cxml {

// A count of repetitions that stands for all numbers beyond 64 bits.
inline constexpr std::uint64_t kInfinite = UINT64_MAX;

inline std::uint64_t addCounts(std::uint64_t a, std::uint64_t b) noexcept {
    return a > kInfinite - b ? kInfinite : a + b;
}

// Divisions take their time, and what occurs once or without end needs none.
inline std::uint64_t divide(std::uint64_t count, std::uint64_t divisor) noexcept {
    return divisor == 1 ? count : count < divisor ? 0 : count / divisor;
}

inline std::uint64_t ceilDivide(std::uint64_t count, std::uint64_t divisor) noexcept {
    const std::uint64_t quotient = divide(count, divisor);
    return quotient + (quotient * divisor != count);
}

inline bool isMultiple(std::uint64_t count, std::uint64_t divisor) noexcept {
    return divide(count, divisor) * divisor == count;
}

// Whether a run of so many equal children can be spread over repetitions that take from min to max
// of them each: whether there is a k of 1 or more with k * min <= count <= k * max. No children are
// enough when min is 0.
inline bool Schema_CheckOccurs(std::uint64_t count, std::uint32_t min, std::uint32_t max) noexcept {
    if (count < min) return false;
    if (count == 0) return true;
    if (max == 0) return false;
    return ceilDivide(count, max) <= divide(count, min == 0 ? 1 : min);
}

}  // namespace cxml
