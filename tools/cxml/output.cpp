#include "output.h"

#include <fcntl.h>
#include <limits.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <exception>
#include <memory>
#include <optional>
#include <utility>

#include "compactxml.h"
#include "failure.h"
#include "text.h"

namespace tool {
namespace {

constexpr std::size_t kBufferBytes = 65536;
// What ends a program that has done nothing wrong; the last two when it may not go on.
constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE, SIGXCPU, SIGXFSZ};

// What a signal is to remove: the one temporary file there can be.
const char *volatile temporaryFile = nullptr;

extern "C" void removeTemporaryFile(int number) {
    if (const char *path = temporaryFile) unlink(path);
    std::raise(number);  // comes when this handler, which is not installed any more, returns
}

// Signals that are not ignored remove the temporary file before they do what they did.
class SignalGuard {
  public:
    SignalGuard() {
        struct sigaction action {};
        action.sa_handler = removeTemporaryFile;
        action.sa_flags = static_cast<int>(SA_RESETHAND);
        sigemptyset(&action.sa_mask);
        for (std::size_t i = 0; i < std::size(kSignals); ++i) {
            sigaction(kSignals[i], nullptr, &before_[i]);
            if (before_[i].sa_handler != SIG_IGN) sigaction(kSignals[i], &action, nullptr);
        }
    }
    SignalGuard(const SignalGuard &) = delete;
    SignalGuard &operator=(const SignalGuard &) = delete;
    ~SignalGuard() {
        for (std::size_t i = 0; i < std::size(kSignals); ++i) {
            sigaction(kSignals[i], &before_[i], nullptr);
        }
    }

  private:
    struct sigaction before_[std::size(kSignals)] = {};
};

// No signal comes between the making of a file and the note of its name.
class SignalsHeld {
  public:
    SignalsHeld() {
        sigset_t held;
        sigemptyset(&held);
        for (const int number : kSignals) sigaddset(&held, number);
        sigprocmask(SIG_BLOCK, &held, &before_);
    }
    SignalsHeld(const SignalsHeld &) = delete;
    SignalsHeld &operator=(const SignalsHeld &) = delete;
    ~SignalsHeld() { sigprocmask(SIG_SETMASK, &before_, nullptr); }

  private:
    sigset_t before_;
};

std::string directoryOf(const std::string &path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? "" : path.substr(0, slash + 1);
}

// The name behind symbolic links, also where nothing is there yet.
std::string followLinks(std::string path, const std::string &name) {
    constexpr int kMostLinks = 40;
    for (int links = 0;; ++links) {
        char target[PATH_MAX];
        const ssize_t length = readlink(path.c_str(), target, sizeof target);
        if (length < 0) return path;  // no link, or nothing there
        if (links == kMostLinks) throw systemFailure(name, ELOOP);
        const std::string next{target, static_cast<std::size_t>(length)};
        path = next.starts_with('/') ? next : directoryOf(path) + next;
    }
}

mode_t newFileMode() {
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

// Writes all bytes and tells the error, or 0.
int writeAll(int file, const char *bytes, std::size_t length) {
    while (length != 0) {
        const ssize_t written = write(file, bytes, length);
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) return errno;
        bytes += written;
        length -= static_cast<std::size_t>(written);
    }
    return 0;
}

Failure writeFailure(const std::string &name, int error) {
    // Whoever has closed the pipe has seen enough.
    return error == EPIPE ? Failure(kTrouble, "") : systemFailure(name, error);
}

}  // namespace

struct Output::State {
    std::string name;  // as in messages
    int descriptor = -1;
    std::string path;       // of the file to be replaced
    std::string temporary;  // what is written until then; "" when there is no such file
    std::optional<SignalGuard> guard;
    std::string buffer;
    std::exception_ptr failure;  // of the sink

    State() = default;
    State(const State &) = delete;
    State &operator=(const State &) = delete;
    ~State() {
        if (descriptor > STDERR_FILENO) close(descriptor);
        removeTemporary();
    }

    void open(const std::string &file);
    void createTemporary(const struct stat *present);
    void keepAttributes(const struct stat *present);
    void removeTemporary();
    void put(std::string_view bytes);
    void flush();
    void rename();
};

