// parser/position.h - line and column of what has been read, counted with little work.
#pragma once

#include <cstddef>
#include <cstdint>

#include "io/byte_scan.h"

namespace cxml {

// The column is that of counted. From there to the read position every byte is one column more,
// but for line breaks and characters of several bytes, which are told of: so most steps need not
// count. No document is long enough to wrap them.
struct Position {
    std::int64_t line;
    std::int64_t column;
    const Byte *counted;

    // A line ends before p.
    void beginLine(const Byte *p) {
        ++line;
        column = 1;
        counted = p;
    }
    // Characters that take more bytes than one each have been passed.
    void discount(std::size_t bytes, std::size_t characters) {
        column -= static_cast<std::int64_t>(bytes - characters);
    }
    // Counts up to p, in the same buffer.
    void settle(const Byte *p) {
        column += p - counted;
        counted = p;
    }
};

// A line or column as callers see it: beyond 31 bits it stays at the greatest number there is.
constexpr std::int32_t shownNumber(std::int64_t number) {
    return number < INT32_MAX ? static_cast<std::int32_t>(number) : INT32_MAX;
}

// Passes over a line break or a tab at p, counting it, and returns what follows. p is in the
// buffer.
inline const Byte *passBlankControl(Position *position, const Byte *p, const Byte *end) {
    const Byte b = *p++;
    // CR LF is one line break, counted at the LF.
    if (b == '\n' || (b == '\r' && (p == end || *p != '\n'))) position->beginLine(p);
    return p;
}

}  // namespace cxml
