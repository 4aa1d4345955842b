#include "schema/message.h"

namespace cxml {

void writeMessage(char *buffer, std::size_t size,
                  std::initializer_list<std::string_view> pieces) noexcept {
    if (size == 0) return;
    std::size_t room = size - 1;
    for (std::string_view piece : pieces) {
        piece = piece.substr(0, room);
        if (piece.empty()) continue;
        std::memcpy(buffer, piece.data(), piece.size());
        buffer += piece.size();
        room -= piece.size();
    }
    *buffer = '\0';
}

}  // namespace cxml
