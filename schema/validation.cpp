#include "schema/validation.h"

#include <cstring>

#include "schema/namespace_match.h"
#include "schema/same_text.h"

namespace cxml {

[[gnu::cold]] void Schema_SetError(Validation &run, std::uint32_t code,
                                   const ErrorFields &fields) noexcept {
    SchemaValidateContext &context = run.context;
    context.code = code;
    context.node = fields.node;
    context.name = fields.name;
    context.ns = fields.ns;
    context.attrName = fields.attrName;
    context.attrNs = fields.attrNs;
    copyBounded(context.text, sizeof context.text, fields.text ? fields.text : "");
    context.valid = 0;
    run.result = XML_OK;
}

[[gnu::cold]] void setFailure(Validation &run) noexcept {
    Schema_SetError(run, 0, {});
    run.result = XML_REFUSED;
}

const SchemaElementDecl *Schema_FindTopElement(const char *name, const char *ns,
                                               const Validation &run) noexcept {
    const SchemaObjectList &elements = run.context.root->elements;
    for (std::uint32_t i = 0; i < elements.count; ++i) {
        const auto *decl = static_cast<const SchemaElementDecl *>(elements.items[i]);
        if (isSameText(decl->name, name) &&
            Schema_NamespaceMatch(ns, lookupNamespace(*decl, run), nullptr, nullptr)) {
            return decl;
        }
    }
    return nullptr;
}

const SchemaAttributeDecl *findTopAttribute(const char *name, const char *ns,
                                            const Validation &run) noexcept {
    const SchemaObjectList &attributes = run.context.root->attributes;
    for (std::uint32_t i = 0; i < attributes.count; ++i) {
        const auto *decl = static_cast<const SchemaAttributeDecl *>(attributes.items[i]);
        if (isSameText(decl->name, name) && isSameText(decl->targetNamespace, ns)) {
            return decl;
        }
    }
    return nullptr;
}

}  // namespace cxml
