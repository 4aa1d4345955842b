#include "tests/support/tree_model.h"

#include <algorithm>

#include "tests/support/reference_iconv.h"

namespace support {
namespace {

using Nodes = std::vector<ModelNode *>;

void collect(ModelNode *node, Nodes *nodes) {
    nodes->push_back(node);
    for (ModelNode *child : node->children) collect(child, nodes);
}

bool isBelow(const ModelNode *node, const ModelNode *top) {
    while (node && node != top) node = node->parent;
    return node != nullptr;
}

// ASCII names alone come here.
bool isName(const std::string &name) {
    const auto isStart = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
    };
    return !name.empty() && isStart(name[0]) && std::all_of(name.begin(), name.end(), [&](char c) {
        return isStart(c) || (c >= '0' && c <= '9') || c == '-' || c == '.';
    });
}

const ModelDeclPtr &xmlDecl() {
    static const ModelDeclPtr decl = std::make_shared<ModelDecl>(
        ModelDecl{"xml", "http://www.w3.org/XML/1998/namespace", nullptr});
    return decl;
}

ModelDeclPtr declaredOn(const ModelNode *node, const std::string &prefix) {
    for (const ModelDeclPtr &decl : node->decls) {
        if (decl->prefix == prefix) return decl;
    }
    return nullptr;
}

ModelDeclPtr lookup(const ModelNode *node, const std::string &prefix) {
    for (; node; node = node->parent) {
        if (ModelDeclPtr decl = declaredOn(node, prefix)) return decl;
    }
    return prefix == "xml" ? xmlDecl() : nullptr;
}

const ModelNode *rootOf(const ModelNode *node) {
    while (node && !node->isRoot) node = node->parent;
    return node;
}

std::string escaped(const std::string &text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool edge = i == 0 || i + 1 == text.size();
        if (text[i] == '<') {
            out += "&lt;";
        } else if (text[i] == '>') {
            out += "&gt;";
        } else if (text[i] == '&') {
            out += "&amp;";
        } else if (text[i] == ' ' && edge) {
            out += "&#x20;";
        } else {
            out += text[i];
        }
    }
    return out;
}

std::string prefixed(const ModelDeclPtr &ns, const std::string &name) {
    return ns ? ns->prefix + ":" + name : name;
}

void writeNode(const ModelNode *node, std::string *out) {
    if (node->type == XML_DOM_NODE_TEXT) {
        *out += escaped(node->value);
        return;
    }
    if (node->type == XML_DOM_NODE_CDATA) {
        *out += "<![CDATA[" + node->value + "]]>";
        return;
    }
    *out += "<" + prefixed(node->ns, node->name);
    for (const ModelDeclPtr &decl : node->decls) {
        *out += decl->prefix.empty() ? " xmlns" : " xmlns:" + decl->prefix;
        *out += "=\"" + escaped(decl->name) + "\"";
    }
    for (const ModelAttr &attr : node->attrs) {
        *out += " " + prefixed(attr.ns, attr.name) + "=\"" + escaped(attr.value) + "\"";
    }
    if (node->children.empty()) {
        *out += "/>";
        return;
    }
    *out += ">";
    for (const ModelNode *child : node->children) writeNode(child, out);
    *out += "</" + prefixed(node->ns, node->name) + ">";
}

}  // namespace

// ---------------------------------------------------------------- the forest

std::vector<ModelNode *> ModelForest::tops() const {
    Nodes tops;
    for (const auto &node : all_) {
        if (!node->parent) tops.push_back(node.get());
    }
    return tops;
}

std::vector<ModelNode *> ModelForest::nodes() const {
    Nodes nodes;
    for (ModelNode *top : tops()) collect(top, &nodes);
    return nodes;
}

ModelNode *ModelForest::create(std::uint32_t type, const std::string &text) {
    if (type == XML_DOM_NODE_ELEMENT && !isName(text)) return nullptr;
    all_.push_back(std::make_unique<ModelNode>());
    ModelNode *node = all_.back().get();
    node->type = type;
    (type == XML_DOM_NODE_ELEMENT ? node->name : node->value) = text;
    return node;
}

ModelNode *ModelForest::createWithText(const std::string &name, std::uint32_t type,
                                       const std::string &text) {
    ModelNode *element = create(XML_DOM_NODE_ELEMENT, name);
    if (element) append(element, create(type, text));
    return element;
}

