#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "pattern_support.h"
#include "xsd2c/pattern/pattern.h"

namespace {

using namespace xsd2c;
using patterns::Compiled;

// Numbers are compared as texts of equal length, which the code under test does not do.
constexpr std::size_t kWidth = 1200;

struct Number {
    bool negative;
    std::string digits;  // kWidth before the point and kWidth behind it

    bool isZero() const { return digits.find_first_not_of('0') == digits.npos; }
};

Number numberOf(std::string_view text) {
    Number number{text.starts_with('-'), {}};
    if (text.starts_with('-') || text.starts_with('+')) text.remove_prefix(1);
    const std::size_t point = std::min(text.find('.'), text.size());
    std::string before(text.substr(0, point)),
        behind(text.substr(std::min(point + 1, text.size())));
    number.digits = std::string(kWidth - before.size(), '0') + before + behind +
                    std::string(kWidth - behind.size(), '0');
    if (number.isZero()) number.negative = false;
    return number;
}

int compare(std::string_view a, std::string_view b) {
    const Number left = numberOf(a), right = numberOf(b);
    if (left.negative != right.negative) return left.negative ? -1 : 1;
    const int order = left.digits.compare(right.digits);
    return (left.negative ? -1 : 1) * (order < 0 ? -1 : order > 0 ? 1 : 0);
}

constexpr Bound kBounds[] = {Bound::kMinInclusive, Bound::kMinExclusive, Bound::kMaxInclusive,
                             Bound::kMaxExclusive};

bool isWithin(Bound bound, int order) {
    switch (bound) {
        case Bound::kMinInclusive:
            return order >= 0;
        case Bound::kMinExclusive:
            return order > 0;
        case Bound::kMaxInclusive:
            return order <= 0;
        case Bound::kMaxExclusive:
            break;
    }
    return order < 0;
}

const std::vector<std::string> &decimals() {
    static const std::vector<std::string> all = [] {
        std::vector<std::string> result;
        for (const char *text : {"0",
                                 "0.0",
                                 ".0",
                                 "0.",
                                 "000",
                                 "1",
                                 "01",
                                 "1.0",
                                 "1.",
                                 "1.01",
                                 "9",
                                 "9.9",
                                 "9.99",
                                 "10",
                                 "10.0",
                                 "10.01",
                                 "11",
                                 "12",
                                 "12.4",
                                 "12.49",
                                 "12.5",
                                 "12.50",
                                 "12.500",
                                 "012.5",
                                 "12.501",
                                 "12.51",
                                 "12.6",
                                 "13",
                                 "19",
                                 "20",
                                 "99",
                                 "99.9",
                                 "100",
                                 "0100",
                                 "100.000",
                                 "100.001",
                                 "101",
                                 "109",
                                 "110",
                                 "999",
                                 "1000",
                                 "1999",
                                 "2000",
                                 "4093",
                                 "4094",
                                 "4094.1",
                                 "4095",
                                 "5000",
                                 "10000",
                                 "99999",
                                 ".5",
                                 "0.5",
                                 "0.49",
                                 "0.499",
                                 "0.50",
                                 "0.501",
                                 ".05",
                                 "0.05",
                                 "0.04999",
                                 "0.051",
                                 "0.005",
                                 "0.1",
                                 "0.09",
                                 "0.0999999",
                                 "123456789012345678901234567890",
                                 "123456789012345678901234567891.5"}) {
            for (const char *sign : {"", "+", "-"}) result.push_back(std::string(sign) + text);
        }
        return result;
    }();
    return all;
}

TEST(DecimalBoundPattern, ComparesWithAllBounds) {
    for (const std::string &bound : decimals()) {
        for (const Bound kind : kBounds) {
            const Compiled compiled(decimalBoundPattern(kind, bound));
            for (const std::string &value : decimals()) {
                ASSERT_EQ(compiled.matches(value), isWithin(kind, compare(value, bound)))
                    << value << " and " << bound << ", " << static_cast<int>(kind);
            }
        }
    }
}

class Random {
  public:
    explicit Random(unsigned seed) : engine_(seed) {}
    std::size_t below(std::size_t count) { return engine_() % count; }
    std::string digits(std::size_t count) {
        // Few digits, so that texts have long beginnings in common.
        const std::string_view choice = below(2) == 0 ? "09" : "0123456789";
        std::string result;
        for (; count != 0; --count) result += choice[below(choice.size())];
        return result;
    }
    std::string decimal(std::size_t before, std::size_t behind) {
        std::string text = digits(below(before + 1));
        if (behind != 0 && below(3) != 0) text += "." + digits(below(behind + 1));
        if (text.empty() || text == ".") text = "0" + text;
        const std::size_t sign = below(3);
        return (sign == 0 ? "" : sign == 1 ? "+" : "-") + text;
    }
    // The same number or one close to it, with other zeros.
    std::string neighbor(std::string text) {
        const std::size_t at = below(text.size());
        if (below(3) != 0 && text[at] >= '0' && text[at] <= '9') {
            text[at] = static_cast<char>('0' + below(10));
        }
        const bool hasPoint = text.find('.') != text.npos;
        if (below(4) == 0) text.insert(text.find_first_of("0123456789."), "00");
        if (below(4) == 0) text += hasPoint ? "00" : ".";
        if (below(8) == 0 && hasPoint) text += "1";
        return text;
    }

