// tests/tools/xsd2c/support/schema_files.h - schema documents in a directory of their own.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "xsd2c/xsd/read_schema.h"

// A fresh directory, removed when the object goes.
class SchemaFiles {
  public:
    SchemaFiles();
    SchemaFiles(const SchemaFiles &) = delete;
    SchemaFiles &operator=(const SchemaFiles &) = delete;
    ~SchemaFiles();

    void write(const std::string &name, std::string_view bytes) const;
    std::string path(const std::string &name) const { return (directory_ / name).string(); }

    // Takes the name of the directory out of messages.
    std::string shortened(std::string text) const;

  private:
    std::filesystem::path directory_;
};

// An xs:schema around some content, all in one line but for a line break behind its start tag.
std::string schemaText(std::string_view content, std::string_view attributes = "");

// Reads a schema that lies in one file, "a.xsd". Returns the messages.
std::string messagesOf(std::string_view document);
