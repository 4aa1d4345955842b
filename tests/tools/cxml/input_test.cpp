// Where documents come from.
#include "tools/cxml/input.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "tests/tools/support/run.h"

namespace {

constexpr CommandCase kSources[] = {
    {"not there", "cxml check nothere.xml", "", "cxml: nothere.xml: No such file or directory\n",
     2},
    {"directory", "cxml check .", "", "cxml: .: Is a directory\n", 2},
    {"standard input that is a directory", "cxml check - <.", "",
     "cxml: standard input: Is a directory\n", 2},
    {"below a file", "cxml check switch.xml/x", "", "cxml: switch.xml/x: Not a directory\n", 2},
    {"pipe", "cat switch.xml | cxml check -", "", "", 0},
    {"named pipe", "mkfifo p; cat broken.xml >p & cxml check --context p", "",
     "p:4:29: tag name mismatch.\n"
     "    <if:description>会议室</if:note>\n"
     "                               ^\n",
     1},
    {"device without content", "cxml check /dev/null", "", "/dev/null:1:1: document is empty.\n",
     1},
    {"file at its beginning", "cxml check - <switch.xml", "", "", 0},
    {"file of which a part has been read",
     "printf 'first line\\n<a/>' >x; { read -r line; cxml check -; } <x", "", "", 0},
    {"file that has no name any more", "exec <switch.xml; rm switch.xml; cxml check -", "", "", 0},
    {"twice", "cat switch.xml | cxml check - -", "2 files, 1 accepted, 0 refused, 1 not read\n",
     "cxml: standard input can be read only once\n", 2},
    {"twice, a file", "cxml diff - - <switch.xml", "",
     "cxml: standard input can be read only once\n", 2},
    {"copies are kept where TMPDIR says", "cat switch.xml | TMPDIR=$PWD/nothere cxml check -", "",
     "cxml: DIR/nothere: No such file or directory\n", 2},
    {"no copy is left", "mkdir tmp; cat switch.xml | TMPDIR=$PWD/tmp cxml check - && ls -A tmp", "",
     "", 0},
    {"no room for the copy",
     "yes '<a/>' | { trap '' XFSZ; ulimit -f 8; TMPDIR=$PWD cxml check -; }", "",
     "cxml: DIR: File too large\n", 2},
};

TEST(Input, Sources) {
    for (const CommandCase &c : kSources) {
        // The directory of the case has another name each time.
        const std::string line = "{ " + std::string(c.line) +
                                 "\n} 2>err; s=$?;"
                                 " sed \"s,$PWD,DIR,\" err >&2; exit $s";
        const CommandCase command[] = {{c.name, line.c_str(), c.out, c.err, c.status}};
        expectCommands(command);
    }
}

TEST(Input, TellsNameAndSize) {
    std::string path =
        (std::filesystem::temp_directory_path() / "cxml-input-").string() + std::string(6, 'X');
    const int file = mkstemp(path.data());
    ASSERT_GE(file, 0);
    ASSERT_EQ(write(file, "<a/>", 4), 4);
    close(file);
    const tool::Input input{path};
    EXPECT_EQ(input.name(), path);
    EXPECT_EQ(input.path(), path);
    EXPECT_EQ(input.size(), 4u);
    std::filesystem::remove(path);
}

// As a user that may not read the file: the superuser may read all.
TEST(Input, Unreadable) {
    const Result result = runLine(
        "chmod 000 switch.xml; chmod 755 .;"
        " if [ $(id -u) = 0 ]; then"
        "   command -v setpriv >/dev/null || exit 77;"
        "   setpriv --reuid 65534 --clear-groups true 2>/dev/null || exit 77;"
        "   setpriv --reuid 65534 --clear-groups cxml --version >/dev/null 2>&1 || exit 77;"
        "   setpriv --reuid 65534 --clear-groups cxml check switch.xml;"
        " else cxml check switch.xml; fi");
    if (result.status == 77) GTEST_SKIP() << "the superuser cannot become another user here";
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "cxml: switch.xml: Permission denied\n");
    EXPECT_EQ(result.status, 2);
}

}  // namespace
