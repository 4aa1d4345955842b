// tests/support/model_stream.h - an output stream written as plainly as possible, to compare with.
//
// Every append goes through iconv in 256-byte chunks; there is no short cut for anything.
#pragma once

#include <iconv.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace support {

class ModelStream {
  public:
    ModelStream(std::uint32_t sourceEncoding, std::uint32_t targetEncoding);
    ~ModelStream();
    ModelStream(const ModelStream &) = delete;
    ModelStream &operator=(const ModelStream &) = delete;

    bool open() const { return open_; }  // false for a pair that cannot be converted

    // The result that the library's append must have.
    std::uint32_t append(std::string_view bytes, bool safe = false);
    void clean() { content_.clear(); }
    std::string detach();

    const std::string &content() const { return content_; }
    std::uint32_t capacity() const { return capacity_; }
    const std::string &pending() const { return pending_; }
    const std::vector<std::size_t> &chunks() const { return chunks_; }  // lengths, none of them 0

  private:
    std::uint32_t convert(std::string_view bytes, bool safe);
    std::uint32_t flushPending(std::string_view *bytes);
    void sink(std::string_view bytes);

    bool open_ = true;
    iconv_t converter_ = iconv_t(-1);
    std::string content_;
    std::uint32_t capacity_ = 0;
    std::string pending_;
    std::vector<std::size_t> chunks_;
};

}  // namespace support
