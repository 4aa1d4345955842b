#include "schema/attributes.h"

#include <cstdint>

#include "schema/allowed_attributes.h"
#include "schema/namespace_match.h"

namespace cxml {
namespace {

constexpr std::int32_t kProhibited = 1, kRequired = 2;  // of SchemaAttributeDecl::use
constexpr std::int32_t kLax = 1, kSkip = 2;             // of SchemaWildcard::processContents
constexpr std::int32_t kQualified = 1;

[[gnu::cold]] void unexpected(XML_DOM_Node *element, const XML_DOM_Attr *attribute,
                              Validation &run) {
    const AttributeName name = nameOf(attribute);
    Schema_SetError(run, 7, {.node = element, .attrName = name.name, .attrNs = name.ns});
}

// The check of one element. Attributes that a declaration, a wildcard or the table of allowed ones has claimed
// are struck from run.attributes.
class AttributeCheck {
  public:
    AttributeCheck(XML_DOM_Node *element, Validation &run) : element_(element), run_(run) {}

    // Lists all attributes; false for want of memory.
    bool list() {
        run_.attributes.truncate(0);
        for (const XML_DOM_Attr *attribute = element_->firstAttr; attribute;
             attribute = attribute->next) {
            if (!run_.attributes.append(attribute)) return false;
        }
        return true;
    }

    void walk(const SchemaComplexType &type);

    // What nothing has claimed is an error.
    void finish() {
        for (std::size_t i = 0; i < run_.attributes.size(); ++i) {
            if (const XML_DOM_Attr *left = run_.attributes[i])
                return unexpected(element_, left, run_);
        }
    }

  private:
    void walk(const SchemaDerivation &derivation);
    void walk(const SchemaAttributeGroup &group);
    void walkGroups(const SchemaAttributeGroup *const *groups, std::uint32_t count);
    void checkUses(const SchemaAttributeDecl *const *uses, std::uint32_t count);
    void checkWildcard(const SchemaWildcard *wildcard);
    void sweep();

    const XML_DOM_Attr *checkUse(const SchemaAttributeDecl &use, bool forceQualified);
    const XML_DOM_Attr *find(const char *name, const char *ns) const;
    void checkValue(const SchemaAttributeDecl &decl, const char *ns, const XML_DOM_Attr *attribute);
    void strike(const XML_DOM_Attr *attribute);

