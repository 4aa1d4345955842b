#include "schema_documents.h"

#include "ports_document.h"
#include "switch_document.h"

namespace bench {
namespace {

struct Choice {
    const Schema &schema;
    const char *label;
    std::string (*make)(std::size_t size, bool valid);
    std::size_t size;
};

const Choice kChoices[] = {{kPortsSchema, "ports/4k", makePorts, 4000},
                           {kPortsSchema, "ports/100k", makePorts, 100000},
                           {kPortsSchema, "ports/1M", makePorts, 1000000},
                           {kPortsSchema, "ports/10M", makePorts, 10000000},
                           {kSwitchSchema, "switch/4k", makeSwitch, 4000},
                           {kSwitchSchema, "switch/1M", makeSwitch, 1000000}};

}  // namespace

std::vector<std::shared_ptr<const SchemaDocument>> makeSchemaDocuments() {
    std::vector<std::shared_ptr<const SchemaDocument>> documents;
    for (const Choice &choice : kChoices) {
        documents.push_back(std::make_shared<const SchemaDocument>(
            SchemaDocument{choice.schema, choice.label, choice.make(choice.size, true), choice.make,
                           choice.size}));
    }
    return documents;
}

}  // namespace bench
