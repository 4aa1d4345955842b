#include "xsd2c/pattern/ere_cost.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "xsd2c/pattern/pattern.h"

namespace xsd2c {
namespace {

// How often what is reached from an exit is kept, as measured.
constexpr double kExitFactor = 3;

struct Cost {
    double nodes = 0;   // of the automaton, repetitions written out
    double starts = 0;  // those that can be reached from the beginning without a byte between
    double exits = 0;   // those from which the end can be reached so
    double sets = 0;    // entries in the sets of all that can be reached so from each
    bool nullable = true;
};

Cost oneByte() {
    return {1, 1, 0, 0, false};
}

Cost sequence(const Cost &a, const Cost &b) {
    return {a.nodes + b.nodes, a.starts + (a.nullable ? b.starts : 0),
            b.exits + (b.nullable ? a.exits : 0),
            a.sets + b.sets + kExitFactor * a.exits * b.starts, a.nullable && b.nullable};
}

Cost choice(const Cost &a, const Cost &b) {
    const double starts = a.starts + b.starts + 1;
    const bool nullable = a.nullable || b.nullable;
    return {a.nodes + b.nodes + 1, starts, a.exits + b.exits + (nullable ? 1 : 0),
            a.sets + b.sets + starts, nullable};
}

// The C library writes repetitions out, and puts the optional ones around each other: a match can
// begin with each of them.
Cost repetition(const Cost &item, double least, double most, bool unbounded) {
    const double copies = unbounded ? least + 1 : most;
    const double optional = copies - least;
    const double pairs = copies * (copies + 1) / 2;
    const double optionalPairs = optional * (optional + 1) / 2;
    Cost result;
    result.nodes = copies * item.nodes + optional;
    result.nullable = least == 0 || item.nullable;
    const double reach = item.nullable ? copies : least == 0 ? optional : 1;
    result.starts = reach * item.starts + optional;
    result.exits = (item.nullable ? copies : 1) * item.exits + (optional > 0 ? 1 : 0);
    result.sets = copies * item.sets + optionalPairs * (item.starts + 1) +
                  kExitFactor * (item.nullable ? pairs : copies) * item.exits * item.starts;
    return result;
}

// Reads expressions of the kind that Ere writes.
class Reader {
  public:
    explicit Reader(std::string_view ere) : text_(ere) {}

    Cost read() {
        levels_.emplace_back();
        while (at_ < text_.size()) readNext();
        Level &level = levels_.back();
        return level.isChoice ? choice(level.before, level.finish()) : level.finish();
    }

  private:
    struct Level {
        Cost before;    // the branches that are done
        Cost sequence;  // the branch at hand, but for its last atom
        Cost atom;
        bool isChoice = false;

        void add(const Cost &next) {
            finish();
            atom = next;
        }
        Cost finish() {
            sequence = xsd2c::sequence(sequence, atom);
            atom = {};
            return sequence;
        }
        void endBranch() {
            before = isChoice ? choice(before, finish()) : finish();
            isChoice = true;
            sequence = {};
        }
    };

    void readNext() {
        const char c = text_[at_++];
        Level &level = levels_.back();
        switch (c) {
            case '(':
                levels_.emplace_back();
                return;
            case ')':
                return closeGroup();
            case '|':
                return level.endBranch();
            case '*':
            case '+':
                level.atom = repetition(level.atom, c == '+' ? 1 : 0, 0, true);
                return;
            case '?':
                level.atom = repetition(level.atom, 0, 1, false);
                return;
            case '{':
                return readInterval();
            case '[':
                skipBracket();
                break;
            case '\\':
                ++at_;
                break;
            default:
                break;
        }
        level.add(oneByte());
    }

    void closeGroup() {
        if (levels_.size() == 1) return;  // a plain character
        Level level = levels_.back();
        levels_.pop_back();
        levels_.back().add(level.isChoice ? choice(level.before, level.finish()) : level.finish());
    }

    void skipBracket() {
        if (text_.substr(at_).starts_with('^')) ++at_;
        const std::size_t end = text_.find(']', at_ + 1);  // the first one may be a character
        at_ = end == text_.npos ? text_.size() : end + 1;
    }

    double readNumber() {
        double number = 0;
        for (; at_ < text_.size() && text_[at_] >= '0' && text_[at_] <= '9'; ++at_) {
            number = number * 10 + (text_[at_] - '0');
        }
        return number;
    }

    void readInterval() {
        const double least = readNumber();
        double most = least;
        bool unbounded = false;
        if (at_ < text_.size() && text_[at_] == ',') {
            ++at_;
            unbounded = at_ < text_.size() && text_[at_] == '}';
            if (!unbounded) most = readNumber();
        }
        ++at_;  // the "}"
        Cost &atom = levels_.back().atom;
        atom = repetition(atom, least, std::max(least, most), unbounded);
    }

    std::string_view text_;
    std::size_t at_ = 0;
    std::vector<Level> levels_;
};

// Measured with regcomp of glibc 2.36: \w 64 times over, an expression of 7 kB, takes 23 MB and
// 27 to 46 ms; any character 4000 times over 4 MB and 4 ms; a literal of 100000 characters 11 MB
// and 15 ms; one of 5000 words 10 MB and 58 ms; "a*" 1000 times over 17 MB and 23 ms. The estimates
// lie between half of that and a third more.
constexpr double kBytesOfNode = 120, kBytesOfSetEntry = 5;
constexpr double kMostBytes = 22e6;

}  // namespace

double estimatedCost(std::string_view ere) {
    const Cost cost = Reader(ere).read();
    return cost.nodes * kBytesOfNode + cost.sets * kBytesOfSetEntry;
}

void checkCost(std::string_view ere) {
    if (estimatedCost(ere) > kMostBytes) throw NoTranslation(kTooLarge);
}

}  // namespace xsd2c
