#include "fuzz/support/schema_values.h"

#include <algorithm>
#include <map>
#include <utility>

#include "tests/support/texts.h"

namespace fuzz {
namespace {

// A few texts of every built-in type and of the types of the schemas here, and their neighbours.
constexpr const char *kSamples[] = {
    "",
    "x",
    "0",
    "1",
    "-1",
    "+7",
    "007",
    "10",
    "11",
    "100",
    "101",
    "127",
    "128",
    "-128",
    "-129",
    "255",
    "256",
    "999",
    "1000",
    "32767",
    "32768",
    "65535",
    "65536",
    "2147483647",
    "2147483648",
    "-2147483649",
    "4294967295",
    "4294967296",
    "9223372036854775807",
    "9223372036854775808",
    "-9223372036854775809",
    "18446744073709551615",
    "18446744073709551616",
    "1 2",
    "1 2 3",
    "1  2",
    "1.5",
    "-0.25",
    "1234.56",
    "12345.67",
    "0.123",
    ".5",
    "5.",
    "1e3",
    "-1.5E-10",
    "INF",
    "NaN",
    "true",
    "false",
    "TRUE",
    "red",
    "green",
    "blue",
    "蓝",
    "中文",
    "é😀",
    "AB-1",
    "AB-1234",
    "ababcde",
    "abcd",
    "e",
    "name",
    "short",
    "much too long",
    "a b",
    "a:b",
    "1.0",
    "always",
    "2020-01-01",
    "2019-12-31",
    "2024-02-29",
    "2023-02-29",
    "2024-13-01",
    "0000-01-01",
    "2024-02-29Z",
    "2024-02-29+14:00",
    "2024-02-29-14:01",
    "12:00:00",
    "24:00:00",
    "23:59:59.999",
    "12:00:00Z",
    "25:00:00",
    "2024-02-29T12:00:00",
    "2024-02-29T23:59:60",
    "2024-02-29T12:00:00.123456789+08:00",
    "2024",
    "2024Z",
    "2024-02",
    "--02",
    "--02--",
    "--02-29",
    "--02-30",
    "---31",
    "---32",
    "P1Y",
    "PT1H",
    "P0Y0M0DT1H0M0S",
    "P0Y0M7DT0H0M0S",
    "P0Y0M7DT0H0M1S",
    "P1Y2M3DT4H5M6S",
    "-P1D",
    "00ff",
    "00FF00FF",
    "0g",
    "AAAA",
    "AA==",
    "AAA",
    "http://example.org/a",
    "urn:x",
    "a/b",
    "::",
    "en",
    "en-us",
    "zh-cn",
    "tlh",
    "1.3.6.1",
    "1.3.6.1.4.1.",
    "fe80::1",
    "2001:db8::/32",
    "2001:db8::1/64",
    "1-10",
    "1,3-5,9",
    "10-1",
    "1-4094",
    "255.255.255.0",
    "255.0.255.0",
    "0.0.0.0",
    "<&>",
    "]]>",
};

bool isValid(const void *type, std::int32_t kind, const std::string &text) {
    const SchemaTypedRef reference{type, kind};
    char buffer[1024];
    return Schema_checkValueOfElement(&reference, text.c_str(), sizeof buffer, buffer) == XML_OK;
}

// What enumerations name, in the type or in those that it is made of.
void collect(const SchemaSimpleType &type, std::vector<std::string> *texts) {
    for (std::uint32_t i = 0; i < type.facetCount; ++i) {
        if (type.facets[i].kind == SCHEMA_FACET_ENUMERATION) texts->push_back(type.facets[i].value);
    }
    if (!type.members) return;
    const std::uint32_t members = std::max<std::uint32_t>(type.memberCount, 1);
    for (std::uint32_t i = 0; i < members; ++i) {
        if (type.members[i]) collect(*type.members[i], texts);
    }
}

Values sorted(const void *type, std::int32_t kind) {
    std::vector<std::string> texts = sampleTexts();
    if (kind == SCHEMA_KIND_SIMPLE_TYPE) {
        collect(*static_cast<const SchemaSimpleType *>(type), &texts);
    }
    Values values;
    for (std::string &text : texts) {
        auto &list = isValid(type, kind, text) ? values.valid : values.invalid;
        list.push_back(std::move(text));
    }
    return values;
}

}  // namespace

const std::vector<std::string> &sampleTexts() {
    static const std::vector<std::string> texts = [] {
        std::vector<std::string> list;
        for (const char *sample : kSamples) list.push_back(support::gb(sample));
        return list;
    }();
    return texts;
}

const Values &valuesOf(const void *type, std::int32_t kind) {
    static std::map<std::pair<const void *, std::int32_t>, Values> known;
    const auto key = std::make_pair(type, kind);
    auto found = known.find(key);
    if (found == known.end()) found = known.emplace(key, sorted(type, kind)).first;
    return found->second;
}

}  // namespace fuzz
