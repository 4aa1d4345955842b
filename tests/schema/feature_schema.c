#include "tests/schema/feature_schema.h"

#include <stddef.h>

#define XSD "http://www.w3.org/2001/XMLSchema"
#define NS "urn:features"
#define UNBOUNDED 0xFFFFFFFFu
#define COUNT(array) ((uint32_t)(sizeof(array) / sizeof *(array)))
enum { kQualified = 1, kUnqualified = 2, kProhibited = 1, kRequired = 2, kLax = 1, kSkip = 2 };

/* ---- simple types: built in, restricted, a union, one known by its name ---- */

static const SchemaSimpleType string = {
    .name = "string", .ns = XSD, .builtinCode = SCHEMA_TYPE_STRING};
static const SchemaSimpleType integer = {.name = "int", .ns = XSD, .builtinCode = SCHEMA_TYPE_INT};
static const SchemaSimpleType boolean = {
    .name = "boolean", .ns = XSD, .builtinCode = SCHEMA_TYPE_BOOLEAN};
static const SchemaSimpleType date = {.name = "date", .ns = XSD, .builtinCode = SCHEMA_TYPE_DATE};

static const SchemaSimpleType *const ofInteger[] = {&integer};
static const SchemaFacet percentFacets[] = {
    {"0", SCHEMA_FACET_MIN_INCLUSIVE, SCHEMA_TYPE_INT},
    {"100", SCHEMA_FACET_MAX_INCLUSIVE, SCHEMA_TYPE_INT},
};
static const SchemaSimpleType percent = {
    .members = ofInteger, .facets = percentFacets, .name = "percent", .ns = NS, .facetCount = 2};

static const SchemaSimpleType *const ofString[] = {&string};
static const SchemaFacet levelFacets[] = {
    {"low", SCHEMA_FACET_ENUMERATION, SCHEMA_TYPE_STRING},
    {"high", SCHEMA_FACET_ENUMERATION, SCHEMA_TYPE_STRING},
};
static const SchemaSimpleType level = {
    .members = ofString, .facets = levelFacets, .name = "level", .ns = NS, .facetCount = 2};

static const SchemaSimpleType *const percentOrLevel[] = {&percent, &level};
static const SchemaSimpleType rate = {
    .members = percentOrLevel, .name = "rate", .ns = NS, .memberCount = 2};

static const SchemaSimpleType ports = {.members = ofString, .name = "_PortRange"};

/* ---- attributes: required, prohibited, fixed, by reference, in groups, of any name ---- */

static const SchemaAttributeDecl id = {
    .name = "id", .type = &integer, .use = kRequired, .form = kUnqualified};
static const SchemaAttributeDecl old = {
    .name = "old", .type = &string, .use = kProhibited, .form = kUnqualified};
static const SchemaAttributeDecl unit = {
    .name = "unit", .type = &string, .fixedValue = "pps", .form = kUnqualified, .hasFixed = 1};
static const SchemaAttributeDecl globalMark = {
    .name = "mark", .targetNamespace = NS, .type = &percent, .form = kQualified};
static const SchemaAttributeDecl mark = {.ref = &globalMark};
static const SchemaAttributeDecl note = {.name = "note", .type = &string, .form = kUnqualified};

static const SchemaAttributeDecl *const noteUses[] = {&note};
static const SchemaAttributeGroup globalGroup = {.attributeUses = noteUses, .attributeUseCount = 1};
static const SchemaAttributeGroup groupByReference = {.ref = &globalGroup};
static const SchemaAttributeGroup *const innerGroups[] = {&groupByReference};
static const SchemaAttributeDecl *const unitUses[] = {&unit};
static const SchemaAttributeGroup outerGroup = {.attributeUses = unitUses,
                                                .attributeGroups = innerGroups,
                                                .attributeUseCount = 1,
                                                .attributeGroupCount = 1};
static const SchemaAttributeGroup *const outerGroups[] = {&outerGroup};

static const SchemaWildcard otherAttributes = {
    .targetNamespace = NS, .namespaceConstraint = "##other", .processContents = kLax};

/* ---- elements ---- */

#define SIMPLE(identifier, elementName, simpleType, least, most)                      \
    static const SchemaElementDecl identifier = {.name = (elementName),               \
                                                 .targetNamespace = NS,               \
                                                 .type = &(simpleType),               \
                                                 .minOccurs = (least),                \
                                                 .maxOccurs = (most),                 \
                                                 .typeKind = SCHEMA_KIND_SIMPLE_TYPE, \
                                                 .form = kQualified}
