#include <arpa/inet.h>
#include <netinet/in.h>

#include <bit>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "io/memory.h"
#include "schema/network_type.h"

namespace cxml {
namespace {

constexpr std::size_t kAddressBytes = 46;  // the longest spelling of an IPv6 address, and a NUL
constexpr std::size_t kPrefixBytes = 64;

bool isShorter(const char *text, std::size_t length) {
    return ::strnlen(text, length) < length;
}

bool isHexDigit(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

bool convertsToIpv6(const char *text) {
    in6_addr address;
    return ::inet_pton(AF_INET6, text, &address) == 1;
}

}  // namespace

bool isIpv4Mask(const char *value) noexcept {
    in_addr address;
    if (::inet_pton(AF_INET, value, &address) != 1) return false;
    const std::uint32_t mask = ntohl(address.s_addr);
    // Ones, then zeros: what is not set is one less than a power of two.
    return std::has_single_bit(std::uint64_t{~mask} + 1);
}

bool isIpv6Address(const char *value) noexcept {
    return isShorter(value, kAddressBytes) && !std::strchr(value, '/') && convertsToIpv6(value);
}

bool isIpv6Prefix(const char *value) noexcept {
    if (!isShorter(value, kPrefixBytes)) return false;
    const char *slash = std::strchr(value, '/');
    if (!slash) return false;
    const auto addressLength = static_cast<std::size_t>(slash - value);
    char address[kAddressBytes];
    if (addressLength >= sizeof address) return false;
    copyBounded(address, addressLength + 1, value);
    if (!convertsToIpv6(address)) return false;
    // Neither blanks nor a sign, which strtoul would pass over.
    if (!isHexDigit(slash[1])) return false;
    char *end = nullptr;
    const int before = errno;
    errno = 0;
    const unsigned long length = std::strtoul(slash + 1, &end, 10);
    const bool inRange = errno == 0;
    errno = before;
    return inRange && *end == '\0' && length >= 1 && length <= 128;
}

}  // namespace cxml
