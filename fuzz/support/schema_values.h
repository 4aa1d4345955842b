// fuzz/support/schema_values.h - texts that a type of a compiled schema has, and that it has not.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "compactxml.h"

namespace fuzz {

// Texts in GB18030, without white space at either end.
struct Values {
    std::vector<std::string> valid;
    std::vector<std::string> invalid;
};

// Sorts a list of sample texts, and the enumerations of the type, by what the checks of values say
// of them. The answer is kept for further calls. type may be a complex type with simple content.
const Values &valuesOf(const void *type, std::int32_t kind);

// The sample texts.
const std::vector<std::string> &sampleTexts();

}  // namespace fuzz
