#include "xsd2c/pattern/pattern_syntax.h"

#include <cstddef>
#include <limits>
#include <memory>
#include <string>
#include <unordered_map>
#include <utility>

#include "text/unicode.h"
#include "xsd2c/pattern/char_classes.h"
#include "xsd2c/pattern/pattern.h"

namespace xsd2c {
namespace {

constexpr char32_t kNoChar = 0xFFFFFFFF;

[[noreturn]] void fail(std::size_t index, const std::string &text) {
    throw BadPattern("character " + std::to_string(index + 1) + ": " + text);
}

// The characters of a text; index counts them where it is no UTF-8.
std::u32string decode(std::string_view text) {
    std::u32string result;
    while (!text.empty()) {
        const unicode::Char next = unicode::first(text);
        if (next.code == unicode::kNone || next.code == 0) {
            fail(result.size(), "the text is not UTF-8");
        }
        result += next.code;
        text.remove_prefix(next.length);
    }
    return result;
}

// A character as messages show it.
std::string quoted(char32_t c) {
    if (c > 0x20 && c < 0x7F) return std::string("'") + static_cast<char>(c) + "'";
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string digits;
    for (char32_t rest = c; rest != 0 || digits.size() < 4; rest >>= 4) {
        digits.insert(digits.begin(), kDigits[rest & 15]);
    }
    return "U+" + digits;
}

bool isDigit(char32_t c) {
    return c >= '0' && c <= '9';
}

bool isIn(char32_t c, std::string_view ascii) {
    return c < 0x80 && ascii.find(static_cast<char>(c)) != ascii.npos;
}

// Sets are large, and shared by all that name the same.
using SharedChars = std::shared_ptr<const CharSet>;

SharedChars shared(CharSet chars) {
    return std::make_shared<const CharSet>(std::move(chars));
}

PatternNode charsNode(SharedChars chars) {
    PatternNode node;
    node.kind = PatternNode::Kind::kChars;
    node.chars = std::move(chars);
    return node;
}

class Parser {
  public:
    explicit Parser(std::string_view utf8) : text_(decode(utf8)) {}

    PatternNode parse() {
        PatternNode result = parseChoice();
        if (peek() == ')') fail(at_, "')' closes no group; for the character write '\\)'");
        return result;
    }

  private:
    char32_t peek(std::size_t ahead = 0) const {
        return at_ + ahead < text_.size() ? text_[at_ + ahead] : kNoChar;
    }
    bool take(char32_t c) {
        if (peek() != c) return false;
        ++at_;
        return true;
    }

    // Branches, up to the end or a ")" that the caller expects.
    PatternNode parseChoice() {
        PatternNode first = parseBranch();
        if (peek() != '|') return first;
        PatternNode choice;
        choice.kind = PatternNode::Kind::kChoice;
        choice.children.push_back(std::move(first));
        while (take('|')) choice.children.push_back(parseBranch());
        return choice;
    }

    PatternNode parseBranch() {
        PatternNode sequence;
        while (peek() != kNoChar && peek() != '|' && peek() != ')') {
            sequence.children.push_back(parsePiece());
        }
        return sequence;
    }

    PatternNode parsePiece() {
        PatternNode atom = parseAtom();
        if (!isIn(peek(), "?*+{")) return atom;
        PatternNode repeat;
        repeat.kind = PatternNode::Kind::kRepeat;
        parseQuantifier(repeat);
        repeat.children.push_back(std::move(atom));
        if (isIn(peek(), "?*+{")) fail(at_, "a second quantifier needs a group around the first");
        return repeat;
    }

    void parseQuantifier(PatternNode &repeat) {
        const std::size_t start = at_;
        switch (text_[at_++]) {
            case '?':
                repeat.most = 1;
                return;
            case '*':
                return;
            case '+':
                repeat.least = 1;
                return;
            default:
                break;
        }
        repeat.least = parseNumber(start);
        repeat.most = repeat.least;
        if (take(',')) {
            repeat.most.reset();
            if (peek() != '}') repeat.most = parseNumber(start);
        }
        if (!take('}')) fail(start, "a quantifier is written {n}, {n,} or {n,m}");
        if (repeat.most && *repeat.most < repeat.least) {
            fail(start, "the quantifier's first number is greater than its second");
        }
    }

    // Numbers beyond those of the machine count as the last one, which is too large as well.
    std::uint64_t parseNumber(std::size_t start) {
        constexpr std::uint64_t kMost = std::numeric_limits<std::uint64_t>::max();
        if (!isDigit(peek())) fail(start, "a quantifier is written {n}, {n,} or {n,m}");
        std::uint64_t number = 0;
        for (; isDigit(peek()); ++at_) {
            const std::uint64_t digit = peek() - U'0';
            number = number > (kMost - digit) / 10 ? kMost : number * 10 + digit;
        }
        return number;
    }

    PatternNode parseAtom() {
        const std::size_t start = at_;
        const char32_t c = text_[at_++];
        if (c == '(') return parseGroup(start);
        if (c == '[') return charsNode(shared(parseClass(start)));
        if (c == '.') return charsNode(named("."));
        if (c == '\\') {
            const Escape escape = parseEscape(start);
            return charsNode(escape.single ? shared({{*escape.single, *escape.single}})
                                           : escape.chars);
        }
        if (isIn(c, "?*+")) {
            fail(start, quoted(c) + " has nothing to repeat; for the character write '\\" +
                            static_cast<char>(c) + "'");
        }
        if (isIn(c, "{}]")) {
            fail(start, quoted(c) + " must be written '\\" + static_cast<char>(c) + "'");
        }
        return charsNode(shared({{c, c}}));
    }

