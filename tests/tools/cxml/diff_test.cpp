#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/tools/support/run.h"

namespace {

#define DIFF(a, b) "printf '" a "' > a.xml; printf '" b "' > b.xml; cxml diff a.xml b.xml"

constexpr CommandCase kSame[] = {
    {"the same file", "cxml diff switch.xml switch.xml", "", "", 0},
    {"another encoding", "cxml diff switch.xml switch.gb18030.xml", "", "", 0},
    {"what print makes of it",
     "cxml print --indent 4 --encoding UTF-16 -o b.xml switch.xml;"
     "cxml diff switch.xml b.xml",
     "", "", 0},
    {"standard input", "cxml print switch.xml | cxml diff switch.xml -", "", "", 0},
    {"order of attributes", DIFF("<r a=\"1\" b=\"2\"/>", "<r b=\"2\" a=\"1\"/>"), "", "", 0},
    {"prefixes", DIFF("<p:r xmlns:p=\"u\" p:a=\"1\"/>", "<r xmlns=\"u\" xmlns:q=\"u\" q:a=\"1\"/>"),
     "", "", 0},
    {"declarations", DIFF("<r><a/></r>", "<r xmlns:p=\"u\"><a xmlns=\"\"/></r>"), "", "", 0},
    {"comments and white space", DIFF("<r><a/>x</r>", "<r> <!-- c --><a/>\\n x </r>"), "", "", 0},
    {"CDATA", DIFF("<r>a&lt;b</r>", "<r><![CDATA[a<b]]></r>"), "", "", 0},
    {"CDATA beside text", DIFF("<r>abc</r>", "<r>a<![CDATA[b]]>c</r>"), "", "", 0},
    {"an empty CDATA section", DIFF("<r><a/></r>", "<r><a><![CDATA[]]></a><![CDATA[]]></r>"), "",
     "", 0},
};

TEST(ToolDiff, PassesOverWhatMakesNoDifference) {
    expectCommands(kSame);
}

constexpr CommandCase kDifferent[] = {
    {"text", DIFF("<r><a>x</a></r>", "<r><a>y</a></r>"), "/r/a[1]: text \"x\" != \"y\"\n", "", 1},
    {"text on one side", DIFF("<r><a>x</a><b/></r>", "<r><a/><b>y</b></r>"),
     "- /r/a[1]: text \"x\"\n+ /r/b[1]: text \"y\"\n", "", 1},
    {"text between elements", DIFF("<r>1<a/>2</r>", "<r>1<a/>3</r>"), "/r: text \"2\" != \"3\"\n",
     "", 1},
    {"text on the other side of an element", DIFF("<r>1<a/></r>", "<r><a/>1</r>"),
     "- /r: text \"1\"\n+ /r: text \"1\"\n", "", 1},
    {"attribute", DIFF("<r a=\"1\"/>", "<r a=\"2\"/>"), "/r/@a: \"1\" != \"2\"\n", "", 1},
    {"attributes on one side", DIFF("<r a=\"1\" b=\"\"/>", "<r b=\"\" c=\"1\"/>"),
     "- /r/@a: \"1\"\n+ /r/@c: \"1\"\n", "", 1},
    {"attribute with a prefix",
     DIFF("<r xmlns:p=\"u\" p:a=\"1\" a=\"2\"/>", "<r xmlns:q=\"u\" q:a=\"0\" a=\"2\"/>"),
     "/r/@p:a: \"1\" != \"0\"\n", "", 1},
    {"attribute of another namespace",
     DIFF("<r xmlns:p=\"u\" p:a=\"1\"/>", "<r xmlns:p=\"v\" p:a=\"1\"/>"),
     "- /r/@p:a: \"1\"\n+ /r/@p:a: \"1\"\n", "", 1},
    {"the default namespace is none of attributes",
     DIFF("<r xmlns=\"u\" a=\"1\"/>", "<r xmlns=\"u\" xmlns:p=\"u\" p:a=\"1\"/>"),
     "- /r/@a: \"1\"\n+ /r/@p:a: \"1\"\n", "", 1},
    {"values that swapped their names", DIFF("<r a=\"1\" b=\"2\"/>", "<r a=\"2\" b=\"1\"/>"),
     "/r/@a: \"1\" != \"2\"\n/r/@b: \"2\" != \"1\"\n", "", 1},
    {"name of the root", DIFF("<r>t</r>", "<s x=\"1\"/>"), "- /r: r \"t\"\n+ /s: s x=\"1\"\n", "",
     1},
    {"namespace of the root", DIFF("<r xmlns=\"u\"/>", "<r xmlns=\"v\"/>"),
     "/r: namespace \"u\" != \"v\"\n", "", 1},
    {"namespace of an element below",
     DIFF("<r xmlns=\"u\"><a/></r>", "<p:r xmlns:p=\"u\"><a/></p:r>"),
     "/r/a[1]: namespace \"u\" != \"\"\n", "", 1},
    {"namespace of all elements, which is told once",
     DIFF("<r xmlns=\"u\"><a><b/></a><c xmlns=\"v\"/></r>",
          "<r xmlns=\"w\"><a><b>x</b></a><c xmlns=\"y\"><d/></c></r>"),
     "/r: namespace \"u\" != \"w\"\n+ /r/a[1]/b[1]: text \"x\"\n"
     "/r/c[1]: namespace \"v\" != \"y\"\n+ /r/c[1]/d[1]: d\n",
     "", 1},
    {"names of another namespace beside those of one",
     DIFF("<r xmlns:p=\"u\"><p:a/><b/></r>", "<r xmlns:p=\"u\"><a/><p:a/><b/></r>"),
     "+ /r/a[1]: a\n", "", 1},
    {"an element more", DIFF("<r><a/></r>", "<r><a/><b c=\"1\">t</b></r>"),
     "+ /r/b[1]: b c=\"1\" \"t\"\n", "", 1},
    {"an element less", DIFF("<r><a/><a/><b/></r>", "<r><a/><b/></r>"), "- /r/a[2]: a\n", "", 1},
    {"in GB18030 and UTF-8",
     "cxml edit switch.xml --set 'interfaces/interface[2]/description=无' -o b.xml;"
     "cxml diff switch.gb18030.xml b.xml",
     "/switch/interfaces[1]/interface[2]/description[1]: text \"3-101 会议室\" != \"无\"\n", "", 1},
    {"deep and in order",
     DIFF("<r x=\"1\"><a><b y=\"1\">1</b>2</a>3</r>", "<r x=\"2\"><a><b y=\"2\">2</b>3</a>4</r>"),
     "/r/@x: \"1\" != \"2\"\n/r/a[1]/b[1]/@y: \"1\" != \"2\"\n/r/a[1]/b[1]: text \"1\" != \"2\"\n"
     "/r/a[1]: text \"2\" != \"3\"\n/r: text \"3\" != \"4\"\n",
     "", 1},
};

TEST(ToolDiff, ShowsDifferences) {
    expectCommands(kDifferent);
}

constexpr CommandCase kAligned[] = {
    {"inserted at the front", DIFF("<r><a>1</a><a>2</a></r>", "<r><a>0</a><a>1</a><a>2</a></r>"),
     "+ /r/a[1]: a \"0\"\n", "", 1},
    {"inserted in the middle", DIFF("<r><a>1</a><a>2</a></r>", "<r><a>1</a><a>0</a><a>2</a></r>"),
     "+ /r/a[2]: a \"0\"\n", "", 1},
    {"removed, with positions of A",
     DIFF("<r><a>1</a><b/><a>2</a><a>3</a></r>", "<r><a>1</a><b/><a>3</a></r>"),
     "- /r/a[2]: a \"2\"\n", "", 1},
    {"one removed, one inserted",
     DIFF("<r><a>1</a><a>2</a><a>3</a><a>4</a></r>", "<r><a>2</a><a>3</a><a>9</a><a>4</a></r>"),
     "- /r/a[1]: a \"1\"\n+ /r/a[3]: a \"9\"\n", "", 1},
    {"changed among the same",
     DIFF("<r><a>1</a><a>2</a><a>3</a></r>", "<r><a>1</a><a>0</a><a>3</a></r>"),
     "/r/a[2]: text \"2\" != \"0\"\n", "", 1},
    {"changed and inserted before it, known by id",
     DIFF("<r><a id=\"1\">x</a></r>", "<r><a id=\"0\">z</a><a id=\"1\">y</a></r>"),
     "+ /r/a[1]: a id=\"0\" \"z\"\n/r/a[1]: text \"x\" != \"y\"\n", "", 1},
    {"known by name",
     DIFF("<r><a name=\"1\" x=\"1\"/></r>", "<r><a name=\"0\"/><a name=\"1\" x=\"2\"/></r>"),
     "+ /r/a[1]: a name=\"0\"\n/r/a[1]/@x: \"1\" != \"2\"\n", "", 1},
    {"another key is a changed attribute",
     DIFF("<r><a id=\"1\">x</a></r>", "<r><a id=\"2\">x</a></r>"), "/r/a[1]/@id: \"1\" != \"2\"\n",
     "", 1},
    {"changed on both sides of what is new, paths of A",
     DIFF("<r><a id=\"1\">x</a><a id=\"2\">x</a></r>",
          "<r><a id=\"1\">y</a><a id=\"9\"/><a id=\"2\">y</a></r>"),
     "/r/a[1]: text \"x\" != \"y\"\n+ /r/a[2]: a id=\"9\"\n/r/a[2]: text \"x\" != \"y\"\n", "", 1},
    {"moved", DIFF("<r><a>1</a><b>2</b><c>3</c></r>", "<r><b>2</b><c>3</c><a>1</a></r>"),
     "- /r/a[1]: a \"1\"\n+ /r/a[1]: a \"1\"\n", "", 1},
    {"the first of several with the first",
     DIFF("<r><a/><b x=\"1\"/><a/></r>", "<r><b x=\"2\"/><a/><c/></r>"),
     "+ /r/b[1]: b x=\"2\"\n- /r/b[1]: b x=\"1\"\n- /r/a[2]: a\n+ /r/c[1]: c\n", "", 1},
    {"one name, between others that are the same",
     DIFF("<r><a/><b x=\"1\"/><c/></r>", "<r><a/><d/><b x=\"2\"/><c/></r>"),
     "+ /r/d[1]: d\n/r/b[1]/@x: \"1\" != \"2\"\n", "", 1},
    {"the same ones, one less", DIFF("<r><a/><a/><a/></r>", "<r><a/><a/></r>"), "- /r/a[3]: a\n",
     "", 1},
    {"in another order all over", DIFF("<r><a/><b/><c/><d/></r>", "<r><d/><c/><b/><a/></r>"),
     "- /r/a[1]: a\n- /r/b[1]: b\n- /r/c[1]: c\n+ /r/c[1]: c\n+ /r/b[1]: b\n+ /r/a[1]: a\n", "", 1},
};

TEST(ToolDiff, MatchesChildren) {
    expectCommands(kAligned);
}

constexpr CommandCase kValues[] = {
    {"64 characters",
     DIFF("<r>12345678901234567890123456789012345678901234567890123456789012三4</r>", "<r/>"),
     "- /r: text \"12345678901234567890123456789012345678901234567890123456789012三4\"\n", "", 1},
    {"65 are cut",
     DIFF("<r>12345678901234567890123456789012345678901234567890123456789012三45</r>", "<r/>"),
     "- /r: text \"12345678901234567890123456789012345678901234567890123456789012三4\"...\n", "",
     1},
    {"of long values the difference is shown",
     DIFF("<r>aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa端口端口端口端口端口端口端口端口甲b</r>",
          "<r>aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa端口端口端口端口端口端口端口端口乙c</r>"),
     "/r: text ...\"端口端口端口端口端口端口端口端口甲b\" != "
     "...\"端口端口端口端口端口端口端口端口乙c\"\n",
     "", 1},
    {"one that goes on",
     DIFF("<r>aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa</r>",
          "<r>aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaab</r>"),
     "/r: text ...\"aaaaaaaaaaaaaaaa\" != ...\"aaaaaaaaaaaaaaaab\"\n", "", 1},
    {"long ones that differ at once",
     DIFF("<r>0aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa</r>", "<r>1</r>"),
     "/r: text \"0aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa\" != \"1\"\n", "",
     1},
    {"values cannot command a terminal, nor look like others",
     DIFF("<r b=\"&#34;\">&#x9b;2J</r>", "<r b=\"\\\\&#34;\">\\\\n</r>"),
     "/r/@b: \"\\\"\" != \"\\\\\\\"\"\n/r: text \"\\x9B2J\" != \"\\\\n\"\n", "", 1},
    {"a line break and what stands for one", DIFF("<r>a\\nb</r>", "<r>a\\\\nb</r>"),
     "/r: text \"a\\nb\" != \"a\\\\nb\"\n", "", 1},
};

TEST(ToolDiff, ShowsValues) {
    expectCommands(kValues);
}

constexpr CommandCase kTrouble[] = {
    {"not well-formed, A", "cxml diff broken.xml switch.xml", "",
     "broken.xml:4:29: tag name mismatch.\n", 2},
    {"not well-formed, B", "cxml diff switch.xml broken.xml", "",
     "broken.xml:4:29: tag name mismatch.\n", 2},
    {"no such file", "cxml diff switch.xml nope.xml", "",
     "cxml: nope.xml: No such file or directory\n", 2},
    {"output that cannot be written", DIFF("<r/>", "<s/>") " > /dev/full", "",
     "cxml: standard output: No space left on device\n", 2},
};

TEST(ToolDiff, TellsTrouble) {
    expectCommands(kTrouble);
}

// Every small tree against every other: two are the same if and only if they are the same text, and B
// has as many elements and texts more than A as A has less than B.
TEST(ToolDiff, AgreesWithTheTextOfSmallTrees) {
    const std::vector<std::string> children = {
        "",         "<a/>",         "<a/>x",    "<a/><b/>",     "<b/><a/>",
        "<a/><a/>", "<a c=\"1\"/>", "<a>x</a>", "<b/><a/>x<a/>"};
    std::string line = "i=0;";
    for (const std::string &child : children) {
        line += "printf '%s' '<r>" + child + "</r>' > $i.xml; i=$((i+1));";
    }
    line += "for a in $(seq 0 " + std::to_string(children.size() - 1) + "); do for b in $(seq 0 " +
            std::to_string(children.size() - 1) +
            "); do cxml diff $a.xml $b.xml > ab; status=$?;"
            "{ [ -s ab ] && echo 1 || echo 0; } | grep -qx $status || echo output $a $b;"
            "cmp -s $a.xml $b.xml; [ $? = $status ] || echo status $a $b;"
            "cxml diff $b.xml $a.xml | grep -c '^-' > less; grep -c '^+' ab | cmp -s - less ||"
            " echo sides $a $b; done; done";
    const Result result = runLine(line);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "");
}

