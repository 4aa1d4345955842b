#include <cstdlib>

#include "dom/attribute.h"
#include "dom/namespace.h"
#include "dom/node.h"

namespace cxml {
namespace {

// Frees a node that has no children and is linked nowhere, with all it owns.
void freeNode(XML_DOM_Node *node) {
    for (XML_DOM_NsDecl *decl = node->firstNsDecl; decl;) {
        XML_DOM_NsDecl *next = decl->next;
        XML_DOM_FreeNsDecl(decl);
        decl = next;
    }
    for (XML_DOM_Attr *attribute = node->firstAttr; attribute;) {
        XML_DOM_Attr *next = attribute->next;
        XML_DOM_FreeAttr(attribute);
        attribute = next;
    }
    std::free(node->name);
    std::free(node->value);
    std::free(node->docInfo);
    std::free(node);
}

}  // namespace
}  // namespace cxml

using namespace cxml;

void XML_DOM_Clip(XML_DOM_Node *node) noexcept {
    if (!node || !node->parent) return;
    XML_DOM_Node *parent = node->parent;
    XML_DOM_Node *previous = XML_DOM_FindPrevSibling(parent, node);
    if (parent->lastChild == node) parent->lastChild = previous;
    if (previous) {
        previous->nextSibling = node->nextSibling;
    } else {
        parent->firstChild = node->nextSibling;
    }
    node->parent = nullptr;
    node->nextSibling = nullptr;
}

void XML_DOM_DelNode(XML_DOM_Node *node) noexcept {
    if (!node) return;
    // Children go before their parent, each as its parent's first child: down to a leaf, free it,
    // and back up to its parent, which may be a leaf by now.
    XML_DOM_Node *current = node;
    for (;;) {
        while (current->firstChild) current = current->firstChild;
        if (current == node) break;
        XML_DOM_Node *parent = current->parent;
        parent->firstChild = current->nextSibling;
        if (!parent->firstChild) parent->lastChild = nullptr;
        freeNode(current);
        current = parent;
    }
    XML_DOM_Clip(node);
    freeNode(node);
}
