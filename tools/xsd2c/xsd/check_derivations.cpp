#include <string>
#include <unordered_map>
#include <vector>

#include "xsd2c/xsd/component_checks.h"

namespace xsd2c {
namespace {

using Derivation = ComplexType::Derivation;

bool isBuiltinList(const SimpleType &type) {
    return type.name == "NMTOKENS" || type.name == "IDREFS" || type.name == "ENTITIES";
}

std::string nameOf(const ComplexType &type) {
    return type.name.empty() ? "a complexType" : "complexType '" + type.name + "'";
}

// What of a complex type matters to those that are derived from it.
struct Content {
    bool simple = false;
    bool empty = true;  // no children; text only if mixed
    bool mixed = false;
    bool all = false;  // an xs:all that has elements
};

class DerivationCheck {
  public:
    explicit DerivationCheck(const Reading &reading) : reading_(reading) {}
    void check(const SimpleType &type);
    void check(const ComplexType &type);

  private:
    Content contentWritten(const ComplexType &type) const;
    void checkSimpleContent(const ComplexType &type);
    void checkComplexContent(const ComplexType &type);
    Content extend(const ComplexType &type, const Content &base, const std::string &baseName,
                   Content own);
    void restrictContent(const ComplexType &type, const Content &base, const std::string &baseName,
                         const Content &own);
    void error(const Component &component, const std::string &text) {
        reading_.diagnostics.error(component.place, text);
    }

    const Reading &reading_;
    std::unordered_map<const SimpleType *, bool> holdsList_;  // is a list, or a union with one
    std::unordered_map<const ComplexType *, Content> contents_;
};

void DerivationCheck::check(const SimpleType &type) {
    bool holdsList = type.variety == SimpleType::Variety::kList ||
                     (type.variety == SimpleType::Variety::kBuiltin && isBuiltinList(type));
    if (type.base) holdsList = holdsList_[type.base];
    for (const SimpleType *member : type.members) holdsList = holdsList || holdsList_[member];
    holdsList_[&type] = holdsList;
    if (type.itemType && holdsList_[type.itemType]) {
        error(type, "the items of a list cannot be lists");
    }
}

// XML Schema 1.0 Structures, 3.4.2: what counts as no content.
bool isNothing(const Particle &particle) {
    const auto *const *group = std::get_if<const ModelGroup *>(&particle.term);
    if (!group || !(*group)->particles.empty()) return false;
    return (*group)->compositor != ModelGroup::Compositor::kChoice || particle.minOccurs == 0;
}

bool isAll(const Particle &particle) {
    if (const auto *const *group = std::get_if<const ModelGroup *>(&particle.term)) {
        return (*group)->compositor == ModelGroup::Compositor::kAll;
    }
    const auto *const *named = std::get_if<const GroupDefinition *>(&particle.term);
    return named && (*named)->group->compositor == ModelGroup::Compositor::kAll;
}

Content DerivationCheck::contentWritten(const ComplexType &type) const {
    Content content;
    content.mixed = type.mixed;
    content.empty = !type.content || isNothing(*type.content);
    content.all = !content.empty && isAll(*type.content);
    return content;
}

void DerivationCheck::checkSimpleContent(const ComplexType &type) {
    Content &content = contents_[&type];
    content.simple = true;
    const bool extension = type.derivation == Derivation::kSimpleExtension;
    if (const auto *const *simple = std::get_if<const SimpleType *>(&type.base)) {
        if (extension) return;
        error(type, "the base of " + nameOf(type) + ", '" + (*simple)->name +
                        "', is a simple type, which simpleContent cannot restrict");
        return;
    }
    const ComplexType &baseType = *std::get<const ComplexType *>(type.base);
    const Content &base = contents_[&baseType];
    if (base.simple) return;
    // The text of mixed content may be restricted to that of a simple type.
    if (!extension && base.mixed && type.contentType) return;
    if (&baseType == reading_.symbols.unknownType) return;
    error(type, "the base of " + nameOf(type) + ", '" + baseType.name +
                    "', does not have simple content");
}

// XML Schema 1.0 Structures, 3.4.6, "Derivation Valid (Extension)".
Content DerivationCheck::extend(const ComplexType &type, const Content &base,
                                const std::string &baseName, Content own) {
    if (own.empty && !own.mixed) return base;
    if (base.empty && !base.mixed) return own;
    if (own.mixed != base.mixed) {
        error(type, nameOf(type) + (own.mixed ? " is mixed, but its base " + baseName + " is not"
                                              : " is not mixed, but its base " + baseName + " is"));
    }
    if (base.all && !own.empty) {
        error(type, nameOf(type) + " extends " + baseName + ", the content of which is an 'all'");
    } else if (own.all && !base.empty) {
        error(type, nameOf(type) + " extends " + baseName + " by an 'all'");
    }
    own.all = own.all || base.all;
    own.empty = own.empty && base.empty;
    return own;
}

void DerivationCheck::restrictContent(const ComplexType &type, const Content &base,
                                      const std::string &baseName, const Content &own) {
    if (own.mixed && !base.mixed) {
        error(type, nameOf(type) + " is mixed, but its base " + baseName + " is not");
    }
    if (!own.empty && base.empty) {
        error(type, nameOf(type) + " has content, but its base " + baseName + " has none");
    }
}

void DerivationCheck::checkComplexContent(const ComplexType &type) {
    Content own = contentWritten(type);
    contents_[&type] = own;
    if (const auto *const *simple = std::get_if<const SimpleType *>(&type.base)) {
        error(type, "the base of " + nameOf(type) + ", '" + (*simple)->name +
                        "', is a simple type, which needs simpleContent");
        return;
    }
    const ComplexType &baseType = *std::get<const ComplexType *>(type.base);
    if (&baseType == reading_.symbols.unknownType) return;
    const Content base = contents_[&baseType];
    const std::string baseName = "'" + baseType.name + "'";
    if (base.simple) {
        error(type, "the base of " + nameOf(type) + ", " + baseName + ", has simple content");
    } else if (type.derivation == Derivation::kComplexExtension) {
        contents_[&type] = extend(type, base, baseName, own);
    } else {
        restrictContent(type, base, baseName, own);
    }
}

void DerivationCheck::check(const ComplexType &type) {
    switch (type.derivation) {
        case Derivation::kNone: {
            Content content = contentWritten(type);
            if (type.isAnyType) content.empty = false;
            contents_[&type] = content;
            break;
        }
        case Derivation::kSimpleRestriction:
        case Derivation::kSimpleExtension:
            checkSimpleContent(type);
            break;
        case Derivation::kComplexRestriction:
        case Derivation::kComplexExtension:
            checkComplexContent(type);
            break;
    }
}

}  // namespace

void checkDerivations(const Reading &reading, const std::vector<TypeRef> &types) {
    DerivationCheck check{reading};
    for (const TypeRef &type : types) {
        std::visit([&](const auto *known) { check.check(*known); }, type);
    }
}

}  // namespace xsd2c
