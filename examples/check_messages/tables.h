// tables.h - the tables of docs/messages.md, made by asking the library.
#pragma once
#include <set>
#include <string>
#include <vector>

#include "source_texts.h"
#include "table.h"

namespace messages {

// Tables, and every message that they show.
struct Shown {
    std::vector<Table> tables;
    std::set<std::string> messages;
};

// "parser", "differences" and "builder".
Shown parserTables();

// "validator", "values", "types" and "records".
//
//   known        the messages of the source, which tell whether two texts are the same message
Shown validatorTables(const std::set<Pieces> &known);

// "results".
Table resultTable();

}  // namespace messages
