// heap_plan.h - the malloc and free calls that a tree of this library cannot do without.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "compactxml.h"

namespace bench {

// One block for each node, attribute, declaration, document record and string, in the order in
// which a build needs them, and an order of giving them back: at first that of the document, each
// element after its children. Playing the plan is the least that building and deleting the tree can
// cost on this heap with that order.
class HeapPlan {
  public:
    explicit HeapPlan(const XML_DOM_Node *root);

    void reverse();  // gives back the last block first, as deleting a tree does

    std::span<const std::uint32_t> sizes() const { return sizes_; }          // in order of creation
    std::span<const std::uint32_t> deletions() const { return deletions_; }  // indices into these

  private:
    void addString(const char *text);
    void planCreation(const XML_DOM_Node *node);
    void planDeletion(const XML_DOM_Node *node, std::uint32_t first);

    std::vector<std::uint32_t> sizes_;
    std::vector<std::uint32_t> deletions_;
};

// live has room for a block for each size. False if memory runs out.
bool playHeapPlan(std::span<const std::uint32_t> sizes, std::span<const std::uint32_t> deletions,
                  std::span<void *> live);

}  // namespace bench
