#include "dom/node.h"

#include <cstdlib>
#include <cstring>

#include "dom/encoding.h"
#include "io/memory.h"

namespace cxml {
namespace {

constexpr char kVersion[] = "1.0";

XML_DOM_Node *newNode(uint32_t type) {
    // Not calloc, which in many a C library passes by the cache of small blocks.
    auto *node = static_cast<XML_DOM_Node *>(std::malloc(sizeof(XML_DOM_Node)));
    if (!node) return nullptr;
    *node = XML_DOM_Node{};
    node->type = type;
    return node;
}

const char *firstChildValue(const XML_DOM_Node *node, uint32_t type) {
    if (!node) return nullptr;
    for (const XML_DOM_Node *child = node->firstChild; child; child = child->nextSibling) {
        if (child->type == type) return child->value;
    }
    return nullptr;
}

XML_DOM_Node *newElementWith(uint32_t childType, const char *name, const char *text) {
    NodeOwner element{XML_DOM_CreateElementNode(name)};
    if (!element || !text) return element.release();
    XML_DOM_Node *child = newTextual(childType, text);
    if (!child) return nullptr;
    linkLastChild(element.get(), child);
    return element.release();
}

}  // namespace

XML_DOM_DocInfo *XML_DOM_FindDocInfo(const XML_DOM_Node *node) noexcept {
    while (node && !node->docInfo) node = node->parent;
    return node ? node->docInfo : nullptr;
}

XML_DOM_Node *XML_DOM_FindPrevSibling(const XML_DOM_Node *parent,
                                      const XML_DOM_Node *node) noexcept {
    XML_DOM_Node *previous = nullptr;
    for (XML_DOM_Node *child = parent->firstChild; child; child = child->nextSibling) {
        if (child == node) return previous;
        previous = child;
    }
    return nullptr;
}

XML_DOM_Node *newElement(const char *name, std::size_t length) noexcept {
    NodeOwner node{newNode(XML_DOM_NODE_ELEMENT)};
    if (!node) return nullptr;
    node->name = copyBytes(name, length);
    return node->name ? node.release() : nullptr;
}

XML_DOM_Node *newTextual(uint32_t type, const char *text) noexcept {
    if (!text) return nullptr;
    const std::size_t length = std::strlen(text);
    if (length > UINT32_MAX) return nullptr;
    return XML_DOM_CreateTextualNodeInner(type, text, static_cast<uint32_t>(length));
}

bool isAtOrAbove(const XML_DOM_Node *candidate, const XML_DOM_Node *node) noexcept {
    while (node && node != candidate) node = node->parent;
    return node != nullptr;
}

void linkLastChild(XML_DOM_Node *parent, XML_DOM_Node *child) noexcept {
    child->parent = parent;
    if (parent->firstChild) {
        parent->lastChild->nextSibling = child;
    } else {
        parent->firstChild = child;
    }
    parent->lastChild = child;
}

}  // namespace cxml

using namespace cxml;

XML_DOM_Node *XML_DOM_GetRoot(const XML_DOM_Node *node) noexcept {
    const XML_DOM_DocInfo *info = XML_DOM_FindDocInfo(node);
    return info ? info->root : nullptr;
}

const char *XML_DOM_GetVersion(const XML_DOM_Node *node) noexcept {
    const XML_DOM_DocInfo *info = XML_DOM_FindDocInfo(node);
    return info ? info->version : nullptr;
}

uint32_t XML_DOM_GetEncoding(const XML_DOM_Node *node) noexcept {
    const XML_DOM_DocInfo *info = XML_DOM_FindDocInfo(node);
    return info ? info->encoding : XML_ENCODING_UNKNOWN;
}

uint32_t XML_DOM_SetEncoding(XML_DOM_Node *node, uint32_t encoding) noexcept {
    if (!node || encoding >= XML_ENCODING_UNKNOWN) return XML_REFUSED;
    XML_DOM_DocInfo *info = XML_DOM_FindDocInfo(node);
    if (!info) return XML_REFUSED;
    info->encoding = encoding;
    return XML_OK;
}

uint32_t XML_DOM_SetVersion(XML_DOM_Node *node, const char *version) noexcept {
    if (!node || !version) return XML_REFUSED;
    XML_DOM_DocInfo *info = XML_DOM_FindDocInfo(node);
    if (!info || std::strcmp(version, kVersion) != 0) return XML_REFUSED;
    info->version = kVersion;  // Intended: the constant, which outlives the caller's string
    return XML_OK;
}

uint32_t XML_DOM_SetRoot(XML_DOM_Node *node) noexcept {
    if (!node || node->type != XML_DOM_NODE_ELEMENT || node->parent || node->docInfo) {
        return XML_REFUSED;
    }
    auto *info = static_cast<XML_DOM_DocInfo *>(std::malloc(sizeof(XML_DOM_DocInfo)));
    if (!info) return XML_REFUSED;
    *info = {node, kVersion, XML_ENCODING_UTF_8};
    node->docInfo = info;
    return XML_OK;
}

