#include "encoding.h"

#include <iconv.h>

#include <bit>
#include <cstddef>
#include <cstring>

namespace bench {
namespace {

constexpr const char *kUtf16Here =
    std::endian::native == std::endian::big ? "UTF-16BE" : "UTF-16LE";

std::string throughIconv(const char *bytes, std::size_t size, const char *from, const char *to) {
    const iconv_t converter = iconv_open(to, from);
    if (converter == iconv_t(-1)) return "?";
    std::string out(2 * size + 4, '\0');  // no character of these encodings grows to more
    // iconv does not write to its input, though its type says so.
    char *source = const_cast<char *>(bytes);
    char *target = out.data();
    std::size_t room = out.size();
    const bool ok =
        iconv(converter, &source, &size, &target, &room) != static_cast<std::size_t>(-1);
    iconv_close(converter);
    if (!ok) return "?";
    out.resize(out.size() - room);
    return out;
}

}  // namespace

const char *encodingName(Encoding encoding) {
    switch (encoding) {
        case Encoding::utf8:
            return "UTF-8";
        case Encoding::utf16le:
            return "UTF-16LE";
        case Encoding::gb18030:
            return "GB18030";
    }
    return "";
}

std::string converted(std::string_view text, Encoding from, Encoding to) {
    return throughIconv(text.data(), text.size(), encodingName(from), encodingName(to));
}

std::string utf8Of(const char16_t *text, std::size_t length) {
    return throughIconv(reinterpret_cast<const char *>(text), 2 * length, kUtf16Here, "UTF-8");
}

}  // namespace bench
