// dom/text_writer.h - where the serializer's text goes: piece by piece to a function, or to memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "compactxml.h"
#include "io/output_stream.h"
#include "io/text_copy.h"

namespace cxml {

// Adds up the results of writes. A sum that wraps to 0 would look like success.
inline uint32_t plus(uint32_t sum, uint32_t result) {
    const auto total = static_cast<uint32_t>(uint64_t{sum} + result);
    return total == 0 ? sum : total;
}

// Up to two characters of markup; none for a length of 0.
struct Mark {
    char bytes[2];
    uint8_t length;
};

// A function sees every piece that is put, none of them empty. Of a stream only the whole counts:
// plain text is written straight into its block while ASCII passes it unchanged, and else gathered;
// only what needs a conversion is a piece that answers for itself.
class TextWriter {
  public:
    TextWriter(XML_WriteFn write, void *context) : write_(write), context_(context) {}
    explicit TextWriter(XML_IO_OutStream *stream);
    TextWriter(const TextWriter &) = delete;
    TextWriter &operator=(const TextWriter &) = delete;

    // Markup, which is ASCII.
    uint32_t put(const char *bytes, std::size_t length) {
        if (length > static_cast<std::size_t>(room_.end - room_.at)) {
            return putPiece(bytes, length);
        }
        std::memcpy(room_.at, bytes, length);
        room_.at += length;
        return XML_OK;
    }

    // A string as it is; nothing for null.
    uint32_t putString(const char *text);

    // A name between what belongs to it. The prefix may be null, and so may the name.
    uint32_t putName(const Mark &before, const char *prefix, const char *name, const Mark &after) {
        Byte *const end = putShortName(before, prefix, name, after);
        if (!end) return putNamePieces(before, prefix, name, after);
        room_.at = reinterpret_cast<char *>(end);
        return XML_OK;
    }

    // A text, escaped. Intended: one white-space character at each end is protected and no more, and
    // quotes never are.
    uint32_t putText(const char *text);

    // Ends the writing to a stream: all of it is the stream's.
    uint32_t flush();

  private:
    // Most names are short, with nothing in them to convert, and are put at once. Gives the new end
    // of the text; null if it cannot be done so.
    Byte *putShortName(const Mark &before, const char *prefix, const char *name,
                       const Mark &after) const {
        constexpr std::ptrdiff_t kRoom = 2 + kCopyRoom + 1 + kCopyRoom + 2;  // p:name in marks
        if (room_.end - room_.at < kRoom || !name) return nullptr;
        const CopyStop<> stop{stopsAtMultibyte_};
        auto *at = reinterpret_cast<Byte *>(room_.at);
        std::memcpy(at, before.bytes, sizeof before.bytes);
        at += before.length;
        if (prefix) {
            at = copyShort(stop, prefix, at);
            if (!at) return nullptr;
            *at++ = ':';
        }
        at = copyShort(stop, name, at);
        if (!at) return nullptr;
        std::memcpy(at, after.bytes, sizeof after.bytes);
        return at + after.length;
    }

    uint32_t putPiece(const char *bytes, std::size_t length);
    uint32_t putNamePieces(const Mark &before, const char *prefix, const char *name,
                           const Mark &after);
    uint32_t putRuns(uint32_t sum, const char *text);
    uint32_t putReference(char special);
    uint32_t append(const char *bytes, uint32_t length);
    uint32_t makeRoom(std::size_t count);
    void useRoom();

    XML_WriteFn write_ = nullptr;
    void *context_ = nullptr;
    XML_IO_OutStream *stream_ = nullptr;
    bool direct_ = false;           // room_ is in the stream's block, not in gathered_
    bool stopsAtMultibyte_ = true;  // there is a converter
    OutRoom room_;                  // none while every piece is to be seen
    char gathered_[512];
};

}  // namespace cxml
