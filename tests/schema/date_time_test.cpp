// Dates and times: which exist, what is read of them, and which comes first.
#include "schema/date_time.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <ostream>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "compactxml.h"
#include "tests/support/faults.h"
#include "tests/support/feeds.h"

namespace {

using cxml::checkDateTime;
using cxml::DateForm;

// ---------------------------------------------------------------- values

struct ValueCase {
    DateForm form;
    const char *value;
    bool valid;
};
constexpr ValueCase kValues[] = {
    // Days that exist.
    {DateForm::kDate, "2000-02-29", true},
    {DateForm::kDate, "2000-02-30", false},
    {DateForm::kDate, "1900-02-28", true},
    {DateForm::kDate, "1900-02-29", false},
    {DateForm::kDate, "2004-02-29", true},
    {DateForm::kDate, "2001-02-29", false},
    {DateForm::kDate, "2100-02-29", false},
    {DateForm::kDate, "0400-02-29", true},
    {DateForm::kDate, "0004-02-29", true},
    {DateForm::kDate, "0001-02-29", false},
    {DateForm::kDate, "2001-01-31", true},
    {DateForm::kDate, "2001-01-32", false},
    {DateForm::kDate, "2001-03-31", true},
    {DateForm::kDate, "2001-04-30", true},
    {DateForm::kDate, "2001-04-31", false},
    {DateForm::kDate, "2001-06-31", false},
    {DateForm::kDate, "2001-09-31", false},
    {DateForm::kDate, "2001-11-31", false},
    {DateForm::kDate, "2001-12-31", true},
    {DateForm::kDate, "2001-12-39", false},
    {DateForm::kDate, "2001-12-40", false},
    {DateForm::kDate, "2001-01-00", false},
    {DateForm::kDate, "2001-00-01", false},
    {DateForm::kDate, "2001-13-01", false},
    {DateForm::kDate, "2001-19-01", false},
    {DateForm::kDate, "2001-20-01", false},
    // Years of four digits, but 0000.
    {DateForm::kDate, "0000-01-01", false},
    {DateForm::kDate, "0001-01-01", true},
    {DateForm::kDate, "9999-12-31", true},
    {DateForm::kDate, "10000-01-01", false},
    {DateForm::kDate, "999-01-01", false},
    {DateForm::kDate, "-2001-01-01", false},
    {DateForm::kDate, "+2001-01-01", false},
    {DateForm::kDate, "", false},
    {DateForm::kDate, " 2001-01-01", false},
    {DateForm::kDate, "2001-01-01 ", false},
    {DateForm::kDate, "2001-01-01\n", false},
    {DateForm::kDate, "2001-1-1", false},
    {DateForm::kDate, "2001/01/01", false},
    {DateForm::kDate, "20010101", false},
    {DateForm::kDate, "2001-01", false},
    {DateForm::kDate, "2001-01-01T00:00:00", false},
    // Offsets of dates are bounded by their spelling.
    {DateForm::kDate, "2001-01-01Z", true},
    {DateForm::kDate, "2001-01-01z", false},
    {DateForm::kDate, "2001-01-01ZZ", false},
    {DateForm::kDate, "2001-01-01+00:00", true},
    {DateForm::kDate, "2001-01-01-29:59", true},
    {DateForm::kDate, "2001-01-01+30:00", false},
    {DateForm::kDate, "2001-01-01+00:60", false},
    {DateForm::kDate, "2001-01-01|01:00", true},
    {DateForm::kDate, "2001-01-01+1:00", false},
    {DateForm::kDate, "2001-01-01+01:0", false},
    {DateForm::kDate, "2001-01-01+01:000", false},
    {DateForm::kDate, "2001-01-01+0100", false},
    {DateForm::kDate, "2001-01-01+01:00Z", false},
    {DateForm::kDate, "2001-01-01+", false},
    {DateForm::kDate, "2001-01-01.5", false},
    // Times of day.
    {DateForm::kTime, "00:00:00", true},
    {DateForm::kTime, "23:59:59", true},
    {DateForm::kTime, "24:00:00", false},
    {DateForm::kTime, "29:00:00", false},
    {DateForm::kTime, "30:00:00", false},
    {DateForm::kTime, "00:60:00", false},
    {DateForm::kTime, "00:00:60", false},
    {DateForm::kTime, "10:00", false},
    {DateForm::kTime, "1:00:00", false},
    {DateForm::kTime, "10:00:00.", false},
    {DateForm::kTime, "10:00:00.0", true},
    {DateForm::kTime, "10:00:00.12345678901234567890", true},
    {DateForm::kTime, "10:00:00.123456789012345678901", false},
    {DateForm::kTime, "10:00:00,5", false},
    {DateForm::kTime, "10:00:00.5Z", true},
    {DateForm::kTime, "10:00:00.Z", false},
    {DateForm::kTime, "10:00:00.5.5", false},
    {DateForm::kTime, "10:00:00Z", true},
    {DateForm::kTime, "10:00:00Z.5", false},
    {DateForm::kTime, "10:00:00+99:99", true},
    {DateForm::kTime, "10:00:00-99:99", true},
    {DateForm::kTime, "10:00:00+100:00", false},
    {DateForm::kTime, "10:00:00+01:00.5", false},
    {DateForm::kTime, "10:00:00|01:00", true},
    {DateForm::kTime, "10:00:00.5|01:00", true},
    {DateForm::kTime, "10:00:00|", false},
    {DateForm::kTime, "10:00:00|5", false},
    {DateForm::kTime, "T10:00:00", false},
    // Both together.
    {DateForm::kDateTime, "2001-01-01T10:00:00", true},
    {DateForm::kDateTime, "2001-01-01T10:00:00+01:00", true},
    {DateForm::kDateTime, "2001-01-01T09:00:00Z", true},
    {DateForm::kDateTime, "2001-01-01 10:00:00", false},
    {DateForm::kDateTime, "2001-01-01t10:00:00", false},
    {DateForm::kDateTime, "2001-01-01T24:00:00", false},
    {DateForm::kDateTime, "2001-01-01T23:59:59", true},
    {DateForm::kDateTime, "2000-02-29T00:00:00", true},
    {DateForm::kDateTime, "1900-02-29T00:00:00", false},
    {DateForm::kDateTime, "0000-01-01T00:00:00", false},
    {DateForm::kDateTime, "0001-01-01T00:00:00", true},
    {DateForm::kDateTime, "2001-00-01T00:00:00", false},
    {DateForm::kDateTime, "2001-01-00T00:00:00", false},
    {DateForm::kDateTime, "2001-13-01T00:00:00", false},
    {DateForm::kDateTime, "2001-01-01T10:00:00.12345678901234567890", true},
    {DateForm::kDateTime, "2001-01-01T10:00:00.123456789012345678901", false},
    {DateForm::kDateTime, "2001-01-01T10:00:00.12345678901234567890+99:99", true},
    {DateForm::kDateTime, "2001-01-01T10:00:00|99:99", true},
    {DateForm::kDateTime, "2001-01-01T10:00", false},
    {DateForm::kDateTime, "2001-01-01", false},
    {DateForm::kDateTime, "", false},
    // Parts of dates.
    {DateForm::kGYear, "0000", false},
    {DateForm::kGYear, "0001", true},
    {DateForm::kGYear, "9999", true},
    {DateForm::kGYear, "10000", false},
    {DateForm::kGYear, "999", false},
    {DateForm::kGYear, "-0001", false},
    {DateForm::kGYear, "2001Z", true},
    {DateForm::kGYear, "2001+99:99", true},
    {DateForm::kGYear, "2001|01:00", true},
    {DateForm::kGYear, "2001+1:00", false},
    {DateForm::kGMonth, "--00--", false},
    {DateForm::kGMonth, "--01--", true},
    {DateForm::kGMonth, "--12--", true},
    {DateForm::kGMonth, "--13--", false},
    {DateForm::kGMonth, "--12", false},
    {DateForm::kGMonth, "--12-", false},
    {DateForm::kGMonth, "--12---", false},
    {DateForm::kGMonth, "--12--Z", true},
    {DateForm::kGMonth, "--12--+99:99", true},
    {DateForm::kGMonth, "--12---99:99", true},
    {DateForm::kGMonth, "--1--", false},
    {DateForm::kGDay, "---00", false},
    {DateForm::kGDay, "---01", true},
    {DateForm::kGDay, "---30", true},
    {DateForm::kGDay, "---31", false},
    {DateForm::kGDay, "---32", false},
    {DateForm::kGDay, "---40", false},
    {DateForm::kGDay, "--01", false},
    {DateForm::kGDay, "---1", false},
    {DateForm::kGDay, "---30Z", true},
    {DateForm::kGDay, "---30-99:99", true},
    {DateForm::kGYearMonth, "0000-01", false},
    {DateForm::kGYearMonth, "0001-01", true},
    {DateForm::kGYearMonth, "9999-12", true},
    {DateForm::kGYearMonth, "2001-00", false},
    {DateForm::kGYearMonth, "2001-13", false},
    {DateForm::kGYearMonth, "2001-1", false},
    {DateForm::kGYearMonth, "2001-01Z", true},
    {DateForm::kGYearMonth, "2001-01-99:99", true},
    {DateForm::kGYearMonth, "2001-01-01", false},
    {DateForm::kGMonthDay, "--02-28", true},
    {DateForm::kGMonthDay, "--02-29", false},
    {DateForm::kGMonthDay, "--01-31", true},
    {DateForm::kGMonthDay, "--01-32", false},
    {DateForm::kGMonthDay, "--04-30", true},
    {DateForm::kGMonthDay, "--04-31", false},
    {DateForm::kGMonthDay, "--12-31", true},
    {DateForm::kGMonthDay, "--00-01", false},
    {DateForm::kGMonthDay, "--13-01", false},
    {DateForm::kGMonthDay, "--01-00", false},
    {DateForm::kGMonthDay, "--01-01Z", true},
    {DateForm::kGMonthDay, "--01-01|99:99", true},
    {DateForm::kGMonthDay, "01-01", false},
};

TEST(DateTime, Values) {
    for (const ValueCase &row : kValues) {
        const auto code = SCHEMA_TYPE_DATE_TIME + static_cast<std::uint32_t>(row.form);
        EXPECT_EQ(checkDateTime(row.form, row.value, nullptr), row.valid)
            << code << ' ' << support::printable(row.value);
        if (*row.value == '\0') continue;
        EXPECT_EQ(SCHEMA_CheckBaseTypeNonNull(code, row.value), row.valid ? 1u : 0u)
            << code << ' ' << support::printable(row.value);
    }
}

// ---------------------------------------------------------------- what is read

struct Fields {
    int year, month, day, hour, minute, second;
    std::string_view fraction;
    char tzSign;
    int tzHour, tzMinute;
    bool operator==(const Fields &) const = default;
};

Fields fieldsOf(const SchemaDateTimeValue &v) {
    return {v.year,
            v.month,
            v.day,
            v.hour,
            v.minute,
            v.second,
            {v.fraction, strnlen(v.fraction, sizeof v.fraction)},
            v.tzSign,
            v.tzHour,
            v.tzMinute};
}

std::ostream &operator<<(std::ostream &out, const Fields &v) {
    return out << v.year << '-' << v.month << '-' << v.day << 'T' << v.hour << ':' << v.minute
               << ':' << v.second << " ." << v.fraction << " sign " << static_cast<int>(v.tzSign)
               << ' ' << v.tzHour << ':' << v.tzMinute;
}

struct RecordCase {
    DateForm form;
    const char *value;
    Fields fields;
};
constexpr RecordCase kRecords[] = {
    {DateForm::kDateTime, "2001-02-03T04:05:06", {2001, 2, 3, 4, 5, 6, "", 0, 0, 0}},
    {DateForm::kDateTime, "2001-02-03T04:05:06Z", {2001, 2, 3, 4, 5, 6, "", 0, 0, 0}},
    {DateForm::kDateTime, "2001-02-03T04:05:06.70", {2001, 2, 3, 4, 5, 6, "70", 0, 0, 0}},
    {DateForm::kDateTime, "2001-02-03T04:05:06.7Z", {2001, 2, 3, 4, 5, 6, "7", 0, 0, 0}},
    {DateForm::kDateTime, "2001-02-03T04:05:06+08:09", {2001, 2, 3, 4, 5, 6, "", '+', 8, 9}},
    {DateForm::kDateTime, "2001-02-03T04:05:06-98:99", {2001, 2, 3, 4, 5, 6, "", '-', 98, 99}},
    {DateForm::kDateTime, "2001-02-03T04:05:06.7-08:09", {2001, 2, 3, 4, 5, 6, "7", '-', 8, 9}},
    {DateForm::kDateTime,
     "9999-12-31T23:59:59.12345678901234567890+08:09",
     {9999, 12, 31, 23, 59, 59, "12345678901234567890", '+', 8, 9}},
    {DateForm::kDate, "2001-02-03", {2001, 2, 3, 0, 0, 0, "", 0, 0, 0}},
    {DateForm::kDate, "2001-02-03-08:09", {2001, 2, 3, 0, 0, 0, "", '-', 8, 9}},
    {DateForm::kTime, "04:05:06", {0, 0, 0, 4, 5, 6, "", 0, 0, 0}},
    {DateForm::kTime, "04:05:06.000+08:09", {0, 0, 0, 4, 5, 6, "000", '+', 8, 9}},
    {DateForm::kGYear, "2001", {2001, 0, 0, 0, 0, 0, "", 0, 0, 0}},
    {DateForm::kGYear, "2001+08:09", {2001, 0, 0, 0, 0, 0, "", '+', 8, 9}},
    {DateForm::kGMonth, "--02--", {0, 2, 0, 0, 0, 0, "", 0, 0, 0}},
    {DateForm::kGMonth, "--02---08:09", {0, 2, 0, 0, 0, 0, "", '-', 8, 9}},
    {DateForm::kGDay, "---03", {0, 0, 3, 0, 0, 0, "", 0, 0, 0}},
    {DateForm::kGDay, "---03-08:09", {0, 0, 3, 0, 0, 0, "", '-', 8, 9}},
    {DateForm::kGYearMonth, "2001-02", {2001, 2, 0, 0, 0, 0, "", 0, 0, 0}},
    {DateForm::kGYearMonth, "2001-02-08:09", {2001, 2, 0, 0, 0, 0, "", '-', 8, 9}},
    {DateForm::kGMonthDay, "--02-03", {0, 2, 3, 0, 0, 0, "", 0, 0, 0}},
    {DateForm::kGMonthDay, "--02-03-08:09", {0, 2, 3, 0, 0, 0, "", '-', 8, 9}},
    // A "|" at the end of the fixed part is read as a point: the hours are the fraction, and the
    // minutes stand where the hours would, behind the sign ":".
    {DateForm::kTime, "10:00:00|01:00", {0, 0, 0, 10, 0, 0, "01", ':', 0, 0}},
    {DateForm::kTime, "10:00:00|12:34", {0, 0, 0, 10, 0, 0, "12", ':', 34, 0}},
    {DateForm::kDateTime, "2001-02-03T10:00:00|99:98", {2001, 2, 3, 10, 0, 0, "99", ':', 98, 0}},
    {DateForm::kDate, "2001-02-03|29:59", {2001, 2, 3, 0, 0, 0, "29", ':', 59, 0}},
    {DateForm::kGYear, "2001|01:30", {2001, 0, 0, 0, 0, 0, "01", ':', 30, 0}},
    {DateForm::kGMonth, "--02--|01:30", {0, 2, 0, 0, 0, 0, "01", ':', 30, 0}},
    {DateForm::kGDay, "---03|01:30", {0, 0, 3, 0, 0, 0, "01", ':', 30, 0}},
    {DateForm::kGYearMonth, "2001-02|01:30", {2001, 2, 0, 0, 0, 0, "01", ':', 30, 0}},
    {DateForm::kGMonthDay, "--02-03|01:30", {0, 2, 3, 0, 0, 0, "01", ':', 30, 0}},
    // Behind a fraction it is a sign.
    {DateForm::kTime, "10:00:00.5|01:00", {0, 0, 0, 10, 0, 0, "5", '|', 1, 0}},
    {DateForm::kDateTime, "2001-02-03T10:00:00.5|12:34", {2001, 2, 3, 10, 0, 0, "5", '|', 12, 34}},
};

TEST(DateTime, WhatIsRead) {
    for (const RecordCase &row : kRecords) {
        SchemaDateTimeValue value;
        std::memset(&value, 0x5A, sizeof value);
        ASSERT_TRUE(checkDateTime(row.form, row.value, &value)) << row.value;
        EXPECT_EQ(fieldsOf(value), row.fields) << row.value;
        // Cleared behind the digits.
        const auto digits = static_cast<std::ptrdiff_t>(row.fields.fraction.size());
        EXPECT_TRUE(std::all_of(value.fraction + digits, std::end(value.fraction), [](char c) {
            return c == '\0';
        })) << row.value;
    }
}

TEST(DateTime, LeavesTheRecordOfAnInvalidValueAlone) {
    for (const ValueCase &row : kValues) {
        if (row.valid) continue;
        SchemaDateTimeValue value, before;
        std::memset(&value, 0x5A, sizeof value);
        std::memset(&before, 0x5A, sizeof before);
        EXPECT_FALSE(checkDateTime(row.form, row.value, &value)) << row.value;
        EXPECT_EQ(std::memcmp(&value, &before, sizeof value), 0) << row.value;
    }
}

TEST(DateTime, AllocatesNothing) {
    const support::FaultyHeap heap(1, true);
    SchemaDateTimeValue value{};
    for (const ValueCase &row : kValues) {
        EXPECT_EQ(checkDateTime(row.form, row.value, &value), row.valid);
        Schema_CmpDateTime(&value, &value);
    }
    EXPECT_EQ(heap.allocations(), 0u);
}

// ---------------------------------------------------------------- days

// The last day of each month, by the rule of the calendar.
unsigned lastDay(unsigned year, unsigned month) {
    if (month == 2) return year % 4 != 0 ? 28 : year % 100 != 0 ? 29 : year % 400 != 0 ? 28 : 29;
    return month == 4 || month == 6 || month == 9 || month == 11 ? 30 : 31;
}

TEST(IsValidDay, EveryDayOfEveryYear) {
    std::size_t days = 0;
    for (unsigned year = 0; year <= 10'001; ++year) {
        for (unsigned month = 0; month <= 14; ++month) {
            for (unsigned day = 0; day <= 33; ++day) {
                const bool exists = year >= 1 && year <= 9999 && month >= 1 && month <= 12 &&
                                    day >= 1 && day <= lastDay(year, month);
                ASSERT_EQ(Schema_IsValidDay(year, month, day), exists ? 1u : 0u)
                    << year << '-' << month << '-' << day;
                days += exists ? 1 : 0;
            }
        }
    }
    // 25 times 400 years without the year 10000, a leap year.
    EXPECT_EQ(days, 25u * 146'097u - 366u);
}

TEST(IsValidDay, NumbersFarOutside) {
    for (const std::uint32_t far : {100u, 0x10001u, 0x80000000u, 0xFFFFFFFFu}) {
        EXPECT_EQ(Schema_IsValidDay(2000, far, 1), 0u) << far;
        EXPECT_EQ(Schema_IsValidDay(2000, 1, far), 0u) << far;
        EXPECT_EQ(Schema_IsValidDay(far, 1, 1), far <= 9999 ? 1u : 0u) << far;
    }
    EXPECT_EQ(Schema_IsValidDay(0, 0, 0), 0u);
}

// ---------------------------------------------------------------- the order

int signOf(int order) {
    return (order > 0) - (order < 0);
}

SchemaDateTimeValue parsed(DateForm form, const char *value) {
    SchemaDateTimeValue parsed{};
    EXPECT_TRUE(checkDateTime(form, value, &parsed)) << value;
    return parsed;
}

struct OrderCase {
    DateForm form;
    const char *a, *b;
    int sign;
};
constexpr OrderCase kOrders[] = {
    // Offsets.
    {DateForm::kDateTime, "2001-01-01T10:00:00+01:00", "2001-01-01T09:00:00Z", 0},
    {DateForm::kDateTime, "2001-01-01T10:00:00-01:00", "2001-01-01T11:00:00Z", 0},
    {DateForm::kDateTime, "2001-01-01T10:00:00+01:00", "2001-01-01T10:00:00Z", -1},
    {DateForm::kDateTime, "2001-01-01T10:00:00-01:00", "2001-01-01T10:00:00Z", 1},
    {DateForm::kDateTime, "2001-01-01T10:00:00", "2001-01-01T10:00:00Z", 0},
    {DateForm::kDateTime, "2001-01-01T10:00:00+00:00", "2001-01-01T10:00:00-00:00", 0},
    {DateForm::kDateTime, "2001-01-01T10:00:00+05:30", "2001-01-01T04:30:00Z", 0},
    {DateForm::kDateTime, "2001-01-01T10:00:00+05:30", "2001-01-01T04:30:01Z", -1},
    {DateForm::kDateTime, "2001-01-05T04:39:00+99:99", "2001-01-01T00:00:00Z", 0},
    {DateForm::kDateTime, "2001-01-01T00:00:00-99:99", "2001-01-05T04:39:00Z", 0},
    {DateForm::kTime, "10:00:00+01:00", "09:00:00Z", 0},
    {DateForm::kTime, "00:00:00-01:00", "23:59:59+23:00", 1},
    {DateForm::kTime, "00:00:00+01:00", "00:00:00", -1},
    {DateForm::kDate, "2001-01-01+24:00", "2000-12-31", 0},
    {DateForm::kDate, "2001-01-01-24:00", "2001-01-02", 0},
    {DateForm::kDate, "2001-01-01+29:59", "2000-12-31Z", -1},
    // Across the ends of months, years and of all years.
    {DateForm::kDateTime, "2001-01-01T00:30:00+01:00", "2000-12-31T23:30:00Z", 0},
    {DateForm::kDateTime, "2000-12-31T23:30:00-01:00", "2001-01-01T00:30:00Z", 0},
    {DateForm::kDateTime, "2000-02-29T23:00:00-01:00", "2000-03-01T00:00:00Z", 0},
    {DateForm::kDateTime, "1900-02-28T23:00:00-01:00", "1900-03-01T00:00:00Z", 0},
    {DateForm::kDateTime, "2000-02-28T23:00:00-01:00", "2000-02-29T00:00:00Z", 0},
    {DateForm::kDateTime, "0001-01-01T00:00:00+99:99", "0001-01-01T00:00:00Z", -1},
    {DateForm::kDateTime, "0001-01-01T00:00:00+01:00", "0001-01-01T00:00:00+02:00", 1},
    {DateForm::kDateTime, "9999-12-31T23:59:59-99:99", "9999-12-31T23:59:59Z", 1},
    {DateForm::kDateTime, "9999-12-31T23:59:59", "0001-01-01T00:00:00", 1},
    {DateForm::kDateTime, "2000-12-31T23:59:59", "2001-01-01T00:00:00", -1},
    {DateForm::kGYear, "2001+99:99", "2000", 1},
    {DateForm::kGYear, "2001", "2000-99:99", 1},
    {DateForm::kGYear, "0001", "9999", -1},
    {DateForm::kGMonth, "--02--", "--01--", 1},
    {DateForm::kGMonth, "--02--+99:99", "--01---99:99", 1},
    {DateForm::kGMonth, "--03--", "--02--", 1},
    {DateForm::kGDay, "---02+24:00", "---01", 0},
    {DateForm::kGDay, "---30", "---01", 1},
    {DateForm::kGYearMonth, "2000-12", "2001-01", -1},
    {DateForm::kGYearMonth, "2000-12", "2000-12Z", 0},
    {DateForm::kGMonthDay, "--02-28-24:00", "--03-01", 0},  // of a common year
    {DateForm::kGMonthDay, "--12-31", "--01-01", 1},
    // Fractions as texts, once the second is the same.
    {DateForm::kTime, "10:00:00.5", "10:00:00.5", 0},
    {DateForm::kTime, "10:00:00.5", "10:00:00.50", -1},
    {DateForm::kTime, "10:00:00.5", "10:00:00.49999", 1},
    {DateForm::kTime, "10:00:00.0", "10:00:00", 1},
    {DateForm::kTime, "10:00:00.9", "10:00:01", -1},
    {DateForm::kTime, "10:00:00.10", "10:00:00.9", -1},
    {DateForm::kTime, "10:00:00.12345678901234567890", "10:00:00.12345678901234567891", -1},
    {DateForm::kTime, "10:00:00.1234567890123456789", "10:00:00.12345678901234567890", -1},
    {DateForm::kDateTime, "2001-01-01T10:00:00.5+01:00", "2001-01-01T09:00:00.5Z", 0},
    {DateForm::kDateTime, "2001-01-01T10:00:00.5+01:00", "2001-01-01T09:00:00.6Z", -1},
    // An offset behind "|" counts for nothing, but what is read as a fraction does.
    {DateForm::kTime, "10:00:00.5|01:00", "10:00:00.5", 0},
    {DateForm::kTime, "10:00:00.5|99:99", "10:00:00.5Z", 0},
    {DateForm::kTime, "10:00:00.5|01:00", "10:00:00.5+01:00", 1},
    {DateForm::kTime, "10:00:00|01:00", "10:00:00", 1},
    {DateForm::kTime, "10:00:00|01:00", "10:00:00.01", 0},
    {DateForm::kTime, "10:00:00|01:59", "10:00:00|01:00", 0},
    {DateForm::kTime, "10:00:00|02:00", "10:00:00|01:00", 1},
    {DateForm::kTime, "10:00:00|01:00", "10:00:01", -1},
    {DateForm::kGYear, "2001|01:00", "2001|99:00", -1},
    {DateForm::kDate, "2001-01-01|24:00", "2000-12-31", 1},
};

TEST(CmpDateTime, Order) {
    for (const OrderCase &row : kOrders) {
        const SchemaDateTimeValue a = parsed(row.form, row.a), b = parsed(row.form, row.b);
        EXPECT_EQ(signOf(Schema_CmpDateTime(&a, &b)), row.sign) << row.a << ' ' << row.b;
        EXPECT_EQ(signOf(Schema_CmpDateTime(&b, &a)), -row.sign) << row.b << ' ' << row.a;
        EXPECT_EQ(Schema_CmpDateTime(&a, &a), 0) << row.a;
        const SchemaDateTimeValue copy = a;
        EXPECT_EQ(Schema_CmpDateTime(&a, &copy), 0) << row.a;
    }
}

// Every day is followed by the next, 24 hours later.
TEST(CmpDateTime, EveryDayOfEveryYear) {
    SchemaDateTimeValue before{};  // stands for 0001-01-01
    for (unsigned year = 1; year <= 9999; ++year) {
        for (unsigned month = 1; month <= 12; ++month) {
            for (unsigned day = 1; day <= lastDay(year, month); ++day) {
                SchemaDateTimeValue today{};
                today.year = static_cast<std::uint16_t>(year);
                today.month = static_cast<std::uint16_t>(month);
                today.day = static_cast<std::uint16_t>(day);
                ASSERT_EQ(Schema_CmpDateTime(&before, &today), 0)
                    << year << '-' << month << '-' << day;
                before = today;
                before.hour = 24;
            }
        }
    }
}

// In steps of the greatest fields, so that nothing is lost on the way to 64 bits.
TEST(CmpDateTime, RandomTimesAsCountedBySeconds) {
    std::vector<std::int64_t> daysBefore(10'001, 0);  // before the first day of each year
    for (unsigned year = 1; year < 10'000; ++year) {
        daysBefore[year + 1] = daysBefore[year] + (lastDay(year, 2) == 29 ? 366 : 365);
    }
    std::mt19937 random(3);
    const auto below = [&random](unsigned bound) {
        return static_cast<std::uint16_t>(random() % bound);
    };
    const auto secondsOf = [&daysBefore](const SchemaDateTimeValue &v) {
        std::int64_t days = daysBefore[v.year] + v.day - 1;
        for (unsigned month = 1; month < v.month; ++month) days += lastDay(v.year, month);
        const std::int64_t zone = v.tzHour * 3600 + v.tzMinute * 60;
        return days * 86'400 + v.hour * 3600 + v.minute * 60 + v.second -
               (v.tzSign == '+' ? zone : 0) + (v.tzSign == '-' ? zone : 0);
    };
    const auto randomTime = [&] {
        SchemaDateTimeValue v{};
        v.year = static_cast<std::uint16_t>(1 + below(9999));
        v.month = static_cast<std::uint16_t>(1 + below(12));
        v.day = static_cast<std::uint16_t>(1 + below(lastDay(v.year, v.month)));
        v.hour = below(24);
        v.minute = below(60);
        v.second = below(60);
        v.tzSign = std::string_view("\0+-|Z", 5)[below(5)];
        if (v.tzSign != 0) {
            v.tzHour = below(100);
            v.tzMinute = below(100);
        }
        return v;
    };
    for (int i = 0; i < 200'000; ++i) {
        SchemaDateTimeValue a = randomTime(), b = randomTime();
        if (i % 2 == 0) {  // close together
            b = a;
            b.second = below(60);
            b.tzHour = below(2);
            b.day = 1;
            a.day = static_cast<std::uint16_t>(1 + below(3));
        }
        const std::int64_t difference = secondsOf(a) - secondsOf(b);
        ASSERT_EQ(signOf(Schema_CmpDateTime(&a, &b)), (difference > 0) - (difference < 0))
            << fieldsOf(a) << " and " << fieldsOf(b);
    }
}

// ---------------------------------------------------------------- callers' records

SchemaDateTimeValue dated(std::uint16_t year, std::uint16_t month, std::uint16_t day) {
    SchemaDateTimeValue value{};
    value.year = year;
    value.month = month;
    value.day = day;
    return value;
}

struct CallerCase {
    const char *name;
    SchemaDateTimeValue a, b;
    int sign;
};
const CallerCase kCallers[] = {
    {"nothing is the first day", dated(0, 0, 0), dated(1, 1, 1), 0},
    {"year 0 is year 1", dated(0, 2, 3), dated(1, 2, 3), 0},
    {"month 0 is month 1", dated(2000, 0, 3), dated(2000, 1, 3), 0},
    {"day 0 is day 1", dated(2000, 2, 0), dated(2000, 2, 1), 0},
    {"month 13 is month 12", dated(2000, 13, 1), dated(2000, 12, 1), 0},
    {"month 65535 is month 12", dated(2000, 65535, 1), dated(2000, 12, 1), 0},
    {"month 13 and month 65535", dated(2000, 13, 1), dated(2000, 65535, 1), 0},
    {"month 13 is before the next year", dated(2000, 13, 1), dated(2001, 1, 1), -1},
    {"days go on", dated(2000, 1, 32), dated(2000, 2, 1), 0},
    {"day 65535", dated(2000, 1, 65535), dated(2000, 12, 31), 1},
    {"year 10000 is after 9999", dated(10000, 1, 1), dated(9999, 12, 31), 1},
    {"year 65535", dated(65535, 12, 31), dated(65534, 12, 31), 1},
};

TEST(CmpDateTime, RecordsOfCallers) {
    for (const CallerCase &row : kCallers) {
        const SchemaDateTimeValue a = row.a, b = row.b;
        EXPECT_EQ(signOf(Schema_CmpDateTime(&a, &b)), row.sign) << row.name;
        EXPECT_EQ(signOf(Schema_CmpDateTime(&b, &a)), -row.sign) << row.name;
        EXPECT_EQ(std::memcmp(&a, &row.a, sizeof a), 0) << row.name;
        EXPECT_EQ(std::memcmp(&b, &row.b, sizeof b), 0) << row.name;
    }
    SchemaDateTimeValue most;
    std::memset(&most, 0xFF, sizeof most);
    const SchemaDateTimeValue least{};
    EXPECT_GT(Schema_CmpDateTime(&most, &least), 0);
    EXPECT_LT(Schema_CmpDateTime(&least, &most), 0);
    EXPECT_EQ(Schema_CmpDateTime(&most, &most), 0);
    // The offset outweighs all else: 65535 times 61 minutes, both ways.
    SchemaDateTimeValue early = dated(1, 1, 1), late = early;
    early.tzHour = early.tzMinute = late.tzHour = late.tzMinute = UINT16_MAX;
    early.tzSign = '+';
    late.tzSign = '-';
    EXPECT_LT(Schema_CmpDateTime(&early, &least), 0);
    EXPECT_GT(Schema_CmpDateTime(&late, &least), 0);
}

TEST(CmpDateTime, FractionsWithoutAnEnd) {
    SchemaDateTimeValue a = dated(2000, 1, 1), b = a;
    std::memset(a.fraction, '9', sizeof a.fraction);
    std::memset(b.fraction, '9', sizeof b.fraction);
    a.tzSign = '|';  // stands behind the digits, but is none
    b.tzSign = ':';
    EXPECT_EQ(Schema_CmpDateTime(&a, &b), 0);
    b.fraction[sizeof b.fraction - 1] = '8';
    EXPECT_GT(Schema_CmpDateTime(&a, &b), 0);
    EXPECT_LT(Schema_CmpDateTime(&b, &a), 0);
    b.fraction[sizeof b.fraction - 1] = '\0';
    EXPECT_GT(Schema_CmpDateTime(&a, &b), 0);
    // What stands behind an end is not looked at, and bytes above 127 come last.
    std::memcpy(a.fraction, "1\0002", 3);
    std::memcpy(b.fraction, "1\0003", 3);
    EXPECT_EQ(Schema_CmpDateTime(&a, &b), 0);
    a.fraction[0] = '\xFF';
    EXPECT_GT(Schema_CmpDateTime(&a, &b), 0);
    EXPECT_LT(Schema_CmpDateTime(&b, &a), 0);
}

TEST(CmpDateTime, NullIsEarlier) {
    const SchemaDateTimeValue value = dated(2000, 1, 1);
    EXPECT_LT(Schema_CmpDateTime(nullptr, &value), 0);
    EXPECT_LT(Schema_CmpDateTime(&value, nullptr), 0);
    EXPECT_LT(Schema_CmpDateTime(nullptr, nullptr), 0);
}

}  // namespace
