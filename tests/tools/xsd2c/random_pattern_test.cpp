// Patterns made at random, against a matcher that walks the tree that they were made of.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "pattern_support.h"
#include "tests/support/small_stack.h"
#include "xsd2c/pattern/pattern.h"

namespace {

using namespace xsd2c;
using patterns::Compiled;
using patterns::gb18030Of;
using patterns::utf8Of;

// One, two and four bytes in GB18030; characters with a meaning in patterns or in bracket
// expressions; characters whose second byte has one.
constexpr std::u32string_view kAlphabet = U"ab1-^]\\ \n中羃羄é٣😀";

struct Escape {
    const char *text;
    std::u32string_view in;  // of the alphabet
};

constexpr Escape kEscapes[] = {
    {"\\s", U" \n"},
    {"\\S", U"ab1-^]\\中羃羄é٣😀"},
    {"\\d", U"1٣"},
    {"\\D", U"ab-^]\\ \n中羃羄é😀"},
    {"\\w", U"ab1^中羃羄é٣😀"},
    {"\\W", U"-]\\ \n"},
    {"\\i", U"ab中羃羄é٣😀"},
    {"\\I", U"1-^]\\ \n"},
    {"\\c", U"ab1-中羃羄é٣😀"},
    {"\\C", U"^]\\ \n"},
    {"\\p{L}", U"ab中羃羄é"},
    {"\\P{L}", U"1-^]\\ \n٣😀"},
    {"\\p{IsBasicLatin}", U"ab1-^]\\ \n"},
    {"\\p{So}", U"😀"},
};

using Chars = std::set<char32_t>;

Chars alphabet() {
    return {kAlphabet.begin(), kAlphabet.end()};
}

class Random {
  public:
    explicit Random(unsigned seed) : engine_(seed) {}
    std::size_t below(std::size_t count) { return engine_() % count; }
    char32_t character() { return kAlphabet[below(kAlphabet.size())]; }

