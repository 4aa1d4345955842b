// Regular expressions of schemas, and how they are kept within one validation.
#include <gtest/gtest.h>
#include <regex.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <clocale>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "compactxml.h"
#include "schema/pattern_cache.h"
#include "tests/support/faults.h"
#include "tests/support/feeds.h"
#include "tests/support/small_stack.h"
#include "tests/support/utf8_locale.h"

namespace {

using support::Utf8Locale;

using cxml::PatternCache;
using support::FaultyHeap;

struct MatchCase {
    const char *pattern, *text;
    bool matches;
};
constexpr MatchCase kMatches[] = {
    // Anywhere in the text.
    {"b", "abc", true},
    {"b", "ac", false},
    {"b", "", false},
    {"^b", "abc", false},
    {"^a", "abc", true},
    {"b$", "abc", false},
    {"c$", "abc", true},
    {"^abc$", "abc", true},
    {"^abc$", "abcd", false},
    {"^$", "", true},
    {"^$", "a", false},
    {"[0-9]{4}", "x20010y", true},
    {"[0-9]{4}", "x200y", false},
    // Extended syntax.
    {"^a+$", "aaa", true},
    {"^a+$", "", false},
    {"^a?$", "", true},
    {"^a?$", "aa", false},
    {"^a*$", "aaaa", true},
    {"^a{2,3}$", "a", false},
    {"^a{2,3}$", "aa", true},
    {"^a{2,3}$", "aaa", true},
    {"^a{2,3}$", "aaaa", false},
    {"^(ab|cd)+$", "abcdab", true},
    {"^(ab|cd)+$", "abc", false},
    {"^(a|b)$", "(a|b)", false},
    {"a\\+b", "a+b", true},
    {"a\\+b", "aab", false},
    {"^[[:digit:]]+$", "12", true},
    {"^[[:digit:]]+$", "1a", false},
    {"^[^:]+[://][^:]+$", "a/b", true},
    {"^\\.$", ".", true},
    {"^\\.$", "a", false},
    {"^[+|-]$", "|", true},
    // Upper and lower case differ.
    {"^abc$", "ABC", false},
    {"^[a-z]+$", "aBc", false},
    // A line break is a character as any other, and no end.
    {"^a.b$", "a\nb", true},
    {"^b", "a\nb", false},
    {"a$", "a\nb", false},
    {"^[^x]+$", "a\nb", true},
    // Bytes, in the C locale.
    {"^..$", "\xD6\xD0", true},
    {"^.$", "\xD6\xD0", false},
    {"\xD6", "\xD6\xD0", true},
    // No expressions: nothing matches.
    {"(", "(", false},
    {"(a", "a", false},
    {"[", "[", false},
    {"[a", "a", false},
    {"[b-a]", "a", false},
    {"a{2,1}", "aa", false},
    {"[[:none:]]", "a", false},
    {"a\\", "a\\", false},
};

TEST(IsMatchRegex, Matches) {
    for (const MatchCase &row : kMatches) {
        EXPECT_EQ(XML_IsMatchRegex(row.pattern, row.text), row.matches ? 1u : 0u)
            << support::printable(row.pattern) << " in " << support::printable(row.text);
    }
}

TEST(IsMatchRegex, NullMatchesNothing) {
    EXPECT_EQ(XML_IsMatchRegex(nullptr, "a"), 0u);
    EXPECT_EQ(XML_IsMatchRegex(".*", nullptr), 0u);
    EXPECT_EQ(XML_IsMatchRegex(nullptr, nullptr), 0u);
}

TEST(IsMatchRegex, LongTexts) {
    const std::string text(std::size_t{1} << 16, 'a');
    EXPECT_EQ(XML_IsMatchRegex("^a+$", text.c_str()), 1u);
    EXPECT_EQ(XML_IsMatchRegex("b", text.c_str()), 0u);
    EXPECT_EQ(XML_IsMatchRegex("b$", (text + 'b').c_str()), 1u);
}

TEST(IsMatchRegex, FollowsTheLocaleOfTheProcess) {
    constexpr char kLetter[] = "\xC3\xA9";  // one character in UTF-8
    EXPECT_EQ(XML_IsMatchRegex("^.$", kLetter), 0u);
    EXPECT_EQ(XML_IsMatchRegex("^..$", kLetter), 1u);
    {
        const Utf8Locale locale;
        if (!locale.isSet()) GTEST_SKIP() << "no locale of UTF-8";
        EXPECT_EQ(XML_IsMatchRegex("^.$", kLetter), 1u);
        EXPECT_EQ(XML_IsMatchRegex("^..$", kLetter), 0u);
        PatternCache cache;
        EXPECT_TRUE(cache.matches("^.$", kLetter));
        EXPECT_FALSE(cache.matches("^..$", kLetter));
    }
    EXPECT_EQ(XML_IsMatchRegex("^.$", kLetter), 0u);
}

// ---------------------------------------------------------------- the cache

TEST(PatternCache, AnswersAsIsMatchRegex) {
    PatternCache cache;
    for (int round = 0; round < 3; ++round) {
        for (const MatchCase &row : kMatches) {
            EXPECT_EQ(cache.matches(row.pattern, row.text), row.matches)
                << support::printable(row.pattern) << " in " << support::printable(row.text);
        }
    }
}

TEST(PatternCache, EveryPatternWithEveryText) {
    // Equal patterns at different addresses, with all that they may have in common.
    std::vector<std::string> patterns;
    for (const MatchCase &row : kMatches) patterns.emplace_back(row.pattern);
    PatternCache cache;
    for (const MatchCase &text : kMatches) {
        for (const std::string &pattern : patterns) {
            EXPECT_EQ(cache.matches(pattern.c_str(), text.text) ? 1u : 0u,
                      XML_IsMatchRegex(pattern.c_str(), text.text))
                << support::printable(pattern) << " in " << support::printable(text.text);
        }
    }
}

// Nothing more for a pattern that is known, however often it is asked for; nothing is left behind.
TEST(PatternCache, AllocatesOnceForEachPattern) {
    constexpr const char *kPatterns[] = {"^a", "^b", "^c", "("};
    const FaultyHeap heap(0);
    {
        PatternCache cache;
        EXPECT_EQ(heap.allocations(), 0u);
        for (const char *pattern : kPatterns) cache.matches(pattern, "abc");
        const std::size_t first = heap.allocations();
        EXPECT_GE(first, std::size(kPatterns));
        for (int round = 0; round < 10; ++round) {
            for (const char *pattern : kPatterns) cache.matches(pattern, "abc");
        }
        EXPECT_EQ(heap.allocations(), first);
    }
    EXPECT_EQ(heap.blocksInUse(), 0u);
}

// Whether what the cache says comes from a pattern that it compiled earlier: the text at the
// pattern's address is another by then. Leaves the first text there.
bool isRemembered(PatternCache *cache, char *pattern) {
    const char first = *pattern;
    EXPECT_EQ(cache->matches(pattern, std::string(1, first).c_str()), true) << pattern;
    *pattern = '@';
    const bool remembered = !cache->matches(pattern, "@");
    EXPECT_EQ(cache->matches(pattern, std::string(1, first).c_str()), remembered) << first;
    *pattern = first;
    return remembered;
}

TEST(PatternCache, CompilesOnce) {
    PatternCache cache;
    char pattern[] = "a";
    EXPECT_TRUE(isRemembered(&cache, pattern));
    EXPECT_TRUE(isRemembered(&cache, pattern));
    // Also that a pattern does not compile.
    char broken[] = "(";
    EXPECT_FALSE(cache.matches(broken, "a"));
    *broken = 'a';
    EXPECT_FALSE(cache.matches(broken, "a"));
    // A cache of its own knows nothing of this.
    PatternCache other;
    EXPECT_TRUE(other.matches(broken, "a"));
}

TEST(PatternCache, ManyPatterns) {
    constexpr std::size_t kPatterns = 3 * PatternCache::kMost;
    // At addresses that fall together in some way or other.
    for (const std::size_t distance : {std::size_t{2}, std::size_t{16}, std::size_t{512}}) {
        std::vector<char> texts(kPatterns * distance, '\0');
        const auto pattern = [&](std::size_t i) { return &texts[i * distance]; };
        for (std::size_t i = 0; i < kPatterns; ++i) {
            *pattern(i) = "abcdefghijklmnopqrstuvwxyz"[i % 26];
        }
        const FaultyHeap heap(0);
        {
            PatternCache cache;
            std::size_t allocations[2];
            for (std::size_t &count : allocations) {
                for (std::size_t i = 0; i < kPatterns; ++i) {
                    // The first ones are kept, the others compiled each time.
                    EXPECT_EQ(isRemembered(&cache, pattern(i)), i < PatternCache::kMost)
                        << i << " at every " << distance;
                }
                count = heap.allocations();
            }
            EXPECT_GE(allocations[0], PatternCache::kMost);
            EXPECT_EQ(allocations[1], allocations[0]);
        }
        EXPECT_EQ(heap.blocksInUse(), 0u);
    }
}

TEST(PatternCache, CompilesEachTimeWhereItsOwnMemoryFails) {
    char patterns[][2] = {"a", "b", "c", "d"};
    const std::size_t count = std::size(patterns);
    bool failed = true;
    std::size_t nth = 0;
    while (failed) {
        const FaultyHeap heap(++nth);
        {
            PatternCache cache;
            for (std::size_t i = 0; i < count; ++i) {
                EXPECT_TRUE(cache.matches(patterns[i], patterns[i])) << nth << ' ' << i;
                EXPECT_FALSE(cache.matches(patterns[i], "x")) << nth << ' ' << i;
            }
            failed = heap.failed();
            // What failed has been tried again.
            for (char *pattern : patterns) EXPECT_TRUE(isRemembered(&cache, pattern)) << nth;
        }
        EXPECT_EQ(heap.blocksInUse(), 0u) << nth;
    }
    EXPECT_GT(nth, count);
    const FaultyHeap heap(1, true);
    PatternCache cache;
    for (char *pattern : patterns) EXPECT_FALSE(isRemembered(&cache, pattern));
    EXPECT_TRUE(heap.failed());
    EXPECT_EQ(heap.blocksInUse(), 0u);
}

// ---------------------------------------------------------------- without any memory

// What regcomp and regexec allocate is out of reach of the accounts of the heap, so a process of
// its own runs out of memory: all that it can have is taken, and given back block by block.
class AllMemory {
  public:
    AllMemory() {
        if (getrlimit(RLIMIT_AS, &before_) != 0) return;
        const rlimit none{0, before_.rlim_max};
        if (setrlimit(RLIMIT_AS, &none) != 0) return;
        constexpr std::size_t kUnlimited = std::size_t{1} << 30;
        std::size_t size = std::size_t{1} << 20, taken = 0;
        while (size >= kLeast && taken < kUnlimited) {
            void *block = std::malloc(size);
            if (block) {
                blocks_ = new (block) Block{blocks_};
                taken += size;
            } else {
                size = size > 256 ? size / 2 : size - kLeast;
            }
        }
        complete_ = taken < kUnlimited;
    }
    ~AllMemory() {
        while (giveBack()) continue;
        setrlimit(RLIMIT_AS, &before_);
    }
    AllMemory(const AllMemory &) = delete;
    AllMemory &operator=(const AllMemory &) = delete;

