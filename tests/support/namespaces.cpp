#include "tests/support/namespaces.h"

#include <cstring>

namespace support {

namespace {

bool samePrefix(const char *a, const char *b) {
    return std::strcmp(a ? a : "", b ? b : "") == 0;
}

const XML_DOM_NsDecl *nearestDeclaration(const XML_DOM_Node *node, const char *prefix) {
    for (; node; node = node->parent) {
        for (const XML_DOM_NsDecl *decl = node->firstNsDecl; decl; decl = decl->next) {
            if (samePrefix(decl->prefix, prefix)) return decl;
        }
    }
    return nullptr;
}

bool resolvesTo(const XML_DOM_Node *node, const XML_DOM_NsDecl *ns) {
    if (!ns) return true;
    if (!ns->prefix || !*ns->prefix) return false;
    const XML_DOM_NsDecl *nearest = nearestDeclaration(node, ns->prefix);
    if (nearest) return nearest == ns;
    // Nobody declared it: then it is the one that is built in.
    return std::strcmp(ns->prefix, "xml") == 0 &&
           std::strcmp(ns->namespaceName, "http://www.w3.org/XML/1998/namespace") == 0;
}

}  // namespace

std::string wrongNamespace(const XML_DOM_Node *root) {
    for (const XML_DOM_Node *node = root; node;) {
        if (!resolvesTo(node, node->ns)) return node->name;
        for (const XML_DOM_Attr *attr = node->firstAttr; attr; attr = attr->next) {
            if (!resolvesTo(node, attr->ns)) return attr->name;
        }
        if (node->firstChild) {
            node = node->firstChild;
            continue;
        }
        while (node != root && !node->nextSibling) node = node->parent;
        node = node == root ? nullptr : node->nextSibling;
    }
    return "";
}

}  // namespace support
