#include "tests/failures/attempt.h"

#include <gtest/gtest.h>

#include <memory>

namespace failures {
namespace {

bool beginsWith(const std::string &text, const std::string &part) {
    return text.compare(0, part.size(), part) == 0;
}

// The calls that a parse makes, one a line. Where the input breaks off, the last of them may be a text
// of which only the beginning was read.
bool areFirstCalls(const std::string &calls, const std::string &part) {
    if (beginsWith(calls, part)) return true;
    const std::size_t last = part.rfind('\n', part.size() - 2) + 1;
    const std::string text = part.substr(last, part.rfind('"') - last);
    return beginsWith(text, "characters \"") && beginsWith(calls, part.substr(0, last) + text);
}

void expectRefusedWithoutTrace(const Row &row, const Attempt &reference, const Attempt &attempt) {
    EXPECT_FALSE(attempt.hasProducts);
    if (row.trace == Trace::kOwn) {
        EXPECT_EQ(attempt.holds, "");
        return;
    }
    EXPECT_EQ(attempt.image, attempt.imageBefore);
    if (row.trace == Trace::kBytes) {
        EXPECT_TRUE(beginsWith(attempt.bytes, attempt.bytesBefore)) << attempt.bytes;
        EXPECT_TRUE(beginsWith(reference.bytes, attempt.bytes)) << attempt.bytes;
        // The beginning of a character may have been completed, the one at the end have been seen.
        EXPECT_TRUE(attempt.held == attempt.heldBefore || attempt.held.empty() ||
                    attempt.held == reference.held)
            << attempt.held;
        return;
    }
    EXPECT_EQ(attempt.held, attempt.heldBefore);
    EXPECT_EQ(attempt.bytes, attempt.bytesBefore);
    EXPECT_EQ(attempt.blocksKept, 0u);
    if (row.trace == Trace::kTold) {
        EXPECT_TRUE(areFirstCalls(reference.told, attempt.told)) << attempt.told;
    } else {
        EXPECT_EQ(attempt.told, "");
    }
}

}  // namespace

Attempt attempt(const Row &row, const Faults &faults) {
    Attempt result;
    support::FaultyFiles files({});
    support::FaultyConverters converters;
    support::FaultyPatterns patterns;
    auto stage = std::make_unique<Stage>(faults.fileLimit);
    row.prepare(*stage);
    result.imageBefore = stage->image();
    result.bytesBefore = stage->bytes();
    result.heldBefore = stage->heldBack();
    result.bytesRead = files.bytesRead();
    // What else was opened for the stage does not count.
    const long others = files.openDescriptors() - stage->openFiles();
    files.begin(faults.files);
    converters.begin(faults.opening, faults.converting);
    patterns.begin(faults.compiling);
    const support::FaultyHeap heap(faults.allocation, faults.persistent);
    result.answer = row.call(*stage);
    result.failed = heap.failed() || converters.failed() || patterns.failed();
    result.reached = {
        heap.allocations(), files.opens(),  files.reads(),      files.writes(),
        files.syncs(),      files.closes(), converters.opens(), converters.conversions(),
        patterns.compiled()};
    result.bytesRead += files.bytesRead();
    result.blocksKept = heap.blocksInUse();
    files.begin({});
    result.image = stage->image();
    result.bytes = stage->bytes();
    result.held = stage->heldBack();
    result.told = stage->told;
    result.account = stage->account();
    result.hasProducts = stage->hasProducts();
    result.hasInput = stage->input != nullptr;
    if (row.holds) result.holds = row.holds(*stage);
    stage.reset();
    result.blocksLeft = heap.blocksInUse();
    result.descriptorsLeft = files.openDescriptors() - others;
    result.convertersLeft = converters.openConverters();
    result.patternsLeft = patterns.openPatterns();
    return result;
}

void expectNothingLeft(const Attempt &attempt) {
    EXPECT_EQ(attempt.blocksLeft, 0u);
    EXPECT_EQ(attempt.descriptorsLeft, 0);
    EXPECT_EQ(attempt.convertersLeft, 0);
    EXPECT_EQ(attempt.patternsLeft, 0);
}

void expectKept(const Row &row, const Attempt &reference, const Attempt &attempt) {
    expectNothingLeft(attempt);
    if (attempt.answer == Answer::kGood) {
        EXPECT_EQ(attempt.account, reference.account);
    } else if (attempt.answer == Answer::kRefused) {
        expectRefusedWithoutTrace(row, reference, attempt);
    } else {
        ADD_FAILURE() << "neither done nor refused";
    }
}

}  // namespace failures
