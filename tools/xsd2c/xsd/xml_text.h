// tools/xsd2c/xsd/xml_text.h - UTF-8 text as it stands in attributes of a schema document.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace xsd2c {

// White space as XML Schema 1.0 Datatypes, 4.3.6, collapses it: none at the ends, one blank between
// words.
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
