// Random content models, with names that stand in one place each, and all short sequences of children,
// against a matcher that tries everything.
#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "compactxml.h"
#include "schema/occurrence.h"
#include "tests/support/schema_maker.h"
#include "tests/support/small_stack.h"
#include "tests/support/written.h"

namespace {

using support::SchemaMaker;

constexpr std::uint32_t kUnbounded = SchemaMaker::kUnbounded;
constexpr std::size_t kMostChildren = 5;
constexpr std::size_t kModels = support::kSanitized ? 60 : 400;

struct Particle {
    enum class Kind { kElement, kSequence, kChoice } kind = Kind::kElement;
    char name = 0;
    std::uint32_t min = 1, max = 1;
    std::vector<Particle> particles;
};

class ModelSource {
  public:
    explicit ModelSource(std::uint32_t seed) : random_(seed) {}

    Particle group(int depth) {
        Particle made;
        made.kind = below(2) ? Particle::Kind::kSequence : Particle::Kind::kChoice;
        bounds(&made);
        const std::uint32_t count = 1 + below(3);
        for (std::uint32_t i = 0; i < count; ++i) {
            if (depth > 0 && below(3) == 0) {
                made.particles.push_back(group(depth - 1));
            } else {
                Particle element;
                element.name = static_cast<char>('a' + names_++);
                bounds(&element);
                made.particles.push_back(element);
            }
        }
        return made;
    }
    int names() const { return names_; }

  private:
    std::uint32_t below(std::uint32_t bound) { return random_() % bound; }
    void bounds(Particle *particle) {
        constexpr std::uint32_t kPairs[][2] = {{1, 1},          {1, 1}, {0, 1}, {0, kUnbounded},
                                               {1, kUnbounded}, {1, 2}, {2, 2}, {0, 2},
                                               {2, 3},          {1, 3}, {3, 3}, {2, kUnbounded}};
        const auto &pair = kPairs[below(std::size(kPairs))];
        particle->min = pair[0];
        particle->max = pair[1];
    }

    std::mt19937 random_;
    int names_ = 0;
};

std::string textOf(const Particle &particle) {
    const std::string max = particle.max == kUnbounded ? "u" : std::to_string(particle.max);
    const std::string bounds = "{" + std::to_string(particle.min) + "," + max + "}";
    if (particle.kind == Particle::Kind::kElement) return particle.name + bounds;
    std::string text = (particle.kind == Particle::Kind::kSequence ? "seq" : "choice") + bounds;
    const char *separator = "(";
    for (const Particle &inner : particle.particles) {
        text += separator + textOf(inner);
        separator = ",";
    }
    return text + ")";
}

// Sets of positions in a word, as bits.
using Positions = std::uint32_t;

Positions match(const Particle &particle, Positions from, const std::string &word);

Positions matchOnce(const Particle &particle, Positions from, const std::string &word) {
    Positions to = 0;
    switch (particle.kind) {
        case Particle::Kind::kElement:
            for (std::size_t i = 0; i < word.size(); ++i) {
                if ((from >> i & 1) && word[i] == particle.name) to |= 2u << i;
            }
            return to;
        case Particle::Kind::kSequence:
            for (const Particle &inner : particle.particles) from = match(inner, from, word);
            return from;
        case Particle::Kind::kChoice:
            for (const Particle &inner : particle.particles) to |= match(inner, from, word);
            return to;
    }
    return 0;
}

Positions match(const Particle &particle, Positions from, const std::string &word) {
    // More repetitions than there are children add nothing new once empty ones have been counted.
    const std::uint32_t most = std::min<std::uint32_t>(particle.max, 3 * kMostChildren);
    Positions to = 0;
    for (std::uint32_t count = 0; count <= most && from != 0; ++count) {
        if (count >= particle.min) to |= from;
        from = matchOnce(particle, from, word);
    }
    return to;
}

bool isValid(const Particle &model, const std::string &word) {
    return match(model, 1, word) >> word.size() & 1;
}

// Whether greedy matching can fall short of a model: a group that must repeat within one that may.
bool isBeyondGreed(const Particle &particle, bool inRepeat) {
    if (particle.kind == Particle::Kind::kElement) return false;
    if (inRepeat && particle.min >= 2) return true;
    for (const Particle &inner : particle.particles) {
        if (isBeyondGreed(inner, inRepeat || particle.max > 1)) return true;
    }
    return false;
}

struct Tally {
    std::size_t cases = 0, valid = 0, refused = 0;
};

void compare(std::uint32_t seed, Tally *tally) {
    ModelSource source(seed);
    const Particle model = source.group(2);
    if (source.names() > 5) return;
    SchemaMaker maker;
    maker.addElement("r", textOf(model));
    const std::string letters =
        std::string("abcde").substr(0, static_cast<std::size_t>(source.names())) + "z";
    std::vector<std::string> words = {""};
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string word = words[i];
        if (word.size() < kMostChildren) {
            for (const char letter : letters) words.push_back(word + letter);
        }
        std::string document = "<r>";
        for (const char letter : word) document += std::string("<") + letter + "/>";
        const support::NodePtr tree = support::parsed(document + "</r>");
        SchemaErrorInfo error;
        ASSERT_EQ(Schema_ValidateXml(tree.get(), &maker.root(), &error), XML_OK);
        const bool expected = isValid(model, word);
        ++tally->cases;
        if (expected) ++tally->valid;
        if (error.code == 0) {
            ASSERT_TRUE(expected) << "accepted: " << textOf(model) << " with \"" << word << "\"";
        } else if (expected) {
            ++tally->refused;
            EXPECT_TRUE(isBeyondGreed(model, false))
                << "refused: " << textOf(model) << " with \"" << word << "\", code " << error.code;
        }
    }
}

