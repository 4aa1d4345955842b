// tools/xsd2c/c/c_constants.h - the names that compactxml.h has for numbers in records.
#pragma once

#include <cstdint>
#include <string>

namespace xsd2c {

// The name of the constant, or the number itself if it has none.
std::string kindConstant(std::int32_t kind);    // SCHEMA_KIND_*
std::string facetConstant(std::uint32_t kind);  // SCHEMA_FACET_*
std::string typeConstant(std::uint32_t code);   // SCHEMA_TYPE_*

// The number in digits, but for the least and the greatest.
std::string unsignedConstant(std::uint32_t number);
std::string signedConstant(std::int32_t number);

}  // namespace xsd2c
