// tools/xsd2c/pattern/ere.h - POSIX extended regular expressions over bytes, while they are put
// together.
#pragma once

#include <bitset>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace xsd2c {

using ByteSet = std::bitset<256>;

// An expression and how tightly it holds together. What matches no text, and what matches the empty
// one alone, have no good spelling: they are kept as such and go away in what is made of them.
class Ere {
  public:
    Ere() = default;  // matches the empty text

    static Ere nothing();                          // matches no text
    static Ere literal(std::string_view bytes);    // one text, without a NUL
    static Ere oneOf(const ByteSet &bytes);        // one byte
    static Ere bracket(std::string text);          // one byte of ASCII texts
    static Ere digits(char first, char last);      // one digit; nothing if last is before first
    static Ere fromInner(std::string_view inner);  // what text() gave

    bool isNothing() const noexcept { return kind_ == Kind::kNothing; }
    bool isEmpty() const noexcept { return kind_ == Kind::kEmpty; }
    bool isGroup() const noexcept { return kind_ == Kind::kAtom && text_.front() == '('; }
    bool isAscii() const noexcept { return ascii_; }  // nothing that matches has a byte above 0x7F

    // The expression as it can follow, and be followed by, others: alternatives are in brackets.
    std::string text() const;
    // The same without those brackets.
    const std::string &bare() const noexcept { return text_; }

    friend Ere operator+(Ere left, const Ere &right);
    friend Ere repeat(const Ere &item, std::uint64_t least, std::optional<std::uint64_t> most);
    friend Ere alternatives(const std::vector<Ere> &branches);

  private:
    enum class Kind { kNothing, kEmpty, kAtom, kRepeat, kSequence, kAlternatives };
    Ere(Kind kind, std::string text, bool ascii)
        : kind_(kind), text_(std::move(text)), ascii_(ascii) {}
    std::string asAtom() const;

    Kind kind_ = Kind::kEmpty;
    std::string text_;
    bool ascii_ = true;
};

Ere operator+(Ere left, const Ere &right);
// NoTranslation for more repetitions than POSIX has room for.
Ere repeat(const Ere &item, std::uint64_t least, std::optional<std::uint64_t> most);
Ere alternatives(const std::vector<Ere> &branches);
inline Ere optional(const Ere &item) {
    return repeat(item, 0, 1);
}

// Matches no text: no byte of one is zero.
inline constexpr std::string_view kMatchesNothing = "[^\x01-\xFF]";

}  // namespace xsd2c
