// The rule by which namespaces of documents are compared with those of schemas.
#include "schema/namespace_match.h"

#include <gtest/gtest.h>

#include <string>

#include "compactxml.h"

namespace {

// Not said, as it is equal to the namespace asked for, or as nothing matches.
constexpr const char *kAny = "(any)";

struct MatchCase {
    const char *instance, *constraint, *target;
    bool matches;
    const char *out;
};

constexpr MatchCase kCases[] = {
    // "##any" accepts everything, and asks to look for everything where there is no namespace.
    {nullptr, "##any", nullptr, true, "##any"},
    {nullptr, "##any", "t", true, "##any"},
    {"", "##any", nullptr, true, ""},
    {"u", "##any", nullptr, true, "u"},
    {"u", "##any", "u", true, "u"},
    {"u v", "##any", nullptr, true, "u v"},
    {"##any", "##any", nullptr, true, "##any"},
    {"##other", "##any", nullptr, true, "##other"},
    // As a namespace it is found everywhere.
    {"##any", nullptr, nullptr, true, nullptr},
    {"##any", "", nullptr, true, ""},
    {"##any", "u", nullptr, true, "u"},
    {"##any", "u v", nullptr, true, "u v"},
    {"##any", "##other", "##any", true, "##other"},
    {"##any", "##local", nullptr, true, "##local"},
    // "##other" accepts all but none and the target namespace.
    {nullptr, "##other", nullptr, false, kAny},
    {nullptr, "##other", "", false, kAny},
    {nullptr, "##other", "t", false, kAny},
    {"", "##other", nullptr, false, kAny},
    {"", "##other", "", false, kAny},
    {"", "##other", "t", true, ""},
    {"t", "##other", "t", false, kAny},
    {"T", "##other", "t", true, "T"},
    {"tt", "##other", "t", true, "tt"},
    {"t", "##other", "tt", true, "t"},
    {"u", "##other", nullptr, true, "u"},
    {"u", "##other", "", true, "u"},
    {"u", "##other", "u v", true, "u"},
    {"u v", "##other", "t", true, "u v"},
    {"##other", "##other", "t", true, "##other"},
    {"##other", "##other", "##other", false, kAny},
    // One name.
    {nullptr, nullptr, nullptr, true, kAny},
    {nullptr, "", nullptr, true, kAny},
    {"", nullptr, nullptr, true, kAny},
    {"", "", nullptr, true, kAny},
    {nullptr, "u", nullptr, false, kAny},
    {nullptr, "u", "u", false, kAny},
    {"", "u", nullptr, false, kAny},
    {"u", nullptr, nullptr, false, kAny},
    {"u", nullptr, "u", false, kAny},
    {"u", "", "u", false, kAny},
    {"u", "u", nullptr, true, "u"},
    {"u", "u", "t", true, "u"},
    {"u", "U", nullptr, false, kAny},
    {"u", "uu", nullptr, false, kAny},
    {"uu", "u", nullptr, false, kAny},
    {"u\tv", "u\tv", nullptr, true, "u\tv"},
    {"u", "u\tv", nullptr, false, kAny},
    {"u", "u\nv", nullptr, false, kAny},
    {"##other", "u", nullptr, false, kAny},
    {"##other", nullptr, nullptr, false, kAny},
    // Other keywords are names.
    {nullptr, "##local", nullptr, false, kAny},
    {"", "##local", nullptr, false, kAny},
    {"##local", "##local", nullptr, true, "##local"},
    {"t", "##targetNamespace", "t", false, kAny},
    {"##targetNamespace", "##targetNamespace", "t", true, "##targetNamespace"},
    {"u", "##ANY", nullptr, false, kAny},
    {"u", "##anyone", nullptr, false, kAny},
    {"u", "##others", "t", false, kAny},
    // Lists.
    {"urn:a", "urn:a urn:b", nullptr, true, "urn:a"},
    {"urn:b", "urn:a urn:b", nullptr, true, "urn:b"},
    {"urn:", "urn:a urn:b", nullptr, false, kAny},
    {"urn", "urn:a urn:b", nullptr, false, kAny},
    {"rn:b", "urn:a urn:b", nullptr, false, kAny},
    {"urn:a ", "urn:a urn:b", nullptr, false, kAny},
    {"urn:a urn:b", "urn:a urn:b", nullptr, false, kAny},
    {"urn:c", "urn:a urn:b", "urn:c", false, kAny},
    {nullptr, "urn:a urn:b", nullptr, false, kAny},
    {"", "urn:a urn:b", nullptr, false, kAny},
    {"v", "u v w", nullptr, true, "v"},
    {"w", "u v w", nullptr, true, "w"},
    {"u v", "u v w", nullptr, false, kAny},
    {"v w", "u v w", nullptr, false, kAny},
    {"u", "u u", nullptr, true, "u"},
    // Two blanks have the empty name between them, and so do those at the ends.
    {"u", "u  v", nullptr, true, "u"},
    {"v", "u  v", nullptr, true, "v"},
    {" v", "u  v", nullptr, false, kAny},
    {"", "u  v", nullptr, true, ""},
    {nullptr, "u  v", nullptr, true, kAny},
    {"u", " u", nullptr, true, "u"},
    {"", " u", nullptr, true, ""},
    {"u", "u ", nullptr, true, "u"},
    {"", "u ", nullptr, true, ""},
    {"", " ", nullptr, true, ""},
    {"u", " ", nullptr, false, kAny},
    // Keywords in lists are names.
    {"v", "##any u", nullptr, false, kAny},
    {"u", "##any u", nullptr, true, "u"},
    {"u", "##any ", nullptr, false, kAny},
    {"v", "u ##other", "t", false, kAny},
    {"##other", "u ##other", "t", true, "##other"},
    {"t", "u ##targetNamespace", "t", false, kAny},
    {nullptr, "u ##local", "t", false, kAny},
};

std::string shown(const char *text) {
    return text ? "\"" + std::string(text) + "\"" : "null";
}

TEST(NamespaceMatch, Table) {
    for (const MatchCase &row : kCases) {
        const std::string name =
            shown(row.instance) + " in " + shown(row.constraint) + ", target " + shown(row.target);
        const char *out = "untouched";
        ASSERT_EQ(cxml::Schema_NamespaceMatch(row.instance, row.constraint, row.target, &out),
                  row.matches)
            << name;
        EXPECT_EQ(cxml::Schema_NamespaceMatch(row.instance, row.constraint, row.target, nullptr),
                  row.matches)
            << name;
        if (!row.matches) continue;
        if (row.out == kAny) {
            EXPECT_EQ(XML_Strcmp(out, row.instance), 0) << name;
        } else {
            EXPECT_EQ(shown(out), shown(row.out)) << name;
        }
    }
}

// Names are never cut on their way.
TEST(NamespaceMatch, LongNames) {
    for (const std::size_t length : {511u, 512u, 513u, 1023u, 1024u, 1025u, 70000u}) {
        const std::string same(length, 'n');
        const std::string other = same.substr(1) + "m";
        const std::string list = other + " " + same;
        const char *out = nullptr;
        EXPECT_TRUE(cxml::Schema_NamespaceMatch(same.c_str(), same.c_str(), nullptr, &out));
        EXPECT_EQ(out, same) << length;
        EXPECT_FALSE(cxml::Schema_NamespaceMatch(other.c_str(), same.c_str(), nullptr, &out));
        EXPECT_TRUE(cxml::Schema_NamespaceMatch(same.c_str(), list.c_str(), nullptr, &out));
        EXPECT_EQ(out, same) << length;
        EXPECT_FALSE(cxml::Schema_NamespaceMatch((same + "n").c_str(), list.c_str(), nullptr, &out))
            << length;
        EXPECT_FALSE(
            cxml::Schema_NamespaceMatch(same.substr(1).c_str(), list.c_str(), nullptr, &out))
            << length;
        EXPECT_TRUE(cxml::Schema_NamespaceMatch(other.c_str(), "##other", same.c_str(), &out));
        EXPECT_EQ(out, other) << length;
        EXPECT_FALSE(cxml::Schema_NamespaceMatch(same.c_str(), "##other", same.c_str(), &out));
    }
}

}  // namespace
