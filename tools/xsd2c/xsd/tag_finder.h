// tools/xsd2c/xsd/tag_finder.h - from the place behind a tag, which a parser tells, to its "<".
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace xsd2c {

struct Position {
    int line = 1;
    int column = 1;  // in characters
};

// Goes through the text of a document once, so that tags have to be asked for in order.
class TagFinder {
  public:
    // A document in an encoding (XML_ENCODING_*), which need not be what its first bytes say.
    TagFinder(const std::string &bytes, std::uint32_t encoding);

    // Where the last "<" before a place stands.
    Position lastTagBefore(Position behind);

  private:
    void step();

    std::string text_;  // UTF-8
    std::size_t at_ = 0;
    Position here_;
    Position tag_;
};

}  // namespace xsd2c
