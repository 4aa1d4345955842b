// dom/encoding.h - the encodings, by number and by what they have in common.
#pragma once

#include <cstddef>
#include <cstdint>

#include "compactxml.h"

namespace cxml {

// Documents are parsed in the first and held in the second.
inline constexpr std::uint32_t kParserEncoding = XML_ENCODING_UTF_8;
inline constexpr std::uint32_t kTreeEncoding = XML_ENCODING_GB18030;

// Encodings in which a byte below 0x80 is that ASCII character wherever a character begins.
bool isAsciiCompatible(std::uint32_t encoding) noexcept;

// The number of an encoding whose name takes exactly these bytes, ignoring ASCII case.
std::uint32_t encodingFromName(const char *name, std::size_t length) noexcept;

// Compares ignoring the case of ASCII letters, whatever the locale.
bool equalIgnoringCase(const char *a, const char *b, std::size_t length) noexcept;

}  // namespace cxml
