#include "xsd2c/records/substitutions.h"

#include <algorithm>
#include <cstddef>

namespace xsd2c {

Substitutions::Substitutions(const Components &components) {
    for (const TopComponent &top : components.top) {
        const auto *element = std::get_if<const ElementDecl *>(&top);
        if (element && (*element)->substitutionHead) {
            members_[(*element)->substitutionHead].push_back(*element);
        }
    }
}

bool Substitutions::hasMembers(const ElementDecl &head) const {
    return members_.count(&head) != 0;
}

std::vector<const ElementDecl *> Substitutions::elementsFor(const ElementDecl &head) const {
    std::vector<const ElementDecl *> all = {&head};
    for (std::size_t i = 0; i < all.size(); ++i) {
        const auto direct = members_.find(all[i]);
        if (direct == members_.end()) continue;
        all.insert(all.end(), direct->second.begin(), direct->second.end());
    }
    all.erase(std::remove_if(all.begin(), all.end(),
                             [](const ElementDecl *element) { return element->abstract; }),
              all.end());
    return all;
}

bool Substitutions::isFoundByValidator(const ElementDecl &head) const {
    if (!head.abstract) return false;
    const auto direct = members_.find(&head);
    if (direct == members_.end()) return true;
    return std::none_of(
        direct->second.begin(), direct->second.end(),
        [&](const ElementDecl *member) { return member->abstract || hasMembers(*member); });
}

}  // namespace xsd2c
