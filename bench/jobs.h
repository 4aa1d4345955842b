// jobs.h - registers what is measured, named JOB/KIND/SIZE/CONTESTANT.
#pragma once

#include "documents.h"

namespace bench {

void registerJobs(const Document &document);    // parse, build, serialize, for every contestant
void registerLimits(const Document &document);  // what the machine and its heap do at best

}  // namespace bench
