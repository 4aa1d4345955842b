#include "schemas.h"

#include <dlfcn.h>

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <new>

#include "failure.h"
#include "text.h"
#include "xsd2c/c/c_unit.h"
#include "xsd2c/records/compile.h"
#include "xsd2c/records/memory_unit.h"
#include "xsd2c/xsd/read_schema.h"

namespace tool {

struct Schemas::Document {
    xsd2c::Records records;
};

class Schemas::Plugin {
  public:
    explicit Plugin(const std::string &path) {
        // A name without a slash would be looked for where libraries lie.
        const std::string file = path.find('/') == path.npos ? "./" + path : path;
        handle_ = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
        if (!handle_) throw Failure(kTrouble, dlerror());
        const std::string unit = unitOf(path);
        register_ = find("SchemaReg_" + unit, path);
        deregister_ = find("SchemaDereg_" + unit, path);
    }
    Plugin(const Plugin &) = delete;
    Plugin &operator=(const Plugin &) = delete;
    ~Plugin() {
        if (handle_) dlclose(handle_);
    }

    std::uint32_t registerWith(SchemaRoot &root) const { return register_(&root); }
    void deregisterFrom(SchemaRoot &root) const { deregister_(&root); }

  private:
    using Function = std::uint32_t (*)(SchemaRoot *);

    // "switch" of "plugins/libswitch.so.1".
    static std::string unitOf(const std::string &path) {
        std::string name = std::filesystem::path(path).filename().string();
        if (name.starts_with("lib")) name.erase(0, 3);
        return xsd2c::unitNameOf(name.substr(0, name.find(".so"))).schema;
    }

    Function find(const std::string &symbol, const std::string &path) const {
        void *address = dlsym(handle_, symbol.c_str());
        if (!address) {
            dlclose(handle_);
            throw Failure(kTrouble, printable(path) + ": there is no function " + symbol);
        }
        return reinterpret_cast<Function>(address);
    }

    void *handle_ = nullptr;
    Function register_ = nullptr;
    Function deregister_ = nullptr;
};

Schemas::Schemas() {
    Schema_InitRoot(&root_);
}

Schemas::~Schemas() {
    for (const auto &plugin : plugins_) plugin->deregisterFrom(root_);
    for (const auto &document : documents_) xsd2c::deregisterRecords(document->records, root_);
    Schema_ExitRoot(&root_);
}

void Schemas::addDocument(const std::string &path) {
    xsd2c::Diagnostics diagnostics;
    xsd2c::Components components;
    auto document = std::make_unique<Document>();
    xsd2c::readSchema(path, components, diagnostics);
    if (!diagnostics.failed()) {
        xsd2c::compileSchema(components, document->records, diagnostics);
    }
    std::fputs(diagnostics.text().c_str(), stderr);
    if (diagnostics.failed()) throw Failure(kTrouble, "");
    documents_.push_back(std::move(document));
    if (xsd2c::registerRecords(documents_.back()->records, root_) != XML_OK) {
        throw std::bad_alloc();
    }
}

void Schemas::addPlugin(const std::string &path) {
    plugins_.push_back(std::make_unique<Plugin>(path));
    if (plugins_.back()->registerWith(root_) != XML_OK) throw std::bad_alloc();
}

}  // namespace tool
