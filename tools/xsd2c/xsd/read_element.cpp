#include "xsd2c/xsd/reader.h"

namespace xsd2c {
namespace {

bool isConstraint(Construct construct) {
    return construct == Construct::kUnique || construct == Construct::kKey ||
           construct == Construct::kKeyref;
}

}  // namespace

// Null for an element that says nothing of its type.
TypeRef Reader::readElementType(const SourceElement &element) {
    if (element.has("type")) {
        const std::string *type = element.value("type");
        return type ? findType(element, *type) : unknown();
    }
    if (const SimpleType *inner = readInnerType(element)) return inner;
    for (const SourceElement *child : element.children) {
        if (child->construct != Construct::kLocalComplexType) continue;
        ComplexType &type = add(reading_.components.complexTypes, *child);
        readComplexType(*child, type);
        return &type;
    }
    return static_cast<const ComplexType *>(nullptr);
}

// Identity constraints are not kept, but two of one name, and references to none, are mistakes.
void Reader::readConstraint(const SourceElement &element) {
    const std::string *name = element.value("name");
    if (!name) return;
    reading_.diagnostics.notEnforced(element.place, element.name + " '" + *name + "'");
    SymbolTable<Place> &known = reading_.symbols.constraints;
    if (!known.add(document_.ns, *name, element.place)) {
        reading_.definedTwice(element, *name, *known.find(document_.ns, *name));
    }
    const std::string *refer = element.value("refer");
    if (!refer) return;
    if (const std::optional<ExpandedName> key = resolve(element, *refer)) {
        reading_.keyrefs.push_back({element.place, *refer, *key});
    }
}

void Reader::readElement(const SourceElement &element, ElementDecl &declaration) {
    const std::string where = "element '" + declaration.name + "'";
    Diagnostics &diagnostics = reading_.diagnostics;
    declaration.abstract = element.isTrue("abstract");
    declaration.nillable = element.isTrue("nillable");
    if (declaration.nillable) {
        diagnostics.notEnforced(element.place, "that an empty " + where + " carries xsi:nil");
    }
    if (const std::string *fixed = element.value("fixed")) {
        declaration.fixed = *fixed;
        diagnostics.notEnforced(element.place, "that an empty " + where + " takes its fixed value");
    }
    if (element.has("default")) {
        diagnostics.notEnforced(element.place, "the default value of " + where);
    }
    for (const char *name : {"block", "final"}) {
        const std::string *value = element.value(name);
        if (!value || value->empty()) continue;
        diagnostics.notEnforced(element.place, std::string(name) + " of " + where);
    }
    if (const std::string *head = element.value("substitutionGroup")) {
        declaration.substitutionHead =
            find(reading_.symbols.elements, element, *head, "element", "declared");
    }
    declaration.type = readElementType(element);
    noteType(element.place, declaration.type, where);
    for (const SourceElement *child : element.children) {
        if (isConstraint(child->construct)) readConstraint(*child);
    }
}

}  // namespace xsd2c
