#include "xsd2c/records/content_check.h"

#include <optional>
#include <vector>

#include "xsd2c/records/content_term.h"
#include "xsd2c/records/determinism.h"
#include "xsd2c/records/greedy.h"

namespace xsd2c {

void ContentCheck::check(const ComplexType &type, const std::string &name) {
    if (type.derivation == ComplexType::Derivation::kComplexExtension &&
        std::get<const ComplexType *>(type.base)->isAnyType && type.content &&
        !addsNothing(*type.content)) {
        return diagnostics_.error(
            type.place, "the content of " + name + " is ambiguous: anything may stand before it");
    }
    const std::optional<Term> model = contentTerm(type, substitutions_);
    bool tooLarge = !model;
    std::vector<Ambiguity> found;
    if (model) found = findAmbiguities(*model, tooLarge);
    if (tooLarge) {
        return diagnostics_.error(type.place, "the content of " + name +
                                                  " has too many particles when all groups stand "
                                                  "in their places");
    }
    for (const Ambiguity &ambiguity : found) {
        const Place &a = ambiguity.first, &b = ambiguity.second;
        // Types that extend this one have the same to tell.
        if (!ambiguities_.emplace(a.file, a.line, a.column, b.file, b.line, b.column).second) {
            continue;
        }
        diagnostics_.error(b, "the content of " + name + " is ambiguous: " + ambiguity.child +
                                  " may belong here or to " + placeText(a));
    }
    if (!found.empty()) return;
    for (const GreedyFailure &failure : findGreedyFailures(*model)) {
        diagnostics_.error(failure.place, "the content of " + name + " has " + failure.text +
                                              ", which the validator would judge wrongly");
    }
}

}  // namespace xsd2c
