#include <gtest/gtest.h>

#include <string>

#include "tests/tools/support/run.h"

namespace {

// Documents are shown without their XML declaration here; KeepsTheDeclaration looks at that.
#define EDIT(document, operations) \
    "printf '" document "' > f.xml; cxml edit f.xml " operations " | sed 's/^<?[^>]*?>//'"

constexpr CommandCase kSet[] = {
    {"text", EDIT("<r><a>1</a></r>", "--set a=2"), "<r><a>2</a></r>", "", 0},
    {"where there was none", EDIT("<r><a/></r>", "--set /r/a=2"), "<r><a>2</a></r>", "", 0},
    {"with a position", EDIT("<r><a/><a/></r>", "--set 'a[2]=2'"), "<r><a/><a>2</a></r>", "", 0},
    {"empty", EDIT("<r><a>1</a></r>", "--set a="), "<r><a/></r>", "", 0},
    {"with another = sign", EDIT("<r><a/></r>", "--set a==b=c"), "<r><a>=b=c</a></r>", "", 0},
    {"in front of the elements that stay",
     EDIT("<r>1<a>x<b/>y</a>2<![CDATA[3]]><c/>4</r>", "--set /=0"), "<r>0<a>x<b/>y</a><c/></r>", "",
     0},
    {"empty, with elements that stay", EDIT("<r>1<a/>2</r>", "--set /="), "<r><a/></r>", "", 0},
    {"escaped", EDIT("<r/>", "--set '/r=<a> & \"b\"'"), "<r>&lt;a&gt; &amp; \"b\"</r>", "", 0},
    {"blanks at both ends are kept", EDIT("<r/>", "--set '/r= a '") "| cxml select - /r", " a \n",
     "", 0},
    {"Chinese", EDIT("<配置><名/></配置>", "--set '名=交换机'"), "<配置><名>交换机</名></配置>", "",
     0},
    {"twice", EDIT("<r/>", "--set /r=1 --set /r=2"), "<r>2</r>", "", 0},
};

TEST(ToolEdit, SetsTexts) {
    expectCommands(kSet);
}

constexpr CommandCase kAdd[] = {
    {"behind the others", EDIT("<r><a/>x</r>", "--add / b"), "<r><a/>x<b/></r>", "", 0},
    {"with a text", EDIT("<r><a/></r>", "--add a b=1=2"), "<r><a><b>1=2</b></a></r>", "", 0},
    {"with an empty text", EDIT("<r/>", "--add / b="), "<r><b/></r>", "", 0},
    {"with a prefix", EDIT("<r xmlns:p=\"u\"><a/></r>", "--add a p:b=1"),
     "<r xmlns:p=\"u\"><a><p:b>1</p:b></a></r>", "", 0},
    {"to what was added", EDIT("<r/>", "--add / a --add a b --add a b=2 --set 'a/b[1]=1'"),
     "<r><a><b>1</b><b>2</b></a></r>", "", 0},
};

TEST(ToolEdit, AddsElements) {
    expectCommands(kAdd);
}

constexpr CommandCase kDelete[] = {
    {"an element", EDIT("<r><a><b/></a><c/></r>", "--delete a"), "<r><c/></r>", "", 0},
    {"the last one", EDIT("<r><a/><a>2</a></r>", "--delete 'a[2]' --add / b"), "<r><a/><b/></r>",
     "", 0},
    {"the only one", EDIT("<r><a/></r>", "--delete /r/a"), "<r/>", "", 0},
    {"positions move up", EDIT("<r><a>1</a><a>2</a><a>3</a></r>", "--delete a --delete 'a[2]'"),
     "<r><a>2</a></r>", "", 0},
};

TEST(ToolEdit, DeletesElements) {
    expectCommands(kDelete);
}

constexpr CommandCase kRename[] = {
    {"an element", EDIT("<r><a x=\"1\">t</a></r>", "--rename a=b"), "<r><b x=\"1\">t</b></r>", "",
     0},
    {"the root", EDIT("<r><a/></r>", "--rename /=s --set /s/a=1"), "<s><a>1</a></s>", "", 0},
    {"the prefix stays", EDIT("<r xmlns:p=\"u\"><p:a/></r>", "--rename a=b"),
     "<r xmlns:p=\"u\"><p:b/></r>", "", 0},
    {"with a prefix",
     EDIT("<r xmlns:p=\"u\" xmlns:q=\"v\"><a/><p:a/></r>", "--rename a=q:b --rename a=q:c"),
     "<r xmlns:p=\"u\" xmlns:q=\"v\"><q:b/><q:c/></r>", "", 0},
};

TEST(ToolEdit, RenamesElements) {
    expectCommands(kRename);
}

constexpr CommandCase kAttributes[] = {
    {"behind the others", EDIT("<r a=\"1\"/>", "--attr / b=2"), "<r a=\"1\" b=\"2\"/>", "", 0},
    {"in its place", EDIT("<r a=\"1\" b=\"2\" c=\"3\"/>", "--attr / b=x=y --attr / a=0"),
     "<r a=\"0\" b=\"x=y\" c=\"3\"/>", "", 0},
    {"empty", EDIT("<r a=\"1\"/>", "--attr / a="), "<r a=\"\"/>", "", 0},
    {"removed", EDIT("<r a=\"1\" b=\"2\" c=\"3\"/>", "--attr / b"), "<r a=\"1\" c=\"3\"/>", "", 0},
    {"the last one removed, and one added", EDIT("<r a=\"1\" b=\"2\"/>", "--attr / b --attr / c=3"),
     "<r a=\"1\" c=\"3\"/>", "", 0},
    {"with a prefix", EDIT("<r xmlns:p=\"u\"><a b=\"1\"/></r>", "--attr a p:b=2"),
     "<r xmlns:p=\"u\"><a b=\"1\" p:b=\"2\"/></r>", "", 0},
    {"with another prefix of its namespace",
     EDIT("<r xmlns:p=\"u\" xmlns:q=\"u\" p:b=\"1\" b=\"2\"/>", "--attr / q:b=3"),
     "<r xmlns:p=\"u\" xmlns:q=\"u\" p:b=\"3\" b=\"2\"/>", "", 0},
    {"removed by another prefix of its namespace",
     EDIT("<r xmlns:p=\"u\" xmlns:q=\"u\" b=\"2\" p:b=\"1\"/>", "--attr / q:b"),
     "<r xmlns:p=\"u\" xmlns:q=\"u\" b=\"2\"/>", "", 0},
    {"the default namespace is none of attributes",
     EDIT("<r xmlns=\"u\" xmlns:p=\"u\" p:b=\"1\"/>", "--attr / b=2"),
     "<r xmlns=\"u\" xmlns:p=\"u\" p:b=\"1\" b=\"2\"/>", "", 0},
    {"xml:", EDIT("<r/>", "--attr / xml:lang=zh"), "<r xml:lang=\"zh\"/>", "", 0},
    {"quotes",
     EDIT("<r/>",
          "--attr / 'a=\"<&>\"'") "> g.xml;"
                                  "printf '<r a=\"&quot;&lt;&amp;>&quot;\"/>' | cxml diff g.xml -",
     "", "", 0},
};

TEST(ToolEdit, SetsAttributes) {
    expectCommands(kAttributes);
}

constexpr CommandCase kCopy[] = {
    {"an element with all below it",
     EDIT("<r><a x=\"1\">t<b><![CDATA[c]]></b></a><d/></r>", "--copy a d"),
     "<r><a x=\"1\">t<b><![CDATA[c]]></b></a><d><a x=\"1\">t<b><![CDATA[c]]></b></a></d></r>", "",
     0},
    {"beside itself", EDIT("<r><a>1</a><b/></r>", "--copy a / --set 'a[2]=2'"),
     "<r><a>1</a><b/><a>2</a></r>", "", 0},
    {"into itself", EDIT("<r><a><b/></a></r>", "--copy a a"), "<r><a><b/><a><b/></a></a></r>", "",
     0},
    {"below itself", EDIT("<r><a><b/><c/></a></r>", "--copy a a/b"),
     "<r><a><b><a><b/><c/></a></b><c/></a></r>", "", 0},
    {"the root", EDIT("<r><a/></r>", "--copy / a"), "<r><a><r><a/></r></a></r>", "", 0},
    {"a prefix that both places have",
     EDIT("<r xmlns:p=\"u\"><p:a p:x=\"1\"><p:b/></p:a><c/></r>", "--copy a c"),
     "<r xmlns:p=\"u\"><p:a p:x=\"1\"><p:b/></p:a><c><p:a p:x=\"1\"><p:b/></p:a></c></r>", "", 0},
    {"a prefix that the new place lacks",
     EDIT("<r><a xmlns:p=\"u\"><b><p:c/></b></a></r>", "--copy a/b /"),
     "<r><a xmlns:p=\"u\"><b><p:c/></b></a><b xmlns:p=\"u\"><p:c/></b></r>", "", 0},
    {"a prefix that means something else there",
     EDIT("<r xmlns:p=\"u\"><p:a p:x=\"1\"><p:b/></p:a><c xmlns:p=\"v\"/></r>", "--copy a c"),
     "<r xmlns:p=\"u\"><p:a p:x=\"1\"><p:b/></p:a>"
     "<c xmlns:p=\"v\"><p:a xmlns:p=\"u\" p:x=\"1\"><p:b/></p:a></c></r>",
     "", 0},
    {"its own declarations",
     EDIT("<r><p:a xmlns:p=\"u\" xmlns=\"v\"><b/></p:a><c/></r>", "--copy a c"),
     "<r><p:a xmlns:p=\"u\" xmlns=\"v\"><b/></p:a>"
     "<c><p:a xmlns:p=\"u\" xmlns=\"v\"><b/></p:a></c></r>",
     "", 0},
    {"the default namespace that both places have",
     EDIT("<r xmlns=\"u\"><a><b/></a><c/></r>", "--copy a c"),
     "<r xmlns=\"u\"><a><b/></a><c><a><b/></a></c></r>", "", 0},
    {"into another default namespace",
     EDIT("<r xmlns=\"u\"><a><b/></a><p:c xmlns=\"v\" xmlns:p=\"v\"/></r>", "--copy a c"),
     "<r xmlns=\"u\"><a><b/></a><p:c xmlns=\"v\" xmlns:p=\"v\"><a xmlns=\"u\"><b/></a></p:c></r>",
     "", 0},
    {"into a default namespace from none", EDIT("<r><a/><c xmlns=\"v\"/></r>", "--copy a c"),
     "<r><a/><c xmlns=\"v\"><a xmlns=\"\"/></c></r>", "", 0},
    {"below itself into another default namespace",
     EDIT("<r><a><c xmlns=\"v\"/></a></r>", "--copy a a/c"),
     "<r><a><c xmlns=\"v\"><a xmlns=\"\"><c xmlns=\"v\"/></a></c></a></r>", "", 0},
};

TEST(ToolEdit, CopiesElements) {
    expectCommands(kCopy);
}

// What fails is told with the operation as typed; nothing is written.
#define REFUSED(operations) \
    "printf '<r><a>1</a></r>' > f.xml; cxml edit f.xml --set a=2 " operations

constexpr CommandCase kRefused[] = {
    {"no element to set", REFUSED("--set a/b=1"), "",
     "cxml: --set 'a/b=1': no element a/b in f.xml\n", 1},
    {"no element to add to", REFUSED("--add b c=1"), "",
     "cxml: --add 'b' 'c=1': no element b in f.xml\n", 1},
    {"no element to delete", REFUSED("--delete 'a[2]'"), "",
     "cxml: --delete 'a[2]': no element a[2] in f.xml\n", 1},
    {"an element that is deleted", REFUSED("--delete a --delete a"), "",
     "cxml: --delete 'a': no element a in f.xml\n", 1},
    {"no element to rename", REFUSED("--rename b=c"), "",
     "cxml: --rename 'b=c': no element b in f.xml\n", 1},
    {"no element with attributes", REFUSED("--attr b c=1"), "",
     "cxml: --attr 'b' 'c=1': no element b in f.xml\n", 1},
    {"no element to copy", REFUSED("--copy b a"), "",
     "cxml: --copy 'b' 'a': no element b in f.xml\n", 1},
    {"no element to copy to", REFUSED("--copy a b"), "",
     "cxml: --copy 'a' 'b': no element b in f.xml\n", 1},
    {"the root", REFUSED("--delete /"), "", "cxml: --delete '/': the root cannot be deleted\n", 1},
    {"no attribute", REFUSED("--attr a x"), "", "cxml: --attr 'a' 'x': no attribute x\n", 1},
    {"no name to add", REFUSED("--add a 1b"), "", "cxml: --add 'a' '1b': '1b' is no name\n", 1},
    {"empty name", REFUSED("--add a =1"), "", "cxml: --add 'a' '=1': '' is no name\n", 1},
    {"two colons", REFUSED("--add a b:c:d"), "", "cxml: --add 'a' 'b:c:d': 'b:c:d' is no name\n",
     1},
    {"empty prefix", REFUSED("--rename a=:b"), "", "cxml: --rename 'a=:b': ':b' is no name\n", 1},
    {"empty new name", REFUSED("--rename a="), "", "cxml: --rename 'a=': '' is no name\n", 1},
    {"no name of an attribute", REFUSED("--attr a 'b c=1'"), "",
     "cxml: --attr 'a' 'b c=1': 'b c' is no name\n", 1},
    {"declarations are no attributes", REFUSED("--attr a xmlns=u"), "",
     "cxml: --attr 'a' 'xmlns=u': 'xmlns' is no name of an attribute\n", 1},
    {"nor those of prefixes", REFUSED("--attr a xmlns:p=u"), "",
     "cxml: --attr 'a' 'xmlns:p=u': the prefix 'xmlns' is not declared\n", 1},
    {"undeclared prefix of an element", REFUSED("--add a p:b"), "",
     "cxml: --add 'a' 'p:b': the prefix 'p' is not declared\n", 1},
    {"undeclared prefix of a new name", REFUSED("--rename a=p:b"), "",
     "cxml: --rename 'a=p:b': the prefix 'p' is not declared\n", 1},
    {"control character", REFUSED("--set \"a=$(printf 'x\\001')\""), "",
     "cxml: --set 'a=x\\x01': the value has a character that XML does not allow\n", 1},
    {"control character in an attribute", REFUSED("--attr a \"b=$(printf '\\033[2J')\""), "",
     "cxml: --attr 'a' 'b=\\x1B[2J': the value has a character that XML does not allow\n", 1},
    {"no character", REFUSED("--set \"a=$(printf '\\357\\277\\277')\""), "",
     "cxml: --set 'a=\xEF\xBF\xBF': the value has a character that XML does not allow\n", 1},
    {"value that is not UTF-8", REFUSED("--set \"a=$(printf '\\377')\""), "",
     "cxml: --set 'a=\xEF\xBF\xBD': the value is not UTF-8 text: \xEF\xBF\xBD\n", 2},
    {"no path", REFUSED("--set 'a[=1'"), "",
     "cxml: --set 'a[=1': there is no '=' behind the path\n", 2},
    {"no path either", REFUSED("--delete 'a[0]'"), "", "cxml: --delete 'a[0]': 'a[0]' is no path\n",
     2},
    {"nothing to set", REFUSED("--set a"), "", "cxml: --set 'a': there is no '=' behind the path\n",
     2},
    {"nothing to rename to", REFUSED("--rename a"), "",
     "cxml: --rename 'a': there is no '=' behind the path\n", 2},
    {"an encoding that lacks a character",
     "printf '<?xml version=\"1.0\" encoding=\"GB2312\"?><r><a/></r>' > f.xml;"
     "cxml edit f.xml --set a=😀 -o g.xml; echo $?; ls g.xml 2>/dev/null",
     "1\n", "cxml: f.xml: GB2312 has no character for U+1F600 in /r/a[1]\n", 2},
};

TEST(ToolEdit, RefusesAsAWhole) {
    expectCommands(kRefused);
}

constexpr CommandCase kUsage[] = {
    {"no operation", "cxml edit switch.xml", "", "cxml: edit needs an operation, such as --set\n",
     2},
    {"not well-formed", "cxml edit broken.xml --delete a", "",
     "broken.xml:4:29: tag name mismatch.\n", 1},
    {"no such file", "cxml edit nope.xml --delete a", "",
     "cxml: nope.xml: No such file or directory\n", 2},
    {"an option's value may look like an option", EDIT("<r/>", "--set=/=--set"), "<r>--set</r>", "",
     0},
};

TEST(ToolEdit, TellsWrongUsage) {
    expectCommands(kUsage);
}

constexpr CommandCase kOutputs[] = {
    {"in place",
     "printf '<r/>' > f.xml; chmod 640 f.xml; cxml edit --in-place f.xml --set /=1;"
     "cxml select f.xml /; stat -c %a f.xml; ls | grep -v switch",
     "1\n640\nbroken.xml\nf.xml\n", "", 0},
    {"to another file",
     "printf '<r/>' > f.xml; cxml edit f.xml --set /=1 -o g.xml;"
     "cat f.xml; cxml select g.xml /",
     "<r/>1\n", "", 0},
    {"in place, from standard input",
     "printf '<r/>' | cxml edit - --in-place --set /=1 2>&1 | head -n 1",
     "cxml: --in-place needs a file, not standard input\n", "", 0},
    {"nothing is changed by what fails",
     "printf '<r><a/></r>' > f.xml;"
     "cxml edit f.xml --in-place --set a=1 --set b=2 2>/dev/null; echo $?; cat f.xml;"
     "ls | grep -v switch",
     "1\n<r><a/></r>broken.xml\nf.xml\n", "", 0},
    {"operations in the order typed",
     EDIT("<r/>", "--add / a=1 --rename a=b --add / a=2 --copy b a"),
     "<r><b>1</b><a>2<b>1</b></a></r>", "", 0},
    {"compact, without comments",
     EDIT("<!-- c --><r>\\n <!-- c --> <a/>\\n <?p i?></r>", "--set a=1"), "<r><a>1</a></r>", "",
     0},
};

TEST(ToolEdit, WritesTheResult) {
    expectCommands(kOutputs);
}

TEST(ToolEdit, KeepsTheDeclarationAndTheEncoding) {
    const Result result = runLine(
        "cxml edit --in-place switch.gb18030.xml --set 'system/description=二层' &&"
        " head -c 40 switch.gb18030.xml && cxml select switch.gb18030.xml system/description &&"
        " cxml diff switch.gb18030.xml switch.xml");
    EXPECT_EQ(result.out,
              "<?xml version=\"1.0\" encoding=\"GB18030\"?>二层\n"
              "/switch/system[1]/description[1]: text \"二层\" != "
              "\"东区三号楼汇聚交换机（二层与三层）\"\n");
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.status, 1);
}

