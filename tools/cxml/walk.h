// tools/cxml/walk.h - goes through a tree without recursion, however deep it is.
#pragma once

#include <cstddef>

#include "compactxml.h"

namespace tool {

// Calls visitor.enter(node, depth) for a node and all below it in document order, and
// visitor.leave(node, depth) when all below the node have been left. When enter returns false what
// is below that node is passed over (leave is still called). The depth of the first node is 0.
template <class Visitor>
void walk(const XML_DOM_Node *top, Visitor &&visitor) {
    const XML_DOM_Node *node = top;
    std::size_t depth = 0;
    for (;;) {
        const bool down = visitor.enter(node, depth);
        if (const XML_DOM_Node *child = down ? XML_DOM_GetFirstChild(node) : nullptr) {
            node = child;
            ++depth;
            continue;
        }
        visitor.leave(node, depth);
        while (node != top && !XML_DOM_GetNextSibling(node)) {
            node = XML_DOM_GetNodeParent(node);
            --depth;
            visitor.leave(node, depth);
        }
        if (node == top) return;
        node = XML_DOM_GetNextSibling(node);
    }
}

}  // namespace tool
