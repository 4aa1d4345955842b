#include "schema/pattern_cache.h"

#include <cstdint>
#include <cstdlib>

#include "compactxml.h"

namespace cxml {
namespace {

constexpr int kFlags = REG_EXTENDED | REG_NOSUB;

bool matchesCompiled(const regex_t &compiled, const char *text) {
    return ::regexec(&compiled, text, 0, nullptr, 0) == 0;
}

}  // namespace

PatternCache::~PatternCache() {
    for (Entry *entry : buckets_) {
        while (entry) {
            Entry *next = entry->next;
            if (entry->compiles) ::regfree(&entry->compiled);
            std::free(entry);
            entry = next;
        }
    }
}

// The entry of a pattern, which is made if there is room and memory; null for none.
const PatternCache::Entry *PatternCache::find(const char *pattern) noexcept {
    Entry **bucket = &buckets_[reinterpret_cast<std::uintptr_t>(pattern) / 16 % kBuckets];
    for (Entry *entry = *bucket; entry; entry = entry->next) {
        if (entry->pattern == pattern) return entry;
    }
    if (count_ == kMost) return nullptr;
    auto *entry = static_cast<Entry *>(std::malloc(sizeof(Entry)));
    if (!entry) return nullptr;
    const int error = ::regcomp(&entry->compiled, pattern, kFlags);
    if (error == REG_ESPACE) {
        std::free(entry);
        return nullptr;
    }
    entry->next = *bucket;
    entry->pattern = pattern;
    entry->compiles = error == 0;
    *bucket = entry;
    ++count_;
    return entry;
}

bool PatternCache::matches(const char *pattern, const char *text) noexcept {
    if (const Entry *entry = find(pattern)) {
        return entry->compiles && matchesCompiled(entry->compiled, text);
    }
    return XML_IsMatchRegex(pattern, text) == 1;
}

}  // namespace cxml

uint32_t XML_IsMatchRegex(const char *pattern, const char *text) noexcept {
    if (!pattern || !text) return 0;
    regex_t compiled;
    if (::regcomp(&compiled, pattern, cxml::kFlags) != 0) return 0;
    const bool matches = cxml::matchesCompiled(compiled, text);
    ::regfree(&compiled);
    return matches ? 1 : 0;
}
