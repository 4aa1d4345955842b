// schema_jobs.h - the parts of the list of jobs with schemas.
#pragma once

#include "job.h"

namespace bench {

void addValidationJobs(Jobs &jobs);
void addRoundJobs(Jobs &jobs);
void addLoadingJobs(Jobs &jobs);

}  // namespace bench