XML_DOM_Node *XML_DOM_GetNodeParent(const XML_DOM_Node *node) noexcept {
    return node ? node->parent : nullptr;
}

XML_DOM_Node *XML_DOM_GetFirstChild(const XML_DOM_Node *node) noexcept {
    return node ? node->firstChild : nullptr;
}

XML_DOM_Node *XML_DOM_GetNextSibling(const XML_DOM_Node *node) noexcept {
    return node ? node->nextSibling : nullptr;
}

uint32_t XML_DOM_GetNodeType(const XML_DOM_Node *node) noexcept {
    return node ? node->type : 0;
}

const char *XML_DOM_GetNodeName(const XML_DOM_Node *node) noexcept {
    return node ? node->name : nullptr;
}

const char *XML_DOM_GetNodeValue(const XML_DOM_Node *node) noexcept {
    return node ? node->value : nullptr;
}

const char *XML_DOM_GetFirstTextChildValue(const XML_DOM_Node *node) noexcept {
    return firstChildValue(node, XML_DOM_NODE_TEXT);
}

const char *XML_DOM_GetFirstCDataChildValue(const XML_DOM_Node *node) noexcept {
    return firstChildValue(node, XML_DOM_NODE_CDATA);
}

XML_DOM_Node *XML_DOM_CreateElementNode(const char *name) noexcept {
    return XML_CheckQName(name) == XML_OK ? XML_DOM_CreateElementNodeInner(name) : nullptr;
}

XML_DOM_Node *XML_DOM_CreateElementNodeInner(const char *name) noexcept {
    return name ? newElement(name, std::strlen(name)) : nullptr;
}

XML_DOM_Node *XML_DOM_CreateTextualNodeInner(uint32_t type, const char *bytes,
                                             uint32_t length) noexcept {
    if (!bytes) return nullptr;
    NodeOwner node{newNode(type)};  // Intended: any type is stored, even an element's
    if (!node) return nullptr;
    node->value = copyBytes(bytes, length);
    return node->value ? node.release() : nullptr;
}

XML_DOM_Node *XML_DOM_CreateTextNode(const char *text) noexcept {
    return newTextual(XML_DOM_NODE_TEXT, text);
}

XML_DOM_Node *XML_DOM_CreateCDataNode(const char *text) noexcept {
    return newTextual(XML_DOM_NODE_CDATA, text);
}

XML_DOM_Node *XML_DOM_CreateElementWithText(const char *name, const char *text) noexcept {
    return newElementWith(XML_DOM_NODE_TEXT, name, text);
}

XML_DOM_Node *XML_DOM_CreateElementWithCData(const char *name, const char *text) noexcept {
    return newElementWith(XML_DOM_NODE_CDATA, name, text);
}

uint32_t XML_DOM_AddChildNode(XML_DOM_Node *parent, XML_DOM_Node *child) noexcept {
    if (!parent || !child || !takesChild(parent, child)) return XML_REFUSED;
    // A cycle would send every later walk round for ever. Only a child with children can be above.
    if (child == parent || (child->firstChild && isAtOrAbove(child, parent))) return XML_REFUSED;
    linkLastChild(parent, child);  // Intended: the child's own next-sibling field stays
    return XML_OK;
}

uint32_t XML_DOM_InsertBeforeNode(XML_DOM_Node *reference, XML_DOM_Node *newnode) noexcept {
    if (!reference || !newnode || !reference->parent) return XML_REFUSED;
    // Intended: nothing is asked of the new node, and the last child never changes.
    XML_DOM_Node *parent = reference->parent;
    XML_DOM_Node *previous = XML_DOM_FindPrevSibling(parent, reference);
    newnode->parent = parent;
    if (previous) {
        previous->nextSibling = newnode;
        newnode->nextSibling = reference;
    } else {
        newnode->nextSibling = parent->firstChild;
        parent->firstChild = newnode;
    }
    return XML_OK;
}

uint32_t XML_DOM_SetNodeName(XML_DOM_Node *node, const char *name) noexcept {
    if (!node || XML_CheckQName(name) != XML_OK || node->type != XML_DOM_NODE_ELEMENT) {
        return XML_REFUSED;
    }
    return replaceString(&node->name, name) ? XML_OK : XML_REFUSED;
}

uint32_t XML_DOM_SetNodeValue(XML_DOM_Node *node, const char *value) noexcept {
    if (!node || !value || value[0] == '\0') return XML_REFUSED;
    if (value == node->value) return XML_OK;  // Intended: before the type is looked at
    if (node->type != XML_DOM_NODE_TEXT && node->type != XML_DOM_NODE_CDATA) return XML_REFUSED;
    return replaceString(&node->value, value) ? XML_OK : XML_REFUSED;
}

int XML_Strcmp(const char *a, const char *b) noexcept {
    return std::strcmp(a ? a : "", b ? b : "");
}
