// schema/network_type.h - the value types of network equipment, which are known by name.
#pragma once

#include <cstdint>

namespace cxml {

// False for most names that are none of them: it is asked for every value of a type that is not built
// in.
inline bool mayBeNetworkType(const char *typeName) noexcept {
    return typeName && (*typeName == '_' || *typeName == 'I' || *typeName == 'O');
}

// Each tells whether a value is of its type.
bool isIpv4Mask(const char *value) noexcept;
bool isIpv6Address(const char *value) noexcept;
bool isIpv6Prefix(const char *value) noexcept;
bool isObjectIdentifier(const char *value) noexcept;

// A list such as "80,443,1000-2000" of numbers and ranges from 1 to greatest, at most maxLength
// bytes long. Ranges may overlap and stand in any order.
bool isRangeList(const char *value, std::uint64_t greatest, std::size_t maxLength) noexcept;

}  // namespace cxml
