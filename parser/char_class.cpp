#include "parser/char_class.h"

namespace cxml {
namespace {

struct Range {
    CodePoint first;
    CodePoint last;
};

constexpr Range kNameStartRanges[] = {
    {0x41, 0x5A},     {0x5F, 0x5F},     {0x61, 0x7A},     {0xC0, 0xD6},     {0xD8, 0xF6},
    {0xF8, 0x2FF},    {0x370, 0x37D},   {0x37F, 0x1FFF},  {0x200C, 0x200D}, {0x2070, 0x218F},
    {0x2C00, 0x2FEF}, {0x3001, 0xD7FF}, {0xF900, 0xFDCF}, {0xFDF0, 0xFFFD}, {0x10000, 0xEFFFF}};

constexpr Range kNameMoreRanges[] = {{0x2D, 0x2D}, {0x2E, 0x2E},   {0x30, 0x39},
                                     {0xB7, 0xB7}, {0x300, 0x36F}, {0x203F, 0x2040}};

constexpr Range kLegalRanges[] = {
    {0x9, 0xA}, {0xD, 0xD}, {0x20, 0xD7FF}, {0xE000, 0xFFFD}, {0x10000, 0x10FFFF}};

template <std::size_t kCount>
constexpr bool isIn(const Range (&ranges)[kCount], CodePoint c) {
    for (const Range &range : ranges) {
        if (c >= range.first && c <= range.last) return true;
    }
    return false;
}

// The byte table is the first half of the ranges, written for speed.
consteval bool tableAgrees() {
    for (CodePoint c = 0; c < 0x80; ++c) {
        const bool start = isIn(kNameStartRanges, c);
        if (((kNameClass[c] & kNameStart) != 0) != start) return false;
        if (((kNameClass[c] & kNamePart) != 0) != (start || isIn(kNameMoreRanges, c))) return false;
    }
    return true;
}
static_assert(tableAgrees());

}  // namespace

bool XML_Parser_IsLegalChar(CodePoint c) noexcept {
    return isIn(kLegalRanges, c);
}

bool XML_Parser_IsNameStartChar(CodePoint c) noexcept {
    return isIn(kNameStartRanges, c);
}

bool XML_Parser_IsNameChar(CodePoint c) noexcept {
    return isIn(kNameStartRanges, c) || isIn(kNameMoreRanges, c);
}

}  // namespace cxml
