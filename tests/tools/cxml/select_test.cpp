#include <gtest/gtest.h>

#include "tests/tools/support/run.h"

namespace {

constexpr CommandCase kTexts[] = {
    {"text", "cxml select switch.xml /switch/system/hostname", "agg-east-3\n", "", 0},
    {"text is what --text shows", "cxml select --text switch.xml system/hostname", "agg-east-3\n",
     "", 0},
    {"several paths, in order", "cxml select switch.xml system/serial system/domain",
     "EX-0000-4711-03\nnet.example.net\n", "", 0},
    {"out of GB18030", "cxml select switch.gb18030.xml system/description",
     "东区三号楼汇聚交换机（二层与三层）\n", "", 0},
    {"with a position", "cxml select switch.xml '/switch/interfaces/interface[2]/description'",
     "3-101 会议室\n", "", 0},
    {"names in GB18030, with brackets among their bytes",
     "printf '<r><端口>1</端口><端口>2</端口><a\xE4\xB8\x93>3</a\xE4\xB8\x93></r>' > f.xml;"
     "cxml select f.xml '端口[2]' 'a\xE4\xB8\x93[1]' 'a\xE4\xB8\x93'",
     "2\n3\n3\n", "", 0},
    {"references are replaced, nothing is escaped",
     "printf '<r>&lt;a&gt; &amp; &#34;b&#34;</r>' | cxml select - /", "<a> & \"b\"\n", "", 0},
    {"control characters come as they are", "printf '<r>a&#x9;b&#x85;c\x7F</r>' | cxml select - /r",
     "a\tb\xC2\x85"
     "c\x7F\n",
     "", 0},
    {"an element without text", "printf '<r><a/></r>' | cxml select - /r a", "\n\n", "", 0},
    {"CDATA where there is no text",
     "printf '<r><![CDATA[a]]><b/><![CDATA[c]]></r>' | cxml select - /r", "a\n", "", 0},
    {"text before CDATA", "printf '<r><![CDATA[a]]><b/>c</r>' | cxml select - /r", "c\n", "", 0},
    {"texts of elements below do not count",
     "printf '<r><a>1</a>2<a>3</a>4</r>' | cxml select - /r", "2\n", "", 0},
};

TEST(ToolSelect, ShowsTexts) {
    expectCommands(kTexts);
}

constexpr CommandCase kMissing[] = {
    {"no such element", "cxml select switch.xml system/nope", "",
     "cxml: switch.xml: no element system/nope\n", 1},
    {"the others are shown", "cxml select switch.xml nope system/hostname 'units[2]'",
     "agg-east-3\n", "cxml: switch.xml: no element nope\ncxml: switch.xml: no element units[2]\n",
     1},
    {"of standard input", "printf '<r/>' | cxml select - a", "",
     "cxml: standard input: no element a\n", 1},
    {"hostile path", "printf '<r/>' | cxml select - \"$(printf 'a\\033[2J')\"", "",
     "cxml: 'a\\x1B[2J' is no path\n", 2},
    {"hostile path that is one", "printf '<r/>' | cxml select - \"$(printf 'a\\033c')\"", "",
     "cxml: standard input: no element a\\x1Bc\n", 1},
    {"nothing is shown before what is no path", "cxml select switch.xml system/hostname 'a[0]'", "",
     "cxml: 'a[0]' is no path\n", 2},
    {"not UTF-8", "cxml select switch.xml \"$(printf 'a\\377')\"", "",
     "cxml: the path is not UTF-8 text: a\xEF\xBF\xBD\n", 2},
    {"empty path", "cxml select switch.xml ''", "", "cxml: an empty path selects nothing\n", 2},
    {"no such file", "cxml select nope.xml a", "", "cxml: nope.xml: No such file or directory\n",
     2},
    {"not well-formed", "cxml select broken.xml a", "", "broken.xml:4:29: tag name mismatch.\n", 1},
    {"output that cannot be written", "cxml select switch.xml system/hostname > /dev/full", "",
     "cxml: standard output: No space left on device\n", 2},
};

TEST(ToolSelect, TellsWhatIsMissing) {
    expectCommands(kMissing);
}

constexpr CommandCase kNumbers[] = {
    {"signed", "printf '<r>-42</r>' | cxml select --int - /r", "-42\n", "", 0},
    {"unsigned", "printf '<r>42</r>' | cxml select --uint - /r", "42\n", "", 0},
    {"in decimal, as a number", "printf '<r>+007</r>' | cxml select --int - /r", "7\n", "", 0},
    {"with a position", "printf '<r><a>1</a><a>2</a></r>' | cxml select --int - 'a[2]' a", "2\n1\n",
     "", 0},
    {"greatest and least",
     "printf '<r><a>9223372036854775807</a><b>-9223372036854775808</b></r>' |"
     " cxml select --int - a b",
     "9223372036854775807\n-9223372036854775808\n", "", 0},
    {"out of range",
     "printf '<r><a>9223372036854775808</a><b>-9223372036854775809</b></r>' |"
     " cxml select --int - a b",
     "9223372036854775807\n-9223372036854775808\n", "", 0},
    {"greatest unsigned", "printf '<r>18446744073709551616</r>' | cxml select --uint - /",
     "18446744073709551615\n", "", 0},
    {"unsigned below zero", "printf '<r>-1</r>' | cxml select --uint - /", "18446744073709551615\n",
     "", 0},
    {"what is behind it is passed over", "printf '<r>10 Mbit/s</r>' | cxml select --int - /",
     "10\n", "", 0},
    {"no number", "printf '<r><a>ten</a><b>10</b></r>' | cxml select --int - a b", "10\n",
     "cxml: standard input: a is no integer\n", 1},
    {"no text", "printf '<r/>' | cxml select --uint - /r", "",
     "cxml: standard input: /r is no integer\n", 1},
    {"a CDATA section is no text", "printf '<r><![CDATA[1]]></r>' | cxml select --int - /r", "",
     "cxml: standard input: /r is no integer\n", 1},
    {"missing", "printf '<r/>' | cxml select --int - a", "", "cxml: standard input: no element a\n",
     1},
};

TEST(ToolSelect, ReadsNumbers) {
    expectCommands(kNumbers);
}

constexpr CommandCase kXml[] = {
    {"escaped again", "printf '<r><a b=\"&quot;\">&lt;&amp;</a></r>' | cxml select --xml - a",
     "<a b=\"&quot;\">&lt;&amp;</a>\n", "", 0},
    {"compact, without declaration",
     "printf '<?xml version=\"1.0\"?><r>\\n <a>\\n </a> <b>x</b></r>' | cxml select --xml - / b",
     "<r><a/><b>x</b></r>\n<b>x</b>\n", "", 0},
    {"in UTF-8 whatever the document's encoding",
     "cxml select --xml switch.gb18030.xml 'interfaces/interface[2]/description'",
     "<if:description xmlns:if=\"urn:example:switch:interfaces:1\">3-101 会议室</if:description>\n",
     "", 0},
    {"the default namespace from above",
     "printf '<r xmlns=\"u\"><m xmlns=\"v\"><a><b/></a></m></r>' | cxml select --xml - m/a",
     "<a xmlns=\"v\"><b/></a>\n", "", 0},
    {"the default namespace that only an element below uses",
     "printf '<p:r xmlns=\"u\" xmlns:p=\"v\"><p:a><b/></p:a></p:r>' | cxml select --xml - a",
     "<p:a xmlns:p=\"v\" xmlns=\"u\"><b/></p:a>\n", "", 0},
    {"a default namespace that nothing uses",
     "printf '<r xmlns=\"u\" xmlns:p=\"v\"><p:a><b xmlns=\"w\"><c/></b></p:a></r>' |"
     " cxml select --xml - a",
     "<p:a xmlns:p=\"v\"><b xmlns=\"w\"><c/></b></p:a>\n", "", 0},
    {"behind an element with another default namespace",
     "printf '<p:r xmlns=\"u\" xmlns:p=\"v\"><p:a><b xmlns=\"\"/><c/></p:a></p:r>' |"
     " cxml select --xml - a",
     "<p:a xmlns:p=\"v\" xmlns=\"u\"><b xmlns=\"\"/><c/></p:a>\n", "", 0},
    {"a prefix that elements below use is declared once",
     "printf '<r xmlns:p=\"u\" xmlns:q=\"v\"><a><p:b/><p:b q:x=\"1\"/></a></r>' |"
     " cxml select --xml - a",
     "<a xmlns:p=\"u\" xmlns:q=\"v\"><p:b/><p:b q:x=\"1\"/></a>\n", "", 0},
    {"a prefix with another meaning below",
     "printf '<r xmlns:p=\"u\"><a><p:b xmlns:p=\"v\"/><p:c/></a></r>' | cxml select --xml - a",
     "<a xmlns:p=\"u\"><p:b xmlns:p=\"v\"/><p:c/></a>\n", "", 0},
    {"xml needs no declaration", "printf '<r><a xml:lang=\"de\"/></r>' | cxml select --xml - a",
     "<a xml:lang=\"de\"/>\n", "", 0},
    {"CDATA stays CDATA", "printf '<r><a><![CDATA[<]]></a></r>' | cxml select --xml - a",
     "<a><![CDATA[<]]></a>\n", "", 0},
    {"paths that hold each other", "printf '<r><a><b/></a></r>' | cxml select --xml - a a/b a",
     "<a><b/></a>\n<b/>\n<a><b/></a>\n", "", 0},
};

TEST(ToolSelect, ShowsElements) {
    expectCommands(kXml);
}

constexpr CommandCase kOthers[] = {
    {"path", "printf '<r><a/><b><a/><a/></b></r>' | cxml select --path - / a 'b/a[2]' b/a",
     "/r\n/r/a[1]\n/r/b[1]/a[2]\n/r/b[1]/a[1]\n", "", 0},
    {"path is taken again",
     "p=$(cxml select --path switch.xml 'interfaces/interface[3]');"
     " cxml select --path switch.xml \"$p\"",
     "/switch/interfaces[1]/interface[3]\n", "", 0},
    {"exists", "cxml select --exists switch.xml system '/switch/vlans/vlan[8]'", "", "", 0},
    {"one of them does not exist", "cxml select --exists switch.xml system nope", "", "", 1},
    {"exists takes no broken document", "cxml select --exists broken.xml a", "",
     "broken.xml:4:29: tag name mismatch.\n", 1},
    {"exists takes no broken path", "cxml select --exists switch.xml 'a['", "",
     "cxml: 'a[' is no path\n", 2},
};

TEST(ToolSelect, ShowsPathsAndPresence) {
    expectCommands(kOthers);
}

// Of more prefixes than are declared on the element itself the others are declared where they are
// used; the document says the same in either case.
TEST(ToolSelect, ShowsElementsWithManyPrefixes) {
    const Result result = runLine(
        "awk 'BEGIN { printf \"<r\"; for (i = 0; i < 600; ++i) printf \" xmlns:p%d=\\\"u%d\\\"\", "
        "i, i;"
        " printf \"><a>\"; for (i = 0; i < 600; ++i) printf \"<p%d:b/>\", i; print \"</a></r>\" }' "
        "> f.xml;"
        "awk 'BEGIN { printf \"<a>\"; for (i = 0; i < 600; ++i)"
        " printf \"<p%d:b xmlns:p%d=\\\"u%d\\\"/>\", i, i, i; print \"</a>\" }' > wanted.xml;"
        "cxml select --xml f.xml a > got.xml; cxml diff wanted.xml got.xml && cxml check got.xml");
    EXPECT_EQ(result.out + result.err, "");
    EXPECT_EQ(result.status, 0);
}

TEST(ToolSelect, GoesThroughAMillionLevels) {
    const Result result =
        runLine("awk 'BEGIN { for (i = 0; i < " + kDeep +
                "; ++i) printf \"<e>\"; printf \"x\"; for (i = 0; i < " + kDeep +
                "; ++i) printf \"</e>\" }' > deep.xml;"
                "cxml select --path deep.xml /e/e/e; cxml select --xml deep.xml e > below.xml &&"
                " wc -c < below.xml");
    EXPECT_EQ(result.out, "/e/e[1]/e[1]\n" + std::to_string(7 * std::stoul(kDeep) - 5) + "\n");
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.status, 0);
}

}  // namespace
