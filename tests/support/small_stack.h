// tests/support/small_stack.h - runs a piece of a test on a thread with little stack.
//
// Embedded programs give their threads 64 KiB. A function of the library that recursed over its
// input, or kept a large buffer in a frame that calls others, would run into the guard page here
// and kill the test program.
#pragma once

#include <pthread.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>

#if defined(__SANITIZE_ADDRESS__)
#define COMPACTXML_TEST_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define COMPACTXML_TEST_SANITIZED 1
#endif
#endif

namespace support {

// Instrumented code needs several times the stack of ordinary code.
#if defined(COMPACTXML_TEST_SANITIZED)
inline constexpr bool kSanitized = true;
inline constexpr std::size_t kSmallStackBytes = 256 * 1024;
#else
inline constexpr bool kSanitized = false;
inline constexpr std::size_t kSmallStackBytes = 64 * 1024;
#endif

// What a thread gets: some machines have no smaller stacks than 128 KiB.
inline std::size_t smallStackBytes() {
    const long least = sysconf(_SC_THREAD_STACK_MIN);
    return std::max(kSmallStackBytes, least < 0 ? std::size_t{0} : static_cast<std::size_t>(least));
}

// Calls body() on a new thread with a stack of smallStackBytes() and waits for its end. False when
// the thread could not be started. Keep large locals out of body; heap accounts (faults.h) belong
// to the thread that made them, so make them inside.
template <typename Body>
[[nodiscard]] bool runOnSmallStack(Body &&body) {
    auto call = [&body] { body(); };
    using Call = decltype(call);
    pthread_attr_t attributes;
    if (pthread_attr_init(&attributes) != 0) return false;
    pthread_t thread{};
    bool started = pthread_attr_setstacksize(&attributes, smallStackBytes()) == 0;
    started = started && pthread_create(
                             &thread, &attributes,
                             [](void *argument) -> void * {
                                 (*static_cast<Call *>(argument))();
                                 return nullptr;
                             },
                             &call) == 0;
    pthread_attr_destroy(&attributes);
    return started && pthread_join(thread, nullptr) == 0;
}

}  // namespace support
