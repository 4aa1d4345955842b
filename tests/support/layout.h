// tests/support/layout.h - figures of the binary interface, for pointers of 4 and of 8 bytes.
#pragma once

#include <cstddef>
#include <type_traits>

namespace support {

// Picks the figure for this machine's pointers.
constexpr std::size_t pick(std::size_t with4, std::size_t with8) {
    static_assert(sizeof(void *) == 4 || sizeof(void *) == 8);
    return sizeof(void *) == 4 ? with4 : with8;
}

}  // namespace support

#define FIELD_AT(record, field, with4, with8) \
    static_assert(offsetof(record, field) == support::pick(with4, with8), #record "." #field)
#define SIZE_IS(record, with4, with8) \
    static_assert(sizeof(record) == support::pick(with4, with8), "size of " #record)
// A record of the library's own making may go on behind its last public field.
#define SIZE_AT_LEAST(record, with4, with8) \
    static_assert(sizeof(record) >= support::pick(with4, with8), "size of " #record)
#define FIELD_IS(record, field, type) \
    static_assert(std::is_same_v<decltype(record::field), type>, #record "." #field)
#define IS_PLAIN(record) \
    static_assert(std::is_standard_layout_v<record> && std::is_trivial_v<record>, #record)
