// tests/tools/xsd2c/support/expansion.h - an automaton that says by full expansion what content
// models accept and where they are ambiguous.
#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tests/tools/xsd2c/support/content_models.h"

namespace support {

// A model with all repetitions written out: the automaton of its positions (Glushkov).
class Expansion {
  public:
    explicit Expansion(const xsd2c::Term &model);

    bool tooLarge() const { return tooLarge_; }
    using State = std::set<std::size_t>;  // positions that the last child may have
    State begin() const { return {0}; }
    State step(const State &state, char child) const;
    bool accepts(const State &state) const;
    bool accepts(std::string_view word) const;

    // All pairs of particles that can take the same child behind the same ones, by their columns.
    std::set<std::pair<int, int>> ambiguities();

    // A random word that the model accepts, unless that gets too long.
    std::string randomWord(RandomModels &random, std::size_t length) const;

  private:
    struct Part {
        bool emptiable = true;
        std::vector<std::size_t> first, last;
    };
    struct Position {
        const xsd2c::Term *particle = nullptr;
        std::string letters;  // that it takes, and further ones for other names
        State follow;
    };

    Part repeated(const xsd2c::Term &term);
    Part once(const xsd2c::Term &term);
    Part inAnyOrder(const xsd2c::Term &all);
    Part oneAfterTheOther(const Part &a, const Part &b);
    void conflicts(const State &state, std::set<std::pair<int, int>> *found) const;

    std::vector<Position> positions_;  // the first stands for the beginning
    Part whole_;
    bool tooLarge_ = false;
};

}  // namespace support
