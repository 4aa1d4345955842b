// tests/support/feeds.h - every way of handing a document to the library, and what came of it.
//
// A test that holds for a document holds for each of its feeds: memory, a file, and a memory list
// cut anywhere. The bytes lie in heap blocks of exactly their size, so that an address sanitizer
// sees a read one byte past the end.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "compactxml.h"

namespace support {

// A file of its own with the given content, removed at the end.
class TemporaryFile {
  public:
    explicit TemporaryFile(std::string_view content);
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile &) = delete;
    TemporaryFile &operator=(const TemporaryFile &) = delete;

    const char *path() const { return path_.c_str(); }

  private:
    std::string path_;
};

// One way of handing over one document. Copies share the document.
class Feed {
  public:
    enum class Kind { kMemory, kFile, kList };

    const std::string &name() const { return name_; }
    Kind kind() const { return kind_; }

    std::uint32_t parse(XML_SAX_Handler *handler) const;
    XML_DOM_Node *build(std::uint32_t errorSize, char *errorBuffer) const;
    XML_IO_InStream *open() const;
    void close(XML_IO_InStream *stream) const;

  private:
    struct Document;
    friend Feed makeList(std::string name, const std::vector<std::string_view> &pieces);
    friend Feed memoryFeed(std::string_view document);
    friend Feed fileFeed(std::string_view document);

    Kind kind_ = Kind::kMemory;
    std::string name_;
    std::shared_ptr<Document> document_;
};

Feed memoryFeed(std::string_view document);
Feed fileFeed(std::string_view document);
Feed listFeed(std::string_view document);  // one chunk; no chunk at all when there are no bytes
Feed listCutAt(std::string_view document, std::size_t position);
Feed listInPieces(std::string_view document, std::size_t size);
Feed listWithEmptyChunks(std::string_view document);  // empty ones first, last and in between
Feed makeList(std::string name, const std::vector<std::string_view> &pieces);

// Memory, file, list whole, cut once at every position, in pieces of 1, 2, 3, 63, 64, 65, 1023,
// 1024 and 1025 bytes, and with empty chunks. Of a long document the cuts are those around the
// multiples of 64 up to 2 KiB and of 1024 beyond. An empty document has no memory feed, which is
// refused before there is a parse.
std::vector<Feed> everyFeed(std::string_view document);

// Memory, file, list whole and in pieces of 1 and 65 bytes: enough for long documents.
std::vector<Feed> mainFeeds(std::string_view document);

// ---------------------------------------------------------------- recorded parses

// The callbacks, for RecordOptions.
enum class Slot {
    kNone,
    kStartDocument,
    kEndDocument,
    kCharacters,
    kComment,
    kCdataBlock,
    kProcessingInstruction,
    kError,
    kStartElementNs,
    kEndElementNs
};

struct RecordOptions {
    Slot stopSlot = Slot::kNone;  // the callback that sets the status ...
    int stopCall = 1;             // ... at its so-manieth call, from 1 ...
    std::int32_t stopStatus = 0;  // ... to this
    bool positions = true;        // whether " @line:column" ends each entry of calls
};

// What one parse told its handler.
struct RecordedParse {
    std::uint32_t result = 0;
    // One string for each callback but error, bytes outside printable ASCII as \xHH, such as
    //   startElementNs "a" prefix "p" uri "u" ns [p="u" =""] attrs [x="1" q:y{v}="2"] @1:1
    //   characters "hi" 2 @1:5
    // A prefix, uri or data that is null is shown as null without quotation marks.
    std::vector<std::string> calls;
    int errors = 0;           // calls of error
    std::int32_t status = 0;  // of the context when error was called
    std::string format;       // the arguments of the last of them ...
    std::int32_t line = 0;
    std::int32_t column = 0;
    std::string snippet;
    std::string message;
    std::string text;              // ... and what they come to when formatted
    std::int32_t contextLine = 0;  // the fields of the context at that time
    std::int32_t contextColumn = 0;
    // Breaches of what holds for every callback, such as a text that does not end in NUL.
    std::vector<std::string> breaches;
};

RecordedParse record(const Feed &feed, const RecordOptions &options = {});
std::ostream &operator<<(std::ostream &out, const RecordedParse &parse);

// True when both parses made the same calls with the same outcome. The snippets may differ only in
// that one of them begins later, where the buffer no longer held the bytes before.
bool sameOutcome(const RecordedParse &a, const RecordedParse &b);

// Bytes as they stand in RecordedParse::calls, without quotation marks.
std::string printable(std::string_view bytes);

// ---------------------------------------------------------------- recorded builds

struct RecordedBuild {
    bool built = false;
    // Of the tree: encoding and version, then one line for each node, indented by its level:
    //   p:a ns [p="u"] attrs [x="1"]
    //   "text"
    //   CDATA "text"
    std::string tree;
    std::string error;  // of the error buffer of 512 bytes
    bool operator==(const RecordedBuild &) const = default;
};

RecordedBuild recordBuild(const Feed &feed);
std::string describeTree(const XML_DOM_Node *root);
std::ostream &operator<<(std::ostream &out, const RecordedBuild &build);

}  // namespace support
