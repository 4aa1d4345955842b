#include "text.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <iterator>
#include <memory>
#include <new>

#include "compactxml.h"
#include "failure.h"
#include "text/unicode.h"

namespace tool {
namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";  // U+FFFD

struct DestroyStream {
    void operator()(XML_IO_OutStream *stream) const noexcept { XML_IO_OutStreamDestroy(stream); }
};

// Converts between two encodings as the library does. The stream is kept for the next text, since
// to open a conversion costs more than most texts do.
class TextConversion {
  public:
    TextConversion(std::uint32_t from, std::uint32_t to) : from_(from), to_(to) {}

    // Appends the converted text to result; false, with result as it was, if it does not convert.
    bool append(std::string &result, std::string_view text) {
        // The library counts in 32 bits. A character may be cut in two here; the stream joins it.
        constexpr std::size_t kPiece = std::size_t{1} << 30;
        const std::size_t before = result.size();
        if (!stream_) stream_.reset(XML_IO_MemOutStreamCreate(from_, to_));
        if (!stream_) throw std::bad_alloc();
        for (std::size_t at = 0; at < text.size(); at += kPiece) {
            const std::string_view piece = text.substr(at, kPiece);
            if (XML_IO_OutStreamAppend(stream_.get(), piece.data(),
                                       static_cast<std::uint32_t>(piece.size())) != XML_OK) {
                return fail(result, before);
            }
            std::uint32_t length = 0;
            const char *bytes = XML_IO_MemOutStreamGetBuf(stream_.get(), &length);
            if (bytes) result.append(bytes, length);
            XML_IO_MemOutStreamCleanBuf(stream_.get());
        }
        return stream_->pendingCount == 0 || fail(result, before);
    }

  private:
    bool fail(std::string &result, std::size_t before) {
        result.resize(before);
        stream_.reset();  // it may hold back bytes of this text
        return false;
    }

    std::unique_ptr<XML_IO_OutStream, DestroyStream> stream_;
    std::uint32_t from_;
    std::uint32_t to_;
};

// The bytes that the first character of a GB18030 text takes, by their form alone.
std::size_t firstCharBytes(std::string_view text) {
    const auto isIn = [&](std::size_t i, unsigned low, unsigned high) {
        if (i >= text.size()) return false;
        const auto byte = static_cast<unsigned char>(text[i]);
        return byte >= low && byte <= high;
    };
    if (!isIn(0, 0x81, 0xFE)) return 1;
    if (isIn(1, 0x30, 0x39)) return isIn(2, 0x81, 0xFE) && isIn(3, 0x30, 0x39) ? 4 : 1;
    return isIn(1, 0x40, 0xFE) && text[1] != '\x7F' ? 2 : 1;
}

std::string describeChar(char32_t code) {
    char text[16];
    std::snprintf(text, sizeof text, "U+%04lX", static_cast<unsigned long>(code));
    return text;
}

}  // namespace

std::string toTree(std::string_view utf8, std::string_view name) {
    for (std::size_t at = 0; at < utf8.size();) {
        const unicode::Char next = unicode::first(utf8.substr(at));
        if (next.code == unicode::kNone) {
            throw Failure(kTrouble, std::string(name) + " is not UTF-8 text: " + printable(utf8));
        }
        at += next.length;
    }
    if (unicode::isAscii(utf8)) return std::string(utf8);
    static TextConversion conversion(XML_ENCODING_UTF_8, XML_ENCODING_GB18030);
    std::string result;
    if (conversion.append(result, utf8)) return result;
    // Some characters for private use are in no table of the machine.
    for (std::size_t at = 0; at < utf8.size();) {
        const unicode::Char next = unicode::first(utf8.substr(at));
        if (!conversion.append(result, utf8.substr(at, next.length))) {
            throw Failure(kTrouble, std::string(name) +
                                        " has a character that a tree cannot hold, " +
                                        describeChar(next.code) + ": " + printable(utf8));
        }
        at += next.length;
    }
    return result;
}

std::string toUtf8(std::string_view treeText) {
    if (unicode::isAscii(treeText)) return std::string(treeText);
    static TextConversion conversion(XML_ENCODING_GB18030, XML_ENCODING_UTF_8);
    std::string result;
    if (conversion.append(result, treeText)) return result;
    while (!treeText.empty()) {
        const std::size_t length = firstCharBytes(treeText);
        if (!conversion.append(result, treeText.substr(0, length))) result += kReplacement;
        treeText.remove_prefix(length);
    }
    return result;
}

