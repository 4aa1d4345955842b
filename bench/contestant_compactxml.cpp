// This library, through its public header and the shared library.
#include <cstdlib>

#include "compactxml.h"
#include "contestant.h"

namespace bench {
namespace {

// ---- callbacks ------------------------------------------------------------------------------

Tally &tallyOf(XML_Parser_Ctx *context) {
    return *static_cast<Tally *>(context->handler->userData);
}

void onStart(XML_Parser_Ctx *context, const char *name, const char *, const char *, int,
             const char **, int attributeCount, int, const char **attributes) {
    Tally &tally = tallyOf(context);
    tally.element(name);
    for (int i = 0; i < attributeCount; ++i, attributes += 5) {
        const auto length = static_cast<std::size_t>(attributes[4] - attributes[3]);
        tally.attribute(attributes[0], std::string_view(attributes[3], length));
    }
}

void onEnd(XML_Parser_Ctx *, const char *, const char *, const char *) {}

void onText(XML_Parser_Ctx *context, const char *text, int length) {
    tallyOf(context).text(text, static_cast<std::size_t>(length));
}

bool parse(std::string_view document, Tally &tally) {
    XML_SAX_Handler handler = {};
    handler.userData = &tally;
    handler.startElementNs = onStart;
    handler.endElementNs = onEnd;
    handler.characters = onText;
    handler.cdataBlock = onText;
    return XML_Parser_ByMem(document.data(), static_cast<std::uint32_t>(document.size()),
                            &handler) == XML_OK;
}

// ---- tree -----------------------------------------------------------------------------------

void *build(std::span<char> document, Encoding) {
    return XML_DOM_BuildTreeByMem(document.data(), static_cast<std::uint32_t>(document.size()), 0,
                                  nullptr);
}

void destroy(void *tree) {
    XML_DOM_DelNode(static_cast<XML_DOM_Node *>(tree));
}

// The tree holds GB18030, the tally wants UTF-8.
std::string utf8(const char *text) {
    return converted(text ? text : "", Encoding::gb18030, Encoding::utf8);
}

void countNode(const XML_DOM_Node *node, Tally &tally) {
    if (XML_DOM_GetNodeType(node) != XML_DOM_NODE_ELEMENT) {
        const std::string text = utf8(XML_DOM_GetNodeValue(node));
        tally.text(text.data(), text.size());
        return;
    }
    tally.element(utf8(XML_DOM_GetNodeName(node)).c_str());
    for (const XML_DOM_Attr *attribute = XML_DOM_GetFirstAttr(node); attribute;
         attribute = XML_DOM_GetNextAttr(attribute)) {
        const char *name = "";
        XML_DOM_GetAttrNameSpace(attribute, &name, nullptr);
        const std::string localName = utf8(name);
        tally.attribute(localName.c_str(), utf8(XML_DOM_GetAttrValByHandle(attribute)).c_str());
    }
}

void count(const void *tree, Tally &tally) {
    const auto *root = static_cast<const XML_DOM_Node *>(tree);
    for (const XML_DOM_Node *node = root; node;) {
        countNode(node, tally);
        if (const XML_DOM_Node *child = XML_DOM_GetFirstChild(node)) {
            node = child;
            continue;
        }
        while (node != root && !XML_DOM_GetNextSibling(node)) node = XML_DOM_GetNodeParent(node);
        node = node == root ? nullptr : XML_DOM_GetNextSibling(node);
    }
}

std::size_t serialize(const void *tree, Encoding, std::string *copy) {
    char *bytes = nullptr;
    std::uint32_t length = 0;
    if (XML_DOM_TranslateStr(static_cast<const XML_DOM_Node *>(tree), 0, &bytes, &length) !=
        XML_OK) {
        return 0;
    }
    if (copy) copy->assign(bytes, length);
    std::free(bytes);
    return length;
}

}  // namespace

const Contestant kCompactXml = {
    .name = "compactxml",
    .version = "this library",
    .encodings = kAnyEncoding,
    .parse = parse,
    .build = build,
    .destroy = destroy,
    .count = count,
    .serialize = serialize,
};

}  // namespace bench
