// schema/lexical.h - the spellings of built-in values, as scanners.
//
// Each function accepts what the pattern in its comment matches as a POSIX extended regular
// expression in the C locale, and does so in every locale: no text of bytes above 127 changes its
// meaning when a program sets one. None allocates, and each reads its text once.
#pragma once

namespace cxml {

inline bool isDigit(char c) noexcept {
    return c >= '0' && c <= '9';
}

bool matchesAnything(const char *text) noexcept;         // .
bool matchesSignedInteger(const char *text) noexcept;    // ^[+|-]?[0-9]+$
bool matchesUnsignedInteger(const char *text) noexcept;  // ^[0-9]+$
bool matchesBoolean(const char *text) noexcept;          // ^(1|true|0|false)$
bool matchesHexBinary(const char *text) noexcept;        // ^[0-9A-Fa-f]+$
// ^([a-zA-Z0-9/+]{4})*([a-zA-Z0-9/+]{2}==|[a-zA-Z0-9/+]{3}=)?$
bool matchesBase64Binary(const char *text) noexcept;
bool matchesAnyUri(const char *text) noexcept;  // ^[^:]+[://][^:]+$
// ^P[0-9]{1,4}Y[0-9]{1,5}M[0-9]{1,5}DT[0-9]{1,5}H[0-9]{1,5}M[0-9]{1,5}S$
bool matchesDuration(const char *text) noexcept;

// Compares a text with a shape, from its beginning: in the shape "9" stands for any digit and "1",
// "2", "3" and "5" for a digit up to that one; everything else stands for itself. Returns what
// follows the shape, or null.
const char *skipShape(const char *text, const char *shape) noexcept;

}  // namespace cxml
