// tests/support/growth.h - whether work grows as its input does, by the processor time it takes.
#pragma once

#include <gtest/gtest.h>
#include <time.h>

#include <algorithm>

#include "tests/support/small_stack.h"

namespace support {

inline double processorSeconds() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

inline constexpr double kLongEnough = 2;  // seconds

template <typename Work>
double bestOfThree(Work work) {
    double best = 0;
    for (int run = 0; run < 3; ++run) {
        const double start = processorSeconds();
        work();
        const double taken = processorSeconds() - start;
        best = run == 0 ? taken : std::min(best, taken);
        if (taken > kLongEnough) break;  // no chance hit is so long
    }
    return best;
}

// Whether a job of 8n took less than 20 times as long as one of n; linear work takes 8 times. A few
// milliseconds (tooShort, in seconds) prove nothing and pass: squares of the sizes in use take
// seconds.
template <typename Short, typename Long>
testing::AssertionResult growsLinearly(Short shortJob, Long longJob, double tooShort = 4e-3) {
    constexpr double kLimit = 20;
    if constexpr (kSanitized) {
        // Instrumented code takes its own time; what it finds does not hang on that.
        shortJob();
        longJob();
        return testing::AssertionSuccess();
    }
    double shortTime = 0;
    double longTime = 0;
    for (int round = 0; round < 3 && longTime < kLongEnough; ++round) {
        shortTime = bestOfThree(shortJob);
        longTime = bestOfThree(longJob);
        if (longTime < tooShort || longTime < kLimit * shortTime) {
            return testing::AssertionSuccess();
        }
    }
    return testing::AssertionFailure()
           << shortTime * 1e3 << " ms for n, " << longTime * 1e3 << " ms for 8n";
}

}  // namespace support
