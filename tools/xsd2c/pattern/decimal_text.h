// tools/xsd2c/pattern/decimal_text.h - a decimal number as its sign and the digits that count.
#pragma once

#include <cstddef>
#include <string_view>

namespace xsd2c {

struct DecimalText {
    bool negative = false;      // never of zero
    std::string_view integer;   // without leading zeros: none of a number below 1
    std::string_view fraction;  // without trailing zeros

    bool isZero() const noexcept { return integer.empty() && fraction.empty(); }
};

// Of a text that spells a decimal or an integer.
inline DecimalText decimalTextOf(std::string_view text) {
    DecimalText result;
    result.negative = text.starts_with('-');
    if (result.negative || text.starts_with('+')) text.remove_prefix(1);
    const std::size_t point = text.find('.');
    result.integer = text.substr(0, point);
    if (point != text.npos) result.fraction = text.substr(point + 1);
    while (result.integer.starts_with('0')) result.integer.remove_prefix(1);
    while (result.fraction.ends_with('0')) result.fraction.remove_suffix(1);
    if (result.isZero()) result.negative = false;
    return result;
}

}  // namespace xsd2c
