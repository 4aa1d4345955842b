// schema/attributes.h - checks the attributes of elements.
#pragma once

#include "compactxml.h"
#include "schema/validation.h"

namespace cxml {

// Checks the attributes of an element of a complex type against what the type declares. Errors are
// left in the context.
void Schema_CheckAttributes(XML_DOM_Node *element, const SchemaComplexType &type,
                            Validation &run) noexcept;

// Checks the attributes of an element of a simple type, which may have those alone that need no
// declaration.
void Schema_CheckAllowedAttributes(XML_DOM_Node *element, Validation &run) noexcept;

}  // namespace cxml
