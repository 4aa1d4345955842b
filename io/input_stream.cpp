#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "compactxml.h"
#include "dom/encoding.h"
#include "io/byte_scan.h"
#include "io/char_memo.h"
#include "io/converter.h"
#include "io/input_stream.h"
#include "io/memory.h"

namespace cxml {
namespace {

constexpr uint32_t kBufferStep = 1024;
constexpr std::ptrdiff_t kLongestMark = 4;  // bytes of a byte order mark

enum class SourceKind : std::uint8_t { kMemory, kFile, kList };

// The main buffer is the caller's memory for a memory stream that does not convert; while one
// converts, that memory is the raw buffer:
//
//   source ──readFn──▶ [rawBase · rawMark · rawEnd] ──iconv──▶ [base · mark · cur · end] ──▶ parser
//                         not yet converted                      kept    unread
struct InStream : XML_IO_InStream {
    SourceKind kind;
    bool ownsBuffer;     // base is a block of the stream's own
    bool ownsRawBuffer;  // rawBase is
    bool sourceEnded;
    // What the blocks really hold: capacity grows in steps of 1024 bytes, a large block doubles.
    uint32_t allocated;
    uint32_t rawAllocated;
    // What the converter reads. encoding may name the same with the byte order left open.
    uint32_t converterEncoding;
    CharMemo memo;  // of the converter
};

uint32_t available(const XML_IO_InStream *stream) {
    return static_cast<uint32_t>(stream->end - stream->cur);
}

uint32_t freeRoom(const InStream *stream) {
    return stream->capacity - static_cast<uint32_t>(stream->end - stream->base);
}

// n rounded up to whole steps, at least one; false if that passes 32 bits, or what a block can hold.
bool roundUp(uint64_t n, uint32_t *rounded) {
    const uint64_t steps = n == 0 ? 1 : (n + kBufferStep - 1) / kBufferStep;
    if (steps * kBufferStep > UINT32_MAX || !isAddressable(steps * kBufferStep)) return false;
    *rounded = static_cast<uint32_t>(steps * kBufferStep);
    return true;
}

void compact(InStream *stream) {
    const auto dropped = stream->mark - stream->base;
    if (dropped == 0) return;
    std::memmove(stream->base, stream->mark, static_cast<std::size_t>(stream->end - stream->mark));
    stream->mark -= dropped;
    stream->cur -= dropped;
    stream->end -= dropped;
}

// Twice as many bytes, or as many as a block can have: from 2 GB on, too, it must not grow in small
// steps.
uint32_t doubled(uint32_t size) {
    constexpr uint32_t kMost = static_cast<uint32_t>(std::min<uint64_t>(UINT32_MAX, PTRDIFF_MAX) /
                                                     kBufferStep * kBufferStep);
    return size <= kMost / 2 ? size * 2 : kMost;
}

bool enlarge(InStream *stream) {
    uint32_t capacity = 0;
    if (!roundUp(uint64_t{stream->capacity} + kBufferStep, &capacity)) return false;
    if (capacity > stream->allocated) {
        const uint32_t wanted = std::max(capacity, doubled(stream->allocated));
        auto *block = static_cast<unsigned char *>(std::realloc(stream->base, wanted));
        if (!block) return false;
        stream->mark = block + (stream->mark - stream->base);
        stream->cur = block + (stream->cur - stream->base);
        stream->end = block + (stream->end - stream->base);
        stream->base = block;
        stream->allocated = wanted;
    }
    stream->capacity = capacity;
    return true;
}

uint32_t readFile(uintptr_t source, uint32_t count, unsigned char *destination) {
    constexpr uint32_t kMostAtOnce = 1u << 30;
    const ssize_t got = read(static_cast<int>(source), destination, std::min(count, kMostAtOnce));
    return got > 0 ? static_cast<uint32_t>(got) : 0;  // Intended: an error is the end of the input
}

uint32_t readList(uintptr_t source, uint32_t count, unsigned char *destination) {
    auto *cursor = reinterpret_cast<XML_IO_MemListCursor *>(source);
    uint32_t total = 0;
    while (total < count && cursor->chunk) {
        const uint32_t left = cursor->chunk->length - cursor->position;
        const uint32_t piece = std::min(left, count - total);
        if (piece != 0) {
            std::memcpy(destination + total, cursor->chunk->data + cursor->position, piece);
        }
        total += piece;
        cursor->position += piece;
        if (cursor->position == cursor->chunk->length) *cursor = {cursor->chunk->next, 0};
    }
    return total;
}

// Asks the source for bytes. What has ended once, be it by an error, is not asked again.
uint32_t readSource(InStream *stream, uint32_t count, unsigned char *destination) {
    if (!stream->readFn || stream->sourceEnded || count == 0) return 0;
    const uint32_t got = stream->readFn(stream->source, count, destination);
    stream->sourceEnded = got == 0;
    return got;
}

// Reads into the free room of the raw buffer, after dropping what has been converted.
uint32_t refillRaw(InStream *stream) {
    if (!stream->readFn) return 0;
    const auto left = static_cast<uint32_t>(stream->rawEnd - stream->rawMark);
    std::memmove(stream->rawBase, stream->rawMark, left);
    stream->rawMark = stream->rawCur = stream->rawBase;
    stream->rawEnd = stream->rawBase + left;
    const uint32_t got = readSource(stream, stream->rawCapacity - left, stream->rawEnd);
    stream->rawEnd += got;
    return got;
}

// Converts what the main buffer has room for. Returns how many bytes that added; 0 means that
// nothing more can come, or, with state 2, that memory is exhausted.
uint32_t convertMore(InStream *stream) {
    uint32_t added = 0;
    for (;;) {
        const uint32_t got = refillRaw(stream);
        ConvertSpan span{reinterpret_cast<const char *>(stream->rawMark),
                         static_cast<std::size_t>(stream->rawEnd - stream->rawMark),
                         reinterpret_cast<char *>(stream->end), freeRoom(stream)};
        const ConvertResult result = stream->memo.convert(stream->converter, &span);
        const auto produced = freeRoom(stream) - static_cast<uint32_t>(span.outputLeft);
        stream->end += produced;
        stream->rawMark = stream->rawCur = stream->rawEnd - span.inputLeft;
        added += produced;
        if (produced != 0) continue;
        if (result == ConvertResult::kOutputFull && added == 0) {
            // Too little room for one character: that must not look like the end of the source.
            if (enlarge(stream)) continue;
            stream->state = kMemoryFailure;
            return 0;
        }
        // Intended: an invalid sequence ends the input. A character may still be incomplete when
        // bytes have come; then more of them may.
        if (result == ConvertResult::kInvalid || result == ConvertResult::kOutputFull || got == 0) {
            return added;
        }
    }
}

// Reads until enough is ahead: a pipe may give less than it was asked for long before its end.
// Returns how many bytes that added.
uint32_t readMore(InStream *stream) {
    uint32_t added = 0;
    uint32_t got = 0;
    do {
        got = readSource(stream, freeRoom(stream), stream->end);
        stream->end += got;
        added += got;
    } while (got != 0 && stream->end - stream->cur < kReadAhead + kLongestMark);
    return added;
}

// Adds up what the bytes become. False for bytes that do not convert; a character cut off at their
// end is good only if more input may come.
bool measure(void *converter, CharMemo *memo, const unsigned char *from, const unsigned char *to,
             bool mayBeIncomplete, uint64_t *total) {
    constexpr std::ptrdiff_t kWindow = 512;
    constexpr std::size_t kMostGrowth = 4;  // ASCII into UTF-32
    while (from != to) {
        char scratch[kWindow * kMostGrowth + 8];  // and a byte order mark
        const auto length = static_cast<std::size_t>(std::min(to - from, kWindow));
        ConvertSpan span{reinterpret_cast<const char *>(from), length, scratch, sizeof scratch};
        const ConvertResult result = memo->convert(converter, &span);
        *total += sizeof scratch - span.outputLeft;
        if (result == ConvertResult::kInvalid) return false;
        const bool last = static_cast<std::ptrdiff_t>(length) == to - from;
        if (result == ConvertResult::kInputIncomplete && last) return mayBeIncomplete;
        if (span.inputLeft == length) return false;  // no character fills a window
        from += length - span.inputLeft;
    }
    return true;
}

uint32_t startConversion(InStream *stream, uint32_t encoding) {
    void *converter = openConverter(encoding, XML_ENCODING_UTF_8);
    if (converter == kNoConverter) return kUnsupportedEncoding;
    const bool moreMayCome = stream->state == kMoreMayCome;
    uint64_t kept = 0;
    uint64_t unread = 0;
    CharMemo memo{};
    memo.begin(encoding, XML_ENCODING_UTF_8);
    const auto giveUp = [&](uint32_t state) {
        memo.end();
        closeConverter(converter);
        return state;
    };
    if (!measure(converter, &memo, stream->mark, stream->cur, moreMayCome, &kept) ||
        !measure(converter, &memo, stream->cur, stream->end, moreMayCome, &unread)) {
        return giveUp(kConversionFailure);
    }
    resetConverter(converter);

    uint32_t capacity = 0;
    unsigned char *block = nullptr;
    if (roundUp(kept + unread, &capacity))
        block = static_cast<unsigned char *>(std::malloc(capacity));
    if (!block) return giveUp(kMemoryFailure);
    stream->rawBase = stream->base;
    stream->rawMark = stream->rawCur = stream->mark;
    stream->rawEnd = stream->end;
    stream->rawCapacity = stream->capacity;
    stream->rawAllocated = stream->allocated;
    stream->ownsRawBuffer = stream->ownsBuffer;
    stream->base = stream->mark = stream->cur = stream->end = block;
    stream->capacity = stream->allocated = capacity;
    stream->ownsBuffer = true;
    stream->encoding = stream->converterEncoding = encoding;
    stream->converter = converter;
    stream->memo = memo;

    convertMore(stream);
    // The same character as before. Where the bytes read so far make no sense in the new encoding,
    // the two halves may come out shorter together than apart.
    stream->cur = stream->base + std::min<uint64_t>(kept, stream->end - stream->base);
    return stream->state == kMemoryFailure ? kMemoryFailure : kMoreMayCome;
}

void dropConversion(InStream *stream) {
    closeConverter(stream->converter);
    stream->converter = kNoConverter;
    stream->memo.end();
    stream->encoding = stream->converterEncoding = XML_ENCODING_UTF_8;
    stream->rawBase = stream->rawMark = stream->rawCur = stream->rawEnd = nullptr;
    stream->rawCapacity = stream->rawAllocated = 0;
    stream->ownsRawBuffer = false;
}

// All raw bytes of a memory stream are still there: the caller's buffer becomes the main one again.
void returnToMemory(InStream *stream, uint64_t kept, uint64_t unread) {
    unsigned char *const base = stream->rawBase;
    const auto converted = static_cast<uint64_t>(stream->rawMark - base);
    const uint64_t unreadHere = std::min(unread, converted);
    std::free(stream->base);
    stream->base = base;
    stream->end = stream->rawEnd;
    stream->cur = stream->rawMark - unreadHere;
    stream->mark = stream->cur - std::min<uint64_t>(kept, stream->cur - base);
    stream->capacity = stream->rawCapacity;
    stream->allocated = stream->rawAllocated;
    stream->ownsBuffer = false;
    dropConversion(stream);
}

// Converts the main buffer back and puts it in front of the raw bytes not yet converted.
uint32_t returnToSource(InStream *stream, void *back, uint64_t kept, uint64_t unread) {
    const auto rawLeft = static_cast<std::size_t>(stream->rawEnd - stream->rawMark);
    uint32_t capacity = 0;
    if (!roundUp(kept + unread + rawLeft, &capacity)) return kMemoryFailure;
    auto *block = static_cast<unsigned char *>(std::malloc(capacity));
    if (!block) return kMemoryFailure;
    ConvertSpan span{reinterpret_cast<const char *>(stream->mark),
                     static_cast<std::size_t>(stream->end - stream->mark),
                     reinterpret_cast<char *>(block), capacity - rawLeft};
    if (convert(back, &span) != ConvertResult::kDone) {
        std::free(block);
        return kConversionFailure;
    }
    unsigned char *const converted = block + (capacity - rawLeft - span.outputLeft);
    std::memcpy(converted, stream->rawMark, rawLeft);
    std::free(stream->base);
    std::free(stream->rawBase);
    stream->base = stream->mark = block;
    stream->cur = block + std::min<uint64_t>(kept, converted - block);
    stream->end = converted + rawLeft;
    stream->capacity = stream->allocated = capacity;
    dropConversion(stream);
    return kMoreMayCome;
}

uint32_t stopConversion(InStream *stream) {
    void *back = openConverter(XML_ENCODING_UTF_8, stream->converterEncoding);
    if (back == kNoConverter) return kUnsupportedEncoding;
    uint64_t kept = 0;
    uint64_t unread = 0;
    uint32_t state = kMoreMayCome;
    CharMemo memo{};
    memo.begin(XML_ENCODING_UTF_8, stream->converterEncoding);
    if (!measure(back, &memo, stream->mark, stream->cur, false, &kept) ||
        !measure(back, &memo, stream->cur, stream->end, false, &unread)) {
        state = kConversionFailure;
    } else if (stream->kind == SourceKind::kMemory) {
        returnToMemory(stream, kept, unread);
    } else {
        resetConverter(back);
        state = returnToSource(stream, back, kept, unread);
    }
    memo.end();
    closeConverter(back);
    return state;
}

// Whether a name with the byte order left open is about what the converter reads already. A byte
// order mark or the first character has told the order; starting anew behind the mark would lose
// it.
bool isSameWithoutByteOrder(uint32_t present, uint32_t declared) {
    switch (present) {
        case XML_ENCODING_UTF_16LE:
        case XML_ENCODING_UTF_16BE:
            return declared == XML_ENCODING_UTF_16;
        case XML_ENCODING_UTF_32LE:
        case XML_ENCODING_UTF_32BE:
            return declared == XML_ENCODING_UTF_32 || declared == XML_ENCODING_UCS_4;
        case XML_ENCODING_UCS_4BE:
        case XML_ENCODING_UCS_4LE:
            return declared == XML_ENCODING_UCS_4;
        default:
            return false;
    }
}

struct ByteOrderMark {
    std::uint8_t length;
    std::uint8_t needed;  // bytes that must be there
    unsigned char bytes[kLongestMark];
    uint32_t encoding;
};

// In this order: the mark of UTF-32LE begins with that of UTF-16LE.
constexpr ByteOrderMark kMarks[] = {
    {4, 4, {0xFF, 0xFE, 0x00, 0x00}, XML_ENCODING_UTF_32LE},
    {4, 4, {0x00, 0x00, 0xFE, 0xFF}, XML_ENCODING_UTF_32BE},
    {2, 2, {0xFF, 0xFE}, XML_ENCODING_UTF_16LE},
    {2, 2, {0xFE, 0xFF}, XML_ENCODING_UTF_16BE},
    {3, 3, {0xEF, 0xBB, 0xBF}, XML_ENCODING_UTF_8},
};

XML_IO_InStream *recogniseMark(InStream *stream) {
    for (const ByteOrderMark &mark : kMarks) {
        if (available(stream) < mark.needed ||
            std::memcmp(stream->cur, mark.bytes, mark.length) != 0) {
            continue;
        }
        stream->cur += mark.length;
        stream->mark = stream->cur;
        XML_IO_SwitchEncoding(stream, mark.encoding);
        break;
    }
    return stream;
}

InStream *newStream(SourceKind kind) {
    auto *stream = static_cast<InStream *>(std::calloc(1, sizeof(InStream)));
    if (!stream) return nullptr;
    stream->kind = kind;
    stream->converter = kNoConverter;
    return stream;
}

// A stream that reads, with its first buffer but without a source.
InStream *newReader(SourceKind kind) {
    InStream *stream = newStream(kind);
    if (!stream) return nullptr;
    auto *block = static_cast<unsigned char *>(std::malloc(kBufferStep));
    if (!block) {
        std::free(stream);
        return nullptr;
    }
    stream->base = stream->mark = stream->cur = stream->end = block;
    stream->capacity = stream->allocated = kBufferStep;
    stream->ownsBuffer = true;
    return stream;
}

void destroy(XML_IO_InStream *record) {
    if (!record) return;
    auto *stream = static_cast<InStream *>(record);
    if (stream->ownsBuffer) std::free(stream->base);
    if (stream->ownsRawBuffer) std::free(stream->rawBase);
    closeConverter(stream->converter);
    stream->memo.end();
    if (stream->kind == SourceKind::kFile) close(static_cast<int>(stream->source));
    if (stream->kind == SourceKind::kList) std::free(reinterpret_cast<void *>(stream->source));
    std::free(stream);
}

}  // namespace
}  // namespace cxml

