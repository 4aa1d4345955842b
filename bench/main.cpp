// The benchmark program: Google Benchmark's options, and --document=KIND/SIZE (repeatable) for
// other documents than the usual ones.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string_view>
#include <vector>

#include "contestant.h"
#include "documents.h"
#include "jobs.h"

namespace {

struct Choice {
    bench::Kind kind;
    std::size_t size;
};

constexpr Choice kUsual[] = {
    {bench::Kind::configuration, 4000},     {bench::Kind::configuration, 1000000},
    {bench::Kind::configuration, 10000000}, {bench::Kind::text, 1000000},
    {bench::Kind::attributes, 1000000},     {bench::Kind::chinese, 1000000},
};

std::optional<Choice> parseChoice(std::string_view text) {
    const std::size_t slash = text.find('/');
    if (slash == text.npos) return std::nullopt;
    const std::size_t size = bench::parseSize(text.substr(slash + 1));
    for (const bench::Kind kind : bench::kKinds) {
        if (size != 0 && text.substr(0, slash) == bench::kindName(kind)) return Choice{kind, size};
    }
    return std::nullopt;
}

// Takes the --document options out of the arguments.
std::vector<Choice> takeChoices(int &argc, char **argv) {
    constexpr std::string_view kOption = "--document=";
    std::vector<Choice> choices;
    int kept = 0;
    for (int i = 0; i < argc; ++i) {
        const std::string_view argument = argv[i];
        if (!argument.starts_with(kOption)) {
            argv[kept++] = argv[i];
        } else if (const auto choice = parseChoice(argument.substr(kOption.size()))) {
            choices.push_back(*choice);
        } else {
            std::fprintf(stderr, "%s: no such document\n", argv[i]);
            std::exit(2);
        }
    }
    argc = kept;
    argv[kept] = nullptr;
    if (choices.empty()) choices.assign(std::begin(kUsual), std::end(kUsual));
    return choices;
}

}  // namespace

int main(int argc, char **argv) {
    const std::vector<Choice> choices = takeChoices(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;

    benchmark::AddCustomContext("compiler", BENCH_COMPILER);
    benchmark::AddCustomContext("flags", BENCH_FLAGS);
    for (const bench::Contestant *contestant : bench::kContestants) {
        benchmark::AddCustomContext(contestant->name, contestant->version);
    }
    for (const Choice &choice : choices) {
        const bench::Document &document = bench::document(choice.kind, choice.size);
        bench::registerJobs(document);
        bench::registerLimits(document);
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
