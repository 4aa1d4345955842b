#include "document.h"

#include <cstring>
#include <new>

#include "conversion.h"
#include "diagnostic.h"
#include "failure.h"

namespace tool {
namespace {

// A second parse, which only looks for what the first one found.
struct Search {
    ParseError error;
    Conversion toTree{XML_ENCODING_UTF_8, kTreeEncoding};
    bool missing = false;  // text that the tree's encoding lacks

    void tryText(XML_Parser_Ctx *context, std::string_view text) {
        if (missing || (toTree.append(text, nullptr) && toTree.complete())) return;
        missing = true;
        context->status = 1;
    }
};

Search &searchOf(const XML_Parser_Ctx *context) {
    return *static_cast<Search *>(context->handler->userData);
}

void tryString(XML_Parser_Ctx *context, const char *text) {
    if (text) searchOf(context).tryText(context, text);
}

void tryLength(XML_Parser_Ctx *context, const char *text, int length) {
    searchOf(context).tryText(context, {text, static_cast<std::size_t>(length)});
}

void tryElement(XML_Parser_Ctx *context, const char *localName, const char *prefix, const char *,
                int declarationCount, const char **declarations, int attributeCount, int,
                const char **attributes) {
    tryString(context, localName);
    tryString(context, prefix);
    for (int i = 0; i < 2 * declarationCount; ++i) tryString(context, declarations[i]);
    for (int i = 0; i < attributeCount; ++i) {
        tryString(context, attributes[5 * i]);
        tryString(context, attributes[5 * i + 1]);
        tryString(context, attributes[5 * i + 3]);
    }
}

// Reports why no tree was built.
[[noreturn]] void refuse(const Input &input, int refused) {
    Search search;
    XML_SAX_Handler handler{};
    handler.userData = &search;
    handler.error = keepError;
    handler.startElementNs = tryElement;
    handler.characters = tryLength;
    handler.cdataBlock = tryLength;
    if (XML_Parser_ByFile(input.path().c_str(), &handler) == XML_OK || isExhausted(search.error)) {
        throw std::bad_alloc();
    }
    if (search.missing)
        search.error.message = "a character has no form in GB18030, in which trees are held.";
    reportError(input, search.error, false);
    throw Failure(refused, "");
}

}  // namespace

Tree loadDocument(const std::string &name, int refused) {
    const Input input{name};
    Tree tree{XML_DOM_BuildTreeByFile(input.path().c_str(), 0, nullptr)};
    if (!tree) refuse(input, refused);
    return tree;
}

}  // namespace tool
