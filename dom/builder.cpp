#include "dom/builder.h"

#include <climits>
#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "dom/attribute.h"
#include "dom/encoding.h"
#include "dom/namespace.h"
#include "dom/node.h"
#include "io/byte_scan.h"
#include "io/memory.h"
#include "io/output_stream.h"

namespace cxml {
namespace {

constexpr int kFailed = 1;  // the context's status after a callback that failed

XML_DOM_BuildState *stateOf(const XML_Parser_Ctx *context) {
    if (!context || !context->handler) return nullptr;
    return static_cast<XML_DOM_BuildState *>(context->handler->userData);
}

void XML_DOM_SetErrText(const char *text, uint32_t errorSize, char *errorBuffer) {
    if (errorBuffer) copyBounded(errorBuffer, errorSize, text);
}

// A string in the tree's encoding, with a NUL behind its length bytes.
struct TreeString {
    const char *bytes;  // null if there is none
    std::size_t length;
};

TreeString convertString(XML_IO_OutStream *stream, const char *text) {
    if (!text) return {nullptr, 0};
    const std::size_t size = std::strlen(text) + 1;
    if (size > UINT32_MAX) return {nullptr, 0};
    auto length = static_cast<uint32_t>(size);
    const char *bytes = XML_DOM_BuildConvert(stream, text, &length);
    if (!bytes) return {nullptr, 0};
    return {bytes, length - std::size_t{1}};
}

std::size_t countDeclarations(const XML_DOM_Node *element) {
    std::size_t count = 0;
    for (const XML_DOM_NsDecl *decl = element->firstNsDecl; decl; decl = decl->next) ++count;
    return count;
}

// The declaration that a prefix of the parser's means; null if nobody declares it.
XML_DOM_NsDecl *resolve(XML_DOM_BuildState *state, const char *prefix) {
    const XML_Parser_Ns *binding = state->scope.find(prefix, std::strlen(prefix));
    if (binding) return binding->declaration;
    return std::strcmp(prefix, "xml") == 0 ? builtinXmlDecl() : nullptr;
}

bool addDeclaration(XML_DOM_BuildState *state, std::size_t before, const char *prefix,
                    const char *namespaceName) {
    const XML_Parser_Ns *same = state->scope.find(prefix, prefix ? std::strlen(prefix) : 0);
    if (same && same->ordinal >= before) return false;
    const TreeString treePrefix = convertString(state->nameStream, prefix);
    const TreeString treeName = convertString(state->valueStream, namespaceName);
    if ((prefix && !treePrefix.bytes) || !treeName.bytes) return false;
    XML_DOM_NsDecl *decl = appendNsDecl(state->current, treePrefix.bytes, treeName.bytes);
    if (!decl) return false;
    // The scope finds by prefix alone; the name is the declaration's.
    XML_Parser_Ns *binding = state->scope.push(prefix, "");
    if (!binding) return false;
    binding->declaration = decl;
    return true;
}

// One group of five pointers as the parser hands them over.
bool addAttribute(XML_DOM_BuildState *state, const char *const *group) {
    const TreeString name = convertString(state->nameStream, group[0]);
    const TreeString value = convertString(state->valueStream, group[3]);
    if (!name.bytes || !value.bytes) return false;
    XML_DOM_Attr *attribute =
        appendAttr(state->current, name.bytes, name.length, value.bytes, value.length);
    if (!attribute) return false;
    if (isEmpty(group[1])) return true;
    attribute->ns = resolve(state, group[1]);
    return attribute->ns != nullptr;
}

// Makes the element and links it as the root or as the last child of the current one.
bool addElement(XML_DOM_BuildState *state, const TreeString &name) {
    NodeOwner element{newElement(name.bytes, name.length)};
    if (!element) return false;
    if (!state->root) {
        if (XML_DOM_SetRoot(element.get()) != XML_OK) return false;
        state->root = element.get();
    } else {
        if (!state->current) return false;  // a second root
        linkLastChild(state->current, element.get());
    }
    state->current = element.release();
    return true;
}

bool startElement(XML_DOM_BuildState *state, const char *localName, const char *prefix,
                  int declarationCount, const char **declarations, int attributeCount,
                  const char **attributes) {
    const TreeString name = convertString(state->nameStream, localName);
    if (!name.bytes || !addElement(state, name)) return false;
    const std::size_t before = state->scope.count();
    for (int i = 0; i < declarationCount; ++i) {
        if (!addDeclaration(state, before, declarations[2 * i], declarations[2 * i + 1])) {
            return false;
        }
    }
    if (!isEmpty(prefix)) {
        state->current->ns = resolve(state, prefix);
        if (!state->current->ns) return false;
    }
    for (int i = 0; i < attributeCount; ++i) {
        if (!addAttribute(state, attributes + std::ptrdiff_t{5} * i)) return false;
    }
    return true;
}

// ---- what the library's own parser reads ------------------------------------------------------

// A string of known length, which is UTF-8; the NUL behind it is converted with it.
TreeString convertKnown(XML_IO_OutStream *stream, const char *text, std::size_t length) {
    if (length < UINT32_MAX && stream->pendingCount == 0 && isAscii(text, length)) {
        return {text, length};
    }
    return convertString(stream, text);
}

// The declaration that the parser has bound a prefix to.
XML_DOM_NsDecl *declarationOf(const Parser *parser, const XML_Parser_Ns *binding) {
    return binding == &parser->xmlBinding ? builtinXmlDecl() : binding->declaration;
}

bool addParsedDeclaration(XML_DOM_BuildState *state, Parser *parser, const char *prefix,
                          const char *namespaceName) {
    const TreeString treePrefix = convertString(state->nameStream, prefix);
    const TreeString treeName = convertString(state->valueStream, namespaceName);
    if ((prefix && !treePrefix.bytes) || !treeName.bytes) return false;
    XML_DOM_NsDecl *decl = appendNsDecl(state->current, treePrefix.bytes, treeName.bytes);
    if (!decl) return false;
    parser->scope.findByText(prefix)->declaration = decl;
    return true;
}

bool addParsedAttribute(XML_DOM_BuildState *state, const Parser *parser,
                        const XML_Parser_Attr &attribute, const char *const *group) {
    const TreeString name = convertKnown(state->nameStream, group[0], attribute.name.localLength);
    const TreeString value = convertKnown(state->valueStream, group[3], attribute.valueLength);
    if (!name.bytes || !value.bytes) return false;
    XML_DOM_Attr *added =
        appendAttr(state->current, name.bytes, name.length, value.bytes, value.length);
    if (!added) return false;
    if (attribute.binding) added->ns = declarationOf(parser, attribute.binding);
    return true;
}

bool addParsedElement(XML_DOM_BuildState *state, Parser *parser, const char *localName,
                      int declarationCount, const char **declarations, int attributeCount,
                      const char **attributes) {
    const OpenElement &open = parser->open.back();
    const TreeString name = convertKnown(state->nameStream, localName, open.name.localLength);
    if (!name.bytes || !addElement(state, name)) return false;
    for (int i = 0; i < declarationCount; ++i) {
        if (!addParsedDeclaration(state, parser, declarations[2 * i], declarations[2 * i + 1])) {
            return false;
        }
    }
    if (open.name.localOffset != 0) state->current->ns = declarationOf(parser, open.binding);
    for (int i = 0; i < attributeCount; ++i) {
        if (!addParsedAttribute(state, parser, parser->tagAttributes[static_cast<std::size_t>(i)],
                                attributes + std::ptrdiff_t{5} * i)) {
            return false;
        }
    }
    return true;
}

bool XML_DOM_BuildAddText(XML_DOM_BuildState *state, uint32_t type, const char *text, int length) {
    if (!text || length < 0) return false;
    if (*text == '\0') return true;  // Intended: such a text is dropped, whatever follows
    if (!state->current) return false;
    auto treeLength = static_cast<uint32_t>(length);
    if (length == 0) {
        text = "";
        treeLength = 1;
    }
    const char *treeText = XML_DOM_BuildConvert(state->nameStream, text, &treeLength);
    if (!treeText) return false;
    XML_DOM_Node *node = XML_DOM_CreateTextualNodeInner(type, treeText, treeLength);
    if (!node) return false;
    linkLastChild(state->current, node);
    return true;
}

void addText(XML_Parser_Ctx *context, uint32_t type, const char *text, int length) {
    XML_DOM_BuildState *state = stateOf(context);
    if (state && !XML_DOM_BuildAddText(state, type, text, length)) context->status = kFailed;
}

// The message comes in UTF-8 and leaves, like all text of the tree, in GB18030.
[[gnu::format(printf, 3, 0)]] void formatError(char *buffer, uint32_t size, const char *format,
                                               va_list arguments) {
    // Some C libraries refuse larger sizes.
    const std::size_t most = size < INT_MAX ? size : INT_MAX;
    if (std::vsnprintf(buffer, most, format, arguments) < 0) buffer[0] = '\0';
    const OutStreamOwner stream{XML_IO_MemOutStreamCreate(kParserEncoding, kTreeEncoding)};
    if (!stream) return;
    auto length = static_cast<uint32_t>(std::strlen(buffer) + 1);
    const char *text = XML_DOM_BuildConvert(stream.get(), buffer, &length);
    if (text == buffer) return;
    copyBounded(buffer, size, text ? text : "failed to convert encoding.");
}

// The frame of every build: parse is called with the handler to drive.
template <class Parse>
XML_DOM_Node *build(bool argumentsGood, uint32_t errorSize, char *errorBuffer, const Parse &parse) {
    if (!argumentsGood) {
        XML_DOM_SetErrText("Invalid parameter.", errorSize, errorBuffer);
        return nullptr;
    }
    XML_SAX_Handler handler;
    XML_DOM_BuildState state;
    if (XML_DOM_BuildInit(&handler, &state, errorSize, errorBuffer) != XML_OK) {
        XML_DOM_SetErrText("Failed to initialize DOM SAX.", errorSize, errorBuffer);
        return nullptr;
    }
    state.ownParser = true;
    XML_DOM_Node *root = parse(&handler) == XML_OK ? state.root : nullptr;
    // The converter, opened with the first text that needed it, belongs to the set-up all the same.
    if (!root &&
        (XML_IO_FailedToOpen(state.nameStream) || XML_IO_FailedToOpen(state.valueStream))) {
        XML_DOM_SetErrText("Failed to initialize DOM SAX.", errorSize, errorBuffer);
    }
    XML_DOM_BuildFini(&handler);
    return root;
}

}  // namespace

uint32_t XML_DOM_BuildInit(XML_SAX_Handler *handler, XML_DOM_BuildState *state, uint32_t errorSize,
                           char *errorBuffer) noexcept {
    OutStreamOwner nameStream{XML_IO_MemOutStreamCreateLate(kParserEncoding, kTreeEncoding)};
    if (!nameStream) return XML_REFUSED;
    OutStreamOwner valueStream{XML_IO_MemOutStreamCreateLate(kParserEncoding, kTreeEncoding)};
    if (!valueStream) return XML_REFUSED;
    state->root = nullptr;
    state->current = nullptr;
    state->nameStream = nameStream.release();
    state->valueStream = valueStream.release();
    state->errorBuffer = errorBuffer;
    state->errorSize = errorSize;
    *handler = {};
    handler->userData = state;
    handler->startElementNs = XML_SAX_StartElementNs;
    handler->endElementNs = XML_SAX_EndElementNs;
    handler->characters = XML_SAX_Characters;
    handler->cdataBlock = XML_SAX_CData;
    handler->error = XML_SAX_Error;
    handler->endDocument = XML_SAX_EndDocument;
    return XML_OK;
}

void XML_DOM_BuildFini(XML_SAX_Handler *handler) noexcept {
    auto *state = static_cast<XML_DOM_BuildState *>(handler->userData);
    XML_IO_OutStreamDestroy(state->nameStream);
    XML_IO_OutStreamDestroy(state->valueStream);
    state->nameStream = state->valueStream = nullptr;
}

const char *XML_DOM_BuildConvert(XML_IO_OutStream *stream, const char *bytes,
                                 uint32_t *length) noexcept {
    // ASCII is the same in both encodings, unless it were to complete a character held back.
    if (stream->pendingCount == 0 && isAscii(bytes, *length)) return bytes;
    XML_IO_MemOutStreamCleanBuf(stream);
    if (XML_IO_AppendWhole(stream, bytes, *length) != XML_OK) return nullptr;
    return XML_IO_MemOutStreamGetBuf(stream, length);
}

}  // namespace cxml

