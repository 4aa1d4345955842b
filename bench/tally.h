// tally.h - what every contestant counts while it reads a document.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace bench {

// Two modes. While time is taken a callback costs a few additions, the same for all contestants.
// Before that, with exact set, the tally also takes in the local names, the attribute values and
// the text, in document order, so that contestants agree only if they read the same things. The
// order of an element's attributes means nothing (XML 1.0, 3.1), and some trees sort them.
//
// Text is weighed by its bytes other than white space, in UTF-8: contestants differ in what they
// do with white space at the ends of a text, between elements and in attribute values, and in how
// many pieces they hand out a text.
struct Tally {
    static constexpr std::uint64_t kStart = 0xCBF29CE484222325u;

    std::uint64_t elements = 0;
    std::uint64_t attributes = 0;
    std::uint64_t textBytes = 0;  // as handed out; without white space when exact
    std::uint64_t digest = kStart;
    bool exact = false;

    // A name may have a prefix or a namespace name in front, ended by the separator.
    void element(const char *name, char separator = '\0') {
        ++elements;
        if (exact) mixName(name, separator);
    }
    void attribute(const char *name, const char *value, char separator = '\0') {
        ++attributes;
        if (exact) mixAttribute(name, {value, std::strlen(value)}, separator);
    }
    void attribute(const char *name, std::string_view value) {
        ++attributes;
        if (exact) mixAttribute(name, value, '\0');
    }
    void text(const char *bytes, std::size_t length) {
        textBytes += exact ? mixVisible({bytes, length}) : length;
    }

    bool operator==(const Tally &) const = default;

  private:
    void mix(unsigned char byte) { digest = (digest ^ byte) * 0x100000001B3u; }  // FNV-1a
    void mixName(const char *name, char separator) {
        if (const char *local = separator ? std::strrchr(name, separator) : nullptr)
            name = local + 1;
        mix('<');
        for (; *name; ++name) mix(static_cast<unsigned char>(*name));
        mix('=');
    }
    void mixAttribute(const char *name, std::string_view value, char separator) {
        Tally own;
        own.mixName(name, separator);
        own.mixVisible(value);
        digest += own.digest;
    }
    std::size_t mixVisible(std::string_view bytes) {
        std::size_t visible = 0;
        for (const char c : bytes) {
            if (c == ' ' || c == '\t' || c == '\n' || c == '\r') continue;
            mix(static_cast<unsigned char>(c));
            ++visible;
        }
        return visible;
    }
};

}  // namespace bench
