// tools/xsd2c/xsd/schema_file.h - files that schema documents name.
#pragma once

#include <optional>
#include <string>

namespace xsd2c {

// Reads a whole file. On failure nothing, with the system's reason.
std::optional<std::string> readFile(const std::string &path, std::string &reason);

// By what one file is known whatever path leads to it.
std::string fileIdentity(const std::string &path);

// The path of a schemaLocation, which is relative to the document it stands in. Nothing for a URL
// that names no file.
std::optional<std::string> pathOfLocation(const std::string &location, const std::string &document);

}  // namespace xsd2c
