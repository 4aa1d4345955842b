#include "tests/support/texts.h"

#include <stdexcept>

#include "compactxml.h"
#include "tests/support/reference_iconv.h"

namespace support {

std::string inEncoding(std::uint32_t encoding, std::string_view utf8) {
    Conversion result = convertWhole(XML_ENCODING_UTF_8, encoding, utf8);
    if (result.error != 0) throw std::runtime_error("text does not convert");
    return std::move(result.bytes);
}

std::string gb(std::string_view utf8) {
    return inEncoding(XML_ENCODING_GB18030, utf8);
}

std::string utf8(std::uint32_t codePoint) {
    const auto tail = [codePoint](int shift) {
        return static_cast<char>(0x80 | ((codePoint >> shift) & 0x3F));
    };
    if (codePoint < 0x80) return {static_cast<char>(codePoint)};
    if (codePoint < 0x800) return {static_cast<char>(0xC0 | (codePoint >> 6)), tail(0)};
    if (codePoint < 0x10000) {
        return {static_cast<char>(0xE0 | (codePoint >> 12)), tail(6), tail(0)};
    }
    return {static_cast<char>(0xF0 | (codePoint >> 18)), tail(12), tail(6), tail(0)};
}

std::string errorText(std::string_view message, std::size_t size) {
    if (size == 0) return {};
    // Cut first, converted then, with its NUL: a character that the cut split does not convert.
    std::string cut(message.substr(0, size - 1));
    const Conversion converted = convertWhole(XML_ENCODING_UTF_8, XML_ENCODING_GB18030, cut + '\0');
    const std::string text =
        converted.error == 0 ? converted.bytes.c_str() : "failed to convert encoding.";
    return text.substr(0, size - 1);
}

namespace {

// The bytes around a position that a message quotes: from 32 before it, at most 63, whole
// characters only. It ends at a NUL as every string does.
std::string snippetAt(std::string_view document, std::size_t offset) {
    const auto byteAt = [document](std::size_t i) {
        return static_cast<unsigned char>(document[i]);
    };
    std::size_t start = offset < 32 ? 0 : offset - 32;
    while (start < document.size() && (byteAt(start) & 0xC0) == 0x80) ++start;
    std::size_t end = document.size();
    if (end - start > 62) end = start + 63;
    std::size_t last = end;
    while (last > start && (byteAt(last - 1) & 0xC0) == 0x80) --last;
    if (last > start && byteAt(last - 1) >= 0x80) {
        static constexpr std::size_t kLengths[] = {2, 2, 3, 4};
        if (end - (last - 1) < kLengths[(byteAt(last - 1) >> 4) & 3]) end = last - 1;
    }
    return std::string(document.substr(start, end - start)).c_str();
}

}  // namespace

std::string messageAt(std::string_view document, std::size_t offset, int line, int column,
                      std::string_view message) {
    return "The Line " + std::to_string(line) + " Column " + std::to_string(column) + " :\"" +
           snippetAt(document, offset) + "\", " + std::string(message);
}

}  // namespace support
