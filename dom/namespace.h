// dom/namespace.h - namespace declarations and the resolution of prefixes in a tree.
#pragma once

#include <cstddef>

#include "compactxml.h"

namespace cxml {

// Whether a string is missing or "", which for a prefix is the same.
inline bool isEmpty(const char *text) noexcept {
    return !text || *text == '\0';
}

// The record that the prefix "xml" resolves to where nobody declares it. Never freed, never linked.
XML_DOM_NsDecl *builtinXmlDecl() noexcept;

// The nearest declaration of a prefix from the element upwards (null and "" are the same prefix),
// the built-in one for "xml", or null. Cost: the declarations of all ancestors.
XML_DOM_NsDecl *XML_DOM_LookupNsByPrefix(const XML_DOM_Node *element, const char *prefix) noexcept;

// The first declaration of this prefix in one element's list, or null.
XML_DOM_NsDecl *XML_DOM_FindNsDecl(XML_DOM_NsDecl *list, const char *prefix) noexcept;

// Appends a declaration without looking for one of the same prefix; prefix may be null.
XML_DOM_NsDecl *appendNsDecl(XML_DOM_Node *element, const char *prefix,
                             const char *namespaceName) noexcept;

void XML_DOM_FreeNsDecl(XML_DOM_NsDecl *decl) noexcept;

}  // namespace cxml
