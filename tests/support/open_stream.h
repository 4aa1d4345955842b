// tests/support/open_stream.h - an input stream over a feed, and sources for it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "compactxml.h"
#include "tests/support/feeds.h"

namespace support {

// A stream over a feed, closed at the end.
class OpenStream {
  public:
    explicit OpenStream(Feed feed) : feed_(std::move(feed)), stream_(feed_.open()) {}
    ~OpenStream() { feed_.close(stream_); }
    OpenStream(const OpenStream &) = delete;
    OpenStream &operator=(const OpenStream &) = delete;

    XML_IO_InStream *operator->() const { return stream_; }
    XML_IO_InStream *get() const { return stream_; }
    std::string_view unread() const {
        return {reinterpret_cast<const char *>(stream_->cur),
                static_cast<std::size_t>(stream_->end - stream_->cur)};
    }
    std::size_t available() const { return static_cast<std::size_t>(stream_->end - stream_->cur); }
    std::size_t kept() const { return static_cast<std::size_t>(stream_->cur - stream_->mark); }
    std::size_t used() const { return static_cast<std::size_t>(stream_->end - stream_->base); }

  private:
    Feed feed_;
    XML_IO_InStream *stream_;
};

// So many bytes, no two stretches of them alike.
inline std::string bytes(std::size_t count) {
    std::string text;
    for (std::size_t i = 0; text.size() < count; ++i) text += std::to_string(i) + ' ';
    text.resize(count);
    return text;
}

// The feeds whose streams refill.
inline std::vector<Feed> readers(std::string_view text) {
    return {fileFeed(text), listFeed(text), listInPieces(text, 1), listInPieces(text, 100)};
}

}  // namespace support
