#include "schema/pattern_program.h"

#include <algorithm>
#include <cstring>

namespace cxml {
namespace {

constexpr std::size_t kMostNodes = 16384;
constexpr std::uint16_t kNowhere = 0xFFFF;
constexpr int kMostNesting = 32;
constexpr std::uint32_t kUnbounded = UINT32_MAX;

// Part of a program with one way in; the way out is the next of its last node. One that is closed
// has no nodes: none of the texts gets through.
struct Fragment {
    std::uint16_t start, end;

    bool isClosed() const { return start == kNowhere; }
};
constexpr Fragment kClosed = {kNowhere, kNowhere};

struct Quantifier {
    std::uint32_t least, most;
};

// Reads by recursive descent, as deep as groups are nested. It runs once for each pattern: small, not
// fast.
class PatternReader {
  public:
    PatternReader(const char *pattern, PatternBytes bytes, PatternProgram &program)
        : at_(pattern),
          highest_(bytes == PatternBytes::kAscii ? 0x7F : 0xFF),
          program_(program),
          nodes_(program.nodes) {}

    [[gnu::cold]] bool read();

  private:
    bool readChoice(Fragment *out);
    bool readBranch(Fragment *out);
    bool readAtom(Fragment *out);
    bool readGroup(Fragment *out);
    bool readEscape(Fragment *out);
    bool readBracket(Fragment *out);
    bool passPlainAtoms();
    bool readBracketItem(unsigned *first, unsigned *last);
    [[gnu::cold]] bool readQuantifier(Quantifier *out);
    bool readNumber(std::uint32_t *out);

    bool add(const PatternNode &node, std::uint16_t *index);
    bool addRange(unsigned first, unsigned last, Fragment *out);
    [[gnu::cold]] bool addJump(Fragment *out);
    bool addSplit(std::uint16_t next, std::uint16_t other, std::uint16_t *index);
    [[gnu::cold]] bool repeat(Fragment *all, std::size_t first, const Quantifier &quantifier);
    bool copyNodes(std::size_t first, std::size_t last);

    void link(const Fragment &from, std::uint16_t to) { nodes_[from.end].next = to; }
    void append(Fragment *all, const Fragment &more) {
        link(*all, more.start);
        all->end = more.end;
    }

    bool isEnd() const { return *at_ == '\0' || (*at_ == '$' && at_[1] == '\0'); }
    bool isBracketSyntax() const { return *at_ == '[' && std::strchr(".=:", at_[1]); }

