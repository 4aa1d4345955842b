#include "copy.h"

#include <cstddef>
#include <cstring>
#include <new>
#include <unordered_set>
#include <vector>

#include "walk.h"

namespace tool {
namespace {

// The declarations above an element that it and what is below it use.
class NeededDeclarations {
  public:
    explicit NeededDeclarations(const XML_DOM_Node *element) { walk(element, *this); }

    // Of prefixes, in the order of their use, without "xml".
    const std::vector<const XML_DOM_NsDecl *> &prefixed() const noexcept { return prefixed_; }
    // Whether there is a name without a prefix for which the default namespace from above counts.
    bool defaultNamespace() const noexcept { return default_; }

    bool enter(const XML_DOM_Node *node, std::size_t depth) {
        if (XML_DOM_GetNodeType(node) != XML_DOM_NODE_ELEMENT) return false;
        for (const XML_DOM_NsDecl *decl = node->firstNsDecl; decl; decl = decl->next) {
            known_.insert(decl);
            if (!decl->prefix && depth < redeclaredFrom_) redeclaredFrom_ = depth;
        }
        note(node->ns);
        if (!node->ns && depth < redeclaredFrom_) default_ = true;
        for (const XML_DOM_Attr *a = XML_DOM_GetFirstAttr(node); a; a = XML_DOM_GetNextAttr(a)) {
            note(a->ns);
        }
        return true;
    }
    void leave(const XML_DOM_Node *, std::size_t depth) {
        if (depth == redeclaredFrom_) redeclaredFrom_ = kNowhere;
    }

  private:
    static constexpr std::size_t kNowhere = static_cast<std::size_t>(-1);

    void note(const XML_DOM_NsDecl *decl) {
        if (!decl || std::strcmp(decl->prefix, "xml") == 0) return;
        if (known_.insert(decl).second) prefixed_.push_back(decl);
    }

    std::vector<const XML_DOM_NsDecl *> prefixed_;
    std::unordered_set<const XML_DOM_NsDecl *> known_;  // prefixed_, and those not above
    std::size_t redeclaredFrom_ = kNowhere;  // depth of the element with another default namespace
    bool default_ = false;
};

// The declaration of a prefix, or of the default namespace for null, in scope at an element; null
// if there is none. The functions of the library answer only for the prefix that a name has.
const XML_DOM_NsDecl *declarationAt(const XML_DOM_Node *element, const char *prefix) {
    for (; element; element = XML_DOM_GetNodeParent(element)) {
        for (const XML_DOM_NsDecl *decl = element->firstNsDecl; decl; decl = decl->next) {
            if (!decl->prefix == !prefix && XML_Strcmp(decl->prefix, prefix) == 0) return decl;
        }
    }
    return nullptr;
}

const char *namespaceNameOf(const XML_DOM_NsDecl *decl) {
    return decl ? decl->namespaceName : "";
}

// How many prefixes or attributes are handled one by one, each of which looks at all that are there.
constexpr std::size_t kFew = 256;

// Declares prefixes on a copy that would not mean the same below `place`, which may be null. Of a
// great many the rest is left to the elements that use them, where the library declares them.
void declarePrefixes(XML_DOM_Node *copy, const NeededDeclarations &needed,
                     const XML_DOM_Node *place) {
    std::size_t left = kFew;
    for (const XML_DOM_NsDecl *decl : needed.prefixed()) {
        if (left-- == 0) break;
        const XML_DOM_NsDecl *there = declarationAt(place, decl->prefix);
        if (there && std::strcmp(there->namespaceName, decl->namespaceName) == 0) continue;
        requireMemory(XML_DOM_AddNodeNameSpaceInner(copy, decl->prefix, decl->namespaceName, 1) ==
                      XML_OK);
    }
}

// The same for the default namespace.
void declareDefault(XML_DOM_Node *copy, const XML_DOM_Node *element,
                    const NeededDeclarations &needed, const XML_DOM_Node *place) {
    const char *name = namespaceNameOf(declarationAt(element, nullptr));
    const char *there = namespaceNameOf(declarationAt(place, nullptr));
    if (!needed.defaultNamespace() || std::strcmp(name, there) == 0) return;
    requireMemory(XML_DOM_AddNodeNameSpaceInner(copy, nullptr, name, 1) == XML_OK);
}

bool isAtOrAbove(const XML_DOM_Node *candidate, const XML_DOM_Node *node) {
    while (node && node != candidate) node = XML_DOM_GetNodeParent(node);
    return node != nullptr;
}

bool hasFew(const XML_DOM_Node *element, const NeededDeclarations &needed) {
    std::size_t count = needed.prefixed().size();
    for (const XML_DOM_NsDecl *decl = element->firstNsDecl; decl; decl = decl->next) ++count;
    for (const XML_DOM_Attr *a = XML_DOM_GetFirstAttr(element); a; a = XML_DOM_GetNextAttr(a)) {
        ++count;
    }
    return count <= kFew;
}

// Copies an element with its attributes, but nothing below it, to the end of parent.
XML_DOM_Node *copyElement(XML_DOM_Node *parent, const XML_DOM_Node *element,
                          const NeededDeclarations &needed) {
    Tree owner{XML_DOM_CreateElementNodeInner(XML_DOM_GetNodeName(element))};
    requireMemory(XML_DOM_AddChildNode(parent, owner.get()) == XML_OK);
    XML_DOM_Node *copy = owner.release();
    for (const XML_DOM_NsDecl *decl = element->firstNsDecl; decl; decl = decl->next) {
        requireMemory(XML_DOM_AddNodeNameSpaceInner(copy, decl->prefix, decl->namespaceName, 1) ==
                      XML_OK);
    }
    declarePrefixes(copy, needed, parent);
    declareDefault(copy, element, needed, parent);
    const auto prefixOf = [](const XML_DOM_NsDecl *decl) { return decl ? decl->prefix : nullptr; };
    requireMemory(XML_DOM_SetNodeNameSpace(copy, prefixOf(element->ns)) == XML_OK);
    for (const XML_DOM_Attr *a = XML_DOM_GetFirstAttr(element); a; a = XML_DOM_GetNextAttr(a)) {
        XML_DOM_Attr *attribute = XML_DOM_AddAttrInner(copy, a->name, a->value);
        requireMemory(XML_DOM_SetAttrNsInner(attribute, prefixOf(a->ns)) == XML_OK);
    }
    return copy;
}

}  // namespace

void requireMemory(bool done) {
    if (!done) throw std::bad_alloc();
}

Tree copyDetached(const XML_DOM_Node *element, const XML_DOM_Node *place) {
    const NeededDeclarations needed(element);
    Tree copy{XML_DOM_CopyNode(element)};
    requireMemory(copy != nullptr);
    declarePrefixes(copy.get(), needed, nullptr);
    declareDefault(copy.get(), element, needed, place);
    requireMemory(XML_DOM_CopySubTree(copy.get(), element) == XML_OK);
    return copy;
}

void copyInto(XML_DOM_Node *parent, const XML_DOM_Node *element) {
    const NeededDeclarations needed(element);
    if (isAtOrAbove(element, parent) || !hasFew(element, needed)) {
        Tree copy = copyDetached(element, parent);
        requireMemory(XML_DOM_AddChildNode(parent, copy.get()) == XML_OK);
        copy.release();
        return;
    }
    XML_DOM_Node *copy = copyElement(parent, element, needed);
    requireMemory(XML_DOM_CopySubTree(copy, element) == XML_OK);
}

}  // namespace tool
