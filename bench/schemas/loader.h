// loader.h - one way of making a schema ready for use, which is measured.
#pragma once

#include <memory>
#include <string>

#include "job.h"

namespace bench {

struct Loader {
    const char *name;
    bool (*load)(const std::string &file);  // makes it ready and gives it up again
};

extern const Loader kCompilingLoader;  // this library, with xsd2c's compiler in memory
#ifdef BENCH_HAS_LIBXML2
extern const Loader kLibxml2Loader;
#endif
#ifdef BENCH_HAS_XERCES
extern const Loader kXercesLoader;
#endif

inline constexpr const Loader *kLoaders[] = {
    &kCompilingLoader,
#ifdef BENCH_HAS_LIBXML2
    &kLibxml2Loader,
#endif
#ifdef BENCH_HAS_XERCES
    &kXercesLoader,
#endif
};

// Registers what xsd2c compiled before with a root of its own, and deregisters it: a unit that is
// part of the program, or records that are made of a schema now. Null if it does not compile.
std::unique_ptr<Work> prepareUnit();
std::unique_ptr<Work> prepareRecords(const std::string &file);

}  // namespace bench
