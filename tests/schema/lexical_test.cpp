// The scanners of values against the regular expressions that they stand for.
//
// A scanner must answer what regexec answers in the C locale, whatever locale the process has. For
// dates and times the rest of their check is told beside it, slowly, with sscanf.
#include "schema/lexical.h"

#include <gtest/gtest.h>
#include <regex.h>

#include <clocale>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ostream>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "compactxml.h"
#include "schema/date_time.h"
#include "schema/network_type.h"
#include "tests/support/feeds.h"
#include "tests/support/small_stack.h"
#include "tests/support/utf8_locale.h"

namespace {

using support::Utf8Locale;

using cxml::DateForm;

class Pattern {
  public:
    explicit Pattern(const char *text) {
        compiles_ = regcomp(&compiled_, text, REG_EXTENDED | REG_NOSUB) == 0;
    }
    ~Pattern() {
        if (compiles_) regfree(&compiled_);
    }
    Pattern(const Pattern &) = delete;
    Pattern &operator=(const Pattern &) = delete;

    bool compiles() const { return compiles_; }
    bool matches(const char *text) const { return regexec(&compiled_, text, 0, nullptr, 0) == 0; }

  private:
    regex_t compiled_{};
    bool compiles_ = false;
};

// ---------------------------------------------------------------- what is compared

// Of types that are no dates the record stays empty.
struct Answer {
    bool valid = false;
    SchemaDateTimeValue value{};
};

bool operator==(const Answer &a, const Answer &b) {
    const SchemaDateTimeValue &x = a.value, &y = b.value;
    return a.valid == b.valid && x.year == y.year && x.month == y.month && x.day == y.day &&
           x.hour == y.hour && x.minute == y.minute && x.second == y.second &&
           x.tzHour == y.tzHour && x.tzMinute == y.tzMinute &&
           std::memcmp(x.fraction, y.fraction, sizeof x.fraction) == 0 && x.tzSign == y.tzSign;
}

std::ostream &operator<<(std::ostream &out, const Answer &answer) {
    const SchemaDateTimeValue &v = answer.value;
    out << (answer.valid ? "valid" : "invalid");
    for (const int field :
         {+v.year, +v.month, +v.day, +v.hour, +v.minute, +v.second, +v.tzHour, +v.tzMinute}) {
        out << ' ' << field;
    }
    const std::string_view fraction(v.fraction, strnlen(v.fraction, sizeof v.fraction));
    return out << " \"" << support::printable(fraction) << "\" " << static_cast<int>(v.tzSign);
}

// Texts with everything between prefix and suffix, up to a length, that the alphabet has.
struct Frame {
    const char *prefix, *alphabet;
    int longest;
    const char *suffix = "";
};

struct Subject {
    const char *name;
    const char *pattern;
    Answer (*scan)(const char *value);
    // What holds of a value that matches the pattern; null for valid.
    Answer (*rules)(const char *value);
    // The symbols that matter, and neighbours of theirs in ASCII.
    const char *alphabet;
    std::vector<Frame> frames;
    std::vector<const char *> samples;  // mostly valid
};

template <bool (*scanner)(const char *)>
Answer scanned(const char *value) {
    return {scanner(value), {}};
}

// A comma would begin another item.
bool isOneRange(const char *value) {
    return !std::strchr(value, ',') && cxml::isRangeList(value, UINT32_MAX, SIZE_MAX);
}

Answer rangeRules(const char *value) {
    unsigned long long first = 0, last = 0;
    const int fields = std::sscanf(value, "%llu-%llu", &first, &last);
    if (fields == 1) last = first;
    return {first != 0 && first <= last && last <= UINT32_MAX, {}};
}

// ---------------------------------------------------------------- dates and times, slowly

bool isLeapYear(int year) {
    if (year % 400 == 0) return true;
    if (year % 100 == 0) return false;
    return year % 4 == 0;
}

int lengthOfMonth(bool leap, int month) {
    switch (month) {
        case 2:
            return leap ? 29 : 28;
        case 4:
        case 6:
        case 9:
        case 11:
            return 30;
        default:
            return 31;
    }
}

struct Scan {
    int fields;  // that must be found
    std::size_t fixedLength;
    bool time, year, month, day;
};

int scanFixedPart(DateForm form, const char *text, SchemaDateTimeValue *v) {
    switch (form) {
        case DateForm::kDateTime:
            return std::sscanf(text, "%4hu-%2hu-%2huT%2hu:%2hu:%2hu", &v->year, &v->month, &v->day,
                               &v->hour, &v->minute, &v->second);
        case DateForm::kDate:
            return std::sscanf(text, "%4hu-%2hu-%2hu", &v->year, &v->month, &v->day);
        case DateForm::kTime:
            return std::sscanf(text, "%2hu:%2hu:%2hu", &v->hour, &v->minute, &v->second);
        case DateForm::kGYear:
            return std::sscanf(text, "%4hu", &v->year);
        case DateForm::kGMonth:
            return std::sscanf(text, "--%2hu--", &v->month);
        case DateForm::kGDay:
            return std::sscanf(text, "---%2hu", &v->day);
        case DateForm::kGYearMonth:
            return std::sscanf(text, "%4hu-%2hu", &v->year, &v->month);
        case DateForm::kGMonthDay:
            return std::sscanf(text, "--%2hu-%2hu", &v->month, &v->day);
    }
    return 0;
}

constexpr Scan kScans[] = {
    {6, 19, true, true, true, true},   {3, 10, false, true, true, true},
    {3, 8, true, false, false, false}, {1, 4, false, true, false, false},
    {1, 6, false, false, true, false}, {1, 5, false, false, false, true},
    {2, 7, false, true, true, false},  {2, 7, false, false, true, true},
};

// The check of a value that matches the form's pattern.
template <DateForm form>
Answer dateRules(const char *text) {
    const Scan &scan = kScans[static_cast<int>(form)];
    SchemaDateTimeValue v{};
    if (scanFixedPart(form, text, &v) != scan.fields) return {};
    if (scan.time && (v.hour > 23 || v.minute > 59 || v.second > 59)) return {};
    if (scan.year && v.year == 0) return {};
    if (scan.month && (v.month < 1 || v.month > 12)) return {};
    if (scan.day) {
        const int longest = !scan.month ? 30
                            : scan.year ? lengthOfMonth(isLeapYear(v.year), v.month)
                                        : lengthOfMonth(false, v.month);
        if (v.day < 1 || v.day > longest) return {};
    }
    const char *rest = text + scan.fixedLength;
    if (*rest != '+' && *rest != '-' && *rest != 'Z' && *rest != '\0') {
        ++rest;
        const std::size_t digits = std::strspn(rest, "0123456789");
        std::memcpy(v.fraction, rest, digits);
        rest += digits;
    }
    if (*rest != '\0' && *rest != 'Z') {
        v.tzSign = *rest;
        std::sscanf(rest + 1, "%2hu:%2hu", &v.tzHour, &v.tzMinute);
    }
    return {true, v};
}

template <DateForm form>
Answer dateScanned(const char *value) {
    Answer answer;
    answer.valid = cxml::checkDateTime(form, value, &answer.value);
    return answer;
}

// ---------------------------------------------------------------- the subjects

const std::vector<Subject> &subjects() {
    static const std::vector<Subject> all = {
        {"string",
         ".",
         scanned<cxml::matchesAnything>,
         nullptr,
         "a \n\x7F\x80\xD6\xD0\xFF",
         {{"", "a\n\x80\xD6\xD0\xFF", 5}},
         {"", "a", " ", "\n", "\xD6\xD0\xCE\xC4", "\xE4\xB8\xAD"}},
        {"signed integer",
         "^[+|-]?[0-9]+$",
         scanned<cxml::matchesSignedInteger>,
         nullptr,
         "+|-,.0123456789/:{} \n\xB0",
         {{"", "+|-,09/:}", 6}, {"-12345678901234567890", "09/:+", 3}},
         {"0", "7", "+1", "-1", "|1", "-128", "00000000000000000000000", "18446744073709551615"}},
        {"unsigned integer",
         "^[0-9]+$",
         scanned<cxml::matchesUnsignedInteger>,
         nullptr,
         "+|-,.0123456789/:{} \n\xB0",
         {{"", "+|-,09/:}", 6}, {"12345678901234567890", "09/:+", 3}},
         {"0", "7", "42", "255", "00000000000000000000000", "18446744073709551615"}},
        {"boolean",
         "^(1|true|0|false)$",
         scanned<cxml::matchesBoolean>,
         nullptr,
         "01truefalsTF2/ ()|\xE1",
         {{"", "10truefals", 4}, {"tru", "eE u1", 3}, {"fals", "eE sd0", 3}, {"", "01|()$^", 4}},
         {"1", "0", "true", "false"}},
        {"hexBinary",
         "^[0-9A-Fa-f]+$",
         scanned<cxml::matchesHexBinary>,
         nullptr,
         "0123456789abcdefABCDEF/:@G`g \xC1\xE1",
         {{"", "09/:AF@Gaf`g", 5}},
         {"0", "a", "F", "abc", "0123456789abcdefABCDEF"}},
        {"base64Binary",
         "^([a-zA-Z0-9/+]{4})*([a-zA-Z0-9/+]{2}==|[a-zA-Z0-9/+]{3}=)?$",
         scanned<cxml::matchesBase64Binary>,
         nullptr,
         "aAzZ09/+==-.:@[`{ \n\xC1",
         {{"", "A/=-", 8}, {"", "Az9+=,@[{", 4}, {"QUJD", "A+= ", 6}},
         {"", "AAAA", "AA==", "AAA=", "AAAAAAAA", "Zm9vYmFyCg==", "a/+9zZ0A", "QUJDRA=="}},
        {"anyURI",
         "^[^:]+[://][^:]+$",
         scanned<cxml::matchesAnyUri>,
         nullptr,
         "::://a.9; \n[]\x80\xFF",
         {{"", ":/.;a", 6}, {"a", ":/0[]\x80\n", 4}},
         {"a/b", "a:b", "urn:a", "http/x", "//a", "a//", "a/b:c/d", "\xD6\xD0/\xCE\xC4",
          "\x80:\xFF"}},
        {"duration",
         "^P[0-9]{1,4}Y[0-9]{1,5}M[0-9]{1,5}DT[0-9]{1,5}H[0-9]{1,5}M[0-9]{1,5}S$",
         scanned<cxml::matchesDuration>,
         nullptr,
         "PPTYMDHSymd0123456789/:.-+Z \xB0",
         {{"", "P1YMDTHS", 4},
          {"P", "09Y/", 6, "1M1DT1H1M1S"},
          {"P1Y", "09M:", 7, "1DT1H1M1S"},
          {"P1Y1M", "09D", 7, "T1H1M1S"},
          {"P1Y1M1", "1DT", 4, "1H1M1S"},
          {"P1Y1M1DT", "09H", 7, "1M1S"},
          {"P1Y1M1DT1H", "09M", 7, "1S"},
          {"P1Y1M1DT1H1M", "09S ", 7}},
         {"P1Y0M0DT0H0M0S", "P1Y2M3DT4H5M6S", "P9999Y99999M99999DT99999H99999M99999S",
          "P0000Y00000M00000DT00000H00000M00000S", "P12Y345M6789DT1H23M456S"}},
        {"range item",
         "^[0-9]{1,10}(-[0-9]{1,10})?$",
         scanned<isOneRange>,
         rangeRules,
         "0123456789--+./: \xB0",
         {{"", "019-/:", 6}, {"429496729", "456789-", 4}, {"1-429496729", "4567-", 3}},
         {"1", "80", "1-2", "2-1", "5-5", "0-1", "4294967295", "4294967296", "1-4294967295",
          "1-4294967296", "1234567890-1234567890", "9999999999-9999999999", "0000000001",
          "00000000001", "0000000001-0000000002"}},
        {"dateTime",
         "^[0-9]{4}-[0-1][0-9]-[0-3][0-9]T[0-2][0-9]:[0-5][0-9]:[0-5][0-9](\\.[0-9]{1,20})?(Z|[+|-]"
         "[0-9]{2}:[0-9]{2})?$",
         dateScanned<DateForm::kDateTime>,
         dateRules<DateForm::kDateTime>,
         "0123456789--::..TZ+|,/t \xB0",
         {{"2000-01-01T10:00:00", ".09Z+|:-", 6},
          {"2000-01-01T10:00:00", "./|1:", 7},
          {"2000-01-01T10:00:00.12345678901234567", "0123Z+:", 5},
          {"1999-12-31T23:59:59-", "059:/", 6},
          {"", "0129-/", 5, "02-28T00:00:00"},
          {"1900-", "01239-", 5, "T00:00:00"},
          {"2001-06-30T", "01234:", 3, "00:00"},
          {"2001-06-30T00:", "05679:T", 5}},
         {"2000-02-29T10:00:00", "2001-01-01T00:00:00Z", "9999-12-31T23:59:59+99:99",
          "1900-02-28T10:20:30.5-01:00", "0001-01-01T00:00:00.12345678901234567890|12:34",
          "2004-11-30T05:06:07|08:09"}},
        {"date",
         "^[0-9][0-9][0-9][0-9]-[0-1][0-9]-[0-3][0-9](Z|[+|-][0-2][0-9]:[0-5][0-9])?$",
         dateScanned<DateForm::kDate>,
         dateRules<DateForm::kDate>,
         "0123456789--:Z+|.,/T \xB0",
         {{"2000-01-01", ".09Z+|:-", 5},
          {"2000-01-01+", "02356:", 5},
          {"2000-01-01|", "0239:", 5},
          {"", "0129-/", 5, "02-28"},
          {"1900-", "01239-", 5},
          {"2000-02-", "0123899", 3, "Z"}},
         {"2000-02-29", "2001-01-01Z", "9999-12-31+29:59", "1900-02-28-01:00", "2004-11-30|05:06",
          "0001-01-01"}},
        {"time",
         "^[0-2][0-9]:[0-5][0-9]:[0-5][0-9](\\.[0-9]{1,20})?(Z|[+|-][0-9]{2}:[0-9]{2})?$",
         dateScanned<DateForm::kTime>,
         dateRules<DateForm::kTime>,
         "0123456789::..Z+-|,/T \xB0",
         {{"10:00:00", ".09Z+|:-", 5},
          {"10:00:00", "./|1:", 7},
          {"10:00:00.12345678901234567", "0123Z+:", 5},
          {"10:00:00.5|", "059:/", 6},
          {"", "01234:", 3, "59:59"},
          {"23:", "0569:", 5}},
         {"10:00:00", "00:00:00Z", "23:59:59+99:99", "12:34:56.5-01:00",
          "01:02:03.12345678901234567890", "10:00:00|01:00", "10:00:00.5|01:00"}},
        {"gYear",
         "^[0-9]{4}(Z|[+|-][0-9]{2}:[0-9]{2})?$",
         dateScanned<DateForm::kGYear>,
         dateRules<DateForm::kGYear>,
         "0123456789--::Z+|./ \xB0",
         {{"", "019-Z+", 5}, {"2000", "09Z+|:-.", 5}, {"2000+", "09:/", 6}, {"2000|", "09:/", 6}},
         {"2000", "0001", "9999Z", "2000+01:00", "1999-99:99", "2000|01:30"}},
        {"gMonth",
         "^--[0-1][0-9]--(Z|[+|-][0-9]{2}:[0-9]{2})?$",
         dateScanned<DateForm::kGMonth>,
         dateRules<DateForm::kGMonth>,
         "0123456789----::Z+|./ \xB0",
         {{"", "0129-Z", 6}, {"--12--", "09Z+|:-.", 5}, {"--01--+", "09:/", 6}},
         {"--01--", "--12--Z", "--09--+01:00", "--10---99:99", "--11--|01:30"}},
        {"gDay",
         "^---[0-3][0-9](Z|[+|-][0-9]{2}:[0-9]{2})?$",
         dateScanned<DateForm::kGDay>,
         dateRules<DateForm::kGDay>,
         "0123456789----::Z+|./ \xB0",
         {{"", "0139-Z", 6}, {"---30", "09Z+|:-.", 5}, {"---01+", "09:/", 6}, {"---", "012349", 2}},
         {"---01", "---30Z", "---09+01:00", "---10-99:99", "---28|01:30"}},
        {"gYearMonth",
         "^[0-9][0-9][0-9][0-9]-[0-1][0-9](Z|[+|-][0-9]{2}:[0-9]{2})?$",
         dateScanned<DateForm::kGYearMonth>,
         dateRules<DateForm::kGYearMonth>,
         "0123456789----::Z+|./ \xB0",
         {{"2000-12", "09Z+|:-.", 5},
          {"2000-01+", "09:/", 6},
          {"", "0129-/", 5, "02"},
          {"1999-", "01239-", 4}},
         {"2000-01", "9999-12Z", "0001-09+01:00", "1999-10-99:99", "2004-11|01:30"}},
        {"gMonthDay",
         "^--[0-1][0-9]-[0-3][0-9](Z|[+|-][0-9]{2}:[0-9]{2})?$",
         dateScanned<DateForm::kGMonthDay>,
         dateRules<DateForm::kGMonthDay>,
         "0123456789----::Z+|./ \xB0",
         {{"--12-31", "09Z+|:-.", 5},
          {"--01-01+", "09:/", 6},
          {"", "0129-", 6, "8"},
          {"--", "01239-", 5}},
         {"--01-31", "--02-28Z", "--04-30+01:00", "--12-25-99:99", "--06-15|01:30"}},
    };
    return all;
}

// ---------------------------------------------------------------- the comparison

// Takes texts and compares scanner and pattern on them, many at a time: regexec and the scanner in
// the C locale, then the scanner in one of UTF-8.
class Comparison {
  public:
    explicit Comparison(const Subject &subject) : subject_(subject), pattern_(subject.pattern) {
        EXPECT_TRUE(pattern_.compiles()) << subject.name;
        EXPECT_STREQ(std::setlocale(LC_ALL, nullptr), "C");
    }
    ~Comparison() { flush(); }
    Comparison(const Comparison &) = delete;
    Comparison &operator=(const Comparison &) = delete;

