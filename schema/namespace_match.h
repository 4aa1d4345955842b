// schema/namespace_match.h - the rule by which all namespaces of a validation are compared.
#pragma once

namespace cxml {

// Whether a namespace of a document is what a schema asks for.
//
//   instanceNs   null for none
//   constraint   "##any", "##other", one name, or names divided by single blanks; null for none.
//                Other keywords are names like all others
//   targetNs     what "##other" excludes; null for none
//   out          takes the namespace to look for in the schema; may be null
bool Schema_NamespaceMatch(const char *instanceNs, const char *constraint, const char *targetNs,
                           const char **out) noexcept;

}  // namespace cxml
