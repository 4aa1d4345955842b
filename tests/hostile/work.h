// tests/hostile/work.h - the work that the library does, counted rather than timed.
//
// The library's objects in this program call in at each basic block, and its calls of the C library
// are counted with the bytes that they go through. The count hangs on no clock and no other process,
// so that small inputs show how it grows. What is not seen is the C library's own work on a regular
// expression, which counts as a pass over the text.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>

namespace hostile {

std::uint64_t workSoFar();

struct Effort {
    std::size_t bytes;   // of the input
    std::uint64_t work;  // one for a basic block
};

// Does the job for an input of so many bytes.
template <typename Job>
Effort effortOf(std::size_t bytes, Job job) {
    const std::uint64_t before = workSoFar();
    job();
    return {bytes, workSoFar() - before};
}

// Whether the work for each byte is no more than twice as much for an input eight times as long. For
// the square of the input it would be eight times as much.
testing::AssertionResult staysLevel(const Effort &one, const Effort &eight);

inline constexpr std::size_t kGrowth = 8;

// The same for inputs that make(n) gives: records with size() in bytes and run().
template <typename Make>
testing::AssertionResult staysLevel(std::size_t n, Make make) {
    auto one = make(n);
    auto eight = make(kGrowth * n);
    return staysLevel(effortOf(one.size(), [&] { one.run(); }),
                      effortOf(eight.size(), [&] { eight.run(); }));
}

}  // namespace hostile
