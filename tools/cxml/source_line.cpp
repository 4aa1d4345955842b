#include "source_line.h"

#include <algorithm>
#include <cstring>
#include <deque>
#include <memory>
#include <string_view>
#include <utility>

#include "compactxml.h"
#include "text.h"

namespace tool {
namespace {

constexpr std::size_t kLineCells = 79;
constexpr std::size_t kCellsBefore = 52;  // of a long line, at most so many stand before the column
constexpr std::string_view kLeftOut = "...";
constexpr std::size_t kReadAhead = 64;  // what the stream keeps ahead, if it is asked to

struct DestroyStream {
    void operator()(XML_IO_InStream *stream) const noexcept { XML_IO_DestroyByFile(stream); }
};

// Reads characters as the parser does.
class CharReader {
  public:
    CharReader(const std::string &path, std::uint32_t encoding)
        : stream_(XML_IO_ByFile(path.c_str())) {
        if (!stream_) return;
        switchToFirstBytes();
        if (encoding < XML_ENCODING_UNKNOWN) XML_IO_SwitchEncoding(stream_.get(), encoding);
        refill();
    }

    bool opened() const { return stream_ != nullptr; }
    bool atEnd() const { return stream_->cur == stream_->end; }

    // Passes over whole lines; false when the document ends before.
    bool skipLines(int count) {
        while (count > 0) {
            if (atEnd()) return false;
            const unsigned char *const limit = runLimit();
            const unsigned char *p = stream_->cur;
            while (p < limit && count > 0) {
                if (endsLine(p)) --count;
                ++p;
            }
            stream_->cur += p - stream_->cur;
            refill();
        }
        return true;
    }

    // Passes over characters, but not over the end of the line.
    void skipChars(int count) {
        while (count > 0 && !lineEnds()) {
            const unsigned char *const limit = runLimit();
            const unsigned char *p = stream_->cur;
            for (; p < limit && count > 0 && !endsLine(p) && !isCrLf(p); --count) p += lengthAt(p);
            stream_->cur += p - stream_->cur;
            refill();
        }
    }

    // The character at the read position, which moves on. Its bytes are good until the next call.
    std::string_view next() {
        stream_->mark = stream_->cur;
        refill();
        const unsigned char *const p = stream_->cur;
        const std::size_t length = lengthAt(p);
        stream_->cur += length;
        return {reinterpret_cast<const char *>(p), length};
    }

    bool lineEnds() const { return atEnd() || endsLine(stream_->cur) || isCrLf(stream_->cur); }

  private:
    // A document in UTF-16 or UTF-32 without a byte order mark is known by its first bytes, which a
    // declared name with the byte order left open does not tell again.
    void switchToFirstBytes() {
        struct First {
            unsigned char bytes[4];
            std::uint32_t encoding;
        };
        constexpr First kFirst[] = {{{'<', 0, '?', 0}, XML_ENCODING_UTF_16LE},
                                    {{0, '<', 0, '?'}, XML_ENCODING_UTF_16BE},
                                    {{'<', 0, 0, 0}, XML_ENCODING_UTF_32LE},
                                    {{0, 0, 0, '<'}, XML_ENCODING_UTF_32BE}};
        if (stream_->encoding != XML_ENCODING_UTF_8 || stream_->end - stream_->cur < 4) return;
        for (const First &first : kFirst) {
            if (std::memcmp(stream_->cur, first.bytes, sizeof first.bytes) == 0) {
                XML_IO_SwitchEncoding(stream_.get(), first.encoding);
                return;
            }
        }
    }

    // Bytes of the character at p; what is no character counts byte by byte.
    std::size_t lengthAt(const unsigned char *p) const {
        if (*p < 0xC0) return 1;
        const std::size_t whole = *p >= 0xF0 ? 4 : *p >= 0xE0 ? 3 : 2;
        const auto left = static_cast<std::size_t>(stream_->end - p);
        std::size_t length = 1;
        while (length < whole && length < left && (p[length] & 0xC0) == 0x80) ++length;
        return length;
    }

