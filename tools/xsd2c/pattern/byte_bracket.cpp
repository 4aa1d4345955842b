#include "xsd2c/pattern/byte_bracket.h"

#include <cstddef>
#include <string_view>

namespace xsd2c {
namespace {

// What has a meaning in brackets unless it stands in a certain place, or lies within a range.
constexpr std::string_view kSpecials = "[]^-";

bool isSpecial(std::size_t byte) {
    return byte < 0x80 && kSpecials.find(static_cast<char>(byte)) != kSpecials.npos;
}

void appendRun(std::string &result, std::size_t first, std::size_t last) {
    result += static_cast<char>(first);
    if (last > first + 1) result += '-';
    if (last > first) result += static_cast<char>(last);
}

// The bytes in the order in which none means anything else: "]" is first; "[" has none of ".:="
// behind it; "-" is last; and "^" stands behind another one, or behind "-", which then is first.
// Alone it has no place in "[...]": Ere writes single bytes without brackets.
std::string contentsOf(const ByteSet &bytes) {
    std::string runs;
    ByteSet specials;
    for (std::size_t first = 1; first < bytes.size(); ++first) {
        if (!bytes[first]) continue;
        std::size_t last = first;
        while (last + 1 < bytes.size() && bytes[last + 1]) ++last;
        const std::size_t next = last;
        while (first <= last && isSpecial(first)) specials.set(first++);
        while (first < last && isSpecial(last)) specials.set(last--);
        if (first <= last) appendRun(runs, first, last);
        first = next;
    }
    const auto special = [&](char byte) {
        return std::string(specials[static_cast<unsigned char>(byte)] ? 1 : 0, byte);
    };
    const std::string result = special(']') + runs + special('[');
    return result.empty() ? special('-') + special('^') : result + special('^') + special('-');
}

}  // namespace

std::string bracketOf(const ByteSet &bytes) {
    return "[" + contentsOf(bytes) + "]";
}

std::string bracketWithout(const ByteSet &bytes) {
    return "[^" + contentsOf(bytes) + "]";
}

}  // namespace xsd2c
