// What the validator makes of content models, against what they accept by full expansion.
#include "xsd2c/records/greedy.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/schema_maker.h"
#include "tests/support/small_stack.h"
#include "tests/support/written.h"
#include "tests/tools/xsd2c/support/content_models.h"
#include "tests/tools/xsd2c/support/expansion.h"

namespace {

using support::ContentModels;
using xsd2c::findAmbiguities;
using xsd2c::findGreedyFailures;
using xsd2c::Term;

bool isDeterministic(const Term &model) {
    bool tooLarge = false;
    return findAmbiguities(model, tooLarge).empty() && !tooLarge;
}

std::string documentOf(std::string_view word) {
    std::string document = "<r>";
    for (const char letter : word) {
        document += std::string("<") + letter + " xmlns='" + support::namespaceOf(letter) + "'/>";
    }
    return document + "</r>";
}

// The validator, with a compiled content model. "other" is the only wildcard that it may have.
class Validator {
  public:
    explicit Validator(std::string text) {
        for (std::size_t at; (at = text.find("other")) != std::string::npos;) {
            text.replace(at, 5, "any");
        }
        maker_.wildcard({nullptr, "##other", 1, 1, 2});
        maker_.addElement("r", text);
    }
    bool accepts(XML_DOM_Node *document) {
        SchemaErrorInfo error;
        EXPECT_EQ(Schema_ValidateXml(document, &maker_.root(), &error), XML_OK);
        return error.code == 0;
    }
    bool accepts(std::string_view word) { return accepts(support::parsed(documentOf(word)).get()); }

  private:
    support::SchemaMaker maker_;
};

struct Case {
    const char *model;
    const char *word;      // that the model accepts
    const char *failures;  // columns and texts
};

std::string failuresOf(const Term &model) {
    std::string text;
    for (const xsd2c::GreedyFailure &failure : findGreedyFailures(model)) {
        if (!text.empty()) text += "; ";
        text += std::to_string(failure.place.column) + " " + failure.text;
    }
    return text;
}

// The validator refuses the word if and only if there is a failure.
void check(const std::vector<Case> &cases) {
    ContentModels models;
    for (const Case &c : cases) {
        const Term model = models.read(c.model);
        EXPECT_TRUE(isDeterministic(model)) << c.model;
        EXPECT_TRUE(support::Expansion(model).accepts(c.word)) << c.model;
        EXPECT_EQ(failuresOf(model), c.failures) << c.model;
        EXPECT_EQ(Validator(c.model).accepts(c.word), *c.failures == '\0') << c.model;
    }
}

TEST(Greedy, FailsOnGroupsThatHaveToRepeatWithinOthers) {
#define REPEAT "a group that has to repeat within one that may repeat"
    check({
        {"choice{0,u}(choice{2,3}(a,b))", "aaab", "13 " REPEAT},
        {"choice{0,u}(seq{0,u}(choice{2,3}(a,b)))", "aaab", "22 " REPEAT},
        {"choice{2,3}(a,b)", "aab", ""},
        {"seq(choice{2,3}(a,b),c,choice{2,3}(a,b))", "aabcab", ""},
        {"seq{0,u}(choice{2,3}(a,b),c)", "aabcabc", ""},
        {"seq{0,u}(choice{2,3}(a,b),c{0,1})", "aaab", "10 " REPEAT},
        {"choice{0,u}(choice{2,u}(a,b))", "aaab", ""},
        {"choice{0,u}(choice{1,3}(a,b))", "aaab", ""},
        {"choice{0,u}(choice{2,2}(a,b))", "aaab", ""},
        {"choice{0,u}(choice{2,2}(b,a{2,u}))", "baaaab", "13 " REPEAT},
        {"choice{0,u}(choice{2,2}(b,a{2,2}))", "baabaa", ""},
        {"seq{1,2}(choice(c,seq(seq{2,2}(a{1,2},b{0,1}))))", "aaaba", "23 " REPEAT},
        {"seq{0,u}(seq{2,3}(a{0,1},b))", "bbbab", "10 " REPEAT},
        {"seq{0,u}(seq{2,3}(a{0,1},b{0,1}))", "aaab", ""},
    });
#undef REPEAT
}

// An element with several names is compiled as a choice.
TEST(Greedy, FailsOnElementsOfSeveralNames) {
    ContentModels models;
    const auto fails = [&](const char *text) { return failuresOf(models.read(text)); };
    EXPECT_EQ(fails("choice{0,u}(ab{2,3})"),
              "13 a group that has to repeat within one that may repeat");
    EXPECT_EQ(fails("choice{0,u}(ab{0,3})"), "");
    EXPECT_EQ(fails("choice{0,u}(ab{2,2})"), "");
    EXPECT_EQ(fails("choice{0,u}(a{2,3})"), "");
    EXPECT_EQ(fails("seq(ab{2,3})"), "");
}

TEST(Greedy, TakesAllGroupsOnTopOnly) {
    check({
        {"all(a,b{0,1},c)", "cab", ""},
        {"seq(seq(all(a,b)))", "ba", ""},
        {"seq(seq(),all(a,b))", "ba", ""},
        {"seq(all(),a)", "a", ""},
        {"choice(all(a,b),c)", "ba", "8 an 'all' group within another group"},
        {"seq(c,all{0,1}(a,b),d)", "cd", "7 an 'all' group within another group"},
    });
}

TEST(Greedy, TakesSingleElementsInAllGroupsOnly) {
    check({
        {"all(a{0,2},b)", "aab", "5 an element of an 'all' group that may repeat"},
        {"all(a,other)", "xa", "7 an 'all' group with something else than elements"},
        {"all(a,seq(b,c))", "bca", "7 an 'all' group with something else than elements"},
    });
}

// ---- random models ----------------------------------------------------------------------------

struct Tally {
    std::size_t models = 0, failing = 0, words = 0, accepted = 0;
};

// All words of a few letters up to some length, each with its document.
class Words {
  public:
    Words(const std::string &letters, std::size_t longest) {
        words_.push_back({"", support::parsed(documentOf("")), 0});
        for (std::size_t i = 0; i < words_.size(); ++i) {
            if (words_[i].text.size() == longest) continue;
            for (const char letter : letters) {
                const std::string text = words_[i].text + letter;
                words_.push_back({text, support::parsed(documentOf(text)), i});
            }
        }
    }

