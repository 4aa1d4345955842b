#include "select_jobs.h"

#include <cstdio>
#include <map>
#include <utility>

#include "selector.h"

namespace bench {
namespace {

constexpr const Selector *kSelectors[] = {
    &kCompactXmlSelector,
#ifdef BENCH_HAS_PUGIXML
    &kPugixmlPathSelector,
    &kPugixmlXPathSelector,
#endif
#ifdef BENCH_HAS_LIBXML2
    &kLibxml2XPathSelector,
#endif
};

struct Target {
    std::string_view kind;  // of the document
    const char *job;
    const char *names;
    const char *prefixed;
};

// The documents hold each of these elements once (generate.cpp).
constexpr Target kTargets[] = {
    {"configuration", "select-near", "system/hostname", "s:system/s:hostname"},
    {"configuration", "select-far", "management/contact", "s:management/s:contact"},
    {"configuration", "select-last", "revision/value", "s:revision/s:value"},
    {"rpc", "select-near", "edit-config/default-operation", "n:edit-config/n:default-operation"},
    {"rpc", "select-far", "edit-config/config/interfaces/management/contact",
     "n:edit-config/n:config/i:interfaces/i:management/i:contact"},
    {"rpc", "select-last", "edit-config/config/interfaces/revision/value",
     "n:edit-config/n:config/i:interfaces/i:revision/i:value"},
};

class SelectWork : public Work {
  public:
    explicit SelectWork(std::unique_ptr<Selection> selection) : selection_(std::move(selection)) {}

    bool run() override { return selection_->text() != nullptr; }

  private:
    std::unique_ptr<Selection> selection_;
};

std::string textOf(const Selector &selector, const Document &document, const Route &route) {
    const auto selection = selector.select(document, route);
    const char *text = selection->text();
    return text ? text : "";
}

// All selectors must find the same text.
bool findSame(const Document &document, const Target &target, const Route &route) {
    const std::string expected = textOf(kCompactXmlSelector, document, route);
    bool same = !expected.empty();
    for (const Selector *selector : kSelectors) {
        const std::string found = textOf(*selector, document, route);
        if (found == expected) continue;
        std::fprintf(stderr, "%s/%s: %s finds \"%s\", compactxml \"%s\"\n", target.job,
                     document.label.c_str(), selector->name, found.c_str(), expected.c_str());
        same = false;
    }
    return same;
}

bool agree(const Document &document, const Target &target, const Route &route) {
    static std::map<std::pair<const Document *, const Target *>, bool> agreed;
    const auto [at, isNew] = agreed.try_emplace({&document, &target}, false);
    if (isNew) at->second = findSame(document, target, route);
    return at->second;
}

void add(Jobs &jobs, const Document &document, const Target &target, const Selector &selector) {
    const auto prepare = [&document, &target, &selector]() -> std::unique_ptr<Work> {
        const Route route{target.names, target.prefixed};
        if (!agree(document, target, route)) return nullptr;
        return std::make_unique<SelectWork>(selector.select(document, route));
    };
    jobs.push_back({std::string(target.job) + "/" + document.label + "/" + selector.name, 0,
                    Place::kHere, prepare});
}

}  // namespace

void addSelectJobs(Jobs &jobs, const Document &document) {
    if (document.bytes.size() > 2000000) return;
    for (const Target &target : kTargets) {
        if (target.kind != document.kind()) continue;
        for (const Selector *selector : kSelectors) add(jobs, document, target, *selector);
    }
}

}  // namespace bench
