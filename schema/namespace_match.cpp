#include "schema/namespace_match.h"

#include <cstring>

#include "compactxml.h"

namespace cxml {
namespace {

constexpr char kAny[] = "##any";
constexpr char kOther[] = "##other";

bool isSame(const char *a, const char *b) {
    return XML_Strcmp(a, b) == 0;
}

// Whether one of the names that single blanks divide is this one. The name, which may be long, is read
// no further than those in the list.
bool isListed(const char *list, const char *name) {
    for (;;) {
        const char *blank = std::strchr(list, ' ');
        const std::size_t token =
            blank ? static_cast<std::size_t>(blank - list) : std::strlen(list);
        if (std::strncmp(list, name, token) == 0 && name[token] == '\0') return true;
        if (!blank) return false;
        list = blank + 1;
    }
}

}  // namespace

bool Schema_NamespaceMatch(const char *instanceNs, const char *constraint, const char *targetNs,
                           const char **out) noexcept {
    const char *ignored = nullptr;
    if (!out) out = &ignored;
    if (isSame(constraint, kAny)) {
        *out = instanceNs ? instanceNs : kAny;
        return true;
    }
    if (isSame(instanceNs, kAny)) {
        *out = constraint;
        return true;
    }
    *out = instanceNs;  // what is found below is equal to it
    if (isSame(constraint, kOther)) return instanceNs && !isSame(instanceNs, targetNs);
    if (constraint && std::strchr(constraint, ' ')) {
        return isListed(constraint, instanceNs ? instanceNs : "");
    }
    return isSame(instanceNs, constraint);
}

}  // namespace cxml