std::string nested(const char *name, const char *innermost, const char *attribute) {
    return ("awk 'BEGIN { for (i = 0; i < " + kDeep + "; ++i) printf \"<e") + attribute +
           ">\"; printf \"" + innermost + "\"; for (i = 0; i < " + kDeep +
           "; ++i) printf \"</e>\" }' > " + name + ";";
}

TEST(ToolDiff, GoesThroughAMillionLevels) {
    const Result result = runLine(nested("a.xml", "x", "") + nested("b.xml", "y", "") +
                                  "cxml diff a.xml b.xml; echo $?; cxml diff a.xml a.xml; echo $?");
    EXPECT_EQ(result.out, ".../e[1]: text \"x\" != \"y\"\n1\n0\n");
    EXPECT_EQ(result.err, "");
}

TEST(ToolDiff, FindsAMillionDifferencesOneBelowTheOther) {
    const Result result =
        runLine(nested("a.xml", "", " a=\\\"1\\\"") + nested("b.xml", "", " a=\\\"2\\\"") +
                "cxml diff a.xml b.xml > out; echo $?; wc -l < out; tail -n 1 out");
    EXPECT_EQ(result.out, "1\n" + kDeep + "\n.../e[1]/@a: \"1\" != \"2\"\n");
    EXPECT_EQ(result.err, "");
}

// The worst for the alignment: nothing at the ends is the same, and everything has moved.
TEST(ToolDiff, MatchesHundredsOfThousandsOfChildren) {
    const Result result = runLine(
        "awk 'BEGIN { n = 200000; printf \"<r>\" > \"a.xml\"; printf \"<r>\" > \"b.xml\";"
        " for (i = 0; i < n; ++i) { printf \"<e id=\\\"%d\\\"/>\", i > \"a.xml\";"
        " printf \"<e id=\\\"%d\\\"/>\", (i + n / 2) % n > \"b.xml\" }"
        " printf \"</r>\" > \"a.xml\"; printf \"</r>\" > \"b.xml\" }';"
        "cxml diff a.xml b.xml > out; echo $?; grep -c '^-' out; grep -c '^+' out; wc -l < out");
    EXPECT_EQ(result.out, "1\n100000\n100000\n200000\n");
    EXPECT_EQ(result.err, "");
}

}  // namespace
