#include "xsd2c/records/facet_step.h"

#include <algorithm>
#include <optional>

#include "compactxml.h"
#include "text/unicode.h"
#include "xsd2c/pattern/pattern.h"
#include "xsd2c/pattern/tree_text.h"
#include "xsd2c/xsd/xml_text.h"

namespace xsd2c {
namespace {

std::string_view nameOf(FacetKind kind) {
    switch (kind) {
        case FacetKind::kLength:
            return "length";
        case FacetKind::kMinLength:
            return "minLength";
        case FacetKind::kMaxLength:
            return "maxLength";
        case FacetKind::kPattern:
            return "pattern";
        case FacetKind::kEnumeration:
            return "enumeration";
        case FacetKind::kWhiteSpace:
            return "whiteSpace";
        case FacetKind::kMaxInclusive:
            return "maxInclusive";
        case FacetKind::kMaxExclusive:
            return "maxExclusive";
        case FacetKind::kMinInclusive:
            return "minInclusive";
        case FacetKind::kMinExclusive:
            return "minExclusive";
        case FacetKind::kTotalDigits:
            return "totalDigits";
        case FacetKind::kFractionDigits:
            return "fractionDigits";
    }
    return {};
}

std::string described(const Facet &facet) {
    return std::string(nameOf(facet.kind)) + " '" + facet.value + "'";
}

bool isLength(FacetKind kind) {
    return kind == FacetKind::kLength || kind == FacetKind::kMinLength ||
           kind == FacetKind::kMaxLength;
}

bool isBound(FacetKind kind) {
    return kind == FacetKind::kMaxInclusive || kind == FacetKind::kMaxExclusive ||
           kind == FacetKind::kMinInclusive || kind == FacetKind::kMinExclusive;
}

// Whether the validator finds a value in an enumeration however it is written there.
bool isComparedByValue(Family family) {
    return family == Family::kInteger || family == Family::kDecimal || family == Family::kDuration;
}

std::uint32_t recordKind(FacetKind kind) {
    switch (kind) {
        case FacetKind::kMaxInclusive:
            return SCHEMA_FACET_MAX_INCLUSIVE;
        case FacetKind::kMaxExclusive:
            return SCHEMA_FACET_MAX_EXCLUSIVE;
        case FacetKind::kMinInclusive:
            return SCHEMA_FACET_MIN_INCLUSIVE;
        default:
            return SCHEMA_FACET_MIN_EXCLUSIVE;
    }
}

Bound boundOf(FacetKind kind) {
    switch (kind) {
        case FacetKind::kMaxInclusive:
            return Bound::kMaxInclusive;
        case FacetKind::kMaxExclusive:
            return Bound::kMaxExclusive;
        case FacetKind::kMinInclusive:
            return Bound::kMinInclusive;
        default:
            return Bound::kMinExclusive;
    }
}

std::string listLiteral(std::string_view value) {
    std::string inner = "[ \t\n\r]*";
    const char *between = "";
    for (const std::string &word : words(value)) {
        inner += between + literalPattern(word);
        between = "[ \t\n\r]+";
    }
    return inner + "[ \t\n\r]*";
}

}  // namespace

bool hasValue(const CompiledType &type, const std::string &value) {
    SchemaValidateContext context{};
    context.valid = 1;
    char message[512];
    Schema_CheckSimpleType(type.record, value.c_str(), sizeof message, &context, message);
    return context.valid == 1;
}

// The least and the most that the facets of a step allow, and where they say so.
struct FacetStep::Lengths {
    std::uint64_t least = 0;
    std::optional<std::uint64_t> most;
    Place place;
    std::string text;  // "length '3'", "minLength '1' and maxLength '8'"
};

void FacetStep::add(std::uint32_t kind, std::string_view value) {
    facets_.push_back({records_.text(value), kind, type_.code});
}

void FacetStep::addPattern(const Place &place, const std::function<std::string()> &make,
                           const std::string &what) {
    const std::string subject = what.empty() ? "a pattern of " + owner_ : what;
    try {
        const std::string pattern = make();
        if (compiledPatterns_.insert(pattern).second) {
            const std::string problem = patternError(pattern);
            if (!problem.empty()) {
                return diagnostics_.error(place, subject + " does not compile: " + problem);
            }
        }
        facets_.push_back({records_.text(pattern), SCHEMA_FACET_PATTERN, SCHEMA_TYPE_STRING});
    } catch (const BadPattern &bad) {
        diagnostics_.error(place, subject + ": " + bad.what());
    } catch (const NoTranslation &none) {
        diagnostics_.notEnforced(place, subject + " (" + none.what() + ")");
    }
}

std::uint64_t FacetStep::readCount(const Facet &facet) {
    const std::optional<Integer> count = readInteger(facet.value);
    if (count && *count >= 0 && *count <= 0xFFFFFFFF) return std::stoull(count->text());
    diagnostics_.error(facet.place, described(facet) + " of " + owner_ +
                                        " is not a number from 0 to "
                                        "4294967295");
    return 0;
}

bool FacetStep::isApplicable(const Facet &facet) const {
    const Family family = base_->family;
    switch (facet.kind) {
        case FacetKind::kPattern:
        case FacetKind::kWhiteSpace:
            return true;
        case FacetKind::kEnumeration:
            return family != Family::kBoolean;
        case FacetKind::kLength:
        case FacetKind::kMinLength:
        case FacetKind::kMaxLength:
            return family == Family::kText || family == Family::kHexBinary ||
                   family == Family::kBase64Binary || family == Family::kAnyUri ||
                   family == Family::kQName || family == Family::kList;
        case FacetKind::kTotalDigits:
        case FacetKind::kFractionDigits:
            return family == Family::kInteger || family == Family::kDecimal;
        default:
            return family == Family::kInteger || family == Family::kDecimal ||
                   family == Family::kFloat || family == Family::kDateTime ||
                   family == Family::kDuration;
    }
}

bool FacetStep::needsValueOfBase(const Facet &facet) {
    if (hasValue(*base_, toTreeText(facet.value))) return true;
    diagnostics_.error(facet.place,
                       described(facet) + " of " + owner_ + " is not a value of its base type");
    return false;
}

// Facets that are not applicable have been told of and are left out of the rest.
CompiledStep FacetStep::compile(const CompiledType &base, const std::vector<Facet> &written) {
    base_ = &base;
    type_ = base;
    type_.record = nullptr;
    std::vector<Facet> facets;
    for (const Facet &facet : written) {
        if (isApplicable(facet)) {
            facets.push_back(facet);
        } else {
            diagnostics_.error(facet.place, "facet '" + std::string(nameOf(facet.kind)) +
                                                "' does not apply to the base type of " + owner_);
        }
    }
    // Patterns may leave nothing but ASCII, of which a length is one in bytes. They stand behind it, as
    // they take longer to check.
    addPatterns(facets);
    const std::vector<SchemaFacet> patterns = take();
    facets_.clear();
    addLengths(facets);
    for (Facet &facet : facets) {
        if (isBound(facet.kind)) {
            facet.value = collapsed(facet.value);
            addBound(facet);
        } else if (facet.kind == FacetKind::kTotalDigits ||
                   facet.kind == FacetKind::kFractionDigits) {
            addDigits(facet);
        } else if (facet.kind == FacetKind::kWhiteSpace) {
            setWhiteSpace(facet);
        }
    }
    checkBounds(facets);
    checkDigits(facets);
    facets_.insert(facets_.end(), patterns.begin(), patterns.end());
    addEnumeration(facets);
    if (describesItems_) describeItem(facets);
    return {std::move(facets_), std::move(type_)};
}

void FacetStep::setWhiteSpace(const Facet &facet) {
    const std::string value = collapsed(facet.value);
    if (value != "preserve" && value != "replace" && value != "collapse") {
        diagnostics_.error(facet.place, described(facet) + " of " + owner_ +
                                            " is not preserve, replace or collapse");
    }
    if (value == "collapse") type_.collapse = true;
}

// ---- lengths ----

void FacetStep::addLengths(const std::vector<Facet> &facets) {
    Lengths lengths;
    for (const Facet &facet : facets) {
        if (!isLength(facet.kind)) continue;
        const std::uint64_t count = readCount(facet);
        if (facet.kind != FacetKind::kMaxLength) lengths.least = std::max(lengths.least, count);
        if (facet.kind != FacetKind::kMinLength) {
            lengths.most = std::min(lengths.most.value_or(count), count);
        }
        if (lengths.text.empty()) lengths.place = facet.place;
        lengths.text += (lengths.text.empty() ? "" : " and ") + described(facet);
    }
    if (lengths.text.empty()) return;
    if (lengths.most && lengths.least > *lengths.most) {
        return diagnostics_.error(lengths.place,
                                  lengths.text + " of " + owner_ + " leave no value");
    }
    switch (type_.family) {
        case Family::kHexBinary:
            return addLengthInBytes(lengths, 2);
        case Family::kBase64Binary:
            return addPattern(
                lengths.place, [&] { return base64LengthPattern(lengths.least, lengths.most); },
                lengths.text + " of " + owner_);
        case Family::kList:
            return addPattern(
                lengths.place,
                [&] { return listPattern("[^ \t\n\r]+", lengths.least, lengths.most); },
                lengths.text + " of " + owner_);
        case Family::kQName:
            return;  // length says nothing of a QName, nor of a NOTATION
        default:
            return type_.ascii ? addLengthInBytes(lengths, 1) : addCharacterLength(lengths);
    }
}

void FacetStep::addLengthInBytes(const Lengths &lengths, std::uint64_t bytesOfOne) {
    const auto bytes = [&](std::uint64_t count) { return std::to_string(count * bytesOfOne); };
    if (lengths.most == lengths.least) return add(SCHEMA_FACET_LENGTH, bytes(lengths.least));
    if (lengths.least != 0) add(SCHEMA_FACET_MIN_LENGTH, bytes(lengths.least));
    if (lengths.most) add(SCHEMA_FACET_MAX_LENGTH, bytes(*lengths.most));
}

// In characters, of which each takes one, two or four bytes.
void FacetStep::addCharacterLength(const Lengths &lengths) {
    constexpr std::uint64_t kMostBytes = 4;
    if (lengths.most == 0) return add(SCHEMA_FACET_LENGTH, "0");
    try {
        const std::string pattern = lengthPattern(lengths.least, lengths.most);
        addPattern(
            lengths.place, [&] { return pattern; }, lengths.text + " of " + owner_);
    } catch (const NoTranslation &) {
        // Too long for an expression: nothing that is valid is refused, and ASCII text that is
        // longer is not told from text of as many bytes.
        if (lengths.least != 0) add(SCHEMA_FACET_MIN_LENGTH, std::to_string(lengths.least));
        std::string what = lengths.text + " of " + owner_ + " for values of";
        if (lengths.least > 1) what += " " + std::to_string(lengths.least) + " bytes or more";
        if (lengths.most) {
            const std::string bytes = std::to_string(*lengths.most * kMostBytes);
            add(SCHEMA_FACET_MAX_LENGTH, bytes);
            what += std::string(lengths.least > 1 ? " and" : "") + " up to " + bytes + " bytes";
        }
        diagnostics_.notEnforced(lengths.place, what);
    }
}

// ---- numbers ----

void FacetStep::addIntegerBound(const Facet &facet) {
    const std::optional<Integer> number = readInteger(facet.value);
    if (!number) return;
    add(recordKind(facet.kind), facet.value);
    Range &range = type_.range;
    switch (facet.kind) {
        case FacetKind::kMaxInclusive:
            range.most = std::min(range.most, *number);
            break;
        case FacetKind::kMaxExclusive:
            range.most = std::min(range.most, number->previous());
            break;
        case FacetKind::kMinInclusive:
            range.least = std::max(range.least, *number);
            break;
        default:
            range.least = std::max(range.least, number->next());
    }
}

void FacetStep::addBound(const Facet &facet) {
    if (type_.family == Family::kInteger) {
        // A bound may be the base's own, which its values do not reach.
        const std::optional<Integer> number = readInteger(facet.value);
        const bool beyond =
            (facet.kind == FacetKind::kMaxExclusive && number == base_->range.most.next()) ||
            (facet.kind == FacetKind::kMinExclusive && number == base_->range.least.previous());
        if (beyond) return;  // excludes nothing that the base has
        if (needsValueOfBase(facet)) addIntegerBound(facet);
        return;
    }
    if (!needsValueOfBase(facet)) return;
    switch (type_.family) {
        case Family::kDecimal:
            return addPattern(
                facet.place, [&] { return decimalBoundPattern(boundOf(facet.kind), facet.value); },
                described(facet) + " of " + owner_);
        case Family::kFloat:
            return diagnostics_.notEnforced(facet.place, described(facet) + " of " + owner_);
        default:
            return add(recordKind(facet.kind), facet.value);
    }
}

// Bounds of one step that exclude each other.
void FacetStep::checkBounds(const std::vector<Facet> &facets) {
    const Facet *least = nullptr, *most = nullptr;
    for (const Facet &facet : facets) {
        if (!isBound(facet.kind)) continue;
        const bool isLeast =
            facet.kind == FacetKind::kMinInclusive || facet.kind == FacetKind::kMinExclusive;
        const Facet *&side = isLeast ? least : most;
        if (side) {
            diagnostics_.error(facet.place, described(facet) + " of " + owner_ + " stands beside " +
                                                described(*side));
        }
        side = &facet;
    }
    if (!least || !most || type_.family == Family::kFloat) return;
    const std::string &value = most->value;
    if (!hasValue(*base_, least->value) || !hasValue(*base_, value)) return;  // is told elsewhere
    char message[512];
    const SchemaFacet facet = {least->value.c_str(), SCHEMA_FACET_MIN_INCLUSIVE, type_.code};
    const bool ordered =
        type_.family == Family::kDecimal
            ? XML_IsMatchRegex(decimalBoundPattern(Bound::kMinInclusive, least->value).c_str(),
                               value.c_str()) == 1
            : Schema_CheckFacet(&facet, value.c_str(), sizeof message, message) == XML_OK;
    if (ordered) return;
    diagnostics_.error(least->place, described(*least) + " and " + described(*most) + " of " +
                                         owner_ + " leave no value");
}

void FacetStep::checkDigits(const std::vector<Facet> &facets) {
    const auto countOf = [&](FacetKind kind) {
        const auto facet = std::find_if(facets.begin(), facets.end(),
                                        [&](const Facet &each) { return each.kind == kind; });
        return facet == facets.end() ? std::nullopt : readInteger(facet->value);
    };
    const std::optional<Integer> total = countOf(FacetKind::kTotalDigits);
    const std::optional<Integer> fraction = countOf(FacetKind::kFractionDigits);
    if (total && fraction && *fraction > *total) {
        diagnostics_.error(facets.front().place,
                           "fractionDigits of " + owner_ + " is greater than totalDigits");
    }
}

void FacetStep::addDigits(const Facet &facet) {
    const std::uint64_t digits = readCount(facet);
    const bool total = facet.kind == FacetKind::kTotalDigits;
    if (total && digits == 0) {
        return diagnostics_.error(facet.place,
                                  described(facet) + " of " + owner_ + " is not a positive number");
    }
    if (!total && type_.family == Family::kInteger) return;  // there is nothing behind the point
    addPattern(
        facet.place,
        [&] { return total ? totalDigitsPattern(digits) : fractionDigitsPattern(digits); },
        described(facet) + " of " + owner_);
}

// ---- patterns and enumerations ----

// Of several patterns each is told of at its own place; one that is wrong spoils the step.
bool FacetStep::areWellFormed(const std::vector<Facet> &facets, std::size_t count) {
    if (count == 1) return true;  // will be seen to when it is translated
    for (const Facet &facet : facets) {
        if (facet.kind != FacetKind::kPattern) continue;
        try {
            translatePatterns({facet.value}, true);
        } catch (const BadPattern &bad) {
            diagnostics_.error(facet.place, described(facet) + " of " + owner_ + ": " + bad.what());
            return false;
        } catch (const NoTranslation &) {
            // of the step as a whole, if at all
        }
    }
    return true;
}

void FacetStep::addPatterns(const std::vector<Facet> &facets) {
    std::vector<std::string> patterns;
    const Facet *first = nullptr;
    for (const Facet &facet : facets) {
        if (facet.kind != FacetKind::kPattern) continue;
        if (!first) first = &facet;
        patterns.push_back(facet.value);
    }
    if (!first || !areWellFormed(facets, patterns.size())) return;
    Translated translated;
    addPattern(
        first->place,
        [&] {
            translated = translatePatterns(patterns, base_->ascii);
            return wholePattern(translated.inner);
        },
        described(*first) + " of " + owner_);
    if (translated.ascii) type_.ascii = true;
}

void FacetStep::addEnumeration(const std::vector<Facet> &facets) {
    std::string alternatives;  // when they become a pattern
    Place place;
    bool asPattern = false;
    bool asciiOnly = true, any = false;
    for (const Facet &facet : facets) {
        if (facet.kind != FacetKind::kEnumeration) continue;
        const std::string value = base_->collapse ? collapsed(facet.value) : facet.value;
        const std::string text = toTreeText(value);
        if (!hasValue(*base_, text)) {
            diagnostics_.error(facet.place, described(facet) + " of " + owner_ +
                                                " is not a value of its base type");
            continue;
        }
        if (!any) place = facet.place;
        any = true;
        asciiOnly = asciiOnly && unicode::isAscii(value);
        if (!type_.oneSpelling && !isComparedByValue(type_.family)) {
            diagnostics_.notEnforced(facet.place,
                                     "that " + described(facet) + " has other spellings");
        }
        asPattern = type_.family == Family::kDecimal || type_.family == Family::kList;
        if (asPattern) {
            alternatives +=
                (alternatives.empty() ? "" : "|") +
                (type_.family == Family::kList ? listLiteral(value) : decimalValuePattern(value));
            continue;
        }
        add(SCHEMA_FACET_ENUMERATION, text);
    }
    if (asPattern && any) {
        addPattern(
            place, [&] { return wholePattern(alternatives); }, "the enumeration of " + owner_);
    }
    if (any && asciiOnly && type_.family == Family::kText) type_.ascii = true;
}

// ---- as items of lists ----

void FacetStep::describeItem(const std::vector<Facet> &facets) {
    const auto only = [&](auto allowed) {
        return std::all_of(facets.begin(), facets.end(), [&](const Facet &facet) {
            return facet.kind == FacetKind::kWhiteSpace || allowed(facet.kind);
        });
    };
    if (only([](FacetKind) { return false; })) return;  // as the base
    const bool universal = base_->universal;
    type_.universal = false;
    if (type_.itemIsRange && only(isBound)) {
        type_.item.reset();
        if (type_.range.least <= type_.range.most) {
            type_.item = integerRangePattern(type_.range.least.text(), type_.range.most.text());
        }
        return;
    }
    type_.itemIsRange = false;
    type_.item.reset();
    if (universal && only([](FacetKind kind) { return kind == FacetKind::kPattern; })) {
        std::vector<std::string> patterns;
        for (const Facet &facet : facets) {
            if (facet.kind == FacetKind::kPattern) patterns.push_back(facet.value);
        }
        try {
            type_.item = "(" + translateItemPatterns(patterns, base_->ascii).inner + ")";
        } catch (const std::runtime_error &) {
            // told where the pattern stands
        }
    } else if (base_->family != Family::kDateTime && base_->family != Family::kDuration &&
               only([](FacetKind kind) { return kind == FacetKind::kEnumeration; })) {
        std::string items;
        for (const Facet &facet : facets) {
            if (facet.kind != FacetKind::kEnumeration) continue;
            const std::string value = collapsed(facet.value);
            if (value.empty() || value.find(' ') != value.npos) continue;  // is no item
            items += (items.empty() ? "(" : "|") +
                     (type_.family == Family::kInteger   ? integerRangePattern(value, value)
                      : type_.family == Family::kDecimal ? decimalValuePattern(value)
                                                         : literalPattern(value));
        }
        if (!items.empty()) type_.item = items + ")";
    }
}

}  // namespace xsd2c
