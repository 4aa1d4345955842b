#include "xsd2c/records/determinism.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

// A walk over the model from its end to its beginning. At each point of the walk the particles that
// may come next are known: they are the options there. Whatever is added to the options is compared
// with those that stand already. Repetitions are not expanded. Of the copies of a particle that
// repeats from m to n times, some let another copy follow (those before the last), some let the
// model go on behind the particle (from the m-th on). If m < n, one copy lets both, and what it
// leaves open is all that the others leave open. If m = n, no copy lets both, as long as a copy
// cannot be empty; so what begins the next copy is not compared with what follows the particle.
//
// The functions that walk call themselves for groups in groups: as deep as the schema nests them.

namespace xsd2c {
namespace {

// Far beyond what any sensible model needs; a second or so of work.
constexpr std::size_t kMostSteps = 100'000'000;
constexpr std::size_t kMostAmbiguities = 1000;

// Numbers for namespace names and for names of elements.
class NameNumbers {
  public:
    std::uint32_t ofNamespace(std::string_view ns) {
        const auto [at, isNew] =
            namespaces_.emplace(ns, static_cast<std::uint32_t>(namespaces_.size()));
        if (isNew) locals_.emplace_back();
        return at->second;
    }
    std::uint32_t ofElement(const Term::Name &name) {
        const auto [at, isNew] = locals_[ofNamespace(name.ns)].emplace(name.local, elementCount_);
        if (isNew) ++elementCount_;
        return at->second;
    }
    std::uint32_t namespaceCount() const { return static_cast<std::uint32_t>(locals_.size()); }
    std::uint32_t elementCount() const { return elementCount_; }

  private:
    std::unordered_map<std::string_view, std::uint32_t> namespaces_;
    std::vector<std::unordered_map<std::string_view, std::uint32_t>> locals_;  // by namespace
    std::uint32_t elementCount_ = 0;
};

struct Range {
    std::uint64_t least;
    std::uint64_t most;
};

// Of numbers of repetitions; those beyond all counts of children are one.
std::uint64_t multiply(std::uint64_t a, std::uint32_t b) {
    constexpr std::uint64_t kMost = kUnbounded;
    return std::min(a * b, kMost);
}

// A term, with what is asked of it again and again.
struct Node {
    const Term *term = nullptr;
    std::uint32_t number = 0;       // in document order
    std::size_t required = 0;       // children that are not emptiable
    bool contentEmptiable = false;  // one repetition of it
    bool emptiable = false;
    std::vector<std::uint32_t> elements;    // the numbers of its names
    std::vector<std::uint32_t> namespaces;  // of its names, or listed by its wildcard
    std::vector<Node> children;

    bool isGroup() const {
        return term->kind != Term::Kind::kElement && term->kind != Term::Kind::kWildcard;
    }
    // A wildcard that takes all namespaces but some.
    bool isOpenWildcard() const {
        return term->wildcard && term->wildcard->names != Wildcard::Names::kListed;
    }
};

bool admits(const Wildcard &wildcard, std::string_view ns) {
    switch (wildcard.names) {
        case Wildcard::Names::kAny:
            return true;
        case Wildcard::Names::kOther:
            return !ns.empty() && ns != wildcard.targetNs;
        case Wildcard::Names::kListed:
            break;
    }
    return std::find(wildcard.listed.begin(), wildcard.listed.end(), ns) != wildcard.listed.end();
}

std::string describeNamespace(std::string_view ns) {
    if (ns.empty()) return "an element of no namespace";
    return "an element of namespace '" + std::string(ns) + "'";
}

// What two wildcards that take all namespaces but some have in common.
std::string describeOpen(const Wildcard &a, const Wildcard &b) {
    std::vector<std::string> excluded;
    for (const Wildcard *wildcard : {&a, &b}) {
        if (wildcard->names == Wildcard::Names::kOther && !wildcard->targetNs.empty()) {
            excluded.push_back("'" + wildcard->targetNs + "'");
        }
    }
    std::string text = "an element of any namespace";
    if (!excluded.empty()) text += " but " + excluded.front();
    if (excluded.size() == 2 && excluded[0] != excluded[1]) text += " and " + excluded[1];
    return text;
}

std::string describeFirstName(const Term &element, const Wildcard &wildcard) {
    for (const Term::Name &name : element.names) {
        if (admits(wildcard, name.ns)) return "element '" + name.local + "'";
    }
    return {};
}

// The pairs of particles that were found to take the same child.
class Findings {
  public:
    void add(const Node &a, const Node &b, std::string child) {
        const Node *first = a.number < b.number ? &a : &b;
        const Node *second = a.number < b.number ? &b : &a;
        const std::uint64_t pair = std::uint64_t{first->number} << 32 | second->number;
        if (!known_.insert(pair).second) return;
        found_.push_back({pair, {first->term->place, second->term->place, std::move(child)}});
    }
    bool enough() const { return found_.size() >= kMostAmbiguities; }