std::uint32_t ModelForest::append(ModelNode *parent, ModelNode *child) {
    if (parent->type != XML_DOM_NODE_ELEMENT || child->parent || child->isRoot ||
        isBelow(parent, child)) {
        return XML_REFUSED;
    }
    parent->children.push_back(child);
    child->parent = parent;
    return XML_OK;
}

std::uint32_t ModelForest::insertBefore(ModelNode *reference, ModelNode *node) {
    if (!reference->parent) return XML_REFUSED;
    Nodes &siblings = reference->parent->children;
    siblings.insert(std::find(siblings.begin(), siblings.end(), reference), node);
    node->parent = reference->parent;
    return XML_OK;
}

void ModelForest::clip(ModelNode *node) {
    if (!node->parent) return;
    std::erase(node->parent->children, node);
    node->parent = nullptr;
}

void ModelForest::remove(ModelNode *node) {
    clip(node);
    Nodes gone;
    collect(node, &gone);
    std::erase_if(all_, [&](const auto &owned) {
        return std::find(gone.begin(), gone.end(), owned.get()) != gone.end();
    });
}

std::uint32_t ModelForest::adopt(ModelNode *from, ModelNode *to) {
    if (from == to) return XML_OK;
    const Nodes children = from->children;
    for (ModelNode *child : children) {
        clip(child);
        if (append(to, child) != XML_OK) return XML_REFUSED;
    }
    return XML_OK;
}

// ---------------------------------------------------------------- copies

ModelForest::Snapshot ModelForest::snapshotOf(const ModelNode *node) {
    Snapshot snapshot{node, {}};
    for (const ModelNode *child : node->children) snapshot.children.push_back(snapshotOf(child));
    return snapshot;
}

ModelDeclPtr ModelForest::copyResolve(ModelNode *target, const ModelNode *source,
                                      const std::string &prefix) {
    if (ModelDeclPtr decl = lookup(target, prefix)) return decl;
    const ModelDeclPtr decl = lookup(source, prefix);
    if (!decl || declare(target, decl->prefix, decl->name, false) != XML_OK) return nullptr;
    return declaredOn(target, prefix);
}

bool ModelForest::copyInfo(ModelNode *target, const ModelNode *source) {
    for (const ModelDeclPtr &decl : source->decls) {
        if (declare(target, decl->prefix, decl->name, false) != XML_OK) return false;
    }
    if (source->ns && !(target->ns = copyResolve(target, source, source->ns->prefix))) return false;
    for (const ModelAttr &attr : source->attrs) {
        target->attrs.push_back({nullptr, attr.name, attr.value});
        if (!attr.ns) continue;
        const ModelDeclPtr ns = copyResolve(target, source, attr.ns->prefix);
        if (!ns) return false;
        target->attrs.back().ns = ns;
    }
    return true;
}

bool ModelForest::copyInto(ModelNode *parent, const Snapshot &source) {
    const ModelNode *from = source.node;
    ModelNode *copy =
        create(from->type, from->type == XML_DOM_NODE_ELEMENT ? from->name : from->value);
    append(parent, copy);
    if (!copyInfo(copy, from)) return false;
    for (const Snapshot &child : source.children) {
        if (!copyInto(copy, child)) return false;
    }
    return true;
}

ModelNode *ModelForest::copyNode(const ModelNode *node) {
    ModelNode *copy =
        create(node->type, node->type == XML_DOM_NODE_ELEMENT ? node->name : node->value);
    if (copyInfo(copy, node)) return copy;
    remove(copy);
    return nullptr;
}

std::uint32_t ModelForest::copySubTree(ModelNode *target, const ModelNode *source) {
    if (target->type != XML_DOM_NODE_ELEMENT) return XML_REFUSED;
    const std::size_t before = target->children.size();
    for (const Snapshot &child : snapshotOf(source).children) {
        if (copyInto(target, child)) continue;
        while (target->children.size() > before) remove(target->children.back());
        return XML_REFUSED;
    }
    return XML_OK;
}

ModelNode *ModelForest::copyRoot(const ModelNode *node) {
    const ModelNode *root = rootOf(node);
    if (!root) return nullptr;
    ModelNode *copy = copyNode(root);
    if (!copy) return nullptr;
    copy->isRoot = true;
    copy->encoding = root->encoding;
    return copy;
}

