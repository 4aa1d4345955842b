#include "schema/element_match.h"

namespace cxml {
namespace {

constexpr std::int32_t kQualified = 1;

// The first top-level declaration of an element that names this one as the head of its group.
const SchemaElementDecl *findMember(const ElementName &element, const SchemaElementDecl &head,
                                    const Validation &run) {
    const SchemaObjectList &elements = run.context.root->elements;
    for (std::uint32_t i = 0; i < elements.count; ++i) {
        const auto *decl = static_cast<const SchemaElementDecl *>(elements.items[i]);
        if (decl != &head && decl->substitutionGroupName &&
            XML_Strcmp(decl->name, element.name) == 0 &&
            XML_Strcmp(lookupNamespace(*decl, run), element.ns) == 0 &&
            XML_Strcmp(decl->substitutionGroupName, head.name) == 0 &&
            XML_Strcmp(decl->substitutionGroupNamespace, head.targetNamespace) == 0) {
            return decl;
        }
    }
    return nullptr;
}

}  // namespace

const char *expectedNamespace(const SchemaElementDecl &decl, const Validation &run) noexcept {
    const bool byDefault =
        decl.form == 0 && run.context.root->elementFormDefault == std::uint32_t{kQualified};
    return decl.form == kQualified || byDefault ? lookupNamespace(decl, run) : nullptr;
}

bool matches(const ElementName &element, const SchemaElementDecl &decl, Validation &run) noexcept {
    const SchemaElementDecl &declared = referred(decl);
    if (declared.abstract == 1) return findMember(element, declared, run) != nullptr;
    return XML_Strcmp(element.name, declared.name) == 0 &&
           run.namespaces.matches(element.ns, expectedNamespace(declared, run));
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
