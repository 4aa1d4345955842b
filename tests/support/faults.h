// tests/support/faults.h - a C library that fails on demand, and an account of the heap.
//
// The test program is linked with --wrap for malloc, calloc, realloc, free, open, read, write,
// fsync and close, so every call that the library makes comes through here. Nothing is counted or
// failed outside the life of a FaultyHeap or FaultyFiles on the same thread.
#pragma once

#include <cstddef>
#include <cstdint>

namespace support {

// While it lives, counts the allocations of this thread and makes the failAt-th of them (from 1)
// return null; with persistent, every one from there on. failAt 0 lets all succeed.
class FaultyHeap {
  public:
    explicit FaultyHeap(std::size_t failAt, bool persistent = false);
    ~FaultyHeap();
    FaultyHeap(const FaultyHeap &) = delete;
    FaultyHeap &operator=(const FaultyHeap &) = delete;

    bool failed() const;  // whether an allocation was refused
    // Whether none was but of the one block that the library can do without.
    bool failedOptionally() const;
    std::size_t allocations()
        const;  // malloc, calloc and realloc calls seen, refused ones included
    // Blocks allocated since construction and not yet freed: 0 means nothing leaked.
    std::size_t blocksInUse() const;
    std::size_t bytesAllocated() const;  // sum of the sizes asked for
    std::size_t largestBlock() const;
};

// What read, write, open and fsync do while it lives. Zero fields mean "as the system does".
struct FilePlan {
    std::size_t shortCount = 0;  // at most so many bytes a call
    std::size_t failAt = 0;      // the call (of read and write together, from 1) that fails ...
    int failErrno = 0;           // ... with this errno, or, if 0, by returning 0
    bool failOpen = false;       // open fails with EMFILE
};

class FaultyFiles {
  public:
    explicit FaultyFiles(const FilePlan &plan);
    ~FaultyFiles();
    FaultyFiles(const FaultyFiles &) = delete;
    FaultyFiles &operator=(const FaultyFiles &) = delete;

    std::size_t reads() const;
    std::size_t bytesRead() const;
    std::size_t writes() const;
    std::size_t syncs() const;
    long openDescriptors() const;  // opens minus closes since construction
};

// While it lives no converter is to be had.
class MissingConverters {
  public:
    MissingConverters();
    ~MissingConverters();
    MissingConverters(const MissingConverters &) = delete;
    MissingConverters &operator=(const MissingConverters &) = delete;

    std::size_t wanted() const;  // how often one was asked for
};

}  // namespace support