    std::vector<Ambiguity> inDocumentOrder() {
        std::sort(found_.begin(), found_.end(),
                  [](const Found &a, const Found &b) { return a.pair < b.pair; });
        std::vector<Ambiguity> ambiguities;
        for (Found &found : found_) ambiguities.push_back(std::move(found.ambiguity));
        return ambiguities;
    }

  private:
    struct Found {
        std::uint64_t pair;
        Ambiguity ambiguity;
    };
    std::vector<Found> found_;
    std::unordered_set<std::uint64_t> known_;
};

// The particles that may take the next child at a point of the model. They can be hidden behind a
// particle that cannot be left out, and what was added or hidden can be undone.
class Options {
  public:
    Options(const NameNumbers &names, Findings &findings)
        : byElement_(names.elementCount()),
          elementsByNamespace_(names.namespaceCount()),
          wildcardsByNamespace_(names.namespaceCount()),
          findings_(findings) {}

    struct Mark {
        std::size_t added;
        std::uint32_t level;
    };
    Mark mark() const { return {added_.size(), level_}; }
    void undo(const Mark &mark) {
        for (; added_.size() > mark.added; added_.pop_back()) added_.back()->pop_back();
        level_ = mark.level;
    }
    void hide() { ++level_; }

    void add(const Node &leaf, bool compare) {
        if (leaf.term->wildcard) {
            addWildcard(leaf, compare);
        } else {
            addElement(leaf, compare);
        }
    }

    void step() { ++steps_; }
    bool tooMany() const { return steps_ > kMostSteps || findings_.enough(); }

  private:
    struct Entry {
        const Node *leaf;
        std::uint32_t level;
    };
    using Entries = std::vector<Entry>;  // those that are not hidden come last

    void addElement(const Node &leaf, bool compare) {
        bool known = true;
        for (std::size_t i = 0; i < leaf.elements.size(); ++i) {
            Entries &same = byElement_[leaf.elements[i]];
            const std::string_view local = leaf.term->names[i].local;
            if (compare) {
                forEach(same, [&](const Node &other) {
                    if (&other != &leaf) {
                        findings_.add(other, leaf, "element '" + std::string(local) + "'");
                    }
                });
            }
            if (contains(same, leaf)) continue;
            known = false;
            push(same, leaf);
        }
        if (compare) compareWithWildcards(leaf);
        if (known) return;
        for (const std::uint32_t ns : leaf.namespaces) push(elementsByNamespace_[ns], leaf);
    }

    void compareWithWildcards(const Node &leaf) {
        const auto compare = [&](const Node &other) {
            const std::string child = describeFirstName(*leaf.term, *other.term->wildcard);
            if (!child.empty()) findings_.add(other, leaf, child);
        };
        for (const std::uint32_t ns : leaf.namespaces) forEach(wildcardsByNamespace_[ns], compare);
        forEach(openWildcards_, compare);
    }

