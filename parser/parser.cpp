#include <cstdio>
#include <cstdlib>
#include <memory>
#include <new>

#include "parser/grammar.h"
#include "parser/lexer.h"

namespace cxml {
namespace {

constexpr std::size_t kSnippetSize = 64;  // NUL included

struct DestroyParser {
    void operator()(Parser *parser) const noexcept {
        parser->~Parser();
        std::free(parser);
    }
};
using ParserOwner = std::unique_ptr<Parser, DestroyParser>;

ParserOwner newParser(XML_IO_InStream *input, XML_SAX_Handler *handler) {
    void *block = std::malloc(sizeof(Parser));
    if (!block) return nullptr;
    ParserOwner parser{new (block) Parser{}};
    parser->handler = handler;
    parser->input = input;
    parser->encoding = input->encoding;
    parser->line = 1;
    parser->column = 1;
    parser->position = {1, 1, input->cur};
    noteBuffer(parser.get());
    parser->xmlBinding.prefix = "xml";
    parser->xmlBinding.namespaceName = kXmlNamespace;
    parser->xmlBinding.nameLength = sizeof kXmlNamespace - 1;
    return parser;
}

Code parseDocument(Parser *parser) {
    Code code = sniffEncoding(parser);
    if (code == kAccepted) code = XML_Parser_ParseXmlDecl(parser);
    if (code != kAccepted) return code;
    XML_SAX_Handler *handler = parser->handler;
    if (handler && handler->startDocument) {
        settlePosition(parser);
        handler->startDocument(parser);
    }
    code = parser->status;
    if (code == kAccepted) code = XML_Parser_ParseMisc(parser);
    if (code == kAccepted && follows(parser, "<!DOCTYPE")) code = XML_Parser_SkipDoctype(parser);
    if (code != kAccepted) return code;

    if (atEnd(parser)) return kDocumentEmpty;
    if (peek(parser) != '<') return kStartTagExpected;
    code = XML_Parser_ParseElement(parser);
    if (code == kAccepted) code = XML_Parser_ParseMisc(parser);
    if (code != kAccepted) return code;
    if (!atEnd(parser)) return kExtraContent;
    settlePosition(parser);
    if (handler && handler->endDocument) handler->endDocument(parser);
    return parser->status;
}

// A failure of the stream explains whatever went wrong after it.
Code streamFailure(const XML_IO_InStream *input) {
    switch (input->state) {
        case kMemoryFailure:
            return kNoMemory;
        case kUnsupportedEncoding:
            return kUnsupported;
        case kConversionFailure:
            return kConversionFailed;
        default:
            return kAccepted;
    }
}

bool beginsCharacter(Byte b) {
    return b < 0x80 || b >= 0xC0;
}

// The part of the document around the read position, in whole characters.
void copySnippet(const XML_IO_InStream *input, char (&snippet)[kSnippetSize]) {
    const Byte *from =
        input->cur - input->base > kSnippetBefore ? input->cur - kSnippetBefore : input->base;
    while (from != input->end && !beginsCharacter(*from)) ++from;
    auto length = static_cast<std::size_t>(input->end - from);
    if (length > kSnippetSize - 1) length = kSnippetSize - 1;
    if (length != 0) {
        std::size_t last = length - 1;
        while (last != 0 && !beginsCharacter(from[last])) --last;
        const std::size_t size = from[last] < 0x80 ? 1 : multibyteLength(from[last]);
        if (length - last < size) length = last;
        std::memcpy(snippet, from, length);
    }
    snippet[length] = '\0';
}

void XML_Parser_ReportError(Parser *parser, Code code) {
    parser->status = code;
    settlePosition(parser);
    if (!parser->handler || !parser->handler->error) return;
    char snippet[kSnippetSize];
    copySnippet(parser->input, snippet);
    parser->handler->error(parser, "The Line %d Column %d :\"%s\", %s", parser->line,
                           parser->column, snippet, messageOf(code));
}

uint32_t XML_Parser_Parse(XML_IO_InStream *input, XML_SAX_Handler *handler) {
    const ParserOwner parser = newParser(input, handler);
    if (!parser) return XML_REFUSED;
    Code code = parseDocument(parser.get());
    if (const Code failure = streamFailure(input)) code = failure;
    if (code == kAccepted) return XML_OK;
    XML_Parser_ReportError(parser.get(), code);
    return XML_REFUSED;
}

}  // namespace
}  // namespace cxml

using namespace cxml;

uint32_t XML_Parser_ByFile(const char *path, XML_SAX_Handler *handler) noexcept {
    XML_IO_InStream *input = XML_IO_ByFile(path);
    if (!input) return XML_REFUSED;
    const uint32_t result = XML_Parser_Parse(input, handler);
    XML_IO_DestroyByFile(input);
    return result;
}

uint32_t XML_Parser_ByMem(const char *buffer, uint32_t length, XML_SAX_Handler *handler) noexcept {
    XML_IO_InStream *input = XML_IO_ByMem(buffer, length);
    if (!input) return XML_REFUSED;
    const uint32_t result = XML_Parser_Parse(input, handler);
    XML_IO_DestroyByMem(input);
    return result;
}

uint32_t XML_Parser_ByMemList(const XML_IO_MemList *list, XML_SAX_Handler *handler) noexcept {
    XML_IO_InStream *input = XML_IO_ByMemList(list);
    if (!input) return XML_REFUSED;
    const uint32_t result = XML_Parser_Parse(input, handler);
    XML_IO_DestroyByMemList(input);
    return result;
}
