#include "xsd2c/pattern/gb18030_classes.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "xsd2c/pattern/byte_bracket.h"
#include "xsd2c/pattern/gb18030_map.h"

namespace xsd2c {
namespace {

constexpr unsigned kFirstLead = 0x81, kLastLead = 0xFE;
constexpr unsigned kFirstTrail = 0x40, kLastTrail = 0xFE, kNoTrail = 0x7F;

ByteSet byteRange(unsigned first, unsigned last) {
    ByteSet bytes;
    for (unsigned byte = first; byte <= last; ++byte) bytes.set(byte);
    return bytes;
}

// What may follow each of the bytes that are added in order. Bytes that no text has there take what
// follows the one before them, or else behind them: so runs of bytes stay together.
class Followers {
  public:
    void add(unsigned byte, const Ere &tail) {
        if (last_ == kUnused || groups_[last_].tail.bare() != tail.bare()) startGroup(tail);
        groups_[last_].bytes.set(byte);
    }
    void addUnused(unsigned byte) {
        if (last_ == kUnused) {
            unused_.set(byte);
        } else {
            groups_[last_].bytes.set(byte);
        }
    }
    void add(unsigned byte, const std::optional<Ere> &tail) {
        if (tail) {
            add(byte, *tail);
        } else {
            addUnused(byte);
        }
    }

    struct Group {
        ByteSet bytes;
        Ere tail;
    };
    const std::vector<Group> &groups() const noexcept { return groups_; }

    // None when every byte is unused.
    std::optional<Ere> ere() const {
        if (last_ == kUnused) return std::nullopt;
        std::vector<Ere> branches;
        for (const Group &group : groups_) {
            if (!group.tail.isNothing()) branches.push_back(Ere::oneOf(group.bytes) + group.tail);
        }
        return alternatives(branches);
    }

  private:
    static constexpr std::size_t kUnused = static_cast<std::size_t>(-1);

    void startGroup(const Ere &tail) {
        const auto [entry, isNew] = numbers_.emplace(tail.bare(), groups_.size());
        if (isNew) groups_.push_back({{}, tail});
        if (last_ == kUnused) groups_[entry->second].bytes |= unused_;
        last_ = entry->second;
    }

    std::vector<Group> groups_;
    std::map<std::string, std::size_t> numbers_;  // of the groups, by what follows
    ByteSet unused_;                              // before the first byte that is used
    std::size_t last_ = kUnused;
};

// Whether characters are in a set; none for what is in no text (XML 1.0, 2.2).
class Membership {
  public:
    explicit Membership(const CharSet &chars) : chars_(chars), basic_(kBasic) {
        for (const CharRange range : chars.ranges()) {
            for (char32_t c = range.first; c <= range.last && c < kBasic; ++c) basic_[c] = true;
        }
    }

    // What follows the last byte of a character: nothing, or the empty text.
    const std::optional<Ere> &operator()(char32_t c) const {
        static const std::optional<Ere> kUnused, kIn = Ere(), kOut = Ere::nothing();
        constexpr char32_t kLastInText = 0xFFFD;
        if (c == Gb18030Map::kNone || (c > kLastInText && c < kBasic)) return kUnused;
        return (c < kBasic ? basic_[c] : chars_.contains(c)) ? kIn : kOut;
    }
    const CharSet &chars() const noexcept { return chars_; }

  private:
    static constexpr char32_t kBasic = 0x10000;

