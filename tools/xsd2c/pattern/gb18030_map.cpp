#include "xsd2c/pattern/gb18030_map.h"

#include <iconv.h>

#include <algorithm>
#include <stdexcept>

#include "xsd2c/pattern/char_set.h"

namespace xsd2c {
namespace {

// Converts runs of characters. Some for private use have no code in the tables of some machines.
class Encoder {
  public:
    Encoder() : handle_(iconv_open("GB18030", "UTF-32LE")) {
        if (handle_ == reinterpret_cast<iconv_t>(-1)) {
            throw std::runtime_error("the C library cannot convert UTF-32LE to GB18030");
        }
    }
    Encoder(const Encoder &) = delete;
    Encoder &operator=(const Encoder &) = delete;
    ~Encoder() { iconv_close(handle_); }

    // Appends the codes of the characters from first on. Returns the first that has none, or end.
    char32_t append(std::string &codes, char32_t first, char32_t end) {
        std::string source;
        for (char32_t c = first; c != end; ++c) {
            for (int shift = 0; shift < 32; shift += 8)
                source += static_cast<char>(c >> shift & 255);
        }
        std::string result(source.size(), '\0');
        char *from = source.data(), *to = result.data();
        std::size_t left = source.size(), room = result.size();
        iconv(handle_, nullptr, nullptr, nullptr, nullptr);
        iconv(handle_, &from, &left, &to, &room);
        codes.append(result, 0, result.size() - room);
        return end - static_cast<char32_t>(left / 4);
    }

  private:
    iconv_t handle_;
};

constexpr char32_t kBlock = 4096;

}  // namespace

const Gb18030Map &Gb18030Map::get() {
    static const Gb18030Map map;
    return map;
}

Gb18030Map::Gb18030Map() : twoBytes_(126 * kTrails, kNone), fourBytes_(kBasicCodes, kNone) {
    Encoder encoder;
    constexpr char32_t kFirstSurrogate = 0xD800, kBehindSurrogates = 0xE000;
    for (char32_t next = 0x80; next <= kLastChar;) {
        const char32_t limit = next < kFirstSurrogate ? kFirstSurrogate : kLastChar + 1;
        const char32_t end = std::min<char32_t>(next + kBlock, limit);
        std::string codes;
        const char32_t stop = encoder.append(codes, next, end);
        addCodes(next, codes);
        next = stop == end ? end : stop + 1;
        if (next == kFirstSurrogate) next = kBehindSurrogates;
    }
}

void Gb18030Map::addCodes(char32_t first, const std::string &codes) {
    const auto byte = [&](std::size_t at) -> std::size_t {
        return at < codes.size() ? static_cast<unsigned char>(codes[at]) : 0;
    };
    char32_t c = first;
    for (std::size_t at = 0; at < codes.size(); ++c) {
        const std::size_t lead = byte(at) - 0x81, second = byte(at + 1);
        if (second >= 0x40) {
            twoBytes_.at(lead * kTrails + second - 0x40) = c;
            at += 2;
            continue;
        }
        const std::size_t index =
            ((lead * 10 + second - '0') * 126 + byte(at + 2) - 0x81) * 10 + byte(at + 3) - '0';
        if (index < fourBytes_.size()) fourBytes_[index] = c;
        at += 4;
    }
}

char32_t Gb18030Map::charOfFour(std::size_t index) const {
    if (index < fourBytes_.size()) return fourBytes_[index];
    if (isUnused(index, 1)) return kNone;
    return static_cast<char32_t>(index - kFirstSupplementary) + 0x10000;
}

bool Gb18030Map::isUnused(std::size_t index, std::size_t count) {
    return index >= kBehindSupplementary ||
           (index >= kBasicCodes && index + count <= kFirstSupplementary);
}

}  // namespace xsd2c
