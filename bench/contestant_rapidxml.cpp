// RapidXML with its default flags, in place: it has no other way.
#include <cstring>
#include <iterator>
#include <memory>
#include <rapidxml/rapidxml.hpp>
#include <rapidxml/rapidxml_print.hpp>

#include "contestant.h"

namespace bench {
namespace {

using Tree = rapidxml::xml_document<char>;
using Node = rapidxml::xml_node<char>;

void *build(std::span<char> document, Encoding) {
    auto tree = std::make_unique<Tree>();
    try {
        tree->parse<0>(document.data());  // to the NUL behind it
    } catch (const rapidxml::parse_error &) {
        return nullptr;
    }
    return tree.release();
}

void destroy(void *tree) {
    delete static_cast<Tree *>(tree);
}

void countNode(const Node &node, Tally &tally) {
    if (node.type() == rapidxml::node_data || node.type() == rapidxml::node_cdata) {
        tally.text(node.value(), node.value_size());
    } else if (node.type() == rapidxml::node_element) {
        tally.element(node.name(), ':');
        for (const rapidxml::xml_attribute<char> *attribute = node.first_attribute(); attribute;
             attribute = attribute->next_attribute()) {
            // To RapidXML a namespace declaration is an attribute like any other.
            if (std::strncmp(attribute->name(), "xmlns", 5) == 0) continue;
            tally.attribute(attribute->name(), attribute->value(), ':');
        }
    }
}

void count(const void *tree, Tally &tally) {
    const Node *const root = static_cast<const Tree *>(tree)->first_node();
    for (const Node *node = root; node;) {
        countNode(*node, tally);
        if (node->first_node()) {
            node = node->first_node();
            continue;
        }
        while (node != root && !node->next_sibling()) node = node->parent();
        node = node == root ? nullptr : node->next_sibling();
    }
}

std::size_t serialize(const void *tree, Encoding, std::string *copy) {
    std::string out;
    rapidxml::print(std::back_inserter(out), *static_cast<const Tree *>(tree),
                    rapidxml::print_no_indenting);
    if (copy) *copy = out;
    return out.size();
}

}  // namespace

const Contestant kRapidXml = {
    .name = "rapidxml",
    .version = "RapidXML 1.13",
    .consumesInput = true,
    .build = build,
    .destroy = destroy,
    .count = count,
    .serialize = serialize,
};

}  // namespace bench
