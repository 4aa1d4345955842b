#include "xsd2c/records/compile.h"

#include <algorithm>
#include <cstdint>
#include <deque>
#include <set>
#include <tuple>
#include <unordered_map>
#include <utility>

#include "xsd2c/pattern/tree_text.h"
#include "xsd2c/records/attribute_records.h"
#include "xsd2c/records/content_term.h"
#include "xsd2c/records/determinism.h"
#include "xsd2c/records/greedy.h"
#include "xsd2c/records/simple_types.h"
#include "xsd2c/records/substitutions.h"
#include "xsd2c/records/wildcards.h"

namespace xsd2c {
namespace {

using Derivation = ComplexType::Derivation;
using Compositor = ModelGroup::Compositor;

constexpr std::int32_t kQualified = 1, kUnqualified = 2;  // of SchemaElementDecl::form

std::string nameInMessages(const ComplexType &type) {
    return type.name.empty() ? "an anonymous complexType" : "complexType '" + type.name + "'";
}

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

const ModelGroup *groupOf(const Particle &particle) {
    if (const auto *group = std::get_if<const ModelGroup *>(&particle.term)) return *group;
    if (const auto *definition = std::get_if<const GroupDefinition *>(&particle.term)) {
        return (*definition)->group;
    }
    return nullptr;
}

bool isSimpleContent(const ComplexType &type) {
    return type.derivation == Derivation::kSimpleRestriction ||
           type.derivation == Derivation::kSimpleExtension;
}

// Derived from anyType by restriction is what every type is that says nothing of derivation.
bool isUnderived(const ComplexType &type) {
    if (type.derivation == Derivation::kNone) return true;
    const auto *base = std::get_if<const ComplexType *>(&type.base);
    return type.derivation == Derivation::kComplexRestriction && base && (*base)->isAnyType;
}

// Whether a type says nothing of elements: an empty choice is not nothing, it has no content at all.
bool isEmpty(const Particle &content) {
    const ModelGroup &group = *groupOf(content);
    return group.particles.empty() &&
           (group.compositor != Compositor::kChoice || content.minOccurs == 0);
}

// An extension that adds no elements takes over what it extends, text included (XML Schema 1.0 Structures,
// 3.4.2).
bool isMixed(const ComplexType &type) {
    const ComplexType *step = &type;
    while (step->derivation == Derivation::kComplexExtension && !step->mixed &&
           (!step->content || isEmpty(*step->content))) {
        step = std::get<const ComplexType *>(step->base);
    }
    return step->mixed || step->isAnyType;
}

bool hasLists(const Components &components) {
    return std::any_of(
        components.simpleTypes.begin(), components.simpleTypes.end(),
        [](const SimpleType &type) { return type.variety == SimpleType::Variety::kList; });
}

class SchemaCompiler {
  public:
    SchemaCompiler(const Components &components, Records &records, Diagnostics &diagnostics)
        : components_(components),
          records_(records),
          diagnostics_(diagnostics),
          simpleTypes_(records, diagnostics, hasLists(components)),
          attributes_(records, diagnostics, simpleTypes_),
          substitutions_(components) {}

    void compile();

  private:
    SchemaTypedRef top(const TopComponent &component);

    // Records of what may refer to itself are made first and filled when all that is begun is done,
    // so that nothing here is as deep as references are long.
    SchemaElementDecl *element(const ElementDecl &decl);
    const SchemaComplexType *complexType(const ComplexType &type);
    void fill(const ElementDecl &decl, SchemaElementDecl &record);
    void fill(const ComplexType &type, SchemaComplexType &record);

    void fillAnyType(SchemaComplexType &record);
    void fillSimpleContent(const ComplexType &type, SchemaComplexType &record);
    void fillComplexContent(const ComplexType &type, SchemaComplexType &record);
    void setBase(SchemaDerivation &derivation, const TypeRef &base);
    void fixValue(const ElementDecl &decl, SchemaElementDecl &record);
    void checkDeterminism(const ComplexType &type);

    const CompiledType &contentType(const ComplexType &type);

