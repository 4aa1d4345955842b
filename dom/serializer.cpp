#include <cstring>

#include "dom/encoding.h"
#include "io/byte_scan.h"
#include "io/output_stream.h"
#include "parser/char_class.h"

namespace cxml {
namespace {

// Adds up the results of writes. A sum that wraps to 0 would look like success.
uint32_t plus(uint32_t sum, uint32_t result) {
    const uint32_t total = sum + result;
    return total == 0 ? sum : total;
}

// Where text goes, piece by piece: a function that sees every piece. Nothing is ever written with a
// length of 0.
class FunctionWriter {
  public:
    FunctionWriter(XML_WriteFn write, void *context) : write_(write), context_(context) {}

    uint32_t put(const char *bytes, std::size_t length) const {
        if (length == 0) return XML_OK;
        if (length > UINT32_MAX) return XML_REFUSED;
        return write_(context_, bytes, static_cast<uint32_t>(length));
    }

  private:
    XML_WriteFn write_;
    void *context_;
};

// Where text goes when only the whole of it counts: a stream, which gets the pieces gathered. A
// piece is a few bytes long, and a stream asks more of each append than copying them costs. Only
// ASCII is gathered, which always converts: a piece that may fail answers for itself.
class StreamWriter {
  public:
    explicit StreamWriter(XML_IO_OutStream *stream) : stream_(stream) {}

    uint32_t put(const char *bytes, std::size_t length) {
        if (length > sizeof gathered_ - size_ || !isAscii(bytes, length) ||
            stream_->pendingCount != 0) {
            return putDirectly(bytes, length);
        }
        std::memcpy(gathered_ + size_, bytes, length);
        size_ += length;
        return XML_OK;
    }

    uint32_t flush() {
        const auto size = static_cast<uint32_t>(size_);
        size_ = 0;
        return XML_IO_OutStreamAppend(stream_, gathered_, size);
    }

  private:
    [[gnu::noinline]] uint32_t putDirectly(const char *bytes, std::size_t length) {
        if (length > UINT32_MAX) return XML_REFUSED;
        const uint32_t status = flush();
        if (status != XML_OK) return status;
        return XML_IO_OutStreamAppend(stream_, bytes, static_cast<uint32_t>(length));
    }

