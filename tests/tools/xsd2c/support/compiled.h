// tests/tools/xsd2c/support/compiled.h - schemas that are compiled in memory, to try documents on.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "compactxml.h"
#include "xsd2c/records/records.h"
#include "xsd2c/xsd/components.h"

// A directory of its own, which is removed with all that is in it.
class TemporaryDirectory {
  public:
    TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory &) = delete;
    TemporaryDirectory &operator=(const TemporaryDirectory &) = delete;
    ~TemporaryDirectory();

    const std::string &path() const noexcept { return path_; }
    // Writes a file there and returns its path.
    std::string write(std::string_view name, std::string_view text) const;

  private:
    std::string path_;
};

// A schema with the documents that it includes, by file name; the first is compiled.
class CompiledSchema {
  public:
    // What stands between <xs:schema> and </xs:schema>; the target namespace is "urn:t", with the
    // prefix t, and local elements are qualified.
    explicit CompiledSchema(std::string_view declarations);
    explicit CompiledSchema(const std::map<std::string, std::string> &files,
                            const std::string &first);
    ~CompiledSchema();

    // What the compiler said, without the directory, line by line.
    const std::string &messages() const noexcept { return messages_; }
    bool failed() const noexcept { return failed_; }
    const xsd2c::Records &records() const noexcept { return *records_; }
    const SchemaRoot &root() const noexcept { return root_; }

    // "" for a valid document, or what the validator says of it.
    std::string verdict(std::string_view document) const;

  private:
    void compile(const std::map<std::string, std::string> &files, const std::string &first);

    std::unique_ptr<xsd2c::Components> components_;
    std::unique_ptr<xsd2c::Records> records_;
    SchemaRoot root_;
    std::string messages_;
    bool failed_ = false;
};
