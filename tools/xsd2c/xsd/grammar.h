// tools/xsd2c/xsd/grammar.h - what may stand where in a schema document.
#pragma once

#include "xsd2c/xsd/diagnostics.h"
#include "xsd2c/xsd/source_tree.h"

namespace xsd2c {

// The elements of XML Schema, told apart where the same name has a different form.
enum class Construct {
    kSchema,
    kInclude,
    kImport,
    kRedefine,
    kAnnotation,
    kAppinfo,
    kDocumentation,
    kNotation,
    kTopSimpleType,
    kLocalSimpleType,
    kList,
    kUnion,
    kSimpleRestriction,  // within simpleType
    kLength,             // the facets, in the order of FacetKind
    kMinLength,
    kMaxLength,
    kPattern,
    kEnumeration,
    kWhiteSpace,
    kMaxInclusive,
    kMaxExclusive,
    kMinInclusive,
    kMinExclusive,
    kTotalDigits,
    kFractionDigits,
    kTopAttribute,
    kLocalAttribute,
    kAnyAttribute,
    kAttributeGroup,
    kAttributeGroupRef,
    kTopComplexType,
    kLocalComplexType,
    kSimpleContent,
    kComplexContent,
    kValueRestriction,  // within simpleContent
    kValueExtension,
    kContentRestriction,  // within complexContent
    kContentExtension,
    kGroup,
    kGroupRef,
    kAll,
    kChoice,
    kSequence,
    kGroupAll,  // within a named group
    kGroupChoice,
    kGroupSequence,
    kAny,
    kTopElement,
    kLocalElement,
    kElementOfAll,
    kUnique,
    kKey,
    kKeyref,
    kSelector,
    kField,
};

// Checks a document as far as that is possible without looking at another one or resolving a
// reference: what stands where, which attributes there are and what their values look like. Leaves
// a tree without what is not allowed; attributes with bad values stay, and are not valid. Values
// come out with white space collapsed where XML Schema does so.
//
// False when the root is no schema.
bool checkGrammar(SourceTree &tree, Diagnostics &diagnostics);

}  // namespace xsd2c
