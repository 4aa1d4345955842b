// tools/xsd2c/pattern/digit_order.h - texts of digits that are greater or less than another one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "xsd2c/pattern/ere.h"

namespace xsd2c {

Ere anyDigits(std::uint64_t count);

// Texts of as many digits as there are in the given one.
Ere digitsAbove(std::string_view digits);
Ere digitsBelow(std::string_view digits);
Ere digitsAtLeast(std::string_view digits);
Ere digitsAtMost(std::string_view digits);
Ere digitsBetween(std::string_view least, std::string_view most);

// What follows the point of a decimal, any number of digits, as a number between 0 and 1, compared
// with one whose last digit is not zero; that one may be empty, which is 0.
Ere fractionAbove(std::string_view digits, bool orEqual);
Ere fractionBelow(std::string_view digits, bool orEqual);

}  // namespace xsd2c
