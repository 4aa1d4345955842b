// tools/xsd2c/records/substitutions.h - which elements may stand for which (XML Schema 1.0
// Structures, 3.3.6).
#pragma once

#include <unordered_map>
#include <vector>

#include "xsd2c/xsd/components.h"

namespace xsd2c {

class Substitutions {
  public:
    explicit Substitutions(const Components &components);

    // What may stand where a declaration is referred to: itself and all members of its group, of
    // every level, but for those that are abstract; in the order in which they are declared.
    std::vector<const ElementDecl *> elementsFor(const ElementDecl &head) const;

    bool hasMembers(const ElementDecl &head) const;
    // Whether the validator finds the members by itself: the head is abstract, and all members are
    // elements of its own that can appear.
    bool isFoundByValidator(const ElementDecl &head) const;

  private:
    std::unordered_map<const ElementDecl *, std::vector<const ElementDecl *>> members_;  // direct
};

}  // namespace xsd2c
