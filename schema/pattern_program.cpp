#include "schema/pattern_program.h"

#include <cstring>

namespace cxml {
namespace {

constexpr std::size_t kMostNodes = 16384;
constexpr std::uint16_t kNowhere = 0xFFFF;
constexpr int kMostNesting = 32;
constexpr std::uint32_t kUnbounded = UINT32_MAX;

// Part of a program with one way in; the way out is the next of its last node.
struct Fragment {
    std::uint16_t start, end;
};

struct Quantifier {
    std::uint32_t least, most;
};

// Reads by recursive descent, as deep as groups are nested. It runs once for each pattern: small, not
// fast.
class PatternReader {
  public:
    PatternReader(const char *pattern, PatternProgram &program)
        : at_(pattern), program_(program), nodes_(program.nodes) {}

    [[gnu::cold]] bool read();

  private:
    bool readChoice(Fragment *out);
    bool readBranch(Fragment *out);
    bool readAtom(Fragment *out);
    bool readGroup(Fragment *out);
    bool readEscape(Fragment *out);
    bool readBracket(Fragment *out);
    bool readBracketItem(ByteSet *set);
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
    PatternProgram &program_;
    GrowingArray<PatternNode> &nodes_;
    int nesting_ = 0;
};

unsigned byteOf(char c) {
    return static_cast<unsigned char>(c);
}

bool PatternReader::add(const PatternNode &node, std::uint16_t *index) {
    *index = static_cast<std::uint16_t>(nodes_.size());
    return nodes_.size() < kMostNodes && nodes_.append(node);
}

bool PatternReader::addRange(unsigned first, unsigned last, Fragment *out) {
    const PatternNode node = {PatternNode::kRange, static_cast<std::uint8_t>(first),
                              static_cast<std::uint8_t>(last), kNowhere, kNowhere};
    if (!add(node, &out->start)) return false;
    out->end = out->start;
    return true;
}

bool PatternReader::addJump(Fragment *out) {
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
bool PatternReader::readBracketItem(ByteSet *set) {
    if (*at_ == '\0' || isBracketSyntax()) return false;
    const unsigned first = byteOf(*at_++);
    unsigned last = first;
    if (*at_ == '-' && at_[1] != ']') {
        ++at_;
        if (first == '-' || *at_ == '\0' || isBracketSyntax()) return false;
        last = byteOf(*at_++);
        // "a-c-e" means nothing.
        if (last < first || (*at_ == '-' && at_[1] != ']')) return false;
    }
    set->addRange(first, last);
    return true;
}

bool PatternReader::readBracket(Fragment *out) {
    ++at_;
    const bool negated = *at_ == '^';
    if (negated) ++at_;
    ByteSet set{};
    do {
        if (!readBracketItem(&set)) return false;
    } while (*at_ != ']');
    ++at_;
    for (std::uint64_t &bits : set.bits) bits = negated ? ~bits : bits;
    const auto number = static_cast<std::uint16_t>(program_.sets.size());
    if (number == kMostNodes || !program_.sets.append(set)) return false;
    if (!add({PatternNode::kSet, 0, 0, kNowhere, number}, &out->start)) return false;
    out->end = out->start;
    return true;
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
    bool first = true;
    do {
        const std::size_t before = nodes_.size();
        Fragment atom{};
        if (!readAtom(&atom)) return false;
        Quantifier quantifier{};
        if (isQuantifier(*at_) &&
            !(readQuantifier(&quantifier) && repeat(&atom, before, quantifier))) {
            return false;
        }
        if (first) {
            *out = atom;
        } else {
            append(out, atom);
        }
        first = false;
    } while (*at_ != '|' && *at_ != ')' && !isEnd());
    return true;
}

bool PatternReader::readChoice(Fragment *out) {
    if (!readBranch(out)) return false;
    if (*at_ != '|') return true;
    Fragment join{};
    if (!addJump(&join)) return false;
    link(*out, join.start);
    out->end = join.end;
    while (*at_ == '|') {
        ++at_;
        Fragment branch{};
        if (!readBranch(&branch)) return false;
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

bool readPattern(const char *pattern, PatternProgram *out) noexcept {
    return PatternReader{pattern, *out}.read();
}

}  // namespace cxml
