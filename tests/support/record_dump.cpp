#include "tests/support/record_dump.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <deque>
#include <functional>
#include <map>
#include <set>
#include <string_view>
#include <utility>

namespace support {
namespace {

std::string quoted(const char *text) {
    if (!text) return "null";
    std::string result = "\"";
    for (const char c : std::string_view(text)) {
        if (c >= 0x20 && c <= 0x7E && c != '"' && c != '\\') {
            result += c;
            continue;
        }
        char escape[8];
        std::snprintf(escape, sizeof escape, "\\x%02X",
                      static_cast<unsigned>(static_cast<unsigned char>(c)));
        result += escape;
    }
    return result + "\"";
}

class Dumper {
  public:
    void list(const char *name, const SchemaObjectList &list, std::int32_t kind,
              const std::set<const void *> &skipped) {
        text_ += std::string(name) + ":";
        for (std::uint32_t i = 0; i < list.count; ++i) {
            const void *object = list.items[i];
            if (skipped.count(object) == 0) text_ += " " + refTo(SchemaTypedRef{object, kind});
        }
        text_ += '\n';
    }

    // A line for each record that has been referred to, until no new ones come up.
    std::string finish() {
        while (!waiting_.empty()) {
            const std::function<void()> describe = std::move(waiting_.front());
            waiting_.pop_front();
            describe();
            text_ += '\n';
        }
        return std::move(text_);
    }

  private:
    // The name of a record, which is described later when this is the first time.
    template <class T>
    std::string refTo(const char *kind, const T *record) {
        if (!record) return "null";
        std::map<const void *, std::size_t> &numbers = numbers_[kind];
        const auto [entry, isNew] = numbers.emplace(record, numbers.size() + 1);
        std::string name = kind + std::to_string(entry->second);
        if (isNew) {
            waiting_.push_back([this, name, record] {
                text_ += name;
                describe(*record);
            });
        }
        return name;
    }
    std::string refTo(const SchemaSimpleType *record) { return refTo("simpleType", record); }
    std::string refTo(const SchemaComplexType *record) { return refTo("complexType", record); }
    std::string refTo(const SchemaDerivation *record) { return refTo("derivation", record); }
    std::string refTo(const SchemaModelGroup *record) { return refTo("group", record); }
    std::string refTo(const SchemaElementDecl *record) { return refTo("element", record); }
    std::string refTo(const SchemaElementWildcard *record) { return refTo("anyElement", record); }
    std::string refTo(const SchemaAttributeDecl *record) { return refTo("attribute", record); }
    std::string refTo(const SchemaWildcard *record) { return refTo("anyAttribute", record); }
    std::string refTo(const SchemaAttributeGroup *record) {
        return refTo("attributeGroup", record);
    }
    std::string refTo(const SchemaTypedRef &ref) {
        const void *object = ref.object;
        switch (ref.kind) {
            case SCHEMA_KIND_SIMPLE_TYPE:
                return refTo(static_cast<const SchemaSimpleType *>(object));
            case SCHEMA_KIND_COMPLEX_TYPE:
                return refTo(static_cast<const SchemaComplexType *>(object));
            case SCHEMA_KIND_ELEMENT:
                return refTo(static_cast<const SchemaElementDecl *>(object));
            case SCHEMA_KIND_ELEMENT_WILDCARD:
                return refTo(static_cast<const SchemaElementWildcard *>(object));
            case SCHEMA_KIND_MODEL_GROUP:
                return refTo(static_cast<const SchemaModelGroup *>(object));
            case SCHEMA_KIND_ATTRIBUTE:
                return refTo(static_cast<const SchemaAttributeDecl *>(object));
            case SCHEMA_KIND_ATTRIBUTE_GROUP:
                return refTo(static_cast<const SchemaAttributeGroup *>(object));
            default:
                return (object ? "something of kind " : "null of kind ") + std::to_string(ref.kind);
        }
    }
    std::string refTo(const SchemaFacet &facet) {
        return quoted(facet.value) + " as " + std::to_string(facet.kind) + " of " +
               std::to_string(facet.baseCode);
    }

    template <class Value>
    void field(const char *name, const Value &value) {
        text_ += std::string(" ") + name + "=" + value;
    }
    void text(const char *name, const char *value) { field(name, quoted(value)); }
    template <class Number>
    void number(const char *name, Number value) {
        field(name, std::to_string(value));
    }
    template <class T>
    void ref(const char *name, const T *record) {
        field(name, refTo(record));
    }
    // The entries of an array are what counts; a null one differs from an empty one.
    template <class T>
    void array(const char *name, const T *entries, std::uint32_t count) {
        std::string list = entries ? "[" : "null[";
        for (std::uint32_t i = 0; entries && i < count; ++i) {
            if (i > 0) list += ", ";
            list += refTo(entries[i]);
        }
        field(name, list + "]*" + std::to_string(count));
    }

