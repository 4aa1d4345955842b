#include "tests/tools/xsd2c/support/built_unit.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <system_error>
#include <vector>

#include "tests/support/record_dump.h"

namespace support {
namespace {

namespace fs = std::filesystem;
using xsd2c::Records;
using xsd2c::TopObject;
using xsd2c::UnitName;

struct Compiler {
    const char *program;
    const char *options;
    bool isCxx;
};

constexpr Compiler kCompilers[] = {
    {"gcc", "-x c -std=c11", false},    {"clang", "-x c -std=c11", false},
    {"gcc", "-x c -std=c99", false},    {"clang", "-x c -std=c11 -O2", false},
    {"g++", "-x c++ -std=c++20", true}, {"clang++", "-x c++ -std=c++20", true},
    {"g++", "-x c++ -std=c++11", true}, {"clang++", "-x c++ -std=c++11 -O2", true},
};

constexpr char kCommonOptions[] =
    " -Wall -Wextra -pedantic -Wshadow -Wconversion -Wsign-conversion -Wundef -Wcast-qual"
    " -Woverlength-strings -Werror -shared -fPIC -Wl,-z,relro -I'" COMPACTXML_SOURCE_DIR
    "/include' ";

std::string quoted(const fs::path &path) {
    return "'" + path.string() + "'";
}

bool isPresent(const Compiler &compiler) {
    const std::string line = std::string("command -v ") + compiler.program + " >/dev/null 2>&1";
    return std::system(line.c_str()) == 0;
}

std::string contentsOf(const fs::path &path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// The files of a unit, and what is made of them.
class UnitDirectory {
  public:
    UnitDirectory(const UnitName &unit, const Records &records) {
        std::string path = (fs::temp_directory_path() / "xsd2c-test-XXXXXX").string();
        if (!mkdtemp(path.data())) throw std::runtime_error("no directory for the unit");
        path_ = path;
        source_ = path_ / (unit.schema + ".c");
        std::ofstream(source_, std::ios::binary) << sourceText(unit, records);
        std::ofstream(path_ / (unit.schema + ".h"), std::ios::binary) << headerText(unit, records);
    }
    UnitDirectory(const UnitDirectory &) = delete;
    UnitDirectory &operator=(const UnitDirectory &) = delete;
    ~UnitDirectory() {
        std::error_code ignored;
        fs::remove_all(path_, ignored);
    }

    // Makes a shared object, or throws what the compiler says.
    std::string build(const Compiler &compiler) {
        // Two objects of one name were one to the dynamic loader.
        const fs::path object = path_ / ("unit" + std::to_string(++built_) + ".so");
        const fs::path messages = path_ / "messages";
        const std::string line = std::string(compiler.program) + " " + compiler.options +
                                 (compiler.isCxx ? " -Wold-style-cast" : " -Wmissing-prototypes") +
                                 kCommonOptions + quoted(source_) + " -o " + quoted(object) + " >" +
                                 quoted(messages) + " 2>&1";
        if (std::system(line.c_str()) != 0) {
            throw std::runtime_error(line + "\n" + contentsOf(messages));
        }
        return object.string();
    }

  private:
    fs::path path_;
    fs::path source_;
    int built_ = 0;
};

class Root {
  public:
    Root() { Schema_InitRoot(&root); }
    Root(const Root &) = delete;
    Root &operator=(const Root &) = delete;
    ~Root() { Schema_ExitRoot(&root); }

    SchemaRoot root;
};

}  // namespace

BuiltUnit::BuiltUnit(const std::string &object)
    : handle_(dlopen(object.c_str(), RTLD_NOW | RTLD_LOCAL)) {
    if (!handle_) throw std::runtime_error(dlerror());
}

BuiltUnit::~BuiltUnit() {
    dlclose(handle_);
}

void *BuiltUnit::address(const std::string &name) const {
    void *found = dlsym(handle_, name.c_str());
    if (!found) throw std::runtime_error("the unit has no " + name);
    return found;
}

std::uint32_t BuiltUnit::call(const std::string &function, SchemaRoot *root) const {
    return reinterpret_cast<std::uint32_t (*)(SchemaRoot *)>(address(function))(root);
}

const void *BuiltUnit::access(const std::string &accessor) const {
    return reinterpret_cast<const void *(*)()>(address(accessor))();
}

void withEachCompiler(const UnitName &unit, const Records &records,
                      const std::function<void(const BuiltUnit &)> &check) {
    UnitDirectory directory(unit, records);
    int cCompilers = 0, cxxCompilers = 0;
    for (const Compiler &compiler : kCompilers) {
        if (!isPresent(compiler)) continue;
        SCOPED_TRACE(std::string(compiler.program) + " " + compiler.options);
        ++(compiler.isCxx ? cxxCompilers : cCompilers);
        try {
            check(BuiltUnit(directory.build(compiler)));
        } catch (const std::runtime_error &error) {
            ADD_FAILURE() << error.what();
        }
    }
    EXPECT_GT(cCompilers, 0);
    EXPECT_GT(cxxCompilers, 0);
}

std::string dumpInMemory(const Records &records) {
    Root root;
    std::vector<SchemaTopObject> registered;
    for (const TopObject &top : records.top) {
        if (top.object.kind != SCHEMA_KIND_MODEL_GROUP) registered.push_back(top.object);
    }
    for (const SchemaTopObject &object : registered) {
        EXPECT_EQ(Schema_RegTopObject(&root.root, &object), XML_OK);
    }
    std::string text = dumpRecords(root.root);
    for (const SchemaTopObject &object : registered) Schema_DeregTopObject(&root.root, &object);
    return text;
}

std::string dumpBuilt(const BuiltUnit &built, const UnitName &unit) {
    Root root;
    const std::string empty = dumpRecords(root.root);
    EXPECT_EQ(built.call("SchemaReg_" + unit.schema, &root.root), XML_OK);
    std::string text = dumpRecords(root.root);
    EXPECT_EQ(built.call("SchemaDereg_" + unit.schema, &root.root), XML_OK);
    EXPECT_EQ(dumpRecords(root.root), empty);
    return text;
}

void expectSameRecords(const UnitName &unit, const Records &records) {
    const std::string expected = dumpInMemory(records);
    withEachCompiler(unit, records,
                     [&](const BuiltUnit &built) { EXPECT_EQ(dumpBuilt(built, unit), expected); });
}

}  // namespace support
