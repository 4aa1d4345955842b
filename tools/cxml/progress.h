// tools/cxml/progress.h - how far a long parse has come, for whoever waits at a terminal.
#pragma once

#include <chrono>
#include <cstdint>

#include "compactxml.h"
#include "input.h"

namespace tool {

// Shows the share of a file that has been read on standard error, if that is a terminal and half a
// second has passed; takes it away when the parse is over.
class Progress {
  public:
    explicit Progress(const Input &input);
    Progress(const Progress &) = delete;
    Progress &operator=(const Progress &) = delete;
    ~Progress();

    // From every callback of the parse.
    void step(const XML_Parser_Ctx *context) {
        if (terminal_ && ++steps_ % kStepsBetweenLooks == 0) look(context);
    }

  private:
    static constexpr std::uint32_t kStepsBetweenLooks = 1024;
    using Clock = std::chrono::steady_clock;

    void look(const XML_Parser_Ctx *context);

    const Input &input_;
    bool terminal_;
    bool shown_ = false;
    std::uint32_t steps_ = 0;
    Clock::time_point next_;
};

}  // namespace tool
