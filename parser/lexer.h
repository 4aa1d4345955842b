// parser/lexer.h - characters, white space, names and references at the read position.
//
// Functions that can fail return a code of messages.h. On failure the read position, line and
// column stand where the message is to point.
//
// The stream wants a refill after each character that leaves fewer than 64 bytes ahead. While more
// are ahead nothing can happen, so a run is taken in one step up to there, and one character a step
// from there on: the buffer, and what an error report shows of it, come out as if every character
// had been asked for singly.
#pragma once

#include <cstring>

#include "io/byte_scan.h"
#include "io/input_stream.h"
#include "parser/char_class.h"
#include "parser/context.h"
#include "parser/messages.h"

namespace cxml {

// What must stay in the buffer while a run is read.
enum class Keep {
    kMark,     // everything from the mark on: the run is wanted whole
    kSnippet,  // no more than an error report shows
    kNothing,  // white space: the mark follows the read position, after each refill
};

inline constexpr std::ptrdiff_t kSnippetBefore = 32;  // bytes shown before an error

inline bool atEnd(const Parser *parser) {
    return parser->input->cur == parser->input->end;
}

// The byte at the read position, or -1 at the end of the input.
inline int peek(const Parser *parser) {
    return atEnd(parser) ? -1 : *parser->input->cur;
}

inline bool isBlankNext(const Parser *parser) {
    return XML_Parser_IsBlank(peek(parser));
}

// Whether a literal follows.
template <std::size_t kSize>
bool follows(const Parser *parser, const char (&literal)[kSize]) {
    const XML_IO_InStream *input = parser->input;
    return static_cast<std::size_t>(input->end - input->cur) >= kSize - 1 &&
           std::memcmp(input->cur, literal, kSize - 1) == 0;
}

// Brings the context's line and column to the read position, for those who look at them.
inline void settlePosition(Parser *parser) {
    parser->position.settle(parser->input->cur);
    parser->line = shownNumber(parser->position.line);
    parser->column = shownNumber(parser->position.column);
}

// Takes note of a buffer that is new or has moved, with the position settled before: characters
// that begin before runEnd need no refill between them, and before refillFrom the stream has
// nothing to do.
void noteBuffer(Parser *parser) noexcept;

void refillNow(Parser *parser, Keep keep) noexcept;
inline void refill(Parser *parser, Keep keep) {
    if (parser->input->cur >= parser->refillFrom) refillNow(parser, keep);
}

// Up to where a run can be taken in one step: one character at least, unless the input ends.
inline const Byte *runLimit(const Parser *parser) {
    const XML_IO_InStream *input = parser->input;
    if (input->cur < parser->runEnd) return parser->runEnd;
    return input->cur < input->end ? input->cur + 1 : input->end;
}

// Passes over characters of one byte that are no line breaks.
inline void skipAscii(Parser *parser, std::size_t count, Keep keep = Keep::kSnippet) {
    parser->input->cur += count;
    refill(parser, keep);
}

// How many bytes a character takes, by bits 4 and 5 of its first byte. Intended: bytes that begin
// no character have a length too.
inline constexpr std::uint8_t kCharLength[4] = {2, 2, 3, 4};
inline std::size_t multibyteLength(Byte first) {
    return kCharLength[first >> 4 & 3];
}

// The columns that characters take, none of them a line break.
std::size_t countColumns(const Byte *p, const Byte *end) noexcept;

// The character at p, or kNoChar. Intended: C0, C1 and F8 to FF pass as first bytes; the legality
// of the value decides.
CodePoint decodeChar(const Byte *p, const Byte *end) noexcept;

inline CodePoint XML_Parser_CurrentChar(const Parser *parser) {
    return decodeChar(parser->input->cur, parser->input->end);
}

void XML_Parser_NextChar(Parser *parser, Keep keep) noexcept;

// Passes over spaces, tabs, CR and LF.
void skipBlankRun(Parser *parser, Keep keep) noexcept;
inline void XML_Parser_SkipBlanks(Parser *parser, Keep keep) {
    if (isBlankNext(parser)) skipBlankRun(parser, keep);
}

// Reads a name and appends it to a buffer, with a NUL. Moves the mark to its first character.
ErrorCode XML_Parser_ReadName(Parser *parser, ByteBuffer *into) noexcept;

// Reads a name, or two with ":" between them, and appends them to a buffer.
ErrorCode XML_Parser_ReadQName(Parser *parser, ByteBuffer *into, QName *name) noexcept;

// Reads the reference that follows and appends the character it stands for.
ErrorCode readReference(Parser *parser, ByteBuffer *into) noexcept;

// Appends bytes of the input buffer and leaves room for a NUL. Most runs are short: 16 bytes in one
// step cost less than finding out how many there are, as long as they may be read.
inline bool appendRun(ByteBuffer *into, const Byte *from, std::size_t length,
                      const XML_IO_InStream *input) noexcept {
    constexpr std::size_t kStep = 16;
    if (!into->reserve((length > kStep ? length : kStep) + 1)) return false;
    if (length <= kStep && input->end - from >= static_cast<std::ptrdiff_t>(kStep)) [[likely]] {
        std::memcpy(into->tail(), from, kStep);
    } else {
        std::memcpy(into->tail(), from, length);
    }
    into->extend(length);
    return true;
}

// Passes over legal multibyte characters in [p, limit), of which the last may reach up to end; stops
// at an ASCII byte or an illegal one.
const Byte *passMultibyte(Position *position, const Byte *p, const Byte *limit,
                          const Byte *end) noexcept;

// Passes over legal characters in [p, limit) up to one of the stop bytes (all ASCII) or an illegal
// one.
template <Byte... kStops>
const Byte *passRun(Position *position, const Byte *p, const Byte *limit,
                    const Byte *end) noexcept {
    while (p < limit) {
        p = scanFor<NotPlainOr<kStops...>>(p, limit);
        if (p == limit) return p;
        const Byte *next = p;
        if (*p >= 0x80) {
            next = passMultibyte(position, p, limit, end);
        } else if (XML_Parser_IsBlank(*p)) {
            next = passBlankControl(position, p, end);
        }
        if (next == p) return p;
        p = next;
    }
    return p;
}

// Passes over legal characters up to one of the stop bytes (all ASCII) or the end of the input, and
// appends them to a buffer if one is given.
template <Byte... kStops>
ErrorCode takeUntil(Parser *parser, Keep keep, ByteBuffer *into) noexcept {
    XML_IO_InStream *input = parser->input;
    for (;;) {
        const Byte *const start = input->cur;
        const Byte *const limit = runLimit(parser);
        if (start == limit) return kAccepted;
        const Byte *const p = passRun<kStops...>(&parser->position, start, limit, input->end);
        const auto length = static_cast<std::size_t>(p - start);
        const bool ended = p < limit;
        const ErrorCode code = !ended || ((*p == kStops) || ...) ? kAccepted : kInvalidChar;
        input->cur += length;
        if (into && !appendRun(into, start, length, input)) return kNoMemory;
        // Unless a character was passed there is nothing to refill for.
        if (length != 0) refill(parser, keep);
        if (ended) return code;
    }
}

// Takes one ASCII character that is no line break and appends it to a buffer.
inline ErrorCode takeAscii(Parser *parser, Keep keep, ByteBuffer *into) noexcept {
    if (!into->append(static_cast<char>(*parser->input->cur))) return kNoMemory;
    skipAscii(parser, 1, keep);
    return kAccepted;
}

}  // namespace cxml
