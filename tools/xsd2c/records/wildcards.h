// tools/xsd2c/records/wildcards.h - which names wildcards admit, and what of two admits (XML Schema
// 1.0 Structures, 3.10.6).
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "xsd2c/xsd/components.h"

namespace xsd2c {

// What both admit. None when no wildcard says so, as for the others of two different namespaces.
// How it is processed is the first one's.
std::optional<Wildcard> intersected(const Wildcard &a, const Wildcard &b);

// What either admits. None when no wildcard says so. How it is processed is the first one's.
std::optional<Wildcard> united(const Wildcard &a, const Wildcard &b);

// As a record says it: "##any", "##other", or names divided by single blanks, of which the empty
// one is the absent namespace; a name that there cannot be for none of all. In UTF-8.
std::string constraintOf(const Wildcard &wildcard);

}  // namespace xsd2c
