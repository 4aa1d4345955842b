#include "xsd2c/pattern/tree_text.h"

#include <iconv.h>

#include <stdexcept>

#include "text/unicode.h"

namespace xsd2c {
namespace {

class Converter {
  public:
    Converter() : handle_(iconv_open("GB18030", "UTF-8")) {
        if (handle_ == reinterpret_cast<iconv_t>(-1)) {
            throw std::runtime_error("the C library cannot convert UTF-8 to GB18030");
        }
    }
    Converter(const Converter &) = delete;
    Converter &operator=(const Converter &) = delete;
    ~Converter() { iconv_close(handle_); }

    std::string convert(std::string_view utf8) {
        std::string source(utf8);
        // Two bytes of UTF-8 may take four of GB18030; none grows by more.
        std::string result(2 * source.size(), '\0');
        char *from = source.data(), *to = result.data();
        std::size_t left = source.size(), room = result.size();
        iconv(handle_, nullptr, nullptr, nullptr, nullptr);
        if (iconv(handle_, &from, &left, &to, &room) == static_cast<std::size_t>(-1)) {
            throw std::runtime_error("a text of the schema has no form in GB18030");
        }
        result.resize(result.size() - room);
        return result;
    }

  private:
    iconv_t handle_;
};

}  // namespace

std::string toTreeText(std::string_view text) {
    if (unicode::isAscii(text)) return std::string(text);
    static Converter converter;
    return converter.convert(text);
}

}  // namespace xsd2c
