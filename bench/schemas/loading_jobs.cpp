// "load-schema": from the schema's text to a schema that documents can be validated by, and giving
// it up again; "compactxml-unit" has only to register what xsd2c compiled before. "register" is the
// same for records of any number of declarations.
#include <cstdio>

#include "generated_schema.h"
#include "loader.h"
#include "schema.h"
#include "schema_jobs.h"

namespace bench {
namespace {

// The elements, attributes, types and groups of switch.xsd and all that it imports.
constexpr const char kSwitchSize[] = "526";
constexpr int kGeneratedSizes[] = {10, 1000, 10000};

class LoadFile final : public Work {
  public:
    LoadFile(const Loader &loader, std::string file) : loader_(loader), file_(std::move(file)) {}
    bool run() override { return loader_.load(file_); }

  private:
    const Loader &loader_;
    std::string file_;
};

class LoadGenerated final : public Work {
  public:
    LoadGenerated(const Loader &loader, int declarations)
        : loader_(loader), schema_(declarations) {}
    bool ready() const { return schema_.ready(); }
    bool run() override { return loader_.load(schema_.file()); }

  private:
    const Loader &loader_;
    GeneratedSchema schema_;
};

// Null, and said so, if the first run goes wrong.
std::unique_ptr<Work> tried(std::unique_ptr<Work> work, const char *contestant) {
    if (work && work->run()) return work;
    std::fprintf(stderr, "%s does not load the schema\n", contestant);
    return nullptr;
}

std::unique_ptr<Work> prepareGenerated(const Loader &loader, int declarations) {
    auto work = std::make_unique<LoadGenerated>(loader, declarations);
    if (!work->ready()) return nullptr;
    return tried(std::move(work), loader.name);
}

std::unique_ptr<Work> prepareRegistering(int declarations) {
    const GeneratedSchema schema(declarations);
    if (!schema.ready()) return nullptr;
    return tried(prepareRecords(schema.file()), "compactxml");
}

void add(Jobs &jobs, const std::string &name, std::function<std::unique_ptr<Work>()> prepare) {
    jobs.push_back({name, 0, Place::kHere, std::move(prepare)});
}

void addSwitch(Jobs &jobs) {
    const std::string name = std::string("load-schema/switch/") + kSwitchSize + "/";
    add(jobs, name + "compactxml-unit", [] { return tried(prepareUnit(), "compactxml-unit"); });
    for (const Loader *loader : kLoaders) {
        add(jobs, name + loader->name, [loader] {
            return tried(std::make_unique<LoadFile>(*loader, kSwitchSchema.file), loader->name);
        });
    }
}

void addGenerated(Jobs &jobs, int declarations) {
    const std::string name = "/generated/" + std::to_string(declarations) + "/";
    add(jobs, "register" + name + "compactxml",
        [declarations] { return prepareRegistering(declarations); });
    for (const Loader *loader : kLoaders) {
        add(jobs, "load-schema" + name + loader->name,
            [loader, declarations] { return prepareGenerated(*loader, declarations); });
    }
}

}  // namespace

void addLoadingJobs(Jobs &jobs) {
    addSwitch(jobs);
    for (const int declarations : kGeneratedSizes) addGenerated(jobs, declarations);
}

}  // namespace bench
