// loader.h - one way of making a schema ready for use, which is measured.
#pragma once

#include <string>

namespace bench {

struct Loader {
    const char *name;
    const char *version;
    bool (*load)(const std::string &schemaFile);  // makes it ready and gives it up again
};

extern const Loader kCompilingLoader;  // xsd2c's compiler, in memory
extern const Loader
    kRegisteringLoader;  // a unit that xsd2c compiled before; knows switch.xsd alone
#ifdef BENCH_HAS_LIBXML2
extern const Loader kLibxml2Loader;
#endif
#ifdef BENCH_HAS_XERCES
extern const Loader kXercesLoader;
#endif

}  // namespace bench
