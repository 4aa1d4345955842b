#include "schema/pattern_automaton.h"

#include <locale.h>
#include <clocale>
#include <cstring>

#include "io/wrapping.h"

namespace cxml {
namespace {

// Instead of a row: no text that begins so matches; not known yet.
constexpr std::uint16_t kDead = 0xFFFE, kMissing = 0xFFFF;

bool isPlain(int category) {
    const char *name = std::setlocale(category, nullptr);
    return name && (std::strcmp(name, "C") == 0 || std::strcmp(name, "POSIX") == 0);
}

}  // namespace

bool PatternAutomaton::suitsLocale() noexcept {
    return ::uselocale(locale_t{}) == LC_GLOBAL_LOCALE && isPlain(LC_CTYPE) && isPlain(LC_COLLATE);
}

bool PatternAutomaton::compile() noexcept {
    if (!readPattern(pattern_, bytes_, &program_)) return false;
    if (!provideScratch()) return false;
    divideBytes();
    reach(program_.start);
    return stateOfReached() < kDead;
}

bool PatternAutomaton::provideScratch() noexcept {
    const std::size_t nodes = program_.nodes.size();
    const std::size_t words = nodes / 64 + 1, before = scratch_.reached.size();
    if (!scratch_.stack.reserve(nodes)) return false;
    if (words <= before) return true;
    if (!scratch_.reached.reserve(words - before)) return false;
    std::memset(scratch_.reached.tail(), 0, (words - before) * sizeof(std::uint64_t));
    scratch_.reached.extend(words - before);
    return true;
}

// Finds where nodes begin or cease to take bytes; between two such places all bytes are alike.
void PatternAutomaton::divideBytes() noexcept {
    ByteSet begins{};
    const auto addSet = [&begins](const ByteSet &set) {
        std::uint64_t before = 0;  // the bit in front of each word
        for (int i = 0; i < 4; ++i) {
            begins.bits[i] |= set.bits[i] ^ (set.bits[i] << 1 | before);
            before = set.bits[i] >> 63;
        }
    };
    for (std::size_t i = 0; i < program_.sets.size(); ++i) addSet(program_.sets[i]);
    for (std::size_t i = 0; i < program_.nodes.size(); ++i) {
        const PatternNode &node = program_.nodes[i];
        if (node.kind != PatternNode::kRange) continue;
        begins.add(node.first);
        begins.add((node.last + 1u) % 256);  // 0 begins anyway
    }
    begins.bits[0] &= ~std::uint64_t{1};
    unsigned first = 0, count = 0;  // of the present class, and of all before it
    const auto close = [&](unsigned end) {
        std::memset(classOf_ + first, static_cast<int>(count), end - first);
        sample_[count++] = static_cast<std::uint8_t>(first);
        first = end;
    };
    for (unsigned i = 0; i < 4; ++i) {
        for (std::uint64_t word = begins.bits[i]; word != 0; word &= word - 1) {
            close(i * 64 + static_cast<unsigned>(__builtin_ctzll(word)));
        }
    }
    close(256);
    width_ = count + 1;
}

bool PatternAutomaton::takes(const PatternNode &node, unsigned byte) noexcept {
    if (node.kind == PatternNode::kRange) return byte >= node.first && byte <= node.last;
    return node.kind == PatternNode::kSet && program_.sets[node.other].has(byte);
}

// Marks a node and all that can be reached from it without a byte. The stack holds every node once at
// most: it has room.
void PatternAutomaton::reach(std::uint16_t node) noexcept {
    GrowingArray<std::uint16_t> &stack = scratch_.stack;
    const auto mark = [&](std::uint16_t index) {
        std::uint64_t &word = scratch_.reached[index / 64];
        const std::uint64_t bit = std::uint64_t{1} << index % 64;
        if (word & bit) return;
        word |= bit;
        *stack.tail() = index;
        stack.extend(1);
    };
    mark(node);
    while (!stack.empty()) {
        const PatternNode &at = program_.nodes[stack.back()];
        stack.truncate(stack.size() - 1);
        if (at.kind == PatternNode::kSplit) mark(at.other);
        if (at.kind == PatternNode::kSplit || at.kind == PatternNode::kJump) mark(at.next);
    }
}

// The row of the state of all nodes that are marked; takes the marks away.
std::uint16_t PatternAutomaton::stateOfReached() noexcept {
    State state = {kFnvBasis, static_cast<std::uint32_t>(members_.size()), 0};
    bool room = true;
    const std::size_t words = program_.nodes.size() / 64 + 1;
    for (std::size_t i = 0; i < words; ++i) {
        std::uint64_t word = scratch_.reached[i];
        scratch_.reached[i] = 0;
        for (; word != 0 && room; word &= word - 1) {
            const auto node =
                static_cast<std::uint16_t>(i * 64 + static_cast<unsigned>(__builtin_ctzll(word)));
            const PatternNode::Kind kind = program_.nodes[node].kind;
            if (kind == PatternNode::kSplit || kind == PatternNode::kJump) continue;
            state.hash = fnvStep(state.hash, node);
            room = members_.append(node);
        }
    }
    state.count = static_cast<std::uint32_t>(members_.size()) - state.first;
    const std::uint16_t row = !room ? kMissing : state.count == 0 ? kDead : addState(state);
    if (row >= kDead) members_.truncate(state.first);
    return row;
}

// The row of a state, which lies at the end of the members; of an equal one if there is one.
std::uint16_t PatternAutomaton::addState(const State &state) noexcept {
    const std::uint16_t *members = members_.data() + state.first;
    for (std::size_t i = 0; i < states_.size(); ++i) {
        const State &other = states_[i];
        if (other.hash == state.hash && other.count == state.count &&
            std::memcmp(members_.data() + other.first, members, state.count * sizeof *members) ==
                0) {
            members_.truncate(state.first);
            return static_cast<std::uint16_t>(i * width_);
        }
    }
    const std::size_t row = rows_.size();
    if (row + width_ > kDead || !rows_.reserve(width_) || !states_.append(state)) return kMissing;
    rows_.extend(width_);
    for (std::uint32_t i = 0; i + 1 < width_; ++i) rows_[row + i] = kMissing;
    // Nodes are in order, and the one that accepts is the last of all.
    const std::uint16_t last = members[state.count - 1];
    rows_[row + width_ - 1] = program_.nodes[last].kind == PatternNode::kAccept;
    return static_cast<std::uint16_t>(row);
}

// Finds what follows a state, and remembers it.
std::uint16_t PatternAutomaton::follow(std::uint16_t row, unsigned byteClass) noexcept {
    const State state = states_[row / width_];
    for (std::uint32_t i = 0; i < state.count; ++i) {
        const PatternNode &node = program_.nodes[members_[state.first + i]];
        if (takes(node, sample_[byteClass])) reach(node.next);
    }
    const std::uint16_t next = stateOfReached();
    rows_[row + byteClass] = next;
    return next;
}

PatternAutomaton::Answer PatternAutomaton::match(const char *text) noexcept {
    if (compiled_ == Compiled::kNot) compiled_ = compile() ? Compiled::kGood : Compiled::kBad;
    if (compiled_ == Compiled::kBad) return Answer::kUnknown;
    std::uint16_t row = 0;
    for (; *text != '\0'; ++text) {
        const unsigned byteClass = classOf_[static_cast<unsigned char>(*text)];
        std::uint16_t next = rows_[row + byteClass];
        if (next >= kDead) {
            if (next == kMissing) next = follow(row, byteClass);
            if (next >= kDead) return next == kDead ? Answer::kNo : Answer::kUnknown;
        }
        row = next;
    }
    return rows_[row + width_ - 1] != 0 ? Answer::kYes : Answer::kNo;
}

}  // namespace cxml
