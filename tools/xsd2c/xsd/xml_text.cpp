#include "xsd2c/xsd/xml_text.h"

#include <algorithm>
#include <iterator>

namespace xsd2c {
namespace {

constexpr std::size_t kLongestQuoted = 200;  // bytes

bool isSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

struct Range {
    char32_t first;
    char32_t last;
};

// XML 1.0, 2.3: where a name begins, without the colon. In order.
constexpr Range kNameStart[] = {
    {'A', 'Z'},       {'_', '_'},       {'a', 'z'},       {0xC0, 0xD6},     {0xD8, 0xF6},
    {0xF8, 0x2FF},    {0x370, 0x37D},   {0x37F, 0x1FFF},  {0x200C, 0x200D}, {0x2070, 0x218F},
    {0x2C00, 0x2FEF}, {0x3001, 0xD7FF}, {0xF900, 0xFDCF}, {0xFDF0, 0xFFFD}, {0x10000, 0xEFFFF},
};
// What may follow besides.
constexpr Range kNameRest[] = {
    {'-', '.'}, {'0', '9'}, {0xB7, 0xB7}, {0x300, 0x36F}, {0x203F, 0x2040},
};

template <std::size_t kCount>
bool isIn(const Range (&ranges)[kCount], char32_t code) {
    return std::any_of(std::begin(ranges), std::end(ranges), [code](const Range &range) {
        return range.first <= code && code <= range.last;
    });
}

void appendEscape(std::string &result, unsigned char byte) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    result += "\\x";
    result += kDigits[byte >> 4];
    result += kDigits[byte & 0xF];
}

}  // namespace

Utf8Char firstChar(std::string_view utf8) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(utf8[i]); };
    constexpr Utf8Char kNone = {kNotUtf8, 1};
    const unsigned char lead = byte(0);
    if (lead < 0x80) return {lead, 1};
    if (lead < 0xC2 || lead > 0xF4) return kNone;
    const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    if (utf8.size() < length) return kNone;
    char32_t code = lead & (0xFFu >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0) != 0x80) return kNone;
        code = code << 6 | (byte(i) & 0x3Fu);
    }
    constexpr char32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
    const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
    if (code < kLeast[length] || code > 0x10FFFF || surrogate) return kNone;
    return {code, length};
}

std::string collapsed(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    bool pending = false;
    for (const char c : text) {
        if (isSpace(c)) {
            pending = !result.empty();
            continue;
        }
        if (pending) result += ' ';
        pending = false;
        result += c;
    }
    return result;
}

std::vector<std::string> words(std::string_view text) {
    std::vector<std::string> result;
    bool within = false;
    for (const char c : text) {
        if (isSpace(c)) {
            within = false;
            continue;
        }
        if (!within) result.emplace_back();
        within = true;
        result.back() += c;
    }
    return result;
}

bool isBlank(std::string_view text) {
    return std::all_of(text.begin(), text.end(), isSpace);
}

bool isNcName(std::string_view text) {
    if (text.empty()) return false;
    for (bool first = true; !text.empty(); first = false) {
        const Utf8Char next = firstChar(text);
        if (!isIn(kNameStart, next.code) && (first || !isIn(kNameRest, next.code))) return false;
        text.remove_prefix(next.length);
    }
    return true;
}

std::string quoted(std::string_view text) {
    if (text.size() <= kLongestQuoted) return "'" + std::string(text) + "'";
    std::size_t length = kLongestQuoted;
    while (length > 0 && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80) --length;
    return "'" + std::string(text.substr(0, length)) + "...'";
}

std::string printable(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const Utf8Char next = firstChar(text);
        const bool control = next.code < 0x20 || (next.code >= 0x7F && next.code < 0xA0);
        if (next.code == kNotUtf8) {
            appendEscape(result, static_cast<unsigned char>(text.front()));
        } else if (control) {
            appendEscape(result, static_cast<unsigned char>(next.code));
        } else {
            result += text.substr(0, next.length);
        }
        text.remove_prefix(next.length);
    }
    return result;
}

}  // namespace xsd2c
