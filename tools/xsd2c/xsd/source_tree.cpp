#include "xsd2c/xsd/source_tree.h"

#include <algorithm>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <new>

#include "compactxml.h"
#include "xsd2c/xsd/components.h"
#include "xsd2c/xsd/tag_finder.h"
#include "xsd2c/xsd/xml_text.h"

namespace xsd2c {
namespace {

constexpr std::size_t kDeepest = 256;
constexpr std::int32_t kStopped = 1;  // status of a parse that a callback ends

// The elements of a document as the parser comes by them.
class TreeBuilder {
  public:
    explicit TreeBuilder(const std::string &file) : tree_(std::make_unique<SourceTree>()) {
        tree_->file = &file;
    }

    struct Start {
        const char *localName;
        const char *prefix;
        const char *ns;
        int declarationCount;
        const char **declarations;
        int attributeCount;
        const char **attributes;
    };

    void startElement(const XML_Parser_Ctx &context, const Start &start);
    void endElement();
    void text();

    // All that the library says of a mistake.
    void keepError(int line, int column, const char *message);
    // An exception that would have passed through the library.
    void keepException() { exception_ = std::current_exception(); }

    bool isTooDeep() const { return tooDeep_; }

    // What is left to do when the parse is over. Null if there is no tree.
    std::unique_ptr<SourceTree> finish(const std::string &bytes, std::uint32_t result,
                                       Diagnostics &diagnostics);
    void keepEncoding(const XML_Parser_Ctx &context) { encoding_ = context.input->encoding; }

  private:
    const Scope *openScope(const Start &start);
    void addAttributes(SourceElement &element, const Start &start);
    void findTags(const std::string &bytes);

