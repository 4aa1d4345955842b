// tools/xsd2c/xsd/reference_graph.h - what refers to what, to find circles and long chains.
#pragma once

#include <cstddef>
#include <functional>
#include <vector>

namespace xsd2c {

// No chain of references may be longer, so that whoever follows one can count on an end.
inline constexpr std::size_t kLongestChain = 256;

class ReferenceGraph {
  public:
    explicit ReferenceGraph(std::size_t nodes) : nodes_(nodes) {}

    // How far a node reaches by itself.
    void setReach(std::size_t node, std::size_t reach) { nodes_[node].reach = reach; }

    // A reference that reaches from one node as far as another one does, and so many steps more.
    //   cut  takes the reference away where it stands
    void add(std::size_t from, std::size_t to, std::size_t steps, std::function<void()> cut) {
        nodes_[from].references.push_back({to, steps, std::move(cut)});
    }

    // Called for a reference that is cut: it closes a circle, or its node would reach too far.
    using Tell = std::function<void(std::size_t from, std::size_t to, bool circle)>;

    // Cuts as many references as it takes. Returns all nodes, each behind those that it refers to.
    std::vector<std::size_t> cut(const Tell &tell);

    // Once references have been cut.
    std::size_t reach(std::size_t node) const { return nodes_[node].reach; }

  private:
    struct Reference {
        std::size_t to;
        std::size_t steps;
        std::function<void()> cut;
    };
    enum class State { kNew, kOpen, kDone };
    struct Node {
        std::vector<Reference> references;
        std::size_t reach = 0;
        std::size_t next = 0;  // reference to look at
        State state = State::kNew;
    };
    void visit(std::size_t first, const Tell &tell, std::vector<std::size_t> &order);

    std::vector<Node> nodes_;
};

}  // namespace xsd2c
