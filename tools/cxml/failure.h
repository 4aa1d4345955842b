// tools/cxml/failure.h - how a command ends.
#pragma once

#include <stdexcept>
#include <string>

namespace tool {

// Exit statuses. diff uses them as diff(1) does: the same, different, trouble.
inline constexpr int kSuccess = 0;
inline constexpr int kRefused = 1;  // a document is not well-formed, a path selects nothing, ...
inline constexpr int kTrouble = 2;  // wrong usage, or a file that cannot be read or written

// Ends the command. The text is printed on standard error as one line, behind "cxml: ", with what a
// terminal could take for a command made visible; an empty text prints nothing.
class Failure : public std::runtime_error {
  public:
    Failure(int status, const std::string &text) : std::runtime_error(text), status_(status) {}
    int status() const noexcept { return status_; }

  private:
    int status_;
};

// "NAME: what errno says", with status kTrouble.
Failure systemFailure(const std::string &name, int error);

}  // namespace tool
