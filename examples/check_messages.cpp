// Holds docs/messages.md to the truth: parses the document of every row and compares code, message,
// line and column, and compares the list with the parser's own table, which must agree both ways.
//
//   check_messages DOCS_MESSAGES_MD PARSER_MESSAGES_CPP
#include <compactxml.h>

#include <cstdarg>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#include "tree_tools.h"

namespace {

struct Report {
    int reports = 0, code = 0, line = 0, column = 0;
    int statusToSet = 0;
    std::string message;
};

Report &reportOf(const XML_Parser_Ctx *context) {
    return *static_cast<Report *>(context->handler->userData);
}

void onError(XML_Parser_Ctx *context, const char *format, ...) {
    Report &report = reportOf(context);
    va_list arguments;
    va_start(arguments, format);
    report.line = va_arg(arguments, int);
    report.column = va_arg(arguments, int);
    (void)va_arg(arguments, const char *);  // the snippet
    report.message = va_arg(arguments, const char *);
    va_end(arguments);
    report.code = context->status;
    ++report.reports;
}

Report parse(const std::string &document, int statusToSet) {
    Report report;
    report.statusToSet = statusToSet;
    XML_SAX_Handler handler{};
    handler.userData = &report;
    handler.error = onError;
    handler.startDocument = [](XML_Parser_Ctx *context) {
        context->status = reportOf(context).statusToSet;
    };
    XML_Parser_ByMem(document.data(), static_cast<std::uint32_t>(document.size()), &handler);
    return report;
}

std::string replaceAll(std::string text, const std::string &from, const std::string &to) {
    for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
        text.replace(at, from.size(), to);
    }
    return text;
}

std::string readFile(const char *path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// The cells of a table row, without the blanks around them. No cell of the document holds a bar.
std::vector<std::string> cellsOf(const std::string &line) {
    std::vector<std::string> cells;
    for (std::size_t start = 1, bar; (bar = line.find('|', start)) != std::string::npos;
         start = bar + 1) {
        const std::string cell = line.substr(start, bar - start);
        const std::size_t first = cell.find_first_not_of(' ');
        const std::size_t last = cell.find_last_not_of(' ');
        cells.push_back(first == std::string::npos ? "" : cell.substr(first, last - first + 1));
    }
    return cells;
}

// What stands between the first pair of backticks.
std::string codeOf(const std::string &cell) {
    const std::size_t first = cell.find('`'), last = cell.rfind('`');
    return first == last ? "" : cell.substr(first + 1, last - first - 1);
}

// The document that a cell names: `...` with visible blanks, or bytes `FF 78`.
std::string documentOf(const std::string &cell) {
    if (!cell.starts_with("bytes")) return replaceAll(codeOf(cell), "␠", " ");
    std::string bytes;
    const std::string digits = replaceAll(codeOf(cell), " ", "");
    for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
        bytes += static_cast<char>(std::stoul(digits.substr(i, 2), nullptr, 16));
    }
    return bytes;
}

int failures = 0;

void expect(bool good, const std::string &what) {
    if (good) return;
    std::fprintf(stderr, "check_messages: %s\n", what.c_str());
    ++failures;
}

void checkParserRow(const std::vector<std::string> &cells) {
    const int code = std::stoi(cells[0]);
    if (cells[2] == "none") {
        expect(code == 2 || code == 41, cells[0] + " has no document");
        return;
    }
    const Report report = parse(documentOf(cells[2]), cells[2].starts_with("callback") ? code : 0);
    const std::string got = std::to_string(report.code) + " \"" + report.message + "\" at " +
                            std::to_string(report.line) + ":" + std::to_string(report.column);
    const std::string told =
        cells[0] + " \"" + codeOf(cells[1]) + "\" at " + cells[3] + ":" + cells[4];
    expect(report.reports == 1 && got == told, cells[2] + " gives " + got + ", told was " + told);
}

// A row of documents that are often expected to be read differently: the cell begins with the code.
void checkRemark(const std::vector<std::string> &cells) {
    const Report report = parse(documentOf(cells[0]), 0);
    expect(report.reports == 1 && report.code == std::stoi(cells[1]),
           cells[0] + " gives " + std::to_string(report.code) + ", told was " + cells[1]);
}

// Whether a build of the document puts exactly this text into the error buffer.
void checkBuilderRow(const std::vector<std::string> &cells) {
    if (cells[2] == "none") return;
    const std::string document = documentOf(cells[2]);
    char error[256] = "";
    const demo::Owned<XML_DOM_Node> root{XML_DOM_BuildTreeByMem(
        document.data(), static_cast<std::uint32_t>(document.size()), sizeof error, error)};
    expect(!root && codeOf(cells[0]) == error, cells[2] + " gives \"" + error + "\"");
}

// The string literal that begins at a quotation mark of a source text, without its backslashes.
std::string literalAt(const std::string &source, std::size_t quote) {
    std::string text;
    for (std::size_t i = quote + 1; i < source.size() && source[i] != '"'; ++i) {
        if (source[i] == '\\') ++i;
        text += source[i];
    }
    return text;
}

// The rows {code, "message"} of the parser's table, and what is returned for all other codes.
std::map<int, std::string> tableOf(const std::string &source) {
    std::map<int, std::string> rows;
    for (std::size_t at = 0; (at = source.find('{', at)) != std::string::npos; ++at) {
        const std::size_t end = source.find_first_not_of("0123456789", at + 1);
        if (end != std::string::npos && end != at + 1 && source.compare(end, 3, ", \"") == 0) {
            rows[std::stoi(source.substr(at + 1))] = literalAt(source, end + 2);
        }
    }
    const std::string otherwise = "return \"";
    if (const std::size_t at = source.find(otherwise); at != std::string::npos) {
        rows[65535] = literalAt(source, at + otherwise.size() - 1);
    }
    return rows;
}

}  // namespace

int main(int argc, char **argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: check_messages DOCS_MESSAGES_MD PARSER_MESSAGES_CPP\n");
        return 1;
    }
    std::map<int, std::string> documented;
    int builderRows = 0, remarks = 0;
    std::ifstream page(argv[1]);
    for (std::string line; std::getline(page, line);) {
        const std::vector<std::string> cells = cellsOf(line);
        if (cells.size() == 5 && !cells[0].empty() &&
            cells[0].find_first_not_of("0123456789") == std::string::npos) {
            expect(documented.emplace(std::stoi(cells[0]), codeOf(cells[1])).second,
                   cells[0] + " stands there twice");
            checkParserRow(cells);
        } else if (cells.size() == 3 && cells[0].starts_with('`')) {
            ++builderRows;
            checkBuilderRow(cells);
        } else if (cells.size() == 2 && cells[0].starts_with("`<")) {
            ++remarks;
            checkRemark(cells);
        }
    }
    const std::map<int, std::string> known = tableOf(readFile(argv[2]));
    for (const auto &[code, message] : known) {
        const auto row = documented.find(code);
        expect(row != documented.end() && row->second == message,
               std::to_string(code) + " \"" + message + "\" is not documented so");
    }
    for (const auto &[code, message] : documented) {
        expect(known.contains(code), std::to_string(code) + " is not a code of the parser");
    }
    expect(known.size() > 30 && builderRows == 3 && remarks > 3, "tables are missing");
    if (failures == 0) std::printf("check_messages: %zu codes as documented\n", known.size());
    return failures == 0 ? 0 : 1;
}
