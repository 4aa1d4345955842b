#include "measure.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <regex>
#include <string>
#include <vector>

namespace bench {
namespace {

constexpr const char *kNotMeasured = "cannot be measured";
constexpr const char *kWentWrong = "went wrong";

void setRate(benchmark::State &state, const Job &job, const Work &work) {
    const std::size_t bytes = work.bytesWritten() ? work.bytesWritten() : job.bytes;
    if (bytes == 0) return;
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                            static_cast<std::int64_t>(bytes));
}

void measureHere(benchmark::State &state, const Job &job, Work &work) {
    for (auto _ : state) {
        if (!work.run()) {
            state.SkipWithError(kWentWrong);
            break;
        }
    }
    setRate(state, job, work);
}

// The clock stands still while works are refreshed, many at a time, a megabyte in all, so that
// starting and stopping it does not weigh on small documents.
void measureBatches(benchmark::State &state, const Job &job, std::unique_ptr<Work> first) {
    const std::size_t batch =
        std::clamp<std::size_t>(1000000 / std::max<std::size_t>(job.bytes, 1), 1, 1000);
    std::vector<std::unique_ptr<Work>> works;
    works.push_back(std::move(first));
    while (works.size() < batch) works.push_back(job.prepare());
    bool ok = true;
    while (ok && state.KeepRunningBatch(static_cast<benchmark::IterationCount>(batch))) {
        state.PauseTiming();
        for (const auto &work : works) work->refresh();
        state.ResumeTiming();
        for (const auto &work : works) ok = work->run() && ok;
    }
    if (!ok) state.SkipWithError(kWentWrong);
    setRate(state, job, *works.front());
}

void measureFresh(benchmark::State &state, const Job &job, Work &work) {
    for (auto _ : state) {
        work.refresh();
        if (!work.run()) {
            state.SkipWithError(kWentWrong);
            break;
        }
        state.SetIterationTime(work.seconds());
    }
    setRate(state, job, work);
}

void measure(benchmark::State &state, const Job &job) {
    std::unique_ptr<Work> work = job.prepare();
    if (!work) {
        state.SkipWithError(kNotMeasured);
    } else if (job.place == Place::kFreshProcess) {
        measureFresh(state, job, *work);
    } else if (work->needsRefresh()) {
        measureBatches(state, job, std::move(work));
    } else {
        measureHere(state, job, *work);
    }
}

benchmark::TimeUnit unitOf(std::size_t bytes) {
    if (bytes == 0) return benchmark::kNanosecond;
    return bytes < 1000000 ? benchmark::kMicrosecond : benchmark::kMillisecond;
}

// Google Benchmark adds to the name of a benchmark how it is timed, and tells the processor time of
// this process where another one did the work.
void straighten(benchmark::BenchmarkReporter::Run &run) {
    if (run.run_name.time_type.empty()) return;
    run.run_name.time_type.clear();
    run.run_name.iterations.clear();
    run.cpu_accumulated_time = run.real_accumulated_time;
}

template <class Base>
class Straightened : public Base {
  public:
    using Base::Base;

    void ReportRuns(const std::vector<benchmark::BenchmarkReporter::Run> &runs) override {
        std::vector<benchmark::BenchmarkReporter::Run> straight = runs;
        for (auto &run : straight) straighten(run);
        Base::ReportRuns(straight);
    }
};

}  // namespace

bool chooseByFilter(Jobs &jobs) {
    std::string filter = benchmark::GetBenchmarkFilter();
    if (filter.empty() || filter == "all") return true;
    const bool negated = filter.front() == '-';
    if (negated) filter.erase(0, 1);
    try {
        const std::regex chosen(filter, std::regex::extended);
        std::erase_if(
            jobs, [&](const Job &job) { return std::regex_search(job.name, chosen) == negated; });
    } catch (const std::regex_error &error) {
        std::fprintf(stderr, "%s: %s\n", filter.c_str(), error.what());
        return false;
    }
    if (jobs.empty()) std::fprintf(stderr, "%s: no such job\n", filter.c_str());
    benchmark::SetBenchmarkFilter("all");
    return !jobs.empty();
}

void registerJobs(const Jobs &jobs) {
    for (const Job &job : jobs) {
        auto *benchmark = benchmark::RegisterBenchmark(
            job.name.c_str(), [&job](benchmark::State &state) { measure(state, job); });
        benchmark->Unit(unitOf(job.bytes));
        if (job.place == Place::kFreshProcess) benchmark->UseManualTime()->Iterations(1);
    }
}

void runRegistered(bool writesFile) {
    Straightened<benchmark::ConsoleReporter> console(benchmark::ConsoleReporter::OO_None);
    Straightened<benchmark::JSONReporter> file;
    benchmark::RunSpecifiedBenchmarks(&console, writesFile ? &file : nullptr);
}

}  // namespace bench
