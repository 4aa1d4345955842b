// tests/support/texts.h - text for tests, in the encodings that documents and trees hold it in.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace support {

// UTF-8 in the encoding of the tree, GB18030. Throws when it does not convert.
std::string gb(std::string_view utf8);

// UTF-8 in an encoding. Throws when it does not convert.
std::string inEncoding(std::uint32_t encoding, std::string_view utf8);

// A code point in UTF-8.
std::string utf8(std::uint32_t codePoint);

// What the library leaves in an error buffer of this size for a message in UTF-8; nothing for 0.
std::string errorText(std::string_view message, std::size_t size);

// The message of a refused parse, with what it quotes of the document that lies in memory; offset
// is the position in bytes.
std::string messageAt(std::string_view document, std::size_t offset, int line, int column,
                      std::string_view message);

}  // namespace support
