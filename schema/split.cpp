#include <cstring>

#include "compactxml.h"

char *Schema_GetFirstSplitStr(const char *text, const char *separator, uint32_t size, char *item,
                              SchemaSplitState *state) noexcept {
    if (!text || !separator || !item || !state || size == 0) return nullptr;
    item[0] = '\0';
    *state = {item, text, separator, size};
    return Schema_GetNextSplitStr(state);
}

char *Schema_GetNextSplitStr(SchemaSplitState *state) noexcept {
    if (!state || !state->item || !state->separator || !state->rest || *state->rest == '\0') {
        return nullptr;
    }
    if (state->size < 2) return nullptr;  // no item would ever get further
    const char *end = std::strstr(state->rest, state->separator);
    const std::size_t length =
        end ? static_cast<std::size_t>(end - state->rest) : std::strlen(state->rest);
    // Intended: the separator counts as one character, and as passed even where the item was cut.
    const std::size_t copied = length < state->size ? length : state->size - 1;
    std::memcpy(state->item, state->rest, copied);
    state->item[copied] = '\0';
    state->rest += copied + (end ? 1 : 0);
    return state->item;
}
