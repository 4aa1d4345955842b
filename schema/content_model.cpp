#include "schema/content_model.h"

#include <cstddef>
#include <cstdint>

#include "schema/lookahead.h"
#include "schema/occurrence.h"

namespace cxml {

// How many repetitions of the enclosing group something that was matched can stand for: at least and
// at most.
struct Uses {
    std::uint64_t least;
    std::uint64_t most;
};

// A group that is being matched. Frames lie on the stack: their depth is the schema's, not the
// document's.
struct GroupFrame {
    const SchemaModelGroup &group;
    const GroupFrame *outer;
    bool inRepeat;            // this group or one around it may repeat
    std::uint32_t required;   // particles that cannot match nothing
    bool currentRequired;     // whether the particle being matched is one of them
    std::uint64_t least = 0;  // repetitions so far, as few as they may be read
    std::uint64_t most = 0;   // and as many
    std::uint64_t extra = 0;  // repetitions that runs have begun within the present one
};

namespace {

Uses matchParticle(SchemaContentCursor &cursor, const SchemaTypedRef &particle, bool inRepeat,
                   Validation &run);

void advance(SchemaContentCursor &cursor) {
    setCurrent(cursor, cursor.current.node->nextSibling);
}

// Takes the current child; false for want of memory.
bool take(SchemaContentCursor &cursor, const SchemaElementDecl *decl, Validation &run) {
    if (decl && !run.matched.append({cursor.current.node, decl})) {
        setFailure(run);
        return false;
    }
    advance(cursor);
    return true;
}

// Whether a run may go on beyond maxOccurs because the groups around it may repeat: the run has
// filled so many repetitions of the innermost one.
bool mayRunOn(const GroupFrame *frame, std::uint64_t filled) {
    for (; frame; frame = frame->outer) {
        // A new repetition would have to begin with another particle.
        const bool sequence = frame->group.compositor == SCHEMA_KIND_SEQUENCE;
        if (sequence && frame->required > (frame->currentRequired ? 1u : 0u)) return false;
        const std::uint64_t total = frame->least + frame->extra + filled;
        const std::uint32_t max = frame->group.maxOccurs;
        if (max == 0) return false;  // of no group that is matched, but it is divided by
        if (!isMultiple(total, max)) return true;
        filled = divide(total, max);
    }
    return false;
}

// Whether a run of so many equal children ends here, where maxOccurs children fill a repetition.
bool runEnds(const SchemaContentCursor &cursor, std::uint64_t count, std::uint32_t max,
             bool inRepeat) {
    if (max == 0) return true;
    if (!isMultiple(count, max)) return false;
    return !inRepeat || !mayRunOn(cursor.frames, divide(count, max));
}

Uses usesOf(std::uint64_t count, std::uint32_t min, std::uint32_t max) {
    return {count == 0 ? 0 : ceilDivide(count, max), min == 0 ? kInfinite : divide(count, min)};
}

void expected(const SchemaContentCursor &cursor, const SchemaElementDecl &decl, Validation &run) {
    const SchemaElementDecl &declared = referred(decl);
    if (decl.ref && declared.abstract == 1) {
        const ElementName &child = cursor.current;
        Schema_SetError(run, 6, {.node = child.node, .name = child.name, .ns = child.ns});
    } else {
        Schema_SetError(run, 1,
                        {.node = cursor.current.node->parent,
                         .name = declared.name,
                         .ns = expectedNamespace(declared, run)});
    }
}

// Of an element, what may stand here in a run without an end.
Uses matchElementRun(SchemaContentCursor &cursor, const SchemaElementDecl &decl, bool inRepeat,
                     Validation &run) {
    std::uint64_t count = 0;
    while (cursor.current.node && matches(cursor.current, decl, run)) {
        if (!take(cursor, &decl, run)) return {};
        if (runEnds(cursor, ++count, decl.maxOccurs, inRepeat)) break;
    }
    run.context.matched = static_cast<std::uint32_t>(count);
    // Too few before another element: that one is wrong. Too few at the end: their number is.
    if (count < decl.minOccurs && cursor.current.node) {
        expected(cursor, decl, run);
    } else if (!Schema_CheckOccurs(count, decl.minOccurs, decl.maxOccurs)) {
        Schema_SetError(run, 5, {.node = cursor.parent, .name = referred(decl).name});
    }
    if (!run.valid()) return {};
    return usesOf(count, decl.minOccurs, decl.maxOccurs);
}

Uses Schema_MatchElementParticle(SchemaContentCursor &cursor, const SchemaElementDecl &decl,
                                 bool inRepeat, Validation &run) {
    // The two simple cases: it may be missing and is; it stands here, where one can stand.
    const bool here = cursor.current.node && matches(cursor.current, decl, run);
    if (!here && decl.minOccurs == 0) {
        run.context.matched = 0;
        return {0, kInfinite};
    }
    if (here && decl.maxOccurs == 1 && decl.minOccurs <= 1 && !inRepeat) {
        if (!take(cursor, &decl, run)) return {};
        run.context.matched = 1;
        return {1, decl.minOccurs == 0 ? kInfinite : 1};
    }
    return matchElementRun(cursor, decl, inRepeat, run);
}

Uses matchWildcardParticle(SchemaContentCursor &cursor, const SchemaElementWildcard &wildcard,
                           bool inRepeat, Validation &run) {
    std::uint64_t count = 0;
    for (;;) {
        const WildcardMatch match = matchWildcard(cursor.current, wildcard, run);
        if (!match.accepts) break;
        if (!take(cursor, match.decl, run)) return {};
        if (runEnds(cursor, ++count, wildcard.maxOccurs, inRepeat)) break;
    }
    run.context.matched = static_cast<std::uint32_t>(count);
    if (!Schema_CheckOccurs(count, wildcard.minOccurs, wildcard.maxOccurs)) {
        Schema_SetError(run, 8, {.node = cursor.parent});
        return {};
    }
    return usesOf(count, wildcard.minOccurs, wildcard.maxOccurs);
}

// Opens a group for as long as it lives.
class OpenGroup {
  public:
    OpenGroup(SchemaContentCursor &cursor, const SchemaModelGroup &group, bool inRepeat,
              Validation &run)
        : cursor_(cursor),
          frame_{group, cursor.frames, inRepeat, run.groups.required(group), false} {
        cursor.frames = &frame_;
    }
    OpenGroup(const OpenGroup &) = delete;
    OpenGroup &operator=(const OpenGroup &) = delete;
    ~OpenGroup() { cursor_.frames = frame_.outer; }

