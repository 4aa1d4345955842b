// schema/integer.h - values of the integer types.
#pragma once

#include <cstdint>

namespace cxml {

// Whether a value is an integer of the type with this code, 3 (byte) to 15 (nonNegativeInteger).
// Intended: the unbounded types are held to the 64-bit signed range, "-0" lies below 0, and "|" is
// a sign. No number of digits overflows anything.
bool checkInteger(std::uint32_t code, const char *value) noexcept;

}  // namespace cxml
