// The parser beside a slow model of it, on documents that are put together at random: pieces of
// markup in any order, and well-formed documents with a few bytes changed.
#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "gtest/gtest.h"
#include "tests/support/feeds.h"
#include "tests/support/parser_model.h"
#include "tests/support/reference_iconv.h"

using namespace std::string_view_literals;

namespace {

constexpr std::string_view kPieces[] = {
    "<a>"sv,
    "</a>"sv,
    "<b>"sv,
    "</b>"sv,
    "<a/>"sv,
    "<p:a>"sv,
    "</p:a>"sv,
    "<a"sv,
    ">"sv,
    "/>"sv,
    " b=''"sv,
    " b='1'"sv,
    " c=\"2\""sv,
    " p:b='3'"sv,
    " q:b='4'"sv,
    " xml:b='5'"sv,
    " xmlns='u'"sv,
    " xmlns=''"sv,
    " xmlns:p='u'"sv,
    " xmlns:q='u'"sv,
    " xmlns:p=''"sv,
    " xmlns:xml='u'"sv,
    "'"sv,
    "\""sv,
    "="sv,
    ":"sv,
    " "sv,
    "\n"sv,
    "\r"sv,
    "\r\n"sv,
    "\t"sv,
    "x"sv,
    "text"sv,
    "]]>"sv,
    "]"sv,
    "&amp;"sv,
    "&#65;"sv,
    "&#x20;"sv,
    "&#0;"sv,
    "&#"sv,
    "&"sv,
    ";"sv,
    "<![CDATA["sv,
    "<![CDATA[x]]>"sv,
    "<!--"sv,
    "-->"sv,
    "--"sv,
    "-"sv,
    "<!--c-->"sv,
    "<?"sv,
    "?>"sv,
    "<?p?>"sv,
    "<?p d?>"sv,
    "<?xml"sv,
    "<?xml version='1.0'?>"sv,
    "<?xml version='1.0' encoding='UTF-8' standalone='no' ?>"sv,
    "version='1.0'"sv,
    " encoding='utf-8'"sv,
    " standalone='yes'"sv,
    "<!DOCTYPE"sv,
    "<!DOCTYPE a"sv,
    "["sv,
    "<!DOCTYPE a [<!ENTITY x '>'>]>"sv,
    "\xC3\xA9"sv,
    "\xE4\xB8\xAD"sv,
    "\xF0\x90\x80\x80"sv,
    "\xC1\x81"sv,
    "\xF8\x90\x80\x80"sv,
    "\xED\xA0\x80"sv,
    "\x80"sv,
    "\xE4"sv,
    "\xF0\x90"sv,
    "\x01"sv,
    "\0"sv,
    "</"sv,
    "<"sv,
    "!"sv,
    "&lt;"sv,
    "http://www.w3.org/XML/1998/namespace"sv,
};

constexpr std::string_view kDocuments[] = {
    "<?xml version='1.0' encoding='UTF-8'?>\n<!DOCTYPE a [\n<!ENTITY b 'c'>]>\n<!-- d -->\n"
    "<p:a xmlns:p='u' p:b='1' c=\"&lt;2&gt;\">\n text &amp; \xE4\xB8\xAD\xE6\x96\x87\n"
    "  <q xmlns='v' xmlns:p='w'><p:r/></q><![CDATA[ <x> ]]>\n<?e f?></p:a>\n<!--g-->"sv,
    "\xEF\xBB\xBF<a>\r\n<b c='d' e='f'>g&#x41;&#66; </b>\r<b/>]] ></a>"sv,
    "<a b='1' c='2' d='3' e='4' f='5' g='6' h='7' i='8' j='9' p:b='1' xmlns:p='u'/>"sv,
    "<a><b><c><d>one</d>two<d>three</d></c></b>&#32;x&#32;</a>  <?p d?>"sv,
};

class Documents {
  public:
    explicit Documents(std::uint32_t seed) : random_(seed) {}

    std::string next() { return below(2) ? fromPieces() : changed(); }

    std::uint32_t below(std::uint32_t limit) {
        return static_cast<std::uint32_t>(random_() % limit);
    }

  private:
    std::string fromPieces() {
        std::string document;
        // Most begin in a way that lets them come further than the first byte.
        switch (below(4)) {
            case 0:
                document = "<a>";
                break;
            case 1:
                document = "<a";
                break;
            case 2:
                document = "<?xml version='1.0'";
                break;
            default:
                break;
        }
        for (std::uint32_t count = 1 + below(12); count--;) {
            document += kPieces[below(std::size(kPieces))];
        }
        return document;
    }

    std::string changed() {
        std::string document(kDocuments[below(std::size(kDocuments))]);
        for (std::uint32_t count = 1 + below(3); count--;) {
            const std::size_t at = below(static_cast<std::uint32_t>(document.size()));
            switch (below(5)) {
                case 0:
                    document.erase(at, 1 + below(4));
                    break;
                case 1:
                    document.insert(at, kPieces[below(std::size(kPieces))]);
                    break;
                case 2:
                    document[at] = static_cast<char>(below(256));
                    break;
                case 3: {
                    const std::size_t from = below(static_cast<std::uint32_t>(document.size()));
                    document.insert(at, document.substr(from, below(30)));
                    break;
                }
                default:
                    document.resize(at + 1);
                    break;
            }
            if (document.empty()) document.push_back('<');
        }
        return document;
    }

