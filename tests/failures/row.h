// tests/failures/row.h - every exported function with the calls that the failures are tried on.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "tests/failures/stage.h"

namespace failures {

// What a call said of itself.
enum class Answer {
    kGood,
    kRefused,  // with the very value that the header has for it
    kWrong     // with any other
};

// What a refused call may have changed.
enum class Trace {
    kNone,   // nothing at all
    kBytes,  // a first part of the bytes that it would have written or read ahead
    kTold,   // a first part of what it would have told to callbacks
    kOwn     // see Row::holds
};

struct Row {
    const char *function;
    std::string scenario;
    std::function<void(Stage &)> prepare;
    std::function<Answer(Stage &)> call;
    bool allocates = true;
    Trace trace = Trace::kNone;
    // Of a refused call with Trace::kOwn: "" when all is as told, otherwise what is not.
    std::function<std::string(const Stage &)> holds = nullptr;
    // Whether there is memory that it can do without: then it ends as if nothing had failed.
    bool doesWithout = false;
    bool prints = false;  // to standard output
};

// The rows, by what the functions are about.
std::vector<Row> treeRows();
std::vector<Row> writingRows();
std::vector<Row> readingRows();
std::vector<Row> schemaRows();
const std::vector<Row> &allRows();

// ---- for the rows: how each kind of result says what became of the call

inline Answer good(bool done) {
    return done ? Answer::kGood : Answer::kWrong;
}
inline Answer code(std::uint32_t result) {
    return result == XML_REFUSED ? Answer::kRefused : good(result == XML_OK);
}
// Of functions whose results are sums.
inline Answer sum(std::uint32_t result) {
    return result == XML_OK ? Answer::kGood : Answer::kRefused;
}
inline Answer pointer(const void *result) {
    return result ? Answer::kGood : Answer::kRefused;
}
// A row with memory that it can do without.
inline Row needless(Row row) {
    row.doesWithout = true;
    return row;
}
inline Answer node(Stage &stage, XML_DOM_Node *made) {
    stage.node.reset(made);
    return pointer(made);
}
inline Answer text(Stage &stage, char *made) {
    *stage.takeText() = made;
    return pointer(made);
}
inline Answer stream(Stage &stage, XML_IO_OutStream *made) {
    *stage.takeOutput() = made;
    return pointer(made);
}
// Of functions that have no result.
template <class Call>
Answer nothing(const Call &call) {
    call();
    return Answer::kGood;
}

}  // namespace failures
