// Measures how long it takes to make a schema ready for use.
//
//   compactxml_bench_loading SWITCH_SCHEMA_FILE DIRECTORY [GOOGLE_BENCHMARK_OPTION]...
//
// Named load/SCHEMA/1/LOADER. Beside the schema that is given, a generated one with many declarations is
// written to the directory.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>

#include "loader.h"

namespace {

using bench::Loader;

constexpr const Loader *kLoaders[] = {
    &bench::kCompilingLoader,
#ifdef BENCH_HAS_LIBXML2
    &bench::kLibxml2Loader,
#endif
#ifdef BENCH_HAS_XERCES
    &bench::kXercesLoader,
#endif
};

// So many types of three elements each, every one with an element of its own.
std::string manyDeclarations(int types) {
    std::string text =
        "<xs:schema xmlns:xs=\"http://www.w3.org/2001/XMLSchema\" targetNamespace=\"urn:many\" "
        "xmlns=\"urn:many\" elementFormDefault=\"qualified\">\n";
    for (int i = 0; i < types; ++i) {
        const std::string number = std::to_string(i);
        text +=
            "<xs:complexType name=\"t" + number + "\"><xs:sequence><xs:element name=\"a" + number +
            "\" type=\"xs:unsignedShort\"/><xs:element name=\"b" + number +
            "\" type=\"xs:string\" minOccurs=\"0\"/></xs:sequence><xs:attribute name=\"id\" "
            "type=\"xs:unsignedInt\" use=\"required\"/></xs:complexType>\n<xs:element name=\"e" +
            number + "\" type=\"t" + number + "\"/>\n";
    }
    return text + "</xs:schema>\n";
}

void load(benchmark::State &state, const Loader &loader, const std::string &schema) {
    for (auto _ : state) {
        if (!loader.load(schema)) state.SkipWithError("refused");
    }
    state.SetBytesProcessed(state.iterations() *
                            static_cast<std::int64_t>(std::filesystem::file_size(schema)));
}

void add(const Loader &loader, const std::string &schema, const char *name) {
    if (!loader.load(schema)) {
        std::fprintf(stderr, "%s does not read %s\n", loader.name, schema.c_str());
        std::exit(1);
    }
    benchmark::RegisterBenchmark(("load/" + std::string(name) + "/1/" + loader.name).c_str(), load,
                                 std::cref(loader), schema)
        ->Unit(benchmark::kMicrosecond);
}

}  // namespace

int main(int argc, char **argv) {
    if (argc < 3) {
        std::fprintf(stderr, "usage: compactxml_bench_loading SCHEMA_FILE DIRECTORY [OPTION]...\n");
        return 2;
    }
    const std::string schema = argv[1], many = std::string(argv[2]) + "/many.xsd";
    argv[2] = argv[0];
    int left = argc - 2;
    benchmark::Initialize(&left, argv + 2);
    constexpr int kTypes = 2500;  // 10,000 declarations
    std::ofstream(many) << manyDeclarations(kTypes);
    benchmark::AddCustomContext("compiler", BENCH_COMPILER);
    benchmark::AddCustomContext("flags", BENCH_FLAGS);
    add(bench::kRegisteringLoader, schema, "switch");
    for (const Loader *loader : kLoaders) {
        benchmark::AddCustomContext(loader->name, loader->version);
        add(*loader, schema, "switch");
        add(*loader, many, "many");
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
