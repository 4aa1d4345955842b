// tools/xsd2c/records/integers.h - whole numbers that hold the values of every integer type of the
// validator, signed or not, and what lies just beyond them.
#pragma once

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

namespace xsd2c {

__extension__ using Integer = __int128;

struct Range {
    Integer least = 0;
    Integer most = -1;  // empty, unless set
};

// The number that a text of digits with an optional sign spells. One beyond all 64-bit numbers is
// brought just beyond them. None for other texts.
inline std::optional<Integer> readInteger(std::string_view text) {
    const bool negative = !text.empty() && text.front() == '-';
    if (!text.empty() && (text.front() == '-' || text.front() == '+')) text.remove_prefix(1);
    if (text.empty()) return std::nullopt;
    constexpr Integer kBeyond = Integer{1} << 65;
    Integer number = 0;
    for (const char digit : text) {
        if (digit < '0' || digit > '9') return std::nullopt;
        number = std::min<Integer>(number * 10 + (digit - '0'), kBeyond);
    }
    return negative ? -number : number;
}

inline std::string toText(Integer number) {
    std::string digits;
    for (Integer rest = number < 0 ? -number : number; rest != 0 || digits.empty(); rest /= 10) {
        digits += static_cast<char>('0' + static_cast<int>(rest % 10));
    }
    if (number < 0) digits += '-';
    std::reverse(digits.begin(), digits.end());
    return digits;
}

}  // namespace xsd2c