    const SchemaModelGroup *contentGroup(const ComplexType &type);
    const SchemaModelGroup *wholeContent(const ComplexType &type);
    const SchemaModelGroup *emptySequence();
    const SchemaModelGroup *anyContent();
    const SchemaModelGroup *modelGroup(const Particle &particle);
    const SchemaModelGroup *definedGroup(const GroupDefinition &definition);
    SchemaModelGroup *addGroup(const ModelGroup &group, std::uint32_t least, std::uint32_t most);
    SchemaTypedRef particle(const Particle &particle);
    SchemaTypedRef elementParticle(const Particle &particle, const ElementDecl &decl);
    const SchemaElementDecl *reference(const ElementDecl &decl, std::uint32_t least,
                                       std::uint32_t most);
    SchemaTypedRef wildcardParticle(const Particle &particle, const Wildcard &wildcard);
    void checkAll(const ModelGroup &group);

    const char *text(const std::string &utf8) { return records_.text(toTreeText(utf8)); }
    const char *textOrNull(const std::string &utf8) {
        return records_.textOrNull(toTreeText(utf8));
    }

    struct Particles {
        const SchemaTypedRef *first;
        std::uint32_t count;
    };

    const Components &components_;
    Records &records_;
    Diagnostics &diagnostics_;
    SimpleTypes simpleTypes_;
    AttributeRecords attributes_;
    Substitutions substitutions_;

