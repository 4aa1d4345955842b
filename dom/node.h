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

// Appends a detached node to an element.
void linkLastChild(XML_DOM_Node *parent, XML_DOM_Node *child) noexcept;

}  // namespace cxml
