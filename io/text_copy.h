// io/text_copy.h - copying a string up to the first byte that needs thought, in one pass.
//
// The length of a string need not be known; see io/string_block.h. Elsewhere a plain loop does the
// same work; the tests hold the one to the other.
#pragma once

#include "io/string_block.h"

namespace cxml {

// What ends a copy: the NUL, one of these bytes, and, if wanted, a byte of a multibyte character.
template <Byte... kBytes>
struct CopyStop {
    bool atMultibyte;

    bool inByte(Byte b) const {
        return b == 0 || ((b == kBytes) || ...) || (atMultibyte && b >= 0x80);
    }
#ifdef COMPACTXML_STRING_BLOCKS
    auto inBlock(const StringBlock &block) const {
        const auto stops = block.anyOf<0, kBytes...>();
        return StringBlock::mask(atMultibyte ? stops | block.high() : stops);
    }
#endif
};

// Where a copy ended in the string and in the destination.
struct Copied {
    const Byte *from;
    Byte *to;
};

// What a copy may write at once, whatever it then takes.
inline constexpr std::ptrdiff_t kCopyRoom = 16;

template <class Stop>
Copied copyPlainly(Stop stop, const Byte *from, Byte *to, const Byte *end) noexcept {
    while (to != end && !stop.inByte(*from)) *to++ = *from++;
    return {from, to};
}

// Copies bytes of a NUL-terminated string to [to, end) until one ends it or room runs short, which
// may be before the last 15 bytes of it are used. Bytes behind those copied may be overwritten.
template <class Stop>
inline Copied copyUntil(Stop stop, const Byte *from, Byte *to, const Byte *end) noexcept {
#ifdef COMPACTXML_STRING_BLOCKS
    for (; !StringBlock::isBoundary(from); ++from, ++to) {
        if (to == end || stop.inByte(*from)) return {from, to};
        *to = *from;
    }
    for (; end - to >= kCopyRoom; from += kCopyRoom, to += kCopyRoom) {
        const StringBlock block = StringBlock::load(from);
        block.store(to);
        if (const auto mask = stop.inBlock(block)) {
            const unsigned count = StringBlock::lowest(mask);
            return {from + count, to + count};
        }
    }
    return {from, to};
#else
    return copyPlainly(stop, from, to, end);
#endif
}

// Copies a whole string of less than kCopyRoom bytes, for which there must be room, and gives the
// end of the copy; null if the string is longer, holds a stop or does not lie where the heap would
// put it.
template <class Stop>
inline Byte *copyShort(Stop stop, const char *string, Byte *to) noexcept {
    const auto *from = reinterpret_cast<const Byte *>(string);
#ifdef COMPACTXML_STRING_BLOCKS
    if (!StringBlock::isBoundary(from)) return nullptr;
    const StringBlock block = StringBlock::load(from);
    block.store(to);
    const auto mask = stop.inBlock(block);
    if (!mask) return nullptr;
    const unsigned count = StringBlock::lowest(mask);
    return from[count] == 0 ? to + count : nullptr;
#else
    const Copied copied = copyPlainly(stop, from, to, to + kCopyRoom);
    return copied.to != to + kCopyRoom && *copied.from == 0 ? copied.to : nullptr;
#endif
}

}  // namespace cxml
