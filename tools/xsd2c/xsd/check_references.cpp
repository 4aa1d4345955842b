#include <algorithm>
#include <cstddef>
#include <string>
#include <unordered_map>
#include <unordered_set>

#include "xsd2c/xsd/component_checks.h"
#include "xsd2c/xsd/model_walk.h"
#include "xsd2c/xsd/reference_graph.h"

namespace xsd2c {
namespace {

// Components refer to each other as to what is not to be changed; until they have been checked they
// may be.
template <class T>
T &writable(const T *component) {
    return const_cast<T &>(*component);
}

// Numbers for components, as nodes of a graph.
class Numbers {
  public:
    template <class T>
    void addAll(const std::deque<T> &components) {
        for (const T &component : components) numbers_.emplace(&component, numbers_.size());
    }
    std::size_t of(const void *component) const { return numbers_.at(component); }
    std::size_t of(const TypeRef &type) const {
        return std::visit([this](const auto *known) { return numbers_.at(known); }, type);
    }
    std::size_t size() const { return numbers_.size(); }

  private:
    std::unordered_map<const void *, std::size_t> numbers_;
};

std::string nameOf(const char *kind, const Component &component) {
    return component.name.empty() ? "a " + std::string(kind)
                                  : std::string(kind) + " '" + component.name + "'";
}

std::string nameOf(const TypeRef &type) {
    const bool simple = std::holds_alternative<const SimpleType *>(type);
    const char *kind = simple ? "simpleType" : "complexType";
    return std::visit([kind](const auto *known) { return nameOf(kind, *known); }, type);
}

Place placeOf(const TypeRef &type) {
    return std::visit([](const auto *known) { return known->place; }, type);
}

void addReferences(SimpleType &type, const Numbers &numbers, const SimpleType *standIn,
                   ReferenceGraph &graph) {
    const std::size_t from = numbers.of(static_cast<const void *>(&type));
    const auto add = [&](const SimpleType *&reference) {
        if (!reference) return;
        const void *to = reference;
        graph.add(from, numbers.of(to), 1, [&reference, standIn] { reference = standIn; });
    };
    add(type.base);
    add(type.itemType);
    for (const SimpleType *&member : type.members) add(member);
}

void addReferences(ComplexType &type, const Numbers &numbers, Reading &reading,
                   ReferenceGraph &graph) {
    const std::size_t from = numbers.of(static_cast<const void *>(&type));
    if (type.derivation != ComplexType::Derivation::kNone) {
        graph.add(from, numbers.of(type.base), 1, [&type, &reading] {
            type.base = unknownType(reading.components, reading.symbols);
        });
    }
    if (type.contentType) {
        const void *to = type.contentType;
        graph.add(from, numbers.of(to), 1,
                  [&type, &reading] { type.contentType = reading.symbols.anySimpleType; });
    }
}

}  // namespace

std::vector<TypeRef> checkTypeReferences(Reading &reading) {
    Components &components = reading.components;
    Numbers numbers;
    numbers.addAll(components.simpleTypes);
    numbers.addAll(components.complexTypes);
    std::vector<TypeRef> types;
    for (const SimpleType &type : components.simpleTypes) types.emplace_back(&type);
    for (const ComplexType &type : components.complexTypes) types.emplace_back(&type);

    ReferenceGraph graph{numbers.size()};
    for (SimpleType &type : components.simpleTypes) {
        addReferences(type, numbers, reading.symbols.anySimpleType, graph);
    }
    for (ComplexType &type : components.complexTypes) {
        addReferences(type, numbers, reading, graph);
    }
    std::vector<TypeRef> sorted;
    const auto tell = [&](std::size_t from, std::size_t to, bool circle) {
        // What is referred to has a name.
        const TypeRef &type = types[circle ? to : from];
        reading.diagnostics.error(
            placeOf(type), nameOf(type) + (circle ? " is defined by itself"
                                                  : " is more than 256 types away from built-in "
                                                    "types"));
    };
    for (const std::size_t node : graph.cut(tell)) sorted.push_back(types[node]);
    return sorted;
}

void checkGroupReferences(Reading &reading) {
    Components &components = reading.components;
    Numbers numbers;
    numbers.addAll(components.groupDefinitions);
    ReferenceGraph graph{numbers.size()};
    const ModelGroup *empty = &components.modelGroups.emplace_back();
    for (const GroupDefinition &group : components.groupDefinitions) {
        const std::size_t from = numbers.of(static_cast<const void *>(&group));
        graph.setReach(from, 1);
        walkParticles(*group.group, [&](const Particle &particle, std::size_t depth) {
            const auto *const *to = std::get_if<const GroupDefinition *>(&particle.term);
            if (!to) return;
            const void *target = *to;
            graph.add(from, numbers.of(target), depth,
                      [&particle, empty] { writable(&particle).term = empty; });
        });
    }
    graph.cut([&](std::size_t from, std::size_t to, bool circle) {
        const GroupDefinition &group = components.groupDefinitions[circle ? to : from];
        reading.diagnostics.error(
            group.place, nameOf("group", group) +
                             (circle ? " contains itself" : " is nested more than 256 deep"));
    });
    for (const ComplexType &type : components.complexTypes) {
        if (!type.content) continue;
        walkParticles(*type.content, 0, [&](const Particle &particle, std::size_t depth) {
            const auto *const *to = std::get_if<const GroupDefinition *>(&particle.term);
            if (!to) return;
            const void *target = *to;
            if (depth + graph.reach(numbers.of(target)) <= kLongestChain) return;
            reading.diagnostics.error(particle.place, "content is nested more than 256 deep");
        });
    }
}

void checkAttributeGroupReferences(Reading &reading) {
    std::deque<AttributeGroup> &groups = reading.components.attributeGroups;
    Numbers numbers;
    numbers.addAll(groups);
    ReferenceGraph graph{numbers.size()};
    for (AttributeGroup &group : groups) {
        const std::size_t from = numbers.of(static_cast<const void *>(&group));
        graph.setReach(from, 1);
        for (const AttributeGroup *&reference : group.attributes.groups) {
            const void *to = reference;
            graph.add(from, numbers.of(to), 1, [&reference] { reference = nullptr; });
        }
    }
    graph.cut([&](std::size_t from, std::size_t to, bool circle) {
        const AttributeGroup &group = groups[circle ? to : from];
        reading.diagnostics.error(
            group.place, nameOf("attributeGroup", group) +
                             (circle ? " contains itself" : " is nested more than 256 deep"));
    });
    for (AttributeGroup &group : groups) {
        std::vector<const AttributeGroup *> &references = group.attributes.groups;
        references.erase(std::remove(references.begin(), references.end(), nullptr),
                         references.end());
    }
}

namespace {

// Whether types are derived from those of the heads of their substitution groups.
class SubstitutionTypes {
  public:
    explicit SubstitutionTypes(const Symbols &symbols) : symbols_(symbols) {}

