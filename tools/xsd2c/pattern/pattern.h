// tools/xsd2c/pattern/pattern.h - regular expressions of XML Schema as POSIX extended ones over the
// bytes of GB18030 text.
//
// What comes out is meant for the C locale, in which every byte is a character. It needs neither
// anchors nor brackets around it unless a function says so: an "inner" expression can stand within
// another one, a "whole" one is "^(...)$" and goes into a facet.
#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace xsd2c {

// The text is no regular expression of XML Schema; what() says why, without a full stop.
class BadPattern : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

// It is one, but the C library can hold no exact translation; what() says why.
class NoTranslation : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct Translated {
    std::string inner;   // GB18030
    bool ascii = false;  // no value with a character above U+007F matches
};

// Translates the patterns of one derivation step, of which one has to match.
//   patterns   UTF-8
//   asciiOnly  values are known to be ASCII, so that classes need nothing above U+007F
Translated translatePatterns(const std::vector<std::string> &patterns, bool asciiOnly);

// The same for items of lists: of the values that match, those that are not empty and hold no white
// space.
Translated translateItemPatterns(const std::vector<std::string> &patterns, bool asciiOnly);

// "^(inner)$". NoTranslation for what the C library would need too much time or memory to compile.
std::string wholePattern(std::string_view inner);

// One literal text (UTF-8) as an inner expression.
std::string literalPattern(std::string_view utf8);

// From least to most characters of any kind; no most is no limit. Whole; NoTranslation when the
// expression would be too large.
std::string lengthPattern(std::uint64_t least, std::optional<std::uint64_t> most);

// From least to most octets of a base64Binary, which stands without white space. Whole.
std::string base64LengthPattern(std::uint64_t least, std::optional<std::uint64_t> most);

// The lexical spaces of built-in types as inner expressions: "decimal", "float", "double", "token",
// "normalizedString", "NMTOKEN", "Name", "NCName", "ID", "IDREF", "ENTITY", "NOTATION", and the
// lists "NMTOKENS", "IDREFS", "ENTITIES". Empty for others.
std::string lexicalPattern(std::string_view builtin);

// At most so many digits in all, or behind the point, as XML Schema counts them; for values that
// are decimal or integer by another check. Whole.
std::string totalDigitsPattern(std::uint64_t digits);
std::string fractionDigitsPattern(std::uint64_t digits);

// Decimals that compare with a bound, which is a decimal itself; for values that are decimals by
// another check. Whole.
enum class Bound { kMinInclusive, kMinExclusive, kMaxInclusive, kMaxExclusive };
std::string decimalBoundPattern(Bound bound, std::string_view value);

// All spellings of a decimal number. Inner.
std::string decimalValuePattern(std::string_view value);

// All spellings ("+7", "007") of the integers from least to most, which are integers themselves.
// Inner.
std::string integerRangePattern(std::string_view least, std::string_view most);

// A list of so many items, divided by white space and with white space around it as it comes. An
// item is not empty and holds no white space. Whole.
std::string listPattern(std::string_view item, std::uint64_t least,
                        std::optional<std::uint64_t> most);

// Compiles a whole expression as the validator will. Returns "" or what the C library says.
std::string patternError(const std::string &pattern);

}  // namespace xsd2c
