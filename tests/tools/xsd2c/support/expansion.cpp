#include "tests/tools/xsd2c/support/expansion.h"

#include <algorithm>
#include <iterator>
#include <map>

namespace support {

using xsd2c::kUnbounded;
using xsd2c::Term;

namespace {

constexpr std::size_t kMostPositions = 600;
constexpr std::size_t kMostStates = 3000;

bool haveCommon(const std::string &a, const std::string &b) {
    return a.find_first_of(b) != std::string::npos;
}

void append(std::vector<std::size_t> *to, const std::vector<std::size_t> &more) {
    to->insert(to->end(), more.begin(), more.end());
}

}  // namespace

Expansion::Expansion(const Term &model) : positions_(1) {
    whole_ = repeated(model);
    positions_[0].follow.insert(whole_.first.begin(), whole_.first.end());
    if (whole_.emptiable) whole_.last.push_back(0);
}

Expansion::Part Expansion::oneAfterTheOther(const Part &a, const Part &b) {
    for (const std::size_t position : a.last) {
        positions_[position].follow.insert(b.first.begin(), b.first.end());
    }
    Part both = {a.emptiable && b.emptiable, a.first, b.last};
    if (a.emptiable) append(&both.first, b.first);
    if (b.emptiable) append(&both.last, a.last);
    return both;
}

Expansion::Part Expansion::repeated(const Term &term) {
    tooLarge_ = tooLarge_ || positions_.size() > kMostPositions;
    if (tooLarge_) return {};
    Part part;
    if (term.maxOccurs == kUnbounded) {
        const Part again = once(term);
        part = oneAfterTheOther(again, again);
        part.first = again.first;
        part.last = again.last;
        part.emptiable = true;
    } else {
        for (std::uint32_t i = term.minOccurs; i < term.maxOccurs; ++i) {
            part = oneAfterTheOther(once(term), part);
            part.emptiable = true;
        }
    }
    for (std::uint32_t i = 0; i < term.minOccurs; ++i) part = oneAfterTheOther(once(term), part);
    return part;
}

Expansion::Part Expansion::once(const Term &term) {
    Part part;
    if (term.kind == Term::Kind::kElement || term.kind == Term::Kind::kWildcard) {
        const std::size_t number = positions_.size();
        positions_.push_back({&term, lettersOf(term), {}});
        return {false, {number}, {number}};
    }
    if (term.kind == Term::Kind::kAll) return inAnyOrder(term);
    if (term.kind == Term::Kind::kSequence) {
        for (const Term &child : term.children) part = oneAfterTheOther(part, repeated(child));
        return part;
    }
    part.emptiable = term.children.empty();
    for (const Term &child : term.children) {
        const Part one = repeated(child);
        part.emptiable = part.emptiable || one.emptiable;
        append(&part.first, one.first);
        append(&part.last, one.last);
    }
    return part;
}

Expansion::Part Expansion::inAnyOrder(const Term &all) {
    std::vector<const Term *> order;
    for (const Term &child : all.children) order.push_back(&child);
    std::sort(order.begin(), order.end());
    Part part;
    part.emptiable = order.empty();
    do {
        Part one;
        for (const Term *child : order) one = oneAfterTheOther(one, repeated(*child));
        part.emptiable = part.emptiable || one.emptiable;
        append(&part.first, one.first);
        append(&part.last, one.last);
    } while (std::next_permutation(order.begin(), order.end()));
    return part;
}

Expansion::State Expansion::step(const State &state, char child) const {
    State next;
    for (const std::size_t from : state) {
        for (const std::size_t to : positions_[from].follow) {
            if (positions_[to].letters.find(child) != std::string::npos) next.insert(to);
        }
    }
    return next;
}

bool Expansion::accepts(const State &state) const {
    return std::any_of(whole_.last.begin(), whole_.last.end(),
                       [&](std::size_t last) { return state.count(last) != 0; });
}

bool Expansion::accepts(std::string_view word) const {
    State state = begin();
    for (const char child : word) state = step(state, child);
    return accepts(state);
}

void Expansion::conflicts(const State &state, std::set<std::pair<int, int>> *found) const {
    for (const std::size_t a : state) {
        for (const std::size_t b : state) {
            const Position &one = positions_[a], &other = positions_[b];
            if (one.particle == other.particle || !haveCommon(one.letters, other.letters)) continue;
            found->insert(std::minmax(one.particle->place.column, other.particle->place.column));
        }
    }
}

std::set<std::pair<int, int>> Expansion::ambiguities() {
    std::set<std::pair<int, int>> found;
    // The copies of a particle that the last child may have been; they look the same.
    std::set<State> known = {begin()};
    std::vector<State> open = {begin()};
    while (!open.empty() && !tooLarge_) {
        const State state = std::move(open.back());
        open.pop_back();
        State next;
        for (const std::size_t position : state) {
            const State &follow = positions_[position].follow;
            next.insert(follow.begin(), follow.end());
        }
        conflicts(next, &found);
        std::map<const Term *, State> copies;
        for (const std::size_t position : next) {
            copies[positions_[position].particle].insert(position);
        }
        for (const auto &[particle, some] : copies) {
            if (known.insert(some).second) open.push_back(some);
        }
        tooLarge_ = known.size() > kMostStates;
    }
    return found;
}

std::string Expansion::randomWord(RandomModels &random, std::size_t length) const {
    std::string word;
    for (std::size_t at = 0;;) {
        const State &follow = positions_[at].follow;
        const bool mayEnd =
            std::find(whole_.last.begin(), whole_.last.end(), at) != whole_.last.end();
        if (follow.empty() || word.size() > 3 * length) return word;
        if (mayEnd && word.size() >= length) return word;
        const std::uint32_t chosen = random.below(static_cast<std::uint32_t>(follow.size()));
        at = *std::next(follow.begin(), static_cast<std::ptrdiff_t>(chosen));
        word += positions_[at].letters.front();
    }
}

}  // namespace support