    XML_DOM_Node *element_;
    Validation &run_;
};

const XML_DOM_Attr *AttributeCheck::find(const char *name, const char *ns) const {
    const XML_DOM_Attr *attribute = element_->firstAttr;
    while (attribute && !isNamed(attribute, name, ns)) attribute = attribute->next;
    return attribute;
}

void AttributeCheck::strike(const XML_DOM_Attr *attribute) {
    for (std::size_t i = 0; i < run_.attributes.size(); ++i) {
        if (run_.attributes[i] != attribute) continue;
        run_.attributes[i] = nullptr;
        return;
    }
}

void AttributeCheck::checkValue(const SchemaAttributeDecl &decl, const char *ns,
                                const XML_DOM_Attr *attribute) {
    const char *value = attribute->value;
    const bool valid = decl.hasFixed == 1
                           ? Schema_CheckFixedValue(decl.fixedValue, value, run_.valueCheck())
                           : checkSimpleType(decl.type, value, run_.valueCheck());
    if (valid) return;
    Schema_SetError(run_, 4,
                    {.node = element_, .attrName = decl.name, .attrNs = ns, .text = run_.message});
}

// Checks the attribute that a use speaks of; returns it if there is one.
const XML_DOM_Attr *AttributeCheck::checkUse(const SchemaAttributeDecl &use, bool forceQualified) {
    // Intended: everything is read from the declaration referred to, whether it is required, too.
    const SchemaAttributeDecl &decl = use.ref ? *use.ref : use;
    const bool byDefault =
        decl.form == 0 && run_.context.root->attributeFormDefault == std::uint32_t{kQualified};
    const bool qualified = use.ref || forceQualified || decl.form == kQualified || byDefault;
    const char *ns = qualified ? decl.targetNamespace : nullptr;
    const XML_DOM_Attr *attribute = find(decl.name, ns);
    if (attribute && decl.use == kProhibited) {
        Schema_SetError(
            run_, 7,
            {.node = element_, .name = element_->name, .attrName = decl.name, .attrNs = ns});
    } else if (attribute) {
        checkValue(decl, ns, attribute);
    } else if (decl.use == kRequired) {
        // Intended: with the target namespace, whatever the form.
        Schema_SetError(run_, 2,
                        {.node = element_, .attrName = decl.name, .attrNs = decl.targetNamespace});
    }
    return attribute;
}

void AttributeCheck::checkUses(const SchemaAttributeDecl *const *uses, std::uint32_t count) {
    for (std::uint32_t i = 0; i < count && run_.valid(); ++i) {
        if (const XML_DOM_Attr *attribute = checkUse(*uses[i], false)) strike(attribute);
    }
}

void AttributeCheck::checkWildcard(const SchemaWildcard *wildcard) {
    if (!wildcard) return;
    for (std::size_t i = 0; i < run_.attributes.size() && run_.valid(); ++i) {
        const XML_DOM_Attr *attribute = run_.attributes[i];
        if (!attribute) continue;
        const AttributeName name = nameOf(attribute);
        if (!Schema_NamespaceMatch(name.ns, wildcard->namespaceConstraint,
                                   wildcard->targetNamespace, nullptr)) {
            continue;
        }
        bool claimed = wildcard->processContents == kSkip;
        if (!claimed) {
            const SchemaAttributeDecl *decl = findTopAttribute(name.name, name.ns, run_);
            if (decl) checkUse(*decl, true);
            claimed = decl || wildcard->processContents == kLax;
        }
        if (claimed && run_.valid()) run_.attributes[i] = nullptr;
    }
}

void AttributeCheck::sweep() {
    for (std::size_t i = 0; i < run_.attributes.size() && run_.valid(); ++i) {
        const XML_DOM_Attr *attribute = run_.attributes[i];
        const SchemaAllowedAttribute *allowed = attribute ? findAllowed(attribute) : nullptr;
        if (!allowed) continue;
        run_.attributes[i] = nullptr;
        checkAllowedValue(element_, attribute, *allowed, run_);
    }
}

void AttributeCheck::walkGroups(const SchemaAttributeGroup *const *groups, std::uint32_t count) {
    for (std::uint32_t i = 0; i < count && run_.valid(); ++i) walk(*groups[i]);
}

// The three walks call one another for base types and groups: as deep as the schema. Their order
// decides which rule claims an attribute first.

void AttributeCheck::walk(const SchemaComplexType &type) {
    checkUses(type.attributeUses, type.attributeUseCount);
    if (run_.valid()) checkWildcard(type.attributeWildcard);
    if (run_.valid() && type.content) walk(*type.content);
    if (run_.valid()) sweep();
    if (run_.valid()) walkGroups(type.attributeGroups, type.attributeGroupCount);
}

void AttributeCheck::walk(const SchemaDerivation &derivation) {
    checkUses(derivation.attributeUses, derivation.attributeUseCount);
    if (run_.valid()) checkWildcard(derivation.attributeWildcard);
    if (run_.valid() && derivation.baseTypeKind == SCHEMA_KIND_COMPLEX_TYPE &&
        derivation.baseType) {
        walk(*static_cast<const SchemaComplexType *>(derivation.baseType));
    }
    if (run_.valid()) sweep();
    if (run_.valid()) walkGroups(derivation.attributeGroups, derivation.attributeGroupCount);
}

void AttributeCheck::walk(const SchemaAttributeGroup &group) {
    if (group.ref) return walk(*group.ref);
    walkGroups(group.attributeGroups, group.attributeGroupCount);
    if (run_.valid()) checkUses(group.attributeUses, group.attributeUseCount);
    if (run_.valid()) checkWildcard(group.attributeWildcard);
    if (run_.valid()) sweep();
}

}  // namespace

void Schema_CheckAttributes(XML_DOM_Node *element, const SchemaComplexType &type,
                            Validation &run) noexcept {
    AttributeCheck check{element, run};
    if (!check.list()) return setFailure(run);
    check.walk(type);
    if (run.valid()) check.finish();
}

void Schema_CheckAllowedAttributes(XML_DOM_Node *element, Validation &run) noexcept {
    for (const XML_DOM_Attr *attribute = element->firstAttr; attribute && run.valid();
         attribute = attribute->next) {
        if (const SchemaAllowedAttribute *allowed = findAllowed(attribute)) {
            checkAllowedValue(element, attribute, *allowed, run);
        } else {
            unexpected(element, attribute, run);
        }
    }
}

}  // namespace cxml
