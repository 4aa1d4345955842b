#include "tests/support/tree_dump.h"

#include <set>
#include <sstream>

namespace support {
namespace {

void dumpString(std::ostream &out, const char *label, const char *text) {
    out << ' ' << label << '=' << static_cast<const void *>(text);
    if (text) out << '"' << text << '"';
}

void dumpNode(std::ostream &out, const XML_DOM_Node *node, int level) {
    const std::string indent(static_cast<std::size_t>(level) * 2, ' ');
    out << indent << "node " << node << " type=" << node->type << " ns=" << node->ns
        << " parent=" << node->parent << " next=" << node->nextSibling
        << " last=" << node->lastChild << " lastAttr=" << node->lastAttr
        << " lastNsDecl=" << node->lastNsDecl;
    dumpString(out, "name", node->name);
    dumpString(out, "value", node->value);
    out << '\n';
    if (const XML_DOM_DocInfo *info = node->docInfo) {
        out << indent << "document " << info << " root=" << info->root
            << " encoding=" << info->encoding;
        dumpString(out, "version", info->version);
        out << '\n';
    }
    for (const XML_DOM_NsDecl *decl = node->firstNsDecl; decl; decl = decl->next) {
        out << indent << "declares " << decl;
        dumpString(out, "prefix", decl->prefix);
        dumpString(out, "namespace", decl->namespaceName);
        out << '\n';
    }
    for (const XML_DOM_Attr *attr = node->firstAttr; attr; attr = attr->next) {
        out << indent << "attribute " << attr << " owner=" << attr->owner << " ns=" << attr->ns;
        dumpString(out, "name", attr->name);
        dumpString(out, "value", attr->value);
        out << '\n';
    }
    for (const XML_DOM_Node *child = node->firstChild; child; child = child->nextSibling) {
        dumpNode(out, child, level + 1);
    }
}

std::string label(const XML_DOM_Node *node) {
    return node->name ? node->name : node->value ? node->value : "(unnamed)";
}

std::string brokenList(const XML_DOM_Node *node) {
    const XML_DOM_Attr *lastAttr = nullptr;
    for (const XML_DOM_Attr *attr = node->firstAttr; attr; attr = attr->next) {
        if (attr->owner != node) return "owner of an attribute of " + label(node);
        lastAttr = attr;
    }
    if (lastAttr != node->lastAttr) return "last attribute of " + label(node);

    const XML_DOM_NsDecl *lastDecl = nullptr;
    std::set<std::string> prefixes;
    for (const XML_DOM_NsDecl *decl = node->firstNsDecl; decl; decl = decl->next) {
        if (!prefixes.insert(decl->prefix ? decl->prefix : "").second) {
            return "prefix declared twice on " + label(node);
        }
        lastDecl = decl;
    }
    if (lastDecl != node->lastNsDecl) return "last declaration of " + label(node);
    if (node->docInfo && node->docInfo->root != node) return "document of " + label(node);
    return "";
}

}  // namespace

std::string dumpTree(const XML_DOM_Node *node) {
    std::ostringstream out;
    if (node) dumpNode(out, node, 0);
    return out.str();
}

std::string outline(const XML_DOM_Node *node) {
    if (!node) return "(null)";
    if (node->type == XML_DOM_NODE_TEXT) return "'" + label(node) + "'";
    if (node->type == XML_DOM_NODE_CDATA) return "[" + label(node) + "]";
    std::string text = label(node);
    const char *separator = "(";
    for (const XML_DOM_Node *child = node->firstChild; child; child = child->nextSibling) {
        text += separator + outline(child);
        separator = ",";
    }
    return node->firstChild ? text + ")" : text;
}

std::string brokenLink(const XML_DOM_Node *node) {
    if (std::string broken = brokenList(node); !broken.empty()) return broken;
    std::set<const XML_DOM_Node *> seen;
    const XML_DOM_Node *last = nullptr;
    for (const XML_DOM_Node *child = node->firstChild; child; child = child->nextSibling) {
        if (!seen.insert(child).second) return "cycle among the children of " + label(node);
        if (child->parent != node) return "parent of " + label(child);
        if (std::string broken = brokenLink(child); !broken.empty()) return broken;
        last = child;
    }
    return last == node->lastChild ? "" : "last child of " + label(node);
}

}  // namespace support
