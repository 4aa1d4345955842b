#include "dom/namespace.h"

#include <cstdlib>
#include <cstring>

#include "io/memory.h"
#include "parser/namespace_scope.h"

namespace cxml {
namespace {

// Lies in read-only memory. Records have no const fields, as C programs see them; the library
// writes through declarations in an element's list alone, where this one never is.
constinit const XML_DOM_NsDecl kXmlDecl = {nullptr, const_cast<char *>("xml"),
                                           const_cast<char *>(kXmlNamespace)};

// Turns a pair of arguments into what is declared; false if it cannot be.
bool XML_DOM_NormalizeNsPair(const char **prefix, const char **namespaceName) {
    if (isEmpty(*prefix)) *prefix = nullptr;
    if (!isEmpty(*namespaceName)) return true;
    if (*prefix) return false;  // no prefix can be bound to the empty name
    *namespaceName = "";        // undeclares the default namespace
    return true;
}

uint32_t declare(XML_DOM_Node *element, const char *prefix, const char *namespaceName,
                 uint32_t replace) {
    if (!element || !XML_DOM_NormalizeNsPair(&prefix, &namespaceName)) return XML_REFUSED;
    return XML_DOM_AddNodeNameSpaceInner(element, prefix, namespaceName, replace);
}

}  // namespace

XML_DOM_NsDecl *builtinXmlDecl() noexcept {
    return const_cast<XML_DOM_NsDecl *>(&kXmlDecl);
}

XML_DOM_NsDecl *XML_DOM_FindNsDecl(XML_DOM_NsDecl *list, const char *prefix) noexcept {
    while (list && XML_Strcmp(list->prefix, prefix) != 0) list = list->next;
    return list;
}

XML_DOM_NsDecl *XML_DOM_LookupNsByPrefix(const XML_DOM_Node *element, const char *prefix) noexcept {
    for (; element; element = element->parent) {
        if (XML_DOM_NsDecl *decl = XML_DOM_FindNsDecl(element->firstNsDecl, prefix)) return decl;
    }
    return XML_Strcmp(prefix, kXmlDecl.prefix) == 0 ? builtinXmlDecl() : nullptr;
}

XML_DOM_NsDecl *appendNsDecl(XML_DOM_Node *element, const char *prefix,
                             const char *namespaceName) noexcept {
    auto *decl = static_cast<XML_DOM_NsDecl *>(std::malloc(sizeof(XML_DOM_NsDecl)));
    if (!decl) return nullptr;
    *decl = {nullptr, prefix ? copyString(prefix) : nullptr, nullptr};
    if (!prefix || decl->prefix) decl->namespaceName = copyString(namespaceName);
    if (!decl->namespaceName) {
        XML_DOM_FreeNsDecl(decl);
        return nullptr;
    }
    if (element->lastNsDecl) {
        element->lastNsDecl->next = decl;
    } else {
        element->firstNsDecl = decl;
    }
    element->lastNsDecl = decl;
    return decl;
}

void XML_DOM_FreeNsDecl(XML_DOM_NsDecl *decl) noexcept {
    std::free(decl->namespaceName);
    std::free(decl->prefix);
    std::free(decl);
}

}  // namespace cxml

using namespace cxml;

uint32_t XML_DOM_AddNodeNameSpace(XML_DOM_Node *element, const char *prefix,
                                  const char *namespaceName) noexcept {
    return declare(element, prefix, namespaceName, 0);
}

uint32_t XML_DOM_SetNodeDefineNsVal(XML_DOM_Node *element, const char *prefix,
                                    const char *namespaceName) noexcept {
    return declare(element, prefix, namespaceName, 1);
}

uint32_t XML_DOM_AddNodeNameSpaceInner(XML_DOM_Node *element, const char *prefix,
                                       const char *namespaceName, uint32_t replace) noexcept {
    if (!element || !namespaceName) return XML_REFUSED;
    XML_DOM_NsDecl *decl = XML_DOM_FindNsDecl(element->firstNsDecl, prefix);
    if (!decl) {
        // Intended: "" is stored as "", and written as xmlns:="..."; reserved prefixes pass.
        return appendNsDecl(element, prefix, namespaceName) ? XML_OK : XML_REFUSED;
    }
    if (!replace) return XML_REFUSED;
    if (std::strcmp(decl->namespaceName, namespaceName) == 0) return XML_OK;
    return replaceString(&decl->namespaceName, namespaceName) ? XML_OK : XML_REFUSED;
}

uint32_t XML_DOM_SetNodeNameSpace(XML_DOM_Node *element, const char *prefix) noexcept {
    if (!element || element->type != XML_DOM_NODE_ELEMENT) return XML_REFUSED;
    XML_DOM_NsDecl *decl = nullptr;
    if (!isEmpty(prefix)) {
        decl = XML_DOM_LookupNsByPrefix(element, prefix);
        if (!decl) return XML_REFUSED;
    }
    element->ns = decl;
    return XML_OK;
}

uint32_t XML_DOM_GetNodeNameSpace(const XML_DOM_Node *element, const char **prefixOut,
                                  const char **namespaceOut) noexcept {
    if (!element || (!prefixOut && !namespaceOut)) return XML_REFUSED;
    const XML_DOM_NsDecl *decl =
        element->ns ? element->ns : XML_DOM_LookupNsByPrefix(element, nullptr);
    if (prefixOut) *prefixOut = decl ? decl->prefix : nullptr;
    if (namespaceOut) *namespaceOut = decl ? decl->namespaceName : nullptr;
    return XML_OK;
}