TEST(ToolEdit, GoesThroughAMillionLevels) {
    const Result result = runLine(
        "awk 'BEGIN { for (i = 0; i < " + kDeep + "; ++i) printf \"<e>\"; for (i = 0; i < " +
        kDeep +
        "; ++i) printf \"</e>\" }' > deep.xml;"
        "cxml edit --in-place deep.xml --set /e/e/e=x --add /e/e b=1 --attr e a=1 --copy e/e / &&"
        " cxml check --stats deep.xml | grep -E 'elements|attributes|depth'");
    // The copy is of the third level and all below.
    EXPECT_EQ(result.out, "  elements    " + std::to_string(2 * std::stoul(kDeep) - 1) +
                              "\n  attributes  1\n  depth       " + kDeep + "\n");
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.status, 0);
}

// Texts among a million children, and a last child among a million.
TEST(ToolEdit, GoesThroughAMillionChildren) {
    const Result result = runLine(
        "awk 'BEGIN { printf \"<r>\"; for (i = 0; i < 500000; ++i) printf \"x<e/>\";"
        " printf \"</r>\" }' > wide.xml;"
        "cxml edit --in-place wide.xml --set /=y --set 'e[500000]=z' --delete 'e[499999]' &&"
        " cxml select wide.xml / 'e[499999]' && cxml check --stats wide.xml | grep elements");
    EXPECT_EQ(result.out, "y\nz\n  elements    500000\n");
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.status, 0);
}

}  // namespace
