// tools/text/unicode.h - the characters of UTF-8 text.
#pragma once

#include <cstddef>
#include <string_view>

namespace unicode {

struct Char {
    char32_t code;
    std::size_t length;  // in bytes
};

inline constexpr char32_t kNone = 0xFFFFFFFF;

// The character at the beginning of a text, which is not empty; kNone and one byte if there is none.
inline Char first(std::string_view text) noexcept {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    constexpr Char kNothing = {kNone, 1};
    const unsigned char lead = byte(0);
    if (lead < 0x80) return {lead, 1};
    if (lead < 0xC2 || lead > 0xF4) return kNothing;
    const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    if (text.size() < length) return kNothing;
    char32_t code = lead & (0xFFu >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0) != 0x80) return kNothing;
        code = code << 6 | (byte(i) & 0x3Fu);
    }
    constexpr char32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
    const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
    if (code < kLeast[length] || code > 0x10FFFF || surrogate) return kNothing;
    return {code, length};
}

inline bool isAscii(std::string_view text) noexcept {
    for (const char c : text) {
        if (static_cast<unsigned char>(c) >= 0x80) return false;
    }
    return true;
}

}  // namespace unicode
