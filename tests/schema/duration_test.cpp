// Durations: the one spelling, carries, and the order.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <ostream>
#include <random>
#include <string>
#include <string_view>

#include "compactxml.h"
#include "schema/date_time.h"
#include "tests/support/faults.h"
#include "tests/support/feeds.h"

namespace {

struct Fields {
    int years, months, days, hours, minutes, seconds;
    bool operator==(const Fields &) const = default;
};

Fields fieldsOf(const SchemaDurationValue &v) {
    return {v.years, v.months, v.days, v.hours, v.minutes, v.seconds};
}

std::ostream &operator<<(std::ostream &out, const Fields &v) {
    return out << v.years << " y " << v.months << " mo " << v.days << " d " << v.hours << " h "
               << v.minutes << " min " << v.seconds << " s";
}

// ---------------------------------------------------------------- spellings

struct ValueCase {
    const char *value;
    bool valid;
};
constexpr ValueCase kValues[] = {
    {"P1Y0M0DT0H0M0S", true},
    {"P0Y0M0DT0H0M0S", true},
    {"P1Y2M3DT4H5M6S", true},
    {"P9999Y12M30DT24H60M60S", true},
    {"P0001Y00002M00003DT00004H00005M00006S", true},
    {"P9999Y65535M65535DT65535H65535M65535S", true},
    // Every part is there, in this order.
    {"", false},
    {"P", false},
    {"PT", false},
    {"P1Y", false},
    {"PT1H", false},
    {"P1Y1M1D", false},
    {"PT1H1M1S", false},
    {"P1Y1M1DT", false},
    {"P1M1DT1H1M1S", false},
    {"P1Y1DT1H1M1S", false},
    {"P1Y1MT1H1M1S", false},
    {"P1Y1M1DT1M1S", false},
    {"P1Y1M1DT1H1S", false},
    {"P1Y1M1DT1H1M", false},
    {"P1Y1M1D1H1M1S", false},
    {"P1M1Y1DT1H1M1S", false},
    {"P1Y1M1DT1M1H1S", false},
    {"P1Y1M1DT1H1M1S1S", false},
    {"1Y1M1DT1H1M1S", false},
    {"P1W", false},
    // Every part has its digits.
    {"PY0M0DT0H0M0S", false},
    {"P0YM0DT0H0M0S", false},
    {"P0Y0MDT0H0M0S", false},
    {"P0Y0M0DTH0M0S", false},
    {"P0Y0M0DT0HM0S", false},
    {"P0Y0M0DT0H0MS", false},
    // At most four for years, and five for others.
    {"P9999Y0M0DT0H0M0S", true},
    {"P10000Y0M0DT0H0M0S", false},
    {"P00001Y0M0DT0H0M0S", false},
    {"P0Y65535M0DT0H0M0S", true},
    {"P0Y65536M0DT0H0M0S", false},
    {"P0Y99999M0DT0H0M0S", false},
    {"P0Y000001M0DT0H0M0S", false},
    {"P0Y0M65535DT0H0M0S", true},
    {"P0Y0M65536DT0H0M0S", false},
    {"P0Y0M000001DT0H0M0S", false},
    {"P0Y0M0DT65535H0M0S", true},
    {"P0Y0M0DT65536H0M0S", false},
    {"P0Y0M0DT000001H0M0S", false},
    {"P0Y0M0DT0H65535M0S", true},
    {"P0Y0M0DT0H65536M0S", false},
    {"P0Y0M0DT0H000001M0S", false},
    {"P0Y0M0DT0H0M65535S", true},
    {"P0Y0M0DT0H0M65536S", false},
    {"P0Y0M0DT0H0M70000S", false},
    {"P0Y0M0DT0H0M99999S", false},
    {"P0Y0M0DT0H0M000001S", false},
    // No sign, no fraction, nothing around, no other letters.
    {"-P1Y0M0DT0H0M0S", false},
    {"+P1Y0M0DT0H0M0S", false},
    {"P-1Y0M0DT0H0M0S", false},
    {"P+1Y0M0DT0H0M0S", false},
    {"P1Y0M0DT0H0M0.5S", false},
    {"P1Y0M0DT0H0M.5S", false},
    {" P1Y0M0DT0H0M0S", false},
    {"P1Y0M0DT0H0M0S ", false},
    {"P1Y0M0DT0H0M0S\n", false},
    {"P 1Y0M0DT0H0M0S", false},
    {"p1y0m0dt0h0m0s", false},
    {"P1Y0M0Dt0H0M0S", false},
    {"P1Y0M0DT0H0M0\xD3", false},
};

TEST(Duration, Spellings) {
    for (const ValueCase &row : kValues) {
        EXPECT_EQ(cxml::checkDuration(row.value, nullptr), row.valid)
            << support::printable(row.value);
        if (*row.value == '\0') continue;
        EXPECT_EQ(SCHEMA_CheckBaseTypeNonNull(SCHEMA_TYPE_DURATION, row.value), row.valid ? 1u : 0u)
            << support::printable(row.value);
    }
}

TEST(Duration, LeavesTheRecordOfAnInvalidValueAlone) {
    SchemaDurationValue value{1, 2, 3, 4, 5, 6};
    EXPECT_FALSE(cxml::checkDuration("P1Y", &value));
    EXPECT_FALSE(cxml::checkDuration("P0Y0M0DT0H0M65536S", &value));
    EXPECT_EQ(fieldsOf(value), (Fields{1, 2, 3, 4, 5, 6}));
}

// ---------------------------------------------------------------- carries

struct CarryCase {
    const char *value;
    Fields fields;
};
constexpr CarryCase kCarries[] = {
    {"P1Y2M3DT4H5M6S", {1, 2, 3, 4, 5, 6}},
    {"P0001Y00002M00003DT00004H00005M00006S", {1, 2, 3, 4, 5, 6}},
    {"P0Y0M0DT0H0M59S", {0, 0, 0, 0, 0, 59}},
    {"P0Y0M0DT0H0M60S", {0, 0, 0, 0, 1, 0}},
    {"P0Y0M0DT0H0M61S", {0, 0, 0, 0, 1, 1}},
    {"P0Y0M0DT0H0M119S", {0, 0, 0, 0, 1, 59}},
    {"P0Y0M0DT0H0M120S", {0, 0, 0, 0, 2, 0}},
    {"P0Y0M0DT0H59M0S", {0, 0, 0, 0, 59, 0}},
    {"P0Y0M0DT0H60M0S", {0, 0, 0, 1, 0, 0}},
    {"P0Y0M0DT0H61M0S", {0, 0, 0, 1, 1, 0}},
    {"P0Y0M0DT23H0M0S", {0, 0, 0, 23, 0, 0}},
    {"P0Y0M0DT24H0M0S", {0, 0, 1, 0, 0, 0}},
    {"P0Y0M0DT25H0M0S", {0, 0, 1, 1, 0, 0}},
    {"P0Y0M29DT0H0M0S", {0, 0, 29, 0, 0, 0}},
    {"P0Y0M30DT0H0M0S", {0, 1, 0, 0, 0, 0}},
    {"P0Y0M31DT0H0M0S", {0, 1, 1, 0, 0, 0}},
    {"P0Y11M0DT0H0M0S", {0, 11, 0, 0, 0, 0}},
    {"P0Y12M0DT0H0M0S", {1, 0, 0, 0, 0, 0}},
    {"P0Y13M0DT0H0M0S", {1, 1, 0, 0, 0, 0}},
    // One second carries all the way.
    {"P0Y11M29DT23H59M59S", {0, 11, 29, 23, 59, 59}},
    {"P0Y11M29DT23H59M60S", {1, 0, 0, 0, 0, 0}},
    {"P9999Y11M29DT23H59M60S", {10000, 0, 0, 0, 0, 0}},
    {"P0Y0M0DT0H59M60S", {0, 0, 0, 1, 0, 0}},
    {"P0Y0M0DT23H60M0S", {0, 0, 1, 0, 0, 0}},
    {"P0Y0M29DT24H0M0S", {0, 1, 0, 0, 0, 0}},
    {"P0Y11M30DT0H0M0S", {1, 0, 0, 0, 0, 0}},
    // Each number alone at its greatest.
    {"P0Y0M0DT0H0M65535S", {0, 0, 0, 18, 12, 15}},
    {"P0Y0M0DT0H65535M0S", {0, 1, 15, 12, 15, 0}},
    {"P0Y0M0DT65535H0M0S", {7, 7, 0, 15, 0, 0}},
    {"P0Y0M65535DT0H0M0S", {182, 0, 15, 0, 0, 0}},
    {"P0Y65535M0DT0H0M0S", {5461, 3, 0, 0, 0, 0}},
    {"P9999Y65535M0DT0H0M0S", {15460, 3, 0, 0, 0, 0}},
    // Where a carry does not fit into 16 bits it wraps around.
    {"P0Y0M0DT0H65534M60S", {0, 1, 15, 12, 15, 0}},
    {"P0Y0M0DT0H65535M60S", {0, 0, 0, 0, 0, 0}},
    {"P0Y0M0DT0H65535M65535S", {0, 0, 0, 18, 11, 15}},
    {"P0Y0M0DT65535H60M0S", {0, 0, 0, 0, 0, 0}},
    {"P0Y0M0DT65535H65535M0S", {0, 1, 15, 11, 15, 0}},
    {"P0Y0M65535DT24H0M0S", {0, 0, 0, 0, 0, 0}},
    {"P0Y0M65535DT65535H0M0S", {7, 6, 29, 15, 0, 0}},
    {"P0Y65535M30DT0H0M0S", {0, 0, 0, 0, 0, 0}},
    {"P0Y65535M65535DT0H0M0S", {181, 11, 15, 0, 0, 0}},
    {"P0Y65535M59DT24H0M0S", {0, 1, 0, 0, 0, 0}},
};

TEST(Duration, Carries) {
    for (const CarryCase &row : kCarries) {
        SchemaDurationValue value{};
        ASSERT_TRUE(cxml::checkDuration(row.value, &value)) << row.value;
        EXPECT_EQ(fieldsOf(value), row.fields) << row.value;
    }
}

// ---------------------------------------------------------------- against a slow reading

void carrySlowly(std::uint16_t *from, std::uint16_t *to, int limit) {
    while (*from >= limit) {
        *from = static_cast<std::uint16_t>(*from - limit);
        ++*to;
    }
}

// Reads a well-spelled value; false for a number that does not fit.
bool readSlowly(const char *text, SchemaDurationValue *v) {
    bool inTime = false;
    for (++text; *text != '\0';) {
        if (*text == 'T') {
            inTime = true;
            ++text;
        }
        const char *letter = text + std::strcspn(text, "YMDHS");
        const int number = std::atoi(text);
        if (number > UINT16_MAX) return false;
        std::uint16_t *field = *letter == 'Y'   ? &v->years
                               : *letter == 'M' ? (inTime ? &v->minutes : &v->months)
                               : *letter == 'D' ? &v->days
                               : *letter == 'H' ? &v->hours
                                                : &v->seconds;
        *field = static_cast<std::uint16_t>(number);
        text = letter + 1;
    }
    carrySlowly(&v->seconds, &v->minutes, 60);
    carrySlowly(&v->minutes, &v->hours, 60);
    carrySlowly(&v->hours, &v->days, 24);
    carrySlowly(&v->days, &v->months, 30);
    carrySlowly(&v->months, &v->years, 12);
    return true;
}

std::string randomNumber(std::mt19937 *random, unsigned most) {
    unsigned number = 0;
    switch ((*random)() % 4) {
        case 0:
            number = (*random)() % 70;
            break;
        case 1:
            number = 65500 + (*random)() % 50;
            break;
        default:
            number = (*random)() % 100'000;
            break;
    }
    return std::to_string(number % most);
}

TEST(Duration, RandomValuesAsReadSlowly) {
    std::mt19937 random(11);
    std::size_t valid = 0;
    for (int i = 0; i < 100'000; ++i) {
        std::string value = "P" + randomNumber(&random, 10'000) + "Y";
        for (const char *letter : {"M", "DT", "H", "M", "S"}) {
            value += randomNumber(&random, 100'000) + letter;
        }
        SchemaDurationValue expected{}, actual{};
        const bool fits = readSlowly(value.c_str(), &expected);
        ASSERT_EQ(cxml::checkDuration(value.c_str(), &actual), fits) << value;
        if (!fits) continue;
        ++valid;
        ASSERT_EQ(fieldsOf(actual), fieldsOf(expected)) << value;
    }
    EXPECT_GT(valid, 10'000u);
}

// ---------------------------------------------------------------- the order

int signOf(int order) {
    return (order > 0) - (order < 0);
}

struct OrderCase {
    const char *a, *b;
    int sign;
};
constexpr OrderCase kOrders[] = {
    {"P0Y0M0DT0H0M60S", "P0Y0M0DT0H1M0S", 0},
    {"P0Y0M30DT0H0M0S", "P0Y1M0DT0H0M0S", 0},
    {"P0Y12M0DT0H0M0S", "P1Y0M0DT0H0M0S", 0},
    {"P0Y0M0DT24H0M0S", "P0Y0M1DT0H0M0S", 0},
    {"P0Y0M0DT0H60M0S", "P0Y0M0DT1H0M0S", 0},
    {"P01Y02M03DT04H05M06S", "P1Y2M3DT4H5M6S", 0},
    {"P0Y0M0DT0H0M1S", "P0Y0M0DT0H0M0S", 1},
    {"P0Y0M0DT0H1M0S", "P0Y0M0DT0H0M59S", 1},
    {"P0Y0M0DT1H0M0S", "P0Y0M0DT0H59M59S", 1},
    {"P0Y0M1DT0H0M0S", "P0Y0M0DT23H59M59S", 1},
    {"P0Y1M0DT0H0M0S", "P0Y0M29DT23H59M59S", 1},
    {"P1Y0M0DT0H0M0S", "P0Y11M29DT23H59M59S", 1},
    {"P9999Y0M0DT0H0M0S", "P1Y0M0DT0H0M0S", 1},
    {"P0Y0M365DT0H0M0S", "P1Y0M0DT0H0M0S", 1},  // of 360 days
    {"P0Y0M359DT0H0M0S", "P1Y0M0DT0H0M0S", -1},
    {"P15Y0M0DT0H0M0S", "P9Y11M29DT23H59M59S", 1},
    {"P9999Y65535M0DT0H0M0S", "P0Y0M0DT0H0M0S", 1},
    // What has wrapped around is little.
    {"P0Y0M0DT0H65535M60S", "P0Y0M0DT0H0M0S", 0},
    {"P0Y0M0DT0H65535M60S", "P0Y0M0DT0H65535M59S", -1},
};

TEST(Duration, Order) {
    for (const OrderCase &row : kOrders) {
        SchemaDurationValue a{}, b{};
        ASSERT_TRUE(cxml::checkDuration(row.a, &a)) << row.a;
        ASSERT_TRUE(cxml::checkDuration(row.b, &b)) << row.b;
        EXPECT_EQ(signOf(cxml::compareDurations(a, b)), row.sign) << row.a << ' ' << row.b;
        EXPECT_EQ(signOf(cxml::compareDurations(b, a)), -row.sign) << row.b << ' ' << row.a;
        EXPECT_EQ(cxml::compareDurations(a, a), 0) << row.a;
    }
}

TEST(Duration, TheFirstFieldThatDiffersDecides) {
    constexpr std::uint16_t SchemaDurationValue::*kFields[] = {
        &SchemaDurationValue::years, &SchemaDurationValue::months,  &SchemaDurationValue::days,
        &SchemaDurationValue::hours, &SchemaDurationValue::minutes, &SchemaDurationValue::seconds};
    for (std::size_t i = 0; i < std::size(kFields); ++i) {
        SchemaDurationValue less{}, more{};
        more.*kFields[i] = 1;
        for (std::size_t later = i + 1; later < std::size(kFields); ++later) {
            less.*kFields[later] = UINT16_MAX;
        }
        EXPECT_GT(cxml::compareDurations(more, less), 0) << i;
        EXPECT_LT(cxml::compareDurations(less, more), 0) << i;
        more.*kFields[i] = UINT16_MAX;
        EXPECT_GT(cxml::compareDurations(more, less), 0) << i;
        EXPECT_LT(cxml::compareDurations(less, more), 0) << i;
    }
}

TEST(Duration, AllocatesNothing) {
    const support::FaultyHeap heap(1, true);
    SchemaDurationValue value{};
    for (const ValueCase &row : kValues) {
        EXPECT_EQ(cxml::checkDuration(row.value, &value), row.valid);
    }
    EXPECT_EQ(heap.allocations(), 0u);
}

}  // namespace
