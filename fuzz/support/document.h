// fuzz/support/document.h - a document out of a fuzzer's bytes, in any encoding and cut anywhere.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "fuzz/support/fuzz_input.h"
#include "tests/support/feeds.h"

namespace fuzz {

// The first eight bytes say how the rest is made a document of: in which encoding, whether a piece
// of it is repeated beyond the buffers of 64 KiB, and where it is cut.
class Document {
  public:
    explicit Document(FuzzInput &input);

    const std::string &bytes() const { return bytes_; }
    bool isLong() const { return bytes_.size() > 16384; }

    support::Feed memory() const { return support::memoryFeed(bytes_); }
    support::Feed file() const { return support::fileFeed(bytes_); }
    // Cut as the input says.
    support::Feed cut() const;
    // In pieces of one byte, or of some 60 where the document is long.
    support::Feed finelyCut() const;

  private:
    std::string bytes_;
    std::string_view cuts_;
};

}  // namespace fuzz
