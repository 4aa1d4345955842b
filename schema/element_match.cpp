#include "schema/element_match.h"

namespace cxml {

const SchemaElementDecl *findMember(const ElementName &element, const SchemaElementDecl &head,
                                    const Validation &run) noexcept {
    const SchemaObjectList &elements = run.context.root->elements;
    for (std::uint32_t i = 0; i < elements.count; ++i) {
        const auto *decl = static_cast<const SchemaElementDecl *>(elements.items[i]);
        if (decl != &head && decl->substitutionGroupName && isSameText(decl->name, element.name) &&
            isSameText(lookupNamespace(*decl, run), element.ns) &&
            isSameText(decl->substitutionGroupName, head.name) &&
            isSameText(decl->substitutionGroupNamespace, head.targetNamespace)) {
            return decl;
        }
    }
    return nullptr;
}

const SchemaElementDecl *substituted(const ElementName &element, const SchemaElementDecl &decl,
                                     const Validation &run) noexcept {
    const SchemaElementDecl *declared = &referred(decl);
    // Two steps: a member that is abstract itself must have another one to stand for it.
    for (int step = 0; declared && declared->abstract == 1; ++step) {
        declared = step < 2 ? findMember(element, *declared, run) : nullptr;
    }
    return declared;
}

}  // namespace cxml
