// tools/xsd2c/records/determinism.h - whether a content model tells, without looking ahead, which
// particle each child belongs to ("Unique Particle Attribution", XML Schema 1.0 Structures, 3.8.6).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "xsd2c/xsd/components.h"

namespace xsd2c {

// A content model with everything in place: groups that were referred to, bases that were extended,
// members of substitution groups.
struct Term {
    enum class Kind { kElement, kWildcard, kSequence, kChoice, kAll };
    struct Name {
        std::string ns;
        std::string local;
    };
    Kind kind = Kind::kSequence;
    std::uint32_t minOccurs = 1;
    std::uint32_t maxOccurs = 1;
    std::vector<Name> names;             // kElement: every element that it stands for
    const Wildcard *wildcard = nullptr;  // kWildcard
    std::vector<Term> children;          // groups
    Place place;
};

struct Ambiguity {
    Place first;  // of the two particles that may take the same child
    Place second;
    std::string child;  // what it is called: "element 'port'", "an element of any namespace"
};

// The ambiguities of a content model, each pair of particles once, in document order. Particles are
// told apart by their terms: the same group in two places has different ones. When the model is too
// large to tell (some million particles, or a thousand ambiguities), tooLarge is set, and there may
// be more ambiguities than those returned.
std::vector<Ambiguity> findAmbiguities(const Term &model, bool &tooLarge);

}  // namespace xsd2c
