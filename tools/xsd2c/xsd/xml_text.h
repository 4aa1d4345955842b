// tools/xsd2c/xsd/xml_text.h - UTF-8 text as it stands in attributes of a schema document.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace xsd2c {

// A character of UTF-8 and the bytes that it takes.
struct Utf8Char {
    char32_t code;
    std::size_t length;
};

inline constexpr char32_t kNotUtf8 = 0xFFFFFFFF;

// The character at the beginning of a text, which is not empty; kNotUtf8 and one byte if there is
// none.
Utf8Char firstChar(std::string_view utf8);

// White space as XML Schema 1.0 Datatypes, 4.3.6, collapses it: none at the ends, one blank between words.
std::string collapsed(std::string_view text);

// The words between white space.
std::vector<std::string> words(std::string_view text);

bool isBlank(std::string_view text);

// Whether a text is an NCName (Namespaces in XML, 4).
bool isNcName(std::string_view text);

// A text between quotation marks, for messages: cut if it is long.
std::string quoted(std::string_view text);

// With control characters, and what is not UTF-8, as \xHH.
std::string printable(std::string_view text);

}  // namespace xsd2c
