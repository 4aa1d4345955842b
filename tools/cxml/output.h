// tools/cxml/output.h - where commands write.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tool {

// Bytes to standard output or to a file. A file is written under a temporary name beside it, synced
// and renamed by commit(); until then, whatever happens (an error, a signal), the file is what it
// was and the temporary one is removed. A file that is there keeps its mode; of a symbolic link the
// target is replaced; what is no regular file (a pipe, a device) is written directly.
//
// Failures have status kTrouble and name the file; a closed pipe ends the command without a word.
class Output {
  public:
    // An empty name is standard output.
    explicit Output(const std::string &name);
    Output(const Output &) = delete;
    Output &operator=(const Output &) = delete;
    ~Output();

    void write(std::string_view bytes);  // buffered
    // Writes what is buffered, and puts the file in its place.
    void commit();

    // For XML_DOM_OutPutTranslateStr, with the Output as context. A failure is kept, and thrown by
    // the next commit() or rethrow().
    static std::uint32_t sink(void *output, const char *bytes, std::uint32_t length) noexcept;
    void rethrow();

  private:
    struct State;
    State *state_;
};

}  // namespace tool
