#include "dom/encoding.h"
#include "dom/text_writer.h"
#include "io/output_stream.h"

namespace cxml {
namespace {

const char *prefixOf(const XML_DOM_NsDecl *decl) {
    return decl ? decl->prefix : nullptr;
}

constexpr Mark kNothing{{}, 0};
constexpr Mark kTagOpens{{'<'}, 1};
constexpr Mark kEndTagOpens{{'<', '/'}, 2};
constexpr Mark kTagCloses{{'>'}, 1};
constexpr Mark kBlank{{' '}, 1};
constexpr Mark kValueOpens{{'=', '"'}, 2};

uint32_t writeNsDecl(TextWriter &writer, const XML_DOM_NsDecl *decl) {
    uint32_t sum = writer.put(" xmlns", 6);
    if (decl->prefix) {
        sum = plus(sum, writer.put(":", 1));
        sum = plus(sum, writer.putString(decl->prefix));
    }
    sum = plus(sum, writer.put("=\"", 2));
    sum = plus(sum, writer.putText(decl->namespaceName));
    return plus(sum, writer.put("\"", 1));
}

uint32_t writeAttr(TextWriter &writer, const XML_DOM_Attr *attribute) {
    uint32_t sum = writer.putName(kBlank, prefixOf(attribute->ns), attribute->name, kValueOpens);
    sum = plus(sum, writer.putText(attribute->value));
    return plus(sum, writer.put("\"", 1));
}

uint32_t writeDeclaration(TextWriter &writer, const XML_DOM_DocInfo *info) {
    uint32_t sum = writer.put("<?xml version=\"", 15);
    sum = plus(sum, writer.putString(info->version));
    sum = plus(sum, writer.put("\" encoding=\"", 12));
    sum = plus(sum, writer.putString(XML_DOM_EncodingEnumToStr(info->encoding)));
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

uint32_t writeStartTag(TextWriter &writer, const XML_DOM_Node *element, Tags tags) {
    uint32_t sum = writer.putName(kTagOpens, prefixOf(element->ns), element->name, kNothing);
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
    return plus(sum, isSelfClosed(element, tags) ? writer.put("/>", 2) : writer.put(">", 1));
}

const char *textOf(const XML_DOM_Node *node, XML_DOM_TranslateState *state) {
    if (!state || !state->textCallback) return node->value;
    // The callback may keep what it sees but is not to change the tree while it is written.
    return state->textCallback(const_cast<XML_DOM_Node *>(node), state, state->userData);
}

uint32_t writeBegin(TextWriter &writer, const XML_DOM_Node *node, Tags tags,
                    XML_DOM_TranslateState *state) {
    switch (node->type) {
        case XML_DOM_NODE_ELEMENT:
            pushName(state, node->name);  // also of a tag that fails: its end takes it away
            return writeStartTag(writer, node, tags);
        case XML_DOM_NODE_TEXT:
            return writer.putText(textOf(node, state));
        case XML_DOM_NODE_CDATA: {
            uint32_t sum = writer.put("<![CDATA[", 9);
            sum = plus(sum,
                       writer.putString(node->value));  // Intended: "]]>" in it is not looked for
            return plus(sum, writer.put("]]>", 3));
        }
        default:
            return XML_OK;
    }
}

uint32_t writeEnd(TextWriter &writer, const XML_DOM_Node *node, Tags tags,
                  XML_DOM_TranslateState *state) {
    if (node->type != XML_DOM_NODE_ELEMENT) return XML_OK;
    uint32_t sum = XML_OK;
    if (!isSelfClosed(node, tags)) {
        sum = writer.putName(kEndTagOpens, prefixOf(node->ns), node->name, kTagCloses);
    }
    popName(state);
    return sum;
}

// Writes a node with everything below it. An element takes no further child once one has failed,
// but is still ended, and so are all above it: a level that ends failed fails the one above.
// Failures of a start tag alone leave its children to be written, so the deepest level that failed
// is kept.
uint32_t writeSubtree(TextWriter &writer, const XML_DOM_Node *top, XML_DOM_TranslateState *state) {
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

uint32_t writeChildren(TextWriter &writer, const XML_DOM_Node *node) {
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

uint32_t writeDocument(TextWriter &writer, const XML_DOM_Node *node, uint32_t flags,
                       XML_DOM_TranslateState *state) {
    uint32_t sum = XML_OK;
    if (wantsDeclaration(node, flags)) sum = writeDeclaration(writer, node->docInfo);
    return plus(sum, writeSubtree(writer, node, state));
}

OutStreamOwner newStreamFor(const XML_DOM_Node *node) {
    const uint32_t encoding = XML_DOM_GetEncoding(node);
    return OutStreamOwner{XML_IO_MemOutStreamCreateLate(
        kTreeEncoding, encoding == XML_ENCODING_UNKNOWN ? XML_ENCODING_UTF_8 : encoding)};
}

// Hands what body writes over in a buffer of its own, closed by a NUL that does not count.
template <class Body>
uint32_t writeToBuffer(const XML_DOM_Node *node, char **bufferOut, uint32_t *lengthOut,
                       const Body &body) {
    const OutStreamOwner stream = newStreamFor(node);
    if (!stream) return XML_REFUSED;
    TextWriter writer{stream.get()};
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
    TextWriter writer{write, context};
    return writer.putText(text);
}

char *XML_DOM_NodeBegin2Str(const XML_DOM_Node *node, uint32_t flags,
                            uint32_t *lengthOut) noexcept {
    if (!node) return nullptr;
    char *buffer = nullptr;
    writeToBuffer(node, &buffer, lengthOut, [&](TextWriter &writer) {
        uint32_t sum = XML_OK;
        if (wantsDeclaration(node, flags)) sum = writeDeclaration(writer, node->docInfo);
        return plus(sum, writeBegin(writer, node, Tags::kPair, nullptr));
    });
    return buffer;
}

char *XML_DOM_NodeEnd2Str(const XML_DOM_Node *node, uint32_t *lengthOut) noexcept {
    if (!node) return nullptr;
    char *buffer = nullptr;
    writeToBuffer(node, &buffer, lengthOut,
                  [&](TextWriter &writer) { return writeEnd(writer, node, Tags::kPair, nullptr); });
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
    return writeToBuffer(node, bufferOut, lengthOut, [&](TextWriter &writer) {
        return writeDocument(writer, node, flags, state);
    });
}

uint32_t XML_DOM_TranslateStr4AllChild(const XML_DOM_Node *node, char **bufferOut,
                                       uint32_t *lengthOut) noexcept {
    if (!node || !bufferOut) return XML_REFUSED;
    return writeToBuffer(node, bufferOut, lengthOut,
                         [&](TextWriter &writer) { return writeChildren(writer, node); });
}

uint32_t XML_DOM_OutPutTranslateStr(const XML_DOM_Node *node, uint32_t flags, XML_WriteFn sink,
                                    void *sinkContext) noexcept {
    if (!node || !sink) return XML_REFUSED;
    const OutStreamOwner stream = newStreamFor(node);
    if (!stream) return XML_REFUSED;
    Sink adapter{stream.get(), sink, sinkContext};
    TextWriter writer{XML_DOM_SinkWrite, &adapter};
    return writeDocument(writer, node, flags, nullptr);
}
