// schema/pattern_cache.h - the compiled pattern facets of one validation.
#pragma once

#include <regex.h>

#include <cstddef>

namespace cxml {

// Remembers the compiled forms of up to kMost patterns by the addresses of their texts, which in
// compiled schemas are static. What does not find room or memory here is compiled anew each time.
class PatternCache {
  public:
    PatternCache() noexcept = default;
    PatternCache(const PatternCache &) = delete;
    PatternCache &operator=(const PatternCache &) = delete;
    ~PatternCache();

    // As XML_IsMatchRegex; neither argument is null.
    bool matches(const char *pattern, const char *text) noexcept;

    static constexpr std::size_t kMost = 64;

  private:
    struct Entry {
        Entry *next;  // in the bucket
        const char *pattern;
        bool compiles;
        regex_t compiled;
    };
    const Entry *find(const char *pattern) noexcept;

    static constexpr std::size_t kBuckets = 32;
    Entry *buckets_[kBuckets] = {};
    std::size_t count_ = 0;
};

}  // namespace cxml
