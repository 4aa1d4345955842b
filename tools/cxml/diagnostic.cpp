#include "diagnostic.h"

#include <unistd.h>

#include <cstdarg>
#include <cstdio>
#include <optional>

#include "source_line.h"
#include "text.h"

namespace tool {

void keepError(XML_Parser_Ctx *context, const char *format, ...) {
    auto *error = static_cast<ParseError *>(context->handler->userData);
    va_list arguments;
    va_start(arguments, format);
    error->line = va_arg(arguments, int);
    error->column = va_arg(arguments, int);
    va_arg(arguments, char *);  // the snippet, which says less than the line
    const char *message = va_arg(arguments, char *);
    va_end(arguments);
    error->encoding = context->input->encoding;
    try {
        error->message = message;
    } catch (...) {
        error->message.clear();  // no exception may pass through the library
    }
}

bool isExhausted(const ParseError &error) {
    return error.message.empty() || error.message == "memory allocation failed.";
}

void reportError(const Input &input, const ParseError &error, bool context) {
    std::string report = input.name() + ":";
    if (error.line > 0) {
        report += std::to_string(error.line) + ":" + std::to_string(error.column) + ":";
    }
    report += " " + printable(error.message) + "\n";
    if (error.line > 0 && (context || isatty(STDERR_FILENO))) {
        // The column is that of the first character that was not read.
        if (const std::optional<SourceLine> line =
                readSourceLine(input.path(), error.encoding, error.line, error.column)) {
            report += line->text + "\n" + std::string(line->caret, ' ') + "^\n";
        }
    }
    std::fputs(report.c_str(), stderr);
}

}  // namespace tool
