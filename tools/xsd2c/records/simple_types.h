// tools/xsd2c/records/simple_types.h - compiles simple types.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "xsd2c/records/builtin_types.h"
#include "xsd2c/records/integers.h"
#include "xsd2c/records/records.h"
#include "xsd2c/xsd/components.h"
#include "xsd2c/xsd/diagnostics.h"

namespace xsd2c {

// A simple type's record, and what must be known of the type to derive others from it.
struct CompiledType {
    const SchemaSimpleType *record = nullptr;
    Family family = Family::kAny;
    std::uint32_t code = 0;    // by which the validator compares values: SCHEMA_TYPE_*
    bool ascii = false;        // no value with a character above U+007F passes
    bool collapse = false;     // white space around values does not count
    bool checkable = true;     // the validator takes all values that XML Schema gives the type
    bool oneSpelling = false;  // no two texts, but for white space, are the same value
    Range range;               // of an integer type: the numbers that pass
    // An expression of exactly its values, as far as they hold no white space: what they are as
    // items of a list. None when no expression says it.
    std::optional<std::string> item;
    bool itemIsRange = false;  // all of that expression is the range
    bool universal = false;    // any text at all
    std::string listItem;      // of a list: the expression of an item
};

// What a derivation step makes of a type.
struct CompiledStep {
    std::vector<SchemaFacet> facets;
    CompiledType type;  // without a record
};

class SimpleTypes {
  public:
    //   hasLists  some type is a list, so that its item type must be described
    SimpleTypes(Records &records, Diagnostics &diagnostics, bool hasLists)
        : records_(records), diagnostics_(diagnostics), hasLists_(hasLists) {}

    // The same for the same type.
    const CompiledType &compile(const SimpleType &type);
    const CompiledType &builtin(std::string_view name);

    // What facets make of a base; owner says what they belong to, such as "simpleType 'vlanId'".
    CompiledStep restrict(const CompiledType &base, const std::vector<Facet> &facets,
                          const std::string &owner);
    // A type of that step without a name.
    CompiledType derive(const CompiledType &base, const CompiledStep &step,
                        const std::string &label);

    // A value as it is compared, in the tree's encoding; an error unless the type has it.
    std::string fixedValue(const CompiledType &type, const std::string &value, const Place &place,
                           const std::string &owner);

  private:
    CompiledType compileBuiltin(const BuiltinType &type);
    CompiledType compileRestriction(const SimpleType &type);
    CompiledType compileList(const SimpleType &type);
    CompiledType compileUnion(const SimpleType &type);
    SchemaSimpleType *addRecord(const CompiledType &base, const std::vector<SchemaFacet> &facets);

    Records &records_;
    Diagnostics &diagnostics_;
    bool hasLists_;
    std::unordered_map<const SimpleType *, CompiledType> types_;
    std::unordered_map<std::string_view, CompiledType> builtins_;
    std::unordered_set<std::string> compiledPatterns_;  // which the C library has taken
};

// "simpleType 'vlanId'", or "an anonymous simpleType".
std::string nameInMessages(const SimpleType &type);

}  // namespace xsd2c
