// The list of contestants: this library, and the peers that were found when this was built.
#include "contestant.h"

namespace bench {

std::span<const Contestant *const> contestants() {
    static constexpr const Contestant *kAll[] = {
        &kCompactXml,
#ifdef BENCH_HAS_EXPAT
        &kExpat,
#endif
#ifdef BENCH_HAS_LIBXML2
        &kLibxml2Sax,     &kLibxml2Dom,
#endif
#ifdef BENCH_HAS_PUGIXML
        &kPugixmlInPlace, &kPugixmlCopying, &kPugixmlIconv, &kPugixmlIconvUtf8, &kPugixmlGb18030,
#endif
#ifdef BENCH_HAS_TINYXML2
        &kTinyXml2,
#endif
#ifdef BENCH_HAS_RAPIDXML
        &kRapidXml,
#endif
#ifdef BENCH_HAS_XERCES
        &kXercesSax,      &kXercesDom,
#endif
    };
    return kAll;
}

}  // namespace bench
