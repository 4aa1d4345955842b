// schema/pattern_automaton.h - matches a pattern with an automaton that is made while it is used.
#pragma once

#include <cstddef>
#include <cstdint>

#include "io/memory.h"
#include "schema/pattern_program.h"

namespace cxml {

// What automata need while they make a state, and one after the other can use.
struct PatternScratch {
    GrowingArray<std::uint64_t> reached;  // a bit for each node; all clear in between
    GrowingArray<std::uint16_t> stack;    // nodes whose ways are still to be followed
};

// Answers as regexec does in the C locale, many times faster: a text costs one look-up for each of
// its bytes once its states are there. A state stands for all steps of the program that can be reached
// by one beginning of a text; it is made when the first text gets there, as is the program.
class PatternAutomaton {
  public:
    enum class Answer : std::uint8_t { kNo, kYes, kUnknown };

    // Whether characters are bytes, in order of their numbers, in the calling thread as things are.
    static bool suitsLocale() noexcept;

    // For texts of those bytes, and a pattern that stays.
    PatternAutomaton(const char *pattern, PatternBytes bytes, PatternScratch &scratch) noexcept
        : pattern_(pattern), scratch_(scratch), bytes_(bytes) {}

    // kUnknown for what readPattern does not read, for want of memory and when too many states would
    // be needed.
    Answer match(const char *text) noexcept;

  private:
    enum class Compiled : std::uint8_t { kNot, kGood, kBad };
    struct State {
        std::uint32_t hash;
        std::uint32_t first, count;  // its nodes among the members
    };

    [[gnu::cold]] bool compile() noexcept;
    [[gnu::cold]] bool provideScratch() noexcept;
    [[gnu::cold]] void divideBytes() noexcept;
    [[gnu::noinline]] std::uint16_t follow(std::uint16_t row, unsigned byteClass) noexcept;
    [[gnu::noinline]] void reach(std::uint16_t node) noexcept;
    [[gnu::noinline]] std::uint16_t stateOfReached() noexcept;
    [[gnu::cold]] std::uint16_t addState(const State &state) noexcept;
    bool takes(const PatternNode &node, unsigned byte) noexcept;

    const char *pattern_;
    PatternProgram program_;
    // For each state a row: for each class of bytes the row that follows, and whether it accepts.
    GrowingArray<std::uint16_t> rows_;
    GrowingArray<State> states_;
    GrowingArray<std::uint16_t> members_;
    PatternScratch &scratch_;
    std::uint32_t width_ = 0;  // of a row
    PatternBytes bytes_;
    Compiled compiled_ = Compiled::kNot;
    std::uint8_t classOf_[256];  // bytes that no node tells apart have one class
    std::uint8_t sample_[256];   // a byte of each class
};

}  // namespace cxml
