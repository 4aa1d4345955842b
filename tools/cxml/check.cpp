#include <chrono>
#include <cstdint>
#include <cstdio>
#include <new>
#include <optional>
#include <string>
#include <string_view>

#include "commands.h"
#include "compactxml.h"
#include "diagnostic.h"
#include "failure.h"
#include "input.h"
#include "output.h"
#include "progress.h"
#include "text.h"

namespace tool {
namespace {

struct Counts {
    std::uint64_t elements = 0;
    std::uint64_t attributes = 0;
    std::uint64_t textBytes = 0;  // in UTF-8, of CDATA sections too
    std::uint64_t depth = 0;
    std::uint32_t encoding = XML_ENCODING_UTF_8;
};

// What a parse leaves behind.
struct Check {
    ParseError error;
    Counts counts;
    std::uint64_t open = 0;
    Progress *progress = nullptr;
};

Check &checkOf(const XML_Parser_Ctx *context) {
    return *static_cast<Check *>(context->handler->userData);
}

void startElement(XML_Parser_Ctx *context, const char *, const char *, const char *, int,
                  const char **, int attributeCount, int, const char **) {
    Check &check = checkOf(context);
    ++check.counts.elements;
    check.counts.attributes += static_cast<std::uint64_t>(attributeCount);
    if (++check.open > check.counts.depth) check.counts.depth = check.open;
    check.progress->step(context);
}

void endElement(XML_Parser_Ctx *context, const char *, const char *, const char *) {
    Check &check = checkOf(context);
    --check.open;
    check.progress->step(context);
}

void takeText(XML_Parser_Ctx *context, const char *, int length) {
    checkOf(context).counts.textBytes += static_cast<std::uint64_t>(length);
}

void stepOverComment(XML_Parser_Ctx *context, const char *) {
    checkOf(context).progress->step(context);
}

void endDocument(XML_Parser_Ctx *context) {
    checkOf(context).counts.encoding = context->encoding;
}

enum class Verdict { kAccepted, kRefused, kNotRead };

void writeCounts(const Input &input, const Counts &counts, double seconds, Output &output) {
    const double megabytes = static_cast<double>(input.size()) / 1e6;
    const auto row = [&](std::string_view label, const std::string &value) {
        output.write("  ");
        output.write(label);
        output.write(std::string(12 - label.size(), ' ') + value + "\n");
    };
    char rate[32];
    std::snprintf(rate, sizeof rate, "%.1f", seconds > 0 ? megabytes / seconds : 0.0);
    output.write(input.name() + "\n");
    row("elements", std::to_string(counts.elements));
    row("attributes", std::to_string(counts.attributes));
    row("text bytes", std::to_string(counts.textBytes));
    row("depth", std::to_string(counts.depth));
    row("encoding", XML_DOM_EncodingEnumToStr(counts.encoding));
    row("MB/s", rate);
}

Verdict checkInput(const Input &input, const CheckOptions &options, Output &output) {
    Check check;
    XML_SAX_Handler handler{};
    handler.userData = &check;
    handler.error = keepError;
    handler.startElementNs = startElement;
    handler.endElementNs = endElement;
    handler.characters = takeText;
    handler.cdataBlock = takeText;
    handler.comment = stepOverComment;
    handler.endDocument = endDocument;

    const auto start = std::chrono::steady_clock::now();
    std::uint32_t result;
    {
        Progress progress{input};
        check.progress = &progress;
        result = XML_Parser_ByFile(input.path().c_str(), &handler);
    }
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
    if (result != XML_OK) {
        if (isExhausted(check.error)) throw std::bad_alloc();
        reportError(input, check.error, options.context);
        return Verdict::kRefused;
    }
    if (options.stats) writeCounts(input, check.counts, time.count(), output);
    return Verdict::kAccepted;
}

// One file that cannot be read does not keep the others from being checked.
Verdict checkFile(const std::string &name, const CheckOptions &options, Output &output) {
    std::optional<Input> input;
    try {
        input.emplace(name);
    } catch (const Failure &failure) {
        const std::string line = "cxml: " + printable(failure.what()) + "\n";
        std::fputs(line.c_str(), stderr);
        return Verdict::kNotRead;
    }
    return checkInput(*input, options, output);
}

}  // namespace

int runCheck(const CheckOptions &options) {
    Output output("");
    std::size_t accepted = 0, refused = 0, notRead = 0;
    for (const std::string &name : options.files) {
        switch (checkFile(name, options, output)) {
            case Verdict::kAccepted:
                ++accepted;
                break;
            case Verdict::kRefused:
                ++refused;
                break;
            case Verdict::kNotRead:
                ++notRead;
                break;
        }
    }
    const std::size_t files = options.files.size();
    if (files > 1 || options.stats) {
        output.write(std::to_string(files) + (files == 1 ? " file, " : " files, ") +
                     std::to_string(accepted) + " accepted, " + std::to_string(refused) +
                     " refused");
        if (notRead != 0) output.write(", " + std::to_string(notRead) + " not read");
        output.write("\n");
    }
    output.commit();
    if (notRead != 0) return kTrouble;
    return refused != 0 ? kRefused : kSuccess;
}

}  // namespace tool
