// libxml2's XPath, compiled beforehand.
#include <libxml/parser.h>
#include <libxml/xpath.h>
#include <libxml/xpathInternals.h>

#include "selector.h"

namespace bench {
namespace {

struct Free {
    void operator()(xmlDoc *document) const { xmlFreeDoc(document); }
    void operator()(xmlXPathContext *context) const { xmlXPathFreeContext(context); }
    void operator()(xmlXPathCompExpr *expression) const { xmlXPathFreeCompExpr(expression); }
    void operator()(xmlXPathObject *object) const { xmlXPathFreeObject(object); }
};
template <class Type>
using Owner = std::unique_ptr<Type, Free>;

const xmlChar *xmlChars(const char *text) {
    return reinterpret_cast<const xmlChar *>(text);
}

class XPathSelection : public Selection {
  public:
    XPathSelection(const Document &document, const Route &route)
        : tree_(xmlReadMemory(document.bytes.data(), static_cast<int>(document.bytes.size()),
                              nullptr, nullptr, XML_PARSE_NONET | XML_PARSE_NOBLANKS)),
          context_(tree_ ? xmlXPathNewContext(tree_.get()) : nullptr),
          expression_(xmlXPathCompile(xmlChars(asXPath(route.prefixed).c_str()))) {
        if (!context_) return;
        context_->node = xmlDocGetRootElement(tree_.get());
        for (const RouteNamespace &ns : kRouteNamespaces) {
            xmlXPathRegisterNs(context_.get(), xmlChars(ns.prefix), xmlChars(ns.name));
        }
    }

    const char *text() override {
        if (!context_ || !expression_) return nullptr;
        const Owner<xmlXPathObject> found(xmlXPathCompiledEval(expression_.get(), context_.get()));
        if (!found || !found->nodesetval || found->nodesetval->nodeNr == 0) return nullptr;
        const xmlNode *text = found->nodesetval->nodeTab[0]->children;
        return text ? reinterpret_cast<const char *>(text->content) : nullptr;
    }

  private:
    Owner<xmlDoc> tree_;
    Owner<xmlXPathContext> context_;
    Owner<xmlXPathCompExpr> expression_;
};

std::unique_ptr<Selection> select(const Document &document, const Route &route) {
    return std::make_unique<XPathSelection>(document, route);
}

}  // namespace

const Selector kLibxml2XPathSelector = {.name = "libxml2-xpath", .select = select};

}  // namespace bench