    XML_IO_OutStream *stream_;
    std::size_t size_ = 0;
    char gathered_[512];
};

template <class Writer>
uint32_t putString(Writer &writer, const char *text) {
    return text ? writer.put(text, std::strlen(text)) : XML_OK;
}

template <class Writer>
uint32_t writeBlankReference(Writer &writer, char blank) {
    switch (blank) {
        case '\n':
            return writer.put("&#x0a;", 6);
        case '\r':
            return writer.put("&#x0d;", 6);
        case ' ':
            return writer.put("&#x20;", 6);
        default:
            return writer.put("&#x09;", 6);
    }
}

template <class Writer>
uint32_t writeEscaped(Writer &writer, char special) {
    switch (special) {
        case '<':
            return writer.put("&lt;", 4);
        case '>':
            return writer.put("&gt;", 4);
        default:
            return writer.put("&amp;", 5);
    }
}

// Intended: one white-space character at each end is protected and no more, and quotes never are.
template <class Writer>
uint32_t writeText(Writer &writer, const char *text) {
    if (!text) return XML_REFUSED;
    uint32_t sum = XML_OK;
    if (XML_Parser_IsBlank(*text)) sum = writeBlankReference(writer, *text++);
    const auto *p = reinterpret_cast<const Byte *>(text);
    const Byte *const end = p + std::strlen(text);
    for (;;) {
        const Byte *const special = scanFor<AnyOf<'<', '>', '&'>>(p, end);
        const auto *run = reinterpret_cast<const char *>(p);
        auto length = static_cast<std::size_t>(special - p);
        if (special == end) {
            const bool protect = length != 0 && XML_Parser_IsBlank(run[length - 1]);
            if (protect) --length;
            sum = plus(sum, writer.put(run, length));
            if (protect) sum = plus(sum, writeBlankReference(writer, run[length]));
            return sum;
        }
        sum = plus(sum, writer.put(run, length));
        sum = plus(sum, writeEscaped(writer, static_cast<char>(*special)));
        if (sum != XML_OK) return sum;
        p = special + 1;
    }
}

template <class Writer>
uint32_t writePrefix(Writer &writer, const XML_DOM_NsDecl *decl) {
    if (!decl || !decl->prefix) return XML_OK;
    const uint32_t sum = putString(writer, decl->prefix);
    return plus(sum, writer.put(":", 1));
}

// ="value"
template <class Writer>
uint32_t writeQuoted(Writer &writer, const char *value) {
    uint32_t sum = writer.put("=\"", 2);
    sum = plus(sum, writeText(writer, value));
    return plus(sum, writer.put("\"", 1));
}

template <class Writer>
uint32_t writeNsDecl(Writer &writer, const XML_DOM_NsDecl *decl) {
    uint32_t sum = writer.put(" xmlns", 6);
    if (decl->prefix) {
        sum = plus(sum, writer.put(":", 1));
        sum = plus(sum, putString(writer, decl->prefix));
    }
    return plus(sum, writeQuoted(writer, decl->namespaceName));
}

template <class Writer>
uint32_t writeAttr(Writer &writer, const XML_DOM_Attr *attribute) {
    uint32_t sum = writer.put(" ", 1);
    sum = plus(sum, writePrefix(writer, attribute->ns));
    sum = plus(sum, putString(writer, attribute->name));
    return plus(sum, writeQuoted(writer, attribute->value));
}

template <class Writer>
uint32_t writeDeclaration(Writer &writer, const XML_DOM_DocInfo *info) {
    uint32_t sum = writer.put("<?xml version=\"", 15);
    sum = plus(sum, putString(writer, info->version));
    sum = plus(sum, writer.put("\" encoding=\"", 12));
    sum = plus(sum, putString(writer, XML_DOM_EncodingEnumToStr(info->encoding)));
    return plus(sum, writer.put("\"?>", 3));
}

void pushName(XML_DOM_TranslateState *state, const char *name) {
    if (!state) return;
    constexpr uint32_t kNames = sizeof state->names / sizeof state->names[0];
    if (state->depth < kNames) state->names[state->depth] = name;
    ++state->depth;
}

void popName(XML_DOM_TranslateState *state) {
    if (state) --state->depth;
}

// What is written of an element without children.
enum class Tags { kSelfClosing, kPair };

bool isSelfClosed(const XML_DOM_Node *element, Tags tags) {
    return !element->firstChild && tags == Tags::kSelfClosing;
}

template <class Writer>
uint32_t writeStartTag(Writer &writer, const XML_DOM_Node *element, Tags tags,
                       XML_DOM_TranslateState *state) {
    uint32_t sum = writer.put("<", 1);
    sum = plus(sum, writePrefix(writer, element->ns));
    sum = plus(sum, putString(writer, element->name));
    for (const XML_DOM_NsDecl *decl = element->firstNsDecl; decl; decl = decl->next) {
        const uint32_t result = writeNsDecl(writer, decl);
        sum = plus(sum, result);
        if (result != XML_OK) return sum;
    }
    for (const XML_DOM_Attr *attribute = element->firstAttr; attribute;
         attribute = attribute->next) {
        const uint32_t result = writeAttr(writer, attribute);
        sum = plus(sum, result);
        if (result != XML_OK) return sum;
    }
    sum = plus(sum, isSelfClosed(element, tags) ? writer.put("/>", 2) : writer.put(">", 1));
    pushName(state, element->name);
    return sum;
}

const char *textOf(const XML_DOM_Node *node, XML_DOM_TranslateState *state) {
    if (!state || !state->textCallback) return node->value;
    // The callback may keep what it sees but is not to change the tree while it is written.
    return state->textCallback(const_cast<XML_DOM_Node *>(node), state, state->userData);
}

template <class Writer>
uint32_t writeBegin(Writer &writer, const XML_DOM_Node *node, Tags tags,
                    XML_DOM_TranslateState *state) {
    switch (node->type) {
        case XML_DOM_NODE_ELEMENT:
            return writeStartTag(writer, node, tags, state);
        case XML_DOM_NODE_TEXT:
            return writeText(writer, textOf(node, state));
        case XML_DOM_NODE_CDATA: {
            uint32_t sum = writer.put("<![CDATA[", 9);
            sum = plus(sum,
                       putString(writer, node->value));  // Intended: "]]>" in it is not looked for
            return plus(sum, writer.put("]]>", 3));
        }
        default:
            return XML_OK;
    }
}

template <class Writer>
uint32_t writeEnd(Writer &writer, const XML_DOM_Node *node, Tags tags,
                  XML_DOM_TranslateState *state) {
    if (node->type != XML_DOM_NODE_ELEMENT) return XML_OK;
    uint32_t sum = XML_OK;
    if (!isSelfClosed(node, tags)) {
        sum = writer.put("</", 2);
        sum = plus(sum, writePrefix(writer, node->ns));
        sum = plus(sum, putString(writer, node->name));
        sum = plus(sum, writer.put(">", 1));
    }
    popName(state);
    return sum;
}

// Writes a node with everything below it. An element takes no further child once one has failed,
// but is still ended, and so are all above it: a level that ends failed fails the one above.
// Failures of a start tag alone leave its children to be written, so the deepest level that failed
// is kept.
template <class Writer>
uint32_t writeSubtree(Writer &writer, const XML_DOM_Node *top, XML_DOM_TranslateState *state) {
    uint32_t sum = XML_OK;
    uint64_t level = 1;
    uint64_t failedLevel = 0;
    const auto note = [&](uint32_t result) {
        sum = plus(sum, result);
        if (result != XML_OK && failedLevel < level) failedLevel = level;
    };
    const XML_DOM_Node *node = top;
    for (;;) {
        note(writeBegin(writer, node, Tags::kSelfClosing, state));
        if (node->type == XML_DOM_NODE_ELEMENT && node->firstChild) {
            node = node->firstChild;
            ++level;
            continue;
        }
        for (;;) {
            note(writeEnd(writer, node, Tags::kSelfClosing, state));
            if (node == top) return sum;
            const bool failed = failedLevel >= level;
            if (!failed && node->nextSibling) break;
            node = node->parent;
            --level;
        }
        node = node->nextSibling;
    }
}

template <class Writer>
uint32_t writeChildren(Writer &writer, const XML_DOM_Node *node) {
    uint32_t sum = XML_OK;
    for (const XML_DOM_Node *child = node->firstChild; child && sum == XML_OK;
         child = child->nextSibling) {
        sum = writeSubtree(writer, child, nullptr);
    }
    return sum;
}

bool wantsDeclaration(const XML_DOM_Node *node, uint32_t flags) {
    return node->docInfo && !(flags & XML_DOM_NO_DECLARATION);
}

template <class Writer>
uint32_t writeDocument(Writer &writer, const XML_DOM_Node *node, uint32_t flags,
                       XML_DOM_TranslateState *state) {
    uint32_t sum = XML_OK;
    if (wantsDeclaration(node, flags)) sum = writeDeclaration(writer, node->docInfo);
    return plus(sum, writeSubtree(writer, node, state));
}

OutStreamOwner newStreamFor(const XML_DOM_Node *node) {
    const uint32_t encoding = XML_DOM_GetEncoding(node);
    return OutStreamOwner{XML_IO_MemOutStreamCreate(
        kTreeEncoding, encoding == XML_ENCODING_UNKNOWN ? XML_ENCODING_UTF_8 : encoding)};
}

// Hands what body writes over in a buffer of its own, closed by a NUL that does not count.
template <class Body>
uint32_t writeToBuffer(const XML_DOM_Node *node, char **bufferOut, uint32_t *lengthOut,
                       const Body &body) {
    const OutStreamOwner stream = newStreamFor(node);
    if (!stream) return XML_REFUSED;
    StreamWriter writer{stream.get()};
    uint32_t result = body(writer);
    result = plus(result, writer.flush());
    uint32_t length = 0;
    XML_IO_MemOutStreamGetBuf(stream.get(), &length);
    result = plus(result, XML_IO_OutStreamAppend(stream.get(), "", 1));
    if (result != XML_OK) return result;
    // The NUL became part of a character cut off at the end of the text: no buffer goes without it.
    if (stream->pendingCount != 0) return XML_REFUSED;
    *bufferOut = XML_IO_MemOutStreamDetachBuf(stream.get(), nullptr);
    if (lengthOut) *lengthOut = length;
    return XML_OK;
}

// A stream that converts one piece at a time, and the caller who gets it.
struct Sink {
    XML_IO_OutStream *stream;
    XML_WriteFn write;
    void *context;
};

uint32_t XML_DOM_SinkWrite(void *context, const char *bytes, uint32_t length) {
    const Sink &sink = *static_cast<const Sink *>(context);
    const uint32_t status = XML_IO_OutStreamAppend(sink.stream, bytes, length);
    if (status != XML_OK) return status;
    uint32_t pieceLength = 0;
    const char *piece = XML_IO_MemOutStreamGetBuf(sink.stream, &pieceLength);
    if (!piece) return XML_REFUSED;
    const uint32_t result = sink.write(sink.context, piece, pieceLength);
    XML_IO_MemOutStreamCleanBuf(sink.stream);
    return result;
}

}  // namespace
}  // namespace cxml

