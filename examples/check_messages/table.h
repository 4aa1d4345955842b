// table.h - tables of the page as they are printed, and what a run has found wrong.
#pragma once
#include <string>
#include <vector>

namespace messages {

// One table: the name that the page's comment gives it, the names of the columns, and the rows.
struct Table {
    std::string name;
    std::vector<std::string> columns;
    std::vector<std::vector<std::string>> rows;
};

// The lines of a table.
std::string printed(const Table &table);

// A text between backticks; of a document every blank is made visible, of a message the first.
std::string documentCell(const std::string &document);
std::string messageCell(const std::string &message);

// Says what is wrong, and counts it, unless it is good.
void expect(bool good, const std::string &what);
int failures();

}  // namespace messages
