// What is said of the schemas of examples/schemas, and of those that are broken. What they say of
// documents is in back_ends_test.cpp.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "compactxml.h"
#include "xsd2c/records/compile.h"
#include "xsd2c/records/memory_unit.h"
#include "xsd2c/xsd/read_schema.h"

namespace {

namespace fs = std::filesystem;

class CompiledSchema {
  public:
    explicit CompiledSchema(const std::string &path) {
        Schema_InitRoot(&root_);
        xsd2c::Components components;
        xsd2c::readSchema(path, components, diagnostics_);
        if (!diagnostics_.failed()) xsd2c::compileSchema(components, records_, diagnostics_);
        // Components own the names of files in the diagnostics.
        text_ = diagnostics_.text();
        if (failed()) return;
        EXPECT_EQ(xsd2c::registerRecords(records_, root_), XML_OK) << path;
    }
    CompiledSchema(const CompiledSchema &) = delete;
    CompiledSchema &operator=(const CompiledSchema &) = delete;
    ~CompiledSchema() {
        if (!failed()) xsd2c::deregisterRecords(records_, root_);
        Schema_ExitRoot(&root_);
    }

    bool failed() const { return diagnostics_.failed(); }
    const std::string &diagnostics() const { return text_; }

  private:
    xsd2c::Diagnostics diagnostics_;
    xsd2c::Records records_;
    SchemaRoot root_;
    std::string text_;
};

std::vector<fs::path> filesIn(const char *directory, const char *extension) {
    std::vector<fs::path> files;
    for (const auto &entry : fs::directory_iterator(directory)) {
        if (entry.path().extension() == extension) files.push_back(entry.path());
    }
    return files;
}

// What is not enforced is told of; a schema without such things compiles without a word.
TEST(ExampleSchemas, CompileWithoutWarningsWhereAllIsEnforced) {
    for (const char *name : {"switch", "rpc", "routing", "firewall"}) {
        const CompiledSchema schema(std::string(EXAMPLE_SCHEMAS "/") + name + ".xsd");
        EXPECT_EQ(schema.diagnostics(), "");
    }
    for (const char *name : {"policy", "facets", "lan"}) {
        const CompiledSchema schema(std::string(EXAMPLE_SCHEMAS "/") + name + ".xsd");
        EXPECT_NE(schema.diagnostics().find("is not enforced"), std::string::npos) << name;
    }
}

// "9:3: simpleType 'Port' is defined twice" of the comment at the beginning of a broken schema.
std::string expectedMistake(const fs::path &path) {
    std::ifstream file(path);
    std::string line;
    for (int i = 0; i < 3; ++i) std::getline(file, line);
    const std::size_t begin = line.find_first_not_of(' ');
    return begin == line.npos ? "" : line.substr(begin, line.rfind(" -->") - begin);
}

TEST(ExampleSchemas, AreBrokenAsTheySay) {
    const std::vector<fs::path> files = filesIn(EXAMPLE_SCHEMAS "/broken", ".xsd");
    ASSERT_GE(files.size(), 12u);
    for (const fs::path &path : files) {
        const CompiledSchema schema(path.string());
        EXPECT_TRUE(schema.failed()) << path;
        std::string expected = expectedMistake(path);
        const std::size_t behindPlace = expected.find(": ");
        ASSERT_NE(behindPlace, expected.npos) << path;
        expected.insert(behindPlace, ": error");
        expected.insert(0, path.string() + ":");
        EXPECT_EQ(schema.diagnostics().substr(0, expected.size()), expected);
    }
}

}  // namespace
