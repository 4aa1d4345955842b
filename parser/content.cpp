#include <algorithm>
#include <climits>

#include "parser/grammar.h"
#include "parser/lexer.h"

namespace cxml {

Code endElement(Parser *parser) noexcept {
    const OpenElement &element = parser->open.back();
    if (const XML_SAX_Handler *handler = parser->handler; handler && handler->endElementNs) {
        settlePosition(parser);
        const char *names = parser->openNames.data();
        handler->endElementNs(parser, element.name.local(names), element.name.prefix(names),
                              element.binding ? element.binding->namespaceName : nullptr);
    }
    parser->scope.pop(element.bindings);
    parser->namespaces = parser->scope.newest();
    parser->openNames.truncate(element.name.at);
    parser->open.truncate(parser->open.size() - 1);
    return parser->status;
}

namespace {

// Passes over exactly these bytes, or over nothing if something else follows. The bytes are name
// characters, of which more may come than the stream keeps ahead: then they are compared one by
// one, with refilling, and the position is put back on a difference.
bool passName(Parser *parser, const char *bytes, std::size_t length) {
    XML_IO_InStream *input = parser->input;
    const auto buffered = static_cast<std::size_t>(input->end - input->cur);
    if (length <= buffered || input->state != kMoreMayCome) {
        if (length > buffered || std::memcmp(input->cur, bytes, length) != 0) return false;
        parser->position.discount(length, countColumns(input->cur, input->cur + length));
        input->cur += length;
        refill(parser, Keep::kSnippet);
        return true;
    }
    parser->position.settle(input->cur);
    const std::int64_t column = parser->position.column;
    // What the message of an error shows of the bytes before the name stays in the buffer.
    const auto before = std::min(input->cur - input->mark, kSnippetBefore);
    input->mark = input->cur - before;
    for (std::size_t at = 0; at < length;) {
        const std::size_t left = length - at;
        const std::size_t size =
            atEnd(parser) || *input->cur < 0x80 ? 1 : multibyteLength(*input->cur);
        if (static_cast<std::size_t>(input->end - input->cur) < size || left < size ||
            std::memcmp(input->cur, bytes + at, size) != 0) {
            input->cur = input->mark + before;
            parser->position.counted = input->cur;
            parser->position.column = column;
            return false;
        }
        XML_Parser_NextChar(parser, Keep::kMark);
        at += size;
    }
    return true;
}

// A prefix and the colon behind it, which are one thing: neither is passed without the other.
bool passPrefix(Parser *parser, const char *prefix, std::size_t length) {
    // In the buffer of open names the colon's place is taken by a NUL; it comes back for a moment.
    char *colon = parser->openNames.data() + (prefix - parser->openNames.data()) + length;
    *colon = ':';
    const bool passed = passName(parser, prefix, length + 1);
    *colon = '\0';
    return passed;
}

Code XML_Parser_ParseEndTag(Parser *parser, bool empty) {
    skipAscii(parser, 2);  // "/>" or "</"
    if (!empty) {
        const QName &name = parser->open.back().name;
        const char *names = parser->openNames.data();
        if (name.localOffset != 0 && !passPrefix(parser, name.prefix(names), name.prefixLength())) {
            return kTagMismatch;
        }
        // Intended: only as many characters are compared as the name has; more of them are no ">".
        if (!passName(parser, name.local(names), name.localLength)) return kTagMismatch;
        XML_Parser_SkipBlanks(parser, Keep::kSnippet);
        if (peek(parser) != '>') return kTagNotFinished;
        skipAscii(parser, 1);
    }
    return endElement(parser);
}

Code parseChild(Parser *parser) {
    const Code code = parseStartTag(parser);
    if (code != kAccepted) return code;
    if (peek(parser) == '/') return XML_Parser_ParseEndTag(parser, true);
    skipAscii(parser, 1);  // ">"
    return kAccepted;
}

Code parseCData(Parser *parser) {
    skipAscii(parser, 9);
    parser->input->mark = parser->input->cur;
    for (;;) {
        const Code code = takeUntil<']'>(parser, Keep::kMark, nullptr);
        if (code != kAccepted) return code;
        if (follows(parser, "]]>")) break;
        if (atEnd(parser)) return kCDataNotClosed;
        skipAscii(parser, 1, Keep::kMark);
    }
    const auto length = parser->input->cur - parser->input->mark;
    if (length > INT_MAX) return kNoMemory;
    skipAscii(parser, 3, Keep::kMark);
    if (parser->handler && parser->handler->cdataBlock) {
        settlePosition(parser);
        parser->handler->cdataBlock(parser, reinterpret_cast<const char *>(parser->input->mark),
                                    static_cast<int>(length));
    }
    return parser->status;
}

Code reportText(Parser *parser, std::size_t trimFrom) {
    ByteBuffer &text = parser->scratch;
    std::size_t length = text.size();
    while (length > trimFrom && XML_Parser_IsBlank(text[length - 1])) --length;
    text.truncate(length);
    if (length == 0 || !parser->handler || !parser->handler->characters) return kAccepted;
    if (length > INT_MAX) return kNoMemory;  // more than a callback can be told of
    if (!text.append('\0')) return kNoMemory;
    settlePosition(parser);
    parser->handler->characters(parser, text.data(), static_cast<int>(length));
    return parser->status;
}

// Text up to the next "<". Literal white space is cut off at both ends; what a reference stands for
// never is.
Code parseText(Parser *parser) {
    XML_Parser_SkipBlanks(parser, Keep::kSnippet);
    if (atEnd(parser) || peek(parser) == '<') return kAccepted;
    ByteBuffer &text = parser->scratch;
    text.truncate(0);
    std::size_t trimFrom = 0;
    for (;;) {
        Code code = takeUntil<'<', '&', ']'>(parser, Keep::kSnippet, &text);
        if (code != kAccepted) return code;
        const int next = peek(parser);
        if (next == '<' || next < 0) return reportText(parser, trimFrom);
        if (next == '&') {
            code = readReference(parser, &text);
            trimFrom = text.size();
        } else if (follows(parser, "]]>")) {
            return kCDataEndInText;
        } else {
            code = takeAscii(parser, Keep::kSnippet, &text);
        }
        if (code != kAccepted) return code;
        if (text.size() > INT_MAX) return kNoMemory;  // more than a callback can be told of
    }
}

Code parseContent(Parser *parser) {
    const int first = peek(parser);
    if (first < 0) return kTagNotFinished;
    if (first != '<') return parseText(parser);
    if (follows(parser, "</")) return XML_Parser_ParseEndTag(parser, false);
    if (follows(parser, "<!")) {
        if (follows(parser, "<![CDATA[")) return parseCData(parser);
        if (follows(parser, "<!--")) return XML_Parser_ParseComment(parser);
    } else if (follows(parser, "<?")) {
        return XML_Parser_ParsePI(parser);
    }
    return parseChild(parser);
}

}  // namespace

// The nesting of elements is the height of the stack of open ones: no depth costs native stack.
Code XML_Parser_ParseElement(Parser *parser) noexcept {
    Code code = parseChild(parser);
    while (code == kAccepted && !parser->open.empty()) {
        code = parsePlainContent(parser);
        if (code == kAccepted && !parser->open.empty()) code = parseContent(parser);
    }
    return code;
}

}  // namespace cxml
