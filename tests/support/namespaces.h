// tests/support/namespaces.h - whether the namespace fields of a tree are what prefixes resolve to.
#pragma once

#include <string>

#include "compactxml.h"

namespace support {

// "" when the namespace field of every element and attribute is null or the nearest declaration of
// its prefix; otherwise the name of the first that is not. Walks up for each of them, so it is not
// for deep trees.
std::string wrongNamespace(const XML_DOM_Node *root);

}  // namespace support