TEST(ContentModelRandom, AcceptsNothingInvalidAndNearlyAllThatIsValid) {
    Tally tally;
    for (std::uint32_t seed = 0; seed < kModels && !testing::Test::HasFatalFailure(); ++seed) {
        compare(seed, &tally);
    }
    EXPECT_GT(tally.cases, 250 * kModels);
    EXPECT_GT(tally.valid, 8 * kModels);
    EXPECT_LT(tally.refused * 200, tally.valid) << tally.refused << " of " << tally.valid;
}

// ---------------------------------------------------------------- occurrences

// How often something may occur, told as a search for divisors. Only for numbers that it ends for.
bool literalCheck(std::uint64_t count, std::uint64_t min, std::uint64_t max) {
    if (count < min) return false;
    if (min == 0) {
        if (count == 0) return true;
        min = 1;
    }
    std::uint64_t q = count / min, r = count % min;
    if (r != 0) {
        if (max == min) return false;
        if (r >= q) {
            for (std::uint64_t d = min + 1;; ++d) {
                if (d > count) return false;
                q = count / d;
                r = count % d;
                if (r == 0) break;
                if (d == max) return false;
                if (r < q) break;
            }
        }
    }
    q = count / max;
    if (q == 0) return true;
    r = count % max;
    if (r == 0) return true;
    if (max == min) return false;
    if (max - r <= q) return true;
    std::uint64_t tries = 0;
    for (std::uint64_t d = max - 1;; --d) {
        q = count / d;
        if (q == 0) return true;
        r = count % d;
        if (r == 0) return true;
        if (++tries >= max - min) return false;
        if (d - r <= q) return true;
    }
}

TEST(Occurrence, AgreesWithTheSearchForDivisors) {
    for (std::uint32_t count = 0; count <= 60; ++count) {
        for (std::uint32_t min = 0; min <= 40; ++min) {
            for (std::uint32_t max = std::max(min, 1u); max <= 44; ++max) {
                ASSERT_EQ(cxml::Schema_CheckOccurs(count, min, max), literalCheck(count, min, max))
                    << count << " of " << min << " to " << max;
            }
        }
    }
    std::mt19937 random(7);
    for (int i = 0; i < 200000; ++i) {
        const std::uint32_t min = random() % 3000;
        const std::uint32_t max = min + 1 + random() % 50;
        const std::uint32_t count = random() % 100000;
        ASSERT_EQ(cxml::Schema_CheckOccurs(count, min, max), literalCheck(count, min, max))
            << count << " of " << min << " to " << max;
    }
}

TEST(Occurrence, OfTheGreatestNumbers) {
    EXPECT_TRUE(cxml::Schema_CheckOccurs(0, 0, 0));
    EXPECT_FALSE(cxml::Schema_CheckOccurs(1, 0, 0));
    EXPECT_FALSE(cxml::Schema_CheckOccurs(0, 1, kUnbounded));
    EXPECT_TRUE(cxml::Schema_CheckOccurs(1, 1, kUnbounded));
    EXPECT_TRUE(cxml::Schema_CheckOccurs(kUnbounded, 0, kUnbounded));
    EXPECT_TRUE(cxml::Schema_CheckOccurs(kUnbounded, kUnbounded, kUnbounded));
    EXPECT_FALSE(cxml::Schema_CheckOccurs(kUnbounded - 1, kUnbounded, kUnbounded));
    EXPECT_FALSE(cxml::Schema_CheckOccurs(kUnbounded, kUnbounded - 1, kUnbounded - 1));
}

}  // namespace
