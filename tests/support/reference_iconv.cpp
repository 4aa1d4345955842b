#include "tests/support/reference_iconv.h"

#include <iconv.h>

#include <cerrno>

#include "compactxml.h"

namespace support {

const char *encodingName(std::uint32_t encoding) {
    static constexpr const char *kNames[kEncodingCount] = {
        "UTF-8",  "UTF-16LE", "UTF-16BE", "GB2312", "UTF-32LE", "UTF-32BE", "UTF-16",
        "UTF-32", "GBK",      "GB18030",  "UCS-4",  "UCS-4BE",  "UCS-4LE"};
    return encoding < kEncodingCount ? kNames[encoding] : nullptr;
}

Conversion convertWhole(std::uint32_t from, std::uint32_t to, std::string_view bytes) {
    Conversion result;
    if (from == to) {
        result.bytes = bytes;
        result.consumed = bytes.size();
        return result;
    }
    const char *fromName = encodingName(from);
    const char *toName = encodingName(to);
    result.error = -1;
    if (!fromName || !toName) return result;
    const iconv_t converter = iconv_open(toName, fromName);
    if (converter == iconv_t(-1)) return result;

    std::string input(bytes);
    result.bytes.resize(input.size() * 8 + 16);
    char *in = input.data();
    std::size_t inLeft = input.size();
    char *out = result.bytes.data();
    std::size_t outLeft = result.bytes.size();
    const bool failed = iconv(converter, &in, &inLeft, &out, &outLeft) == std::size_t(-1);
    result.error = failed ? errno : 0;
    result.bytes.resize(result.bytes.size() - outLeft);
    result.consumed = input.size() - inLeft;
    iconv_close(converter);
    return result;
}

std::optional<std::string> encode(std::uint32_t encoding, std::u32string_view text) {
    std::string bigEndian;
    for (const char32_t c : text) {
        for (int shift = 24; shift >= 0; shift -= 8) {
            bigEndian += static_cast<char>(static_cast<unsigned char>((c >> shift) & 0xFF));
        }
    }
    Conversion result = convertWhole(XML_ENCODING_UTF_32BE, encoding, bigEndian);
    if (result.error != 0) return std::nullopt;
    return std::move(result.bytes);
}

std::optional<std::string> encodeBare(std::uint32_t encoding, std::u32string_view text) {
    std::optional<std::string> bytes = encode(encoding, text);
    if (!bytes || bytes->empty()) return bytes;
    const std::size_t one = encode(encoding, U"a")->size();
    const std::size_t two = encode(encoding, U"aa")->size();
    bytes->erase(0, 2 * one - two);
    return bytes;
}

}  // namespace support
