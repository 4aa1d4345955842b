#include <cstdio>

#include "compactxml.h"
#include "loader.h"
#include "schema.h"
#include "xsd2c/records/compile.h"
#include "xsd2c/records/memory_unit.h"
#include "xsd2c/xsd/read_schema.h"

namespace bench {
namespace {

bool compile(const std::string &file, xsd2c::Records &records) {
    xsd2c::Diagnostics diagnostics;
    xsd2c::Components components;
    xsd2c::readSchema(file, components, diagnostics);
    if (!diagnostics.failed()) xsd2c::compileSchema(components, records, diagnostics);
    if (diagnostics.failed()) std::fputs(diagnostics.text().c_str(), stderr);
    return !diagnostics.failed();
}

bool registerAndGiveUp(const xsd2c::Records &records) {
    SchemaRoot root;
    Schema_InitRoot(&root);
    const bool done = xsd2c::registerRecords(records, root) == XML_OK;
    xsd2c::deregisterRecords(records, root);
    Schema_ExitRoot(&root);
    return done;
}

bool load(const std::string &file) {
    xsd2c::Records records;
    return compile(file, records) && registerAndGiveUp(records);
}

class RegisterRecords final : public Work {
  public:
    bool compileFile(const std::string &file) { return compile(file, records_); }
    bool run() override { return registerAndGiveUp(records_); }

  private:
    xsd2c::Records records_;
};

class RegisterUnit final : public Work {
  public:
    bool run() override {
        SchemaRoot root;
        Schema_InitRoot(&root);
        const bool done = kSwitchSchema.registerUnit(&root) == XML_OK;
        kSwitchSchema.deregisterUnit(&root);
        Schema_ExitRoot(&root);
        return done;
    }
};

}  // namespace

const Loader kCompilingLoader = {"compactxml", load};

std::unique_ptr<Work> prepareUnit() {
    return std::make_unique<RegisterUnit>();
}

std::unique_ptr<Work> prepareRecords(const std::string &file) {
    auto work = std::make_unique<RegisterRecords>();
    if (!work->compileFile(file)) return nullptr;
    return work;
}

}  // namespace bench
