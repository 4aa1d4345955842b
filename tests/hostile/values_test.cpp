// Values of simple types, of 400 kB and of an eighth of that.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "compactxml.h"
#include "tests/hostile/work.h"
#include "tests/support/document_shapes.h"

namespace {

using hostile::effortOf;
using hostile::staysLevel;
using support::join;
using support::times;

constexpr std::size_t kBytes = 50000;

struct Value {
    const char *name;
    std::string (*text)(std::size_t bytes);
};
constexpr Value kValues[] = {
    {"digits", [](std::size_t n) { return times(n, "7"); }},
    {"zeros", [](std::size_t n) { return times(n, "0") + "1"; }},
    {"blanks", [](std::size_t n) { return times(n, " ") + "1"; }},
    {"signs", [](std::size_t n) { return times(n, "-"); }},
    {"letters", [](std::size_t n) { return times(n / 4, "a0fF"); }},
    {"dots", [](std::size_t n) { return times(n / 2, "1."); }},
    {"colons", [](std::size_t n) { return times(n / 2, "a:"); }},
    {"high bytes", [](std::size_t n) { return times(n / 2, "\xD6\xD0"); }},
    {"numbers", [](std::size_t n) { return times(n / 6, "12345,") + "1"; }},
    {"ranges", [](std::size_t n) { return times(n / 8, "100-200,") + "1"; }},
    {"commas", [](std::size_t n) { return "1" + times(n, ","); }},
    {"hyphens", [](std::size_t n) { return "1" + times(n, "-"); }},
    {"a date with a long fraction",
     [](std::size_t n) { return "2026-01-02T03:04:05." + times(n, "6"); }},
    {"a long duration", [](std::size_t n) { return "P1Y2M3DT4H5M6." + times(n, "7") + "S"; }},
    {"a long year", [](std::size_t n) { return times(n, "2") + "-01-02"; }},
};

void expectLevel(const Value &value, std::size_t bytes, const auto &check) {
    const std::string one = value.text(bytes), eight = value.text(hostile::kGrowth * bytes);
    EXPECT_TRUE(staysLevel(effortOf(one.size(), [&] { check(one.c_str()); }),
                           effortOf(eight.size(), [&] { check(eight.c_str()); })))
        << value.name;
}

TEST(HostileValues, OfBuiltInTypes) {
    for (std::uint32_t code = 0; code <= SCHEMA_TYPE_LANGUAGE; ++code) {
        SCOPED_TRACE(code);
        const SchemaSimpleType type{.members = nullptr,
                                    .facets = nullptr,
                                    .name = "t",
                                    .ns = "",
                                    .builtinCode = code,
                                    .facetCount = 0,
                                    .memberCount = 0,
                                    .flags16 = 0};
        for (const Value &value : kValues) {
            expectLevel(value, kBytes, [&](const char *text) {
                char message[512];
                SCHEMA_CheckBaseTypeNonNull(code, text);
                Schema_CheckBaseType(&type, text, sizeof message, message);
            });
        }
    }
}

TEST(HostileValues, OfNetworkTypes) {
    for (const char *name : {"OID", "_Ipv6Address", "IPV6_ADDR_PREFIX", "_PortRange", "_VlanRange",
                             "_Ipv4Mask", "_IfIndexRange"}) {
        SCOPED_TRACE(name);
        const SchemaKestType *row = Schema_FoundKestBltInType(name, nullptr);
        ASSERT_TRUE(row);
        for (const Value &value : kValues) {
            expectLevel(value, kBytes, [&](const char *text) {
                char message[512];
                Schema_checkKestBltInType(row, text, sizeof message, message);
            });
        }
    }
}

// A list as long as one of ports may be is read to its end.
TEST(HostileValues, RangeListsOf400Kilobytes) {
    const auto check = [](const char *row, std::size_t items, std::uint32_t valid) {
        const std::string list = times(items - 1, "12345,") + "12345";
        const SchemaKestType *type = Schema_FoundKestBltInType(row, nullptr);
        return effortOf(list.size(), [&] {
            char message[512];
            EXPECT_EQ(Schema_checkKestBltInType(type, list.c_str(), sizeof message, message),
                      valid);
        });
    };
    EXPECT_TRUE(staysLevel(check("_PortRange", 8191, 1), check("_PortRange", 65528, 1)));
    EXPECT_TRUE(staysLevel(check("_IfIndexRange", 8191, 1), check("_IfIndexRange", 65528, 1)));
    // Longer ones are refused before they are read.
    EXPECT_LT(check("_PortRange", 70000, 0).work, check("_PortRange", 65528, 1).work / 8);
}

TEST(HostileValues, OfFacets) {
    for (std::uint32_t kind = SCHEMA_FACET_ENUMERATION; kind <= SCHEMA_FACET_TOTAL_DIGITS; ++kind) {
        if (kind == SCHEMA_FACET_PATTERN) continue;  // the C library's work
        for (const std::uint32_t code :
             {SCHEMA_TYPE_STRING, SCHEMA_TYPE_INTEGER, SCHEMA_TYPE_NON_NEGATIVE_INTEGER,
              SCHEMA_TYPE_DURATION, SCHEMA_TYPE_DATE_TIME, SCHEMA_TYPE_G_YEAR}) {
            SCOPED_TRACE(std::to_string(kind) + " of " + std::to_string(code));
            const SchemaFacet facet = {"12", kind, code};
            for (const Value &value : kValues) {
                expectLevel(value, kBytes / 4, [&](const char *text) {
                    char message[512];
                    Schema_CheckFacet(&facet, text, sizeof message, message);
                });
            }
        }
    }
}

// As many allowed values, each of which is looked at once.
TEST(HostileValues, OfEnumerations) {
    const auto check = [](std::size_t count) {
        std::string texts;
        for (std::size_t i = 0; i < count; ++i) texts += std::to_string(100000 + i) + '\0';
        std::vector<SchemaFacet> facets;
        for (std::size_t i = 0; i < count; ++i) {
            facets.push_back({&texts[7 * i], SCHEMA_FACET_ENUMERATION, SCHEMA_TYPE_STRING});
        }
        return effortOf(count, [&] {
            SchemaValidateContext context{};
            context.valid = 1;
            char message[512];
            Schema_CheckFacets(facets.data(), static_cast<std::uint32_t>(count), "1",
                               sizeof message, &context, message);
            EXPECT_EQ(context.valid, 0);
        });
    };
    EXPECT_TRUE(staysLevel(check(1000), check(8000)));
}

TEST(HostileValues, NamesOfPaths) {
    const auto check = [](std::size_t count) {
        SchemaRoot root;
        Schema_InitRoot(&root);
        const std::string path = times(count, "a.") + "b";
        const hostile::Effort effort = effortOf(path.size(), [&] {
            EXPECT_EQ(Schema_CheckAttrsAsElement(&root, path.c_str(), nullptr, 0, nullptr),
                      XML_REFUSED);
        });
        Schema_ExitRoot(&root);
        return effort;
    };
    EXPECT_TRUE(staysLevel(check(1000), check(8000)));
}

}  // namespace