using namespace cxml;

XML_DOM_Node *XML_DOM_BuildTreeByFile(const char *path, uint32_t errorSize,
                                      char *errorBuffer) noexcept {
    return build(path != nullptr, errorSize, errorBuffer,
                 [&](XML_SAX_Handler *handler) { return XML_Parser_ByFile(path, handler); });
}

XML_DOM_Node *XML_DOM_BuildTreeByMem(const char *buffer, uint32_t length, uint32_t errorSize,
                                     char *errorBuffer) noexcept {
    return build(buffer && length != 0, errorSize, errorBuffer, [&](XML_SAX_Handler *handler) {
        return XML_Parser_ByMem(buffer, length, handler);
    });
}

XML_DOM_Node *XML_DOM_BuildTreeByMemList(const XML_IO_MemList *list, uint32_t errorSize,
                                         char *errorBuffer) noexcept {
    return build(list != nullptr, errorSize, errorBuffer,
                 [&](XML_SAX_Handler *handler) { return XML_Parser_ByMemList(list, handler); });
}

void XML_SAX_StartElementNs(XML_Parser_Ctx *context, const char *localName, const char *prefix,
                            const char *, int declarationCount, const char **declarations,
                            int attributeCount, int, const char **attributes) noexcept {
    // The tree resolves prefixes itself: namespace names that the parser has found are not used.
    XML_DOM_BuildState *state = stateOf(context);
    if (!state) return;
    if (state->ownParser) {
        if (!addParsedElement(state, static_cast<Parser *>(context), localName, declarationCount,
                              declarations, attributeCount, attributes)) {
            context->status = kFailed;
        }
        return;
    }
    const bool complete =
        localName && (declarations || declarationCount <= 0) && (attributes || attributeCount <= 0);
    if (!complete || !startElement(state, localName, prefix, declarationCount, declarations,
                                   attributeCount, attributes)) {
        context->status = kFailed;
    }
}

