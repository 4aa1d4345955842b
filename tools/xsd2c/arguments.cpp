#include "xsd2c/arguments.h"

#include <getopt.h>

namespace xsd2c {
namespace {

enum Option { kPrefix = 256, kStrict, kDepfile, kHelpOption, kVersion };

constexpr option kOptions[] = {
    {"output", required_argument, nullptr, 'o'},
    {"prefix", required_argument, nullptr, kPrefix},
    {"strict", no_argument, nullptr, kStrict},
    {"depfile", required_argument, nullptr, kDepfile},
    {"help", no_argument, nullptr, kHelpOption},
    {"version", no_argument, nullptr, kVersion},
    {nullptr, 0, nullptr, 0},
};

std::string needArgument(const char *option) {
    if (*optarg == '\0') throw UsageError(std::string(option) + " lacks an argument");
    return optarg;
}

// What getopt stumbled over: a short option, or the argument behind which it stands.
std::string refused(char **values) {
    if (optopt != 0 && optopt < 256) return std::string("-") + static_cast<char>(optopt);
    return values[optind - 1];
}

}  // namespace

const char kHelp[] =
    "Usage: xsd2c [-o DIR] [--prefix NAME] [--strict] [--depfile FILE] SCHEMA.xsd...\n"
    "\n"
    "Compiles XML Schema documents, each with all that it includes and imports, to C: for\n"
    "SCHEMA.xsd a header and a source file with constant records, which a program registers\n"
    "with SchemaReg_SCHEMA(root) and validates documents against.\n"
    "\n"
    "  -o, --output DIR   Write here instead of the working directory\n"
    "  --prefix NAME      Name the accessors Schema_NAME_..., not by the schema\n"
    "  --strict           Refuse what cannot be enforced, instead of a warning\n"
    "  --depfile FILE     Write the documents that were read as a rule for make and ninja\n"
    "  --help             Print this\n"
    "  --version          Print the version\n"
    "\n"
    "Exit status: 0 success, perhaps with warnings; 1 a schema is refused, and nothing is\n"
    "written; 2 wrong usage, or a file that cannot be written.\n";

Arguments readArguments(int count, char **values) {
    Arguments arguments;
    optind = 0;  // begins anew, also after another command line
    opterr = 0;
    for (;;) {
        switch (const int option = getopt_long(count, values, ":o:", kOptions, nullptr)) {
            case -1:
                arguments.schemas.assign(values + optind, values + count);
                if (arguments.schemas.empty() && !arguments.help && !arguments.version) {
                    throw UsageError("no schema is given");
                }
                return arguments;
            case 'o':
                arguments.directory = needArgument("-o");
                break;
            case kPrefix:
                arguments.prefix = needArgument("--prefix");
                break;
            case kStrict:
                arguments.strict = true;
                break;
            case kDepfile:
                arguments.depfile = needArgument("--depfile");
                break;
            case kHelpOption:
                arguments.help = true;
                break;
            case kVersion:
                arguments.version = true;
                break;
            default:
                throw UsageError(option == ':' ? refused(values) + " lacks an argument"
                                               : "unknown option " + refused(values));
        }
    }
}

}  // namespace xsd2c
