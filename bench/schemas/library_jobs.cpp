// Loading the libraries themselves, each in a process that has nothing but the C library yet.
#include <cstdio>
#include <string>

#include "job.h"

namespace bench {
namespace {

struct Library {
    const char *contestant;
    const char *file;  // what dlopen is given
};

constexpr Library kLibraries[] = {
    {"compactxml", BENCH_LIBRARY},    {"expat", "libexpat.so.1"},
    {"pugixml", "libpugixml.so.1"},   {"libxml2", "libxml2.so.2"},
    {"tinyxml2", "libtinyxml2.so.9"}, {"xerces", "libxerces-c-3.2.so"},
};

class LoadLibrary final : public Work {
  public:
    explicit LoadLibrary(const char *file)
        : command_(std::string("'") + BENCH_LOAD_PROGRAM + "' '" + file + "'") {}

    bool run() override {
        std::FILE *output = popen(command_.c_str(), "r");
        if (!output) return false;
        long long nanoseconds = 0;
        const bool read = std::fscanf(output, "%lld", &nanoseconds) == 1;
        seconds_ = static_cast<double>(nanoseconds) / 1e9;
        return pclose(output) == 0 && read;
    }
    double seconds() const override { return seconds_; }

  private:
    std::string command_;
    double seconds_ = 0;
};

// Null for a library that is not installed; dlopen has said so on stderr.
std::unique_ptr<Work> prepare(const Library &library) {
    auto work = std::make_unique<LoadLibrary>(library.file);
    if (!work->run()) return nullptr;
    return work;
}

}  // namespace

void addLibraryJobs(Jobs &jobs) {
    for (const Library &library : kLibraries) {
        jobs.push_back({std::string("load-library/all/1/") + library.contestant, 0,
                        Place::kFreshProcess, [&library] { return prepare(library); }});
    }
}

}  // namespace bench
