// Integers: signs, leading zeros, and both sides of every bound.
#include "schema/integer.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "compactxml.h"
#include "tests/support/faults.h"
#include "tests/support/feeds.h"

namespace {

// ---------------------------------------------------------------- a slow check

struct Row {
    std::uint32_t code;
    const char *name;
    bool hasSign;
    std::size_t longest;
    const char *lower, *upper;
};
constexpr Row kRows[] = {
    {3, "byte", true, 4, "-128", "127"},
    {4, "short", true, 6, "-32768", "32767"},
    {5, "unsignedByte", false, 3, "0", "255"},
    {6, "unsignedShort", false, 5, "0", "65535"},
    {7, "int", true, 11, "-2147483648", "2147483647"},
    {8, "long", true, 20, "-9223372036854775808", "9223372036854775807"},
    {9, "unsignedInt", false, 10, "0", "4294967295"},
    {10, "unsignedLong", false, 20, "0", "18446744073709551615"},
    {11, "integer", true, 20, "-9223372036854775808", "9223372036854775807"},
    {12, "positiveInteger", true, 20, "1", "9223372036854775807"},
    {13, "nonPositiveInteger", true, 20, "-9223372036854775808", "0"},
    {14, "negativeInteger", true, 20, "-9223372036854775808", "-1"},
    {15, "nonNegativeInteger", true, 20, "0", "9223372036854775807"},
};
constexpr const char kDigits[] = "0123456789";

bool isSpelledWell(const Row &row, const char *value) {
    if (row.hasSign && *value != '\0' && std::strchr("+|-", *value)) ++value;
    const std::size_t digits = std::strspn(value, kDigits);
    return digits != 0 && value[digits] == '\0';
}

// A sign digit and 20 places, so that texts compare as the positive numbers do.
std::string normalForm(bool negative, const char *digits) {
    char form[32];
    std::snprintf(form, sizeof form, "%1d%20s", negative ? 0 : 1, digits);
    return form;
}

std::string normalFormOfBound(const char *bound) {
    return *bound == '-' ? normalForm(true, bound + 1) : normalForm(false, bound);
}

int compareForms(const std::string &a, const std::string &b) {
    const int order = std::strcmp(a.c_str(), b.c_str());
    return a[0] == '0' && b[0] == '0' ? -order : order;
}

bool modelAccepts(const Row &row, const char *value) {
    if (!isSpelledWell(row, value)) return false;
    const char *digits = std::strpbrk(value, "123456789");
    if (!digits) digits = value + std::strlen(value) - 1;
    const bool sign = !std::strchr(kDigits, *value);
    if (std::strlen(digits) + (sign ? 1 : 0) > row.longest) return false;
    if (row.code <= 6) {
        const long number = std::atol(value);
        return (!row.hasSign || number >= std::atol(row.lower)) && number <= std::atol(row.upper);
    }
    const std::string form = normalForm(*value == '-', digits);
    if (row.hasSign && compareForms(normalFormOfBound(row.lower), form) > 0) return false;
    return compareForms(normalFormOfBound(row.upper), form) >= 0;
}

void expectAsInTheModel(const Row &row, const std::string &value) {
    ASSERT_EQ(cxml::checkInteger(row.code, value.c_str()), modelAccepts(row, value.c_str()))
        << row.name << " \"" << support::printable(value) << "\"";
}

// ---------------------------------------------------------------- bounds

struct BoundCase {
    std::uint32_t code;
    const char *inside[3];
    const char *outside[3];
};
constexpr BoundCase kBounds[] = {
    {3, {"-128", "-127", "0"}, {"-129", "-130", "-1000"}},
    {3, {"127", "126", "1"}, {"128", "129", "999"}},
    {4, {"-32768", "-32767", "-1"}, {"-32769", "-40000", "-99999"}},
    {4, {"32767", "32766", "0"}, {"32768", "99999", "100000"}},
    {5, {"0", "00", "1"}, {"-0", "-1", "+0"}},
    {5, {"255", "254", "0255"}, {"256", "999", "1000"}},
    {6, {"0", "000000", "1"}, {"-0", "-1", "+1"}},
    {6, {"65535", "65534", "065535"}, {"65536", "99999", "100000"}},
    {7, {"-2147483648", "-2147483647", "-1"}, {"-2147483649", "-9999999999", "-10000000000"}},
    {7, {"2147483647", "2147483646", "0"}, {"2147483648", "9999999999", "21474836470"}},
    {8,
     {"-9223372036854775808", "-9223372036854775807", "-999999999999999999"},
     {"-9223372036854775809", "-9999999999999999999", "-10000000000000000000"}},
    {8,
     {"9223372036854775807", "9223372036854775806", "0"},
     {"9223372036854775808", "9999999999999999999", "18446744073709551616"}},
    {9, {"0", "00000000000", "1"}, {"-0", "-1", "+1"}},
    {9, {"4294967295", "4294967294", "04294967295"}, {"4294967296", "9999999999", "10000000000"}},
    {10, {"0", "00000000000000000000000", "1"}, {"-0", "-1", "+1"}},
    {10,
     {"18446744073709551615", "18446744073709551614", "018446744073709551615"},
     {"18446744073709551616", "99999999999999999999", "100000000000000000000"}},
    {11,
     {"-9223372036854775808", "-9223372036854775807", "-0"},
     {"-9223372036854775809", "-9999999999999999999", "-18446744073709551615"}},
    {11,
     {"9223372036854775807", "9223372036854775806", "+0"},
     {"9223372036854775808", "+9223372036854775808", "99999999999999999999"}},
    {12, {"1", "+1", "2"}, {"0", "-0", "-1"}},
    {12,
     {"9223372036854775807", "9223372036854775806", "+9223372036854775807"},
     {"9223372036854775808", "00", "+0"}},
    {13,
     {"-9223372036854775808", "-9223372036854775807", "-1"},
     {"-9223372036854775809", "-9999999999999999999", "-100000000000000000000"}},
    {13, {"0", "-0", "+0"}, {"1", "+1", "|1"}},
    {14,
     {"-9223372036854775808", "-9223372036854775807", "-2"},
     {"-9223372036854775809", "-9999999999999999999", "-100000000000000000000"}},
    {14, {"-1", "-01", "-10"}, {"-0", "0", "1"}},
    {15, {"0", "+0", "|0"}, {"-0", "-1", "-00"}},
    {15,
     {"9223372036854775807", "9223372036854775806", "+9223372036854775807"},
     {"9223372036854775808", "9223372036854775809", "18446744073709551615"}},
};

TEST(Integer, BothSidesOfEveryBound) {
    for (const BoundCase &row : kBounds) {
        for (const char *value : row.inside) {
            EXPECT_TRUE(cxml::checkInteger(row.code, value)) << row.code << ' ' << value;
        }
        for (const char *value : row.outside) {
            EXPECT_FALSE(cxml::checkInteger(row.code, value)) << row.code << ' ' << value;
        }
    }
}

// ---------------------------------------------------------------- spellings

struct ValueCase {
    std::uint32_t code;
    const char *value;
    bool valid;
};
constexpr ValueCase kSpellings[] = {
    // A sign counts as a digit of the length, whichever it is.
    {3, "+127", true},
    {3, "+128", false},
    {3, "-128", true},
    {3, "1234", false},
    {3, "12345", false},
    {3, "+1234", false},
    {4, "+32767", true},
    {4, "+32768", false},
    {4, "+99999", false},
    {4, "+100000", false},
    {7, "+2147483647", true},
    {7, "+2147483648", false},
    {8, "+9223372036854775807", true},
    {8, "+9223372036854775808", false},
    {8, "+10000000000000000000", false},
    // Leading zeros do not.
    {3, "00000000000000000000127", true},
    {3, "0000000000000000000000127", true},
    {3, "00000000000000000000128", false},
    {3, "-00000000000000000000128", true},
    {3, "-00000000000000000000129", false},
    {5, "0000000000255", true},
    {5, "0000000000256", false},
    {8, "000000000000000000000000009223372036854775807", true},
    {8, "000000000000000000000000009223372036854775808", false},
    {8, "-000000000000000000000000009223372036854775808", true},
    {10, "0000000000018446744073709551615", true},
    {10, "0000000000018446744073709551616", false},
    {11, "0000000000000000000000000000000", true},
    {12, "0000000000000000000000000000001", true},
    {12, "0000000000000000000000000000000", false},
    {14, "-0000000000000000000000000000001", true},
    {14, "-0000000000000000000000000000000", false},
    // "-0" is less than 0, also of the types that hold 0.
    {3, "-0", true},
    {4, "-0", true},
    {7, "-0", true},
    {8, "-0", true},
    {11, "-0", true},
    {12, "-0", false},
    {13, "-0", true},
    {14, "-0", false},
    {15, "-0", false},
    {15, "-00", false},
    {3, "+0", true},
    {7, "+0", true},
    {11, "+0", true},
    {12, "+0", false},
    {13, "+0", true},
    {14, "+0", false},
    {15, "+0", true},
    // The third sign: nothing to the greater types, and 0 to the small ones.
    {3, "|5", true},
    {3, "|999", true},
    {3, "|9999", false},
    {3, "|0999", true},
    {4, "|99999", true},
    {4, "|100000", false},
    {5, "|5", false},
    {6, "|5", false},
    {7, "|5", true},
    {7, "|2147483647", true},
    {7, "|2147483648", false},
    {8, "|9223372036854775807", true},
    {8, "|9223372036854775808", false},
    {9, "|5", false},
    {10, "|5", false},
    {11, "|5", true},
    {12, "|5", true},
    {12, "|0", false},
    {13, "|5", false},
    {13, "|0", true},
    {14, "|5", false},
    {15, "|5", true},
    // No numbers.
    {3, "", false},
    {3, "+", false},
    {3, "-", false},
    {3, "|", false},
    {3, "+-1", false},
    {3, "--1", false},
    {3, "+|1", false},
    {3, "1+", false},
    {3, "1-", false},
    {3, " 1", false},
    {3, "1 ", false},
    {3, "1\n", false},
    {3, "\n1", false},
    {3, "1.0", false},
    {3, "1e1", false},
    {3, "0x1", false},
    {3, "a", false},
    {3, "1a", false},
    {3, "/", false},
    {3, ":", false},
    {3, "\xB1", false},
    {3, "\xEF\xBC\x91", false},
    {7, "", false},
    {7, "+", false},
    {7, "-", false},
    {7, "|", false},
    {7, "1,000", false},
    {7, "1 000", false},
    {9, "", false},
    {9, "+", false},
    {9, "1-", false},
    {15, "", false},
    {15, "-", false},
    // Codes of other types.
    {0, "1", false},
    {1, "1", false},
    {2, "1", false},
    {16, "1", false},
    {28, "1", false},
    {UINT32_MAX, "1", false},
};

TEST(Integer, SignsZerosAndOddities) {
    for (const ValueCase &row : kSpellings) {
        EXPECT_EQ(cxml::checkInteger(row.code, row.value), row.valid)
            << row.code << " \"" << support::printable(row.value) << "\"";
    }
}

TEST(Integer, LengthsAroundTheLimit) {
    for (const Row &row : kRows) {
        for (std::size_t length = 1; length <= row.longest + 3; ++length) {
            for (const char *sign : {"", "+", "-", "|"}) {
                for (const char *zeros : {"", "0", "000000000000000000000000"}) {
                    for (const char digit : {'0', '1', '9'}) {
                        const std::string value = sign + (zeros + std::string(length, digit));
                        ASSERT_NO_FATAL_FAILURE(expectAsInTheModel(row, value));
                    }
                }
            }
        }
    }
}

TEST(Integer, NoNumberOfDigitsOverflows) {
    const support::FaultyHeap heap(1, true);
    for (const Row &row : kRows) {
        static char value[1 << 16];
        for (const char digit : {'9', '0'}) {
            std::memset(value, digit, sizeof value - 1);
            const bool zeroIsValid = row.code != 12 && row.code != 14;
            EXPECT_EQ(cxml::checkInteger(row.code, value), digit == '0' && zeroIsValid) << row.name;
            // Leading zeros, and all that follows counts.
            value[sizeof value - 2] = '1';
            EXPECT_EQ(cxml::checkInteger(row.code, value),
                      digit == '0' && row.code != 13 && row.code != 14)
                << row.name;
        }
    }
    EXPECT_EQ(heap.allocations(), 0u);
}

// ---------------------------------------------------------------- against the model

// A decimal number of any length and a small one, added; "" if the sum is below 0.
std::string plus(std::string digits, int small) {
    for (std::size_t i = digits.size(); i-- > 0 && small != 0;) {
        const int sum = digits[i] - '0' + small;
        const int digit = (sum % 10 + 10) % 10;
        digits[i] = static_cast<char>('0' + digit);
        small = (sum - digit) / 10;
    }
    if (small < 0) return "";
    if (small > 0) digits.insert(0, std::to_string(small));
    const std::size_t zeros = digits.find_first_not_of('0');
    return zeros == std::string::npos ? "0" : digits.substr(zeros);
}

std::string doubled(const std::string &digits) {
    std::string result = digits;
    int carry = 0;
    for (std::size_t i = result.size(); i-- > 0;) {
        const int sum = 2 * (result[i] - '0') + carry;
        result[i] = static_cast<char>('0' + sum % 10);
        carry = sum / 10;
    }
    return carry != 0 ? "1" + result : result;
}

// Numbers at most so far from each power of ten up to 10^21 and each power of two up to 2^70.
std::vector<std::string> numbersNearPowers(int distance) {
    std::vector<std::string> powers, numbers;
    for (std::size_t exponent = 0; exponent <= 21; ++exponent) {
        powers.push_back("1" + std::string(exponent, '0'));
    }
    std::string power = "1";
    for (int exponent = 0; exponent <= 70; ++exponent, power = doubled(power)) {
        powers.push_back(power);
    }
    for (const std::string &middle : powers) {
        for (int d = -distance; d <= distance; ++d) {
            const std::string number = plus(middle, d);
            if (!number.empty()) numbers.push_back(number);
        }
    }
    return numbers;
}

TEST(Integer, NumbersNearPowersOfTenAndTwoAsInTheModel) {
    std::mt19937 random(5);
    std::size_t valid = 0;
    for (const std::string &number : numbersNearPowers(40)) {
        for (const Row &row : kRows) {
            for (const char *sign : {"", "+", "-", "|"}) {
                const std::string value = sign + std::string(random() % 3, '0') + number;
                ASSERT_NO_FATAL_FAILURE(expectAsInTheModel(row, value));
                valid += modelAccepts(row, value.c_str()) ? 1 : 0;
            }
        }
    }
    EXPECT_GT(valid, 100'000u);
}

TEST(Integer, RandomNumbersAsInTheModel) {
    std::mt19937_64 random(7);
    for (int i = 0; i < 300'000; ++i) {
        const Row &row = kRows[random() % std::size(kRows)];
        // A random number of random bits, or a bound, and then a change in a digit.
        std::string value = std::to_string(random() >> random() % 64);
        if (random() % 4 == 0) value = random() % 2 ? row.lower : row.upper;
        if (random() % 4 == 0) value += std::to_string(random() % 100);
        if (random() % 3 == 0) value[random() % value.size()] = kDigits[random() % 10];
        if (random() % 4 == 0) value.insert(0, random() % 30, '0');
        if (random() % 2 == 0) value.insert(0, 1, "+-|,"[random() % 4]);
        if (random() % 20 == 0) {
            value[random() % value.size()] = static_cast<char>(1 + random() % UINT8_MAX);
        }
        ASSERT_NO_FATAL_FAILURE(expectAsInTheModel(row, value));
    }
}

TEST(Integer, EveryNumberOfTheSmallTypes) {
    for (const Row &row : kRows) {
        if (row.code > 6) break;
        const long lower = std::atol(row.lower), upper = std::atol(row.upper);
        for (long number = -70'000; number <= 110'000; ++number) {
            const bool valid = number >= lower && number <= upper;
            ASSERT_EQ(cxml::checkInteger(row.code, std::to_string(number).c_str()), valid)
                << row.name << ' ' << number;
        }
    }
}

}  // namespace
