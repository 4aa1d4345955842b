// tools/xsd2c/pattern/gb18030_classes.h - a set of characters as an expression over the bytes of
// GB18030.
#pragma once

#include "xsd2c/pattern/char_set.h"
#include "xsd2c/pattern/ere.h"

namespace xsd2c {

// An expression that matches one character of the set and no other one, where a character begins.
//   asciiOnly  texts are ASCII: it may match anything else, too
Ere ereOfChars(const CharSet &chars, bool asciiOnly);

}  // namespace xsd2c
