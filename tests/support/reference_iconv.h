// tests/support/reference_iconv.h - whole conversions by the system's iconv, to compare with.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace support {

inline constexpr std::uint32_t kEncodingCount = 13;

// The name of an encoding number; null from 13 on. A table of its own, not the library's.
const char *encodingName(std::uint32_t encoding);

struct Conversion {
    std::string bytes;         // what came out before the end or the error
    std::size_t consumed = 0;  // bytes of the input behind that
    int error = 0;             // 0, or iconv's errno: EILSEQ or EINVAL; -1 for an unknown pair
};

// Converts in one go, with a fresh converter and all the room it wants.
Conversion convertWhole(std::uint32_t from, std::uint32_t to, std::string_view bytes);

// Code points in an encoding; nothing when it lacks one of them.
std::optional<std::string> encode(std::uint32_t encoding, std::u32string_view text);

// The same without the byte order mark that iconv puts in front in some encodings.
std::optional<std::string> encodeBare(std::uint32_t encoding, std::u32string_view text);

}  // namespace support