std::string toUtf8(const char *treeText) {
    return treeText ? toUtf8(std::string_view(treeText)) : std::string();
}

std::string printable(std::string_view utf8) {
    std::string result;
    result.reserve(utf8.size());
    while (!utf8.empty()) {
        const auto [code, length] = unicode::first(utf8);
        if (code == unicode::kNone) {
            result += kReplacement;
        } else if (code == '\n' || code == '\t' || code == '\r') {
            result += code == '\n' ? "\\n" : code == '\t' ? "\\t" : "\\r";
        } else if (code < 0x20 || (code >= 0x7F && code < 0xA0)) {
            char escape[sizeof "\\xFFFFFFFF"];
            std::snprintf(escape, sizeof escape, "\\x%02X", static_cast<unsigned>(code));
            result += escape;
        } else {
            result += utf8.substr(0, length);
        }
        utf8.remove_prefix(length);
    }
    return result;
}

namespace {

struct Range {
    char32_t first;
    char32_t last;
};

// Both tables are in order. The first holds marks that stand on the character before them, and
// invisible characters, of the Basic Multilingual Plane (beyond it: tags and variation selectors);
// the second East Asian wide characters and emoji, with what is unassigned between them.
constexpr Range kNoCells[] = {
    {0x0300, 0x036F},  {0x0483, 0x0489}, {0x0591, 0x05BD}, {0x05BF, 0x05BF}, {0x05C1, 0x05C2},
    {0x05C4, 0x05C5},  {0x05C7, 0x05C7}, {0x0610, 0x061A}, {0x061C, 0x061C}, {0x064B, 0x065F},
    {0x0670, 0x0670},  {0x06D6, 0x06DC}, {0x06DF, 0x06E4}, {0x06E7, 0x06E8}, {0x06EA, 0x06ED},
    {0x0711, 0x0711},  {0x0730, 0x074A}, {0x07A6, 0x07B0}, {0x07EB, 0x07F3}, {0x07FD, 0x07FD},
    {0x0816, 0x0819},  {0x081B, 0x0823}, {0x0825, 0x0827}, {0x0829, 0x082D}, {0x0859, 0x085B},
    {0x0898, 0x089F},  {0x08CA, 0x08E1}, {0x08E3, 0x0902}, {0x093A, 0x093A}, {0x093C, 0x093C},
    {0x0941, 0x0948},  {0x094D, 0x094D}, {0x0951, 0x0957}, {0x0962, 0x0963}, {0x0981, 0x0981},
    {0x09BC, 0x09BC},  {0x09C1, 0x09C4}, {0x09CD, 0x09CD}, {0x09E2, 0x09E3}, {0x09FE, 0x0A02},
    {0x0A3C, 0x0A3C},  {0x0A41, 0x0A51}, {0x0A70, 0x0A71}, {0x0A75, 0x0A75}, {0x0A81, 0x0A82},
    {0x0ABC, 0x0ABC},  {0x0AC1, 0x0AC8}, {0x0ACD, 0x0ACD}, {0x0AE2, 0x0AE3}, {0x0AFA, 0x0B01},
    {0x0B3C, 0x0B3C},  {0x0B3F, 0x0B3F}, {0x0B41, 0x0B44}, {0x0B4D, 0x0B56}, {0x0B62, 0x0B63},
    {0x0B82, 0x0B82},  {0x0BC0, 0x0BC0}, {0x0BCD, 0x0BCD}, {0x0C00, 0x0C00}, {0x0C04, 0x0C04},
    {0x0C3C, 0x0C3C},  {0x0C3E, 0x0C40}, {0x0C46, 0x0C56}, {0x0C62, 0x0C63}, {0x0C81, 0x0C81},
    {0x0CBC, 0x0CBC},  {0x0CBF, 0x0CBF}, {0x0CC6, 0x0CC6}, {0x0CCC, 0x0CCD}, {0x0CE2, 0x0CE3},
    {0x0D00, 0x0D01},  {0x0D3B, 0x0D3C}, {0x0D41, 0x0D44}, {0x0D4D, 0x0D4D}, {0x0D62, 0x0D63},
    {0x0D81, 0x0D81},  {0x0DCA, 0x0DCA}, {0x0DD2, 0x0DD6}, {0x0E31, 0x0E31}, {0x0E34, 0x0E3A},
    {0x0E47, 0x0E4E},  {0x0EB1, 0x0EB1}, {0x0EB4, 0x0EBC}, {0x0EC8, 0x0ECD}, {0x0F18, 0x0F19},
    {0x0F35, 0x0F35},  {0x0F37, 0x0F37}, {0x0F39, 0x0F39}, {0x0F71, 0x0F7E}, {0x0F80, 0x0F84},
    {0x0F86, 0x0F87},  {0x0F8D, 0x0FBC}, {0x0FC6, 0x0FC6}, {0x102D, 0x1030}, {0x1032, 0x1037},
    {0x1039, 0x103A},  {0x103D, 0x103E}, {0x1058, 0x1059}, {0x105E, 0x1060}, {0x1071, 0x1074},
    {0x1082, 0x1082},  {0x1085, 0x1086}, {0x108D, 0x108D}, {0x109D, 0x109D}, {0x135D, 0x135F},
    {0x1712, 0x1714},  {0x1732, 0x1733}, {0x1752, 0x1753}, {0x1772, 0x1773}, {0x17B4, 0x17B5},
    {0x17B7, 0x17BD},  {0x17C6, 0x17C6}, {0x17C9, 0x17D3}, {0x17DD, 0x17DD}, {0x180B, 0x180F},
    {0x1885, 0x1886},  {0x18A9, 0x18A9}, {0x1920, 0x1922}, {0x1927, 0x1928}, {0x1932, 0x1932},
    {0x1939, 0x193B},  {0x1A17, 0x1A18}, {0x1A1B, 0x1A1B}, {0x1A56, 0x1A56}, {0x1A58, 0x1A60},
    {0x1A62, 0x1A62},  {0x1A65, 0x1A6C}, {0x1A73, 0x1A7F}, {0x1AB0, 0x1B03}, {0x1B34, 0x1B34},
    {0x1B36, 0x1B3A},  {0x1B3C, 0x1B3C}, {0x1B42, 0x1B42}, {0x1B6B, 0x1B73}, {0x1B80, 0x1B81},
    {0x1BA2, 0x1BA5},  {0x1BA8, 0x1BA9}, {0x1BAB, 0x1BAD}, {0x1BE6, 0x1BE6}, {0x1BE8, 0x1BE9},
    {0x1BED, 0x1BED},  {0x1BEF, 0x1BF1}, {0x1C2C, 0x1C33}, {0x1C36, 0x1C37}, {0x1CD0, 0x1CD2},
    {0x1CD4, 0x1CE0},  {0x1CE2, 0x1CE8}, {0x1CED, 0x1CED}, {0x1CF4, 0x1CF4}, {0x1CF8, 0x1CF9},
    {0x1DC0, 0x1DFF},  {0x200B, 0x200F}, {0x202A, 0x202E}, {0x2060, 0x206F}, {0x20D0, 0x20F0},
    {0x2CEF, 0x2CF1},  {0x2D7F, 0x2D7F}, {0x2DE0, 0x2DFF}, {0x302A, 0x302D}, {0x3099, 0x309A},
    {0xA66F, 0xA672},  {0xA674, 0xA67D}, {0xA69E, 0xA69F}, {0xA6F0, 0xA6F1}, {0xA802, 0xA802},
    {0xA806, 0xA806},  {0xA80B, 0xA80B}, {0xA825, 0xA826}, {0xA82C, 0xA82C}, {0xA8C4, 0xA8C5},
    {0xA8E0, 0xA8F1},  {0xA8FF, 0xA8FF}, {0xA926, 0xA92D}, {0xA947, 0xA951}, {0xA980, 0xA982},
    {0xA9B3, 0xA9B3},  {0xA9B6, 0xA9B9}, {0xA9BC, 0xA9BD}, {0xA9E5, 0xA9E5}, {0xAA29, 0xAA2E},
    {0xAA31, 0xAA32},  {0xAA35, 0xAA36}, {0xAA43, 0xAA43}, {0xAA4C, 0xAA4C}, {0xAA7C, 0xAA7C},
    {0xAAB0, 0xAAB0},  {0xAAB2, 0xAAB4}, {0xAAB7, 0xAAB8}, {0xAABE, 0xAABF}, {0xAAC1, 0xAAC1},
    {0xAAEC, 0xAAED},  {0xAAF6, 0xAAF6}, {0xABE5, 0xABE5}, {0xABE8, 0xABE8}, {0xABED, 0xABED},
    {0xFB1E, 0xFB1E},  {0xFE00, 0xFE0F}, {0xFE20, 0xFE2F}, {0xFEFF, 0xFEFF}, {0xFFF9, 0xFFFB},
    {0xE0001, 0xE01EF}};
constexpr Range kTwoCells[] = {
    {0x1100, 0x115F},   {0x231A, 0x231B},   {0x2329, 0x232A},   {0x23E9, 0x23EC},
    {0x23F0, 0x23F0},   {0x23F3, 0x23F3},   {0x25FD, 0x25FE},   {0x2614, 0x2615},
    {0x2648, 0x2653},   {0x267F, 0x267F},   {0x2693, 0x2693},   {0x26A1, 0x26A1},
    {0x26AA, 0x26AB},   {0x26BD, 0x26BE},   {0x26C4, 0x26C5},   {0x26CE, 0x26CE},
    {0x26D4, 0x26D4},   {0x26EA, 0x26EA},   {0x26F2, 0x26F3},   {0x26F5, 0x26F5},
    {0x26FA, 0x26FA},   {0x26FD, 0x26FD},   {0x2705, 0x2705},   {0x270A, 0x270B},
    {0x2728, 0x2728},   {0x274C, 0x274C},   {0x274E, 0x274E},   {0x2753, 0x2755},
    {0x2757, 0x2757},   {0x2795, 0x2797},   {0x27B0, 0x27B0},   {0x27BF, 0x27BF},
    {0x2B1B, 0x2B1C},   {0x2B50, 0x2B50},   {0x2B55, 0x2B55},   {0x2E80, 0x303E},
    {0x3041, 0x3247},   {0x3250, 0x4DBF},   {0x4E00, 0xA4C6},   {0xA960, 0xA97C},
    {0xAC00, 0xD7A3},   {0xF900, 0xFAD9},   {0xFE10, 0xFE6B},   {0xFF01, 0xFF60},
    {0xFFE0, 0xFFE6},   {0x16FE0, 0x18D08}, {0x1AFF0, 0x1B2FB}, {0x1F004, 0x1F004},
    {0x1F0CF, 0x1F0CF}, {0x1F18E, 0x1F18E}, {0x1F191, 0x1F19A}, {0x1F200, 0x1F320},
    {0x1F32D, 0x1F335}, {0x1F337, 0x1F37C}, {0x1F37E, 0x1F393}, {0x1F3A0, 0x1F3CA},
    {0x1F3CF, 0x1F3D3}, {0x1F3E0, 0x1F3F0}, {0x1F3F4, 0x1F3F4}, {0x1F3F8, 0x1F43E},
    {0x1F440, 0x1F440}, {0x1F442, 0x1F4FC}, {0x1F4FF, 0x1F53D}, {0x1F54B, 0x1F54E},
    {0x1F550, 0x1F567}, {0x1F57A, 0x1F57A}, {0x1F595, 0x1F596}, {0x1F5A4, 0x1F5A4},
    {0x1F5FB, 0x1F64F}, {0x1F680, 0x1F6C5}, {0x1F6CC, 0x1F6CC}, {0x1F6D0, 0x1F6D2},
    {0x1F6D5, 0x1F6DF}, {0x1F6EB, 0x1F6EC}, {0x1F6F4, 0x1F6FC}, {0x1F7E0, 0x1F7F0},
    {0x1F90C, 0x1F93A}, {0x1F93C, 0x1F945}, {0x1F947, 0x1F9FF}, {0x1FA70, 0x1FAF6},
    {0x20000, 0x2EBE0}, {0x2F800, 0x2FA1D}, {0x30000, 0x3134A}};

template <std::size_t kCount>
bool isIn(const Range (&ranges)[kCount], char32_t code) {
    const Range *found =
        std::upper_bound(std::begin(ranges), std::end(ranges), code,
                         [](char32_t value, const Range &range) { return value < range.first; });
    return found != std::begin(ranges) && code <= found[-1].last;
}

}  // namespace

std::size_t displayWidth(std::string_view utf8) {
    std::size_t width = 0;
    while (!utf8.empty()) {
        const auto [code, length] = unicode::first(utf8);
        utf8.remove_prefix(length);
        if (isIn(kNoCells, code)) continue;
        width += isIn(kTwoCells, code) ? 2 : 1;
    }
    return width;
}

}  // namespace tool
