#include "xsd2c/xsd/attribute_value.h"
#include "xsd2c/xsd/reader.h"

namespace xsd2c {
namespace {

std::uint32_t occurs(const SourceElement &element, const char *attribute) {
    const std::string *value = element.value(attribute);
    return value ? parseOccurs(*value).value_or(1) : 1;
}

ModelGroup::Compositor compositorOf(const SourceElement &element) {
    if (element.name == "all") return ModelGroup::Compositor::kAll;
    return element.name == "choice" ? ModelGroup::Compositor::kChoice
                                    : ModelGroup::Compositor::kSequence;
}

bool isModelGroup(Construct construct) {
    return construct == Construct::kAll || construct == Construct::kChoice ||
           construct == Construct::kSequence || construct == Construct::kGroupAll ||
           construct == Construct::kGroupChoice || construct == Construct::kGroupSequence;
}

}  // namespace

std::optional<Particle> Reader::readGroupRef(const SourceElement &element, Particle particle) {
    const std::string *ref = element.value("ref");
    if (!ref) return std::nullopt;
    const GroupDefinition *group = find(reading_.symbols.groups, element, *ref, "group", "defined");
    if (!group) return std::nullopt;
    particle.term = group;
    return particle;
}

std::optional<Particle> Reader::readElementParticle(const SourceElement &element,
                                                    Particle particle) {
    if (element.has("ref")) {
        const std::string *ref = element.value("ref");
        const ElementDecl *referred =
            ref ? find(reading_.symbols.elements, element, *ref, "element", "declared") : nullptr;
        if (!referred) return std::nullopt;
        particle.term = referred;
        return particle;
    }
    ElementDecl &declaration = add(reading_.components.elements, element);
    if (const std::string *name = element.value("name")) declaration.name = *name;
    declaration.qualified = isQualified(element, elementsQualified_);
    readElement(element, declaration);
    particle.term = &declaration;
    return particle;
}

// Nothing for what never occurs and for what is no particle at all. What never occurs is read
// nevertheless, for the mistakes in it.
std::optional<Particle> Reader::readParticle(const SourceElement &element) {
    Particle particle;
    particle.place = element.place;
    particle.minOccurs = occurs(element, "minOccurs");
    particle.maxOccurs = occurs(element, "maxOccurs");
    std::optional<Particle> result;
    if (element.construct == Construct::kGroupRef) {
        result = readGroupRef(element, particle);
    } else if (element.construct == Construct::kLocalElement ||
               element.construct == Construct::kElementOfAll) {
        result = readElementParticle(element, particle);
    } else if (element.construct == Construct::kAny) {
        particle.term = &readWildcard(element);
        result = particle;
    } else if (isModelGroup(element.construct)) {
        particle.term = readModelGroup(element);
        result = particle;
    }
    if (particle.maxOccurs == 0) return std::nullopt;
    return result;
}

const ModelGroup *Reader::readModelGroup(const SourceElement &element) {
    ModelGroup &group = reading_.components.modelGroups.emplace_back();
    group.compositor = compositorOf(element);
    for (const SourceElement *child : element.children) {
        std::optional<Particle> particle = readParticle(*child);
        if (particle) group.particles.push_back(std::move(*particle));
    }
    return &group;
}

void Reader::readGroup(const SourceElement &element, GroupDefinition &group) {
    for (const SourceElement *child : element.children) {
        if (isModelGroup(child->construct)) group.group = readModelGroup(*child);
    }
    // A group without content is a mistake that has been told.
    if (!group.group) group.group = &reading_.components.modelGroups.emplace_back();
}

}  // namespace xsd2c
