#include <algorithm>
#include <iterator>

#include "xsd2c/xsd/reader.h"
#include "xsd2c/xsd/xml_text.h"

namespace xsd2c {
namespace {

// What the records cannot hold of some built-in types, and how a message calls it.
struct BeyondRecords {
    const char *type;
    const char *what;  // stands before " in attribute 'x'"
};

constexpr BeyondRecords kBeyondRecords[] = {
    {"ID", "the uniqueness of ID"},
    {"IDREF", "that there is an ID for IDREF"},
    {"IDREFS", "that there is an ID for each of IDREFS"},
    {"ENTITY", "that there is an entity for ENTITY"},
    {"ENTITIES", "that there is an entity for each of ENTITIES"},
};

bool isFacet(Construct construct) {
    return construct >= Construct::kLength && construct <= Construct::kFractionDigits;
}

FacetKind facetKind(Construct construct) {
    return static_cast<FacetKind>(static_cast<int>(construct) -
                                  static_cast<int>(Construct::kLength));
}

std::string whereIs(const SimpleType &type) {
    return type.name.empty() ? "a simpleType" : "simpleType '" + type.name + "'";
}

}  // namespace

void Reader::noteType(const Place &place, const TypeRef &type, const std::string &where) {
    const auto *const *simple = std::get_if<const SimpleType *>(&type);
    if (!simple || (*simple)->variety != SimpleType::Variety::kBuiltin) return;
    const std::string &name = (*simple)->name;
    const auto *found = std::find_if(std::begin(kBeyondRecords), std::end(kBeyondRecords),
                                     [&](const BeyondRecords &row) { return name == row.type; });
    if (found == std::end(kBeyondRecords)) return;
    reading_.diagnostics.notEnforced(place, std::string(found->what) + " in " + where);
}

const SimpleType *Reader::readInnerType(const SourceElement &parent) {
    for (const SourceElement *child : parent.children) {
        if (child->construct != Construct::kLocalSimpleType) continue;
        SimpleType &type = add(reading_.components.simpleTypes, *child);
        readSimpleType(*child, type);
        return &type;
    }
    return nullptr;
}

std::vector<Facet> Reader::readFacets(const SourceElement &element) {
    std::vector<Facet> facets;
    for (const SourceElement *child : element.children) {
        if (!isFacet(child->construct)) continue;
        if (child->construct == Construct::kWhiteSpace) {
            reading_.diagnostics.notEnforced(child->place, "the whiteSpace facet");
        }
        if (const std::string *value = child->value("value")) {
            facets.push_back({facetKind(child->construct), *value, child->place});
        }
    }
    return facets;
}

void Reader::readRestriction(const SourceElement &element, SimpleType &type) {
    const SimpleType *base = nullptr;
    if (const std::string *name = element.value("base")) {
        base = findSimpleType(element, *name);
        if (base == reading_.symbols.anySimpleType) {
            error(element, "anySimpleType cannot be restricted");
        }
        if (base) noteType(element.place, base, whereIs(type));
    } else {
        base = readInnerType(element);
    }
    if (base) type.base = base;
    type.facets = readFacets(element);
}

void Reader::readList(const SourceElement &element, SimpleType &type) {
    type.variety = SimpleType::Variety::kList;
    type.base = nullptr;
    const SimpleType *item = nullptr;
    if (const std::string *name = element.value("itemType")) {
        item = findSimpleType(element, *name);
        if (item) noteType(element.place, item, whereIs(type));
    } else {
        item = readInnerType(element);
    }
    type.itemType = item ? item : reading_.symbols.anySimpleType;
}

void Reader::readUnion(const SourceElement &element, SimpleType &type) {
    type.variety = SimpleType::Variety::kUnion;
    type.base = nullptr;
    if (const std::string *names = element.value("memberTypes")) {
        for (const std::string &name : words(*names)) {
            const SimpleType *member = findSimpleType(element, name);
            if (!member) continue;
            noteType(element.place, member, whereIs(type));
            type.members.push_back(member);
        }
    }
    for (const SourceElement *child : element.children) {
        if (child->construct != Construct::kLocalSimpleType) continue;
        SimpleType &member = add(reading_.components.simpleTypes, *child);
        readSimpleType(*child, member);
        type.members.push_back(&member);
    }
}

void Reader::readSimpleType(const SourceElement &element, SimpleType &type) {
    // In case that nothing usable follows.
    type.variety = SimpleType::Variety::kRestriction;
    type.base = reading_.symbols.anySimpleType;
    const std::string *final = element.value("final");
    if (final && !final->empty()) {
        reading_.diagnostics.notEnforced(element.place, "final of simpleType '" + type.name + "'");
    }
    for (const SourceElement *child : element.children) {
        if (child->construct == Construct::kSimpleRestriction) {
            readRestriction(*child, type);
        } else if (child->construct == Construct::kList) {
            readList(*child, type);
        } else if (child->construct == Construct::kUnion) {
            readUnion(*child, type);
        }
    }
}

}  // namespace xsd2c
