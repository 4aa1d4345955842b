// schema/pattern_cache.h - the compiled pattern facets of one validation.
#pragma once

#include <regex.h>

#include <cstddef>
#include <cstdint>

#include "schema/pattern_automaton.h"

namespace cxml {

// Remembers the compiled forms of up to kMost patterns by the addresses of their texts, which in
// compiled schemas are static. What does not find room or memory here is compiled anew each time.
class PatternCache {
  public:
    PatternCache() noexcept = default;
    PatternCache(const PatternCache &) = delete;
    PatternCache &operator=(const PatternCache &) = delete;
    ~PatternCache();

    // As XML_IsMatchRegex; neither text is null. Sets *exhausted, unless that is null, when there was
    // no memory to find out.
    bool matches(const char *pattern, const char *text, bool *exhausted = nullptr) noexcept;

    static constexpr std::size_t kMost = 256;

  private:
    // The C library answers where there is no automaton, or where it does not know.
    enum class Compiled : std::uint8_t { kNot, kGood, kBad };
    struct Entry {
        Entry(const char *text, PatternScratch &scratch) noexcept
            : pattern(text),
              forAscii(text, PatternBytes::kAscii, scratch),
              forAll(text, PatternBytes::kAll, scratch) {}

        Entry *next = nullptr;  // in the bucket
        const char *pattern;
        Compiled state = Compiled::kNot;
        regex_t compiled;
        PatternAutomaton forAscii, forAll;
    };
    Entry *find(const char *pattern) noexcept;
    Entry *add(const char *pattern, Entry **bucket) noexcept;
    static bool compile(Entry *entry) noexcept;

    static constexpr std::size_t kBuckets = 64;
    PatternScratch scratch_;
    Entry *buckets_[kBuckets] = {};
    std::size_t count_ = 0;
    const bool hasAutomata_ = PatternAutomaton::suitsLocale();
};

}  // namespace cxml
