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

#if defined(__SSE2__)
#include <emmintrin.h>
#elif defined(__ARM_NEON) && defined(__aarch64__)
#include <arm_neon.h>
#endif

namespace cxml {

using Byte = unsigned char;

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
    std::uint64_t equal(Byte b) const {
        const std::uint64_t x = word ^ repeat(b);
        return (x - repeat(1)) & ~x & repeat(0x80);
    }
    std::uint64_t notEqual(Byte b) const {  // exact in every byte
        const std::uint64_t x = word ^ repeat(b);
        return (((x & repeat(0x7F)) + repeat(0x7F)) | x) & repeat(0x80);
    }
    std::uint64_t controlOrHigh() const { return ((word - repeat(0x20)) | word) & repeat(0x80); }
    std::uint64_t high() const { return word & repeat(0x80); }
    static unsigned lowest(std::uint64_t mask) {
        return static_cast<unsigned>(std::countr_zero(mask)) / 8;
    }
};

#if defined(__SSE2__)
struct VectorBlock {
    static constexpr std::size_t kBytes = 16;
    static constexpr std::uint32_t kAll = 0xFFFF;  // the mask in which every byte matches

    __m128i bytes;

    static VectorBlock load(const Byte *p) {
        return {_mm_loadu_si128(reinterpret_cast<const __m128i *>(p))};
    }
    std::uint32_t equal(Byte b) const {
        return mask(_mm_cmpeq_epi8(bytes, _mm_set1_epi8(static_cast<char>(b))));
    }
    std::uint32_t notEqual(Byte b) const { return kAll ^ equal(b); }
    // Signed, bytes from 0x80 up are negative and so below 0x20 as well.
    std::uint32_t controlOrHigh() const { return mask(_mm_cmplt_epi8(bytes, _mm_set1_epi8(0x20))); }
    std::uint32_t high() const { return mask(bytes); }
    std::uint32_t inRange(Byte first, Byte last) const {
        const __m128i above = _mm_sub_epi8(bytes, _mm_set1_epi8(static_cast<char>(first)));
        const __m128i most = _mm_set1_epi8(static_cast<char>(last - first));
        return mask(_mm_cmpeq_epi8(_mm_min_epu8(above, most), above));
    }
    VectorBlock lowered() const { return {_mm_or_si128(bytes, _mm_set1_epi8(0x20))}; }
    static std::uint32_t mask(__m128i comparison) {
        return static_cast<std::uint32_t>(_mm_movemask_epi8(comparison));
    }
    static unsigned lowest(std::uint32_t mask) {
        return static_cast<unsigned>(std::countr_zero(mask));
    }
};
using WideBlock = VectorBlock;
#elif defined(__ARM_NEON) && defined(__aarch64__)
struct VectorBlock {
    static constexpr std::size_t kBytes = 16;
    static constexpr std::uint64_t kAll = ~std::uint64_t{0};  // every byte matches

    uint8x16_t bytes;

    static VectorBlock load(const Byte *p) { return {vld1q_u8(p)}; }
    std::uint64_t equal(Byte b) const { return mask(vceqq_u8(bytes, vdupq_n_u8(b))); }
    std::uint64_t notEqual(Byte b) const { return kAll ^ equal(b); }
    std::uint64_t controlOrHigh() const {
        return mask(vcltq_s8(vreinterpretq_s8_u8(bytes), vdupq_n_s8(0x20)));
    }
    std::uint64_t high() const { return mask(vcltzq_s8(vreinterpretq_s8_u8(bytes))); }
    std::uint64_t inRange(Byte first, Byte last) const {
        return mask(vcleq_u8(vsubq_u8(bytes, vdupq_n_u8(first)),
                             vdupq_n_u8(static_cast<Byte>(last - first))));
    }
    VectorBlock lowered() const { return {vorrq_u8(bytes, vdupq_n_u8(0x20))}; }
    // Four bits for each byte, in memory order.
    static std::uint64_t mask(uint8x16_t comparison) {
        const uint8x8_t narrowed = vshrn_n_u16(vreinterpretq_u16_u8(comparison), 4);
        return vget_lane_u64(vreinterpret_u64_u8(narrowed), 0);
    }
    static unsigned lowest(std::uint64_t mask) {
        return static_cast<unsigned>(std::countr_zero(mask)) / 4;
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
            const auto mask = Stop::inBlock(Block::load(p));
            if (mask) return p + Block::lowest(mask);
        }
    }
    return scanPlainly<Stop>(p, end);
}

template <class Stop>
const Byte *scanFor(const Byte *p, const Byte *end) noexcept {
    return scanBlocks<Stop, WideBlock>(p, end);
}

inline bool isAscii(const char *bytes, std::size_t length) noexcept {
    const auto *p = reinterpret_cast<const Byte *>(bytes);
    return scanFor<NotAscii>(p, p + length) == p + length;
}

}  // namespace cxml