    void addWildcard(const Node &leaf, bool compare) {
        if (leaf.isOpenWildcard()) {
            if (compare) compareOpenWildcard(leaf);
            if (!contains(openWildcards_, leaf)) push(openWildcards_, leaf);
            return;
        }
        for (std::size_t i = 0; i < leaf.namespaces.size(); ++i) {
            Entries &wildcards = wildcardsByNamespace_[leaf.namespaces[i]];
            if (compare) compareListed(leaf, leaf.namespaces[i], leaf.term->wildcard->listed[i]);
            if (!contains(wildcards, leaf)) push(wildcards, leaf);
        }
    }

    void compareListed(const Node &leaf, std::uint32_t ns, const std::string &nsName) {
        forEach(elementsByNamespace_[ns], [&](const Node &other) {
            findings_.add(other, leaf, describeFirstName(*other.term, *leaf.term->wildcard));
        });
        forEach(wildcardsByNamespace_[ns], [&](const Node &other) {
            if (&other != &leaf) findings_.add(other, leaf, describeNamespace(nsName));
        });
        forEach(openWildcards_, [&](const Node &other) {
            if (admits(*other.term->wildcard, nsName)) {
                findings_.add(other, leaf, describeNamespace(nsName));
            }
        });
    }

    void compareOpenWildcard(const Node &leaf) {
        const Wildcard &wildcard = *leaf.term->wildcard;
        for (const Entries &elements : elementsByNamespace_) {
            forEach(elements, [&](const Node &other) {
                const std::string child = describeFirstName(*other.term, wildcard);
                if (!child.empty()) findings_.add(other, leaf, child);
            });
        }
        for (const Entries &wildcards : wildcardsByNamespace_) {
            forEach(wildcards, [&](const Node &other) {
                for (const std::string &ns : other.term->wildcard->listed) {
                    if (!admits(wildcard, ns)) continue;
                    findings_.add(other, leaf, describeNamespace(ns));
                    break;
                }
            });
        }
        forEach(openWildcards_, [&](const Node &other) {
            if (&other == &leaf) return;
            findings_.add(other, leaf, describeOpen(*other.term->wildcard, wildcard));
        });
    }

    template <class Visit>
    void forEach(const Entries &entries, Visit visit) {
        step();
        for (std::size_t i = entries.size(); i > 0 && entries[i - 1].level == level_; --i) {
            if (tooMany()) return;
            step();
            visit(*entries[i - 1].leaf);
        }
    }

    bool contains(const Entries &entries, const Node &leaf) {
        bool found = false;
        forEach(entries, [&](const Node &other) { found = found || &other == &leaf; });
        return found;
    }

    void push(Entries &entries, const Node &leaf) {
        step();
        entries.push_back({&leaf, level_});
        added_.push_back(&entries);
    }

    std::vector<Entries> byElement_;
    std::vector<Entries> elementsByNamespace_;
    std::vector<Entries> wildcardsByNamespace_;  // those that list namespaces
    Entries openWildcards_;
    std::vector<Entries *> added_;
    std::uint32_t level_ = 0;
    std::size_t steps_ = 0;
    Findings &findings_;
};

class Walk {
  public:
    explicit Walk(const Term &model) : root_(read(model)), options_(names_, findings_) {}

    std::vector<Ambiguity> run(bool &tooLarge) {
        follow(root_);
        tooLarge = options_.tooMany();
        return findings_.inDocumentOrder();
    }

  private:
    Node read(const Term &term) {
        Node node;
        node.term = &term;
        node.number = nodeCount_++;
        for (const Term &child : term.children) {
            if (child.maxOccurs == 0) continue;
            node.children.push_back(read(child));
            if (!node.children.back().emptiable) ++node.required;
        }
        readNames(term, node);
        node.contentEmptiable = isContentEmptiable(node);
        node.emptiable = node.contentEmptiable || term.minOccurs == 0;
        return node;
    }

