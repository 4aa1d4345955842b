#include "xsd2c/xsd/diagnostics.h"

#include <algorithm>
#include <cstddef>
#include <tuple>
#include <unordered_map>
#include <utility>

#include "xsd2c/xsd/xml_text.h"

namespace xsd2c {
std::string placeText(const Place &place) {
    std::string text = place.file ? printable(*place.file) : std::string();
    if (place.line > 0) {
        text += ":" + std::to_string(place.line) + ":" + std::to_string(place.column);
    }
    return text;
}

void Diagnostics::error(const Place &place, const std::string &text) {
    add(place, true, text);
}

void Diagnostics::notEnforced(const Place &place, const std::string &what) {
    add(place, strict_, what + " is not enforced");
}

void Diagnostics::add(const Place &place, bool isError, std::string text) {
    if (!told_.insert(placeText(place) + '\n' + text).second) return;
    if (isError) ++errors_;
    entries_.push_back({place, isError, std::move(text)});
}

std::string Diagnostics::text() const {
    struct Key {
        std::size_t file;  // in the order in which they came up
        int line;
        int column;
        const Entry *entry;
    };
    std::vector<Key> keys;
    keys.reserve(entries_.size());
    std::unordered_map<const std::string *, std::size_t> files;
    for (const Entry &entry : entries_) {
        const std::size_t file = files.emplace(entry.place.file, files.size()).first->second;
        keys.push_back({file, entry.place.line, entry.place.column, &entry});
    }
    std::stable_sort(keys.begin(), keys.end(), [](const Key &a, const Key &b) {
        return std::tie(a.file, a.line, a.column) < std::tie(b.file, b.line, b.column);
    });
    std::string text;
    for (const Key &key : keys) {
        text += placeText(key.entry->place) + (key.entry->isError ? ": error: " : ": warning: ") +
                printable(key.entry->text) + "\n";
    }
    return text;
}

}  // namespace xsd2c
