// tools/xsd2c/pattern/char_classes.h - the sets of characters that patterns of XML Schema have
// names for.
#pragma once

#include <optional>
#include <string_view>

#include "xsd2c/pattern/char_set.h"

namespace xsd2c {

const CharSet &whiteSpaceChars();    // \s
const CharSet &nameStartChars();     // \i, those of XML 1.0, 2.3 (fifth edition)
const CharSet &nameChars();          // \c
const CharSet &decimalDigitChars();  // \d
const CharSet &wordChars();          // \w
const CharSet &charsWithinLine();    // .

// "L", "Nd"; none for an unknown name.
std::optional<CharSet> charsOfCategory(std::string_view name);

// "BasicLatin": the blocks of XML Schema 1.0 Datatypes, F.1.1.
std::optional<CharSet> charsOfBlock(std::string_view name);

}  // namespace xsd2c
