#include "schema/date_time.h"

#include <cstddef>
#include <cstring>

#include "schema/lexical.h"

namespace cxml {
namespace {

// What a form is made of: bits of DateFormRow::flags.
constexpr unsigned kHasTime = 1, kHasYear = 2, kHasMonth = 4, kHasDay = 8;

// Where a field stands in the fixed part of a form; the forms begin with it or with dashes.
struct DateFormRow {
    const char *shape;      // of the fixed part, for skipShape
    const char *zoneShape;  // of the offset behind its sign
    bool hasFraction;
    std::uint8_t yearAt, monthAt, dayAt, hourAt;
    unsigned flags;
};

// Intended: four digits for a year, "--" behind a month, and offsets of up to 99:99 but for dates.
constexpr DateFormRow g_SchemaDateForms[] = {
    {"9999-19-39T29:59:59", "99:99", true, 0, 5, 8, 11, kHasTime | kHasYear | kHasMonth | kHasDay},
    {"9999-19-39", "29:59", false, 0, 5, 8, 0, kHasYear | kHasMonth | kHasDay},
    {"29:59:59", "99:99", true, 0, 0, 0, 0, kHasTime},
    {"9999", "99:99", false, 0, 0, 0, 0, kHasYear},
    {"--19--", "99:99", false, 0, 2, 0, 0, kHasMonth},
    {"---39", "99:99", false, 0, 0, 3, 0, kHasDay},
    {"9999-19", "99:99", false, 0, 5, 0, 0, kHasYear | kHasMonth},
    {"--19-39", "99:99", false, 0, 2, 5, 0, kHasMonth | kHasDay},
};

constexpr std::size_t kMostFractionDigits = sizeof(SchemaDateTimeValue::fraction) - 1;

bool isSign(char c) {
    return c == '+' || c == '-' || c == '|';  // Intended: the set of signs holds "|" too
}

// Reads at most so many digits, as a scan with that width does; 0 where there are none.
std::uint16_t readDigits(const char *text, int most) {
    unsigned number = 0;
    for (; most > 0 && isDigit(*text); --most, ++text) {
        number = number * 10 + static_cast<unsigned>(*text - '0');
    }
    return static_cast<std::uint16_t>(number);
}

// Whether what follows the fixed part is spelled well: a fraction, if the form has one, and Z or an
// offset, all optional.
bool isTail(const char *text, const DateFormRow &form) {
    if (form.hasFraction && *text == '.') {
        const char *digits = ++text;
        while (isDigit(*text)) ++text;
        const auto count = static_cast<std::size_t>(text - digits);
        if (count == 0 || count > kMostFractionDigits) return false;
    }
    if (*text == '\0') return true;
    if (*text == 'Z') return text[1] == '\0';
    if (!isSign(*text)) return false;
    text = skipShape(text + 1, form.zoneShape);
    return text && *text == '\0';
}

unsigned monthLength(unsigned year, unsigned month) {
    constexpr std::uint8_t kLeap[] = {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    constexpr std::uint8_t kCommon[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    return (leap ? kLeap : kCommon)[month - 1];
}

bool isInRange(const SchemaDateTimeValue &value, unsigned flags) {
    if ((flags & kHasTime) && value.hour > 23) return false;  // the shape bounds the rest
    if ((flags & kHasYear) && value.year == 0) return false;
    if ((flags & kHasMonth) && (value.month == 0 || value.month > 12)) return false;
    if (!(flags & kHasDay)) return true;
    if (value.day == 0) return false;
    // Intended: --02-29 and ---31 are no values.
    if (!(flags & kHasMonth)) return value.day <= 30;
    constexpr unsigned kCommonYear = 1;
    return value.day <= monthLength(value.year != 0 ? value.year : kCommonYear, value.month);
}

// Reads what follows the fixed part.
void readTail(const char *text, SchemaDateTimeValue *value) {
    if (*text != '+' && *text != '-' && *text != 'Z' && *text != '\0') {
        // Intended: a "|" that stands here is taken for the point, and what follows its digits for
        // the sign. Behind a real fraction it is a sign.
        ++text;
        std::size_t count = 0;
        while (count < kMostFractionDigits && isDigit(*text)) value->fraction[count++] = *text++;
    }
    if (*text == '\0' || *text == 'Z') return;
    value->tzSign = *text++;
    value->tzHour = readDigits(text, 2);
    if (text[2] == ':') value->tzMinute = readDigits(text + 3, 2);
}

// Seconds since the first day of the year 1, in UTC. Missing fields count as the first.
std::int64_t secondsOf(const SchemaDateTimeValue &value) {
    const std::int64_t yearsBefore = value.year == 0 ? 0 : value.year - 1;
    const unsigned month = value.month == 0 ? 1 : value.month > 12 ? 12 : value.month;
    std::int64_t days = 365 * yearsBefore + yearsBefore / 4 - yearsBefore / 100 + yearsBefore / 400;
    for (unsigned m = 1; m < month; ++m) days += monthLength(value.year == 0 ? 1 : value.year, m);
    days += value.day == 0 ? 0 : value.day - 1;
    std::int64_t seconds = ((days * 24 + value.hour) * 60 + value.minute) * 60 + value.second;
    const std::int64_t offset = (value.tzHour * std::int64_t{60} + value.tzMinute) * 60;
    if (value.tzSign == '+') seconds -= offset;
    if (value.tzSign == '-') seconds += offset;
    return seconds;
}

}  // namespace

bool checkDateTime(DateForm form, const char *value, SchemaDateTimeValue *out) noexcept {
    const DateFormRow &row = g_SchemaDateForms[static_cast<std::size_t>(form)];
    const char *tail = skipShape(value, row.shape);
    if (!tail || !isTail(tail, row)) return false;
    SchemaDateTimeValue parsed{};
    if (row.flags & kHasYear) parsed.year = readDigits(value + row.yearAt, 4);
    if (row.flags & kHasMonth) parsed.month = readDigits(value + row.monthAt, 2);
    if (row.flags & kHasDay) parsed.day = readDigits(value + row.dayAt, 2);
    if (row.flags & kHasTime) {
        parsed.hour = readDigits(value + row.hourAt, 2);
        parsed.minute = readDigits(value + row.hourAt + 3, 2);
        parsed.second = readDigits(value + row.hourAt + 6, 2);
    }
    if (!isInRange(parsed, row.flags)) return false;
    if (out) {
        readTail(tail, &parsed);
        *out = parsed;
    }
    return true;
}

}  // namespace cxml

using namespace cxml;

uint32_t Schema_IsValidDay(uint32_t year, uint32_t month, uint32_t day) noexcept {
    if (year < 1 || year > 9999 || month < 1 || month > 12) return 0;
    return day >= 1 && day <= monthLength(year, month) ? 1 : 0;
}

int Schema_CmpDateTime(const SchemaDateTimeValue *a, const SchemaDateTimeValue *b) noexcept {
    if (!a || !b) return -1;
    const std::int64_t left = secondsOf(*a), right = secondsOf(*b);
    if (left != right) return left > right ? 1 : -1;
    // Intended: as text, so that "5" and "50" differ. A caller's fraction need not end in NUL.
    return std::strncmp(a->fraction, b->fraction, sizeof a->fraction);
}
