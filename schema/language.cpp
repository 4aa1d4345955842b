#include <cstring>

#include "compactxml.h"

namespace cxml {
namespace {

// Intended: a list of codes rather than the syntax of language tags, with three codes in it twice.
constexpr const char *g_SchemaLanguageCodes[] = {
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
    "ji",    "zu",
};

}  // namespace
}  // namespace cxml

uint32_t Schema_LanguageHandler(const char *value) noexcept {
    if (!value) return 0;
    for (const char *code : cxml::g_SchemaLanguageCodes) {
        if (std::strcmp(code, value) == 0) return 1;
    }
    return 0;
}
