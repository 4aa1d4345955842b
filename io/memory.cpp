#include "io/memory.h"

namespace cxml {

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
