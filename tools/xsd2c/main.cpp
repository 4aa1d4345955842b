// xsd2c: compiles XML Schema documents to C.
#include <cstdio>
#include <exception>
#include <filesystem>
#include <map>
#include <memory>
#include <new>
#include <set>
#include <string>
#include <vector>

#include "xsd2c/arguments.h"
#include "xsd2c/c/c_unit.h"
#include "xsd2c/output_files.h"
#include "xsd2c/records/compile.h"
#include "xsd2c/records/records.h"
#include "xsd2c/xsd/diagnostics.h"
#include "xsd2c/xsd/read_schema.h"

namespace xsd2c {
namespace {

constexpr int kSuccess = 0, kRefused = 1, kTrouble = 2;

// Two schemas that cannot be compiled in one run.
class Clash : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct Unit {
    UnitName name;
    std::string header;
    std::string source;
    std::vector<std::string> documents;  // that it is made of
};

// Nothing when the schema is refused.
std::unique_ptr<Unit> compileUnit(const std::string &path, const Arguments &arguments) {
    Diagnostics diagnostics{arguments.strict};
    Components components;
    Records records;
    readSchema(path, components, diagnostics);
    if (!diagnostics.failed()) compileSchema(components, records, diagnostics);
    std::fputs(diagnostics.text().c_str(), stderr);
    if (diagnostics.failed()) return nullptr;
    auto unit = std::make_unique<Unit>();
    unit->name = unitNameOf(path, arguments.prefix);
    unit->header = headerText(unit->name, records);
    unit->source = sourceText(unit->name, records);
    unit->documents.assign(components.files.begin(), components.files.end());
    return unit;
}

// Two units whose names are one would overwrite each other, or could not be linked together.
void checkNames(const std::vector<std::string> &schemas, const std::string &prefix) {
    std::map<std::string, std::string> seen = {{"xml_schema_buildin", "the built-in schema"}};
    for (const std::string &path : schemas) {
        const UnitName name = unitNameOf(path, prefix);
        const auto [other, isNew] = seen.emplace(name.schema, path);
        if (!isNew) {
            throw Clash(path + " and " + other->second + " are both called '" + name.schema + "'");
        }
    }
}

int run(const Arguments &arguments) {
    checkNames(arguments.schemas, arguments.prefix);
    std::vector<std::unique_ptr<Unit>> units;
    bool refused = false;
    for (const std::string &path : arguments.schemas) {
        units.push_back(compileUnit(path, arguments));
        if (!units.back()) refused = true;
    }
    if (refused) return kRefused;

    OutputFiles files;
    std::vector<std::string> targets, sources;
    for (const std::unique_ptr<Unit> &unit : units) {
        const std::string base =
            (std::filesystem::path(arguments.directory) / unit->name.schema).string();
        files.add(base + ".h", unit->header);
        files.add(base + ".c", unit->source);
        targets.insert(targets.end(), {base + ".c", base + ".h"});
        sources.insert(sources.end(), unit->documents.begin(), unit->documents.end());
    }
    if (!arguments.depfile.empty()) files.add(arguments.depfile, makeRule(targets, sources));
    files.commit();
    return kSuccess;
}

int print(const char *text) {
    return std::fputs(text, stdout) < 0 || std::fflush(stdout) != 0 ? kTrouble : kSuccess;
}

int fail(const char *text) {
    std::fprintf(stderr, "xsd2c: %s\n", text);
    return kTrouble;
}

}  // namespace
}  // namespace xsd2c

int main(int count, char **values) {
    using namespace xsd2c;
    try {
        const Arguments arguments = readArguments(count, values);
        if (arguments.help) return print(kHelp);
        if (arguments.version) return print("xsd2c " COMPACTXML_VERSION "\n");
        return run(arguments);
    } catch (const UsageError &error) {
        fail(error.what());
        std::fputs("Try 'xsd2c --help'.\n", stderr);
    } catch (const std::bad_alloc &) {
        fail("memory exhausted");
    } catch (const std::exception &error) {
        fail(error.what());
    }
    return kTrouble;
}
