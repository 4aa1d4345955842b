// io/byte_scan.h - finding the next byte that needs thought, many bytes a step.
//
// Every search exists three times: over 16-byte vectors (SSE2, NEON), over 8-byte words, and as a
// plain loop. They differ in nothing but speed; the plain loop finishes what is shorter than a step
// and is what the tests hold the other two to.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "io/wrapping.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#elif defined(__ARM_NEON) && defined(__aarch64__)
#include <arm_neon.h>
#endif

namespace cxml {

using Byte = unsigned char;

// A block answers a question with its matches, which are combined by "|". Only the end of it all is
// made into a mask: bits that count bytes, in memory order.

// Eight bytes in a word. A comparison sets the top bit of each byte that matches, and, since
// borrows run upwards, perhaps of bytes above the lowest match: only the lowest is exact, which is
// why big-endian machines use the plain loop.
struct WordBlock {
    static constexpr std::size_t kBytes = 8;
    static constexpr std::uint64_t repeat(Byte b) { return 0x0101010101010101u * b; }

    std::uint64_t word;

    static WordBlock load(const Byte *p) {
        WordBlock block;
        std::memcpy(&block.word, p, sizeof block.word);
        return block;
    }
    COMPACTXML_WRAPS std::uint64_t equal(Byte b) const {
        const std::uint64_t x = word ^ repeat(b);
        return (x - repeat(1)) & ~x & repeat(0x80);
    }
    std::uint64_t notEqual(Byte b) const {  // exact in every byte
        const std::uint64_t x = word ^ repeat(b);
        return (((x & repeat(0x7F)) + repeat(0x7F)) | x) & repeat(0x80);
    }
    COMPACTXML_WRAPS std::uint64_t controlOrHigh() const {
        return ((word - repeat(0x20)) | word) & repeat(0x80);
    }
    std::uint64_t high() const { return word & repeat(0x80); }
    static std::uint64_t mask(std::uint64_t matches) { return matches; }
    static unsigned lowest(std::uint64_t mask) {
        return static_cast<unsigned>(std::countr_zero(mask)) / 8;
    }
};

#if defined(__SSE2__)
struct VectorBlock {
    static constexpr std::size_t kBytes = 16;
    static constexpr std::uint32_t kAll = 0xFFFF;  // the mask in which every byte matches

    struct Matches {
        __m128i bytes;  // all ones where a byte matches, or the top bit at least
        Matches operator|(Matches other) const { return {_mm_or_si128(bytes, other.bytes)}; }
        Matches operator~() const { return {_mm_cmpeq_epi8(bytes, _mm_setzero_si128())}; }
    };

    __m128i bytes;

    static VectorBlock load(const Byte *p) {
        return {_mm_loadu_si128(reinterpret_cast<const __m128i *>(p))};
    }
    static __m128i repeat(int b) { return _mm_set1_epi8(static_cast<char>(b)); }
    Matches equal(Byte b) const { return {_mm_cmpeq_epi8(bytes, repeat(b))}; }
    Matches equal(VectorBlock other) const { return {_mm_cmpeq_epi8(bytes, other.bytes)}; }
    Matches notEqual(Byte b) const { return ~equal(b); }
    // Signed, bytes from 0x80 up are negative and so below 0x20 as well.
    Matches controlOrHigh() const { return {_mm_cmplt_epi8(bytes, repeat(0x20))}; }
    Matches high() const { return {bytes}; }
    // Moved so that the range begins at the least number there is, one comparison tells.
    Matches inRange(Byte first, Byte last) const {
        const __m128i moved = _mm_add_epi8(bytes, repeat(0x80 - first));
        return {_mm_cmplt_epi8(moved, repeat(0x80 + last - first + 1))};
    }
    VectorBlock lowered() const { return {_mm_or_si128(bytes, repeat(0x20))}; }
    static std::uint32_t mask(Matches matches) {
        return static_cast<std::uint32_t>(_mm_movemask_epi8(matches.bytes));
    }
    static unsigned lowest(std::uint32_t mask) {
        return static_cast<unsigned>(std::countr_zero(mask));
    }
    // Without the matches before a byte of the block.
    static std::uint32_t from(std::uint32_t mask, unsigned byte) {
        return mask & (~std::uint32_t{0} << byte);
    }
};
using WideBlock = VectorBlock;
#elif defined(__ARM_NEON) && defined(__aarch64__)
struct VectorBlock {
    static constexpr std::size_t kBytes = 16;
    static constexpr std::uint64_t kAll = ~std::uint64_t{0};  // every byte matches

    struct Matches {
        uint8x16_t bytes;  // all ones where a byte matches
        Matches operator|(Matches other) const { return {vorrq_u8(bytes, other.bytes)}; }
        Matches operator~() const { return {vmvnq_u8(bytes)}; }
    };

    uint8x16_t bytes;