    std::mt19937 random_;
};

void compare(Documents &documents, int count) {
    for (int i = 0; i < count; ++i) {
        const std::string document = documents.next();
        if (!support::modelSpeaksFor(document)) continue;
        support::RecordOptions options;
        if (documents.below(4) == 0) {
            options.stopSlot = static_cast<support::Slot>(documents.below(10));
            options.stopCall = 1 + static_cast<int>(documents.below(3));
            options.stopStatus = static_cast<int>(documents.below(3)) * 50 - 50;
        }
        const support::RecordedParse model = support::modelParse(document, options);
        const support::RecordedParse parse =
            support::record(support::memoryFeed(document), options);
        ASSERT_TRUE(support::sameOutcome(model, parse) && model.snippet == parse.snippet)
            << support::printable(document) << "\nThe model gives " << model
            << "\nthe library gives " << parse << "\nsnippets \""
            << support::printable(model.snippet) << "\" and \"" << support::printable(parse.snippet)
            << '"';
        const auto size = static_cast<std::uint32_t>(document.size());
        const support::Feed feed = documents.below(2)
                                       ? support::listCutAt(document, documents.below(size))
                                       : support::listInPieces(document, 1 + documents.below(7));
        const support::RecordedParse cut = support::record(feed, options);
        ASSERT_TRUE(support::sameOutcome(parse, cut))
            << support::printable(document) << "\nmemory gives " << parse << "\n"
            << feed.name() << " gives " << cut;
    }
}

TEST(ParserModel, RandomDocuments) {
    Documents documents(20240229);
    compare(documents, 20000);
}

// Documents of several windows: blanks in front move each document along the window's edge.
TEST(ParserModel, RandomDocumentsAcrossWindows) {
    Documents documents(7);
    for (int i = 0; i < 400; ++i) {
        std::string document = "<r>";
        for (int k = 0; k < 8; ++k)
            document += std::string(documents.below(300), k % 2 ? ' ' : 'x') + "<a b='c'>text</a>";
        document.append(documents.below(100), ' ');
        const std::string tail = documents.next();
        if (tail.find("<?xml") != tail.npos || tail.find("\xEF\xBB\xBF") != tail.npos) continue;
        document += tail + "</r>";
        const support::RecordedParse model = support::modelParse(document);
        for (const support::Feed &feed : support::mainFeeds(document)) {
            const support::RecordedParse parse = support::record(feed);
            ASSERT_TRUE(support::sameOutcome(model, parse))
                << support::printable(document) << "\nThe model gives " << model << "\n"
                << feed.name() << " gives " << parse;
        }
    }
}

// The same characters in other encodings give the same calls, positions and snippets.
TEST(ParserModel, RandomDocumentsConverted) {
    constexpr struct {
        std::uint32_t encoding;  // of the bytes
        std::string_view mark;
        std::string_view declared;  // empty: no declaration is put in front
    } kForms[] = {
        {XML_ENCODING_UTF_16LE, "\xFF\xFE"sv, ""sv},
        {XML_ENCODING_UTF_16BE, "\xFE\xFF"sv, ""sv},
        {XML_ENCODING_UTF_32LE, "\xFF\xFE\0\0"sv, ""sv},
        {XML_ENCODING_UTF_32BE, "\0\0\xFE\xFF"sv, ""sv},
        {XML_ENCODING_UTF_16LE, "\xFF\xFE"sv, "UTF-16"sv},
        {XML_ENCODING_UTF_16BE, "\xFE\xFF"sv, "UTF-16"sv},
        {XML_ENCODING_UTF_32BE, ""sv, "UCS-4"sv},
        {XML_ENCODING_UTF_32LE, ""sv, "UCS-4LE"sv},
        {XML_ENCODING_GBK, ""sv, "GBK"sv},
        {XML_ENCODING_GB18030, ""sv, "GB18030"sv},
        {XML_ENCODING_GB18030, "\xEF\xBB\xBF"sv, "gb18030"sv},
    };
    Documents documents(99);
    for (std::size_t i = 0; i < 5500; ++i) {
        const auto &form = kForms[i % std::size(kForms)];
        std::string document = documents.next();
        const std::uint32_t size = 1 + documents.below(9);
        // A mark or a declaration of its own would be read against the one put in front.
        if (document[0] == '\0' || document.rfind("\xEF\xBB\xBF", 0) == 0) continue;
        if (document.find("encoding") != document.npos) continue;
        if (!form.declared.empty()) {
            document.insert(0,
                            "<?xml version='1.0' encoding='" + std::string(form.declared) + "'?>");
        }
        const support::Conversion converted =
            support::convertWhole(XML_ENCODING_UTF_8, form.encoding, document);
        if (converted.error != 0) continue;
        support::RecordedParse model = support::modelParse(document);
        for (std::string &call : model.calls) {
            const std::size_t at = call.find("ocument encoding 0");
            if (at < 7) call[at + 17] = static_cast<char>('0' + form.encoding);
        }
        const std::string source = std::string(form.mark) + converted.bytes;
        for (const support::Feed &feed :
             {support::memoryFeed(source), support::listInPieces(source, size)}) {
            const support::RecordedParse parse = support::record(feed);
            ASSERT_TRUE(support::sameOutcome(model, parse))
                << form.encoding << ": " << support::printable(document) << "\nThe model gives "
                << model << "\n"
                << feed.name() << " gives " << parse;
        }
    }
}

}  // namespace
