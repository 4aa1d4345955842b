// Which calls of the C library each exported function reaches. With COMPACTXML_FAILURE_TABLE set in the
// environment it is printed, as a table in Markdown: the most of any scenario.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>

#include "tests/failures/attempt.h"
#include "tests/failures/row.h"
#include "tests/failures/row_names.h"

namespace {

using failures::Reached;

struct Column {
    const char *title;
    std::size_t Reached::*calls;
};
constexpr Column kColumns[] = {
    {"allocations", &Reached::allocations},
    {"open", &Reached::opens},
    {"read", &Reached::reads},
    {"write", &Reached::writes},
    {"fsync", &Reached::syncs},
    {"close", &Reached::closes},
    {"iconv_open", &Reached::converters},
    {"iconv", &Reached::conversions},
    {"regcomp", &Reached::patterns},
};

std::map<std::string, Reached> reachedByFunction() {
    std::map<std::string, Reached> table;
    for (const failures::Row &row : failures::allRows()) {
        const failures::Silence silence(row);
        const Reached reached = failures::attempt(row, {}).reached;
        Reached &most = table[row.function];
        for (const Column &column : kColumns) {
            most.*column.calls = std::max(most.*column.calls, reached.*column.calls);
        }
    }
    return table;
}

void print(const std::map<std::string, Reached> &table) {
    std::string head = "| function |", rule = "|---|";
    for (const Column &column : kColumns) {
        head += std::string(" ") + column.title + " |";
        rule += "---:|";
    }
    std::printf("%s\n%s\n", head.c_str(), rule.c_str());
    std::string nothing;
    for (const auto &[function, reached] : table) {
        std::string line;
        bool any = false;
        for (const Column &column : kColumns) {
            const std::size_t calls = reached.*column.calls;
            any |= calls != 0;
            line += calls != 0 ? " " + std::to_string(calls) + " |" : " |";
        }
        if (any) {
            std::printf("| `%s` |%s\n", function.c_str(), line.c_str());
        } else {
            nothing += (nothing.empty() ? "`" : ", `") + function + "`";
        }
    }
    std::printf("\nNone of these calls is reached by: %s.\n", nothing.c_str());
}

TEST(FailureTable, EveryKindOfCallIsReached) {
    const std::map<std::string, Reached> table = reachedByFunction();
    if (std::getenv("COMPACTXML_FAILURE_TABLE")) print(table);
    for (const Column &column : kColumns) {
        const bool reached = std::any_of(table.begin(), table.end(), [&](const auto &entry) {
            return entry.second.*column.calls != 0;
        });
        EXPECT_TRUE(reached) << column.title;
    }
}

}  // namespace
