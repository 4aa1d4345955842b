// The process locale has no say in what a document is.
#include <clocale>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "compactxml.h"
#include "gtest/gtest.h"
#include "tests/support/feeds.h"
#include "tests/support/owners.h"
#include "tests/support/reference_iconv.h"
#include "tests/support/texts.h"

namespace {

// Sets a locale for its life; the one before comes back at the end.
class Locale {
  public:
    explicit Locale(const char *name) : before_(std::setlocale(LC_ALL, nullptr)) {
        set_ = std::setlocale(LC_ALL, name) != nullptr;
        const char *point = std::localeconv()->decimal_point;
        hasOtherPoint_ = set_ && std::string_view(point) != ".";
    }
    ~Locale() { std::setlocale(LC_ALL, before_.c_str()); }
    Locale(const Locale &) = delete;
    Locale &operator=(const Locale &) = delete;

    bool isSet() const { return set_; }
    bool hasOtherPoint() const { return hasOtherPoint_; }

  private:
    std::string before_;
    bool set_ = false;
    bool hasOtherPoint_ = false;  // than "."
};

// Multibyte, single-byte, and ones with letters and numbers of their own. Not every system has all.
constexpr const char *kLocales[] = {"C.UTF-8",          "C.utf8",           "POSIX",
                                    "zh_CN.UTF-8",      "zh_CN.GBK",        "zh_CN.GB18030",
                                    "tr_TR.UTF-8",      "tr_TR.ISO-8859-9", "de_DE.UTF-8",
                                    "de_DE.ISO-8859-1", "ar_EG.UTF-8",      ""};

// Everything that might ask the locale: classes of characters, case, digits, conversions, messages.
std::vector<std::string> samples() {
    std::vector<std::string> documents{
        "<a>\xC2\xA0x\xC2\x85 \xE3\x80\x80</a>",  // blanks of some locales, not of XML
        "<\xC3\xA9l\xC3\xA9ment \xC3\xB6='\xC3\xBF'>\xC3\x80</\xC3\xA9l\xC3\xA9ment>",
        "<Ii \xC4\xB0='\xC4\xB1'>I\xC4\xB1i\xC4\xB0</Ii>",
        "<a>&#x1D7D8;&#12345;&#x4e2D;</a>",
        "<a>\xD9\xA3</a>",
        "<a>&#\xD9\xA3;</a>",  // a digit, but not one of XML
        "<a>\n\n  <b c='1' c='2'/></a>",
        "<\xC3\x97/>",
        "<a>\xFF\xFE</a>",
        "<a>\xC1\x81</a>",
        "<?xml version='1.0' encoding='UTF-8\xC4\xB0'?><a/>",
        "<!DOCTYPE a [\xC3\xA9 > ]><a/>",
        "<?\xC3\xA9 \xC3\xA8?><!--\xC3\xA9--><a><![CDATA[\xC3\xA9]]></a>",
    };
    for (const char *name : {"utf-8", "Utf-16Le", "utf-16be", "gb2312", "utf-32le", "utf-32be",
                             "utf-16", "utf-32", "gbk", "gb18030", "ucs-4", "ucs-4be", "ucs-4le"}) {
        const std::uint32_t encoding = XML_DOM_EncodingStrToEnum(name);
        // With the order of bytes left open: the one that the first bytes show.
        const std::uint32_t bytes = encoding == XML_ENCODING_UTF_16   ? XML_ENCODING_UTF_16BE
                                    : encoding == XML_ENCODING_UTF_32 ? XML_ENCODING_UTF_32BE
                                                                      : encoding;
        documents.push_back(support::inEncoding(
            bytes, "<?xml version='1.0' encoding='" + std::string(name) +
                       "'?><\xE9\x85\x8D\xE7\xBD\xAE \xE5\x90\x8D='\xE4\xBA\xA4'>\xE7\xAB\xAF "
                       "I i</\xE9\x85\x8D\xE7\xBD\xAE>"));
    }
    return documents;
}

// All that the library says about a document, as one text.
std::string everythingAbout(const std::string &document) {
    std::string all;
    for (const support::Feed &feed : support::mainFeeds(document)) {
        const support::RecordedParse parse = support::record(feed);
        all += std::to_string(parse.result) + ' ' + parse.text + '\n';
        for (const std::string &call : parse.calls) all += call + '\n';
        char error[512] = "";
        const support::NodePtr tree(feed.build(sizeof error, error));
        all += support::describeTree(tree.get()) + error + '\n';
        for (std::uint32_t encoding = 0; tree && encoding < support::kEncodingCount; ++encoding) {
            XML_DOM_SetEncoding(tree.get(), encoding);
            char *text = nullptr;
            std::uint32_t length = 0;
            all += std::to_string(XML_DOM_TranslateStr(tree.get(), 0, &text, &length)) + ' ';
            const support::TextPtr owner(text);
            if (text) all.append(text, length);
            all += '\n';
        }
    }
    return all;
}

std::string everythingAboutNames() {
    std::string all;
    for (const std::string name :
         {"a", "\xC3\xA9", "\xA8\xA6", "\xD6\xD0\xCE\xC4", "\xA1\xA1", "a\xA0", "\xFF", "I", "1"}) {
        all += std::to_string(XML_CheckQName(name.c_str())) + ' ';
    }
    for (const char *name :
         {"UTF-8", "utf-8", "UTF-16LE", "utf-16le", "GB18030", "gbK", "UTF\xC4\xB1", "ucs-4"}) {
        all += std::to_string(XML_DOM_EncodingStrToEnum(name)) + ' ';
    }
    return all;
}

// Values whose spelling some locale might see otherwise: points, grouped digits, letters.
std::string everythingAboutValues() {
    std::string all;
    for (const char *value :
         {"1",          "-1",         "1.5",        "1,5",
          "1.000",      "1,000",      "1'000",      "\xD9\xA3",
          "true",       "TRUE",       "\xC3\xA9",   "a:b",
          "http://a/b", "0aF",        "AbC=",       "P1Y2M3DT4H5M6S",
          "2024-02-29", "12:00:00.5", "12:00:00,5", "2024-02-29T12:00:00.25+01:00",
          "de-de",      "\xA8\xA6"}) {
        for (std::uint32_t code = 0; code < 48; ++code) {
            all += std::to_string(SCHEMA_CheckBaseTypeNonNull(code, value)) + ' ';
        }
        for (const char *bound : {"1", "1.2", "12:00:00.45"}) {
            for (const std::uint32_t code :
                 {SCHEMA_TYPE_LONG, SCHEMA_TYPE_UNSIGNED_LONG, SCHEMA_TYPE_TIME}) {
                const SchemaFacet facet = {bound, SCHEMA_FACET_MAX_INCLUSIVE, code};
                char message[200] = "";
                all += std::to_string(Schema_CheckFacet(&facet, value, sizeof message, message)) +
                       message + ' ';
            }
        }
        const support::NodePtr root(XML_DOM_CreateElementWithText("a", value));
        long long number = 0;
        all += std::to_string(XML_DOM_GetSelectSingleNodeAsInt64(root.get(), "", &number)) + '=' +
               std::to_string(number) + '\n';
    }
    return all;
}

TEST(Locale, ChangesNothing) {
    const std::string before = std::setlocale(LC_ALL, nullptr);
    std::vector<std::string> expected;
    {
        const Locale plain("C");
        ASSERT_TRUE(plain.isSet());
        for (const std::string &document : samples()) expected.push_back(everythingAbout(document));
        expected.push_back(everythingAboutNames());
        expected.push_back(everythingAboutValues());
    }
    std::size_t tried = 0, withOtherPoint = 0;
    for (const char *name : kLocales) {
        const Locale locale(name);
        if (!locale.isSet()) continue;
        ++tried;
        withOtherPoint += locale.hasOtherPoint();
        std::size_t i = 0;
        for (const std::string &document : samples()) {
            EXPECT_TRUE(everythingAbout(document) == expected[i])
                << name << ": " << support::printable(document);
            ++i;
        }
        EXPECT_EQ(everythingAboutNames(), expected[i]) << name;
        EXPECT_EQ(everythingAboutValues(), expected[i + 1]) << name;
    }
    EXPECT_GE(tried, 2u);  // POSIX and the environment's at the very least
    // scripts/test-locales makes the locales that a system may not have.
    if (std::getenv("COMPACTXML_TEST_LOCALE")) {
        EXPECT_GE(withOtherPoint, 1u);
    }
    EXPECT_EQ(std::setlocale(LC_ALL, nullptr), before);
}

}  // namespace
