// io/input_stream.h - what the parser relies on in an input stream.
#pragma once

#include <cstddef>
#include <cstdint>

#include "compactxml.h"

namespace cxml {

// Values of a stream's state. Everything above kExhausted is final.
enum StreamState : std::uint32_t {
    kMoreMayCome = 0,
    kExhausted = 1,
    kMemoryFailure = 2,
    kUnsupportedEncoding = 3,
    kConversionFailure = 4,
};

// XML_IO_Grow refills a buffer with fewer unread bytes than this. More than the longest literal
// that the parser looks for.
inline constexpr std::ptrdiff_t kReadAhead = 64;

}  // namespace cxml