    PatternNode parseGroup(std::size_t start) {
        if (peek() == '?') fail(at_, "'?' cannot stand at the beginning of a group");
        enter(start);
        PatternNode result = parseChoice();
        --depth_;
        if (!take(')')) fail(start, "'(' is not closed");
        return result;
    }

    void enter(std::size_t start) {
        if (++depth_ > kMostNestedGroups) fail(start, "groups or classes nest too deep");
    }

    // ---- classes ----

    // What follows a "[".
    CharSet parseClass(std::size_t start) {
        enter(start);
        const bool negative = take('^');
        CharSet chars = parseClassGroup(start);
        if (negative) chars = chars.complement();
        if (take('-')) {
            const std::size_t inner = at_++;  // the "["
            chars = chars.minus(parseClass(inner));
            if (peek() != ']' && peek() != kNoChar) {
                fail(at_, "']' must follow a class that is taken away");
            }
        }
        if (!take(']')) fail(start, "'[' is not closed");
        --depth_;
        return chars;
    }

    // Up to the "]" that ends it, or the "-" of a class to be taken away.
    CharSet parseClassGroup(std::size_t start) {
        CharSet chars;
        const std::size_t first = at_;
        while (peek() != ']' && !(peek() == '-' && peek(1) == '[' && at_ != first)) {
            if (peek() == kNoChar) fail(start, "'[' is not closed");
            parseClassItem(chars, at_ == first);
        }
        if (at_ == first) fail(start, "a class needs a character");
        return chars;
    }

    void parseClassItem(CharSet &chars, bool isFirst) {
        const std::size_t start = at_;
        const char32_t c = text_[at_++];
        if (c == '[') fail(start, "'[' must be written '\\[' within a class");
        if (c == '-' && !isFirst && !endsClassGroup()) {
            fail(start, "'-' between others must be written '\\-'");
        }
        Escape item{c, {}};
        if (c == '\\') item = parseEscape(start);
        if (!item.single) return chars.add(*item.chars);
        const bool isRange = c != '-' && peek() == '-' && peek(1) != '[' && peek(1) != ']' &&
                             peek(1) != kNoChar && !(peek(1) == '-' && peek(2) == '[');
        const char32_t last = isRange ? parseEndOfRange() : *item.single;
        if (last < *item.single) fail(start, "the range's last character is before its first");
        chars.add(*item.single, last);
    }

    bool endsClassGroup() const { return peek() == ']' || (peek() == '-' && peek(1) == '['); }

    char32_t parseEndOfRange() {
        ++at_;  // the "-"
        const std::size_t start = at_;
        const char32_t c = text_[at_++];
        if (c == '-') fail(start, "'-' as the end of a range must be written '\\-'");
        if (c != '\\') return c;
        const Escape escape = parseEscape(start);
        if (!escape.single) fail(start, "a range cannot end with a class");
        return *escape.single;
    }

    // ---- escapes ----

    struct Escape {
        std::optional<char32_t> single;
        SharedChars chars;  // unless it is a single one
    };

    // What follows a "\".
    Escape parseEscape(std::size_t start) {
        const char32_t c = peek();
        if (c == kNoChar) fail(start, "'\\' has nothing to escape");
        ++at_;
        switch (c) {
            case 'n':
                return {U'\n', {}};
            case 'r':
                return {U'\r', {}};
            case 't':
                return {U'\t', {}};
            case 's':
            case 'S':
            case 'i':
            case 'I':
            case 'c':
            case 'C':
            case 'd':
            case 'D':
            case 'w':
            case 'W':
                return {{}, named(std::string(1, static_cast<char>(c)))};
            case 'p':
            case 'P':
                return {{}, parseProperty(start, c == 'P')};
            default:
                break;
        }
        if (!isIn(c, "\\|.-^?*+{}()[]")) fail(start, "there is no escape '\\' before " + quoted(c));
        return {c, {}};
    }

    // The set of an escape or ".", made once.
    SharedChars named(const std::string &name) {
        SharedChars &known = named_[name];
        if (known) return known;
        const bool complement = name.front() >= 'A' && name.front() <= 'Z';
        const CharSet &chars = name == "."                  ? charsWithinLine()
                               : name == "s" || name == "S" ? whiteSpaceChars()
                               : name == "i" || name == "I" ? nameStartChars()
                               : name == "c" || name == "C" ? nameChars()
                               : name == "d" || name == "D" ? decimalDigitChars()
                                                            : wordChars();
        known = shared(complement ? chars.complement() : chars);
        return known;
    }

    // "{Lu}" or "{IsBasicLatin}".
    SharedChars parseProperty(std::size_t start, bool complement) {
        std::string name;
        bool closed = false;
        if (take('{')) {
            while (!closed && peek() != kNoChar && peek() < 0x7F && peek() > 0x20) {
                closed = peek() == '}';
                if (!closed) name += static_cast<char>(peek());
                ++at_;
            }
        }
        if (!closed) fail(start, "a property is written \\p{Name}");
        SharedChars &known = named_[(complement ? "P" : "p") + name];
        if (known) return known;
        const bool isBlock = name.starts_with("Is");
        const std::optional<CharSet> chars =
            isBlock ? charsOfBlock(std::string_view(name).substr(2)) : charsOfCategory(name);
        if (!chars) {
            fail(start, std::string("there is no ") + (isBlock ? "block" : "category") +
                            " of characters '" + name + "'");
        }
        known = shared(complement ? chars->complement() : *chars);
        return known;
    }

    // By the letters of escapes, which for properties their names follow.
    std::unordered_map<std::string, SharedChars> named_;
    std::u32string text_;
    std::size_t at_ = 0;
    int depth_ = 0;
};

}  // namespace

PatternNode parsePattern(std::string_view utf8) {
    return Parser(utf8).parse();
}

}  // namespace xsd2c
