#include <cstddef>
#include <cstdint>
#include <cstring>

#include "schema/network_type.h"

namespace cxml {
namespace {

constexpr std::uint64_t kEnd = std::uint64_t{1} << 32;  // numbers stay below, whatever the type

// Reads a number of 1 to most digits and moves *text behind it. False, with *text anywhere, if
// there is none or it has more digits.
bool readNumber(const char **text, int most, std::uint64_t *number) {
    const char *const begin = *text;
    *number = 0;
    while (**text >= '0' && **text <= '9' && *text - begin <= most) {
        *number = *number * 10 + static_cast<std::uint64_t>(*(*text)++ - '0');
    }
    return *text != begin && *text - begin <= most;
}

}  // namespace

bool isRangeList(const char *value, std::uint64_t greatest, std::size_t maxLength) noexcept {
    if (::strnlen(value, maxLength) == maxLength && value[maxLength] != '\0') return false;
    if (greatest >= kEnd) greatest = kEnd - 1;
    // Item by item, which is longer than any list needs to be looked at: "1234567890-1234567890".
    constexpr int kMostDigits = 10;
    for (const char *text = value;; ++text) {
        std::uint64_t first = 0, last = 0;
        if (!readNumber(&text, kMostDigits, &first)) return false;
        last = first;
        if (*text == '-' && !readNumber(&++text, kMostDigits, &last)) return false;
        if (first == 0 || first > last || last > greatest) return false;
        if (*text == '\0') return true;
        if (*text != ',') return false;
    }
}

bool isObjectIdentifier(const char *value) noexcept {
    constexpr int kMostArcs = 128, kMostDigits = 10;
    int arcs = 0;
    for (const char *text = value;; ++text) {
        std::uint64_t arc = 0;
        if (!readNumber(&text, kMostDigits, &arc) || arc >= kEnd) return false;
        if (++arcs > kMostArcs) return false;
        if (*text == '\0') return true;
        if (*text != '.') return false;
    }
}

}  // namespace cxml
