// schema/message.h - messages put together in a caller's buffer.
#pragma once

#include <cstddef>
#include <cstring>
#include <initializer_list>
#include <string_view>

namespace cxml {

// Writes the pieces one behind the other, cut to size bytes with the final NUL; nothing for a size
// of 0. Values of any length may be among the pieces, which formatted printing does not promise.
void writeMessage(char *buffer, std::size_t size,
                  std::initializer_list<std::string_view> pieces) noexcept;

// The beginning of a text, at most so many bytes; "" for null. Reads no further than that.
inline std::string_view beginningOf(const char *text, std::size_t mostBytes) noexcept {
    return text ? std::string_view(text, ::strnlen(text, mostBytes)) : std::string_view();
}

}  // namespace cxml
