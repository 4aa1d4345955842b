#include "writer.h"

#include <algorithm>
#include <new>
#include <string_view>

#include "conversion.h"
#include "escaping.h"
#include "failure.h"
#include "path.h"
#include "walk.h"

namespace tool {
namespace {

// Levels below are not moved further to the right: what is written must not grow faster than what
// was read, however deep a document is.
constexpr std::size_t kMostBlanks = 80;
constexpr std::size_t kGatheredBytes = 8192;

std::string_view viewOf(const char *text) {
    return text ? text : "";
}

bool isElement(const XML_DOM_Node *node) {
    return XML_DOM_GetNodeType(node) == XML_DOM_NODE_ELEMENT;
}

bool hasText(const XML_DOM_Node *element) {
    for (const XML_DOM_Node *child = XML_DOM_GetFirstChild(element); child;
         child = XML_DOM_GetNextSibling(child)) {
        if (!isElement(child)) return true;
    }
    return false;
}

std::uint32_t encodingOf(const XML_DOM_Node *node) {
    const std::uint32_t encoding = XML_DOM_GetEncoding(node);
    return encoding == XML_ENCODING_UNKNOWN ? XML_ENCODING_UTF_8 : encoding;
}

// Tries all text before the first byte is written, and finds out whether the library's own text
// would be read back as it is.
class Trial {
  public:
    Trial(std::uint32_t encoding, const std::string &name)
        : encoding_(encoding), name_(name), conversion_(kTreeEncoding, encoding) {}

    bool enter(const XML_DOM_Node *node, std::size_t) {
        if (!isElement(node)) {
            const std::string_view value = viewOf(XML_DOM_GetNodeValue(node));
            if (XML_DOM_GetNodeType(node) == XML_DOM_NODE_CDATA) {
                plain_ = plain_ && findSectionEnd(value) == std::string_view::npos;
            }
            tryText(value, node);
            return false;
        }
        tryText(viewOf(node->name), node);
        if (node->ns) tryText(viewOf(node->ns->prefix), node);
        for (const XML_DOM_NsDecl *decl = node->firstNsDecl; decl; decl = decl->next) {
            tryText(viewOf(decl->prefix), node);
            tryValue(viewOf(decl->namespaceName), node);
        }
        for (const XML_DOM_Attr *attribute = XML_DOM_GetFirstAttr(node); attribute;
             attribute = XML_DOM_GetNextAttr(attribute)) {
            tryText(viewOf(attribute->name), node);
            tryValue(viewOf(attribute->value), node);
        }
        return true;
    }
    void leave(const XML_DOM_Node *, std::size_t) {}

    bool plain() const { return plain_; }

  private:
    void tryValue(std::string_view value, const XML_DOM_Node *node) {
        plain_ = plain_ && value.find('"') == std::string_view::npos;
        tryText(value, node);
    }

    void tryText(std::string_view text, const XML_DOM_Node *node) {
        if (conversion_.append(text, nullptr) && conversion_.complete()) return;
        const std::string missing = firstMissing(text, encoding_);
        if (missing.empty()) throw std::bad_alloc();
        throw Failure(kRefused, name_ + ": " + XML_DOM_EncodingEnumToStr(encoding_) +
                                    " has no character for " + missing + " in " + pathOf(node));
    }

    std::uint32_t encoding_;
    const std::string &name_;
    Conversion conversion_;
    bool plain_ = true;
};

class Writer {
    // For the templates of escaping.h.
    auto putter() {
        return [this](std::string_view text) { put(text); };
    }

  public:
    Writer(std::uint32_t encoding, int indent, Output &output)
        : indent_(indent), conversion_(kTreeEncoding, encoding), output_(output) {
        gathered_.reserve(kGatheredBytes);
    }

    void declare(const XML_DOM_Node *root, std::uint32_t encoding) {
        put("<?xml version=\"");
        put(XML_DOM_GetVersion(root));
        put("\" encoding=\"");
        put(XML_DOM_EncodingEnumToStr(encoding));
        put("\"?>");
        fresh_ = false;
    }

