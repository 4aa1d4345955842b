#include "tree_tools.h"

#include <algorithm>
#include <cstring>

namespace demo {

std::string convert(const char *text, std::uint32_t from, std::uint32_t to) {
    const Owned<XML_IO_OutStream> stream{XML_IO_MemOutStreamCreate(from, to)};
    if (!text) return "";
    if (!stream) return text;  // this iconv does not know the pair; ASCII can be read as it is
    if (XML_IO_OutStreamAppendString(stream.get(), text) != XML_OK) return "(does not convert)";
    std::uint32_t length = 0;
    const char *bytes = XML_IO_MemOutStreamGetBuf(stream.get(), &length);
    return {bytes ? bytes : "", length};
}

namespace {

// The next node in document order below top, with its level; null after the last one.
const XML_DOM_Node *nextInOrder(const XML_DOM_Node *node, const XML_DOM_Node *top,
                                unsigned &level) {
    if (const XML_DOM_Node *first = XML_DOM_GetFirstChild(node)) return ++level, first;
    while (node != top && !XML_DOM_GetNextSibling(node)) {
        node = XML_DOM_GetNodeParent(node);
        --level;
    }
    return node == top ? nullptr : XML_DOM_GetNextSibling(node);
}

void count(const XML_DOM_Node *node, unsigned level, Counts &counts) {
    switch (XML_DOM_GetNodeType(node)) {
        case XML_DOM_NODE_ELEMENT:
            ++counts.elements;
            counts.depth = std::max(counts.depth, level);
            for (auto *a = XML_DOM_GetFirstAttr(node); a; a = XML_DOM_GetNextAttr(a)) {
                ++counts.attributes;
            }
            for (auto *d = node->firstNsDecl; d; d = d->next) ++counts.declarations;
            break;
        case XML_DOM_NODE_TEXT:
            ++counts.texts;
            counts.textBytes += toUtf8(XML_DOM_GetNodeValue(node)).size();
            break;
        case XML_DOM_NODE_CDATA:
            ++counts.sections;
            counts.textBytes += toUtf8(XML_DOM_GetNodeValue(node)).size();
            break;
        default:
            break;
    }
}

struct FileCount {
    Counts counts;
    unsigned level = 0;
};

FileCount &stateOf(const XML_Parser_Ctx *context) {
    return *static_cast<FileCount *>(context->handler->userData);
}

std::string quoted(const char *text) {
    return text ? '"' + toUtf8(text) + '"' : "nothing";
}

// "" when both strings are the same, null being different from empty.
std::string differentText(const char *what, const char *left, const char *right) {
    if ((left == nullptr) == (right == nullptr) && XML_Strcmp(left, right) == 0) return "";
    return std::string(what) + ": " + quoted(left) + " and " + quoted(right);
}

std::string differentDeclarations(const XML_DOM_Node *left, const XML_DOM_Node *right) {
    const XML_DOM_NsDecl *l = left->firstNsDecl, *r = right->firstNsDecl;
    for (; l && r; l = l->next, r = r->next) {
        std::string found = differentText("declared prefix", l->prefix, r->prefix);
        if (found.empty()) {
            found = differentText("declared namespace", l->namespaceName, r->namespaceName);
        }
        if (!found.empty()) return found;
    }
    return l || r ? "number of declarations" : "";
}

std::string differentAttributes(const XML_DOM_Node *left, const XML_DOM_Node *right) {
    const XML_DOM_Attr *l = XML_DOM_GetFirstAttr(left), *r = XML_DOM_GetFirstAttr(right);
    for (; l && r; l = XML_DOM_GetNextAttr(l), r = XML_DOM_GetNextAttr(r)) {
        const char *lName = nullptr, *rName = nullptr, *lSpace = nullptr, *rSpace = nullptr;
        XML_DOM_GetAttrNameSpace(l, &lName, &lSpace);
        XML_DOM_GetAttrNameSpace(r, &rName, &rSpace);
        std::string found = differentText("attribute name", lName, rName);
        if (found.empty()) found = differentText("attribute namespace", lSpace, rSpace);
        if (found.empty()) {
            found = differentText("attribute value", XML_DOM_GetAttrValByHandle(l),
                                  XML_DOM_GetAttrValByHandle(r));
        }
        if (!found.empty()) return found;
    }
    return l || r ? "number of attributes" : "";
}

std::string differentNode(const XML_DOM_Node *left, const XML_DOM_Node *right) {
    if (XML_DOM_GetNodeType(left) != XML_DOM_GetNodeType(right)) return "type of node";
    std::string found =
        differentText("name", XML_DOM_GetNodeName(left), XML_DOM_GetNodeName(right));
    if (found.empty()) {
        found = differentText("value", XML_DOM_GetNodeValue(left), XML_DOM_GetNodeValue(right));
    }
    if (!found.empty() || XML_DOM_GetNodeType(left) != XML_DOM_NODE_ELEMENT) return found;
    const char *lPrefix = nullptr, *rPrefix = nullptr, *lSpace = nullptr, *rSpace = nullptr;
    XML_DOM_GetNodeNameSpace(left, &lPrefix, &lSpace);
    XML_DOM_GetNodeNameSpace(right, &rPrefix, &rSpace);
    found = differentText("prefix", lPrefix, rPrefix);
    if (found.empty()) found = differentText("namespace", lSpace, rSpace);
    if (found.empty()) found = differentDeclarations(left, right);
    if (found.empty()) found = differentAttributes(left, right);
    return found;
}

}  // namespace

Counts countTree(const XML_DOM_Node *root) {
    Counts counts;
    unsigned level = 1;
    for (const XML_DOM_Node *node = root; node; node = nextInOrder(node, root, level)) {
        count(node, level, counts);
    }
    return counts;
}

bool countFile(const std::string &path, Counts &counts) {
    FileCount state;
    XML_SAX_Handler handler{};
    handler.userData = &state;
    handler.startElementNs = [](XML_Parser_Ctx *context, const char *, const char *, const char *,
                                int declarations, const char **, int attributes, int,
                                const char **) {
        FileCount &s = stateOf(context);
        ++s.counts.elements;
        s.counts.attributes += static_cast<unsigned long>(attributes);
        s.counts.declarations += static_cast<unsigned long>(declarations);
        s.counts.depth = std::max(s.counts.depth, ++s.level);
    };
    handler.endElementNs = [](XML_Parser_Ctx *context, const char *, const char *, const char *) {
        --stateOf(context).level;
    };
    handler.characters = [](XML_Parser_Ctx *context, const char *, int length) {
        ++stateOf(context).counts.texts;
        stateOf(context).counts.textBytes += static_cast<unsigned long>(length);
    };
    handler.cdataBlock = [](XML_Parser_Ctx *context, const char *, int length) {
        ++stateOf(context).counts.sections;
        stateOf(context).counts.textBytes += static_cast<unsigned long>(length);
    };
    if (XML_Parser_ByFile(path.c_str(), &handler) != XML_OK) return false;
    counts = state.counts;
    return true;
}

XML_DOM_Node *child(const XML_DOM_Node *parent, std::string_view name) {
    XML_DOM_Node *node = XML_DOM_GetFirstChild(parent);
    while (node && (!XML_DOM_GetNodeName(node) || name != XML_DOM_GetNodeName(node))) {
        node = XML_DOM_GetNextSibling(node);
    }
    return node;
}

XML_DOM_Node *descend(const XML_DOM_Node *node, std::string_view path) {
    XML_DOM_Node *found = nullptr;
    while (!path.empty()) {
        const std::string_view name = path.substr(0, path.find('/'));
        found = child(found ? found : node, name);
        if (!found) return nullptr;
        path.remove_prefix(std::min(path.size(), name.size() + 1));
    }
    return found;
}

XML_DOM_Node *childWith(const XML_DOM_Node *parent, const char *attribute, std::string_view value) {
    for (auto *node = XML_DOM_GetFirstChild(parent); node; node = XML_DOM_GetNextSibling(node)) {
        const char *found = XML_DOM_GetNodeAttrValByName(node, attribute);
        if (found && value == found) return node;
    }
    return nullptr;
}

std::string difference(const XML_DOM_Node *left, const XML_DOM_Node *right, unsigned long &nodes) {
    nodes = 0;
    const XML_DOM_Node *l = left, *r = right;
    unsigned lLevel = 1, rLevel = 1;
    while (l && r) {
        ++nodes;
        const std::string found = differentNode(l, r);
        if (!found.empty()) return "node " + std::to_string(nodes) + ", " + found;
        l = nextInOrder(l, left, lLevel);
        r = nextInOrder(r, right, rLevel);
        if (lLevel != rLevel) return "after node " + std::to_string(nodes) + ", level";
    }
    return l || r ? "number of nodes" : "";
}

}  // namespace demo