  private:
    std::mt19937 engine_;
};

struct Node {
    enum class Kind { kChars, kSequence, kChoice, kRepeat };
    Kind kind = Kind::kChars;
    Chars chars;
    std::vector<Node> children;
    std::size_t least = 0, most = 0;
    std::string text;  // as a pattern; an atom where quantifiers follow
};

constexpr std::size_t kUnbounded = 1000;

std::string escaped(char32_t c) {
    if (c == '\n') return "\\n";
    const bool special = std::u32string_view(U"-^]\\").find(c) != std::u32string_view::npos;
    return (special ? "\\" : "") + utf8Of(c);
}

// "[...]", with what it comprises of the alphabet.
std::string makeClass(Random &random, Chars &chars, int depth) {
    std::string text;
    for (std::size_t count = 1 + random.below(3); count != 0; --count) {
        const std::size_t form = random.below(4);
        if (form == 0) {
            const Escape &escape = kEscapes[random.below(std::size(kEscapes))];
            text += escape.text;
            chars.insert(escape.in.begin(), escape.in.end());
        } else if (form == 1) {
            char32_t first = random.character(), last = random.character();
            if (last < first) std::swap(first, last);
            text += escaped(first) + "-" + escaped(last);
            for (const char32_t c : kAlphabet) {
                if (c >= first && c <= last) chars.insert(c);
            }
        } else {
            const char32_t c = random.character();
            text += escaped(c);
            chars.insert(c);
        }
    }
    if (random.below(3) == 0) {
        text = "^" + text;
        Chars others;
        for (const char32_t c : kAlphabet) {
            if (!chars.contains(c)) others.insert(c);
        }
        chars = others;
    }
    if (depth < 2 && random.below(4) == 0) {
        Chars less;
        text += "-" + makeClass(random, less, depth + 1);
        for (const char32_t c : less) chars.erase(c);
    }
    return "[" + text + "]";
}

Node makeChars(Random &random) {
    Node node;
    switch (random.below(6)) {
        case 0: {
            node.text = ".";
            node.chars = alphabet();
            node.chars.erase('\n');
            break;
        }
        case 1: {
            const Escape &escape = kEscapes[random.below(std::size(kEscapes))];
            node.text = escape.text;
            node.chars = {escape.in.begin(), escape.in.end()};
            break;
        }
        case 2:
        case 3:
            node.text = makeClass(random, node.chars, 0);
            break;
        default: {
            const char32_t c = random.character();
            node.text = c == '^' || c == '-' ? utf8Of(c) : escaped(c);
            node.chars = {c};
        }
    }
    return node;
}

Node makeNode(Random &random, int depth);

Node makeRepeat(Random &random, int depth) {
    constexpr struct {
        const char *text;
        std::size_t least, most;
    } kQuantifiers[] = {{"?", 0, 1},     {"*", 0, kUnbounded}, {"+", 1, kUnbounded},
                        {"{2}", 2, 2},   {"{0,2}", 0, 2},      {"{1,}", 1, kUnbounded},
                        {"{1,3}", 1, 3}, {"{0}", 0, 0}};
    const auto &quantifier = kQuantifiers[random.below(std::size(kQuantifiers))];
    Node node;
    node.kind = Node::Kind::kRepeat;
    node.children.push_back(makeNode(random, depth + 1));
    node.least = quantifier.least;
    node.most = quantifier.most;
    const Node &item = node.children.front();
    node.text =
        (item.kind == Node::Kind::kChars ? item.text : "(" + item.text + ")") + quantifier.text;
    return node;
}

Node makeNode(Random &random, int depth) {
    if (depth > 3) return makeChars(random);
    const std::size_t form = random.below(6);
    if (form < 2) return makeChars(random);
    if (form == 2) return makeRepeat(random, depth);
    Node node;
    node.kind = form == 3 ? Node::Kind::kChoice : Node::Kind::kSequence;
    for (std::size_t count = random.below(4); count != 0; --count) {
        node.children.push_back(makeNode(random, depth + 1));
        const Node &child = node.children.back();
        const bool choice = node.kind == Node::Kind::kChoice;
        if (choice && node.children.size() > 1) node.text += "|";
        const bool group = !choice && child.kind == Node::Kind::kChoice;
        node.text += group ? "(" + child.text + ")" : child.text;
    }
    if (node.children.empty()) node.kind = Node::Kind::kSequence;
    return node;
}

using Places = std::set<std::size_t>;

// Where a match can end that begins at one of the places.
Places ends(const Node &node, const std::u32string &text, const Places &starts) {
    Places result;
    switch (node.kind) {
        case Node::Kind::kChars:
            for (const std::size_t at : starts) {
                if (at < text.size() && node.chars.contains(text[at])) result.insert(at + 1);
            }
            return result;
        case Node::Kind::kChoice:
            for (const Node &child : node.children) result.merge(ends(child, text, starts));
            return result;
        case Node::Kind::kSequence:
            result = starts;
            for (const Node &child : node.children) result = ends(child, text, result);
            return result;
        case Node::Kind::kRepeat:
            break;
    }
    Places now = starts;
    if (node.least == 0) result = now;
    for (std::size_t count = 1; count <= node.most && count <= text.size() + node.least + 1;
         ++count) {
        now = ends(node.children.front(), text, now);
        if (count >= node.least) result.insert(now.begin(), now.end());
    }
    return result;
}

// A text that matches, most of the time.
void addSample(Random &random, const Node &node, std::u32string &text) {
    if (text.size() > 40) return;
    switch (node.kind) {
        case Node::Kind::kChars: {
            if (node.chars.empty()) return;
            auto c = node.chars.begin();
            std::advance(c, random.below(node.chars.size()));
            text += *c;
            return;
        }
        case Node::Kind::kChoice:
            return addSample(random, node.children[random.below(node.children.size())], text);
        case Node::Kind::kSequence:
            for (const Node &child : node.children) addSample(random, child, text);
            return;
        case Node::Kind::kRepeat:
            break;
    }
    const std::size_t most = std::min(node.most, node.least + 3);
    for (std::size_t count = node.least + random.below(most - node.least + 1); count != 0;
         --count) {
        addSample(random, node.children.front(), text);
    }
}

std::u32string makeText(Random &random, const Node &node) {
    std::u32string text;
    if (random.below(4) != 0) addSample(random, node, text);
    switch (random.below(6)) {
        case 0:
            text += random.character();
            break;
        case 1:
            if (!text.empty()) text[random.below(text.size())] = random.character();
            break;
        case 2:
            if (!text.empty()) text.erase(random.below(text.size()), 1);
            break;
        default:
            break;
    }
    return text;
}

TEST(RandomPattern, MatchesWhatItsTreeMatches) {
    constexpr int kPatterns = support::kSanitized ? 200 : 800;
    Random random(1);
    std::array<int, 2> verdicts{};
    for (int i = 0; i < kPatterns; ++i) {
        const Node node = makeNode(random, 0);
        SCOPED_TRACE(node.text);
        const Compiled all(wholePattern(translatePatterns({node.text}, false).inner));
        const Compiled ascii(wholePattern(translatePatterns({node.text}, true).inner));
        const Compiled items(wholePattern(translateItemPatterns({node.text}, false).inner));
        for (int j = 0; j < 30; ++j) {
            const std::u32string text = makeText(random, node);
            const std::string bytes = gb18030Of(utf8Of(text));
            const bool expected = ends(node, text, {0}).contains(text.size());
            const bool item = !text.empty() && text.find_first_of(U" \n") == text.npos;
            ++verdicts[expected ? 1 : 0];
            ASSERT_EQ(all.matches(bytes), expected) << utf8Of(text);
            ASSERT_EQ(items.matches(bytes), expected && item) << utf8Of(text);
            if (bytes.size() == text.size()) {
                ASSERT_EQ(ascii.matches(bytes), expected) << utf8Of(text);
            }
        }
    }
    EXPECT_GT(verdicts[0], 5 * kPatterns);
    EXPECT_GT(verdicts[1], 5 * kPatterns);
}

}  // namespace
