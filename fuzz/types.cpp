// Values of simple types: every built-in type beside a slow check where a plain one is to be had,
// patterns beside the C library's, composed types beside their parts, messages in buffers of any
// size.
#include <regex.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "compactxml.h"
#include "fuzz/support/fuzz_input.h"
#include "fuzz/support/require.h"
#include "fuzz/support/target.h"
#include "schema/pattern_cache.h"
#include "tests/support/feeds.h"

namespace {

using fuzz::FuzzInput;
using std::string;
using std::string_view;

constexpr std::size_t kFullMessage = 1024;

// ---------------------------------------------------------------- slow checks

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool allDigits(string_view text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), isDigit);
}

struct Integers {
    std::uint32_t code;
    bool hasSign;
    string_view lowest, highest;
};
constexpr Integers kIntegers[] = {
    {SCHEMA_TYPE_BYTE, true, "-128", "127"},
    {SCHEMA_TYPE_SHORT, true, "-32768", "32767"},
    {SCHEMA_TYPE_UNSIGNED_BYTE, false, "0", "255"},
    {SCHEMA_TYPE_UNSIGNED_SHORT, false, "0", "65535"},
    {SCHEMA_TYPE_INT, true, "-2147483648", "2147483647"},
    {SCHEMA_TYPE_LONG, true, "-9223372036854775808", "9223372036854775807"},
    {SCHEMA_TYPE_UNSIGNED_INT, false, "0", "4294967295"},
    {SCHEMA_TYPE_UNSIGNED_LONG, false, "0", "18446744073709551615"},
    {SCHEMA_TYPE_INTEGER, true, "-9223372036854775808", "9223372036854775807"},
    {SCHEMA_TYPE_POSITIVE_INTEGER, true, "1", "9223372036854775807"},
    {SCHEMA_TYPE_NON_POSITIVE_INTEGER, true, "-9223372036854775808", "0"},
    {SCHEMA_TYPE_NEGATIVE_INTEGER, true, "-9223372036854775808", "-1"},
    {SCHEMA_TYPE_NON_NEGATIVE_INTEGER, true, "0", "9223372036854775807"},
};

struct Number {
    bool negative;
    string digits;  // without zeros in front, empty for 0

    explicit Number(string_view text) : negative(text.starts_with('-')) {
        if (!text.empty() && !isDigit(text[0])) text.remove_prefix(1);
        digits = text.substr(std::min(text.find_first_not_of('0'), text.size()));
    }
};

// Below 0 where a is less. Intended by the library: -0 is less than 0.
int compare(const Number &a, const Number &b) {
    if (a.negative != b.negative) return a.negative ? -1 : 1;
    int order = 0;
    if (a.digits.size() != b.digits.size()) {
        order = a.digits.size() < b.digits.size() ? -1 : 1;
    } else {
        order = a.digits.compare(b.digits);
    }
    return a.negative ? -order : order;
}

bool isInteger(const Integers &type, string_view value) {
    string_view digits = value;
    const bool sign = !value.empty() && string_view("+-|").find(value[0]) != value.npos;
    if (sign && type.hasSign) digits.remove_prefix(1);
    if (!allDigits(digits)) return false;
    const Number number(value);
    // Short types are read as numbers, to which -0 is 0.
    const bool isShort = type.code <= SCHEMA_TYPE_UNSIGNED_SHORT;
    if (isShort && number.digits.empty()) return true;
    return compare(Number(type.lowest), number) <= 0 && compare(number, Number(type.highest)) <= 0;
}

// Takes so many digits off the front as a number; -1 where they are not there.
int takeNumber(string_view *text, std::size_t digits) {
    if (text->size() < digits || !allDigits(text->substr(0, digits))) return -1;
    const int number = std::atoi(string(text->substr(0, digits)).c_str());
    text->remove_prefix(digits);
    return number;
}

bool take(string_view *text, char c) {
    if (!text->starts_with(c)) return false;
    text->remove_prefix(1);
    return true;
}

int daysOf(int year, int month) {
    constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    return kDays[month - 1] + (month == 2 && leap);
}

bool takeYear(string_view *text, int *year) {
    *year = takeNumber(text, 4);
    return *year >= 1;
}

bool takeMonth(string_view *text, int *year, int *month) {
    if (!takeYear(text, year) || !take(text, '-')) return false;
    *month = takeNumber(text, 2);
    return *month >= 1 && *month <= 12;
}

