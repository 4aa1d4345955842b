#include "xsd2c/records/attribute_model.h"

#include <algorithm>
#include <set>
#include <unordered_set>
#include <utility>

#include "xsd2c/records/wildcards.h"

namespace xsd2c {
namespace {

using Use = AttributeUse::Use;

// The attributes themselves and those of its groups, each once, in the order in which they are
// written.
std::vector<const DeclaredAttributes *> withGroups(const DeclaredAttributes &declared) {
    std::vector<const DeclaredAttributes *> all = {&declared};
    std::unordered_set<const AttributeGroup *> seen;
    for (std::size_t i = 0; i < all.size(); ++i) {
        for (const AttributeGroup *group : all[i]->groups) {
            if (seen.insert(group).second) all.push_back(&group->attributes);
        }
    }
    return all;
}

using Name = std::pair<std::string, std::string>;

Name nameOf(const AttributeUse &use) {
    return {use.decl->qualified ? use.decl->ns : std::string(), use.decl->name};
}

const ComplexType *complexBase(const ComplexType &type) {
    if (type.derivation == ComplexType::Derivation::kNone) return nullptr;
    const auto *base = std::get_if<const ComplexType *>(&type.base);
    return base ? *base : nullptr;
}

bool isExtension(const ComplexType &type) {
    return type.derivation == ComplexType::Derivation::kComplexExtension ||
           type.derivation == ComplexType::Derivation::kSimpleExtension;
}

Wildcard anything() {
    Wildcard wildcard;
    wildcard.process = Wildcard::Process::kLax;
    return wildcard;
}

}  // namespace

std::optional<Wildcard> AttributeModels::both(const std::optional<Wildcard> &a, const Wildcard &b,
                                              const Place &place) {
    if (!a) return b;
    std::optional<Wildcard> result = intersected(*a, b);
    if (!result) {
        diagnostics_.error(place,
                           "no wildcard says which attributes both of two anyAttribute allow");
    }
    return result;
}

// Those of the groups first, each with what its own groups say: of all that there are, how
// attributes are processed is told by the one that stands here, or else by that of the first group.
std::optional<Wildcard> AttributeModels::wildcardOf(const DeclaredAttributes &declared,
                                                    const Place &place) {
    const auto known = wildcards_.find(&declared);
    if (known != wildcards_.end()) return known->second;
    std::optional<Wildcard> wildcard;
    if (declared.wildcard) wildcard = *declared.wildcard;
    // Goes down the groups: the front end has seen to it that they are few.
    for (const AttributeGroup *group : declared.groups) {
        const std::optional<Wildcard> part = wildcardOf(group->attributes, group->place);
        if (part) wildcard = both(wildcard, *part, place);
    }
    return wildcards_.emplace(&declared, wildcard).first->second;
}

AttributeModel AttributeModels::of(const DeclaredAttributes &declared, const Place &place) {
    AttributeModel model;
    for (const DeclaredAttributes *part : withGroups(declared)) {
        for (const AttributeUse &use : part->uses) {
            if (use.use != Use::kProhibited) model.uses.push_back(&use);
        }
    }
    model.wildcard = wildcardOf(declared, place);
    return model;
}

// From the type that all others derive from to the one that is asked for.
AttributeModel AttributeModels::of(const ComplexType &type) {
    std::vector<const ComplexType *> chain;
    for (const ComplexType *step = &type; step; step = complexBase(*step)) chain.push_back(step);
    AttributeModel model;
    for (auto step = chain.rbegin(); step != chain.rend(); ++step) {
        if ((*step)->isAnyType) {
            model.wildcard = anything();
            continue;
        }
        AttributeModel own = of((*step)->attributes, (*step)->place);
        const std::optional<Wildcard> inherited = model.wildcard;
        // A use of the same name takes the place of the inherited one, or takes it away.
        std::set<Name> replaced;
        for (const AttributeUse *use : own.uses) replaced.insert(nameOf(*use));
        for (const AttributeUse &use : (*step)->attributes.uses) {
            // An extension takes nothing away.
            const bool takesAway = use.use == Use::kProhibited && !isExtension(**step);
            if (takesAway) replaced.insert(nameOf(use));
        }
        for (const AttributeUse *use : model.uses) {
            if (replaced.count(nameOf(*use)) == 0) own.uses.push_back(use);
        }
        if (isExtension(**step) && inherited) {
            if (own.wildcard) {
                const std::optional<Wildcard> either = united(*own.wildcard, *inherited);
                if (!either) {
                    diagnostics_.error((*step)->place,
                                       "no wildcard says which attributes either of two "
                                       "anyAttribute allows");
                }
                own.wildcard = either;
            } else {
                own.wildcard = inherited;
            }
        }
        model = std::move(own);
    }
    return model;
}

bool hasAttributeWildcard(const DeclaredAttributes &declared) {
    const std::vector<const DeclaredAttributes *> all = withGroups(declared);
    return std::any_of(all.begin(), all.end(),
                       [](const DeclaredAttributes *part) { return part->wildcard != nullptr; });
}

bool hasAttributeWildcard(const ComplexType &type) {
    for (const ComplexType *step = &type; step; step = complexBase(*step)) {
        if (step->isAnyType || hasAttributeWildcard(step->attributes)) return true;
    }
    return false;
}

bool doesBaseProhibit(const ComplexType &type) {
    for (const ComplexType *base = complexBase(type); base; base = complexBase(*base)) {
        for (const AttributeUse &use : base->attributes.uses) {
            if (use.use == Use::kProhibited) return true;
        }
    }
    return false;
}

}  // namespace xsd2c