    void add(std::string_view text) {
        texts_.emplace_back(text.substr(0, text.find('\0')));
        if (texts_.size() == kBatch) flush();
    }

    // Reports what the last texts came to; counts are complete behind it.
    void flush() {
        if (failures_ >= kMostFailures) texts_.clear();
        std::vector<Answer> expected;
        expected.reserve(texts_.size());
        for (const std::string &text : texts_) {
            expected.push_back(answerOf(text.c_str()));
            ++(expected.back().valid ? valid_ : invalid_);
        }
        compare(expected, "C");
        if (const Utf8Locale locale; locale.isSet()) compare(expected, "UTF-8");
        texts_.clear();
    }

    std::size_t valid() const { return valid_; }
    std::size_t invalid() const { return invalid_; }
    std::size_t failures() const { return failures_; }

  private:
    static constexpr std::size_t kBatch = 4096, kMostFailures = 5;

    Answer answerOf(const char *text) const {
        if (!pattern_.matches(text)) return {};
        return subject_.rules ? subject_.rules(text) : Answer{true, {}};
    }

    void compare(const std::vector<Answer> &expected, const char *locale) {
        for (std::size_t i = 0; i < texts_.size() && failures_ < kMostFailures; ++i) {
            const Answer answer = subject_.scan(texts_[i].c_str());
            if (answer == expected[i]) continue;
            ++failures_;
            ADD_FAILURE() << subject_.name << " \"" << support::printable(texts_[i]) << "\" in "
                          << locale << ": " << answer << ", not " << expected[i];
        }
    }

