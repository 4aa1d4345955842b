// tools/xsd2c/pattern/byte_bracket.h - spells bracket expressions of POSIX for the C locale.
#pragma once

#include <string>

#include "xsd2c/pattern/ere.h"

namespace xsd2c {

// "[...]" with exactly these bytes: more than one, and none is zero.
std::string bracketOf(const ByteSet &bytes);

// "[^...]" with all bytes but these, of which there is one, and zero.
std::string bracketWithout(const ByteSet &bytes);

}  // namespace xsd2c
