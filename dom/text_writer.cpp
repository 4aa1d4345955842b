#include "dom/text_writer.h"

#include "io/byte_scan.h"
#include "parser/char_class.h"

namespace cxml {
namespace {

struct Reference {
    const char *bytes;
    std::size_t length;
};

Reference referenceFor(char special) {
    switch (special) {
        case '<':
            return {"&lt;", 4};
        case '>':
            return {"&gt;", 4};
        case '&':
            return {"&amp;", 5};
        case '\n':
            return {"&#x0a;", 6};
        case '\r':
            return {"&#x0d;", 6};
        case ' ':
            return {"&#x20;", 6};
        default:
            return {"&#x09;", 6};
    }
}

const Byte *bytesOf(const char *text) {
    return reinterpret_cast<const Byte *>(text);
}

// Copies to the room; gives what ended it.
template <class Stop>
const char *copyToRoom(Stop stop, const char *text, OutRoom *room) {
    const Copied copied = copyUntil(stop, bytesOf(text), reinterpret_cast<Byte *>(room->at),
                                    reinterpret_cast<const Byte *>(room->end));
    room->at = reinterpret_cast<char *>(copied.to);
    return reinterpret_cast<const char *>(copied.from);
}

}  // namespace

TextWriter::TextWriter(XML_IO_OutStream *stream)
    : stream_(stream),
      direct_(XML_IO_PassesAscii(stream)),
      stopsAtMultibyte_(XML_IO_Converts(stream)) {
    useRoom();
}

uint32_t TextWriter::putString(const char *text) {
    if (!text) return XML_OK;
    const char *rest = copyToRoom(CopyStop<>{stopsAtMultibyte_}, text, &room_);
    return *rest == '\0' ? XML_OK : putPiece(rest, std::strlen(rest));
}

uint32_t TextWriter::putNamePieces(const Mark &before, const char *prefix, const char *name,
                                   const Mark &after) {
    uint32_t sum = put(before.bytes, before.length);
    if (prefix) {
        sum = plus(sum, putString(prefix));
        sum = plus(sum, put(":", 1));
    }
    sum = plus(sum, putString(name));
    return after.length != 0 ? plus(sum, put(after.bytes, after.length)) : sum;
}

uint32_t TextWriter::putText(const char *text) {
    if (!text) return XML_REFUSED;
    uint32_t sum = XML_OK;
    if (XML_Parser_IsBlank(*text)) sum = putReference(*text++);
    const char *run = text;
    for (;;) {
        const char *stop = copyToRoom(CopyStop<'<', '>', '&'>{stopsAtMultibyte_}, run, &room_);
        switch (*stop) {
            case '\0':
                if (stop == run || !XML_Parser_IsBlank(stop[-1])) return sum;
                --room_.at;
                return plus(sum, putReference(stop[-1]));
            case '<':
            case '>':
            case '&':
                sum = plus(sum, putReference(*stop));
                if (sum != XML_OK) return sum;
                run = stop + 1;
                break;
            default:
                return putRuns(sum, stop);
        }
    }
}

// The rest of a text whose length is worth knowing: of pieces, or to be converted, or without room.
uint32_t TextWriter::putRuns(uint32_t sum, const char *text) {
    const Byte *p = bytesOf(text);
    const Byte *const end = p + std::strlen(text);
    for (;;) {
        const Byte *const special = scanFor<AnyOf<'<', '>', '&'>>(p, end);
        const auto *run = reinterpret_cast<const char *>(p);
        auto length = static_cast<std::size_t>(special - p);
        if (special == end) {
            const bool protect = length != 0 && XML_Parser_IsBlank(run[length - 1]);
            if (protect) --length;
            sum = plus(sum, putPiece(run, length));
            if (protect) sum = plus(sum, putReference(run[length]));
            return sum;
        }
        sum = plus(sum, putPiece(run, length));
        sum = plus(sum, putReference(static_cast<char>(*special)));
        if (sum != XML_OK) return sum;
        p = special + 1;
    }
}

uint32_t TextWriter::putReference(char special) {
    const Reference reference = referenceFor(special);
    return put(reference.bytes, reference.length);
}

// Any piece, in any way that there is.
uint32_t TextWriter::putPiece(const char *bytes, std::size_t length) {
    if (length == 0) return XML_OK;
    if (length > UINT32_MAX) return XML_REFUSED;
    if (write_) return write_(context_, bytes, static_cast<uint32_t>(length));
    const bool plain = !stopsAtMultibyte_ || isAscii(bytes, length);
    if (!plain || stream_->pendingCount != 0 || (!direct_ && length > sizeof gathered_)) {
        return append(bytes, static_cast<uint32_t>(length));
    }
    if (length > static_cast<std::size_t>(room_.end - room_.at)) {
        const uint32_t status = makeRoom(length);
        if (status != XML_OK) return status;
    }
    std::memcpy(room_.at, bytes, length);
    room_.at += length;
    return XML_OK;
}

// For what may fail, and for what does not fit.
uint32_t TextWriter::append(const char *bytes, uint32_t length) {
    uint32_t status = flush();
    if (status == XML_OK) status = XML_IO_AppendWhole(stream_, bytes, length);
    useRoom();
    return status;
}

// Makes room for count bytes, which are no more than are gathered.
uint32_t TextWriter::makeRoom(std::size_t count) {
    const uint32_t status = flush();
    if (!direct_) {
        useRoom();
        return status;
    }
    return XML_IO_MakeRoom(stream_, count, &room_) ? XML_OK : XML_REFUSED;
}

// While the stream holds back the beginning of a character, all that follows goes through it.
void TextWriter::useRoom() {
    if (stream_->pendingCount != 0) {
        room_ = {};
    } else if (direct_) {
        room_ = XML_IO_RoomOf(stream_);
    } else {
        room_ = {gathered_, gathered_ + sizeof gathered_};
    }
}

uint32_t TextWriter::flush() {
    if (!room_.at) return XML_OK;
    if (direct_) {
        XML_IO_TakeIn(stream_, room_);
        return XML_OK;
    }
    const auto length = static_cast<uint32_t>(room_.at - gathered_);
    room_.at = gathered_;
    return XML_IO_OutStreamAppend(stream_, gathered_, length);
}

}  // namespace cxml
