#include "xsd2c/xsd/documents.h"

#include <cstddef>
#include <optional>
#include <unordered_map>
#include <utility>

#include "xsd2c/xsd/grammar.h"
#include "xsd2c/xsd/schema_file.h"
#include "xsd2c/xsd/xml_text.h"

namespace xsd2c {
namespace {

std::string attributeOr(const SourceElement &element, const char *name) {
    const std::string *value = element.value(name);
    return value ? *value : std::string();
}

std::string describeNamespace(const std::string &ns) {
    return ns.empty() ? "no target namespace" : "the target namespace " + quoted(ns);
}

class DocumentReader {
  public:
    DocumentReader(Components &components, Diagnostics &diagnostics, Documents &documents,
                   const DocumentVisitor &visitor)
        : components_(components),
          diagnostics_(diagnostics),
          documents_(documents),
          visitor_(visitor) {}

    void readAll(const std::string &path);

  private:
    struct Loaded {
        const SourceTree *tree = nullptr;  // null for a document that is no schema
        std::string reason;                // why the file cannot be read
    };
    // A document, and how far its top level has been read.
    struct Open {
        Document *document;
        std::size_t next;
    };

    const Loaded &load(const std::string &path);
    void parse(const std::string &path, Loaded &loaded);
    void open(const SourceTree &tree, const std::string &ns);
    void readInclude(const Document &document, const SourceElement &include);
    void readImport(Document &document, const SourceElement &import);
    void readXmlNamespace(const SourceElement &import, const std::string &file);
    bool isImportAllowed(const Document &document, const SourceElement &import);
    const SourceTree *follow(const SourceElement &reference, const std::string &file);
    void misplaced(const SourceElement &reference, const SourceTree &tree,
                   const std::string &expected);

