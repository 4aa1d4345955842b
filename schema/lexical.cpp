#include "schema/lexical.h"

#include <array>
#include <cstdint>
#include <cstring>

namespace cxml {
namespace {

enum : std::uint8_t { kDigit = 1, kHexDigit = 2, kBase64Symbol = 4 };

consteval auto makeClasses() {
    std::array<std::uint8_t, 256> table{};
    const auto add = [&table](char first, char last, std::uint8_t bits) {
        for (int c = first; c <= last; ++c) {
            auto &entry = table[static_cast<std::size_t>(c)];
            entry = static_cast<std::uint8_t>(entry | bits);
        }
    };
    add('0', '9', kDigit | kHexDigit | kBase64Symbol);
    add('A', 'F', kHexDigit);
    add('a', 'f', kHexDigit);
    add('A', 'Z', kBase64Symbol);
    add('a', 'z', kBase64Symbol);
    add('/', '/', kBase64Symbol);
    add('+', '+', kBase64Symbol);
    return table;
}
constexpr auto kClasses = makeClasses();

bool is(char c, std::uint8_t classes) {
    return (kClasses[static_cast<unsigned char>(c)] & classes) != 0;
}

// The first byte that is of none of these classes; the final NUL is of none.
const char *skip(const char *text, std::uint8_t classes) {
    while (is(*text, classes)) ++text;
    return text;
}

// Behind a number of 1 to most digits and the letter that ends it, or null.
const char *skipPart(const char *text, int most, char letter) {
    const char *end = skip(text, kDigit);
    return end != text && end - text <= most && *end == letter ? end + 1 : nullptr;
}

bool isAllOf(const char *text, std::uint8_t classes) {
    const char *end = skip(text, classes);
    return end != text && *end == '\0';
}

}  // namespace

bool matchesAnything(const char *text) noexcept {
    return *text != '\0';
}

bool matchesUnsignedInteger(const char *text) noexcept {
    return isAllOf(text, kDigit);
}

bool matchesSignedInteger(const char *text) noexcept {
    // Intended: the pattern's set of signs holds "|" too.
    if (*text == '+' || *text == '-' || *text == '|') ++text;
    return isAllOf(text, kDigit);
}

bool matchesBoolean(const char *text) noexcept {
    switch (*text) {
        case '0':
        case '1':
            return text[1] == '\0';
        case 't':
            return std::strcmp(text, "true") == 0;
        case 'f':
            return std::strcmp(text, "false") == 0;
        default:
            return false;
    }
}

bool matchesHexBinary(const char *text) noexcept {
    return isAllOf(text, kHexDigit);
}

bool matchesBase64Binary(const char *text) noexcept {
    const char *end = skip(text, kBase64Symbol);
    const auto inLastGroup = (end - text) % 4;
    const char *padding = inLastGroup == 2 ? "==" : inLastGroup == 3 ? "=" : "";
    return inLastGroup != 1 && std::strcmp(end, padding) == 0;
}

bool matchesAnyUri(const char *text) noexcept {
    if (*text == '\0' || *text == ':') return false;
    const char *colon = std::strchr(text, ':');
    if (colon) return colon[1] != '\0' && !std::strchr(colon + 1, ':');
    // Without a colon the divider is a slash that is neither the first nor the last byte.
    const char *slash = std::strchr(text + 1, '/');
    return slash && slash[1] != '\0';
}

bool matchesDuration(const char *text) noexcept {
    if (*text++ != 'P') return false;
    if (!(text = skipPart(text, 4, 'Y'))) return false;
    if (!(text = skipPart(text, 5, 'M'))) return false;
    if (!(text = skipPart(text, 5, 'D'))) return false;
    if (*text++ != 'T') return false;
    if (!(text = skipPart(text, 5, 'H'))) return false;
    if (!(text = skipPart(text, 5, 'M'))) return false;
    return (text = skipPart(text, 5, 'S')) && *text == '\0';
}

const char *skipShape(const char *text, const char *shape) noexcept {
    for (; *shape != '\0'; ++shape, ++text) {
        const auto asked = static_cast<unsigned char>(*shape);
        const auto found = static_cast<unsigned char>(*text);
        // What is less than asked for is a digit below a digit, or nothing that fits.
        if (found > asked || (found != asked && (found < '0' || asked > '9'))) return nullptr;
    }
    return text;
}

}  // namespace cxml
