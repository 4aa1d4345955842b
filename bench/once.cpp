#include "once.h"

#include <algorithm>
#include <cstdio>

[[gnu::noinline]] bool bench_measured_run(bench::Work &work) {
    const bool ok = work.run();
    asm volatile("" ::: "memory");  // so that run() is called from here, not jumped to
    return ok;
}

namespace bench {
namespace {

bool runWarm(Work &work) {
    work.refresh();
    if (!work.run()) return false;
    work.refresh();
    return bench_measured_run(work);
}

}  // namespace

int runOnce(const Jobs &jobs, const std::string &name) {
    const auto job =
        std::find_if(jobs.begin(), jobs.end(), [&](const Job &each) { return each.name == name; });
    if (job == jobs.end()) {
        std::fprintf(stderr, "%s: no such job\n", name.c_str());
        return 2;
    }
    if (job->place == Place::kFreshProcess) {
        std::fprintf(stderr, "%s: runs in a process of its own\n", name.c_str());
        return 2;
    }
    const std::unique_ptr<Work> work = job->prepare();
    const bool ok = work && runWarm(*work);
    const std::size_t bytes = work && work->bytesWritten() ? work->bytesWritten() : job->bytes;
    std::printf("{\"name\": \"%s\", \"bytes\": %zu, \"ok\": %s}\n", name.c_str(), bytes,
                ok ? "true" : "false");
    return ok ? 0 : 1;
}

}  // namespace bench
