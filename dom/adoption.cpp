#include "dom/node.h"

using namespace cxml;

uint32_t XML_DOM_AdoptChildren(XML_DOM_Node *from, XML_DOM_Node *to) noexcept {
    // A node that adopts its own children has them already; moving them would never end.
    if (!from || from == to) return XML_OK;
    // The child that must not go below itself. There is at most one, and to look for it at each
    // child would cost the depth of the new parent every time.
    const XML_DOM_Node *aboveTo = to;
    while (aboveTo && aboveTo->parent != from) aboveTo = aboveTo->parent;
    while (XML_DOM_Node *child = from->firstChild) {
        XML_DOM_Clip(child);
        // Intended: the child that is refused stays detached.
        if (!to || child == aboveTo || !takesChild(to, child)) return XML_REFUSED;
        linkLastChild(to, child);
    }
    return XML_OK;
}