using namespace cxml;

XML_IO_InStream *XML_IO_ByMem(const char *buffer, uint32_t length) noexcept {
    if (!buffer || length == 0 || !isAddressable(length)) return nullptr;
    InStream *stream = newStream(SourceKind::kMemory);
    if (!stream) return nullptr;
    // Read only: nothing compacts or enlarges a buffer that the stream does not own.
    auto *bytes = reinterpret_cast<unsigned char *>(const_cast<char *>(buffer));
    stream->base = stream->mark = stream->cur = bytes;
    stream->end = bytes + length;
    stream->capacity = length;
    stream->state = kExhausted;
    return recogniseMark(stream);
}

XML_IO_InStream *XML_IO_ByFile(const char *path) noexcept {
    if (!path) return nullptr;
    const int fd = open(path, O_RDONLY | O_CLOEXEC);
    if (fd < 0) return nullptr;
    InStream *stream = newReader(SourceKind::kFile);
    if (!stream) {
        close(fd);
        return nullptr;
    }
    stream->source = static_cast<uintptr_t>(fd);
    stream->readFn = readFile;
    XML_IO_Grow(stream);
    return recogniseMark(stream);
}

XML_IO_InStream *XML_IO_ByMemList(const XML_IO_MemList *list) noexcept {
    if (!list) return nullptr;
    auto *cursor = static_cast<XML_IO_MemListCursor *>(std::malloc(sizeof(XML_IO_MemListCursor)));
    if (!cursor) return nullptr;
    InStream *stream = newReader(SourceKind::kList);
    if (!stream) {
        std::free(cursor);
        return nullptr;
    }
    *cursor = {list->first, 0};
    stream->source = reinterpret_cast<uintptr_t>(cursor);
    stream->readFn = readList;
    XML_IO_Grow(stream);
    return recogniseMark(stream);
}