    const CharSet &chars_;
    std::vector<bool> basic_;
};

// ---- above U+007F ----

std::optional<Ere> tailOfTwo(const Membership &members, unsigned lead) {
    Followers trails;
    for (unsigned trail = kFirstTrail; trail <= kLastTrail; ++trail) {
        if (trail == kNoTrail) continue;
        trails.add(trail, members(Gb18030Map::get().charOfTwo(lead, trail)));
    }
    return trails.ere();
}

// The last three bytes of four, and how many codes one value of each of them comprises.
struct Level {
    unsigned first;
    unsigned last;
    std::size_t codes;
};
constexpr std::array<Level, 3> kLevels = {
    {{'0', '9', 1260}, {kFirstLead, kLastLead, 10}, {'0', '9', 1}}};
constexpr std::size_t kCodesOfLead = 12600;

// What of any character follows before the byte of a level.
Ere anyTail(std::size_t level) {
    Ere result;
    for (; level < kLevels.size(); ++level) {
        result = result + Ere::oneOf(byteRange(kLevels[level].first, kLevels[level].last));
    }
    return result;
}

// The bytes from a level on, of codes from index on.
std::optional<Ere> tailOfFour(const Membership &members, std::size_t level, std::size_t index) {
    const Level &bytes = kLevels[level];
    const std::size_t count = bytes.codes * (bytes.last - bytes.first + 1);
    if (Gb18030Map::get().isUnused(index, count)) return std::nullopt;
    const char32_t first = Gb18030Map::get().charOfFour(index);
    const char32_t last = Gb18030Map::get().charOfFour(index + count - 1);
    if (index >= Gb18030Map::kFirstSupplementary && last != Gb18030Map::kNone) {
        // These are in order. Nearly all of them are alike, and need not be looked at one by one.
        const std::size_t in = members.chars().overlap(first, last);
        if (in == 0) return Ere::nothing();
        if (in == count) return anyTail(level);
    }
    Followers followers;
    const bool isLast = level + 1 == kLevels.size();
    for (unsigned byte = bytes.first; byte <= bytes.last; ++byte, index += bytes.codes) {
        if (isLast) {
            followers.add(byte, members(Gb18030Map::get().charOfFour(index)));
        } else {
            followers.add(byte, tailOfFour(members, level + 1, index));
        }
    }
    return followers.ere();
}

Ere ereOfLongChars(const CharSet &chars) {
    const Membership members(chars);
    Followers two, four;
    for (unsigned lead = kFirstLead; lead <= kLastLead; ++lead) {
        two.add(lead, tailOfTwo(members, lead));
        four.add(lead, tailOfFour(members, 0, (lead - kFirstLead) * kCodesOfLead));
    }
    std::vector<Followers::Group> groups = two.groups();
    for (const Followers::Group &group : four.groups()) {
        const auto same = std::find_if(groups.begin(), groups.end(), [&](const auto &other) {
            return other.bytes == group.bytes && !other.tail.isNothing();
        });
        if (same != groups.end() && !group.tail.isNothing()) {
            same->tail = alternatives({same->tail, group.tail});
        } else {
            groups.push_back(group);
        }
    }
    std::vector<Ere> branches;
    for (const Followers::Group &group : groups) {
        branches.push_back(Ere::oneOf(group.bytes) + group.tail);
    }
    return alternatives(branches);
}

Ere anyLongChar() {
    ByteSet trails = byteRange(kFirstTrail, kLastTrail);
    trails.reset(kNoTrail);
    return Ere::oneOf(byteRange(kFirstLead, kLastLead)) +
           alternatives({Ere::oneOf(trails), anyTail(0)});
}

// ---- ASCII ----

Ere ereOfAsciiChars(const CharSet &chars, bool asciiOnly) {
    ByteSet in, out;
    for (unsigned c = 1; c < 0x80; ++c) {
        const bool inText = c >= 0x20 || c == '\t' || c == '\n' || c == '\r';
        if (inText) (chars.contains(c) ? in : out).set(c);
    }
    if (in.none()) return Ere::nothing();
    if (!asciiOnly) out |= byteRange(0x80, 0xFF);
    if (out.none()) return Ere::bracket(".");
    const Ere direct = Ere::oneOf(in);
    std::string without = bracketWithout(out);
    return without.size() < direct.bare().size() ? Ere::bracket(std::move(without)) : direct;
}

}  // namespace

Ere ereOfChars(const CharSet &chars, bool asciiOnly) {
    const Ere ascii = ereOfAsciiChars(chars, asciiOnly);
    if (asciiOnly) return ascii;
    constexpr CharRange kLong[] = {{0x80, 0xD7FF}, {0xE000, 0xFFFD}, {0x10000, kLastChar}};
    std::size_t in = 0, all = 0;
    for (const CharRange range : kLong) {
        in += chars.overlap(range.first, range.last);
        all += range.last - range.first + 1;
    }
    if (in == 0) return ascii;
    if (in == all) return alternatives({ascii, anyLongChar()});
    // The same few classes come up in pattern after pattern, and take long to work out.
    static std::map<std::vector<CharRange>, Ere> known;
    const auto entry = known.find(chars.ranges());
    if (entry != known.end()) return entry->second;
    return known.emplace(chars.ranges(), alternatives({ascii, ereOfLongChars(chars)}))
        .first->second;
}

}  // namespace xsd2c
