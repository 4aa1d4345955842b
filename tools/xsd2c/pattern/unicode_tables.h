// tools/xsd2c/pattern/unicode_tables.h - the general category of each character of Unicode.
#pragma once

#include <cstdint>
#include <span>

namespace xsd2c {

// clang-format off
enum class Category : std::uint8_t {
    kLu, kLl, kLt, kLm, kLo,
    kMn, kMc, kMe,
    kNd, kNl, kNo,
    kPc, kPd, kPs, kPe, kPi, kPf, kPo,
    kZs, kZl, kZp,
    kSm, kSc, kSk, kSo,
    kCc, kCf, kCo,
};
// clang-format on

struct CategoryRun {
    char32_t first;
    char32_t last;
    Category category;
};

// In the order of the characters. What is in none is unassigned (Cn), or a surrogate.
std::span<const CategoryRun> categoryRuns() noexcept;

}  // namespace xsd2c
