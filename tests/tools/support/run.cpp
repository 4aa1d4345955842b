#include "tests/tools/support/run.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <system_error>

namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(const char *what) {
    throw std::system_error(errno, std::generic_category(), what);
}

std::string temporaryTemplate() {
    return (fs::temp_directory_path() / "cxml-test-").string() + std::string(6, 'X');
}

// A directory of its own with the documents of the examples.
class WorkDirectory {
  public:
    WorkDirectory() {
        std::string path = temporaryTemplate();
        if (!mkdtemp(path.data())) fail("mkdtemp");
        path_ = path;
        for (const fs::directory_entry &entry : fs::directory_iterator(CXML_EXAMPLE_DATA)) {
            if (entry.path().extension() == ".xml") {
                fs::copy_file(entry.path(), path_ / entry.path().filename());
            }
        }
    }
    WorkDirectory(const WorkDirectory &) = delete;
    WorkDirectory &operator=(const WorkDirectory &) = delete;
    ~WorkDirectory() {
        std::error_code ignored;
        fs::remove_all(path_, ignored);
    }
    const fs::path &path() const { return path_; }

  private:
    fs::path path_;
};

// Collects what a program writes, however much it is, without anyone reading at the same time.
class Capture {
  public:
    Capture() {
        std::string path = temporaryTemplate();
        descriptor_ = mkostemp(path.data(), O_CLOEXEC);
        if (descriptor_ < 0) fail("mkostemp");
        unlink(path.c_str());
    }
    Capture(const Capture &) = delete;
    Capture &operator=(const Capture &) = delete;
    ~Capture() { close(descriptor_); }

    int descriptor() const { return descriptor_; }
    std::string text() const {
        std::string all;
        char piece[65536];
        ssize_t got = 0;
        while ((got = pread(descriptor_, piece, sizeof piece, static_cast<off_t>(all.size()))) >
               0) {
            all.append(piece, static_cast<std::size_t>(got));
        }
        return all;
    }

  private:
    int descriptor_;
};

// A report of a sanitizer must not look like one of the tool's own statuses.
void failLoudly(const char *variable) {
    const char *present = std::getenv(variable);
    const std::string value = (present ? std::string(present) + ":" : "") + "exitcode=99";
    setenv(variable, value.c_str(), 1);
}

[[noreturn]] void runShell(const std::string &line, const fs::path &directory, int out, int err) {
    const char *present = std::getenv("PATH");
    const std::string path = fs::path(CXML_PROGRAM).parent_path().string() + ":" +
                             fs::path(XSD2C_PROGRAM).parent_path().string() + ":" +
                             (present ? present : "/usr/bin:/bin");
    setenv("PATH", path.c_str(), 1);
    setenv("LC_ALL", "C.UTF-8", 1);
    failLoudly("ASAN_OPTIONS");
    failLoudly("UBSAN_OPTIONS");
    std::signal(SIGPIPE, SIG_DFL);
    const int in = open("/dev/null", O_RDONLY);
    if (in < 0 || dup2(in, 0) < 0 || dup2(out, 1) < 0 || dup2(err, 2) < 0 ||
        chdir(directory.c_str()) != 0) {
        _exit(126);
    }
    if (in > 2) close(in);
    execl("/bin/sh", "sh", "-c", line.c_str(), static_cast<char *>(nullptr));
    _exit(127);
}

std::string show(const std::string &text) {
    constexpr std::size_t kMost = 4000;
    return text.size() <= kMost
               ? text
               : text.substr(0, kMost) + "... (" + std::to_string(text.size()) + " bytes)";
}

}  // namespace

Result runLine(std::string_view line) {
    const WorkDirectory directory;
    const Capture out, err;
    const std::string command{line};
    const pid_t child = fork();
    if (child < 0) fail("fork");
    if (child == 0) runShell(command, directory.path(), out.descriptor(), err.descriptor());
    int status = 0;
    while (waitpid(child, &status, 0) < 0) {
        if (errno != EINTR) fail("waitpid");
    }
    return {out.text(), err.text(),
            WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status)};
}

void expectCommands(std::span<const CommandCase> cases) {
    for (const CommandCase &c : cases) {
        const Result got = runLine(c.line);
        if (got.out == c.out && got.err == c.err && got.status == c.status) continue;
        ADD_FAILURE() << c.name << "\n  $ " << c.line << "\n--- expected, status " << c.status
                      << ", standard output:\n"
                      << show(c.out) << "\n--- standard error:\n"
                      << show(c.err) << "\n--- got, status " << got.status << ", standard output:\n"
                      << show(got.out) << "\n--- standard error:\n"
                      << show(got.err);
    }
}
