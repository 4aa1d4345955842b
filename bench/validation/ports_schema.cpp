#include "ports_schema.h"

#include <iterator>

namespace bench {
namespace {

constexpr char kXsd[] = "http://www.w3.org/2001/XMLSchema";
constexpr char kPorts[] = "urn:example:ports";
constexpr std::uint32_t kUnbounded = 0xFFFFFFFF;
constexpr std::int32_t kQualified = 1, kUnqualified = 2, kRequired = 2;

constexpr SchemaSimpleType builtIn(const char *name, std::uint32_t code) {
    return {nullptr, nullptr, name, kXsd, code, 0, 0, 0};
}
constexpr SchemaSimpleType kString = builtIn("string", SCHEMA_TYPE_STRING);
constexpr SchemaSimpleType kBoolean = builtIn("boolean", SCHEMA_TYPE_BOOLEAN);
constexpr SchemaSimpleType kInt = builtIn("int", SCHEMA_TYPE_INT);
constexpr SchemaSimpleType kUnsignedShort = builtIn("unsignedShort", SCHEMA_TYPE_UNSIGNED_SHORT);
constexpr SchemaSimpleType kUnsignedInt = builtIn("unsignedInt", SCHEMA_TYPE_UNSIGNED_INT);
constexpr SchemaSimpleType kUnsignedLong = builtIn("unsignedLong", SCHEMA_TYPE_UNSIGNED_LONG);
constexpr SchemaSimpleType kDateTime = builtIn("dateTime", SCHEMA_TYPE_DATE_TIME);
constexpr const SchemaSimpleType *kOfString[] = {&kString};
constexpr const SchemaSimpleType *kOfUnsignedShort[] = {&kUnsignedShort};

template <std::size_t count>
constexpr SchemaSimpleType restriction(const char *name, const SchemaSimpleType *const (&base)[1],
                                       const SchemaFacet (&facets)[count]) {
    return {base, facets, name, kPorts, 0, count, 0, 0};
}
constexpr SchemaFacet kNameFacets[] = {{"32", SCHEMA_FACET_MAX_LENGTH, SCHEMA_TYPE_STRING}};
constexpr SchemaFacet kMtuFacets[] = {
    {"68", SCHEMA_FACET_MIN_INCLUSIVE, SCHEMA_TYPE_UNSIGNED_SHORT},
    {"9216", SCHEMA_FACET_MAX_INCLUSIVE, SCHEMA_TYPE_UNSIGNED_SHORT}};
constexpr SchemaFacet kSpeedFacets[] = {{"auto", SCHEMA_FACET_ENUMERATION, SCHEMA_TYPE_STRING},
                                        {"100", SCHEMA_FACET_ENUMERATION, SCHEMA_TYPE_STRING},
                                        {"1000", SCHEMA_FACET_ENUMERATION, SCHEMA_TYPE_STRING},
                                        {"10000", SCHEMA_FACET_ENUMERATION, SCHEMA_TYPE_STRING}};
constexpr SchemaFacet kVlanFacets[] = {
    {"1", SCHEMA_FACET_MIN_INCLUSIVE, SCHEMA_TYPE_UNSIGNED_SHORT},
    {"4094", SCHEMA_FACET_MAX_INCLUSIVE, SCHEMA_TYPE_UNSIGNED_SHORT}};
constexpr SchemaSimpleType kName = restriction("name", kOfString, kNameFacets);
constexpr SchemaSimpleType kMtu = restriction("mtu", kOfUnsignedShort, kMtuFacets);
constexpr SchemaSimpleType kSpeed = restriction("speed", kOfString, kSpeedFacets);
constexpr SchemaSimpleType kVlan = restriction("vlan", kOfUnsignedShort, kVlanFacets);

constexpr SchemaElementDecl element(const char *name, const void *type, std::int32_t typeKind,
                                    std::uint32_t min, std::uint32_t max) {
    SchemaElementDecl decl{};
    decl.name = name;
    decl.targetNamespace = kPorts;
    decl.type = type;
    decl.typeKind = typeKind;
    decl.form = kQualified;
    decl.minOccurs = min;
    decl.maxOccurs = max;
    return decl;
}
constexpr SchemaElementDecl simple(const char *name, const SchemaSimpleType &type,
                                   std::uint32_t min) {
    return element(name, &type, SCHEMA_KIND_SIMPLE_TYPE, min, 1);
}
constexpr SchemaElementDecl kEnabled = simple("enabled", kBoolean, 1);
constexpr SchemaElementDecl kMtuElement = simple("mtu", kMtu, 1);
constexpr SchemaElementDecl kSpeedElement = simple("speed", kSpeed, 0);
constexpr SchemaElementDecl kDescription = simple("description", kString, 0);
constexpr SchemaElementDecl kVlanElement = simple("vlan", kVlan, 1);
constexpr SchemaElementDecl kNative = simple("native", kVlan, 1);
constexpr SchemaElementDecl kOctets = simple("octets", kUnsignedLong, 1);
constexpr SchemaElementDecl kChanged = simple("changed", kDateTime, 0);

template <std::size_t count>
constexpr SchemaModelGroup group(std::int32_t compositor, const SchemaTypedRef (&particles)[count],
                                 std::uint32_t min, std::uint32_t max) {
    return {particles, min, max, count, compositor};
}
constexpr SchemaTypedRef particle(const SchemaElementDecl &decl) {
    return {&decl, SCHEMA_KIND_ELEMENT};
}
constexpr SchemaTypedRef kVlanParticles[] = {particle(kVlanElement), particle(kNative)};
constexpr SchemaModelGroup kVlans = group(SCHEMA_KIND_CHOICE, kVlanParticles, 0, kUnbounded);
constexpr SchemaTypedRef kPortParticles[] = {particle(kEnabled),
                                             particle(kMtuElement),
                                             particle(kSpeedElement),
                                             particle(kDescription),
                                             {&kVlans, SCHEMA_KIND_MODEL_GROUP},
                                             particle(kOctets),
                                             particle(kChanged)};
constexpr SchemaModelGroup kPortContent = group(SCHEMA_KIND_SEQUENCE, kPortParticles, 1, 1);

constexpr SchemaAttributeDecl attribute(const char *name, const SchemaSimpleType &type,
                                        std::int32_t use) {
    return {nullptr, &type, name, nullptr, nullptr, use, kUnqualified, 0};
}
constexpr SchemaAttributeDecl kId = attribute("id", kUnsignedInt, kRequired);
constexpr SchemaAttributeDecl kNameAttribute = attribute("name", kName, kRequired);
constexpr SchemaAttributeDecl kRevision = attribute("revision", kInt, 0);
constexpr const SchemaAttributeDecl *kPortUses[] = {&kId, &kNameAttribute};
constexpr const SchemaAttributeDecl *kPortsUses[] = {&kRevision};

template <std::size_t count>
constexpr SchemaComplexType complexType(const char *name, const SchemaModelGroup &content,
                                        const SchemaAttributeDecl *const (&uses)[count]) {
    SchemaComplexType type{};
    type.name = name;
    type.targetNamespace = kPorts;
    type.particle = &content;
    type.attributeUses = uses;
    type.attributeUseCount = count;
    return type;
}
constexpr SchemaComplexType kPort = complexType("port", kPortContent, kPortUses);
constexpr SchemaElementDecl kPortElement =
    element("port", &kPort, SCHEMA_KIND_COMPLEX_TYPE, 0, kUnbounded);
constexpr SchemaTypedRef kPortsParticles[] = {particle(kPortElement)};
constexpr SchemaModelGroup kPortsContent = group(SCHEMA_KIND_SEQUENCE, kPortsParticles, 1, 1);
constexpr SchemaComplexType kPortsType = complexType(nullptr, kPortsContent, kPortsUses);
constexpr SchemaElementDecl kPortsElement =
    element("ports", &kPortsType, SCHEMA_KIND_COMPLEX_TYPE, 1, 1);
constexpr SchemaTopObject kTop = {&kPortsElement, SCHEMA_KIND_ELEMENT};

}  // namespace

const SchemaTopObject &portsSchema() {
    return kTop;
}

}  // namespace bench
