// tests/support/schema_maker.h - compiled schemas made at run time from short texts.
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "compactxml.h"

namespace support {

// Owns the records of a schema and the root they are registered with.
//
// A content model is written as in "seq{1,3}(a, b{0,1}, choice{0,u}(c{2,2}, d), any{0,u})":
//
//   seq(...) choice(...) all(...)   model groups
//   a                               an element of that name; one made by declare() under this name, or
//                                   else a new local one without a type
//   any                             a wildcard that accepts any namespace and skips; for others pass
//                                   the record to wildcard() and name it "any"
//   {m,n}                           bounds, {1,1} when left out; u is unbounded
class SchemaMaker {
  public:
    SchemaMaker();
    ~SchemaMaker();
    SchemaMaker(const SchemaMaker &) = delete;
    SchemaMaker &operator=(const SchemaMaker &) = delete;

    SchemaRoot &root() { return root_; }
    const char *keep(std::string_view text);  // a copy that lives as long as this

    // A content model; null for "".
    const SchemaModelGroup *model(std::string_view text);
    // What "any" stands for in the models that follow.
    void wildcard(const SchemaElementWildcard &wildcard) { wildcard_ = wildcard; }
    // What a name stands for in the models that follow, but for the bounds written there.
    void declare(const SchemaElementDecl &decl) { declared_[decl.name] = decl; }

    // Records that live as long as this.
    SchemaElementDecl *element(const SchemaElementDecl &decl);
    SchemaAttributeDecl *attribute(const SchemaAttributeDecl &decl);
    SchemaComplexType *complexType(const SchemaComplexType &type);
    SchemaDerivation *derivation(const SchemaDerivation &derivation);
    SchemaSimpleType *simpleType(const SchemaSimpleType &type);
    SchemaAttributeGroup *attributeGroup(const SchemaAttributeGroup &group);
    SchemaWildcard *attributeWildcard(const SchemaWildcard &wildcard);
    const SchemaAttributeDecl *const *uses(const std::vector<const SchemaAttributeDecl *> &list);
    const SchemaAttributeGroup *const *groups(
        const std::vector<const SchemaAttributeGroup *> &list);

    // Registers a top-level object.
    void add(const void *object, std::int32_t kind);
    // A registered element of this name whose type is a new complex type with this content model.
    SchemaElementDecl *addElement(const char *name, std::string_view modelText, bool mixed = false);

    static constexpr std::uint32_t kUnbounded = 0xFFFFFFFF;
    // An element without namespace, once, without a type.
    static SchemaElementDecl plain(const char *name);
    static SchemaElementDecl ofSimple(const char *name, const SchemaSimpleType *type);
    static SchemaElementDecl ofComplex(const char *name, const SchemaComplexType *type);

  private:
    friend class ModelReader;

    SchemaRoot root_{};
    SchemaElementWildcard wildcard_;
    std::map<std::string, SchemaElementDecl, std::less<>> declared_;
    std::vector<SchemaTypedRef> registered_;
    std::deque<std::string> texts_;
    std::deque<SchemaElementDecl> elements_;
    std::deque<SchemaAttributeDecl> attributes_;
    std::deque<SchemaComplexType> complexTypes_;
    std::deque<SchemaDerivation> derivations_;
    std::deque<SchemaSimpleType> simpleTypes_;
    std::deque<SchemaAttributeGroup> attributeGroups_;
    std::deque<SchemaWildcard> attributeWildcards_;
    std::deque<SchemaElementWildcard> wildcards_;
    std::deque<SchemaModelGroup> groups_;
    std::deque<std::vector<SchemaTypedRef>> particles_;
    std::deque<std::vector<const SchemaAttributeDecl *>> useLists_;
    std::deque<std::vector<const SchemaAttributeGroup *>> groupLists_;
};

// What a validation says: "valid", or the code, the fields that are set and the message, such as
// "1 node=/r name=a ns=u: Expecting element 'u':'a' under element '/r'.". A result other than 0 stands
// in front as "refused".
std::string verdict(XML_DOM_Node *document, const SchemaRoot &root, std::uint32_t mode = 0);
std::string verdict(std::string_view document, const SchemaRoot &root, std::uint32_t mode = 0);

}  // namespace support
