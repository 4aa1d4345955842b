// threads ROUNDS: eight threads with documents of their own against one root, while another root is
// prepared, filled, used and emptied again and again. Each must find what one thread alone finds.
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "tests/threads/jobs.h"

// The C library loads and unloads its conversions under a lock of its own, which ThreadSanitizer does
// not see.
extern "C" const char *__tsan_default_suppressions();
extern "C" const char *__tsan_default_suppressions() {
    return "race:_dl_close_worker\n";
}

namespace {

constexpr std::size_t kThreads = 8;

int fail(const char *what, std::size_t number) {
    std::fprintf(stderr, "threads: %s (%zu)\n", what, number);
    return 1;
}

}  // namespace

int main(int count, char **arguments) {
    const int rounds = count > 1 ? std::atoi(arguments[1]) : 100;
    const threads::FilledRoot shared;
    if (!shared.filled()) return fail("the root is not filled", 0);
    std::vector<std::string> alone;
    for (std::size_t i = 0; i < kThreads; ++i) alone.push_back(threads::doJobs(i, shared.get()));
    for (std::size_t i = 1; i < kThreads; ++i) {
        if (alone[i] == alone[i - 1]) return fail("two threads would do the same", i);
        if (alone[i].find("not built") != std::string::npos) return fail("no tree", i);
    }

    std::atomic<bool> running = true;
    std::atomic<std::size_t> others = 0, differences = 0;
    std::thread preparing([&] {
        while (running || others == 0) {
            const threads::FilledRoot other;
            if (!other.filled() || threads::doJobs(0, other.get()) != alone[0]) ++differences;
            ++others;
        }
    });
    std::vector<std::thread> workers;
    for (std::size_t i = 0; i < kThreads; ++i) {
        workers.emplace_back([&, i] {
            for (int round = 0; round < rounds; ++round) {
                if (threads::doJobs(i, shared.get()) != alone[i]) ++differences;
            }
        });
    }
    for (std::thread &worker : workers) worker.join();
    running = false;
    preparing.join();
    std::printf("%zu threads, %d rounds, %zu other roots\n", kThreads, rounds, others.load());
    return differences == 0 ? 0 : fail("results differ", differences);
}
