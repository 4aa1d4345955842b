#include "xsd2c/records/simple_types.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

#include "compactxml.h"
#include "xsd2c/pattern/pattern.h"
#include "xsd2c/pattern/tree_text.h"
#include "xsd2c/records/facet_step.h"
#include "xsd2c/xsd/xml_text.h"

namespace xsd2c {
namespace {

// Items of a list that may hold anything: no byte of a character above U+007F is white space.
constexpr char kAnyItem[] = "[^ \t\n\r]+";

bool isNetworkType(const SimpleType &type) {
    return type.ns.empty() && !type.name.empty() &&
           Schema_FoundKestBltInType(type.name.c_str(), nullptr) != nullptr;
}

// The built-in lists are lists of names.
bool hasOneSpelling(Family family) {
    return family == Family::kText || family == Family::kAny || family == Family::kAnyUri ||
           family == Family::kQName || family == Family::kList;
}

std::optional<std::string> itemOf(const BuiltinType &type) {
    switch (type.family) {
        case Family::kAny:
            return kAnyItem;
        case Family::kText:
            if (type.name == "language") return std::nullopt;
            if (type.name == "string" || type.name == "normalizedString" || type.name == "token") {
                return kAnyItem;
            }
            return lexicalPattern(type.name);
        case Family::kBoolean:
            return "(1|true|0|false)";
        case Family::kInteger:
            return integerRangePattern(type.least, type.most);
        case Family::kDecimal:
        case Family::kFloat:
            return lexicalPattern(type.name);
        case Family::kHexBinary:
            return "[0-9A-Fa-f]+";
        case Family::kAnyUri:
            return "[^: \t\n\r]+[:/][^: \t\n\r]+";
        case Family::kQName:
            return lexicalPattern("NCName");
        case Family::kBase64Binary:
        case Family::kDateTime:
        case Family::kDuration:
        case Family::kList:
        case Family::kUnion:
            break;
    }
    return std::nullopt;
}

}  // namespace

std::string nameInMessages(const SimpleType &type) {
    return type.name.empty() ? "an anonymous simpleType" : "simpleType '" + type.name + "'";
}

const CompiledType &SimpleTypes::builtin(std::string_view name) {
    const BuiltinType *type = findBuiltin(name);
    const auto known = builtins_.find(type->name);
    if (known != builtins_.end()) return known->second;
    const CompiledType compiled = compileBuiltin(*type);
    return builtins_.emplace(type->name, compiled).first->second;
}

CompiledType SimpleTypes::compileBuiltin(const BuiltinType &type) {
    CompiledType compiled;
    compiled.family = type.family;
    compiled.code = type.code != 0 ? type.code : SCHEMA_TYPE_STRING;
    compiled.ascii = type.ascii;
    compiled.collapse = type.collapse;
    compiled.checkable =
        type.family != Family::kAnyUri && type.family != Family::kQName && type.name != "language";
    compiled.oneSpelling = hasOneSpelling(type.family);
    compiled.universal = type.name == "string" || type.name == "anySimpleType";
    if (hasLists_) compiled.item = itemOf(type);
    if (type.family == Family::kInteger) {
        compiled.range = {*readInteger(type.least), *readInteger(type.most)};
        compiled.itemIsRange = true;
    }
    SchemaSimpleType *record = nullptr;
    if (type.code != 0) {
        record = records_.simpleTypes.add();
        record->builtinCode = type.code;
    } else {
        const std::string pattern = wholePattern(lexicalPattern(type.name));
        if (const std::string problem = patternError(pattern); !problem.empty()) {
            throw std::runtime_error("the pattern of " + std::string(type.name) +
                                     " does not compile: " + problem);
        }
        record = addRecord(builtin("string"),
                           {{records_.text(pattern), SCHEMA_FACET_PATTERN, SCHEMA_TYPE_STRING}});
        if (type.family == Family::kList) {
            compiled.listItem =
                lexicalPattern(type.name.substr(0, 2) == "NM" ? "NMTOKEN" : "NCName");
        }
    }
    record->name = records_.text(type.name);
    record->ns = records_.text(kSchemaNamespace);
    records_.labels[record] = "built-in type " + std::string(type.name);
    compiled.record = record;
    return compiled;
}

SchemaSimpleType *SimpleTypes::addRecord(const CompiledType &base,
                                         const std::vector<SchemaFacet> &facets) {
    SchemaSimpleType *record = records_.simpleTypes.add();
    const SchemaSimpleType **members = records_.members.add();
    *members = base.record;
    record->members = members;
    record->facets = records_.facets.add(facets);
    record->facetCount = static_cast<std::uint32_t>(facets.size());
    return record;
}

const CompiledType &SimpleTypes::compile(const SimpleType &type) {
    if (type.variety == SimpleType::Variety::kBuiltin) return builtin(type.name);
    const auto known = types_.find(&type);
    if (known != types_.end()) return known->second;
    // Goes down the types that this one is made of: the front end has seen to it that they are few.
    CompiledType compiled = type.variety == SimpleType::Variety::kList ? compileList(type)
                            : type.variety == SimpleType::Variety::kUnion
                                ? compileUnion(type)
                                : compileRestriction(type);
    return types_.emplace(&type, std::move(compiled)).first->second;
}

CompiledType SimpleTypes::derive(const CompiledType &base, const CompiledStep &step,
                                 const std::string &label) {
    CompiledType compiled = step.type;
    compiled.record = addRecord(base, step.facets);
    records_.labels[compiled.record] = label;
    return compiled;
}

CompiledType SimpleTypes::compileRestriction(const SimpleType &type) {
    const std::string owner = nameInMessages(type);
    const CompiledType base = compile(*type.base);
    const CompiledStep step = restrict(base, type.facets, owner);
    CompiledType compiled = step.type;
    SchemaSimpleType *record = addRecord(base, step.facets);
    record->name = records_.textOrNull(toTreeText(type.name));
    record->ns = records_.textOrNull(type.name.empty() ? "" : toTreeText(type.ns));
    records_.labels[record] = owner;
    compiled.record = record;
    if (isNetworkType(type)) {
        // The validator knows it by its name and asks nothing else.
        if (!type.facets.empty()) {
            diagnostics_.notEnforced(type.place,
                                     "what network type '" + type.name + "' says of its values");
        }
        compiled.family = Family::kText;
        compiled.ascii = true;
        compiled.universal = false;
        compiled.item.reset();
    }
    return compiled;
}

CompiledType SimpleTypes::compileList(const SimpleType &type) {
    const CompiledType item = compile(*type.itemType);
    CompiledType compiled;
    compiled.family = Family::kList;
    compiled.code = SCHEMA_TYPE_STRING;
    compiled.ascii = item.ascii;
    compiled.collapse = true;
    compiled.checkable = item.checkable;
    compiled.oneSpelling = item.oneSpelling;
    compiled.listItem = item.item.value_or(kAnyItem);
    std::vector<SchemaFacet> facets;
    if (item.item) {
        FacetStep step{records_, diagnostics_, compiledPatterns_, nameInMessages(type), hasLists_};
        step.addPattern(type.place, [&] { return listPattern(*item.item, 0, std::nullopt); });
        facets = step.take();
    } else {
        diagnostics_.notEnforced(type.place, "the item type of " + nameInMessages(type));
        compiled.ascii = false;
    }
    SchemaSimpleType *record = addRecord(builtin("string"), facets);
    record->name = records_.textOrNull(toTreeText(type.name));
    record->ns = records_.textOrNull(type.name.empty() ? "" : toTreeText(type.ns));
    records_.labels[record] = nameInMessages(type) + ", a list";
    compiled.record = record;
    return compiled;
}

CompiledType SimpleTypes::compileUnion(const SimpleType &type) {
    CompiledType compiled;
    compiled.family = Family::kUnion;
    compiled.code = SCHEMA_TYPE_STRING;
    compiled.ascii = compiled.collapse = compiled.oneSpelling = true;
    std::vector<const SchemaSimpleType *> members;
    std::string items;
    bool haveItems = true;
    for (const SimpleType *member : type.members) {
        const CompiledType &part = compile(*member);
        members.push_back(part.record);
        compiled.ascii = compiled.ascii && part.ascii;
        compiled.collapse = compiled.collapse && part.collapse;
        compiled.checkable = compiled.checkable && part.checkable;
        // Values of a union are compared as texts, where the white space of a list counts.
        compiled.oneSpelling =
            compiled.oneSpelling && part.oneSpelling && part.family != Family::kList;
        haveItems = haveItems && part.item;
        if (haveItems) items += (items.empty() ? "(" : "|") + *part.item;
    }
    if (haveItems && !items.empty()) compiled.item = items + ")";
    SchemaSimpleType *record = records_.simpleTypes.add();
    record->members = records_.members.add(members);
    // One member alone is the base of a restriction that restricts nothing.
    record->memberCount = members.size() > 1 ? static_cast<std::uint32_t>(members.size()) : 0;
    record->name = records_.textOrNull(toTreeText(type.name));
    record->ns = records_.textOrNull(type.name.empty() ? "" : toTreeText(type.ns));
    records_.labels[record] = nameInMessages(type) + ", a union";
    compiled.record = record;
    return compiled;
}

CompiledStep SimpleTypes::restrict(const CompiledType &base, const std::vector<Facet> &facets,
                                   const std::string &owner) {
    FacetStep step{records_, diagnostics_, compiledPatterns_, owner, hasLists_};
    return step.compile(base, facets);
}

std::string SimpleTypes::fixedValue(const CompiledType &type, const std::string &value,
                                    const Place &place, const std::string &owner) {
    const std::string text = toTreeText(type.collapse ? collapsed(value) : value);
    if (type.checkable && !hasValue(type, text)) {
        diagnostics_.error(
            place, "the fixed value '" + value + "' of " + owner + " is not a value of its type");
    }
    return text;
}

}  // namespace xsd2c
