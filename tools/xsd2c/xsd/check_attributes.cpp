#include <cstddef>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "xsd2c/xsd/component_checks.h"

namespace xsd2c {
namespace {

using Derivation = ComplexType::Derivation;

// Follows the attributes of one type or group after the other. Names get numbers, and what has been
// seen for one owner is told from what was for another by the owner's number, so that nothing has
// to be cleared in between.
class AttributeCheck {
  public:
    explicit AttributeCheck(const Reading &reading) : reading_(reading) {}

    void check(const AttributeGroup &group);
    void check(const ComplexType &type);

  private:
    struct Seen {
        std::size_t owner = 0;
        const AttributeUse *use = nullptr;  // null for one that a restriction leaves out
    };

    // Calls visit(use) for the uses that are written at a place and of all groups there.
    template <class Visit>
    void forEach(const DeclaredAttributes &declared, Visit visit);
    Seen &seen(const AttributeUse &use);
    void takeOwn(const DeclaredAttributes &declared);
    void takeBases(const ComplexType &type);
    void takeBase(const ComplexType &type, const ComplexType &base);

    const Reading &reading_;
    std::size_t owner_ = 0;
    std::size_t walk_ = 0;
    std::unordered_map<const AttributeUse *, std::size_t> numbers_;
    std::unordered_map<std::string, std::size_t> names_;
    std::vector<Seen> seen_;
    std::unordered_set<const AttributeUse *> told_;  // of which it is known that they are too many
    std::unordered_map<const AttributeGroup *, std::size_t> walked_;
};

std::string namespaceOf(const AttributeDecl &attribute) {
    return attribute.global || attribute.qualified ? attribute.ns : std::string();
}

template <class Visit>
void AttributeCheck::forEach(const DeclaredAttributes &declared, Visit visit) {
    ++walk_;
    std::vector<const DeclaredAttributes *> open = {&declared};
    while (!open.empty()) {
        const DeclaredAttributes &next = *open.back();
        open.pop_back();
        for (const AttributeUse &use : next.uses) visit(use);
        for (const AttributeGroup *group : next.groups) {
            std::size_t &walked = walked_[group];
            if (walked == walk_) continue;  // by another way
            walked = walk_;
            open.push_back(&group->attributes);
        }
    }
}

AttributeCheck::Seen &AttributeCheck::seen(const AttributeUse &use) {
    const auto [known, isNew] = numbers_.try_emplace(&use, 0);
    if (isNew) {
        const std::string name = namespaceOf(*use.decl) + '\0' + use.decl->name;
        known->second = names_.try_emplace(name, names_.size()).first->second;
        if (known->second == seen_.size()) seen_.emplace_back();
    }
    return seen_[known->second];
}

// XML Schema 1.0 Structures, 3.4.6 and 3.6.6.
void AttributeCheck::takeOwn(const DeclaredAttributes &declared) {
    ++owner_;
    forEach(declared, [&](const AttributeUse &use) {
        if (use.use == AttributeUse::Use::kProhibited) return;
        Seen &before = seen(use);
        if (before.owner != owner_) {
            before = {owner_, &use};
            return;
        }
        // The place of the one that stands later, if both stand in one file.
        const bool later = before.use->place.file == use.place.file &&
                           std::pair(before.use->place.line, before.use->place.column) >
                               std::pair(use.place.line, use.place.column);
        const AttributeUse &second = later ? *before.use : use;
        const AttributeUse &first = later ? use : *before.use;
        if (!told_.insert(&second).second) return;
        reading_.diagnostics.error(second.place, "attribute '" + use.decl->name +
                                                     "' is given twice; first at " +
                                                     placeText(first.place));
    });
}

void AttributeCheck::takeBase(const ComplexType &type, const ComplexType &base) {
    const bool restricts = base.derivation == Derivation::kComplexRestriction ||
                           base.derivation == Derivation::kSimpleRestriction;
    forEach(base.attributes, [&](const AttributeUse &use) {
        Seen &before = seen(use);
        const bool prohibited = use.use == AttributeUse::Use::kProhibited;
        if (prohibited && !restricts) return;
        if (prohibited || before.owner != owner_) {
            // Whatever further bases say of it does not count.
            before = {owner_, nullptr};
            return;
        }
        if (!before.use || before.use == &use) return;
        reading_.diagnostics.error(
            before.use->place,
            "attribute '" + use.decl->name + "' is already one of the base '" + base.name + "'" +
                (type.name.empty() ? std::string() : " of complexType '" + type.name + "'"));
        before.use = nullptr;
    });
}

void AttributeCheck::takeBases(const ComplexType &type) {
    const ComplexType *derived = &type;
    while (derived->derivation != Derivation::kNone) {
        const auto *const *base = std::get_if<const ComplexType *>(&derived->base);
        if (!base) return;
        takeBase(type, **base);
        derived = *base;
    }
}

void AttributeCheck::check(const AttributeGroup &group) {
    takeOwn(group.attributes);
}

void AttributeCheck::check(const ComplexType &type) {
    takeOwn(type.attributes);
    const bool extends = type.derivation == Derivation::kComplexExtension ||
                         type.derivation == Derivation::kSimpleExtension;
    // What stands in a restriction takes the place of what the base has.
    const bool something = !type.attributes.uses.empty() || !type.attributes.groups.empty();
    if (extends && something) takeBases(type);
}

void checkFixed(const AttributeUse &use, Diagnostics &diagnostics) {
    if (!use.isRef || !use.fixed || !use.decl->fixed || *use.fixed == *use.decl->fixed) return;
    diagnostics.error(use.place, "attribute '" + use.decl->name +
                                     "' has another fixed value where it is declared");
}

}  // namespace

void checkAttributes(const Reading &reading) {
    AttributeCheck check{reading};
    for (const AttributeGroup &group : reading.components.attributeGroups) {
        check.check(group);
        for (const AttributeUse &use : group.attributes.uses) checkFixed(use, reading.diagnostics);
    }
    for (const ComplexType &type : reading.components.complexTypes) {
        check.check(type);
        for (const AttributeUse &use : type.attributes.uses) checkFixed(use, reading.diagnostics);
    }
}

}  // namespace xsd2c