    bool enter(const XML_DOM_Node *node, std::size_t depth) {
        if (isElement(node)) {
            beginLine(depth);
            putStartTag(node);
            if (!inlineTop_ && hasText(node)) inlineTop_ = node;
        } else if (XML_DOM_GetNodeType(node) == XML_DOM_NODE_CDATA) {
            wrapSection(viewOf(XML_DOM_GetNodeValue(node)), putter());
        } else {
            escapeText(viewOf(XML_DOM_GetNodeValue(node)), Quotes::kKeep, putter());
        }
        return true;
    }

    void leave(const XML_DOM_Node *node, std::size_t depth) {
        if (!isElement(node) || !XML_DOM_GetFirstChild(node)) return;
        beginLine(depth);
        put("</");
        putName(node->ns, node->name);
        put(">");
        if (node == inlineTop_) inlineTop_ = nullptr;
    }

    void finish() {
        if (indent_ >= 0) put("\n");
        flush();
    }

  private:
    void put(std::string_view text) {
        if (text.size() > kGatheredBytes - gathered_.size()) flush();
        if (text.size() > kGatheredBytes) {
            convert(text);
        } else {
            gathered_.append(text);
        }
    }

    void flush() {
        convert(gathered_);
        gathered_.clear();
    }

    void convert(std::string_view text) {
        // All of it has been tried: there is nothing left but memory that can fail.
        if (!conversion_.append(text, &output_)) throw std::bad_alloc();
    }

    void beginLine(std::size_t depth) {
        if (indent_ < 0 || inlineTop_) return;
        if (!fresh_) put("\n");
        fresh_ = false;
        constexpr std::string_view kBlank = " ";
        const std::size_t blanks = std::min(depth * static_cast<std::size_t>(indent_), kMostBlanks);
        for (std::size_t i = 0; i < blanks; ++i) put(kBlank);
    }

    void putName(const XML_DOM_NsDecl *ns, const char *name) {
        if (ns && ns->prefix) {
            put(ns->prefix);
            put(":");
        }
        put(viewOf(name));
    }

    void putValue(const char *value) {
        put("=\"");
        escapeText(viewOf(value), Quotes::kEscape, putter());
        put("\"");
    }

    void putStartTag(const XML_DOM_Node *element) {
        put("<");
        putName(element->ns, element->name);
        for (const XML_DOM_NsDecl *decl = element->firstNsDecl; decl; decl = decl->next) {
            put(" xmlns");
            if (decl->prefix) {
                put(":");
                put(decl->prefix);
            }
            putValue(decl->namespaceName);
        }
        for (const XML_DOM_Attr *attribute = XML_DOM_GetFirstAttr(element); attribute;
             attribute = XML_DOM_GetNextAttr(attribute)) {
            put(" ");
            putName(attribute->ns, attribute->name);
            putValue(attribute->value);
        }
        put(XML_DOM_GetFirstChild(element) ? ">" : "/>");
    }

    int indent_;
    Conversion conversion_;
    Output &output_;
    std::string gathered_;
    bool fresh_ = true;                        // nothing has been written
    const XML_DOM_Node *inlineTop_ = nullptr;  // the element with text whose line this is
};

}  // namespace

void writeTree(const XML_DOM_Node *node, const WriteStyle &style, const std::string &name,
               Output &output) {
    const std::uint32_t encoding = encodingOf(node);
    Trial trial{encoding, name};
    walk(node, trial);
    if (style.indent == WriteStyle::kCompact && trial.plain()) {
        const std::uint32_t flags = style.declaration ? 0 : XML_DOM_NO_DECLARATION;
        const std::uint32_t result = XML_DOM_OutPutTranslateStr(node, flags, Output::sink, &output);
        output.rethrow();
        if (result != XML_OK) throw std::bad_alloc();
        return;
    }
    Writer writer{encoding, style.indent, output};
    if (style.declaration && XML_DOM_GetRoot(node) == node) writer.declare(node, encoding);
    walk(node, writer);
    writer.finish();
}

}  // namespace tool
