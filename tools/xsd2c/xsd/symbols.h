// tools/xsd2c/xsd/symbols.h - the top-level components of a schema by name.
#pragma once

#include <string>
#include <unordered_map>
#include <variant>

#include "xsd2c/xsd/components.h"

namespace xsd2c {

// A name that a QName stands for.
struct ExpandedName {
    std::string ns;
    std::string local;
};

// One symbol space.
template <class T>
class SymbolTable {
  public:
    // False, and nothing happens, if the name is taken.
    bool add(const std::string &ns, const std::string &local, T component) {
        return components_.emplace(key(ns, local), component).second;
    }
    // Null if there is none.
    const T *find(const std::string &ns, const std::string &local) const {
        const auto found = components_.find(key(ns, local));
        return found == components_.end() ? nullptr : &found->second;
    }

  private:
    // No text of a document holds a NUL.
    static std::string key(const std::string &ns, const std::string &local) {
        return ns + '\0' + local;
    }
    std::unordered_map<std::string, T> components_;
};

struct Symbols {
    SymbolTable<TypeRef> types;
    SymbolTable<const ElementDecl *> elements;
    SymbolTable<const AttributeDecl *> attributes;
    SymbolTable<const AttributeGroup *> attributeGroups;
    SymbolTable<const GroupDefinition *> groups;
    SymbolTable<Place> constraints;  // unique, key and keyref
    SymbolTable<Place> notations;

    const SimpleType *anySimpleType = nullptr;
    const ComplexType *anyType = nullptr;
    // Stands in for types that are not there, so that nothing more is said of what they would be.
    const ComplexType *unknownType = nullptr;  // null until there is need of it
};

// Makes it.
const ComplexType *unknownType(Components &components, Symbols &symbols);

// Adds the types of XML Schema 1.0 Datatypes, and xs:anyType.
void addBuiltinTypes(Components &components, Symbols &symbols);

// Adds the attributes of the XML namespace, as declared by an xs:import.
void addXmlNamespace(const Place &import, Components &components, Symbols &symbols);

const SimpleType *builtinType(const Symbols &symbols, const char *name);

// What a type is derived from, that of a built-in one among them; null for xs:anySimpleType.
const SimpleType *baseOf(const Symbols &symbols, const SimpleType &type);

}  // namespace xsd2c
