// select_jobs.h - finding one element in a tree: near its beginning, about its middle, at its end.
#pragma once

#include "documents.h"
#include "job.h"

namespace bench {

// None for documents in which there is nothing to look for.
void addSelectJobs(Jobs &jobs, const Document &document);

}  // namespace bench
