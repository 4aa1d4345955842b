#include "xsd2c/xsd/symbols.h"

#include <algorithm>
#include <iterator>

namespace xsd2c {
namespace {

// The types of XML Schema 1.0 Datatypes, 3, and what each of them is derived from.
struct BuiltinType {
    const char *name;
    const char *base;
};

constexpr BuiltinType kBuiltinTypes[] = {
    {"anySimpleType", nullptr},
    {"string", "anySimpleType"},
    {"boolean", "anySimpleType"},
    {"decimal", "anySimpleType"},
    {"float", "anySimpleType"},
    {"double", "anySimpleType"},
    {"duration", "anySimpleType"},
    {"dateTime", "anySimpleType"},
    {"time", "anySimpleType"},
    {"date", "anySimpleType"},
    {"gYearMonth", "anySimpleType"},
    {"gYear", "anySimpleType"},
    {"gMonthDay", "anySimpleType"},
    {"gDay", "anySimpleType"},
    {"gMonth", "anySimpleType"},
    {"hexBinary", "anySimpleType"},
    {"base64Binary", "anySimpleType"},
    {"anyURI", "anySimpleType"},
    {"QName", "anySimpleType"},
    {"NOTATION", "anySimpleType"},
    {"normalizedString", "string"},
    {"token", "normalizedString"},
    {"language", "token"},
    {"NMTOKEN", "token"},
    {"NMTOKENS", "anySimpleType"},
    {"Name", "token"},
    {"NCName", "Name"},
    {"ID", "NCName"},
    {"IDREF", "NCName"},
    {"IDREFS", "anySimpleType"},
    {"ENTITY", "NCName"},
    {"ENTITIES", "anySimpleType"},
    {"integer", "decimal"},
    {"nonPositiveInteger", "integer"},
    {"negativeInteger", "nonPositiveInteger"},
    {"long", "integer"},
    {"int", "long"},
    {"short", "int"},
    {"byte", "short"},
    {"nonNegativeInteger", "integer"},
    {"unsignedLong", "nonNegativeInteger"},
    {"unsignedInt", "unsignedLong"},
    {"unsignedShort", "unsignedInt"},
    {"unsignedByte", "unsignedShort"},
    {"positiveInteger", "nonNegativeInteger"},
};

template <class T>
T &addNamed(std::deque<T> &components, const Place &place, const char *name, const char *ns) {
    T &component = components.emplace_back();
    component.place = place;
    component.name = name;
    component.ns = ns;
    return component;
}

// Adds an attribute of the XML namespace.
const AttributeDecl *addXmlAttribute(const Place &place, const char *name, const SimpleType *type,
                                     Components &components, Symbols &symbols) {
    AttributeDecl &attribute = addNamed(components.attributes, place, name, kXmlNamespace);
    attribute.global = true;
    attribute.type = type;
    symbols.attributes.add(kXmlNamespace, name, &attribute);
    components.top.emplace_back(&attribute);
    return &attribute;
}

const SimpleType *addSpaceType(const Place &place, Components &components, const Symbols &symbols) {
    SimpleType &type = addNamed(components.simpleTypes, place, "", kXmlNamespace);
    type.variety = SimpleType::Variety::kRestriction;
    type.base = builtinType(symbols, "NCName");
    for (const char *value : {"default", "preserve"}) {
        type.facets.push_back({FacetKind::kEnumeration, value, place});
    }
    return &type;
}

}  // namespace

const SimpleType *builtinType(const Symbols &symbols, const char *name) {
    return std::get<const SimpleType *>(*symbols.types.find(kSchemaNamespace, name));
}

const SimpleType *baseOf(const Symbols &symbols, const SimpleType &type) {
    if (type.base) return type.base;
    if (type.variety != SimpleType::Variety::kBuiltin) return symbols.anySimpleType;
    const auto *found = std::find_if(std::begin(kBuiltinTypes), std::end(kBuiltinTypes),
                                     [&](const BuiltinType &row) { return row.name == type.name; });
    if (found == std::end(kBuiltinTypes) || !found->base) return nullptr;
    return builtinType(symbols, found->base);
}

const ComplexType *unknownType(Components &components, Symbols &symbols) {
    if (!symbols.unknownType) {
        ComplexType &type = components.complexTypes.emplace_back();
        type.isAnyType = true;
        type.mixed = true;
        symbols.unknownType = &type;
    }
    return symbols.unknownType;
}

void addBuiltinTypes(Components &components, Symbols &symbols) {
    for (const BuiltinType &row : kBuiltinTypes) {
        const SimpleType &type = addNamed(components.simpleTypes, {}, row.name, kSchemaNamespace);
        symbols.types.add(kSchemaNamespace, row.name, &type);
    }
    symbols.anySimpleType = builtinType(symbols, "anySimpleType");
    ComplexType &anyType = addNamed(components.complexTypes, {}, "anyType", kSchemaNamespace);
    anyType.isAnyType = true;
    anyType.mixed = true;
    symbols.types.add(kSchemaNamespace, "anyType", &anyType);
    symbols.anyType = &anyType;
}

void addXmlNamespace(const Place &import, Components &components, Symbols &symbols) {
    const struct {
        const char *name;
        const SimpleType *type;
    } kAttributes[] = {{"lang", builtinType(symbols, "language")},
                       {"space", addSpaceType(import, components, symbols)},
                       {"base", builtinType(symbols, "anyURI")},
                       {"id", builtinType(symbols, "ID")}};
    AttributeGroup &group =
        addNamed(components.attributeGroups, import, "specialAttrs", kXmlNamespace);
    for (const auto &[name, type] : kAttributes) {
        AttributeUse &use = group.attributes.uses.emplace_back();
        use.place = import;
        use.isRef = true;
        use.decl = addXmlAttribute(import, name, type, components, symbols);
    }
    symbols.attributeGroups.add(kXmlNamespace, group.name, &group);
    components.top.emplace_back(&group);
}

}  // namespace xsd2c
