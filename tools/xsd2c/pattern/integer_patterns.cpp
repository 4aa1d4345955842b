#include <string>
#include <string_view>
#include <vector>

#include "xsd2c/pattern/decimal_text.h"
#include "xsd2c/pattern/digit_order.h"
#include "xsd2c/pattern/ere.h"
#include "xsd2c/pattern/pattern.h"

namespace xsd2c {
namespace {

Ere zeros() {
    return repeat(Ere::literal("0"), 0, std::nullopt);
}

bool isLess(std::string_view a, std::string_view b) {
    return a.size() != b.size() ? a.size() < b.size() : a < b;
}

// Digits of the numbers between two others, all without leading zeros; least is not zero.
Ere magnitudes(std::string_view least, std::string_view most) {
    if (isLess(most, least)) return Ere::nothing();
    if (least.size() == most.size()) return digitsBetween(least, most);
    std::vector<Ere> branches;
    // Whole lengths, to which the first one belongs where all of its numbers do.
    const bool isPower = least.front() == '1' && least.find_first_not_of('0', 1) == least.npos;
    const std::size_t shortest = least.size() + (isPower ? 0 : 1);
    if (!isPower) branches.push_back(digitsAtLeast(least));
    const bool allNines = most.find_first_not_of('9') == most.npos;
    const std::size_t longest = most.size() - (allNines ? 0 : 1);
    if (shortest <= longest) {
        branches.push_back(Ere::digits('1', '9') +
                           repeat(Ere::digits('0', '9'), shortest - 1, longest - 1));
    }
    if (!allNines) {
        const std::string power = "1" + std::string(most.size() - 1, '0');
        branches.push_back(digitsBetween(power, most));
    }
    return alternatives(branches);
}

// Zero and the numbers up to another one, behind any leading zeros. "" is zero.
Ere magnitudesUpTo(std::string_view most) {
    if (most.size() <= 1) return Ere::digits('0', most.empty() ? '0' : most.front());
    if (most.find_first_not_of('9') == most.npos) {
        return repeat(Ere::digits('0', '9'), 1, most.size());
    }
    const std::string power = "1" + std::string(most.size() - 1, '0');
    return alternatives(
        {repeat(Ere::digits('0', '9'), 1, most.size() - 1), digitsBetween(power, most)});
}

}  // namespace

std::string integerRangePattern(std::string_view least, std::string_view most) {
    const DecimalText from = decimalTextOf(least), to = decimalTextOf(most);
    const Ere plus = optional(Ere::literal("+")) + zeros(), minus = Ere::literal("-") + zeros();
    const bool hasNegative = from.negative, hasPositive = !to.negative && !to.isZero();
    const bool hasZero = (hasNegative || from.isZero()) && !to.negative;
    std::vector<Ere> branches;
    if (hasZero) {
        branches.push_back(plus + magnitudesUpTo(to.integer));
        branches.push_back(minus + magnitudesUpTo(hasNegative ? from.integer : ""));
    } else if (hasPositive && !hasNegative) {
        branches.push_back(plus + magnitudes(from.integer, to.integer));
    } else if (hasNegative) {
        branches.push_back(minus + magnitudes(to.integer, from.integer));
    }
    return alternatives(branches).text();
}

}  // namespace xsd2c
