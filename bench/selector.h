// selector.h - one way of finding an element by the names on the way to it.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "documents.h"

namespace bench {

// The way from the root element, which is not part of it, to an element; of elements of one name
// the first is meant everywhere.
struct Route {
    std::string names;     // "system/hostname"
    std::string prefixed;  // "s:system/s:hostname", with the prefixes of kRouteNamespaces
};

struct RouteNamespace {
    const char *prefix;
    const char *name;
};
inline constexpr RouteNamespace kRouteNamespaces[] = {
    {"s", "urn:example:switch"},
    {"n", "urn:ietf:params:xml:ns:netconf:base:1.0"},
    {"i", "urn:ietf:params:xml:ns:yang:ietf-interfaces"},
};

// "a/b" as an XPath of this meaning: "a[1]/b[1]".
std::string asXPath(const std::string &route);

// A tree of a document and a route in it, compiled beforehand where a library can do that.
class Selection {
  public:
    Selection() = default;
    Selection(const Selection &) = delete;
    Selection &operator=(const Selection &) = delete;
    virtual ~Selection() = default;

    // The text of the selected element; null if there is none.
    virtual const char *text() = 0;
};

struct Selector {
    const char *name;
    std::unique_ptr<Selection> (*select)(const Document &document, const Route &route);
};

extern const Selector kCompactXmlSelector;
#ifdef BENCH_HAS_PUGIXML
extern const Selector kPugixmlPathSelector, kPugixmlXPathSelector;
#endif
#ifdef BENCH_HAS_LIBXML2
extern const Selector kLibxml2XPathSelector;
#endif

}  // namespace bench
