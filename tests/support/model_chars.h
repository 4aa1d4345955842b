// tests/support/model_chars.h - what a character may do in a document, by searching plain tables.
#pragma once

#include <algorithm>
#include <cstddef>

namespace support {

struct Range {
    long first;
    long last;
};

constexpr Range kLegal[] = {
    {0x9, 0xA}, {0xD, 0xD}, {0x20, 0xD7FF}, {0xE000, 0xFFFD}, {0x10000, 0x10FFFF}};
constexpr Range kNameStart[] = {
    {'A', 'Z'},       {'_', '_'},       {'a', 'z'},       {0xC0, 0xD6},     {0xD8, 0xF6},
    {0xF8, 0x2FF},    {0x370, 0x37D},   {0x37F, 0x1FFF},  {0x200C, 0x200D}, {0x2070, 0x218F},
    {0x2C00, 0x2FEF}, {0x3001, 0xD7FF}, {0xF900, 0xFDCF}, {0xFDF0, 0xFFFD}, {0x10000, 0xEFFFF}};
constexpr Range kNameMore[] = {{'-', '-'},   {'.', '.'},     {'0', '9'},
                               {0xB7, 0xB7}, {0x300, 0x36F}, {0x203F, 0x2040}};

template <std::size_t n>
bool within(const Range (&ranges)[n], long c) {
    return std::any_of(ranges, ranges + n,
                       [c](const Range &r) { return r.first <= c && c <= r.last; });
}

inline bool isBlank(int c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

}  // namespace support