bool takeDate(string_view *text) {
    int year = 0, month = 0;
    if (!takeMonth(text, &year, &month) || !take(text, '-')) return false;
    const int day = takeNumber(text, 2);
    return day >= 1 && day <= daysOf(year, month);
}

bool takeTime(string_view *text) {
    constexpr int kBounds[] = {23, 59, 59};
    for (int i = 0; i < 3; ++i) {
        if (i > 0 && !take(text, ':')) return false;
        const int number = takeNumber(text, 2);
        if (number < 0 || number > kBounds[i]) return false;
    }
    if (!take(text, '.')) return true;
    std::size_t digits = 0;
    while (digits < text->size() && isDigit((*text)[digits])) ++digits;
    text->remove_prefix(digits);
    return digits >= 1 && digits <= 20;
}

// Whether what is left may be the offset from UTC; the two bounds differ between types.
bool isOffset(string_view text, int mostHours, int mostMinutes) {
    if (text.empty() || text == "Z") return true;
    if (!take(&text, '+') && !take(&text, '-') && !take(&text, '|')) return false;
    const int hours = takeNumber(&text, 2);
    if (hours < 0 || hours > mostHours || !take(&text, ':')) return false;
    const int minutes = takeNumber(&text, 2);
    return minutes >= 0 && minutes <= mostMinutes && text.empty();
}

enum class Answer { kNo, kYes, kUnknown };

Answer slowCheck(std::uint32_t code, string_view value) {
    const auto answer = [](bool valid) { return valid ? Answer::kYes : Answer::kNo; };
    for (const Integers &type : kIntegers) {
        if (type.code == code) return answer(isInteger(type, value));
    }
    string_view rest = value;
    switch (code) {
        case SCHEMA_TYPE_BOOLEAN:
            return answer(value == "true" || value == "false" || value == "0" || value == "1");
        case SCHEMA_TYPE_STRING:
            return Answer::kYes;
        case SCHEMA_TYPE_HEX_BINARY:
            return answer(!value.empty() &&
                          value.find_first_not_of("0123456789abcdefABCDEF") == value.npos);
        case SCHEMA_TYPE_DATE:
            return answer(takeDate(&rest) && isOffset(rest, 29, 59));
        case SCHEMA_TYPE_TIME:
            return answer(takeTime(&rest) && isOffset(rest, 99, 99));
        case SCHEMA_TYPE_DATE_TIME:
            return answer(takeDate(&rest) && take(&rest, 'T') && takeTime(&rest) &&
                          isOffset(rest, 99, 99));
        default:
            return Answer::kUnknown;
    }
}

// ---------------------------------------------------------------- values out of the input

string someValue(FuzzInput &input) {
    constexpr const char *kValues[] = {"0",
                                       "-1",
                                       "+127",
                                       "2001-02-28",
                                       "23:59:59.5",
                                       "2000-02-29T12:00:00Z",
                                       "true",
                                       "2001",
                                       "--05--",
                                       "---30",
                                       "--02-28",
                                       "2001-05",
                                       "P1Y2M3DT4H5M6S",
                                       "AF09",
                                       "QUI=",
                                       "a/b",
                                       "name",
                                       "en",
                                       "18446744073709551615",
                                       "-9223372036854775808",
                                       "1.3.6.1",
                                       "fe80::1",
                                       "1-10,12",
                                       "255.255.0.0",
                                       "2001:db8::1/64",
                                       "4294967295",
                                       "32768",
                                       "|7",
                                       "2001-01-01|01:00",
                                       "a:b"};
    string value;
    const unsigned origin = input.byte() % 4;
    if (origin == 1) {
        value = input.any(kValues);
    } else if (origin == 3) {
        // A bound of the integers, or a number beside it.
        const Integers &type = input.any(kIntegers);
        value = input.flag() ? type.lowest : type.highest;
        value.back() = static_cast<char>('0' + (value.back() - '0' + input.byte() % 3) % 10);
    }
    const unsigned change = input.byte() % 4;
    if (change == 1 && !value.empty()) {
        value[input.below(value.size())] = static_cast<char>(1 + input.byte() % 255);
    } else if (change == 2) {
        value.insert(input.below(value.size() + 1), string(input.byte() % 8, '0'));
    } else if (change == 3 || value.empty()) {
        value += input.string();
    }
    return value.substr(0, value.find('\0'));
}

