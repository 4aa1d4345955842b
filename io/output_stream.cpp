#include "io/output_stream.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "dom/encoding.h"
#include "io/byte_scan.h"
#include "io/char_memo.h"
#include "io/converter.h"
#include "io/memory.h"

namespace cxml {
namespace {

enum StreamKind : uint32_t { kMemory = 0, kFile = 1 };

// Converted text reaches the sink in pieces of so many bytes at most.
constexpr std::size_t kChunkBytes = 256;

// No encoding needs more bytes than this to tell that a character goes on. Converters that wait for
// more (for the fifth and sixth byte of what was UTF-8 once) are looking at an invalid sequence.
constexpr std::size_t kMostHeldBack = 3;

// How plain ASCII comes out of a conversion: as it is, or widened to 2 or 4 bytes.
struct AsciiForm {
    std::uint8_t width;  // 0: not known here, ask iconv
    bool bigEndian;
};

AsciiForm asciiForm(uint32_t source, uint32_t target) {
    if (!isAsciiCompatible(source)) return {0, false};
    if (isAsciiCompatible(target)) return {1, false};
    switch (target) {
        case XML_ENCODING_UTF_16LE:
            return {2, false};
        case XML_ENCODING_UTF_16BE:
            return {2, true};
        case XML_ENCODING_UTF_32LE:
        case XML_ENCODING_UCS_4LE:
            return {4, false};
        case XML_ENCODING_UTF_32BE:
        case XML_ENCODING_UCS_4BE:
            return {4, true};
        default:
            return {0, false};  // a byte order mark, or an order that the platform chooses
    }
}

struct OutStream : XML_IO_OutStream {
    uint32_t sourceEncoding;
    uint32_t targetEncoding;
    AsciiForm ascii;
    CharMemo memo;    // of the converter
    bool opensLater;  // the converter is opened for the first text that is not ASCII
    bool failedToOpen;
    bool splitsAtAscii;  // whether the converter may be given the text between runs of ASCII alone
};

// The record that callers may look at, and how large the block behind data really is: as
// large as capacity or larger.
struct MemBuf : XML_IO_MemBuf {
    uint32_t allocated;
};

MemBuf *memBufOf(const XML_IO_OutStream *stream) {
    if (!stream || stream->kind != kMemory) return nullptr;
    return reinterpret_cast<MemBuf *>(stream->target);
}

constexpr uint32_t kLargeBlock = 64 * 1024;

constexpr uint32_t kMostNeeded = UINT32_MAX - 1024;  // of content with its NUL

// The capacity that makes room for so many bytes.
constexpr uint32_t capacityFor(uint32_t need) {
    return (need & ~0x3FFu) + 0x400;
}

// The largest block: of the largest capacity, or what pointers of the machine can span.
constexpr uint32_t kMostAllocated =
    static_cast<uint32_t>(std::min<uint64_t>(capacityFor(kMostNeeded), PTRDIFF_MAX));

// Makes the real block hold capacity bytes. From 64 KiB on it grows by half its size, so that the
// 1024-byte steps in which capacity grows do not copy a large buffer again and again.
bool reserveBlock(MemBuf *buf, uint32_t capacity) {
    if (capacity <= buf->allocated) return true;
    if (!isAddressable(capacity)) return false;
    uint32_t wanted = capacity;
    if (buf->allocated >= kLargeBlock) {
        const uint32_t generous = buf->allocated <= kMostAllocated / 3 * 2
                                      ? buf->allocated + buf->allocated / 2
                                      : kMostAllocated;
        if (generous > wanted) wanted = generous;
    }
    void *block = std::realloc(buf->data, wanted);
    if (!block && wanted != capacity) {
        wanted = capacity;
        block = std::realloc(buf->data, wanted);
    }
    if (!block) return false;
    buf->data = static_cast<char *>(block);
    buf->allocated = wanted;
    return true;
}

uint32_t XML_IO_MemSink(uintptr_t target, const char *bytes, uint32_t length) {
    if (length == 0) return XML_OK;
    auto *buf = reinterpret_cast<MemBuf *>(target);
    const uint64_t need = uint64_t{buf->length} + 1 + length;
    if (need > kMostNeeded) return XML_REFUSED;
    if (buf->capacity < need) {
        const uint32_t capacity = capacityFor(static_cast<uint32_t>(need));
        if (!reserveBlock(buf, capacity)) return XML_REFUSED;
        buf->capacity = capacity;
    }
    std::memcpy(buf->data + buf->length, bytes, length);
    buf->length += length;
    buf->data[buf->length] = '\0';
    return XML_OK;
}

uint32_t XML_IO_FileSink(uintptr_t target, const char *bytes, uint32_t length) {
    const int fd = static_cast<int>(target);
    while (length != 0) {
        const ssize_t written = write(fd, bytes, length);
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return XML_REFUSED;  // trying again after 0 might never end
        bytes += written;
        length -= static_cast<uint32_t>(written);
    }
    return XML_OK;
}

void setEncodings(OutStream *stream, uint32_t source, uint32_t target) {
    stream->sourceEncoding = source;
    stream->targetEncoding = target;
    stream->ascii = asciiForm(source, target);
    stream->splitsAtAscii = stream->ascii.width != 0 && !takesWholeTexts(source, target);
    stream->memo.begin(source, target);
}

bool openNow(OutStream *stream) {
    stream->converter = openConverter(stream->sourceEncoding, stream->targetEncoding);
    stream->opensLater = false;
    stream->failedToOpen = stream->converter == kNoConverter;
    return !stream->failedToOpen;
}

bool XML_IO_OpenConverter(OutStream *stream, uint32_t source, uint32_t target) {
    if (source == target) return true;
    setEncodings(stream, source, target);
    return openNow(stream);
}

// False if the stream was to convert but cannot.
bool hasConverter(OutStream *stream) {
    return stream->opensLater ? openNow(stream) : !stream->failedToOpen;
}

OutStream *newStream(StreamKind kind) {
    auto *stream = static_cast<OutStream *>(std::calloc(1, sizeof(OutStream)));
    if (!stream) return nullptr;
    stream->kind = kind;
    stream->converter = kNoConverter;
    return stream;
}

OutStream *newMemoryStream() {
    OutStream *stream = newStream(kMemory);
    OutStreamOwner owner{stream};
    if (!stream) return nullptr;
    stream->sink = XML_IO_MemSink;
    auto *buf = static_cast<MemBuf *>(std::calloc(1, sizeof(MemBuf)));
    stream->target = reinterpret_cast<uintptr_t>(buf);
    if (!buf) return nullptr;
    owner.release();
    return stream;
}

// Converted text on its way to the sink, in pieces of kChunkBytes: as many whole characters as fit.
class Chunk {
  public:
    explicit Chunk(const OutStream *stream) : stream_(stream) {}