    void describe(const SchemaSimpleType &r) {
        text("name", r.name);
        text("ns", r.ns);
        number("builtinCode", r.builtinCode);
        number("flags16", r.flags16);
        number("memberCount", r.memberCount);
        // A restriction has its base there, and does not count it.
        array("members", r.members, r.memberCount > 0 ? r.memberCount : r.members ? 1 : 0);
        array("facets", r.facets, r.facetCount);
    }
    void describe(const SchemaComplexType &r) {
        text("name", r.name);
        text("ns", r.targetNamespace);
        number("mixed", r.mixed);
        ref("content", r.content);
        ref("particle", r.particle);
        attributes(r);
    }
    void describe(const SchemaDerivation &r) {
        number("kind", r.derivationKind);
        number("baseKind", r.baseTypeKind);
        field("base", refTo(SchemaTypedRef{r.baseType, r.baseTypeKind}));
        ref("particle", r.particle);
        array("facets", r.facets, r.facetCount);
        attributes(r);
    }
    void describe(const SchemaModelGroup &r) {
        number("compositor", r.compositor);
        bounds(r);
        array("particles", r.particles, r.particleCount);
    }
    void describe(const SchemaElementDecl &r) {
        ref("ref", r.ref);
        text("name", r.name);
        text("ns", r.targetNamespace);
        text("head", r.substitutionGroupName);
        text("headNs", r.substitutionGroupNamespace);
        number("typeKind", r.typeKind);
        field("type", refTo(SchemaTypedRef{r.type, r.typeKind}));
        text("fixed", r.fixedValue);
        number("hasFixed", r.hasFixed);
        bounds(r);
        number("form", r.form);
        number("abstract", r.abstract);
        number("nillable", r.nillable);
        text("alternativeNs", r.alternativeNamespace);
    }
    void describe(const SchemaElementWildcard &r) {
        wildcard(r);
        bounds(r);
    }
    void describe(const SchemaWildcard &r) { wildcard(r); }
    void describe(const SchemaAttributeDecl &r) {
        ref("ref", r.ref);
        text("name", r.name);
        text("ns", r.targetNamespace);
        ref("type", r.type);
        text("fixed", r.fixedValue);
        number("hasFixed", r.hasFixed);
        number("use", r.use);
        number("form", r.form);
    }
    void describe(const SchemaAttributeGroup &r) {
        ref("ref", r.ref);
        attributes(r);
    }

    template <class T>
    void attributes(const T &r) {
        array("uses", r.attributeUses, r.attributeUseCount);
        array("groups", r.attributeGroups, r.attributeGroupCount);
        ref("wildcard", r.attributeWildcard);
    }
    template <class T>
    void wildcard(const T &r) {
        text("ns", r.targetNamespace);
        text("names", r.namespaceConstraint);
        number("process", r.processContents);
    }
    template <class T>
    void bounds(const T &r) {
        number("min", r.minOccurs);
        number("max", r.maxOccurs);
    }

    std::string text_;
    std::deque<std::function<void()>> waiting_;
    std::map<std::string, std::map<const void *, std::size_t>> numbers_;  // by kind
};

void addObjects(std::set<const void *> &objects, const SchemaObjectList &list) {
    if (list.count > 0) objects.insert(list.items, list.items + list.count);
}

std::set<const void *> builtinObjects() {
    SchemaRoot root;
    Schema_InitRoot(&root);
    std::set<const void *> objects;
    addObjects(objects, root.simpleTypes);
    addObjects(objects, root.complexTypes);
    Schema_ExitRoot(&root);
    return objects;
}

}  // namespace

std::string dumpRecords(const SchemaRoot &root) {
    const std::set<const void *> skipped = builtinObjects();
    Dumper dumper;
    dumper.list("simpleTypes", root.simpleTypes, SCHEMA_KIND_SIMPLE_TYPE, skipped);
    dumper.list("complexTypes", root.complexTypes, SCHEMA_KIND_COMPLEX_TYPE, skipped);
    dumper.list("elements", root.elements, SCHEMA_KIND_ELEMENT, skipped);
    dumper.list("attributes", root.attributes, SCHEMA_KIND_ATTRIBUTE, skipped);
    dumper.list("attributeGroups", root.attributeGroups, SCHEMA_KIND_ATTRIBUTE_GROUP, skipped);
    return dumper.finish();
}

}  // namespace support
