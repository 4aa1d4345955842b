// tests/wrapper/documents.h - short ways to and from documents, for the tests of compactxml.hpp.
#pragma once

#include <compactxml.hpp>
#include <string>
#include <string_view>

namespace wrapper {

inline compactxml::Document parsed(std::string_view text) {
    return compactxml::parse(text).value();
}

// A node as text without a declaration.
inline std::string written(compactxml::Node node) {
    return std::string(node.write(XML_DOM_NO_DECLARATION).value());
}
inline std::string written(const compactxml::Document &document) {
    return written(document.root());
}

// A text with a NUL in it, which starts with a good one.
inline constexpr std::string_view kWithNul{"a\0b", 3};

}  // namespace wrapper
