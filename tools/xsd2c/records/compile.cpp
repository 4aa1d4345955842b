#include "xsd2c/records/compile.h"

#include <algorithm>
#include <cstdint>
#include <deque>
#include <unordered_map>
#include <utility>

#include "xsd2c/pattern/tree_text.h"
#include "xsd2c/records/attribute_records.h"
#include "xsd2c/records/content_check.h"
#include "xsd2c/records/content_records.h"
#include "xsd2c/records/content_term.h"
#include "xsd2c/records/simple_types.h"
#include "xsd2c/records/substitutions.h"

namespace xsd2c {
namespace {

using Derivation = ComplexType::Derivation;

constexpr std::int32_t kQualified = 1, kUnqualified = 2;  // of SchemaElementDecl::form

std::string nameInMessages(const ComplexType &type) {
    return type.name.empty() ? "an anonymous complexType" : "complexType '" + type.name + "'";
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

// An extension that adds no elements takes over what it extends, text included (XML Schema 1.0,
// Structures, 3.4.2).
bool isMixed(const ComplexType &type) {
    const ComplexType *step = &type;
    while (step->derivation == Derivation::kComplexExtension && !step->mixed &&
           (!step->content || addsNothing(*step->content))) {
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
          substitutions_(components),
          contents_(records, diagnostics, substitutions_,
                    [this](const ElementDecl &decl) { return element(decl); }),
          contentCheck_(substitutions_, diagnostics) {}

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

    const CompiledType &contentType(const ComplexType &type);

    const char *text(const std::string &utf8) { return records_.text(toTreeText(utf8)); }
    const char *textOrNull(const std::string &utf8) {
        return records_.textOrNull(toTreeText(utf8));
    }

    const Components &components_;
    Records &records_;
    Diagnostics &diagnostics_;
    SimpleTypes simpleTypes_;
    AttributeRecords attributes_;
    Substitutions substitutions_;
    ContentRecords contents_;
    ContentCheck contentCheck_;

    std::unordered_map<const ElementDecl *, SchemaElementDecl *> elements_;
    std::unordered_map<const ComplexType *, SchemaComplexType *> complexTypes_;
    std::unordered_map<const ComplexType *, CompiledType> contentTypes_;
    std::deque<std::pair<const ElementDecl *, SchemaElementDecl *>> openElements_;
    std::deque<std::pair<const ComplexType *, SchemaComplexType *>> openTypes_;
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
    return {contents_.definition(*std::get<const GroupDefinition *>(component)),
            SCHEMA_KIND_MODEL_GROUP};
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
        // Of mixed content the validator would compare the text and look at no child.
        return diagnostics_.error(
            decl.place,
            isMixed(*complex)
                ? "the fixed value of " + owner + " with mixed content cannot be compiled"
                : "the fixed value of " + owner + " needs a type with simple content");
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
        contentCheck_.check(type, nameInMessages(type));
    }
}

// The registered anyType has no content at all; what XML Schema means by it is anything.
void SchemaCompiler::fillAnyType(SchemaComplexType &record) {
    SchemaWildcard *attributes = records_.attributeWildcards.add();
    attributes->namespaceConstraint = records_.text("##any");
    attributes->processContents = processOf(Wildcard::Process::kLax);
    record.particle = contents_.anything();
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
        record.particle = contents_.whole(type);
        if (!record.particle && record.mixed) record.particle = contents_.noElements();
        return attributes_.fillWhole(type, record);
    }
    SchemaDerivation *derivation = records_.derivations.add();
    records_.labels[derivation] = "content of " + nameInMessages(type);
    record.content = derivation;
    setBase(*derivation, type.base);
    derivation->derivationKind = type.derivation == Derivation::kComplexExtension
                                     ? SCHEMA_KIND_COMPLEX_EXTENSION
                                     : SCHEMA_KIND_COMPLEX_RESTRICTION;
    derivation->particle = contents_.own(type);
    attributes_.fillOwn(type, *derivation);
}

}  // namespace

void compileSchema(const Components &components, Records &records, Diagnostics &diagnostics) {
    SchemaCompiler{components, records, diagnostics}.compile();
}

}  // namespace xsd2c
