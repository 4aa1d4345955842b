// io/string_block.h - sixteen bytes of a string whose length is not known.
//
// Vectors are loaded from 16-byte boundaries, where a byte of the string within makes all of a block
// readable.
#pragma once

#include <cstddef>
#include <cstdint>

#include "io/byte_scan.h"

// What lies behind a string's end is loaded, though it decides nothing; MemorySanitizer and
// ThreadSanitizer, which watches what is freed too, cannot tell. Nor can valgrind, for which scripts set
// COMPACTXML_PLAIN_STRINGS.
#if defined(__SSE2__) || (defined(__ARM_NEON) && defined(__aarch64__))
#define COMPACTXML_STRING_BLOCKS
#endif
#if defined(__SANITIZE_THREAD__) || defined(COMPACTXML_PLAIN_STRINGS)
#undef COMPACTXML_STRING_BLOCKS
#elif defined(__has_feature)
#if __has_feature(memory_sanitizer) || __has_feature(thread_sanitizer)
#undef COMPACTXML_STRING_BLOCKS
#endif
#endif

namespace cxml {

#ifdef COMPACTXML_STRING_BLOCKS
// Sixteen bytes at a 16-byte boundary, of which at least one belongs to a string.
struct StringBlock : VectorBlock {
    __attribute__((no_sanitize("address", "undefined"))) static StringBlock load(const Byte *p) {
#if defined(__SSE2__)
        return {{ _mm_load_si128(reinterpret_cast<const __m128i *>(p)) }};
#else
        return {{vld1q_u8(p)}};
#endif
    }

    // Where the heap puts strings, as a rule.
    static bool isBoundary(const Byte *p) {
        return reinterpret_cast<std::uintptr_t>(p) % kBytes == 0;
    }

    void store(Byte *to) const {
#if defined(__SSE2__)
        _mm_storeu_si128(reinterpret_cast<__m128i *>(to), bytes);
#else
        vst1q_u8(to, bytes);
#endif
    }

    template <Byte... kAny>
    Matches anyOf() const {
        return (equal(kAny) | ...);
    }

    // Whether the first count bytes are those of another block.
    bool beginsAs(const StringBlock &other, std::size_t count) const {
        return lowest(mask(~equal(other))) >= (count < kBytes ? count : kBytes);
    }
};
#endif

}  // namespace cxml