    // ASCII as the converter would write it.
    uint32_t putAscii(const char *bytes, std::size_t length) {
        const std::size_t width = stream_->ascii.width;
        while (length != 0) {
            const std::size_t room = (kChunkBytes - used_) / width;
            if (room == 0) {
                const uint32_t status = flush();
                if (status != XML_OK) return status;
                continue;
            }
            const std::size_t count = length < room ? length : room;
            copyAscii(bytes, count);
            bytes += count;
            length -= count;
        }
        return XML_OK;
    }

    char *tail() { return bytes_ + used_; }
    std::size_t room() const { return kChunkBytes - used_; }
    void setRoom(std::size_t room) { used_ = kChunkBytes - room; }

    uint32_t flush() {
        const auto length = static_cast<uint32_t>(used_);
        used_ = 0;
        return stream_->sink(stream_->target, bytes_, length);
    }

  private:
    void copyAscii(const char *bytes, std::size_t count) {
        const std::size_t width = stream_->ascii.width;
        if (width == 1) {
            std::memcpy(tail(), bytes, count);
        } else {
            char *unit = tail();
            std::memset(unit, 0, count * width);
            if (stream_->ascii.bigEndian) unit += width - 1;
            for (std::size_t i = 0; i < count; ++i) unit[i * width] = bytes[i];
        }
        used_ += count * width;
    }

