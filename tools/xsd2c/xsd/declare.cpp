#include "xsd2c/xsd/reader.h"

namespace xsd2c {
namespace {

Place placeOf(const Component *component) {
    return component->place;
}
Place placeOf(const TypeRef &type) {
    return std::visit([](const auto *known) { return known->place; }, type);
}

// Makes the components of one top-level element.
class Declarer {
  public:
    Declarer(Reading &reading, const Document &document, const SourceElement &element)
        : reading_(reading), document_(document), element_(element) {}

    std::optional<Declared> declare();

  private:
    // Entry is what the table holds. A second component of a name is read, but not kept.
    template <class Entry, class T>
    T *add(std::deque<T> &components, SymbolTable<Entry> &table) {
        T &component = components.emplace_back();
        component.place = element_.place;
        component.ns = document_.ns;
        const std::string *name = element_.value("name");
        if (!name) return &component;  // which has been told
        component.name = *name;
        if (table.add(component.ns, component.name, &component)) {
            reading_.components.top.emplace_back(&component);
        } else {
            reading_.definedTwice(element_, component.name,
                                  placeOf(*table.find(component.ns, component.name)));
        }
        return &component;
    }
    void declareNotation();

    Reading &reading_;
    const Document &document_;
    const SourceElement &element_;
};

void Declarer::declareNotation() {
    const std::string *name = element_.value("name");
    if (!name) return;
    SymbolTable<Place> &notations = reading_.symbols.notations;
    if (!notations.add(document_.ns, *name, element_.place)) {
        reading_.definedTwice(element_, *name, *notations.find(document_.ns, *name));
        return;
    }
    reading_.diagnostics.notEnforced(element_.place, "notation '" + *name + "'");
}

std::optional<Declared> Declarer::declare() {
    Components &components = reading_.components;
    Symbols &symbols = reading_.symbols;
    Declared declared{&document_, &element_, {}};
    switch (element_.construct) {
        case Construct::kTopSimpleType:
            declared.component = add(components.simpleTypes, symbols.types);
            break;
        case Construct::kTopComplexType:
            declared.component = add(components.complexTypes, symbols.types);
            break;
        case Construct::kTopElement: {
            ElementDecl *element = add(components.elements, symbols.elements);
            element->global = true;
            declared.component = element;
            break;
        }
        case Construct::kTopAttribute: {
            AttributeDecl *attribute = add(components.attributes, symbols.attributes);
            attribute->global = true;
            declared.component = attribute;
            break;
        }
        case Construct::kAttributeGroup:
            declared.component = add(components.attributeGroups, symbols.attributeGroups);
            break;
        case Construct::kGroup:
            declared.component = add(components.groupDefinitions, symbols.groups);
            break;
        case Construct::kNotation:
            declareNotation();
            return std::nullopt;
        default:
            return std::nullopt;
    }
    return declared;
}

}  // namespace

std::optional<Declared> declare(Reading &reading, const Document &document,
                                const SourceElement &element) {
    return Declarer(reading, document, element).declare();
}

void noteDefaults(const Document &document, Diagnostics &diagnostics) {
    const SourceElement &schema = *document.tree->root;
    for (const char *name : {"blockDefault", "finalDefault"}) {
        const std::string *value = schema.value(name);
        if (value && !value->empty()) diagnostics.notEnforced(schema.place, name);
    }
}

}  // namespace xsd2c
