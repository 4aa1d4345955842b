#include "xsd2c/records/content_records.h"

#include <variant>
#include <vector>

#include "xsd2c/pattern/tree_text.h"
#include "xsd2c/records/attribute_records.h"
#include "xsd2c/records/content_term.h"
#include "xsd2c/records/wildcards.h"

namespace xsd2c {
namespace {

using Compositor = ModelGroup::Compositor;

std::int32_t compositorOf(const ModelGroup &group) {
    switch (group.compositor) {
        case Compositor::kAll:
            return SCHEMA_KIND_ALL;
        case Compositor::kChoice:
            return SCHEMA_KIND_CHOICE;
        case Compositor::kSequence:
            break;
    }
    return SCHEMA_KIND_SEQUENCE;
}

}  // namespace

const SchemaModelGroup *ContentRecords::anything() {
    if (anyContent_) return anyContent_;
    SchemaElementWildcard *elements = records_.elementWildcards.add();
    elements->namespaceConstraint = records_.text("##any");
    elements->maxOccurs = kUnbounded;
    elements->processContents = processOf(Wildcard::Process::kLax);
    SchemaTypedRef *particle = records_.particles.add();
    *particle = {elements, SCHEMA_KIND_ELEMENT_WILDCARD};
    SchemaModelGroup *sequence = records_.modelGroups.add();
    *sequence = {particle, 1, 1, 1, SCHEMA_KIND_SEQUENCE};
    records_.labels[sequence] = "any elements";
    return anyContent_ = sequence;
}

const SchemaModelGroup *ContentRecords::noElements() {
    if (!emptySequence_) {
        SchemaModelGroup *sequence = records_.modelGroups.add();
        *sequence = {nullptr, 1, 1, 0, SCHEMA_KIND_SEQUENCE};
        records_.labels[sequence] = "no elements";
        emptySequence_ = sequence;
    }
    return emptySequence_;
}

const SchemaModelGroup *ContentRecords::own(const ComplexType &type) {
    if (type.isAnyType) return anything();
    return type.content && !addsNothing(*type.content) ? modelGroup(*type.content) : nullptr;
}

const SchemaModelGroup *ContentRecords::whole(const ComplexType &type) {
    std::vector<SchemaTypedRef> parts;
    for (const ComplexType *step : extensionChain(type)) {
        const SchemaModelGroup *group = own(*step);
        if (group) parts.push_back({group, SCHEMA_KIND_MODEL_GROUP});
    }
    if (parts.empty()) return nullptr;
    if (parts.size() == 1) return static_cast<const SchemaModelGroup *>(parts[0].object);
    SchemaModelGroup *sequence = records_.modelGroups.add();
    *sequence = {records_.particles.add(parts), 1, 1, static_cast<std::uint32_t>(parts.size()),
                 SCHEMA_KIND_SEQUENCE};
    return sequence;
}

const SchemaModelGroup *ContentRecords::modelGroup(const Particle &particle) {
    const ModelGroup &group = *groupOf(particle);
    if (group.particles.empty() && !addsNothing(particle)) {
        diagnostics_.error(particle.place, "a choice without alternatives has no content");
    }
    const auto *definition = std::get_if<const GroupDefinition *>(&particle.term);
    if (definition && particle.minOccurs == 1 && particle.maxOccurs == 1) {
        return this->definition(**definition);
    }
    return addGroup(group, particle.minOccurs, particle.maxOccurs);
}

const SchemaModelGroup *ContentRecords::definition(const GroupDefinition &definition) {
    const auto known = definitions_.find(&definition);
    if (known != definitions_.end()) return known->second;
    SchemaModelGroup *group = addGroup(*definition.group, 1, 1);
    records_.labels[group] = "group " + definition.name;
    return definitions_.emplace(&definition, group).first->second;
}

SchemaModelGroup *ContentRecords::addGroup(const ModelGroup &group, std::uint32_t least,
                                           std::uint32_t most) {
    // As deep as groups lie in groups, which the front end keeps small.
    auto known = particles_.find(&group);
    if (known == particles_.end()) {
        checkAll(group);
        std::vector<SchemaTypedRef> particles;
        for (const Particle &part : group.particles) particles.push_back(particle(part));
        const Particles array = {records_.particles.add(particles),
                                 static_cast<std::uint32_t>(particles.size())};
        known = particles_.emplace(&group, array).first;
    }
    SchemaModelGroup *record = records_.modelGroups.add();
    *record = {known->second.first, least, most, known->second.count, compositorOf(group)};
    return record;
}

// The validator looks in an "all" for elements alone.
void ContentRecords::checkAll(const ModelGroup &group) {
    if (group.compositor != Compositor::kAll) return;
    for (const Particle &part : group.particles) {
        const auto *element = std::get_if<const ElementDecl *>(&part.term);
        if (!element || !(*element)->global || !substitutions_.hasMembers(**element) ||
            substitutions_.isFoundByValidator(**element)) {
            continue;
        }
        diagnostics_.error(part.place, "element '" + (*element)->name +
                                           "' within 'all' has a substitution group of several "
                                           "levels or a head that is not abstract");
    }
}

SchemaTypedRef ContentRecords::particle(const Particle &particle) {
    if (const auto *decl = std::get_if<const ElementDecl *>(&particle.term)) {
        return elementParticle(particle, **decl);
    }
    if (const auto *wildcard = std::get_if<const Wildcard *>(&particle.term)) {
        return wildcardParticle(particle, **wildcard);
    }
    return {modelGroup(particle), SCHEMA_KIND_MODEL_GROUP};
}

const SchemaElementDecl *ContentRecords::reference(const ElementDecl &decl, std::uint32_t least,
                                                   std::uint32_t most) {
    SchemaElementDecl *record = records_.elements.add();
    record->ref = element_(decl);
    record->minOccurs = least;
    record->maxOccurs = most;
    records_.labels[record] = "reference to element " + decl.name;
    return record;
}

SchemaTypedRef ContentRecords::elementParticle(const Particle &particle, const ElementDecl &decl) {
    if (!decl.global) {
        // Each is written once and so has a particle of its own, whose bounds are the record's.
        SchemaElementDecl *record = element_(decl);
        record->minOccurs = particle.minOccurs;
        record->maxOccurs = particle.maxOccurs;
        return {record, SCHEMA_KIND_ELEMENT};
    }
    if (!substitutions_.hasMembers(decl) || substitutions_.isFoundByValidator(decl)) {
        return {reference(decl, particle.minOccurs, particle.maxOccurs), SCHEMA_KIND_ELEMENT};
    }
    std::vector<SchemaTypedRef> members;
    for (const ElementDecl *member : substitutions_.elementsFor(decl)) {
        members.push_back({reference(*member, 1, 1), SCHEMA_KIND_ELEMENT});
    }
    if (members.empty()) members.push_back({reference(decl, 1, 1), SCHEMA_KIND_ELEMENT});
    SchemaModelGroup *choice = records_.modelGroups.add();
    *choice = {records_.particles.add(members), particle.minOccurs, particle.maxOccurs,
               static_cast<std::uint32_t>(members.size()), SCHEMA_KIND_CHOICE};
    records_.labels[choice] = "substitution group of " + decl.name;
    return {choice, SCHEMA_KIND_MODEL_GROUP};
}

SchemaTypedRef ContentRecords::wildcardParticle(const Particle &particle,
                                                const Wildcard &wildcard) {
    SchemaElementWildcard *record = records_.elementWildcards.add();
    record->targetNamespace = records_.textOrNull(toTreeText(wildcard.targetNs));
    record->namespaceConstraint = records_.text(toTreeText(constraintOf(wildcard)));
    record->minOccurs = particle.minOccurs;
    record->maxOccurs = particle.maxOccurs;
    record->processContents = processOf(wildcard.process);
    return {record, SCHEMA_KIND_ELEMENT_WILDCARD};
}

}  // namespace xsd2c
