#include <cstring>

#include "compactxml.h"
#include "dom/encoding.h"
#include "io/byte_scan.h"
#include "io/output_stream.h"
#include "parser/char_class.h"

namespace cxml {
namespace {

bool isAsciiName(const Byte *name, std::size_t length) {
    return (kNameClass[name[0]] & kNameStart) != 0 &&
           skipAsciiNameChars(name, name + length) == name + length;
}

// Code points in big-endian order, closed by a 0.
bool isUtf32Name(const Byte *units, uint32_t length) {
    for (uint32_t at = 0; at + 4 <= length; at += 4) {
        const uint32_t value = static_cast<uint32_t>(units[at]) << 24 | units[at + 1] << 16 |
                               units[at + 2] << 8 | units[at + 3];
        const auto c = static_cast<CodePoint>(value);
        if (at != 0 && c == 0) return true;
        if (!(at == 0 ? XML_Parser_IsNameStartChar(c) : XML_Parser_IsNameChar(c))) return false;
    }
    return false;
}

}  // namespace
}  // namespace cxml

using namespace cxml;

uint32_t XML_CheckQName(const char *name) noexcept {
    if (!name) return XML_REFUSED;
    const std::size_t length = std::strlen(name);
    if (isAscii(name, length)) {
        return isAsciiName(reinterpret_cast<const Byte *>(name), length) ? XML_OK : XML_REFUSED;
    }
    if (length >= UINT32_MAX) return XML_REFUSED;
    OutStreamOwner stream{XML_IO_MemOutStreamCreate(kTreeEncoding, XML_ENCODING_UTF_32BE)};
    if (!stream) return XML_REFUSED;
    // The NUL is converted with the name and closes it.
    const auto bytes = static_cast<uint32_t>(length + 1);
    if (XML_IO_OutStreamAppend(stream.get(), name, bytes) != XML_OK) return XML_REFUSED;
    uint32_t unitBytes = 0;
    const char *units = XML_IO_MemOutStreamGetBuf(stream.get(), &unitBytes);
    return units && isUtf32Name(reinterpret_cast<const Byte *>(units), unitBytes) ? XML_OK
                                                                                  : XML_REFUSED;
}
