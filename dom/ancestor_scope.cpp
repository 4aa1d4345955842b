#include "dom/ancestor_scope.h"

#include <cstring>

#include "dom/namespace.h"

namespace cxml {

// Takes in the declarations of one more ancestor, but for prefixes declared below it.
bool AncestorScope::readNext() noexcept {
    for (XML_DOM_NsDecl *decl = unread_->firstNsDecl; decl; decl = decl->next) {
        if (read_.findByText(decl->prefix)) continue;
        XML_Parser_Ns *binding = read_.push(decl->prefix, decl->namespaceName);
        if (!binding) return false;
        binding->declaration = decl;
    }
    unread_ = unread_->parent;
    return true;
}

XML_DOM_NsDecl *AncestorScope::find(const char *prefix) noexcept {
    for (;;) {
        if (const XML_Parser_Ns *binding = read_.findByText(prefix)) return binding->declaration;
        // Nothing left, or no memory: the walk finds what is not in read_, or "xml".
        if (!unread_ || !readNext()) return XML_DOM_LookupNsByPrefix(unread_, prefix);
    }
}

}  // namespace cxml
