// tools/xsd2c/xsd/source_tree.h - a schema document as a tree of elements with their places.
#pragma once

#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "xsd2c/xsd/diagnostics.h"

namespace xsd2c {

enum class Construct;

// The namespace declarations of an element, and those around it.
struct Scope {
    const Scope *outer = nullptr;
    std::vector<std::pair<std::string, std::string>> namespaces;  // by prefix; "" is the default
};

// The namespace of a prefix; null if it is not declared. "" is the default namespace, which is null
// where there is none.
const std::string *findNamespace(const Scope *scope, std::string_view prefix);

struct SourceAttribute {
    std::string name;  // as written; those of other namespaces are left out
    std::string value;
    bool valid = true;  // false once a message has been given
};

struct SourceElement {
    Place place;
    std::string name;   // local
    std::string shown;  // as written
    std::string ns;
    const Scope *scope = nullptr;
    std::vector<SourceAttribute> attributes;
    std::vector<SourceElement *> children;
    bool hasText = false;
    Construct construct{};  // known once the grammar has been checked

    // Null when there is none.
    const SourceAttribute *attribute(std::string_view attributeName) const;
    bool has(std::string_view attributeName) const { return attribute(attributeName) != nullptr; }
    // The value of an attribute that is there and valid; else null.
    const std::string *value(std::string_view attributeName) const;
    // A boolean attribute.
    bool isTrue(std::string_view attributeName) const;
};

// What stands within xs:appinfo and xs:documentation is left out.
struct SourceTree {
    const std::string *file = nullptr;
    std::deque<Scope> scopes;
    std::deque<SourceElement> elements;  // in document order
    SourceElement *root = nullptr;
};

// Parses a document. A mistake is told and gives null.
//   file   what places name; it outlives the tree
//   bytes  of the document, in whatever encoding
std::unique_ptr<SourceTree> parseSource(const std::string &file, const std::string &bytes,
                                        Diagnostics &diagnostics);

}  // namespace xsd2c
