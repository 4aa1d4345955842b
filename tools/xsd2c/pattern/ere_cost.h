// tools/xsd2c/pattern/ere_cost.h - what an expression costs the C library that compiles it.
#pragma once

#include <string_view>

namespace xsd2c {

inline constexpr char kTooLarge[] = "it would be too large for the C library";

// NoTranslation for an expression that takes too much time or memory, which is known without
// compiling it.
void checkCost(std::string_view ere);

// About how many bytes the compiled form takes.
double estimatedCost(std::string_view ere);

}  // namespace xsd2c
