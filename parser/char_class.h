// parser/char_class.h - what a byte or a code point may do in a document.
#pragma once

#include <array>
#include <cstdint>

#include "io/byte_scan.h"

namespace cxml {

using CodePoint = std::int32_t;  // kNoChar when the bytes at hand form none
inline constexpr CodePoint kNoChar = -1;

// These three are false for kNoChar.
bool XML_Parser_IsLegalChar(CodePoint c) noexcept;      // XML 1.0, 2.2
bool XML_Parser_IsNameStartChar(CodePoint c) noexcept;  // without the colon
bool XML_Parser_IsNameChar(CodePoint c) noexcept;       // without the colon

constexpr bool XML_Parser_IsBlank(int c) {
    return c == ' ' || c == '\n' || c == '\r' || c == '\t';
}

// 0 to 15, or 16 for what is no hexadecimal digit.
constexpr unsigned XML_Parser_HexValue(int c) {
    if (c >= '0' && c <= '9') return static_cast<unsigned>(c - '0');
    if (c >= 'a' && c <= 'f') return static_cast<unsigned>(c - 'a' + 10);
    if (c >= 'A' && c <= 'F') return static_cast<unsigned>(c - 'A' + 10);
    return 16;
}

// The ASCII half of the name classes, one table look-up a byte.
enum AsciiNameClass : std::uint8_t { kNameStart = 1, kNamePart = 2 };

consteval std::array<std::uint8_t, 256> makeNameClasses() {
    std::array<std::uint8_t, 256> table{};
    for (int c = 'A'; c <= 'Z'; ++c) table[c] = table[c + 32] = kNameStart | kNamePart;
    table['_'] = kNameStart | kNamePart;
    for (int c = '0'; c <= '9'; ++c) table[c] = kNamePart;
    table['-'] = table['.'] = kNamePart;
    return table;
}
inline constexpr std::array<std::uint8_t, 256> kNameClass = makeNameClasses();

struct NotAsciiNameChar {
    // Words have no cheap question about a range: there the bytes are looked at one by one.
    template <class Block>
    requires requires(const Block &block) { block.inRange('a', 'z'); }
    static auto inBlock(const Block &block) {
        return ~(block.lowered().inRange('a', 'z') | block.inRange('0', '9') |
                 block.inRange('-', '.') | block.equal('_'));
    }
    static constexpr bool inByte(Byte b) { return (kNameClass[b] & kNamePart) == 0; }
};

inline const Byte *skipAsciiNameChars(const Byte *p, const Byte *end) noexcept {
    return scanFor<NotAsciiNameChar>(p, end);
}

}  // namespace cxml
