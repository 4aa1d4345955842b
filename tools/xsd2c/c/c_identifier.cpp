// The names of units and of what they offer.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <unordered_map>

#include "xsd2c/c/c_text.h"
#include "xsd2c/c/c_unit.h"

namespace xsd2c {
namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isLower(char c) {
    return c >= 'a' && c <= 'z';
}

bool isIdentifierChar(char c) {
    return isDigit(c) || isLower(c) || (c >= 'A' && c <= 'Z') || c == '_';
}

// What may stand within an identifier, though not at its beginning.
std::string identifierPart(std::string_view utf8) {
    std::string result = asciiOf(utf8);
    std::replace_if(
        result.begin(), result.end(), [](char c) { return !isIdentifierChar(c); }, '_');
    return result;
}

std::string identifier(std::string_view utf8) {
    std::string result = identifierPart(utf8);
    return result.empty() || isDigit(result[0]) ? "_" + result : result;
}

std::string upperCase(std::string text) {
    for (char &c : text) {
        if (isLower(c)) c = static_cast<char>(c - 'a' + 'A');
    }
    return text;
}

std::string_view withoutExtension(std::string_view name) {
    const std::size_t dot = name.rfind('.');
    return dot == std::string_view::npos || dot == 0 ? name : name.substr(0, dot);
}

// Schema_BLDIN_string and Schema_Debug_ShowNode are the library's own.
bool isOfLibrary(std::string_view prefix) {
    return prefix == "BLDIN" || prefix == "Debug";
}

// XML Schema 1.0 Structures, 2.5: names are distinct within one of these for each namespace.
enum class SymbolSpace : unsigned { kType, kElement, kAttribute, kAttributeGroup, kGroup };

SymbolSpace spaceOf(const TopObject &object) {
    switch (object.object.kind) {
        case SCHEMA_KIND_ELEMENT:
            return SymbolSpace::kElement;
        case SCHEMA_KIND_ATTRIBUTE:
            return SymbolSpace::kAttribute;
        case SCHEMA_KIND_ATTRIBUTE_GROUP:
            return SymbolSpace::kAttributeGroup;
        case SCHEMA_KIND_MODEL_GROUP:
            return SymbolSpace::kGroup;
        default:
            return SymbolSpace::kType;
    }
}

const char *suffixOf(SymbolSpace space) {
    switch (space) {
        case SymbolSpace::kElement:
            return "_element";
        case SymbolSpace::kAttribute:
            return "_attribute";
        case SymbolSpace::kAttributeGroup:
            return "_attributeGroup";
        case SymbolSpace::kGroup:
            return "_group";
        case SymbolSpace::kType:
            break;
    }
    return "";
}

struct WantedName {
    std::string name;
    bool plain;  // without a suffix
};

// The names as they follow from each object and those of the same name in other symbol spaces.
std::vector<WantedName> wantedNames(const std::vector<TopObject> &objects) {
    const auto bitOf = [](SymbolSpace space) { return 1u << static_cast<unsigned>(space); };
    std::unordered_map<std::string, unsigned> spaces;
    std::vector<WantedName> names;
    names.reserve(objects.size());
    for (const TopObject &object : objects) {
        names.push_back({identifierPart(object.name), true});
        spaces[names.back().name] |= bitOf(spaceOf(object));
    }
    for (std::size_t i = 0; i < objects.size(); ++i) {
        const SymbolSpace space = spaceOf(objects[i]);
        if (space == SymbolSpace::kType || spaces[names[i].name] == bitOf(space)) continue;
        names[i].name += suffixOf(space);
        names[i].plain = false;
    }
    return names;
}

}  // namespace

UnitName unitNameOf(std::string_view path, std::string_view prefix) {
    const std::string_view document = path.substr(path.rfind('/') + 1);
    UnitName unit;
    unit.schema = identifier(withoutExtension(document));
    unit.document = document;
    unit.prefix = prefix.empty() ? upperCase(unit.schema) : identifierPart(prefix);
    if (isOfLibrary(unit.prefix)) unit.prefix += '_';
    return unit;
}

std::vector<std::string> accessorNames(const UnitName &unit, const Records &records) {
    const std::vector<WantedName> wanted = wantedNames(records.top);
    // Who has a name: of those that want it the first one, but none with a suffix before others.
    std::unordered_map<std::string, std::size_t> owners;
    for (const bool plain : {true, false}) {
        for (std::size_t i = 0; i < wanted.size(); ++i) {
            if (wanted[i].plain == plain) owners.emplace(wanted[i].name, i);
        }
    }
    std::unordered_map<std::string, std::size_t> lastNumbers;
    std::vector<std::string> names;
    names.reserve(wanted.size());
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        std::string name = wanted[i].name;
        if (owners.at(name) != i) {
            std::size_t &number = lastNumbers.emplace(name, 1).first->second;
            do {
                name = wanted[i].name + "_" + std::to_string(++number);
            } while (!owners.emplace(name, i).second);
        }
        names.push_back("Schema_" + unit.prefix + "_" + name);
    }
    return names;
}

}  // namespace xsd2c
