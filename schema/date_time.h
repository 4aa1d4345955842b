// schema/date_time.h - values of the date and time types.
#pragma once

#include <cstdint>

#include "compactxml.h"

namespace cxml {

// Rows of g_SchemaDateForms, in the order of the type codes 20 to 27.
enum class DateForm : std::uint8_t {
    kDateTime,
    kDate,
    kTime,
    kGYear,
    kGMonth,
    kGDay,
    kGYearMonth,
    kGMonthDay,
};

// Whether a value is spelled as the form asks for and names a time that exists; fills *out then, if
// out is not null.
bool checkDateTime(DateForm form, const char *value, SchemaDateTimeValue *out) noexcept;

// Whether a value is a duration; fills *out with it, carried into the greater fields, if it is.
bool checkDuration(const char *value, SchemaDurationValue *out) noexcept;

// Less than, equal to or greater than 0 as a is shorter than, as long as or longer than b.
int compareDurations(const SchemaDurationValue &a, const SchemaDurationValue &b) noexcept;

}  // namespace cxml
