// tests/support/written.h - short ways to and from text.
#pragma once

#include <string>
#include <string_view>

#include "tests/support/owners.h"

namespace support {

// The tree of a document, or null.
inline NodePtr parsed(std::string_view document) {
    return NodePtr(XML_DOM_BuildTreeByMem(document.data(),
                                          static_cast<std::uint32_t>(document.size()), 0, nullptr));
}

// A node as text without a declaration, or "(refused)".
inline std::string written(const XML_DOM_Node *node) {
    char *text = nullptr;
    std::uint32_t length = 0;
    if (XML_DOM_TranslateStr(node, XML_DOM_NO_DECLARATION, &text, &length) != XML_OK) {
        return "(refused)";
    }
    const TextPtr owner(text);
    return {text, length};
}

}  // namespace support
