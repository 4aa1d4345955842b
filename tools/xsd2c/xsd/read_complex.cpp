#include "xsd2c/xsd/reader.h"

namespace xsd2c {
namespace {

std::string nameOf(const ComplexType &type) {
    return type.name.empty() ? "a complexType" : "complexType '" + type.name + "'";
}

bool isContentModel(Construct construct) {
    return construct == Construct::kGroupRef || construct == Construct::kAll ||
           construct == Construct::kChoice || construct == Construct::kSequence;
}

}  // namespace

void Reader::readContentModel(const SourceElement &parent, ComplexType &type) {
    for (const SourceElement *child : parent.children) {
        if (isContentModel(child->construct)) type.content = readParticle(*child);
    }
}

void Reader::readSimpleContent(const SourceElement &element, ComplexType &type) {
    for (const SourceElement *child : element.children) {
        const bool extension = child->construct == Construct::kValueExtension;
        if (!extension && child->construct != Construct::kValueRestriction) continue;
        type.derivation = extension ? ComplexType::Derivation::kSimpleExtension
                                    : ComplexType::Derivation::kSimpleRestriction;
        const std::string *base = child->value("base");
        type.base = base ? findType(*child, *base) : unknown();
        noteType(child->place, type.base, nameOf(type));
        type.contentType = readInnerType(*child);
        type.facets = readFacets(*child);
        type.attributes = readAttributes(*child);
    }
}

void Reader::readComplexContent(const SourceElement &element, ComplexType &type) {
    if (element.value("mixed")) type.mixed = element.isTrue("mixed");
    for (const SourceElement *child : element.children) {
        const bool extension = child->construct == Construct::kContentExtension;
        if (!extension && child->construct != Construct::kContentRestriction) continue;
        type.derivation = extension ? ComplexType::Derivation::kComplexExtension
                                    : ComplexType::Derivation::kComplexRestriction;
        const std::string *base = child->value("base");
        type.base = base ? findType(*child, *base) : unknown();
        readContentModel(*child, type);
        type.attributes = readAttributes(*child);
    }
}

void Reader::readComplexType(const SourceElement &element, ComplexType &type) {
    type.mixed = element.isTrue("mixed");
    type.abstract = element.isTrue("abstract");
    if (type.abstract) {
        reading_.diagnostics.notEnforced(element.place, "abstract of " + nameOf(type));
    }
    for (const char *name : {"block", "final"}) {
        const std::string *value = element.value(name);
        if (!value || value->empty()) continue;
        reading_.diagnostics.notEnforced(element.place, std::string(name) + " of " + nameOf(type));
    }
    readContentModel(element, type);
    type.attributes = readAttributes(element);
    for (const SourceElement *child : element.children) {
        if (child->construct == Construct::kSimpleContent) readSimpleContent(*child, type);
        if (child->construct == Construct::kComplexContent) readComplexContent(*child, type);
    }
}

}  // namespace xsd2c
