#include "io/memory.h"

namespace cxml {

char *copyBytes(const char *bytes, std::size_t length) noexcept {
    if (length == SIZE_MAX) return nullptr;
    auto *copy = static_cast<char *>(std::malloc(length + 1));
    if (!copy) return nullptr;
    std::memcpy(copy, bytes, length);
    copy[length] = '\0';
    return copy;
}

bool replaceString(char **owned, const char *text) noexcept {
    char *copy = copyString(text);
    if (!copy) return false;
    std::free(*owned);
    *owned = copy;
    return true;
}

void copyBounded(char *destination, std::size_t size, const char *text) noexcept {
    if (size == 0) return;
    const std::size_t length = strnlen(text, size - 1);
    std::memcpy(destination, text, length);
    destination[length] = '\0';
}

}  // namespace cxml
