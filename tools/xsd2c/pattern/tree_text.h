// tools/xsd2c/pattern/tree_text.h - texts of a schema in the encoding in which trees are held.
#pragma once

#include <string>
#include <string_view>

namespace xsd2c {

// Converts UTF-8, as the parser gives it, to GB18030, which has a form for each of its characters.
std::string toTreeText(std::string_view utf8);

}  // namespace xsd2c
