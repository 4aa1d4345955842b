// Language codes: those of the list, to the letter, and no others.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <set>
#include <string>
#include <string_view>

#include "compactxml.h"
#include "tests/support/faults.h"
#include "tests/support/feeds.h"

namespace {

constexpr const char *kCodes[] = {
    "af",    "sq",    "ar",    "ar-sa", "ar-iq", "ar-eg", "ar-ly", "ar-dz", "ar-ma", "ar-tn",
    "ar-om", "ar-ye", "ar-sy", "ar-jo", "ar-lb", "ar-kw", "ar-ae", "ar-bh", "ar-qa", "eu",
    "bg",    "be",    "ca",    "zh",    "zh-tw", "zh-cn", "zh-hk", "zh-sg", "hr",    "cs",
    "da",    "nl",    "nl-be", "en",    "en-us", "en-gb", "en-au", "en-ca", "en-nz", "en-ie",
    "en-za", "en-jm", "en-bz", "en-tt", "et",    "fo",    "fa",    "fi",    "fr",    "fr-be",
    "fr-ca", "fr-ch", "fr-lu", "gd",    "de",    "de-ch", "de-at", "de-lu", "de-li", "el",
    "he",    "hi",    "hu",    "is",    "in",    "it",    "it-ch", "ja",    "ko",    "lv",
    "lt",    "mk",    "ms",    "mt",    "no",    "no",    "pl",    "pt-br", "pt",    "rm",
    "ro",    "ro-mo", "ru",    "ru-mo", "sr",    "sr",    "sk",    "sl",    "sb",    "es",
    "es-mx", "es",    "es-gt", "es-cr", "es-pa", "es-do", "es-ve", "es-co", "es-pe", "es-ar",
    "es-ec", "es-cl", "es-uy", "es-py", "es-bo", "es-sv", "es-hn", "es-ni", "es-pr", "sx",
    "sv",    "sv-fi", "th",    "ts",    "tn",    "tr",    "uk",    "ur",    "vi",    "xh",
    "ji",    "zu"};
static_assert(std::size(kCodes) == 122);

TEST(Language, EveryCodeOfTheList) {
    for (const char *code : kCodes) {
        EXPECT_EQ(Schema_LanguageHandler(code), 1u) << code;
        EXPECT_EQ(SCHEMA_CheckBaseTypeNonNull(SCHEMA_TYPE_LANGUAGE, code), 1u) << code;
    }
}

constexpr const char *kOthers[] = {
    "EN",       "en-US",    "en_us", "en-us ", " en-us", "EN-US", "En",     "de-de",    "pt-pt",
    "en-",      "-en",      "e",     "en-u",   "en-uss", "eng",   "en-us-", "en-us-us", "zh-Hans",
    "i-lux",    "x",        "x-a",   "-",      " ",      "en\n",  "en\t",   "no-no",    "es-es",
    "sr-sr",    "fr-fr",    "fr-FR", "zh_cn",  "zh-CN",  "zz",    "aa",     "id",       "yi",
    "NOTATION", "language", "en,de", "en de",  "\xE5n",  "e\xEE", "en\xA0", "af\"",     "",
};

TEST(Language, NothingElse) {
    for (const char *value : kOthers) {
        EXPECT_EQ(Schema_LanguageHandler(value), 0u) << support::printable(value);
    }
    EXPECT_EQ(Schema_LanguageHandler(nullptr), 0u);
}

// Of all texts of two letters, and of two and two with a hyphen, those of the list alone.
TEST(Language, AmongAllShortCodes) {
    const std::set<std::string_view> codes(std::begin(kCodes), std::end(kCodes));
    std::size_t found = 0;
    std::string value = "aa-aa";
    const auto letters = [&value](std::size_t place, int number) {
        value[place] = static_cast<char>('a' + number / 26);
        value[place + 1] = static_cast<char>('a' + number % 26);
    };
    constexpr int kPairs = 26 * 26;
    for (int language = 0; language < kPairs; ++language) {
        value.resize(2);
        letters(0, language);
        ASSERT_EQ(Schema_LanguageHandler(value.c_str()), codes.count(value)) << value;
        found += Schema_LanguageHandler(value.c_str());
        value += "-??";
        for (int country = 0; country < kPairs; ++country) {
            letters(3, country);
            const std::uint32_t known = Schema_LanguageHandler(value.c_str());
            ASSERT_EQ(known, codes.count(value)) << value;
            found += known;
        }
    }
    EXPECT_EQ(found, 119u);  // three codes are in the list twice
}

TEST(Language, EveryBeginningOfACodeAndEveryOneByteMore) {
    const std::set<std::string_view> codes(std::begin(kCodes), std::end(kCodes));
    for (const std::string code : kCodes) {
        for (std::size_t length = 0; length <= code.size(); ++length) {
            const std::string beginning = code.substr(0, length);
            EXPECT_EQ(Schema_LanguageHandler(beginning.c_str()), codes.count(beginning))
                << beginning;
        }
        for (int byte = 1; byte <= UINT8_MAX; ++byte) {
            const std::string longer = code + static_cast<char>(byte);
            EXPECT_EQ(Schema_LanguageHandler(longer.c_str()), 0u) << support::printable(longer);
        }
    }
}

TEST(Language, AllocatesNothing) {
    const support::FaultyHeap heap(1, true);
    EXPECT_EQ(Schema_LanguageHandler("zu"), 1u);
    EXPECT_EQ(Schema_LanguageHandler("zz"), 0u);
    EXPECT_EQ(heap.allocations(), 0u);
}

}  // namespace
