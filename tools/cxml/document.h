// tools/cxml/document.h - trees of the documents that commands work on.
#pragma once

#include <memory>
#include <string>

#include "compactxml.h"
#include "input.h"

namespace tool {

struct DeleteTree {
    void operator()(XML_DOM_Node *node) const noexcept { XML_DOM_DelNode(node); }
};
using Tree = std::unique_ptr<XML_DOM_Node, DeleteTree>;  // a root or a detached node

// Builds the tree of a document. A document that is not accepted is reported with reportError
// (diagnostic.h) and ends the command with status refused, which diff(1) has elsewhere.
Tree loadDocument(const std::string &name, int refused);

}  // namespace tool