// ---------------------------------------------------------------- changes to one node

std::uint32_t ModelForest::rename(ModelNode *node, const std::string &name) {
    if (!isName(name) || node->type != XML_DOM_NODE_ELEMENT) return XML_REFUSED;
    node->name = name;
    return XML_OK;
}

std::uint32_t ModelForest::setValue(ModelNode *node, const std::string &value) {
    if (value.empty() || node->type == XML_DOM_NODE_ELEMENT) return XML_REFUSED;
    node->value = value;
    return XML_OK;
}

bool ModelForest::addAttr(ModelNode *node, const std::string &prefix, const std::string &name,
                          const std::string &value) {
    if (node->type != XML_DOM_NODE_ELEMENT || !isName(name) || name == "xmlns") return false;
    const ModelDeclPtr ns = prefix.empty() ? nullptr : lookup(node, prefix);
    if (!prefix.empty() && !ns) return false;
    for (const ModelAttr &attr : node->attrs) {
        if (attr.name == name && (attr.ns ? attr.ns->name : "") == (ns ? ns->name : ""))
            return false;
    }
    node->attrs.push_back({ns, name, value});
    return true;
}

void ModelForest::deleteAttr(ModelNode *node, const std::string &prefix, const std::string &name) {
    for (auto attr = node->attrs.begin(); attr != node->attrs.end(); ++attr) {
        if (attr->name != name || (attr->ns ? attr->ns->prefix : "") != prefix) continue;
        node->attrs.erase(attr);
        return;
    }
}

std::uint32_t ModelForest::declare(ModelNode *node, const std::string &prefix,
                                   const std::string &name, bool replace) {
    if (name.empty() && !prefix.empty()) return XML_REFUSED;
    if (const ModelDeclPtr decl = declaredOn(node, prefix)) {
        if (!replace) return XML_REFUSED;
        decl->name = name;
        return XML_OK;
    }
    node->decls.push_back(std::make_shared<ModelDecl>(ModelDecl{prefix, name, nullptr}));
    return XML_OK;
}

std::uint32_t ModelForest::setPrefix(ModelNode *node, const std::string &prefix) {
    if (node->type != XML_DOM_NODE_ELEMENT) return XML_REFUSED;
    const ModelDeclPtr ns = prefix.empty() ? nullptr : lookup(node, prefix);
    if (!prefix.empty() && !ns) return XML_REFUSED;
    node->ns = ns;
    return XML_OK;
}

std::uint32_t ModelForest::makeRoot(ModelNode *node) {
    if (node->type != XML_DOM_NODE_ELEMENT || node->parent || node->isRoot) return XML_REFUSED;
    node->isRoot = true;
    return XML_OK;
}

std::uint32_t ModelForest::setEncoding(ModelNode *node, std::uint32_t encoding) {
    const ModelNode *root = rootOf(node);
    if (!root || encoding >= XML_ENCODING_UNKNOWN) return XML_REFUSED;
    const_cast<ModelNode *>(root)->encoding = encoding;
    return XML_OK;
}

// ---------------------------------------------------------------- questions

const ModelNode *ModelForest::select(const ModelNode *context, const std::string &path) const {
    const ModelNode *node = context;
    std::size_t at = 0;
    while (node) {
        const bool rootStep = at < path.size() && path[at] == '/';
        if (rootStep) ++at;
        const bool last = path.find('/', at) == std::string::npos;
        const std::string step =
            path.substr(at, last ? std::string::npos : path.find('/', at) - at);
        at += step.size() + 1;
        if (rootStep) {
            const ModelNode *root = rootOf(node);
            node = root && node->type == XML_DOM_NODE_ELEMENT && root->name == node->name &&
                           (step.empty() || step == root->name)
                       ? root
                       : nullptr;
            if (last) return node;
            continue;
        }
        if (step.empty()) return nullptr;
        const ModelNode *found = nullptr;
        for (const ModelNode *child : node->children) {
            if (!found && child->type == XML_DOM_NODE_ELEMENT && child->name == step) found = child;
        }
        node = found;
        if (last) return node;
    }
    return nullptr;
}

