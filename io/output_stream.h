// io/output_stream.h - output streams as the library's own callers use them.
#pragma once

#include <memory>

#include "compactxml.h"

namespace cxml {

struct DestroyOutStream {
    void operator()(XML_IO_OutStream *stream) const noexcept { XML_IO_OutStreamDestroy(stream); }
};
using OutStreamOwner = std::unique_ptr<XML_IO_OutStream, DestroyOutStream>;

// A memory stream that opens its converter for the first text that is not ASCII, if ASCII passes it
// unchanged: most documents never need one, and opening it costs more than all else that is done
// for a small one. A converter that is not to be had fails that text.
XML_IO_OutStream *XML_IO_MemOutStreamCreateLate(uint32_t sourceEncoding,
                                                uint32_t targetEncoding) noexcept;

// Whether that has come to pass.
bool XML_IO_FailedToOpen(const XML_IO_OutStream *stream) noexcept;

// Whether a stream's text is, or will be, converted.
bool XML_IO_Converts(const XML_IO_OutStream *stream) noexcept;

// ---- writing straight into the block of a memory stream -----------------------------------------

// Bytes that may be written behind a stream's content.
struct OutRoom {
    char *at = nullptr;
    char *end = nullptr;
};

// Whether ASCII comes out of a stream as it went in, so that it may be written into the block.
bool XML_IO_PassesAscii(const XML_IO_OutStream *stream) noexcept;

// The room there is without any growth; none in a stream without a block.
OutRoom XML_IO_RoomOf(const XML_IO_OutStream *stream) noexcept;

// Makes room for count bytes or more; false leaves the stream and *room as they were.
[[nodiscard]] bool XML_IO_MakeRoom(XML_IO_OutStream *stream, std::size_t count,
                                   OutRoom *room) noexcept;

// Takes in what has been written in front of room.at, in room as one of these two gave it.
void XML_IO_TakeIn(XML_IO_OutStream *stream, const OutRoom &room) noexcept;

// Appends to a memory stream as XML_IO_OutStreamAppend does, for callers to whom the content after
// a failure means nothing: converts whole stretches of text into the block, without chunks.
uint32_t XML_IO_AppendWhole(XML_IO_OutStream *stream, const char *bytes, uint32_t length) noexcept;

}  // namespace cxml
