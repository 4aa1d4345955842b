// io/memory.h - heap blocks whose allocation may fail: copies of strings and growing arrays.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <type_traits>

namespace cxml {

// Copies bytes, most of them few, without a call for these.
[[gnu::always_inline]] inline void copyFewBytes(char *to, const char *from,
                                                std::size_t length) noexcept {
    // Two words that may overlap cover all lengths from one word to two.
    const auto twice = [to, from, length](auto word) {
        auto last = word;
        std::memcpy(&word, from, sizeof word);
        std::memcpy(&last, from + length - sizeof last, sizeof last);
        std::memcpy(to, &word, sizeof word);
        std::memcpy(to + length - sizeof last, &last, sizeof last);
    };
    if (length > 16) {
        std::memcpy(to, from, length);
    } else if (length >= 8) {
        twice(std::uint64_t{});
    } else if (length >= 4) {
        twice(std::uint32_t{});
    } else {
        for (std::size_t i = 0; i < length; ++i) to[i] = from[i];
    }
}

// Whether so many bytes can lie in one piece of memory: where addresses have 32 bits pointers into more
// cannot be subtracted, and the system may map it all the same.
constexpr bool isAddressable(std::uint64_t bytes) noexcept {
    return bytes <= PTRDIFF_MAX;
}

// A new block of length + 1 bytes: the bytes and a NUL. Null for exhausted memory.
inline char *copyBytes(const char *bytes, std::size_t length) noexcept {
    if (length == SIZE_MAX) return nullptr;
    auto *copy = static_cast<char *>(std::malloc(length + 1));
    if (!copy) return nullptr;
    copyFewBytes(copy, bytes, length);
    copy[length] = '\0';
    return copy;
}

inline char *copyString(const char *text) noexcept {
    return copyBytes(text, std::strlen(text));
}

// Replaces an owned string by a copy of another. On failure the old one stays.
[[nodiscard]] bool replaceString(char **owned, const char *text) noexcept;

// Copies as much of text as fits into size bytes, NUL included; writes nothing for a size of 0.
void copyBounded(char *destination, std::size_t size, const char *text) noexcept;

// Frees with the C library; for std::unique_ptr over blocks of copyBytes and malloc.
struct FreeBlock {
    void operator()(void *block) const noexcept { std::free(block); }
};

// An array of plain records in one heap block that doubles as it grows. Every growth may fail and
// then leaves the array as it was. Elements move when it grows: keep indices, not pointers.
template <class T>
class GrowingArray {
    static_assert(std::is_trivially_copyable_v<T>);

  public:
    GrowingArray() noexcept = default;
    GrowingArray(const GrowingArray &) = delete;
    GrowingArray &operator=(const GrowingArray &) = delete;
    ~GrowingArray() { std::free(data_); }

    T *data() noexcept { return data_; }
    std::size_t size() const noexcept { return size_; }
    bool empty() const noexcept { return size_ == 0; }
    T &operator[](std::size_t index) noexcept { return data_[index]; }
    T &back() noexcept { return data_[size_ - 1]; }
    void truncate(std::size_t size) noexcept { size_ = size; }
    bool allocated() const noexcept { return data_ != nullptr; }

    // Where the next element goes, and taking in elements that have been written there.
    T *tail() noexcept { return data_ + size_; }
    void extend(std::size_t count) noexcept { size_ += count; }

    // Makes room for count more elements.
    [[nodiscard]] bool reserve(std::size_t count) noexcept {
        return count <= capacity_ - size_ || grow(count);
    }

    // One more element, not initialized; null for exhausted memory.
    [[nodiscard]] T *add() noexcept { return reserve(1) ? data_ + size_++ : nullptr; }

    [[nodiscard]] bool append(const T &element) noexcept {
        if (!reserve(1)) return false;
        data_[size_++] = element;
        return true;
    }

    [[nodiscard]] bool append(const T *elements, std::size_t count) noexcept {
        if (!reserve(count)) return false;
        if (count != 0) std::memcpy(data_ + size_, elements, count * sizeof(T));
        size_ += count;
        return true;
    }

  private:
    // Small first blocks keep a short parse below the size at which allocators merge and split.
    static constexpr std::size_t kFirst = sizeof(T) < 64 ? 256 / sizeof(T) : 4;

    [[gnu::noinline]] bool grow(std::size_t count) noexcept {
        constexpr std::size_t kMost = PTRDIFF_MAX / sizeof(T);
        if (count > kMost - size_) return false;
        const std::size_t need = size_ + count;
        std::size_t capacity = capacity_ == 0 ? kFirst : capacity_;
        while (capacity < need) capacity = capacity > kMost / 2 ? kMost : capacity * 2;
        void *block = std::realloc(static_cast<void *>(data_), capacity * sizeof(T));
        if (!block) return false;
        data_ = static_cast<T *>(block);
        capacity_ = capacity;
        return true;
    }

    T *data_ = nullptr;
    std::size_t size_ = 0;
    std::size_t capacity_ = 0;
};

using ByteBuffer = GrowingArray<char>;

}  // namespace cxml
