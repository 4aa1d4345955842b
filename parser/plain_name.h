// parser/plain_name.h - names of ASCII that lie in the buffer whole, a block at a time.
#pragma once

#include <cstring>

#include "io/byte_scan.h"
#include "parser/char_class.h"
#include "parser/context.h"

namespace cxml {

// A name, or two with ":" between them, in the input.
struct PlainName {
    const Byte *local;  // where the local part begins
    const Byte *end;    // null if there is no such name, or if it may go on at the end
};

inline bool startsPlainName(Byte b) {
    return (kNameClass[b] & kNameStart) != 0;
}

// Behind the name at p, or null.
inline const Byte *plainPartEnd(const Byte *p, const Byte *end) {
    if (p == end || !startsPlainName(*p)) return nullptr;
    p = scanFor<NotAsciiNameChar>(p, end);
    return p != end && *p < 0x80 ? p : nullptr;
}

inline PlainName findLongPlainName(const Byte *p, const Byte *end) {
    const Byte *local = p;
    const Byte *nameEnd = plainPartEnd(p, end);
    if (nameEnd && *nameEnd == ':') {
        local = nameEnd + 1;
        nameEnd = plainPartEnd(local, end);
    }
    return {local, nameEnd};
}

// Most names are shorter than a block: then one look at it tells where both parts end.
template <class Block = WideBlock>
[[gnu::always_inline]] inline PlainName findPlainName(const Byte *p, const Byte *end) {
    if constexpr (AsksBlock<NotAsciiNameChar, Block>) {
        constexpr std::ptrdiff_t kBytes = Block::kBytes;
        if (end - p > kBytes) [[likely]] {
            const auto stops = Block::mask(NotAsciiNameChar::inBlock(Block::load(p)));
            const Byte *local = p;
            unsigned length = Block::lowest(stops);
            if (length < kBytes - 1 && p[length] == ':') {
                local = p + length + 1;
                length = Block::lowest(Block::from(stops, length + 1));
            }
            if (length < kBytes) [[likely]] {
                const bool isName =
                    startsPlainName(*p) && startsPlainName(*local) && p[length] < 0x80;
                return {local, isName ? p + length : nullptr};
            }
        }
    }
    return findLongPlainName(p, end);
}

// Passes over a name that has been read before and kept as two strings. Null unless it follows and
// ends before the end.
template <class Block = WideBlock>
[[gnu::always_inline]] inline const Byte *passPlainName(const Byte *p, const Byte *end,
                                                        const char *kept, const QName &name) {
    const std::size_t offset = name.localOffset;
    const std::size_t length = offset + name.localLength;
    if (end - p <= static_cast<std::ptrdiff_t>(length)) return nullptr;
    if constexpr (AsksBlock<NotAsciiNameChar, Block>) {
        // The kept name has room for a block behind its beginning.
        if (length <= Block::kBytes && end - p >= static_cast<std::ptrdiff_t>(Block::kBytes))
            [[likely]] {
            const auto keptBlock = Block::load(reinterpret_cast<const Byte *>(kept));
            const auto different = Block::mask(~Block::load(p).equal(keptBlock));
            std::size_t same = Block::lowest(different);
            if (offset != 0) {
                // Where the name has its colon the kept one has a NUL: there they must differ.
                if (same != offset - 1 || p[same] != ':') return nullptr;
                same = Block::lowest(Block::from(different, static_cast<unsigned>(offset)));
            }
            return same >= length ? p + length : nullptr;
        }
    }
    if (offset != 0 && (p[offset - 1] != ':' || std::memcmp(p, kept, offset - 1) != 0)) {
        return nullptr;
    }
    return std::memcmp(p + offset, kept + offset, name.localLength) == 0 ? p + length : nullptr;
}

}  // namespace cxml