using namespace cxml;

uint32_t XML_OutTextString(const char *text, XML_WriteFn write, void *context) noexcept {
    if (!text || !write) return XML_REFUSED;
    FunctionWriter writer{write, context};
    return writeText(writer, text);
}

char *XML_DOM_NodeBegin2Str(const XML_DOM_Node *node, uint32_t flags,
                            uint32_t *lengthOut) noexcept {
    if (!node) return nullptr;
    char *buffer = nullptr;
    writeToBuffer(node, &buffer, lengthOut, [&](StreamWriter &writer) {
        uint32_t sum = XML_OK;
        if (wantsDeclaration(node, flags)) sum = writeDeclaration(writer, node->docInfo);
        return plus(sum, writeBegin(writer, node, Tags::kPair, nullptr));
    });
    return buffer;
}

char *XML_DOM_NodeEnd2Str(const XML_DOM_Node *node, uint32_t *lengthOut) noexcept {
    if (!node) return nullptr;
    char *buffer = nullptr;
    writeToBuffer(node, &buffer, lengthOut, [&](StreamWriter &writer) {
        return writeEnd(writer, node, Tags::kPair, nullptr);
    });
    return buffer;
}

uint32_t XML_DOM_TranslateStr(const XML_DOM_Node *node, uint32_t flags, char **bufferOut,
                              uint32_t *lengthOut) noexcept {
    return XML_DOM_TranslateStrEx(node, flags, nullptr, bufferOut, lengthOut);
}

