// tools/xsd2c/c/c_text.h - texts within C code.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace xsd2c {

// UTF-8 as printable ASCII: another character becomes "u" and its number, as in "u7AEF", a byte
// that is not UTF-8 "x" and two digits.
std::string asciiOf(std::string_view utf8);

// UTF-8 as it may stand within a comment: what begins or ends a comment, or a trigraph, is divided
// by a blank.
std::string commentText(std::string_view utf8);

// A string literal for bytes, in one or more pieces, none much wider than a line: all of printable
// ASCII but for octal escapes, no trigraph in it.
std::vector<std::string> literalPieces(std::string_view bytes);

// The longest text that every compiler of C11 takes as one string literal (C11, 5.2.4.1).
inline constexpr std::size_t kLongestLiteral = 4095;

// The same for one byte: 'a'.
std::string charLiteral(char byte);

// Writes words to a text, with blanks and line breaks between them.
class WordWrap {
  public:
    // The words begin at the end of a line that has this many columns already.
    WordWrap(std::string &out, std::size_t column, std::size_t indentation)
        : out_(out), column_(column), indentation_(indentation) {}

    void add(std::string_view word);

  private:
    std::string &out_;
    std::size_t column_;
    std::size_t indentation_;  // of further lines
    bool first_ = true;
};

}  // namespace xsd2c
