// tools/cxml/source_line.h - the line of a document that a message points at.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace tool {

struct SourceLine {
    std::string text;       // printable UTF-8 without a line break
    std::size_t caret = 0;  // cells before the column
};

// Reads a line of a file as the parser counts them: CR LF, CR and LF each end one. Of a long line
// what stands around the column, 79 cells at most, with "..." where something is left out. Constant
// memory. The encoding (XML_ENCODING_*) is what the parse ended in. Nothing when the file cannot
// be read or ends before the line.
std::optional<SourceLine> readSourceLine(const std::string &path, std::uint32_t encoding, int line,
                                         int column);

}  // namespace tool
