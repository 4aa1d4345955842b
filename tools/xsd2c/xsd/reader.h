// tools/xsd2c/xsd/reader.h - from the elements of schema documents to components, within the front
// end.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "xsd2c/xsd/components.h"
#include "xsd2c/xsd/diagnostics.h"
#include "xsd2c/xsd/documents.h"
#include "xsd2c/xsd/grammar.h"
#include "xsd2c/xsd/source_tree.h"
#include "xsd2c/xsd/symbols.h"

namespace xsd2c {

// What all documents of a schema share.
struct Reading {
    Components &components;
    Diagnostics &diagnostics;
    Symbols symbols;
    struct Refer {
        Place place;
        std::string shown;  // as written
        ExpandedName name;
    };
    std::vector<Refer> keyrefs;  // to be looked up when all constraints are known

    void definedTwice(const SourceElement &element, const std::string &name, const Place &first) {
        diagnostics.error(element.place, element.name + " '" + name +
                                             "' is defined twice; first at " + placeText(first));
    }
};

// A top-level component of which the name is known and the content is not yet read.
struct Declared {
    const Document *document;
    const SourceElement *element;
    std::variant<SimpleType *, ComplexType *, ElementDecl *, AttributeDecl *, AttributeGroup *,
                 GroupDefinition *>
        component;
};

// Makes the component of a top-level element; its content is to be read when all names are known.
// Nothing for what has none, such as a notation.
std::optional<Declared> declare(Reading &reading, const Document &document,
                                const SourceElement &element);

// Tells of what xs:schema itself says for all of a document.
void noteDefaults(const Document &document, Diagnostics &diagnostics);

// Reads what stands within the components of one document. References are resolved at once;
// whatever cannot be is told and something harmless takes its place.
//
// Functions call each other as elements are nested, which is 256 deep at most.
class Reader {
  public:
    Reader(Reading &reading, const Document &document);

    void readSimpleType(const SourceElement &element, SimpleType &type);
    void readComplexType(const SourceElement &element, ComplexType &type);
    void readElement(const SourceElement &element, ElementDecl &declaration);
    void readAttribute(const SourceElement &element, AttributeDecl &declaration);
    void readAttributeGroup(const SourceElement &element, AttributeGroup &group);
    void readGroup(const SourceElement &element, GroupDefinition &group);

  private:
    // names (reader.cpp)
    std::optional<ExpandedName> resolve(const SourceElement &element, const std::string &qName);
    TypeRef unknown() { return unknownType(reading_.components, reading_.symbols); }
    TypeRef findType(const SourceElement &element, const std::string &qName);
    const SimpleType *findSimpleType(const SourceElement &element, const std::string &qName);
    template <class T>
    T find(const SymbolTable<T> &table, const SourceElement &element, const std::string &qName,
           const char *kind, const char *missing);
    bool isQualified(const SourceElement &element, bool byDefault) const;
    template <class T>
    T &add(std::deque<T> &components, const SourceElement &element);

    // simple types (read_simple.cpp)
    const SimpleType *readInnerType(const SourceElement &parent);
    void readRestriction(const SourceElement &element, SimpleType &type);
    void readList(const SourceElement &element, SimpleType &type);
    void readUnion(const SourceElement &element, SimpleType &type);
    std::vector<Facet> readFacets(const SourceElement &element);
    // Tells of what a built-in type asks for and the records cannot hold.
    void noteType(const Place &place, const TypeRef &type, const std::string &where);

    // attributes (read_attributes.cpp)
    DeclaredAttributes readAttributes(const SourceElement &parent);
    std::optional<AttributeUse> readAttributeUse(const SourceElement &element);
    const AttributeDecl *readLocalAttribute(const SourceElement &element);
    Wildcard &readWildcard(const SourceElement &element);

    // complex types (read_complex.cpp)
    void readSimpleContent(const SourceElement &element, ComplexType &type);
    void readComplexContent(const SourceElement &element, ComplexType &type);
    void readContentModel(const SourceElement &parent, ComplexType &type);

    // content models (read_particles.cpp)
    std::optional<Particle> readParticle(const SourceElement &element);
    std::optional<Particle> readGroupRef(const SourceElement &element, Particle particle);
    std::optional<Particle> readElementParticle(const SourceElement &element, Particle particle);
    const ModelGroup *readModelGroup(const SourceElement &element);

    // elements (read_element.cpp)
    TypeRef readElementType(const SourceElement &element);
    void readConstraint(const SourceElement &element);

    void error(const SourceElement &element, const std::string &text) {
        reading_.diagnostics.error(element.place, text);
    }

    Reading &reading_;
    const Document &document_;
    bool elementsQualified_;
    bool attributesQualified_;
};

template <class T>
T &Reader::add(std::deque<T> &components, const SourceElement &element) {
    T &component = components.emplace_back();
    component.place = element.place;
    component.ns = document_.ns;
    return component;
}

// The component that a QName refers to; null, with a message, if there is none.
template <class T>
T Reader::find(const SymbolTable<T> &table, const SourceElement &element, const std::string &qName,
               const char *kind, const char *missing) {
    const std::optional<ExpandedName> name = resolve(element, qName);
    if (!name) return nullptr;
    if (const T *found = table.find(name->ns, name->local)) return *found;
    error(element, std::string(kind) + " '" + qName + "' is not " + missing);
    return nullptr;
}

}  // namespace xsd2c
