// tools/xsd2c/records/attribute_model.h - which attributes a complex type has, with all that its
// groups and its base bring (XML Schema 1.0 Structures, 3.4.2).
#pragma once

#include <optional>
#include <unordered_map>
#include <vector>

#include "xsd2c/xsd/components.h"

namespace xsd2c {

struct AttributeModel {
    std::vector<const AttributeUse *> uses;  // those that may appear
    std::optional<Wildcard> wildcard;
};

class AttributeModels {
  public:
    explicit AttributeModels(Diagnostics &diagnostics) : diagnostics_(diagnostics) {}

    // What a declaration says, with its groups.
    AttributeModel of(const DeclaredAttributes &declared, const Place &place);
    // All that a complex type allows.
    AttributeModel of(const ComplexType &type);

  private:
    std::optional<Wildcard> wildcardOf(const DeclaredAttributes &declared, const Place &place);
    std::optional<Wildcard> both(const std::optional<Wildcard> &a, const Wildcard &b,
                                 const Place &place);

    Diagnostics &diagnostics_;
    std::unordered_map<const DeclaredAttributes *, std::optional<Wildcard>> wildcards_;
};

// Whether a wildcard has a part in what a type or a type that it derives from says of attributes.
bool hasAttributeWildcard(const ComplexType &type);
bool hasAttributeWildcard(const DeclaredAttributes &declared);

// Whether a type that this one derives from prohibits an attribute.
bool doesBaseProhibit(const ComplexType &type);

}  // namespace xsd2c