    const OutStream *stream_;
    std::size_t used_ = 0;
    char bytes_[kChunkBytes];
};

// Plain ASCII of which nothing changes goes to the sink without a copy, in the same pieces.
uint32_t writeUnchanged(const OutStream *stream, const char *bytes, uint32_t length) {
    while (length != 0) {
        const uint32_t count = length < kChunkBytes ? length : uint32_t{kChunkBytes};
        const uint32_t status = stream->sink(stream->target, bytes, count);
        if (status != XML_OK) return status;
        bytes += count;
        length -= count;
    }
    return XML_OK;
}

// Passes over the multibyte characters that p begins with. Where they are not well-formed this may
// stop anywhere; the converter will say so.
const Byte *skipMultibyte(uint32_t encoding, const Byte *p, const Byte *end) {
    if (encoding == XML_ENCODING_UTF_8) {
        while (p != end && *p >= 0x80) ++p;
        return p;
    }
    while (p != end && *p >= 0x80) {
        // Two bytes, or in GB18030 four if the second is a digit; trail bytes may look like ASCII.
        const bool four = end - p >= 2 && p[1] >= '0' && p[1] <= '9';
        const std::ptrdiff_t size = four ? 4 : 2;
        if (end - p < size) return end;
        p += size;
    }
    return p;
}

// The converter gets no more at once than makes a chunk or two: some convert far ahead and do it
// all again when the output is full.
constexpr std::ptrdiff_t kWindowBytes = kChunkBytes;
const Byte *windowEnd(const Byte *p, const Byte *end) {
    return end - p > kWindowBytes ? p + kWindowBytes : end;
}

// Where the text that is worth one call of the converter ends: before the next long run of ASCII.
const Byte *mixedEnd(const OutStream *stream, const Byte *p, const Byte *end) {
    constexpr std::ptrdiff_t kWorthCopying = 32;
    for (;;) {
        p = skipMultibyte(stream->sourceEncoding, p, end);
        const Byte *const asciiEnd = scanFor<NotAscii>(p, end);
        if (asciiEnd == end || asciiEnd - p >= kWorthCopying) return p;
        p = asciiEnd;
    }
}

// Text with characters beyond ASCII: long runs of ASCII are copied, the rest is the converter's.
// The chunks, and what of them has been written when a sequence turns out invalid, are those of one
// conversion of the whole.
uint32_t writeMixed(OutStream *stream, const char *bytes, uint32_t length, bool safe) {
    Chunk chunk{stream};
    const auto *p = reinterpret_cast<const Byte *>(bytes);
    const Byte *const end = p + length;
    const Byte *segmentEnd = stream->splitsAtAscii ? p : end;
    while (p != end) {
        if (p == segmentEnd) {
            const Byte *const asciiEnd = scanFor<NotAscii>(p, end);
            const uint32_t status = chunk.putAscii(reinterpret_cast<const char *>(p),
                                                   static_cast<std::size_t>(asciiEnd - p));
            if (status != XML_OK) return status;
            p = asciiEnd;
            if (p == end) break;
            segmentEnd = mixedEnd(stream, p, windowEnd(p, end));
        }
        ConvertSpan span{reinterpret_cast<const char *>(p),
                         static_cast<std::size_t>(segmentEnd - p), chunk.tail(), chunk.room()};
        const ConvertResult result = stream->memo.convert(stream->converter, &span);
        chunk.setRoom(span.outputLeft);
        p = reinterpret_cast<const Byte *>(span.input);
        if (result == ConvertResult::kInvalid) return XML_REFUSED;
        if (result == ConvertResult::kOutputFull) {
            const uint32_t status = chunk.flush();
            if (status != XML_OK) return status;
        } else if (result == ConvertResult::kInputIncomplete) {
            if (segmentEnd != end) {
                // Cut off by the segment's end: the converter is to see what follows. No character
                // fills a window.
                if (span.inputLeft >= kChunkBytes) return XML_REFUSED;
                segmentEnd = windowEnd(p, end);
                continue;
            }
            if (span.inputLeft > kMostHeldBack) return XML_REFUSED;
            const uint32_t status = chunk.flush();
            stream->pendingCount = static_cast<uint32_t>(span.inputLeft);
            std::memcpy(stream->pendingBytes, safe ? "????" : span.input, span.inputLeft);
            return status;
        }
    }
    return chunk.flush();
}

uint32_t XML_IO_ConvertAndWrite(OutStream *stream, const char *bytes, uint32_t length, bool safe) {
    const bool unchanged = stream->ascii.width == 1 && isAscii(bytes, length);
    if (unchanged) return writeUnchanged(stream, bytes, length);
    if (!hasConverter(stream)) return XML_REFUSED;
    if (stream->converter == kNoConverter) {
        return stream->sink(stream->target, bytes, length);
    }
    return writeMixed(stream, bytes, length, safe);
}

// Completes the character whose first bytes are held back with the first of the new bytes, and
// tells how many of them it used.
uint32_t XML_IO_FlushPending(OutStream *stream, const char *bytes, uint32_t length,
                             uint32_t *used) {
    const uint32_t room = 4 - stream->pendingCount;
    const uint32_t take = length < room ? length : room;
    std::memcpy(stream->pendingBytes + stream->pendingCount, bytes, take);

    char held[4];
    std::memcpy(held, stream->pendingBytes, sizeof held);
    char chunk[kChunkBytes];
    ConvertSpan span{held, stream->pendingCount + take, chunk, sizeof chunk};
    const ConvertResult result = convert(stream->converter, &span);
    const auto left = static_cast<uint32_t>(span.inputLeft);
    if (result == ConvertResult::kDone) {
        *used = take;
        stream->pendingCount = 0;
    } else if (result == ConvertResult::kInputIncomplete && take == length &&
               left <= kMostHeldBack) {
        std::memcpy(stream->pendingBytes, span.input, left);
        stream->pendingCount = left;
        *used = take;
    } else if (result == ConvertResult::kInputIncomplete && take != length && left <= take) {
        *used = take - left;
        stream->pendingCount = 0;
    } else {
        return XML_REFUSED;
    }
    return stream->sink(stream->target, chunk,
                        static_cast<uint32_t>(sizeof chunk - span.outputLeft));
}

uint32_t appendBytes(XML_IO_OutStream *record, const char *bytes, uint32_t length, bool safe) {
    if (!bytes || length == 0) return XML_OK;  // Intended: also for a null stream
    if (!record || !isAddressable(length)) return XML_REFUSED;
    auto *stream = static_cast<OutStream *>(record);
    if (stream->pendingCount > 0) {
        uint32_t used = 0;
        const uint32_t status = XML_IO_FlushPending(stream, bytes, length, &used);
        if (status != XML_OK || used == length) return status;
        bytes += used;
        length -= used;
    }
    return XML_IO_ConvertAndWrite(stream, bytes, length, safe);
}

// What became of text that was to go straight into the block of a memory stream: all of it is there;
// or it does not convert, or not at once; or there is no memory for it.
enum class BlockResult { kWritten, kUnsuitable, kNoMemory };

BlockResult convertIntoBlock(OutStream *stream, const Byte *p, const Byte *end) {
    const auto length = static_cast<std::size_t>(end - p);
    // Two bytes become four at most. Where that might be too much, the chunks find out.
    const uint64_t most = 2 * uint64_t{length} + 4;
    if (most >= kMostNeeded - memBufOf(stream)->length) return BlockResult::kUnsuitable;
    OutRoom room;
    if (!XML_IO_MakeRoom(stream, static_cast<std::size_t>(most), &room)) {
        return BlockResult::kNoMemory;
    }
    ConvertSpan span{reinterpret_cast<const char *>(p), length, room.at,
                     static_cast<std::size_t>(room.end - room.at)};
    if (stream->memo.convert(stream->converter, &span) != ConvertResult::kDone) {
        return BlockResult::kUnsuitable;
    }
    XML_IO_TakeIn(stream, {span.output, room.end});
    return BlockResult::kWritten;
}

BlockResult copyIntoBlock(OutStream *stream, const Byte *p, const Byte *end) {
    OutRoom room;
    const auto length = static_cast<std::size_t>(end - p);
    if (!XML_IO_MakeRoom(stream, length, &room)) return BlockResult::kNoMemory;
    std::memcpy(room.at, p, length);
    XML_IO_TakeIn(stream, {room.at + length, room.end});
    return BlockResult::kWritten;
}

// Text with characters beyond ASCII, the long runs of ASCII in it copied.
BlockResult writeIntoBlock(OutStream *stream, const Byte *p, const Byte *end) {
    BlockResult result = BlockResult::kWritten;
    while (p != end && result == BlockResult::kWritten) {
        const bool ascii = *p < 0x80;
        const Byte *const stretchEnd = ascii ? scanFor<NotAscii>(p, end) : mixedEnd(stream, p, end);
        result =
            ascii ? copyIntoBlock(stream, p, stretchEnd) : convertIntoBlock(stream, p, stretchEnd);
        p = stretchEnd;
    }
    return result;
}

char *takeBuffer(XML_IO_OutStream *stream, uint32_t *lengthOut, bool detach) {
    MemBuf *buf = memBufOf(stream);
    if (!buf) return nullptr;
    if (lengthOut) *lengthOut = buf->length;
    char *data = buf->length != 0 ? buf->data : nullptr;
    if (detach) {
        if (!data) {
            std::free(buf->data);
        } else if (buf->allocated < kLargeBlock && buf->allocated != buf->capacity) {
            // The caller gets what capacity says; a block that will not shrink serves as well. So
            // does a large one, whose end no page stands behind yet: cutting it would make glibc map
            // fresh memory for every such block instead of using the last one again, which took
            // three times as long as writing.
            if (void *block = std::realloc(data, buf->capacity)) data = static_cast<char *>(block);
        }
        *buf = MemBuf{};
    }
    return data;
}

}  // namespace

XML_IO_OutStream *XML_IO_MemOutStreamCreateLate(uint32_t sourceEncoding,
                                                uint32_t targetEncoding) noexcept {
    if (asciiForm(sourceEncoding, targetEncoding).width != 1 || sourceEncoding == targetEncoding) {
        return XML_IO_MemOutStreamCreate(sourceEncoding, targetEncoding);
    }
    OutStream *stream = newMemoryStream();
    if (!stream) return nullptr;
    setEncodings(stream, sourceEncoding, targetEncoding);
    stream->opensLater = true;
    return stream;
}

bool XML_IO_FailedToOpen(const XML_IO_OutStream *stream) noexcept {
    return static_cast<const OutStream *>(stream)->failedToOpen;
}

bool XML_IO_Converts(const XML_IO_OutStream *record) noexcept {
    const auto *stream = static_cast<const OutStream *>(record);
    return stream->converter != kNoConverter || stream->opensLater || stream->failedToOpen;
}

bool XML_IO_PassesAscii(const XML_IO_OutStream *stream) noexcept {
    return !XML_IO_Converts(stream) || static_cast<const OutStream *>(stream)->ascii.width == 1;
}

OutRoom XML_IO_RoomOf(const XML_IO_OutStream *stream) noexcept {
    const MemBuf *buf = memBufOf(stream);
    if (!buf->data) return {};
    const uint32_t usable = buf->allocated < kMostNeeded ? buf->allocated : kMostNeeded;
    return {buf->data + buf->length, buf->data + usable - 1};  // the last byte is the NUL's
}

bool XML_IO_MakeRoom(XML_IO_OutStream *stream, std::size_t count, OutRoom *room) noexcept {
    MemBuf *buf = memBufOf(stream);
    if (count > kMostNeeded - 1 - buf->length) return false;
    uint32_t capacity = capacityFor(buf->length + 1 + static_cast<uint32_t>(count));
    if (capacity > buf->allocated && buf->allocated < kLargeBlock &&
        capacity < 2 * buf->allocated) {
        capacity = 2 * buf->allocated;  // there will be more
    }
    if (!reserveBlock(buf, capacity)) return false;
    *room = XML_IO_RoomOf(stream);
    return true;
}

void XML_IO_TakeIn(XML_IO_OutStream *stream, const OutRoom &room) noexcept {
    MemBuf *buf = memBufOf(stream);
    const auto length = static_cast<uint32_t>(room.at - buf->data);
    if (length == buf->length) return;
    buf->length = length;
    buf->data[length] = '\0';
    if (buf->capacity > length) return;
    const uint32_t capacity = capacityFor(length + 1);
    buf->capacity = capacity < buf->allocated ? capacity : buf->allocated;
}

uint32_t XML_IO_AppendWhole(XML_IO_OutStream *record, const char *bytes, uint32_t length) noexcept {
    auto *stream = static_cast<OutStream *>(record);
    const auto *p = reinterpret_cast<const Byte *>(bytes);
    if (stream->pendingCount == 0 && stream->splitsAtAscii && stream->ascii.width == 1) {
        if (!hasConverter(stream)) return XML_REFUSED;
        MemBuf *buf = memBufOf(stream);
        const uint32_t before = buf->length;
        const BlockResult result = writeIntoBlock(stream, p, p + length);
        if (result == BlockResult::kWritten) return XML_OK;
        if (result == BlockResult::kNoMemory) return XML_REFUSED;
        // Not whole characters, or none that the target has: it is the chunks that know what to do.
        buf->length = before;
    }
    return appendBytes(stream, bytes, length, false);
}

}  // namespace cxml