    GroupFrame *operator->() { return &frame_; }

    // Matches one of its particles.
    Uses match(const SchemaTypedRef &particle, bool required, Validation &run) {
        frame_.currentRequired = required;
        return matchParticle(cursor_, particle, frame_.inRepeat, run);
    }

    bool finished() const {
        const std::uint32_t max = frame_.group.maxOccurs;
        return max == 0 || isMultiple(frame_.least, max);
    }
    bool contentEmptiable() const { return isContentEmptiable(frame_.group, frame_.required); }
    bool satisfied() const { return contentEmptiable() || frame_.most >= frame_.group.minOccurs; }
    // What the group as a whole stands for in the one around it.
    Uses uses() const {
        const SchemaModelGroup &group = frame_.group;
        const bool emptiable = group.minOccurs == 0 || contentEmptiable();
        return {frame_.least == 0 ? 0 : ceilDivide(frame_.least, group.maxOccurs),
                emptiable ? kInfinite : divide(frame_.most, group.minOccurs)};
    }
    bool repeatedEnough() const {
        if (frame_.least == 0) return frame_.group.minOccurs == 0 || satisfied();
        const Uses total = uses();
        return total.most >= total.least;
    }

  private:
    SchemaContentCursor &cursor_;
    GroupFrame frame_;
};

// Whether a particle cannot match nothing.
bool isRequired(const SchemaTypedRef &particle, Validation &run) {
    if (particle.kind == SCHEMA_KIND_ELEMENT) return elementOf(particle).minOccurs != 0;
    if (particle.kind != SCHEMA_KIND_MODEL_GROUP) return !isEmptiable(particle);
    const SchemaModelGroup &group = groupOf(particle);
    return group.minOccurs != 0 && !isContentEmptiable(group, run.groups.required(group));
}

// One repetition of a sequence: every particle in turn. What it adds to the readings of how many
// repetitions there have been is added up in the frame.
void repeatSequence(OpenGroup &open, const SchemaModelGroup &group, Validation &run) {
    // With one required particle its run tells how many repetitions there can be; with none any
    // number can, with more only this one.
    std::uint64_t most = open->required == 0 ? kInfinite : 1;
    open->extra = 0;
    for (std::uint32_t i = 0; i < group.particleCount; ++i) {
        const bool required = isRequired(group.particles[i], run);
        const Uses uses = open.match(group.particles[i], required, run);
        if (!run.valid()) return;
        if (uses.least > 1) open->extra += uses.least - 1;
        if (required && open->required == 1) most = uses.most;
    }
    open->least += 1 + open->extra;
    open->most = addCounts(open->most, most);
    open->extra = 0;
}

Uses matchSequence(SchemaContentCursor &cursor, const SchemaModelGroup &group, bool inRepeat,
                   Validation &run) {
    OpenGroup open{cursor, group, inRepeat, run};
    const auto begins = [&] { return canGroupBegin(group, cursor.current, run); };
    bool again = cursor.current.node && group.maxOccurs > 0 && (group.minOccurs > 0 || begins());
    while (again) {
        const XML_DOM_Node *before = cursor.current.node;
        repeatSequence(open, group, run);
        if (!run.valid()) return {};
        const bool moved = cursor.current.node != before;
        again = !open.finished() && moved && cursor.current.node &&
                ((open->least < group.minOccurs && !open.satisfied()) || begins());
    }
    if (!open.repeatedEnough()) {
        Schema_SetError(run, 5, {.node = cursor.parent, .name = cursor.parent->name});
    }
    return open.uses();
}

Uses matchChoice(SchemaContentCursor &cursor, const SchemaModelGroup &group, Validation &run) {
    OpenGroup open{cursor, group, true, run};
    while (cursor.current.node && group.maxOccurs > 0) {
        const SchemaTypedRef *chosen = chooseParticle(group, cursor.current, run);
        if (!chosen) break;
        const XML_DOM_Node *before = cursor.current.node;
        const bool required = isRequired(*chosen, run);
        const Uses uses = open.match(*chosen, required, run);
        if (!run.valid()) return {};
        open->least += uses.least > 1 ? uses.least : 1;
        open->most = addCounts(open->most, required ? uses.most : kInfinite);
        if (open.finished() || cursor.current.node == before) break;
    }
    if (!open.repeatedEnough()) Schema_SetError(run, 11, {.node = cursor.parent});
    return open.uses();
}

// The element particle of an all group that a child matches, or null; *index tells which it is.
const SchemaElementDecl *findInAll(const SchemaModelGroup &group, const ElementName &child,
                                   Validation &run, std::uint32_t *index) {
    for (std::uint32_t i = 0; i < group.particleCount; ++i) {
        const SchemaTypedRef &particle = group.particles[i];
        if (particle.kind != SCHEMA_KIND_ELEMENT) continue;
        if (!matches(child, elementOf(particle), run)) continue;
        *index = i;
        return &elementOf(particle);
    }
    return nullptr;
}

// Reports the first particle that stands too often or not at all. Intended: only a minOccurs of
// exactly 1 requires an element here.
void checkCounters(const SchemaContentCursor &cursor, const SchemaModelGroup &group,
                   Validation &run) {
    for (std::uint32_t i = 0; i < group.particleCount; ++i) {
        if (group.particles[i].kind != SCHEMA_KIND_ELEMENT) continue;
        const SchemaElementDecl &decl = elementOf(group.particles[i]);
        const SchemaElementDecl &declared = referred(decl);
        const std::uint32_t count = run.counters[i];
        if (count > 1 || (count == 1 && decl.maxOccurs == 0)) {
            return Schema_SetError(run, 5, {.node = cursor.parent, .name = declared.name});
        }
        if (count == 0 && decl.minOccurs == 1) {
            return Schema_SetError(run, 1,
                                   {.node = cursor.parent,
                                    .name = declared.name,
                                    .ns = expectedNamespace(declared, run)});
        }
    }
}

Uses matchAll(SchemaContentCursor &cursor, const SchemaModelGroup &group, Validation &run) {
    constexpr Uses kOnce = {1, 1};
    run.counters.truncate(0);
    if (!run.counters.reserve(group.particleCount)) {
        setFailure(run);
        return {};
    }
    if (!cursor.current.node && group.minOccurs == 0) return kOnce;
    for (std::uint32_t i = 0; i < group.particleCount; ++i) run.counters.tail()[i] = 0;
    run.counters.extend(group.particleCount);
    std::uint32_t index = 0;
    while (cursor.current.node) {
        const SchemaElementDecl *decl = findInAll(group, cursor.current, run, &index);
        if (!decl) break;
        if (!take(cursor, decl, run)) return {};
        if (run.counters[index] < 2) ++run.counters[index];  // more than one is all that counts
    }
    checkCounters(cursor, group, run);
    return kOnce;
}

Uses Schema_MatchModelGroup(SchemaContentCursor &cursor, const SchemaModelGroup &group,
                            bool inRepeat, Validation &run) {
    switch (group.compositor) {
        case SCHEMA_KIND_ALL:
            return matchAll(cursor, group, run);
        case SCHEMA_KIND_CHOICE:
            return matchChoice(cursor, group, run);
        case SCHEMA_KIND_SEQUENCE:
            return matchSequence(cursor, group, inRepeat || group.maxOccurs > 1, run);
        default:
            setFailure(run);  // no content model at all
            return {};
    }
}

Uses matchParticle(SchemaContentCursor &cursor, const SchemaTypedRef &particle, bool inRepeat,
                   Validation &run) {
    switch (particle.kind) {
        case SCHEMA_KIND_MODEL_GROUP:
            return Schema_MatchModelGroup(cursor, groupOf(particle), inRepeat, run);
        case SCHEMA_KIND_ELEMENT:
            return Schema_MatchElementParticle(cursor, elementOf(particle), inRepeat, run);
        case SCHEMA_KIND_ELEMENT_WILDCARD:
            return matchWildcardParticle(cursor, wildcardOf(particle), inRepeat, run);
        default:
            return {0, kInfinite};  // matches nothing
    }
}

void matchTopGroup(SchemaContentCursor &cursor, const SchemaModelGroup *group, Validation &run) {
    if (group) Schema_MatchModelGroup(cursor, *group, false, run);
}

void invalidText(const SchemaContentCursor &cursor, Validation &run) {
    Schema_SetError(run, 3,
                    {.node = cursor.parent, .name = cursor.parent->name, .text = run.message});
}

void checkBase(SchemaContentCursor &cursor, const SchemaDerivation &derivation, Validation &run) {
    if (!derivation.baseType) return;
    if (derivation.baseTypeKind != SCHEMA_KIND_SIMPLE_TYPE) {
        const auto *base = static_cast<const SchemaComplexType *>(derivation.baseType);
        return Schema_CheckComplexContent(cursor, *base, run);
    }
    const auto *base = static_cast<const SchemaSimpleType *>(derivation.baseType);
    const char *value = XML_DOM_GetFirstTextChildValue(cursor.parent);
    if (!checkSimpleType(base, value, run.valueCheck())) invalidText(cursor, run);
}

}  // namespace

void setCurrent(SchemaContentCursor &cursor, XML_DOM_Node *node) noexcept {
    while (node && node->type != XML_DOM_NODE_ELEMENT) {
        cursor.sawText = true;
        node = node->nextSibling;
    }
    cursor.current = nameOf(node, cursor.defaultNs);
}

// Calls itself along the base types: as deep as the schema derives types from one another.
void Schema_CheckComplexContent(SchemaContentCursor &cursor, const SchemaComplexType &type,
                                Validation &run) noexcept {
    const SchemaDerivation *derivation = type.content;
    if (!derivation) return matchTopGroup(cursor, type.particle, run);
    switch (derivation->derivationKind) {
        case SCHEMA_KIND_COMPLEX_EXTENSION:
            // What is extended may have either kind of content, but only a complex type has any.
            if (derivation->baseTypeKind != SCHEMA_KIND_SIMPLE_TYPE)
                checkBase(cursor, *derivation, run);
            if (run.valid()) matchTopGroup(cursor, derivation->particle, run);
            break;
        case SCHEMA_KIND_COMPLEX_RESTRICTION:
            setCurrent(cursor, cursor.parent->firstChild);
            matchTopGroup(cursor, derivation->particle, run);
            break;
        case SCHEMA_KIND_SIMPLE_EXTENSION:
            checkBase(cursor, *derivation, run);
            break;
        default: {
            checkBase(cursor, *derivation, run);
            if (!run.valid() || !derivation->facets) break;
            const char *value = XML_DOM_GetFirstTextChildValue(cursor.parent);
            if (!checkFacets(derivation->facets, derivation->facetCount, value ? value : "",
                             run.valueCheck())) {
                invalidText(cursor, run);
            }
        }
    }
}

}  // namespace cxml
