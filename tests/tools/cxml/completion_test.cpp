#include <gtest/gtest.h>

#include <string>

#include "tests/tools/support/run.h"

namespace {

// Completes the words given, the last of which is the current one, and prints what bash would offer.
const std::string kComplete = std::string(
    "cat > complete <<'END'\n"
    "[ ! -f prelude ] || source ./prelude\n"
    "source '" CXML_SOURCE_DIR
    "/completion/cxml'\n"
    "COMP_WORDS=(\"$@\"); COMP_CWORD=$(($# - 1))\n"
    "_cxml\n"
    "((${#COMPREPLY[@]} == 0)) || printf '%s\\n' \"${COMPREPLY[@]}\" | sort | tr '\\n' ' '\n"
    "END\n"
    "c() { bash --norc --noprofile complete \"$@\"; };");

class ToolCompletion : public ::testing::Test {
  protected:
    void SetUp() override {
        if (runLine("bash --version").status != 0) GTEST_SKIP() << "bash is not installed";
    }
};

struct Case {
    const char *words;
    const char *offered;
};

constexpr Case kCases[] = {
    // commands
    {"cxml ''", "--help --version check diff edit encodings print select tree validate "},
    {"cxml e", "edit encodings "},
    {"cxml --v", "--version "},
    {"cxml x", ""},
    {"cxml nope ''", ""},
    // options of commands
    {"cxml check -", "--context --help --stats "},
    {"cxml print --", "--encoding --help --indent --no-declaration --output "},
    {"cxml select --", "--exists --help --int --path --text --uint --xml "},
    {"cxml select switch.xml --e", "--exists "},
    {"cxml tree --", "--depth --help "},
    {"cxml validate --", "--help --plugin --schema "},
    {"cxml validate --schema sw", "switch.gb18030.xml switch.xml "},
    {"cxml edit --", "--add --attr --copy --delete --help --in-place --output --rename --set "},
    {"cxml edit f.xml --set a=b --in", "--in-place "},
    {"cxml diff -", "--help "},
    {"cxml encodings -", "--help "},
    // files
    {"cxml check sw", "switch.gb18030.xml switch.xml "},
    {"cxml check --stats switch.xml b", "broken.xml "},
    {"cxml diff switch.xml 'a b'", "a b*.xml "},
    {"cxml print -o sw", "switch.gb18030.xml switch.xml "},
    {"cxml edit switch.xml --output br", "broken.xml "},
    {"cxml encodings sw", ""},
    // encodings
    {"cxml print --encoding ''",
     "GB18030 GB2312 GBK UCS-4 UCS-4BE UCS-4LE UTF-16 UTF-16BE UTF-16LE UTF-32 UTF-32BE UTF-32LE "
     "UTF-8 "},
    {"cxml print --encoding GB", "GB18030 GB2312 GBK "},
    {"cxml print --encoding = UCS", "UCS-4 UCS-4BE UCS-4LE "},
    {"cxml print --encoding =",
     "GB18030 GB2312 GBK UCS-4 UCS-4BE UCS-4LE UTF-16 UTF-16BE UTF-16LE UTF-32 UTF-32BE UTF-32LE "
     "UTF-8 "},
    // what only the document knows
    {"cxml print --indent s", ""},
    {"cxml tree --depth s", ""},
    {"cxml edit switch.xml --set s", ""},
    {"cxml edit switch.xml --copy s", ""},
    {"cxml edit switch.xml --copy a s", ""},
    {"cxml edit --copy a b s", "switch.gb18030.xml switch.xml "},
};

TEST_F(ToolCompletion, OffersWhatFits) {
    for (const Case &c : kCases) {
        const Result result = runLine(kComplete + "touch 'a b*.xml'; c " + c.words);
        EXPECT_EQ(result.out, c.offered) << c.words;
        EXPECT_EQ(result.err, "") << c.words;
    }
}

// bash-completion's own way of completing file names is used where it is loaded.
TEST_F(ToolCompletion, UsesFiledirWhereItIs) {
    const Result result =
        runLine("printf '_filedir() { COMPREPLY=(\"files of $cur\"); }\\n' > prelude;" + kComplete +
                "c cxml check sw");
    EXPECT_EQ(result.out, "files of sw ");
    EXPECT_EQ(result.err, "");
}

constexpr char kLongOptions[] = " | grep -oE -e '--[a-z]+(-[a-z]+)*' | sort -u | tr '\\n' ' ';";

// What each command's help lists is offered, and stands in the manual.
TEST_F(ToolCompletion, KnowsTheOptionsOfEachCommand) {
    for (const std::string command :
         {"check", "validate", "print", "select", "tree", "edit", "diff", "encodings"}) {
        const Result help =
            runLine("cxml " + command + " --help | sed '/^Examples:/,$d'" + kLongOptions);
        const Result offered = runLine(kComplete + "c cxml " + command + " --");
        EXPECT_EQ(offered.out, help.out) << command;
        EXPECT_NE(help.out, "") << command;
    }
}

TEST_F(ToolCompletion, KnowsTheEncodings) {
    const Result encodings = runLine("cxml encodings | awk '{ print $1 }' | sort | tr '\\n' ' '");
    const Result offered = runLine(kComplete + "c cxml print --encoding ''");
    EXPECT_EQ(offered.out, encodings.out);
}

TEST(ToolManual, HasEveryOption) {
    const Result result = runLine(
        "for c in check validate print select tree edit diff encodings; do"
        " cxml $c --help | grep -oE -e '--[a-z]+(-[a-z]+)*'; done | sort -u | while read -r "
        "option; do"
        " sed 's/\\\\-/-/g' '" CXML_SOURCE_DIR
        "/cxml.1' | grep -qwF -e \"$option\" || echo \"$option\";"
        " done");
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "");
}

TEST(ToolManual, IsFormattedWithoutWarnings) {
    if (runLine("groff --version").status != 0) GTEST_SKIP() << "groff is not installed";
    const Result result = runLine("groff -ww -man -z '" CXML_SOURCE_DIR "/cxml.1'");
    EXPECT_EQ(result.out + result.err, "");
    EXPECT_EQ(result.status, 0);
}

// The lines of the manual's examples do what it says.
TEST(ToolManual, ShowsExamplesThatRun) {
    const Result result = runLine(
        "sed -n '/^.SH EXAMPLES/,$p' '" CXML_SOURCE_DIR
        "/cxml.1' | sed -n '/^.nf/,/^.fi/p' |"
        " grep -v '^[.]' | sed 's/\\\\-/-/g; s/\\\\(rs/\\\\/g' | sed \"s/\\\\\\\\(aq/'/g\" > lines;"
        " rm broken.xml; sh -e lines > out 2> err; echo $?; cat err; tail -n 3 out");
    EXPECT_EQ(result.out,
              "1\n/switch/@revision: \"2417\" != \"2418\"\n"
              "/switch/system[1]/hostname[1]: text \"agg-east-3\" != \"agg-east-4\"\n"
              "- /switch/vlans[1]/vlan[3]: vlan:vlan id=\"20\" name=\"voice\" state=\"active\"\n");
    EXPECT_EQ(result.err, "");
}

}  // namespace
