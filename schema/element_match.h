// schema/element_match.h - whether an element is what a declaration declares.
#pragma once

#include "compactxml.h"
#include "dom/namespace.h"
#include "schema/same_text.h"
#include "schema/validation.h"

namespace cxml {

// An element as far as matching asks; ns is that of its name, or the default one in scope.
struct ElementName {
    XML_DOM_Node *node = nullptr;  // null for no element
    const char *name = nullptr;
    const char *ns = nullptr;
};

// The next element from a node on, the node itself included; null for none.
inline XML_DOM_Node *elementFrom(XML_DOM_Node *node) noexcept {
    while (node && node->type != XML_DOM_NODE_ELEMENT) node = node->nextSibling;
    return node;
}

// The default namespace declaration in scope below an element, given the one above it.
inline const XML_DOM_NsDecl *defaultNsBelow(const XML_DOM_Node *element,
                                            const XML_DOM_NsDecl *above) noexcept {
    if (!element->firstNsDecl) return above;
    const XML_DOM_NsDecl *own = XML_DOM_FindNsDecl(element->firstNsDecl, nullptr);
    return own ? own : above;
}

// The name of an element (or of none), given the default namespace declaration in scope above it.
inline ElementName nameOf(XML_DOM_Node *element, const XML_DOM_NsDecl *defaultNsAbove) noexcept {
    if (!element) return {};
    const XML_DOM_NsDecl *ns = element->ns ? element->ns : defaultNsBelow(element, defaultNsAbove);
    return {element, element->name, ns ? ns->namespaceName : nullptr};
}

// The declaration that counts for a particle: a reference stands for what it refers to.
inline const SchemaElementDecl &referred(const SchemaElementDecl &decl) noexcept {
    return decl.ref ? *decl.ref : decl;
}

// The namespace that an element of this (referred) declaration has; null for none.
inline const char *expectedNamespace(const SchemaElementDecl &decl,
                                     const Validation &run) noexcept {
    constexpr std::int32_t kQualified = 1;
    const bool byDefault =
        decl.form == 0 && run.context.root->elementFormDefault == std::uint32_t{kQualified};
    return decl.form == kQualified || byDefault ? lookupNamespace(decl, run) : nullptr;
}

// The first top-level declaration of an element that names this one as the head of its group; or null.
const SchemaElementDecl *findMember(const ElementName &element, const SchemaElementDecl &head,
                                    const Validation &run) noexcept;

// Whether an element is one of this declaration; of an abstract one, whether it is a member of its
// substitution group.
inline bool matches(const ElementName &element, const SchemaElementDecl &decl,
                    Validation &run) noexcept {
    const SchemaElementDecl &declared = referred(decl);
    if (declared.abstract == 1) return findMember(element, declared, run) != nullptr;
    return isSameText(element.name, declared.name) &&
           run.namespaces.matches(element.ns, expectedNamespace(declared, run));
}

// The declaration to check an element against that matched this one: of an abstract one, the member
// of its substitution group. Null for none.
const SchemaElementDecl *substituted(const ElementName &element, const SchemaElementDecl &decl,
                                     const Validation &run) noexcept;

}  // namespace cxml
