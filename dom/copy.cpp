#include <cstring>

#include "dom/ancestor_scope.h"
#include "dom/attribute.h"
#include "dom/namespace.h"
#include "dom/node.h"

namespace cxml {
namespace {

// Makes copies of nodes whose prefixes resolve where the copies stand. It keeps the declarations of
// the copies that are open, so that neither depth nor number of declarations is walked again for
// each prefix.
class NodeCopier {
  public:
    // The first copies will be children of target, or stand alone if it is null; what they copy
    // stands at or below source.
    NodeCopier(const XML_DOM_Node *target, const XML_DOM_Node *source) noexcept
        : aboveTarget_(target), aboveSource_(source) {}

    // Copies a node alone and appends it to parent, if there is one. The copy is then open: nodes
    // copied next stand below it. Null, with nothing left behind, if that fails.
    XML_DOM_Node *copyInto(XML_DOM_Node *parent, const XML_DOM_Node *source) noexcept;
    // Ends the innermost open copy, which is this one.
    void close(const XML_DOM_Node *copy) noexcept;

  private:
    XML_DOM_NsDecl *declare(XML_DOM_Node *target, const XML_DOM_NsDecl *decl) noexcept;
    XML_DOM_NsDecl *XML_DOM_CopyResolveNs(XML_DOM_Node *target, const char *prefix) noexcept;
    uint32_t XML_DOM_CopyElementInfo(XML_DOM_Node *target, const XML_DOM_Node *source) noexcept;

