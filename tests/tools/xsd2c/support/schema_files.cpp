#include "tests/tools/xsd2c/support/schema_files.h"

#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <stdexcept>

SchemaFiles::SchemaFiles() {
    std::string name =
        (std::filesystem::temp_directory_path() / ("xsd2c-" + std::string(6, 'X'))).string();
    if (!mkdtemp(name.data())) throw std::runtime_error("no directory for the test");
    directory_ = name;
}

SchemaFiles::~SchemaFiles() {
    std::error_code ignored;
    std::filesystem::remove_all(directory_, ignored);
}

void SchemaFiles::write(const std::string &name, std::string_view bytes) const {
    const std::filesystem::path file = directory_ / name;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream stream{file, std::ios::binary};
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!stream.flush()) throw std::runtime_error("the test cannot write " + file.string());
}

std::string SchemaFiles::shortened(std::string text) const {
    const std::string prefix = directory_.string() + "/";
    for (std::size_t at; (at = text.find(prefix)) != std::string::npos;) {
        text.erase(at, prefix.size());
    }
    return text;
}

std::string schemaText(std::string_view content, std::string_view attributes) {
    std::string text = "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'";
    if (!attributes.empty()) text += " " + std::string(attributes);
    return text + ">\n" + std::string(content) + "</xs:schema>\n";
}

std::string messagesOf(std::string_view document) {
    const SchemaFiles files;
    files.write("a.xsd", document);
    xsd2c::Components components;
    xsd2c::Diagnostics diagnostics;
    xsd2c::readSchema(files.path("a.xsd"), components, diagnostics);
    return files.shortened(diagnostics.text());
}
