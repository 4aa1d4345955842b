// Where documents are written to, and that nothing else is touched.
#include "tools/cxml/output.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/tools/support/run.h"
#include "tools/cxml/failure.h"

namespace {

namespace fs = std::filesystem;

constexpr CommandCase kFiles[] = {
    {"new file",
     "umask 027; cxml print -o out.xml switch.xml; stat -c %a out.xml;"
     " cxml print switch.xml | cmp - out.xml",
     "640\n", "", 0},
    {"a file that is there keeps its mode",
     "echo old >out.xml; chmod 604 out.xml; cxml print -o out.xml switch.xml;"
     " stat -c %a out.xml; cxml print switch.xml | cmp - out.xml",
     "604\n", "", 0},
    {"the document itself",
     "cxml print switch.xml >want; cxml print -o switch.xml switch.xml;"
     " cmp want switch.xml",
     "", "", 0},
    {"symbolic link",
     "mkdir d; echo old >d/real.xml; ln -s d/real.xml link;"
     " cxml print -o link switch.xml; readlink link;"
     " cxml print switch.xml | cmp - d/real.xml; ls d",
     "d/real.xml\nreal.xml\n", "", 0},
    {"symbolic link to nothing",
     "mkdir d; ln -s d/real.xml link; cxml print -o link switch.xml;"
     " readlink link; cxml check d/real.xml",
     "d/real.xml\n", "", 0},
    {"link to itself", "ln -s link link; cxml print -o link switch.xml", "",
     "cxml: link: Too many levels of symbolic links\n", 2},
    {"nothing else is left",
     "rm broken.xml switch.gb18030.xml; cxml print -o out.xml switch.xml;"
     " ls -A",
     "out.xml\nswitch.xml\n", "", 0},
    {"device", "cxml print -o /dev/null switch.xml", "", "", 0},
    {"full device", "cxml print -o /dev/full switch.xml", "",
     "cxml: /dev/full: No space left on device\n", 2},
    {"named pipe",
     "mkfifo p; cat p >got & cxml print -o p switch.xml; wait;"
     " cxml print switch.xml | cmp - got; test -p p",
     "", "", 0},
    {"directory", "mkdir d; cxml print -o d switch.xml", "", "cxml: d: Is a directory\n", 2},
    {"no such directory", "cxml print -o d/out.xml switch.xml", "",
     "cxml: d/out.xml: No such file or directory\n", 2},
    {"below a file", "cxml print -o broken.xml/out.xml switch.xml", "",
     "cxml: broken.xml/out.xml: Not a directory\n", 2},
    {"name too long", "cxml print -o $(printf '%0300d' 0) switch.xml 2>&1 | tail -c 21",
     ": File name too long\n", "", 0},
    {"no room",
     "rm broken.xml; echo old >out.xml; (trap '' XFSZ; ulimit -f 8;"
     " cxml print -o out.xml switch.xml); echo $?; cat out.xml; ls -A",
     "2\nold\nout.xml\nswitch.gb18030.xml\nswitch.xml\n", "cxml: out.xml: File too large\n", 0},
};

TEST(Output, Files) {
    expectCommands(kFiles);
}

TEST(Output, ProtectedFilesAndDirectories) {
    const std::string as =
        "if [ $(id -u) = 0 ]; then"
        "   command -v setpriv >/dev/null || exit 77;"
        "   as() { setpriv --reuid 65534 --clear-groups \"$@\"; };"
        "   as cxml --version >/dev/null 2>&1 || exit 77;"
        " else as() { \"$@\"; }; fi; chmod 555 .; ";
    Result result = runLine(as + "as cxml print -o out.xml switch.xml");
    if (result.status == 77) GTEST_SKIP() << "the superuser cannot become another user here";
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "cxml: out.xml: Permission denied\n");
    EXPECT_EQ(result.status, 2);

