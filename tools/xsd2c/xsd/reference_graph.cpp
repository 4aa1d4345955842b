#include "xsd2c/xsd/reference_graph.h"

#include <algorithm>

namespace xsd2c {

void ReferenceGraph::visit(std::size_t first, const Tell &tell, std::vector<std::size_t> &order) {
    std::vector<std::size_t> open = {first};
    nodes_[first].state = State::kOpen;
    while (!open.empty()) {
        const std::size_t from = open.back();
        Node &node = nodes_[from];
        if (node.next == node.references.size()) {
            node.state = State::kDone;
            order.push_back(from);
            open.pop_back();
            continue;
        }
        const Reference &reference = node.references[node.next];
        Node &target = nodes_[reference.to];
        if (target.state == State::kNew) {
            target.state = State::kOpen;
            open.push_back(reference.to);
            continue;  // and come back to this reference
        }
        ++node.next;
        const std::size_t reach = reference.steps + target.reach;
        if (target.state == State::kOpen || reach > kLongestChain) {
            tell(from, reference.to, target.state == State::kOpen);
            reference.cut();
        } else {
            node.reach = std::max(node.reach, reach);
        }
    }
}

std::vector<std::size_t> ReferenceGraph::cut(const Tell &tell) {
    std::vector<std::size_t> order;
    order.reserve(nodes_.size());
    for (std::size_t i = 0; i < nodes_.size(); ++i) {
        if (nodes_[i].state == State::kNew) visit(i, tell, order);
    }
    return order;
}

}  // namespace xsd2c
