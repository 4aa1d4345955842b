// tools/cxml/input.h - the files that commands read.
#pragma once

#include <cstdint>
#include <string>

namespace tool {

// A file to be read, which is checked when it is opened so that every command says the same of what
// cannot be read. "-" is standard input; what cannot be read twice from there, such as a pipe, is
// first copied to an unlinked temporary file, so that memory stays out of it.
class Input {
  public:
    // Fails with kTrouble and "NAME: No such file or directory", "NAME: Is a directory" and so on.
    explicit Input(const std::string &name);
    Input(const Input &) = delete;
    Input &operator=(const Input &) = delete;
    ~Input();

    // As in messages: the name as given, printable, or "standard input".
    const std::string &name() const noexcept { return name_; }
    // What to give to the library; good while this object lives.
    const std::string &path() const noexcept { return path_; }
    // The size in bytes, or 0 where it is not known, as of a device.
    std::uint64_t size() const noexcept { return size_; }

  private:
    std::string name_;
    std::string path_;
    std::uint64_t size_ = 0;
    int descriptor_ = -1;  // of the temporary file or of standard input
};

}  // namespace tool
