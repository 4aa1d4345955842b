#include "tests/support/model_serializer.h"

#include <string>

#include "tests/support/reference_iconv.h"

namespace support {
namespace {

// The reference that stands for a white-space character at either end of a text; "" for others.
std::string_view blankReference(char c) {
    switch (c) {
        case '\n':
            return "&#x0a;";
        case '\r':
            return "&#x0d;";
        case ' ':
            return "&#x20;";
        case '\t':
            return "&#x09;";
        default:
            return "";
    }
}

}  // namespace

ModelSerializer::Sum ModelSerializer::put(std::string_view piece) const {
    return piece.empty() ? 0 : write_(piece);
}

ModelSerializer::Sum ModelSerializer::text(std::string_view text) const {
    Sum sum = 0;
    if (!text.empty() && !blankReference(text.front()).empty()) {
        sum += put(blankReference(text.front()));
        text.remove_prefix(1);
    }
    for (std::size_t at = text.find_first_of("<>&"); at != std::string_view::npos;
         at = text.find_first_of("<>&")) {
        sum += put(text.substr(0, at));
        sum += put(text[at] == '<' ? "&lt;" : text[at] == '>' ? "&gt;" : "&amp;");
        if (sum != 0) return sum;
        text.remove_prefix(at + 1);
    }
    if (text.empty()) return sum;
    const std::string_view last = blankReference(text.back());
    if (!last.empty()) text.remove_suffix(1);
    sum += put(text);
    return sum + put(last);
}

ModelSerializer::Sum ModelSerializer::declaration(const XML_DOM_Node *root) const {
    Sum sum = put("<?xml version=\"");
    sum += put(root->docInfo->version);
    sum += put("\" encoding=\"");
    sum += put(encodingName(root->docInfo->encoding));
    return sum + put("\"?>");
}

ModelSerializer::Sum ModelSerializer::prefix(const XML_DOM_NsDecl *decl) const {
    if (!decl) return 0;
    const Sum sum = put(decl->prefix);
    return sum + put(":");
}

ModelSerializer::Sum ModelSerializer::quoted(const char *value) const {
    Sum sum = put("=\"");
    sum += text(value);
    return sum + put("\"");
}

ModelSerializer::Sum ModelSerializer::begin(const XML_DOM_Node *node, bool selfClosing) const {
    if (node->type == XML_DOM_NODE_TEXT) return text(node->value);
    if (node->type == XML_DOM_NODE_CDATA) {
        Sum sum = put("<![CDATA[");
        sum += put(node->value);
        return sum + put("]]>");
    }
    if (node->type != XML_DOM_NODE_ELEMENT) return 0;
    Sum sum = put("<");
    sum += prefix(node->ns);
    sum += put(node->name ? node->name : "");
    // Each list ends with its first item that fails; an item itself is always written whole.
    for (const XML_DOM_NsDecl *decl = node->firstNsDecl; decl; decl = decl->next) {
        Sum item = put(" xmlns");
        if (decl->prefix) {
            item += put(":");
            item += put(decl->prefix);
        }
        item += quoted(decl->namespaceName);
        sum += item;
        if (item != 0) return sum;
    }
    for (const XML_DOM_Attr *attr = node->firstAttr; attr; attr = attr->next) {
        Sum item = put(" ");
        item += prefix(attr->ns);
        item += put(attr->name);
        item += quoted(attr->value);
        sum += item;
        if (item != 0) return sum;
    }
    return sum + put(selfClosing && !node->firstChild ? "/>" : ">");
}

ModelSerializer::Sum ModelSerializer::end(const XML_DOM_Node *node, bool selfClosing) const {
    if (node->type != XML_DOM_NODE_ELEMENT) return 0;
    if (selfClosing && !node->firstChild) return 0;
    Sum sum = put("</");
    sum += prefix(node->ns);
    sum += put(node->name ? node->name : "");
    return sum + put(">");
}

ModelSerializer::Sum ModelSerializer::subtree(const XML_DOM_Node *node) const {
    Sum sum = begin(node, true);
    if (node->type == XML_DOM_NODE_ELEMENT) sum += children(node);
    return sum + end(node, true);
}

ModelSerializer::Sum ModelSerializer::children(const XML_DOM_Node *node) const {
    Sum sum = 0;
    for (const XML_DOM_Node *child = node->firstChild; child && sum == 0;
         child = child->nextSibling) {
        sum += subtree(child);
    }
    return sum;
}

ModelSerializer::Sum ModelSerializer::document(const XML_DOM_Node *node,
                                               std::uint32_t flags) const {
    const bool declared = node->docInfo && (flags & XML_DOM_NO_DECLARATION) == 0;
    const Sum sum = declared ? declaration(node) : 0;
    return sum + subtree(node);
}

}  // namespace support
