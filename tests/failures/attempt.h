// tests/failures/attempt.h - one call of a row while something fails, and whether it kept its word.
#pragma once

#include <cstddef>
#include <string>

#include "tests/failures/row.h"
#include "tests/support/faults.h"

namespace failures {

// What fails during the call. Nothing does by default.
struct Faults {
    std::size_t allocation = 0;  // from 1
    bool persistent = false;     // this allocation and all later ones
    support::FilePlan files;
    support::CallPlan opening, converting, compiling;
    std::size_t fileLimit = std::string::npos;  // how much a file holds of its document
};

// Calls that reached the C library.
struct Reached {
    std::size_t allocations = 0;
    std::size_t opens = 0, reads = 0, writes = 0, syncs = 0, closes = 0;
    std::size_t converters = 0, conversions = 0, patterns = 0;
};

struct Attempt {
    Answer answer = Answer::kWrong;
    Reached reached;
    bool failed = false;  // whether anything that was to fail was asked for
    // Of the stage, before and after the call; see Stage.
    std::string imageBefore, image, bytesBefore, bytes, heldBefore, held, told, account;
    std::string holds;  // what Row::holds says
    bool hasProducts = false;
    bool hasInput = false;
    std::size_t blocksKept = 0;  // that the call allocated
    std::size_t bytesRead = 0;   // of files, those before the call included
    // What is left when the stage is gone, each 0 if all is given back.
    std::size_t blocksLeft = 0;
    long descriptorsLeft = 0, convertersLeft = 0, patternsLeft = 0;
};

Attempt attempt(const Row &row, const Faults &faults);

// Reports (to GoogleTest) what is not as it must be: nothing may be left in any case; a call that
// succeeds ends as the reference, in which nothing failed; a call that is refused has changed nothing
// but what its row allows.
void expectKept(const Row &row, const Attempt &reference, const Attempt &attempt);
void expectNothingLeft(const Attempt &attempt);

}  // namespace failures
