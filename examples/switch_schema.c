/* The schema of the example configuration (data/switch.xml), compiled by hand into the records that the
 * validator reads. It knows the system and the VLANs of a switch; what follows them may be anything.
 * All of it is constant: nothing is written when it is registered. */
#include "switch_schema.h"

#include <stddef.h>

#define XSD "http://www.w3.org/2001/XMLSchema"
#define SWITCH "urn:example:switch:1"
#define VLANS "urn:example:switch:vlans:1"
#define UNBOUNDED 0xFFFFFFFFu
#define QUALIFIED 1
#define REQUIRED 2
#define COUNT(array) ((uint32_t)(sizeof(array) / sizeof *(array)))

/* ---- simple types ---- */

static const SchemaSimpleType string = {
    .name = "string", .ns = XSD, .builtinCode = SCHEMA_TYPE_STRING};
static const SchemaSimpleType boolean = {
    .name = "boolean", .ns = XSD, .builtinCode = SCHEMA_TYPE_BOOLEAN};
static const SchemaSimpleType unsignedShort = {
    .name = "unsignedShort", .ns = XSD, .builtinCode = SCHEMA_TYPE_UNSIGNED_SHORT};
static const SchemaSimpleType unsignedInt = {
    .name = "unsignedInt", .ns = XSD, .builtinCode = SCHEMA_TYPE_UNSIGNED_INT};
static const SchemaSimpleType dateTime = {
    .name = "dateTime", .ns = XSD, .builtinCode = SCHEMA_TYPE_DATE_TIME};

/* A restriction of another type. */
#define RESTRICTION(base, facetArray) \
    { .members = (base), .facets = (facetArray), .facetCount = COUNT(facetArray) }

static const SchemaSimpleType *const ofString[] = {&string};
static const SchemaSimpleType *const ofUnsignedShort[] = {&unsignedShort};

static const SchemaFacet vlanIdFacets[] = {
    {"1", SCHEMA_FACET_MIN_INCLUSIVE, SCHEMA_TYPE_UNSIGNED_SHORT},
    {"4094", SCHEMA_FACET_MAX_INCLUSIVE, SCHEMA_TYPE_UNSIGNED_SHORT},
};
static const SchemaSimpleType vlanId = RESTRICTION(ofUnsignedShort, vlanIdFacets);

static const SchemaFacet nameFacets[] = {
    {"32", SCHEMA_FACET_MAX_LENGTH, SCHEMA_TYPE_STRING},
    {"^[a-z][a-z0-9-]*$", SCHEMA_FACET_PATTERN, SCHEMA_TYPE_STRING},
};
static const SchemaSimpleType name = RESTRICTION(ofString, nameFacets);

static const SchemaFacet stateFacets[] = {
    {"active", SCHEMA_FACET_ENUMERATION, SCHEMA_TYPE_STRING},
    {"suspended", SCHEMA_FACET_ENUMERATION, SCHEMA_TYPE_STRING},
};
static const SchemaSimpleType state = RESTRICTION(ofString, stateFacets);

/* Known to the validator by its name. */
static const SchemaSimpleType *const ofVlanRange[] = {&string};
static const SchemaSimpleType vlanRange = {.members = ofVlanRange, .name = "_VlanRange"};

/* ---- attributes and elements ---- */

#define ATTRIBUTE(identifier, attributeName, simpleType, howUsed) \
    static const SchemaAttributeDecl identifier = {               \
        .name = (attributeName), .type = &(simpleType), .use = (howUsed), .form = 2}

/* An element of a simple type, which occurs so often. */
#define TEXT_ELEMENT(identifier, elementName, namespaceName, simpleType, least, most) \
    static const SchemaElementDecl identifier = {.name = (elementName),               \
                                                 .targetNamespace = (namespaceName),  \
                                                 .type = &(simpleType),               \
                                                 .typeKind = SCHEMA_KIND_SIMPLE_TYPE, \
                                                 .form = QUALIFIED,                   \
                                                 .minOccurs = (least),                \
                                                 .maxOccurs = (most)}

/* An element of a complex type. */
#define ELEMENT(identifier, elementName, namespaceName, complexType, least, most)      \
    static const SchemaElementDecl identifier = {.name = (elementName),                \
                                                 .targetNamespace = (namespaceName),   \
                                                 .type = &(complexType),               \
                                                 .typeKind = SCHEMA_KIND_COMPLEX_TYPE, \
                                                 .form = QUALIFIED,                    \
                                                 .minOccurs = (least),                 \
                                                 .maxOccurs = (most)}

#define SEQUENCE(identifier, particleArray)                                            \
    static const SchemaModelGroup identifier = {.particles = (particleArray),          \
                                                .minOccurs = 1,                        \
                                                .maxOccurs = 1,                        \
                                                .particleCount = COUNT(particleArray), \
                                                .compositor = SCHEMA_KIND_SEQUENCE}

