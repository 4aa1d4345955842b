// schema_documents.h - the documents that are validated.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "schema.h"

namespace bench {

struct SchemaDocument {
    const Schema &schema;
    std::string label;  // such as "ports/1M"
    std::string text;   // valid, and hardly longer than the label says
    std::string (*make)(std::size_t size, bool valid);
    std::size_t size;  // what was asked for

    // The same with a mistake at its end.
    std::string invalid() const { return make(size, false); }
};

// All that are measured. They live as long as somebody holds them.
std::vector<std::shared_ptr<const SchemaDocument>> makeSchemaDocuments();

}  // namespace bench
