// Patterns as automata: the C library's regexec says what is right.
#include <gtest/gtest.h>
#include <locale.h>
#include <regex.h>

#include <algorithm>
#include <clocale>
#include <cstddef>
#include <random>
#include <string>

#include "schema/pattern_automaton.h"
#include "schema/pattern_cache.h"
#include "schema/pattern_program.h"
#include "tests/support/faults.h"
#include "tests/support/feeds.h"
#include "tests/support/utf8_locale.h"

namespace {

using cxml::PatternAutomaton;
using support::FaultyHeap;
using support::printable;
using Answer = PatternAutomaton::Answer;

class Reference {
  public:
    explicit Reference(const std::string &pattern)
        : compiles_(regcomp(&compiled_, pattern.c_str(), REG_EXTENDED | REG_NOSUB) == 0) {}
    ~Reference() {
        if (compiles_) regfree(&compiled_);
    }
    Reference(const Reference &) = delete;
    Reference &operator=(const Reference &) = delete;

    bool compiles() const { return compiles_; }
    Answer match(const std::string &text) const {
        const bool found = regexec(&compiled_, text.c_str(), 0, nullptr, 0) == 0;
        return found ? Answer::kYes : Answer::kNo;
    }

  private:
    regex_t compiled_{};
    bool compiles_;
};

// The automata of a pattern, for texts of ASCII and for all.
class Automata {
  public:
    explicit Automata(const std::string &pattern)
        : pattern_(pattern),
          ascii_(pattern_.c_str(), cxml::PatternBytes::kAscii, scratch_),
          all_(pattern_.c_str(), cxml::PatternBytes::kAll, scratch_) {}

    // Whether the pattern is one that they read, both or neither.
    bool read() {
        const bool isRead = all_.match("") != Answer::kUnknown;
        EXPECT_EQ(ascii_.match("") != Answer::kUnknown, isRead) << printable(pattern_);
        return isRead;
    }

    // One answer, from both where both may be asked.
    Answer match(const std::string &text) {
        const Answer answer = all_.match(text.c_str());
        const bool isAscii = std::none_of(
            text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
        if (isAscii) {
            EXPECT_EQ(ascii_.match(text.c_str()), answer)
                << printable(pattern_) << " in " << printable(text);
        }
        return answer;
    }

  private:
    cxml::PatternScratch scratch_;
    const std::string pattern_;
    PatternAutomaton ascii_, all_;
};

// What it reads, so that the comparisons below are of something.
constexpr const char *kRead[] = {
    "a",
    "^$",
    "^a",
    "a$",
    "^(a|b)$",
    "^.*$",
    "^a{2,3}b{2}c{1,}$",
    "^((a|b){2}|c)+$",
    "^[a-c]*[^a-c]?$",
    "^[]a]+[^]a][-a][a-]$",
    "^\\.\\[\\$\\(\\)\\|\\*\\+\\?\\{\\\\\\^$",
    "^[\\.]$",
    "^(([^\x80-\xFF]|[\x81-\xFE]([@-~\x80-\xFE]|[0-9][\x81-\xFE][0-9])){0,32})$",
    "^([1-8]/[0-9]/[0-9]{1,2}(-[1-8]/[0-9]/[0-9]{1,2})?|lag[1-9][0-9]?)$",
    "^([+-](0[0-9]|1[0-3]):[0-5][0-9]|[+-]14:00)$",
};

TEST(PatternAutomaton, ReadsWhatIsOrdinary) {
    for (const char *pattern : kRead) {
        EXPECT_TRUE(Automata(pattern).read()) << printable(pattern);
    }
}

TEST(PatternAutomaton, LeavesAllElseToTheCLibrary) {
    for (const char *pattern :
         {"",          "^",          "$",     "^a|b$",       "a|^b",     "(^a)",
          "(a$)",      "a^b",        "a$b",   "()",          "(|a)",     "a||b",
          "|a",        "*a",         "a**",   "a+?",         "a{2}{3}",  "a{0}",
          "a{2,1}",    "a{,2}",      "a{",    "a{x}",        "a{1",      "(*a)",
          "a{1,x}",    "a{1,99999}", "a{1,2", "[a-",         "(",        "(a",
          ")",         "a)",         "[",     "[a",          "[]",       "[^]",
          "[b-a]",     "[a-c-e]",    "[--a]", "[[:digit:]]", "[[.a.]]",  "[[=a=]]",
          "[a-[.z.]]", "[[:none:]]", "]",     "}",           "\\w",      "\\1",
          "\\<",       "\\",         "a\\",   "(a)\\1",      "a{40000}", "((a{200}){200}){200}"}) {
        EXPECT_FALSE(Automata(pattern).read()) << pattern;
        // As strange where no text of ASCII ever gets.
        EXPECT_FALSE(Automata(std::string("a|\xD6") + pattern + "b|c").read()) << pattern;
    }
    EXPECT_FALSE(Automata(std::string(100, '(') + "a" + std::string(100, ')')).read());
}

class Random {
  public:
    explicit Random(unsigned seed) : engine_(seed) {}
    std::size_t below(std::size_t count) { return engine_() % count; }
    template <std::size_t count>
    std::string oneOf(const char *const (&choices)[count]) {
        return choices[below(count)];
    }

