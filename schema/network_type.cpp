#include "schema/network_type.h"

#include <cstddef>
#include <cstdint>

#include "compactxml.h"
#include "schema/message.h"

namespace cxml {
namespace {

constexpr std::size_t kNoLimit = SIZE_MAX;

// Lists are no longer than one that names every number: five digits and a comma, four and a comma.
constexpr std::size_t kPortListBytes = 6 * 65535;
constexpr std::size_t kVlanListBytes = 5 * 4094;

bool isPortRange(const char *value) {
    return isRangeList(value, 65535, kPortListBytes);
}

bool isVlanRange(const char *value) {
    return isRangeList(value, 4094, kVlanListBytes);
}

bool isIfIndexRange(const char *value) {
    return isRangeList(value, 3221225471, kNoLimit);
}

constexpr char kInvalidOid[] = "Invalid OID";
constexpr char kInvalidIpv6[] = "Invalid IPv6";
constexpr char kInvalidPrefix[] = "Invalid IPv6 prefix";
constexpr char kInvalidPorts[] = "Invalid PortRange";
constexpr char kInvalidVlans[] = "Invalid VlanRange";
constexpr char kInvalidMask[] = "Invalid IPv4 mask";
constexpr char kInvalidIndices[] = "Invalid IfIndexRange";

template <auto isValid, const auto &message>
uint32_t check(const char *value, uint32_t size, char *buffer) {
    if (isValid(value)) return 1;
    writeMessage(buffer, size, {message});
    return 0;
}

// Not constant: Schema_ReplaceInnerTypeNS writes the namespaces.
constinit SchemaKestType g_SchemaKestTypes[] = {
    {check<isObjectIdentifier, kInvalidOid>, nullptr, "OID"},
    {check<isIpv6Address, kInvalidIpv6>, nullptr, "_Ipv6Address"},
    {check<isIpv6Prefix, kInvalidPrefix>, nullptr, "IPV6_ADDR_PREFIX"},
    {check<isPortRange, kInvalidPorts>, nullptr, "_PortRange"},
    {check<isVlanRange, kInvalidVlans>, nullptr, "_VlanRange"},
    {check<isIpv4Mask, kInvalidMask>, nullptr, "_Ipv4Mask"},
    {check<isIfIndexRange, kInvalidIndices>, nullptr, "_IfIndexRange"},
};

SchemaKestType *findRow(const char *typeName, const char *namespaceName) {
    for (SchemaKestType &row : g_SchemaKestTypes) {
        if (XML_Strcmp(row.typeName, typeName) == 0 &&
            XML_Strcmp(row.namespaceName, namespaceName) == 0) {
            return &row;
        }
    }
    return nullptr;
}

}  // namespace
}  // namespace cxml

using namespace cxml;

const SchemaKestType *Schema_FoundKestBltInType(const char *typeName,
                                                const char *namespaceName) noexcept {
    return findRow(typeName, namespaceName);
}

uint32_t Schema_checkKestBltInType(const SchemaKestType *row, const char *value, uint32_t size,
                                   char *buffer) noexcept {
    if (!row || !value || !buffer) return 0;
    return row->check ? row->check(value, size, buffer) : 1;
}

uint32_t Schema_ReplaceInnerTypeNS(const char *typeName, const char *searchArg,
                                   const char *namespaceName) noexcept {
    if (!typeName || *typeName == '\0') return XML_MISSING;
    SchemaKestType *row = findRow(typeName, searchArg);
    if (!row) return XML_REFUSED;
    row->namespaceName = namespaceName;
    return XML_OK;
}