// ---------------------------------------------------------------- built-in types

bool isValid(const SchemaSimpleType &type, const char *value, string *message) {
    char buffer[kFullMessage] = "";
    SchemaValidateContext context{};
    context.valid = 1;
    Schema_CheckSimpleType(&type, value, sizeof buffer, &context, buffer);
    if (message) *message = buffer;
    return context.valid == 1;
}

SchemaSimpleType builtin(std::uint32_t code) {
    SchemaSimpleType type{};
    type.name = "type";
    type.builtinCode = code;
    return type;
}

void testBuiltin(FuzzInput &input) {
    const std::uint32_t code = input.byte() % 38;
    const string value = someValue(input);
    const auto details = [&] { return std::to_string(code) + ' ' + support::printable(value); };
    const SchemaSimpleType type = builtin(code);
    const bool plain = SCHEMA_CheckBaseTypeNonNull(code, value.c_str()) == 1;
    char buffer[kFullMessage + 1] = "";
    const bool told = Schema_CheckBaseType(&type, value.c_str(), kFullMessage, buffer) == 1;
    if (!value.empty()) {
        const Answer slow = slowCheck(code, value);
        fuzz::requireOr(slow == Answer::kUnknown || plain == (slow == Answer::kYes),
                        "the slow check differs", details);
        fuzz::requireOr(plain == told || code == SCHEMA_TYPE_ANY_SIMPLE_TYPE,
                        "the check with a message differs", details);
    }
    fuzz::requireOr(told || buffer[0] != '\0', "no message", details);
    if (code != 0) {
        fuzz::requireOr(isValid(type, value.c_str(), nullptr) == told, "as a type it differs",
                        details);
        const SchemaTypedRef reference{&type, SCHEMA_KIND_SIMPLE_TYPE};
        const std::uint32_t result =
            Schema_checkValueOfElement(&reference, value.c_str(), kFullMessage, buffer);
        fuzz::requireOr(result == (told ? XML_OK : XML_REFUSED), "as an element it differs",
                        details);
    }
    // Nothing is trimmed: a blank is a part of the value, and numbers and dates have none.
    if (!value.empty() && slowCheck(code, value) != Answer::kUnknown &&
        code != SCHEMA_TYPE_STRING) {
        fuzz::requireOr(SCHEMA_CheckBaseTypeNonNull(code, (' ' + value).c_str()) == 0 &&
                            SCHEMA_CheckBaseTypeNonNull(code, (value + ' ').c_str()) == 0,
                        "a blank is passed over", details);
    }
}

// A message fits its buffer, whatever the size, and the answer does not hang on it.
void testBuffers(FuzzInput &input) {
    constexpr const char *kNetwork[] = {"OID",          "_Ipv6Address", "IPV6_ADDR_PREFIX",
                                        "_PortRange",   "_VlanRange",   "_Ipv4Mask",
                                        "_IfIndexRange"};
    const SchemaKestType *row = Schema_FoundKestBltInType(input.any(kNetwork), nullptr);
    fuzz::require(row != nullptr, "a type of network equipment is missing");
    const SchemaSimpleType type = builtin(input.byte() % 35);
    const std::size_t size = input.byte();
    const string value = someValue(input);
    std::vector<char> full(kFullMessage, '#'), small(size + 1, '#');
    const bool network = input.flag();
    const auto check = [&](std::vector<char> &buffer, std::size_t room) {
        const auto bytes = static_cast<std::uint32_t>(room);
        return network ? Schema_checkKestBltInType(row, value.c_str(), bytes, buffer.data())
                       : Schema_CheckBaseType(&type, value.c_str(), bytes, buffer.data());
    };
    const std::uint32_t result = check(full, full.size()), other = check(small, size);
    fuzz::require(small[size] == '#', "a message beyond its buffer");
    if (size != 0) {
        fuzz::requireOr(result == other, "the room for a message changes the answer",
                        [&] { return support::printable(value); });
    }
    fuzz::require(result <= 1, "neither valid nor invalid");
    fuzz::require(result == 1 || std::memchr(full.data(), 0, full.size()), "an endless message");
}

// ---------------------------------------------------------------- patterns

