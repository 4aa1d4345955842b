// tools/cxml/copy.h - copies of elements whose names mean the same wherever the copies stand.
#pragma once

#include "compactxml.h"
#include "document.h"

namespace tool {

// Throws std::bad_alloc for what the library refuses for want of memory alone.
void requireMemory(bool done);

// A detached copy of an element and all below it that declares every prefix which it uses, and the
// default namespace unless that is the one in scope at `place`, which may be null.
Tree copyDetached(const XML_DOM_Node *element, const XML_DOM_Node *place);

// Appends a copy of an element and all below it to another. Names keep their namespaces; what the
// new place declares alike is not declared again, but by a copy below its own source and by one with
// a great many declarations.
void copyInto(XML_DOM_Node *parent, const XML_DOM_Node *element);

}  // namespace tool
