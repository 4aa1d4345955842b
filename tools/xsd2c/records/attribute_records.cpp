#include "xsd2c/records/attribute_records.h"

#include "xsd2c/pattern/tree_text.h"
#include "xsd2c/records/wildcards.h"

namespace xsd2c {
namespace {

constexpr std::int32_t kProhibited = 1, kRequired = 2;    // of SchemaAttributeDecl::use
constexpr std::int32_t kQualified = 1, kUnqualified = 2;  // of SchemaAttributeDecl::form
constexpr std::int32_t kStrict = 0, kLax = 1, kSkip = 2;  // of SchemaWildcard::processContents

std::int32_t useOf(const AttributeUse &use) {
    switch (use.use) {
        case AttributeUse::Use::kProhibited:
            return kProhibited;
        case AttributeUse::Use::kRequired:
            return kRequired;
        case AttributeUse::Use::kOptional:
            break;
    }
    return 0;
}

}  // namespace

std::int32_t processOf(Wildcard::Process process) {
    switch (process) {
        case Wildcard::Process::kLax:
            return kLax;
        case Wildcard::Process::kSkip:
            return kSkip;
        case Wildcard::Process::kStrict:
            break;
    }
    return kStrict;
}

std::string AttributeRecords::fixedValue(const CompiledType &type, const std::string &value,
                                         const Place &place, const std::string &owner) {
    // Of lists any white space divides the items, which a comparison of texts does not know.
    if (!type.oneSpelling || type.family == Family::kList) {
        diagnostics_.notEnforced(
            place, "that the fixed value '" + value + "' of " + owner + " has other spellings");
    }
    return simpleTypes_.fixedValue(type, value, place, owner);
}

void AttributeRecords::fix(SchemaAttributeDecl &record, const AttributeDecl &decl,
                           const std::string &value, const Place &place) {
    const CompiledType &type = simpleTypes_.compile(*decl.type);
    record.fixedValue =
        records_.text(fixedValue(type, value, place, "attribute '" + decl.name + "'"));
    record.hasFixed = 1;
}

SchemaAttributeDecl *AttributeRecords::add(const AttributeDecl &decl) {
    SchemaAttributeDecl *record = records_.attributes.add();
    record->type = simpleTypes_.compile(*decl.type).record;
    record->name = records_.text(toTreeText(decl.name));
    // Every declaration says it for itself, so that schemas of different defaults share a root.
    record->form = decl.qualified ? kQualified : kUnqualified;
    if (decl.qualified) record->targetNamespace = records_.textOrNull(toTreeText(decl.ns));
    records_.labels[record] = "attribute " + decl.name;
    return record;
}

const SchemaAttributeDecl *AttributeRecords::declaration(const AttributeDecl &decl) {
    const auto known = declarations_.find(&decl);
    if (known != declarations_.end()) return known->second;
    SchemaAttributeDecl *record = add(decl);
    if (decl.fixed) fix(*record, decl, *decl.fixed, decl.place);
    return declarations_.emplace(&decl, record).first->second;
}

const SchemaAttributeDecl *AttributeRecords::use(const AttributeUse &use) {
    const auto known = uses_.find(&use);
    if (known != uses_.end()) return known->second;
    SchemaAttributeDecl *record = nullptr;
    if (use.isRef && use.use == AttributeUse::Use::kOptional && !use.fixed) {
        record = records_.attributes.add();
        record->ref = declaration(*use.decl);
        records_.labels[record] = "reference to attribute " + use.decl->name;
    } else {
        // The validator reads all that a reference says from the declaration; so this is a copy.
        record = add(*use.decl);
        record->use = useOf(use);
        const auto &fixed = use.fixed ? use.fixed : use.decl->fixed;
        if (fixed) fix(*record, *use.decl, *fixed, use.place);
    }
    return uses_.emplace(&use, record).first->second;
}

const SchemaWildcard *AttributeRecords::wildcard(const Wildcard &wildcard) {
    SchemaWildcard *record = records_.attributeWildcards.add();
    record->targetNamespace = records_.textOrNull(toTreeText(wildcard.targetNs));
    record->namespaceConstraint = records_.text(toTreeText(constraintOf(wildcard)));
    record->processContents = processOf(wildcard.process);
    return record;
}

// Goes down the groups in it: the front end has seen to it that they are few.
const SchemaAttributeGroup *AttributeRecords::group(const AttributeGroup &group) {
    const auto known = groups_.find(&group);
    if (known != groups_.end()) return known->second;
    SchemaAttributeGroup *record = records_.attributeGroups.add();
    records_.labels[record] = "attributeGroup " + group.name;
    std::vector<const SchemaAttributeDecl *> records;
    if (hasAttributeWildcard(group.attributes)) {
        const AttributeModel model = models_.of(group.attributes, group.place);
        for (const AttributeUse *each : model.uses) records.push_back(use(*each));
        if (model.wildcard) record->attributeWildcard = wildcard(*model.wildcard);
    } else {
        for (const AttributeUse &each : group.attributes.uses) {
            // In a group it prohibits nothing.
            if (each.use != AttributeUse::Use::kProhibited) records.push_back(use(each));
        }
        setGroups(group.attributes.groups, *record);
    }
    setUses(records, *record);
    return groups_.emplace(&group, record).first->second;
}

}  // namespace xsd2c
