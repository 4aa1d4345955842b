// tests/support/utf8_locale.h - the process in another locale.
#pragma once

#include <clocale>
#include <string>

namespace support {

// A locale of UTF-8 for its life, if the system has one.
class Utf8Locale {
  public:
    Utf8Locale() : before_(std::setlocale(LC_ALL, nullptr)) {
        set_ = std::setlocale(LC_ALL, "C.UTF-8") || std::setlocale(LC_ALL, "C.utf8");
    }
    ~Utf8Locale() { std::setlocale(LC_ALL, before_.c_str()); }
    Utf8Locale(const Utf8Locale &) = delete;
    Utf8Locale &operator=(const Utf8Locale &) = delete;

    bool isSet() const { return set_; }

  private:
    std::string before_;
    bool set_ = false;
};

}  // namespace support
