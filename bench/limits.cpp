// What the machine gives at best: figures that no contestant's job can pass.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>

#include "contestant.h"
#include "heap_plan.h"
#include "jobs.h"

namespace bench {
namespace {

void setRate(benchmark::State &state, const Document &document) {
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                            static_cast<std::int64_t>(document.bytes.size()));
}

void copyLimit(benchmark::State &state, const Document &document) {
    std::string target(document.bytes.size(), '\0');
    for (auto _ : state) {
        std::memcpy(target.data(), document.bytes.data(), document.bytes.size());
        benchmark::DoNotOptimize(target.data());
        benchmark::ClobberMemory();
    }
    setRate(state, document);
}

void scanLimit(benchmark::State &state, const Document &document) {
    for (auto _ : state) {  // for a byte that no document holds
        const char *bytes = document.bytes.data();
        benchmark::DoNotOptimize(bytes);
        benchmark::DoNotOptimize(std::memchr(bytes, 0x01, document.bytes.size()));
    }
    setRate(state, document);
}

// The malloc and free calls of this library's build+delete, alone.
void heapLimit(benchmark::State &state, const Document &document) {
    std::string bytes = document.bytes;
    void *tree = kCompactXml.build(bytes);
    if (!tree) {
        state.SkipWithError("no tree");
        return;
    }
    HeapPlan plan(static_cast<const XML_DOM_Node *>(tree));
    kCompactXml.destroy(tree);
    for (auto _ : state) {
        if (!plan.play()) {
            state.SkipWithError("memory exhausted");
            break;
        }
    }
    setRate(state, document);
    state.counters["blocks"] = static_cast<double>(plan.blocks());
    state.counters["block_bytes"] = static_cast<double>(plan.bytes());
}

void add(const char *limit, const Document &document,
         void (*run)(benchmark::State &, const Document &)) {
    const std::string name = "limit/" + document.label + "/" + limit;
    benchmark::RegisterBenchmark(name.c_str(), run, std::cref(document))
        ->Unit(document.bytes.size() < 1000000 ? benchmark::kMicrosecond : benchmark::kMillisecond);
}

}  // namespace

void registerLimits(const Document &document) {
    add("memcpy", document, copyLimit);
    add("memchr", document, scanLimit);
    add("heap-of-build+delete", document, heapLimit);
}

}  // namespace bench
