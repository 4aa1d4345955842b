#include "xsd2c/pattern/digit_order.h"

#include <vector>

namespace xsd2c {
namespace {

Ere anyDigit() {
    return Ere::digits('0', '9');
}

Ere anyNumberOf(const Ere &item) {
    return repeat(item, 0, std::nullopt);
}

Ere digitAbove(char digit) {
    return Ere::digits(static_cast<char>(digit + 1), '9');
}
Ere digitBelow(char digit) {
    return Ere::digits('0', static_cast<char>(digit - 1));
}

// Texts are divided behind their first digit, which reads well. Long ones are halved: what is left
// would be spelled out as often as there are digits.
std::size_t firstPart(std::string_view digits) {
    constexpr std::size_t kLong = 32;
    return digits.size() > kLong ? digits.size() / 2 : 1;
}

// Texts that differ from the digits first in one that choose lets stand there.
Ere sameLength(std::string_view digits, Ere (*choose)(char)) {
    if (digits.empty()) return Ere::nothing();
    if (digits.size() == 1) return choose(digits.front());
    const std::size_t part = firstPart(digits);
    const std::string_view left = digits.substr(0, part), right = digits.substr(part);
    return alternatives({sameLength(left, choose) + anyDigits(right.size()),
                         Ere::literal(left) + sameLength(right, choose)});
}

Ere anyLength(std::string_view digits, Ere (*choose)(char)) {
    if (digits.empty()) return Ere::nothing();
    if (digits.size() == 1) return choose(digits.front());
    const std::size_t part = firstPart(digits);
    const std::string_view left = digits.substr(0, part), right = digits.substr(part);
    return alternatives({anyLength(left, choose), Ere::literal(left) + anyLength(right, choose)});
}

Ere greaterFraction(char digit) {
    return digitAbove(digit) + anyNumberOf(anyDigit());
}
// A fraction that ends is less, too: what it is compared with does not end with a zero.
Ere lesserFraction(char digit) {
    return optional(digitBelow(digit) + anyNumberOf(anyDigit()));
}

bool isAll(std::string_view digits, char digit) {
    return digits.find_first_not_of(digit) == digits.npos;
}

// With what a limit allows last, the digits behind which others are all fill: "5" and "6000" of the
// limit "56000" and the fill "0".
Ere within(std::string_view digits, char fill, Ere (*choose)(char), Ere (*chooseLast)(char)) {
    const std::size_t last = digits.find_last_not_of(fill);
    if (last == digits.npos) return anyDigits(digits.size());
    const Ere rest = anyDigits(digits.size() - last - 1);
    const std::string_view before = digits.substr(0, last);
    return alternatives({sameLength(before, choose) + anyDigits(1),
                         Ere::literal(before) + chooseLast(digits[last])}) +
           rest;
}

Ere digitFrom(char digit) {
    return Ere::digits(digit, '9');
}
Ere digitUpTo(char digit) {
    return Ere::digits('0', digit);
}

}  // namespace

Ere anyDigits(std::uint64_t count) {
    return repeat(anyDigit(), count, count);
}

Ere digitsAbove(std::string_view digits) {
    return sameLength(digits, digitAbove);
}

Ere digitsBelow(std::string_view digits) {
    return sameLength(digits, digitBelow);
}

Ere digitsAtLeast(std::string_view digits) {
    return within(digits, '0', digitAbove, digitFrom);
}

Ere digitsAtMost(std::string_view digits) {
    return within(digits, '9', digitBelow, digitUpTo);
}

Ere digitsBetween(std::string_view least, std::string_view most) {
    std::size_t common = 0;
    while (common < least.size() && least[common] == most[common]) ++common;
    const Ere prefix = Ere::literal(least.substr(0, common));
    if (common == least.size()) return prefix;
    // Those with the limits' own digits there, and those with any digit in between.
    const std::string_view lower = least.substr(common + 1), upper = most.substr(common + 1);
    char first = least[common], last = most[common];
    std::vector<Ere> branches;
    if (!isAll(lower, '0')) branches.push_back(Ere::literal({&first, 1}) + digitsAtLeast(lower));
    if (!branches.empty()) ++first;
    const bool upperPart = !isAll(upper, '9');
    const Ere end = upperPart ? Ere::literal({&last, 1}) + digitsAtMost(upper) : Ere::nothing();
    if (upperPart) --last;
    branches.push_back(Ere::digits(first, last) + anyDigits(lower.size()));
    branches.push_back(end);
    return prefix + alternatives(branches);
}

Ere fractionAbove(std::string_view digits, bool orEqual) {
    const Ere longer =
        orEqual ? anyNumberOf(anyDigit())
                : anyNumberOf(Ere::literal("0")) + Ere::digits('1', '9') + anyNumberOf(anyDigit());
    return alternatives({anyLength(digits, greaterFraction), Ere::literal(digits) + longer});
}

Ere fractionBelow(std::string_view digits, bool orEqual) {
    const Ere equal =
        orEqual ? Ere::literal(digits) + anyNumberOf(Ere::literal("0")) : Ere::nothing();
    return alternatives({anyLength(digits, lesserFraction), equal});
}

}  // namespace xsd2c
