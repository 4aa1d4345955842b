// The benchmark program: Google Benchmark's options, and those of options.h.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>

#include "agreement.h"
#include "contestant.h"
#include "fresh_process.h"
#include "job.h"
#include "measure.h"
#include "once.h"
#include "options.h"

namespace {

bool addDocumentJobs(bench::Jobs &jobs, const std::string &label) {
    const bench::Document *document = bench::findDocument(label);
    if (!document) return false;
    bench::addTreeJobs(jobs, *document);
    bench::addLimits(jobs, *document);
    return true;
}

// Jobs that have documents of their own.
void addOtherJobs(bench::Jobs &jobs, const bench::Options &options) {
    bench::Jobs others;
    bench::addSchemaJobs(others);
    bench::addLibraryJobs(others);
    for (bench::Job &job : others) {
        if (!options.small || job.bytes < 100000) jobs.push_back(std::move(job));
    }
}

// False if a document that was asked for by name is not there.
bool addJobs(bench::Jobs &jobs, const bench::Options &options) {
    for (const std::string &label : bench::chosenDocuments(options)) {
        if (!addDocumentJobs(jobs, label) && !options.documents.empty()) {
            std::fprintf(stderr, "%s: no such document here\n", label.c_str());
            return false;
        }
    }
    const bool isComplete = !options.once.empty() && !jobs.empty();
    if (options.documents.empty() && !isComplete) addOtherJobs(jobs, options);
    return true;
}

int list(const bench::Jobs &jobs) {
    for (const bench::Job &job : jobs) std::printf("%s %zu\n", job.name.c_str(), job.bytes);
    return 0;
}

void addContext() {
    benchmark::AddCustomContext("compiler", BENCH_COMPILER);
    benchmark::AddCustomContext("flags", BENCH_FLAGS);
    for (const bench::Contestant *contestant : bench::contestants()) {
        benchmark::AddCustomContext(contestant->name, contestant->version);
    }
}

}  // namespace

int main(int argc, char **argv) {
    const int status = bench::runFreshProcess(argc, argv);
    if (status >= 0) return status;

    const bench::Options options = bench::takeOptions(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;

    bench::Jobs jobs;
    if (!options.once.empty()) {
        bench::agreeOnlyWith(options.once.substr(options.once.rfind('/') + 1));
    }
    if (!addJobs(jobs, options)) return 2;
    if (!options.once.empty()) return bench::runOnce(jobs, options.once);
    if (!bench::chooseByFilter(jobs)) return 2;
    if (options.list) return list(jobs);

    addContext();
    bench::registerJobs(jobs);
    bench::runRegistered(options.writesFile);
    benchmark::Shutdown();
    return 0;
}
