// Types of network equipment: how they are found, what each accepts, what is said of other values.
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "compactxml.h"
#include "schema/network_type.h"
#include "tests/support/faults.h"

namespace {

constexpr char kUntouched = '#';

struct Row {
    const char *name, *message;
};

// In the order of the table.
constexpr Row kTypes[] = {
    {"OID", "Invalid OID"},
    {"_Ipv6Address", "Invalid IPv6"},
    {"IPV6_ADDR_PREFIX", "Invalid IPv6 prefix"},
    {"_PortRange", "Invalid PortRange"},
    {"_VlanRange", "Invalid VlanRange"},
    {"_Ipv4Mask", "Invalid IPv4 mask"},
    {"_IfIndexRange", "Invalid IfIndexRange"},
};

// Checks a value by the type's row: nothing is written for a valid one, the whole message otherwise.
void expectChecked(const char *name, const std::string &value, bool valid) {
    const SchemaKestType *row = Schema_FoundKestBltInType(name, nullptr);
    ASSERT_NE(row, nullptr) << name;
    const Row *type = std::find_if(std::begin(kTypes), std::end(kTypes), [name](const Row &each) {
        return std::string_view(each.name) == name;
    });
    ASSERT_NE(type, std::end(kTypes));
    char buffer[64];
    std::memset(buffer, kUntouched, sizeof buffer);
    const support::FaultyHeap heap(0);
    const std::uint32_t result =
        Schema_checkKestBltInType(row, value.c_str(), sizeof buffer, buffer);
    EXPECT_EQ(heap.allocations(), 0u);
    const std::string shown = value.substr(0, 100);
    EXPECT_EQ(result, valid ? 1u : 0u) << name << " of " << shown;
    const std::string message =
        buffer[0] == kUntouched ? "" : std::string(buffer, ::strnlen(buffer, sizeof buffer));
    EXPECT_EQ(message, valid ? "" : type->message) << name << " of " << shown;
}

// ---------------------------------------------------------------- the table

TEST(NetworkType, AreFoundByName) {
    const SchemaKestType *first = Schema_FoundKestBltInType(kTypes[0].name, nullptr);
    ASSERT_NE(first, nullptr);
    for (const Row &type : kTypes) {
        SCOPED_TRACE(type.name);
        const SchemaKestType *row = Schema_FoundKestBltInType(type.name, nullptr);
        EXPECT_EQ(row, first + (&type - kTypes));
        ASSERT_NE(row, nullptr);
        EXPECT_STREQ(row->typeName, type.name);
        EXPECT_EQ(row->namespaceName, nullptr);
        EXPECT_NE(row->check, nullptr);
        EXPECT_EQ(Schema_FoundKestBltInType(std::string(type.name).c_str(), ""), row);
        EXPECT_EQ(Schema_FoundKestBltInType(type.name, " "), nullptr);
        EXPECT_EQ(Schema_FoundKestBltInType(type.name, "urn:t"), nullptr);
    }
}

TEST(NetworkType, OtherNames) {
    for (const char *name :
         {"", "oid", "Oid", "OID ", " OID", "OI", "OIDs", "Ipv6Address", "_Ipv6", "_IPv6Address",
          "_ipv6Address", "Ipv4Mask", "IPV6_ADDR", "PortRange", "_PortRanges", "string"}) {
        EXPECT_EQ(Schema_FoundKestBltInType(name, nullptr), nullptr) << name;
        EXPECT_EQ(Schema_FoundKestBltInType(name, ""), nullptr) << name;
    }
    EXPECT_EQ(Schema_FoundKestBltInType(nullptr, nullptr), nullptr);
}

TEST(NetworkType, RowsOfTheCaller) {
    char buffer[16] = "untouched";
    const SchemaKestType none = {nullptr, nullptr, "none"};
    EXPECT_EQ(Schema_checkKestBltInType(&none, "anything", sizeof buffer, buffer), 1u);
    EXPECT_EQ(Schema_checkKestBltInType(&none, "", sizeof buffer, buffer), 1u);
    EXPECT_STREQ(buffer, "untouched");
    const SchemaKestType own = {[](const char *value, std::uint32_t size, char *message) {
                                    std::snprintf(message, size, "%s in %u", value, size);
                                    return std::uint32_t{value[0] == 'y'};
                                },
                                nullptr, "own"};
    EXPECT_EQ(Schema_checkKestBltInType(&own, "yes", sizeof buffer, buffer), 1u);
    EXPECT_STREQ(buffer, "yes in 16");
    EXPECT_EQ(Schema_checkKestBltInType(&own, "no", 8, buffer), 0u);
    EXPECT_STREQ(buffer, "no in 8");
}

TEST(NetworkType, MessagesAreCutToTheirBuffer) {
    for (const Row &type : kTypes) {
        const SchemaKestType *row = Schema_FoundKestBltInType(type.name, nullptr);
        const std::string message = type.message;
        for (std::uint32_t size = 0; size <= message.size() + 2; ++size) {
            std::string buffer(64, kUntouched);
            std::string expected = buffer;
            if (size > 0) {
                const std::string cut = message.substr(0, size - 1);
                expected.replace(0, cut.size(), cut);
                expected[cut.size()] = '\0';
            }
            EXPECT_EQ(Schema_checkKestBltInType(row, "invalid", size, buffer.data()), 0u);
            EXPECT_EQ(buffer, expected) << type.name << " in " << size;
        }
    }
}

// ---------------------------------------------------------------- in a namespace

// Puts the types back where they belong.
class NamespaceGuard {
  public:
    NamespaceGuard() = default;
    NamespaceGuard(const NamespaceGuard &) = delete;
    NamespaceGuard &operator=(const NamespaceGuard &) = delete;
    ~NamespaceGuard() {
        for (const char *ns : {"urn:t", "urn:u", ""}) {
            for (const Row &type : kTypes) Schema_ReplaceInnerTypeNS(type.name, ns, nullptr);
        }
    }
};

// Whether a type of this name and namespace, a boolean otherwise, takes an object identifier.
bool takesOid(const char *name, const char *ns) {
    const SchemaSimpleType *base = Schema_BLDIN_boolean();
    const SchemaSimpleType type = {&base, nullptr, name, ns, 0, 0, 1, 0};
    SchemaValidateContext context{};
    context.valid = 1;
    char buffer[512];
    Schema_CheckSimpleType(&type, "1.3.6", sizeof buffer, &context, buffer);
    return context.valid == 1;
}

TEST(ReplaceInnerTypeNS, ThereAndBack) {
    const NamespaceGuard guard;
    static constexpr char kFirst[] = "urn:t", kSecond[] = "urn:u";
    const SchemaKestType *row = Schema_FoundKestBltInType("OID", nullptr);
    EXPECT_TRUE(takesOid("OID", nullptr));
    EXPECT_EQ(Schema_ReplaceInnerTypeNS("OID", nullptr, kFirst), XML_OK);
    EXPECT_EQ(row->namespaceName, kFirst);  // the pointer itself
    EXPECT_EQ(Schema_FoundKestBltInType("OID", "urn:t"), row);
    EXPECT_EQ(Schema_FoundKestBltInType("OID", nullptr), nullptr);
    EXPECT_EQ(Schema_FoundKestBltInType("OID", ""), nullptr);
    EXPECT_TRUE(takesOid("OID", "urn:t"));
    EXPECT_FALSE(takesOid("OID", nullptr));
    for (const Row &type : kTypes) {  // the others stay
        if (&type != kTypes) {
            EXPECT_NE(Schema_FoundKestBltInType(type.name, ""), nullptr);
        }
    }
    // It is looked for where it is now.
    EXPECT_EQ(Schema_ReplaceInnerTypeNS("OID", nullptr, kSecond), XML_REFUSED);
    EXPECT_EQ(Schema_ReplaceInnerTypeNS("OID", kSecond, kSecond), XML_REFUSED);
    EXPECT_EQ(row->namespaceName, kFirst);
    EXPECT_EQ(Schema_ReplaceInnerTypeNS("OID", "urn:t", kSecond), XML_OK);
    EXPECT_EQ(row->namespaceName, kSecond);
    EXPECT_EQ(Schema_ReplaceInnerTypeNS("OID", "urn:u", ""), XML_OK);
    EXPECT_EQ(Schema_FoundKestBltInType("OID", nullptr), row);  // none, too
    EXPECT_EQ(Schema_ReplaceInnerTypeNS("OID", nullptr, nullptr), XML_OK);
    EXPECT_EQ(row->namespaceName, nullptr);
    EXPECT_TRUE(takesOid("OID", nullptr));
    EXPECT_FALSE(takesOid("OID", "urn:t"));
}

TEST(ReplaceInnerTypeNS, EveryType) {
    const NamespaceGuard guard;
    for (const Row &type : kTypes) {
        EXPECT_EQ(Schema_ReplaceInnerTypeNS(type.name, "", "urn:t"), XML_OK) << type.name;
        EXPECT_NE(Schema_FoundKestBltInType(type.name, "urn:t"), nullptr) << type.name;
        EXPECT_EQ(Schema_FoundKestBltInType(type.name, nullptr), nullptr) << type.name;
    }
    for (const Row &type : kTypes) {
        EXPECT_EQ(Schema_ReplaceInnerTypeNS(type.name, "urn:t", nullptr), XML_OK) << type.name;
        EXPECT_NE(Schema_FoundKestBltInType(type.name, nullptr), nullptr) << type.name;
    }
}

TEST(ReplaceInnerTypeNS, Refusals) {
    const NamespaceGuard guard;
    EXPECT_EQ(Schema_ReplaceInnerTypeNS(nullptr, nullptr, "urn:t"), XML_MISSING);
    EXPECT_EQ(Schema_ReplaceInnerTypeNS("", nullptr, "urn:t"), XML_MISSING);
    EXPECT_EQ(Schema_ReplaceInnerTypeNS("string", nullptr, "urn:t"), XML_REFUSED);
    EXPECT_EQ(Schema_ReplaceInnerTypeNS("oid", nullptr, "urn:t"), XML_REFUSED);
    EXPECT_EQ(Schema_ReplaceInnerTypeNS("OID", "urn:t", "urn:t"), XML_REFUSED);
    for (const Row &type : kTypes) {
        EXPECT_NE(Schema_FoundKestBltInType(type.name, nullptr), nullptr) << type.name;
    }
}

// ---------------------------------------------------------------- values

struct Case {
    const char *type, *value;
    bool valid;
};

constexpr Case kAddresses[] = {
    {"_Ipv4Mask", "0.0.0.0", true},
    {"_Ipv4Mask", "128.0.0.0", true},
    {"_Ipv4Mask", "255.0.0.0", true},
    {"_Ipv4Mask", "255.255.254.0", true},
    {"_Ipv4Mask", "255.255.255.0", true},
    {"_Ipv4Mask", "255.255.255.254", true},
    {"_Ipv4Mask", "255.255.255.255", true},
    {"_Ipv4Mask", "255.0.255.0", false},
    {"_Ipv4Mask", "0.0.0.1", false},
    {"_Ipv4Mask", "0.255.255.255", false},
    {"_Ipv4Mask", "255.255.255.1", false},
    {"_Ipv4Mask", "127.255.255.255", false},
    {"_Ipv4Mask", "1.2.3.4", false},
    {"_Ipv4Mask", "", false},
    {"_Ipv4Mask", "255", false},
    {"_Ipv4Mask", "255.255.255", false},
    {"_Ipv4Mask", "255.255.255.0.0", false},
    {"_Ipv4Mask", "255.255.255.", false},
    {"_Ipv4Mask", ".255.255.255", false},
    {"_Ipv4Mask", "256.0.0.0", false},
    {"_Ipv4Mask", "255.255.255.-1", false},
    {"_Ipv4Mask", " 255.255.255.0", false},
    {"_Ipv4Mask", "255.255.255.0 ", false},
    {"_Ipv4Mask", "255.255.255.0/24", false},
    {"_Ipv4Mask", "/24", false},
    {"_Ipv4Mask", "24", false},
    {"_Ipv4Mask", "0xff.0.0.0", false},
    {"_Ipv4Mask", "4294967040", false},
    {"_Ipv4Mask", "::", false},

    {"_Ipv6Address", "::", true},
    {"_Ipv6Address", "::1", true},
    {"_Ipv6Address", "1::", true},
    {"_Ipv6Address", "2001:db8::1", true},
    {"_Ipv6Address", "2001:DB8::AbCd", true},
    {"_Ipv6Address", "1:2:3:4:5:6:7:8", true},
    {"_Ipv6Address", "0001:0002:0003:0004:0005:0006:0007:0008", true},
    {"_Ipv6Address", "::ffff:192.0.2.1", true},
    {"_Ipv6Address", "0000:0000:0000:0000:0000:ffff:255.255.255.255", true},  // 45 bytes
    {"_Ipv6Address", "00000:0000:0000:0000:0000:ffff:255.255.255.255", false},
    {"_Ipv6Address", "", false},
    {"_Ipv6Address", ":", false},
    {"_Ipv6Address", ":::", false},
    {"_Ipv6Address", "1::2::3", false},
    {"_Ipv6Address", "1:2:3:4:5:6:7", false},
    {"_Ipv6Address", "1:2:3:4:5:6:7:8:9", false},
    {"_Ipv6Address", "12345::", false},
    {"_Ipv6Address", "g::", false},
    {"_Ipv6Address", "192.0.2.1", false},
    {"_Ipv6Address", "::1 ", false},
    {"_Ipv6Address", " ::1", false},
    {"_Ipv6Address", "fe80::1%eth0", false},
    {"_Ipv6Address", "[::1]", false},
    {"_Ipv6Address", "/", false},
    {"_Ipv6Address", "::/", false},
    {"_Ipv6Address", "2001:db8::/64", false},

    {"IPV6_ADDR_PREFIX", "2001:db8::/64", true},
    {"IPV6_ADDR_PREFIX", "::/1", true},
    {"IPV6_ADDR_PREFIX", "::/9", true},
    {"IPV6_ADDR_PREFIX", "::/10", true},
    {"IPV6_ADDR_PREFIX", "::/127", true},
    {"IPV6_ADDR_PREFIX", "::/128", true},
    {"IPV6_ADDR_PREFIX", "::ffff:192.0.2.1/96", true},
    {"IPV6_ADDR_PREFIX", "0000:0000:0000:0000:0000:ffff:255.255.255.255/128", true},
    {"IPV6_ADDR_PREFIX", "::/064", true},
    {"IPV6_ADDR_PREFIX", "::/0064", true},
    {"IPV6_ADDR_PREFIX", "::/000000000000000000000000000000000128", true},
    {"IPV6_ADDR_PREFIX", "2001:db8::/0", false},
    {"IPV6_ADDR_PREFIX", "2001:db8::/00", false},
    {"IPV6_ADDR_PREFIX", "2001:db8::/129", false},
    {"IPV6_ADDR_PREFIX", "2001:db8::/200", false},
    {"IPV6_ADDR_PREFIX", "::/4294967296", false},
    {"IPV6_ADDR_PREFIX", "::/4294967297", false},
    {"IPV6_ADDR_PREFIX", "::/18446744073709551616", false},
    {"IPV6_ADDR_PREFIX", "::/18446744073709551617", false},
    {"IPV6_ADDR_PREFIX", "::/99999999999999999999999999999999", false},
    {"IPV6_ADDR_PREFIX", "", false},
    {"IPV6_ADDR_PREFIX", "2001:db8::", false},
    {"IPV6_ADDR_PREFIX", "2001:db8::64", false},
    {"IPV6_ADDR_PREFIX", "/", false},
    {"IPV6_ADDR_PREFIX", "/64", false},
    {"IPV6_ADDR_PREFIX", "::/", false},
    {"IPV6_ADDR_PREFIX", "::/64 ", false},
    {"IPV6_ADDR_PREFIX", "::/ 64", false},
    {"IPV6_ADDR_PREFIX", " ::/64", false},
    {"IPV6_ADDR_PREFIX", ":: /64", false},
    {"IPV6_ADDR_PREFIX", "::/+64", false},
    {"IPV6_ADDR_PREFIX", "::/-64", false},
    {"IPV6_ADDR_PREFIX", "::/0x40", false},
    {"IPV6_ADDR_PREFIX", "::/a", false},  // a hexadecimal digit, but no number
    {"IPV6_ADDR_PREFIX", "::/F", false},
    {"IPV6_ADDR_PREFIX", "::/g", false},
    {"IPV6_ADDR_PREFIX", "::/6a", false},
    {"IPV6_ADDR_PREFIX", "::/6.4", false},
    {"IPV6_ADDR_PREFIX", "::/64/64", false},
    {"IPV6_ADDR_PREFIX", "::/64/", false},
    {"IPV6_ADDR_PREFIX", ":://64", false},
    {"IPV6_ADDR_PREFIX", "192.0.2.0/24", false},
    {"IPV6_ADDR_PREFIX", "12345::/64", false},
    {"IPV6_ADDR_PREFIX", "1:2:3:4:5:6:7/64", false},
    {"IPV6_ADDR_PREFIX", "00000:0000:0000:0000:0000:ffff:255.255.255.255/64", false},
};

TEST(NetworkType, Addresses) {
    for (const Case &row : kAddresses) expectChecked(row.type, row.value, row.valid);
}

TEST(NetworkType, LengthsOfAddresses) {
    // Zeros in front of a prefix length, up to 63 bytes in all.
    for (std::size_t length = 55; length <= 70; ++length) {
        const std::string begin = "2001:db8::/";
        const std::string value = begin + std::string(length - begin.size() - 2, '0') + "64";
        EXPECT_EQ(value.size(), length);
        expectChecked("IPV6_ADDR_PREFIX", value, length < 64);
    }
    for (const std::size_t length : {44u, 45u, 46u, 63u, 64u, 1000000u}) {
        expectChecked("_Ipv6Address", std::string(length, '1'), false);
        expectChecked("_Ipv4Mask", std::string(length, '1'), false);
        expectChecked("IPV6_ADDR_PREFIX", std::string(length, ':') + "/64", false);
        expectChecked("IPV6_ADDR_PREFIX", "::/" + std::string(length, '0') + "1", length < 60);
    }
}

// What an earlier call left in errno has no bearing, and it is left as it was.
TEST(NetworkType, PrefixesDoNotLookAtOldErrors) {
    char buffer[64];
    const SchemaKestType *row = Schema_FoundKestBltInType("IPV6_ADDR_PREFIX", nullptr);
    errno = ERANGE;
    EXPECT_EQ(Schema_checkKestBltInType(row, "::/64", sizeof buffer, buffer), 1u);
    errno = 0;
    EXPECT_EQ(Schema_checkKestBltInType(row, "::/64", sizeof buffer, buffer), 1u);
}

std::string dotted(std::uint32_t address) {
    char text[16];
    std::snprintf(text, sizeof text, "%u.%u.%u.%u", address >> 24, address >> 16 & 255,
                  address >> 8 & 255, address & 255);
    return text;
}

// Bit by bit from the highest: no one behind a zero.
bool isMask(std::uint32_t address) {
    bool zeroSeen = false;
    for (int bit = 31; bit >= 0; --bit) {
        const bool one = (address >> bit & 1) != 0;
        if (one && zeroSeen) return false;
        if (!one) zeroSeen = true;
    }
    return true;
}

TEST(NetworkType, EveryMaskAndItsNeighbours) {
    int masks = 0;
    for (int length = 0; length <= 32; ++length) {
        const std::uint32_t mask = length == 0 ? 0 : 0xFFFFFFFFu << (32 - length);
        expectChecked("_Ipv4Mask", dotted(mask), true);
        ++masks;
        for (const std::uint32_t other : {mask + 1, mask - 1, ~mask, mask >> 1}) {
            expectChecked("_Ipv4Mask", dotted(other), isMask(other));
        }
        for (int bit = 0; bit < 32; ++bit) {
            const std::uint32_t other = mask ^ (1u << bit);
            expectChecked("_Ipv4Mask", dotted(other), isMask(other));
        }
    }
    EXPECT_EQ(masks, 33);
}

TEST(NetworkType, RandomMasks) {
    std::mt19937 random(5);
    int validOnes = 0;
    for (int round = 0; round < 100000; ++round) {
        std::uint32_t address = static_cast<std::uint32_t>(random());
        if (round % 2) {  // ones in front
            address |= 0xFFFFFFFFu << (random() % 32);
            if (round % 4 == 1) address &= 0xFFFFFFFFu << (random() % 32);
        }
        const bool valid = isMask(address);
        validOnes += valid;
        ASSERT_EQ(cxml::isIpv4Mask(dotted(address).c_str()), valid) << dotted(address);
    }
    EXPECT_GT(validOnes, 1000);
    EXPECT_LT(validOnes, 90000);
}

}  // namespace
