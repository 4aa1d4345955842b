#include "fuzz/support/document_writer.h"

#include <algorithm>

#include "fuzz/support/schema_values.h"

namespace fuzz {
namespace {

struct Prefix {
    const char *ns;
    const char *prefix;
};
constexpr Prefix kPrefixes[] = {
    {"urn:everything", "e"}, {"urn:a", "a"}, {"urn:b", "b"}, {"urn:c", "c"}, {"urn:other", "o"}};
constexpr const char *kNamespaces[] = {"",      "urn:everything", "urn:a",
                                       "urn:b", "urn:c",          "urn:other"};
constexpr std::int32_t kSkip = 2, kLax = 1;  // of processContents
constexpr std::int32_t kProhibited = 1, kRequired = 2;
constexpr std::uint32_t kQualified = 1;

std::string text(const char *s) {
    return s ? s : "";
}

std::string_view prefixOf(std::string_view ns) {
    for (const Prefix &known : kPrefixes) {
        if (ns == known.ns) return known.prefix;
    }
    return {};
}

// What the constraint of a wildcard says of a namespace name, "" being none.
bool admits(const char *constraint, const char *target, std::string_view ns) {
    std::string_view list = constraint ? constraint : "";
    if (list == "##any") return true;
    if (list == "##other") return !ns.empty() && ns != text(target);
    for (;;) {
        const std::size_t blank = list.find(' ');
        if (list.substr(0, blank) == ns) return true;
        if (blank == list.npos) return false;
        list.remove_prefix(blank + 1);
    }
}

const SchemaElementDecl &referredTo(const SchemaElementDecl &decl) {
    return decl.ref ? *decl.ref : decl;
}

bool hasWildcard(const SchemaModelGroup *group) {
    if (!group) return false;
    return std::any_of(
        group->particles, group->particles + group->particleCount,
        [](const SchemaTypedRef &particle) {
            if (particle.kind == SCHEMA_KIND_ELEMENT_WILDCARD) return true;
            if (particle.kind == SCHEMA_KIND_ELEMENT) return false;
            return hasWildcard(static_cast<const SchemaModelGroup *>(particle.object));
        });
}

bool isSimpleContent(const SchemaComplexType &type) {
    return type.content && (type.content->derivationKind == SCHEMA_KIND_SIMPLE_EXTENSION ||
                            type.content->derivationKind == SCHEMA_KIND_SIMPLE_RESTRICTION);
}

const SchemaComplexType *complexBase(const SchemaComplexType &type) {
    if (!type.content || type.content->baseTypeKind != SCHEMA_KIND_COMPLEX_TYPE) return nullptr;
    return static_cast<const SchemaComplexType *>(type.content->baseType);
}

bool mayHaveAnyElement(const SchemaComplexType *type) {
    for (; type; type = complexBase(*type)) {
        if (hasWildcard(type->particle)) return true;
        if (type->content && hasWildcard(type->content->particle)) return true;
    }
    return false;
}

}  // namespace

DocumentWriter::DocumentWriter(const SchemaRoot &root, FuzzInput &input)
    : root_(root), input_(input), defaultNamespaces_(input.flag()), troubleAt_(input.byte()) {
    trouble_ = static_cast<Trouble>(input.below(static_cast<std::size_t>(Trouble::kCount)));
    // Most documents are left as they are.
    if (input.byte() % 4 != 1) trouble_ = Trouble::kNone;
}

std::string DocumentWriter::write() {
    out_ = "<?xml version=\"1.0\" encoding=\"GB18030\"?>";
    std::vector<const SchemaElementDecl *> roots;
    for (const char *ns : kNamespaces) {
        for (const SchemaElementDecl *decl : globals(ns)) roots.push_back(decl);
    }
    // The last is the one that recurs.
    const std::size_t which = input_.byte();
    const SchemaElementDecl *root = which % 4 ? roots.back() : roots[which / 4 % roots.size()];
    writeElement(*root, true);
    return std::move(out_);
}

DocumentWriter::Trouble DocumentWriter::troubleHere() {
    // Where the root is the only element, the place named is that one.
    const bool here = elements_++ == troubleAt_ % 32;
    return here ? trouble_ : Trouble::kNone;
}

void DocumentWriter::spoil(Expected expected) {
    if (expected_ != Expected::kInvalid) expected_ = expected;
}

std::vector<const SchemaElementDecl *> DocumentWriter::globals(const char *ns) const {
    std::vector<const SchemaElementDecl *> found;
    for (std::uint32_t i = 0; i < root_.elements.count; ++i) {
        const auto *decl = static_cast<const SchemaElementDecl *>(root_.elements.items[i]);
        if (text(decl->targetNamespace) == ns) found.push_back(decl);
    }
    return found;
}

const SchemaElementDecl *DocumentWriter::member(const SchemaElementDecl &head) {
    std::vector<const SchemaElementDecl *> members;
    for (std::uint32_t i = 0; i < root_.elements.count; ++i) {
        const auto *decl = static_cast<const SchemaElementDecl *>(root_.elements.items[i]);
        if (decl->substitutionGroupName && text(decl->substitutionGroupName) == head.name &&
            text(decl->substitutionGroupNamespace) == text(head.targetNamespace)) {
            members.push_back(decl);
        }
    }
    return members.empty() ? nullptr : members[input_.below(members.size())];
}

// ---------------------------------------------------------------- elements

void DocumentWriter::writeElement(const SchemaElementDecl &particle, bool global) {
    const SchemaElementDecl *decl = &referredTo(particle);
    global = global || particle.ref;
    if (decl->abstract == 1) {
        if (const SchemaElementDecl *other = member(*decl)) decl = other;
    }
    const bool byDefault = decl->form == 0 && root_.elementFormDefault == kQualified;
    const bool qualified = global || decl->form == 1 || byDefault;
    const std::string ns = qualified ? text(decl->targetNamespace) : "";
    const std::string_view prefix = prefixOf(ns);

    std::string name = decl->name;
    if (!defaultNamespaces_ && !prefix.empty()) name = std::string(prefix) + ':' + name;
    const bool first = elements_ == 0;
    const Trouble trouble = troubleHere();
    out_ += '<' + name;
    if (defaultNamespaces_) out_ += " xmlns=\"" + ns + '"';
    if (first) {
        for (const Prefix &known : kPrefixes) {
            out_ += std::string(" xmlns:") + known.prefix + "=\"" + known.ns + '"';
        }
    }
    if (decl->type && decl->typeKind == SCHEMA_KIND_COMPLEX_TYPE) {
        writeAttributes(*static_cast<const SchemaComplexType *>(decl->type), trouble);
    } else if (decl->type && trouble == Trouble::kStrangeAttribute) {
        out_ += " strange=\"\"";
        spoil(Expected::kInvalid);
    }
    out_ += '>';
    ++depth_;
    writeContent(*decl, trouble);
    --depth_;
    out_ += "</" + name + '>';
}

void DocumentWriter::writeContent(const SchemaElementDecl &decl, Trouble trouble) {
    if (!decl.type) {
        if (input_.flag()) writeText("anything");
        return;
    }
    const auto *complex = decl.typeKind == SCHEMA_KIND_COMPLEX_TYPE
                              ? static_cast<const SchemaComplexType *>(decl.type)
                              : nullptr;
    if (trouble == Trouble::kStrangeChild && !mayHaveAnyElement(complex)) {
        out_ += defaultNamespaces_ ? "<strange xmlns=\"\"/>" : "<strange/>";
        spoil(Expected::kInvalid);
    }
    if (decl.hasFixed == 1) {
        if (trouble == Trouble::kValue) spoil(Expected::kInvalid);
        return writeText(trouble == Trouble::kValue ? "never" : decl.fixedValue);
    }
    if (decl.nillable == 1 && input_.flag()) return;
    if (!complex || isSimpleContent(*complex)) {
        return writeValue(decl.type, decl.typeKind, decl.nillable == 1, trouble);
    }
    if (trouble == Trouble::kStrangeText && complex->mixed != 1) {
        writeText("strange");
        spoil(Expected::kInvalid);
    }
    if (trouble == Trouble::kNoContent) return spoil(Expected::kUnknown);
    reversed_ = trouble == Trouble::kReversedGroups;
    if (reversed_) spoil(Expected::kUnknown);
    if (complex->mixed == 1 && input_.flag()) writeText("mixed");
    const std::size_t begin = out_.size();
    writeModel(*complex);
    if (trouble == Trouble::kDoubleContent) {
        out_ += out_.substr(begin);
        spoil(Expected::kUnknown);
    }
    if (complex->mixed == 1 && input_.flag()) out_ += "<![CDATA[<mixed>]]>";
}

void DocumentWriter::writeValue(const void *type, std::int32_t kind, bool nillable,
                                Trouble trouble) {
    const Values &values = valuesOf(type, kind);
    if (trouble == Trouble::kValue && !values.invalid.empty()) {
        const std::string &value = values.invalid[input_.below(values.invalid.size())];
        spoil(nillable && value.empty() ? Expected::kUnknown : Expected::kInvalid);
        return writeText(value);
    }
    if (values.valid.empty()) return spoil(Expected::kUnknown);
    writeText(values.valid[input_.below(values.valid.size())]);
}

// ---------------------------------------------------------------- content models

void DocumentWriter::writeModel(const SchemaComplexType &type) {
    if (!type.content) {
        if (type.particle) writeGroup(*type.particle);
        return;
    }
    if (type.content->derivationKind == SCHEMA_KIND_COMPLEX_EXTENSION) {
        if (const SchemaComplexType *base = complexBase(type)) writeModel(*base);
    }
    if (type.content->particle) writeGroup(*type.content->particle);
}

std::uint32_t DocumentWriter::occurrences(std::uint32_t least, std::uint32_t most) {
    if (isSmall() || most <= least) return least;
    const std::uint32_t more = std::min<std::uint32_t>(input_.byte() % 8, most - least);
    return least + more;
}

void DocumentWriter::writeGroup(const SchemaModelGroup &group) {
    for (std::uint32_t n = occurrences(group.minOccurs, group.maxOccurs); n > 0; --n) {
        writeOnce(group);
    }
}

void DocumentWriter::writeOnce(const SchemaModelGroup &group) {
    if (group.particleCount == 0) return;
    switch (group.compositor) {
        case SCHEMA_KIND_ALL:
            return writeAll(group);
        case SCHEMA_KIND_CHOICE:
            return writeParticle(
                group.particles[isSmall() ? 0 : input_.below(group.particleCount)]);
        default:
            break;
    }
    const bool reversed = std::exchange(reversed_, false);
    for (std::uint32_t i = 0; i < group.particleCount; ++i) {
        writeParticle(group.particles[reversed ? group.particleCount - 1 - i : i]);
    }
}

void DocumentWriter::writeAll(const SchemaModelGroup &group) {
    std::vector<const SchemaTypedRef *> left;
    for (std::uint32_t i = 0; i < group.particleCount; ++i) left.push_back(&group.particles[i]);
    while (!left.empty()) {
        const std::size_t next = input_.below(left.size());
        writeParticle(*left[next]);
        left.erase(left.begin() + static_cast<std::ptrdiff_t>(next));
    }
}

void DocumentWriter::writeParticle(const SchemaTypedRef &particle) {
    if (particle.kind == SCHEMA_KIND_ELEMENT) {
        const auto &decl = *static_cast<const SchemaElementDecl *>(particle.object);
        for (std::uint32_t n = occurrences(decl.minOccurs, decl.maxOccurs); n > 0; --n) {
            writeElement(decl, false);
        }
    } else if (particle.kind == SCHEMA_KIND_ELEMENT_WILDCARD) {
        const auto &wildcard = *static_cast<const SchemaElementWildcard *>(particle.object);
        for (std::uint32_t n = occurrences(wildcard.minOccurs, wildcard.maxOccurs); n > 0; --n) {
            writeWildcard(wildcard);
        }
    } else {
        writeGroup(*static_cast<const SchemaModelGroup *>(particle.object));
    }
}

void DocumentWriter::writeWildcard(const SchemaElementWildcard &wildcard) {
    std::vector<const char *> admitted;
    for (const char *ns : kNamespaces) {
        if (admits(wildcard.namespaceConstraint, wildcard.targetNamespace, ns)) {
            admitted.push_back(ns);
        }
    }
    if (admitted.empty()) return spoil(Expected::kUnknown);
    const std::string ns = admitted[input_.below(admitted.size())];
    const auto declared = globals(ns.c_str());
    const bool known = wildcard.processContents != kSkip && !declared.empty() && !isSmall();
    if (known && (wildcard.processContents != kLax || input_.flag())) {
        const SchemaElementDecl *decl = declared[input_.below(declared.size())];
        return writeElement(*decl, true);
    }
    if (wildcard.processContents != kSkip && wildcard.processContents != kLax) {
        // Nothing is declared there, or it would grow too deep.
        spoil(Expected::kUnknown);
    }
    const std::string prefix(prefixOf(ns));
    const std::string name = prefix.empty() ? "junk" : prefix + ":junk";
    out_ += '<' + name;
    if (prefix.empty()) out_ += " xmlns=\"\"";
    out_ += " junk=\"1\">junk</" + name + '>';
}

// ---------------------------------------------------------------- attributes

void DocumentWriter::collectUses(const SchemaAttributeDecl *const *uses, std::uint32_t count,
                                 Attributes *found) const {
    for (std::uint32_t i = 0; i < count; ++i) {
        const SchemaAttributeDecl &decl = uses[i]->ref ? *uses[i]->ref : *uses[i];
        const bool byDefault = decl.form == 0 && root_.attributeFormDefault == kQualified;
        const bool qualified = uses[i]->ref || decl.form == 1 || byDefault;
        Attribute &attribute =
            found->named[{qualified ? text(decl.targetNamespace) : "", decl.name}];
        attribute.decls.push_back(&decl);
        attribute.required |= decl.use == kRequired;
        attribute.prohibited |= decl.use == kProhibited;
    }
}

void DocumentWriter::collectGroups(const SchemaAttributeGroup *const *groups, std::uint32_t count,
                                   Attributes *found) const {
    for (std::uint32_t i = 0; i < count; ++i) {
        const SchemaAttributeGroup *group = groups[i];
        while (group->ref) group = group->ref;
        collectUses(group->attributeUses, group->attributeUseCount, found);
        collectGroups(group->attributeGroups, group->attributeGroupCount, found);
        if (group->attributeWildcard) found->wildcards.push_back(group->attributeWildcard);
    }
}

void DocumentWriter::collect(const SchemaComplexType &type, Attributes *found) const {
    collectUses(type.attributeUses, type.attributeUseCount, found);
    collectGroups(type.attributeGroups, type.attributeGroupCount, found);
    if (type.attributeWildcard) found->wildcards.push_back(type.attributeWildcard);
    if (!type.content) return;
    collectUses(type.content->attributeUses, type.content->attributeUseCount, found);
    collectGroups(type.content->attributeGroups, type.content->attributeGroupCount, found);
    if (type.content->attributeWildcard)
        found->wildcards.push_back(type.content->attributeWildcard);
    if (const SchemaComplexType *base = complexBase(type)) collect(*base, found);
}

void DocumentWriter::writeAttributes(const SchemaComplexType &type, Trouble trouble) {
    Attributes attributes;
    collect(type, &attributes);
    const unsigned chosen = input_.byte();
    unsigned bit = 0;
    for (const auto &[name, attribute] : attributes.named) {
        const bool wanted = attribute.required || (chosen >> (bit++ % 8) & 1) != 0;
        if (attribute.required && trouble == Trouble::kMissingAttribute) {
            trouble = Trouble::kNone;
            spoil(Expected::kInvalid);
            continue;
        }
        if (!wanted || (attribute.prohibited && trouble != Trouble::kValue)) continue;
        if (attribute.prohibited) spoil(Expected::kInvalid);
        const SchemaAttributeDecl &decl = *attribute.decls.front();
        const Values &values = valuesOf(decl.type, SCHEMA_KIND_SIMPLE_TYPE);
        const bool wrong = trouble == Trouble::kValue && !values.invalid.empty();
        const auto &list = wrong ? values.invalid : values.valid;
        if (list.empty()) {
            spoil(Expected::kUnknown);
            continue;
        }
        std::string value = list[input_.below(list.size())];
        if (decl.hasFixed == 1 && !wrong) value = decl.fixedValue;
        if (wrong) spoil(Expected::kInvalid);
        if (attribute.decls.size() > 1) spoil(Expected::kUnknown);
        writeAttribute(name.first, name.second, value);
    }
    if (trouble == Trouble::kStrangeAttribute && attributes.wildcards.empty()) {
        writeAttribute("", "strange", "1");
        spoil(Expected::kInvalid);
    }
    if (!attributes.wildcards.empty() && (chosen & 0x80) != 0) {
        const SchemaWildcard &wildcard = *attributes.wildcards.front();
        const char *ns = input_.any(kNamespaces);
        const bool fits = admits(wildcard.namespaceConstraint, wildcard.targetNamespace, ns);
        const bool lenient = wildcard.processContents == kSkip || wildcard.processContents == kLax;
        if (!fits || !lenient) spoil(Expected::kUnknown);
        writeAttribute(ns, "more", "1");
    }
    if ((chosen & 0x60) == 0x60) out_ += " xml:lang=\"en\"";
}

void DocumentWriter::writeAttribute(const std::string &ns, const std::string &name,
                                    std::string_view value) {
    const std::string prefix(prefixOf(ns));
    out_ += ' ' + (prefix.empty() ? name : prefix + ':' + name) + "=\"";
    writeText(value);
    out_ += '"';
}

void DocumentWriter::writeText(std::string_view text) {
    for (const char c : text) {
        switch (c) {
            case '<':
                out_ += "&lt;";
                break;
            case '>':
                out_ += "&gt;";
                break;
            case '&':
                out_ += "&amp;";
                break;
            default:
                out_ += c;
        }
    }
}

}  // namespace fuzz
