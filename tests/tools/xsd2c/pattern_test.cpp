#include "xsd2c/pattern/pattern.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "pattern_support.h"

namespace {

using namespace xsd2c;
using patterns::Compiled;
using patterns::gb18030Of;
using patterns::utf8Of;

bool matches(const std::string &pattern, std::string_view value, bool asciiOnly = false) {
    const Compiled compiled(wholePattern(translatePatterns({pattern}, asciiOnly).inner));
    return compiled.matches(gb18030Of(value));
}

struct Case {
    const char *pattern;
    std::vector<const char *> matching;
    std::vector<const char *> others;
};

const Case kCases[] = {
    // characters
    {"", {""}, {"a", " "}},
    {"abc", {"abc"}, {"", "ab", "abcd", "xabc", "ABC"}},
    {"^a$", {"^a$"}, {"a", "^a", "a$"}},
    {"a.c", {"abc", "a.c", "a中c", "aéc", "a😀c", "a\tc"}, {"ac", "a\nc", "a\rc", "abbc", "a中中c"}},
    {"中|é|😀", {"中", "é", "😀"}, {"国", "è", "😁", "", "中é"}},
    {"-,:=!&<>\"'/#%@_`~;", {"-,:=!&<>\"'/#%@_`~;"}, {""}},
    // branches and groups
    {"a|b", {"a", "b"}, {"", "ab", "c"}},
    {"|", {""}, {"a"}},
    {"a|", {"a", ""}, {"aa", "b"}},
    {"|a", {"a", ""}, {"aa"}},
    {"ab|cd", {"ab", "cd"}, {"abd", "acd", "abcd"}},
    {"(a|b)c", {"ac", "bc"}, {"a", "abc", "c"}},
    {"a(b|c(d|e))f", {"abf", "acdf", "acef"}, {"acf", "abdf"}},
    {"()", {""}, {"a"}},
    {"a()b", {"ab"}, {"a", "a()b"}},
    {"(|a)b", {"b", "ab"}, {"a", "aab"}},
    {"((a))", {"a"}, {"", "(a)"}},
    // quantifiers
    {"a?", {"", "a"}, {"aa"}},
    {"a*", {"", "a", "aaaa"}, {"ab", "b"}},
    {"a+b", {"ab", "aaab"}, {"b"}},
    {"a{3}", {"aaa"}, {"aa", "aaaa", ""}},
    {"a{2,}", {"aa", "aaaaa"}, {"a", ""}},
    {"a{2,4}", {"aa", "aaa", "aaaa"}, {"a", "aaaaa"}},
    {"a{0}", {""}, {"a"}},
    {"ba{0}", {"b"}, {"ba", ""}},
    {"a{0,0}b", {"b"}, {"ab"}},
    {"a{0,}", {"", "a", "aaa"}, {"b"}},
    {"a{1}", {"a"}, {"", "aa"}},
    {"a{02,003}", {"aa", "aaa"}, {"a", "aaaa"}},
    {"(ab){2}", {"abab"}, {"ab", "abb", "aabb"}},
    {"ab{2}", {"abb"}, {"abab"}},
    {"中{2}", {"中中"}, {"中", "中中中"}},
    {"é+", {"é", "ééé"}, {"", "e"}},
    {"(a*)*", {"", "a", "aaa"}, {"b", "ab"}},
    {"(a?){3}", {"", "a", "aaa"}, {"aaaa", "b"}},
    {"(a?b?){2}", {"", "a", "b", "ab", "ba", "aa", "bb", "abab"}, {"aba1", "aaa", "baa", "bbb"}},
    {"(a|b?c?)+d", {"d", "abcd", "aad", "cbd"}, {"", "abc"}},
    {"a{0,100}", {"", "aaaaaaaaaa"}, {"b"}},
    // classes
    {"[abc]", {"a", "b", "c"}, {"", "d", "ab"}},
    {"[a-c]", {"a", "b", "c"}, {"d", "-", "A"}},
    {"[a-cx-z]", {"b", "y"}, {"d", "w"}},
    {"[^a-c]", {"d", "-", "中", "é", "😀", "\n"}, {"a", "b", ""}},
    {"[-a]", {"-", "a"}, {"b", "\\"}},
    {"[a-]", {"-", "a"}, {"b"}},
    {"[a-c-]", {"-", "a", "b"}, {"d"}},
    {"[-]", {"-"}, {"a"}},
    {"[^-]", {"a", "^"}, {"-"}},
    {"[^-a]", {"b", "^"}, {"-", "a"}},
    {"[a^]", {"a", "^"}, {"b"}},
    {"[^^]", {"a", "中"}, {"^"}},
    {"[\\^]", {"^"}, {"a", "\\"}},
    {"[\\^\\-]", {"^", "-"}, {"a", "\\"}},
    {"[\\^a]", {"^", "a"}, {"b"}},
    {"[\\]\\[]", {"[", "]"}, {"\\", "a"}},
    {"[\\[.:=]", {"[", ".", ":", "="}, {"]", "a", "[.", "[:"}},
    {"[!-~]", {"[", "]", "-", "^", "\\", "a", "~", "!"}, {" ", "中", "é"}},
    {"[\\[-\\]]", {"[", "\\", "]"}, {"a", "^", "-"}},
    {"[\\--/]", {"-", ".", "/"}, {",", "0"}},
    {"[+-\\-]", {"+", ",", "-"}, {"*", "."}},
    {"[Z-\\[]", {"Z", "["}, {"\\", "Y"}},
    {"[\\]-a]", {"]", "^", "_", "`", "a"}, {"\\", "b"}},
    {"[X-\\^]", {"X", "[", "\\", "]", "^"}, {"_", "-"}},
    {"[.?*+(){}|$]", {".", "?", "*", "+", "(", ")", "{", "}", "|", "$"}, {"a", "\\"}},
    {"[\\n\\t]", {"\n", "\t"}, {"n", "t", "\r", "\\"}},
    {"[\\d]", {"0", "9", "٣", "߀"}, {"a", "d"}},
    {"[\\da-f]+", {"0af9", "٣a"}, {"g"}},
    {"[^\\d]", {"a", "中"}, {"0", "٣"}},
    {"[^\\D]", {"0", "٣"}, {"a"}},
    {"[\\s\\S]", {"a", " ", "中", "\n"}, {"", "aa"}},
    {"[中-龥]", {"中", "国", "龥"}, {"一", "a", "é"}},
    {"[à-ü]+", {"é", "è", "èàü"}, {"e", "ÿ", "中"}},
    {"[😀-😎]", {"😀", "😎"}, {"😏", "a", "中"}},
    {"[a中é😀]+", {"a中é😀", "😀a"}, {"b", "国", "è", "😁"}},
    // what is taken away
    {"[a-z-[aeiou]]+", {"b", "xyz"}, {"a", "bae", "-"}},
    {"[a-z-[a-m-[c]]]", {"c", "n", "z"}, {"a", "m", "-"}},
    {"[^a-c-[x]]", {"d", "y", "中"}, {"a", "x"}},
    {"[a-z-[^aeiou]]", {"a", "e"}, {"b"}},
    {"[\\w-[\\d_]]", {"a", "中", "é"}, {"0", "_", "٣"}},
    {"[--[a]]", {"-"}, {"a"}},
    {"[a--[a]]", {"-"}, {"a"}},
    {"[a-d--[b]]", {"a", "-", "d"}, {"b"}},
    {"[\\i-[:]][\\c-[:]]*", {"a", "_x-1.2", "é", "中1"}, {"", ":", "a:b", "1a", "-"}},
    {"[a-[a]]", {}, {"", "a", "b"}},
    {"b[a-[a]]?", {"b"}, {"ba", ""}},
    {"b|[a-[a]]c", {"b"}, {"c", "ac"}},
    {"[^\\s\\S]", {}, {"", "a", "中"}},
    // escapes
    {"\\n\\r\\t", {"\n\r\t"}, {"nrt", "\\n\\r\\t"}},
    {"\\\\\\|\\.\\-\\^\\?\\*\\+\\{\\}\\(\\)\\[\\]", {"\\|.-^?*+{}()[]"}, {""}},
    {"\\s", {" ", "\t", "\n", "\r"}, {"a", "", "\xC2\xA0"}},
    {"\\S+", {"a", "中é", "\xC2\xA0"}, {" ", "a b", ""}},
    {"\\i", {"a", "Z", "_", ":", "é", "中", "😀"}, {"1", "-", ".", "·", "×", ""}},
    {"\\I", {"1", "-", "·", "×", " "}, {"a", "é", ""}},
    {"\\c", {"a", "1", "-", ".", ":", "·", "中", "\xCC\x81"}, {" ", "×", "/"}},
    {"\\C", {" ", "×", "/"}, {"a", "1", "·"}},
    {"\\d", {"0", "5", "९", "𝟘", "９"}, {"a", "½", "²", "Ⅷ", ""}},
    {"\\D", {"a", "½", "中"}, {"0", "९"}},
    {"\\w", {"a", "1", "中", "é", "😀", "+", "$", "½"}, {"-", "_", " ", ",", "。", "\xE2\x80\x83"}},
    {"\\W", {"-", "_", " ", "。"}, {"a", "中", "+"}},
    // categories and blocks
    {"\\p{Lu}", {"A", "É", "Ω", "𝐀"}, {"a", "é", "1", "中"}},
    {"\\p{Ll}", {"a", "é", "ω"}, {"A", "ǅ"}},
    {"\\p{Lt}", {"ǅ"}, {"A", "a"}},
    {"\\p{Lo}", {"中", "ا", "𠀀", "𠂇"}, {"a"}},
    {"\\p{L}", {"a", "中", "ǅ", "ʰ"}, {"1", " "}},
    {"\\p{M}", {"\xCC\x81"}, {"a"}},
    {"\\p{N}", {"1", "Ⅷ", "½"}, {"a"}},
    {"\\p{P}", {"-", "_", "(", "。", "«"}, {"+", "a"}},
    {"\\p{Sc}", {"$", "€", "¥"}, {"+"}},
    {"\\p{Zs}", {" ", "\xC2\xA0", "\xE3\x80\x80"}, {"\t", "a"}},
    {"\\p{Cc}", {"\t", "\x7F"}, {"a"}},
    {"\\p{Co}", {"\xEE\x80\x80"}, {"a", "中"}},
    {"\\p{Cn}", {"\xCD\xB8"}, {"a", "中", "é"}},
    {"\\p{C}", {"\xCD\xB8", "\t", "\xEE\x80\x80"}, {"a", "中"}},
    {"\\P{L}", {"1", " ", "。"}, {"a", "中", "é"}},
    {"[\\p{Lu}\\p{Nd}]+", {"A1", "É٣"}, {"a"}},
    {"[^\\p{Lu}]", {"a", "中"}, {"A"}},
    {"\\p{IsBasicLatin}*", {"", "aZ9 ~"}, {"é", "中"}},
    {"\\p{IsLatin-1Supplement}", {"é", "×"}, {"e", "ā"}},
    {"\\p{IsCJKUnifiedIdeographs}+", {"中国"}, {"a", "。", "㐀"}},
    {"\\p{IsCJKUnifiedIdeographsExtensionB}", {"𠀀", "𠂇"}, {"中"}},
    {"\\p{IsSpecials}", {"\xEF\xBF\xBD", "\xEF\xBB\xBF"}, {"a"}},
    {"\\P{IsBasicLatin}", {"é", "中"}, {"a"}},
    // as schemas have them
    {"([0-9]{1,3}\\.){3}[0-9]{1,3}",
     {"1.2.3.4", "255.255.255.255"},
     {"1.2.3", "1.2.3.4.5", "1.2.3.a"}},
    {"([0-9a-fA-F]{2}:){5}[0-9a-fA-F]{2}", {"00:1b:2C:ff:00:01"}, {"00:1b:2C:ff:00", "00-1b"}},
    {"[^\\s@]+@[^\\s@]+\\.[a-z]{2,6}", {"a.b@c.de", "中@国.cn"}, {"a@b", "a b@c.de"}},
};

TEST(Pattern, MatchesAsXmlSchemaSays) {
    for (const Case &each : kCases) {
        const Translated translated = translatePatterns({each.pattern}, false);
        const Compiled compiled(wholePattern(translated.inner));
        for (const char *value : each.matching) {
            const std::string bytes = gb18030Of(value);
            EXPECT_TRUE(compiled.matches(bytes)) << each.pattern << " and " << value;
            for (const char byte : bytes) {
                if (static_cast<unsigned char>(byte) >= 0x80) {
                    EXPECT_FALSE(translated.ascii) << each.pattern;
                }
            }
        }
        for (const char *value : each.others) {
            EXPECT_FALSE(compiled.matches(gb18030Of(value))) << each.pattern << " and " << value;
        }
    }
}

bool isAscii(std::string_view text) {
    for (const char byte : text) {
        if (static_cast<unsigned char>(byte) >= 0x80) return false;
    }
    return true;
}

TEST(Pattern, MatchesAsciiTextsWithoutTheRest) {
    for (const Case &each : kCases) {
        const Translated translated = translatePatterns({each.pattern}, true);
        EXPECT_TRUE(translated.ascii);
        const Compiled compiled(wholePattern(translated.inner));
        for (const char *value : each.matching) {
            if (!isAscii(value)) continue;
            EXPECT_TRUE(compiled.matches(value)) << each.pattern << " and " << value;
        }
        for (const char *value : each.others) {
            if (!isAscii(value)) continue;
            EXPECT_FALSE(compiled.matches(value)) << each.pattern << " and " << value;
        }
    }
}

struct Spelled {
    const char *pattern;
    bool asciiOnly;
    const char *inner;
    bool ascii;
};

const Spelled kSpelled[] = {
    {"", false, "", true},
    {"abc", false, "abc", true},
    {"a|b", false, "(a|b)", true},
    {"[a-z]{1,8}", false, "[a-z]{1,8}", true},
    {"1.0", true, "1[^\n\r]0", true},
    {"1\\.0", false, "1\\.0", true},
    {"\\d{3}", true, "[0-9]{3}", true},
    {".*", true, "[^\n\r]*", true},
    {"[\\s\\S]", true, ".", true},
    {"[\\s\\S]", false, "([^\x80-\xFF]|[\x81-\xFE]([@-~\x80-\xFE]|[0-9][\x81-\xFE][0-9]))", false},
    {"中", false, "\xD6\xD0", false},
    {"讄", false, "\xD7\\|", false},  // a second byte that POSIX gives a meaning
    {"[a-[a]]", false, "[^\x01-\xFF]", true},
    {"a|[é-[é]]", false, "a", true},
    {"(中[a-[a]])*b", false, "b", true},
    {"中{0}", false, "", true},
};

TEST(Pattern, IsSpelledShortly) {
    for (const Spelled &each : kSpelled) {
        const Translated translated = translatePatterns({each.pattern}, each.asciiOnly);
        EXPECT_EQ(translated.inner, each.inner) << each.pattern;
        EXPECT_EQ(translated.ascii, each.ascii) << each.pattern;
    }
    EXPECT_LT(translatePatterns({"\\i\\c*"}, false).inner.size(), 1200u);
    EXPECT_LT(translatePatterns({"\\w"}, false).inner.size(), 8000u);
}

TEST(Pattern, TakesOneOfSeveral) {
    const Compiled compiled(wholePattern(translatePatterns({"a|b", "c+", "中"}, false).inner));
    for (const char *value : {"a", "b", "ccc", "中"})
        EXPECT_TRUE(compiled.matches(gb18030Of(value)));
    for (const char *value : {"", "ab", "ac", "国"})
        EXPECT_FALSE(compiled.matches(gb18030Of(value)));
}

struct Bad {
    const char *pattern;
    const char *problem;
};

const Bad kBad[] = {
    {"(a", "character 1: '(' is not closed"},
    {"中(a(b)", "character 2: '(' is not closed"},
    {"a)", "character 2: ')' closes no group; for the character write '\\)'"},
    {"*a", "character 1: '*' has nothing to repeat; for the character write '\\*'"},
    {"a|+", "character 3: '+' has nothing to repeat; for the character write '\\+'"},
    {"(?:a)", "character 2: '?' cannot stand at the beginning of a group"},
    {"a**", "character 3: a second quantifier needs a group around the first"},
    {"a{2}{3}", "character 5: a second quantifier needs a group around the first"},
    {"a+?", "character 3: a second quantifier needs a group around the first"},
    {"a{", "character 2: a quantifier is written {n}, {n,} or {n,m}"},
    {"a{,3}", "character 2: a quantifier is written {n}, {n,} or {n,m}"},
    {"a{1", "character 2: a quantifier is written {n}, {n,} or {n,m}"},
    {"a{1,2,3}", "character 2: a quantifier is written {n}, {n,} or {n,m}"},
    {"a{ 1}", "character 2: a quantifier is written {n}, {n,} or {n,m}"},
    {"a{3,2}", "character 2: the quantifier's first number is greater than its second"},
    {"{1}", "character 1: '{' must be written '\\{'"},
    {"a}", "character 2: '}' must be written '\\}'"},
    {"a]", "character 2: ']' must be written '\\]'"},
    {"[a", "character 1: '[' is not closed"},
    {"[", "character 1: '[' is not closed"},
    {"[]", "character 1: a class needs a character"},
    {"[^]", "character 1: a class needs a character"},
    {"[]a]", "character 1: a class needs a character"},
    {"[a[b]]", "character 3: '[' must be written '\\[' within a class"},
    {"[[a]", "character 2: '[' must be written '\\[' within a class"},
    {"[z-a]", "character 2: the range's last character is before its first"},
    {"[a-c-e]", "character 5: '-' between others must be written '\\-'"},
    {"[a\\d-z]", "character 5: '-' between others must be written '\\-'"},
    {"[--z]", "character 3: '-' between others must be written '\\-'"},
    {"[a--]", "character 4: '-' as the end of a range must be written '\\-'"},
    {"[a-\\d]", "character 4: a range cannot end with a class"},
    {"[a-[b]c]", "character 7: ']' must follow a class that is taken away"},
    {"[a-[b]", "character 1: '[' is not closed"},
    {"[a-z-[", "character 6: '[' is not closed"},
    {"\\", "character 1: '\\' has nothing to escape"},
    {"ab\\y", "character 3: there is no escape '\\' before 'y'"},
    {"\\1", "character 1: there is no escape '\\' before '1'"},
    {"\\$", "character 1: there is no escape '\\' before '$'"},
    {"\\é", "character 1: there is no escape '\\' before U+00E9"},
    {"\\p", "character 1: a property is written \\p{Name}"},
    {"\\pL", "character 1: a property is written \\p{Name}"},
    {"\\p{L", "character 1: a property is written \\p{Name}"},
    {"\\p{}", "character 1: there is no category of characters ''"},
    {"\\p{Xx}", "character 1: there is no category of characters 'Xx'"},
    {"\\p{Cs}", "character 1: there is no category of characters 'Cs'"},
    {"a\\P{IsKlingon}", "character 2: there is no block of characters 'IsKlingon'"},
    {"\\p{Is}", "character 1: there is no block of characters 'Is'"},
    {"a\x80", "character 2: the text is not UTF-8"},
    {"\xC0\x80", "character 1: the text is not UTF-8"},
    {"\xED\xA0\x80", "character 1: the text is not UTF-8"},
    {"\xE4\xB8", "character 1: the text is not UTF-8"},
};

TEST(Pattern, SaysWhatIsWrong) {
    for (const Bad &bad : kBad) {
        try {
            translatePatterns({"good", bad.pattern}, false);
            ADD_FAILURE() << bad.pattern;
        } catch (const BadPattern &error) {
            EXPECT_STREQ(error.what(), bad.problem) << bad.pattern;
        }
    }
}

std::string times(std::size_t count, std::string_view text) {
    std::string result;
    for (; count != 0; --count) result += text;
    return result;
}

TEST(Pattern, NestsToALimit) {
    EXPECT_TRUE(matches(times(250, "(") + "a" + times(250, ")"), "a"));
    EXPECT_TRUE(matches(times(249, "(") + "a" + times(249, "|b)c?"), "a"));
    EXPECT_THROW(translatePatterns({times(251, "(") + "a" + times(251, ")")}, true), BadPattern);
    EXPECT_TRUE(matches(times(249, "[a-") + "[b]" + times(249, "]"), "a"));
    EXPECT_THROW(translatePatterns({times(251, "[a-") + "[b]" + times(251, "]")}, true),
                 BadPattern);
    EXPECT_THROW(translatePatterns({times(1000000, "(")}, true), BadPattern);
}

TEST(Pattern, RefusesWhatIsTooLarge) {
    const std::string large[] = {
        "a{32768}",        "a{0,99999999999999999999999}",       "(a{1000}){1000}",
        "\\w{1,200}",      "((((a{20}){20}){20}){20}){20}",      times(100000, "\\w"),
        times(2000, "a*"), times(40, "(a?") + times(40, "b?)*"), times(400000, "ab")};
    for (const std::string &pattern : large) {
        EXPECT_THROW(translatePatterns({pattern}, false), NoTranslation) << pattern.substr(0, 40);
    }
    EXPECT_THROW(wholePattern(std::string(400000, 'a')), NoTranslation);
    EXPECT_THROW(wholePattern("((a{0,1000}){0,1000})"), NoTranslation);
}

// Many repetitions are written in blocks.
TEST(Pattern, CountsManyRepetitions) {
    for (const std::size_t least : {0u, 1u, 7u}) {
        for (const std::size_t more : {32u, 33u, 47u, 48u, 49u, 600u}) {
            const std::size_t most = least + more;
            const std::string quantifier =
                "{" + std::to_string(least) + "," + std::to_string(most) + "}";
            const Compiled one(wholePattern(translatePatterns({"[ab]" + quantifier}, true).inner));
            const Compiled two(
                wholePattern(translatePatterns({"(中|ab)" + quantifier}, false).inner));
            for (std::size_t count = 0; count <= most + 40; ++count) {
                const bool expected = count >= least && count <= most;
                ASSERT_EQ(one.matches(times(count, "a")), expected) << quantifier << count;
                ASSERT_EQ(
                    two.matches(times(count / 2, "ab") + times(count - count / 2, "\xD6\xD0")),
                    expected)
                    << quantifier << count;
            }
        }
    }
}

struct Item {
    const char *pattern;
    std::vector<const char *> matching;
    std::vector<const char *> others;
};

TEST(ItemPattern, MatchesNeitherWhiteSpaceNorNothing) {
    const Item cases[] = {
        {".*", {"a", "中b"}, {"", " ", "a b", "a\tb"}},
        {"a?b?c?", {"a", "b", "c", "ab", "ac", "bc", "abc"}, {"", "ba", "aa"}},
        {"a*", {"a", "aa"}, {""}},
        {"(a*b*)*", {"a", "ba", "aab"}, {"", "c"}},
        {"(a*)?", {"a", "aaa"}, {""}},
        {"(a?){3}", {"a", "aa", "aaa"}, {"", "aaaa"}},
        {"a b|c", {"c"}, {"a b", "ab", ""}},
        {"a ?b", {"ab"}, {"a b", ""}},
        {"a{0}|b", {"b"}, {"", "a"}},
        {"|a", {"a"}, {""}},
        {"a?(b|c?)", {"a", "b", "c", "ab", "ac"}, {"", "bc"}},
        {"(ab){2}", {"abab"}, {"ab"}},
        {"\\s*", {}, {"", " "}},
        {"", {}, {"", "a"}},
    };
    for (const Item &each : cases) {
        const Compiled compiled(wholePattern(translateItemPatterns({each.pattern}, false).inner));
        for (const char *value : each.matching) {
            EXPECT_TRUE(compiled.matches(gb18030Of(value))) << each.pattern << " and " << value;
        }
        for (const char *value : each.others) {
            EXPECT_FALSE(compiled.matches(gb18030Of(value))) << each.pattern << " and " << value;
        }
    }
}

TEST(LiteralPattern, MatchesItself) {
    for (const char *text : {"", "a", "a.b*c", "\\^$.[]|()?*+{}", "中讄é😀", "a b\t"}) {
        const Compiled compiled(wholePattern(literalPattern(text)));
        EXPECT_TRUE(compiled.matches(gb18030Of(text))) << text;
        EXPECT_FALSE(compiled.matches(gb18030Of(text) + "a")) << text;
        EXPECT_FALSE(compiled.matches("x" + gb18030Of(text))) << text;
    }
}

// Alternatives keep together, with and without brackets that are there already.
TEST(WholePattern, IsAnchored) {
    EXPECT_EQ(wholePattern(""), "^$");
    EXPECT_EQ(wholePattern("a"), "^(a)$");
    EXPECT_EQ(wholePattern("a|b"), "^(a|b)$");
    EXPECT_EQ(wholePattern("(a|b)"), "^(a|b)$");
    EXPECT_EQ(wholePattern("(a)|(b)"), "^((a)|(b))$");
    EXPECT_EQ(wholePattern("(a)[)](b)"), "^((a)[)](b))$");
    EXPECT_EQ(wholePattern("([)](a)\\))"), "^([)](a)\\))$");
    EXPECT_EQ(wholePattern("(a)\\)"), "^((a)\\))$");
    EXPECT_EQ(wholePattern("([])](a))"), "^([])](a))$");
}

TEST(LengthPattern, CountsCharacters) {
    const std::string chars[] = {"a", "\n", "\xD6\xD0", "\x81\x30\x81\x30", "\x94\x39\xFC\x36"};
    struct Limits {
        std::uint64_t least;
        std::optional<std::uint64_t> most;
    };
    const Limits cases[] = {
        {0, 0},  {0, 1}, {1, 1}, {3, 5}, {0, 70}, {64, 64}, {2, std::nullopt}, {0, std::nullopt},
        {5, 200}};
    for (const Limits &limits : cases) {
        const Compiled compiled(lengthPattern(limits.least, limits.most));
        std::string value;
        for (std::uint64_t count = 0; count <= 220; ++count) {
            const bool expected = count >= limits.least && count <= limits.most.value_or(1000);
            EXPECT_EQ(compiled.matches(value), expected) << limits.least << " and " << count;
            value += chars[count * 7 % 5];
        }
    }
    EXPECT_NO_THROW(lengthPattern(0, 4096));
    EXPECT_THROW(lengthPattern(0, 1000000), NoTranslation);
}

TEST(Base64LengthPattern, CountsOctets) {
    for (std::uint64_t least = 0; least <= 8; ++least) {
        for (std::uint64_t most = least; most <= 12; ++most) {
            const Compiled limited(
                base64LengthPattern(least, most == 12 ? std::nullopt : std::optional(most)));
            std::string groups;
            for (std::uint64_t octets = 0; octets <= 15; ++octets) {
                const char *const ends[] = {"", "Ag==", "A/+="};
                const bool expected = octets >= least && (most == 12 || octets <= most);
                EXPECT_EQ(limited.matches(groups + ends[octets % 3]), expected)
                    << least << " " << most << " " << octets;
                if (octets % 3 == 2) groups += "aB9+";
            }
        }
    }
}

struct Lexical {
    const char *type;
    std::vector<const char *> matching;
    std::vector<const char *> others;
};

TEST(LexicalPattern, MatchesValuesOfTheType) {
    const Lexical cases[] = {
        {"decimal", {"0", "-1.5", "+.5", "5.", "007"}, {"", ".", "-", "1e5", "1.2.3", " 1"}},
        {"float",
         {"1", "-1.5e-7", "INF", "-INF", "NaN", "1.E5", ".5e+3"},
         {"", "+INF", "-NaN", "nan", "e5", "1e", "1e5.0"}},
        {"double", {"1E5"}, {"inf"}},
        {"token", {"", "a", "a b", "中 文", "\xC2\xA0"}, {" a", "a ", "a  b", "a\tb", " "}},
        {"normalizedString", {"", " a  b ", "中"}, {"a\tb", "a\nb", "a\rb"}},
        {"NMTOKEN", {"a", "1", "-a:b.", "中"}, {"", "a b", "a/b"}},
        {"Name", {"a", ":a", "_1", "中-1"}, {"", "1a", "-a", "a b"}},
        {"NCName", {"a", "_1", "中-1"}, {"", ":a", "a:b", "1"}},
        {"ID", {"a"}, {"a:b"}},
        {"IDREF", {"a"}, {"a:b"}},
        {"ENTITY", {"a"}, {"a:b"}},
        {"NOTATION", {"a", "a:b", "中:b1"}, {"", ":", "a:", ":b", "a:b:c", "a:1"}},
        {"NMTOKENS", {"a", "a 1 中", " a\n b "}, {"", " ", "a /"}},
        {"IDREFS", {"a", "a b"}, {"", "a 1", "a:b"}},
        {"ENTITIES", {"a", "a b"}, {"", "a 1"}},
    };
    for (const Lexical &each : cases) {
        const Compiled compiled(wholePattern(lexicalPattern(each.type)));
        for (const char *value : each.matching) {
            EXPECT_TRUE(compiled.matches(gb18030Of(value))) << each.type << " and " << value;
        }
        for (const char *value : each.others) {
            EXPECT_FALSE(compiled.matches(gb18030Of(value))) << each.type << " and " << value;
        }
    }
    EXPECT_EQ(lexicalPattern("string"), "");
}

TEST(ListPattern, CountsItems) {
    const char *const texts[] = {"",       " ",     "a",   " a\n",    "a b",
                                 "a  b\t", "a b a", "aba", "a b a b", "\nb a a b a b\r",
                                 "c",      "a c"};
    const int counts[] = {0, 0, 1, 1, 2, 2, 3, -1, 4, 6, -1, -1};
    for (std::uint64_t least = 0; least <= 4; ++least) {
        for (std::uint64_t most = 0; most <= 5; ++most) {
            const Compiled compiled(
                listPattern("a|b", least, most == 5 ? std::nullopt : std::optional(most)));
            for (std::size_t i = 0; i < std::size(texts); ++i) {
                const bool expected =
                    counts[i] >= static_cast<int>(least) &&
                    (most == 5 ? counts[i] >= 0 : counts[i] <= static_cast<int>(most));
                EXPECT_EQ(compiled.matches(texts[i]), expected) << least << most << texts[i];
            }
        }
    }
}

TEST(PatternError, SaysWhatTheLibrarySays) {
    EXPECT_EQ(patternError("^(a|b)$"), "");
    EXPECT_NE(patternError("^(a"), "");
}

}  // namespace
