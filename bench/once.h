// once.h - one run of one job, for tools that count instructions.
#pragma once

#include <string>

#include "job.h"

namespace bench {

// Prepares the job, runs it once to warm up and then once within bench_measured_run (valgrind
// --toggle-collect=bench_measured_run); prints a line of JSON. Returns a status to exit with.
int runOnce(const Jobs &jobs, const std::string &name);

}  // namespace bench

// A function that a tool finds by its name.
extern "C" bool bench_measured_run(bench::Work &work);
