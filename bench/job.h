// job.h - a piece of work that is measured, and the list of all of them.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace bench {

// One contestant at one job with one document, ready to go.
class Work {
  public:
    Work() = default;
    Work(const Work &) = delete;
    Work &operator=(const Work &) = delete;
    virtual ~Work() = default;

    // What is timed; false if it went wrong.
    virtual bool run() = 0;
    // What must be done anew before each run, while the clock stands still.
    virtual void refresh() {}
    virtual bool needsRefresh() const { return false; }
    // For Place::kFreshProcess: how long the last run took, as the process that did it told.
    virtual double seconds() const { return 0; }
    // For jobs that write: how much the last run wrote, which a rate then counts instead of
    // Job::bytes.
    virtual std::size_t bytesWritten() const { return 0; }
};

// Where a job runs. In a fresh process the heap is as a program finds it that has just begun: run()
// starts that process, which takes the time itself, and seconds() hands it on.
enum class Place { kHere, kFreshProcess };

struct Job {
    std::string name;   // "job/kind/size/contestant", such as "parse/configuration/10M/expat"
    std::size_t bytes;  // what a rate counts; 0 if a rate means nothing
    Place place = Place::kHere;
    // Null if it cannot be measured, as when contestants do not agree; says why on stderr.
    std::function<std::unique_ptr<Work>()> prepare;
};

using Jobs = std::vector<Job>;

struct Document;
void addTreeJobs(Jobs &jobs, const Document &document);  // parse, build, serialize, select
void addLimits(Jobs &jobs, const Document &document);
void addSchemaJobs(Jobs &jobs);   // validation, the round of a request, loading schemas
void addLibraryJobs(Jobs &jobs);  // loading the libraries themselves

}  // namespace bench
