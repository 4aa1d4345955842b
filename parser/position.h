// parser/position.h - line and column of what has been read, counted with little work.
#pragma once

#include <cstddef>
#include <cstdint>

#include "io/byte_scan.h"

namespace cxml {

// The column is that of counted. From there to the read position every byte is one column more,
// but for line breaks and characters of several bytes, which are told of: so most steps need not
// count. Both are unsigned: a document of 4 GB wraps them, which is no undefined behaviour.
struct Position {
    std::uint32_t line;
    std::uint32_t column;
    const Byte *counted;

    // A line ends before p.
    void beginLine(const Byte *p) {
        ++line;
        column = 1;
        counted = p;
    }
    // Characters that take more bytes than one each have been passed.
    void discount(std::size_t bytes, std::size_t characters) {
        column -= static_cast<std::uint32_t>(bytes - characters);
    }
    // Counts up to p, in the same buffer.
    void settle(const Byte *p) {
        column += static_cast<std::uint32_t>(p - counted);
        counted = p;
    }
};

// Passes over a line break or a tab at p, counting it, and returns what follows. p is in the
// buffer.
inline const Byte *passBlankControl(Position *position, const Byte *p, const Byte *end) {
    const Byte b = *p++;
    // CR LF is one line break, counted at the LF.
    if (b == '\n' || (b == '\r' && (p == end || *p != '\n'))) position->beginLine(p);
    return p;
}

}  // namespace cxml
