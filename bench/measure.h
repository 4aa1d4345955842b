// measure.h - hands the jobs over to Google Benchmark and tells the results.
#pragma once

#include "job.h"

namespace bench {

// Leaves the jobs that --benchmark_filter=REGEX chooses, by their own names: Google Benchmark,
// which would look at what it appends to some of them as well, then finds all of them chosen.
// Returns false, and says why, if there are none or the expression is none.
bool chooseByFilter(Jobs &jobs);

void registerJobs(const Jobs &jobs);  // which must outlive the runs

// Runs what the command line chose; what could not be measured is told as an error in the results.
// writesFile tells whether Google Benchmark was asked for a file of results, which is always JSON.
void runRegistered(bool writesFile);

}  // namespace bench
