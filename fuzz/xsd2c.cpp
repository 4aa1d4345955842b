// The schema compiler: any two documents, of which the first may include or import the second, give
// records or a message, and the same ones twice. Nothing is thrown.
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "compactxml.h"
#include "fuzz/support/converters.h"
#include "fuzz/support/fuzz_input.h"
#include "fuzz/support/require.h"
#include "fuzz/support/target.h"
#include "tests/support/record_dump.h"
#include "xsd2c/c/c_unit.h"
#include "xsd2c/records/compile.h"
#include "xsd2c/records/memory_unit.h"
#include "xsd2c/records/records.h"
#include "xsd2c/xsd/diagnostics.h"
#include "xsd2c/xsd/read_schema.h"

namespace {

namespace fs = std::filesystem;

// Where the two documents lie, until the program ends.
class Directory {
  public:
    Directory() {
        const char *base = std::getenv("TEST_TMPDIR");
        path_ = (base ? fs::path(base) : fs::temp_directory_path()) /
                ("fuzz-xsd2c-" + std::string(6, 'X'));
        std::string name = path_.string();
        fuzz::require(mkdtemp(name.data()) != nullptr, "no directory");
        path_ = name;
    }
    ~Directory() {
        std::error_code ignored;
        fs::remove_all(path_, ignored);
    }
    Directory(const Directory &) = delete;
    Directory &operator=(const Directory &) = delete;

    std::string write(const char *name, std::string_view text) const {
        const std::string path = (path_ / name).string();
        std::ofstream(path, std::ios::binary | std::ios::trunc) << text;
        return path;
    }

  private:
    fs::path path_;
};

// A document may name those two files alone: nothing else of this machine is to be read.
bool staysInside(std::string_view text) {
    constexpr std::string_view kAttribute = "schemaLocation";
    for (std::size_t at = text.find(kAttribute); at != text.npos;
         at = text.find(kAttribute, at + 1)) {
        const std::string_view value = text.substr(at + kAttribute.size());
        if (!value.starts_with("='a.xsd'") && !value.starts_with("='b.xsd'")) return false;
    }
    // Another spelling of the name in another encoding, or with references, would not be seen.
    return text.find('\0') == text.npos && text.find("encoding") == text.npos;
}

struct Compiled {
    bool failed = true;
    std::string messages;
    std::string output;
};

std::string registered(const xsd2c::Records &records) {
    SchemaRoot root;
    Schema_InitRoot(&root);
    fuzz::require(xsd2c::registerRecords(records, root) == 0, "records are not registered");
    std::string dump = support::dumpRecords(root);
    xsd2c::deregisterRecords(records, root);
    Schema_ExitRoot(&root);
    return dump;
}

Compiled compile(const std::string &path, bool strict) {
    Compiled compiled;
    xsd2c::Diagnostics diagnostics{strict};
    xsd2c::Components components;
    xsd2c::Records records;
    xsd2c::readSchema(path, components, diagnostics);
    if (!diagnostics.failed()) xsd2c::compileSchema(components, records, diagnostics);
    compiled.failed = diagnostics.failed();
    compiled.messages = diagnostics.text();
    if (!compiled.failed) {
        const xsd2c::UnitName name = xsd2c::unitNameOf(path);
        compiled.output = xsd2c::headerText(name, records) + xsd2c::sourceText(name, records) +
                          registered(records);
    }
    return compiled;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    static const Directory directory;
    fuzz::holdConverters();
    fuzz::FuzzInput input(data, size);
    const bool strict = (input.byte() & 1) != 0;
    const std::string_view first = input.string(), second = input.rest();
    if (!staysInside(first) || !staysInside(second)) return 0;
    const std::string path = directory.write("a.xsd", first);
    directory.write("b.xsd", second);

    const Compiled compiled = compile(path, strict);
    fuzz::require(!compiled.failed || compiled.messages.find(": error: ") != std::string::npos,
                  "a refusal without an error");
    fuzz::requireOr(compiled.failed || compiled.messages.find(": error: ") == std::string::npos,
                    "an error without a refusal", [&] { return compiled.messages; });
    const Compiled again = compile(path, strict);
    fuzz::requireSame(compiled.messages, again.messages, "other messages the second time");
    fuzz::requireSame(compiled.output, again.output, "another output the second time");
    return 0;
}
