#include <cstring>

#include "schema/date_time.h"
#include "schema/lexical.h"

namespace cxml {
namespace {

// The number before a letter; moves *text behind the letter. The spelling has been checked.
std::uint32_t readPart(const char **text) {
    std::uint32_t number = 0;
    while (isDigit(**text)) {
        number = number * 10 + static_cast<std::uint32_t>(*(*text)++ - '0');
    }
    ++*text;
    return number;
}

// Carries what is over a limit from one field to the next. Intended: the field with the greater
// unit wraps around at 16 bits.
void carry(std::uint16_t *from, std::uint16_t *to, std::uint16_t limit) {
    *to = static_cast<std::uint16_t>(*to + *from / limit);
    *from = static_cast<std::uint16_t>(*from % limit);
}

}  // namespace

bool checkDuration(const char *value, SchemaDurationValue *out) noexcept {
    if (!matchesDuration(value)) return false;
    const char *text = value + std::strlen("P");
    std::uint32_t parts[6];
    for (int i = 0; i < 6; ++i) {
        if (*text == 'T') ++text;
        parts[i] = readPart(&text);
        if (parts[i] > UINT16_MAX) return false;
    }
    const auto part = [&parts](int i) { return static_cast<std::uint16_t>(parts[i]); };
    SchemaDurationValue parsed = {part(0), part(1), part(2), part(3), part(4), part(5)};
    carry(&parsed.seconds, &parsed.minutes, 60);
    carry(&parsed.minutes, &parsed.hours, 60);
    carry(&parsed.hours, &parsed.days, 24);
    carry(&parsed.days, &parsed.months, 30);
    carry(&parsed.months, &parsed.years, 12);
    if (out) *out = parsed;
    return true;
}

int compareDurations(const SchemaDurationValue &a, const SchemaDurationValue &b) noexcept {
    const int differences[] = {a.years - b.years, a.months - b.months,   a.days - b.days,
                               a.hours - b.hours, a.minutes - b.minutes, a.seconds - b.seconds};
    for (const int difference : differences) {
        if (difference != 0) return difference;
    }
    return 0;
}

}  // namespace cxml
