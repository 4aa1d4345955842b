// tests/tools/xsd2c/support/content_models.h - content models from short texts, and random ones.
//
// Children are letters: a, b and c are elements of these names and of no namespace, x and y are of
// namespace "u". Others are not read.
#pragma once

#include <cstdint>
#include <deque>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "xsd2c/records/determinism.h"

namespace support {

inline constexpr char kLetters[] = "abcxy";

// The namespace of the elements that a letter stands for.
const char *namespaceOf(char letter);

// The letters whose elements a particle takes; v and w are of namespaces of their own.
std::string lettersOf(const xsd2c::Term &particle);

// Makes content models; they live as long as this.
//
// Texts are those of SchemaMaker, as in "seq{0,u}(a, choice(b{1,2}, ab), any)". Particles have the
// place where they stand in the text: line 1, and columns from 1. There are further ones:
//
//   ab              an element with two names
//   any             a wildcard that admits all namespaces
//   other           all but none; otherU: all but none and "u"
//   listU, listV    "u" or "v" alone
//   none            elements of no namespace
//   both            "u", or none
class ContentModels {
  public:
    ContentModels();
    xsd2c::Term read(std::string_view text);

  private:
    friend class ContentModelReader;
    std::deque<std::pair<std::string, xsd2c::Wildcard>> wildcards_;
};

// What random models are made of.
struct ModelTaste {
    std::vector<std::string> particles;
    std::uint32_t kinds = 2;  // of groups: 2 are sequences and choices, 3 all groups as well
    int depth = 2;
    bool simpleBounds = false;  // none greater than 1 but for unbounded
};

class RandomModels {
  public:
    explicit RandomModels(std::uint32_t seed) : random_(seed) {}
    std::uint32_t below(std::uint32_t bound) {
        return static_cast<std::uint32_t>(random_()) % bound;
    }
    const std::string &oneOf(const std::vector<std::string> &texts) {
        return texts[below(static_cast<std::uint32_t>(texts.size()))];
    }
    // The text of a model.
    std::string text(const ModelTaste &taste) { return group(taste, taste.depth); }

  private:
    std::string group(const ModelTaste &taste, int depth);
    std::string allGroup(const ModelTaste &taste);
    std::string bounds(const ModelTaste &taste);

    std::mt19937 random_;
};

}  // namespace support
