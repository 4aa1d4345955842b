// cxml check: what it says of good and bad documents.
#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "tests/tools/support/run.h"

namespace {

constexpr CommandCase kVerdicts[] = {
    {"accepted", "cxml check switch.xml", "", "", 0},
    {"another encoding", "cxml check switch.gb18030.xml", "", "", 0},
    {"refused", "cxml check broken.xml", "", "broken.xml:4:29: tag name mismatch.\n", 1},
    {"several", "cxml check switch.xml switch.gb18030.xml", "2 files, 2 accepted, 0 refused\n", "",
     0},
    {"some refused", "cxml check switch.xml broken.xml switch.gb18030.xml",
     "3 files, 2 accepted, 1 refused\n", "broken.xml:4:29: tag name mismatch.\n", 1},
    {"some not read", "cxml check broken.xml nothere.xml switch.xml",
     "3 files, 1 accepted, 1 refused, 1 not read\n",
     "broken.xml:4:29: tag name mismatch.\ncxml: nothere.xml: No such file or directory\n", 2},
    {"standard input", "cxml check - <switch.xml", "", "", 0},
    {"standard input refused", "cat broken.xml | cxml check -", "",
     "standard input:4:29: tag name mismatch.\n", 1},
    {"empty file", ": >empty.xml; cxml check empty.xml", "", "empty.xml:1:1: document is empty.\n",
     1},
    {"blanks alone", "printf ' \\n ' >blank.xml; cxml check blank.xml", "",
     "blank.xml:2:2: document is empty.\n", 1},
    {"cut off in a tag", "printf '<a><b' >cut.xml; cxml check cut.xml", "",
     "cut.xml:1:6: expecting a space.\n", 1},
    {"cut off in the content", "printf '<a>\\ntext' >cut.xml; cxml check cut.xml", "",
     "cut.xml:2:5: tag not finished.\n", 1},
    {"cut off in a character", "printf '<a>\\344\\270' >cut.xml; cxml check cut.xml", "",
     "cut.xml:1:4: invalid character.\n", 1},
    {"unknown encoding",
     "printf '<?xml version=\"1.0\" encoding=\"EBCDIC\"?><a/>' >e.xml;"
     " cxml check e.xml",
     "", "e.xml:1:37: unsupported encoding.\n", 1},
    {"file name with a command for the terminal",
     "n=$(printf 'a\\033[2J.xml'); printf 'x' >\"$n\"; cxml check \"$n\"", "",
     "a\\x1B[2J.xml:1:1: start tag expected, '<' not found.\n", 1},
    {"no context, no snippet of the document",
     "printf '<a>\\033]0;x\\007</a>' >t.xml;"
     " cxml check t.xml",
     "", "t.xml:1:4: invalid character.\n", 1},
};

TEST(Check, Verdicts) {
    expectCommands(kVerdicts);
}

constexpr CommandCase kStats[] = {
    {"counts",
     "printf '<a x=\"1\" y=\"2\"><b>\\344\\270\\255 &amp;</b><c><![CDATA[12]]></c></a>' >s.xml;"
     " cxml check --stats s.xml | grep -v MB/s",
     "s.xml\n  elements    3\n  attributes  2\n  text bytes  7\n  depth       2\n"
     "  encoding    UTF-8\n1 file, 1 accepted, 0 refused\n",
     "", 0},
    {"a refused file has none", "cxml check --stats broken.xml switch.gb18030.xml | grep -v MB/s",
     "switch.gb18030.xml\n  elements    314\n  attributes  519\n  text bytes  2126\n"
     "  depth       6\n  encoding    GB18030\n2 files, 1 accepted, 1 refused\n",
     "broken.xml:4:29: tag name mismatch.\n", 0},
    {"the rate is a number",
     "cxml check --stats switch.xml | grep -cE '^  MB/s        [0-9]+\\.[0-9]$'", "1\n", "", 0},
};

TEST(Check, Stats) {
    expectCommands(kStats);
}

// The caret stands under the first character that was not read.
constexpr CommandCase kContext[] = {
    {"wide characters", "cxml check --context broken.xml", "",
     "broken.xml:4:29: tag name mismatch.\n"
     "    <if:description>会议室</if:note>\n"
     "                               ^\n",
     1},
    {"first character", "printf 'x' >d.xml; cxml check --context d.xml", "",
     "d.xml:1:1: start tag expected, '<' not found.\nx\n^\n", 1},
    {"behind the end", "printf '<a' >d.xml; cxml check --context d.xml", "",
     "d.xml:1:3: expecting a space.\n<a\n  ^\n", 1},
    {"empty document", ": >d.xml; cxml check --context d.xml", "",
     "d.xml:1:1: document is empty.\n\n^\n", 1},
    {"on an empty last line", "printf '<a>\\n' >d.xml; cxml check --context d.xml", "",
     "d.xml:2:1: tag not finished.\n\n^\n", 1},
    {"tab is a blank", "printf '<a>\\n\\t<b\\tc=1/></a>' >d.xml; cxml check --context d.xml", "",
     "d.xml:2:7: string not started expecting \" or '.\n <b c=1/></a>\n      ^\n", 1},
    {"control character", "printf '<a>x\\033</a>' >d.xml; cxml check --context d.xml", "",
     "d.xml:1:5: invalid character.\n<a>x\\x1B</a>\n    ^\n", 1},
    {"bytes that are no character",
     "printf '<a>\\344\\270\\255\\377\\377</a>' >d.xml;"
     " cxml check --context d.xml",
     "", "d.xml:1:5: invalid character.\n<a>中\xEF\xBF\xBD\xEF\xBF\xBD</a>\n     ^\n", 1},
    {"combining character", "printf '<a>e\\314\\201\\001</a>' >d.xml; cxml check --context d.xml",
     "", "d.xml:1:6: invalid character.\n<a>e\xCC\x81\\x01</a>\n    ^\n", 1},
    {"carriage return", "printf '<a>\\r<b>\\r</c>' >d.xml; cxml check --context d.xml", "",
     "d.xml:3:3: tag name mismatch.\n</c>\n  ^\n", 1},
    {"carriage return and line feed",
     "printf '<a>\\r\\n<b>\\r\\n</c>\\r\\n' >d.xml; cxml check --context d.xml", "",
     "d.xml:3:3: tag name mismatch.\n</c>\n  ^\n", 1},
    {"GBK",
     "printf '<?xml version=\"1.0\" encoding=\"GBK\"?>\\n<a>\\326\\320\\316\\304</b>' >d.xml;"
     " cxml check --context d.xml",
     "", "d.xml:2:8: tag name mismatch.\n<a>中文</b>\n         ^\n", 1},
    {"UTF-16BE without a mark, the order not declared",
     "printf '<?xml version=\"1.0\" encoding=\"UTF-16\"?>\\n<a>\\344\\270\\255</b>' |"
     " iconv -f UTF-8 -t UTF-16BE >d.xml; cxml check --context d.xml",
     "", "d.xml:2:7: tag name mismatch.\n<a>中</b>\n       ^\n", 1},
    {"UTF-16LE with a mark",
     "{ printf '\\377\\376'; printf '<a>\\344\\270\\255</b>' | iconv -f UTF-8 -t UTF-16LE; }"
     " >d.xml; cxml check --context d.xml",
     "", "d.xml:1:7: tag name mismatch.\n<a>中</b>\n       ^\n", 1},
    {"through a pipe", "cat broken.xml | cxml check --context -", "",
     "standard input:4:29: tag name mismatch.\n"
     "    <if:description>会议室</if:note>\n"
     "                               ^\n",
     1},
    {"standard input that is a file", "cxml check --context - <broken.xml", "",
     "standard input:4:29: tag name mismatch.\n"
     "    <if:description>会议室</if:note>\n"
     "                               ^\n",
     1},
    {"several", "cp broken.xml b.xml; cxml check --context broken.xml b.xml",
     "2 files, 0 accepted, 2 refused\n",
     "broken.xml:4:29: tag name mismatch.\n"
     "    <if:description>会议室</if:note>\n"
     "                               ^\n"
     "b.xml:4:29: tag name mismatch.\n"
     "    <if:description>会议室</if:note>\n"
     "                               ^\n",
     1},
};

TEST(Check, Context) {
    expectCommands(kContext);
}

struct Excerpt {
    std::string line;
    std::size_t caret;
};

// Checks a document of "<a>", text and an end tag that does not match, and gives what is shown.
Excerpt excerptOf(const std::string &document) {
    const Result result =
        runLine("cat >d.xml <<'END'\n" + document + "\nEND\ncxml check --context d.xml");
    EXPECT_EQ(result.status, 1);
    const std::size_t first = result.err.find('\n');
    const std::size_t second = result.err.find('\n', first + 1);
    const std::size_t third = result.err.find('\n', second + 1);
    if (third == std::string::npos) {
        ADD_FAILURE() << result.err;
        return {};
    }
    return {result.err.substr(first + 1, second - first - 1), third - second - 2};
}

std::string times(std::size_t count, const std::string &text) {
    std::string all;
    for (std::size_t i = 0; i < count; ++i) all += text;
    return all;
}

TEST(Check, ContextOfLongLines) {
    // 79 cells are shown whole, 80 are not.
    Excerpt shown = excerptOf("<a>" + times(72, "x") + "</b>");
    EXPECT_EQ(shown.line, "<a>" + times(72, "x") + "</b>");
    EXPECT_EQ(shown.caret, 77u);

    shown = excerptOf("<a>" + times(73, "x") + "</b>");
    EXPECT_EQ(shown.line, "..." + times(72, "x") + "</b>");
    EXPECT_EQ(shown.caret, 77u);

    shown = excerptOf("<a></b>" + times(72, "x"));
    EXPECT_EQ(shown.line, "<a></b>" + times(72, "x"));
    EXPECT_EQ(shown.caret, 5u);

    shown = excerptOf("<a></b>" + times(73, "x"));
    EXPECT_EQ(shown.line, "<a></b>" + times(69, "x") + "...");
    EXPECT_EQ(shown.caret, 5u);

    // Both ends are left out, and the column stands where both sides can be seen.
    shown = excerptOf("<a>" + times(5000, "x") + "</b>" + times(5000, "y"));
    EXPECT_EQ(shown.line, "..." + times(47, "x") + "</b>" + times(22, "y") + "...");
    EXPECT_EQ(shown.caret, 52u);

    // A wide character that has no room for both its cells is left out.
    shown = excerptOf("<a>" + times(500, "中") + "</b>" + times(500, "文"));
    EXPECT_EQ(shown.line, "..." + times(23, "中") + "</b>" + times(11, "文") + "...");
    EXPECT_EQ(shown.caret, 51u);
}

// On a terminal the line is shown without being asked for.
TEST(Check, ContextOnATerminal) {
    if (runLine("script -qec true /dev/null").status != 0) {
        GTEST_SKIP() << "script(1), which makes a terminal, is not installed";
    }
    const Result error = runLine("script -qec 'cxml check broken.xml' /dev/null");
    EXPECT_EQ(error.out,
              "broken.xml:4:29: tag name mismatch.\r\n"
              "    <if:description>会议室</if:note>\r\n"
              "                               ^\r\n");
    EXPECT_EQ(error.status, 1);
    EXPECT_EQ(runLine("script -qec 'cxml check switch.xml' /dev/null").out, "");
}

double secondsFor(const std::string &line, const std::string &out, const std::string &err,
                  int status) {
    const auto start = std::chrono::steady_clock::now();
    const Result result = runLine(line);
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
    EXPECT_EQ(result.out, out);
    EXPECT_EQ(result.err, err);
    EXPECT_EQ(result.status, status);
    return time.count();
}

// 306 MB on one line, through a pipe; neither memory nor time depends on where lines end.
constexpr char kLongLine[] =
    "make() { printf '<a>'; yes '<port name=\"1/0/1\" vlan=\"10\"><mtu>9216</mtu>"
    "<description>uplink to core switch</description></port>   ' | head -n 3000000 | tr -d '\\n';"
    " printf \"$1\"; }; ";

TEST(Check, LargeDocumentsNeedLittleMemory) {
#ifdef CXML_INSTRUMENTED
    GTEST_SKIP() << "instrumented code, and an emulator, needs memory of its own";
#endif
    const std::string make = kLongLine;
    EXPECT_LT(secondsFor(make + "make '</a>' | { ulimit -v 40000; cxml check -; }", "", "", 0), 10);
    EXPECT_LT(secondsFor(make + "make '</b>' | { ulimit -v 40000; cxml check --context -; }", "",
                         "standard input:1:306000006: tag name mismatch.\n"
                         "...mtu>9216</mtu><description>uplink to core switch</description></port>"
                         "   </b>\n" +
                             std::string(77, ' ') + "^\n",
                         1),
              20);
}

TEST(Check, MillionNestedElements) {
    const std::string make =
        "{ yes '<a>' | head -n 1000000; yes '</a>' | head -n 1000000; } >deep.xml; ";
    EXPECT_LT(
        secondsFor(make + "cxml check --stats deep.xml | grep -v MB/s",
                   "deep.xml\n  elements    1000000\n  attributes  0\n  text bytes  0\n"
                   "  depth       1000000\n  encoding    UTF-8\n1 file, 1 accepted, 0 refused\n",
                   "", 0),
        10);
}

}  // namespace
