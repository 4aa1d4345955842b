// tests/support/parser_model.h - a second, slow parser that the library's own is compared with.
//
// It reads one document of UTF-8 held in a string, one character at a time and without any of the
// library's machinery: no streams, no windows, no buffers, no conversion. A declared encoding is
// noted and otherwise passed over, so it speaks for documents that are ASCII from there on.
#pragma once

#include <string_view>

#include "tests/support/feeds.h"

namespace support {

// Whether the model speaks for a document: it is not empty, and UTF-8 by its first bytes and by
// its declaration, or ASCII altogether.
bool modelSpeaksFor(std::string_view document);

// What record(memoryFeed(document), options) must give, format and text of the message left out.
RecordedParse modelParse(std::string_view document, const RecordOptions &options = {});

}  // namespace support
