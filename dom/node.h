// dom/node.h - making, linking and freeing nodes whose arguments are already checked.
#pragma once

#include <memory>

#include "compactxml.h"

namespace cxml {

struct DeleteNode {
    void operator()(XML_DOM_Node *node) const noexcept { XML_DOM_DelNode(node); }
};
using NodeOwner = std::unique_ptr<XML_DOM_Node, DeleteNode>;

// The document information of the nearest node that has one, from the node upwards; or null.
XML_DOM_DocInfo *XML_DOM_FindDocInfo(const XML_DOM_Node *node) noexcept;

// The sibling before a child of parent; null if it is the first child or no child at all.
XML_DOM_Node *XML_DOM_FindPrevSibling(const XML_DOM_Node *parent,
                                      const XML_DOM_Node *node) noexcept;

// A detached element from a name of known length.
XML_DOM_Node *newElement(const char *name, std::size_t length) noexcept;

// A detached text or CDATA node from a NUL-terminated value; null also for no value and one of 4 GB.
XML_DOM_Node *newTextual(uint32_t type, const char *text) noexcept;

// Whether a node is another one or stands above it.
bool isAtOrAbove(const XML_DOM_Node *candidate, const XML_DOM_Node *node) noexcept;

// Whether an element may take this child, but for the question of cycles.
inline bool takesChild(const XML_DOM_Node *parent, const XML_DOM_Node *child) noexcept {
    return parent->type == XML_DOM_NODE_ELEMENT && !child->parent && !child->docInfo;
}

// Appends a detached node to an element.
void linkLastChild(XML_DOM_Node *parent, XML_DOM_Node *child) noexcept;

}  // namespace cxml
