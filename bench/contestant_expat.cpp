// Expat with namespace processing, the document in one buffer.
#include <expat.h>

#include "contestant.h"

namespace bench {
namespace {

constexpr char kSeparator = '|';  // between a namespace name and a local name

void XMLCALL onStart(void *user, const XML_Char *name, const XML_Char **attributes) {
    Tally &tally = *static_cast<Tally *>(user);
    tally.element(name, kSeparator);
    for (; *attributes; attributes += 2) tally.attribute(attributes[0], attributes[1], kSeparator);
}

void XMLCALL onEnd(void *, const XML_Char *) {}

void XMLCALL onText(void *user, const XML_Char *text, int length) {
    static_cast<Tally *>(user)->text(text, static_cast<std::size_t>(length));
}

bool parse(std::string_view document, Tally &tally) {
    XML_Parser parser = XML_ParserCreateNS(nullptr, kSeparator);
    if (!parser) return false;
    XML_SetUserData(parser, &tally);
    XML_SetElementHandler(parser, onStart, onEnd);
    XML_SetCharacterDataHandler(parser, onText);
    const bool ok =
        XML_Parse(parser, document.data(), static_cast<int>(document.size()), 1) == XML_STATUS_OK;
    XML_ParserFree(parser);
    return ok;
}

}  // namespace

const Contestant kExpat = {
    .name = "expat",
    .version = "Expat " BENCH_TEXT(XML_MAJOR_VERSION) "." BENCH_TEXT(
        XML_MINOR_VERSION) "." BENCH_TEXT(XML_MICRO_VERSION),
    .encodings = setOf(Encoding::utf8, Encoding::utf16le),
    .parse = parse,
};

}  // namespace bench
