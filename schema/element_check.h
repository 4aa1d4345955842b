// schema/element_check.h - checks an element and everything below it.
#pragma once

#include "compactxml.h"
#include "schema/validation.h"

namespace cxml {

// Checks an element that a declaration has matched, and all elements below it. The first error is left
// in the context.
void checkTree(XML_DOM_Node *element, const SchemaElementDecl &decl, Validation &run) noexcept;

}  // namespace cxml
