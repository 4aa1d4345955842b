#include "dom/encoding.h"
#include "parser/grammar.h"
#include "parser/lexer.h"

namespace cxml {
namespace {

constexpr char kVersion[] = "1.0";

void skipBlanksInDeclaration(Parser *parser) {
    XML_Parser_SkipBlanks(parser, Keep::kMark);
}

// Reads white space, "=", white space and a quote, which it hands back.
Code readEqualsAndQuote(Parser *parser, int *quote) {
    skipBlanksInDeclaration(parser);
    if (peek(parser) != '=') return kEqualsExpected;
    skipAscii(parser, 1, Keep::kMark);
    skipBlanksInDeclaration(parser);
    *quote = peek(parser);
    if (*quote != '"' && *quote != '\'') return kQuoteNotOpened;
    skipAscii(parser, 1, Keep::kMark);
    return kAccepted;
}

Code readClosingQuote(Parser *parser, int quote) {
    if (peek(parser) != quote) return kQuoteNotClosed;
    skipAscii(parser, 1, Keep::kMark);
    return kAccepted;
}

// The stream may get other buffers with it.
uint32_t switchEncoding(Parser *parser, uint32_t encoding) {
    parser->position.settle(parser->input->cur);
    const uint32_t state = XML_IO_SwitchEncoding(parser->input, encoding);
    noteBuffer(parser);
    return state;
}

Code readVersion(Parser *parser) {
    if (!follows(parser, "version")) return kVersionMissing;
    skipAscii(parser, 7, Keep::kMark);
    int quote = 0;
    const Code code = readEqualsAndQuote(parser, &quote);
    if (code != kAccepted) return code;
    if (!follows(parser, kVersion)) return kBadVersion;
    skipAscii(parser, 3, Keep::kMark);
    return readClosingQuote(parser, quote);
}

Code readEncoding(Parser *parser) {
    skipAscii(parser, 8, Keep::kMark);
    int quote = 0;
    Code code = readEqualsAndQuote(parser, &quote);
    if (code != kAccepted) return code;

    char name[16];  // longer than every name that is known
    std::size_t length = 0;
    while (peek(parser) != quote) {
        if (atEnd(parser)) return kQuoteNotClosed;
        if (length < sizeof name) name[length++] = static_cast<char>(*parser->input->cur);
        XML_Parser_NextChar(parser, Keep::kMark);
    }
    const uint32_t encoding = encodingFromName(name, length);
    if (encoding == XML_ENCODING_UNKNOWN) return kUnsupported;
    parser->encoding = encoding;
    skipAscii(parser, 1, Keep::kMark);
    // A failure shows in the stream's state, which is looked at when the parse ends.
    switchEncoding(parser, encoding);
    return kAccepted;
}

Code readStandalone(Parser *parser) {
    if (!follows(parser, "standalone")) return kDeclarationNotClosed;
    skipAscii(parser, 10, Keep::kMark);
    int quote = 0;
    const Code code = readEqualsAndQuote(parser, &quote);
    if (code != kAccepted) return code;
    if (follows(parser, "yes")) {
        skipAscii(parser, 3, Keep::kMark);
    } else if (follows(parser, "no")) {
        skipAscii(parser, 2, Keep::kMark);
    } else {
        return kBadStandalone;
    }
    return readClosingQuote(parser, quote);
}

// After a pseudo-attribute: white space, or the end of the declaration, or both.
Code XML_Parser_ParseDeclEnd(Parser *parser, bool *ended) {
    *ended = false;
    if (atEnd(parser)) return kAccepted;
    const bool blanks = isBlankNext(parser);
    skipBlanksInDeclaration(parser);
    if (follows(parser, "?>")) {
        skipAscii(parser, 2, Keep::kMark);
        *ended = true;
        return kAccepted;
    }
    return blanks ? kAccepted : kSpaceExpected;
}

struct FirstBytes {
    unsigned char bytes[4];
    uint32_t encoding;
};

// "<?xm" and its beginnings in the encodings that do not begin every document with ASCII.
constexpr FirstBytes kFirstBytes[] = {
    {{'<', '?', 'x', 'm'}, XML_ENCODING_UTF_8}, {{'<', 0, '?', 0}, XML_ENCODING_UTF_16LE},
    {{0, '<', 0, '?'}, XML_ENCODING_UTF_16BE},  {{'<', 0, 0, 0}, XML_ENCODING_UTF_32LE},
    {{0, 0, 0, '<'}, XML_ENCODING_UTF_32BE},
};

}  // namespace

Code sniffEncoding(Parser *parser) noexcept {
    XML_IO_InStream *input = parser->input;
    if (input->end - input->cur < 4 || input->encoding != XML_ENCODING_UTF_8) return kAccepted;
    for (const FirstBytes &first : kFirstBytes) {
        if (std::memcmp(input->cur, first.bytes, sizeof first.bytes) != 0) continue;
        // Intended: the context's encoding stays what the byte order mark said.
        if (first.encoding == input->encoding) return kAccepted;
        return switchEncoding(parser, first.encoding) == 0 ? kAccepted : kConversionFailed;
    }
    return kAccepted;
}

// Intended: any instruction whose target begins with "xml" is taken for the declaration here.
Code XML_Parser_ParseXmlDecl(Parser *parser) noexcept {
    parser->version = kVersion;
    if (!follows(parser, "<?xml")) return kAccepted;
    skipAscii(parser, 5, Keep::kMark);
    if (!isBlankNext(parser)) return kSpaceExpected;
    skipBlanksInDeclaration(parser);

    bool ended = false;
    Code code = readVersion(parser);
    if (code == kAccepted) code = XML_Parser_ParseDeclEnd(parser, &ended);
    if (code == kAccepted && !ended && follows(parser, "encoding")) {
        code = readEncoding(parser);
        if (code == kAccepted) code = XML_Parser_ParseDeclEnd(parser, &ended);
    }
    if (code != kAccepted || ended) return code;

    code = readStandalone(parser);
    if (code != kAccepted) return code;
    skipBlanksInDeclaration(parser);
    if (!follows(parser, "?>")) return kDeclarationNotClosed;
    skipAscii(parser, 2, Keep::kMark);
    return kAccepted;
}

// Intended: the declaration is not read but passed over, up to the first ">", or with an internal
// subset up to the first "]" with ">" behind it, also inside literals.
Code XML_Parser_SkipDoctype(Parser *parser) noexcept {
    skipAscii(parser, 9);
    if (!isBlankNext(parser)) return kSpaceExpected;
    XML_Parser_SkipBlanks(parser, Keep::kNothing);
    int terminator = '>';
    for (;;) {
        Code code = takeUntil<'>', '[', ']'>(parser, Keep::kSnippet, nullptr);
        if (code != kAccepted) return code;
        if (peek(parser) == terminator) {
            skipAscii(parser, 1);
            if (terminator == '>') break;
            XML_Parser_SkipBlanks(parser, Keep::kSnippet);
            if (peek(parser) == '>') {
                skipAscii(parser, 1);
                break;
            }
        }
        // What stands here is passed over, even a second "]": "]]>" does not end the subset.
        if (atEnd(parser)) return kDoctypeNotClosed;
        if (!XML_Parser_IsLegalChar(XML_Parser_CurrentChar(parser))) return kInvalidChar;
        if (peek(parser) == '[') terminator = ']';
        XML_Parser_NextChar(parser, Keep::kSnippet);
    }
    return XML_Parser_ParseMisc(parser);
}

}  // namespace cxml
