#include <string>
#include <vector>

#include "xsd2c/pattern/decimal_text.h"
#include "xsd2c/pattern/digit_order.h"
#include "xsd2c/pattern/ere.h"
#include "xsd2c/pattern/pattern.h"

namespace xsd2c {
namespace {

constexpr std::optional<std::uint64_t> kNoLimit = std::nullopt;

Ere oneOf(std::string_view ascii) {
    ByteSet bytes;
    for (const char c : ascii) bytes.set(static_cast<std::size_t>(c));
    return Ere::oneOf(bytes);
}

Ere zeros() {
    return repeat(Ere::literal("0"), 0, kNoLimit);
}
Ere digits(std::uint64_t least = 0) {
    return repeat(Ere::digits('0', '9'), least, kNoLimit);
}
Ere fractionOf(const Ere &digitsBehindPoint) {
    return Ere::literal(".") + digitsBehindPoint;
}
Ere anySign() {
    return optional(oneOf("+-"));
}

// Numbers without a sign; values are known to be decimals.
Ere anyNumber() {
    return repeat(oneOf("0123456789."), 1, kNoLimit);
}
Ere anyZero() {
    return repeat(oneOf("0."), 1, kNoLimit);
}

Ere numbersAbove(const DecimalText &bound, bool orEqual) {
    if (bound.isZero()) {
        if (orEqual) return anyNumber();
        return repeat(oneOf("0."), 0, kNoLimit) + Ere::digits('1', '9') +
               repeat(oneOf("0123456789."), 0, kNoLimit);
    }
    const Ere longer = Ere::digits('1', '9') + digits(bound.integer.size());
    const Ere anyFraction = optional(fractionOf(digits()));
    if (bound.fraction.empty() && orEqual) {
        return zeros() + alternatives({longer, digitsAtLeast(bound.integer)}) + anyFraction;
    }
    return zeros() + alternatives({alternatives({longer, digitsAbove(bound.integer)}) + anyFraction,
                                   Ere::literal(bound.integer) +
                                       fractionOf(fractionAbove(bound.fraction, orEqual))});
}

Ere numbersBelow(const DecimalText &bound, bool orEqual) {
    if (bound.isZero()) return orEqual ? anyZero() : Ere::nothing();
    const std::size_t length = bound.integer.size();
    const Ere shorter = length == 0 ? Ere::nothing() : repeat(Ere::digits('0', '9'), 0, length - 1);
    // The number's own digits before the point, and less behind it.
    Ere equal = Ere::literal(bound.integer);
    if (!bound.fraction.empty()) {
        equal = equal + optional(fractionOf(fractionBelow(bound.fraction, orEqual)));
    } else {
        equal = orEqual ? equal + optional(fractionOf(zeros())) : Ere::nothing();
    }
    return zeros() + alternatives({alternatives({shorter, digitsBelow(bound.integer)}) +
                                       optional(fractionOf(digits())),
                                   equal});
}

// Numbers from the bound on in a direction, with the signs of those in that direction from zero and
// of the others. behindZero is whether the bound lies in the other direction.
Ere numbersFrom(const DecimalText &bound, bool behindZero, bool orEqual, const Ere &sign,
                const Ere &otherSign) {
    if (behindZero) {
        return alternatives({sign + anyNumber(), otherSign + numbersBelow(bound, orEqual)});
    }
    const Ere zero = bound.isZero() && orEqual ? otherSign + anyZero() : Ere::nothing();
    return alternatives({sign + numbersAbove(bound, orEqual), zero});
}

}  // namespace

std::string totalDigitsPattern(std::uint64_t count) {
    std::vector<Ere> branches = {repeat(Ere::digits('0', '9'), 0, count) +
                                 optional(fractionOf(zeros()))};
    // Its cost is the square of the number: there is no use in writing more than can be compiled.
    constexpr std::uint64_t kMost = 1000;
    if (count > kMost) throw NoTranslation("more than " + std::to_string(kMost) + " digits");
    for (std::uint64_t behind = 1; behind <= count; ++behind) {
        branches.push_back(repeat(Ere::digits('0', '9'), 0, count - behind) +
                           fractionOf(anyDigits(behind) + zeros()));
    }
    return wholePattern((anySign() + zeros() + alternatives(branches)).text());
}

std::string fractionDigitsPattern(std::uint64_t count) {
    const Ere behindPoint = repeat(Ere::digits('0', '9'), 0, count) + zeros();
    return wholePattern((anySign() + digits() + optional(fractionOf(behindPoint))).text());
}

std::string decimalBoundPattern(Bound bound, std::string_view value) {
    const DecimalText number = decimalTextOf(value);
    const bool orEqual = bound == Bound::kMinInclusive || bound == Bound::kMaxInclusive;
    const Ere plus = optional(Ere::literal("+")), minus = Ere::literal("-");
    const bool upwards = bound == Bound::kMinInclusive || bound == Bound::kMinExclusive;
    const Ere ere =
        upwards ? numbersFrom(number, number.negative, orEqual, plus, minus)
                : numbersFrom(number, !number.negative && !number.isZero(), orEqual, minus, plus);
    return wholePattern(ere.text());
}

std::string decimalValuePattern(std::string_view value) {
    const DecimalText number = decimalTextOf(value);
    if (number.isZero()) {
        const Ere some = repeat(Ere::literal("0"), 1, kNoLimit);
        return (anySign() + alternatives({some + optional(fractionOf(zeros())), fractionOf(some)}))
            .text();
    }
    const Ere sign = number.negative ? Ere::literal("-") : optional(Ere::literal("+"));
    Ere fraction = fractionOf(Ere::literal(number.fraction) + zeros());
    if (number.fraction.empty()) fraction = optional(fraction);
    return (sign + zeros() + Ere::literal(number.integer) + fraction).text();
}

}  // namespace xsd2c
