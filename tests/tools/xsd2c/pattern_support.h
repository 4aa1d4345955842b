// tests/tools/xsd2c/pattern_support.h - texts in GB18030, and expressions compiled for them.
#pragma once

#include <gtest/gtest.h>
#include <iconv.h>
#include <regex.h>

#include <string>
#include <string_view>

#include "tests/support/texts.h"

namespace patterns {

// One character as UTF-8.
inline std::string utf8Of(char32_t c) {
    return support::utf8(c);
}

inline std::string utf8Of(std::u32string_view text) {
    std::string result;
    for (const char32_t c : text) result += utf8Of(c);
    return result;
}

// Empty where there is no code, as for some characters for private use.
inline std::string gb18030Of(std::string_view utf8) {
    static const iconv_t converter = iconv_open("GB18030", "UTF-8");
    std::string source(utf8), result(2 * utf8.size() + 4, '\0');
    char *from = source.data(), *to = result.data();
    std::size_t left = source.size(), room = result.size();
    iconv(converter, nullptr, nullptr, nullptr, nullptr);
    if (iconv(converter, &from, &left, &to, &room) == static_cast<std::size_t>(-1)) return {};
    result.resize(result.size() - room);
    return result;
}

class Compiled {
  public:
    explicit Compiled(const std::string &pattern) {
        good_ = regcomp(&regex_, pattern.c_str(), REG_EXTENDED | REG_NOSUB) == 0;
        EXPECT_TRUE(good_) << pattern;
        EXPECT_EQ(pattern.find('\0'), pattern.npos);
    }
    Compiled(const Compiled &) = delete;
    Compiled &operator=(const Compiled &) = delete;
    ~Compiled() {
        if (good_) regfree(&regex_);
    }
    bool matches(const std::string &bytes) const {
        return good_ && regexec(&regex_, bytes.c_str(), 0, nullptr, 0) == 0;
    }

  private:
    regex_t regex_;
    bool good_;
};

}  // namespace patterns