    // XML Schema 1.0 Structures, 3.3.6 and 3.14.6.
    bool isDerived(TypeRef type, const TypeRef &head) {
        if (head == TypeRef(symbols_.anyType) || head == TypeRef(symbols_.unknownType)) return true;
        const std::unordered_set<const void *> &accepted = acceptedBy(head);
        for (;;) {
            if (accepted.count(pointerOf(type)) != 0) return true;
            if (type == TypeRef(symbols_.unknownType)) return true;
            if (const auto *const *simple = std::get_if<const SimpleType *>(&type)) {
                const SimpleType *base = baseOf(symbols_, **simple);
                if (!base) return false;
                type = base;
            } else {
                const ComplexType &complex = *std::get<const ComplexType *>(type);
                if (complex.derivation == ComplexType::Derivation::kNone) return false;
                type = complex.base;
            }
        }
    }

  private:
    static const void *pointerOf(const TypeRef &type) {
        return std::visit([](const auto *known) -> const void * { return known; }, type);
    }

    // A type and, if it is a union, its members.
    const std::unordered_set<const void *> &acceptedBy(const TypeRef &head) {
        const auto [found, isNew] = accepted_.try_emplace(pointerOf(head));
        std::unordered_set<const void *> &accepted = found->second;
        if (!isNew) return accepted;
        accepted.insert(pointerOf(head));
        std::vector<const SimpleType *> open;
        if (const auto *const *simple = std::get_if<const SimpleType *>(&head)) {
            open.push_back(*simple);
        }
        while (!open.empty()) {
            const SimpleType &type = *open.back();
            open.pop_back();
            for (const SimpleType *member : type.members) {
                if (accepted.insert(member).second) open.push_back(member);
            }
        }
        return accepted;
    }

    const Symbols &symbols_;
    std::unordered_map<const void *, std::unordered_set<const void *>> accepted_;
};

bool hasType(const ElementDecl &element) {
    return element.type != TypeRef(static_cast<const ComplexType *>(nullptr));
}

}  // namespace

void checkSubstitutionGroups(Reading &reading) {
    std::deque<ElementDecl> &elements = reading.components.elements;
    Numbers numbers;
    numbers.addAll(elements);
    ReferenceGraph graph{numbers.size()};
    for (ElementDecl &element : elements) {
        if (!element.substitutionHead) continue;
        const void *head = element.substitutionHead;
        graph.add(numbers.of(static_cast<const void *>(&element)), numbers.of(head), 1,
                  [&] { element.substitutionHead = nullptr; });
    }
    const auto tell = [&](std::size_t from, std::size_t to, bool circle) {
        const ElementDecl &element = elements[circle ? to : from];
        reading.diagnostics.error(
            element.place, nameOf("element", element) +
                               (circle ? " is in its own substitution group"
                                       : " is more than 256 substitution groups below a head"));
    };
    SubstitutionTypes types{reading.symbols};
    for (const std::size_t node : graph.cut(tell)) {
        ElementDecl &element = elements[node];
        const ElementDecl *head = element.substitutionHead;
        if (!hasType(element)) element.type = head ? head->type : reading.symbols.anyType;
        if (!head || types.isDerived(element.type, head->type)) continue;
        reading.diagnostics.error(element.place, "the type of " + nameOf("element", element) +
                                                     " is not derived from that of '" + head->name +
                                                     "', the head of its substitution group");
    }
}

}  // namespace xsd2c
