// Measures the validation of documents against a schema that was compiled before.
//
//   compactxml_bench_validation SCHEMA_FILE [GOOGLE_BENCHMARK_OPTION]...
//
// Named JOB/ports/SIZE/VALIDATOR. "validate" takes a tree that is there; "read+validate" begins with
// the text. All validators must accept the documents and refuse the same ones with a mistake at their
// ends before a time is taken.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "validator.h"

namespace {

using bench::Validator;

constexpr const Validator *kValidators[] = {
    &bench::kCompactXmlValidator,
#ifdef BENCH_HAS_LIBXML2
    &bench::kLibxml2Validator,
#endif
#ifdef BENCH_HAS_XERCES
    &bench::kXercesValidator,
#endif
};

std::string port(int number) {
    const std::string id = std::to_string(number);
    std::string text = "  <port id=\"" + id + "\" name=\"ge-" + id + "\">\n    <enabled>";
    text += number % 7 ? "true" : "false";
    text += "</enabled>\n    <mtu>" + std::to_string(1500 + number % 5 * 1000) + "</mtu>\n";
    if (number % 3) text += "    <speed>1000</speed>\n";
    if (number % 2) text += "    <description>uplink of floor " + id + "</description>\n";
    for (int vlan = 0; vlan < number % 4; ++vlan) {
        text += "    <vlan>" + std::to_string(1 + (number * 7 + vlan) % 4094) + "</vlan>\n";
    }
    text += "    <octets>" + std::to_string(9876543210ull * static_cast<unsigned>(number)) +
            "</octets>\n    <changed>2026-03-14T02:30:00Z</changed>\n  </port>\n";
    return text;
}

std::string makeDocument(std::size_t size, const char *last) {
    std::string text = "<ports xmlns=\"urn:example:ports\" revision=\"7\">\n";
    for (int number = 1; text.size() < size; ++number) text += port(number);
    return text + last + "</ports>\n";
}

void setRate(benchmark::State &state, std::size_t bytes) {
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                            static_cast<std::int64_t>(bytes));
}

void validateTree(benchmark::State &state, const Validator &validator,
                  const std::string &document) {
    void *tree = validator.build(document);
    for (auto _ : state) {
        if (!validator.validate(tree)) state.SkipWithError("refused");
    }
    validator.destroy(tree);
    setRate(state, document.size());
}

void readAndValidate(benchmark::State &state, const Validator &validator,
                     const std::string &document) {
    for (auto _ : state) {
        if (!validator.readAndValidate(document)) state.SkipWithError("refused");
    }
    setRate(state, document.size());
}

void requireAgreement(const Validator &validator, const std::string &valid,
                      const std::string &invalid) {
    if (validator.readAndValidate(valid) && !validator.readAndValidate(invalid)) return;
    std::fprintf(stderr, "%s does not agree with the others\n", validator.name);
    std::exit(1);
}

}  // namespace

int main(int argc, char **argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: compactxml_bench_validation SCHEMA_FILE [OPTION]...\n");
        return 2;
    }
    const std::string schema = argv[1];
    argv[1] = argv[0];
    int left = argc - 1;
    benchmark::Initialize(&left, argv + 1);

    static const std::string documents[] = {makeDocument(4000, ""), makeDocument(1000000, ""),
                                            makeDocument(10000000, "")};
    constexpr const char *kSizes[] = {"4k", "1M", "10M"};
    const std::string invalid =
        makeDocument(4000,
                     "<port id=\"1\" "
                     "name=\"x\"><enabled>true</enabled><mtu>9217</mtu><octets>1</octets></port>");
    benchmark::AddCustomContext("compiler", BENCH_COMPILER);
    benchmark::AddCustomContext("flags", BENCH_FLAGS);
    for (const Validator *validator : kValidators) {
        validator->prepare(schema);
        benchmark::AddCustomContext(validator->name, validator->version);
        requireAgreement(*validator, documents[0], invalid);
        for (std::size_t i = 0; i < std::size(documents); ++i) {
            const std::string suffix = "ports/" + std::string(kSizes[i]) + "/" + validator->name;
            if (validator->build) {
                benchmark::RegisterBenchmark(("validate/" + suffix).c_str(), validateTree,
                                             std::cref(*validator), std::cref(documents[i]));
            }
            benchmark::RegisterBenchmark(("read+validate/" + suffix).c_str(), readAndValidate,
                                         std::cref(*validator), std::cref(documents[i]));
        }
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