    void compare(const support::Expansion &expansion, Validator &validator, Tally *tally) const {
        std::vector<support::Expansion::State> states = {expansion.begin()};
        for (std::size_t i = 0; i < words_.size(); ++i) {
            const Word &word = words_[i];
            if (i > 0) states.push_back(expansion.step(states[word.shorter], word.text.back()));
            const bool expected = expansion.accepts(states[i]);
            ASSERT_EQ(validator.accepts(word.document.get()), expected) << '"' << word.text << '"';
            ++tally->words;
            if (expected) ++tally->accepted;
        }
    }

  private:
    struct Word {
        std::string text;
        support::NodePtr document;
        std::size_t shorter;  // the word without its last letter
    };
    std::vector<Word> words_;
};

// Longer words that the model accepts, and such with one letter more, less or exchanged.
void compareLongWords(const support::Expansion &expansion, const std::string &letters,
                      support::RandomModels &random, Validator &validator, Tally *tally) {
    for (int i = 0; i < 12; ++i) {
        std::string word = expansion.randomWord(random, random.below(24));
        const std::size_t at = random.below(static_cast<std::uint32_t>(word.size() + 1));
        const char letter = letters[random.below(static_cast<std::uint32_t>(letters.size()))];
        if (i % 4 == 1) word.insert(at, 1, letter);
        if (i % 4 == 2) word.erase(at, 1);
        if (i % 4 == 3 && at < word.size()) word[at] = letter;
        const bool expected = expansion.accepts(word);
        ASSERT_EQ(validator.accepts(word), expected) << '"' << word << '"';
        ++tally->words;
        if (expected) ++tally->accepted;
    }
}

void compareModels(const support::ModelTaste &taste, const std::string &letters,
                   std::size_t longest, std::uint32_t count, Tally *tally) {
    const Words words(letters, longest);
    ContentModels models;
    for (std::uint32_t seed = 0; seed < count && !testing::Test::HasFatalFailure(); ++seed) {
        support::RandomModels random(seed);
        const std::string text = random.text(taste);
        const Term model = models.read(text);
        if (!isDeterministic(model)) continue;
        ++tally->models;
        if (!findGreedyFailures(model).empty()) {
            ++tally->failing;
            continue;
        }
        const support::Expansion expansion(model);
        if (expansion.tooLarge()) continue;
        SCOPED_TRACE(text);
        Validator validator(text);
        words.compare(expansion, validator, tally);
        compareLongWords(expansion, letters, random, validator, tally);
    }
}

// Where no failure is told, the validator accepts exactly what the model accepts.
TEST(Greedy, FailsNowhereElse) {
    constexpr std::uint32_t kTimes = support::kSanitized ? 1 : 10;
    Tally tally;
    compareModels({.particles = {"a", "b"}, .depth = 3}, "ab", 8, 100 * kTimes, &tally);
    compareModels({.particles = {"a", "b", "c"}, .depth = 2}, "abc", 5, 200 * kTimes, &tally);
    compareModels({.particles = {"a", "b", "other"}, .kinds = 3, .depth = 1}, "abx", 5,
                  200 * kTimes, &tally);
    compareModels({.particles = {"a", "b", "c", "d", "e", "f", "g", "h"}, .depth = 4}, "abh", 2,
                  400 * kTimes, &tally);
    EXPECT_GT(tally.models, 400 * kTimes);
    EXPECT_LT(tally.failing * 10, tally.models);
    EXPECT_GT(tally.words, 80000 * kTimes);
    EXPECT_GT(tally.accepted, 5000 * kTimes);
}

}  // namespace