#define COMPLEX(identifier, elementName, complexType, least, most)                     \
    static const SchemaElementDecl identifier = {.name = (elementName),                \
                                                 .targetNamespace = NS,                \
                                                 .type = &(complexType),               \
                                                 .minOccurs = (least),                 \
                                                 .maxOccurs = (most),                  \
                                                 .typeKind = SCHEMA_KIND_COMPLEX_TYPE, \
                                                 .form = kQualified}
#define GROUP(identifier, kind, particleArray, least, most)                            \
    static const SchemaModelGroup identifier = {.particles = (particleArray),          \
                                                .minOccurs = (least),                  \
                                                .maxOccurs = (most),                   \
                                                .particleCount = COUNT(particleArray), \
                                                .compositor = (kind)}
#define ELEMENT(decl) \
    { &(decl), SCHEMA_KIND_ELEMENT }
#define MODEL(group) \
    { &(group), SCHEMA_KIND_MODEL_GROUP }

/* A sequence with a choice in it, attributes of all sorts. */
SIMPLE(nameElement, "name", string, 1, 1);
SIMPLE(limit, "limit", rate, 0, UNBOUNDED);
SIMPLE(range, "range", ports, 1, 1);
static const SchemaTypedRef choiceParticles[] = {ELEMENT(limit), ELEMENT(range)};
GROUP(choice, SCHEMA_KIND_CHOICE, choiceParticles, 0, UNBOUNDED);
static const SchemaTypedRef sequenceParticles[] = {ELEMENT(nameElement), MODEL(choice)};
GROUP(sequence, SCHEMA_KIND_SEQUENCE, sequenceParticles, 1, 1);
static const SchemaAttributeDecl *const baseUses[] = {&id, &old, &mark};
static const SchemaComplexType baseType = {.attributeUses = baseUses,
                                           .attributeGroups = outerGroups,
                                           .particle = &sequence,
                                           .attributeWildcard = &otherAttributes,
                                           .name = "base",
                                           .targetNamespace = NS,
                                           .attributeUseCount = COUNT(baseUses),
                                           .attributeGroupCount = 1};
COMPLEX(baseElement, "base", baseType, 0, 1);

/* An extension of it with an all group, and a restriction. */
SIMPLE(since, "since", date, 1, 1);
SIMPLE(until, "until", date, 0, 1);
static const SchemaTypedRef allParticles[] = {ELEMENT(since), ELEMENT(until)};
GROUP(all, SCHEMA_KIND_ALL, allParticles, 0, 1);
static const SchemaDerivation extension = {.particle = &all,
                                           .baseType = &baseType,
                                           .derivationKind = SCHEMA_KIND_COMPLEX_EXTENSION,
                                           .baseTypeKind = SCHEMA_KIND_COMPLEX_TYPE};
static const SchemaComplexType extendedType = {.content = &extension};
COMPLEX(extended, "extended", extendedType, 0, 1);

static const SchemaTypedRef restrictedParticles[] = {ELEMENT(nameElement)};
GROUP(restrictedSequence, SCHEMA_KIND_SEQUENCE, restrictedParticles, 1, 1);
static const SchemaDerivation restriction = {.particle = &restrictedSequence,
                                             .baseType = &baseType,
                                             .derivationKind = SCHEMA_KIND_COMPLEX_RESTRICTION,
                                             .baseTypeKind = SCHEMA_KIND_COMPLEX_TYPE};
static const SchemaComplexType restrictedType = {.content = &restriction, .mixed = 1};
COMPLEX(restricted, "restricted", restrictedType, 0, 1);

/* Simple content: an extension of a simple type, and a restriction of that. */
static const SchemaDerivation valueExtension = {.attributeUses = unitUses,
                                                .baseType = &integer,
                                                .derivationKind = SCHEMA_KIND_SIMPLE_EXTENSION,
                                                .baseTypeKind = SCHEMA_KIND_SIMPLE_TYPE,
                                                .attributeUseCount = 1};
static const SchemaComplexType valueType = {.content = &valueExtension};
COMPLEX(value, "value", valueType, 0, 1);
static const SchemaDerivation valueRestriction = {.facets = percentFacets,
                                                  .baseType = &valueType,
                                                  .derivationKind = SCHEMA_KIND_SIMPLE_RESTRICTION,
                                                  .baseTypeKind = SCHEMA_KIND_COMPLEX_TYPE,
                                                  .facetCount = COUNT(percentFacets)};
