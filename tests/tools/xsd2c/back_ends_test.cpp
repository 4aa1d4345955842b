// What the schemas of examples/schemas say of the documents of their cases; and that the two back
// ends say the same: the records that are registered as they lie in memory, and the C that is
// written of them, compiled and loaded.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <set>
#include <string>

#include "tests/tools/xsd2c/example_cases.h"
#include "tests/tools/xsd2c/support/built_unit.h"
#include "tests/tools/xsd2c/support/compiled.h"
#include "xsd2c/c/c_unit.h"
#include "xsd2c/records/compile.h"
#include "xsd2c/records/memory_unit.h"
#include "xsd2c/xsd/read_schema.h"

namespace {

namespace fs = std::filesystem;

// Instrumented, the C library's expressions take long over all documents: a part of them will do.
#ifdef XSD2C_INSTRUMENTED
constexpr int kEvery = 6;
#else
constexpr int kEvery = 1;
#endif

struct DeleteTree {
    void operator()(XML_DOM_Node *node) const { XML_DOM_DelNode(node); }
};

// A schema with what both back ends make of it.
class BothBackEnds {
  public:
    explicit BothBackEnds(const std::string &path) : unit_(xsd2c::unitNameOf(path)) {
        xsd2c::Diagnostics diagnostics;
        xsd2c::Components components;
        xsd2c::readSchema(path, components, diagnostics);
        xsd2c::compileSchema(components, records_, diagnostics);
        EXPECT_FALSE(diagnostics.failed()) << diagnostics.text();
        Schema_InitRoot(&memory_);
        EXPECT_EQ(xsd2c::registerRecords(records_, memory_), std::uint32_t{XML_OK});
        Schema_InitRoot(&plugin_);
        built_ = std::make_unique<support::BuiltUnit>(compile());
        EXPECT_EQ(built_->call("SchemaReg_" + unit_.schema, &plugin_), std::uint32_t{XML_OK});
    }
    BothBackEnds(const BothBackEnds &) = delete;
    BothBackEnds &operator=(const BothBackEnds &) = delete;
    ~BothBackEnds() {
        built_->call("SchemaDereg_" + unit_.schema, &plugin_);
        Schema_ExitRoot(&plugin_);
        xsd2c::deregisterRecords(records_, memory_);
        Schema_ExitRoot(&memory_);
    }

    const xsd2c::UnitName &unit() const { return unit_; }
    const xsd2c::Records &records() const { return records_; }

    // Returns whether the document is valid.
    bool expectSameVerdict(const std::string &document, const std::string &what) const {
        const std::unique_ptr<XML_DOM_Node, DeleteTree> tree{XML_DOM_BuildTreeByMem(
            document.data(), static_cast<std::uint32_t>(document.size()), 0, nullptr)};
        SchemaErrorInfo a{}, b{};
        EXPECT_EQ(Schema_ValidateXml(tree.get(), &memory_, &a), std::uint32_t{XML_OK}) << what;
        EXPECT_EQ(Schema_ValidateXml(tree.get(), &plugin_, &b), std::uint32_t{XML_OK}) << what;
        EXPECT_EQ(a.code, b.code) << what;
        EXPECT_EQ(a.node, b.node) << what;
        EXPECT_EQ(XML_Strcmp(a.name, b.name), 0) << what;
        EXPECT_EQ(XML_Strcmp(a.ns, b.ns), 0) << what;
        EXPECT_EQ(XML_Strcmp(a.attrName, b.attrName), 0) << what;
        EXPECT_EQ(XML_Strcmp(a.attrNs, b.attrNs), 0) << what;
        EXPECT_STREQ(a.text, b.text) << what;
        return a.code == 0;
    }

  private:
    std::string compile() const {
        directory_.write(unit_.schema + ".h", xsd2c::headerText(unit_, records_));
        const std::string source =
            directory_.write(unit_.schema + ".c", xsd2c::sourceText(unit_, records_));
        const std::string object = directory_.path() + "/" + unit_.schema + ".so";
        const std::string line = "cc -std=c11 -O0 -fPIC -shared -I" COMPACTXML_SOURCE_DIR
                                 "/include -o " +
                                 object + " " + source;
        EXPECT_EQ(std::system(line.c_str()), 0);
        return object;
    }

    TemporaryDirectory directory_;
    xsd2c::UnitName unit_;
    xsd2c::Records records_;
    SchemaRoot memory_;
    SchemaRoot plugin_;
    std::unique_ptr<support::BuiltUnit> built_;
};

std::vector<std::string> caseFiles() {
    std::vector<std::string> files;
    for (const auto &entry : fs::directory_iterator(EXAMPLE_SCHEMAS)) {
        if (entry.path().extension() == ".cases") files.push_back(entry.path().string());
    }
    return files;
}

class BackEnds : public ::testing::TestWithParam<std::string> {};

TEST_P(BackEnds, GiveTheRightVerdictsAndTheSameRecords) {
    std::map<std::string, std::unique_ptr<BothBackEnds>> schemas;
    int number = 0, valid = 0, invalid = 0;
    for (const examples::Case &one : examples::readCases(GetParam())) {
        if (number++ % kEvery != 0) continue;
        std::unique_ptr<BothBackEnds> &schema = schemas[one.schema];
        if (!schema) schema = std::make_unique<BothBackEnds>(one.schema);
        const std::string what = one.file + ":" + std::to_string(one.line) + ": " + one.what;
        const bool isValid = schema->expectSameVerdict(examples::documentOf(one), what);
        EXPECT_EQ(isValid, one.valid) << what;
        ++(isValid ? valid : invalid);
    }
    EXPECT_GE(valid, 10 / kEvery);
    EXPECT_GE(invalid, 30 / kEvery);
    // Compiled by every compiler there is, for C and for C++, without a warning.
    for (const auto &[path, schema] : schemas) {
        support::expectSameRecords(schema->unit(), schema->records());
    }
}

std::string nameOf(const std::string &path) {
    return fs::path(path).stem().string();
}

INSTANTIATE_TEST_SUITE_P(Examples, BackEnds, ::testing::ValuesIn(caseFiles()),
                         [](const auto &test) { return nameOf(test.param); });

TEST(BackEnds, WriteTheSameWhereverTheSchemaLies) {
    const TemporaryDirectory here, there;
    const std::string text =
        "<xs:schema xmlns:xs=\"http://www.w3.org/2001/XMLSchema\">"
        "<xs:element name=\"a\" type=\"xs:token\"/></xs:schema>";
    std::set<std::string> written;
    for (const std::string &path : {here.write("x.xsd", text), there.write("sub/x.xsd", text)}) {
        xsd2c::Diagnostics diagnostics;
        xsd2c::Components components;
        xsd2c::Records records;
        xsd2c::readSchema(path, components, diagnostics);
        xsd2c::compileSchema(components, records, diagnostics);
        const xsd2c::UnitName unit = xsd2c::unitNameOf(path);
        written.insert(xsd2c::headerText(unit, records) + xsd2c::sourceText(unit, records));
    }
    EXPECT_EQ(written.size(), 1u);
}

}  // namespace
