#include "xsd2c/output_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace xsd2c {
namespace {

[[noreturn]] void fail(const std::string &path, int error) {
    throw WriteError(path + ": " + std::strerror(error));
}

void writeAll(int file, std::string_view text, const std::string &path) {
    while (!text.empty()) {
        const ssize_t written = write(file, text.data(), text.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) fail(path, errno);
        text.remove_prefix(static_cast<std::size_t>(written));
    }
}

// The rights that a new file gets.
mode_t ordinaryMode() {
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

void appendEscaped(std::string &rule, const std::string &name) {
    for (const char c : name) {
        if (c == ' ' || c == '#' || c == '\\') rule += '\\';
        if (c == '$') rule += '$';
        rule += c;
    }
}

}  // namespace

OutputFiles::~OutputFiles() {
    for (const File &file : files_) unlink(file.temporary.c_str());
}

void OutputFiles::add(const std::string &path, std::string_view text) {
    std::string temporary = path + "." + std::string(6, 'X');
    const int file = mkostemp(temporary.data(), O_CLOEXEC);
    if (file < 0) fail(path, errno);
    files_.push_back({temporary, path});
    try {
        writeAll(file, text, path);
        if (fchmod(file, ordinaryMode()) != 0) fail(path, errno);
    } catch (...) {
        close(file);
        throw;
    }
    if (close(file) != 0) fail(path, errno);
}

void OutputFiles::commit() {
    // A directory in the place of a file is the one thing that is left to go wrong.
    for (const File &file : files_) {
        struct stat status {};
        if (stat(file.path.c_str(), &status) == 0 && S_ISDIR(status.st_mode)) {
            fail(file.path, EISDIR);
        }
    }
    while (!files_.empty()) {
        const File &file = files_.back();
        if (std::rename(file.temporary.c_str(), file.path.c_str()) != 0) fail(file.path, errno);
        files_.pop_back();
    }
}

std::string makeRule(const std::vector<std::string> &targets,
                     const std::vector<std::string> &sources) {
    std::string rule;
    for (const std::string &target : targets) {
        if (!rule.empty()) rule += ' ';
        appendEscaped(rule, target);
    }
    rule += ':';
    for (const std::string &source : sources) {
        rule += " \\\n  ";
        appendEscaped(rule, source);
    }
    return rule + "\n";
}

}  // namespace xsd2c
