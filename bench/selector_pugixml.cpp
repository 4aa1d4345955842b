// pugixml's paths, read anew for each selection, and its XPath, compiled beforehand.
#include <memory>
#include <pugixml.hpp>

#include "selector.h"

namespace bench {
namespace {

class PathSelection : public Selection {
  public:
    PathSelection(const Document &document, const Route &route) : path_(route.names) {
        tree_.load_buffer(document.bytes.data(), document.bytes.size());
    }

    const char *text() override {
        return tree_.document_element().first_element_by_path(path_.c_str()).child_value();
    }

  private:
    pugi::xml_document tree_;
    std::string path_;
};

class XPathSelection : public Selection {
  public:
    XPathSelection(const Document &document, const Route &route)
        : query_(asXPath(route.names).c_str()) {
        tree_.load_buffer(document.bytes.data(), document.bytes.size());
    }

    const char *text() override {
        return tree_.document_element().select_node(query_).node().child_value();
    }

  private:
    pugi::xml_document tree_;
    pugi::xpath_query query_;
};

template <class Kind>
std::unique_ptr<Selection> select(const Document &document, const Route &route) {
    return std::make_unique<Kind>(document, route);
}

}  // namespace

const Selector kPugixmlPathSelector = {.name = "pugixml-path", .select = select<PathSelection>};
const Selector kPugixmlXPathSelector = {.name = "pugixml-xpath", .select = select<XPathSelection>};

}  // namespace bench
