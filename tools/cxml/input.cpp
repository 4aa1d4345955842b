#include "input.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

#include "failure.h"
#include "text.h"

namespace tool {
namespace {

class Descriptor {
  public:
    explicit Descriptor(int number) : number_(number) {}
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    ~Descriptor() {
        if (number_ >= 0) close(number_);
    }
    int get() const { return number_; }
    int release() {
        const int number = number_;
        number_ = -1;
        return number;
    }

  private:
    int number_;
};

std::string temporaryDirectory() {
    const char *directory = std::getenv("TMPDIR");
    return directory && *directory ? directory : "/tmp";
}

int createUnlinked(const std::string &directory) {
    std::string path = directory + "/cxml-" + std::string(6, 'X');
    const int file = mkostemp(path.data(), O_CLOEXEC);
    if (file < 0) throw systemFailure(directory, errno);
    unlink(path.c_str());
    return file;
}

void writeAll(int file, const char *bytes, std::size_t length, const std::string &directory) {
    while (length != 0) {
        const ssize_t written = write(file, bytes, length);
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) throw systemFailure(directory, errno);
        bytes += written;
        length -= static_cast<std::size_t>(written);
    }
}

// Copies all that is left to be read to a file without a name.
int copyToFile(int source, const std::string &name) {
    const std::string directory = temporaryDirectory();
    Descriptor copy{createUnlinked(directory)};
    static char piece[65536];
    for (;;) {
        const ssize_t got = read(source, piece, sizeof piece);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) throw systemFailure(name, errno);
        if (got == 0) return copy.release();
        writeAll(copy.get(), piece, static_cast<std::size_t>(got), directory);
    }
}

struct stat statusOf(int descriptor, const std::string &name) {
    struct stat status {};
    if (fstat(descriptor, &status) != 0) throw systemFailure(name, errno);
    if (S_ISDIR(status.st_mode)) throw systemFailure(name, EISDIR);
    return status;
}

std::string pathOfDescriptor(int descriptor) {
    return "/proc/self/fd/" + std::to_string(descriptor);
}

// Whether standard input is a file that can be opened once more and is then read from where it
// stands now.
bool canReopen(const struct stat &status) {
    return S_ISREG(status.st_mode) && lseek(STDIN_FILENO, 0, SEEK_CUR) == 0 &&
           access(pathOfDescriptor(STDIN_FILENO).c_str(), R_OK) == 0;
}

std::uint64_t sizeOf(const struct stat &status) {
    return S_ISREG(status.st_mode) ? static_cast<std::uint64_t>(status.st_size) : 0;
}

}  // namespace

Input::Input(const std::string &name) {
    if (name == "-") {
        static bool used = false;
        name_ = "standard input";
        if (used) throw Failure(kTrouble, name_ + " can be read only once");
        used = true;
        const struct stat status = statusOf(STDIN_FILENO, name_);
        if (canReopen(status)) {
            path_ = pathOfDescriptor(STDIN_FILENO);
            size_ = sizeOf(status);
            return;
        }
        descriptor_ = copyToFile(STDIN_FILENO, name_);
    } else {
        name_ = name.empty() ? "''" : printable(name);
        const Descriptor file{open(name.c_str(), O_RDONLY | O_CLOEXEC)};
        if (file.get() < 0) throw systemFailure(name_, errno);
        const struct stat status = statusOf(file.get(), name_);
        if (S_ISREG(status.st_mode)) {
            path_ = name;
            size_ = sizeOf(status);
            return;
        }
        descriptor_ = copyToFile(file.get(), name_);
    }
    path_ = pathOfDescriptor(descriptor_);
    size_ = sizeOf(statusOf(descriptor_, name_));
}

Input::~Input() {
    if (descriptor_ >= 0) close(descriptor_);
}

}  // namespace tool
