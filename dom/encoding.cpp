#include "dom/encoding.h"

#include <cstring>

namespace cxml {
namespace {

constexpr const char *kNames[] = {"UTF-8",    "UTF-16LE", "UTF-16BE", "GB2312", "UTF-32LE",
                                  "UTF-32BE", "UTF-16",   "UTF-32",   "GBK",    "GB18030",
                                  "UCS-4",    "UCS-4BE",  "UCS-4LE",  nullptr};
static_assert(sizeof kNames / sizeof kNames[0] == XML_ENCODING_UNKNOWN + 1);

constexpr char foldCase(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}

}  // namespace

bool isAsciiCompatible(std::uint32_t encoding) noexcept {
    return encoding == XML_ENCODING_UTF_8 || encoding == XML_ENCODING_GB2312 ||
           encoding == XML_ENCODING_GBK || encoding == XML_ENCODING_GB18030;
}

bool equalIgnoringCase(const char *a, const char *b, std::size_t length) noexcept {
    for (std::size_t i = 0; i < length; ++i) {
        if (foldCase(a[i]) != foldCase(b[i])) return false;
    }
    return true;
}

std::uint32_t encodingFromName(const char *name, std::size_t length) noexcept {
    std::uint32_t encoding = 0;
    while (kNames[encoding] && !(std::strlen(kNames[encoding]) == length &&
                                 equalIgnoringCase(kNames[encoding], name, length))) {
        ++encoding;
    }
    return encoding;
}

}  // namespace cxml

const char *XML_DOM_EncodingEnumToStr(uint32_t encoding) noexcept {
    return cxml::kNames[encoding < XML_ENCODING_UNKNOWN ? encoding : XML_ENCODING_UNKNOWN];
}

uint32_t XML_DOM_EncodingStrToEnum(const char *name) noexcept {
    return name ? cxml::encodingFromName(name, std::strlen(name)) : XML_ENCODING_UNKNOWN;
}
