// tests/tools/support/run.h - runs command lines as a person would type them.
#pragma once

#include <span>
#include <string>
#include <string_view>

struct Result {
    std::string out;
    std::string err;
    int status = 0;  // 128 + n for signal n
};

// Runs a line of sh in a fresh directory that holds copies of examples/data/*.xml, with `cxml` and
// `xsd2c` on PATH and LC_ALL=C.UTF-8. The line may create its own files (printf, here documents). Standard
// input is empty; the directory is removed afterwards.
Result runLine(std::string_view line);

// Levels of a document that is deep; instrumented builds take too long for more.
#ifdef CXML_INSTRUMENTED
inline const std::string kDeep = "100000";
#else
inline const std::string kDeep = "1000000";
#endif

struct CommandCase {
    const char *name;
    const char *line;
    const char *out;
    const char *err;
    int status;
};

// Names the case and shows all of it on failure.
void expectCommands(std::span<const CommandCase> cases);
