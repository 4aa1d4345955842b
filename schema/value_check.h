// schema/value_check.h - checks of values within a validation.
#pragma once

#include <cstdint>

#include "compactxml.h"
#include "schema/pattern_cache.h"

namespace cxml {

// Where a check leaves its message, and what it may keep for the next one.
struct ValueCheck {
    std::uint32_t size;      // bytes at buffer
    char *buffer;            // takes the message
    PatternCache *patterns;  // null compiles each pattern for each value
    // Nobody reads what is said of a value that turns out valid: it need not be.
    bool onlyOfFailures = false;
    // Set when a value counts as invalid because there was no memory to check it; may be null.
    bool *exhausted = nullptr;
};

// A value of a built-in type, neither of them null.
bool checkBaseType(std::uint32_t code, const char *value, const ValueCheck &check) noexcept;

// The cores of the exported functions of these names. A null value of a facet counts as "", and so does
// a value that checkSimpleType gets.
bool checkFacet(const SchemaFacet &facet, const char *value, const ValueCheck &check) noexcept;
bool checkFacets(const SchemaFacet *facets, std::uint32_t count, const char *value,
                 const ValueCheck &check) noexcept;
bool checkSimpleType(const SchemaSimpleType *type, const char *value,
                     const ValueCheck &check) noexcept;

// Checks a value against the simple content of a complex type. XML_OK when it was checked, with the
// outcome in *valid; XML_NO_VALUE when the type has no simple content.
std::uint32_t checkSimpleContent(const SchemaComplexType *type, const char *value,
                                 const ValueCheck &check, bool *valid) noexcept;

// Checks a value against a fixed one. The message is a predicate, such as "must equal 5".
bool Schema_CheckFixedValue(const char *fixedValue, const char *value,
                            const ValueCheck &check) noexcept;

}  // namespace cxml
