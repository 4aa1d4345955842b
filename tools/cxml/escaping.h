// tools/cxml/escaping.h - text as it stands in a document.
#pragma once

#include <cstddef>
#include <string_view>

#include "conversion.h"

namespace tool {

enum class Quotes { kKeep, kEscape };

// Hands text over in pieces as the library's serializer writes it: "<", ">" and "&" escaped, and one
// white-space character at each end, so that the parser does not drop the white space there. No byte
// of a character of GB18030 looks like one of these.
template <class Put>
void escapeText(std::string_view text, Quotes quotes, Put &&put) {
    const auto isBlank = [](char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; };
    const auto reference = [](char blank) -> std::string_view {
        switch (blank) {
            case '\n':
                return "&#x0a;";
            case '\r':
                return "&#x0d;";
            case '\t':
                return "&#x09;";
            default:
                return "&#x20;";
        }
    };
    if (!text.empty() && isBlank(text.front())) {
        put(reference(text.front()));
        text.remove_prefix(1);
    }
    char last = '\0';
    if (!text.empty() && isBlank(text.back())) {
        last = text.back();
        text.remove_suffix(1);
    }
    const std::string_view specials = quotes == Quotes::kEscape ? "<>&\"" : "<>&";
    for (std::size_t at; (at = text.find_first_of(specials)) != std::string_view::npos;) {
        put(text.substr(0, at));
        switch (text[at]) {
            case '<':
                put("&lt;");
                break;
            case '>':
                put("&gt;");
                break;
            case '&':
                put("&amp;");
                break;
            default:
                put("&quot;");
                break;
        }
        text.remove_prefix(at + 1);
    }
    put(text);
    if (last != '\0') put(reference(last));
}

// Where "]]>" begins, or npos. The last byte of a character of GB18030 can look like "]".
std::size_t findSectionEnd(std::string_view treeText) noexcept;

// Hands over the content of a CDATA section with its ends; "]]>" is divided between two sections.
template <class Put>
void wrapSection(std::string_view content, Put &&put) {
    put("<![CDATA[");
    for (std::size_t at; (at = findSectionEnd(content)) != std::string_view::npos;) {
        put(content.substr(0, at + 2));
        put("]]><![CDATA[");
        content.remove_prefix(at + 2);
    }
    put(content);
    put("]]>");
}

}  // namespace tool
