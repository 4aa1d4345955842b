// Simple types: built in, restricted, united and known by name; the simple content of complex types;
// fixed values.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "compactxml.h"
#include "schema/value_check.h"

namespace {

constexpr char kUntouched = '#';
constexpr const char *kXmlSchema = "http://www.w3.org/2001/XMLSchema";

// What stands in a message buffer: "" if nothing has been written.
std::string written(const char *buffer, std::size_t size) {
    if (std::all_of(buffer, buffer + size, [](char c) { return c == kUntouched; })) return "";
    const std::size_t length = ::strnlen(buffer, size);
    return length < size ? std::string(buffer, length) : "(not terminated)";
}

// Makes types and keeps them.
class Types {
  public:
    const SchemaSimpleType *builtIn(std::uint32_t code, const char *name) {
        return &simple_.emplace_back(
            SchemaSimpleType{nullptr, nullptr, name, kXmlSchema, code, 0, 0, 0});
    }
    const SchemaSimpleType *restriction(const SchemaSimpleType *base,
                                        std::vector<SchemaFacet> facets, const char *name = nullptr,
                                        const char *ns = nullptr) {
        const std::vector<SchemaFacet> &kept = facets_.emplace_back(std::move(facets));
        return &simple_.emplace_back(
            SchemaSimpleType{base ? members_.emplace_back(1, base).data() : nullptr, kept.data(),
                             name, ns, 0, static_cast<std::uint32_t>(kept.size()), 0, 0});
    }
    const SchemaSimpleType *unionOf(std::vector<const SchemaSimpleType *> members,
                                    const char *name = nullptr) {
        const auto &kept = members_.emplace_back(std::move(members));
        return &simple_.emplace_back(SchemaSimpleType{kept.data(), nullptr, name, nullptr, 0, 0,
                                                      static_cast<std::uint32_t>(kept.size()), 0});
    }
    const SchemaComplexType *complex(std::int32_t kind, const void *base, std::int32_t baseKind,
                                     std::vector<SchemaFacet> facets = {}) {
        const std::vector<SchemaFacet> &kept = facets_.emplace_back(std::move(facets));
        SchemaDerivation &content = derivations_.emplace_back(SchemaDerivation{});
        content.facets = kept.empty() ? nullptr : kept.data();
        content.facetCount = static_cast<std::uint32_t>(kept.size());
        content.baseType = base;
        content.baseTypeKind = baseKind;
        content.derivationKind = kind;
        SchemaComplexType &type = complex_.emplace_back(SchemaComplexType{});
        type.content = &content;
        return &type;
    }
    const SchemaComplexType *empty() { return &complex_.emplace_back(SchemaComplexType{}); }

