// The parser: the same calls, positions and error for every way of handing a document over, and
// those of a second, slow parser. Callbacks may stop the parse anywhere.
#include <sstream>
#include <string>
#include <string_view>

#include "compactxml.h"
#include "fuzz/support/converters.h"
#include "fuzz/support/document.h"
#include "fuzz/support/require.h"
#include "fuzz/support/target.h"
#include "tests/support/parser_model.h"

namespace {

using fuzz::Document;
using support::RecordedParse;
using support::RecordOptions;
using support::Slot;

constexpr Slot kSlots[] = {
    Slot::kNone,    Slot::kStartDocument,  Slot::kEndDocument, Slot::kCharacters,
    Slot::kComment, Slot::kCdataBlock,     Slot::kNone,        Slot::kProcessingInstruction,
    Slot::kNone,    Slot::kStartElementNs, Slot::kEndElementNs};
constexpr std::int32_t kStatuses[] = {1, 2, 9, -1, 33, 0, 1000000, INT32_MIN};

constexpr std::int32_t kNoConversion = 1500;

RecordOptions readOptions(fuzz::FuzzInput &input) {
    RecordOptions options;
    const unsigned slot = input.byte();
    // Nothing is stopped by most inputs, such as those that begin with '0'.
    if (slot % 4 == 1) options.stopSlot = kSlots[slot / 4 % std::size(kSlots)];
    options.stopCall = 1 + input.byte() % 8;
    options.stopStatus = kStatuses[input.byte() % std::size(kStatuses)];
    return options;
}

std::string both(const RecordedParse &a, const RecordedParse &b) {
    std::ostringstream text;
    text << a << "\n---- other:\n" << b;
    return text.str();
}

void requireSameParse(const RecordedParse &first, const RecordedParse &other, const char *text) {
    fuzz::requireOr(support::sameOutcome(first, other), text, [&] { return both(first, other); });
}

// What holds for any parse by itself.
void requireSound(const RecordedParse &parse) {
    fuzz::requireOr(parse.breaches.empty(), "a callback's rule is broken",
                    [&] { return both(parse, {}); });
    fuzz::require(parse.result == XML_OK || parse.result == XML_REFUSED, "the result is neither");
    fuzz::requireOr(parse.errors == (parse.result == XML_OK ? 0 : 1), "errors and result disagree",
                    [&] { return both(parse, {}); });
    if (parse.errors == 0) return;
    fuzz::require(!parse.message.empty(), "an error without a message");
    fuzz::require(parse.snippet.size() <= 63, "a snippet that is too long");
    fuzz::require(parse.line == parse.contextLine && parse.column == parse.contextColumn,
                  "the error's position is not the context's");
    fuzz::require(parse.text.starts_with("The Line " + std::to_string(parse.line) + " Column " +
                                         std::to_string(parse.column) + " :\""),
                  "the format does not give the message");
}

// Stopping changes nothing before the stop.
void requireStopped(const RecordedParse &whole, const RecordedParse &stopped, std::int32_t status) {
    fuzz::require(stopped.calls.size() <= whole.calls.size(), "more calls than without a stop");
    fuzz::requireOr(std::equal(stopped.calls.begin(), stopped.calls.end(), whole.calls.begin()),
                    "a stop changes the calls before it", [&] { return both(whole, stopped); });
    if (stopped.calls.size() == whole.calls.size()) return;
    // An input that does not convert is told before all else.
    fuzz::require(stopped.result == XML_REFUSED &&
                      (stopped.status == status || stopped.status == kNoConversion),
                  "a stop is not answered with its status");
}

// The library looks for the first bytes of wide encodings behind a byte order mark as well.
bool modelSpeaksFor(std::string_view document) {
    constexpr std::string_view kMark = "\xEF\xBB\xBF";
    const bool marked = document.starts_with(kMark);
    return support::modelSpeaksFor(document) &&
           (!marked || support::modelSpeaksFor(document.substr(kMark.size())));
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    fuzz::holdConverters();
    fuzz::FuzzInput input(data, size);
    const RecordOptions options = readOptions(input);
    const unsigned ways = input.byte();
    const Document document(input);

    const RecordedParse cut = record(document.cut(), options);
    requireSound(cut);
    if ((ways & 3) == 3) {
        requireSameParse(cut, record(document.finelyCut(), options), "two cuts differ");
    }
    if ((ways & 12) == 12) {
        requireSameParse(cut, record(document.file(), options), "a file differs from a list");
    }
    // There is no parse over no bytes of memory.
    if (document.bytes().empty()) return 0;
    const RecordedParse first = record(document.memory(), options);
    requireSound(first);
    // All bytes of a memory must convert, and those of a file as far as they are read.
    if (first.status != kNoConversion) requireSameParse(first, cut, "a list differs from memory");
    if (!document.isLong() && modelSpeaksFor(document.bytes())) {
        const RecordedParse model = support::modelParse(document.bytes(), options);
        requireSameParse(first, model, "the model differs from the library");
        // What was read before the encoding changed is no longer there to be quoted.
        if (document.bytes().find("encoding") == std::string::npos) {
            fuzz::requireSame(first.snippet, model.snippet, "the model's snippet differs");
        }
    }
    if (options.stopSlot != Slot::kNone && options.stopStatus != 0) {
        requireStopped(record(document.memory()), first, options.stopStatus);
    } else {
        fuzz::require(document.memory().parse(nullptr) == first.result,
                      "a parse without a handler has another result");
    }
    return 0;
}