bool ModelForest::isUsedFromOutside(const ModelNode *node) const {
    std::vector<ModelDeclPtr> inside;
    for (const ModelNode *other : nodes()) {
        if (isBelow(other, node)) {
            inside.insert(inside.end(), other->decls.begin(), other->decls.end());
        }
    }
    const auto isInside = [&](const ModelDeclPtr &decl) {
        return decl && std::find(inside.begin(), inside.end(), decl) != inside.end();
    };
    for (const ModelNode *other : nodes()) {
        if (isBelow(other, node)) continue;
        if (isInside(other->ns)) return true;
        for (const ModelAttr &attr : other->attrs) {
            if (isInside(attr.ns)) return true;
        }
    }
    return false;
}

std::string modelPath(const ModelNode *node) {
    const std::string above = node->parent ? modelPath(node->parent) : "";
    if (node->type != XML_DOM_NODE_ELEMENT) return above;
    if (!node->parent) return "/" + node->name;
    int position = 1;
    for (const ModelNode *other : node->parent->children) {
        if (other == node) break;
        if (other->type == XML_DOM_NODE_ELEMENT && other->name == node->name) ++position;
    }
    return above + "/" + node->name + "[" + std::to_string(position) + "]";
}

std::string modelText(const ModelNode *node) {
    std::string out;
    if (node->isRoot) {
        out = "<?xml version=\"1.0\" encoding=\"" + std::string(encodingName(node->encoding)) +
              "\"?>";
    }
    writeNode(node, &out);
    return out;
}

// ---------------------------------------------------------------- comparing

namespace {

bool isSameDecl(const ModelDeclPtr &model, const XML_DOM_NsDecl *real) {
    if (!model || !real) return !model && !real;
    if (model == xmlDecl() && !model->real) model->real = real;
    return model->real == real;
}

std::string ownDifference(ModelNode *model, XML_DOM_Node *real) {
    if (!model->real) model->real = real;
    if (model->real != real) return "another node";
    if (model->type != real->type) return "type";
    const bool element = model->type == XML_DOM_NODE_ELEMENT;
    if (model->name != (real->name ? real->name : "") || element != (real->name != nullptr)) {
        return "name";
    }
    if (model->value != (real->value ? real->value : "") || element != !real->value) return "value";
    if (real->parent != (model->parent ? model->parent->real : nullptr)) return "parent";
    if (model->isRoot != (real->docInfo != nullptr)) return "document";
    if (model->isRoot && model->encoding != real->docInfo->encoding) return "encoding";

    XML_DOM_NsDecl *decl = real->firstNsDecl, *lastDecl = nullptr;
    for (const ModelDeclPtr &expected : model->decls) {
        if (!decl) return "a declaration is missing";
        if (!expected->real) expected->real = decl;
        if (expected->real != decl || expected->prefix != (decl->prefix ? decl->prefix : "") ||
            expected->name != decl->namespaceName) {
            return "a declaration";
        }
        lastDecl = decl;
        decl = decl->next;
    }
    if (decl || real->lastNsDecl != lastDecl) return "end of the declarations";
    if (!isSameDecl(model->ns, real->ns)) return "namespace";

    XML_DOM_Attr *attr = real->firstAttr, *lastAttr = nullptr;
    for (const ModelAttr &expected : model->attrs) {
        if (!attr) return "an attribute is missing";
        if (attr->owner != real || expected.name != attr->name || expected.value != attr->value ||
            !isSameDecl(expected.ns, attr->ns)) {
            return "an attribute";
        }
        lastAttr = attr;
        attr = attr->next;
    }
    return attr || real->lastAttr != lastAttr ? "end of the attributes" : "";
}

}  // namespace

std::string differenceOf(ModelNode *model, XML_DOM_Node *real) {
    if (std::string own = ownDifference(model, real); !own.empty()) {
        return modelPath(model) + ": " + own;
    }
    XML_DOM_Node *child = real->firstChild, *last = nullptr;
    for (ModelNode *expected : model->children) {
        if (!child) return modelPath(model) + ": a child is missing";
        if (std::string below = differenceOf(expected, child); !below.empty()) return below;
        last = child;
        child = child->nextSibling;
    }
    return child || real->lastChild != last ? modelPath(model) + ": end of the children" : "";
}

}  // namespace support
