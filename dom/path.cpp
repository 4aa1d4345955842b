#include <cstdio>
#include <cstring>

#include "compactxml.h"

namespace cxml {
namespace {

// The position of a child among its siblings of the same name, from 1.
uint32_t positionOf(const XML_DOM_Node *node) {
    uint32_t position = 1;
    for (const XML_DOM_Node *other = node->parent->firstChild; other != node;
         other = other->nextSibling) {
        if (other->name && std::strcmp(other->name, node->name) == 0) ++position;
    }
    return position;
}

// One step of a path: "/", a name, and below the root a position in brackets. Nodes without a name
// add nothing.
class Step {
  public:
    explicit Step(const XML_DOM_Node *node) : name_(node->name) {
        if (!name_) return;
        nameLength_ = std::strlen(name_);
        if (node->parent) {
            suffixLength_ = static_cast<std::size_t>(
                std::snprintf(suffix_, sizeof suffix_, "[%u]", unsigned{positionOf(node)}));
        }
    }

    // What any position makes of the length at least.
    static std::size_t shortest(const XML_DOM_Node *node) {
        if (!node->name) return 0;
        return std::strlen("/") + std::strlen(node->name) + (node->parent ? std::strlen("[1]") : 0);
    }

    std::size_t length() const {
        return name_ ? std::strlen("/") + nameLength_ + suffixLength_ : 0;
    }

    // Writes as much as fits in front of end.
    void write(char *at, const char *end) const {
        if (!name_) return;
        at = append(at, end, "/", 1);
        at = append(at, end, name_, nameLength_);
        append(at, end, suffix_, suffixLength_);
    }

  private:
    static char *append(char *at, const char *end, const char *bytes, std::size_t length) {
        const auto room = static_cast<std::size_t>(end - at);
        if (length > room) length = room;
        std::memcpy(at, bytes, length);
        return at + length;
    }

    const char *name_;
    std::size_t nameLength_ = 0;
    std::size_t suffixLength_ = 0;
    char suffix_[sizeof "[4294967295]"] = {};
};

// The lowest node from here upwards whose step can still be seen when the path is cut to so many
// bytes. The positions of those below it need not be counted.
const XML_DOM_Node *lowestSeen(const XML_DOM_Node *node, std::size_t bytes) {
    std::size_t above = 0;  // at least so long is the path of the node's parent
    for (const XML_DOM_Node *n = node->parent; n; n = n->parent) above += Step::shortest(n);
    while (node->parent && above >= bytes) {
        node = node->parent;
        above -= Step::shortest(node);
    }
    return node;
}

}  // namespace
}  // namespace cxml

using namespace cxml;

uint32_t XML_DOM_GetXPath(const XML_DOM_Node *node, uint32_t size, char *buffer) noexcept {
    if (!node || !buffer || size == 0) return 0;
    node = lowestSeen(node, size - 1);
    std::size_t length = 0;
    for (const XML_DOM_Node *n = node; n; n = n->parent) length += Step{n}.length();
    const std::size_t written = length < size ? length : size - 1;
    const char *const end = buffer + written;
    buffer[written] = '\0';
    // From the node upwards, so from the end of the path to its beginning.
    for (const XML_DOM_Node *n = node; n; n = n->parent) {
        const Step step{n};
        length -= step.length();
        if (length < written) step.write(buffer + length, end);
    }
    return static_cast<uint32_t>(written);
}
