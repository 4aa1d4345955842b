// The tables of the parser and the builder.
#include <string_view>

#include "outcome.h"
#include "tables.h"

namespace messages {
namespace {

// How a code comes about.
enum class Cause { kDocument, kBytes, kCallback, kNone };

struct ParserCase {
    std::string_view document;
    int code;
    Cause cause = Cause::kDocument;
};

constexpr ParserCase kParserCases[] = {
    {"x", 1, Cause::kCallback},
    {"x", 2, Cause::kNone},
    {" ", 4},
    {"<a/>x", 5},
    {"<1", 9},
    {"<a>&#", 25},
    {"<a>&", 26},
    {"<?xml version=\"1.0\" encoding=\"\"", 32},
    {"<a b=", 33},
    {"<a b=\"", 34},
    {"<a xmlns:b=\"\"", 35},
    {"<a b=\"<", 38},
    {"x", 41, Cause::kNone},
    {"<a b=\"\" b=\"\">", 42},
    {"<!--", 45},
    {"<?", 46},
    {"<?a ", 47},
    {"<?xml version=\"1.0\"", 57},
    {"<!DOCTYPE ", 61},
    {"<a>]]>", 62},
    {"<a><![CDATA[", 63},
    {"<a", 65},
    {"<a:", 68},
    {"x", 72},
    {"<a b", 75},
    {"<a></", 76},
    {"<", 77},
    {"<?xml version=\"1.0\" standalone=\"", 78},
    {"<!----", 80},
    {"<?xml ", 96},
    {"<?xml version=\"", 97},
    {"<a:b>", 201},
    {"\xFF\xFE<", 1500, Cause::kBytes},
    {"x", 65535, Cause::kCallback},
};

struct Difference {
    int code;
    const char *document;
    const char *remark;
};

constexpr Difference kDifferences[] = {
    {65, "<?xml-stylesheet?><a/>", "at the very beginning, `<?xml` is an XML declaration"},
    {25, "<a>&#X41;</a>", "the x of a hexadecimal reference is lower case"},
    {26, "<a>&nbsp;</a>",
     "only `lt`, `gt`, `amp`, `apos` and `quot` are known; a DOCTYPE is skipped"},
    {97, "<?xml version=\"1.1\"?><a/>", "there is no other version than 1.0"},
    {35, "<a xmlns:b=\"\"/>", "a prefix cannot be undeclared"},
};

struct BuilderCase {
    const char *text;
    const char *cause;
    std::string_view document;  // empty if none causes it
};

constexpr BuilderCase kBuilderCases[] = {
    {"Invalid parameter.", "a null path, buffer or list, or length 0", ""},
    {"Failed to initialize DOM SAX.",
     "exhausted memory, or an iconv without GB18030 and a character beyond ASCII "
     "([porting](porting.md))",
     ""},
    {"failed to convert encoding.",
     "the message cannot be converted to GB18030, nearly always because the snippet holds bytes "
     "that are no characters",
     "\xFFx"},
};

// "bytes `FF 78`".
std::string bytesCell(std::string_view bytes) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string text;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        if (!text.empty()) text += ' ';
        text += {kDigits[byte / 16], kDigits[byte % 16]};
    }
    return "bytes `" + text + "`";
}

Table parserTable(std::set<std::string> &messages) {
    Table table{"parser", {"code", "message", "smallest document", "line", "column"}, {}};
    for (const ParserCase &one : kParserCases) {
        const std::string document(one.document), code = std::to_string(one.code);
        const bool byItself = one.cause == Cause::kDocument || one.cause == Cause::kBytes;
        const Report report = parse(document, byItself ? 0 : one.code);
        const std::string cell = one.cause == Cause::kNone    ? "none"
                                 : one.cause == Cause::kBytes ? bytesCell(document)
                                 : byItself                   ? documentCell(document)
                                            : "callback " + documentCell(document);
        expect(report.reports == 1 && report.code == one.code,
               "another code than " + code + " for " + cell);
        const auto causesIt = [&one](const std::string &shorter) {
            return parse(shorter).code == one.code;
        };
        expect(!byItself || isShortest(document, causesIt), "a part is enough for code " + code);
        const bool isPlaced = one.cause != Cause::kNone;
        table.rows.push_back({code, messageCell(report.message), cell,
                              isPlaced ? std::to_string(report.line) : "",
                              isPlaced ? std::to_string(report.column) : ""});
        messages.insert(report.message);
    }
    return table;
}

Table differencesTable() {
    Table table{"differences", {"document", "code", "why"}, {}};
    for (const Difference &one : kDifferences) {
        const int code = parse(one.document).code;
        expect(code == one.code, std::string(one.document) + " gives " + std::to_string(code));
        table.rows.push_back(
            {"`" + std::string(one.document) + "`", std::to_string(code), one.remark});
    }
    return table;
}

Table builderTable(std::set<std::string> &messages) {
    Table table{"builder", {"text", "cause", "smallest document"}, {}};
    for (const BuilderCase &one : kBuilderCases) {
        const bool isCaused = !one.document.empty();
        if (isCaused) expect(buildError(std::string(one.document)) == one.text, one.text);
        table.rows.push_back(
            {messageCell(one.text), one.cause, isCaused ? bytesCell(one.document) : "none"});
        messages.insert(one.text);
    }
    expect(buildError("") == kBuilderCases[0].text, "a length of 0");
    return table;
}

}  // namespace

Shown parserTables() {
    Shown shown;
    shown.tables.push_back(parserTable(shown.messages));
    shown.tables.push_back(differencesTable());
    shown.tables.push_back(builderTable(shown.messages));
    return shown;
}

}  // namespace messages
