#include "heap_plan.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <cstring>
#include <numeric>

namespace bench {

// Records are read through their fields here: the getters hide what is a block and what is not.

HeapPlan::HeapPlan(const XML_DOM_Node *root) {
    std::vector<std::uint32_t> firstBlocks;  // of each open node, the root first
    for (const XML_DOM_Node *node = root; node;) {
        firstBlocks.push_back(static_cast<std::uint32_t>(sizes_.size()));
        planCreation(node);
        if (node->firstChild) {
            node = node->firstChild;
            continue;
        }
        for (;;) {  // children go before their parent
            planDeletion(node, firstBlocks.back());
            firstBlocks.pop_back();
            if (node == root || node->nextSibling) break;
            node = node->parent;
        }
        node = node == root ? nullptr : node->nextSibling;
    }
}

void HeapPlan::addString(const char *text) {
    if (text) sizes_.push_back(static_cast<std::uint32_t>(std::strlen(text) + 1));
}

// The node and its strings first, then its document record, its declarations and its attributes.
void HeapPlan::planCreation(const XML_DOM_Node *node) {
    sizes_.push_back(sizeof *node);
    addString(node->name);
    addString(node->value);
    if (node->docInfo) sizes_.push_back(sizeof *node->docInfo);
    for (const XML_DOM_NsDecl *decl = node->firstNsDecl; decl; decl = decl->next) {
        sizes_.push_back(sizeof *decl);
        addString(decl->prefix);
        addString(decl->namespaceName);
    }
    for (const XML_DOM_Attr *attr = node->firstAttr; attr; attr = attr->next) {
        sizes_.push_back(sizeof *attr);
        addString(attr->name);
        addString(attr->value);
    }
}

// The declarations and attributes, each record after its strings, then the node's own strings, the
// document record and the node. first is the index of the node's own block.
void HeapPlan::planDeletion(const XML_DOM_Node *node, std::uint32_t first) {
    std::uint32_t next = first + 1u + (node->name != nullptr) + (node->value != nullptr) +
                         (node->docInfo != nullptr);
    const std::uint32_t ownEnd = next;
    const auto dropRecord = [&](std::uint32_t strings) {
        for (std::uint32_t i = 1; i <= strings; ++i) deletions_.push_back(next + i);
        deletions_.push_back(next);
        next += strings + 1;
    };
    for (const XML_DOM_NsDecl *decl = node->firstNsDecl; decl; decl = decl->next) {
        dropRecord((decl->prefix != nullptr) + (decl->namespaceName != nullptr));
    }
    for (const XML_DOM_Attr *attr = node->firstAttr; attr; attr = attr->next) {
        dropRecord((attr->name != nullptr) + (attr->value != nullptr));
    }
    for (std::uint32_t own = first + 1; own < ownEnd; ++own) deletions_.push_back(own);
    deletions_.push_back(first);
}

void HeapPlan::reverse() {
    std::iota(deletions_.rbegin(), deletions_.rend(), 0u);
}

bool playHeapPlan(std::span<const std::uint32_t> sizes, std::span<const std::uint32_t> deletions,
                  std::span<void *> live) {
    bool ok = true;
    for (std::size_t i = 0; i < sizes.size(); ++i) {
        live[i] = std::malloc(sizes[i]);
        benchmark::DoNotOptimize(live[i]);
        ok = ok && live[i];
    }
    for (const std::uint32_t i : deletions) std::free(live[i]);
    return ok;
}

}  // namespace bench