void Output::State::open(const std::string &file) {
    name = file.empty() ? "standard output" : printable(file);
    buffer.reserve(kBufferBytes);
    if (file.empty()) {
        descriptor = STDOUT_FILENO;
        return;
    }
    path = followLinks(file, name);
    struct stat present {};
    if (stat(path.c_str(), &present) != 0) {
        if (errno != ENOENT) throw systemFailure(name, errno);
        createTemporary(nullptr);
    } else if (S_ISDIR(present.st_mode)) {
        throw systemFailure(name, EISDIR);
    } else if (S_ISREG(present.st_mode)) {
        // Renaming asks for the directory alone, but a file that is protected stays.
        if (faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) != 0) {
            throw systemFailure(name, errno);
        }
        createTemporary(&present);
    } else {
        descriptor = ::open(path.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY);
        if (descriptor < 0) throw systemFailure(name, errno);
    }
}

void Output::State::createTemporary(const struct stat *present) {
    guard.emplace();
    std::string pattern = directoryOf(path) + ".cxml-" + std::string(6, 'X');
    {
        const SignalsHeld held;
        descriptor = mkostemp(pattern.data(), O_CLOEXEC);
        if (descriptor < 0) throw systemFailure(name, errno);
        temporary = std::move(pattern);
        temporaryFile = temporary.c_str();
    }
    keepAttributes(present);
}

void Output::State::keepAttributes(const struct stat *present) {
    mode_t mode = newFileMode();
    if (present) {
        // Giving files away is the superuser's. Rights that come with an owner stay with him.
        const bool given = fchown(descriptor, present->st_uid, present->st_gid) == 0;
        mode = present->st_mode & (given ? 07777 : 0777);
    }
    if (fchmod(descriptor, mode) != 0) throw systemFailure(name, errno);
}

void Output::State::removeTemporary() {
    if (temporary.empty()) return;
    unlink(temporary.c_str());
    temporaryFile = nullptr;
    temporary.clear();
}

void Output::State::put(std::string_view bytes) {
    if (bytes.size() > kBufferBytes - buffer.size()) {
        flush();
        if (bytes.size() >= kBufferBytes) {
            const int error = writeAll(descriptor, bytes.data(), bytes.size());
            if (error != 0) throw writeFailure(name, error);
            return;
        }
    }
    buffer.append(bytes);
}

void Output::State::flush() {
    const int error = writeAll(descriptor, buffer.data(), buffer.size());
    buffer.clear();
    if (error != 0) throw writeFailure(name, error);
}

void Output::State::rename() {
    // Some file systems know no fsync.
    if (fsync(descriptor) != 0 && errno != EINVAL) throw systemFailure(name, errno);
    if (close(std::exchange(descriptor, -1)) != 0) throw systemFailure(name, errno);
    if (std::rename(temporary.c_str(), path.c_str()) != 0) throw systemFailure(name, errno);
    const SignalsHeld held;
    temporaryFile = nullptr;
    temporary.clear();
}

Output::Output(const std::string &name) : state_(nullptr) {
    auto state = std::make_unique<State>();
    state->open(name);
    state_ = state.release();
}

Output::~Output() {
    delete state_;
}

void Output::write(std::string_view bytes) {
    state_->put(bytes);
}

void Output::commit() {
    rethrow();
    state_->flush();
    if (!state_->temporary.empty()) {
        state_->rename();
    } else if (state_->descriptor > STDERR_FILENO) {
        if (close(std::exchange(state_->descriptor, -1)) != 0) {
            throw systemFailure(state_->name, errno);
        }
    }
}

std::uint32_t Output::sink(void *output, const char *bytes, std::uint32_t length) noexcept {
    State &state = *static_cast<Output *>(output)->state_;
    if (state.failure) return XML_REFUSED;
    try {
        state.put({bytes, length});
        return XML_OK;
    } catch (...) {
        state.failure = std::current_exception();
    }
    return XML_REFUSED;
}

void Output::rethrow() {
    if (state_->failure) std::rethrow_exception(state_->failure);
}

}  // namespace tool
