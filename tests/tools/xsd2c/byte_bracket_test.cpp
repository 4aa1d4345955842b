#include "xsd2c/pattern/byte_bracket.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <random>
#include <string>
#include <string_view>

#include "pattern_support.h"

namespace {

using namespace xsd2c;
using patterns::Compiled;

void expectExactly(const ByteSet &bytes) {
    const Compiled with(bracketOf(bytes)), without(bracketWithout(bytes));
    for (unsigned byte = 1; byte < 256; ++byte) {
        const std::string text(1, static_cast<char>(byte));
        ASSERT_EQ(with.matches(text), bytes[byte]) << bracketOf(bytes) << " and " << byte;
        ASSERT_EQ(without.matches(text), !bytes[byte]) << bracketWithout(bytes) << " and " << byte;
    }
}

// All sets of the bytes that mean something in brackets, and of their neighbors.
TEST(ByteBracket, HoldsBytesWithAMeaning) {
    constexpr std::string_view kBytes = "[\\]^_-,.:=a";
    for (unsigned set = 1; set < 1u << kBytes.size(); ++set) {
        ByteSet bytes;
        for (unsigned i = 0; i < kBytes.size(); ++i) {
            if ((set >> i & 1) != 0) bytes.set(static_cast<unsigned char>(kBytes[i]));
        }
        if (bytes.count() > 1) expectExactly(bytes);
    }
}

TEST(ByteBracket, HoldsAnyBytes) {
    std::mt19937 random(1);
    for (int i = 0; i < 300; ++i) {
        ByteSet bytes;
        for (std::size_t count = 1 + random() % 12; count != 0; --count) {
            const std::size_t first = 1 + random() % 255, last = first + random() % 20;
            for (std::size_t byte = first; byte <= last && byte < 256; ++byte) bytes.set(byte);
        }
        if (bytes.count() > 1) expectExactly(bytes);
    }
}

}  // namespace
