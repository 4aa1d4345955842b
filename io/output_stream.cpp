#include "io/output_stream.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "dom/encoding.h"
#include "io/byte_scan.h"
#include "io/converter.h"

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
    AsciiForm ascii;
};

// The record that callers may look at, and how large the block behind data really is.
struct MemBuf : XML_IO_MemBuf {
    uint32_t allocated;
};

MemBuf *memBufOf(const XML_IO_OutStream *stream) {
    if (!stream || stream->kind != kMemory) return nullptr;
    return reinterpret_cast<MemBuf *>(stream->target);
}

// Makes the real block hold capacity bytes. From 64 KiB on it grows by half its size, so that the
// 1024-byte steps in which capacity grows do not copy a large buffer again and again.
bool reserveBlock(MemBuf *buf, uint32_t capacity) {
    if (capacity <= buf->allocated) return true;
    constexpr uint32_t kGenerousFrom = 64 * 1024;
    uint32_t wanted = capacity;
    if (buf->allocated >= kGenerousFrom && buf->allocated <= UINT32_MAX / 3 * 2) {
        const uint32_t generous = buf->allocated + buf->allocated / 2;
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
    if (need > UINT32_MAX - 1024) return XML_REFUSED;
    if (buf->capacity < need) {
        const uint32_t capacity = (static_cast<uint32_t>(need) & ~0x3FFu) + 0x400;
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

bool XML_IO_OpenConverter(OutStream *stream, uint32_t source, uint32_t target) {
    if (source == target) return true;
    stream->converter = openConverter(source, target);
    stream->ascii = asciiForm(source, target);
    return stream->converter != kNoConverter;
}

OutStream *newStream(StreamKind kind) {
    auto *stream = static_cast<OutStream *>(std::calloc(1, sizeof(OutStream)));
    if (!stream) return nullptr;
    stream->kind = kind;
    stream->converter = kNoConverter;
    return stream;
}

// What the converter would make of ASCII bytes, in the same pieces.
uint32_t writeAscii(const OutStream *stream, const char *bytes, std::size_t length) {
    const std::size_t width = stream->ascii.width;
    const std::size_t perChunk = kChunkBytes / width;
    const std::size_t unitAt = stream->ascii.bigEndian ? width - 1 : 0;
    char chunk[kChunkBytes];
    if (width != 1) std::memset(chunk, 0, sizeof chunk);
    while (length != 0) {
        const std::size_t count = length < perChunk ? length : perChunk;
        const char *piece = bytes;
        if (width != 1) {
            for (std::size_t i = 0; i < count; ++i) chunk[i * width + unitAt] = bytes[i];
            piece = chunk;
        }
        const uint32_t status =
            stream->sink(stream->target, piece, static_cast<uint32_t>(count * width));
        if (status != XML_OK) return status;
        bytes += count;
        length -= count;
    }
    return XML_OK;
}

uint32_t writeConverted(OutStream *stream, const char *bytes, uint32_t length, bool safe) {
    char chunk[kChunkBytes];
    ConvertSpan span{bytes, length, chunk, sizeof chunk};
    for (;;) {
        const ConvertResult result = convert(stream->converter, &span);
        const bool tooLong = span.inputLeft > kMostHeldBack;
        if (result == ConvertResult::kInvalid ||
            (result == ConvertResult::kInputIncomplete && tooLong)) {
            return XML_REFUSED;
        }
        const auto produced = static_cast<uint32_t>(sizeof chunk - span.outputLeft);
        const uint32_t status = stream->sink(stream->target, chunk, produced);
        if (result == ConvertResult::kInputIncomplete) {
            stream->pendingCount = static_cast<uint32_t>(span.inputLeft);
            std::memcpy(stream->pendingBytes, safe ? "????" : span.input, span.inputLeft);
            return status;
        }
        if (result == ConvertResult::kDone || status != XML_OK) return status;
        span.output = chunk;
        span.outputLeft = sizeof chunk;
    }
}

uint32_t XML_IO_ConvertAndWrite(OutStream *stream, const char *bytes, uint32_t length, bool safe) {
    if (stream->converter == kNoConverter) return stream->sink(stream->target, bytes, length);
    if (stream->ascii.width != 0 && isAscii(bytes, length)) {
        return writeAscii(stream, bytes, length);
    }
    return writeConverted(stream, bytes, length, safe);
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
    if (!record) return XML_REFUSED;
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

char *takeBuffer(XML_IO_OutStream *stream, uint32_t *lengthOut, bool detach) {
    MemBuf *buf = memBufOf(stream);
    if (!buf) return nullptr;
    if (lengthOut) *lengthOut = buf->length;
    char *data = buf->length != 0 ? buf->data : nullptr;
    if (detach) {
        if (!data) {
            std::free(buf->data);
        } else if (buf->allocated != buf->capacity) {
            // The caller gets what capacity says; a block that will not shrink serves as well.
            if (void *block = std::realloc(data, buf->capacity)) data = static_cast<char *>(block);
        }
        *buf = MemBuf{};
    }
    return data;
}

}  // namespace
}  // namespace cxml

using namespace cxml;

XML_IO_OutStream *XML_IO_MemOutStreamCreate(uint32_t sourceEncoding,
                                            uint32_t targetEncoding) noexcept {
    OutStream *stream = newStream(kMemory);
    OutStreamOwner owner{stream};
    if (!stream) return nullptr;
    stream->sink = XML_IO_MemSink;
    auto *buf = static_cast<MemBuf *>(std::calloc(1, sizeof(MemBuf)));
    stream->target = reinterpret_cast<uintptr_t>(buf);
    if (!buf || !XML_IO_OpenConverter(stream, sourceEncoding, targetEncoding)) return nullptr;
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
    std::free(static_cast<OutStream *>(stream));
}