  private:
    std::mt19937 engine_;
};

// Mostly an expression, with a mistake or an oddity here and there.
std::string makePattern(Random &random, int depth) {
    static constexpr const char *kAtoms[] = {"a",
                                             "b",
                                             "c",
                                             "-",
                                             "\xD6",
                                             ".",
                                             "[ab]",
                                             "[^ab]",
                                             "[a-c]",
                                             "0",
                                             "[0-9]",
                                             "[^\x80-\xFF]",
                                             "[\x81-\xFE]",
                                             "[]a]",
                                             "[^]-]",
                                             "[a-b\xD6]",
                                             "\\.",
                                             "[+-]",
                                             "[a-]",
                                             "\\\\",
                                             "\n",
                                             "\xD6[0-9@-Z\x80-\xFE][a^]",
                                             "\xD6[a-]\x80[a-\xFF]",
                                             "\x80[^a]"};
    static constexpr const char *kOdd[] = {"]",           "}",     "^",   "$",  "[a-c-e]",
                                           "{",           "*",     "\\w", "()", "(",
                                           "[[:digit:]]", "[b-a]", "[",   ")",  "|"};
    static constexpr const char *kQuantifiers[] = {"*",     "+",    "?",    "{2}", "{1,3}",
                                                   "{0,2}", "{2,}", "{0,}", "{1}"};
    std::string text;
    for (std::size_t count = 1 + random.below(4); count != 0; --count) {
        if (random.below(150) == 0) {
            text += random.oneOf(kOdd);
        } else if (depth < 3 && random.below(3) == 0) {
            text += "(" + makePattern(random, depth + 1) + ")";
        } else {
            text += random.oneOf(kAtoms);
        }
        if (random.below(3) == 0) text += random.oneOf(kQuantifiers);
        if (count > 1 && depth > 0 && random.below(4) == 0) text += "|";
    }
    if (depth == 0 && random.below(3) != 0) text = "^" + text;
    if (depth == 0 && random.below(3) != 0) text += "$";
    return text;
}

std::string makeText(Random &random) {
    static constexpr const char *kPieces[] = {"a", "b",    "c",    "a",  "-", "0", "\xD6",
                                              "]", "\x80", "\xFF", "\n", ".", "+", "\\"};
    std::string text;
    for (std::size_t count = random.below(9); count != 0; --count) text += random.oneOf(kPieces);
    return text;
}

TEST(PatternAutomaton, AnswersAsTheCLibrary) {
    std::size_t read = 0, yes = 0, no = 0;
    Random random(20261122);
    for (int i = 0; i < 6000; ++i) {
        const std::string pattern = makePattern(random, 0);
        Automata automata(pattern);
        if (!automata.read()) continue;
        ++read;
        const Reference reference(pattern);
        ASSERT_TRUE(reference.compiles()) << printable(pattern);
        for (int j = 0; j < 25; ++j) {
            const std::string text = makeText(random);
            const Answer expected = reference.match(text);
            ++(expected == Answer::kYes ? yes : no);
            EXPECT_EQ(automata.match(text), expected)
                << printable(pattern) << " in " << printable(text);
        }
        ASSERT_FALSE(HasFailure());
    }
    EXPECT_GT(read, 3000u);
    EXPECT_GT(yes, 10000u);
    EXPECT_GT(no, 10000u);
}

// Every byte, for every kind of step.
TEST(PatternAutomaton, EveryByte) {
    for (const std::string pattern :
         {"^.$", "^a$", "^[^a]$", "^[\x01-\xFF]$", "^[a-z\xFF]$", "^[^\x01\x80-\x90\xFF]$",
          "^\xFF$", "^[!-~]$", "^[?-@]$", "^[\x7F-\x80]$"}) {
        Automata automata(pattern);
        ASSERT_TRUE(automata.read()) << printable(pattern);
        const Reference reference(pattern);
        for (int byte = 1; byte < 256; ++byte) {
            const std::string text(1, static_cast<char>(byte));
            EXPECT_EQ(automata.match(text), reference.match(text))
                << printable(pattern) << " in " << printable(text);
        }
    }
}

TEST(PatternAutomaton, LongTexts) {
    Automata automata("^([a-z]+,?)*$");
    const std::string text(std::size_t{1} << 20, 'a');
    EXPECT_EQ(automata.match(text), Answer::kYes);
    EXPECT_EQ(automata.match(text + ",a"), Answer::kYes);
    EXPECT_EQ(automata.match(text + ",,"), Answer::kNo);
}

// A text of which every beginning has a state of its own: sooner or later there is no room.
TEST(PatternAutomaton, TooManyStates) {
    constexpr char kPattern[] = "^(a|b)*a(a|b){13}$";
    Random random(7);
    std::string text;
    for (int i = 0; i < 60000; ++i) text += random.below(2) == 0 ? 'a' : 'b';
    text[text.size() - 14] = 'a';
    Automata automata(kPattern);
    EXPECT_EQ(automata.match(text), Answer::kUnknown);
    EXPECT_EQ(automata.match(text.substr(text.size() - 14)), Answer::kYes);
    cxml::PatternCache cache;
    EXPECT_TRUE(cache.matches(kPattern, text.c_str()));
    text[text.size() - 14] = 'b';
    EXPECT_FALSE(cache.matches(kPattern, text.c_str()));
}

TEST(PatternAutomaton, EachFailedAllocation) {
    for (const bool persistent : {false, true}) {
        bool failed = true;
        std::size_t nth = 0;
        while (failed) {
            const FaultyHeap heap(++nth, persistent);
            {
                cxml::PatternScratch scratch;
                PatternAutomaton automaton{"^([a-z]{1,40}[0-9]|[^0-9]{1,40}x)*$",
                                           cxml::PatternBytes::kAll, scratch};
                for (int length = 0; length < 60; ++length) {
                    const std::string text(static_cast<std::size_t>(length), 'x');
                    const Answer answer = automaton.match(text.c_str());
                    EXPECT_TRUE(answer == Answer::kYes || (length == 1 && answer == Answer::kNo) ||
                                (heap.failed() && answer == Answer::kUnknown))
                        << nth << ' ' << length;
                }
            }
            EXPECT_EQ(heap.blocksInUse(), 0u) << nth;
            failed = heap.failed();
        }
        EXPECT_GT(nth, 6u);
    }
}

// What stands behind a number of single bytes in the tests of growth and limits below. In a program for
// ASCII some of it takes no text at all.
constexpr const char *kEndings[] = {
    "",      "b*$",     "b+",        "b?$",        "b{2,3}", "b{2,}$",  "(b|c)$",         "(b|c|d)",
    "[bc]$", "(\xD6)?", "(\xD6z)*$", "(b\xD6|c)?", ".*$",    "(b*|c)+", "(b|\xD6|c){1,2}"};

// The nodes of a program grow at a power of two, whatever is being added then.
TEST(PatternProgram, EachFailedAllocationBehindEachNode) {
    for (const char *start : {"^", ""}) {
        for (const char *ending : kEndings) {
            for (std::size_t length = 0; length < 68; ++length) {
                const std::string pattern = start + std::string(length, 'a') + ending;
                if (pattern.empty() || pattern == "^" || pattern[0] == '$') continue;
                for (std::size_t nth = 1;; ++nth) {
                    const FaultyHeap heap(nth);
                    {
                        cxml::PatternProgram program;
                        const bool read = cxml::readPattern(pattern.c_str(),
                                                            cxml::PatternBytes::kAscii, &program);
                        ASSERT_EQ(read, !heap.failed()) << printable(pattern) << ' ' << nth;
                    }
                    ASSERT_EQ(heap.blocksInUse(), 0u);
                    if (!heap.failed()) break;
                }
            }
        }
    }
    cxml::PatternProgram program;
    const FaultyHeap heap(1);
    EXPECT_FALSE(cxml::readPattern("^$", cxml::PatternBytes::kAscii, &program));
}

// A pattern of too many nodes is refused wherever in it they become too many, and a longer one is, too.
TEST(PatternProgram, NoMoreNodesThanThereMayBe) {
    constexpr std::size_t kMostNodes = 16384;
    for (const char *start : {"^", ""}) {
        for (const char *ending : kEndings) {
            bool readBefore = true;
            std::size_t refused = 0;
            for (std::size_t count = kMostNodes - 24; count <= kMostNodes; ++count) {
                const std::string pattern = start + ("a{" + std::to_string(count) + "}") + ending;
                cxml::PatternProgram program;
                const bool read =
                    cxml::readPattern(pattern.c_str(), cxml::PatternBytes::kAscii, &program);
                EXPECT_TRUE(!read || program.nodes.size() <= kMostNodes);
                EXPECT_TRUE(readBefore || !read) << printable(pattern);
                refused += !read;
                readBefore = read;
            }
            EXPECT_GT(refused, 0u) << start << printable(ending);
            EXPECT_LT(refused, 25u) << start << printable(ending);
        }
    }
    // So many sets, each of which is a node.
    std::string sets = "^";
    for (std::size_t i = 0; i < kMostNodes + 2; ++i) sets += "[ab]";
    cxml::PatternProgram program;
    EXPECT_FALSE(cxml::readPattern(sets.c_str(), cxml::PatternBytes::kAscii, &program));
}

TEST(PatternAutomaton, SuitsTheCLocaleAlone) {
    EXPECT_TRUE(PatternAutomaton::suitsLocale());
    {
        const support::Utf8Locale locale;
        if (!locale.isSet()) GTEST_SKIP() << "no locale of UTF-8";
        EXPECT_FALSE(PatternAutomaton::suitsLocale());
        // Characters then, as XML_IsMatchRegex has it.
        cxml::PatternCache cache;
        EXPECT_TRUE(cache.matches("^.$", "\xC3\xA9"));
        EXPECT_FALSE(cache.matches("^..$", "\xC3\xA9"));
    }
    for (const int category : {LC_CTYPE, LC_COLLATE}) {
        ASSERT_NE(std::setlocale(category, "C.UTF-8"), nullptr);
        EXPECT_FALSE(PatternAutomaton::suitsLocale()) << category;
        std::setlocale(category, "C");
        EXPECT_TRUE(PatternAutomaton::suitsLocale()) << category;
    }
    const locale_t own = newlocale(LC_ALL_MASK, "C.UTF-8", locale_t{});
    if (!own) return;
    const locale_t before = uselocale(own);
    EXPECT_FALSE(PatternAutomaton::suitsLocale());
    uselocale(before);
    freelocale(own);
    EXPECT_TRUE(PatternAutomaton::suitsLocale());
}

}  // namespace
