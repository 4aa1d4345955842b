#include <cstring>

#include "compactxml.h"
#include "dom/namespace.h"
#include "schema/element_check.h"
#include "schema/element_match.h"
#include "schema/namespace_match.h"
#include "schema/occurrence.h"
#include "schema/same_text.h"
#include "schema/validation.h"

namespace cxml {
namespace {

// Intended: by the target namespace itself, whatever the mode.
const SchemaElementDecl *findRootDecl(const ElementName &name, const SchemaRoot &root) {
    for (std::uint32_t i = 0; i < root.elements.count; ++i) {
        const auto *decl = static_cast<const SchemaElementDecl *>(root.elements.items[i]);
        if (isSameText(decl->name, name.name) &&
            Schema_NamespaceMatch(name.ns, decl->targetNamespace, nullptr, nullptr)) {
            return decl;
        }
    }
    return nullptr;
}

// The root element as the one child of nothing, matched with its declaration as a particle is. Here
// the alternative namespace and the form do count, so that the root may still be unexpected.
void checkRoot(const ElementName &root, const SchemaElementDecl &decl, Validation &run) {
    const SchemaElementDecl &declared = referred(decl);
    const bool present = matches(root, decl, run);
    if (present) checkTree(root.node, decl, run);
    if (!run.valid()) return;
    const std::uint64_t count = present ? 1 : 0;
    if (!present && decl.minOccurs > 0) {
        Schema_SetError(run, 1,
                        {.node = root.node->parent,
                         .name = declared.name,
                         .ns = expectedNamespace(declared, run)});
    } else if (!Schema_CheckOccurs(count, decl.minOccurs, decl.maxOccurs)) {
        Schema_SetError(run, 5, {.name = declared.name});
    }
}

// What the caller sees of a run.
void report(const SchemaValidateContext &context, SchemaErrorInfo *out) {
    std::memset(static_cast<void *>(out), 0, sizeof *out);
    if (context.code == 0) return;
    out->code = context.code;
    out->node = context.node;
    out->name = context.name;
    out->ns = context.ns;
    out->attrName = context.attrName;
    out->attrNs = context.attrNs;
    std::memcpy(out->text, context.text, sizeof out->text);
}

}  // namespace
}  // namespace cxml

using namespace cxml;

uint32_t Schema_ValidateXml(XML_DOM_Node *rootElement, const SchemaRoot *schemaRoot,
                            SchemaErrorInfo *errorInfo) noexcept {
    return Schema_ValidateXmlEx(rootElement, schemaRoot, 0, errorInfo);
}

uint32_t Schema_ValidateXmlEx(XML_DOM_Node *rootElement, const SchemaRoot *schemaRoot,
                              uint32_t mode, SchemaErrorInfo *errorInfo) noexcept {
    if (!rootElement || !schemaRoot || !errorInfo) return XML_REFUSED;
    Validation run;
    run.context.valid = 1;
    run.context.mode = static_cast<uint16_t>(mode);
    run.context.docRoot = rootElement;
    run.context.root = schemaRoot;
    const ElementName root =
        nameOf(rootElement, XML_DOM_LookupNsByPrefix(rootElement->parent, nullptr));
    if (const SchemaElementDecl *decl = findRootDecl(root, *schemaRoot)) {
        checkRoot(root, *decl, run);
    } else {
        Schema_SetError(run, 12, {});
    }
    // What could not be checked is not known to be wrong.
    if (run.exhausted && !run.valid()) setFailure(run);
    report(run.context, errorInfo);
    return run.result;
}
