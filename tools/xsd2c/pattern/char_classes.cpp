#include "xsd2c/pattern/char_classes.h"

#include <cstddef>

#include "xsd2c/pattern/unicode_tables.h"

namespace xsd2c {
namespace {

// In the order of Category.
constexpr std::string_view kCategoryNames[] = {
    "Lu", "Ll", "Lt", "Lm", "Lo", "Mn", "Mc", "Me", "Nd", "Nl", "No", "Pc", "Pd", "Ps",
    "Pe", "Pi", "Pf", "Po", "Zs", "Zl", "Zp", "Sm", "Sc", "Sk", "So", "Cc", "Cf", "Co"};

constexpr CharRange kSurrogates = {0xD800, 0xDFFF};

// Those whose category begins so; "" for all that have one.
CharSet charsWhoseCategoryBegins(std::string_view name) {
    CharSet result;
    for (const CategoryRun &run : categoryRuns()) {
        if (kCategoryNames[static_cast<std::size_t>(run.category)].starts_with(name)) {
            result.add(run.first, run.last);
        }
    }
    return result;
}

CharSet unassignedChars() {
    CharSet assigned = charsWhoseCategoryBegins("");
    assigned.add(kSurrogates.first, kSurrogates.last);
    return assigned.complement();
}

CharSet makeNameChars() {
    CharSet result = nameStartChars();
    result.add({{'-', '.'}, {'0', '9'}, {0xB7, 0xB7}, {0x300, 0x36F}, {0x203F, 0x2040}});
    return result;
}

CharSet makeWordChars() {
    CharSet others;
    for (const char *name : {"P", "Z", "C"}) others.add(*charsOfCategory(name));
    others.add(kSurrogates.first, kSurrogates.last);
    return others.complement();
}

}  // namespace

const CharSet &whiteSpaceChars() {
    static const CharSet chars = {{'\t', '\n'}, {'\r', '\r'}, {' ', ' '}};
    return chars;
}

const CharSet &nameStartChars() {
    static const CharSet chars = {
        {':', ':'},       {'A', 'Z'},       {'_', '_'},       {'a', 'z'},
        {0xC0, 0xD6},     {0xD8, 0xF6},     {0xF8, 0x2FF},    {0x370, 0x37D},
        {0x37F, 0x1FFF},  {0x200C, 0x200D}, {0x2070, 0x218F}, {0x2C00, 0x2FEF},
        {0x3001, 0xD7FF}, {0xF900, 0xFDCF}, {0xFDF0, 0xFFFD}, {0x10000, 0xEFFFF}};
    return chars;
}

const CharSet &nameChars() {
    static const CharSet chars = makeNameChars();
    return chars;
}

const CharSet &decimalDigitChars() {
    static const CharSet chars = charsWhoseCategoryBegins("Nd");
    return chars;
}

const CharSet &wordChars() {
    static const CharSet chars = makeWordChars();
    return chars;
}

const CharSet &charsWithinLine() {
    static const CharSet chars = CharSet{{'\n', '\n'}, {'\r', '\r'}}.complement();
    return chars;
}

std::optional<CharSet> charsOfCategory(std::string_view name) {
    if (name == "Cn") return unassignedChars();
    bool known = false;
    for (const std::string_view category : kCategoryNames) {
        known = known || name == category || name == category.substr(0, 1);
    }
    if (!known) return std::nullopt;
    CharSet result = charsWhoseCategoryBegins(name);
    if (name == "C") result.add(unassignedChars());
    return result;
}

}  // namespace xsd2c