    result = runLine("mkdir d; echo old >d/out.xml; chmod 444 d/out.xml; chmod 777 d; " + as +
                     "as cxml print -o d/out.xml switch.xml; cat d/out.xml; ls -A d");
    EXPECT_EQ(result.out, "old\nout.xml\n");
    EXPECT_EQ(result.err, "cxml: d/out.xml: Permission denied\n");
}

std::string contentOf(const fs::path &path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

class OutputFile : public testing::Test {
  protected:
    void SetUp() override {
        std::string pattern =
            (fs::temp_directory_path() / "cxml-output-").string() + std::string(6, 'X');
        ASSERT_TRUE(mkdtemp(pattern.data()));
        directory_ = pattern;
        file_ = directory_ / "file";
        std::ofstream(file_) << "old";
    }
    void TearDown() override { fs::remove_all(directory_); }

    // What wait(2) tells of a process that does this.
    template <class Action>
    int statusOf(const Action &action) {
        const pid_t child = fork();
        if (child == 0) {
            const rlimit none{};
            setrlimit(RLIMIT_CORE, &none);
            action();
            _exit(0);
        }
        int status = 0;
        EXPECT_EQ(waitpid(child, &status, 0), child);
        return status;
    }
    std::ptrdiff_t filesThere() const {
        return std::distance(fs::directory_iterator(directory_), fs::directory_iterator());
    }

    fs::path directory_, file_;
};

TEST_F(OutputFile, IsReplacedByCommitAlone) {
    {
        tool::Output output{file_.string()};
        output.write("new");
        EXPECT_EQ(contentOf(file_), "old");
        EXPECT_EQ(filesThere(), 2);
    }
    EXPECT_EQ(contentOf(file_), "old");
    EXPECT_EQ(filesThere(), 1);
    {
        tool::Output output{file_.string()};
        output.write("ne");
        output.write("w");
        output.commit();
        EXPECT_EQ(contentOf(file_), "new");
    }
    EXPECT_EQ(contentOf(file_), "new");
    EXPECT_EQ(filesThere(), 1);
}

TEST_F(OutputFile, LongAndShortPiecesComeInOrder) {
    std::string expected;
    tool::Output output{file_.string()};
    for (const std::size_t length : {1u, 65535u, 1u, 65536u, 70000u, 2u, 200000u, 65534u, 3u}) {
        const std::string piece(length, static_cast<char>('a' + expected.size() % 26));
        output.write(piece);
        expected += piece;
    }
    output.commit();
    EXPECT_EQ(contentOf(file_), expected);
}

TEST_F(OutputFile, SignalsLeaveNothingBehind) {
    for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE, SIGXCPU, SIGXFSZ}) {
        const int status = statusOf([&] {
            std::signal(number, SIG_DFL);
            tool::Output output{file_.string()};
            output.write("new");
            std::raise(number);
            output.commit();
        });
        EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == number) << number;
        EXPECT_EQ(contentOf(file_), "old") << number;
        EXPECT_EQ(filesThere(), 1) << number;
    }
}

TEST_F(OutputFile, IgnoredSignalsStayIgnored) {
    const int status = statusOf([&] {
        std::signal(SIGHUP, SIG_IGN);
        tool::Output output{file_.string()};
        output.write("new");
        std::raise(SIGHUP);
        output.commit();
    });
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(contentOf(file_), "new");
    EXPECT_EQ(filesThere(), 1);
}

TEST_F(OutputFile, SignalHandlersArePutBack) {
    const int status = statusOf([&] {
        std::signal(SIGTERM, [](int) { _exit(42); });
        {
            tool::Output output{file_.string()};
            output.commit();
        }
        std::raise(SIGTERM);
    });
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 42);
}

TEST(Output, KeepsTheFailureOfTheSink) {
    tool::Output output{"/dev/full"};
    const std::string piece(70000, 'x');
    EXPECT_NE(tool::Output::sink(&output, piece.data(), 70000), 0u);
    EXPECT_NE(tool::Output::sink(&output, "x", 1), 0u);
    EXPECT_THROW(output.rethrow(), tool::Failure);
    EXPECT_THROW(output.commit(), tool::Failure);
}

}  // namespace
