// tools/xsd2c/xsd/documents.h - a schema document and all that it includes and imports.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

#include "xsd2c/xsd/components.h"
#include "xsd2c/xsd/diagnostics.h"
#include "xsd2c/xsd/source_tree.h"

namespace xsd2c {

// A document as it is read for one target namespace.
struct Document {
    const SourceTree *tree = nullptr;
    std::string ns;  // the target namespace, or that of the includer
    // It has no target namespace of its own: unprefixed names without a default namespace mean ns.
    bool takesNs = false;
    std::unordered_set<std::string> imported;  // namespaces
};

struct Documents {
    std::vector<std::unique_ptr<SourceTree>> trees;
    std::deque<Document> documents;
};

// What comes across while documents are read, in the order of Components::top.
struct DocumentVisitor {
    // A top-level component.
    std::function<void(const Document &, const SourceElement &)> component;
    // The first import of the XML namespace that no file answers.
    std::function<void(const SourceElement &import)> xmlNamespace;
};

// Reads documents, with their grammar checked, each once for a target namespace.
void readDocuments(const std::string &path, Components &components, Diagnostics &diagnostics,
                   Documents &documents, const DocumentVisitor &visitor);

}  // namespace xsd2c
