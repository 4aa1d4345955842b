// source_texts.h - the messages that the library's source holds, so that none is left out.
#pragma once
#include <set>
#include <string>
#include <vector>

namespace messages {

// The fixed parts of a message, in order; between them stand names and values.
using Pieces = std::vector<std::string>;

// The messages among the string literals of C++ source: those that hold a blank, put together where they
// stand between the same braces.
std::set<Pieces> messagesOf(const std::string &source);

// The same of all files of a directory that end in ".cpp", but for the one that is left out.
std::set<Pieces> messagesIn(const std::string &directory, const std::string &leftOut);

// Whether a text may be this message.
bool fits(const Pieces &message, const std::string &text);

// Of the messages that a text may be, the one with the most fixed text; empty if there is none.
Pieces kindOf(const std::set<Pieces> &known, const std::string &text);

}  // namespace messages