// Expressions with which the C library takes its time, or all memory, are left out.
bool isTame(const string &pattern) {
    std::size_t stars = 0, braces = 0;
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        if (pattern[i] == '\\' && i + 1 < pattern.size() && isDigit(pattern[i + 1])) return false;
        stars += pattern[i] == '*' || pattern[i] == '+' || pattern[i] == '?';
        braces += pattern[i] == '{';
    }
    if (braces > 1 || stars > 6) return false;
    const std::size_t brace = pattern.find('{');
    if (brace == pattern.npos) return true;
    std::size_t digits = 0;
    for (std::size_t i = brace; i < pattern.size(); ++i) digits += isDigit(pattern[i]);
    return digits <= 3;
}

void testPattern(FuzzInput &input) {
    const string pattern(input.string().substr(0, 40));
    if (!isTame(pattern)) return;
    regex_t expression;
    const bool compiled = regcomp(&expression, pattern.c_str(), REG_EXTENDED | REG_NOSUB) == 0;
    cxml::PatternCache cache;
    const SchemaFacet facet{pattern.c_str(), SCHEMA_FACET_PATTERN, SCHEMA_TYPE_STRING};
    for (int i = 0; i < 6 && (i == 0 || !input.empty()); ++i) {
        const string text(input.string().substr(0, 200));
        const bool expected = compiled && regexec(&expression, text.c_str(), 0, nullptr, 0) == 0;
        const auto details = [&] {
            return support::printable(pattern) + "\n" + support::printable(text);
        };
        fuzz::requireOr((XML_IsMatchRegex(pattern.c_str(), text.c_str()) == 1) == expected,
                        "a match differs", details);
        fuzz::requireOr(cache.matches(pattern.c_str(), text.c_str()) == expected,
                        "an automaton differs", details);
        char buffer[kFullMessage] = "";
        const std::uint32_t result = Schema_CheckFacet(&facet, text.c_str(), sizeof buffer, buffer);
        fuzz::requireOr((result == XML_OK) == expected, "a facet differs", details);
    }
    if (compiled) regfree(&expression);
}

// ---------------------------------------------------------------- composed types

// A union, or a restriction, of types that are its like, down to built-in ones.
class Composed {
  public:
    Composed(FuzzInput &input, unsigned depth) {
        const unsigned kind = depth == 0 ? 0 : input.byte() % 3;
        type_.name = "composed";
        if (kind == 0) {
            type_.builtinCode = 3 + input.byte() % 32;
            return;
        }
        const std::size_t parts = kind == 1 ? 1 : 2 + input.byte() % 2;
        for (std::size_t i = 0; i < parts; ++i) parts_.emplace_back(input, depth - 1);
        for (const Composed &part : parts_) members_.push_back(&part.type());
        type_.members = members_.data();
        if (kind == 1) {
            readFacets(input);
        } else {
            type_.memberCount = static_cast<std::uint32_t>(parts);
        }
    }
    Composed(Composed &&) = default;

    const SchemaSimpleType &type() const { return type_; }

    // From what the checks of the parts and of the single facets say.
    bool accepts(const char *value) const {
        if (parts_.empty()) return isValid(type_, value, nullptr);
        const auto acceptsPart = [value](const Composed &part) { return part.accepts(value); };
        if (type_.memberCount > 1) return std::any_of(parts_.begin(), parts_.end(), acceptsPart);
        if (!parts_.front().accepts(value)) return false;
        bool enumerated = false, listed = false, good = true;
        for (const SchemaFacet &facet : facets_) {
            char buffer[kFullMessage] = "";
            const bool holds = Schema_CheckFacet(&facet, value, sizeof buffer, buffer) == XML_OK;
            if (facet.kind == SCHEMA_FACET_ENUMERATION) {
                enumerated = true;
                listed |= holds;
            } else {
                good &= holds;
            }
        }
        return good && (!enumerated || listed);
    }

  private:
    void readFacets(FuzzInput &input) {
        constexpr const char *kBounds[] = {
            "0", "1", "5", "10", "-3", "100", "2001-01-01", "12:00:00", "P0Y0M1DT0H0M0S", "abc"};
        const Composed *base = &parts_.front();
        while (!base->parts_.empty()) base = &base->parts_.front();
        for (std::size_t i = input.byte() % 4; i > 0; --i) {
            SchemaFacet facet{};
            facet.kind = SCHEMA_FACET_ENUMERATION + input.byte() % 11;
            facet.value = facet.kind == SCHEMA_FACET_PATTERN ? "^[0-9a-c:-]*$" : input.any(kBounds);
            facet.baseCode = base->type_.builtinCode;
            facets_.push_back(facet);
        }
        type_.facets = facets_.data();
        type_.facetCount = static_cast<std::uint32_t>(facets_.size());
    }

