// libxml2_schema.h - a schema as libxml2 holds it, with the context of a validation.
#pragma once

#include <libxml/xmlschemas.h>

#include <string_view>

namespace bench {

class Libxml2Schema {
  public:
    explicit Libxml2Schema(const char *file);
    Libxml2Schema(const Libxml2Schema &) = delete;
    Libxml2Schema &operator=(const Libxml2Schema &) = delete;
    ~Libxml2Schema();

    // Null if it does not take the schema. It can be used for one document after another.
    xmlSchemaValidCtxtPtr context() const { return context_; }

  private:
    xmlSchemaPtr schema_;
    xmlSchemaValidCtxtPtr context_;
};

// The tree without white space between elements; null on failure.
xmlDocPtr readLibxml2Tree(std::string_view document);

}  // namespace bench
