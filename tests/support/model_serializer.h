// tests/support/model_serializer.h - what the serializer writes, told by plain recursion.
#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

#include "compactxml.h"

namespace support {

// Writes the pieces that the library must write, in their order, and adds up the results. Sums are
// kept in 64 bits, so that they do not wrap.
class ModelSerializer {
  public:
    using Write = std::function<std::uint32_t(std::string_view piece)>;
    using Sum = std::uint64_t;

    explicit ModelSerializer(Write write) : write_(std::move(write)) {}

    Sum text(std::string_view text) const;
    Sum declaration(const XML_DOM_Node *root) const;
    Sum begin(const XML_DOM_Node *node, bool selfClosing) const;
    Sum end(const XML_DOM_Node *node, bool selfClosing) const;
    Sum subtree(const XML_DOM_Node *node) const;
    Sum children(const XML_DOM_Node *node) const;
    // The declaration, where there is one to write, and the subtree.
    Sum document(const XML_DOM_Node *node, std::uint32_t flags) const;

  private:
    Sum put(std::string_view piece) const;
    Sum prefix(const XML_DOM_NsDecl *decl) const;
    Sum quoted(const char *value) const;

    Write write_;
};

// Whether a result of the library is right for a sum: equal as long as 32 bits hold it, and never 0
// for a failure.
inline bool isResultFor(std::uint32_t result, ModelSerializer::Sum sum) {
    return sum > UINT32_MAX ? result != 0 : result == sum;
}

}  // namespace support
