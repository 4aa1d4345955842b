// tools/cxml/schemas.h - the schemas that documents are validated against.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "compactxml.h"

namespace tool {

// A schema root, with the schemas that were added to it.
class Schemas {
  public:
    Schemas();
    Schemas(const Schemas &) = delete;
    Schemas &operator=(const Schemas &) = delete;
    ~Schemas();

    // Compiles an XML Schema document, in memory. What is wrong with it, and what is not enforced, is
    // printed on standard error. Fails with kTrouble if the schema is refused.
    void addDocument(const std::string &path);

    // Loads a unit that xsd2c wrote and that was made a shared object: libUNIT.so or UNIT.so holds
    // SchemaReg_UNIT. Fails with kTrouble.
    void addPlugin(const std::string &path);

    const SchemaRoot &root() const noexcept { return root_; }

  private:
    struct Document;
    class Plugin;

    SchemaRoot root_;
    std::vector<std::unique_ptr<Document>> documents_;
    std::vector<std::unique_ptr<Plugin>> plugins_;
};

}  // namespace tool
