// tools/xsd2c/records/attribute_records.h - compiles attributes, their groups and wildcards.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "xsd2c/records/attribute_model.h"
#include "xsd2c/records/records.h"
#include "xsd2c/records/simple_types.h"
#include "xsd2c/xsd/components.h"

namespace xsd2c {

// SchemaWildcard::processContents and SchemaElementWildcard::processContents.
std::int32_t processOf(Wildcard::Process process);

class AttributeRecords {
  public:
    AttributeRecords(Records &records, Diagnostics &diagnostics, SimpleTypes &simpleTypes)
        : records_(records),
          diagnostics_(diagnostics),
          simpleTypes_(simpleTypes),
          models_(diagnostics) {}

    const SchemaAttributeDecl *declaration(const AttributeDecl &decl);
    const SchemaAttributeGroup *group(const AttributeGroup &group);

    // Whether a type must bring all of its attributes itself. A wildcard makes it so: the validator
    // lets the wildcard of a derivation, of its base and of each group claim attributes in turn,
    // before it comes to what stands behind, while XML Schema makes one of them that comes last. So
    // does a base that prohibits what a type may have again.
    bool standAlone(const ComplexType &type) const {
        return hasAttributeWildcard(type) || doesBaseProhibit(type);
    }

    // Gives a record, which is a SchemaComplexType or a SchemaDerivation, all attributes of a type,
    // or those that it adds to its base.
    template <class Owner>
    void fillWhole(const ComplexType &type, Owner &owner);
    template <class Owner>
    void fillOwn(const ComplexType &type, Owner &owner);

    // A fixed value as it is compared, with a warning where XML Schema compares more than texts.
    std::string fixedValue(const CompiledType &type, const std::string &value, const Place &place,
                           const std::string &owner);

  private:
    const SchemaAttributeDecl *use(const AttributeUse &use);
    SchemaAttributeDecl *add(const AttributeDecl &decl);
    void fix(SchemaAttributeDecl &record, const AttributeDecl &decl, const std::string &value,
             const Place &place);
    const SchemaWildcard *wildcard(const Wildcard &wildcard);
    template <class Owner>
    void setUses(const std::vector<const SchemaAttributeDecl *> &uses, Owner &owner);
    template <class Owner>
    void setGroups(const std::vector<const AttributeGroup *> &groups, Owner &owner);

    Records &records_;
    Diagnostics &diagnostics_;
    SimpleTypes &simpleTypes_;
    AttributeModels models_;
    std::unordered_map<const AttributeDecl *, const SchemaAttributeDecl *> declarations_;
    std::unordered_map<const AttributeUse *, const SchemaAttributeDecl *> uses_;
    std::unordered_map<const AttributeGroup *, const SchemaAttributeGroup *> groups_;
};

template <class Owner>
void AttributeRecords::setUses(const std::vector<const SchemaAttributeDecl *> &uses, Owner &owner) {
    owner.attributeUses = records_.attributeUses.add(uses);
    owner.attributeUseCount = static_cast<std::uint32_t>(uses.size());
}

template <class Owner>
void AttributeRecords::setGroups(const std::vector<const AttributeGroup *> &groups, Owner &owner) {
    std::vector<const SchemaAttributeGroup *> records;
    for (const AttributeGroup *each : groups) records.push_back(group(*each));
    owner.attributeGroups = records_.attributeGroupRefs.add(records);
    owner.attributeGroupCount = static_cast<std::uint32_t>(records.size());
}

template <class Owner>
void AttributeRecords::fillWhole(const ComplexType &type, Owner &owner) {
    if (!standAlone(type) && type.derivation == ComplexType::Derivation::kNone) {
        return fillOwn(type, owner);
    }
    const AttributeModel model = models_.of(type);
    std::vector<const SchemaAttributeDecl *> records;
    for (const AttributeUse *each : model.uses) records.push_back(use(*each));
    setUses(records, owner);
    if (model.wildcard) owner.attributeWildcard = wildcard(*model.wildcard);
}

template <class Owner>
void AttributeRecords::fillOwn(const ComplexType &type, Owner &owner) {
    std::vector<const SchemaAttributeDecl *> records;
    const bool restricts = type.derivation == ComplexType::Derivation::kComplexRestriction ||
                           type.derivation == ComplexType::Derivation::kSimpleRestriction;
    for (const AttributeUse &each : type.attributes.uses) {
        // Only where something is restricted is there anything to prohibit.
        if (restricts || each.use != AttributeUse::Use::kProhibited) records.push_back(use(each));
    }
    setUses(records, owner);
    setGroups(type.attributes.groups, owner);
}

}  // namespace xsd2c
