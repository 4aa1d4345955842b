#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "alignment.h"
#include "commands.h"
#include "document.h"
#include "failure.h"
#include "fingerprint.h"
#include "output.h"
#include "summary.h"
#include "text.h"
#include "trail.h"

namespace tool {
namespace {

constexpr std::size_t kValueChars = 64;   // shown of a value that differs
constexpr std::size_t kCommonChars = 16;  // shown of them in front of the first difference

bool isElement(const XML_DOM_Node *node) {
    return XML_DOM_GetNodeType(node) == XML_DOM_NODE_ELEMENT;
}

// A child: an element, or the text and CDATA nodes up to the next element, which are one text.
struct Item {
    const XML_DOM_Node *node = nullptr;  // the first of them
    std::size_t position = 0;            // of an element
    // The same; again, for what that left between; the same name and key attribute; the same name;
    // the same local name.
    std::array<std::uint64_t, 5> keys{};
};

// Two children that differ, or one that has no counterpart.
struct Difference {
    Item a;
    Item b;
};

// The text of an item, and the node behind it.
std::string readText(const XML_DOM_Node *&node) {
    std::string text;
    for (; node && !isElement(node); node = XML_DOM_GetNextSibling(node)) {
        text += XML_DOM_GetNodeValue(node);
    }
    return text;
}

std::string textAt(const XML_DOM_Node *node) {
    return toUtf8(readText(node));
}

// Where to begin to show two values that differ, so that the difference can be seen.
std::size_t shownFrom(std::string_view a, std::string_view b) {
    const auto isInside = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; };
    auto at = static_cast<std::size_t>(
        std::mismatch(a.begin(),
                      a.begin() + static_cast<std::ptrdiff_t>(std::min(a.size(), b.size())),
                      b.begin())
            .first -
        a.begin());
    for (std::size_t chars = 0; at != 0; --at) {
        const bool begins = at == a.size() || !isInside(a[at]);
        if (begins && chars++ == kCommonChars) break;
    }
    return at <= kCommonChars ? 0 : at;
}

std::string shownPair(const std::string &a, const std::string &b) {
    const std::size_t from = std::max(a.size(), b.size()) <= kValueChars ? 0 : shownFrom(a, b);
    return excerpt(a, from, kValueChars) + " != " + excerpt(b, from, kValueChars);
}

// The attributes that tell elements of one name apart in most documents.
std::string_view keyAttribute(const XML_DOM_Node *element) {
    for (const char *name : {"id", "name", "key"}) {
        const char *value = XML_DOM_GetNodeAttrValByName(element, name);
        if (value) return value;
    }
    return {};
}

// Two elements that are being compared.
struct Level {
    std::uint64_t namespaceA = 0;
    std::uint64_t namespaceB = 0;
    std::vector<Difference> differences;  // among their children
    std::size_t reported = 0;             // how many of them
};

class Comparison {
  public:
    Comparison(const XML_DOM_Node *a, const XML_DOM_Node *b, Output &output) : output_(output) {
        prints_.add(a);
        prints_.add(b);
        open_.emplace_back();
        collect({elementItem(a, 0)}, {elementItem(b, 0)});
    }

    // Writes all differences; whether there are any.
    bool run() {
        while (!open_.empty()) {
            Level &level = open_.back();
            if (level.reported == level.differences.size()) {
                close();
            } else {
                report(Difference(level.differences[level.reported++]));
            }
        }
        return different_;
    }

  private:
    Item elementItem(const XML_DOM_Node *element, std::size_t position) {
        const Fingerprints::Element &print = prints_.of(element);
        const std::uint64_t name = prints_.ofBoth(print.namespaceName, print.localName);
        const std::string_view key = keyAttribute(element);
        const std::uint64_t keyed = key.empty() ? 0 : prints_.ofBoth(name, prints_.ofText(key));
        return {element, position, {print.all, print.all, keyed, name, print.localName}};
    }

    std::vector<Item> itemsOf(const XML_DOM_Node *parent) {
        constexpr std::uint64_t kText = 1;  // the name of texts
        std::vector<Item> items;
        Positions positions;
        for (const XML_DOM_Node *node = XML_DOM_GetFirstChild(parent); node;) {
            if (isElement(node)) {
                items.push_back(elementItem(node, positions.next(node)));
                node = XML_DOM_GetNextSibling(node);
            } else {
                const XML_DOM_Node *first = node;
                const std::string text = readText(node);
                if (text.empty()) continue;
                const std::uint64_t print = prints_.ofText(text);
                items.push_back({first, 0, {print, print, 0, kText, kText}});
            }
        }
        return items;
    }

    // Gathers the differences of the innermost level, between the children of two elements.
    void collect(const std::vector<Item> &a, const std::vector<Item> &b) {
        std::vector<Difference> &differences = open_.back().differences;
        std::size_t i = 0;
        std::size_t j = 0;
        const auto addUnmatched = [&](std::size_t endA, std::size_t endB) {
            for (; i < endA; ++i) differences.push_back({a[i], {}});
            for (; j < endB; ++j) differences.push_back({{}, b[j]});
        };
        for (const auto &[matchedA, matchedB] : align(a, b, a.empty() ? 0 : a[0].keys.size())) {
            addUnmatched(matchedA, matchedB);
            if (a[i].keys[0] != b[j].keys[0]) differences.push_back({a[i], b[j]});
            ++i;
            ++j;
        }
        addUnmatched(a.size(), b.size());
    }

