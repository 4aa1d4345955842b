#include "fuzz/support/require.h"

#include <cstdio>
#include <cstdlib>

namespace fuzz {
namespace {

void print(std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stderr);
}

}  // namespace

void fail(std::string_view text, std::string_view details) {
    print("\nFOUND: ");
    print(text);
    print("\n");
    print(details);
    print("\n");
    std::fflush(stderr);
    std::abort();
}

void requireSame(const std::string &a, const std::string &b, std::string_view text) {
    if (a != b) fail(text, "one:\n" + a + "\nother:\n" + b);
}

}  // namespace fuzz
