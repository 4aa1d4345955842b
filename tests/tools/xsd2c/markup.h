// tests/tools/xsd2c/markup.h - where the elements and attributes of a document stand in its text.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace examples {

// Offsets into the text.
struct AttributeMarkup {
    std::size_t begin;  // of its name
    std::size_t nameEnd;
    std::size_t valueBegin;  // behind the quotation mark
    std::size_t valueEnd;    // before the other one
};

struct ElementMarkup {
    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

    std::size_t parent = kNone;  // its index; kNone for the root
    std::size_t begin = 0;       // "<" of the start tag
    std::size_t nameEnd = 0;
    std::size_t tagEnd = 0;      // behind ">" of the start tag
    std::size_t contentEnd = 0;  // "<" of the end tag
    std::size_t end = 0;         // behind ">" of the end tag
    bool isEmptyTag = false;     // "<a/>": contentEnd and end are tagEnd
    std::vector<AttributeMarkup> attributes;
};

// The elements of a well-formed document in UTF-8 without a document type declaration, in document
// order. Throws std::runtime_error where it cannot be followed.
std::vector<ElementMarkup> elementsOf(std::string_view document);

}  // namespace examples