    void close() {
        open_.pop_back();
        if (open_.empty()) return;
        trailA_.leave();
        trailB_.leave();
    }

    void report(const Difference &difference) {
        const auto &[a, b] = difference;
        if (!a.node || !b.node) {
            reportAlone(a.node ? '-' : '+', a.node ? a : b, a.node ? trailA_ : trailB_);
        } else if (!isElement(a.node)) {
            line(trailA_.shown() + ": text " + shownPair(textAt(a.node), textAt(b.node)));
        } else {
            trailA_.enter(a.node, a.position);
            trailB_.enter(b.node, b.position);
            compareNamespaces(a.node, b.node);
            compareAttributes(a.node, b.node);
            collect(itemsOf(a.node), itemsOf(b.node));
        }
    }

    void reportAlone(char sign, const Item &item, Trail &trail) {
        if (!isElement(item.node)) {
            line(std::string{sign} + " " + trail.shown() + ": text " +
                 excerpt(textAt(item.node), 0, kValueChars));
            return;
        }
        trail.enter(item.node, item.position);
        line(std::string{sign} + " " + trail.shown() + ": " + summaryOf(item.node));
        trail.leave();
    }

    // Opens a level. Elements whose namespaces differ as their parents' do are not told of again.
    void compareNamespaces(const XML_DOM_Node *a, const XML_DOM_Node *b) {
        const Fingerprints::Element &ofA = prints_.of(a);
        const Fingerprints::Element &ofB = prints_.of(b);
        const Level &parents = open_.back();
        const bool same = ofA.namespaceName == ofB.namespaceName;
        if (!same &&
            (parents.namespaceA != ofA.namespaceName || parents.namespaceB != ofB.namespaceName)) {
            line(trailA_.shown() + ": namespace " +
                 shownPair(toUtf8(ofA.namespaceText), toUtf8(ofB.namespaceText)));
        }
        open_.push_back({ofA.namespaceName, ofB.namespaceName, {}, 0});
    }

    struct Attribute {
        std::uint64_t name;
        const XML_DOM_Attr *attribute;
    };

    std::vector<Attribute> attributesOf(const XML_DOM_Node *element) {
        std::vector<Attribute> attributes;
        for (const XML_DOM_Attr *a = XML_DOM_GetFirstAttr(element); a; a = XML_DOM_GetNextAttr(a)) {
            attributes.push_back({prints_.ofName(a), a});
        }
        return attributes;
    }

    static const XML_DOM_Attr *findAttribute(const std::vector<Attribute> &sorted,
                                             std::uint64_t name) {
        const auto found = std::lower_bound(
            sorted.begin(), sorted.end(), name,
            [](const Attribute &attribute, std::uint64_t n) { return attribute.name < n; });
        return found != sorted.end() && found->name == name ? found->attribute : nullptr;
    }

    static std::vector<Attribute> sorted(std::vector<Attribute> attributes) {
        std::sort(attributes.begin(), attributes.end(),
                  [](const Attribute &a, const Attribute &b) { return a.name < b.name; });
        return attributes;
    }

    void compareAttributes(const XML_DOM_Node *a, const XML_DOM_Node *b) {
        const std::vector<Attribute> ofA = attributesOf(a);
        const std::vector<Attribute> ofB = attributesOf(b);
        const std::vector<Attribute> sortedA = sorted(ofA);
        const std::vector<Attribute> sortedB = sorted(ofB);
        for (const Attribute &attribute : ofA) {
            const XML_DOM_Attr *other = findAttribute(sortedB, attribute.name);
            if (!other) {
                attributeAlone("- ", trailA_, attribute.attribute);
                continue;
            }
            const char *valueA = XML_DOM_GetAttrValByHandle(attribute.attribute);
            const char *valueB = XML_DOM_GetAttrValByHandle(other);
            if (std::strcmp(valueA, valueB) == 0) continue;
            line(trailA_.shown() + "/@" + attributeName(attribute.attribute) + ": " +
                 shownPair(toUtf8(valueA), toUtf8(valueB)));
        }
        for (const Attribute &attribute : ofB) {
            if (!findAttribute(sortedA, attribute.name)) {
                attributeAlone("+ ", trailB_, attribute.attribute);
            }
        }
    }

    void attributeAlone(const char *sign, const Trail &trail, const XML_DOM_Attr *attribute) {
        line(sign + trail.shown() + "/@" + attributeName(attribute) + ": " +
             excerpt(toUtf8(XML_DOM_GetAttrValByHandle(attribute)), 0, kValueChars));
    }

    void line(const std::string &text) {
        different_ = true;
        output_.write(text + "\n");
    }

    Output &output_;
    Fingerprints prints_;
    Trail trailA_;
    Trail trailB_;
    std::vector<Level> open_;  // of the pairs of elements from the roots to where the walk is
    bool different_ = false;
};

}  // namespace

int runDiff(const DiffOptions &options) {
    constexpr int kDifferent = 1;
    const Tree a = loadDocument(options.a, kTrouble);
    const Tree b = loadDocument(options.b, kTrouble);
    Output output("");
    const bool different = Comparison(a.get(), b.get(), output).run();
    output.commit();
    return different ? kDifferent : kSuccess;
}

}  // namespace tool
