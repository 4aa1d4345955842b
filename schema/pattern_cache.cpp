#include "schema/pattern_cache.h"

#include <climits>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>

#include "compactxml.h"
#include "io/byte_scan.h"

namespace cxml {
namespace {

constexpr int kFlags = REG_EXTENDED | REG_NOSUB;

// The C library counts the bytes of a text in an int, and takes one that is too long for that for
// another one.
bool isCountable(const char *text) {
    return ::strnlen(text, std::size_t{INT_MAX} + 1) <= INT_MAX;
}

bool matchesCompiled(const regex_t &compiled, const char *text) {
    return isCountable(text) && ::regexec(&compiled, text, 0, nullptr, 0) == 0;
}

bool isAscii(const char *text) {
    const auto *first = reinterpret_cast<const Byte *>(text);
    const Byte *last = first + std::strlen(text);
    return scanFor<NotAscii>(first, last) == last;
}

// Compiles the pattern for this one text.
bool matchesOnce(const char *pattern, const char *text, bool *exhausted) {
    regex_t compiled;
    const int error = ::regcomp(&compiled, pattern, kFlags);
    if (error == REG_ESPACE && exhausted) *exhausted = true;
    if (error != 0) return false;
    const bool matches = matchesCompiled(compiled, text);
    ::regfree(&compiled);
    return matches;
}

}  // namespace

PatternCache::~PatternCache() {
    for (Entry *entry : buckets_) {
        while (entry) {
            Entry *next = entry->next;
            if (entry->state == Compiled::kGood) ::regfree(&entry->compiled);
            entry->~Entry();
            std::free(entry);
            entry = next;
        }
    }
}

// Has the C library compile the pattern, once. False for want of memory.
bool PatternCache::compile(Entry *entry) noexcept {
    if (entry->state != Compiled::kNot) return true;
    const int error = ::regcomp(&entry->compiled, entry->pattern, kFlags);
    if (error == REG_ESPACE) return false;
    entry->state = error == 0 ? Compiled::kGood : Compiled::kBad;
    return true;
}

PatternCache::Entry *PatternCache::add(const char *pattern, Entry **bucket) noexcept {
    if (count_ == kMost) return nullptr;
    void *block = std::malloc(sizeof(Entry));
    if (!block) return nullptr;
    auto *entry = new (block) Entry(pattern, scratch_);
    entry->next = *bucket;
    *bucket = entry;
    ++count_;
    return entry;
}

// The entry of a pattern, which is made if there is room and memory; null for none.
PatternCache::Entry *PatternCache::find(const char *pattern) noexcept {
    const auto address = reinterpret_cast<std::uintptr_t>(pattern);
    Entry **bucket = &buckets_[(address / 16 ^ address / 512) % kBuckets];
    for (Entry *entry = *bucket; entry; entry = entry->next) {
        if (entry->pattern == pattern) return entry;
    }
    return add(pattern, bucket);
}

bool PatternCache::matches(const char *pattern, const char *text, bool *exhausted) noexcept {
    if (Entry *entry = find(pattern)) {
        if (hasAutomata_) {
            PatternAutomaton &automaton = isAscii(text) ? entry->forAscii : entry->forAll;
            const PatternAutomaton::Answer answer = automaton.match(text);
            if (answer != PatternAutomaton::Answer::kUnknown) {
                return answer == PatternAutomaton::Answer::kYes;
            }
        }
        if (compile(entry)) {
            return entry->state == Compiled::kGood && matchesCompiled(entry->compiled, text);
        }
    }
    return matchesOnce(pattern, text, exhausted);
}

}  // namespace cxml

uint32_t XML_IsMatchRegex(const char *pattern, const char *text) noexcept {
    return pattern && text && cxml::matchesOnce(pattern, text, nullptr) ? 1 : 0;
}
