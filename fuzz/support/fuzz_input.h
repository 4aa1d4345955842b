// fuzz/support/fuzz_input.h - decisions and texts taken from the bytes of a fuzzer.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace fuzz {

// Bytes are used from the front. Behind their end every byte is 0 and every text empty, so that an
// input may be cut anywhere and means the same up to there.
class FuzzInput {
  public:
    FuzzInput(const std::uint8_t *data, std::size_t size)
        : rest_(reinterpret_cast<const char *>(data), size) {}

    bool empty() const { return rest_.empty(); }

    std::uint8_t byte() {
        if (rest_.empty()) return 0;
        const auto value = static_cast<std::uint8_t>(rest_.front());
        rest_.remove_prefix(1);
        return value;
    }
    std::uint16_t pair() {
        const unsigned high = byte();
        return static_cast<std::uint16_t>(high << 8 | byte());
    }
    // A number below a bound of 1 to 65536; two bytes where one does not do.
    std::size_t below(std::size_t bound) { return (bound <= 256 ? byte() : pair()) % bound; }
    bool flag() { return (byte() & 1) != 0; }

    // At most so many bytes.
    std::string_view text(std::size_t length) {
        const std::string_view text = rest_.substr(0, length);
        rest_.remove_prefix(text.size());
        return text;
    }
    // Up to a NUL, which is passed over, or to the end.
    std::string_view string() {
        const std::string_view text = rest_.substr(0, rest_.find('\0'));
        rest_.remove_prefix(std::min(rest_.size(), text.size() + 1));
        return text;
    }
    std::string_view rest() { return text(rest_.size()); }

    template <typename T, std::size_t n>
    const T &any(const T (&list)[n]) {
        return list[below(n)];
    }

  private:
    std::string_view rest_;
};

}  // namespace fuzz
