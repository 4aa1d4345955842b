// options.h - the command line, beside Google Benchmark's own options.
#pragma once

#include <string>
#include <vector>

namespace bench {

// --document=KIND/SIZE  this document instead of the usual ones (repeatable)
// --small               small documents only, below 100 kB
// --growth              documents of the same kinds in several sizes
// --large               the documents that take long as well
// --list                prints the names of all jobs and the bytes of their documents
// --once=NAME           does one job once (once.h)
struct Options {
    std::vector<std::string> documents;  // labels; empty for the usual ones
    bool small = false;
    bool growth = false;
    bool large = false;
    bool list = false;
    std::string once;
    bool writesFile = false;  // whether Google Benchmark's options ask for a file
};

// Takes its options out of the arguments and leaves the others.
Options takeOptions(int &argc, char **argv);

// The labels of the documents that the options choose.
std::vector<std::string> chosenDocuments(const Options &options);

}  // namespace bench
