#include <gtest/gtest.h>

#include <string>

#include "tests/tools/support/run.h"

namespace {

constexpr CommandCase kOutlines[] = {
    {"the root alone", "printf '<r/>' | cxml tree -",
     "r                                               /r\n", "", 0},
    {"names, attributes, texts and positions",
     "printf '<r x=\"1\"><a>one</a><p:b xmlns:p=\"u\" p:c=\"2\"/><a><![CDATA[two]]><b/></a></r>' |"
     " cxml tree -",
     "r x=\"1\"                                         /r\n"
     "  a \"one\"                                       /r/a[1]\n"
     "  p:b p:c=\"2\"                                   /r/b[1]\n"
     "  a \"two\"                                       /r/a[2]\n"
     "    b                                           /r/a[2]/b[1]\n",
     "", 0},
    {"the last word of a line is a path",
     "cxml tree switch.gb18030.xml | awk '{ print $NF }' > paths;"
     "cxml select --path switch.gb18030.xml $(cat paths) | cmp - paths && wc -l < paths",
     "314\n", "", 0},
    {"wide characters take two cells", "printf '<配置 名=\"值\"/>' | cxml tree -",
     "配置 名=\"值\"                                    /配置\n", "", 0},
    {"up to the column of paths",
     "printf '<r a=\"1234567890123456789012345678901\" b=\"1234\"/>' | cxml tree -",
     "r a=\"1234567890123456789012345678901\" b=\"1234\"  /r\n", "", 0},
    {"beyond the column of paths",
     "printf '<r a=\"1234567890123456789012345678901\" b=\"12345\"/>' | cxml tree -",
     "r a=\"1234567890123456789012345678901\" b=\"12345\"  /r\n", "", 0},
    {"32 characters are shown", "printf '<r>12345678901234567890123456789端口三</r>' | cxml tree -",
     "r \"12345678901234567890123456789端口三\"         /r\n", "", 0},
    {"33 are cut", "printf '<r>12345678901234567890123456789端口三4</r>' | cxml tree -",
     "r \"12345678901234567890123456789端口三\"...      /r\n", "", 0},
    {"values cannot command a terminal, nor look like others",
     "printf '<r a=\"&#x9b;2J\" b=\"&#34;\">\\\\n\\nx</r>' | cxml tree -",
     "r a=\"\\x9B2J\" b=\"\\\"\" \"\\\\n\\nx\"                    /r\n", "", 0},
    {"one level", "printf '<r><a/></r>' | cxml tree --depth 1 -",
     "r ...                                           /r\n", "", 0},
    {"two levels, and what they hide",
     "printf '<r><a>1</a><a>2<b/></a></r>' | cxml tree --depth 2 -",
     "r                                               /r\n"
     "  a \"1\"                                         /r/a[1]\n"
     "  a \"2\" ...                                     /r/a[2]\n",
     "", 0},
    {"as many levels as there are", "printf '<r><a/></r>' | cxml tree --depth 2 -",
     "r                                               /r\n"
     "  a                                             /r/a[1]\n",
     "", 0},
    {"positions go on behind what is hidden",
     "printf '<r><a><b/><b/></a><b/><a><b/></a></r>' | cxml tree --depth 2 -",
     "r                                               /r\n"
     "  a ...                                         /r/a[1]\n"
     "  b                                             /r/b[1]\n"
     "  a ...                                         /r/a[2]\n",
     "", 0},
    {"no such file", "cxml tree nope.xml", "", "cxml: nope.xml: No such file or directory\n", 2},
    {"not well-formed", "cxml tree broken.xml", "", "broken.xml:4:29: tag name mismatch.\n", 1},
    {"output that cannot be written", "cxml tree switch.xml > /dev/full", "",
     "cxml: standard output: No space left on device\n", 2},
};

TEST(ToolTree, ShowsOutlines) {
    expectCommands(kOutlines);
}

std::string nested(int levels) {
    const std::string n = std::to_string(levels);
    return "awk 'BEGIN { for (i = 0; i < " + n + "; ++i) printf \"<e>\"; for (i = 0; i < " + n +
           "; ++i) printf \"</e>\" }' > deep.xml;";
}

TEST(ToolTree, IndentsThirtyTwoLevels) {
    const Result result = runLine(nested(35) +
                                  "cxml tree deep.xml | awk '{ print match($0, /e/) - 1 }'"
                                  " | sed -n '31,35p' | tr '\\n' ' '");
    EXPECT_EQ(result.out, "60 62 64 64 64 ");
}

TEST(ToolTree, CutsPathsOfMoreThanAThousandBytes) {
    // "/e" and 5 bytes for each level below.
    const Result result = runLine(
        "awk 'BEGIN { printf \"<ee><e>\"; for (i = 0; i < 200; ++i) printf"
        " \"<e>\"; for (i = 0; i < 201; ++i) printf \"</e>\"; print"
        " \"</ee>\" }' > deep.xml; cxml tree deep.xml |"
        " awk '{ print length($NF), substr($NF, 1, 12) }' | sed -n '200,202p'");
    EXPECT_EQ(result.out, "998 /ee/e[1]/e[1\n8 .../e[1]\n8 .../e[1]\n");
}

TEST(ToolTree, GoesThroughAMillionLevels) {
    const Result result = runLine(nested(std::stoi(kDeep)) +
                                  "cxml tree deep.xml | tail -n 1 | tr -s ' ';"
                                  "cxml tree --depth 1 deep.xml | tr -s ' '");
    EXPECT_EQ(result.out, " e .../e[1]\ne ... /e\n");
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.status, 0);
}

TEST(ToolTree, CountsAMillionChildren) {
    const Result result = runLine(
        "awk 'BEGIN { printf \"<r>\"; for (i = 0; i < 500000; ++i) printf \"<e/><e\" i \"/>\";"
        " printf \"</r>\" }' > wide.xml; cxml tree wide.xml | tail -n 2 | tr -s ' '");
    EXPECT_EQ(result.out, " e /r/e[500000]\n e499999 /r/e499999[1]\n");
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.status, 0);
}

}  // namespace