    NamespaceScope copied_;          // declarations of the open copies
    std::size_t declaredAbove_ = 0;  // how many of them are not the innermost copy's
    AncestorScope aboveTarget_;
    AncestorScope aboveSource_;
};

// Repeats a declaration on the innermost open copy; null if its prefix is declared there already.
XML_DOM_NsDecl *NodeCopier::declare(XML_DOM_Node *target, const XML_DOM_NsDecl *decl) noexcept {
    const XML_Parser_Ns *present = copied_.findByText(decl->prefix);
    if (present && present->ordinal >= declaredAbove_) return nullptr;
    XML_Parser_Ns *binding = copied_.push(decl->prefix, decl->namespaceName);
    if (!binding) return nullptr;
    binding->declaration = appendNsDecl(target, decl->prefix, decl->namespaceName);
    return binding->declaration;
}

// The declaration that a prefix of the source has in the place of the copy. Intended: what the
// prefix stands for there counts, whatever it stood for in the source.
XML_DOM_NsDecl *NodeCopier::XML_DOM_CopyResolveNs(XML_DOM_Node *target,
                                                  const char *prefix) noexcept {
    if (const XML_Parser_Ns *binding = copied_.findByText(prefix)) return binding->declaration;
    if (XML_DOM_NsDecl *decl = aboveTarget_.find(prefix)) return decl;
    // Whatever is declared between the source's top and this node has been copied, so that it would
    // have been found.
    const XML_DOM_NsDecl *decl = aboveSource_.find(prefix);
    return decl ? declare(target, decl) : nullptr;
}

// Copies declarations, prefix and attributes of an element. Intended: failures add up.
uint32_t NodeCopier::XML_DOM_CopyElementInfo(XML_DOM_Node *target,
                                             const XML_DOM_Node *source) noexcept {
    uint32_t result = XML_OK;
    for (const XML_DOM_NsDecl *decl = source->firstNsDecl; decl && result == XML_OK;
         decl = decl->next) {
        if (!declare(target, decl)) result = XML_REFUSED;
    }
    if (source->ns) {
        target->ns = XML_DOM_CopyResolveNs(target, source->ns->prefix);
        if (!target->ns) result += XML_REFUSED;
    }
    if (result != XML_OK) return result;
    for (const XML_DOM_Attr *from = source->firstAttr; from; from = from->next) {
        XML_DOM_Attr *attribute = XML_DOM_AddAttrInner(target, from->name, from->value);
        if (!attribute) return XML_REFUSED;
        if (!from->ns) continue;
        attribute->ns = XML_DOM_CopyResolveNs(target, from->ns->prefix);
        if (!attribute->ns) return XML_REFUSED;
    }
    return XML_OK;
}

XML_DOM_Node *NodeCopier::copyInto(XML_DOM_Node *parent, const XML_DOM_Node *source) noexcept {
    if (source->type == XML_DOM_NODE_TEXT || source->type == XML_DOM_NODE_CDATA) {
        XML_DOM_Node *text = newTextual(source->type, source->value);
        if (text && parent) linkLastChild(parent, text);
        return text;
    }
    NodeOwner copy{XML_DOM_CreateElementNodeInner(source->name)};
    declaredAbove_ = copied_.count();
    if (!copy || XML_DOM_CopyElementInfo(copy.get(), source) != XML_OK) return nullptr;
    if (parent) linkLastChild(parent, copy.get());
    return copy.release();
}

void NodeCopier::close(const XML_DOM_Node *copy) noexcept {
    std::size_t left = copied_.count();
    for (const XML_DOM_NsDecl *decl = copy->firstNsDecl; decl; decl = decl->next) --left;
    copied_.pop(left);
}

XML_DOM_Node *copyAlone(const XML_DOM_Node *node) {
    return NodeCopier{nullptr, node}.copyInto(nullptr, node);
}

// Copies what stands below source to the end of target, which is source, stands below it, or has
// nothing to do with it. False if that fails; part of it may then be there.
bool copyBelow(XML_DOM_Node *target, const XML_DOM_Node *source) {
    // What this call appends to the target is no part of what it copies.
    const XML_DOM_Node *const last = target->lastChild;
    const auto firstChild = [&](const XML_DOM_Node *node) {
        return node == target && !last ? nullptr : node->firstChild;
    };
    const auto nextSibling = [&](const XML_DOM_Node *node) {
        return node == last ? nullptr : node->nextSibling;
    };
    NodeCopier copier{target, source};
    XML_DOM_Node *parent = target;  // walks through the copy as `from` does through the source
    const XML_DOM_Node *from = firstChild(source);
    while (from) {
        XML_DOM_Node *copy = copier.copyInto(parent, from);
        if (!copy) return false;
        if (const XML_DOM_Node *child = firstChild(from)) {
            parent = copy;
            from = child;
            continue;
        }
        copier.close(copy);
        while (!nextSibling(from)) {
            from = from->parent;
            if (from == source) return true;
            copier.close(parent);
            parent = parent->parent;
        }
        from = nextSibling(from);
    }
    return true;
}

// Deletes the children behind one of them, or all if it is null. Not one by one from the end: each
// would be looked for from the first child on.
void deleteChildrenBehind(XML_DOM_Node *parent, XML_DOM_Node *last) {
    XML_DOM_Node *&firstDeleted = last ? last->nextSibling : parent->firstChild;
    XML_DOM_Node *node = firstDeleted;
    firstDeleted = nullptr;
    parent->lastChild = last;
    while (node) {
        XML_DOM_Node *next = node->nextSibling;
        node->parent = nullptr;
        XML_DOM_DelNode(node);
        node = next;
    }
}

}  // namespace
}  // namespace cxml

using namespace cxml;

XML_DOM_Node *XML_DOM_CopyNode(const XML_DOM_Node *node) noexcept {
    return node ? copyAlone(node) : nullptr;
}

uint32_t XML_DOM_CopySubTree(XML_DOM_Node *target, const XML_DOM_Node *source) noexcept {
    if (!target || !source || target->type != XML_DOM_NODE_ELEMENT) return XML_REFUSED;
    XML_DOM_Node *last = target->lastChild;
    if (copyBelow(target, source)) return XML_OK;
    deleteChildrenBehind(target, last);
    return XML_REFUSED;
}

XML_DOM_Node *XML_DOM_CopyRoot(const XML_DOM_Node *node) noexcept {
    const XML_DOM_DocInfo *info = XML_DOM_FindDocInfo(node);
    if (!info) return nullptr;
    NodeOwner root{copyAlone(info->root)};
    if (!root || XML_DOM_SetRoot(root.get()) != XML_OK) return nullptr;
    XML_DOM_SetVersion(root.get(), info->version);
    XML_DOM_SetEncoding(root.get(), info->encoding);
    return root.release();
}
