#include "tests/tools/xsd2c/support/component_text.h"

#include <vector>

namespace {

using namespace xsd2c;

constexpr const char *kFacetNames[] = {"length",       "minLength",    "maxLength",
                                       "pattern",      "enumeration",  "whiteSpace",
                                       "maxInclusive", "maxExclusive", "minInclusive",
                                       "minExclusive", "totalDigits",  "fractionDigits"};

// "{urn:a}name"; types of XML Schema are "xs:name".
std::string expanded(const std::string &ns, const std::string &name) {
    if (ns == kSchemaNamespace) return "xs:" + name;
    return (ns.empty() ? "" : "{" + ns + "}") + name;
}

std::string textOf(const std::vector<Facet> &facets) {
    std::string text;
    for (const Facet &facet : facets) {
        text +=
            std::string(" ") + kFacetNames[static_cast<int>(facet.kind)] + "='" + facet.value + "'";
    }
    return text;
}

std::string contentOf(const SimpleType &type);

// A type by its name, or all of it when it has none.
std::string nameOf(const SimpleType *type) {
    return type->name.empty() ? "(" + contentOf(*type) + ")" : expanded(type->ns, type->name);
}

std::string contentOf(const SimpleType &type) {
    switch (type.variety) {
        case SimpleType::Variety::kBuiltin:
            return "built in";
        case SimpleType::Variety::kRestriction:
            return "restricts " + nameOf(type.base) + textOf(type.facets);
        case SimpleType::Variety::kList:
            return "list of " + nameOf(type.itemType);
        case SimpleType::Variety::kUnion: {
            std::string text = "union of";
            for (const SimpleType *member : type.members) text += " " + nameOf(member);
            return text;
        }
    }
    return "";
}

std::string textOf(const Wildcard &wildcard) {
    std::string text = "any";
    if (wildcard.names == Wildcard::Names::kOther) text += " but {" + wildcard.targetNs + "}";
    if (wildcard.names == Wildcard::Names::kListed) {
        text += " of";
        for (const std::string &ns : wildcard.listed) text += " {" + ns + "}";
    }
    if (wildcard.process == Wildcard::Process::kLax) text += " lax";
    if (wildcard.process == Wildcard::Process::kSkip) text += " skip";
    return text;
}

std::string nameOf(const AttributeDecl &attribute) {
    return expanded(attribute.qualified ? attribute.ns : "", attribute.name);
}

std::string contentOf(const AttributeDecl &attribute) {
    std::string text = ": " + nameOf(attribute.type);
    if (attribute.fixed) text += " fixed='" + *attribute.fixed + "'";
    return text;
}

std::string textOf(const DeclaredAttributes &declared) {
    std::string text;
    for (const AttributeUse &use : declared.uses) {
        text += " @" + nameOf(*use.decl);
        if (use.use == AttributeUse::Use::kRequired) text += "!";
        if (use.use == AttributeUse::Use::kProhibited) text += "-";
        if (!use.isRef) text += contentOf(*use.decl);
        if (use.fixed) text += " fixed='" + *use.fixed + "'";
    }
    for (const AttributeGroup *group : declared.groups) {
        text += " @group " + expanded(group->ns, group->name);
    }
    if (declared.wildcard) text += " @" + textOf(*declared.wildcard);
    return text;
}

std::string occursOf(const Particle &particle) {
    if (particle.minOccurs == 1 && particle.maxOccurs == 1) return "";
    return "[" + std::to_string(particle.minOccurs) + ".." +
           (particle.maxOccurs == kUnbounded ? "*" : std::to_string(particle.maxOccurs)) + "]";
}

std::string contentOf(const ElementDecl &element);
std::string textOf(const Particle &particle);

std::string textOf(const ModelGroup &group) {
    constexpr const char *kNames[] = {"sequence", "choice", "all"};
    std::string text = kNames[static_cast<int>(group.compositor)] + std::string("(");
    for (std::size_t i = 0; i < group.particles.size(); ++i) {
        if (i != 0) text += ", ";
        text += textOf(group.particles[i]);
    }
    return text + ")";
}

struct TermText {
    std::string operator()(const ElementDecl *element) const {
        const std::string name = expanded(element->qualified ? element->ns : "", element->name);
        return element->global ? "ref " + name : name + contentOf(*element);
    }
    std::string operator()(const Wildcard *wildcard) const { return textOf(*wildcard); }
    std::string operator()(const ModelGroup *group) const { return textOf(*group); }
    std::string operator()(const GroupDefinition *group) const {
        return "group " + expanded(group->ns, group->name);
    }
};

std::string textOf(const Particle &particle) {
    return std::visit(TermText{}, particle.term) + occursOf(particle);
}

std::string contentOf(const ComplexType &type);

struct TypeText {
    std::string operator()(const SimpleType *type) const { return nameOf(type); }
    std::string operator()(const ComplexType *type) const {
        return type->name.empty() ? "(" + contentOf(*type) + ")" : expanded(type->ns, type->name);
    }
};

std::string contentOf(const ComplexType &type) {
    constexpr const char *kDerivations[] = {"", "restricts ", "extends ", "restricts text of ",
                                            "extends text of "};
    std::string text = kDerivations[static_cast<int>(type.derivation)];
    if (!text.empty()) text += std::visit(TypeText{}, type.base);
    const auto append = [&](const std::string &part) {
        if (!part.empty()) text += (text.empty() ? "" : " ") + part;
    };
    if (type.mixed) append("mixed");
    if (type.abstract) append("abstract");
    if (type.content) append(textOf(*type.content));
    if (type.contentType) append("of " + nameOf(type.contentType));
    return text + textOf(type.facets) + textOf(type.attributes);
}

std::string contentOf(const ElementDecl &element) {
    std::string text = ": " + std::visit(TypeText{}, element.type);
    if (element.fixed) text += " fixed='" + *element.fixed + "'";
    if (element.abstract) text += " abstract";
    if (element.nillable) text += " nillable";
    if (element.substitutionHead) text += " for " + element.substitutionHead->name;
    return text;
}

struct TopText {
    std::string operator()(const SimpleType *type) const {
        return "simpleType " + expanded(type->ns, type->name) + " " + contentOf(*type);
    }
    std::string operator()(const ComplexType *type) const {
        return "complexType " + expanded(type->ns, type->name) + " " + contentOf(*type);
    }
    std::string operator()(const ElementDecl *element) const {
        return "element " + expanded(element->ns, element->name) + contentOf(*element);
    }
    std::string operator()(const AttributeDecl *attribute) const {
        return "attribute " + nameOf(*attribute) + contentOf(*attribute);
    }
    std::string operator()(const AttributeGroup *group) const {
        return "attributeGroup " + expanded(group->ns, group->name) + textOf(group->attributes);
    }
    std::string operator()(const GroupDefinition *group) const {
        return "group " + expanded(group->ns, group->name) + " " + textOf(*group->group);
    }
};

}  // namespace

std::string textOf(const Components &components) {
    std::string text;
    for (const TopComponent &component : components.top) {
        text += std::visit(TopText{}, component) + "\n";
    }
    return text;
}