    SchemaSimpleType type_{};
    std::vector<Composed> parts_;
    std::vector<const SchemaSimpleType *> members_;
    std::vector<SchemaFacet> facets_;
};

void testComposed(FuzzInput &input) {
    const Composed composed(input, 3);
    for (int i = 0; i < 4 && (i == 0 || !input.empty()); ++i) {
        const string value = someValue(input);
        string message, again;
        const bool valid = isValid(composed.type(), value.c_str(), &message);
        fuzz::requireOr(valid == composed.accepts(value.c_str()), "the parts say something else",
                        [&] { return support::printable(value) + "\n" + message; });
        fuzz::require(isValid(composed.type(), value.c_str(), &again) == valid && again == message,
                      "the second check differs");
        fuzz::require(valid || !message.empty(), "no message");
    }
}

// ---------------------------------------------------------------- times and lists

SchemaDateTimeValue someTime(FuzzInput &input) {
    SchemaDateTimeValue time{};
    time.year = static_cast<std::uint16_t>(input.pair() % 10000);
    time.month = input.byte() % 13;
    time.day = input.byte() % 32;
    time.hour = input.byte() % 24;
    time.minute = input.byte() % 60;
    time.second = input.byte() % 60;
    time.tzHour = input.byte() % 100;
    time.tzMinute = input.byte() % 100;
    time.tzSign = "\0+-"[input.byte() % 3];
    for (std::size_t i = input.byte() % 4; i-- > 0;) {
        time.fraction[i] = static_cast<char>('0' + input.byte() % 10);
    }
    return time;
}

int signOf(int number) {
    return (number > 0) - (number < 0);
}

void testTimes(FuzzInput &input) {
    const SchemaDateTimeValue a = someTime(input), b = someTime(input), c = someTime(input);
    fuzz::require(Schema_CmpDateTime(&a, &a) == 0, "a time differs from itself");
    const int ab = signOf(Schema_CmpDateTime(&a, &b)), bc = signOf(Schema_CmpDateTime(&b, &c));
    fuzz::require(signOf(Schema_CmpDateTime(&b, &a)) == -ab, "both of two times are later");
    if (ab == bc) {
        fuzz::require(signOf(Schema_CmpDateTime(&a, &c)) == ab, "three times have no order");
    }
    const std::uint32_t year = input.pair() % 10001, month = input.byte() % 14,
                        day = input.byte() % 33;
    const bool exists =
        year >= 1 && year <= 9999 && month >= 1 && month <= 12 && day >= 1 &&
        static_cast<int>(day) <= daysOf(static_cast<int>(year), static_cast<int>(month));
    fuzz::require((Schema_IsValidDay(year, month, day) == 1) == exists, "another day exists");
}

void testSplit(FuzzInput &input) {
    const char separator[] = {static_cast<char>(1 + input.byte() % 127), '\0'};
    const string text(input.string());
    std::vector<char> item(text.size() + 2, '#');
    SchemaSplitState state{};
    string joined;
    std::size_t items = 0;
    for (const char *next = Schema_GetFirstSplitStr(
             text.c_str(), separator, static_cast<std::uint32_t>(item.size()), item.data(), &state);
         next; next = Schema_GetNextSplitStr(&state)) {
        fuzz::require(std::strchr(next, separator[0]) == nullptr, "a separator within an item");
        if (items++ != 0) joined += separator;
        joined += next;
        fuzz::require(items <= text.size() + 1, "more items than bytes");
    }
    // One separator at the end has no item behind it.
    const bool same = joined == text || joined + separator == text;
    fuzz::requireOr(same, "the items are not the text",
                    [&] { return support::printable(text) + "\n" + support::printable(joined); });
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    FuzzInput input(data, size);
    constexpr void (*kTests[])(FuzzInput &) = {testBuiltin,  testBuiltin,  testBuffers, testPattern,
                                               testComposed, testComposed, testTimes,   testSplit};
    input.any(kTests)(input);
    return 0;
}
