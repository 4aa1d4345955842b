#include "schema/lookahead.h"

#include "schema/namespace_match.h"

// These call themselves for groups in groups: as deep as the schema, which is not input.

namespace cxml {
namespace {

constexpr std::int32_t kLax = 1, kSkip = 2;  // of SchemaElementWildcard::processContents

const SchemaTypedRef *firstFitting(const SchemaModelGroup &choice, const ElementName &child,
                                   Validation &run) {
    for (std::uint32_t i = 0; i < choice.particleCount; ++i) {
        if (canBegin(choice.particles[i], child, run)) return &choice.particles[i];
    }
    return nullptr;
}

}  // namespace

std::uint32_t countRequired(const SchemaModelGroup &group) noexcept {
    std::uint32_t required = 0;
    for (std::uint32_t i = 0; i < group.particleCount; ++i) {
        if (!isEmptiable(group.particles[i])) ++required;
    }
    return required;
}

bool isContentEmptiable(const SchemaModelGroup &group, std::uint32_t required) noexcept {
    if (group.particleCount == 0) return true;
    return group.compositor == SCHEMA_KIND_CHOICE ? required < group.particleCount : required == 0;
}

bool isEmptiable(const SchemaTypedRef &particle) noexcept {
    switch (particle.kind) {
        case SCHEMA_KIND_ELEMENT:
            return elementOf(particle).minOccurs == 0;
        case SCHEMA_KIND_ELEMENT_WILDCARD:
            return wildcardOf(particle).minOccurs == 0;
        case SCHEMA_KIND_MODEL_GROUP: {
            const SchemaModelGroup &group = groupOf(particle);
            return group.minOccurs == 0 || isContentEmptiable(group, countRequired(group));
        }
        default:
            return true;  // matches nothing at all
    }
}

WildcardMatch matchWildcard(const ElementName &child, const SchemaElementWildcard &wildcard,
                            const Validation &run) noexcept {
    const char *ns = nullptr;
    if (!child.node || !Schema_NamespaceMatch(child.ns, wildcard.namespaceConstraint,
                                              wildcard.targetNamespace, &ns)) {
        return {false, nullptr};
    }
    if (wildcard.processContents == kSkip) return {true, nullptr};
    const SchemaElementDecl *decl = Schema_FindTopElement(child.name, ns, run);
    return {decl || wildcard.processContents == kLax, decl};
}

bool canGroupBegin(const SchemaModelGroup &group, const ElementName &child,
                   Validation &run) noexcept {
    if (group.compositor == SCHEMA_KIND_CHOICE) return chooseParticle(group, child, run) != nullptr;
    if (group.compositor != SCHEMA_KIND_SEQUENCE) return false;
    for (std::uint32_t i = 0; i < group.particleCount; ++i) {
        const SchemaTypedRef &particle = group.particles[i];
        if (canBegin(particle, child, run)) return true;
        if (!isEmptiable(particle)) return false;
    }
    return false;
}

const SchemaTypedRef *chooseParticle(const SchemaModelGroup &choice, const ElementName &child,
                                     Validation &run) noexcept {
    const bool isLong = choice.particleCount >= ChoiceMemo::kLeastParticles && child.name;
    if (isLong) {
        const ChoiceMemo::Choice *known = run.choices.find(choice, child.name, child.ns);
        if (known) return known->particle;
    }
    const SchemaTypedRef *particle = firstFitting(choice, child, run);
    if (isLong) run.choices.put({&choice, child.name, child.ns, particle});
    return particle;
}

bool canBegin(const SchemaTypedRef &particle, const ElementName &child, Validation &run) noexcept {
    switch (particle.kind) {
        case SCHEMA_KIND_ELEMENT:
            return matches(child, elementOf(particle), run);
        case SCHEMA_KIND_ELEMENT_WILDCARD:
            return matchWildcard(child, wildcardOf(particle), run).accepts;
        case SCHEMA_KIND_MODEL_GROUP:
            return canGroupBegin(groupOf(particle), child, run);
        default:
            return false;
    }
}

}  // namespace cxml
