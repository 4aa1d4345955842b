// What the command line accepts, and how commands end.
#include <gtest/gtest.h>

#include "tests/tools/support/run.h"

namespace {

constexpr CommandCase kWrongUsage[] = {
    {"nothing", "cxml", "", "cxml: no command is given\nTry 'cxml --help'.\n", 2},
    {"unknown command", "cxml frobnicate x.xml", "",
     "cxml: unknown command 'frobnicate'\nTry 'cxml --help'.\n", 2},
    {"unknown option", "cxml --frobnicate", "",
     "cxml: unexpected argument '--frobnicate'\nTry 'cxml --help'.\n", 2},
    {"unknown option of a command", "cxml check --frob switch.xml", "",
     "cxml: unexpected argument '--frob'\nTry 'cxml check --help'.\n", 2},
    {"no file", "cxml check", "", "cxml: FILE is required\nTry 'cxml check --help'.\n", 2},
    {"no path", "cxml select switch.xml", "", "cxml: PATH is required\nTry 'cxml select --help'.\n",
     2},
    {"one document to compare", "cxml diff switch.xml", "",
     "cxml: B is required\nTry 'cxml diff --help'.\n", 2},
    {"a file too many", "cxml print switch.xml broken.xml", "",
     "cxml: unexpected argument 'broken.xml'\nTry 'cxml print --help'.\n", 2},
    {"an operand of encodings", "cxml encodings GBK", "",
     "cxml: unexpected argument 'GBK'\nTry 'cxml encodings --help'.\n", 2},
    {"option without argument", "cxml print switch.xml -o", "",
     "cxml: --output lacks an argument\nTry 'cxml print --help'.\n", 2},
    {"empty place to write", "cxml print switch.xml -o ''", "",
     "cxml: --output lacks an argument\nTry 'cxml print --help'.\n", 2},
    {"empty encoding", "cxml print switch.xml --encoding ''", "",
     "cxml: --encoding lacks an argument\nTry 'cxml print --help'.\n", 2},
    {"option with one argument of two", "cxml edit switch.xml --add /switch", "",
     "cxml: --add lacks an argument\nTry 'cxml edit --help'.\n", 2},
    {"indent is no number", "cxml print --indent two switch.xml", "",
     "cxml: --indent takes a number from 0 to 16, not 'two'\nTry 'cxml print --help'.\n", 2},
    {"indent too large", "cxml print --indent 17 switch.xml", "",
     "cxml: --indent takes a number from 0 to 16, not '17'\nTry 'cxml print --help'.\n", 2},
    {"indent negative", "cxml print --indent -1 switch.xml", "",
     "cxml: --indent takes a number from 0 to 16, not '-1'\nTry 'cxml print --help'.\n", 2},
    {"depth of nothing", "cxml tree --depth 0 switch.xml", "",
     "cxml: --depth takes a number from 1 to 1000000000, not '0'\nTry 'cxml tree --help'.\n", 2},
    {"two kinds of answer", "cxml select --int --path switch.xml /a", "",
     "cxml: --int and --path exclude each other\nTry 'cxml select --help'.\n", 2},
    {"two places to write", "cxml edit switch.xml --in-place -o x --delete /a", "",
     "cxml: --in-place excludes --output\nTry 'cxml edit --help'.\n", 2},
    {"standard input in place", "cxml edit - --in-place --delete /a <switch.xml", "",
     "cxml: --in-place needs a file, not standard input\nTry 'cxml edit --help'.\n", 2},
    {"a command for the terminal", "cxml check --\x1b]0", "",
     "cxml: unexpected argument '--\\x1B]0'\nTry 'cxml check --help'.\n", 2},
};

TEST(Usage, WrongUsage) {
    expectCommands(kWrongUsage);
}

// Files whose names look like something else.
constexpr CommandCase kOperands[] = {
    {"like a list", "cp switch.xml '[a,b]'; cxml check '[a,b]'", "", "", 0},
    {"like an empty list", "cxml check '{}'", "", "cxml: {}: No such file or directory\n", 2},
    {"like a separator", "cxml check '%%' switch.xml",
     "2 files, 1 accepted, 0 refused, 1 not read\n", "cxml: %%: No such file or directory\n", 2},
    {"like an option", "cp switch.xml ./--stats; cxml check -- --stats", "", "", 0},
    {"like an option, behind others",
     "cp switch.xml ./-x; cxml check switch.xml broken.xml -- -x 2>/dev/null",
     "3 files, 2 accepted, 1 refused\n", "", 1},
    {"like the end of options", "cp switch.xml ./--; cxml check -- --", "", "", 0},
    {"like a command", "cp switch.xml print; cxml check print", "", "", 0},
    {"like an assignment", "cp switch.xml =; cxml check =", "", "", 0},
    {"no name", "cxml check ''", "", "cxml: '': No such file or directory\n", 2},
    {"options behind operands", "cxml print switch.xml --no-declaration | head -c 10", "<sw:switch",
     "", 0},
    {"joined to its option", "cxml print -oout.xml switch.xml && cxml check out.xml", "", "", 0},
    {"the last of two counts", "cxml print --encoding GBK --encoding UTF-8 switch.xml | head -c 38",
     "<?xml version=\"1.0\" encoding=\"UTF-8\"?>", "", 0},
    {"dash as the place to write", "cxml print -o - --no-declaration switch.xml | head -c 10",
     "<sw:switch", "", 0},
};

TEST(Usage, Operands) {
    expectCommands(kOperands);
}

constexpr char kEditDocument[] = "printf '<a><b>1</b></a>' >a.xml; cxml edit a.xml ";

// Values that look like options, and operations in the order in which they are typed.
TEST(Usage, EditOperations) {
    const struct {
        const char *name, *arguments, *out;
    } cases[] = {
        {"negative number", "--set /a/b=-1", "<a><b>-1</b></a>"},
        {"joined", "--set=/a/b=-1", "<a><b>-1</b></a>"},
        {"equals signs", "--set /a/b==x=", "<a><b>=x=</b></a>"},
        {"like an option", "--set /a/b=--help", "<a><b>--help</b></a>"},
        {"attribute with a dash", "--attr /a x=-1", "<a x=\"-1\"><b>1</b></a>"},
        {"like a list", "--set '/a/b=[1,2]'", "<a><b>[1,2]</b></a>"},
        {"set, then rename, then set", "--set /a/b=2 --rename /a/b=c --set /a/c=3",
         "<a><c>3</c></a>"},
        {"delete, then add", "--delete /a/b --add /a b=2", "<a><b>2</b></a>"},
        {"add, then delete", "--add /a c=2 --delete /a/b", "<a><c>2</c></a>"},
        {"the same option again", "--add /a c --add /a d --add /a c",
         "<a><b>1</b><c/><d/><c/></a>"},
    };
    for (const auto &c : cases) {
        const std::string line = kEditDocument + std::string(c.arguments);
        const std::string out = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>" + std::string(c.out);
        const CommandCase command[] = {{c.name, line.c_str(), out.c_str(), "", 0}};
        expectCommands(command);
    }
}

TEST(Usage, VersionIsThatOfTheProject) {
    const Result result = runLine("cxml --version");
    EXPECT_EQ(result.out, "cxml " CXML_VERSION "\n");
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.status, 0);
}

