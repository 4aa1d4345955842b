#include "schema_jobs.h"

namespace bench {

void addSchemaJobs(Jobs &jobs) {
    addValidationJobs(jobs);
    addRoundJobs(jobs);
    addLoadingJobs(jobs);
}

}  // namespace bench
