#include "xsd2c/xsd/grammar_table.h"

#include <cstddef>

namespace xsd2c {
namespace {

using C = Construct;
using K = ValueKind;

constexpr bool kRequired = true;
constexpr AttributeRule kId = {"id", K::kName};
constexpr AttributeRule kName = {"name", K::kName, kRequired};
constexpr AttributeRule kMin = {"minOccurs", K::kMinOccurs};
constexpr AttributeRule kMax = {"maxOccurs", K::kMaxOccurs};
constexpr AttributeRule kDefault = {"default", K::kText};
constexpr AttributeRule kFixed = {"fixed", K::kText};
constexpr AttributeRule kFixedFacet = {"fixed", K::kBoolean};
constexpr AttributeRule kFacetValue = {"value", K::kCollapsed, kRequired};
constexpr AttributeRule kWrittenValue = {"value", K::kText, kRequired};
constexpr AttributeRule kXpath = {"xpath", K::kCollapsed, kRequired};

const Slot kAnnotated = {Times::kOptional, {C::kAnnotation}};
const Slot kFacets = {Times::kAny,
                      {C::kLength, C::kMinLength, C::kMaxLength, C::kPattern, C::kEnumeration,
                       C::kWhiteSpace, C::kMaxInclusive, C::kMaxExclusive, C::kMinInclusive,
                       C::kMinExclusive, C::kTotalDigits, C::kFractionDigits}};
const Slot kAttributes = {Times::kAny, {C::kLocalAttribute, C::kAttributeGroupRef}};
const Slot kWildcard = {Times::kOptional, {C::kAnyAttribute}};
const Slot kContentModel = {Times::kOptional, {C::kGroupRef, C::kAll, C::kChoice, C::kSequence}};
const Slot kParticles = {Times::kAny,
                         {C::kLocalElement, C::kGroupRef, C::kChoice, C::kSequence, C::kAny}};
const Slot kInnerType = {Times::kOptional, {C::kLocalSimpleType}};
const Slot kInnerTypes = {Times::kAny, {C::kLocalSimpleType}};
const Slot kElementType = {Times::kOptional, {C::kLocalSimpleType, C::kLocalComplexType}};
const Slot kConstraints = {Times::kAny, {C::kUnique, C::kKey, C::kKeyref}};
const Slot kVariety = {Times::kOnce, {C::kSimpleRestriction, C::kList, C::kUnion}};

// Tables are lists of rows; this keeps those of facets, identity constraints and the like short.
Rule facet(Construct construct, const char *name) {
    return {construct, name, {kId, kFacetValue, kFixedFacet}, {kAnnotated}};
}
Rule writtenFacet(Construct construct, const char *name) {
    return {construct, name, {kId, kWrittenValue}, {kAnnotated}};
}
Rule constraint(Construct construct, const char *name, std::vector<AttributeRule> attributes) {
    return {construct,
            name,
            std::move(attributes),
            {kAnnotated, {Times::kOnce, {C::kSelector}}, {Times::kMany, {C::kField}}}};
}
Rule namedGroupModel(Construct construct, const char *name, const Slot &particles) {
    return {construct, name, {kId}, {kAnnotated, particles}};
}
Rule complexType(Construct construct, std::vector<AttributeRule> attributes) {
    return {construct,
            "complexType",
            std::move(attributes),
            {kAnnotated,
             {Times::kAlone, {C::kSimpleContent, C::kComplexContent}},
             kContentModel,
             kAttributes,
             kWildcard}};
}
Rule localElement(Construct construct, AttributeRule min, AttributeRule max) {
    return {construct,
            "element",
            {kId,
             {"name", K::kName},
             {"ref", K::kQName},
             {"type", K::kQName},
             min,
             max,
             kDefault,
             kFixed,
             {"nillable", K::kBoolean},
             {"block", K::kElementBlock},
             {"form", K::kForm}},
            {kAnnotated, kElementType, kConstraints}};
}

// In the order of Construct.
const std::vector<Rule> &rules() {
    static const std::vector<Rule> kRules = {
        {C::kSchema,
         "schema",
         {kId,
          {"targetNamespace", K::kCollapsed},
          {"version", K::kCollapsed},
          {"finalDefault", K::kSchemaFinal},
          {"blockDefault", K::kElementBlock},
          {"attributeFormDefault", K::kForm},
          {"elementFormDefault", K::kForm}},
         {{Times::kAny, {C::kInclude, C::kImport, C::kRedefine, C::kAnnotation}},
          {Times::kAny,
           {C::kTopSimpleType, C::kTopComplexType, C::kGroup, C::kAttributeGroup, C::kTopElement,
            C::kTopAttribute, C::kNotation, C::kAnnotation}}}},
        {C::kInclude, "include", {kId, {"schemaLocation", K::kCollapsed, kRequired}}, {kAnnotated}},
        {C::kImport,
         "import",
         {kId, {"namespace", K::kCollapsed}, {"schemaLocation", K::kCollapsed}},
         {kAnnotated}},
        {C::kRedefine, "redefine", {}, {}},
        {C::kAnnotation, "annotation", {kId}, {{Times::kAny, {C::kAppinfo, C::kDocumentation}}}},
        {C::kAppinfo, "appinfo", {{"source", K::kCollapsed}}, {}},
        {C::kDocumentation, "documentation", {{"source", K::kCollapsed}}, {}},
        {C::kNotation,
         "notation",
         {kId, kName, {"public", K::kCollapsed}, {"system", K::kCollapsed}},
         {kAnnotated}},

        {C::kTopSimpleType,
         "simpleType",
         {kId, kName, {"final", K::kSimpleFinal}},
         {kAnnotated, kVariety}},
        {C::kLocalSimpleType, "simpleType", {kId}, {kAnnotated, kVariety}},
        {C::kList, "list", {kId, {"itemType", K::kQName}}, {kAnnotated, kInnerType}},
        {C::kUnion, "union", {kId, {"memberTypes", K::kQNames}}, {kAnnotated, kInnerTypes}},
        {C::kSimpleRestriction,
         "restriction",
         {kId, {"base", K::kQName}},
         {kAnnotated, kInnerType, kFacets}},
        facet(C::kLength, "length"),
        facet(C::kMinLength, "minLength"),
        facet(C::kMaxLength, "maxLength"),
        writtenFacet(C::kPattern, "pattern"),
        writtenFacet(C::kEnumeration, "enumeration"),
        facet(C::kWhiteSpace, "whiteSpace"),
        facet(C::kMaxInclusive, "maxInclusive"),
        facet(C::kMaxExclusive, "maxExclusive"),
        facet(C::kMinInclusive, "minInclusive"),
        facet(C::kMinExclusive, "minExclusive"),
        facet(C::kTotalDigits, "totalDigits"),
        facet(C::kFractionDigits, "fractionDigits"),

        {C::kTopAttribute,
         "attribute",
         {kId, kName, {"type", K::kQName}, kDefault, kFixed},
         {kAnnotated, kInnerType}},
        {C::kLocalAttribute,
         "attribute",
         {kId,
          {"name", K::kName},
          {"ref", K::kQName},
          {"type", K::kQName},
          {"use", K::kUse},
          kDefault,
          kFixed,
          {"form", K::kForm}},
         {kAnnotated, kInnerType}},
        {C::kAnyAttribute,
         "anyAttribute",
         {kId, {"namespace", K::kNamespaces}, {"processContents", K::kProcess}},
         {kAnnotated}},
        {C::kAttributeGroup, "attributeGroup", {kId, kName}, {kAnnotated, kAttributes, kWildcard}},
        {C::kAttributeGroupRef,
         "attributeGroup",
         {kId, {"ref", K::kQName, kRequired}},
         {kAnnotated}},

        complexType(C::kTopComplexType, {kId,
                                         kName,
                                         {"mixed", K::kBoolean},
                                         {"abstract", K::kBoolean},
                                         {"final", K::kDerivations},
                                         {"block", K::kDerivations}}),
        complexType(C::kLocalComplexType, {kId, {"mixed", K::kBoolean}}),
        {C::kSimpleContent,
         "simpleContent",
         {kId},
         {kAnnotated, {Times::kOnce, {C::kValueRestriction, C::kValueExtension}}}},
        {C::kComplexContent,
         "complexContent",
         {kId, {"mixed", K::kBoolean}},
         {kAnnotated, {Times::kOnce, {C::kContentRestriction, C::kContentExtension}}}},
        {C::kValueRestriction,
         "restriction",
         {kId, {"base", K::kQName, kRequired}},
         {kAnnotated, kInnerType, kFacets, kAttributes, kWildcard}},
        {C::kValueExtension,
         "extension",
         {kId, {"base", K::kQName, kRequired}},
         {kAnnotated, kAttributes, kWildcard}},
        {C::kContentRestriction,
         "restriction",
         {kId, {"base", K::kQName, kRequired}},
         {kAnnotated, kContentModel, kAttributes, kWildcard}},
        {C::kContentExtension,
         "extension",
         {kId, {"base", K::kQName, kRequired}},
         {kAnnotated, kContentModel, kAttributes, kWildcard}},

        {C::kGroup,
         "group",
         {kId, kName},
         {kAnnotated, {Times::kOnce, {C::kGroupAll, C::kGroupChoice, C::kGroupSequence}}}},
        {C::kGroupRef, "group", {kId, {"ref", K::kQName, kRequired}, kMin, kMax}, {kAnnotated}},
        {C::kAll,
         "all",
         {kId, {"minOccurs", K::kZeroOrOne}, {"maxOccurs", K::kOne}},
         {kAnnotated, {Times::kAny, {C::kElementOfAll}}}},
        {C::kChoice, "choice", {kId, kMin, kMax}, {kAnnotated, kParticles}},
        {C::kSequence, "sequence", {kId, kMin, kMax}, {kAnnotated, kParticles}},
        namedGroupModel(C::kGroupAll, "all", {Times::kAny, {C::kElementOfAll}}),
        namedGroupModel(C::kGroupChoice, "choice", kParticles),
        namedGroupModel(C::kGroupSequence, "sequence", kParticles),
        {C::kAny,
         "any",
         {kId, kMin, kMax, {"namespace", K::kNamespaces}, {"processContents", K::kProcess}},
         {kAnnotated}},

        {C::kTopElement,
         "element",
         {kId,
          kName,
          {"type", K::kQName},
          {"substitutionGroup", K::kQName},
          kDefault,
          kFixed,
          {"nillable", K::kBoolean},
          {"abstract", K::kBoolean},
          {"final", K::kDerivations},
          {"block", K::kElementBlock}},
         {kAnnotated, kElementType, kConstraints}},
        localElement(C::kLocalElement, kMin, kMax),
        localElement(C::kElementOfAll, {"minOccurs", K::kZeroOrOne}, {"maxOccurs", K::kZeroOrOne}),
        constraint(C::kUnique, "unique", {kId, kName}),
        constraint(C::kKey, "key", {kId, kName}),
        constraint(C::kKeyref, "keyref", {kId, kName, {"refer", K::kQName, kRequired}}),
        {C::kSelector, "selector", {kId, kXpath}, {kAnnotated}},
        {C::kField, "field", {kId, kXpath}, {kAnnotated}},
    };
    return kRules;
}

}  // namespace

const Rule &ruleOf(Construct construct) {
    return rules()[static_cast<std::size_t>(construct)];
}

}  // namespace xsd2c