void XML_SAX_EndElementNs(XML_Parser_Ctx *context, const char *, const char *,
                          const char *) noexcept {
    XML_DOM_BuildState *state = stateOf(context);
    if (!state || !state->current) return;
    if (!state->ownParser)
        state->scope.pop(state->scope.count() - countDeclarations(state->current));
    state->current = state->current->parent;
}

void XML_SAX_Characters(XML_Parser_Ctx *context, const char *text, int length) noexcept {
    addText(context, XML_DOM_NODE_TEXT, text, length);
}

void XML_SAX_CData(XML_Parser_Ctx *context, const char *text, int length) noexcept {
    addText(context, XML_DOM_NODE_CDATA, text, length);
}

void XML_SAX_EndDocument(XML_Parser_Ctx *context) noexcept {
    const XML_DOM_BuildState *state = stateOf(context);
    if (!state) return;
    const uint32_t encoding = XML_DOM_SetEncoding(state->root, context->encoding);
    const uint32_t version = XML_DOM_SetVersion(state->root, context->version);
    if (encoding != XML_OK || version != XML_OK) context->status = kFailed;
}

void XML_SAX_Error(XML_Parser_Ctx *context, const char *format, ...) noexcept {
    XML_DOM_BuildState *state = stateOf(context);
    if (!state) return;
    if (format && state->errorBuffer && state->errorSize != 0) {
        va_list arguments;
        va_start(arguments, format);
        formatError(state->errorBuffer, state->errorSize, format, arguments);
        va_end(arguments);
    }
    // Intended: the current element, now gone, is not reset; nothing follows an error.
    XML_DOM_DelNode(state->root);
    state->root = nullptr;
}
