#include "xsd2c/records/greedy.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

// The validator reads children as repetitions of a group as they come, as many as there may be. It
// goes wrong only if all this holds:
//
// - The group has to repeat, and may not repeat without end. If it may, one reading takes all that
//   follows, and the most repetitions that there can be are all that counts.
// - It can stand several times in a row: a group around it may repeat, and nothing has to stand in
//   between. So a reading can take too much for what is left to be enough.
// - The number of repetitions is not settled: it is a range, or the same children may be more
//   repetitions or fewer, since something that makes up a repetition by itself has such a range.

namespace xsd2c {
namespace {

// What a group around a term must know of it.
struct Shape {
    bool emptiable = true;
    bool variable = false;              // how many of it the same children are is not settled
    std::vector<const Term *> fragile;  // groups in it that fail if it repeats without a break
};

bool isParticle(const Term &term) {
    return term.kind == Term::Kind::kElement || term.kind == Term::Kind::kWildcard;
}

// Elements of several names can be compiled as a choice of them.
bool mayBeGroup(const Term &term) {
    return !isParticle(term) || term.names.size() > 1;
}

bool isEmptyGroup(const Term &term) {
    return !isParticle(term) && term.children.empty();
}

// Whether a term holds no particle at all.
bool isVoid(const Term &term) {
    return !isParticle(term) && std::all_of(term.children.begin(), term.children.end(), isVoid);
}

// What a model consists of where it is a sequence of nothing else.
const Term &withoutWrapping(const Term &model) {
    const Term *term = &model;
    while (term->kind == Term::Kind::kSequence && term->minOccurs == 1 && term->maxOccurs == 1) {
        const auto holdsSome = [](const Term &child) { return !isVoid(child); };
        const auto &children = term->children;
        const auto first = std::find_if(children.begin(), children.end(), holdsSome);
        if (first == children.end()) break;
        if (std::any_of(std::next(first), children.end(), holdsSome)) break;
        term = &*first;
    }
    return *term;
}

class Search {
  public:
    explicit Search(const Term &model) {
        const Term &content = withoutWrapping(model);
        if (content.kind == Term::Kind::kAll) {
            checkAll(content);
        } else {
            shapeOf(content);
        }
    }

    std::vector<GreedyFailure> failures;

  private:
    void fail(const Term &term, const char *text) { failures.push_back({term.place, text}); }

    void checkAll(const Term &all) {
        if (all.maxOccurs > 1) fail(all, "an 'all' group that may repeat");
        for (const Term &child : all.children) {
            if (child.kind != Term::Kind::kElement) {
                fail(child, "an 'all' group with something else than elements");
            } else if (child.maxOccurs > 1) {
                fail(child, "an element of an 'all' group that may repeat");
            }
        }
    }

    // Calls itself for groups in groups: as deep as the schema nests them.
    Shape shapeOf(const Term &term) {
        if (term.maxOccurs == 0 || isEmptyGroup(term)) return {};
        Shape shape;
        if (term.kind == Term::Kind::kAll) {
            fail(term, "an 'all' group within another group");
        } else if (isParticle(term)) {
            shape.emptiable = false;
        } else {
            shape = contentOf(term);
        }
        if (term.maxOccurs > 1) {
            for (const Term *group : shape.fragile) {
                fail(*group, "a group that has to repeat within one that may repeat");
            }
            shape.fragile.clear();
        }
        shape.variable = shape.variable || term.minOccurs < term.maxOccurs;
        const bool hasToRepeat = term.minOccurs > 1 && !shape.emptiable;
        if (mayBeGroup(term) && hasToRepeat && term.maxOccurs != kUnbounded && shape.variable) {
            shape.fragile.push_back(&term);
        }
        shape.emptiable = shape.emptiable || term.minOccurs == 0;
        return shape;
    }

    // The shape of one repetition of a group.
    Shape contentOf(const Term &group) {
        std::vector<Shape> children;
        for (const Term &child : group.children) children.push_back(shapeOf(child));
        const auto required = std::count_if(children.begin(), children.end(),
                                            [](const Shape &child) { return !child.emptiable; });
        const bool choice = group.kind == Term::Kind::kChoice;
        Shape shape;
        shape.emptiable =
            choice ? static_cast<std::size_t>(required) < children.size() : required == 0;
        for (Shape &child : children) {
            const bool alone = choice || required == (child.emptiable ? 0 : 1);
            if (!alone) continue;
            shape.variable = shape.variable || child.variable;
            shape.fragile.insert(shape.fragile.end(), child.fragile.begin(), child.fragile.end());
        }
        return shape;
    }
};

}  // namespace

std::vector<GreedyFailure> findGreedyFailures(const Term &model) {
    return Search(model).failures;
}

}  // namespace xsd2c
