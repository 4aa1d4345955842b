// io/wrapping.h - unsigned arithmetic that is meant to wrap, as that of hashes is.
#pragma once

#include <cstdint>

// For functions in which clang's -fsanitize=integer is to take no notice of that.
#if defined(__clang__)
#define COMPACTXML_WRAPS __attribute__((no_sanitize("unsigned-integer-overflow")))
#else
#define COMPACTXML_WRAPS
#endif

namespace cxml {

COMPACTXML_WRAPS constexpr std::uint64_t wrappingSum(std::uint64_t a, std::uint64_t b) noexcept {
    return a + b;
}

COMPACTXML_WRAPS constexpr std::uint32_t wrappingProduct(std::uint32_t a,
                                                         std::uint32_t b) noexcept {
    return a * b;
}

// One step of the hash of Fowler, Noll and Vo, which begins with kFnvBasis.
inline constexpr std::uint32_t kFnvBasis = 2166136261u;
constexpr std::uint32_t fnvStep(std::uint32_t hash, std::uint32_t more) noexcept {
    return wrappingProduct(hash ^ more, 16777619u);
}

}  // namespace cxml
