// fuzz/support/document_writer.h - documents that follow a compiled schema, or nearly so.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "compactxml.h"
#include "fuzz/support/fuzz_input.h"

namespace fuzz {

enum class Expected { kValid, kInvalid, kUnknown };

// Walks the records of a schema and writes what they allow; the input decides where there is a
// choice. At one place, which the input names, something may be made wrong.
class DocumentWriter {
  public:
    DocumentWriter(const SchemaRoot &root, FuzzInput &input);

    // A document in GB18030 whose root is one of the registered elements.
    std::string write();
    Expected expected() const { return expected_; }

  private:
    struct Attribute {
        std::vector<const SchemaAttributeDecl *> decls;  // all that speak of this name
        bool required = false;
        bool prohibited = false;
    };
    using Name = std::pair<std::string, std::string>;  // namespace name and local name
    // What a complex type and those it is derived from say of attributes.
    struct Attributes {
        std::map<Name, Attribute> named;
        std::vector<const SchemaWildcard *> wildcards;
    };
    enum class Trouble {
        kNone,
        kValue,
        kMissingAttribute,
        kStrangeAttribute,
        kStrangeChild,
        kStrangeText,
        kNoContent,
        kDoubleContent,
        kReversedGroups,
        kCount
    };

    bool isSmall() const { return depth_ > 10 || out_.size() > 6000; }
    Trouble troubleHere();
    void spoil(Expected expected);

    void writeElement(const SchemaElementDecl &particle, bool global);
    void writeContent(const SchemaElementDecl &decl, Trouble trouble);
    void writeValue(const void *type, std::int32_t kind, bool nillable, Trouble trouble);
    void writeGroup(const SchemaModelGroup &group);
    void writeParticle(const SchemaTypedRef &particle);
    void writeOnce(const SchemaModelGroup &group);
    void writeAll(const SchemaModelGroup &group);
    void writeWildcard(const SchemaElementWildcard &wildcard);
    void writeModel(const SchemaComplexType &type);
    void writeAttributes(const SchemaComplexType &type, Trouble trouble);
    void writeAttribute(const std::string &ns, const std::string &name, std::string_view value);
    void writeText(std::string_view text);

    std::uint32_t occurrences(std::uint32_t least, std::uint32_t most);
    const SchemaElementDecl *member(const SchemaElementDecl &head);
    std::vector<const SchemaElementDecl *> globals(const char *ns) const;

    void collect(const SchemaComplexType &type, Attributes *found) const;
    void collectUses(const SchemaAttributeDecl *const *uses, std::uint32_t count,
                     Attributes *found) const;
    void collectGroups(const SchemaAttributeGroup *const *groups, std::uint32_t count,
                       Attributes *found) const;

    const SchemaRoot &root_;
    FuzzInput &input_;
    std::string out_;
    bool defaultNamespaces_;
    std::size_t troubleAt_;
    Trouble trouble_;
    bool reversed_ = false;
    std::size_t elements_ = 0;
    std::size_t depth_ = 0;
    Expected expected_ = Expected::kValid;
};

}  // namespace fuzz
