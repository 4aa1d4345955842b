// tests/support/tree_model.h - trees and what can be done with them, told slowly and plainly.
//
// A model stands beside the library's trees. Each operation does to the model what the library must
// do to the real thing and answers as it must; expectSame then compares the two, node by node.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "compactxml.h"

namespace support {

struct ModelDecl {
    std::string prefix;  // "" for the default namespace
    std::string name;
    const XML_DOM_NsDecl *real = nullptr;
};
using ModelDeclPtr = std::shared_ptr<ModelDecl>;

struct ModelAttr {
    ModelDeclPtr ns;
    std::string name, value;
};

struct ModelNode {
    std::uint32_t type = XML_DOM_NODE_ELEMENT;
    std::string name, value;
    ModelDeclPtr ns;
    std::vector<ModelDeclPtr> decls;
    std::vector<ModelAttr> attrs;
    std::vector<ModelNode *> children;
    ModelNode *parent = nullptr;
    bool isRoot = false;
    std::uint32_t encoding = XML_ENCODING_UTF_8;
    XML_DOM_Node *real = nullptr;
};

// All nodes there are, in any number of trees.
class ModelForest {
  public:
    std::vector<ModelNode *> nodes() const;  // in document order, tree by tree
    std::vector<ModelNode *> tops() const;   // roots and detached nodes

    ModelNode *create(std::uint32_t type, const std::string &text);
    ModelNode *createWithText(const std::string &name, std::uint32_t type, const std::string &text);
    std::uint32_t append(ModelNode *parent, ModelNode *child);
    std::uint32_t insertBefore(ModelNode *reference, ModelNode *node);
    void clip(ModelNode *node);
    void remove(ModelNode *node);
    std::uint32_t adopt(ModelNode *from, ModelNode *to);
    ModelNode *copyNode(const ModelNode *node);
    std::uint32_t copySubTree(ModelNode *target, const ModelNode *source);
    ModelNode *copyRoot(const ModelNode *node);
    std::uint32_t rename(ModelNode *node, const std::string &name);
    std::uint32_t setValue(ModelNode *node, const std::string &value);
    bool addAttr(ModelNode *node, const std::string &prefix, const std::string &name,
                 const std::string &value);
    void deleteAttr(ModelNode *node, const std::string &prefix, const std::string &name);
    std::uint32_t declare(ModelNode *node, const std::string &prefix, const std::string &name,
                          bool replace);
    std::uint32_t setPrefix(ModelNode *node, const std::string &prefix);
    std::uint32_t makeRoot(ModelNode *node);
    std::uint32_t setEncoding(ModelNode *node, std::uint32_t encoding);
    const ModelNode *select(const ModelNode *context, const std::string &path) const;

    // Whether a node outside of this subtree uses a declaration in it, so that deleting it would
    // leave a pointer to nothing.
    bool isUsedFromOutside(const ModelNode *node) const;

  private:
    // What is copied, as it was before the call; resolves in its place of then.
    struct Snapshot {
        const ModelNode *node;
        std::vector<Snapshot> children;
    };
    static Snapshot snapshotOf(const ModelNode *node);
    ModelDeclPtr copyResolve(ModelNode *target, const ModelNode *source, const std::string &prefix);
    bool copyInfo(ModelNode *target, const ModelNode *source);
    bool copyInto(ModelNode *parent, const Snapshot &source);

    std::vector<std::unique_ptr<ModelNode>> all_;
};

// The path of a node, and a node as text behind the declaration of a root.
std::string modelPath(const ModelNode *node);
std::string modelText(const ModelNode *node);

// "" when a tree of the library is that of the model, otherwise the first difference. Nodes and
// declarations that the model has not seen yet are taken for what stands in their place.
std::string differenceOf(ModelNode *model, XML_DOM_Node *real);

}  // namespace support
