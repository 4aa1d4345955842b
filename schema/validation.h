// schema/validation.h - one validation: its context, and what its parts share.
#pragma once

#include <cstdint>

#include "compactxml.h"
#include "io/memory.h"
#include "schema/choice_memo.h"
#include "schema/group_memo.h"
#include "schema/namespace_memo.h"
#include "schema/pattern_cache.h"
#include "schema/value_check.h"

namespace cxml {

// An element child that a content model has taken, to be checked against its declaration.
struct MatchedChild {
    XML_DOM_Node *node;
    const SchemaElementDecl *decl;
};

// An element whose children are being checked. See docs/design.md for a drawing.
struct ElementFrame {
    XML_DOM_Node *node;
    const SchemaComplexType *type;
    const XML_DOM_NsDecl *defaultNs;  // in scope below it, or null
    std::size_t firstChild;           // its children among the matched ones: from here to the end
    std::size_t nextChild;            // of them, the next one to be checked
    bool structureFailed;  // the context holds what is wrong with the rest of its content
};

struct Validation {
    SchemaValidateContext context{};
    // XML_OK, or XML_REFUSED when the run cannot go on for another reason than an error.
    std::uint32_t result = XML_OK;

    GrowingArray<ElementFrame> open;
    GrowingArray<MatchedChild> matched;             // of all open elements, outermost first
    GrowingArray<std::uint32_t> counters;           // of the particles of an all group
    GrowingArray<const XML_DOM_Attr *> attributes;  // of the element being checked, not yet claimed
    PatternCache patterns;
    NamespaceMemo namespaces;
    GroupMemo groups;
    ChoiceMemo choices;
    char message[512];       // what a value check says
    bool exhausted = false;  // a value was refused because there was no memory to check it

    bool valid() const noexcept { return context.valid == 1; }
    ValueCheck valueCheck() noexcept {
        return {sizeof message, message, &patterns, true, &exhausted};
    }
};

// What an error may say; what is left out is null.
struct ErrorFields {
    XML_DOM_Node *node = nullptr;
    const char *name = nullptr;
    const char *ns = nullptr;
    const char *attrName = nullptr;
    const char *attrNs = nullptr;
    const char *text = nullptr;
};

// Records an error, in place of whatever the context held, and ends the validity of the document.
void Schema_SetError(Validation &run, std::uint32_t code, const ErrorFields &fields) noexcept;

// Ends the run without an error, for want of memory or because of a schema that is none.
void setFailure(Validation &run) noexcept;

// The namespace by which a global declaration is looked up: the alternative one in mode 1.
inline const char *lookupNamespace(const SchemaElementDecl &decl, const Validation &run) noexcept {
    const char *alternative = decl.alternativeNamespace;
    if (run.context.mode == 1 && alternative && *alternative != '\0') return alternative;
    return decl.targetNamespace;
}

// The first top-level element of this name whose namespace matches; or null.
const SchemaElementDecl *Schema_FindTopElement(const char *name, const char *ns,
                                               const Validation &run) noexcept;

// The first top-level attribute of this name and namespace; or null.
const SchemaAttributeDecl *findTopAttribute(const char *name, const char *ns,
                                            const Validation &run) noexcept;

}  // namespace cxml
