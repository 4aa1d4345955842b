// contestant.h - one way of doing the jobs that are measured.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "documents.h"
#include "tally.h"

// The text of a number that a peer's header defines.
#define BENCH_TEXT_OF(x) #x
#define BENCH_TEXT(x) BENCH_TEXT_OF(x)

namespace bench {

// A set of encodings.
constexpr unsigned setOf(auto... encodings) {
    return (0u | ... | static_cast<unsigned>(encodings));
}
inline constexpr unsigned kUtf8Alone = setOf(Encoding::utf8);
inline constexpr unsigned kAnyEncoding =
    setOf(Encoding::utf8, Encoding::utf16le, Encoding::gb18030);

// A contestant leaves null what its library does not offer. The jobs:
//
//   parse       reads the document and calls back for elements, attributes and text
//   build       makes a tree of it; null on failure. A NUL stands behind the document. Only a
//               contestant that consumes its input writes to the document, which must then outlive
//               the tree
//   serialize   writes the tree to memory in the library's most compact form, in the encoding of
//               the document that it was built of, frees the result and tells its length; 0 on
//               failure. With copy it also leaves the result there
struct Contestant {
    const char *name;
    const char *version;
    unsigned encodings = kUtf8Alone;  // what it reads, and what it writes
    bool onlyChinese = false;         // whether it takes part only where there is Chinese text
    bool consumesInput = false;
    bool (*parse)(std::string_view document, Tally &tally) = nullptr;
    void *(*build)(std::span<char> document, Encoding encoding) = nullptr;
    void (*destroy)(void *tree) = nullptr;
    void (*count)(const void *tree, Tally &tally) = nullptr;
    std::size_t (*serialize)(const void *tree, Encoding encoding, std::string *copy) = nullptr;

    bool takes(Encoding encoding) const { return (encodings & setOf(encoding)) != 0; }
    bool takes(const Document &document) const {
        return takes(document.encoding) && (document.chinese || !onlyChinese);
    }
};

// Each is defined only where its library was found.
extern const Contestant kCompactXml, kExpat, kLibxml2Sax, kLibxml2Dom, kPugixmlInPlace,
    kPugixmlCopying, kPugixmlIconv, kPugixmlIconvUtf8, kPugixmlGb18030, kTinyXml2, kRapidXml,
    kXercesSax, kXercesDom;

// Those that were found.
std::span<const Contestant *const> contestants();  // this library first

}  // namespace bench
