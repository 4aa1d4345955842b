#include "table.h"

#include <cstdio>

namespace messages {
namespace {

constexpr char kVisibleBlank[] = "␠";

int failed = 0;

std::string line(const std::vector<std::string> &cells) {
    std::string text = "|";
    for (const std::string &cell : cells) text += cell.empty() ? " |" : " " + cell + " |";
    return text + "\n";
}

}  // namespace

std::string printed(const Table &table) {
    std::string text = line(table.columns) + "|";
    for (std::size_t i = 0; i < table.columns.size(); ++i) text += "---|";
    text += "\n";
    for (const std::vector<std::string> &row : table.rows) text += line(row);
    return text;
}

std::string documentCell(const std::string &document) {
    std::string text;
    for (const char c : document) text += c == ' ' ? kVisibleBlank : std::string(1, c);
    return "`" + text + "`";
}

std::string messageCell(const std::string &message) {
    const bool blank = message.starts_with(' ');
    return "`" + (blank ? kVisibleBlank + message.substr(1) : message) + "`";
}

void expect(bool good, const std::string &what) {
    if (good) return;
    std::fprintf(stderr, "check_messages: %s\n", what.c_str());
    ++failed;
}

int failures() {
    return failed;
}

}  // namespace messages