uint32_t XML_DOM_TranslateStrEx(const XML_DOM_Node *node, uint32_t flags,
                                XML_DOM_TranslateState *state, char **bufferOut,
                                uint32_t *lengthOut) noexcept {
    if (!node || !bufferOut) return XML_REFUSED;
    return writeToBuffer(node, bufferOut, lengthOut, [&](StreamWriter &writer) {
        return writeDocument(writer, node, flags, state);
    });
}

uint32_t XML_DOM_TranslateStr4AllChild(const XML_DOM_Node *node, char **bufferOut,
                                       uint32_t *lengthOut) noexcept {
    if (!node || !bufferOut) return XML_REFUSED;
    return writeToBuffer(node, bufferOut, lengthOut,
                         [&](StreamWriter &writer) { return writeChildren(writer, node); });
}

uint32_t XML_DOM_OutPutTranslateStr(const XML_DOM_Node *node, uint32_t flags, XML_WriteFn sink,
                                    void *sinkContext) noexcept {
    if (!node || !sink) return XML_REFUSED;
    const OutStreamOwner stream = newStreamFor(node);
    if (!stream) return XML_REFUSED;
    Sink adapter{stream.get(), sink, sinkContext};
    FunctionWriter writer{XML_DOM_SinkWrite, &adapter};
    return writeDocument(writer, node, flags, nullptr);
}
