// heap_plan.h - the malloc and free calls that a tree of this library cannot do without.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "compactxml.h"

namespace bench {

// One block for each node, attribute, declaration, document record and string, in the order in
// which a build needs them and in the order in which deleting the root gives them back. Playing
// the plan is the least that building and deleting the tree can cost on this heap.
class HeapPlan {
  public:
    explicit HeapPlan(const XML_DOM_Node *root);

    bool play();  // false if memory runs out

    std::size_t blocks() const { return sizes_.size(); }
    std::size_t bytes() const;

  private:
    void addString(const char *text);
    void planCreation(const XML_DOM_Node *node);
    void planDeletion(const XML_DOM_Node *node, std::uint32_t first);

    std::vector<std::uint32_t> sizes_;      // in the order of creation
    std::vector<std::uint32_t> deletions_;  // indices into sizes_
    std::vector<void *> live_;
};

}  // namespace bench