    const Subject &subject_;
    const Pattern pattern_;
    std::vector<std::string> texts_;
    std::size_t valid_ = 0, invalid_ = 0, failures_ = 0;
};

void addAllOf(const Frame &frame, Comparison *comparison) {
    const std::size_t prefix = std::strlen(frame.prefix), symbols = std::strlen(frame.alphabet);
    for (int length = 0; length <= frame.longest; ++length) {
        const auto middle = static_cast<std::size_t>(length);
        std::string text =
            frame.prefix + std::string(middle, frame.alphabet[0]) + std::string(frame.suffix);
        std::vector<std::size_t> wheels(middle, 0);
        for (std::size_t turned = 0; turned <= middle;) {
            comparison->add(text);
            // As an odometer counts: the wheels that come round, and the one that moves on.
            for (turned = 0; turned < middle; ++turned) {
                wheels[turned] = (wheels[turned] + 1) % symbols;
                text[prefix + turned] = frame.alphabet[wheels[turned]];
                if (wheels[turned] != 0) break;
            }
            if (turned == middle) break;
        }
    }
}

TEST(Scanners, EveryShortText) {
    for (const Subject &subject : subjects()) {
        Comparison comparison(subject);
        for (const Frame &frame : subject.frames) addAllOf(frame, &comparison);
        comparison.flush();
        EXPECT_GE(comparison.valid(), 4u) << subject.name;
        EXPECT_GE(comparison.invalid(), 1u) << subject.name;
    }
}

TEST(Scanners, EveryByteInEveryPlaceOfAValidText) {
    for (const Subject &subject : subjects()) {
        Comparison comparison(subject);
        for (const std::string sample : subject.samples) {
            comparison.add(sample);
            for (std::size_t place = 0; place <= sample.size(); ++place) {
                comparison.add(sample.substr(0, place));
                comparison.add(sample.substr(place));
                std::string shorter = sample;
                comparison.add(shorter.erase(place, 1));
                for (int byte = 1; byte <= UINT8_MAX; ++byte) {
                    std::string changed = sample;
                    if (place < sample.size()) {
                        changed[place] = static_cast<char>(byte);
                        comparison.add(changed);
                        changed = sample;
                    }
                    comparison.add(changed.insert(place, 1, static_cast<char>(byte)));
                }
            }
        }
    }
}

class Generator {
  public:
    explicit Generator(const Subject &subject)
        : samples_(subject.samples), alphabet_(subject.alphabet) {}