#define PARTICLE(decl) \
    { &(decl), SCHEMA_KIND_ELEMENT }

/* ---- VLANs ---- */

ATTRIBUTE(ports, "ports", string, REQUIRED);
static const SchemaAttributeDecl *const portUses[] = {&ports};
static const SchemaComplexType portList = {.attributeUses = portUses,
                                           .attributeUseCount = COUNT(portUses)};
TEXT_ELEMENT(vlanDescription, "description", VLANS, string, 0, 1);
ELEMENT(untagged, "untagged", VLANS, portList, 0, 1);
ELEMENT(tagged, "tagged", VLANS, portList, 0, 1);
TEXT_ELEMENT(isolated, "isolated", VLANS, boolean, 0, 1);

static const SchemaTypedRef vlanParticles[] = {PARTICLE(vlanDescription), PARTICLE(untagged),
                                               PARTICLE(tagged), PARTICLE(isolated)};
SEQUENCE(vlanContent, vlanParticles);
ATTRIBUTE(vlanIdAttribute, "id", vlanId, REQUIRED);
ATTRIBUTE(vlanName, "name", name, REQUIRED);
ATTRIBUTE(vlanState, "state", state, REQUIRED);
static const SchemaAttributeDecl *const vlanUses[] = {&vlanIdAttribute, &vlanName, &vlanState};
static const SchemaComplexType vlanType = {
    .attributeUses = vlanUses, .attributeUseCount = COUNT(vlanUses), .particle = &vlanContent};
ELEMENT(vlan, "vlan", VLANS, vlanType, 1, 4094);

ATTRIBUTE(reserved, "reserved", vlanRange, 0);
ATTRIBUTE(internal, "internal", vlanRange, 0);
static const SchemaAttributeDecl *const rangesUses[] = {&reserved, &internal};
static const SchemaComplexType rangesType = {.attributeUses = rangesUses,
                                             .attributeUseCount = COUNT(rangesUses)};
ELEMENT(ranges, "ranges", VLANS, rangesType, 0, 1);

static const SchemaTypedRef vlansParticles[] = {PARTICLE(vlan), PARTICLE(ranges)};
SEQUENCE(vlansContent, vlansParticles);
static const SchemaComplexType vlansType = {.particle = &vlansContent};
ELEMENT(vlans, "vlans", VLANS, vlansType, 1, 1);

/* ---- the system ---- */

/* What the schema does not know more closely. */
static const SchemaElementWildcard anything = {
    .namespaceConstraint = "##any", .minOccurs = 0, .maxOccurs = UNBOUNDED, .processContents = 1};

TEXT_ELEMENT(hostname, "hostname", SWITCH, name, 1, 1);
TEXT_ELEMENT(domain, "domain", SWITCH, string, 1, 1);
TEXT_ELEMENT(description, "description", SWITCH, string, 0, 1);
static const SchemaTypedRef systemParticles[] = {PARTICLE(hostname),
                                                 PARTICLE(domain),
                                                 PARTICLE(description),
                                                 {&anything, SCHEMA_KIND_ELEMENT_WILDCARD}};
SEQUENCE(systemContent, systemParticles);
static const SchemaComplexType systemType = {.particle = &systemContent};
ELEMENT(systemElement, "system", SWITCH, systemType, 1, 1);

/* ---- the switch ---- */

static const SchemaTypedRef switchParticles[] = {
    PARTICLE(systemElement), PARTICLE(vlans), {&anything, SCHEMA_KIND_ELEMENT_WILDCARD}};
SEQUENCE(switchContent, switchParticles);
ATTRIBUTE(revision, "revision", unsignedInt, REQUIRED);
ATTRIBUTE(saved, "saved", dateTime, 0);
static const SchemaAttributeDecl *const switchUses[] = {&revision, &saved};
static const SchemaComplexType switchType = {.attributeUses = switchUses,
                                             .attributeUseCount = COUNT(switchUses),
                                             .particle = &switchContent};
ELEMENT(switchElement, "switch", SWITCH, switchType, 1, 1);

static const SchemaTopObject topObjects[] = {{&switchElement, SCHEMA_KIND_ELEMENT}};

uint32_t registerSwitchSchema(SchemaRoot *root) {
    uint32_t result = XML_OK;
    for (uint32_t i = 0; i < COUNT(topObjects); ++i) {
        result |= Schema_RegTopObject(root, &topObjects[i]);
    }
    return result;
}

void deregisterSwitchSchema(SchemaRoot *root) {
    for (uint32_t i = 0; i < COUNT(topObjects); ++i) Schema_DeregTopObject(root, &topObjects[i]);
}
