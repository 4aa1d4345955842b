#include "scan.h"

#include <bit>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace bench {
namespace {

constexpr std::uint64_t kOnes = 0x0101010101010101u;
constexpr std::uint64_t kLow7 = 0x7F7F7F7F7F7F7F7Fu;

void addPlace(MarkupPlaces &places, std::size_t at) {
    ++places.count;
    places.sum += at;
}

void scanSingly(std::span<const char> bytes, std::size_t from, MarkupPlaces &places) {
    for (std::size_t i = from; i < bytes.size(); ++i) {
        if (bytes[i] == '<' || bytes[i] == '>' || bytes[i] == '&') addPlace(places, i);
    }
}

// 0x80 in each byte of the word that equals c, 0 in all others.
std::uint64_t equalBytes(std::uint64_t word, unsigned char c) {
    const std::uint64_t difference = word ^ (kOnes * c);
    return ~(((difference & kLow7) + kLow7) | difference | kLow7);
}

// The place in memory of the first byte with a bit set, and the word without it.
unsigned takeFirst(std::uint64_t &found) {
    if constexpr (std::endian::native == std::endian::big) {
        const int zeros = std::countl_zero(found);
        found &= ~(std::uint64_t{1} << 63 >> zeros);
        return static_cast<unsigned>(zeros) / 8;
    }
    const int zeros = std::countr_zero(found);
    found &= found - 1;
    return static_cast<unsigned>(zeros) / 8;
}

}  // namespace

MarkupPlaces scanMarkupPortably(std::span<const char> bytes) {
    MarkupPlaces places;
    std::size_t at = 0;
    for (; bytes.size() - at >= 8; at += 8) {
        std::uint64_t word = 0;
        std::memcpy(&word, bytes.data() + at, sizeof word);
        std::uint64_t found = equalBytes(word, '<') | equalBytes(word, '>') | equalBytes(word, '&');
        while (found) addPlace(places, at + takeFirst(found));
    }
    scanSingly(bytes, at, places);
    return places;
}

MarkupPlaces scanMarkup(std::span<const char> bytes) {
#ifdef __SSE2__
    const __m128i less = _mm_set1_epi8('<');
    const __m128i greater = _mm_set1_epi8('>');
    const __m128i ampersand = _mm_set1_epi8('&');
    MarkupPlaces places;
    std::size_t at = 0;
    for (; bytes.size() - at >= 16; at += 16) {
        const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i *>(&bytes[at]));
        const __m128i equal =
            _mm_or_si128(_mm_or_si128(_mm_cmpeq_epi8(block, less), _mm_cmpeq_epi8(block, greater)),
                         _mm_cmpeq_epi8(block, ampersand));
        auto found = static_cast<unsigned>(_mm_movemask_epi8(equal));
        for (; found; found &= found - 1) {
            addPlace(places, at + static_cast<unsigned>(std::countr_zero(found)));
        }
    }
    scanSingly(bytes, at, places);
    return places;
#else
    return scanMarkupPortably(bytes);
#endif
}

}  // namespace bench
