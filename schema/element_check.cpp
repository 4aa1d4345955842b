#include "schema/element_check.h"

#include "dom/namespace.h"
#include "schema/attributes.h"
#include "schema/content_model.h"
#include "schema/element_match.h"
#include "schema/trace.h"

namespace cxml {
namespace {

// What an element has for children, in a word each.
struct Children {
    bool elements = false;
    bool text = false;  // CDATA counts
};

Children childrenOf(const XML_DOM_Node *element) {
    Children children;
    for (const XML_DOM_Node *child = element->firstChild; child; child = child->nextSibling) {
        (child->type == XML_DOM_NODE_ELEMENT ? children.elements : children.text) = true;
    }
    return children;
}

void invalidValue(XML_DOM_Node *element, Validation &run) {
    Schema_SetError(run, 3, {.node = element, .name = element->name, .text = run.message});
}

void checkFixed(XML_DOM_Node *element, const SchemaElementDecl &decl, Validation &run) {
    const char *value = XML_DOM_GetFirstTextChildValue(element);
    if (!Schema_CheckFixedValue(decl.fixedValue, value, run.valueCheck()))
        invalidValue(element, run);
}

void checkSimple(XML_DOM_Node *element, const SchemaElementDecl &decl, Validation &run) {
    if (element->firstAttr) {
        Schema_CheckAllowedAttributes(element, run);
        if (!run.valid()) return;
    }
    const char *lastText = nullptr;
    for (XML_DOM_Node *child = element->firstChild; child; child = child->nextSibling) {
        if (child->type == XML_DOM_NODE_ELEMENT) return Schema_SetError(run, 6, {.node = child});
        if (child->type == XML_DOM_NODE_TEXT) lastText = child->value;
    }
    // Intended: a fixed value is compared with the first text, any other value is the last one.
    if (decl.hasFixed == 1) return checkFixed(element, decl, run);
    const auto *type = static_cast<const SchemaSimpleType *>(decl.type);
    if (!checkSimpleType(type, lastText, run.valueCheck())) invalidValue(element, run);
}

bool isSimpleContent(const SchemaDerivation &derivation) {
    return derivation.derivationKind != SCHEMA_KIND_COMPLEX_RESTRICTION &&
           derivation.derivationKind != SCHEMA_KIND_COMPLEX_EXTENSION;
}

// Whether a type has no content model for elements.
bool hasNoElements(const SchemaComplexType &type) {
    return !type.particle && (!type.content || isSimpleContent(*type.content));
}

// Whether the children are of a sort that the type can have at all.
void checkKinds(XML_DOM_Node *element, const SchemaElementDecl &decl, const SchemaComplexType &type,
                Validation &run) {
    const Children children = childrenOf(element);
    const bool empty = !type.content && !type.particle;
    if (empty && children.text && decl.hasFixed != 1) {
        return Schema_SetError(run, 9, {.node = element});
    }
    if (hasNoElements(type)) {
        if (children.elements) Schema_SetError(run, 10, {.node = element});
    } else if (children.text && type.mixed != 1) {
        Schema_SetError(run, 9, {.node = element});
    }
}

// Whether there is text among the children, given how far their content model has got.
bool hasText(const SchemaContentCursor &cursor) {
    if (cursor.sawText) return true;
    const XML_DOM_Node *child = cursor.current.node;
    while (child && child->type == XML_DOM_NODE_ELEMENT) child = child->nextSibling;
    return child != nullptr;
}

// Checks one tree with a stack of its own: the element that is being checked, those around it, and
// for each the children that its content model has taken.
class TreeCheck {
  public:
    explicit TreeCheck(Validation &run) : run_(run) {}

    void check(XML_DOM_Node *element, const SchemaElementDecl &decl) {
        begin(element, decl, XML_DOM_LookupNsByPrefix(element->parent, nullptr));
        while (run_.valid() && !run_.open.empty()) {
            ElementFrame &top = run_.open.back();
            if (top.nextChild < run_.matched.size()) {
                const MatchedChild child = run_.matched[top.nextChild++];
                begin(child.node, *child.decl, top.defaultNs);
            } else {
                end();
            }
        }
    }

