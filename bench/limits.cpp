// What the machine gives at best: figures that no contestant's job can pass.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include "contestant.h"
#include "fresh_process.h"
#include "heap_plan.h"
#include "job.h"
#include "scan.h"

namespace bench {
namespace {

class CopyWork : public Work {
  public:
    explicit CopyWork(const Document &document)
        : source_(document.bytes), target_(source_.size(), '\0') {}

    bool run() override {
        std::memcpy(target_.data(), source_.data(), source_.size());
        benchmark::DoNotOptimize(target_.data());
        benchmark::ClobberMemory();
        return true;
    }

  private:
    const std::string &source_;
    std::string target_;
};

// Looks for a byte that no document holds.
class FindWork : public Work {
  public:
    explicit FindWork(const Document &document) : source_(document.bytes) {}

    bool run() override {
        const char *bytes = source_.data();
        benchmark::DoNotOptimize(bytes);
        return std::memchr(bytes, 0x01, source_.size()) == nullptr;
    }

  private:
    const std::string &source_;
};

class ScanWork : public Work {
  public:
    explicit ScanWork(const Document &document) : source_(document.bytes) {}

    bool run() override {
        const MarkupPlaces places = scanMarkup(source_);
        benchmark::DoNotOptimize(places);
        return places.count != 0;
    }

  private:
    const std::string &source_;
};

class HeapWork : public Work {
  public:
    explicit HeapWork(HeapPlan plan) : plan_(std::move(plan)), live_(plan_.sizes().size()) {}

    bool run() override { return playHeapPlan(plan_.sizes(), plan_.deletions(), live_); }

  private:
    HeapPlan plan_;
    std::vector<void *> live_;
};

// Backward is what XML_DOM_DelNode does: the last block that a build made is freed first. Forward,
// children go before their parents in the order of the document.
enum class Order { backward, forward };

std::optional<HeapPlan> planOf(const Document &document, Order order) {
    std::string bytes = document.bytes;
    void *tree = kCompactXml.build(bytes, document.encoding);
    if (!tree) return std::nullopt;
    HeapPlan plan(static_cast<const XML_DOM_Node *>(tree));
    kCompactXml.destroy(tree);
    if (order == Order::backward) plan.reverse();
    return plan;
}

template <class Kind>
std::unique_ptr<Work> prepare(const Document &document) {
    return std::make_unique<Kind>(document);
}

std::unique_ptr<Work> prepareScan(const Document &document) {
    if (scanMarkup(document.bytes) == scanMarkupPortably(document.bytes)) {
        return prepare<ScanWork>(document);
    }
    std::fprintf(stderr, "%s: the two scans differ\n", document.label.c_str());
    return nullptr;
}

template <Order kOrder>
std::unique_ptr<Work> prepareHeap(const Document &document) {
    std::optional<HeapPlan> plan = planOf(document, kOrder);
    return plan ? std::make_unique<HeapWork>(std::move(*plan)) : nullptr;
}

template <Order kOrder>
std::unique_ptr<Work> prepareFreshHeap(const Document &document) {
    const std::optional<HeapPlan> plan = planOf(document, kOrder);
    return plan ? freshHeapPlan(*plan) : nullptr;
}

void add(Jobs &jobs, const Document &document, const char *limit, Place place,
         std::unique_ptr<Work> (*prepareLimit)(const Document &)) {
    const char *job = place == Place::kHere ? "limit/" : "limit-fresh/";
    jobs.push_back({job + document.label + "/" + limit, document.bytes.size(), place,
                    [&document, prepareLimit] { return prepareLimit(document); }});
}

}  // namespace

void addLimits(Jobs &jobs, const Document &document) {
    add(jobs, document, "memcpy", Place::kHere, prepare<CopyWork>);
    add(jobs, document, "memchr", Place::kHere, prepare<FindWork>);
    add(jobs, document, "scan16", Place::kHere, prepareScan);
    add(jobs, document, "heap-floor", Place::kHere, prepareHeap<Order::backward>);
    add(jobs, document, "heap-floor-forward", Place::kHere, prepareHeap<Order::forward>);
    if (document.isLarge()) return;
    add(jobs, document, "heap-floor", Place::kFreshProcess, prepareFreshHeap<Order::backward>);
    add(jobs, document, "heap-floor-forward", Place::kFreshProcess,
        prepareFreshHeap<Order::forward>);
}

}  // namespace bench
