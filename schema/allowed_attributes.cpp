#include "schema/allowed_attributes.h"

#include "parser/namespace_scope.h"
#include "schema/message.h"

namespace cxml {
namespace {

constexpr char kInstanceNamespace[] = "http://www.w3.org/2001/XMLSchema-instance";

constexpr SchemaAllowedAttribute kAllowed[] = {
    {Schema_LanguageHandler, kXmlNamespace, "lang"},
    {nullptr, kXmlNamespace, "space"},
    {nullptr, kXmlNamespace, "base"},
    {nullptr, kInstanceNamespace, "nil"},
};

}  // namespace

const SchemaAllowedAttribute *findAllowed(const XML_DOM_Attr *attribute) noexcept {
    if (!attribute->ns) return nullptr;
    for (const SchemaAllowedAttribute &allowed : kAllowed) {
        if (isNamed(attribute, allowed.localName, allowed.namespaceName)) return &allowed;
    }
    return nullptr;
}

void checkAllowedValue(XML_DOM_Node *element, const XML_DOM_Attr *attribute,
                       const SchemaAllowedAttribute &allowed, Validation &run) noexcept {
    const char *value = XML_DOM_GetAttrValByHandle(attribute);
    if (!allowed.handler || allowed.handler(value) == 1) return;
    constexpr std::size_t kQuoted = 20;
    writeMessage(run.message, sizeof run.message,
                 {beginningOf(value, kQuoted), " is not a valid value for ", allowed.namespaceName,
                  ":", allowed.localName});
    Schema_SetError(run, 4,
                    {.node = element,
                     .attrName = allowed.localName,
                     .attrNs = allowed.namespaceName,
                     .text = run.message});
}

}  // namespace cxml
