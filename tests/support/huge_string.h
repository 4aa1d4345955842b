// tests/support/huge_string.h - a string of any length that needs little memory.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace support {

// The bytes of a block that repeats a filler, whose size is a power of two. What is long is made of
// such blocks.
inline constexpr std::size_t kHugeBlock = std::size_t{16} << 20;

inline std::string hugeBlock(std::string_view filler) {
    std::string block;
    block.reserve(kHugeBlock);
    while (block.size() < kHugeBlock) block += filler;
    return block;
}

struct HugeText {
    std::uint64_t length = std::uint64_t{1} << 32;  // with head and tail
    std::string_view filler = "a";
    std::string_view head = {};
    std::string_view tail = {};
};

// Such a text and a NUL: one block of 16 MiB mapped again and again, of which only what is written has
// pages of its own. Only 64-bit address spaces have the room; text() is null elsewhere and when the
// mapping fails.
class HugeString {
  public:
    explicit HugeString(const HugeText &text = {})
        : bytes_((text.length / kHugeBlock + 1) * kHugeBlock) {
        if (sizeof(void *) < 8) return;
        const int fd = memfd_create("huge", 0);
        if (fd < 0) return;
        const std::string block = hugeBlock(text.filler);
        valid_ = fill(fd, block) && map(fd);
        close(fd);
        if (!valid_) return;
        char *const end = base() + text.length;
        text.head.copy(base(), text.head.size());
        text.tail.copy(end - text.tail.size(), text.tail.size());
        *end = '\0';
    }
    ~HugeString() {
        if (base_ != MAP_FAILED) munmap(base_, bytes_);
    }
    HugeString(const HugeString &) = delete;
    HugeString &operator=(const HugeString &) = delete;

    const char *text() const { return valid_ ? base() : nullptr; }

  private:
    char *base() const { return static_cast<char *>(base_); }

    static bool fill(int fd, const std::string &block) {
        return write(fd, block.data(), block.size()) == static_cast<ssize_t>(block.size());
    }

    bool map(int fd) {
        base_ = mmap(nullptr, bytes_, PROT_READ | PROT_WRITE,
                     MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
        if (base_ == MAP_FAILED) return false;
        for (std::size_t at = 0; at < bytes_; at += kHugeBlock) {
            if (mmap(base() + at, kHugeBlock, PROT_READ | PROT_WRITE,
                     MAP_PRIVATE | MAP_FIXED | MAP_NORESERVE, fd, 0) == MAP_FAILED) {
                return false;
            }
        }
        return true;
    }

    std::size_t bytes_;
    void *base_ = MAP_FAILED;
    bool valid_ = false;
};

}  // namespace support
