#include "xsd2c/xsd/component_checks.h"

#include <string>

#include "xsd2c/xsd/model_walk.h"

namespace xsd2c {
namespace {

const GroupDefinition *asAllGroup(const Particle &particle) {
    const auto *const *group = std::get_if<const GroupDefinition *>(&particle.term);
    const bool all = group && (*group)->group->compositor == ModelGroup::Compositor::kAll;
    return all ? *group : nullptr;
}

}  // namespace

// XML Schema 1.0 Structures, 3.8.6, "All Group Limited".
void checkAllGroups(const Reading &reading) {
    const auto tell = [&](const Particle &particle, const GroupDefinition &group) {
        reading.diagnostics.error(particle.place,
                                  "group '" + group.name +
                                      "' is an 'all', which is the whole content of a type or "
                                      "nothing of it, once");
    };
    for (const ModelGroup &group : reading.components.modelGroups) {
        for (const Particle &particle : group.particles) {
            if (const GroupDefinition *all = asAllGroup(particle)) tell(particle, *all);
        }
    }
    for (const ComplexType &type : reading.components.complexTypes) {
        if (!type.content || type.content->maxOccurs == 1) continue;
        if (const GroupDefinition *all = asAllGroup(*type.content)) tell(*type.content, *all);
    }
}

void checkComponents(Reading &reading) {
    const std::vector<TypeRef> types = checkTypeReferences(reading);
    checkGroupReferences(reading);
    checkAttributeGroupReferences(reading);
    checkSubstitutionGroups(reading);
    checkDerivations(reading, types);
    checkAttributes(reading);
    checkAllGroups(reading);
}

}  // namespace xsd2c