    const char *at_;
    const unsigned highest_;  // the highest byte of the texts
    PatternProgram &program_;
    GrowingArray<PatternNode> &nodes_;
    int nesting_ = 0;
    int closed_ = 0;  // branches around, or begun, that are closed: what follows there is only read
};

unsigned byteOf(char c) {
    return static_cast<unsigned char>(c);
}

bool PatternReader::add(const PatternNode &node, std::uint16_t *index) {
    *index = static_cast<std::uint16_t>(nodes_.size());
    return nodes_.size() < kMostNodes && nodes_.append(node);
}

bool PatternReader::addRange(unsigned first, unsigned last, Fragment *out) {
    *out = kClosed;
    if (first > highest_ || closed_ != 0) return true;
    last = std::min(last, highest_);
    const PatternNode node = {PatternNode::kRange, static_cast<std::uint8_t>(first),
                              static_cast<std::uint8_t>(last), kNowhere, kNowhere};
    if (!add(node, &out->start)) return false;
    out->end = out->start;
    return true;
}

bool PatternReader::addJump(Fragment *out) {
    *out = kClosed;
    if (closed_ != 0) return true;
    if (!add({PatternNode::kJump, 0, 0, kNowhere, kNowhere}, &out->start)) return false;
    out->end = out->start;
    return true;
}

bool PatternReader::addSplit(std::uint16_t next, std::uint16_t other, std::uint16_t *index) {
    return add({PatternNode::kSplit, 0, 0, next, other}, index);
}

bool PatternReader::readNumber(std::uint32_t *out) {
    if (*at_ < '0' || *at_ > '9') return false;
    for (*out = 0; *at_ >= '0' && *at_ <= '9'; ++at_) {
        *out = *out * 10 + byteOf(*at_) - '0';
        if (*out > kMostNodes) return false;
    }
    return true;
}

bool isQuantifier(char c) {
    return c == '*' || c == '+' || c == '?' || c == '{';
}

bool PatternReader::readQuantifier(Quantifier *out) {
    const char sign = *at_++;
    *out = {sign == '+' ? 1u : 0u, sign == '?' ? 1u : kUnbounded};
    if (sign == '{') {
        if (!readNumber(&out->least)) return false;
        out->most = out->least;
        if (*at_ == ',') {
            out->most = kUnbounded;
            if (*++at_ != '}' && !readNumber(&out->most)) return false;
        }
        if (*at_++ != '}') return false;
    }
    return out->most != 0 && out->least <= out->most && !isQuantifier(*at_);
}

bool PatternReader::copyNodes(std::size_t first, std::size_t last) {
    if (!nodes_.reserve(last - first)) return false;
    const auto offset = static_cast<std::uint16_t>(nodes_.size() - first);
    PatternNode *copy = nodes_.tail();
    for (std::size_t i = first; i < last; ++i, ++copy) {
        *copy = nodes_[i];
        if (copy->next != kNowhere) copy->next = static_cast<std::uint16_t>(copy->next + offset);
        if (copy->kind == PatternNode::kSplit) {
            copy->other = static_cast<std::uint16_t>(copy->other + offset);
        }
    }
    nodes_.extend(last - first);
    return true;
}

// Repeats what stands in the nodes from first to the end as often as a quantifier says: a copy of them
// for each time, or the last one again and again.
bool PatternReader::repeat(Fragment *all, std::size_t first, const Quantifier &quantifier) {
    if (all->isClosed()) return quantifier.least != 0 || addJump(all);
    const Fragment one = *all;
    const bool unbounded = quantifier.most == kUnbounded;
    const std::uint32_t least = quantifier.least;
    const std::uint32_t copies = !unbounded ? quantifier.most : least == 0 ? 1 : least;
    const std::size_t last = nodes_.size(), step = last - first;
    if (step * copies > kMostNodes - first) return false;
    for (std::uint32_t i = 1; i < copies; ++i) {
        if (!copyNodes(first, last)) return false;
    }
    Fragment out{};
    if (!addJump(&out)) return false;
    std::uint16_t entry = 0;
    for (std::uint32_t i = 0; i < copies; ++i) {
        const auto moved = static_cast<std::uint16_t>(i * step);
        const Fragment part = {static_cast<std::uint16_t>(one.start + moved),
                               static_cast<std::uint16_t>(one.end + moved)};
        entry = part.start;
        if (i >= least && !addSplit(part.start, out.start, &entry)) return false;
        if (i == 0) {
            *all = {entry, part.end};
        } else {
            append(all, {entry, part.end});
        }
    }
    if (unbounded) {
        if (least != 0 && !addSplit(entry, out.start, &entry)) return false;
        link(*all, entry);
    } else {
        link(*all, out.start);
    }
    all->end = out.end;
    return true;
}

// "a-z", or one byte. A dash is itself at the beginning and at the end.
bool PatternReader::readBracketItem(unsigned *first, unsigned *last) {
    if (*at_ == '\0' || isBracketSyntax()) return false;
    *first = *last = byteOf(*at_++);
    if (*at_ != '-' || at_[1] == ']') return true;
    ++at_;
    if (*first == '-' || *at_ == '\0' || isBracketSyntax()) return false;
    *last = byteOf(*at_++);
    // "a-c-e" means nothing.
    return *first <= *last && (*at_ != '-' || at_[1] == ']');
}

bool PatternReader::readBracket(Fragment *out) {
    ++at_;
    const bool negated = *at_ == '^';
    if (negated) ++at_;
    ByteSet set{};
    bool closed = !negated || closed_ != 0;
    do {
        unsigned first = 0, last = 0;
        if (!readBracketItem(&first, &last)) return false;
        if (first > highest_ || closed_ != 0) continue;
        set.addRange(first, last);
        closed = false;
    } while (*at_ != ']');
    ++at_;
    *out = kClosed;
    if (closed) return true;
    for (std::uint64_t &bits : set.bits) bits = negated ? ~bits : bits;
    if (highest_ < 0x80) set.bits[2] = set.bits[3] = 0;
    const auto number = static_cast<std::uint16_t>(program_.sets.size());
    if (!program_.sets.append(set)) return false;  // for one node each, so that there is no limit
    if (!add({PatternNode::kSet, 0, 0, kNowhere, number}, &out->start)) return false;
    out->end = out->start;
    return true;
}

// A byte that is itself within brackets, wherever it stands there.
bool isPlainInBracket(unsigned byte) {
    return byte >= '0' && (byte < '[' || byte > '^');
}

// In a closed branch: passes over bytes beyond ASCII and brackets of plain bytes, which is what most
// of a class of characters consists of. False if there are none.
bool PatternReader::passPlainAtoms() {
    const char *const begin = at_;
    for (; *at_ == '[' || byteOf(*at_) > 0x7F; ++at_) {
        if (*at_ != '[') continue;
        const char *p = at_ + 1;
        do {
            const unsigned first = byteOf(*p);
            if (p[0] != '\0' && p[1] == '-') p += 2;
            const unsigned last = byteOf(*p++);
            if (!isPlainInBracket(first) || !isPlainInBracket(last) || last < first) {
                return at_ != begin;
            }
        } while (*p != ']');
        at_ = p;
    }
    return at_ != begin;
}

// Only what POSIX defines: letters and digits behind a backslash are extensions.
bool PatternReader::readEscape(Fragment *out) {
    const char c = at_[1];
    if (c == '\0' || !std::strchr("^.[$()|*+?{\\", c)) return false;
    at_ += 2;
    return addRange(byteOf(c), byteOf(c), out);
}

bool PatternReader::readGroup(Fragment *out) {
    if (++nesting_ > kMostNesting) return false;
    ++at_;
    if (!readChoice(out) || *at_ != ')') return false;
    ++at_;
    --nesting_;
    return true;
}

bool PatternReader::readAtom(Fragment *out) {
    switch (const char c = *at_) {
        case '(':
            return readGroup(out);
        case '[':
            return readBracket(out);
        case '\\':
            return readEscape(out);
        case '.':
            ++at_;
            return addRange(0, 255, out);
        case '\0':
        case '|':
        case ')':
        case '*':
        case '+':
        case '?':
        case '{':
        case '^':
        case '$':
        case ']':
        case '}':
            return false;
        default:
            ++at_;
            return addRange(byteOf(c), byteOf(c), out);
    }
}

bool PatternReader::readBranch(Fragment *out) {
    const std::size_t nodesBefore = nodes_.size(), setsBefore = program_.sets.size();
    bool first = true, closed = false;
    do {
        const std::size_t before = nodes_.size();
        Fragment atom = kClosed;
        if (!(closed_ != 0 && passPlainAtoms()) && !readAtom(&atom)) return false;
        Quantifier quantifier{};
        if (isQuantifier(*at_) &&
            !(readQuantifier(&quantifier) && repeat(&atom, before, quantifier))) {
            return false;
        }
        if (closed) continue;
        if (atom.isClosed()) {
            closed = true;
            ++closed_;
        } else if (first) {
            *out = atom;
        } else {
            append(out, atom);
        }
        first = false;
    } while (*at_ != '|' && *at_ != ')' && !isEnd());
    if (closed) {
        --closed_;
        nodes_.truncate(nodesBefore);
        program_.sets.truncate(setsBefore);
        *out = kClosed;
    }
    return true;
}

bool PatternReader::readChoice(Fragment *out) {
    if (!readBranch(out)) return false;
    Fragment join = kClosed;
    while (*at_ == '|') {
        ++at_;
        Fragment branch{};
        if (!readBranch(&branch)) return false;
        if (branch.isClosed()) continue;
        if (out->isClosed()) {
            *out = branch;
            continue;
        }
        if (join.isClosed()) {
            if (!addJump(&join)) return false;
            link(*out, join.start);
            out->end = join.end;
        }
        link(branch, join.start);
        if (!addSplit(out->start, branch.start, &out->start)) return false;
    }
    return true;
}

bool PatternReader::read() {
    const bool fromStart = *at_ == '^';
    if (fromStart) ++at_;
    Fragment all{};
    const bool empty = isEnd();
    if (empty ? !fromStart || *at_ != '$' : !readBranch(&all)) return false;
    // A choice here would be one between anchors as well.
    const bool toEnd = *at_ == '$';
    if (toEnd) ++at_;
    if (*at_ != '\0') return false;
    if (all.isClosed()) {
        constexpr PatternNode kTakesNothing = {PatternNode::kRange, 1, 0, kNowhere, kNowhere};
        return add(kTakesNothing, &program_.start);
    }
    constexpr Quantifier kAny = {0, kUnbounded};
    if (empty) {
        if (!addJump(&all)) return false;
    }
    if (!fromStart) {
        const std::size_t before = nodes_.size();
        Fragment skipped{};
        if (!addRange(0, 255, &skipped) || !repeat(&skipped, before, kAny)) return false;
        append(&skipped, all);
        all = skipped;
    }
    if (!toEnd) {
        const std::size_t before = nodes_.size();
        Fragment rest{};
        if (!addRange(0, 255, &rest) || !repeat(&rest, before, kAny)) return false;
        append(&all, rest);
    }
    std::uint16_t end = 0;
    if (!add({PatternNode::kAccept, 0, 0, kNowhere, kNowhere}, &end)) return false;
    link(all, end);
    program_.start = all.start;
    return true;
}

}  // namespace

bool readPattern(const char *pattern, PatternBytes bytes, PatternProgram *out) noexcept {
    return PatternReader{pattern, bytes, *out}.read();
}

}  // namespace cxml
