#include "tests/support/faults.h"

#include <fcntl.h>
#include <iconv.h>
#include <sys/types.h>

#include <cerrno>
#include <cstdarg>
#include <unordered_set>

#include "io/char_memo.h"

extern "C" {
void *__real_malloc(std::size_t size);
void *__real_calloc(std::size_t count, std::size_t size);
void *__real_realloc(void *block, std::size_t size);
void __real_free(void *block);
int __real_open(const char *path, int flags, ...);
int __real_open64(const char *path, int flags, ...);
ssize_t __real_read(int fd, void *buffer, std::size_t count);
ssize_t __real_write(int fd, const void *buffer, std::size_t count);
int __real_fsync(int fd);
int __real_close(int fd);
iconv_t __real_iconv_open(const char *to, const char *from);
iconv_t __wrap_iconv_open(const char *to, const char *from);
void *__wrap_malloc(std::size_t size);
void *__wrap_calloc(std::size_t count, std::size_t size);
void *__wrap_realloc(void *block, std::size_t size);
void __wrap_free(void *block);
int __wrap_open(const char *path, int flags, ...);
int __wrap_open64(const char *path, int flags, ...);
ssize_t __wrap_read(int fd, void *buffer, std::size_t count);
ssize_t __wrap_write(int fd, const void *buffer, std::size_t count);
int __wrap_fsync(int fd);
int __wrap_close(int fd);
}

namespace {

struct HeapAccount {
    std::size_t failAt = 0;
    bool persistent = false;
    bool failed = false;
    bool failedForGood = false;
    std::size_t allocations = 0;
    std::size_t bytes = 0;
    std::size_t largest = 0;
    std::unordered_set<void *> live;
};

struct FileAccount {
    support::FilePlan plan;
    std::size_t transfers = 0;
    std::size_t reads = 0;
    std::size_t bytesRead = 0;
    std::size_t writes = 0;
    std::size_t syncs = 0;
    long descriptors = 0;
};

thread_local HeapAccount *heap = nullptr;
thread_local FileAccount *files = nullptr;
thread_local bool convertersAreMissing = false;
thread_local std::size_t convertersWanted = 0;

bool refuseAllocation(std::size_t size) {
    ++heap->allocations;
    heap->bytes += size;
    if (size > heap->largest) heap->largest = size;
    const bool refuse = heap->failAt != 0 && (heap->persistent ? heap->allocations >= heap->failAt
                                                               : heap->allocations == heap->failAt);
    heap->failed |= refuse;
    heap->failedForGood |= refuse && size != cxml::kCharTableBytes;
    if (refuse) errno = ENOMEM;
    return refuse;
}

// The set of live blocks allocates through operator new, which is not wrapped.
void *account(void *block) {
    if (block) heap->live.insert(block);
    return block;
}

// Cuts a transfer short or makes it fail; true when *result is the answer.
bool interfere(std::size_t *count, ssize_t *result) {
    if (files->plan.failAt != 0 && ++files->transfers == files->plan.failAt) {
        errno = files->plan.failErrno;
        *result = files->plan.failErrno ? -1 : 0;
        return true;
    }
    if (files->plan.shortCount != 0 && *count > files->plan.shortCount) {
        *count = files->plan.shortCount;
    }
    return false;
}

bool refuseOpen() {
    if (!files || !files->plan.failOpen) return false;
    errno = EMFILE;
    return true;
}

int accountDescriptor(int fd) {
    if (files && fd >= 0) ++files->descriptors;
    return fd;
}

}  // namespace

void *__wrap_malloc(std::size_t size) {
    if (!heap) return __real_malloc(size);
    return refuseAllocation(size) ? nullptr : account(__real_malloc(size));
}

void *__wrap_calloc(std::size_t count, std::size_t size) {
    if (!heap) return __real_calloc(count, size);
    return refuseAllocation(count * size) ? nullptr : account(__real_calloc(count, size));
}

void *__wrap_realloc(void *block, std::size_t size) {
    if (!heap) return __real_realloc(block, size);
    if (refuseAllocation(size)) return nullptr;
    const bool known = !block || heap->live.erase(block) != 0;
    void *moved = __real_realloc(block, size);
    if (known) account(moved ? moved : block);
    return moved;
}

void __wrap_free(void *block) {
    if (heap && block) heap->live.erase(block);
    __real_free(block);
}

// What open is called when file offsets have 64 bits differs between platforms: both names are
// taken.
int __wrap_open(const char *path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = flags & O_CREAT ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    return refuseOpen() ? -1 : accountDescriptor(__real_open(path, flags, mode));
}

int __wrap_open64(const char *path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = flags & O_CREAT ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    return refuseOpen() ? -1 : accountDescriptor(__real_open64(path, flags, mode));
}

ssize_t __wrap_read(int fd, void *buffer, std::size_t count) {
    ssize_t result = 0;
    if (files) {
        ++files->reads;
        if (interfere(&count, &result)) return result;
    }
    result = __real_read(fd, buffer, count);
    if (files && result > 0) files->bytesRead += static_cast<std::size_t>(result);
    return result;
}

ssize_t __wrap_write(int fd, const void *buffer, std::size_t count) {
    ssize_t result = 0;
    if (files) {
        ++files->writes;
        if (interfere(&count, &result)) return result;
    }
    return __real_write(fd, buffer, count);
}

int __wrap_fsync(int fd) {
    if (files) ++files->syncs;
    return __real_fsync(fd);
}

int __wrap_close(int fd) {
    if (files) --files->descriptors;
    return __real_close(fd);
}

iconv_t __wrap_iconv_open(const char *to, const char *from) {
    ++convertersWanted;
    if (!convertersAreMissing) return __real_iconv_open(to, from);
    errno = EINVAL;
    return iconv_t(-1);
}

namespace support {

MissingConverters::MissingConverters() {
    convertersAreMissing = true;
    convertersWanted = 0;
}
MissingConverters::~MissingConverters() {
    convertersAreMissing = false;
}
std::size_t MissingConverters::wanted() const {
    return convertersWanted;
}

FaultyHeap::FaultyHeap(std::size_t failAt, bool persistent) {
    heap = nullptr;
    auto *account = new HeapAccount;
    account->failAt = failAt;
    account->persistent = persistent;
    heap = account;
}

FaultyHeap::~FaultyHeap() {
    HeapAccount *account = heap;
    heap = nullptr;
    delete account;
}

bool FaultyHeap::failed() const {
    return heap->failed;
}
bool FaultyHeap::failedOptionally() const {
    return heap->failed && !heap->failedForGood;
}
std::size_t FaultyHeap::allocations() const {
    return heap->allocations;
}
std::size_t FaultyHeap::blocksInUse() const {
    return heap->live.size();
}
std::size_t FaultyHeap::bytesAllocated() const {
    return heap->bytes;
}
std::size_t FaultyHeap::largestBlock() const {
    return heap->largest;
}

FaultyFiles::FaultyFiles(const FilePlan &plan) {
    files = new FileAccount;
    files->plan = plan;
}

FaultyFiles::~FaultyFiles() {
    FileAccount *account = files;
    files = nullptr;
    delete account;
}

std::size_t FaultyFiles::reads() const {
    return files->reads;
}
std::size_t FaultyFiles::bytesRead() const {
    return files->bytesRead;
}
std::size_t FaultyFiles::writes() const {
    return files->writes;
}
std::size_t FaultyFiles::syncs() const {
    return files->syncs;
}
long FaultyFiles::openDescriptors() const {
    return files->descriptors;
}

}  // namespace support
