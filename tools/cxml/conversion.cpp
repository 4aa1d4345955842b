#include "conversion.h"

#include <algorithm>
#include <cstdio>

#include "failure.h"
#include "text.h"

namespace tool {
namespace {

constexpr std::size_t kSliceBytes = 16384;

// Such as "U+1F600", for the first character of UTF-8.
std::string codePointName(std::string_view utf8) {
    const auto lead = static_cast<unsigned char>(utf8.front());
    utf8 = utf8.substr(0, lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4);
    unsigned value = 0;
    for (std::size_t i = 0; i < utf8.size(); ++i) {
        const auto byte = static_cast<unsigned char>(utf8[i]);
        if (i != 0) {
            value = value << 6 | (byte & 0x3F);
        } else if (byte < 0x80) {
            value = byte;
        } else {
            value = byte & (0x7Fu >> utf8.size());
        }
    }
    char name[16];
    std::snprintf(name, sizeof name, "U+%04X", value);
    return name;
}

}  // namespace

Conversion::Conversion(std::uint32_t from, std::uint32_t to)
    : stream_(XML_IO_MemOutStreamCreate(from, to)) {
    if (!stream_) {
        throw Failure(kTrouble, std::string("this machine does not convert ") +
                                    XML_DOM_EncodingEnumToStr(from) + " to " +
                                    XML_DOM_EncodingEnumToStr(to) + " (see cxml encodings)");
    }
}

bool Conversion::append(std::string_view text, Output *output) {
    while (!text.empty()) {
        const std::string_view slice = text.substr(0, kSliceBytes);
        text.remove_prefix(slice.size());
        if (XML_IO_OutStreamAppend(stream_.get(), slice.data(),
                                   static_cast<std::uint32_t>(slice.size())) != XML_OK) {
            return false;
        }
        std::uint32_t length = 0;
        const char *converted = XML_IO_MemOutStreamGetBuf(stream_.get(), &length);
        if (output && converted) output->write({converted, length});
        XML_IO_MemOutStreamCleanBuf(stream_.get());
    }
    return true;
}

std::size_t treeCharLength(std::string_view treeText) noexcept {
    if (static_cast<unsigned char>(treeText.front()) < 0x80) return 1;
    const bool four = treeText.size() >= 2 && treeText[1] >= '0' && treeText[1] <= '9';
    return std::min<std::size_t>(four ? 4 : 2, treeText.size());
}

std::string firstMissing(std::string_view treeText, std::uint32_t encoding) {
    Conversion conversion{kTreeEncoding, encoding};
    while (!treeText.empty()) {
        const std::string_view character = treeText.substr(0, treeCharLength(treeText));
        if (!conversion.append(character, nullptr) || !conversion.complete()) {
            return codePointName(toUtf8(character));
        }
        treeText.remove_prefix(character.size());
    }
    return "";
}

}  // namespace tool
