// schema/pattern_program.h - the steps of a regular expression, for an automaton over bytes.
#pragma once

#include <cstddef>
#include <cstdint>

#include "io/memory.h"

namespace cxml {

struct ByteSet {
    std::uint64_t bits[4];

    bool has(unsigned byte) const noexcept { return (bits[byte / 64] >> byte % 64 & 1) != 0; }
    void add(unsigned byte) noexcept { bits[byte / 64] |= std::uint64_t{1} << byte % 64; }
    void addRange(unsigned first, unsigned last) noexcept {
        for (unsigned word = first / 64; word <= last / 64; ++word) {
            const std::uint64_t from =
                word == first / 64 ? ~std::uint64_t{0} << first % 64 : ~std::uint64_t{0};
            const std::uint64_t to =
                word == last / 64 ? ~std::uint64_t{0} >> (63 - last % 64) : ~std::uint64_t{0};
            bits[word] |= from & to;
        }
    }
};

// One step. Those that take a byte go on at next.
struct PatternNode {
    enum Kind : std::uint8_t {
        kRange,   // takes a byte from first to last
        kSet,     // takes a byte of the set with the number other
        kSplit,   // goes on at next and at other, without a byte
        kJump,    // goes on at next, without a byte
        kAccept,  // the end
    };
    Kind kind;
    std::uint8_t first, last;
    std::uint16_t next;
    std::uint16_t other;
};

struct PatternProgram {
    GrowingArray<PatternNode> nodes;
    GrowingArray<ByteSet> sets;
    std::uint16_t start = 0;
};

// What texts a program is for. Most are of ASCII alone; where a pattern lists characters beyond it,
// which takes hundreds of sets, a program for ASCII is a small part of the whole.
enum class PatternBytes : std::uint8_t { kAscii, kAll };

// Reads a POSIX extended regular expression as the C library does in the C locale, where a character
// is a byte. It is not anchored; what lets it begin and end anywhere is part of the program. False for
// anything that is out of the ordinary (references, classes by name, anchors within, quantifiers in odd
// places, mistakes) even where it is of no consequence for such texts, for what would need too many
// steps, and for want of memory.
bool readPattern(const char *pattern, PatternBytes bytes, PatternProgram *out) noexcept;

}  // namespace cxml
