// tools/xsd2c/arguments.h - the command line.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

namespace xsd2c {

struct Arguments {
    std::string directory = ".";
    std::string prefix;   // "" makes one of each schema's name
    std::string depfile;  // "" for none
    bool strict = false;
    bool help = false;
    bool version = false;
    std::vector<std::string> schemas;
};

// A command line that makes no sense; what() is what to say of it.
class UsageError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

Arguments readArguments(int count, char **values);

extern const char kHelp[];

}  // namespace xsd2c
