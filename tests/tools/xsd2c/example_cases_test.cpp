#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "example_cases.h"

namespace {

using examples::Case;
using examples::edited;

constexpr char kDocument[] =
    "<?xml version=\"1.0\"?>\n<!-- <a> -->\n"
    "<n:a x='1' n:y = \"a>b\" "
    "xmlns:n=\"urn:n\"><b>one</b><![CDATA[<b>]]><b/><n:c><b>x</b></n:c></n:a>";

std::string contentAfter(const char *verb, const char *path, const char *value) {
    std::string result = edited(kDocument, {verb, path, value});
    result.erase(0, result.find("urn:n\">") + 7);
    return result.substr(0, result.rfind("</"));
}

std::string startAfter(const char *verb, const char *path, const char *value) {
    const std::string result = edited(kDocument, {verb, path, value});
    const std::size_t begin = result.find("-->\n") + 4;
    return result.substr(begin, result.find("<b") - begin);
}

TEST(ExampleEdit, SetsContent) {
    EXPECT_EQ(contentAfter("set", "/a/b", "2"), "<b>2</b><![CDATA[<b>]]><b/><n:c><b>x</b></n:c>");
    EXPECT_EQ(contentAfter("set", "/a/b[2]", "<d/>"),
              "<b>one</b><![CDATA[<b>]]><b><d/></b><n:c><b>x</b></n:c>");
    EXPECT_EQ(contentAfter("set", "/a/c", ""), "<b>one</b><![CDATA[<b>]]><b/><n:c></n:c>");
    EXPECT_EQ(contentAfter("set", "/a/c/b", "y"),
              "<b>one</b><![CDATA[<b>]]><b/><n:c><b>y</b></n:c>");
}

TEST(ExampleEdit, AddsToContentAndBesideIt) {
    EXPECT_EQ(contentAfter("append", "/a/b", "!"),
              "<b>one!</b><![CDATA[<b>]]><b/><n:c><b>x</b></n:c>");
    EXPECT_EQ(contentAfter("prepend", "/a/b", "!"),
              "<b>!one</b><![CDATA[<b>]]><b/><n:c><b>x</b></n:c>");
    EXPECT_EQ(contentAfter("append", "/a/b[2]", "!"),
              "<b>one</b><![CDATA[<b>]]><b>!</b><n:c><b>x</b></n:c>");
    EXPECT_EQ(contentAfter("before", "/a/b", "!"),
              "!<b>one</b><![CDATA[<b>]]><b/><n:c><b>x</b></n:c>");
    EXPECT_EQ(contentAfter("after", "/a/b[2]", "!"),
              "<b>one</b><![CDATA[<b>]]><b/>!<n:c><b>x</b></n:c>");
    EXPECT_EQ(contentAfter("replace", "/a/b[2]", "!"),
              "<b>one</b><![CDATA[<b>]]>!<n:c><b>x</b></n:c>");
}

TEST(ExampleEdit, MovesElements) {
    EXPECT_EQ(contentAfter("delete", "/a/c", ""), "<b>one</b><![CDATA[<b>]]><b/>");
    EXPECT_EQ(contentAfter("repeat", "/a/b[2]", "3"),
              "<b>one</b><![CDATA[<b>]]><b/><b/><b/><n:c><b>x</b></n:c>");
    EXPECT_EQ(contentAfter("rename", "/a/c", "d"), "<b>one</b><![CDATA[<b>]]><b/><d><b>x</b></d>");
    EXPECT_EQ(contentAfter("rename", "/a/b[2]", "n:d"),
              "<b>one</b><![CDATA[<b>]]><n:d/><n:c><b>x</b></n:c>");
    EXPECT_EQ(contentAfter("swap", "/a/c", "/a/b"),
              "<n:c><b>x</b></n:c><![CDATA[<b>]]><b/><b>one</b>");
}

TEST(ExampleEdit, ChangesAttributes) {
    EXPECT_EQ(startAfter("set", "/a/@x", "2"), "<n:a x='2' n:y = \"a>b\" xmlns:n=\"urn:n\">");
    EXPECT_EQ(startAfter("set", "/a/@n:y", ""), "<n:a x='1' n:y = \"\" xmlns:n=\"urn:n\">");
    EXPECT_EQ(startAfter("set", "/a/@y", "3"),
              "<n:a y=\"3\" x='1' n:y = \"a>b\" xmlns:n=\"urn:n\">");
    EXPECT_EQ(startAfter("delete", "/a/@x", ""), "<n:a  n:y = \"a>b\" xmlns:n=\"urn:n\">");
    EXPECT_EQ(startAfter("rename", "/a/@n:y", "z"), "<n:a x='1' z = \"a>b\" xmlns:n=\"urn:n\">");
}

TEST(ExampleEdit, RefusesWhatCannotBeMade) {
    const std::vector<examples::Edit> edits = {
        {"set", "/a/d", "x"},       {"set", "/a/b[3]", "x"}, {"set", "/b", "x"},
        {"set", "a/b", "x"},        {"delete", "/a/@z", ""}, {"rename", "/a/@z", "q"},
        {"append", "/a/@x", "x"},   {"swap", "/a", "/a/b"},  {"swap", "/a/b", "/a/d"},
        {"paint", "/a/b", "green"}, {"set", "/a/b", "one"},  {"repeat", "/a/b", "1"},
        {"set", "/a/@x", "1"},      {"rename", "/a/b", "b"},
    };
    for (const examples::Edit &edit : edits) {
        EXPECT_THROW(edited(kDocument, edit), std::runtime_error)
            << edit.verb << " " << edit.path << " = " << edit.value;
    }
}

// ---- files of cases ----

std::vector<Case> casesOf(const std::string &text) {
    const std::string path = testing::TempDir() + "example_cases_test.cases";
    std::ofstream(path) << text;
    std::vector<Case> cases = examples::readCases(path);
    std::remove(path.c_str());
    return cases;
}

constexpr char kHead[] = "# words\n\nschema a.xsd\nbase b.xml\n";

TEST(ExampleCases, BeginWithTheBaseDocument) {
    const std::vector<Case> cases = casesOf(kHead);
    ASSERT_EQ(cases.size(), 1u);
    EXPECT_EQ(cases[0].schema, testing::TempDir() + "a.xsd");
    EXPECT_EQ(cases[0].base, testing::TempDir() + "b.xml");
    EXPECT_EQ(cases[0].line, 4);
    EXPECT_TRUE(cases[0].valid && cases[0].edits.empty());
}

TEST(ExampleCases, HaveAlternativesAndFurtherEdits) {
    const std::vector<Case> cases =
        casesOf(std::string(kHead) + "invalid | w | set /a/@b = 1=2 | | \" c \"\n+ | delete /d\n");
    ASSERT_EQ(cases.size(), 4u);
    const char *values[] = {"1=2", "", " c "};
    for (std::size_t i = 1; i < 4; ++i) {
        ASSERT_EQ(cases[i].edits.size(), 2u);
        EXPECT_EQ(cases[i].edits[0].verb, "set");
        EXPECT_EQ(cases[i].edits[0].path, "/a/@b");
        EXPECT_EQ(cases[i].edits[0].value, values[i - 1]);
        EXPECT_EQ(cases[i].edits[1].verb, "delete");
        EXPECT_EQ(cases[i].edits[1].path, "/d");
        EXPECT_EQ(cases[i].alternative, static_cast<int>(i));
        EXPECT_FALSE(cases[i].valid);
    }
    EXPECT_EQ(cases[1].what, "w: 1=2");
    EXPECT_EQ(cases[2].what, "w: (empty)");
}

TEST(ExampleCases, TellWhoDiffers) {
    struct Row {
        const char *verdict;
        bool valid, byXmlSchema, byXmllint;
    };
    constexpr Row kRows[] = {
        {"valid", true, true, true},
        {"invalid", false, false, false},
        {"refused why", false, true, true},
        {"accepted why", true, false, false},
        {"valid libxml2-x", true, true, false},
        {"invalid libxml2-x", false, false, true},
        {"refused why libxml2-x", false, true, false},
        {"accepted libxml2-x why", true, false, true},
    };
    for (const Row &row : kRows) {
        const Case one = casesOf(std::string(kHead) + row.verdict + " | w | set /a = b\n").at(1);
        EXPECT_EQ(one.valid, row.valid) << row.verdict;
        EXPECT_EQ(one.validByXmlSchema, row.byXmlSchema) << row.verdict;
        EXPECT_EQ(one.validByXmllint, row.byXmllint) << row.verdict;
    }
}

TEST(ExampleCases, RefuseOtherNotation) {
    const char *lines[] = {"valid | w",
                           "| w | set /a = b",
                           "fine | w | set /a = b",
                           "accepted | w | set /a = b",
                           "valid why | w | set /a = b",
                           "+ | delete /a | b",
                           "schema",
                           "nothing"};
    for (const char *line : lines) {
        EXPECT_THROW(casesOf(std::string(kHead) + line + "\n"), std::runtime_error) << line;
    }
    EXPECT_THROW(casesOf("base b.xml\n"), std::runtime_error);
    EXPECT_THROW(casesOf("schema a.xsd\nvalid | w | set /a = b\n"), std::runtime_error);
    EXPECT_THROW(casesOf("+ | delete /a\n"), std::runtime_error);
    EXPECT_THROW(examples::readCases("no such file"), std::runtime_error);
}

// ---- the examples themselves ----

std::vector<Case> allCases() {
    std::vector<Case> all;
    for (const auto &entry : std::filesystem::directory_iterator(EXAMPLE_SCHEMAS)) {
        if (entry.path().extension() != ".cases") continue;
        const std::vector<Case> cases = examples::readCases(entry.path().string());
        all.insert(all.end(), cases.begin(), cases.end());
    }
    return all;
}

TEST(ExampleSchemas, HaveEnoughCases) {
    std::map<std::string, std::pair<int, int>> counts;
    for (const Case &one : allCases()) {
        auto &[valid, invalid] = counts[one.schema];
        ++(one.valid ? valid : invalid);
    }
    EXPECT_GE(counts.size(), 6u);
    for (const auto &[schema, count] : counts) {
        EXPECT_GE(count.first, 10) << schema;
        EXPECT_GE(count.second, 30) << schema;
    }
}

TEST(ExampleSchemas, HaveCasesThatDifferFromOneAnother) {
    std::map<std::string, std::string> documents;  // the case that each belongs to
    for (const Case &one : allCases()) {
        const std::string place = one.file + ":" + std::to_string(one.line) + " " + one.what;
        const auto [known, isNew] =
            documents.emplace(one.schema + '\n' + examples::documentOf(one), place);
        EXPECT_TRUE(isNew) << place << " is " << known->second;
    }
}

// The first words of the rows of the tables in README.md: "| `nil` | ...".
std::set<std::string> reasonsInReadme() {
    std::set<std::string> reasons;
    std::ifstream file(EXAMPLE_SCHEMAS "/README.md");
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("| `")) reasons.insert(line.substr(3, line.find('`', 3) - 3));
    }
    return reasons;
}

TEST(ExampleSchemas, HaveReasonsThatAreExplained) {
    const std::set<std::string> explained = reasonsInReadme();
    std::set<std::string> used;
    for (const Case &one : allCases()) used.insert(one.reasons.begin(), one.reasons.end());
    EXPECT_GE(used.size(), 20u);
    for (const std::string &reason : used) EXPECT_EQ(explained.count(reason), 1u) << reason;
}

}  // namespace