static const SchemaComplexType smallValueType = {.content = &valueRestriction};
COMPLEX(smallValue, "small", smallValueType, 0, 1);

/* An abstract head and a member of its substitution group. */
static const SchemaElementDecl head = {.name = "head",
                                       .targetNamespace = NS,
                                       .minOccurs = 1,
                                       .maxOccurs = 1,
                                       .form = kQualified,
                                       .abstract = 1};
static const SchemaElementDecl headByReference = {.ref = &head, .minOccurs = 0, .maxOccurs = 1};
static const SchemaElementDecl member = {.name = "member",
                                         .targetNamespace = NS,
                                         .substitutionGroupName = "head",
                                         .substitutionGroupNamespace = NS,
                                         .type = &boolean,
                                         .minOccurs = 1,
                                         .maxOccurs = 1,
                                         .typeKind = SCHEMA_KIND_SIMPLE_TYPE,
                                         .form = kQualified};

/* Nillable, fixed, empty, and without any type. */
static const SchemaElementDecl nil = {.name = "nil",
                                      .targetNamespace = NS,
                                      .type = &integer,
                                      .minOccurs = 0,
                                      .maxOccurs = 1,
                                      .typeKind = SCHEMA_KIND_SIMPLE_TYPE,
                                      .form = kQualified,
                                      .nillable = 1};
static const SchemaElementDecl fixed = {.name = "fixed",
                                        .targetNamespace = NS,
                                        .type = &string,
                                        .fixedValue = "v1",
                                        .minOccurs = 0,
                                        .maxOccurs = 1,
                                        .typeKind = SCHEMA_KIND_SIMPLE_TYPE,
                                        .form = kQualified,
                                        .hasFixed = 1};
static const SchemaComplexType emptyType = {.name = "empty"};
COMPLEX(empty, "empty", emptyType, 0, 1);
static const SchemaElementDecl untyped = {
    .name = "untyped", .minOccurs = 0, .maxOccurs = 1, .form = kUnqualified};

/* Of any name: strict in this namespace, none of it checked in others. */
static const SchemaElementWildcard strictOwn = {
    .targetNamespace = NS, .namespaceConstraint = NS, .minOccurs = 0, .maxOccurs = 1};
static const SchemaElementWildcard skipOthers = {.targetNamespace = NS,
                                                 .namespaceConstraint = "##other",
                                                 .minOccurs = 0,
                                                 .maxOccurs = UNBOUNDED,
                                                 .processContents = kSkip};

/* ---- the root ---- */

static const SchemaTypedRef rootParticles[] = {
    ELEMENT(baseElement),
    ELEMENT(extended),
    ELEMENT(restricted),
    ELEMENT(value),
    ELEMENT(smallValue),
    ELEMENT(headByReference),
    ELEMENT(nil),
    ELEMENT(fixed),
    ELEMENT(empty),
    ELEMENT(untyped),
    {&strictOwn, SCHEMA_KIND_ELEMENT_WILDCARD},
    {&skipOthers, SCHEMA_KIND_ELEMENT_WILDCARD},
};
GROUP(rootContent, SCHEMA_KIND_SEQUENCE, rootParticles, 1, 1);
static const SchemaComplexType rootType = {.particle = &rootContent};
static const SchemaElementDecl root = {.name = "features",
                                       .targetNamespace = NS,
                                       .type = &rootType,
                                       .minOccurs = 1,
                                       .maxOccurs = 1,
                                       .typeKind = SCHEMA_KIND_COMPLEX_TYPE,
                                       .form = kQualified,
                                       .alternativeNamespace = NS};

const SchemaTopObject featureSchema[] = {
    ELEMENT(root),
    ELEMENT(head),
    ELEMENT(member),
    {&globalMark, SCHEMA_KIND_ATTRIBUTE},
    {&globalGroup, SCHEMA_KIND_ATTRIBUTE_GROUP},
    {&percent, SCHEMA_KIND_SIMPLE_TYPE},
    {&level, SCHEMA_KIND_SIMPLE_TYPE},
    {&rate, SCHEMA_KIND_SIMPLE_TYPE},
    {&baseType, SCHEMA_KIND_COMPLEX_TYPE},
};
const uint32_t featureSchemaCount = COUNT(featureSchema);
