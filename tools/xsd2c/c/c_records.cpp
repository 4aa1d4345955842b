#include "xsd2c/c/c_records.h"

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "xsd2c/c/c_constants.h"
#include "xsd2c/c/c_text.h"

namespace xsd2c {
namespace {

// Longer ones get a definition of their own, so that records are easy to survey.
constexpr std::size_t kLongestInPlace = 400;
constexpr std::size_t kMemberIndent = 4, kRecordIndent = 8, kFieldIndent = 12;

// ---- addresses --------------------------------------------------------------------------------

template <class T>
Location in(const char *member, const Pool<T> &pool, const T *record) {
    return {member, pool.numberOf(record)};
}

Location locate(const Records &r, const SchemaFacet *record) {
    return in("facets", r.facets, record);
}
Location locate(const Records &r, const SchemaSimpleType *record) {
    return in("simpleTypes", r.simpleTypes, record);
}
Location locate(const Records &r, const SchemaSimpleType *const *record) {
    return in("members", r.members, record);
}
Location locate(const Records &r, const SchemaAttributeDecl *record) {
    return in("attributes", r.attributes, record);
}
Location locate(const Records &r, const SchemaAttributeDecl *const *record) {
    return in("attributeUses", r.attributeUses, record);
}
Location locate(const Records &r, const SchemaWildcard *record) {
    return in("attributeWildcards", r.attributeWildcards, record);
}
Location locate(const Records &r, const SchemaAttributeGroup *record) {
    return in("attributeGroups", r.attributeGroups, record);
}
Location locate(const Records &r, const SchemaAttributeGroup *const *record) {
    return in("attributeGroupRefs", r.attributeGroupRefs, record);
}
Location locate(const Records &r, const SchemaElementDecl *record) {
    return in("elements", r.elements, record);
}
Location locate(const Records &r, const SchemaElementWildcard *record) {
    return in("elementWildcards", r.elementWildcards, record);
}
Location locate(const Records &r, const SchemaTypedRef *record) {
    return in("particles", r.particles, record);
}
Location locate(const Records &r, const SchemaModelGroup *record) {
    return in("modelGroups", r.modelGroups, record);
}
Location locate(const Records &r, const SchemaDerivation *record) {
    return in("derivations", r.derivations, record);
}
Location locate(const Records &r, const SchemaComplexType *record) {
    return in("complexTypes", r.complexTypes, record);
}

std::string addressOf(const Location &at) {
    return std::string("&records.") + at.member + "[" + std::to_string(at.number) + "]";
}

template <class T>
std::string addressOf(const Records &records, const T *record) {
    return record ? addressOf(locate(records, record)) : "NULL";
}

std::string addressOf(const Records &records, const SchemaTypedRef &record) {
    if (!record.object) return "NULL";
    return addressOf(locate(records, record));
}

// ---- pools ------------------------------------------------------------------------------------

// Calls visit(pool, type of its records, name of the member, names of the fields) for each pool.
template <class Visit>
void forEachPool(const Records &r, Visit visit) {
    visit(r.facets, "SchemaFacet ", "facets", "value, kind, baseCode");
    visit(r.simpleTypes, "SchemaSimpleType ", "simpleTypes",
          "members, facets, name, ns, builtinCode, facetCount, memberCount, flags16");
    visit(r.members, "const SchemaSimpleType *", "members", "");
    visit(r.attributes, "SchemaAttributeDecl ", "attributes",
          "ref, type, name, targetNamespace, fixedValue, use, form, hasFixed");
    visit(r.attributeUses, "const SchemaAttributeDecl *", "attributeUses", "");
    visit(r.attributeWildcards, "SchemaWildcard ", "attributeWildcards",
          "targetNamespace, namespaceConstraint, processContents");
    visit(r.attributeGroups, "SchemaAttributeGroup ", "attributeGroups",
          "attributeUses, attributeGroups, attributeWildcard, ref, unread5, unread6, "
          "attributeUseCount, attributeGroupCount");
    visit(r.attributeGroupRefs, "const SchemaAttributeGroup *", "attributeGroupRefs", "");
    visit(r.elements, "SchemaElementDecl ", "elements",
          "ref, name, targetNamespace, substitutionGroupName, substitutionGroupNamespace, type, "
          "fixedValue, minOccurs, maxOccurs, typeKind, form, hasFixed, abstract, nillable, "
          "alternativeNamespace");
    visit(r.elementWildcards, "SchemaElementWildcard ", "elementWildcards",
          "targetNamespace, namespaceConstraint, minOccurs, maxOccurs, processContents");
    visit(r.particles, "SchemaTypedRef ", "particles", "object, kind");
    visit(r.modelGroups, "SchemaModelGroup ", "modelGroups",
          "particles, minOccurs, maxOccurs, particleCount, compositor");
    visit(r.derivations, "SchemaDerivation ", "derivations",
          "attributeWildcard, attributeUses, attributeGroups, particle, unread5, facets, "
          "baseType, derivationKind, baseTypeKind, attributeUseCount, facetCount, "
          "attributeGroupCount");
    visit(r.complexTypes, "SchemaComplexType ", "complexTypes",
          "attributeUses, attributeGroups, content, particle, unread5, attributeWildcard, name, "
          "targetNamespace, attributeUseCount, attributeGroupCount, mixed");
}

// Writes the texts that do not stand in place, each once, and names them.
class LongTexts {
  public:
    const std::string &nameOf(const char *text, std::string_view bytes) {
        const auto [entry, isNew] = names_.try_emplace(text);
        if (isNew) {
            entry->second = "text" + std::to_string(names_.size());
            define(entry->second, bytes);
        }
        return entry->second;
    }
    const std::string &code() const noexcept { return code_; }

