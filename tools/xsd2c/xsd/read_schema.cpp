#include "xsd2c/xsd/read_schema.h"

#include <vector>

#include "xsd2c/xsd/component_checks.h"
#include "xsd2c/xsd/reader.h"
#include "xsd2c/xsd/xml_text.h"

namespace xsd2c {
namespace {

struct ReadContent {
    Reader reader;
    const SourceElement &element;

    void operator()(SimpleType *type) { reader.readSimpleType(element, *type); }
    void operator()(ComplexType *type) { reader.readComplexType(element, *type); }
    void operator()(ElementDecl *declaration) { reader.readElement(element, *declaration); }
    void operator()(AttributeDecl *declaration) { reader.readAttribute(element, *declaration); }
    void operator()(AttributeGroup *group) { reader.readAttributeGroup(element, *group); }
    void operator()(GroupDefinition *group) { reader.readGroup(element, *group); }
};

void checkKeyrefs(const Reading &reading) {
    for (const Reading::Refer &refer : reading.keyrefs) {
        if (reading.symbols.constraints.find(refer.name.ns, refer.name.local)) continue;
        reading.diagnostics.error(refer.place, "key " + quoted(refer.shown) + " is not defined");
    }
}

}  // namespace

void readSchema(const std::string &path, Components &components, Diagnostics &diagnostics) {
    Reading reading{components, diagnostics, {}, {}};
    addBuiltinTypes(components, reading.symbols);

    Documents documents;
    std::vector<Declared> all;
    const DocumentVisitor visitor{[&](const Document &document, const SourceElement &element) {
                                      std::optional<Declared> declared =
                                          declare(reading, document, element);
                                      if (declared) all.push_back(*declared);
                                  },
                                  [&](const SourceElement &import) {
                                      addXmlNamespace(import.place, components, reading.symbols);
                                  }};
    readDocuments(path, components, diagnostics, documents, visitor);

    for (const Document &document : documents.documents) noteDefaults(document, diagnostics);
    for (const Declared &declared : all) {
        std::visit(ReadContent{Reader(reading, *declared.document), *declared.element},
                   declared.component);
    }
    checkKeyrefs(reading);
    checkComponents(reading);
}

}  // namespace xsd2c
