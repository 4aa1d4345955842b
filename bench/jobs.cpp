#include "jobs.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "agreement.h"
#include "contestant.h"

namespace bench {
namespace {

void setRate(benchmark::State &state, std::size_t bytes) {
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                            static_cast<std::int64_t>(bytes));
}

void parseJob(benchmark::State &state, const Contestant &contestant, const Document &document) {
    const Tally &agreed = requireAgreement(document);
    for (auto _ : state) {
        Tally tally;
        const bool done = contestant.parse(document.bytes, tally);
        if (!done || tally.elements != agreed.elements || tally.attributes != agreed.attributes) {
            state.SkipWithError("did not read the whole document");
            break;
        }
        benchmark::DoNotOptimize(tally);
    }
    setRate(state, document.bytes.size());
}

bool buildAndDelete(const Contestant &contestant, std::string &bytes) {
    void *tree = contestant.build(bytes);
    benchmark::DoNotOptimize(tree);
    if (tree) contestant.destroy(tree);
    return tree != nullptr;
}

void buildJob(benchmark::State &state, const Contestant &contestant, const Document &document) {
    requireAgreement(document);
    std::string bytes = document.bytes;
    for (auto _ : state) {
        if (!buildAndDelete(contestant, bytes)) {
            state.SkipWithError("no tree");
            break;
        }
    }
    setRate(state, document.bytes.size());
}

// For a contestant that consumes its input the clock stands still while fresh copies are made, of a
// megabyte at a time so that starting and stopping it does not weigh on small documents.
void buildConsumingJob(benchmark::State &state, const Contestant &contestant,
                       const Document &document) {
    requireAgreement(document);
    const std::size_t batch = std::max<std::size_t>(1, 1000000 / document.bytes.size());
    std::vector<std::string> copies(batch);
    bool ok = true;
    while (ok && state.KeepRunningBatch(static_cast<benchmark::IterationCount>(batch))) {
        state.PauseTiming();
        for (std::string &copy : copies) copy = document.bytes;
        state.ResumeTiming();
        for (std::string &copy : copies) ok = buildAndDelete(contestant, copy) && ok;
    }
    if (!ok) state.SkipWithError("no tree");
    setRate(state, document.bytes.size());
}

void serializeJob(benchmark::State &state, const Contestant &contestant, const Document &document) {
    requireAgreement(document);
    std::string bytes = document.bytes;
    void *tree = contestant.build(bytes);
    std::size_t length = 0;
    for (auto _ : state) {
        length = tree ? contestant.serialize(tree, nullptr) : 0;
        if (length == 0) {
            state.SkipWithError("nothing written");
            break;
        }
    }
    if (tree) contestant.destroy(tree);
    setRate(state, length);
}

void add(const char *job, const Document &document, const Contestant &contestant,
         void (*run)(benchmark::State &, const Contestant &, const Document &)) {
    const std::string name = std::string(job) + "/" + document.label + "/" + contestant.name;
    benchmark::RegisterBenchmark(name.c_str(), run, std::cref(contestant), std::cref(document))
        ->Unit(document.bytes.size() < 1000000 ? benchmark::kMicrosecond : benchmark::kMillisecond);
}

}  // namespace

void registerJobs(const Document &document) {
    for (const Contestant *contestant : kContestants) {
        if (contestant->parse) add("parse", document, *contestant, parseJob);
        if (contestant->build) {
            add("build+delete", document, *contestant,
                contestant->consumesInput ? buildConsumingJob : buildJob);
        }
        if (contestant->serialize) add("serialize", document, *contestant, serializeJob);
    }
}

}  // namespace bench