  private:
    void define(const std::string &name, std::string_view bytes) {
        code_ += "static const char " + name + "[] = ";
        const bool literal = bytes.size() <= kLongestLiteral;
        code_ += literal ? "\n    " : "{\n    ";
        WordWrap words(code_, kMemberIndent, kMemberIndent);
        if (literal) {
            for (const std::string &piece : literalPieces(bytes)) words.add(piece);
        } else {
            for (const char byte : bytes) words.add(charLiteral(byte) + ",");
            words.add("'\\0'}");
        }
        code_ += ";\n\n";
    }

    std::unordered_map<const char *, std::string> names_;
    std::string code_;
};

// The words of one initializer.
class Fields {
  public:
    Fields(const Records &records, LongTexts &longTexts, std::string &out, std::size_t column)
        : records_(records), longTexts_(longTexts), words_(out, column, kFieldIndent) {}

    void begin() { word_ = "{"; }
    void end() { words_.add(word_ + "},"); }
    void only(const std::string &value) { words_.add(value + ","); }

    Fields &code(const std::string &value) {
        if (hasField_) {
            words_.add(word_ + ",");
            word_.clear();
        }
        hasField_ = true;
        word_ += value;
        return *this;
    }
    Fields &number(std::uint32_t value) { return code(unsignedConstant(value)); }
    Fields &integer(std::int32_t value) { return code(signedConstant(value)); }
    Fields &kind(std::int32_t value) { return code(kindConstant(value)); }
    // Of a field that the validator does not read.
    Fields &nothing() { return code("NULL"); }

    template <class T>
    Fields &pointer(const T *record) {
        return code(addressOf(records_, record));
    }
    Fields &pointer(const void *record, std::int32_t recordKind) {
        return code(addressOf(records_, SchemaTypedRef{record, recordKind}));
    }

    Fields &text(const char *text) {
        if (!text) return nothing();
        const std::string_view bytes(text);
        if (bytes.size() > kLongestInPlace) return code(longTexts_.nameOf(text, bytes));
        const std::vector<std::string> pieces = literalPieces(bytes);
        code(pieces.front());
        for (std::size_t i = 1; i < pieces.size(); ++i) {
            words_.add(std::exchange(word_, pieces[i]));
        }
        return *this;
    }

