// tools/xsd2c/output_files.h - files that are written all or not at all.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace xsd2c {

// A file cannot be written; what() names it and says why.
class WriteError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Gathers what to write. Without commit() nothing is left behind.
class OutputFiles {
  public:
    OutputFiles() = default;
    OutputFiles(const OutputFiles &) = delete;
    OutputFiles &operator=(const OutputFiles &) = delete;
    ~OutputFiles();

    // Writes to a file beside the one of that name.
    void add(const std::string &path, std::string_view text);
    // Gives all files their names.
    void commit();

  private:
    struct File {
        std::string temporary;
        std::string path;
    };
    std::vector<File> files_;
};

// The rule of make that says that the targets are made of the sources.
std::string makeRule(const std::vector<std::string> &targets,
                     const std::vector<std::string> &sources);

}  // namespace xsd2c