    Components &components_;
    Diagnostics &diagnostics_;
    Documents &documents_;
    const DocumentVisitor &visitor_;
    std::unordered_map<std::string, Loaded> loaded_;  // by identity
    std::unordered_set<std::string> opened_;          // identity and namespace
    std::vector<Open> open_;
    bool xmlRead_ = false;     // its declarations come from a file
    bool xmlBuiltIn_ = false;  // or are the known ones
};

std::string targetOf(const SourceTree &tree) {
    return attributeOr(*tree.root, "targetNamespace");
}

void DocumentReader::parse(const std::string &path, Loaded &loaded) {
    const std::optional<std::string> bytes = readFile(path, loaded.reason);
    if (!bytes) return;
    const std::string &file = components_.files.emplace_back(path);
    std::unique_ptr<SourceTree> tree = parseSource(file, *bytes, diagnostics_);
    if (!tree || !checkGrammar(*tree, diagnostics_)) return;
    if (targetOf(*tree) == kSchemaNamespace) {
        diagnostics_.error(tree->root->place, "nothing can be added to the namespace " +
                                                  std::string(kSchemaNamespace));
        return;
    }
    loaded.tree = tree.get();
    documents_.trees.push_back(std::move(tree));
}

const DocumentReader::Loaded &DocumentReader::load(const std::string &path) {
    const auto [found, isNew] = loaded_.try_emplace(fileIdentity(path));
    if (isNew) parse(path, found->second);
    return found->second;
}

// Once for each namespace; documents may include and import each other in a circle.
void DocumentReader::open(const SourceTree &tree, const std::string &ns) {
    if (!opened_.insert(fileIdentity(*tree.file) + '\0' + ns).second) return;
    Document &document = documents_.documents.emplace_back();
    document.tree = &tree;
    document.ns = ns;
    document.takesNs = targetOf(tree).empty();
    open_.push_back({&document, 0});
}

// The document that an include or import names; null, with a message, if there is none.
const SourceTree *DocumentReader::follow(const SourceElement &reference, const std::string &file) {
    const std::string location = attributeOr(reference, "schemaLocation");
    const std::optional<std::string> path = pathOfLocation(location, file);
    if (!path) {
        diagnostics_.error(reference.place,
                           "schemaLocation " + quoted(location) + " is not a file");
        return nullptr;
    }
    const Loaded &loaded = load(*path);
    if (!loaded.reason.empty()) {
        diagnostics_.error(reference.place,
                           "cannot read " + quoted(location) + ": " + loaded.reason);
    }
    return loaded.tree;
}

void DocumentReader::misplaced(const SourceElement &reference, const SourceTree &tree,
                               const std::string &expected) {
    diagnostics_.error(reference.place, quoted(attributeOr(reference, "schemaLocation")) + " has " +
                                            describeNamespace(targetOf(tree)) + ", not " +
                                            (expected.empty() ? "none" : quoted(expected)));
}

void DocumentReader::readInclude(const Document &document, const SourceElement &include) {
    if (!include.value("schemaLocation")) return;
    const SourceTree *tree = follow(include, *document.tree->file);
    if (!tree) return;
    const std::string target = targetOf(*tree);
    if (!target.empty() && target != document.ns) {
        misplaced(include, *tree, document.ns);
        return;
    }
    open(*tree, document.ns);
}

bool DocumentReader::isImportAllowed(const Document &document, const SourceElement &import) {
    const std::string ns = attributeOr(import, "namespace");
    if (import.has("namespace") && ns.empty()) {
        diagnostics_.error(import.place, "attribute 'namespace' is empty");
        return false;
    }
    if (!ns.empty() && ns == document.ns) {
        diagnostics_.error(import.place,
                           "namespace " + quoted(ns) + " is that of the schema itself");
        return false;
    }
    if (ns.empty() && targetOf(*document.tree).empty()) {
        diagnostics_.error(import.place,
                           "attribute 'namespace' is missing in a schema without targetNamespace");
        return false;
    }
    return true;
}

// Most schemas name the document of the XML namespace by its URL. What it declares is known.
void DocumentReader::readXmlNamespace(const SourceElement &import, const std::string &file) {
    if (xmlBuiltIn_) return;
    const std::string *location = import.value("schemaLocation");
    const std::optional<std::string> path =
        location ? pathOfLocation(*location, file) : std::nullopt;
    if (path && load(*path).reason.empty()) {
        const SourceTree *tree = load(*path).tree;
        if (!tree) return;
        if (targetOf(*tree) != kXmlNamespace) {
            misplaced(import, *tree, kXmlNamespace);
            return;
        }
        xmlRead_ = true;
        open(*tree, kXmlNamespace);
        return;
    }
    if (xmlRead_) return;
    visitor_.xmlNamespace(import);
    xmlBuiltIn_ = true;
}

void DocumentReader::readImport(Document &document, const SourceElement &import) {
    if (!isImportAllowed(document, import)) return;
    const std::string ns = attributeOr(import, "namespace");
    document.imported.insert(ns);
    if (ns == kXmlNamespace) {
        readXmlNamespace(import, *document.tree->file);
        return;
    }
    if (ns == kSchemaNamespace || !import.value("schemaLocation")) return;
    const SourceTree *tree = follow(import, *document.tree->file);
    if (!tree) return;
    if (targetOf(*tree) != ns) {
        misplaced(import, *tree, ns);
        return;
    }
    open(*tree, ns);
}

void DocumentReader::readAll(const std::string &path) {
    const Loaded &first = load(path);
    if (!first.reason.empty()) {
        diagnostics_.error({&components_.files.emplace_back(path), 0, 0}, first.reason);
    }
    if (!first.tree) return;
    open(*first.tree, targetOf(*first.tree));
    while (!open_.empty()) {
        Open &top = open_.back();
        Document &document = *top.document;
        const std::vector<SourceElement *> &elements = document.tree->root->children;
        if (top.next == elements.size()) {
            open_.pop_back();
            continue;
        }
        const SourceElement &element = *elements[top.next++];
        if (element.construct == Construct::kInclude) {
            readInclude(document, element);
        } else if (element.construct == Construct::kImport) {
            readImport(document, element);
        } else if (element.construct != Construct::kAnnotation) {
            visitor_.component(document, element);
        }
    }
}

}  // namespace

void readDocuments(const std::string &path, Components &components, Diagnostics &diagnostics,
                   Documents &documents, const DocumentVisitor &visitor) {
    DocumentReader(components, diagnostics, documents, visitor).readAll(path);
}

}  // namespace xsd2c