TEST(Usage, EveryCommandHelpsWithAnExample) {
    for (const std::string command :
         {"check", "print", "select", "tree", "edit", "diff", "encodings"}) {
        const Result result = runLine("cxml " + command + " --help");
        EXPECT_EQ(result.status, 0) << command;
        EXPECT_EQ(result.err, "") << command;
        const std::size_t examples = result.out.find("\nExamples:\n");
        ASSERT_NE(examples, std::string::npos) << command << result.out;
        EXPECT_NE(result.out.find("cxml " + command, examples), std::string::npos) << result.out;
        EXPECT_NE(runLine("cxml --help").out.find("\n  " + command + " "), std::string::npos);
    }
}

constexpr CommandCase kStandardStreams[] = {
    {"full disk", "cxml print switch.xml >/dev/full", "",
     "cxml: standard output: No space left on device\n", 2},
    {"help to a full disk", "cxml --help >/dev/full", "",
     "cxml: standard output: No space left on device\n", 2},
    {"version to a full disk", "cxml --version >/dev/full", "",
     "cxml: standard output: No space left on device\n", 2},
    {"closed output", "cxml print switch.xml >&-", "",
     "cxml: standard output: Bad file descriptor\n", 2},
    {"closed input", "cxml check - <&-", "", "cxml: standard input: Bad file descriptor\n", 2},
    {"closed error", "cxml check broken.xml 2>&-", "", "", 1},
    // Standard error must not become the file that is written.
    {"closed error and a file", "cxml print -o out.xml switch.xml 2>&-; cxml check out.xml", "", "",
     0},
    {"closed pipe",
     "{ cxml print --encoding UTF-32 switch.xml; echo $? >status; } | true; cat status", "141\n",
     "", 0},
    {"closed pipe where the signal is ignored",
     "trap '' PIPE; { cxml print --encoding UTF-32 switch.xml; echo $? >status; } | true;"
     " cat status",
     "2\n", "", 0},
};

TEST(Usage, StandardStreams) {
    expectCommands(kStandardStreams);
}

TEST(Usage, ExhaustedMemoryIsOneLine) {
#ifdef CXML_INSTRUMENTED
    GTEST_SKIP() << "instrumented code, and an emulator, needs memory of its own";
#endif
    constexpr CommandCase kCases[] = {
        {"tree",
         "yes '<a>' | head -n 1000000 >deep.xml; yes '</a>' | head -n 1000000 >>deep.xml;"
         " ulimit -v 60000; cxml print deep.xml",
         "", "cxml: memory exhausted\n", 2},
        {"parse", "yes '<a>' | head -n 3000000 >deep.xml; ulimit -v 60000; cxml check deep.xml", "",
         "cxml: memory exhausted\n", 2},
    };
    expectCommands(kCases);
}

}  // namespace
