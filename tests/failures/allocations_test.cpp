// Every exported function with each of its allocations failing in turn, once and from there on: it is
// refused, or it can do without; nothing is leaked and nothing else has changed.
#include <gtest/gtest.h>

#include <fstream>
#include <set>
#include <string>
#include <vector>

#include "tests/failures/attempt.h"
#include "tests/failures/row.h"
#include "tests/failures/row_names.h"

namespace {

using failures::allRows;
using failures::Answer;
using failures::attempt;
using failures::Attempt;
using failures::Faults;
using failures::Row;

// Returns how many of the allocations the function could do without.
std::size_t doneWithout(const Row &row, const Attempt &reference, bool persistent) {
    std::size_t without = 0;
    for (std::size_t nth = 1;; ++nth) {
        SCOPED_TRACE(testing::Message()
                     << "allocation " << nth << (persistent ? " and all later ones" : ""));
        Faults faults;
        faults.allocation = nth;
        faults.persistent = persistent;
        const Attempt tried = attempt(row, faults);
        failures::expectKept(row, reference, tried);
        if (!tried.failed) {
            EXPECT_EQ(tried.answer, Answer::kGood);
            EXPECT_EQ(nth - 1, reference.reached.allocations);
            return without;
        }
        without += tried.answer == Answer::kGood;
    }
}

TEST(Allocations, EveryFunctionSurvivesTheFailureOfEachOne) {
    for (const Row &row : allRows()) {
        SCOPED_TRACE(failures::nameOf(row));
        const failures::Silence silence(row);
        const Attempt reference = attempt(row, {});
        EXPECT_EQ(reference.answer, Answer::kGood);
        failures::expectNothingLeft(reference);
        EXPECT_EQ(reference.reached.allocations != 0, row.allocates);
        if (!row.allocates) continue;
        const std::size_t without =
            doneWithout(row, reference, false) + doneWithout(row, reference, true);
        EXPECT_EQ(without != 0, row.doesWithout) << without;
    }
}

// What allocates nothing succeeds where no memory is left at all.
TEST(Allocations, FunctionsThatNeedNoneDoWithoutAny) {
    for (const Row &row : allRows()) {
        if (row.allocates) continue;
        SCOPED_TRACE(failures::nameOf(row));
        const failures::Silence silence(row);
        const Attempt reference = attempt(row, {});
        Faults faults;
        faults.allocation = 1;
        faults.persistent = true;
        const Attempt tried = attempt(row, faults);
        EXPECT_EQ(tried.reached.allocations, 0u);
        EXPECT_EQ(tried.answer, Answer::kGood);
        failures::expectKept(row, reference, tried);
    }
}

TEST(Allocations, NoFunctionIsForgotten) {
    std::set<std::string> expected;
    std::ifstream list(COMPACTXML_SOURCE_DIR "/tests/exported_symbols.txt");
    ASSERT_TRUE(list.is_open());
    for (std::string name; std::getline(list, name);) expected.insert(name);
    EXPECT_EQ(expected.erase("g_szGatherXsd_xml_schema_buildin"), 1u);  // no function
    std::set<std::string> covered;
    for (const Row &row : allRows()) covered.insert(row.function);
    EXPECT_EQ(covered, expected);
}

}  // namespace
