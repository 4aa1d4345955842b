#include "progress.h"

#include <unistd.h>

#include <cstdio>

namespace tool {
namespace {

using namespace std::chrono_literals;

constexpr auto kPatience = 500ms;
constexpr auto kBetweenLines = 100ms;

}  // namespace

Progress::Progress(const Input &input)
    : input_(input), terminal_(isatty(STDERR_FILENO) == 1), next_(Clock::now() + kPatience) {}

Progress::~Progress() {
    if (shown_) std::fputs("\r\033[K", stderr);
}

void Progress::look(const XML_Parser_Ctx *context) {
    const Clock::time_point now = Clock::now();
    if (now < next_) return;
    next_ = now + kBetweenLines;
    // The source of a file stream is its descriptor.
    const off_t position = lseek(static_cast<int>(context->input->source), 0, SEEK_CUR);
    if (position < 0 || input_.size() == 0) return;
    const auto share = static_cast<std::uint64_t>(position) * 100 / input_.size();
    std::fprintf(stderr, "\r\033[K%s: %u %%", input_.name().c_str(),
                 static_cast<unsigned>(share < 100 ? share : 100));
    shown_ = true;
}

}  // namespace tool