    bool isCrLf(const unsigned char *p) const {
        return *p == '\r' && p + 1 != stream_->end && p[1] == '\n';
    }
    bool endsLine(const unsigned char *p) const { return *p == '\n' || (*p == '\r' && !isCrLf(p)); }

    // Up to here characters can be read without asking for more.
    const unsigned char *runLimit() const {
        const auto left = static_cast<std::size_t>(stream_->end - stream_->cur);
        if (stream_->state != 0) return stream_->end;
        return left > kReadAhead ? stream_->end - kReadAhead : stream_->cur + 1;
    }

    void refill() {
        stream_->mark = stream_->cur;
        XML_IO_Grow(stream_.get());
    }

    std::unique_ptr<XML_IO_InStream, DestroyStream> stream_;
};

// A character as it is shown.
struct Glyph {
    std::string text;
    std::size_t cells;
};

Glyph glyphOf(std::string_view character) {
    // A tab would move the caret by what only the terminal knows.
    std::string text = character == "\t" ? " " : printable(character);
    const std::size_t cells = displayWidth(text);
    return {std::move(text), cells};
}

// One end of the line, as far as it has been kept.
struct Side {
    std::deque<Glyph> glyphs;
    std::size_t cells = 0;
    bool cut = false;

    std::size_t width() const { return cells + (cut ? kLeftOut.size() : 0); }
    // With room for the dots, unless all of it fits.
    void shrinkFront(std::size_t most) {
        while (width() > most && !glyphs.empty()) {
            cells -= glyphs.front().cells;
            glyphs.pop_front();
            cut = true;
        }
    }
    void shrinkBack(std::size_t most) {
        while (width() > most && !glyphs.empty()) {
            cells -= glyphs.back().cells;
            glyphs.pop_back();
            cut = true;
        }
    }
};

// Combining characters take no cells; a line of nothing else must not be kept whole.
constexpr std::size_t kMostGlyphs = 4 * kLineCells;

Side readBefore(CharReader &reader, int column) {
    Side before;
    // Of a long line only the end is worth looking at.
    const int skipped = std::max(0, column - 1 - static_cast<int>(kMostGlyphs));
    reader.skipChars(skipped);
    before.cut = skipped > 0;
    for (int i = skipped + 1; i < column && !reader.lineEnds(); ++i) {
        Glyph glyph = glyphOf(reader.next());
        before.cells += glyph.cells;
        before.glyphs.push_back(std::move(glyph));
        while (before.cells > kLineCells + kLeftOut.size() || before.glyphs.size() > kMostGlyphs) {
            before.cells -= before.glyphs.front().cells;
            before.glyphs.pop_front();
            before.cut = true;
        }
    }
    return before;
}

Side readBehind(CharReader &reader) {
    Side behind;
    while (!reader.lineEnds()) {
        if (behind.cells > kLineCells || behind.glyphs.size() > kMostGlyphs) {
            behind.cut = true;
            break;
        }
        Glyph glyph = glyphOf(reader.next());
        behind.cells += glyph.cells;
        behind.glyphs.push_back(std::move(glyph));
    }
    return behind;
}

}  // namespace

std::optional<SourceLine> readSourceLine(const std::string &path, std::uint32_t encoding, int line,
                                         int column) {
    CharReader reader{path, encoding};
    if (!reader.opened() || !reader.skipLines(line - 1)) return std::nullopt;
    Side before = readBefore(reader, column);
    Side behind = readBehind(reader);
    if (before.width() + behind.width() > kLineCells) {
        // What one side does not need is the other's.
        constexpr std::size_t kCellsBehind = kLineCells - kCellsBefore;
        before.shrinkFront(
            std::max(kCellsBefore, kLineCells - std::min(kLineCells, behind.width())));
        behind.shrinkBack(std::max(kCellsBehind, kLineCells - before.width()));
    }
    SourceLine result;
    if (before.cut) result.text = kLeftOut;
    for (const Glyph &glyph : before.glyphs) result.text += glyph.text;
    result.caret = before.width();
    for (const Glyph &glyph : behind.glyphs) result.text += glyph.text;
    if (behind.cut) result.text += kLeftOut;
    return result;
}

}  // namespace tool
