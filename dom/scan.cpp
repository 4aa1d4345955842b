#include "compactxml.h"

uint32_t XML_DOM_ScanTree(XML_DOM_Node *node, XML_DOM_VisitFn visit, void *userData) noexcept {
    if (!node || !visit) return XML_MISSING;
    // Intended: the start's following siblings are visited too, so the walk ends above them.
    const XML_DOM_Node *const above = node->parent;
    for (;;) {
        if (visit(node, userData, 0) != 0) return XML_REFUSED;
        if (node->firstChild) {
            node = node->firstChild;
            continue;
        }
        while (!node->nextSibling) {
            node = node->parent;
            if (node == above) return XML_OK;
        }
        node = node->nextSibling;
    }
}
