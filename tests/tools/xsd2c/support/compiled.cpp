#include "tests/tools/xsd2c/support/compiled.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "xsd2c/records/compile.h"
#include "xsd2c/records/memory_unit.h"
#include "xsd2c/xsd/read_schema.h"

TemporaryDirectory::TemporaryDirectory() {
    path_ = (std::filesystem::temp_directory_path() / ("xsd2c-" + std::string(6, 'X'))).string();
    if (!mkdtemp(path_.data())) std::abort();
}

TemporaryDirectory::~TemporaryDirectory() {
    std::filesystem::remove_all(path_);
}

std::string TemporaryDirectory::write(std::string_view name, std::string_view text) const {
    const std::filesystem::path path = std::filesystem::path(path_) / name;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << text;
    return path.string();
}

namespace {

std::string schemaText(std::string_view declarations) {
    return "<xs:schema xmlns:xs=\"http://www.w3.org/2001/XMLSchema\" xmlns:t=\"urn:t\" "
           "targetNamespace=\"urn:t\" elementFormDefault=\"qualified\">\n" +
           std::string(declarations) + "\n</xs:schema>\n";
}

std::string without(std::string text, const std::string &part) {
    for (std::size_t at; (at = text.find(part)) != text.npos;) text.erase(at, part.size());
    return text;
}

}  // namespace

CompiledSchema::CompiledSchema(std::string_view declarations) {
    compile({{"t.xsd", schemaText(declarations)}}, "t.xsd");
}

CompiledSchema::CompiledSchema(const std::map<std::string, std::string> &files,
                               const std::string &first) {
    compile(files, first);
}

CompiledSchema::~CompiledSchema() {
    if (!failed_) xsd2c::deregisterRecords(*records_, root_);
    Schema_ExitRoot(&root_);
}

void CompiledSchema::compile(const std::map<std::string, std::string> &files,
                             const std::string &first) {
    const TemporaryDirectory directory;
    for (const auto &[name, text] : files) directory.write(name, text);
    components_ = std::make_unique<xsd2c::Components>();
    records_ = std::make_unique<xsd2c::Records>();
    xsd2c::Diagnostics diagnostics;
    xsd2c::readSchema(directory.path() + "/" + first, *components_, diagnostics);
    if (!diagnostics.failed()) xsd2c::compileSchema(*components_, *records_, diagnostics);
    failed_ = diagnostics.failed();
    messages_ = without(diagnostics.text(), directory.path() + "/");
    Schema_InitRoot(&root_);
    if (failed_) return;
    EXPECT_EQ(xsd2c::registerRecords(*records_, root_), 0u);
}

std::string CompiledSchema::verdict(std::string_view document) const {
    if (failed_) return "the schema is refused:\n" + messages_;
    XML_DOM_Node *tree = XML_DOM_BuildTreeByMem(
        document.data(), static_cast<std::uint32_t>(document.size()), 0, nullptr);
    if (!tree) return "the document is not well-formed";
    SchemaErrorInfo error{};
    EXPECT_EQ(Schema_ValidateXml(tree, &root_, &error), std::uint32_t{XML_OK});
    char message[2048] = "";
    Schema_GetErrorDesc(&error, sizeof message, message);
    XML_DOM_DelNode(tree);
    return error.code == 0 ? "" : message;
}
