#include "xsd2c/records/content_term.h"

#include <algorithm>

namespace xsd2c {
namespace {

// Groups that refer to groups twice at every level have more particles than there is memory.
constexpr std::size_t kMostTerms = 100000;

class TermBuilder {
  public:
    explicit TermBuilder(const Substitutions &substitutions) : substitutions_(substitutions) {}

    // As deep as groups lie in groups, which the front end keeps small.
    Term build(const Particle &particle) {
        Term term;
        term.place = particle.place;
        term.minOccurs = particle.minOccurs;
        term.maxOccurs = particle.maxOccurs;
        if (++count_ > kMostTerms) return term;
        if (const auto *element = std::get_if<const ElementDecl *>(&particle.term)) {
            term.kind = Term::Kind::kElement;
            fillNames(term, **element);
        } else if (const auto *wildcard = std::get_if<const Wildcard *>(&particle.term)) {
            term.kind = Term::Kind::kWildcard;
            term.wildcard = *wildcard;
        } else if (const auto *group = std::get_if<const ModelGroup *>(&particle.term)) {
            fillGroup(term, **group);
        } else {
            fillGroup(term, *std::get<const GroupDefinition *>(particle.term)->group);
        }
        return term;
    }

    bool tooLarge() const { return count_ > kMostTerms; }

  private:
    void fillNames(Term &term, const ElementDecl &element) {
        const auto name = [](const ElementDecl &decl) {
            return Term::Name{decl.qualified ? decl.ns : std::string(), decl.name};
        };
        if (!element.global) {
            term.names.push_back(name(element));
            return;
        }
        for (const ElementDecl *member : substitutions_.elementsFor(element)) {
            term.names.push_back(name(*member));
        }
        count_ += term.names.size();
    }

    void fillGroup(Term &term, const ModelGroup &group) {
        term.kind = group.compositor == ModelGroup::Compositor::kSequence ? Term::Kind::kSequence
                    : group.compositor == ModelGroup::Compositor::kChoice ? Term::Kind::kChoice
                                                                          : Term::Kind::kAll;
        for (const Particle &particle : group.particles) {
            if (tooLarge()) return;
            term.children.push_back(build(particle));
        }
    }

    const Substitutions &substitutions_;
    std::size_t count_ = 0;
};

}  // namespace

const ModelGroup *groupOf(const Particle &particle) {
    if (const auto *group = std::get_if<const ModelGroup *>(&particle.term)) return *group;
    if (const auto *definition = std::get_if<const GroupDefinition *>(&particle.term)) {
        return (*definition)->group;
    }
    return nullptr;
}

bool addsNothing(const Particle &content) {
    const ModelGroup &group = *groupOf(content);
    return group.particles.empty() &&
           (group.compositor != ModelGroup::Compositor::kChoice || content.minOccurs == 0);
}

std::vector<const ComplexType *> extensionChain(const ComplexType &type) {
    std::vector<const ComplexType *> chain = {&type};
    while (chain.back()->derivation == ComplexType::Derivation::kComplexExtension) {
        chain.push_back(std::get<const ComplexType *>(chain.back()->base));
    }
    std::reverse(chain.begin(), chain.end());
    return chain;
}

std::optional<Term> contentTerm(const ComplexType &type, const Substitutions &substitutions) {
    TermBuilder builder{substitutions};
    Term sequence;
    sequence.place = type.place;
    for (const ComplexType *step : extensionChain(type)) {
        if (step->content) sequence.children.push_back(builder.build(*step->content));
    }
    if (builder.tooLarge()) return std::nullopt;
    if (sequence.children.size() == 1) {
        // Not to be changed in place: the child is a part of what it would replace.
        Term only = std::move(sequence.children.front());
        return only;
    }
    return sequence;
}

}  // namespace xsd2c
