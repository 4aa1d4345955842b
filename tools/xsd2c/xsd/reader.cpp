#include "xsd2c/xsd/reader.h"

#include "xsd2c/xsd/attribute_value.h"
#include "xsd2c/xsd/xml_text.h"

namespace xsd2c {
namespace {

bool isFormQualified(const Document &document, const char *attribute) {
    const std::string *form = document.tree->root->value(attribute);
    return form && *form == "qualified";
}

}  // namespace

Reader::Reader(Reading &reading, const Document &document)
    : reading_(reading),
      document_(document),
      elementsQualified_(isFormQualified(document, "elementFormDefault")),
      attributesQualified_(isFormQualified(document, "attributeFormDefault")) {}

bool Reader::isQualified(const SourceElement &element, bool byDefault) const {
    const std::string *form = element.value("form");
    return form ? *form == "qualified" : byDefault;
}

// XML Schema 1.0 Structures, 3.15.3: a document can refer to its own namespace and to those it
// imports.
std::optional<ExpandedName> Reader::resolve(const SourceElement &element,
                                            const std::string &qName) {
    const SplitName split = splitName(qName);
    ExpandedName name{{}, std::string(split.local)};
    if (const std::string *ns = findNamespace(element.scope, split.prefix)) {
        name.ns = *ns;
    } else if (document_.takesNs) {
        name.ns = document_.ns;
    }
    const bool known = name.ns == document_.ns || name.ns == kSchemaNamespace ||
                       document_.imported.count(name.ns) != 0;
    if (known) return name;
    if (name.ns.empty()) {
        error(element, quoted(qName) + " is in no namespace, which is not imported");
    } else {
        error(element,
              "namespace " + quoted(name.ns) + " of " + quoted(qName) + " is not imported");
    }
    return std::nullopt;
}

TypeRef Reader::findType(const SourceElement &element, const std::string &qName) {
    const std::optional<ExpandedName> name = resolve(element, qName);
    if (!name) return unknown();
    if (const TypeRef *found = reading_.symbols.types.find(name->ns, name->local)) return *found;
    error(element, "type '" + qName + "' is not defined");
    return unknown();
}

const SimpleType *Reader::findSimpleType(const SourceElement &element, const std::string &qName) {
    const std::optional<ExpandedName> name = resolve(element, qName);
    if (!name) return nullptr;
    const TypeRef *found = reading_.symbols.types.find(name->ns, name->local);
    if (!found) {
        error(element, "type '" + qName + "' is not defined");
        return nullptr;
    }
    if (const auto *const *simple = std::get_if<const SimpleType *>(found)) return *simple;
    error(element, "type '" + qName + "' is complex, where a simple one is needed");
    return nullptr;
}

}  // namespace xsd2c
