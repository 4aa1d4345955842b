#include "page.h"

#include <algorithm>

namespace messages {

std::string filled(const std::string &page, const Table &table) {
    const std::string begin = "<!-- generated: " + table.name + " -->\n";
    const std::string end = "<!-- generated end -->\n";
    const std::size_t first = page.find(begin);
    const std::size_t last = first == std::string::npos ? first : page.find(end, first);
    expect(last != std::string::npos, "the page has no place for the table " + table.name);
    if (last == std::string::npos) return page;
    return page.substr(0, first + begin.size()) + printed(table) + page.substr(last);
}

std::string firstDifference(const std::string &is, const std::string &shouldBe) {
    if (is == shouldBe) return "";
    const auto differ = std::mismatch(is.begin(), is.end(), shouldBe.begin(), shouldBe.end());
    const std::size_t same = static_cast<std::size_t>(differ.first - is.begin());
    const std::size_t start = is.substr(0, same).rfind('\n') + 1;  // npos + 1 is 0
    const auto lineOf = [start](const std::string &text) {
        return text.substr(start, text.find('\n', start) - start);
    };
    return "  " + lineOf(is) + "\nshould be\n  " + lineOf(shouldBe);
}

}  // namespace messages
