// tools/xsd2c/records/integers.h - whole numbers that hold the values of every integer type of the
// validator, signed or not, and what lies beyond them.
#pragma once

#include <algorithm>
#include <compare>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace xsd2c {

// Of any size, as digits: no type that every machine has holds the 64-bit numbers and one more.
class Integer {
  public:
    Integer(long long number)  // NOLINT(google-explicit-constructor): all of them are integers
        : Integer(number < 0, std::to_string(number).substr(number < 0 ? 1 : 0)) {}
    Integer(bool negative, std::string_view digits) {
        digits.remove_prefix(std::min(digits.find_first_not_of('0'), digits.size()));
        digits_ = digits;
        negative_ = negative && !digits.empty();
    }

    Integer next() const { return negative_ ? -towardsZero() : awayFromZero(); }
    Integer previous() const { return -(-*this).next(); }
    Integer operator-() const { return {!negative_, digits_}; }

    std::string text() const {
        return (negative_ ? "-" : "") + (digits_.empty() ? std::string("0") : digits_);
    }

    bool operator==(const Integer &) const = default;
    std::strong_ordering operator<=>(const Integer &other) const {
        if (negative_ != other.negative_) return other.negative_ <=> negative_;
        return negative_ ? other.compareDigits(*this) : compareDigits(other);
    }

  private:
    std::strong_ordering compareDigits(const Integer &other) const {
        const auto byLength = digits_.size() <=> other.digits_.size();
        return byLength != 0 ? byLength : digits_.compare(other.digits_) <=> 0;
    }
    // The digits of the neighbours, without a sign.
    Integer awayFromZero() const { return {false, stepped("0" + digits_, '9', '0', 1)}; }
    Integer towardsZero() const { return {false, stepped(digits_, '0', '9', -1)}; }
    // The last digits that are "full" turn over, and the one before them takes the step.
    static std::string stepped(std::string digits, char full, char turned, int step) {
        const std::size_t place = digits.find_last_not_of(full);
        digits[place] = static_cast<char>(digits[place] + step);
        std::fill(digits.begin() + static_cast<std::ptrdiff_t>(place) + 1, digits.end(), turned);
        return digits;
    }

    std::string digits_;  // none begins with 0, so that 0 has none
    bool negative_ = false;
};

struct Range {
    Integer least = 0;
    Integer most = -1;  // empty, unless set
};

// The number that a text of digits with an optional sign spells; none for other texts.
inline std::optional<Integer> readInteger(std::string_view text) {
    const bool negative = !text.empty() && text.front() == '-';
    if (!text.empty() && (text.front() == '-' || text.front() == '+')) text.remove_prefix(1);
    if (text.empty() || text.find_first_not_of("0123456789") != text.npos) return std::nullopt;
    return Integer{negative, text};
}

}  // namespace xsd2c
