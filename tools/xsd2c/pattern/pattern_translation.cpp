#include <algorithm>
#include <map>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "xsd2c/pattern/char_classes.h"
#include "xsd2c/pattern/ere.h"
#include "xsd2c/pattern/ere_cost.h"
#include "xsd2c/pattern/gb18030_classes.h"
#include "xsd2c/pattern/pattern.h"
#include "xsd2c/pattern/pattern_syntax.h"

namespace xsd2c {
namespace {

// Which of the texts that match are wanted.
enum class Wanted { kAll, kItems };  // items of lists: not empty and without white space

class Translator {
  public:
    Translator(bool asciiOnly, Wanted wanted) : asciiOnly_(asciiOnly), wanted_(wanted) {}

    Ere translate(const PatternNode &pattern) {
        return wanted_ == Wanted::kItems ? someOf(pattern) : allOf(pattern);
    }

  private:
    // All texts that match. Calls itself as deep as nodes nest, for which there is a limit.
    Ere allOf(const PatternNode &node) { return known(node, all_, &Translator::makeAllOf); }

    // Those of them that are not empty.
    Ere someOf(const PatternNode &node) { return known(node, some_, &Translator::makeSomeOf); }

    // Makes the expression of a node once.
    Ere known(const PatternNode &node, std::unordered_map<const PatternNode *, Ere> &made,
              Ere (Translator::*make)(const PatternNode &)) {
        if (node.kind == PatternNode::Kind::kChars) return charsOf(node);
        const auto entry = made.find(&node);
        if (entry != made.end()) return entry->second;
        return made.emplace(&node, (this->*make)(node)).first->second;
    }

    Ere makeAllOf(const PatternNode &node) {
        switch (node.kind) {
            case PatternNode::Kind::kChars:
                return charsOf(node);
            case PatternNode::Kind::kChoice:
                return limited(alternatives(branchesOf(node, &Translator::allOf)));
            case PatternNode::Kind::kRepeat: {
                const PatternNode &item = node.children.front();
                if (!isNullable(item)) return limited(repeat(allOf(item), node.least, node.most));
                // Empty items make up for any number of those that are missing. Repeating what may
                // be empty costs the C library far more.
                return limited(repeat(someOf(item), 0, node.most));
            }
            case PatternNode::Kind::kSequence:
                break;
        }
        Ere result;
        for (const PatternNode &child : node.children) {
            if (result.isNothing()) break;
            result = limited(std::move(result) + allOf(child));
        }
        return result;
    }

    Ere makeSomeOf(const PatternNode &node) {
        switch (node.kind) {
            case PatternNode::Kind::kChars:
                return charsOf(node);
            case PatternNode::Kind::kChoice:
                return limited(alternatives(branchesOf(node, &Translator::someOf)));
            case PatternNode::Kind::kRepeat: {
                if (node.most == 0) return Ere::nothing();
                const PatternNode &item = node.children.front();
                const std::uint64_t least = isNullable(item) ? 1 : node.least;
                return limited(repeat(someOf(item), std::max<std::uint64_t>(least, 1), node.most));
            }
            case PatternNode::Kind::kSequence:
                break;
        }
        Ere result = Ere::nothing();  // what is not empty of the children so far
        bool nullable = true;         // whether they can be empty all together
        int optionalOnes = 0;
        for (const PatternNode &child : node.children) {
            Ere longer = std::move(result) + allOf(child);
            result = limited(nullable ? alternatives({longer, someOf(child)}) : std::move(longer));
            nullable = nullable && isNullable(child);
            // Each of them takes another group around those before it.
            if (nullable && ++optionalOnes > kMostNestedGroups) throw NoTranslation(kTooLarge);
        }
        return result;
    }

    std::vector<Ere> branchesOf(const PatternNode &node,
                                Ere (Translator::*part)(const PatternNode &)) {
        std::vector<Ere> branches;
        for (const PatternNode &child : node.children) branches.push_back((this->*part)(child));
        return branches;
    }

    static bool isNullable(const PatternNode &node) {
        const auto &children = node.children;
        switch (node.kind) {
            case PatternNode::Kind::kChars:
                return false;
            case PatternNode::Kind::kRepeat:
                return node.least == 0 || isNullable(children.front());
            case PatternNode::Kind::kChoice:
                return std::any_of(children.begin(), children.end(), isNullable);
            case PatternNode::Kind::kSequence:
                break;
        }
        return std::all_of(children.begin(), children.end(), isNullable);
    }

    Ere charsOf(const PatternNode &node) {
        const auto known = chars_.find(node.chars->ranges());
        if (known != chars_.end()) return known->second;
        const CharSet wanted =
            wanted_ == Wanted::kItems ? node.chars->minus(whiteSpaceChars()) : *node.chars;
        return chars_.emplace(node.chars->ranges(), ereOfChars(wanted, asciiOnly_)).first->second;
    }

    // Nothing grows far beyond what will be refused in the end.
    static Ere limited(Ere ere) {
        constexpr std::size_t kMostBytes = 1 << 20;
        if (ere.bare().size() > kMostBytes) throw NoTranslation(kTooLarge);
        return ere;
    }

    bool asciiOnly_;
    Wanted wanted_;
    std::map<std::vector<CharRange>, Ere> chars_;
    std::unordered_map<const PatternNode *, Ere> all_;
    std::unordered_map<const PatternNode *, Ere> some_;
};

Translated translateAll(const std::vector<std::string> &patterns, bool asciiOnly, Wanted wanted) {
    std::vector<PatternNode> parsed;
    for (const std::string &pattern : patterns) parsed.push_back(parsePattern(pattern));
    Translator translator(asciiOnly, wanted);
    std::vector<Ere> branches;
    for (const PatternNode &pattern : parsed) branches.push_back(translator.translate(pattern));
    const Ere all = alternatives(branches);
    checkCost(all.bare());
    return {all.text(), asciiOnly || all.isAscii()};
}

}  // namespace

Translated translatePatterns(const std::vector<std::string> &patterns, bool asciiOnly) {
    return translateAll(patterns, asciiOnly, Wanted::kAll);
}

Translated translateItemPatterns(const std::vector<std::string> &patterns, bool asciiOnly) {
    return translateAll(patterns, asciiOnly, Wanted::kItems);
}

}  // namespace xsd2c