    static VectorBlock load(const Byte *p) { return {vld1q_u8(p)}; }
    Matches equal(Byte b) const { return {vceqq_u8(bytes, vdupq_n_u8(b))}; }
    Matches equal(VectorBlock other) const { return {vceqq_u8(bytes, other.bytes)}; }
    Matches notEqual(Byte b) const { return ~equal(b); }
    Matches controlOrHigh() const {
        return {vcltq_s8(vreinterpretq_s8_u8(bytes), vdupq_n_s8(0x20))};
    }
    Matches high() const { return {vcltzq_s8(vreinterpretq_s8_u8(bytes))}; }
    Matches inRange(Byte first, Byte last) const {
        return {vcleq_u8(vsubq_u8(bytes, vdupq_n_u8(first)),
                         vdupq_n_u8(static_cast<Byte>(last - first)))};
    }
    VectorBlock lowered() const { return {vorrq_u8(bytes, vdupq_n_u8(0x20))}; }
    // Four bits for each byte, in memory order.
    static std::uint64_t mask(Matches matches) {
        const uint8x8_t narrowed = vshrn_n_u16(vreinterpretq_u16_u8(matches.bytes), 4);
        return vget_lane_u64(vreinterpret_u64_u8(narrowed), 0);
    }
    static unsigned lowest(std::uint64_t mask) {
        return static_cast<unsigned>(std::countr_zero(mask)) / 4;
    }
    static std::uint64_t from(std::uint64_t mask, unsigned byte) {
        return mask & (~std::uint64_t{0} << 4 * byte);
    }
};
using WideBlock = VectorBlock;
#else
using WideBlock = WordBlock;
#endif

// What stops a search: one question to a block, the same question to a byte.

template <Byte... kBytes>
struct AnyOf {
    template <class Block>
    static auto inBlock(const Block &block) {
        return (block.equal(kBytes) | ...);
    }
    static constexpr bool inByte(Byte b) { return ((b == kBytes) || ...); }
};

// A control byte (line breaks and tabs among them), a byte of a multibyte character, or one of
// these.
template <Byte... kBytes>
struct NotPlainOr {
    template <class Block>
    static auto inBlock(const Block &block) {
        return (block.controlOrHigh() | ... | block.equal(kBytes));
    }
    static constexpr bool inByte(Byte b) { return b < 0x20 || b >= 0x80 || ((b == kBytes) || ...); }
};

template <Byte kByte>
struct AnythingBut {
    template <class Block>
    static auto inBlock(const Block &block) {
        return block.notEqual(kByte);
    }
    static constexpr bool inByte(Byte b) { return b != kByte; }
};

struct NotAscii {
    template <class Block>
    static auto inBlock(const Block &block) {
        return block.high();
    }
    static constexpr bool inByte(Byte b) { return b >= 0x80; }
};

// The first byte in [p, end) at which the search stops; end when there is none.

template <class Stop>
const Byte *scanPlainly(const Byte *p, const Byte *end) noexcept {
    while (p != end && !Stop::inByte(*p)) ++p;
    return p;
}

template <class Stop, class Block>
concept AsksBlock = requires(const Block &block) {
    Stop::inBlock(block);
};

template <class Stop, class Block>
const Byte *scanBlocks(const Byte *p, const Byte *end) noexcept {
    if constexpr (AsksBlock<Stop, Block> &&
                  (Block::kBytes != 8 || std::endian::native == std::endian::little)) {
        for (; static_cast<std::size_t>(end - p) >= Block::kBytes; p += Block::kBytes) {
            const auto mask = Block::mask(Stop::inBlock(Block::load(p)));
            if (mask) return p + Block::lowest(mask);
        }
    }
    return scanPlainly<Stop>(p, end);
}

template <class Stop>
const Byte *scanFor(const Byte *p, const Byte *end) noexcept {
    return scanBlocks<Stop, WideBlock>(p, end);
}

// The same where the answer is mostly in the first few bytes: they are looked at without a call.
template <class Stop>
[[gnu::always_inline]] inline const Byte *scanForNear(const Byte *p, const Byte *end) noexcept {
    if constexpr (AsksBlock<Stop, WideBlock> && WideBlock::kBytes != 8) {
        if (static_cast<std::size_t>(end - p) >= WideBlock::kBytes) [[likely]] {
            const auto mask = WideBlock::mask(Stop::inBlock(WideBlock::load(p)));
            if (mask) [[likely]]
                return p + WideBlock::lowest(mask);
            p += WideBlock::kBytes;
        }
    }
    return scanFor<Stop>(p, end);
}

inline bool isAscii(const char *bytes, std::size_t length) noexcept {
    const auto *p = reinterpret_cast<const Byte *>(bytes);
    return scanFor<NotAscii>(p, p + length) == p + length;
}

}  // namespace cxml
