// tools/cxml/summary.h - an element in one line, for people.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "compactxml.h"
#include "path.h"
#include "text.h"

namespace tool {

inline constexpr std::size_t kSummaryChars = 32;  // of a value in a summary

// Where the UTF-8 character ends that is so many characters behind a place.
inline std::size_t skipChars(std::string_view utf8, std::size_t at, std::size_t count) {
    while (at < utf8.size() && count != 0) {
        ++at;
        while (at < utf8.size() && (static_cast<unsigned char>(utf8[at]) & 0xC0) == 0x80) ++at;
        --count;
    }
    return at;
}

// A part of a value in quotation marks, such that different parts look different. "..." stands for
// what is left out before the byte `first` and behind `most` characters.
inline std::string excerpt(std::string_view utf8, std::size_t first, std::size_t most) {
    const std::size_t end = skipChars(utf8, first, most);
    std::string escaped;
    for (const char c : utf8.substr(first, end - first)) {
        if (c == '\\' || c == '"') escaped += '\\';
        escaped += c;
    }
    return (first != 0 ? "...\"" : "\"") + printable(escaped) +
           (end < utf8.size() ? "\"..." : "\"");
}

// What people call the text of an element: its first text, or else its first CDATA section; null if
// it has neither.
inline const char *textOf(const XML_DOM_Node *element) {
    const char *text = XML_DOM_GetFirstTextChildValue(element);
    return text ? text : XML_DOM_GetFirstCDataChildValue(element);
}

// The name of an attribute with its prefix, in UTF-8 and printable.
inline std::string attributeName(const XML_DOM_Attr *attribute) {
    const char *name = nullptr;
    XML_DOM_GetAttrNameSpace(attribute, &name, nullptr);
    const std::string local = printable(toUtf8(name));
    return attribute->ns ? printable(toUtf8(attribute->ns->prefix)) + ":" + local : local;
}

// An element's name, attributes and text, such as: port id="3" "uplink"
inline std::string summaryOf(const XML_DOM_Node *element) {
    std::string summary = qualifiedName(element);
    for (const XML_DOM_Attr *attribute = XML_DOM_GetFirstAttr(element); attribute;
         attribute = XML_DOM_GetNextAttr(attribute)) {
        const std::string value = toUtf8(XML_DOM_GetAttrValByHandle(attribute));
        summary += " " + attributeName(attribute) + "=" + excerpt(value, 0, kSummaryChars);
    }
    if (const char *text = textOf(element))
        summary += " " + excerpt(toUtf8(text), 0, kSummaryChars);
    return summary;
}

}  // namespace tool
