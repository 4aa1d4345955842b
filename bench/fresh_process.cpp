#include "fresh_process.h"

#include <spawn.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <optional>
#include <string>
#include <vector>

extern "C" char **environ;

namespace bench {
namespace {

constexpr std::string_view kTaskOption = "--in-fresh-process=";
constexpr std::string_view kInputOption = "--input=";
constexpr std::string_view kHeapTask = "heap";

// ---- this side ------------------------------------------------------------------------------

// A file without a name, which children inherit.
class Input {
  public:
    explicit Input(std::span<const std::byte> bytes) : file_(memfd_create("bench-input", 0)) {
        while (!bytes.empty()) {
            const ssize_t written = write(file_, bytes.data(), bytes.size());
            if (written <= 0) break;
            bytes = bytes.subspan(static_cast<std::size_t>(written));
        }
        complete_ = bytes.empty();
    }
    ~Input() {
        if (file_ >= 0) close(file_);
    }
    Input(const Input &) = delete;
    Input &operator=(const Input &) = delete;

    bool isComplete() const { return file_ >= 0 && complete_; }
    std::string option() const { return std::string(kInputOption) + std::to_string(file_); }

  private:
    int file_;
    bool complete_ = false;
};

// Reads to the end; what the child prints fits into a pipe.
std::string readAll(int file) {
    std::string text;
    char buffer[256];
    for (ssize_t got; (got = read(file, buffer, sizeof buffer)) > 0;) {
        text.append(buffer, static_cast<std::size_t>(got));
    }
    return text;
}

std::string outputOf(const std::string &task, const std::string &input) {
    int ends[2];
    if (pipe(ends) != 0) return {};
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    posix_spawn_file_actions_addclose(&actions, ends[0]);
    std::string program = "compactxml_bench";
    std::string first = task;
    std::string second = input;
    char *const arguments[] = {program.data(), first.data(), second.data(), nullptr};
    pid_t child = 0;
    const int failed = posix_spawn(&child, "/proc/self/exe", &actions, nullptr, arguments, environ);
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    std::string text = failed ? std::string() : readAll(ends[0]);
    close(ends[0]);
    int status = 0;
    if (failed || waitpid(child, &status, 0) != child || status != 0) return {};
    return text;
}

class FreshWork : public Work {
  public:
    // One run of a small job says little, so it is done several times.
    FreshWork(std::string task, std::span<const std::byte> input)
        : task_(std::string(kTaskOption) + std::move(task)),
          input_(input),
          repetitions_(input.size() < 1000000 ? 5 : 1) {}

    bool run() override {
        std::vector<double> nanoseconds;
        for (int i = 0; i < repetitions_ && input_.isComplete(); ++i) {
            const std::string text = outputOf(task_, input_.option());
            double told = 0;
            const char *end = text.data() + text.size();
            if (std::from_chars(text.data(), end, told).ec != std::errc() || told <= 0) break;
            nanoseconds.push_back(told);
        }
        if (nanoseconds.size() != static_cast<std::size_t>(repetitions_)) return false;
        const auto middle = nanoseconds.begin() + repetitions_ / 2;
        std::nth_element(nanoseconds.begin(), middle, nanoseconds.end());
        seconds_ = *middle * 1e-9;
        return true;
    }
    double seconds() const override { return seconds_; }

  private:
    std::string task_;
    Input input_;
    int repetitions_;
    double seconds_ = 0;
};

// ---- the other side -------------------------------------------------------------------------

double processNanoseconds() {
    std::timespec now;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e9 + static_cast<double>(now.tv_nsec);
}

int tell(bool ok, double nanoseconds) {
    if (ok) std::printf("%.0f\n", nanoseconds);
    return ok ? 0 : 1;
}

void *freshPages(std::size_t size) {
    void *pages = mmap(nullptr, size, PROT_READ | PROT_WRITE,
                       MAP_PRIVATE | MAP_ANONYMOUS | MAP_POPULATE, -1, 0);
    return pages == MAP_FAILED ? nullptr : pages;
}

// What the parent handed over, in pages of its own that may be written, with a NUL behind it.
std::optional<std::span<char>> mapInput(int file) {
    struct stat about;
    if (fstat(file, &about) != 0 || about.st_size <= 0) return std::nullopt;
    const auto size = static_cast<std::size_t>(about.st_size);
    void *source = mmap(nullptr, size, PROT_READ, MAP_PRIVATE | MAP_POPULATE, file, 0);
    auto *bytes = static_cast<char *>(freshPages(size + 1));
    if (source == MAP_FAILED || !bytes) return std::nullopt;
    std::memcpy(bytes, source, size);
    munmap(source, size);
    return std::span<char>(bytes, size);
}

int buildHere(const Contestant &contestant, Encoding encoding, std::span<char> document) {
    // What a library does once only, and finding its functions, is not timed.
    char tiny[] = "<a>\xE4\xB8\xAD</a>";
    if (void *tree = contestant.build({tiny, sizeof tiny - 1}, Encoding::utf8)) {
        contestant.destroy(tree);
    }
    const double begin = processNanoseconds();
    void *tree = contestant.build(document, encoding);
    if (tree) contestant.destroy(tree);
    return tell(tree != nullptr, processNanoseconds() - begin);
}

// The plan is its sizes and, as many, its deletions.
int playHere(std::span<const char> bytes) {
    const std::span plan(reinterpret_cast<const std::uint32_t *>(bytes.data()),
                         bytes.size() / sizeof(std::uint32_t));
    const std::size_t blocks = plan.size() / 2;
    auto *live = static_cast<void **>(freshPages(blocks * sizeof(void *)));
    if (!live) return 1;
    const double begin = processNanoseconds();
    const bool ok = playHeapPlan(plan.first(blocks), plan.last(blocks), {live, blocks});
    return tell(ok, processNanoseconds() - begin);
}

// "CONTESTANT/ENCODING"
int doTask(std::string_view task, std::span<char> input) {
    if (task == kHeapTask) return playHere(input);
    for (const Contestant *contestant : contestants()) {
        for (const Encoding encoding : {Encoding::utf8, Encoding::utf16le, Encoding::gb18030}) {
            const std::string_view name = contestant->name;
            if (task.starts_with(name) && task.substr(name.size()).starts_with('/') &&
                task.substr(name.size() + 1) == encodingName(encoding)) {
                return buildHere(*contestant, encoding, input);
            }
        }
    }
    return 2;
}

}  // namespace

std::unique_ptr<Work> freshBuild(const Contestant &contestant, const Document &document) {
    return std::make_unique<FreshWork>(
        std::string(contestant.name) + "/" + encodingName(document.encoding),
        std::as_bytes(std::span(document.bytes)));
}

std::unique_ptr<Work> freshHeapPlan(const HeapPlan &plan) {
    std::vector<std::uint32_t> both(plan.sizes().begin(), plan.sizes().end());
    both.insert(both.end(), plan.deletions().begin(), plan.deletions().end());
    return std::make_unique<FreshWork>(std::string(kHeapTask), std::as_bytes(std::span(both)));
}

int runFreshProcess(int argc, char **argv) {
    if (argc != 3) return -1;
    std::string_view task = argv[1];
    std::string_view input = argv[2];
    if (!task.starts_with(kTaskOption) || !input.starts_with(kInputOption)) return -1;
    task.remove_prefix(kTaskOption.size());
    input.remove_prefix(kInputOption.size());
    int file = -1;
    std::from_chars(input.data(), input.data() + input.size(), file);
    const std::optional<std::span<char>> bytes = mapInput(file);
    return bytes ? doTask(task, *bytes) : 1;
}

}  // namespace bench
