#include "xsd2c/c/c_text.h"

#include <cstdio>

#include "text/unicode.h"

namespace xsd2c {
namespace {

constexpr std::size_t kLineWidth = 100;
constexpr std::size_t kPieceWidth = 72;

bool isPrintable(char c) {
    return c >= 0x20 && c <= 0x7E;
}

std::string octal(char c) {
    char text[8];
    std::snprintf(text, sizeof text, "\\%03o",
                  static_cast<unsigned>(static_cast<unsigned char>(c)));
    return text;
}

// A byte within a literal that ends in `quote`.
std::string escaped(char c, char quote) {
    if (!isPrintable(c)) return octal(c);
    if (c == quote || c == '\\') return {'\\', c};
    return {c};
}

// Two characters that must not stand side by side in a comment.
bool clash(char a, char b) {
    return (a == '*' && b == '/') || (a == '/' && b == '*') || (a == '?' && b == '?');
}

}  // namespace

std::string asciiOf(std::string_view utf8) {
    std::string result;
    result.reserve(utf8.size());
    while (!utf8.empty()) {
        const auto [code, length] = unicode::first(utf8);
        if (length == 1 && isPrintable(utf8[0])) {
            result += utf8[0];
        } else {
            char text[16];
            const bool known = code != unicode::kNone;
            const unsigned long number = known ? code : static_cast<unsigned char>(utf8[0]);
            std::snprintf(text, sizeof text, known ? "u%04lX" : "x%02lX", number);
            result += text;
        }
        utf8.remove_prefix(length);
    }
    return result;
}

std::string commentText(std::string_view utf8) {
    std::string result;
    for (const char c : asciiOf(utf8)) {
        if (!result.empty() && clash(result.back(), c)) result += ' ';
        result += c;
    }
    return result;
}

std::vector<std::string> literalPieces(std::string_view bytes) {
    std::vector<std::string> pieces{"\""};
    char before = '\0';
    for (const char c : bytes) {
        if (pieces.back().size() >= kPieceWidth) {
            pieces.back() += '"';
            pieces.push_back("\"");
        }
        // One question mark is harmless, and patterns are full of them.
        if (c == '?' && before == '?') pieces.back() += '\\';
        pieces.back() += escaped(c, '"');
        before = c;
    }
    pieces.back() += '"';
    return pieces;
}

std::string charLiteral(char byte) {
    return "'" + escaped(byte, '\'') + "'";
}

void WordWrap::add(std::string_view word) {
    if (!first_ && column_ + 1 + word.size() > kLineWidth) {
        out_ += '\n';
        out_.append(indentation_, ' ');
        column_ = indentation_;
    } else if (!first_) {
        out_ += ' ';
        ++column_;
    }
    out_ += word;
    column_ += word.size();
    first_ = false;
}

}  // namespace xsd2c