  private:
    std::deque<SchemaSimpleType> simple_;
    std::deque<SchemaComplexType> complex_;
    std::deque<SchemaDerivation> derivations_;
    std::deque<std::vector<SchemaFacet>> facets_;
    std::deque<std::vector<const SchemaSimpleType *>> members_;
};

struct Result {
    bool valid;
    std::string message;
};

// Checks a value with a validation that is valid so far. What else the record holds must stay.
Result checked(const SchemaSimpleType *type, const char *value, std::uint32_t size = 512) {
    std::string buffer(2048, kUntouched);
    SchemaValidateContext context;
    std::memset(&context, 0x5A, sizeof context);
    context.valid = 1;
    SchemaValidateContext expected;
    std::memcpy(&expected, &context, sizeof context);
    Schema_CheckSimpleType(type, value, size, &context, buffer.data());
    const bool valid = context.valid != 0;
    expected.valid = valid ? 1 : 0;
    EXPECT_EQ(std::memcmp(&context, &expected, sizeof context), 0);
    EXPECT_EQ(buffer.find_first_not_of(kUntouched, size), std::string::npos);
    return {valid, written(buffer.data(), size)};
}

// Checks a value, also with compiled patterns kept from value to value.
void expectChecked(const SchemaSimpleType *type, const char *value, bool valid,
                   std::string_view message) {
    const Result result = checked(type, value);
    EXPECT_EQ(result.valid, valid) << (value ? value : "(null)");
    EXPECT_EQ(result.message, message) << (value ? value : "(null)");
    cxml::PatternCache patterns;
    for (int round = 0; round < 2; ++round) {
        char buffer[512];
        std::memset(buffer, kUntouched, sizeof buffer);
        EXPECT_EQ(cxml::checkSimpleType(type, value, {sizeof buffer, buffer, &patterns}), valid);
        EXPECT_EQ(written(buffer, sizeof buffer), message);
    }
}

constexpr SchemaFacet kLength3 = {"3", SCHEMA_FACET_LENGTH, SCHEMA_TYPE_STRING};
constexpr SchemaFacet kMin10 = {"10", SCHEMA_FACET_MIN_INCLUSIVE, SCHEMA_TYPE_INT};
constexpr SchemaFacet kMax20 = {"20", SCHEMA_FACET_MAX_INCLUSIVE, SCHEMA_TYPE_INT};
constexpr SchemaFacet kMax15 = {"15", SCHEMA_FACET_MAX_INCLUSIVE, SCHEMA_TYPE_INT};
constexpr SchemaFacet kOne = {"1", SCHEMA_FACET_ENUMERATION, SCHEMA_TYPE_INT};
constexpr SchemaFacet kTwo = {"2", SCHEMA_FACET_ENUMERATION, SCHEMA_TYPE_INT};
constexpr SchemaFacet kUp = {"up", SCHEMA_FACET_ENUMERATION, SCHEMA_TYPE_STRING};
constexpr SchemaFacet kDown = {"down", SCHEMA_FACET_ENUMERATION, SCHEMA_TYPE_STRING};
constexpr SchemaFacet kLetters = {"^[a-z]+$", SCHEMA_FACET_PATTERN, SCHEMA_TYPE_STRING};

// ---------------------------------------------------------------- built-in types

struct BuiltInCase {
    const SchemaSimpleType *(*type)();
    const char *value;
    const char *name;  // in the message; null for a valid value
};

constexpr BuiltInCase kBuiltIns[] = {
    {Schema_BLDIN_anySimpleType, "any thing <at> all", nullptr},
    {Schema_BLDIN_byte, "-128", nullptr},
    {Schema_BLDIN_byte, "-129", "byte"},
    {Schema_BLDIN_byte, "|999", nullptr},
    {Schema_BLDIN_byte, "0000000000000000000000127", nullptr},
    {Schema_BLDIN_short, "32767", nullptr},
    {Schema_BLDIN_short, "32768", "short"},
    {Schema_BLDIN_unsignedByte, "255", nullptr},
    {Schema_BLDIN_unsignedByte, "256", "unsignedByte"},
    {Schema_BLDIN_unsignedByte, "-0", "unsignedByte"},
    {Schema_BLDIN_unsignedShort, "65535", nullptr},
    {Schema_BLDIN_unsignedShort, "65536", "unsignedShort"},
    {Schema_BLDIN_int, "-2147483648", nullptr},
    {Schema_BLDIN_int, "2147483648", "int"},
    {Schema_BLDIN_int, "|5", nullptr},
    {Schema_BLDIN_int, " 5", "int"},
    {Schema_BLDIN_int, "5 ", "int"},
    {Schema_BLDIN_long, "9223372036854775807", nullptr},
    {Schema_BLDIN_long, "9223372036854775808", "long"},
    {Schema_BLDIN_unsignedInt, "4294967295", nullptr},
    {Schema_BLDIN_unsignedInt, "4294967296", "unsignedInt"},
    {Schema_BLDIN_unsignedLong, "18446744073709551615", nullptr},
    {Schema_BLDIN_unsignedLong, "18446744073709551616", "unsignedLong"},
    {Schema_BLDIN_integer, "-9223372036854775808", nullptr},
    {Schema_BLDIN_integer, "-9223372036854775809", "integer"},
    {Schema_BLDIN_positiveInteger, "+1", nullptr},
    {Schema_BLDIN_positiveInteger, "0", "positiveInteger"},
    {Schema_BLDIN_nonPositiveInteger, "-0", nullptr},
    {Schema_BLDIN_nonPositiveInteger, "1", "nonPositiveInteger"},
    {Schema_BLDIN_negativeInteger, "-1", nullptr},
    {Schema_BLDIN_negativeInteger, "0", "negativeInteger"},
    {Schema_BLDIN_nonNegativeInteger, "0", nullptr},
    {Schema_BLDIN_nonNegativeInteger, "-0", "nonNegativeInteger"},
    {Schema_BLDIN_duration, "P1Y0M0DT0H0M0S", nullptr},
    {Schema_BLDIN_duration, "P1Y", "duration"},
    {Schema_BLDIN_dateTime, "2000-02-29T23:59:59.5+01:00", nullptr},
    {Schema_BLDIN_dateTime, "2000-02-30T00:00:00", "datetime"},
    {Schema_BLDIN_date, "2000-02-29", nullptr},
    {Schema_BLDIN_date, "1900-02-29", "date"},
    {Schema_BLDIN_time, "23:59:59", nullptr},
    {Schema_BLDIN_time, "24:00:00", "time"},
    {Schema_BLDIN_gYear, "0001", nullptr},
    {Schema_BLDIN_gYear, "0000", "gYear"},
    {Schema_BLDIN_gMonth, "--12--", nullptr},
    {Schema_BLDIN_gMonth, "--12", "gMonth"},
    {Schema_BLDIN_gDay, "---30", nullptr},
    {Schema_BLDIN_gDay, "---31", "gDay"},
    {Schema_BLDIN_gYearMonth, "2001-12", nullptr},
    {Schema_BLDIN_gYearMonth, "2001-13", "gYearMonth"},
    {Schema_BLDIN_gMonthDay, "--02-28", nullptr},
    {Schema_BLDIN_gMonthDay, "--02-29", "gMonthDay"},
    {Schema_BLDIN_string, "\xD6\xD0\xCE\xC4", nullptr},
    {Schema_BLDIN_boolean, "true", nullptr},
    {Schema_BLDIN_boolean, "TRUE", "boolean"},
    {Schema_BLDIN_hexBinary, "abc", nullptr},
    {Schema_BLDIN_hexBinary, "0g", "hexBinary"},
    {Schema_BLDIN_base64Binary, "QUI=", nullptr},
    {Schema_BLDIN_base64Binary, "QUI", "base64Binary"},
    {Schema_BLDIN_anyURI, "http:example", nullptr},
    {Schema_BLDIN_anyURI, "http:", "anyURI"},
    {Schema_BLDIN_QName, "name", nullptr},
    {Schema_BLDIN_QName, "p:name", "QName"},
    {Schema_BLDIN_language, "en-us", nullptr},
    {Schema_BLDIN_language, "en-US", "NOTATION"},
};

TEST(SimpleType, BuiltIn) {
    for (const BuiltInCase &row : kBuiltIns) {
        SCOPED_TRACE(row.type()->name);
        expectChecked(row.type(), row.value, !row.name,
                      row.name ? std::string(row.value) + " is an invalid value of " + row.name +
                                     " type value."
                               : "");
    }
}

TEST(SimpleType, BuiltInWithoutAValue) {
    for (const BuiltInCase &row : kBuiltIns) {
        if (!row.name) continue;  // each type but string and anySimpleType has an invalid value
        SCOPED_TRACE(row.type()->name);
        const bool valid = row.type() == Schema_BLDIN_base64Binary();
        const std::string message = valid ? "" : std::string(row.name) + " cannot be empty.";
        expectChecked(row.type(), "", valid, message);
        expectChecked(row.type(), nullptr, valid, message);
    }
    for (const SchemaSimpleType *type : {Schema_BLDIN_string(), Schema_BLDIN_anySimpleType()}) {
        expectChecked(type, "", true, "");
        expectChecked(type, nullptr, true, "");
    }
}

// Types with a code that has no check.
TEST(SimpleType, BuiltInWithoutACheck) {
    Types types;
    expectChecked(types.builtIn(16, "decimal"), "1.5", false,
                  "1.5 is an invalid value of decimal type value.");
    expectChecked(types.builtIn(36, "token"), "a", false,
                  "a is an invalid value of token type value.");
    expectChecked(types.builtIn(36, "token"), "", false, "token cannot be empty.");
    expectChecked(types.builtIn(47, "none"), "a", false, "a is an invalid value of  type value.");
    expectChecked(types.builtIn(48, "none"), "a", false, "a is an invalid value of  type value.");
    expectChecked(types.builtIn(0xFFFFFFFF, "none"), "", false, " cannot be empty.");
}

// A code decides, whatever else the record says.
TEST(SimpleType, BuiltInHasNoFacets) {
    Types types;
    SchemaSimpleType type = *types.restriction(Schema_BLDIN_boolean(), {kLength3}, "OID");
    type.builtinCode = SCHEMA_TYPE_INT;
    type.memberCount = 1;
    expectChecked(&type, "12345", true, "");
    expectChecked(&type, "true", false, "true is an invalid value of int type value.");
}

// ---------------------------------------------------------------- restrictions

struct Case {
    const char *name;
    const SchemaSimpleType *type;
    const char *value;
    bool valid;
    std::string_view message;
};

void expectAll(const std::vector<Case> &rows) {
    for (const Case &row : rows) {
        SCOPED_TRACE(row.name);
        expectChecked(row.type, row.value, row.valid, row.message);
    }
}

TEST(SimpleType, Restrictions) {
    Types t;
    const SchemaSimpleType *from10 = t.restriction(Schema_BLDIN_int(), {kMin10}, "from10");
    const SchemaSimpleType *to20 = t.restriction(from10, {kMax20}, "to20", "urn:t");
    const SchemaSimpleType *to15 = t.restriction(to20, {kMax15});
    const SchemaSimpleType *plain = t.restriction(Schema_BLDIN_int(), {});
    const SchemaSimpleType *three = t.restriction(Schema_BLDIN_string(), {kLength3});
    const SchemaSimpleType *state = t.restriction(Schema_BLDIN_string(), {kUp, kDown});
    const SchemaSimpleType *letters = t.restriction(three, {kLetters});
    const SchemaSimpleType *numbers = t.restriction(Schema_BLDIN_int(), {kOne, kTwo});
    expectAll({
        {"the facet holds", from10, "10", true, ""},
        {"the facet fails", from10, "9", false, "The value must be greater than or equal to 10."},
        {"the base fails", from10, "x", false, "x is an invalid value of int type value."},
        {"the base fails, facets are not looked at", from10, "9.5", false,
         "9.5 is an invalid value of int type value."},
        {"empty", from10, "", false, "int cannot be empty."},
        {"missing", from10, nullptr, false, "int cannot be empty."},
        {"two steps", to20, "20", true, ""},
        {"two steps, the inner fails", to20, "9", false,
         "The value must be greater than or equal to 10."},
        {"two steps, the outer fails", to20, "21", false,
         "The value must be less than or equal to 20."},
        {"three steps", to15, "15", true, ""},
        {"three steps, the last fails", to15, "16", false,
         "The value must be less than or equal to 15."},
        {"three steps, the inner ones are asked first", to15, "21", false,
         "The value must be less than or equal to 20."},
        {"three steps down to the base", to15, "-", false,
         "- is an invalid value of int type value."},
        {"without facets", plain, "5", true, ""},
        {"without facets, the base fails", plain, "five", false,
         "five is an invalid value of int type value."},
        {"bytes", three, "abc", true, ""},
        {"bytes of wide characters", three, "\xD6\xD0\xCE\xC4", false,
         "The length must be equal to 3."},
        {"empty for a facet", three, "", false, "The length must be equal to 3."},
        {"missing for a facet", three, nullptr, false, "The length must be equal to 3."},
        {"enumerated first", state, "up", true, "The value does not match the enumeration."},
        {"enumerated last", state, "down", true, "The value does not match the enumeration."},
        {"not enumerated", state, "off", false, "The value does not match the enumeration."},
        {"not enumerated, empty", state, nullptr, false,
         "The value does not match the enumeration."},
        {"pattern", letters, "abc", true, ""},
        {"no pattern", letters, "ab1", false, "The value does not match the regular expression."},
        {"no pattern and too long", letters, "abc1", false, "The length must be equal to 3."},
        {"enumerated by value", numbers, "+01", true, "The value does not match the enumeration."},
        {"enumerated by value, none", numbers, "3", false,
         "The value does not match the enumeration."},
    });
}

TEST(SimpleType, ARestrictionOfNothing) {
    Types t;
    const SchemaSimpleType *three = t.restriction(nullptr, {kLength3});
    const SchemaSimpleType *anything = t.restriction(nullptr, {});
    SchemaSimpleType record{};
    expectAll({
        {"facets", three, "abc", true, ""},
        {"facets fail", three, "ab", false, "The length must be equal to 3."},
        {"facets fail on nothing", three, nullptr, false, "The length must be equal to 3."},
        {"no facets", anything, "", true, ""},
        {"no facets, missing", anything, nullptr, true, ""},
        {"an empty record", &record, "x", true, ""},
        {"the base is anySimpleType", t.restriction(Schema_BLDIN_anySimpleType(), {kLength3}), "",
         false, "The length must be equal to 3."},
    });
}

// A member count of 1 or 0 makes no difference.
TEST(SimpleType, AUnionOfOneIsARestriction) {
    Types t;
    for (const std::uint32_t count : {0u, 1u}) {
        SchemaSimpleType type = *t.restriction(Schema_BLDIN_int(), {kMin10});
        type.memberCount = count;
        expectChecked(&type, "10", true, "");
        expectChecked(&type, "9", false, "The value must be greater than or equal to 10.");
        expectChecked(&type, "x", false, "x is an invalid value of int type value.");
    }
    expectChecked(t.unionOf({Schema_BLDIN_byte()}), "300", false,
                  "300 is an invalid value of byte type value.");
    expectChecked(t.unionOf({Schema_BLDIN_byte()}, "OID"), "1.3.6", true, "");
}

// ---------------------------------------------------------------- unions

TEST(SimpleType, Unions) {
    Types t;
    const SchemaSimpleType *numberOrFlag = t.unionOf({Schema_BLDIN_byte(), Schema_BLDIN_boolean()});
    const SchemaSimpleType *nestedFirst = t.unionOf({numberOrFlag, Schema_BLDIN_date()});
    const SchemaSimpleType *nestedLast = t.unionOf({Schema_BLDIN_date(), numberOrFlag});
    const SchemaSimpleType *nestedOne =
        t.unionOf({t.unionOf({Schema_BLDIN_date()}), t.unionOf({Schema_BLDIN_byte()})});
    const SchemaSimpleType *restricted = t.restriction(numberOrFlag, {kOne, kTwo});
    const SchemaSimpleType *ofRestrictions =
        t.unionOf({t.restriction(Schema_BLDIN_int(), {kMin10}),
                   t.restriction(Schema_BLDIN_string(), {kUp, kDown})});
    const SchemaSimpleType *withNetwork =
        t.unionOf({t.restriction(Schema_BLDIN_string(), {}, "_Ipv4Mask"),
                   t.restriction(Schema_BLDIN_string(), {}, "_Ipv6Address")});
    const SchemaSimpleType *named = t.unionOf({Schema_BLDIN_byte(), Schema_BLDIN_boolean()}, "OID");
    const SchemaSimpleType *three =
        t.unionOf({Schema_BLDIN_byte(), Schema_BLDIN_date(), Schema_BLDIN_boolean()});
    SchemaSimpleType coded = *numberOrFlag;
    coded.builtinCode = SCHEMA_TYPE_DATE;
    SchemaSimpleType without = *numberOrFlag;
    without.members = nullptr;
    expectAll({
        {"the first fits", numberOrFlag, "-5", true, ""},
        {"the second fits, the first has complained", numberOrFlag, "true", true,
         "true is an invalid value of byte type value."},
        {"none fits", numberOrFlag, "300", false, "300 does not match any member of union"},
        {"none fits nothing", numberOrFlag, "", false, " does not match any member of union"},
        {"none fits a missing value", numberOrFlag, nullptr, false,
         " does not match any member of union"},
        {"a percent sign", numberOrFlag, "%s%n", false, "%s%n does not match any member of union"},
        {"a Chinese value", numberOrFlag, "\xD6\xD0", false,
         "\xD6\xD0 does not match any member of union"},
        {"the last of three fits", three, "false", true,
         "false is an invalid value of date type value."},
        {"the second of three fits", three, "2001-01-01", true,
         "2001-01-01 is an invalid value of byte type value."},
        {"none of three fits", three, "x", false, "x does not match any member of union"},
        {"the first of the inner one fits", nestedFirst, "1", true, ""},
        {"the second of the inner one fits", nestedFirst, "true", true,
         "true is an invalid value of byte type value."},
        {"the inner one does not fit", nestedFirst, "2001-01-01", true,
         "2001-01-01 does not match any member of union"},
        {"neither fits", nestedFirst, "x", false, "x does not match any member of union"},
        {"the inner one comes last", nestedLast, "true", true,
         "true is an invalid value of byte type value."},
        {"the inner one comes last, none fits", nestedLast, "x", false,
         "x does not match any member of union"},
        {"unions of one in a union", nestedOne, "-1", true,
         "-1 is an invalid value of date type value."},
        {"unions of one in a union, none fits", nestedOne, "true", false,
         "true does not match any member of union"},
        {"facets on a union", restricted, "1", true, "The value does not match the enumeration."},
        {"facets on a union fail", restricted, "3", false,
         "The value does not match the enumeration."},
        {"the union fails before its facets", restricted, "300", false,
         "300 does not match any member of union"},
        {"restrictions united, the first fits", ofRestrictions, "10", true, ""},
        {"restrictions united, the second fits", ofRestrictions, "up", true,
         "The value does not match the enumeration."},
        {"restrictions united, none fits", ofRestrictions, "9", false,
         "9 does not match any member of union"},
        {"network types united, the first fits", withNetwork, "255.0.0.0", true, ""},
        {"network types united, the second fits", withNetwork, "::1", true, "Invalid IPv4 mask"},
        {"network types united, none fits", withNetwork, "1.2.3.4", false,
         "1.2.3.4 does not match any member of union"},
        {"a union is not known by its name", named, "1.3.6", false,
         "1.3.6 does not match any member of union"},
        {"a union has no code", &coded, "2001-01-01", false,
         "2001-01-01 does not match any member of union"},
        {"a union has no code, a member fits", &coded, "1", true, ""},
        {"without members none fits", &without, "1", false, "1 does not match any member of union"},
    });
}

TEST(SimpleType, AUnionQuotesTheValueUpToItsBuffer) {
    Types t;
    const SchemaSimpleType *type = t.unionOf({Schema_BLDIN_byte(), Schema_BLDIN_boolean()});
    for (const std::size_t length : {std::size_t{1}, std::size_t{479}, std::size_t{480},
                                     std::size_t{481}, std::size_t{600}, std::size_t{100000}}) {
        const std::string value(length, 'x');
        const std::string message = value + " does not match any member of union";
        for (const std::uint32_t size : {1u, 2u, 40u, 112u, 512u}) {
            const Result result = checked(type, value.c_str(), size);
            EXPECT_FALSE(result.valid);
            EXPECT_EQ(result.message, message.substr(0, size - 1)) << length << " in " << size;
        }
        EXPECT_FALSE(checked(type, value.c_str(), 0).valid);
    }
}

TEST(SimpleType, ABuiltInTypeQuotesLess) {
    const std::string value(600, 'x');
    const std::string rest = " is an invalid value of int type value.";
    EXPECT_EQ(checked(Schema_BLDIN_int(), value.c_str(), 512).message, value.substr(0, 401) + rest);
    EXPECT_EQ(checked(Schema_BLDIN_int(), value.c_str(), 128).message, value.substr(0, 17) + rest);
    EXPECT_EQ(checked(Schema_BLDIN_int(), value.c_str(), 112).message, value.substr(0, 1) + rest);
    EXPECT_FALSE(checked(Schema_BLDIN_int(), value.c_str(), 50).valid);
    EXPECT_FALSE(checked(Schema_BLDIN_int(), value.c_str(), 0).valid);
}

// The flag is cleared or left alone.
TEST(SimpleType, NeverSetsTheFlag) {
    Types t;
    const SchemaSimpleType *type = t.unionOf({Schema_BLDIN_byte(), Schema_BLDIN_boolean()});
    for (const SchemaSimpleType *each :
         {type, Schema_BLDIN_boolean(), t.restriction(Schema_BLDIN_boolean(), {})}) {
        char buffer[64] = "";
        for (const std::uint16_t before : {std::uint16_t{1}, std::uint16_t{7}}) {
            SchemaValidateContext context{};
            context.valid = before;
            Schema_CheckSimpleType(each, "true", sizeof buffer, &context, buffer);
            EXPECT_EQ(context.valid, before);
            Schema_CheckSimpleType(each, "maybe", sizeof buffer, &context, buffer);
            EXPECT_EQ(context.valid, 0);
        }
    }
}

// ---------------------------------------------------------------- types of network equipment

struct NetworkCase {
    const char *name, *good, *bad, *message;
};
constexpr NetworkCase kNetwork[] = {
    {"OID", "1.3.6.1", "1..3", "Invalid OID"},
    {"_Ipv6Address", "2001:db8::1", "2001:db8::/64", "Invalid IPv6"},
    {"IPV6_ADDR_PREFIX", "2001:db8::/64", "2001:db8::/0", "Invalid IPv6 prefix"},
    {"_PortRange", "80,443,1000-2000", "80,", "Invalid PortRange"},
    {"_VlanRange", "1-4094", "4095", "Invalid VlanRange"},
    {"_Ipv4Mask", "255.255.255.0", "255.0.255.0", "Invalid IPv4 mask"},
    {"_IfIndexRange", "3221225471", "3221225472", "Invalid IfIndexRange"},
};

TEST(SimpleType, NetworkTypesHaveNeitherBaseNorFacets) {
    Types t;
    for (const NetworkCase &row : kNetwork) {
        SCOPED_TRACE(row.name);
        for (const char *ns : {static_cast<const char *>(nullptr), ""}) {
            const SchemaSimpleType *type =
                t.restriction(Schema_BLDIN_boolean(), {kLength3}, row.name, ns);
            expectChecked(type, row.good, true, "");
            expectChecked(type, row.bad, false, row.message);
            expectChecked(type, "true", false, row.message);
            expectChecked(type, "", false, row.message);
            expectChecked(type, nullptr, false, row.message);
            expectChecked(t.restriction(nullptr, {}, row.name, ns), row.good, true, "");
            expectChecked(t.restriction(nullptr, {}, row.name, ns), row.bad, false, row.message);
        }
        // In a namespace they are types as any other.
        const SchemaSimpleType *type =
            t.restriction(Schema_BLDIN_string(), {kLength3}, row.name, "urn:t");
        expectChecked(type, row.good, false, "The length must be equal to 3.");
        expectChecked(type, "abc", true, "");
    }
}

// Only the type that has the name; types derived from it have facets again.
TEST(SimpleType, RestrictionsOfNetworkTypes) {
    Types t;
    const SchemaSimpleType *mask = t.restriction(Schema_BLDIN_boolean(), {kLength3}, "_Ipv4Mask");
    const SchemaSimpleType *nineBytes =
        t.restriction(mask, {{"9", SCHEMA_FACET_LENGTH, SCHEMA_TYPE_STRING}}, "shortMask", "urn:t");
    expectChecked(nineBytes, "255.0.0.0", true, "");
    expectChecked(nineBytes, "255.255.0.0", false, "The length must be equal to 9.");
    expectChecked(nineBytes, "256.0.0.0", false, "Invalid IPv4 mask");
    expectChecked(t.restriction(mask, {}, "_ipv4Mask"), "0.0.0.0", true, "");
}

// ---------------------------------------------------------------- values of elements

struct ElementCase {
    const char *name;
    SchemaTypedRef type;
    const char *value;
    std::uint32_t result;
    std::string_view message;
};

TEST(ValueOfElement, Table) {
    constexpr std::int32_t kSimple = SCHEMA_KIND_SIMPLE_TYPE, kComplex = SCHEMA_KIND_COMPLEX_TYPE;
    constexpr std::int32_t kRestricts = SCHEMA_KIND_SIMPLE_RESTRICTION;
    constexpr std::int32_t kExtends = SCHEMA_KIND_SIMPLE_EXTENSION;
    constexpr std::string_view kTooSmall = "The value must be greater than or equal to 10.";
    constexpr std::string_view kTooGreat = "The value must be less than or equal to 20.";
    constexpr std::string_view kFarTooGreat = "The value must be less than or equal to 15.";
    constexpr std::string_view kNoInt = "x is an invalid value of int type value.";
    Types t;
    const SchemaSimpleType *integer = Schema_BLDIN_int();
    const SchemaSimpleType *from10 = t.restriction(integer, {kMin10});
    const auto *extends = t.complex(kExtends, integer, kSimple);
    const auto *extendsFrom10 = t.complex(kExtends, from10, kSimple);
    const auto *extendsWithFacets = t.complex(kExtends, integer, kSimple, {kMin10});
    const auto *restricts = t.complex(kRestricts, integer, kSimple, {kMin10});
    const auto *restrictsPlainly = t.complex(kRestricts, integer, kSimple);
    const auto *restrictsExtension = t.complex(kRestricts, extendsFrom10, kComplex, {kMax20});
    const auto *twice = t.complex(kRestricts, restrictsExtension, kComplex, {kMax15});
    const auto *extendsRestriction = t.complex(kExtends, restricts, kComplex);
    const auto *ofUnion =
        t.complex(kRestricts, t.unionOf({Schema_BLDIN_byte(), Schema_BLDIN_boolean()}), kSimple,
                  {kOne, kTwo});
    const auto *complexRestriction = t.complex(SCHEMA_KIND_COMPLEX_RESTRICTION, integer, kSimple);
    const auto *complexExtension = t.complex(SCHEMA_KIND_COMPLEX_EXTENSION, integer, kSimple);
    const auto *onComplex = t.complex(kRestricts, complexExtension, kComplex, {kMin10});
    const auto *onOtherComplex = t.complex(kExtends, complexRestriction, kComplex);
    const auto *onEmpty = t.complex(kExtends, t.empty(), kComplex);
    const auto *onEmptyTwice = t.complex(kRestricts, onEmpty, kComplex, {kMin10});
    const ElementCase kRows[] = {
        {"a simple type", {integer, kSimple}, "5", XML_OK, ""},
        {"a simple type, invalid", {integer, kSimple}, "x", XML_REFUSED, kNoInt},
        {"a simple type, empty", {integer, kSimple}, "", XML_REFUSED, "int cannot be empty."},
        {"a simple type, missing",
         {integer, kSimple},
         nullptr,
         XML_REFUSED,
         "int cannot be empty."},
        {"a string, missing", {Schema_BLDIN_string(), kSimple}, nullptr, XML_OK, ""},
        {"a restriction", {from10, kSimple}, "10", XML_OK, ""},
        {"a restriction, invalid", {from10, kSimple}, "9", XML_REFUSED, kTooSmall},
        {"an extension", {extends, kComplex}, "5", XML_OK, ""},
        {"an extension, invalid", {extends, kComplex}, "x", XML_REFUSED, kNoInt},
        {"an extension, missing",
         {extends, kComplex},
         nullptr,
         XML_REFUSED,
         "int cannot be empty."},
        {"an extension of a restriction", {extendsFrom10, kComplex}, "10", XML_OK, ""},
        {"an extension of a restriction, invalid",
         {extendsFrom10, kComplex},
         "9",
         XML_REFUSED,
         kTooSmall},
        {"an extension has no facets", {extendsWithFacets, kComplex}, "9", XML_OK, ""},
        {"a simple restriction", {restricts, kComplex}, "10", XML_OK, ""},
        {"a simple restriction, the facet fails",
         {restricts, kComplex},
         "9",
         XML_REFUSED,
         kTooSmall},
        {"a simple restriction, the base fails first",
         {restricts, kComplex},
         "x",
         XML_REFUSED,
         kNoInt},
        {"a simple restriction without facets", {restrictsPlainly, kComplex}, "5", XML_OK, ""},
        {"a simple restriction without facets, invalid",
         {restrictsPlainly, kComplex},
         "x",
         XML_REFUSED,
         kNoInt},
        {"restricts an extension", {restrictsExtension, kComplex}, "20", XML_OK, ""},
        {"restricts an extension, the base fails",
         {restrictsExtension, kComplex},
         "9",
         XML_REFUSED,
         kTooSmall},
        {"restricts an extension, its own facet fails",
         {restrictsExtension, kComplex},
         "21",
         XML_REFUSED,
         kTooGreat},
        {"restricts an extension, no number",
         {restrictsExtension, kComplex},
         "x",
         XML_REFUSED,
         kNoInt},
        {"three steps", {twice, kComplex}, "15", XML_OK, ""},
        {"three steps, the outermost fails", {twice, kComplex}, "16", XML_REFUSED, kFarTooGreat},
        {"three steps, the inner ones are asked first",
         {twice, kComplex},
         "21",
         XML_REFUSED,
         kTooGreat},
        {"three steps, the innermost is asked first",
         {twice, kComplex},
         "9",
         XML_REFUSED,
         kTooSmall},
        {"extends a restriction", {extendsRestriction, kComplex}, "10", XML_OK, ""},
        {"extends a restriction, invalid",
         {extendsRestriction, kComplex},
         "9",
         XML_REFUSED,
         kTooSmall},
        {"restricts a union",
         {ofUnion, kComplex},
         "1",
         XML_OK,
         "The value does not match the enumeration."},
        {"restricts a union, invalid",
         {ofUnion, kComplex},
         "true",
         XML_REFUSED,
         "The value does not match the enumeration."},
        {"restricts a union, no member",
         {ofUnion, kComplex},
         "x",
         XML_REFUSED,
         "x does not match any member of union"},
        {"a complex restriction", {complexRestriction, kComplex}, "5", XML_NO_VALUE, ""},
        {"a complex extension", {complexExtension, kComplex}, "5", XML_NO_VALUE, ""},
        {"a complex extension, missing", {complexExtension, kComplex}, nullptr, XML_NO_VALUE, ""},
        {"restricts a complex extension", {onComplex, kComplex}, "1", XML_NO_VALUE, ""},
        {"extends a complex restriction", {onOtherComplex, kComplex}, "1", XML_NO_VALUE, ""},
        {"no content", {t.empty(), kComplex}, "5", XML_NO_VALUE, ""},
        {"no content, empty", {t.empty(), kComplex}, "", XML_NO_VALUE, ""},
        {"anyType", {Schema_BLDIN_anyType(), kComplex}, "5", XML_NO_VALUE, ""},
        {"extends no content", {onEmpty, kComplex}, "5", XML_NO_VALUE, ""},
        {"restricts what extends no content", {onEmptyTwice, kComplex}, "5", XML_NO_VALUE, ""},
        {"every other kind is a complex type", {extends, 0}, "5", XML_OK, ""},
        {"every other kind is a complex type, invalid", {extends, 28}, "x", XML_REFUSED, kNoInt},
        {"every other kind is a complex type, no value", {t.empty(), -1}, "x", XML_NO_VALUE, ""},
    };
    for (const ElementCase &row : kRows) {
        SCOPED_TRACE(row.name);
        char buffer[512];
        std::memset(buffer, kUntouched, sizeof buffer);
        EXPECT_EQ(Schema_checkValueOfElement(&row.type, row.value, sizeof buffer, buffer),
                  row.result);
        EXPECT_EQ(written(buffer, sizeof buffer), row.message);
        if (row.type.kind != kComplex) continue;
        std::memset(buffer, kUntouched, sizeof buffer);
        cxml::PatternCache patterns;
        bool valid = true;
        const std::uint32_t result =
            cxml::checkSimpleContent(static_cast<const SchemaComplexType *>(row.type.object),
                                     row.value, {sizeof buffer, buffer, &patterns}, &valid);
        EXPECT_EQ(result, row.result == XML_NO_VALUE ? XML_NO_VALUE : XML_OK);
        if (result == XML_OK) {
            EXPECT_EQ(valid, row.result == XML_OK);
        }
        EXPECT_EQ(written(buffer, sizeof buffer), row.message);
    }
}

TEST(ValueOfElement, CutsTheMessage) {
    const SchemaTypedRef type = {Schema_BLDIN_int(), SCHEMA_KIND_SIMPLE_TYPE};
    char buffer[16];
    std::memset(buffer, kUntouched, sizeof buffer);
    EXPECT_EQ(Schema_checkValueOfElement(&type, "", 8, buffer), XML_REFUSED);
    EXPECT_EQ(std::string_view(buffer, sizeof buffer),
              std::string_view("int can\0########", sizeof buffer));
    std::memset(buffer, kUntouched, sizeof buffer);
    EXPECT_EQ(Schema_checkValueOfElement(&type, "", 0, buffer), XML_REFUSED);
    EXPECT_EQ(std::string_view(buffer, sizeof buffer), "################");
}

TEST(SimpleContent, OfNoTypeIsNoValue) {
    char buffer[8] = "#";
    bool valid = true;
    EXPECT_EQ(cxml::checkSimpleContent(nullptr, "1", {sizeof buffer, buffer, nullptr}, &valid),
              XML_NO_VALUE);
    EXPECT_STREQ(buffer, "#");
}

// ---------------------------------------------------------------- fixed values

struct FixedCase {
    const char *fixed, *value;
    bool equal;
    std::string_view message;
};
constexpr FixedCase kFixed[] = {
    {"5", "5", true, ""},
    {"5", "6", false, "must equal 5"},
    {"5", "05", false, "must equal 5"},  // as text
    {"5", "", false, "must equal 5"},
    {"5", nullptr, false, "must equal 5"},
    {"", "", true, ""},
    {"", nullptr, true, ""},
    {nullptr, "", true, ""},
    {nullptr, nullptr, true, ""},
    {"", "5", false, "must be empty"},
    {"", " ", false, "must be empty"},
    {nullptr, "5", false, "must be empty"},
    {" ", "", false, "must equal  "},
    {"a", "A", false, "must equal a"},
    {"%s", "x", false, "must equal %s"},
    {"\xD6\xD0", "\xD6\xD0", true, ""},
    {"\xD6\xD0", "\xD6", false, "must equal \xD6\xD0"},
};

TEST(FixedValue, Table) {
    for (const FixedCase &row : kFixed) {
        char buffer[512];
        std::memset(buffer, kUntouched, sizeof buffer);
        EXPECT_EQ(
            cxml::Schema_CheckFixedValue(row.fixed, row.value, {sizeof buffer, buffer, nullptr}),
            row.equal)
            << row.message;
        EXPECT_EQ(written(buffer, sizeof buffer), row.message);
    }
}

TEST(FixedValue, IsCutToItsBuffer) {
    const std::string fixed(600, 'x');
    const std::string message = "must equal " + fixed;
    for (const std::uint32_t size : {0u, 1u, 2u, 12u, 13u, 512u, 611u, 612u, 613u}) {
        std::string buffer(700, kUntouched);
        std::string expected = buffer;
        if (size > 0) {
            const std::string cut = message.substr(0, size - 1);
            expected.replace(0, cut.size(), cut);
            expected[cut.size()] = '\0';
        }
        EXPECT_FALSE(
            cxml::Schema_CheckFixedValue(fixed.c_str(), "y", {size, buffer.data(), nullptr}));
        EXPECT_EQ(buffer, expected) << size;
    }
}

}  // namespace