  private:
    const Records &records_;
    LongTexts &longTexts_;
    WordWrap words_;
    std::string word_;  // the last one, which lacks what follows it
    bool hasField_ = false;
};

// ---- records, the fields in the order of compactxml.h -------------------------------------------

void add(Fields &f, const SchemaFacet &r) {
    f.text(r.value).code(facetConstant(r.kind)).code(typeConstant(r.baseCode));
}

void add(Fields &f, const SchemaSimpleType &r) {
    f.pointer(r.members).pointer(r.facets).text(r.name).text(r.ns);
    f.code(typeConstant(r.builtinCode)).number(r.facetCount).number(r.memberCount);
    f.number(r.flags16);
}

void add(Fields &f, const SchemaAttributeDecl &r) {
    f.pointer(r.ref).pointer(r.type).text(r.name).text(r.targetNamespace).text(r.fixedValue);
    f.integer(r.use).integer(r.form).integer(r.hasFixed);
}

void add(Fields &f, const SchemaWildcard &r) {
    f.text(r.targetNamespace).text(r.namespaceConstraint).integer(r.processContents);
}

void add(Fields &f, const SchemaAttributeGroup &r) {
    f.pointer(r.attributeUses).pointer(r.attributeGroups).pointer(r.attributeWildcard);
    f.pointer(r.ref).nothing().nothing().number(r.attributeUseCount).number(r.attributeGroupCount);
}

void add(Fields &f, const SchemaElementDecl &r) {
    f.pointer(r.ref).text(r.name).text(r.targetNamespace);
    f.text(r.substitutionGroupName).text(r.substitutionGroupNamespace);
    f.pointer(r.type, r.typeKind).text(r.fixedValue).number(r.minOccurs).number(r.maxOccurs);
    f.kind(r.typeKind).integer(r.form).integer(r.hasFixed).number(r.abstract).number(r.nillable);
    f.text(r.alternativeNamespace);
}

void add(Fields &f, const SchemaElementWildcard &r) {
    f.text(r.targetNamespace).text(r.namespaceConstraint);
    f.number(r.minOccurs).number(r.maxOccurs).integer(r.processContents);
}

void add(Fields &f, const SchemaTypedRef &r) {
    f.pointer(r.object, r.kind).kind(r.kind);
}

void add(Fields &f, const SchemaModelGroup &r) {
    f.pointer(r.particles).number(r.minOccurs).number(r.maxOccurs).number(r.particleCount);
    f.kind(r.compositor);
}

void add(Fields &f, const SchemaDerivation &r) {
    f.pointer(r.attributeWildcard).pointer(r.attributeUses).pointer(r.attributeGroups);
    f.pointer(r.particle).nothing().pointer(r.facets).pointer(r.baseType, r.baseTypeKind);
    f.kind(r.derivationKind).kind(r.baseTypeKind);
    f.number(r.attributeUseCount).number(r.facetCount).number(r.attributeGroupCount);
}

void add(Fields &f, const SchemaComplexType &r) {
    f.pointer(r.attributeUses).pointer(r.attributeGroups).pointer(r.content).pointer(r.particle);
    f.nothing().pointer(r.attributeWildcard).text(r.name).text(r.targetNamespace);
    f.number(r.attributeUseCount).number(r.attributeGroupCount).number(r.mixed);
}

template <class T>
void addRecord(Fields &f, const T &record) {
    f.begin();
    add(f, record);
    f.end();
}

// An entry of an array of pointers is no structure.
template <class T>
void addRecord(const Records &records, Fields &f, const T *const &entry) {
    f.only(addressOf(records, entry));
}
template <class T>
void addRecord(const Records &, Fields &f, const T &record) {
    addRecord(f, record);
}

// ---- the object -------------------------------------------------------------------------------

std::string structureCode(const Records &records) {
    std::string code = "static const struct {\n";
    forEachPool(records, [&](const auto &pool, const char *type, const char *member, const char *) {
        if (pool.size() == 0) return;
        code += std::string("    ") + type + member + "[" + std::to_string(pool.size()) + "];\n";
    });
    return code + "} records = {\n";
}

// "/* 3: element vlan */ ", where an address says "[3]".
std::string recordComment(const Records &records, const void *record, std::size_t number) {
    std::string comment = "/* " + std::to_string(number);
    const auto label = records.labels.find(record);
    if (label != records.labels.end()) comment += ": " + commentText(label->second);
    return comment + " */ ";
}

void addFieldNames(std::string &out, const char *member, std::string_view fieldNames) {
    const std::size_t start = out.size();
    out += std::string("    /* ") + member;
    if (!fieldNames.empty()) {
        out += ": ";
        WordWrap words(out, out.size() - start, kMemberIndent + 3);
        for (std::size_t blank; (blank = fieldNames.find(' ')) != std::string_view::npos;) {
            words.add(fieldNames.substr(0, blank));
            fieldNames.remove_prefix(blank + 1);
        }
        words.add(std::string(fieldNames) + " */");
        out += '\n';
    } else {
        out += " */\n";
    }
}

}  // namespace

std::string recordsCode(const Records &records) {
    std::string code =
        "/* All in one object, in which records can refer to one another in circles. */\n" +
        structureCode(records);
    LongTexts longTexts;
    forEachPool(records,
                [&](const auto &pool, const char *, const char *member, const char *fieldNames) {
                    if (pool.size() == 0) return;
                    addFieldNames(code, member, fieldNames);
                    code += "    {\n";
                    std::size_t number = 0;
                    pool.forEach([&](const auto &record) {
                        const std::string comment = recordComment(records, &record, number++);
                        code.append(kRecordIndent, ' ') += comment;
                        Fields fields(records, longTexts, code, kRecordIndent + comment.size());
                        addRecord(records, fields, record);
                        code += '\n';
                    });
                    code += "    },\n";
                });
    return longTexts.code() + code + "};\n";
}

Location locate(const Records &records, const SchemaTypedRef &record) {
    const void *object = record.object;
    switch (record.kind) {
        case SCHEMA_KIND_SIMPLE_TYPE:
            return locate(records, static_cast<const SchemaSimpleType *>(object));
        case SCHEMA_KIND_COMPLEX_TYPE:
            return locate(records, static_cast<const SchemaComplexType *>(object));
        case SCHEMA_KIND_ELEMENT:
            return locate(records, static_cast<const SchemaElementDecl *>(object));
        case SCHEMA_KIND_ELEMENT_WILDCARD:
            return locate(records, static_cast<const SchemaElementWildcard *>(object));
        case SCHEMA_KIND_MODEL_GROUP:
            return locate(records, static_cast<const SchemaModelGroup *>(object));
        case SCHEMA_KIND_ATTRIBUTE:
            return locate(records, static_cast<const SchemaAttributeDecl *>(object));
        case SCHEMA_KIND_ATTRIBUTE_GROUP:
            return locate(records, static_cast<const SchemaAttributeGroup *>(object));
        default:
            throw std::logic_error("a record refers to something of kind " +
                                   std::to_string(record.kind));
    }
}

std::string typedRefCode(const Records &records, const SchemaTypedRef &record) {
    return "{" + addressOf(records, record) + ", " + kindConstant(record.kind) + "}";
}

}  // namespace xsd2c
