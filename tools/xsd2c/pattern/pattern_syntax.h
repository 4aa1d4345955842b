// tools/xsd2c/pattern/pattern_syntax.h - reads regular expressions of XML Schema (1.0 Datatypes,
// appendix F).
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "xsd2c/pattern/char_set.h"

namespace xsd2c {

// An expression. Groups are no nodes of their own, and nest to a limit: so do nodes.
struct PatternNode {
    enum class Kind { kChars, kSequence, kChoice, kRepeat };
    Kind kind = Kind::kSequence;
    std::shared_ptr<const CharSet> chars;  // kChars: one of these; there may be none
    std::vector<PatternNode> children;     // kSequence, kChoice; kRepeat: one
    std::uint64_t least = 0;               // kRepeat
    std::optional<std::uint64_t> most;
};

// How deep groups may nest, and classes within classes.
inline constexpr int kMostNestedGroups = 250;

// Reads UTF-8; BadPattern, with the number of the character, where it is no such expression.
PatternNode parsePattern(std::string_view utf8);

}  // namespace xsd2c
