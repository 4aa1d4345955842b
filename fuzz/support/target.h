// fuzz/support/target.h - what every fuzz target defines, called by libFuzzer and by the replay.
#pragma once

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);
