#include "parser/lexer.h"

#include <algorithm>

namespace cxml {
namespace {

constexpr std::uint8_t kLeadMask[4] = {0x1F, 0x1F, 0x0F, 0x07};

constexpr bool isContinuation(Byte b) {
    return (b & 0xC0) == 0x80;
}

// Some first bytes leave only part of the second byte's range: what lies outside is overlong, a
// surrogate or above 10FFFF.
constexpr bool isSecondByte(Byte first, Byte second) {
    switch (first) {
        case 0xE0:
            return second >= 0xA0 && second <= 0xBF;
        case 0xED:
            return second >= 0x80 && second <= 0x9F;
        case 0xF0:
            return second >= 0x90 && second <= 0xBF;
        case 0xF4:
            return second >= 0x80 && second <= 0x8F;
        default:
            return isContinuation(second);
    }
}

// Three bytes whose value is legal whatever the last two are: E1 to EC, and EE.
constexpr bool isPlainThreeByteLead(Byte b) {
    return (b >= 0xE1 && b <= 0xEC) || b == 0xEE;
}

std::size_t encodeUtf8(CodePoint c, char *bytes) {
    const auto tail = [c](int shift) { return static_cast<char>(0x80 | (c >> shift & 0x3F)); };
    if (c < 0x80) {
        bytes[0] = static_cast<char>(c);
        return 1;
    }
    if (c < 0x800) {
        bytes[0] = static_cast<char>(0xC0 | c >> 6);
        bytes[1] = tail(0);
        return 2;
    }
    if (c < 0x10000) {
        bytes[0] = static_cast<char>(0xE0 | c >> 12);
        bytes[1] = tail(6);
        bytes[2] = tail(0);
        return 3;
    }
    bytes[0] = static_cast<char>(0xF0 | c >> 18);
    bytes[1] = tail(12);
    bytes[2] = tail(6);
    bytes[3] = tail(0);
    return 4;
}

// Reads digits of a base as long as there are any. Numbers above every code point all count as one.
CodePoint readNumber(Parser *parser, unsigned base) {
    constexpr CodePoint kTooLarge = 0x110000;
    CodePoint value = 0;
    for (;;) {
        const unsigned digit = XML_Parser_HexValue(peek(parser));
        if (digit >= base) return value;
        value = value * static_cast<CodePoint>(base) + static_cast<CodePoint>(digit);
        if (value > kTooLarge) value = kTooLarge;
        skipAscii(parser, 1);
    }
}

ErrorCode readCharReference(Parser *parser, ByteBuffer *into) {
    unsigned base = 10;
    if (follows(parser, "#x")) {  // Intended: no capital X
        base = 16;
        skipAscii(parser, 1);
    }
    skipAscii(parser, 1);
    const CodePoint value = readNumber(parser, base);
    if (peek(parser) != ';') return kReferenceNotClosed;
    skipAscii(parser, 1);
    if (!XML_Parser_IsLegalChar(value)) return kInvalidChar;
    char bytes[4];
    return into->append(bytes, encodeUtf8(value, bytes)) ? kAccepted : kNoMemory;
}

}  // namespace

void noteBuffer(Parser *parser) noexcept {
    const XML_IO_InStream *input = parser->input;
    parser->position.counted = input->cur;
    if (input->state != kMoreMayCome) {
        parser->runEnd = parser->refillFrom = input->end;
    } else if (input->end - input->base > kReadAhead) {
        parser->runEnd = input->end - kReadAhead;
        parser->refillFrom = parser->runEnd + 1;
    } else {
        parser->runEnd = parser->refillFrom = input->base;
    }
}

void refillNow(Parser *parser, Keep keep) noexcept {
    XML_IO_InStream *input = parser->input;
    if (input->state != kMoreMayCome || input->end - input->cur >= kReadAhead) return;
    if (keep == Keep::kSnippet && input->cur - input->mark > kSnippetBefore) {
        input->mark = input->cur - kSnippetBefore;
    }
    parser->position.settle(input->cur);
    XML_IO_Grow(input);
    noteBuffer(parser);
}

std::size_t countColumns(const Byte *p, const Byte *end) noexcept {
    std::size_t columns = 0;
    while (p < end) {
        const Byte *const asciiEnd = scanFor<NotAscii>(p, end);
        columns += static_cast<std::size_t>(asciiEnd - p);
        p = asciiEnd;
        if (p == end) break;
        p += multibyteLength(*p);
        ++columns;
    }
    return columns;
}

CodePoint decodeChar(const Byte *p, const Byte *end) noexcept {
    if (p == end) return kNoChar;
    const Byte first = *p;
    if (first < 0x80) return first;
    if (isContinuation(first) || end - p < 2 || !isSecondByte(first, p[1])) return kNoChar;
    const std::size_t length = multibyteLength(first);
    if (static_cast<std::size_t>(end - p) < length) return kNoChar;
    CodePoint value = (first & kLeadMask[first >> 4 & 3]) << 6 | (p[1] & 0x3F);
    for (std::size_t i = 2; i < length; ++i) {
        if (!isContinuation(p[i])) return kNoChar;
        value = value << 6 | (p[i] & 0x3F);
    }
    return value;
}

const Byte *passMultibyte(Position *position, const Byte *p, const Byte *limit,
                          const Byte *end) noexcept {
    const Byte *const start = p;
    std::size_t characters = 0;
    for (; p < limit && *p >= 0x80; ++characters) {
        if (isPlainThreeByteLead(*p) && end - p >= 3 && isContinuation(p[1]) &&
            isContinuation(p[2])) {
            p += 3;
        } else if (*p >= 0xC2 && *p < 0xE0 && end - p >= 2 && isContinuation(p[1])) {
            p += 2;  // 80 to 7FF
        } else if (XML_Parser_IsLegalChar(decodeChar(p, end))) {
            p += multibyteLength(*p);
        } else {
            break;
        }
    }
    position->discount(static_cast<std::size_t>(p - start), characters);
    return p;
}

void XML_Parser_NextChar(Parser *parser, Keep keep) noexcept {
    XML_IO_InStream *input = parser->input;
    if (atEnd(parser)) return;
    const Byte b = *input->cur;
    if (b >= 0x80) {
        const auto left = static_cast<std::size_t>(input->end - input->cur);
        const std::size_t length = std::min(multibyteLength(b), left);
        input->cur += length;
        parser->position.discount(length, 1);
    } else {
        input->cur += passBlankControl(&parser->position, input->cur, input->end) - input->cur;
    }
    refill(parser, keep);
}

void skipBlankRun(Parser *parser, Keep keep) noexcept {
    XML_IO_InStream *input = parser->input;
    for (;;) {
        const Byte *const start = input->cur;
        const Byte *const limit = runLimit(parser);
        const Byte *p = start;
        while (p < limit) {
            if (*p == ' ') {
                p = scanFor<AnythingBut<' '>>(p, limit);
            } else if (XML_Parser_IsBlank(*p)) {
                p = passBlankControl(&parser->position, p, input->end);
            } else {
                break;
            }
        }
        if (p == start) return;
        input->cur += p - start;
        const bool ended = p < limit;
        if (keep == Keep::kNothing) {
            // As if character by character: a refill comes before the mark moves behind its
            // character.
            if (p - start > 1) input->mark = input->cur - 1;
            refill(parser, keep);
            input->mark = input->cur;
        } else {
            refill(parser, keep);
        }
        if (ended) return;
    }
}

ErrorCode XML_Parser_ReadName(Parser *parser, ByteBuffer *into) noexcept {
    XML_IO_InStream *input = parser->input;
    const int first = peek(parser);
    const bool starts = first >= 0 && first < 0x80
                            ? (kNameClass[static_cast<std::size_t>(first)] & kNameStart) != 0
                            : XML_Parser_IsNameStartChar(XML_Parser_CurrentChar(parser));
    if (!starts) return kInvalidChar;
    input->mark = input->cur;
    bool goesOn = true;
    while (goesOn) {
        const Byte *const start = input->cur;
        const Byte *const limit = runLimit(parser);
        const Byte *p = skipAsciiNameChars(start, limit);
        while (p < limit && *p >= 0x80 && XML_Parser_IsNameChar(decodeChar(p, input->end))) {
            const std::size_t size = multibyteLength(*p);
            parser->position.discount(size, 1);
            p += size;
            if (p < limit) p = skipAsciiNameChars(p, limit);
        }
        goesOn = p >= limit && p != start;  // perhaps behind the refill
        input->cur += p - start;
        refill(parser, Keep::kMark);
    }
    const auto length = static_cast<std::size_t>(input->cur - input->mark);
    const bool appended = appendRun(into, input->mark, length, input) && into->append('\0');
    return appended ? kAccepted : kNoMemory;
}

ErrorCode XML_Parser_ReadQName(Parser *parser, ByteBuffer *into, QName *name) noexcept {
    *name = {into->size(), 0, 0};
    ErrorCode code = XML_Parser_ReadName(parser, into);
    if (code != kAccepted) return code;
    name->localLength = static_cast<std::uint32_t>(into->size() - name->at - 1);
    if (peek(parser) != ':') return kAccepted;
    skipAscii(parser, 1);
    if (atEnd(parser)) return kNameRequired;
    const std::size_t localAt = into->size();
    code = XML_Parser_ReadName(parser, into);
    if (code != kAccepted) return code;
    name->localOffset = name->localLength + 1;
    name->localLength = static_cast<std::uint32_t>(into->size() - localAt - 1);
    return kAccepted;
}

ErrorCode readReference(Parser *parser, ByteBuffer *into) noexcept {
    skipAscii(parser, 1);
    if (peek(parser) == '#') return readCharReference(parser, into);
    char c = '\0';
    std::size_t length = 0;
    const auto is = [&](const auto &name, char meaning) {
        if (!follows(parser, name)) return false;
        c = meaning;
        length = sizeof name - 1;
        return true;
    };
    if (!is("lt;", '<') && !is("gt;", '>') && !is("amp;", '&') && !is("apos;", '\'') &&
        !is("quot;", '"')) {
        return kUndeclaredEntity;
    }
    skipAscii(parser, length);
    return into->append(c) ? kAccepted : kNoMemory;
}

}  // namespace cxml
