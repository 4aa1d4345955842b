// tools/xsd2c/xsd/component_checks.h - what components have to be like beside each other (XML
// Schema 1.0 Structures, the "constraints on schemas").
#pragma once

#include <vector>

#include "xsd2c/xsd/components.h"
#include "xsd2c/xsd/reader.h"

namespace xsd2c {

// All of what follows, when all components have been read.
void checkComponents(Reading &reading);

// Circles and chains that are too long come first, since all others follow references; where one
// is found, something harmless takes the place of the reference.
//
// Returns the simple and complex types, each behind those that it is made of.
std::vector<TypeRef> checkTypeReferences(Reading &reading);
void checkGroupReferences(Reading &reading);
void checkAttributeGroupReferences(Reading &reading);
// Gives elements without a type that of the head of their substitution group, or xs:anyType.
void checkSubstitutionGroups(Reading &reading);

// Bases that fit to what is derived from them, and lists of lists.
//   types  each behind those that it is made of
void checkDerivations(const Reading &reading, const std::vector<TypeRef> &types);

// Attributes of one name on one element.
void checkAttributes(const Reading &reading);

// Where a group that is an xs:all is referred to.
void checkAllGroups(const Reading &reading);

}  // namespace xsd2c
