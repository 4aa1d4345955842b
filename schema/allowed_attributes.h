// schema/allowed_attributes.h - attributes that every element may have without a declaration.
#pragma once

#include "compactxml.h"
#include "schema/validation.h"

namespace cxml {

struct AttributeName {
    const char *name;
    const char *ns;
};

inline AttributeName nameOf(const XML_DOM_Attr *attribute) noexcept {
    AttributeName name{};
    XML_DOM_GetAttrNameSpace(attribute, &name.name, &name.ns);
    return name;
}

inline bool isNamed(const XML_DOM_Attr *attribute, const char *name, const char *ns) noexcept {
    const AttributeName own = nameOf(attribute);
    return XML_Strcmp(own.name, name) == 0 && XML_Strcmp(own.ns, ns) == 0;
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
