#include "parser/name_check.h"

#include <cstring>

#include "compactxml.h"
#include "dom/encoding.h"
#include "io/byte_scan.h"
#include "io/converter.h"
#include "parser/char_class.h"

namespace cxml {
namespace {

bool isAsciiName(const Byte *name, std::size_t length) {
    return (kNameClass[name[0]] & kNameStart) != 0 &&
           skipAsciiNameChars(name, name + length) == name + length;
}

// A name as code points in big-endian order, closed by a 0, of which it gets one part at a time.
class Utf32Name {
  public:
    // False when there is no more to ask: the name is complete, or it is none.
    bool take(const Byte *units, const Byte *end) {
        for (; end - units >= 4; units += 4) {
            const uint32_t value =
                static_cast<uint32_t>(units[0]) << 24 | units[1] << 16 | units[2] << 8 | units[3];
            const auto c = static_cast<CodePoint>(value);
            complete_ = begun_ && c == 0;
            if (complete_) return false;
            if (!(begun_ ? XML_Parser_IsNameChar(c) : XML_Parser_IsNameStartChar(c))) return false;
            begun_ = true;
        }
        return true;
    }
    bool isComplete() const { return complete_; }

  private:
    bool begun_ = false;
    bool complete_ = false;
};

// The bytes include the NUL, which is converted with the name and closes it.
bool isConvertedName(void *converter, const char *name, std::size_t bytes) {
    Utf32Name converted;
    Byte units[256];
    ConvertSpan span{name, bytes, nullptr, 0};
    ConvertResult result = ConvertResult::kOutputFull;
    while (result == ConvertResult::kOutputFull) {
        span.output = reinterpret_cast<char *>(units);
        span.outputLeft = sizeof units;
        result = convert(converter, &span);
        if (!converted.take(units, reinterpret_cast<const Byte *>(span.output))) break;
    }
    return converted.isComplete();
}

}  // namespace

NameCheck checkName(const char *name) noexcept {
    const std::size_t length = std::strlen(name);
    bool isName = false;
    if (isAscii(name, length)) {
        isName = isAsciiName(reinterpret_cast<const Byte *>(name), length);
    } else {
        void *const converter = openConverter(kTreeEncoding, XML_ENCODING_UTF_32BE);
        if (converter == kNoConverter) return NameCheck::kUnknown;
        isName = isConvertedName(converter, name, length + 1);
        closeConverter(converter);
    }
    return isName ? NameCheck::kName : NameCheck::kNoName;
}

}  // namespace cxml

uint32_t XML_CheckQName(const char *name) noexcept {
    return name && cxml::checkName(name) == cxml::NameCheck::kName ? XML_OK : XML_REFUSED;
}
