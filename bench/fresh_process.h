// fresh_process.h - jobs that run in a process of their own, whose heap nothing has used before.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

#include "contestant.h"
#include "heap_plan.h"
#include "job.h"

namespace bench {

// Each run starts this program again, which does the job once and prints the nanoseconds it took.
// What it needs is handed over in a file that it maps, so that reading it leaves no trace in its
// heap.
std::unique_ptr<Work> freshBuild(const Contestant &contestant, const Document &document);
std::unique_ptr<Work> freshHeapPlan(const HeapPlan &plan);

// The other side: the whole of main() if the arguments say so. The status to exit with, or -1.
int runFreshProcess(int argc, char **argv);

}  // namespace bench
