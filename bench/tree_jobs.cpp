// Parsing, building, serializing: the jobs that every contestant has.
#include <utility>

#include "agreement.h"
#include "contestant.h"
#include "fresh_process.h"
#include "job.h"
#include "select_jobs.h"

namespace bench {
namespace {

class ParseWork : public Work {
  public:
    ParseWork(const Contestant &contestant, const Document &document, const Tally &agreed)
        : contestant_(contestant), document_(document), agreed_(agreed) {}

    bool run() override {
        Tally tally;
        return contestant_.parse(document_.bytes, tally) && tally.elements == agreed_.elements &&
               tally.attributes == agreed_.attributes;
    }

  private:
    const Contestant &contestant_;
    const Document &document_;
    const Tally &agreed_;
};

class BuildWork : public Work {
  public:
    BuildWork(const Contestant &contestant, const Document &document)
        : contestant_(contestant), document_(document), bytes_(document.bytes) {}

    bool run() override {
        void *tree = contestant_.build(bytes_, document_.encoding);
        if (tree) contestant_.destroy(tree);
        return tree != nullptr;
    }
    void refresh() override { bytes_.assign(document_.bytes); }
    bool needsRefresh() const override { return contestant_.consumesInput; }

  private:
    const Contestant &contestant_;
    const Document &document_;
    std::string bytes_;
};

class SerializeWork : public Work {
  public:
    SerializeWork(const Contestant &contestant, const Document &document)
        : contestant_(contestant),
          document_(document),
          bytes_(document.bytes),
          tree_(contestant.build(bytes_, document.encoding)) {}
    ~SerializeWork() override {
        if (tree_) contestant_.destroy(tree_);
    }

    bool run() override {
        written_ = tree_ ? contestant_.serialize(tree_, document_.encoding, nullptr) : 0;
        return written_ != 0;
    }
    std::size_t bytesWritten() const override { return written_; }

  private:
    const Contestant &contestant_;
    const Document &document_;
    std::string bytes_;  // which a tree may refer to
    void *tree_;
    std::size_t written_ = 0;
};

std::unique_ptr<Work> prepareParse(const Contestant &contestant, const Document &document) {
    const Tally *agreed = agreement(document);
    return agreed ? std::make_unique<ParseWork>(contestant, document, *agreed) : nullptr;
}

std::unique_ptr<Work> prepareBuild(const Contestant &contestant, const Document &document) {
    return agreement(document) ? std::make_unique<BuildWork>(contestant, document) : nullptr;
}

std::unique_ptr<Work> prepareFreshBuild(const Contestant &contestant, const Document &document) {
    if (!agreement(document)) return nullptr;
    return freshBuild(contestant, document);
}

std::unique_ptr<Work> prepareSerialize(const Contestant &contestant, const Document &document) {
    return agreement(document) ? std::make_unique<SerializeWork>(contestant, document) : nullptr;
}

void add(Jobs &jobs, const char *job, const Contestant &contestant, const Document &document,
         std::unique_ptr<Work> (*prepare)(const Contestant &, const Document &),
         Place place = Place::kHere) {
    jobs.push_back({std::string(job) + "/" + document.label + "/" + contestant.name,
                    document.bytes.size(), place,
                    [&contestant, &document, prepare] { return prepare(contestant, document); }});
}

}  // namespace

void addTreeJobs(Jobs &jobs, const Document &document) {
    for (const Contestant *contestant : contestants()) {
        if (!contestant->takes(document)) continue;
        if (contestant->parse) add(jobs, "parse", *contestant, document, prepareParse);
        if (contestant->build) {
            add(jobs, "build+delete", *contestant, document, prepareBuild);
            if (!document.isLarge()) {
                add(jobs, "build+delete-fresh", *contestant, document, prepareFreshBuild,
                    Place::kFreshProcess);
            }
        }
        if (contestant->serialize) add(jobs, "serialize", *contestant, document, prepareSerialize);
    }
    addSelectJobs(jobs, document);
}

}  // namespace bench
