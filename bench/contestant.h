// contestant.h - one way of doing the jobs that are measured.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "tally.h"

// The text of a number that a peer's header defines.
#define BENCH_TEXT_OF(x) #x
#define BENCH_TEXT(x) BENCH_TEXT_OF(x)

namespace bench {

// A contestant leaves null what its library does not offer. The jobs:
//
//   parse       reads the document and calls back for elements, attributes and text
//   build       makes a tree of it; null on failure. Only a contestant that consumes its input
//               writes to the document, which must then outlive the tree
//   serialize   writes the tree to memory in the library's most compact form, frees the result and
//               tells its length; 0 on failure. With copy it also leaves the result there
struct Contestant {
    const char *name;
    const char *version;
    bool (*parse)(std::string_view document, Tally &tally);
    void *(*build)(std::span<char> document);
    void (*destroy)(void *tree);
    void (*count)(const void *tree, Tally &tally);
    std::size_t (*serialize)(const void *tree, std::string *copy);
    bool consumesInput;
};

extern const Contestant kCompactXml;
#ifdef BENCH_HAS_EXPAT
extern const Contestant kExpat;
#endif
#ifdef BENCH_HAS_PUGIXML
extern const Contestant kPugixmlCopying, kPugixmlInPlace;
#endif
#ifdef BENCH_HAS_TINYXML2
extern const Contestant kTinyXml2;
#endif
#ifdef BENCH_HAS_LIBXML2
extern const Contestant kLibxml2Sax, kLibxml2Dom;
#endif

inline constexpr const Contestant *kContestants[] = {
    &kCompactXml,
#ifdef BENCH_HAS_EXPAT
    &kExpat,
#endif
#ifdef BENCH_HAS_PUGIXML
    &kPugixmlInPlace, &kPugixmlCopying,
#endif
#ifdef BENCH_HAS_TINYXML2
    &kTinyXml2,
#endif
#ifdef BENCH_HAS_LIBXML2
    &kLibxml2Sax,     &kLibxml2Dom,
#endif
};

}  // namespace bench
