// Makes the tables of docs/messages.md by asking the library, and holds the page to them. Every message
// that the source holds must be in one of them.
//
//   check_messages SOURCE_DIRECTORY            compares
//   check_messages --update SOURCE_DIRECTORY   writes the tables into the page
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <fstream>

#include "file.h"
#include "page.h"
#include "tables.h"

namespace {

using namespace messages;

// Whether each message of the source is shown, and how many of the two there are.
void expectAllShown(const std::set<Pieces> &known, const std::set<std::string> &shown) {
    for (const Pieces &message : known) {
        const bool isShown =
            std::any_of(shown.begin(), shown.end(),
                        [&message](const std::string &text) { return fits(message, text); });
        std::string text;
        for (const std::string &piece : message) text += (text.empty() ? "" : " ... ") + piece;
        expect(isShown, "no table shows \"" + text + "\"");
    }
}

// Whether each message that is shown is in the source.
void expectAllKnown(const std::set<std::string> &shown, const std::set<Pieces> &known) {
    for (const std::string &text : shown) {
        expect(text.empty() || !kindOf(known, text).empty(), "no source has \"" + text + "\"");
    }
}

}  // namespace

int main(int argc, char **argv) {
    const bool update = argc == 3 && std::strcmp(argv[1], "--update") == 0;
    if (!update && argc != 2) {
        std::fprintf(stderr, "usage: check_messages [--update] SOURCE_DIRECTORY\n");
        return 1;
    }
    const std::string source = argv[argc - 1];
    std::set<Pieces> ofParser = messagesOf(readFile(source + "/parser/messages.cpp"));
    ofParser.merge(messagesOf(readFile(source + "/dom/builder.cpp")));
    const std::set<Pieces> ofValidator = messagesIn(source + "/schema", "trace.cpp");
    expect(ofParser.size() > 30 && ofValidator.size() > 30, "the source is not there");

    const Shown parser = parserTables();
    const Shown validator = validatorTables(ofValidator);
    expectAllShown(ofParser, parser.messages);
    expectAllKnown(parser.messages, ofParser);
    expectAllShown(ofValidator, validator.messages);
    expectAllKnown(validator.messages, ofValidator);

    const std::string path = source + "/docs/messages.md";
    const std::string page = readFile(path);
    std::string made = filled(page, resultTable());
    for (const Shown *shown : {&parser, &validator}) {
        for (const Table &table : shown->tables) made = filled(made, table);
    }
    if (update && made != page) std::ofstream(path, std::ios::binary) << made;
    if (!update) {
        expect(made == page, path + " has\n" + firstDifference(page, made) +
                                 "\n(check_messages --update " + source + ")");
    }
    if (failures() == 0) {
        std::printf("check_messages: %zu messages as documented\n",
                    parser.messages.size() + validator.messages.size());
    }
    return failures() == 0 ? 0 : 1;
}
