// tools/cxml/text.h - text between the terminal (UTF-8) and the tree (GB18030).
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tool {

// Converts UTF-8 to the tree's GB18030. Fails with kTrouble and "NAME is not UTF-8 text: ..." for
// anything else; name tells what the text is, such as "the path".
std::string toTree(std::string_view utf8, std::string_view name);

// Converts the tree's GB18030 to UTF-8. Bytes that are not GB18030 come out as U+FFFD.
std::string toUtf8(std::string_view treeText);
std::string toUtf8(const char *treeText);  // null gives ""

// UTF-8 that is safe to print: bytes that are not UTF-8 become U+FFFD, and control characters
// (C0, DEL and C1), with which a document could command the terminal, are shown as \n, \t, \r or
// \xHH.
std::string printable(std::string_view utf8);

// How many cells of a terminal a line of UTF-8 takes: two for wide characters (CJK, Hangul,
// full-width forms, emoji), none for combining ones.
std::size_t displayWidth(std::string_view utf8);

}  // namespace tool
