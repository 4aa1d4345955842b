#include "io/keyed_hash.h"

#include <sys/random.h>

#include <cstring>
#include <ctime>

#include "io/wrapping.h"

namespace cxml {
namespace {

// Not std::rotl, which wraps in the standard library's header.
constexpr std::uint64_t rotated(std::uint64_t word, unsigned bits) {
    return word << bits | word >> (64 - bits);
}

struct SipState {
    std::uint64_t v0, v1, v2, v3;

    COMPACTXML_WRAPS void round() {
        v0 += v1;
        v2 += v3;
        v1 = rotated(v1, 13) ^ v0;
        v3 = rotated(v3, 16) ^ v2;
        v0 = rotated(v0, 32);
        v2 += v1;
        v0 += v3;
        v1 = rotated(v1, 17) ^ v2;
        v3 = rotated(v3, 21) ^ v0;
        v2 = rotated(v2, 32);
    }

    void take(std::uint64_t word) {
        v3 ^= word;
        round();
        v0 ^= word;
    }
};

}  // namespace

COMPACTXML_WRAPS void KeyedHash::drawKey() noexcept {
    // Without random numbers, what an attacker on the wire can hardly know: an address and the
    // clock.
    if (getrandom(key_, sizeof key_, GRND_NONBLOCK) != static_cast<ssize_t>(sizeof key_)) {
        timespec now{};
        clock_gettime(CLOCK_MONOTONIC, &now);
        key_[0] = reinterpret_cast<std::uintptr_t>(this) * 0x9E3779B97F4A7C15u;
        key_[1] = static_cast<std::uint64_t>(now.tv_nsec) << 32 ^
                  static_cast<std::uint64_t>(now.tv_sec) ^ key_[0];
    }
    drawn_ = true;
}

std::uint64_t KeyedHash::operator()(const char *bytes, std::size_t length) noexcept {
    if (!drawn_) drawKey();
    SipState state{key_[0] ^ 0x736F6D6570736575u, key_[1] ^ 0x646F72616E646F6Du,
                   key_[0] ^ 0x6C7967656E657261u, key_[1] ^ 0x7465646279746573u};
    std::uint64_t last = static_cast<std::uint64_t>(length) << 56;
    for (; length >= 8; bytes += 8, length -= 8) {
        std::uint64_t word;  // in the host's byte order: the hash never leaves the process
        std::memcpy(&word, bytes, sizeof word);
        state.take(word);
    }
    for (std::size_t i = 0; i < length; ++i) {
        last |= static_cast<std::uint64_t>(static_cast<unsigned char>(bytes[i])) << (8 * i);
    }
    state.take(last);
    state.v2 ^= 0xFF;
    state.round();
    state.round();
    state.round();
    return state.v0 ^ state.v1 ^ state.v2 ^ state.v3;
}

}  // namespace cxml
