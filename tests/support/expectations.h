// tests/support/expectations.h - what a document must give, whichever way it is handed over.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tests/support/feeds.h"

namespace support {

// The library's message for a code, "unknown error occurred." for any other number.
std::string_view messageOf(int code);

// Every code that has a message of its own, in the order in which the library searches them.
const std::vector<int> &messageCodes();

inline constexpr std::string_view kWholeDocument = "(the whole document)";

// A document that is not accepted.
struct Refusal {
    const char *name;
    std::string_view document;
    int code;
    int line;
    int column;
    // What the message quotes when the document lies in memory; empty if it does not matter here.
    std::string_view snippet = {};
};

// Checks the result, the one message and its fields, through every feed of the document, and that
// the model of parser_model.h, where it speaks for the document, gives the same.
void expectRefused(const Refusal &refusal);

// A document that is accepted with these calls, positions left out.
struct Acceptance {
    const char *name;
    std::string_view document;
    std::vector<std::string> calls;
};

// Checks result and calls, through every feed of the document and against the model. The list need
// not name startDocument and endDocument, with encoding 0, at its ends.
void expectAccepted(const Acceptance &acceptance);

// The calls of a parse from memory without its positions, whatever its result.
std::vector<std::string> callsOf(std::string_view document);

// Checks that all feeds of a document (the main ones, beyond 4 KiB) give what its first feed gives,
// and what the model gives, and returns that.
RecordedParse expectSameThroughEveryFeed(std::string_view document, const std::string &name);
RecordedParse expectSameThroughFeeds(const std::vector<Feed> &feeds, const std::string &name);

}  // namespace support
