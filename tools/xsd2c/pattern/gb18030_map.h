// tools/xsd2c/pattern/gb18030_map.h - which code of GB18030 stands for which character.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace xsd2c {

// Codes of two bytes: 0x81 to 0xFE, and 0x40 to 0xFE without 0x7F. Codes of four bytes count up as
// numbers whose digits are 0x81 to 0xFE, "0" to "9", 0x81 to 0xFE and "0" to "9".
class Gb18030Map {
  public:
    static constexpr char32_t kNone = 0xFFFFFFFF;
    static constexpr std::size_t kFourByteCodes = 126 * 10 * 126 * 10;
    // Where the four-byte codes of the characters above U+FFFF begin, which are in order.
    static constexpr std::size_t kFirstSupplementary = 189000;

    // Made when it is first needed, from what the C library converts.
    static const Gb18030Map &get();

    char32_t charOfTwo(unsigned lead, unsigned trail) const {
        return twoBytes_[(lead - 0x81) * kTrails + trail - 0x40];
    }
    char32_t charOfFour(std::size_t index) const;
    // Whether it is known at once that none of these stands for a character.
    static bool isUnused(std::size_t index, std::size_t count);

  private:
    static constexpr std::size_t kTrails = 0xFF - 0x40;
    static constexpr std::size_t kBasicCodes = 50400;  // those with leads 0x81 to 0x84
    static constexpr std::size_t kBehindSupplementary = kFirstSupplementary + 0x100000;

    Gb18030Map();
    void addCodes(char32_t first, const std::string &codes);

    std::vector<char32_t> twoBytes_;
    std::vector<char32_t> fourBytes_;
};

}  // namespace xsd2c