using namespace cxml;

XML_IO_OutStream *XML_IO_MemOutStreamCreate(uint32_t sourceEncoding,
                                            uint32_t targetEncoding) noexcept {
    OutStreamOwner owner{newMemoryStream()};
    auto *stream = static_cast<OutStream *>(owner.get());
    if (!stream || !XML_IO_OpenConverter(stream, sourceEncoding, targetEncoding)) return nullptr;
    return owner.release();
}

XML_IO_OutStream *XML_IO_FileOutStreamCreate(const char *path, uint32_t sourceEncoding,
                                             uint32_t targetEncoding) noexcept {
    if (!path) return nullptr;
    OutStream *stream = newStream(kFile);
    OutStreamOwner owner{stream};
    if (!stream) return nullptr;
    stream->sink = XML_IO_FileSink;
    // Intended: no O_TRUNC, an existing file is continued.
    const int fd = open(path, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0640);
    stream->target = static_cast<uintptr_t>(static_cast<intptr_t>(fd));
    if (fd < 0 || !XML_IO_OpenConverter(stream, sourceEncoding, targetEncoding)) return nullptr;
    return owner.release();
}

uint32_t XML_IO_OutStreamAppend(XML_IO_OutStream *stream, const char *bytes,
                                uint32_t length) noexcept {
    return appendBytes(stream, bytes, length, false);
}

