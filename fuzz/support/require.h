// fuzz/support/require.h - what must hold for every input.
#pragma once

#include <string>
#include <string_view>

namespace fuzz {

// Prints what does not hold and what is known about it, and ends the program as a finding.
[[noreturn]] void fail(std::string_view text, std::string_view details = {});

inline void require(bool holds, std::string_view text) {
    if (!holds) fail(text);
}

// Prints both if they differ.
void requireSame(const std::string &a, const std::string &b, std::string_view text);

// The same for things that can be written to a stream; the details are made when they are wanted.
template <typename Details>
void requireOr(bool holds, std::string_view text, Details details) {
    if (!holds) fail(text, details());
}

}  // namespace fuzz
