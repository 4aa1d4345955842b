// schema/same_text.h - whether two texts are equal.
#pragma once

#include <cstring>

namespace cxml {

// As XML_Strcmp, where null counts as "". Most comparisons of a validation are of a name with itself,
// or with one that begins with another letter.
inline bool isSameText(const char *a, const char *b) noexcept {
    if (a == b) return true;
    if (!a) a = "";
    if (!b) b = "";
    return *a == *b && std::strcmp(a, b) == 0;
}

}  // namespace cxml
