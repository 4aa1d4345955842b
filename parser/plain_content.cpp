// Elements and text as most documents are written: names of ASCII, a line break at most and
// then spaces or tabs before an attribute, none at its "=", no references; all of it before the next refill falls due. Such content is read
// with nothing but a pointer, and the parser is told only when a piece is complete. A piece that is
// otherwise is left, from its first byte on, for the functions that know everything.
#include <climits>

#include "parser/grammar.h"
#include "parser/lexer.h"
#include "parser/plain_name.h"

namespace cxml {
namespace {

// Every function here begins at p and returns what is behind the thing that it reads, or null if
// that is not plain. Nothing has changed then that counts. Where a code comes out that ends the
// parse, the parser has been told where.

// Passes over white space if it is a line break at most, then spaces or tabs, and more stands behind
// it.
[[gnu::always_inline]] inline const Byte *skipPlainBlanks(Parser *parser, const Byte *p,
                                                          const Byte *end) {
    if (end - p < 2) return nullptr;
    if (*p > ' ') return p;
    const Byte *const spaces = p + (*p == '\n');
    const Byte *after = scanForNear<AnythingBut<' '>>(spaces, end);
    while (after != end && *after == '\t') ++after;
    if (end - after < 2 || *after <= ' ') return nullptr;
    if (spaces != p) parser->position.beginLine(spaces);
    return after;
}

// Passes over legal characters up to one of the stop bytes, which must be the first of them.
template <Byte kWanted, Byte... kOthers>
[[gnu::noinline]] const Byte *passMixedRun(Parser *parser, const Byte *p, const Byte *end) {
    const Position before = parser->position;
    p = passRun<kWanted, kOthers...>(&parser->position, p, end, parser->input->end);
    if (p < end && *p == kWanted) return p;
    parser->position = before;
    return nullptr;
}

template <Byte kWanted, Byte... kOthers>
[[gnu::always_inline]] inline const Byte *passPlainRun(Parser *parser, const Byte *p,
                                                       const Byte *end) {
    p = scanForNear<NotPlainOr<kWanted, kOthers...>>(p, end);
    if (p == end) return nullptr;
    if (*p == kWanted) [[likely]]
        return p;
    return passMixedRun<kWanted, kOthers...>(parser, p, end);
}

// Tells the parser how far things have been read, before a callback.
[[gnu::always_inline]] inline void commit(Parser *parser, const Byte *p) {
    parser->input->cur += p - parser->input->cur;
    settlePosition(parser);
}

[[gnu::noinline]] const Byte *noMemory(Parser *parser, const Byte *p, Code *code) {
    commit(parser, p);
    *code = kNoMemory;
    return p;
}

[[gnu::always_inline]] inline const Byte *readPlainText(Parser *parser, const Byte *p,
                                                        const Byte *end, Code *code) {
    // No longer than a callback can be told of.
    const Byte *const limit = end - p > INT_MAX ? p + INT_MAX : end;
    const Byte *const textEnd = passPlainRun<'<', '&', ']'>(parser, p, limit);
    if (!textEnd) return nullptr;
    const Byte *last = textEnd;
    while (XML_Parser_IsBlank(last[-1])) --last;  // there is a character that is none
    ByteBuffer &text = parser->scratch;
    text.truncate(0);
    const auto length = static_cast<std::size_t>(last - p);
    if (!appendRun(&text, p, length, parser->input)) return noMemory(parser, textEnd, code);
    const XML_SAX_Handler *handler = parser->handler;
    if (!handler || !handler->characters) return textEnd;
    *text.tail() = '\0';
    commit(parser, textEnd);
    handler->characters(parser, text.data(), static_cast<int>(length));
    *code = parser->status;
    return textEnd;
}

[[gnu::always_inline]] inline const Byte *readPlainEndTag(Parser *parser, const Byte *p,
                                                          const Byte *end, Code *code) {
    const OpenElement &element = parser->open.back();
    if (!element.isPlain) return nullptr;
    p = passPlainName(p + 2, end, parser->openNames.data() + element.name.at, element.name);
    if (!p || *p != '>') return nullptr;
    ++p;
    commit(parser, p);
    *code = endElement(parser);
    return p;
}

// Appends a name to a buffer.
[[gnu::always_inline]] inline bool keepName(Parser *parser, const PlainName &found,
                                            const Byte *start, ByteBuffer *into, QName *name) {
    const std::size_t at = into->size();
    const auto offset = static_cast<std::size_t>(found.local - start);
    if (!appendRun(into, start, static_cast<std::size_t>(found.end - start), parser->input)) {
        return false;
    }
    *into->tail() = '\0';
    into->extend(1);
    if (offset != 0) into->data()[at + offset - 1] = '\0';
    *name = {at, static_cast<std::uint32_t>(offset),
             static_cast<std::uint32_t>(found.end - found.local)};
    return true;
}

// Reads an attribute and keeps it. Sets mark to the local part of its name.
[[gnu::always_inline]] inline const Byte *readPlainAttribute(Parser *parser, const Byte *p,
                                                             const Byte *end, const Byte **mark,
                                                             Code *code) {
    const PlainName found = findPlainName(p, end);
    if (!found.end || end - found.end < 2 || found.end[0] != '=' || found.end[1] != '"') {
        return nullptr;
    }
    // The values' first block is made where its failure has a message of its own.
    if (!parser->scratch.allocated()) return nullptr;
    if (*p == 'x' && end - p > 5 && std::memcmp(p, "xmlns", 5) == 0) return nullptr;
    const Byte *const value = found.end + 2;
    const Byte *const valueEnd = passPlainRun<'"', '<', '&'>(parser, value, end);
    if (!valueEnd) return nullptr;
    *mark = found.local;
    QName name;
    if (!keepName(parser, found, p, &parser->tagNames, &name)) {
        return noMemory(parser, found.end, code);
    }
    ByteBuffer &values = parser->scratch;
    const auto length = static_cast<std::size_t>(valueEnd - value);
    const std::size_t valueAt = values.size();
    if (!appendRun(&values, value, length, parser->input)) return noMemory(parser, valueEnd, code);
    *values.tail() = '\0';
    values.extend(1);
    XML_Parser_Attr *attribute = parser->tagAttributes.add();
    if (!attribute) return noMemory(parser, valueEnd + 1, code);
    *attribute = {nullptr, nullptr, name, valueAt, length};
    return valueEnd + 1;
}

// Reads attributes up to ">" or "/>".
[[gnu::noinline]] const Byte *readPlainAttributes(Parser *parser, const Byte *p, const Byte *end,
                                                  const Byte **mark, Code *code) {
    const Position before = parser->position;
    while (p && end - p > 1) {
        if (*p == '>' || (*p == '/' && p[1] == '>')) return p;
        if (*p > ' ') break;
        p = skipPlainBlanks(parser, p, end);
        if (p && *p != '>' && *p != '/') p = readPlainAttribute(parser, p, end, mark, code);
        if (*code != kAccepted) return p;
    }
    parser->position = before;
    return nullptr;
}

[[gnu::always_inline]] inline const Byte *readPlainStartTag(Parser *parser, const Byte *p,
                                                            const Byte *end, Code *code) {
    const PlainName found = findPlainName(p + 1, end);
    if (!found.end) return nullptr;
    const std::size_t namesBefore = parser->openNames.size();
    QName name;
    const Byte *mark = found.local;
    if (!keepName(parser, found, p + 1, &parser->openNames, &name) ||
        !beginTag(parser, name, true)) {
        return noMemory(parser, found.end, code);
    }
    p = found.end;
    if (*p != '>') {
        p = readPlainAttributes(parser, p, end, &mark, code);
        if (!p) {
            parser->open.truncate(parser->open.size() - 1);
            parser->openNames.truncate(namesBefore);
            return nullptr;
        }
        if (*code != kAccepted) return p;
    }
    parser->input->mark += mark - parser->input->mark;
    commit(parser, p);
    *code = finishTag(parser);
    if (*p == '>') return p + 1;
    p += 2;
    if (*code == kAccepted) {
        commit(parser, p);
        *code = endElement(parser);
    }
    return p;
}

}  // namespace

Code parsePlainContent(Parser *parser) noexcept {
    const Byte *p = parser->input->cur;
    const Byte *const end = parser->runEnd;
    Code code = kAccepted;
    while (!parser->open.empty()) {
        const Byte *next = skipPlainBlanks(parser, p, end);
        if (!next) break;
        p = next;
        if (*p != '<') {
            next = readPlainText(parser, p, end, &code);
        } else if (p[1] == '/') {
            next = readPlainEndTag(parser, p, end, &code);
        } else {
            next = readPlainStartTag(parser, p, end, &code);
        }
        if (!next) break;
        // Where an error is met the parser has been told to stand.
        if (code != kAccepted) return code;
        p = next;
    }
    parser->input->cur += p - parser->input->cur;
    return kAccepted;
}

}  // namespace cxml
