// tools/cxml/diagnostic.h - what is wrong with a document, as compilers tell it.
#pragma once

#include <cstdint>
#include <string>

#include "compactxml.h"
#include "input.h"

namespace tool {

// The one error of a parse.
struct ParseError {
    int line = 0;    // from 1; 0 when there is no place, as for exhausted memory before the parse
    int column = 0;  // from 1, in characters
    std::uint32_t encoding = 0;  // XML_ENCODING_* that the document was read in
    std::string message;         // of the library
};

// Keeps the error of a parse for whoever runs it: point handler.error at this and handler.userData
// at a ParseError, or at something that begins with one.
void keepError(XML_Parser_Ctx *context, const char *format, ...);

// Whether the parse ended for want of memory, which says nothing of the document.
bool isExhausted(const ParseError &error);

// Prints "FILE:LINE:COLUMN: message" on standard error. Below it, when context is asked for or
// standard error is a terminal, the line of the document and a caret under the column; of a long
// line what stands around the column. Reads the file again, with constant memory.
void reportError(const Input &input, const ParseError &error, bool context);

}  // namespace tool
