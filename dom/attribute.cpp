#include "dom/attribute.h"

#include <cstdlib>
#include <cstring>

#include "dom/namespace.h"
#include "io/memory.h"

namespace cxml {
namespace {

const char *namespaceNameOf(const XML_DOM_NsDecl *decl) {
    return decl ? decl->namespaceName : nullptr;
}

const char *prefixOf(const XML_DOM_Attr *attribute) {
    return attribute->ns ? attribute->ns->prefix : nullptr;
}

// Attributes are told apart by local name and namespace name, whatever their prefixes.
bool hasAttr(const XML_DOM_Node *element, const char *name, const XML_DOM_NsDecl *decl) {
    for (const XML_DOM_Attr *other = element->firstAttr; other; other = other->next) {
        if (std::strcmp(other->name, name) == 0 &&
            XML_Strcmp(namespaceNameOf(other->ns), namespaceNameOf(decl)) == 0) {
            return true;
        }
    }
    return false;
}

XML_DOM_Attr *attrBefore(const XML_DOM_Node *element, const XML_DOM_Attr *attribute) {
    XML_DOM_Attr *previous = nullptr;
    for (XML_DOM_Attr *other = element->firstAttr; other != attribute; other = other->next) {
        previous = other;
    }
    return previous;
}

void removeAttr(XML_DOM_Node *element, XML_DOM_Attr *attribute) {
    XML_DOM_Attr *previous = attrBefore(element, attribute);
    if (previous) {
        previous->next = attribute->next;
    } else {
        element->firstAttr = attribute->next;
    }
    if (element->lastAttr == attribute) element->lastAttr = previous;
    XML_DOM_FreeAttr(attribute);
}

}  // namespace

void XML_DOM_FreeAttr(XML_DOM_Attr *attribute) noexcept {
    std::free(attribute->value);
    std::free(attribute->name);
    std::free(attribute);
}

XML_DOM_Attr *appendAttr(XML_DOM_Node *element, const char *name, std::size_t nameLength,
                         const char *value, std::size_t valueLength) noexcept {
    auto *attribute = static_cast<XML_DOM_Attr *>(std::malloc(sizeof(XML_DOM_Attr)));
    if (!attribute) return nullptr;
    *attribute = {nullptr, element, nullptr, copyBytes(name, nameLength), nullptr};
    if (attribute->name) attribute->value = copyBytes(value, valueLength);
    if (!attribute->value) {
        XML_DOM_FreeAttr(attribute);
        return nullptr;
    }
    if (element->lastAttr) {
        element->lastAttr->next = attribute;
    } else {
        element->firstAttr = attribute;
    }
    element->lastAttr = attribute;
    return attribute;
}

}  // namespace cxml

using namespace cxml;

XML_DOM_Attr *XML_DOM_AddAttr(XML_DOM_Node *element, const char *prefix, const char *name,
                              const char *value) noexcept {
    if (!element || !value) return nullptr;
    if (XML_CheckQName(name) != XML_OK || std::strcmp(name, "xmlns") == 0) return nullptr;
    XML_DOM_NsDecl *decl = isEmpty(prefix) ? nullptr : XML_DOM_LookupNsByPrefix(element, prefix);
    if (!isEmpty(prefix) && !decl) return nullptr;
    if (hasAttr(element, name, decl)) return nullptr;
    XML_DOM_Attr *attribute = XML_DOM_AddAttrInner(element, name, value);
    if (attribute) attribute->ns = decl;
    return attribute;
}

XML_DOM_Attr *XML_DOM_AddAttrInner(XML_DOM_Node *element, const char *name,
                                   const char *value) noexcept {
    if (!element || !name || !value) return nullptr;
    return appendAttr(element, name, std::strlen(name), value, std::strlen(value));
}

uint32_t XML_DOM_SetAttrNsInner(XML_DOM_Attr *attribute, const char *prefix) noexcept {
    if (!attribute) return XML_REFUSED;
    XML_DOM_NsDecl *decl = nullptr;
    if (!isEmpty(prefix)) {
        decl = XML_DOM_LookupNsByPrefix(attribute->owner, prefix);
        if (!decl) return XML_REFUSED;
    }
    attribute->ns = decl;
    return XML_OK;
}

void XML_DOM_DelAttr(XML_DOM_Node *element, const char *prefix, const char *name) noexcept {
    if (!element || isEmpty(name)) return;
    for (XML_DOM_Attr *attribute = element->firstAttr; attribute; attribute = attribute->next) {
        // Intended: the prefix is compared as text, unlike when attributes are added.
        if (std::strcmp(attribute->name, name) == 0 &&
            XML_Strcmp(prefixOf(attribute), prefix) == 0) {
            removeAttr(element, attribute);
            return;
        }
    }
}

XML_DOM_Attr *XML_DOM_GetFirstAttr(const XML_DOM_Node *element) noexcept {
    return element ? element->firstAttr : nullptr;
}

XML_DOM_Attr *XML_DOM_GetNextAttr(const XML_DOM_Attr *attribute) noexcept {
    return attribute ? attribute->next : nullptr;
}

const char *XML_DOM_GetAttrValByHandle(const XML_DOM_Attr *attribute) noexcept {
    return attribute ? attribute->value : nullptr;
}

uint32_t XML_DOM_GetAttrNameSpace(const XML_DOM_Attr *attribute, const char **nameOut,
                                  const char **namespaceOut) noexcept {
    if (!attribute || (!nameOut && !namespaceOut)) return XML_REFUSED;
    if (nameOut) *nameOut = attribute->name;
    if (namespaceOut) *namespaceOut = namespaceNameOf(attribute->ns);
    return XML_OK;
}

const char *XML_DOM_GetNodeNsAttribute(const XML_DOM_Node *element, const char *namespaceName,
                                       const char *name) noexcept {
    if (!element || !name) return nullptr;
    for (const XML_DOM_Attr *attribute = element->firstAttr; attribute;
         attribute = attribute->next) {
        if (std::strcmp(attribute->name, name) != 0) continue;
        if (!namespaceName) return attribute->value;
        // Intended: the prefix is resolved anew, so no prefix means the default namespace in scope.
        const XML_DOM_NsDecl *decl =
            XML_DOM_LookupNsByPrefix(attribute->owner, prefixOf(attribute));
        if (decl && XML_Strcmp(decl->namespaceName, namespaceName) == 0) return attribute->value;
    }
    return nullptr;
}

const char *XML_DOM_GetNodeAttrValByName(const XML_DOM_Node *element, const char *name) noexcept {
    return XML_DOM_GetNodeNsAttribute(element, nullptr, name);
}
