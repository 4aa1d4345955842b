#include "options.h"

#include <string_view>

#include "documents.h"

namespace bench {
namespace {

// The value behind "--name=", or null.
const char *valueOf(std::string_view argument, std::string_view option) {
    return argument.starts_with(option) ? argument.data() + option.size() : nullptr;
}

bool takeFlag(std::string_view argument, Options &options) {
    struct Flag {
        std::string_view name;
        bool Options::*member;
    };
    static constexpr Flag kFlags[] = {{"--small", &Options::small},
                                      {"--growth", &Options::growth},
                                      {"--large", &Options::large},
                                      {"--list", &Options::list}};
    for (const Flag &flag : kFlags) {
        if (argument == flag.name) return options.*flag.member = true;
    }
    return false;
}

bool take(const char *argument, Options &options) {
    if (const char *label = valueOf(argument, "--document=")) {
        options.documents.emplace_back(label);
    } else if (const char *name = valueOf(argument, "--once=")) {
        options.once = name;
    } else if (!takeFlag(argument, options)) {
        if (valueOf(argument, "--benchmark_out=")) options.writesFile = true;
        return false;
    }
    return true;
}

// "parse/configuration/10M/expat" is about "configuration/10M".
std::string documentOf(const std::string &job) {
    const std::size_t begin = job.find('/');
    const std::size_t end = job.rfind('/');
    return begin == job.npos || begin == end ? std::string()
                                             : job.substr(begin + 1, end - begin - 1);
}

void append(std::vector<std::string> &labels, const std::vector<std::string> &more) {
    labels.insert(labels.end(), more.begin(), more.end());
}

}  // namespace

Options takeOptions(int &argc, char **argv) {
    Options options;
    int kept = 0;
    for (int i = 0; i < argc; ++i) {
        if (i == 0 || !take(argv[i], options)) argv[kept++] = argv[i];
    }
    argc = kept;
    argv[kept] = nullptr;
    return options;
}

std::vector<std::string> chosenDocuments(const Options &options) {
    if (!options.once.empty()) return {documentOf(options.once)};
    if (!options.documents.empty()) return options.documents;
    std::vector<std::string> labels;
    if (options.small) append(labels, smallDocuments());
    if (options.growth) append(labels, growthDocuments());
    if (labels.empty()) append(labels, usualDocuments());
    if (options.large) append(labels, largeDocuments());
    return labels;
}

}  // namespace bench
