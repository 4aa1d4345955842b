// schema/allowed_attributes.h - attributes that every element may have without a declaration.
#pragma once

#include "compactxml.h"
#include "schema/same_text.h"
#include "schema/validation.h"

namespace cxml {

struct AttributeName {
    const char *name;
    const char *ns;
};

inline AttributeName nameOf(const XML_DOM_Attr *attribute) noexcept {
    return {attribute->name, attribute->ns ? attribute->ns->namespaceName : nullptr};
}

inline bool isNamed(const XML_DOM_Attr *attribute, const char *name, const char *ns) noexcept {
    const AttributeName own = nameOf(attribute);
    return isSameText(own.name, name) && isSameText(own.ns, ns);
}

struct SchemaAllowedAttribute {
    uint32_t (*handler)(const char *value) noexcept;  // null for any value
    const char *namespaceName;
    const char *localName;
};

// What an attribute is allowed as, or null.
const SchemaAllowedAttribute *findAllowed(const XML_DOM_Attr *attribute) noexcept;

// Checks the value of an attribute that is allowed.
void checkAllowedValue(XML_DOM_Node *element, const XML_DOM_Attr *attribute,
                       const SchemaAllowedAttribute &allowed, Validation &run) noexcept;

}  // namespace cxml
