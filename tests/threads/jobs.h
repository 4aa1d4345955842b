// tests/threads/jobs.h - what a thread does with documents of its own against a root that it shares.
#pragma once

#include <cstddef>
#include <string>

#include "compactxml.h"

namespace threads {

// The root of tests/schema/feature_schema.h and of an element with a pattern, for as long as it lives.
class FilledRoot {
  public:
    FilledRoot();
    ~FilledRoot();
    FilledRoot(const FilledRoot &) = delete;
    FilledRoot &operator=(const FilledRoot &) = delete;

    const SchemaRoot &get() const { return root_; }
    bool filled() const { return filled_; }

  private:
    SchemaRoot root_;
    bool filled_ = true;
};

// Parses, builds, validates, selects, edits, writes and deletes; tells all results. They are the same
// for the same number, and others for each number.
std::string doJobs(std::size_t number, const SchemaRoot &root);

}  // namespace threads