uint32_t XML_IO_OutStreamAppendSafe(XML_IO_OutStream *stream, const char *bytes,
                                    uint32_t length) noexcept {
    return appendBytes(stream, bytes, length, true);
}

uint32_t XML_IO_OutStreamAppendString(XML_IO_OutStream *stream, const char *s) noexcept {
    if (!s) return XML_OK;
    const std::size_t length = std::strlen(s);
    if (length > UINT32_MAX) return XML_REFUSED;
    return appendBytes(stream, s, static_cast<uint32_t>(length), false);
}

char *XML_IO_MemOutStreamGetBuf(XML_IO_OutStream *stream, uint32_t *lengthOut) noexcept {
    return takeBuffer(stream, lengthOut, false);
}

char *XML_IO_MemOutStreamDetachBuf(XML_IO_OutStream *stream, uint32_t *lengthOut) noexcept {
    return takeBuffer(stream, lengthOut, true);
}

void XML_IO_MemOutStreamCleanBuf(XML_IO_OutStream *stream) noexcept {
    if (MemBuf *buf = memBufOf(stream)) buf->length = 0;
}

void XML_IO_FileOutStreamFlush(XML_IO_OutStream *stream) noexcept {
    if (!stream || stream->kind != kFile) return;
    const int fd = static_cast<int>(stream->target);
    if (fd >= 0) fsync(fd);
}

void XML_IO_OutStreamDestroy(XML_IO_OutStream *stream) noexcept {
    if (!stream) return;
    if (stream->kind == kMemory) {
        if (MemBuf *buf = memBufOf(stream)) {
            std::free(buf->data);
            std::free(buf);
        }
    } else if (const int fd = static_cast<int>(stream->target); fd >= 0) {
        close(fd);
    }
    closeConverter(stream->converter);
    static_cast<OutStream *>(stream)->memo.end();
    std::free(static_cast<OutStream *>(stream));
}
