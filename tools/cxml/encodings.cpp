#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "commands.h"
#include "compactxml.h"
#include "conversion.h"
#include "failure.h"
#include "output.h"

namespace tool {
namespace {

// Chinese text for all, and an emoji for the encodings that have it.
constexpr std::u32string_view kText = U"<中文 交换机";
constexpr std::u32string_view kTextWithEmoji = U"<中文 交换机😀";
constexpr std::string_view kTextInUtf8 = "<中文 交换机";
constexpr std::string_view kTextWithEmojiInUtf8 = "<中文 交换机😀";
// As trees hold it; the same in GB2312 and GBK, which have no emoji.
constexpr std::string_view kTextInTree = "<\xD6\xD0\xCE\xC4 \xBD\xBB\xBB\xBB\xBB\xFA";
constexpr std::string_view kTextWithEmojiInTree =
    "<\xD6\xD0\xCE\xC4 \xBD\xBB\xBB\xBB\xBB\xFA\x94\x39\xFC\x36";

bool hasEmoji(std::uint32_t encoding) {
    return encoding != XML_ENCODING_GB2312 && encoding != XML_ENCODING_GBK;
}

struct Sample {
    std::u32string text;
    std::string inUtf8;
    std::string inTree;
};

Sample sampleFor(std::uint32_t encoding) {
    if (hasEmoji(encoding)) {
        return {std::u32string(kTextWithEmoji), std::string(kTextWithEmojiInUtf8),
                std::string(kTextWithEmojiInTree)};
    }
    return {std::u32string(kText), std::string(kTextInUtf8), std::string(kTextInTree)};
}

enum class ByteOrder { kLittle, kBig };

void appendUnit(std::string &bytes, std::uint32_t unit, int width, ByteOrder order) {
    for (int i = 0; i < width; ++i) {
        const int shift = 8 * (order == ByteOrder::kLittle ? i : width - 1 - i);
        bytes.push_back(static_cast<char>(unit >> shift & 0xFF));
    }
}

std::string utf16(const std::u32string &text, ByteOrder order) {
    std::string bytes;
    for (const char32_t c : text) {
        if (c < 0x10000) {
            appendUnit(bytes, c, 2, order);
        } else {
            appendUnit(bytes, 0xD800 + ((c - 0x10000) >> 10), 2, order);
            appendUnit(bytes, 0xDC00 + ((c - 0x10000) & 0x3FF), 2, order);
        }
    }
    return bytes;
}

std::string utf32(const std::u32string &text, ByteOrder order) {
    std::string bytes;
    for (const char32_t c : text) appendUnit(bytes, c, 4, order);
    return bytes;
}

// The bytes of a sample, most likely first. Where the byte order is left open either is good, with a
// byte order mark or without.
std::vector<std::string> formsOf(std::uint32_t encoding, const Sample &sample) {
    constexpr auto kLittle = ByteOrder::kLittle, kBig = ByteOrder::kBig;
    const std::u32string &text = sample.text;
    const std::u32string marked = std::u32string(1, 0xFEFF) + text;
    switch (encoding) {
        case XML_ENCODING_UTF_8:
            return {sample.inUtf8};
        case XML_ENCODING_UTF_16LE:
            return {utf16(text, kLittle)};
        case XML_ENCODING_UTF_16BE:
            return {utf16(text, kBig)};
        case XML_ENCODING_UTF_32LE:
        case XML_ENCODING_UCS_4LE:
            return {utf32(text, kLittle)};
        case XML_ENCODING_UTF_32BE:
        case XML_ENCODING_UCS_4BE:
            return {utf32(text, kBig)};
        case XML_ENCODING_UTF_16:
            return {utf16(marked, kLittle), utf16(marked, kBig), utf16(text, kLittle),
                    utf16(text, kBig)};
        case XML_ENCODING_UTF_32:
        case XML_ENCODING_UCS_4:
            return {utf32(marked, kLittle), utf32(marked, kBig), utf32(text, kLittle),
                    utf32(text, kBig)};
        default:
            return {sample.inTree};
    }
}

// The whole text in another encoding, or nothing when it does not convert.
std::optional<std::string> convert(std::uint32_t from, std::uint32_t to, const std::string &text) {
    const std::unique_ptr<XML_IO_OutStream, void (*)(XML_IO_OutStream *)> stream{
        XML_IO_MemOutStreamCreate(from, to), XML_IO_OutStreamDestroy};
    if (XML_IO_OutStreamAppend(stream.get(), text.data(),
                               static_cast<std::uint32_t>(text.size())) != XML_OK) {
        return std::nullopt;
    }
    std::uint32_t length = 0;
    const char *bytes = XML_IO_MemOutStreamGetBuf(stream.get(), &length);
    return std::string(bytes ? bytes : "", length);
}

// To the parser's UTF-8, and from there to the tree.
bool reads(std::uint32_t encoding) {
    const Sample sample = sampleFor(encoding);
    const std::vector<std::string> forms = formsOf(encoding, sample);
    const bool parsed = std::any_of(forms.begin(), forms.end(), [&](const std::string &form) {
        return convert(encoding, XML_ENCODING_UTF_8, form) == sample.inUtf8;
    });
    return parsed && convert(XML_ENCODING_UTF_8, kTreeEncoding, sample.inUtf8) == sample.inTree;
}

bool writes(std::uint32_t encoding) {
    const Sample sample = sampleFor(encoding);
    const std::vector<std::string> forms = formsOf(encoding, sample);
    const std::optional<std::string> written = convert(kTreeEncoding, encoding, sample.inTree);
    return written && std::find(forms.begin(), forms.end(), *written) != forms.end();
}

}  // namespace

int runEncodings() {
    Output output("");
    std::string missing;
    for (std::uint32_t encoding = 0; encoding < XML_ENCODING_UNKNOWN; ++encoding) {
        const std::string name = XML_DOM_EncodingEnumToStr(encoding);
        const bool canRead = reads(encoding), canWrite = writes(encoding);
        output.write(name + std::string(10 - name.size(), ' '));
        output.write(canRead ? "reads yes  " : "reads no   ");
        output.write(canWrite ? "writes yes\n" : "writes no\n");
        if (!canRead || !canWrite) missing += (missing.empty() ? "" : ", ") + name;
    }
    output.commit();
    if (missing.empty()) return kSuccess;
    throw Failure(kRefused, "this machine does not fully convert " + missing);
}

}  // namespace tool
