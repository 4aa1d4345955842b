// The command line: what is asked becomes the options of commands.h, and how a command ends becomes
// the exit status.
#include <fcntl.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <charconv>
#include <cstdio>
#include <functional>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "commands.h"
#include "failure.h"
#include "output.h"
#include "text.h"

namespace tool {
namespace {

// CLI11 takes "[a,b]" for a list and "-a" for an option wherever an argument may stand. In front of
// an argument that is neither stands a NUL, which no argument can hold.
std::string protect(const std::string &argument) {
    return std::string(1, '\0') + argument;
}

std::string unprotect(const std::string &argument) {
    return argument.starts_with('\0') ? argument.substr(1) : argument;
}

// The arguments as CLI11 wants them: the last one first. Behind "--" all are operands.
std::vector<std::string> readArguments(int count, char **values) {
    std::vector<std::string> arguments;
    bool operands = false;
    for (int i = 1; i < count; ++i) {
        const std::string argument = values[i];
        if (!operands && argument == "--") {
            operands = true;
        } else if (operands || argument.empty() ||
                   (argument.front() == '[' && argument.back() == ']')) {
            arguments.push_back(protect(argument));
        } else {
            arguments.push_back(argument);
        }
    }
    return {arguments.rbegin(), arguments.rend()};
}

// A wrong command line; the second line says where to read on.
class UsageFailure : public Failure {
  public:
    explicit UsageFailure(const std::string &text) : Failure(kTrouble, text) {}
};

template <class Number>
Number readNumber(const std::string &option, const std::string &text, Number least, Number most) {
    Number number{};
    const char *const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc{} || stop != end || number < least || number > most) {
        throw UsageFailure(option + " takes a number from " + std::to_string(least) + " to " +
                           std::to_string(most) + ", not '" + text + "'");
    }
    return number;
}

std::string outputName(const std::string &name) {
    return name == "-" ? "" : name;
}

// One command: how it is described to CLI11, and what runs it.
struct Command {
    CLI::App *app = nullptr;
    std::function<int()> run;
};

CLI::App *addCommand(CLI::App &app, const char *name, const char *description,
                     const char *examples) {
    CLI::App *command = app.add_subcommand(name, description)->group("Commands");
    command->footer(std::string("Examples:\n") + examples);
    return command;
}

std::vector<std::string> unprotectAll(std::vector<std::string> arguments) {
    for (std::string &argument : arguments) argument = unprotect(argument);
    return arguments;
}

// An option with a value, of which the last one counts. The long name is the last one.
CLI::Option *addText(CLI::App *command, const std::string &names, std::string &value,
                     const char *type, const char *description) {
    const auto take = [&value,
                       name = names.substr(names.rfind(',') + 1)](const CLI::results_t &results) {
        value = unprotect(results.back());
        if (value.empty()) throw UsageFailure(name + " lacks an argument");
        return true;
    };
    return command->add_option(names, take, description)
        ->option_text(type)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
}

CLI::Option *addOutput(CLI::App *command, std::string &value) {
    return addText(command, "-o,--output", value, "FILE", "Write here; - is standard output");
}

void addOperand(CLI::App *command, const char *name, std::string &value, const char *description) {
    const auto take = [&value](const CLI::results_t &results) {
        value = unprotect(results.front());
        return true;
    };
    command->add_option(name, take, description)->option_text(" ")->required();
}

// One operand or more. CLI11's own vectors would take one named "{}" for none.
void addOperands(CLI::App *command, const char *name, std::vector<std::string> &values,
                 const char *description) {
    const auto take = [&values](const CLI::results_t &results) {
        values = unprotectAll(results);
        return true;
    };
    constexpr int kMost = 1 << 29;
    command->add_option(name, take, description)
        ->option_text(" ")
        ->required()
        ->expected(1, kMost)
        ->allow_extra_args();
}

Command addCheck(CLI::App &app) {
    auto options = std::make_shared<CheckOptions>();
    CLI::App *command = addCommand(app, "check", "Tell whether documents are well-formed",
                                   "  cxml check switch.xml\n"
                                   "  cxml check --stats *.xml\n"
                                   "  show-config | cxml check --context -");
    addOperands(command, "FILE", options->files, "Documents; - is standard input");
    command->add_flag("--context", options->context,
                      "Show the line with the error, also where it is no terminal");
    command->add_flag("--stats", options->stats, "Show what was counted in each document");
    return {command, [options] { return runCheck(*options); }};
}

// An option with a value that may be given several times.
void addTexts(CLI::App *command, const char *name, std::vector<std::string> &values,
              const char *type, const char *description) {
    const auto take = [&values, name](const CLI::results_t &results) {
        values.push_back(unprotect(results.back()));
        if (values.back().empty()) throw UsageFailure(std::string(name) + " lacks an argument");
        return true;
    };
    command->add_option(name, take, description)
        ->option_text(type)
        ->type_size(1)
        ->trigger_on_parse();
}

Command addValidate(CLI::App &app) {
    auto options = std::make_shared<ValidateOptions>();
    CLI::App *command =
        addCommand(app, "validate", "Tell whether documents are valid against schemas",
                   "  cxml validate --schema switch.xsd switch.xml\n"
                   "  cxml validate --plugin ./libswitch.so *.xml");
    addTexts(command, "--schema", options->schemas, "FILE.xsd", "An XML Schema document");
    addTexts(command, "--plugin", options->plugins, "UNIT.so", "A schema that xsd2c compiled");
    addOperands(command, "FILE", options->files, "Documents; - is standard input");
    return {command, [options] {
                if (options->schemas.empty() && options->plugins.empty()) {
                    throw UsageFailure("--schema or --plugin is needed");
                }
                return runValidate(*options);
            }};
}

Command addPrint(CLI::App &app) {
    struct Typed : PrintOptions {
        std::string indentText;
    };
    auto options = std::make_shared<Typed>();
    CLI::App *command = addCommand(app, "print", "Write a document compactly or indented",
                                   "  cxml print --indent 2 switch.xml\n"
                                   "  cxml print --encoding GB18030 -o switch.gb.xml switch.xml");
    addOperand(command, "FILE", options->file, "The document; - is standard input");
    addText(command, "--encoding", options->encoding, "NAME",
            "Write in this encoding instead of the document's");
    addText(command, "--indent", options->indentText, "N",
            "Begin a line for each element, indented by N blanks a level (0 to 16)");
    command->add_flag("--no-declaration", options->noDeclaration, "Leave out the XML declaration");
    addOutput(command, options->output);
    return {command, [options, command] {
                if (command->count("--indent") != 0) {
                    options->indent = readNumber("--indent", options->indentText, 0, 16);
                }
                options->output = outputName(options->output);
                return runPrint(*options);
            }};
}

Command addSelect(CLI::App &app) {
    auto options = std::make_shared<SelectOptions>();
    CLI::App *command =
        addCommand(app, "select", "Show what paths select",
                   "  cxml select switch.xml /switch/system/hostname\n"
                   "  cxml select --xml switch.xml '/switch/interfaces/interface[2]'\n"
                   "  cxml select --exists switch.xml /switch/qos && echo has QoS");
    addOperand(command, "FILE", options->file, "The document; - is standard input");
    addOperands(command, "PATH", options->paths, "Names divided by slashes, such as /a/b[2]/c");
    constexpr std::pair<const char *, Show> kShows[] = {
        {"--text", Show::kText}, {"--int", Show::kInt},   {"--uint", Show::kUint},
        {"--xml", Show::kXml},   {"--path", Show::kPath}, {"--exists", Show::kExists}};
    constexpr const char *kDescriptions[] = {"The text (what is shown without an option)",
                                             "The text as an integer",
                                             "The text as an unsigned integer",
                                             "The element itself",
                                             "Where it stands, with positions",
                                             "Nothing; the exit status tells"};
    for (std::size_t i = 0; i < std::size(kShows); ++i) {
        command->add_flag(kShows[i].first, kDescriptions[i]);
    }
    return {command, [options, command, shows = std::to_array(kShows)] {
                const char *chosen = nullptr;
                for (const auto &[name, show] : shows) {
                    if (command->count(name) == 0) continue;
                    if (chosen) {
                        throw UsageFailure(std::string(chosen) + " and " + name +
                                           " exclude each other");
                    }
                    chosen = name;
                    options->show = show;
                }
                return runSelect(*options);
            }};
}

Command addTree(CLI::App &app) {
    struct Typed : TreeOptions {
        std::string depthText;
    };
    auto options = std::make_shared<Typed>();
    CLI::App *command = addCommand(app, "tree", "Show the outline of a document",
                                   "  cxml tree --depth 2 switch.xml");
    addOperand(command, "FILE", options->file, "The document; - is standard input");
    addText(command, "--depth", options->depthText, "N", "Show so many levels");
    return {command, [options, command] {
                if (command->count("--depth") != 0) {
                    constexpr std::size_t kMost = 1000000000;
                    options->depth =
                        readNumber<std::size_t>("--depth", options->depthText, 1, kMost);
                }
                return runTree(*options);
            }};
}

struct OperationOption {
    const char *name;
    EditOperation::Kind kind;
    int arguments;
    const char *type;
    const char *description;
};

constexpr OperationOption kOperations[] = {
    {"--set", EditOperation::Kind::kSet, 1, "PATH=VALUE", "Give an element this text"},
    {"--add", EditOperation::Kind::kAdd, 2, "PATH NAME[=VALUE]", "Add an element at the end"},
    {"--delete", EditOperation::Kind::kDelete, 1, "PATH", "Delete an element"},
    {"--rename", EditOperation::Kind::kRename, 1, "PATH=NAME", "Give an element another name"},
    {"--attr", EditOperation::Kind::kAttribute, 2, "PATH NAME=VALUE", "Set an attribute"},
    {"--copy", EditOperation::Kind::kCopy, 2, "FROM TO", "Copy an element into another"},
};

Command addEdit(CLI::App &app) {
    auto options = std::make_shared<EditOptions>();
    CLI::App *command =
        addCommand(app, "edit", "Change a document, by operations in the order given",
                   "  cxml edit switch.xml --in-place --set /switch/system/hostname=agg-east-4\n"
                   "  cxml edit switch.xml -o new.xml --delete '/switch/vlans/vlan[3]' \\\n"
                   "      --attr /switch revision=2418");
    addOperand(command, "FILE", options->file, "The document; - is standard input");
    for (const OperationOption &operation : kOperations) {
        // Run at each occurrence: CLI11 gathers options by name, which would lose their order.
        command
            ->add_option(
                operation.name,
                [options, kind = operation.kind](const CLI::results_t &results) {
                    options->operations.push_back({kind, unprotectAll(results)});
                    return true;
                },
                operation.description)
            ->type_size(operation.arguments)
            ->option_text(operation.type)
            ->trigger_on_parse();
    }
    CLI::Option *inPlace =
        command->add_flag("--in-place", options->inPlace, "Replace the document itself");
    addOutput(command, options->output)->excludes(inPlace);
    return {command, [options] {
                if (options->inPlace && options->file == "-") {
                    throw UsageFailure("--in-place needs a file, not standard input");
                }
                options->output = outputName(options->output);
                return runEdit(*options);
            }};
}

Command addDiff(CLI::App &app) {
    auto options = std::make_shared<DiffOptions>();
    CLI::App *command = addCommand(app, "diff", "Compare two documents by structure",
                                   "  cxml diff running.xml startup.xml");
    addOperand(command, "A", options->a, "The one document; - is standard input");
    addOperand(command, "B", options->b, "The other document");
    return {command, [options] { return runDiff(*options); }};
}

Command addEncodings(CLI::App &app) {
    return {addCommand(app, "encodings", "Tell which encodings this machine reads and writes",
                       "  cxml encodings"),
            [] { return runEncodings(); }};
}

void printText(const std::string &text) {
    Output output("");
    output.write(text);
    output.commit();
}

// The name of the command that help was asked for or that was used wrongly, behind a blank.
std::string usedCommand(const CLI::App &app) {
    const std::vector<CLI::App *> used = app.get_subcommands();
    return used.empty() ? "" : " " + used.front()->get_name();
}

int refuseUsage(const CLI::App &app, const std::string &text) {
    const std::string line =
        "cxml: " + printable(text) + "\nTry 'cxml" + usedCommand(app) + " --help'.\n";
    std::fputs(line.c_str(), stderr);
    return kTrouble;
}

// What CLI11 says of a wrong command line, without the marks of protect().
std::string messageOf(const CLI::App &app, const CLI::ParseError &error) {
    const std::vector<std::string> extras = app.remaining(true);
    const std::string first = extras.empty() ? "" : unprotect(extras.front());
    if (app.get_subcommands().empty() && !first.starts_with('-')) {
        return extras.empty() ? "no command is given" : "unknown command '" + first + "'";
    }
    if (dynamic_cast<const CLI::ArgumentMismatch *>(&error)) {
        const std::string text = error.what();
        return text.substr(0, text.find(':')) + " lacks an argument";
    }
    return extras.empty() ? error.what() : "unexpected argument '" + first + "'";
}

int runCommandLine(int count, char **values) {
    CLI::App app("Checks, prints, queries, edits, compares and validates XML documents.", "cxml");
    app.set_version_flag("--version", "cxml " COMPACTXML_VERSION "\n", "Print the version");
    app.require_subcommand(1);
    app.get_formatter()->label("SUBCOMMAND", "COMMAND");
    app.footer(
        "Examples:\n"
        "  cxml check --stats switch.xml\n"
        "  cxml COMMAND --help\n"
        "\n"
        "Exit status: 0 success; 1 a document is refused or a path selects nothing (of diff:\n"
        "they differ); 2 wrong usage, or a file that cannot be read or written.");
    const Command commands[] = {addCheck(app), addPrint(app), addSelect(app),   addTree(app),
                                addEdit(app),  addDiff(app),  addValidate(app), addEncodings(app)};
    try {
        app.parse(readArguments(count, values));
        for (const Command &command : commands) {
            if (command.app->parsed()) return command.run();
        }
        return refuseUsage(app, "no command is given");
    } catch (const CLI::CallForHelp &) {
        printText(app.help());
        return kSuccess;
    } catch (const CLI::CallForVersion &version) {
        printText(version.what());
        return kSuccess;
    } catch (const CLI::ParseError &error) {
        return refuseUsage(app, messageOf(app, error));
    } catch (const UsageFailure &failure) {
        return refuseUsage(app, failure.what());
    }
}

// A file that is opened must not become a standard stream because that was closed. What takes its
// place refuses what the stream is used for.
void occupyStandardStreams() {
    for (int descriptor = 0; descriptor <= 2; ++descriptor) {
        if (fcntl(descriptor, F_GETFD) < 0)
            open("/dev/null", descriptor == 0 ? O_WRONLY : O_RDONLY);
    }
}

}  // namespace
}  // namespace tool

int main(int count, char **values) {
    using namespace tool;
    occupyStandardStreams();
    try {
        return runCommandLine(count, values);
    } catch (const Failure &failure) {
        if (*failure.what() != '\0') {
            try {
                const std::string line = "cxml: " + printable(failure.what()) + "\n";
                std::fputs(line.c_str(), stderr);
            } catch (const std::bad_alloc &) {
                std::fputs("cxml: memory exhausted\n", stderr);
            }
        }
        return failure.status();
    } catch (const std::bad_alloc &) {
        std::fputs("cxml: memory exhausted\n", stderr);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "cxml: %s\n", error.what());
    }
    return kTrouble;
}
