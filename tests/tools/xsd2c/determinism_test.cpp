#include "xsd2c/records/determinism.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/small_stack.h"
#include "tests/tools/xsd2c/support/content_models.h"
#include "tests/tools/xsd2c/support/expansion.h"

namespace {

using support::ContentModels;
using xsd2c::Ambiguity;
using xsd2c::findAmbiguities;
using xsd2c::kUnbounded;
using xsd2c::Term;

// The ambiguities of a model, with the columns of the particles.
std::string ambiguitiesOf(const Term &model) {
    bool tooLarge = true;
    std::string text;
    for (const Ambiguity &ambiguity : findAmbiguities(model, tooLarge)) {
        if (!text.empty()) text += "; ";
        text += std::to_string(ambiguity.first.column) + " " +
                std::to_string(ambiguity.second.column) + " " + ambiguity.child;
    }
    return text + (tooLarge ? " too large" : "");
}

struct Case {
    const char *model;
    const char *ambiguities;
};

void check(const std::vector<Case> &cases) {
    ContentModels models;
    for (const Case &c : cases) {
        EXPECT_EQ(ambiguitiesOf(models.read(c.model)), c.ambiguities) << c.model;
    }
}

TEST(Determinism, ComparesWhatCompetes) {
    check({
        {"seq()", ""},
        {"seq(a,a)", ""},
        {"seq(a,b,a)", ""},
        {"seq(a{0,1},a)", "5 12 element 'a'"},
        {"seq(a{0,1},b{0,1},a)", "5 19 element 'a'"},
        {"seq(a{0,1},b,a)", ""},
        {"choice(a,b,a)", "8 12 element 'a'"},
        {"choice(seq(a,b),seq(b,a))", ""},
        {"choice(seq(a,b),seq(a,c))", "12 21 element 'a'"},
        {"choice(seq(b{0,1},a),a)", "19 22 element 'a'"},
        {"seq(choice(a,b{0,1}),seq(),a)", "12 28 element 'a'"},
        {"choice(a,a,a)", "8 10 element 'a'; 8 12 element 'a'; 10 12 element 'a'"},
        {"choice(ab,bc)", "8 11 element 'b'"},
        {"choice(xy,ab)", ""},
        {"seq{0,0}(a{0,1},a)", ""},
        {"seq(a{0,1},seq{0,0}(a),b)", ""},
    });
}

TEST(Determinism, CountsRepetitions) {
    check({
        {"seq(a{2,2},a)", ""},
        {"seq(a{1,2},a)", "5 12 element 'a'"},
        {"seq(a{2,u},a)", "5 12 element 'a'"},
        {"seq(a{5000,5000},a)", ""},
        {"seq(a{5000,5001},a)", "5 18 element 'a'"},
        {"seq(seq{2,2}(a,b),a)", ""},
        {"seq(seq{1,2}(a,b),a)", "14 19 element 'a'"},
        {"choice(a{2,2},a)", "8 15 element 'a'"},
        {"seq(seq{2,2}(a{2,2},b{0,1}),a)", ""},
        {"seq(seq{2,2}(a{2,2},b{0,1}),b)", "21 29 element 'b'"},
        {"seq(seq{2,2}(a{0,1},b{0,1}),a)", "14 29 element 'a'"},
        {"seq{0,u}(a,b{0,1},a{0,1})", "10 19 element 'a'"},
        {"seq{0,u}(a,b,a)", ""},
        {"seq{2,2}(a,b{0,1},a)", ""},
        {"seq{2,2}(a,b,a{0,1})", "10 14 element 'a'"},
        {"choice{0,u}(a{0,u},b{0,u})", ""},
        {"seq(a{0,1},seq{0,u}(b,a))", ""},
        {"seq(seq{0,u}(b{0,1}),choice(c,b))", "14 31 element 'b'"},
    });
}

// The same children may be repetitions of an inner group or of an outer one.
TEST(Determinism, KnowsWhatCanBeRegrouped) {
    check({
        {"seq(seq{2,2}(b{0,1},a{1,2}),b)", "14 29 element 'b'"},
        {"seq(seq{2,2}(b{0,1},a{2,3}),b)", ""},
        {"seq(seq{3,3}(b{0,1},a{2,3}),b)", "14 29 element 'b'"},
        {"seq(seq{2,2}(b{0,1},a{2,4}),b)", "14 29 element 'b'"},
        {"seq(choice{2,2}(b,seq(seq{1,u}(a,c))),b)", "17 39 element 'b'"},
        {"seq(choice{2,2}(b,seq(c,seq{1,u}(a))),b)", ""},
        {"seq(choice{2,2}(a{2,u},b),b)", "24 27 element 'b'"},
    });
}

TEST(Determinism, TakesAnyOrder) {
    check({
        {"all(a,b,c)", ""},
        {"all(a,b{0,1},a)", "5 14 element 'a'"},
        {"all(ab,bc)", "5 8 element 'b'"},
        {"seq(all(a,b),a)", ""},
        {"seq(all(a{0,1},b),a)", "9 19 element 'a'"},
        {"seq(all{0,1}(a,b),a)", "14 19 element 'a'"},
    });
}

TEST(Determinism, SeesWhatWildcardsAdmit) {
    check({
        {"seq(any{0,1},a)", "5 14 element 'a'"},
        {"seq(any,a)", ""},
        {"seq(a{0,1},any)", "5 12 element 'a'"},
        {"choice(other,a)", ""},
        {"choice(other,x)", "8 14 element 'x'"},
        {"choice(otherU,a,x)", ""},
        {"choice(listU,listV,none)", ""},
        {"choice(none,a)", "8 13 element 'a'"},
        {"choice(none,ax)", "8 13 element 'a'"},
        {"choice(listU,ax)", "8 14 element 'x'"},
        {"choice(ax,listU)", "8 11 element 'x'"},
        {"choice(ax,otherU)", ""},
        {"choice(ax,other)", "8 11 element 'x'"},
        {"choice(both,listU)", "8 13 an element of namespace 'u'"},
        {"choice(none,both)", "8 13 an element of no namespace"},
        {"choice(both,other)", "8 13 an element of namespace 'u'"},
        {"choice(other,both)", "8 14 an element of namespace 'u'"},
        {"choice(otherU,both)", ""},
        {"choice(any,none)", "8 12 an element of no namespace"},
        {"choice(any,any)", "8 12 an element of any namespace"},
        {"choice(any,otherU)", "8 12 an element of any namespace but 'u'"},
        {"choice(other,otherU)", "8 14 an element of any namespace but 'u'"},
        {"choice(otherU,otherU)", "8 15 an element of any namespace but 'u'"},
        {"seq(any{0,u})", ""},
        {"seq(any{0,u},any)", "5 14 an element of any namespace"},
    });
}

TEST(Determinism, NamesWhatTwoWildcardsLeaveOut) {
    xsd2c::Wildcard a, b;
    a.names = b.names = xsd2c::Wildcard::Names::kOther;
    a.targetNs = "a";
    b.targetNs = "b";
    Term model;
    model.kind = Term::Kind::kChoice;
    model.children.resize(2);
    model.children[0].kind = model.children[1].kind = Term::Kind::kWildcard;
    model.children[0].wildcard = &a;
    model.children[1].wildcard = &b;
    EXPECT_EQ(ambiguitiesOf(model), "0 0 an element of any namespace but 'a' and 'b'");
}

// Against full expansion, pair for pair.
TEST(Determinism, AgreesWithExpansion) {
    constexpr std::uint32_t kModels = support::kSanitized ? 1500 : 15000;
    const std::vector<std::vector<std::string>> tastes = {
        {"a", "b"},
        {"a", "b", "c"},
        {"a", "b", "c", "x"},
        {"a", "b", "x", "y", "ab", "ax", "any", "other", "otherU", "listU", "listV", "none",
         "both"},
    };
    ContentModels models;
    std::size_t without = 0, with = 0;
    for (std::uint32_t seed = 0; seed < kModels; ++seed) {
        support::RandomModels random(seed);
        const std::string text = random.text({.particles = tastes[seed % 4],
                                              .kinds = 2 + seed / 4 % 2,
                                              .depth = static_cast<int>(seed / 8 % 4),
                                              .simpleBounds = seed / 32 % 2 == 0});
        const Term model = models.read(text);
        support::Expansion expansion(model);
        const std::set<std::pair<int, int>> expected = expansion.ambiguities();
        if (expansion.tooLarge()) continue;
        bool tooLarge = true;
        std::set<std::pair<int, int>> found;
        for (const Ambiguity &ambiguity : findAmbiguities(model, tooLarge)) {
            const bool isNew =
                found.emplace(ambiguity.first.column, ambiguity.second.column).second;
            EXPECT_TRUE(isNew) << text;
        }
        ASSERT_EQ(found, expected) << text;
        ASSERT_FALSE(tooLarge);
        ++(expected.empty() ? without : with);
    }
    EXPECT_GT(without, kModels / 3);
    EXPECT_GT(with, kModels / 3);
}

// ---- large models -----------------------------------------------------------------------------

Term group(Term::Kind kind, std::uint32_t minOccurs, std::uint32_t maxOccurs) {
    Term term;
    term.kind = kind;
    term.minOccurs = minOccurs;
    term.maxOccurs = maxOccurs;
    return term;
}

Term element(const std::string &name, std::uint32_t minOccurs = 1) {
    Term term = group(Term::Kind::kElement, minOccurs, 1);
    term.names.push_back({"", name});
    return term;
}

TEST(Determinism, TakesManyAlternatives) {
    for (const Term::Kind kind : {Term::Kind::kChoice, Term::Kind::kSequence, Term::Kind::kAll}) {
        Term model = group(kind, 0, kUnbounded);
        for (int i = 0; i < 50000; ++i) {
            model.children.push_back(element("e" + std::to_string(i), 0));
        }
        EXPECT_EQ(ambiguitiesOf(model), "");
        model.children.back().names.push_back({"", "e7"});
        EXPECT_EQ(ambiguitiesOf(model), "0 0 element 'e7'");
    }
}

TEST(Determinism, TakesDeepModels) {
    for (const std::uint32_t count : {1u, 2u, kUnbounded}) {
        Term model = element("e");
        for (int depth = 0; depth < 510; ++depth) {
            Term outer = group(Term::Kind::kSequence, count == 2 ? 2 : 0, count);
            outer.children.push_back(element("e" + std::to_string(depth), 0));
            outer.children.push_back(std::move(model));
            model = std::move(outer);
        }
        EXPECT_EQ(ambiguitiesOf(model), "");
    }
}

TEST(Determinism, GivesUpOnTooManyAmbiguities) {
    Term model = group(Term::Kind::kChoice, 1, 1);
    for (int i = 0; i < 20000; ++i) model.children.push_back(element("e"));
    bool tooLarge = false;
    EXPECT_EQ(findAmbiguities(model, tooLarge).size(), 1000u);
    EXPECT_TRUE(tooLarge);
}

}  // namespace