  private:
    void begin(XML_DOM_Node *element, const SchemaElementDecl &particle,
               const XML_DOM_NsDecl *defaultNsAbove);
    void beginComplex(XML_DOM_Node *element, const SchemaElementDecl &decl,
                      const SchemaComplexType &type, const XML_DOM_NsDecl *defaultNsAbove);
    void end();

    Validation &run_;
};

// Checks what an element's declaration asks of it but for its children, or opens it.
void TreeCheck::begin(XML_DOM_Node *element, const SchemaElementDecl &particle,
                      const XML_DOM_NsDecl *defaultNsAbove) {
    traceNode(element, "Schema_CheckElement");
    const SchemaElementDecl *decl = &referred(particle);
    if (decl->abstract == 1) {
        decl = substituted(nameOf(element, defaultNsAbove), particle, run_);
        if (!decl) return Schema_SetError(run_, 6, {.node = element});
    }
    if (!decl->type) return;
    const bool nil = decl->nillable == 1 && !element->firstChild;
    if (decl->typeKind == SCHEMA_KIND_SIMPLE_TYPE) {
        if (nil) return Schema_CheckAllowedAttributes(element, run_);
        return checkSimple(element, *decl, run_);
    }
    const auto &type = *static_cast<const SchemaComplexType *>(decl->type);
    if (nil) return Schema_CheckAttributes(element, type, run_);
    beginComplex(element, *decl, type, defaultNsAbove);
}

void TreeCheck::beginComplex(XML_DOM_Node *element, const SchemaElementDecl &decl,
                             const SchemaComplexType &type, const XML_DOM_NsDecl *defaultNsAbove) {
    const bool hasModel = !hasNoElements(type) && decl.hasFixed != 1;
    if (!hasModel) checkKinds(element, decl, type, run_);
    if (!run_.valid()) return;
    if (decl.hasFixed == 1) {
        checkFixed(element, decl, run_);  // Intended: its children are not looked at
        if (run_.valid()) Schema_CheckAttributes(element, type, run_);
        return;
    }
    const std::size_t first = run_.matched.size();
    SchemaContentCursor cursor{
        element, defaultNsBelow(element, defaultNsAbove), {}, nullptr, false};
    setCurrent(cursor, element->firstChild);
    run_.context.cursor = &cursor;
    Schema_CheckComplexContent(cursor, type, run_);
    run_.context.cursor = nullptr;
    // Seen on the way, so that children are walked once less; it is wrong before all else is.
    if (hasModel && type.mixed != 1 && hasText(cursor)) {
        run_.matched.truncate(first);
        return Schema_SetError(run_, 9, {.node = element});
    }
    if (run_.valid() && cursor.current.node) {
        Schema_SetError(run_, 6, {.node = cursor.current.node});
    }
    // Children that were taken before something went wrong stand before it: an error in one of them
    // comes first and takes the place of this one.
    const bool failed = !run_.valid();
    if (failed && run_.matched.size() == first) return;
    run_.context.valid = 1;
    if (!run_.open.append({element, &type, cursor.defaultNs, first, first, failed})) {
        return setFailure(run_);
    }
    traceInwards();
}

// All children are valid: what is wrong with their structure comes next, then the attributes.
void TreeCheck::end() {
    const ElementFrame closed = run_.open.back();
    run_.open.truncate(run_.open.size() - 1);
    run_.matched.truncate(closed.firstChild);
    traceOutwards();
    if (closed.structureFailed) {
        run_.context.valid = 0;
    } else {
        Schema_CheckAttributes(closed.node, *closed.type, run_);
    }
}

}  // namespace

void checkTree(XML_DOM_Node *element, const SchemaElementDecl &decl, Validation &run) noexcept {
    TreeCheck{run}.check(element, decl);
    for (; !run.open.empty(); run.open.truncate(run.open.size() - 1)) traceOutwards();
}

}  // namespace cxml
