// How far a parse has come, on a terminal.
#include "tools/cxml/progress.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>

namespace {

// Runs something with standard error on a terminal of its own, and gives what appeared there.
std::string onTerminal(const std::function<void()> &action) {
    const int terminal = posix_openpt(O_RDWR | O_NOCTTY);
    if (terminal < 0 || grantpt(terminal) != 0 || unlockpt(terminal) != 0) return "no terminal";
    const std::string name = ptsname(terminal);
    const pid_t child = fork();
    if (child == 0) {
        close(terminal);
        const int error = open(name.c_str(), O_RDWR | O_NOCTTY);
        if (error < 0 || dup2(error, STDERR_FILENO) < 0) _exit(1);
        action();
        _exit(0);
    }
    std::string text;
    char piece[256];
    for (;;) {
        const ssize_t got = read(terminal, piece, sizeof piece);
        if (got > 0) text.append(piece, static_cast<std::size_t>(got));
        if (got <= 0) {
            // Reading fails while the child has not opened the other end, and after it has gone.
            int status = 0;
            if (waitpid(child, &status, WNOHANG) == child) break;
            usleep(1000);
        }
    }
    close(terminal);
    return text;
}

class ProgressTest : public testing::Test {
  protected:
    void SetUp() override {
        std::string pattern = (std::filesystem::temp_directory_path() / "cxml-progress-").string() +
                              std::string(6, 'X');
        const int file = mkstemp(pattern.data());
        ASSERT_GE(file, 0);
        close(file);
        path_ = pattern;
        std::ofstream(path_) << std::string(1000, ' ');
    }
    void TearDown() override { std::filesystem::remove(path_); }

    // A parse that has read so far, and comes by often.
    static void passBy(tool::Progress &progress, int file, off_t position) {
        lseek(file, position, SEEK_SET);
        XML_IO_InStream stream{};
        stream.source = static_cast<std::uintptr_t>(file);
        XML_Parser_Ctx context{};
        context.input = &stream;
        for (int i = 0; i < 5000; ++i) progress.step(&context);
    }

    std::string path_;
};

constexpr useconds_t kHalfSecond = 500000;

TEST_F(ProgressTest, AppearsAfterHalfASecondAndGoesAway) {
    const std::string text = onTerminal([&] {
        const tool::Input input{path_};
        const int file = open(path_.c_str(), O_RDONLY);
        tool::Progress progress{input};
        passBy(progress, file, 100);  // too early
        usleep(kHalfSecond + 20000);
        passBy(progress, file, 423);
        passBy(progress, file, 600);  // too soon after the last
        usleep(120000);
        passBy(progress, file, 1000);
    });
    EXPECT_EQ(text, "\r\033[K" + path_ + ": 42 %\r\033[K" + path_ + ": 100 %\r\033[K");
}

TEST_F(ProgressTest, ShortParsesShowNothing) {
    const std::string text = onTerminal([&] {
        const tool::Input input{path_};
        const int file = open(path_.c_str(), O_RDONLY);
        tool::Progress progress{input};
        passBy(progress, file, 500);
    });
    EXPECT_EQ(text, "");
}

TEST_F(ProgressTest, NothingIsShownWithoutATerminal) {
    const std::string text = onTerminal([&] {
        const int null = open("/dev/null", O_WRONLY);
        const int terminal = dup(STDERR_FILENO);
        dup2(null, STDERR_FILENO);
        const tool::Input input{path_};
        const int file = open(path_.c_str(), O_RDONLY);
        tool::Progress progress{input};
        dup2(terminal, STDERR_FILENO);
        usleep(kHalfSecond + 20000);
        passBy(progress, file, 500);
    });
    EXPECT_EQ(text, "");
}

}  // namespace
