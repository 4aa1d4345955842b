#include "xsd2c/xsd/tag_finder.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>

#include "compactxml.h"

namespace xsd2c {
namespace {

struct DestroyStream {
    void operator()(XML_IO_InStream *stream) const noexcept { XML_IO_DestroyByMem(stream); }
};

// A document in UTF-16 or UTF-32 without a byte order mark is known by its first bytes, which a
// declared name with the byte order left open does not tell again.
void switchToFirstBytes(XML_IO_InStream &stream) {
    struct First {
        unsigned char bytes[4];
        std::uint32_t encoding;
    };
    constexpr First kFirst[] = {{{'<', 0, '?', 0}, XML_ENCODING_UTF_16LE},
                                {{0, '<', 0, '?'}, XML_ENCODING_UTF_16BE},
                                {{'<', 0, 0, 0}, XML_ENCODING_UTF_32LE},
                                {{0, 0, 0, '<'}, XML_ENCODING_UTF_32BE}};
    if (stream.encoding != XML_ENCODING_UTF_8 || stream.end - stream.cur < 4) return;
    for (const First &first : kFirst) {
        if (std::memcmp(stream.cur, first.bytes, sizeof first.bytes) == 0) {
            XML_IO_SwitchEncoding(&stream, first.encoding);
            return;
        }
    }
}

std::string utf8Of(const std::string &bytes, std::uint32_t encoding) {
    const std::unique_ptr<XML_IO_InStream, DestroyStream> stream{
        XML_IO_ByMem(bytes.data(), static_cast<std::uint32_t>(bytes.size()))};
    if (!stream) throw std::bad_alloc();
    switchToFirstBytes(*stream);
    if (encoding < XML_ENCODING_UNKNOWN) XML_IO_SwitchEncoding(stream.get(), encoding);
    std::string text;
    for (;;) {
        stream->mark = stream->cur;
        XML_IO_Grow(stream.get());
        if (stream->cur == stream->end) return text;
        text.append(stream->cur, stream->end);
        stream->cur = stream->end;
    }
}

}  // namespace

TagFinder::TagFinder(const std::string &bytes, std::uint32_t encoding)
    : text_(utf8Of(bytes, encoding)) {}

Position TagFinder::lastTagBefore(Position behind) {
    while (at_ < text_.size() && (here_.line < behind.line ||
                                  (here_.line == behind.line && here_.column < behind.column))) {
        step();
    }
    return tag_;
}

// Over one character; CR LF, CR and LF each end a line.
void TagFinder::step() {
    const char c = text_[at_++];
    if (c == '<') tag_ = here_;
    if (c == '\r' && at_ < text_.size() && text_[at_] == '\n') ++at_;
    if (c == '\n' || c == '\r') {
        ++here_.line;
        here_.column = 1;
        return;
    }
    while (at_ < text_.size() && (static_cast<unsigned char>(text_[at_]) & 0xC0) == 0x80) ++at_;
    ++here_.column;
}

}  // namespace xsd2c
