// dom/ancestor_scope.h - the declarations in scope at one element of a tree.
#pragma once

#include "compactxml.h"
#include "parser/namespace_scope.h"

namespace cxml {

// Resolves prefixes from an element upwards, as XML_DOM_LookupNsByPrefix does, but reads each
// declaration above it once for any number of questions. The tree at and above the element must not
// change meanwhile. With the heap exhausted it goes on, as slow as the walk.
class AncestorScope {
  public:
    explicit AncestorScope(const XML_DOM_Node *element) noexcept : unread_(element) {}

    // The nearest declaration of a prefix, the built-in one for "xml", or null.
    XML_DOM_NsDecl *find(const char *prefix) noexcept;

  private:
    bool readNext() noexcept;

    const XML_DOM_Node *unread_;  // the lowest ancestor whose declarations are not in read_
    NamespaceScope read_;         // the nearest declaration of each prefix below unread_
};

}  // namespace cxml
