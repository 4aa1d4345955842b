// dom/attribute.h - attribute records whose arguments are already checked.
#pragma once

#include <cstddef>

#include "compactxml.h"

namespace cxml {

void XML_DOM_FreeAttr(XML_DOM_Attr *attribute) noexcept;

// Appends an attribute without a namespace, from a name and a value of known lengths.
XML_DOM_Attr *appendAttr(XML_DOM_Node *element, const char *name, std::size_t nameLength,
                         const char *value, std::size_t valueLength) noexcept;

}  // namespace cxml
