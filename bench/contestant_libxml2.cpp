// libxml2: SAX2 callbacks, and its tree without the white space between elements.
#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#include <libxml/tree.h>

#include <cstring>
#include <mutex>

#include "contestant.h"

namespace bench {
namespace {

constexpr int kOptions =
    XML_PARSE_NONET | XML_PARSE_HUGE | XML_PARSE_COMPACT | XML_PARSE_NOERROR | XML_PARSE_NOWARNING;

const char *chars(const xmlChar *text) {
    return reinterpret_cast<const char *>(text);
}

void prepare() {
    static std::once_flag once;
    std::call_once(once, xmlInitParser);
}

// ---- callbacks ------------------------------------------------------------------------------

void onStart(void *user, const xmlChar *name, const xmlChar *, const xmlChar *, int,
             const xmlChar **, int attributeCount, int, const xmlChar **attributes) {
    Tally &tally = *static_cast<Tally *>(user);
    tally.element(chars(name));
    for (int i = 0; i < attributeCount; ++i, attributes += 5) {
        tally.attribute(chars(attributes[0]),
                        std::string_view(chars(attributes[3]),
                                         static_cast<std::size_t>(attributes[4] - attributes[3])));
    }
}

void onEnd(void *, const xmlChar *, const xmlChar *, const xmlChar *) {}

void onText(void *user, const xmlChar *text, int length) {
    static_cast<Tally *>(user)->text(chars(text), static_cast<std::size_t>(length));
}

bool parse(std::string_view document, Tally &tally) {
    prepare();
    xmlSAXHandler handler = {};
    handler.initialized = XML_SAX2_MAGIC;
    handler.startElementNs = onStart;
    handler.endElementNs = onEnd;
    handler.characters = onText;
    handler.ignorableWhitespace = onText;
    handler.cdataBlock = onText;
    xmlParserCtxtPtr context =
        xmlCreateMemoryParserCtxt(document.data(), static_cast<int>(document.size()));
    if (!context) return false;
    xmlSAXHandlerPtr own = context->sax;
    context->sax = &handler;
    context->userData = &tally;
    // Else a reference in an attribute value is left for the tree builder to replace.
    xmlCtxtUseOptions(context, kOptions | XML_PARSE_NOENT);
    const bool ok = xmlParseDocument(context) == 0 && context->wellFormed;
    context->sax = own;
    xmlFreeParserCtxt(context);
    return ok;
}

// ---- tree -----------------------------------------------------------------------------------

void *build(std::span<char> document, Encoding) {
    prepare();
    return xmlReadMemory(document.data(), static_cast<int>(document.size()), nullptr, nullptr,
                         kOptions | XML_PARSE_NOBLANKS);
}

void destroy(void *tree) {
    xmlFreeDoc(static_cast<xmlDocPtr>(tree));
}

void countNode(xmlDocPtr document, const xmlNode *node, Tally &tally) {
    if (node->type == XML_TEXT_NODE || node->type == XML_CDATA_SECTION_NODE) {
        tally.text(chars(node->content), std::strlen(chars(node->content)));
    } else if (node->type == XML_ELEMENT_NODE) {
        tally.element(chars(node->name));
        for (const xmlAttr *attribute = node->properties; attribute; attribute = attribute->next) {
            xmlChar *value = xmlNodeListGetString(document, attribute->children, 1);
            tally.attribute(chars(attribute->name), value ? chars(value) : "");
            xmlFree(value);
        }
    }
}

void count(const void *tree, Tally &tally) {
    // The signature has no const, but nothing is changed.
    auto document = static_cast<xmlDocPtr>(const_cast<void *>(tree));
    const xmlNode *node = xmlDocGetRootElement(document);
    while (node) {
        countNode(document, node, tally);
        if (node->type == XML_ELEMENT_NODE && node->children) {
            node = node->children;
            continue;
        }
        while (node && !node->next) {
            node = node->parent && node->parent->type == XML_ELEMENT_NODE ? node->parent : nullptr;
        }
        if (node) node = node->next;
    }
}

std::size_t serialize(const void *tree, Encoding encoding, std::string *copy) {
    auto document = static_cast<xmlDocPtr>(const_cast<void *>(tree));
    xmlChar *bytes = nullptr;
    int length = 0;
    xmlDocDumpFormatMemoryEnc(document, &bytes, &length, encodingName(encoding), 0);
    if (!bytes) return 0;
    if (copy) copy->assign(chars(bytes), static_cast<std::size_t>(length));
    xmlFree(bytes);
    return static_cast<std::size_t>(length);
}

constexpr const char *kVersion = "libxml2 " LIBXML_DOTTED_VERSION;

}  // namespace

const Contestant kLibxml2Sax = {
    .name = "libxml2-sax2",
    .version = kVersion,
    .encodings = kAnyEncoding,
    .parse = parse,
};

const Contestant kLibxml2Dom = {
    .name = "libxml2-dom",
    .version = kVersion,
    .encodings = kAnyEncoding,
    .build = build,
    .destroy = destroy,
    .count = count,
    .serialize = serialize,
};

}  // namespace bench
