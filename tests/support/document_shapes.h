// tests/support/document_shapes.h - documents of every shape that may cost more than it should.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <span>
#include <string>
#include <string_view>

namespace support {

// n pieces, made from their numbers.
template <typename Piece>
std::string join(std::size_t n, Piece piece) {
    std::string text;
    for (std::size_t i = 0; i < n; ++i) text += piece(std::to_string(i));
    return text;
}

std::string times(std::size_t n, std::string_view piece);
std::string nested(std::size_t n, std::string_view start, std::string_view end);

// What the size of a shape counts: attributes, elements, ... or the bytes of a single token.
enum ShapeUnit { kItems, kBytes };

struct DocumentShape {
    const char *name;
    ShapeUnit unit;
    std::string (*document)(std::size_t n);  // in UTF-8
    const char *message = nullptr;           // of the refusal; null for a document that is accepted
};

std::ostream &operator<<(std::ostream &out, const DocumentShape &shape);

std::span<const DocumentShape> structures();  // of many items
std::span<const DocumentShape> tokens();      // of one long one

}  // namespace support