    bool complete() const { return complete_; }

    // Frees the smallest block; false if there is none left.
    bool giveBack() {
        if (!blocks_) return false;
        Block *next = blocks_->next;
        std::free(blocks_);
        blocks_ = next;
        return true;
    }

  private:
    struct Block {
        Block *next;
    };
    static constexpr std::size_t kLeast = 16;
    rlimit before_{};
    Block *blocks_ = nullptr;
    bool complete_ = false;
};

enum Verdict { kAsExpected, kMatchesWrongly, kDoesNotRecover, kNeverFailed, kNoLimit };

// A stack cannot grow then either. Not inlined: the room is wanted below the frames of the caller.
[[gnu::noinline]] void growStack() {
    volatile char room[256 * 1024];
    for (std::size_t i = 0; i < sizeof room; i += 1024) room[i] = 0;
}

// While memory comes back little by little the answer is right, or "does not match"; once it is
// back, right. Without groups: glibc 2.36 itself frees a block twice where "(a|b)+" lacks memory.
Verdict answersWithoutMemory() {
    constexpr char kPattern[] = "^[a-c]+[0-9]$";
    static PatternCache kept[200];
    growStack();
    bool failed = false;
    {
        AllMemory memory;
        if (!memory.complete()) return kNoLimit;
        for (PatternCache &cache : kept) {
            failed |= XML_IsMatchRegex(kPattern, "abc1") == 0;
            failed |= !cache.matches(kPattern, "abc1");
            if (XML_IsMatchRegex(kPattern, "abc") != 0) return kMatchesWrongly;
            if (cache.matches(kPattern, "abc")) return kMatchesWrongly;
            memory.giveBack();
        }
    }
    if (!failed) return kNeverFailed;
    for (PatternCache &cache : kept) {
        if (!cache.matches(kPattern, "abc1")) return kDoesNotRecover;
        if (cache.matches(kPattern, "abc")) return kMatchesWrongly;
    }
    return XML_IsMatchRegex(kPattern, "abc1") == 1 ? kAsExpected : kDoesNotRecover;
}

// The result of a function in a process of its own, or -1 for a crash.
int inOwnProcess(Verdict (*body)()) {
    const pid_t child = fork();
    if (child == 0) _exit(body());
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child || !WIFEXITED(status)) return -1;
    return WEXITSTATUS(status);
}

TEST(PatternCache, DoesNotMatchWithoutMemoryAndRecovers) {
    if (support::kSanitized) GTEST_SKIP() << "sanitizers need memory of their own";
    const int verdict = inOwnProcess(answersWithoutMemory);
    if (verdict == kNoLimit) GTEST_SKIP() << "memory cannot be limited here";
    EXPECT_EQ(verdict, kAsExpected);
}

}  // namespace
