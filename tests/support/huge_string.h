// tests/support/huge_string.h - a string too long for 32 bits that needs little memory.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstring>

namespace support {

// 4 GiB of 'a' and a NUL: one block of 16 MiB mapped again and again. Only 64-bit address spaces
// have the room; text() is null elsewhere and when the mapping fails.
class HugeString {
  public:
    HugeString() {
        if (sizeof(void *) < 8) return;
        const int fd = memfd_create("huge", 0);
        if (fd < 0) return;
        if (ftruncate(fd, static_cast<off_t>(kBlock)) == 0 && map(fd)) valid_ = true;
        close(fd);
    }
    ~HugeString() {
        if (base_ != MAP_FAILED) munmap(base_, kBytes);
    }
    HugeString(const HugeString &) = delete;
    HugeString &operator=(const HugeString &) = delete;

    const char *text() const { return valid_ ? static_cast<const char *>(base_) : nullptr; }

  private:
    static constexpr std::size_t kBlock = std::size_t{16} << 20;
    static constexpr std::size_t kBlocks = 256;
    static constexpr std::size_t kBytes = kBlock * kBlocks + 4096;  // last page: all NUL

    bool map(int fd) {
        base_ = mmap(nullptr, kBytes, PROT_READ | PROT_WRITE,
                     MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
        if (base_ == MAP_FAILED) return false;
        for (std::size_t i = 0; i < kBlocks; ++i) {
            char *at = static_cast<char *>(base_) + i * kBlock;
            if (mmap(at, kBlock, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_FIXED, fd, 0) != at) {
                return false;
            }
        }
        std::memset(base_, 'a', kBlock);
        return true;
    }

    void *base_ = MAP_FAILED;
    bool valid_ = false;
};

}  // namespace support
