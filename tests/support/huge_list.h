// tests/support/huge_list.h - memory lists of any length that need little memory.
#pragma once

#include <algorithm>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>

#include "compactxml.h"
#include "tests/support/huge_string.h"

namespace support {

// A list that is put together from short texts and long repetitions of one block.
class HugeList {
  public:
    explicit HugeList(std::string_view filler = "a") : block_(hugeBlock(filler)) {}
    HugeList(const HugeList &) = delete;
    HugeList &operator=(const HugeList &) = delete;

    HugeList &add(std::string_view text) {
        texts_.emplace_back(text);
        append(texts_.back().data(), texts_.back().size());
        return *this;
    }
    // So many bytes of the filler.
    HugeList &repeat(std::uint64_t bytes) {
        while (bytes != 0) {
            const std::uint64_t piece = std::min<std::uint64_t>(bytes, block_.size());
            append(block_.data(), piece);
            bytes -= piece;
        }
        return *this;
    }

    const XML_IO_MemList *list() const { return &list_; }
    std::uint64_t length() const { return length_; }

  private:
    void append(const char *bytes, std::uint64_t length) {
        chunks_.push_back({nullptr, static_cast<std::uint32_t>(length),
                           reinterpret_cast<const unsigned char *>(bytes)});
        if (chunks_.size() == 1) {
            list_.first = &chunks_.front();
        } else {
            chunks_[chunks_.size() - 2].next = &chunks_.back();
        }
        length_ += length;
    }

    std::string block_;
    std::deque<std::string> texts_;
    std::deque<XML_IO_MemChunk> chunks_;
    XML_IO_MemList list_{nullptr};
    std::uint64_t length_ = 0;
};

}  // namespace support
