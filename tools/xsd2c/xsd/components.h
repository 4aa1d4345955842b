// tools/xsd2c/xsd/components.h - a schema as its author means it: the components of XML Schema 1.0
// Structures, with all references resolved.
//
// Texts are UTF-8. A namespace name of "" is that of no namespace. Components lie in Components and
// stay where they are; pointers between them own nothing.
#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "xsd2c/xsd/diagnostics.h"

namespace xsd2c {

inline constexpr char kSchemaNamespace[] = "http://www.w3.org/2001/XMLSchema";
inline constexpr char kInstanceNamespace[] = "http://www.w3.org/2001/XMLSchema-instance";
inline constexpr char kXmlNamespace[] = "http://www.w3.org/XML/1998/namespace";

// maxOccurs="unbounded"; larger than any count of children.
inline constexpr std::uint32_t kUnbounded = 0xFFFFFFFFu;

struct Component {
    Place place;
    std::string name;  // "" for what is anonymous
    std::string ns;    // the target namespace that applies; of a local declaration as well
};

// ---- simple types ----

enum class FacetKind {
    kLength,
    kMinLength,
    kMaxLength,
    kPattern,
    kEnumeration,
    kWhiteSpace,
    kMaxInclusive,
    kMaxExclusive,
    kMinInclusive,
    kMinExclusive,
    kTotalDigits,
    kFractionDigits,
};

struct Facet {
    FacetKind kind;
    std::string value;  // as written, white space collapsed but for pattern and enumeration
    Place place;
};

struct SimpleType : Component {
    enum class Variety { kBuiltin, kRestriction, kList, kUnion };
    Variety variety = Variety::kBuiltin;   // kBuiltin: name is that of an XML Schema built-in type
    const SimpleType *base = nullptr;      // kRestriction
    std::vector<Facet> facets;             // kRestriction: of this step alone, in document order
    const SimpleType *itemType = nullptr;  // kList
    std::vector<const SimpleType *> members;  // kUnion: memberTypes first, then those within
};

// ---- attributes ----

struct AttributeDecl : Component {
    bool qualified = true;  // of a local one: whether ns counts; a global one is qualified
    bool global = false;
    const SimpleType *type = nullptr;
    std::optional<std::string> fixed;
};

struct AttributeUse {
    enum class Use { kOptional, kRequired, kProhibited };
    Place place;
    const AttributeDecl *decl = nullptr;
    bool isRef = false;  // decl is a global declaration that the use refers to
    Use use = Use::kOptional;
    std::optional<std::string> fixed;  // of the use itself
};

struct Wildcard {
    enum class Names { kAny, kOther, kListed };
    enum class Process { kStrict, kLax, kSkip };
    Place place;
    Names names = Names::kAny;
    std::vector<std::string> listed;  // kListed: each once; "" is the absent namespace
    Process process = Process::kStrict;
    std::string targetNs;  // what kOther excludes, besides the absent namespace
};

struct AttributeGroup;

// What a complex type, a derivation or an attribute group says of attributes, as it is written.
struct DeclaredAttributes {
    std::vector<AttributeUse> uses;
    std::vector<const AttributeGroup *> groups;
    const Wildcard *wildcard = nullptr;
};

struct AttributeGroup : Component {
    DeclaredAttributes attributes;
};

// ---- content models ----

struct ElementDecl;
struct ModelGroup;
struct GroupDefinition;

struct Particle {
    Place place;
    std::uint32_t minOccurs = 1;
    std::uint32_t maxOccurs = 1;  // never 0: such particles are left out; or kUnbounded
    // A local declaration, or a global one that is referred to; a wildcard; a group that is written
    // here; a named one that is referred to.
    std::variant<const ElementDecl *, const Wildcard *, const ModelGroup *, const GroupDefinition *>
        term;
};

struct ModelGroup {
    enum class Compositor { kSequence, kChoice, kAll };
    Compositor compositor = Compositor::kSequence;
    std::vector<Particle> particles;
};

struct GroupDefinition : Component {
    const ModelGroup *group = nullptr;
};

// ---- complex types and elements ----

struct ComplexType;

using TypeRef = std::variant<const SimpleType *, const ComplexType *>;

struct ComplexType : Component {
    enum class Derivation {
        kNone,  // written without simpleContent or complexContent
        kComplexRestriction,
        kComplexExtension,
        kSimpleRestriction,
        kSimpleExtension,
    };
    bool isAnyType = false;  // xs:anyType itself: any content, any attributes, laxly
    bool mixed = false;      // of complexContent where that says so, else of the type
    bool abstract = false;
    Derivation derivation = Derivation::kNone;
    TypeRef base = static_cast<const ComplexType *>(nullptr);  // but for kNone
    std::optional<Particle> content;                           // the group written here, if any
    const SimpleType *contentType = nullptr;  // the simpleType within a simple restriction
    std::vector<Facet> facets;                // of a simple restriction
    DeclaredAttributes attributes;
};

struct ElementDecl : Component {
    bool qualified = true;
    bool global = false;
    bool abstract = false;
    bool nillable = false;
    TypeRef type = static_cast<const ComplexType *>(nullptr);  // never null once read
    std::optional<std::string> fixed;
    const ElementDecl *substitutionHead = nullptr;
};

// ---- a schema ----

using TopComponent =
    std::variant<const SimpleType *, const ComplexType *, const ElementDecl *,
                 const AttributeDecl *, const AttributeGroup *, const GroupDefinition *>;

// Everything that a schema document and those that it includes and imports declare.
struct Components {
    Components() = default;
    Components(const Components &) = delete;
    Components &operator=(const Components &) = delete;

    std::deque<SimpleType> simpleTypes;
    std::deque<ComplexType> complexTypes;
    std::deque<ElementDecl> elements;
    std::deque<AttributeDecl> attributes;
    std::deque<AttributeGroup> attributeGroups;
    std::deque<ModelGroup> modelGroups;
    std::deque<GroupDefinition> groupDefinitions;
    std::deque<Wildcard> wildcards;
    std::deque<std::string> files;  // that places name; in the order in which they were read

    // The top-level ones in document order, those of an included or imported document where it is
    // first included or imported.
    std::vector<TopComponent> top;
};

}  // namespace xsd2c
