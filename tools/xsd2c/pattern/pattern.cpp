#include "xsd2c/pattern/pattern.h"

#include <regex.h>

#include <algorithm>

#include "xsd2c/pattern/char_classes.h"
#include "xsd2c/pattern/ere.h"
#include "xsd2c/pattern/ere_cost.h"
#include "xsd2c/pattern/gb18030_classes.h"
#include "xsd2c/pattern/tree_text.h"

namespace xsd2c {
namespace {

Ere whiteSpace() {
    return ereOfChars(whiteSpaceChars(), true);
}

std::string whole(const Ere &inner) {
    std::string result = inner.isEmpty() ? "^$" : "^(" + inner.bare() + ")$";
    checkCost(result);
    return result;
}

// Numbers of which 3 make a group, as a base64Binary has octets: the whole groups that there are
// between least and most if so many are left over.
Ere groupsOf(const Ere &group, std::uint64_t least, std::optional<std::uint64_t> most,
             std::uint64_t leftOver) {
    if (most && *most < leftOver) return Ere::nothing();
    const std::uint64_t few = least <= leftOver ? 0 : (least - leftOver + 2) / 3;
    std::optional<std::uint64_t> many;
    if (most) many = (*most - leftOver) / 3;
    return many && *many < few ? Ere::nothing() : repeat(group, few, many);
}

}  // namespace

std::string wholePattern(std::string_view inner) {
    const Ere ere = Ere::fromInner(inner);
    // Alternatives that are in brackets already need no others.
    std::string result = ere.isGroup() ? "^" + ere.text() + "$" : whole(ere);
    checkCost(result);
    return result;
}

std::string literalPattern(std::string_view utf8) {
    return Ere::literal(toTreeText(utf8)).text();
}

std::string lengthPattern(std::uint64_t least, std::optional<std::uint64_t> most) {
    return whole(repeat(ereOfChars(CharSet().complement(), false), least, most));
}

std::string base64LengthPattern(std::uint64_t least, std::optional<std::uint64_t> most) {
    const Ere symbol =
        ereOfChars({{'A', 'Z'}, {'a', 'z'}, {'0', '9'}, {'+', '+'}, {'/', '/'}}, true);
    const Ere group = repeat(symbol, 4, 4);
    const Ere one = repeat(symbol, 2, 2) + Ere::literal("==");
    const Ere two = repeat(symbol, 3, 3) + Ere::literal("=");
    return whole(
        alternatives({groupsOf(group, least, most, 0), groupsOf(group, least, most, 1) + one,
                      groupsOf(group, least, most, 2) + two}));
}

std::string listPattern(std::string_view item, std::uint64_t least,
                        std::optional<std::uint64_t> most) {
    const Ere around = repeat(whiteSpace(), 0, std::nullopt);
    const Ere first = Ere::fromInner(item);
    const Ere next = repeat(whiteSpace(), 1, std::nullopt) + first;
    if (most && *most < least) return whole(Ere::nothing());
    std::vector<Ere> branches;
    if (least == 0) branches.emplace_back();
    if (most != 0) {
        std::optional<std::uint64_t> others;
        if (most) others = *most - 1;
        branches.push_back(first + repeat(next, std::max<std::uint64_t>(least, 1) - 1, others));
    }
    return whole(around + alternatives(branches) + around);
}

std::string patternError(const std::string &pattern) {
    regex_t compiled;
    const int error = regcomp(&compiled, pattern.c_str(), REG_EXTENDED | REG_NOSUB);
    if (error == 0) {
        regfree(&compiled);
        return {};
    }
    char text[256];
    regerror(error, &compiled, text, sizeof text);
    return text;
}

}  // namespace xsd2c