    std::unique_ptr<SourceTree> tree_;
    std::vector<SourceElement *> open_;  // null within what is left out
    Position tooDeepBehind_;
    bool tooDeep_ = false;
    std::exception_ptr exception_;
    std::uint32_t encoding_ = XML_ENCODING_UTF_8;
    Position error_{0, 0};
    std::string message_;
};

std::string textOf(const char *text) {
    return text ? std::string(text) : std::string();
}

bool isLeftOut(const SourceElement &element) {
    return element.ns == kSchemaNamespace &&
           (element.name == "appinfo" || element.name == "documentation");
}

const Scope *TreeBuilder::openScope(const Start &start) {
    const Scope *outer = open_.empty() ? nullptr : open_.back()->scope;
    if (start.declarationCount == 0) return outer;
    Scope &scope = tree_->scopes.emplace_back();
    scope.outer = outer;
    for (std::ptrdiff_t i = 0; i < start.declarationCount; ++i) {
        const char **declaration = start.declarations + 2 * i;
        scope.namespaces.emplace_back(textOf(declaration[0]), textOf(declaration[1]));
    }
    return &scope;
}

// Attributes of other namespaces say nothing to a schema. Those of its own are kept, since they are
// mistakes.
void TreeBuilder::addAttributes(SourceElement &element, const Start &start) {
    for (std::ptrdiff_t i = 0; i < start.attributeCount; ++i) {
        const char **attribute = start.attributes + 5 * i;
        const std::string ns = textOf(attribute[2]);
        if (!ns.empty() && ns != kSchemaNamespace) continue;
        std::string name = attribute[1] ? textOf(attribute[1]) + ":" : std::string();
        element.attributes.push_back(
            {name + attribute[0], std::string(attribute[3], attribute[4]), true});
    }
}

void TreeBuilder::startElement(const XML_Parser_Ctx &context, const Start &start) {
    const Position behind{context.line, context.column};
    if (open_.size() == kDeepest) {
        tooDeep_ = true;
        tooDeepBehind_ = behind;
        return;
    }
    if (!open_.empty() && (!open_.back() || isLeftOut(*open_.back()))) {
        open_.push_back(nullptr);
        return;
    }
    const Scope *scope = openScope(start);
    SourceElement &element = tree_->elements.emplace_back();
    element.place = {tree_->file, behind.line, behind.column};
    element.name = start.localName;
    element.shown = start.prefix ? textOf(start.prefix) + ":" + start.localName : element.name;
    element.ns = textOf(start.ns);
    element.scope = scope;
    addAttributes(element, start);
    if (open_.empty()) {
        tree_->root = &element;
    } else {
        open_.back()->children.push_back(&element);
    }
    open_.push_back(&element);
}

void TreeBuilder::endElement() {
    open_.pop_back();
}

void TreeBuilder::text() {
    if (open_.empty() || !open_.back() || isLeftOut(*open_.back())) return;
    open_.back()->hasText = true;
}

void TreeBuilder::keepError(int line, int column, const char *message) {
    error_ = {line, column};
    message_ = message;
}

// The parser told what stands behind the tags.
void TreeBuilder::findTags(const std::string &bytes) {
    TagFinder finder{bytes, encoding_};
    for (SourceElement &element : tree_->elements) {
        const Position tag = finder.lastTagBefore({element.place.line, element.place.column});
        element.place.line = tag.line;
        element.place.column = tag.column;
    }
    if (tooDeep_) tooDeepBehind_ = finder.lastTagBefore(tooDeepBehind_);
}

std::unique_ptr<SourceTree> TreeBuilder::finish(const std::string &bytes, std::uint32_t result,
                                                Diagnostics &diagnostics) {
    if (exception_) std::rethrow_exception(exception_);
    if (tooDeep_) {
        findTags(bytes);
        diagnostics.error({tree_->file, tooDeepBehind_.line, tooDeepBehind_.column},
                          "elements are nested more than 256 deep");
        return nullptr;
    }
    if (result == XML_OK && tree_->root) {
        findTags(bytes);
        return std::move(tree_);
    }
    if (bytes.empty()) keepError(1, 1, "document is empty.");
    if (message_.empty() || message_ == "memory allocation failed.") throw std::bad_alloc();
    if (message_.back() == '.') message_.pop_back();
    diagnostics.error({tree_->file, error_.line, error_.column}, message_);
    return nullptr;
}

TreeBuilder &builderOf(const XML_Parser_Ctx *context) {
    return *static_cast<TreeBuilder *>(context->handler->userData);
}

// Calls what may throw from a callback of the library.
template <class Call>
void guarded(XML_Parser_Ctx *context, Call call) noexcept {
    TreeBuilder &builder = builderOf(context);
    try {
        call(builder);
    } catch (...) {
        builder.keepException();
        context->status = kStopped;
    }
}

void onStart(XML_Parser_Ctx *context, const char *localName, const char *prefix, const char *ns,
             int declarationCount, const char **declarations, int attributeCount, int,
             const char **attributes) {
    guarded(context, [&](TreeBuilder &builder) {
        builder.keepEncoding(*context);
        builder.startElement(*context, {localName, prefix, ns, declarationCount, declarations,
                                        attributeCount, attributes});
        if (builder.isTooDeep()) context->status = kStopped;
    });
}

void onEnd(XML_Parser_Ctx *context, const char *, const char *, const char *) {
    builderOf(context).endElement();
}

void onText(XML_Parser_Ctx *context, const char *text, int length) {
    if (isBlank({text, static_cast<std::size_t>(length)})) return;
    builderOf(context).text();
}

void onError(XML_Parser_Ctx *context, const char *format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const int line = va_arg(arguments, int);
    const int column = va_arg(arguments, int);
    va_arg(arguments, char *);  // the snippet, which says less than the place
    const char *message = va_arg(arguments, char *);
    va_end(arguments);
    guarded(context, [&](TreeBuilder &builder) { builder.keepError(line, column, message); });
}

}  // namespace

const std::string *findNamespace(const Scope *scope, std::string_view prefix) {
    static const std::string kXml = kXmlNamespace;
    if (prefix == "xml") return &kXml;
    for (; scope; scope = scope->outer) {
        for (const auto &[declared, ns] : scope->namespaces) {
            if (declared == prefix) return ns.empty() ? nullptr : &ns;
        }
    }
    return nullptr;
}

const SourceAttribute *SourceElement::attribute(std::string_view attributeName) const {
    const auto found = std::find_if(
        attributes.begin(), attributes.end(),
        [&](const SourceAttribute &attribute) { return attribute.name == attributeName; });
    return found == attributes.end() ? nullptr : &*found;
}

const std::string *SourceElement::value(std::string_view attributeName) const {
    const SourceAttribute *found = attribute(attributeName);
    return found && found->valid ? &found->value : nullptr;
}

bool SourceElement::isTrue(std::string_view attributeName) const {
    const std::string *found = value(attributeName);
    return found && (*found == "true" || *found == "1");
}

std::unique_ptr<SourceTree> parseSource(const std::string &file, const std::string &bytes,
                                        Diagnostics &diagnostics) {
    TreeBuilder builder{file};
    XML_SAX_Handler handler{};
    handler.userData = &builder;
    handler.startElementNs = onStart;
    handler.endElementNs = onEnd;
    handler.characters = onText;
    handler.cdataBlock = onText;
    handler.error = onError;
    const std::uint32_t result =
        XML_Parser_ByMem(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &handler);
    return builder.finish(bytes, result, diagnostics);
}

}  // namespace xsd2c
