#include "xsd2c/pattern/char_classes.h"

#include <cstddef>

#include "text/xml_names.h"
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

CharSet makeNameStartChars() {
    CharSet result = {{':', ':'}};
    for (const auto &[first, last] : xml_names::kStart) result.add(first, last);
    return result;
}

CharSet makeNameChars() {
    CharSet result = nameStartChars();
    for (const auto &[first, last] : xml_names::kRest) result.add(first, last);
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
    static const CharSet chars = makeNameStartChars();
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
