// tools/cxml/conversion.h - text from one encoding to another.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "compactxml.h"
#include "output.h"

namespace tool {

inline constexpr std::uint32_t kTreeEncoding = XML_ENCODING_GB18030;

// Converts text piece by piece, with constant memory. Encodings are XML_ENCODING_*.
class Conversion {
  public:
    // Fails with kTrouble when this machine does not convert between the two.
    Conversion(std::uint32_t from, std::uint32_t to);

    // Writes the converted text, or only tries it when there is no output. False when the text does
    // not convert. A character may be cut off at the end and completed by the next piece.
    bool append(std::string_view text, Output *output);
    // Whether the last character is complete.
    bool complete() const noexcept { return stream_->pendingCount == 0; }

  private:
    struct Destroy {
        void operator()(XML_IO_OutStream *stream) const noexcept {
            XML_IO_OutStreamDestroy(stream);
        }
    };
    std::unique_ptr<XML_IO_OutStream, Destroy> stream_;
};

// The length in bytes of the character that GB18030 text begins with; more than 0, and never more
// than there are.
std::size_t treeCharLength(std::string_view treeText) noexcept;

// The first character of a tree's text that an encoding lacks, such as "U+1F600"; "" when it has
// all of them.
std::string firstMissing(std::string_view treeText, std::uint32_t encoding);

}  // namespace tool
