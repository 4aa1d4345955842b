// tools/text/xml_names.h - the characters of names (XML 1.0, 2.3, fifth edition).
#pragma once

namespace xml_names {

struct Range {
    char32_t first;
    char32_t last;
};

// Where a name may begin, but for the colon. In order.
inline constexpr Range kStart[] = {
    {'A', 'Z'},       {'_', '_'},       {'a', 'z'},       {0xC0, 0xD6},     {0xD8, 0xF6},
    {0xF8, 0x2FF},    {0x370, 0x37D},   {0x37F, 0x1FFF},  {0x200C, 0x200D}, {0x2070, 0x218F},
    {0x2C00, 0x2FEF}, {0x3001, 0xD7FF}, {0xF900, 0xFDCF}, {0xFDF0, 0xFFFD}, {0x10000, 0xEFFFF},
};

// What may follow besides.
inline constexpr Range kRest[] = {
    {'-', '.'}, {'0', '9'}, {0xB7, 0xB7}, {0x300, 0x36F}, {0x203F, 0x2040},
};

}  // namespace xml_names
