// io/char_memo.h - what the converter has made of single characters, kept so that it need not be
// asked again.
//
// A converter takes some ten nanoseconds for each call and several for each character; looking up a
// character that has been there before takes one or two. The converter stays the only one who
// knows: every entry is its answer, and whatever is not a whole, known character goes to it.
#pragma once

#include <cstddef>
#include <cstdint>

#include "io/converter.h"

namespace cxml {

struct CharTable;
// The size of the one block that a memo asks for, and does without if there is no memory. It is not
// worth that, nor the time to clear it, before so many bytes have been converted.
extern const std::size_t kCharTableBytes;
inline constexpr std::uint32_t kBytesWithoutTable = 16 * 1024;

// A converter's memory, which its stream keeps beside it. Short texts leave it empty. All zeros is
// one that helps with nothing, so that a record of zeros may hold it.
class CharMemo {
  public:
    // For a converter between these two that has just been opened.
    void begin(std::uint32_t source, std::uint32_t target) noexcept;
    // Frees all it has.
    void end() noexcept;

    // Does what convert() does, with the same result, whatever the size of the input.
    ConvertResult convert(void *converter, ConvertSpan *span) noexcept;

  private:
    // What there are tables for; of other conversions the converter does every character.
    enum class Pair : std::uint8_t {
        kOther,
        kUtf8ToGb18030,
        kGb18030ToUtf8,
        kGbkToUtf8,
        kUtf16LeToUtf8,
        kUtf16BeToUtf8
    };

    bool hasTable() noexcept;
    ConvertResult convertByTable(void *converter, ConvertSpan *span) noexcept;

    CharTable *table_;
    std::uint32_t bytesLeft_;  // for the converter, before the table is worth its while
    Pair pair_;
    bool takesWhole_;  // the result depends on where a call's input ends
};

}  // namespace cxml