    std::unordered_map<const ElementDecl *, SchemaElementDecl *> elements_;
    std::unordered_map<const ComplexType *, SchemaComplexType *> complexTypes_;
    std::unordered_map<const ComplexType *, CompiledType> contentTypes_;
    std::unordered_map<const ModelGroup *, Particles> particles_;
    std::unordered_map<const GroupDefinition *, const SchemaModelGroup *> definitions_;
    const SchemaModelGroup *emptySequence_ = nullptr;
    const SchemaModelGroup *anyContent_ = nullptr;
    std::deque<std::pair<const ElementDecl *, SchemaElementDecl *>> openElements_;
    std::deque<std::pair<const ComplexType *, SchemaComplexType *>> openTypes_;
    std::set<std::tuple<const std::string *, int, int, const std::string *, int, int>> ambiguities_;
};

void SchemaCompiler::compile() {
    for (const TopComponent &component : components_.top) {
        const SchemaTypedRef object = top(component);
        const auto [name, ns] =
            std::visit([](const auto *declared) { return std::pair(declared->name, declared->ns); },
                       component);
        records_.top.push_back({object, name, ns});
        while (!openElements_.empty() || !openTypes_.empty()) {
            if (!openElements_.empty()) {
                const auto [decl, record] = openElements_.front();
                openElements_.pop_front();
                fill(*decl, *record);
            } else {
                const auto [type, record] = openTypes_.front();
                openTypes_.pop_front();
                fill(*type, *record);
            }
        }
    }
}

SchemaTypedRef SchemaCompiler::top(const TopComponent &component) {
    if (const auto *type = std::get_if<const SimpleType *>(&component)) {
        return {simpleTypes_.compile(**type).record, SCHEMA_KIND_SIMPLE_TYPE};
    }
    if (const auto *type = std::get_if<const ComplexType *>(&component)) {
        return {complexType(**type), SCHEMA_KIND_COMPLEX_TYPE};
    }
    if (const auto *decl = std::get_if<const ElementDecl *>(&component)) {
        return {element(**decl), SCHEMA_KIND_ELEMENT};
    }
    if (const auto *decl = std::get_if<const AttributeDecl *>(&component)) {
        return {attributes_.declaration(**decl), SCHEMA_KIND_ATTRIBUTE};
    }
    if (const auto *group = std::get_if<const AttributeGroup *>(&component)) {
        return {attributes_.group(**group), SCHEMA_KIND_ATTRIBUTE_GROUP};
    }
    return {definedGroup(*std::get<const GroupDefinition *>(component)), SCHEMA_KIND_MODEL_GROUP};
}

// ---- elements ----

SchemaElementDecl *SchemaCompiler::element(const ElementDecl &decl) {
    SchemaElementDecl *&record = elements_[&decl];
    if (!record) {
        record = records_.elements.add();
        openElements_.emplace_back(&decl, record);
    }
    return record;
}

void SchemaCompiler::fill(const ElementDecl &decl, SchemaElementDecl &record) {
    records_.labels[&record] = "element " + decl.name;
    record.name = text(decl.name);
    // Every declaration says it for itself, so that schemas of different defaults share a root.
    record.form = decl.qualified ? kQualified : kUnqualified;
    if (decl.qualified) record.targetNamespace = textOrNull(decl.ns);
    if (decl.global) record.minOccurs = record.maxOccurs = 1;
    if (decl.substitutionHead) {
        record.substitutionGroupName = text(decl.substitutionHead->name);
        record.substitutionGroupNamespace = textOrNull(decl.substitutionHead->ns);
    }
    if (const auto *simple = std::get_if<const SimpleType *>(&decl.type)) {
        record.type = simpleTypes_.compile(**simple).record;
        record.typeKind = SCHEMA_KIND_SIMPLE_TYPE;
    } else {
        record.type = complexType(*std::get<const ComplexType *>(decl.type));
        record.typeKind = SCHEMA_KIND_COMPLEX_TYPE;
    }
    record.abstract = decl.abstract;
    record.nillable = decl.nillable;
    if (decl.fixed) fixValue(decl, record);
}

void SchemaCompiler::fixValue(const ElementDecl &decl, SchemaElementDecl &record) {
    const std::string owner = "element '" + decl.name + "'";
    const CompiledType *type = nullptr;
    if (const auto *simple = std::get_if<const SimpleType *>(&decl.type)) {
        type = &simpleTypes_.compile(**simple);
    } else if (const auto *complex = std::get<const ComplexType *>(decl.type);
               isSimpleContent(*complex)) {
        type = &contentType(*complex);
    } else {
        return diagnostics_.error(
            decl.place, "the fixed value of " + owner + " needs a type with simple content");
    }
    record.fixedValue =
        records_.text(attributes_.fixedValue(*type, *decl.fixed, decl.place, owner));
    record.hasFixed = 1;
}

// ---- complex types ----

const SchemaComplexType *SchemaCompiler::complexType(const ComplexType &type) {
    SchemaComplexType *&record = complexTypes_[&type];
    if (!record) {
        record = records_.complexTypes.add();
        openTypes_.emplace_back(&type, record);
    }
    return record;
}

void SchemaCompiler::fill(const ComplexType &type, SchemaComplexType &record) {
    if (type.isAnyType) return fillAnyType(record);
    records_.labels[&record] = nameInMessages(type);
    record.name = textOrNull(type.name);
    record.targetNamespace = textOrNull(type.name.empty() ? "" : type.ns);
    record.mixed = !isSimpleContent(type) && isMixed(type);
    if (isSimpleContent(type)) {
        fillSimpleContent(type, record);
    } else {
        fillComplexContent(type, record);
        checkDeterminism(type);
    }
}

const SchemaModelGroup *SchemaCompiler::anyContent() {
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

// The registered anyType has no content at all; what XML Schema means by it is anything.
void SchemaCompiler::fillAnyType(SchemaComplexType &record) {
    SchemaWildcard *attributes = records_.attributeWildcards.add();
    attributes->namespaceConstraint = records_.text("##any");
    attributes->processContents = processOf(Wildcard::Process::kLax);
    record.particle = anyContent();
    record.attributeWildcard = attributes;
    record.name = records_.text("anyType");
    record.targetNamespace = records_.text(kSchemaNamespace);
    record.mixed = 1;
    records_.labels[&record] = "anyType: any content";
}

void SchemaCompiler::setBase(SchemaDerivation &derivation, const TypeRef &base) {
    if (const auto *simple = std::get_if<const SimpleType *>(&base)) {
        derivation.baseType = simpleTypes_.compile(**simple).record;
        derivation.baseTypeKind = SCHEMA_KIND_SIMPLE_TYPE;
    } else {
        derivation.baseType = complexType(*std::get<const ComplexType *>(base));
        derivation.baseTypeKind = SCHEMA_KIND_COMPLEX_TYPE;
    }
}

void SchemaCompiler::fillSimpleContent(const ComplexType &type, SchemaComplexType &record) {
    SchemaDerivation *derivation = records_.derivations.add();
    records_.labels[derivation] = "content of " + nameInMessages(type);
    record.content = derivation;
    const bool restricts = type.derivation == Derivation::kSimpleRestriction;
    if (attributes_.standAlone(type) || type.contentType) {
        // All attributes stand here: the base would bring its own, or is not the one of the values.
        derivation->derivationKind = SCHEMA_KIND_SIMPLE_EXTENSION;
        derivation->baseType = contentType(type).record;
        derivation->baseTypeKind = SCHEMA_KIND_SIMPLE_TYPE;
        return attributes_.fillWhole(type, *derivation);
    }
    setBase(*derivation, type.base);
    derivation->derivationKind =
        restricts ? SCHEMA_KIND_SIMPLE_RESTRICTION : SCHEMA_KIND_SIMPLE_EXTENSION;
    if (restricts) {
        const SchemaSimpleType *step = contentType(type).record;
        derivation->facets = step->facets;
        derivation->facetCount = step->facetCount;
    }
    attributes_.fillOwn(type, *derivation);
}

// The simple type that the values of simple content have.
const CompiledType &SchemaCompiler::contentType(const ComplexType &type) {
    const auto known = contentTypes_.find(&type);
    if (known != contentTypes_.end()) return known->second;
    CompiledType base;
    if (type.contentType) {
        base = simpleTypes_.compile(*type.contentType);
    } else if (const auto *simple = std::get_if<const SimpleType *>(&type.base)) {
        base = simpleTypes_.compile(**simple);
    } else {
        base = contentType(*std::get<const ComplexType *>(type.base));
    }
    if (type.derivation == Derivation::kSimpleRestriction) {
        const std::string owner = nameInMessages(type);
        base = simpleTypes_.derive(base, simpleTypes_.restrict(base, type.facets, owner),
                                   "values of " + owner);
    }
    return contentTypes_.emplace(&type, std::move(base)).first->second;
}

void SchemaCompiler::fillComplexContent(const ComplexType &type, SchemaComplexType &record) {
    const bool alone = attributes_.standAlone(type);
    if (isUnderived(type) || alone) {
        record.particle = wholeContent(type);
        if (!record.particle && record.mixed) record.particle = emptySequence();
        return attributes_.fillWhole(type, record);
    }
    SchemaDerivation *derivation = records_.derivations.add();
    records_.labels[derivation] = "content of " + nameInMessages(type);
    record.content = derivation;
    setBase(*derivation, type.base);
    derivation->derivationKind = type.derivation == Derivation::kComplexExtension
                                     ? SCHEMA_KIND_COMPLEX_EXTENSION
                                     : SCHEMA_KIND_COMPLEX_RESTRICTION;
    derivation->particle = contentGroup(type);
    attributes_.fillOwn(type, *derivation);
}

void SchemaCompiler::checkDeterminism(const ComplexType &type) {
    if (type.derivation == Derivation::kComplexExtension &&
        std::get<const ComplexType *>(type.base)->isAnyType && type.content &&
        !isEmpty(*type.content)) {
        return diagnostics_.error(type.place, "the content of " + nameInMessages(type) +
                                                  " is ambiguous: anything may stand before it");
    }
    const std::optional<Term> model = contentTerm(type, substitutions_);
    bool tooLarge = !model;
    std::vector<Ambiguity> found;
    if (model) found = findAmbiguities(*model, tooLarge);
    if (tooLarge) {
        return diagnostics_.error(type.place, "the content of " + nameInMessages(type) +
                                                  " has too many particles when all groups stand "
                                                  "in their places");
    }
    for (const Ambiguity &ambiguity : found) {
        const Place &a = ambiguity.first, &b = ambiguity.second;
        // Types that extend this one have the same to tell.
        if (!ambiguities_.emplace(a.file, a.line, a.column, b.file, b.line, b.column).second) {
            continue;
        }
        diagnostics_.error(b, "the content of " + nameInMessages(type) + " is ambiguous: " +
                                  ambiguity.child + " may belong here or to " + placeText(a));
    }
    if (!found.empty()) return;
    for (const GreedyFailure &failure : findGreedyFailures(*model)) {
        diagnostics_.error(failure.place, "the content of " + nameInMessages(type) + " has " +
                                              failure.text +
                                              ", which the validator would judge wrongly");
    }
}

// ---- content models ----

// Mixed content without elements is a model of no particles: without a model there is no text.
const SchemaModelGroup *SchemaCompiler::emptySequence() {
    if (!emptySequence_) {
        SchemaModelGroup *sequence = records_.modelGroups.add();
        *sequence = {nullptr, 1, 1, 0, SCHEMA_KIND_SEQUENCE};
        records_.labels[sequence] = "no elements";
        emptySequence_ = sequence;
    }
    return emptySequence_;
}

// What the type itself says of its content; null if that is nothing.
const SchemaModelGroup *SchemaCompiler::contentGroup(const ComplexType &type) {
    if (type.isAnyType) return anyContent();
    return type.content && !isEmpty(*type.content) ? modelGroup(*type.content) : nullptr;
}

// The same with what it extends.
const SchemaModelGroup *SchemaCompiler::wholeContent(const ComplexType &type) {
    std::vector<SchemaTypedRef> parts;
    for (const ComplexType *step : extensionChain(type)) {
        const SchemaModelGroup *group = contentGroup(*step);
        if (group) parts.push_back({group, SCHEMA_KIND_MODEL_GROUP});
    }
    if (parts.empty()) return nullptr;
    if (parts.size() == 1) return static_cast<const SchemaModelGroup *>(parts[0].object);
    SchemaModelGroup *sequence = records_.modelGroups.add();
    *sequence = {records_.particles.add(parts), 1, 1, static_cast<std::uint32_t>(parts.size()),
                 SCHEMA_KIND_SEQUENCE};
    return sequence;
}

const SchemaModelGroup *SchemaCompiler::modelGroup(const Particle &particle) {
    const auto *definition = std::get_if<const GroupDefinition *>(&particle.term);
    if (definition && particle.minOccurs == 1 && particle.maxOccurs == 1) {
        return definedGroup(**definition);
    }
    return addGroup(*groupOf(particle), particle.minOccurs, particle.maxOccurs);
}

const SchemaModelGroup *SchemaCompiler::definedGroup(const GroupDefinition &definition) {
    const auto known = definitions_.find(&definition);
    if (known != definitions_.end()) return known->second;
    SchemaModelGroup *group = addGroup(*definition.group, 1, 1);
    records_.labels[group] = "group " + definition.name;
    return definitions_.emplace(&definition, group).first->second;
}

SchemaModelGroup *SchemaCompiler::addGroup(const ModelGroup &group, std::uint32_t least,
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
void SchemaCompiler::checkAll(const ModelGroup &group) {
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

SchemaTypedRef SchemaCompiler::particle(const Particle &particle) {
    if (const auto *decl = std::get_if<const ElementDecl *>(&particle.term)) {
        return elementParticle(particle, **decl);
    }
    if (const auto *wildcard = std::get_if<const Wildcard *>(&particle.term)) {
        return wildcardParticle(particle, **wildcard);
    }
    const ModelGroup &group = *groupOf(particle);
    if (group.particles.empty() && group.compositor == Compositor::kChoice &&
        particle.minOccurs != 0) {
        diagnostics_.error(particle.place, "a choice without alternatives has no content");
    }
    return {modelGroup(particle), SCHEMA_KIND_MODEL_GROUP};
}

const SchemaElementDecl *SchemaCompiler::reference(const ElementDecl &decl, std::uint32_t least,
                                                   std::uint32_t most) {
    SchemaElementDecl *record = records_.elements.add();
    record->ref = element(decl);
    record->minOccurs = least;
    record->maxOccurs = most;
    records_.labels[record] = "reference to element " + decl.name;
    return record;
}

SchemaTypedRef SchemaCompiler::elementParticle(const Particle &particle, const ElementDecl &decl) {
    if (!decl.global) {
        // Each is written once and so has a particle of its own, whose bounds are the record's.
        SchemaElementDecl *record = element(decl);
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

SchemaTypedRef SchemaCompiler::wildcardParticle(const Particle &particle,
                                                const Wildcard &wildcard) {
    SchemaElementWildcard *record = records_.elementWildcards.add();
    record->targetNamespace = textOrNull(wildcard.targetNs);
    record->namespaceConstraint = text(constraintOf(wildcard));
    record->minOccurs = particle.minOccurs;
    record->maxOccurs = particle.maxOccurs;
    record->processContents = processOf(wildcard.process);
    return {record, SCHEMA_KIND_ELEMENT_WILDCARD};
}

}  // namespace

void compileSchema(const Components &components, Records &records, Diagnostics &diagnostics) {
    SchemaCompiler{components, records, diagnostics}.compile();
}

}  // namespace xsd2c
