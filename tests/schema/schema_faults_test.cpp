// Values are checked without the heap, and where one is needed it may be exhausted.
#include <gtest/gtest.h>
#include <regex.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "compactxml.h"
#include "schema/value_check.h"
#include "tests/support/faults.h"
#include "tests/support/schema_maker.h"
#include "tests/support/written.h"

namespace {

using support::FaultyHeap;

struct Case {
    const SchemaSimpleType *(*type)();
    const char *valid, *invalid;
};

constexpr Case kBuiltIns[] = {
    {Schema_BLDIN_byte, "-128", "128"},
    {Schema_BLDIN_short, "32767", "32768"},
    {Schema_BLDIN_unsignedByte, "255", "256"},
    {Schema_BLDIN_unsignedShort, "65535", "65536"},
    {Schema_BLDIN_int, "2147483647", "2147483648"},
    {Schema_BLDIN_long, "|5", "five"},
    {Schema_BLDIN_unsignedInt, "4294967295", "4294967296"},
    {Schema_BLDIN_unsignedLong, "18446744073709551615", "18446744073709551616"},
    {Schema_BLDIN_integer, "9223372036854775807", "9223372036854775808"},
    {Schema_BLDIN_positiveInteger, "1", "0"},
    {Schema_BLDIN_nonPositiveInteger, "0", "1"},
    {Schema_BLDIN_negativeInteger, "-1", "0"},
    {Schema_BLDIN_nonNegativeInteger, "0", "-1"},
    {Schema_BLDIN_duration, "P1Y2M3DT4H5M6S", "P1Y"},
    {Schema_BLDIN_dateTime, "2001-01-01T10:00:00.5Z", "2001-01-01"},
    {Schema_BLDIN_date, "2001-01-01", "2001-02-29"},
    {Schema_BLDIN_time, "10:00:00", "24:00:00"},
    {Schema_BLDIN_gYear, "2001", "0000"},
    {Schema_BLDIN_gMonth, "--05--", "--05"},
    {Schema_BLDIN_gDay, "---30", "---31"},
    {Schema_BLDIN_gYearMonth, "2001-05", "2001-00"},
    {Schema_BLDIN_gMonthDay, "--02-28", "--02-29"},
    {Schema_BLDIN_boolean, "true", "yes"},
    {Schema_BLDIN_hexBinary, "abc", "xyz"},
    {Schema_BLDIN_base64Binary, "QUI=", "QUI"},
    {Schema_BLDIN_anyURI, "a/b", "ab"},
    {Schema_BLDIN_QName, "name", "p:name"},
    {Schema_BLDIN_language, "en", "english"},
};

struct Result {
    bool valid;
    std::string message;
};

Result checked(const SchemaSimpleType *type, const char *value) {
    char buffer[512] = "";
    SchemaValidateContext context{};
    context.valid = 1;
    Schema_CheckSimpleType(type, value, sizeof buffer, &context, buffer);
    return {context.valid == 1, buffer};
}

TEST(SchemaFaults, BuiltInTypesDoNotAllocate) {
    for (const Case &row : kBuiltIns) {
        SCOPED_TRACE(row.type()->name);
        char buffer[512];
        SchemaValidateContext context{};
        const FaultyHeap heap(1, true);
        context.valid = 1;
        Schema_CheckSimpleType(row.type(), row.valid, sizeof buffer, &context, buffer);
        EXPECT_EQ(context.valid, 1);
        Schema_CheckSimpleType(row.type(), row.invalid, sizeof buffer, &context, buffer);
        EXPECT_EQ(context.valid, 0);
        EXPECT_EQ(heap.allocations(), 0u);
    }
}

TEST(SchemaFaults, FacetsDoNotAllocate) {
    struct FacetCase {
        SchemaFacet facet;
        const char *value;
    };
    static constexpr FacetCase kFacets[] = {
        {{"a", SCHEMA_FACET_ENUMERATION, SCHEMA_TYPE_STRING}, "a"},
        {{"1", SCHEMA_FACET_ENUMERATION, SCHEMA_TYPE_INT}, "+01"},
        {{"P0Y0M0DT0H1M0S", SCHEMA_FACET_ENUMERATION, SCHEMA_TYPE_DURATION}, "P0Y0M0DT0H0M60S"},
        {{"3", SCHEMA_FACET_LENGTH, SCHEMA_TYPE_STRING}, "abc"},
        {{"3", SCHEMA_FACET_MAX_LENGTH, SCHEMA_TYPE_STRING}, "abc"},
        {{"3", SCHEMA_FACET_MIN_LENGTH, SCHEMA_TYPE_STRING}, "abc"},
        {{"3", SCHEMA_FACET_TOTAL_DIGITS, SCHEMA_TYPE_LONG}, "-00123"},
        {{"5", SCHEMA_FACET_MAX_EXCLUSIVE, SCHEMA_TYPE_LONG}, "4"},
        {{"5", SCHEMA_FACET_MIN_INCLUSIVE, SCHEMA_TYPE_UNSIGNED_LONG}, "5"},
        {{"2001-01-01Z", SCHEMA_FACET_MAX_INCLUSIVE, SCHEMA_TYPE_DATE}, "2001-01-01"},
    };
    for (const FacetCase &row : kFacets) {
        char buffer[128];
        const FaultyHeap heap(1, true);
        EXPECT_EQ(Schema_CheckFacet(&row.facet, row.value, sizeof buffer, buffer), XML_OK)
            << row.facet.kind << " " << row.value;
        Schema_CheckFacet(&row.facet, "xyzzy", sizeof buffer, buffer);
        EXPECT_EQ(heap.allocations(), 0u);
    }
}

TEST(SchemaFaults, UnionsDoNotAllocate) {
    const SchemaSimpleType *members[] = {Schema_BLDIN_byte(), Schema_BLDIN_date(),
                                         Schema_BLDIN_boolean()};
    const SchemaSimpleType type = {members, nullptr, nullptr, nullptr, 0, 0, 3, 0};
    char buffer[128];
    SchemaValidateContext context{};
    context.valid = 1;
    const FaultyHeap heap(1, true);
    Schema_CheckSimpleType(&type, "true", sizeof buffer, &context, buffer);
    EXPECT_EQ(context.valid, 1);
    Schema_CheckSimpleType(&type, "maybe", sizeof buffer, &context, buffer);
    EXPECT_EQ(context.valid, 0);
    EXPECT_EQ(heap.allocations(), 0u);
}

// Names beyond ASCII are converted; a name that cannot be for want of memory is none.
TEST(SchemaFaults, NamesBeyondAscii) {
    constexpr char kName[] = "\xD6\xD0\xCE\xC4";
    const Result good = checked(Schema_BLDIN_QName(), kName);
    EXPECT_TRUE(good.valid);
    EXPECT_EQ(good.message, "");
    const FaultyHeap heap(1, true);
    EXPECT_TRUE(checked(Schema_BLDIN_QName(), kName).valid);
    support::FaultyConverters converters;
    converters.begin({1, false, ENOMEM}, {});
    const Result failed = checked(Schema_BLDIN_QName(), kName);
    if (converters.opens() == 0) GTEST_SKIP() << "iconv_open has another name here";
    EXPECT_FALSE(failed.valid);
    EXPECT_EQ(failed.message, "\xD6\xD0\xCE\xC4 is an invalid value of QName type value.");
    EXPECT_EQ(converters.openConverters(), 0);
}

// A value that could not be checked is not said to be wrong: the validation is refused.
TEST(SchemaFaults, ValidationsThatCannotCheckAValue) {
    static constexpr SchemaFacet kBackReference = {"^(a)\\1$", SCHEMA_FACET_PATTERN,
                                                   SCHEMA_TYPE_STRING};
    const SchemaSimpleType *const base[] = {Schema_BLDIN_string()};
    const SchemaSimpleType patterned = {base, &kBackReference, "t", nullptr, 0, 1, 1, 0};
    support::SchemaMaker schema;
    schema.add(schema.element(support::SchemaMaker::ofSimple("p", &patterned)),
               SCHEMA_KIND_ELEMENT);
    schema.add(schema.element(support::SchemaMaker::ofSimple("q", Schema_BLDIN_QName())),
               SCHEMA_KIND_ELEMENT);
    const support::NodePtr pattern = support::parsed("<p>aa</p>");
    const support::NodePtr name = support::parsed("<q>\xE4\xB8\xAD</q>");
    const support::NodePtr wrong = support::parsed("<q>1</q>");
    support::FaultyConverters converters;
    support::FaultyPatterns patterns;
    converters.begin({1, true, ENOMEM}, {});
    patterns.begin({1, true, REG_ESPACE});
    const auto refused = "refused valid";  // the record is all zeros
    EXPECT_EQ(support::verdict(pattern.get(), schema.root()), refused);
    EXPECT_EQ(patterns.compiled(), 2u);  // to keep it, and for this value
    const std::string said = support::verdict(name.get(), schema.root());
    if (converters.opens() != 0) {
        EXPECT_EQ(said, refused);
    }
    EXPECT_TRUE(support::verdict(wrong.get(), schema.root()).starts_with("3 node=/q"));
}

// Another member of a union may hold for a value that one of them could not check: then it is valid.
TEST(SchemaFaults, UnionsWithAMemberThatCannotCheckAValue) {
    static constexpr SchemaFacet kBackReference = {"^(a)\\1$", SCHEMA_FACET_PATTERN,
                                                   SCHEMA_TYPE_STRING};
    const SchemaSimpleType *const base[] = {Schema_BLDIN_string()};
    const SchemaSimpleType patterned = {base, &kBackReference, "t", nullptr, 0, 1, 1, 0};
    const SchemaSimpleType *const members[] = {&patterned, Schema_BLDIN_int()};
    const SchemaSimpleType either = {members, nullptr, nullptr, nullptr, 0, 0, 2, 0};
    support::SchemaMaker schema;
    schema.add(schema.element(support::SchemaMaker::ofSimple("u", &either)), SCHEMA_KIND_ELEMENT);
    const support::NodePtr number = support::parsed("<u>5</u>");
    const support::NodePtr pair = support::parsed("<u>aa</u>");
    EXPECT_EQ(support::verdict(number.get(), schema.root()), "valid");
    EXPECT_EQ(support::verdict(pair.get(), schema.root()), "valid");
    support::FaultyPatterns patterns;
    patterns.begin({1, true, REG_ESPACE});
    EXPECT_EQ(support::verdict(number.get(), schema.root()), "valid");
    EXPECT_TRUE(patterns.failed());
    EXPECT_EQ(support::verdict(pair.get(), schema.root()), "refused valid");
}

// Each allocation that a validation makes, for every way in which children are taken.
TEST(SchemaFaults, ChildrenThatFindNoRoom) {
    support::SchemaMaker schema;
    SchemaElementWildcard lax{};
    lax.namespaceConstraint = "##any";
    lax.minOccurs = 0;
    lax.maxOccurs = support::SchemaMaker::kUnbounded;
    lax.processContents = 1;
    schema.wildcard(lax);
    schema.add(schema.element(support::SchemaMaker::ofSimple("a", Schema_BLDIN_int())),
               SCHEMA_KIND_ELEMENT);
    struct Way {
        const char *root, *model;
        int children;
    };
    constexpr Way kWays[] = {{"wildcard", "seq(any{0,u})", 20},
                             {"run", "seq(a{0,u})", 20},
                             {"one", "seq(a)", 1},
                             {"choice", "choice{0,u}(a, b)", 20},
                             {"all", "all(a)", 1}};
    for (const Way &row : kWays) {
        schema.addElement(row.root, row.model);
        std::string document = "<" + std::string(row.root) + ">";
        for (int i = 0; i < row.children; ++i) document += "<a>1</a>";
        const support::NodePtr tree = support::parsed(document + "</" + row.root + ">");
        ASSERT_EQ(support::verdict(tree.get(), schema.root()), "valid") << row.root;
        std::size_t nth = 1;
        for (;; ++nth) {
            const FaultyHeap heap(nth);
            const std::string said = support::verdict(tree.get(), schema.root());
            EXPECT_EQ(said, heap.failed() ? "refused valid" : "valid") << row.root << ' ' << nth;
            EXPECT_EQ(heap.blocksInUse(), 0u);
            if (!heap.failed()) break;
        }
        EXPECT_GT(nth, 2u) << row.root;
    }
}

// Without memory to keep compiled patterns they are compiled for each value: the same results.
TEST(SchemaFaults, PatternsThatFindNoRoom) {
    static constexpr SchemaFacet kPatterns[] = {
        {"^[a-z]+$", SCHEMA_FACET_PATTERN, SCHEMA_TYPE_STRING},
        {"a", SCHEMA_FACET_PATTERN, SCHEMA_TYPE_STRING},
        {"^.{1,3}$", SCHEMA_FACET_PATTERN, SCHEMA_TYPE_STRING},
    };
    struct Expected {
        const char *value;
        bool valid;
    };
    static constexpr Expected kValues[] = {
        {"a", true}, {"abc", true}, {"b", false}, {"abcd", false}, {"a1", false}, {"", false},
    };
    bool failed = true;
    for (std::size_t nth = 0; failed && nth < 100; ++nth) {
        for (const bool persistent : {false, true}) {
            char buffer[128];
            const FaultyHeap heap(nth + 1, persistent);
            {
                cxml::PatternCache patterns;
                for (int round = 0; round < 2; ++round) {
                    for (const Expected &row : kValues) {
                        EXPECT_EQ(cxml::checkFacets(kPatterns, 3, row.value,
                                                    {sizeof buffer, buffer, &patterns}),
                                  row.valid)
                            << row.value << " " << nth;
                        if (!row.valid) {
                            EXPECT_STREQ(buffer,
                                         "The value does not match the regular expression.");
                        }
                    }
                }
            }
            EXPECT_EQ(heap.blocksInUse(), 0u);
            failed = heap.failed();
        }
    }
    EXPECT_FALSE(failed);
}

// More patterns than are kept: the rest is compiled anew, with the same results.
TEST(SchemaFaults, MorePatternsThanAreKept) {
    std::vector<std::string> texts;
    for (std::size_t i = 0; i < 2 * cxml::PatternCache::kMost; ++i) {
        texts.push_back("^v" + std::to_string(i) + "$");
    }
    char buffer[128];
    const FaultyHeap heap(0);
    {
        cxml::PatternCache patterns;
        std::size_t allocations[2];
        for (std::size_t &count : allocations) {
            for (std::size_t i = 0; i < texts.size(); ++i) {
                const SchemaFacet facet = {texts[i].c_str(), SCHEMA_FACET_PATTERN, 28};
                const std::string value = "v" + std::to_string(i);
                const cxml::ValueCheck check = {sizeof buffer, buffer, &patterns};
                EXPECT_TRUE(cxml::checkFacet(facet, value.c_str(), check)) << i;
                EXPECT_FALSE(cxml::checkFacet(facet, (value + "x").c_str(), check)) << i;
            }
            count = heap.allocations();
        }
        EXPECT_GE(allocations[0], cxml::PatternCache::kMost);
        EXPECT_EQ(allocations[1], allocations[0]);
    }
    EXPECT_EQ(heap.blocksInUse(), 0u);
}

}  // namespace
