#include "escaping.h"

namespace tool {

std::size_t findSectionEnd(std::string_view treeText) noexcept {
    if (treeText.find("]]>") == std::string_view::npos) return std::string_view::npos;
    for (std::size_t at = 0; at < treeText.size();) {
        const std::string_view rest = treeText.substr(at);
        if (rest.starts_with("]]>")) return at;
        at += treeCharLength(rest);
    }
    return std::string_view::npos;
}

}  // namespace tool
