#include <algorithm>

#include "xsd2c/xsd/reader.h"
#include "xsd2c/xsd/xml_text.h"

namespace xsd2c {
namespace {

void keepFixed(const SourceElement &element, std::optional<std::string> &fixed) {
    if (const std::string *value = element.value("fixed")) fixed = *value;
}

AttributeUse::Use useOf(const SourceElement &element) {
    const std::string *use = element.value("use");
    if (!use || *use == "optional") return AttributeUse::Use::kOptional;
    return *use == "required" ? AttributeUse::Use::kRequired : AttributeUse::Use::kProhibited;
}

}  // namespace

// The type and the value of a declaration, of which name and namespace are known.
void Reader::readAttribute(const SourceElement &element, AttributeDecl &declaration) {
    if (declaration.name == "xmlns") error(element, "'xmlns' is no attribute");
    if (declaration.ns == kInstanceNamespace && declaration.qualified) {
        error(element, "attributes of the namespace " + std::string(kInstanceNamespace) +
                           " cannot be declared");
    }
    const std::string where = "attribute '" + declaration.name + "'";
    declaration.type = reading_.symbols.anySimpleType;
    if (const std::string *type = element.value("type")) {
        if (const SimpleType *found = findSimpleType(element, *type)) declaration.type = found;
        noteType(element.place, declaration.type, where);
    } else if (const SimpleType *inner = readInnerType(element)) {
        declaration.type = inner;
    }
    keepFixed(element, declaration.fixed);
    if (element.has("default")) {
        reading_.diagnostics.notEnforced(element.place, "the default value of " + where);
    }
}

const AttributeDecl *Reader::readLocalAttribute(const SourceElement &element) {
    AttributeDecl &declaration = add(reading_.components.attributes, element);
    if (const std::string *name = element.value("name")) declaration.name = *name;
    declaration.qualified = isQualified(element, attributesQualified_);
    readAttribute(element, declaration);
    return &declaration;
}

std::optional<AttributeUse> Reader::readAttributeUse(const SourceElement &element) {
    AttributeUse use;
    use.place = element.place;
    use.use = useOf(element);
    if (!element.has("ref")) {
        use.decl = readLocalAttribute(element);
        return use;
    }
    use.isRef = true;
    const std::string *ref = element.value("ref");
    if (ref) use.decl = find(reading_.symbols.attributes, element, *ref, "attribute", "declared");
    if (!use.decl) return std::nullopt;
    keepFixed(element, use.fixed);
    if (element.has("default")) {
        reading_.diagnostics.notEnforced(element.place,
                                         "the default value of attribute '" + use.decl->name + "'");
    }
    return use;
}

Wildcard &Reader::readWildcard(const SourceElement &element) {
    Wildcard &wildcard = reading_.components.wildcards.emplace_back();
    wildcard.place = element.place;
    wildcard.targetNs = document_.ns;
    const std::string *process = element.value("processContents");
    if (process && *process == "lax") wildcard.process = Wildcard::Process::kLax;
    if (process && *process == "skip") wildcard.process = Wildcard::Process::kSkip;
    const std::string *names = element.value("namespace");
    if (!names || *names == "##any") return wildcard;
    if (*names == "##other") {
        wildcard.names = Wildcard::Names::kOther;
        return wildcard;
    }
    wildcard.names = Wildcard::Names::kListed;
    std::unordered_set<std::string> seen;
    for (std::string &name : words(*names)) {
        if (name == "##targetNamespace") name = document_.ns;
        if (name == "##local") name.clear();
        if (seen.insert(name).second) wildcard.listed.push_back(name);
    }
    return wildcard;
}

DeclaredAttributes Reader::readAttributes(const SourceElement &parent) {
    DeclaredAttributes attributes;
    for (const SourceElement *child : parent.children) {
        if (child->construct == Construct::kLocalAttribute) {
            std::optional<AttributeUse> use = readAttributeUse(*child);
            if (use) attributes.uses.push_back(std::move(*use));
        } else if (child->construct == Construct::kAttributeGroupRef) {
            const std::string *ref = child->value("ref");
            const AttributeGroup *group = ref ? find(reading_.symbols.attributeGroups, *child, *ref,
                                                     "attribute group", "defined")
                                              : nullptr;
            if (group) attributes.groups.push_back(group);
        } else if (child->construct == Construct::kAnyAttribute) {
            attributes.wildcard = &readWildcard(*child);
        }
    }
    return attributes;
}

void Reader::readAttributeGroup(const SourceElement &element, AttributeGroup &group) {
    group.attributes = readAttributes(element);
}

}  // namespace xsd2c