    void readNames(const Term &term, Node &node) {
        for (const Term::Name &name : term.names) {
            node.elements.push_back(names_.ofElement(name));
            node.namespaces.push_back(names_.ofNamespace(name.ns));
        }
        if (term.wildcard) {
            for (const std::string &ns : term.wildcard->listed) {
                node.namespaces.push_back(names_.ofNamespace(ns));
            }
            return;
        }
        std::sort(node.namespaces.begin(), node.namespaces.end());
        node.namespaces.erase(std::unique(node.namespaces.begin(), node.namespaces.end()),
                              node.namespaces.end());
    }

    static bool isContentEmptiable(const Node &node) {
        if (!node.isGroup()) return false;
        if (node.children.empty()) return true;
        return node.term->kind == Term::Kind::kChoice ? node.required < node.children.size()
                                                      : node.required == 0;
    }

    // Adds the particles that a node can begin with.
    void addFirst(const Node &node, bool compare) {
        options_.step();
        if (options_.tooMany()) return;
        if (!node.isGroup()) return options_.add(node, compare);
        for (const Node &child : node.children) {
            addFirst(child, compare);
            if (node.term->kind == Term::Kind::kSequence && !child.emptiable) break;
        }
    }

    // Whether children may be such that a node both may and need not repeat again behind them.
    bool isFlexible(const Node &node) {
        const Term &term = *node.term;
        return node.contentEmptiable || term.minOccurs < term.maxOccurs ||
               canRegroup(node, {1, 1}, term.maxOccurs);
    }

    // Whether a run of repetitions of something within a node, which count at least and at most as
    // often as told in one repetition of the outer node, may be so many repetitions of that as are
    // wanted, and fewer.
    bool canRegroup(const Node &node, Range outer, std::uint32_t wanted) {
        const bool alone = node.term->kind == Term::Kind::kChoice || node.required == 1;
        if (!alone || options_.tooMany()) return false;
        for (const Node &child : node.children) {
            options_.step();
            if (child.emptiable) continue;
            const Range range = {multiply(outer.least, child.term->minOccurs),
                                 multiply(outer.most, child.term->maxOccurs)};
            const std::uint64_t fewer = wanted - 1;
            if (range.most - range.least >= (range.least + fewer - 1) / fewer) return true;
            if (canRegroup(child, range, wanted)) return true;
        }
        return false;
    }

    // Walks over a node; the options are those behind it.
    void follow(const Node &node) {
        const Options::Mark mark = options_.mark();
        if (node.term->maxOccurs > 1) addFirst(node, isFlexible(node));
        if (node.term->kind == Term::Kind::kSequence) {
            followSequence(node);
        } else if (node.isGroup()) {
            followAlternatives(node);
        }
        options_.undo(mark);
    }

    void followSequence(const Node &node) {
        const Options::Mark mark = options_.mark();
        for (std::size_t i = node.children.size(); i > 0; --i) {
            const Node &child = node.children[i - 1];
            follow(child);
            if (!child.emptiable) options_.hide();
            addFirst(child, true);
        }
        options_.undo(mark);
    }

    void followAlternatives(const Node &node) {
        const Options::Mark mark = options_.mark();
        options_.hide();
        for (const Node &child : node.children) addFirst(child, true);
        options_.undo(mark);
        if (node.term->kind == Term::Kind::kAll) {
            // Each may follow each other. What may be left out competes with what is behind.
            for (const Node &child : node.children) addFirst(child, child.emptiable);
        }
        for (const Node &child : node.children) follow(child);
        options_.undo(mark);
    }

    NameNumbers names_;
    std::uint32_t nodeCount_ = 0;
    Node root_;
    Findings findings_;
    Options options_;
};

}  // namespace

std::vector<Ambiguity> findAmbiguities(const Term &model, bool &tooLarge) {
    tooLarge = false;
    if (model.maxOccurs == 0) return {};
    return Walk(model).run(tooLarge);
}

}  // namespace xsd2c