void XML_IO_Grow(XML_IO_InStream *record) noexcept {
    if (!record || record->state != kMoreMayCome || record->end - record->cur >= kReadAhead) return;
    auto *stream = static_cast<InStream *>(record);
    if (!stream->ownsBuffer) {
        stream->state = kExhausted;
        return;
    }
    compact(stream);
    if (int64_t{available(stream)} + freeRoom(stream) < kReadAhead && !enlarge(stream)) {
        stream->state = kMemoryFailure;
        return;
    }
    const uint32_t added =
        stream->encoding != XML_ENCODING_UTF_8 ? convertMore(stream) : readMore(stream);
    if (added == 0 && stream->state == kMoreMayCome) stream->state = kExhausted;
}

uint32_t XML_IO_SwitchEncoding(XML_IO_InStream *record, uint32_t encoding) noexcept {
    if (!record) return kMemoryFailure;
    auto *stream = static_cast<InStream *>(record);
    if (stream->state > kExhausted || stream->encoding == encoding) return stream->state;
    if (isSameWithoutByteOrder(stream->encoding, encoding)) {
        stream->encoding = encoding;
        return kMoreMayCome;
    }
    uint32_t state = kMoreMayCome;
    if (stream->encoding != XML_ENCODING_UTF_8) state = stopConversion(stream);
    if (state == kMoreMayCome && encoding != XML_ENCODING_UTF_8) {
        state = startConversion(stream, encoding);
    }
    stream->state = state;
    return state;
}

int XML_IO_Strncmp(const XML_IO_InStream *stream, const char *s, uint32_t n) noexcept {
    if (!stream || !s || available(stream) < n) return 0;
    return std::strncmp(reinterpret_cast<const char *>(stream->cur), s, n) == 0 ? 1 : 0;
}

int XML_IO_Strncasecmp(const XML_IO_InStream *stream, const char *s, uint32_t n) noexcept {
    if (!stream || !s || available(stream) < n) return 0;
    const std::size_t length = strnlen(s, n);
    const std::size_t compared = length < n ? length + 1 : n;  // up to and with the NUL
    return equalIgnoringCase(reinterpret_cast<const char *>(stream->cur), s, compared) ? 1 : 0;
}

void XML_IO_DestroyByMem(XML_IO_InStream *stream) noexcept {
    destroy(stream);
}

void XML_IO_DestroyByFile(XML_IO_InStream *stream) noexcept {
    destroy(stream);
}

void XML_IO_DestroyByMemList(XML_IO_InStream *stream) noexcept {
    destroy(stream);
}
