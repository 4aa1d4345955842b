// tools/cxml/commands.h - what each command is asked, as the command line says it, and where it runs.
//
// Every command returns its exit status or throws a Failure; see failure.h for both. Texts are UTF-8
// as typed.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace tool {

struct CheckOptions {
    std::vector<std::string> files;
    bool context = false;  // show the line even where standard error is no terminal
    bool stats = false;
};
int runCheck(const CheckOptions &options);

struct PrintOptions {
    std::string file;
    std::string encoding;       // "" keeps the document's
    std::optional<int> indent;  // blanks for each level
    bool noDeclaration = false;
    std::string output;  // "" is standard output
};
int runPrint(const PrintOptions &options);

struct ValidateOptions {
    std::vector<std::string> schemas;  // XML Schema documents
    std::vector<std::string> plugins;  // compiled units
    std::vector<std::string> files;
};
int runValidate(const ValidateOptions &options);

enum class Show { kText, kInt, kUint, kXml, kPath, kExists };

struct SelectOptions {
    std::string file;
    std::vector<std::string> paths;
    Show show = Show::kText;
};
int runSelect(const SelectOptions &options);

struct TreeOptions {
    std::string file;
    std::optional<std::size_t> depth;  // levels shown
};
int runTree(const TreeOptions &options);

struct EditOperation {
    enum class Kind { kSet, kAdd, kDelete, kRename, kAttribute, kCopy };
    Kind kind = Kind::kSet;
    // As typed: PATH=VALUE; PATH, NAME[=VALUE]; PATH; PATH=NAME; PATH, NAME=VALUE; FROM, TO
    std::vector<std::string> arguments;
};

struct EditOptions {
    std::string file;
    std::vector<EditOperation> operations;  // in the order in which they were typed
    bool inPlace = false;
    std::string output;  // "" is standard output
};
int runEdit(const EditOptions &options);

struct DiffOptions {
    std::string a;
    std::string b;
};
int runDiff(const DiffOptions &options);

int runEncodings();

}  // namespace tool
