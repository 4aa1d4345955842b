// tests/support/faults.h - a C library that fails on demand, and an account of the heap.
//
// The test program is linked with --wrap for malloc, calloc, realloc, free, open, read, write,
// fsync, close, iconv_open, iconv, iconv_close, regcomp, regfree and getrandom, so every call that the
// library makes comes through here. Nothing is counted or failed outside the life of one of the classes
// below on the same thread.
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

// While it lives, fills each block of this thread with a byte: a new one, what realloc adds, which
// always moves, and a block that is freed.
class FilledHeap {
  public:
    explicit FilledHeap(unsigned char byte);
    ~FilledHeap();
    FilledHeap(const FilledHeap &) = delete;
    FilledHeap &operator=(const FilledHeap &) = delete;

    std::size_t bytesFilled() const;
};

// What read, write, open, fsync and close do while it lives. Zero fields mean "as the system does".
struct FilePlan {
    std::size_t shortCount = 0;  // at most so many bytes a call
    std::size_t failAt = 0;      // the call (of read and write together, from 1) that fails ...
    int failErrno = 0;           // ... with this errno, or, if 0, by returning 0
    bool failOpen = false;       // open fails ...
    int openErrno = 0;           // ... with this errno, or, if 0, with EMFILE
    bool persistent = false;     // failAt means all calls from there on
    int syncErrno = 0;           // fsync fails with this errno
    int closeErrno = 0;          // close fails with this errno after it has closed
};

class FaultyFiles {
  public:
    explicit FaultyFiles(const FilePlan &plan);
    ~FaultyFiles();
    FaultyFiles(const FaultyFiles &) = delete;
    FaultyFiles &operator=(const FaultyFiles &) = delete;

    void begin(const FilePlan &plan);  // from here on, with its calls counted from 1

    std::size_t opens() const;
    std::size_t reads() const;
    std::size_t bytesRead() const;
    std::size_t writes() const;
    std::size_t syncs() const;
    std::size_t closes() const;
    long openDescriptors() const;  // opens minus closes since construction
};

// Which call of a function fails, from 1; 0 for none.
struct CallPlan {
    std::size_t failAt = 0;
    bool persistent = false;  // all from there on
    int error = 0;            // errno, or what regcomp returns
};

// While it lives, counts the calls of iconv_open and iconv and makes some fail. A call of iconv that
// fails has converted nothing.
class FaultyConverters {
  public:
    FaultyConverters();
    ~FaultyConverters();
    FaultyConverters(const FaultyConverters &) = delete;
    FaultyConverters &operator=(const FaultyConverters &) = delete;

    void begin(const CallPlan &opening, const CallPlan &converting);

    std::size_t opens() const;        // since begin ...
    std::size_t conversions() const;  // ... without those that set a converter back
    bool failed() const;              // whether a call was made to
    long openConverters() const;      // opened minus closed since construction
};

// The same for regcomp, which fails as it does without memory (REG_ESPACE).
class FaultyPatterns {
  public:
    FaultyPatterns();
    ~FaultyPatterns();
    FaultyPatterns(const FaultyPatterns &) = delete;
    FaultyPatterns &operator=(const FaultyPatterns &) = delete;

    void begin(const CallPlan &compiling);

    std::size_t compiled() const;  // calls since begin
    bool failed() const;
    long openPatterns() const;  // compiled minus freed since construction
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

// While it lives the system has no random numbers to give.
class MissingRandom {
  public:
    MissingRandom();
    ~MissingRandom();
    MissingRandom(const MissingRandom &) = delete;
    MissingRandom &operator=(const MissingRandom &) = delete;

    std::size_t wanted() const;  // how often they were asked for
};

}  // namespace support
