// tools/xsd2c/records/facet_step.h - compiles the facets of one derivation step.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "xsd2c/records/simple_types.h"

namespace xsd2c {

// Facets mean in a record what the validator makes of them, which is not always what XML Schema
// means: lengths are bytes, digits are counted exactly, patterns are not anchored and must all
// match, and only some types have an order. What differs becomes a pattern that says the same.
class FacetStep {
  public:
    FacetStep(Records &records, Diagnostics &diagnostics,
              std::unordered_set<std::string> &compiledPatterns, std::string owner,
              bool describesItems)
        : records_(records),
          diagnostics_(diagnostics),
          compiledPatterns_(compiledPatterns),
          owner_(std::move(owner)),
          describesItems_(describesItems) {}

    CompiledStep compile(const CompiledType &base, const std::vector<Facet> &facets);

    // Adds the whole pattern that make returns. Without an exact one, a warning tells what is
    // missing: what defaults to the facet at that place.
    void addPattern(const Place &place, const std::function<std::string()> &make,
                    const std::string &what = {});
    std::vector<SchemaFacet> take() { return std::move(facets_); }

  private:
    struct Lengths;

    void add(std::uint32_t kind, std::string_view value);
    void addLengths(const std::vector<Facet> &facets);
    void addLengthInBytes(const Lengths &lengths, std::uint64_t bytesOfOne);
    void addCharacterLength(const Lengths &lengths);
    void addBound(const Facet &facet);
    void addIntegerBound(const Facet &facet);
    void checkBounds(const std::vector<Facet> &facets);
    void addDigits(const Facet &facet);
    void checkDigits(const std::vector<Facet> &facets);
    void addEnumeration(const std::vector<Facet> &facets);
    bool areWellFormed(const std::vector<Facet> &facets, std::size_t count);
    void addPatterns(const std::vector<Facet> &facets);
    void setWhiteSpace(const Facet &facet);
    void describeItem(const std::vector<Facet> &facets);

    bool isApplicable(const Facet &facet) const;
    bool needsValueOfBase(const Facet &facet);
    std::uint64_t readCount(const Facet &facet);

    Records &records_;
    Diagnostics &diagnostics_;
    std::unordered_set<std::string> &compiledPatterns_;
    std::string owner_;
    bool describesItems_;  // CompiledType::item is wanted
    const CompiledType *base_ = nullptr;
    CompiledType type_;
    std::vector<SchemaFacet> facets_;
};

// Whether the validator takes a value, in the tree's encoding, as one of the type.
bool hasValue(const CompiledType &type, const std::string &value);

}  // namespace xsd2c
