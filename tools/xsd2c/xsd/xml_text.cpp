#include "xsd2c/xsd/xml_text.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

#include "text/unicode.h"
#include "text/xml_names.h"

namespace xsd2c {
namespace {

constexpr std::size_t kLongestQuoted = 200;  // bytes

bool isSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

template <std::size_t kCount>
bool isIn(const xml_names::Range (&ranges)[kCount], char32_t code) {
    return std::any_of(std::begin(ranges), std::end(ranges), [code](const xml_names::Range &range) {
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
        const unicode::Char next = unicode::first(text);
        if (!isIn(xml_names::kStart, next.code) && (first || !isIn(xml_names::kRest, next.code)))
            return false;
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
        const unicode::Char next = unicode::first(text);
        const bool control = next.code < 0x20 || (next.code >= 0x7F && next.code < 0xA0);
        if (next.code == unicode::kNone) {
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
