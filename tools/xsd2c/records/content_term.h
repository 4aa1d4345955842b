// tools/xsd2c/records/content_term.h - the content model of a complex type with everything in
// place.
#pragma once

#include <cstddef>
#include <optional>

#include "xsd2c/records/determinism.h"
#include "xsd2c/records/substitutions.h"
#include "xsd2c/xsd/components.h"

namespace xsd2c {

// A sequence of what the bases of the type and the type itself say; none if that is more than can
// be looked at.
std::optional<Term> contentTerm(const ComplexType &type, const Substitutions &substitutions);

// The types whose content follows one another in that of a type: the last is the type itself, the
// first one that extends no complex type.
std::vector<const ComplexType *> extensionChain(const ComplexType &type);

// The group that a particle is, written there or referred to; null for an element or a wildcard.
const ModelGroup *groupOf(const Particle &particle);

// Whether content says nothing of elements: an empty choice says that there can be none of all.
bool addsNothing(const Particle &content);

}  // namespace xsd2c
