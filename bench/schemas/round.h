// round.h - one way of answering a request: its tree is built, five values are selected, it is
// validated, a tree with the values is built and written to memory, and both trees are deleted.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace bench {

class Round {
  public:
    Round() = default;
    Round(const Round &) = delete;
    Round &operator=(const Round &) = delete;
    virtual ~Round() = default;

    // Whether the request was valid, as far as that is looked at, and answered. With copy it leaves
    // the answer there as well.
    virtual bool serve(std::string_view request, std::string *copy) = 0;
};

struct RoundKind {
    const char *name;
    bool validates;
    std::unique_ptr<Round> (*make)();  // null on failure
};

extern const RoundKind kCompactXmlRound;
#ifdef BENCH_HAS_LIBXML2
extern const RoundKind kLibxml2Round;
#endif
#ifdef BENCH_HAS_XERCES
extern const RoundKind kXercesRound;
#endif
#ifdef BENCH_HAS_PUGIXML
extern const RoundKind kPugixmlRound;
#endif

inline constexpr const RoundKind *kRoundKinds[] = {
    &kCompactXmlRound,
#ifdef BENCH_HAS_LIBXML2
    &kLibxml2Round,
#endif
#ifdef BENCH_HAS_XERCES
    &kXercesRound,
#endif
#ifdef BENCH_HAS_PUGIXML
    &kPugixmlRound,
#endif
};

// What is selected of a request, which is a configuration of a switch, and what it is called in the
// answer. Libraries whose paths know prefixes are given those that the request has.
struct Selection {
    const char *name;
    const char *path;
    const char *prefixedPath;
};

inline constexpr std::size_t kSelected = 5;
inline constexpr Selection kSelections[kSelected] = {
    {"hostname", "/switch/system/hostname", "/sw:switch/system/hostname"},
    {"serial", "/switch/system/serial", "/sw:switch/system/serial"},
    {"vlan", "/switch/vlans/vlan/description", "/sw:switch/vlan:vlans/vlan:vlan/vlan:description"},
    {"interface", "/switch/interfaces/interface/description",
     "/sw:switch/if:interfaces/if:interface/if:description"},
    {"route", "/switch/routing/static/route/note",
     "/sw:switch/rt:routing/rt:static/rt:route/rt:note"}};

inline constexpr char kAnswerName[] = "answer";
inline constexpr char kAnswerNamespace[] = "urn:example:answer:1";

}  // namespace bench
