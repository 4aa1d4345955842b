#include "xsd2c/pattern/ere.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "xsd2c/pattern/byte_bracket.h"
#include "xsd2c/pattern/pattern.h"

namespace xsd2c {
namespace {

// RE_DUP_MAX of the C libraries; POSIX promises 255 alone.
constexpr std::uint64_t kMostRepeats = 32767;

// The C library looks at all branches before one when it prepares it: in groups there are less.
constexpr std::size_t kGroupedBranches = 16;

// Repetitions that may be left out cost the C library the square of their number, so that of more
// than these, blocks are repeated.
constexpr std::uint64_t kBlock = 16;
constexpr std::uint64_t kMostOptional = 2 * kBlock;

void appendEscaped(std::string &result, char byte) {
    constexpr std::string_view kSpecials = ".[\\()*+?{|^$";
    if (kSpecials.find(byte) != kSpecials.npos) result += '\\';
    result += byte;
}

std::string quantifier(std::uint64_t least, std::optional<std::uint64_t> most) {
    if (!most && least <= 1) return least == 0 ? "*" : "+";
    if (least == 0 && most == 1) return "?";
    std::string result = "{" + std::to_string(least);
    if (most != least) result += ',';
    if (most && most != least) result += std::to_string(*most);
    return result + "}";
}

// Whether the first of a text's brackets, which it begins with, is closed by its last character.
bool isOneGroup(std::string_view text) {
    int depth = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] == '\\') {
            ++at;
        } else if (text[at] == '[') {
            at += text.substr(at).starts_with("[^") ? 2u : 1u;
            at = std::min(text.find(']', at + 1), text.size());  // the first may be a character
        } else if (text[at] == '(') {
            ++depth;
        } else if (text[at] == ')' && --depth == 0) {
            return at + 1 == text.size();
        }
    }
    return false;
}

}  // namespace

Ere Ere::nothing() {
    return Ere(Kind::kNothing, std::string(kMatchesNothing), true);
}

Ere Ere::literal(std::string_view bytes) {
    std::string text;
    bool ascii = true;
    for (const char byte : bytes) {
        appendEscaped(text, byte);
        ascii = ascii && static_cast<unsigned char>(byte) < 0x80;
    }
    const Kind kind = bytes.empty()       ? Kind::kEmpty
                      : bytes.size() == 1 ? Kind::kAtom
                                          : Kind::kSequence;
    return Ere(kind, std::move(text), ascii);
}

Ere Ere::oneOf(const ByteSet &bytes) {
    const ByteSet high = bytes >> 0x80;
    if (bytes.none()) return nothing();
    if (bytes.count() > 1) return Ere(Kind::kAtom, bracketOf(bytes), high.none());
    std::size_t byte = 0;
    while (!bytes[byte]) ++byte;
    const char single = static_cast<char>(byte);
    return literal({&single, 1});
}

Ere Ere::bracket(std::string text) {
    return Ere(Kind::kAtom, std::move(text), true);
}

Ere Ere::digits(char first, char last) {
    ByteSet bytes;
    for (char digit = first; digit <= last; ++digit) bytes.set(static_cast<std::size_t>(digit));
    return oneOf(bytes);
}

Ere Ere::fromInner(std::string_view inner) {
    if (inner.empty()) return {};
    if (inner == kMatchesNothing) return nothing();
    if (inner.front() == '(' && isOneGroup(inner))
        return Ere(Kind::kAtom, std::string(inner), false);
    return Ere(Kind::kAlternatives, std::string(inner), false);
}

std::string Ere::text() const {
    return kind_ == Kind::kAlternatives ? "(" + text_ + ")" : text_;
}

std::string Ere::asAtom() const {
    return kind_ == Kind::kAtom ? text_ : "(" + text_ + ")";
}

Ere operator+(Ere left, const Ere &right) {
    using Kind = Ere::Kind;
    if (left.isNothing() || right.isNothing()) return Ere::nothing();
    if (left.isEmpty()) return right;
    if (right.isEmpty()) return left;
    if (left.kind_ == Kind::kAlternatives) left.text_ = left.text();
    left.kind_ = Kind::kSequence;
    left.text_ += right.kind_ == Kind::kAlternatives ? right.text() : right.text_;
    left.ascii_ = left.ascii_ && right.ascii_;
    return left;
}

Ere repeat(const Ere &item, std::uint64_t least, std::optional<std::uint64_t> most) {
    if (most == 0 || item.isEmpty()) return {};
    if (item.isNothing()) return least == 0 ? Ere() : item;
    if (least == 1 && most == 1) return item;
    if (std::max(least, most.value_or(0)) > kMostRepeats) {
        throw NoTranslation("more than " + std::to_string(kMostRepeats) + " repetitions");
    }
    if (most && *most - least > kMostOptional) {
        const std::uint64_t optional = *most - least;
        // Up to optional, that is up to n blocks and then up to one block and what is left.
        const Ere block = repeat(item, kBlock, kBlock);
        return repeat(item, least, least) + repeat(block, 0, optional / kBlock - 1) +
               repeat(item, 0, kBlock + optional % kBlock);
    }
    return Ere(Ere::Kind::kRepeat, item.asAtom() + quantifier(least, most), item.ascii_);
}

Ere alternatives(const std::vector<Ere> &branches) {
    std::vector<const Ere *> some;
    bool canBeEmpty = false;
    for (const Ere &branch : branches) {
        canBeEmpty = canBeEmpty || branch.isEmpty();
        if (!branch.isEmpty() && !branch.isNothing()) some.push_back(&branch);
    }
    if (some.empty()) return canBeEmpty ? Ere() : Ere::nothing();
    if (some.size() == 1) return canBeEmpty ? repeat(*some.front(), 0, 1) : *some.front();
    std::vector<std::string> texts;
    bool ascii = true;
    for (const Ere *branch : some) {
        texts.push_back(branch->bare());
        ascii = ascii && branch->isAscii();
    }
    while (texts.size() > kGroupedBranches) {
        std::vector<std::string> groups;
        for (std::size_t i = 0; i < texts.size(); ++i) {
            if (i % kGroupedBranches == 0) groups.emplace_back("(");
            groups.back() += texts[i];
            const bool last = i + 1 == texts.size() || (i + 1) % kGroupedBranches == 0;
            groups.back() += last ? ')' : '|';
        }
        texts = std::move(groups);
    }
    std::string text;
    for (const std::string &branch : texts) text += (text.empty() ? "" : "|") + branch;
    const Ere result(Ere::Kind::kAlternatives, std::move(text), ascii);
    return canBeEmpty ? repeat(result, 0, 1) : result;
}

}  // namespace xsd2c
