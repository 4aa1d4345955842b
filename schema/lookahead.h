// schema/lookahead.h - what particles are, and what they can begin with.
#pragma once

#include <cstdint>

#include "compactxml.h"
#include "schema/element_match.h"
#include "schema/validation.h"

namespace cxml {

inline const SchemaElementDecl &elementOf(const SchemaTypedRef &particle) noexcept {
    return *static_cast<const SchemaElementDecl *>(particle.object);
}

inline const SchemaElementWildcard &wildcardOf(const SchemaTypedRef &particle) noexcept {
    return *static_cast<const SchemaElementWildcard *>(particle.object);
}

inline const SchemaModelGroup &groupOf(const SchemaTypedRef &particle) noexcept {
    return *static_cast<const SchemaModelGroup *>(particle.object);
}

// Whether a particle can match nothing.
[[gnu::noinline]] bool isEmptiable(const SchemaTypedRef &particle) noexcept;

// Whether one repetition of a group can match nothing, given its particles that cannot.
bool isContentEmptiable(const SchemaModelGroup &group, std::uint32_t required) noexcept;

struct WildcardMatch {
    bool accepts;
    const SchemaElementDecl *decl;  // to check the child against, or null
};

// Whether a wildcard accepts a child, which may be none.
[[gnu::noinline]] WildcardMatch matchWildcard(const ElementName &child,
                                              const SchemaElementWildcard &wildcard,
                                              const Validation &run) noexcept;

// Whether a particle or a group can begin with a child, which there is. Intended: an all group is
// never chosen by looking ahead.
bool canBegin(const SchemaTypedRef &particle, const ElementName &child, Validation &run) noexcept;
[[gnu::noinline]] bool canGroupBegin(const SchemaModelGroup &group, const ElementName &child,
                                     Validation &run) noexcept;

// The first particle of a choice that can begin with a child, or null: no better one is looked for.
[[gnu::noinline]] const SchemaTypedRef *chooseParticle(const SchemaModelGroup &choice,
                                                       const ElementName &child,
                                                       Validation &run) noexcept;

}  // namespace cxml