  private:
    std::mt19937 engine_;
};

TEST(DecimalBoundPattern, ComparesWithAnyBound) {
    Random random(1);
    for (int i = 0; i < 400; ++i) {
        const std::size_t size = i % 10 == 0 ? 90 : i % 2 == 0 ? 20 : 3;
        const std::string bound = random.decimal(size, size);
        for (const Bound kind : kBounds) {
            const Compiled compiled(decimalBoundPattern(kind, bound));
            for (int j = 0; j < 40; ++j) {
                const std::string value =
                    j % 4 == 0 ? random.decimal(size + 1, size + 1) : random.neighbor(bound);
                ASSERT_EQ(compiled.matches(value), isWithin(kind, compare(value, bound)))
                    << value << " and " << bound << ", " << static_cast<int>(kind);
            }
        }
    }
}

TEST(DecimalBoundPattern, TakesBoundsOfManyDigits) {
    Random random(2);
    const std::string bound = "1" + random.digits(999) + "." + random.digits(999) + "1";
    for (const Bound kind : kBounds) {
        const Compiled compiled(decimalBoundPattern(kind, bound));
        for (int j = 0; j < 100; ++j) {
            const std::string value = random.neighbor(bound);
            ASSERT_EQ(compiled.matches(value), isWithin(kind, compare(value, bound))) << value;
        }
    }
    EXPECT_THROW(decimalBoundPattern(Bound::kMinInclusive, std::string(1000000, '7')),
                 NoTranslation);
}

TEST(DecimalBoundPattern, IsSpelledShortly) {
    EXPECT_EQ(decimalBoundPattern(Bound::kMinInclusive, "-0"), "^(\\+?[.0-9]+|-[.0]+)$");
    EXPECT_EQ(decimalBoundPattern(Bound::kMaxExclusive, "0.0"), "^(-[.0]*[1-9][.0-9]*)$");
    EXPECT_EQ(decimalBoundPattern(Bound::kMinInclusive, "+3"),
              "^(\\+?0*([1-9][0-9]+|[3-9])(\\.[0-9]*)?)$");
}

TEST(DecimalValuePattern, MatchesAllSpellings) {
    for (const std::string &number : decimals()) {
        const Compiled compiled(wholePattern(decimalValuePattern(number)));
        for (const std::string &value : decimals()) {
            ASSERT_EQ(compiled.matches(value), compare(value, number) == 0)
                << value << " and " << number;
        }
        for (const char *other : {"", ".", "+", "-.", "1.2.3", "a", " 1", "1e0"}) {
            ASSERT_FALSE(compiled.matches(other)) << number << " and " << other;
        }
    }
}

struct Digits {
    std::size_t total;
    std::size_t fraction;
};

// As XML Schema counts them: leading zeros and those at the end of the fraction do not count.
Digits digitsOf(std::string_view value) {
    const Number number = numberOf(value);
    const std::string_view all = number.digits;
    const std::size_t first = std::min(all.find_first_not_of('0'), kWidth);
    const std::size_t last = all.find_last_not_of('0');
    const std::size_t behind = last == all.npos || last < kWidth ? 0 : last - kWidth + 1;
    return {kWidth - first + behind, behind};
}

TEST(DigitsPattern, CountsDigits) {
    Random random(3);
    std::vector<std::string> values = decimals();
    for (int i = 0; i < 500; ++i) values.push_back(random.decimal(8, 8));
    for (std::size_t count = 0; count <= 20; ++count) {
        const Compiled fraction(fractionDigitsPattern(count));
        const Compiled total(totalDigitsPattern(std::max<std::size_t>(count, 1)));
        for (const std::string &value : values) {
            const Digits digits = digitsOf(value);
            EXPECT_EQ(fraction.matches(value), digits.fraction <= count) << count << " " << value;
            EXPECT_EQ(total.matches(value), digits.total <= std::max<std::size_t>(count, 1))
                << count << " " << value;
        }
    }
    EXPECT_THROW(totalDigitsPattern(0xFFFFFFFF), NoTranslation);
    EXPECT_THROW(fractionDigitsPattern(0xFFFFFFFF), NoTranslation);
}

std::string textOf(std::int64_t number) {
    return std::to_string(number);
}

TEST(IntegerRangePattern, MatchesTheIntegersOfSmallRanges) {
    Random random(4);
    const auto edge = [&] {
        constexpr std::int64_t kEdges[] = {
            -1000, -999, -256, -128, -101, -100, -99, -11, -10, -9,  -2,  -1,  0,   1,    2,   9,
            10,    11,   19,   20,   99,   100,  101, 127, 199, 200, 255, 256, 999, 1000, 1001};
        return random.below(2) == 0 ? kEdges[random.below(std::size(kEdges))]
                                    : static_cast<std::int64_t>(random.below(2400)) - 1200;
    };
    for (int i = 0; i < 600; ++i) {
        const std::int64_t least = edge(), most = edge();
        const Compiled compiled(wholePattern(integerRangePattern(textOf(least), textOf(most))));
        for (std::int64_t number = -1300; number <= 1300; ++number) {
            const bool expected = number >= least && number <= most;
            const std::string digits = textOf(number < 0 ? -number : number);
            const std::string sign = number < 0 ? "-" : "";
            ASSERT_EQ(compiled.matches(sign + digits), expected) << number << least << ".." << most;
            if (number % 17 == 0) {
                ASSERT_EQ(compiled.matches(sign + "00" + digits), expected) << number;
                const std::string plus = number < 0 ? "-0" : "+0";
                ASSERT_EQ(compiled.matches(plus + digits), expected) << number;
            }
        }
        const bool hasZero = least <= 0 && most >= 0;
        for (const char *zero : {"0", "-0", "+0", "00", "-000"}) {
            ASSERT_EQ(compiled.matches(zero), hasZero) << zero << least << ".." << most;
        }
        for (const char *other : {"", "+", "-", "a", "1.0", " 1", "1 ", "--1", "+-1"}) {
            ASSERT_FALSE(compiled.matches(other)) << other;
        }
    }
}

TEST(IntegerRangePattern, MatchesTheIntegersOfLargeRanges) {
    Random random(5);
    for (int i = 0; i < 300; ++i) {
        const std::size_t size = 1 + random.below(i % 10 == 0 ? 90 : 22);
        std::string least = random.decimal(size, 0), most = random.decimal(size, 0);
        if (random.below(3) == 0) most = random.neighbor(least);
        std::erase(least, '.');
        std::erase(most, '.');
        const Compiled compiled(wholePattern(integerRangePattern(least, most)));
        for (int j = 0; j < 60; ++j) {
            std::string value = j % 3 == 0   ? random.neighbor(least)
                                : j % 3 == 1 ? random.neighbor(most)
                                             : random.decimal(size + 1, 0);
            std::erase(value, '.');
            const bool expected = compare(value, least) >= 0 && compare(value, most) <= 0;
            ASSERT_EQ(compiled.matches(value), expected) << value << " " << least << ".." << most;
        }
    }
}

TEST(IntegerRangePattern, IsSpelledShortly) {
    EXPECT_EQ(integerRangePattern("1", "4094"),
              "\\+?0*([1-9][0-9]{0,2}|[1-3][0-9]{3}|4(0[0-8][0-9]|09[0-4]))");
    EXPECT_EQ(integerRangePattern("0", "255"),
              "(\\+?0*([0-9]{1,2}|1[0-9]{2}|2([0-4][0-9]|5[0-5]))|-0*0)");
    EXPECT_EQ(integerRangePattern("100", "999"), "\\+?0*[1-9][0-9]{2}");
    EXPECT_EQ(integerRangePattern("+7", "007"), "\\+?0*7");
    EXPECT_EQ(integerRangePattern("7", "3"), "[^\x01-\xFF]");
}

}  // namespace