    std::string shortText() {
        std::string text(below(9), '\0');
        for (char &c : text) c = symbol();
        return text;
    }

    // A sample with other digits, and up to three faults.
    std::string nearlyValid() {
        std::string text = samples_[below(samples_.size())];
        const bool otherDigits = below(2) == 0;
        for (char &c : text) {
            if (otherDigits && c >= '0' && c <= '9' && below(3) == 0) c = digit();
        }
        for (std::size_t faults = below(4); faults > 0; --faults) addFault(&text);
        return text;
    }

  private:
    void addFault(std::string *text) {
        const std::size_t place = below(text->size() + 1);
        switch (below(5)) {
            case 0:
                text->insert(place, 1, symbol());
                break;
            case 1:
                text->insert(place, text->substr(place, 1 + below(4)));
                break;
            case 2:
                text->erase(place, 1);
                break;
            default:
                if (place < text->size()) (*text)[place] = symbol();
                break;
        }
    }
    char symbol() {
        if (below(16) == 0) return static_cast<char>(1 + below(UINT8_MAX));
        return alphabet_[below(alphabet_.size())];
    }
    char digit() { return static_cast<char>('0' + below(10)); }
    std::size_t below(std::size_t bound) { return random_() % bound; }

    const std::vector<const char *> &samples_;
    const std::string_view alphabet_;
    std::mt19937 random_{20};
};

TEST(Scanners, AMillionRandomTexts) {
    constexpr std::size_t kTexts = support::kSanitized ? 50'000 : 1'000'000;
    for (const Subject &subject : subjects()) {
        Comparison comparison(subject);
        Generator generator(subject);
        for (std::size_t i = 0; i < kTexts; ++i) {
            comparison.add(i % 3 == 0 ? generator.shortText() : generator.nearlyValid());
        }
        comparison.flush();
        if (comparison.failures() != 0) continue;
        // Otherwise the comparison would say little.
        EXPECT_GT(comparison.valid(), kTexts / 20) << subject.name;
        EXPECT_GT(comparison.invalid(), kTexts / 50) << subject.name;
    }
}

TEST(Scanners, ChineseIsAStringInEveryLocale) {
    constexpr const char *kTexts[] = {
        "\xD6\xD0",                  // GB18030
        "\xD6\xD0\xCE\xC4",          //
        "\x81\x30\x81\x30",          // four bytes
        "\xE4\xB8\xAD\xE6\x96\x87",  // UTF-8
        "\x80",                      // no text in either
        "\xFF",
    };
    for (const char *text : kTexts) {
        EXPECT_TRUE(cxml::matchesAnything(text)) << support::printable(text);
    }
    const Utf8Locale locale;
    if (!locale.isSet()) GTEST_SKIP() << "no locale of UTF-8";
    for (const char *text : kTexts) {
        EXPECT_TRUE(cxml::matchesAnything(text)) << support::printable(text);
        const std::string uri = text + std::string("/") + text;
        EXPECT_TRUE(cxml::matchesAnyUri(uri.c_str())) << support::printable(uri);
    }
}

// Long texts in one pass: the regular expressions say the same, but take more time.
TEST(Scanners, LongTexts) {
    constexpr std::size_t kLength = std::size_t{1} << 20;
    const std::string digits(kLength, '1'), letters(kLength, 'A');
    EXPECT_TRUE(cxml::matchesAnything(letters.c_str()));
    EXPECT_TRUE(cxml::matchesUnsignedInteger(digits.c_str()));
    EXPECT_FALSE(cxml::matchesUnsignedInteger((digits + "a").c_str()));
    EXPECT_TRUE(cxml::matchesSignedInteger(("-" + digits).c_str()));
    EXPECT_FALSE(cxml::matchesSignedInteger((digits + "-").c_str()));
    EXPECT_TRUE(cxml::matchesHexBinary(letters.c_str()));
    EXPECT_FALSE(cxml::matchesHexBinary((letters + "g").c_str()));
    EXPECT_TRUE(cxml::matchesBase64Binary(letters.c_str()));
    EXPECT_FALSE(cxml::matchesBase64Binary((letters + "A").c_str()));
    EXPECT_FALSE(cxml::matchesBase64Binary((letters + "AA=").c_str()));
    EXPECT_TRUE(cxml::matchesBase64Binary((letters + "AA==").c_str()));
    EXPECT_TRUE(cxml::matchesAnyUri((letters + ":" + letters).c_str()));
    EXPECT_FALSE(cxml::matchesAnyUri((letters + ":" + letters + ":").c_str()));
    EXPECT_FALSE(cxml::matchesBoolean(letters.c_str()));
    EXPECT_FALSE(cxml::matchesDuration(("P" + digits).c_str()));
}

// ---------------------------------------------------------------- shapes

struct ShapeCase {
    const char *text, *shape;
    int behind;  // bytes; -1 for no match
};
constexpr ShapeCase kShapes[] = {
    {"", "", 0},    {"abc", "", 0},     {"", "9", -1},       {"0", "9", 1},     {"9", "9", 1},
    {"/", "9", -1}, {":", "9", -1},     {"1", "1", 1},       {"0", "1", 1},     {"2", "1", -1},
    {"2", "2", 1},  {"3", "2", -1},     {"3", "3", 1},       {"4", "3", -1},    {"5", "5", 1},
    {"6", "5", -1}, {"12:3", "99:", 3}, {"12;3", "99:", -1}, {"-7x", "-9", 2},  {"--", "-9", -1},
    {"T", "T", 1},  {"t", "T", -1},     {"12", "999", -1},   {"\xB0", "9", -1},
};

TEST(SkipShape, EndsBehindTheShape) {
    for (const ShapeCase &row : kShapes) {
        const char *end = cxml::skipShape(row.text, row.shape);
        EXPECT_EQ(end ? end - row.text : -1, row.behind)
            << "\"" << row.text << "\" by \"" << row.shape << "\"";
    }
}

}  // namespace
