#include "tests/support/faults.h"

#include <fcntl.h>
#include <iconv.h>
#include <regex.h>
#include <sys/types.h>

#include <cerrno>
#include <cstdarg>
#include <cstring>
#include <unordered_map>
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
std::size_t __real_iconv(iconv_t converter, char **input, std::size_t *inputLeft, char **output,
                         std::size_t *outputLeft);
int __real_iconv_close(iconv_t converter);
int __real_regcomp(regex_t *compiled, const char *pattern, int flags);
void __real_regfree(regex_t *compiled);
ssize_t __real_getrandom(void *buffer, std::size_t size, unsigned flags);
iconv_t __wrap_iconv_open(const char *to, const char *from);
std::size_t __wrap_iconv(iconv_t converter, char **input, std::size_t *inputLeft, char **output,
                         std::size_t *outputLeft);
int __wrap_iconv_close(iconv_t converter);
int __wrap_regcomp(regex_t *compiled, const char *pattern, int flags);
void __wrap_regfree(regex_t *compiled);
ssize_t __wrap_getrandom(void *buffer, std::size_t size, unsigned flags);
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

struct FillAccount {
    unsigned char byte = 0;
    std::size_t bytes = 0;
    std::unordered_map<void *, std::size_t> sizes;
};

struct FileAccount {
    support::FilePlan plan;
    std::size_t transfers = 0;
    std::size_t opens = 0;
    std::size_t reads = 0;
    std::size_t bytesRead = 0;
    std::size_t writes = 0;
    std::size_t syncs = 0;
    std::size_t closes = 0;
    long descriptors = 0;
};

// The calls of one function, and what they made that is still there.
struct CallAccount {
    support::CallPlan plan;
    std::size_t calls = 0;
    bool failed = false;
    long made = 0;

    void begin(const support::CallPlan &next) {
        plan = next;
        calls = 0;
        failed = false;
    }
    bool refuses() {
        ++calls;
        const bool refused =
            plan.failAt != 0 && (plan.persistent ? calls >= plan.failAt : calls == plan.failAt);
        failed |= refused;
        return refused;
    }
};

struct ConverterAccount {
    CallAccount opening, converting;
};

thread_local HeapAccount *heap = nullptr;
thread_local FillAccount *filler = nullptr;
thread_local FileAccount *files = nullptr;
thread_local ConverterAccount *converters = nullptr;
thread_local CallAccount *patterns = nullptr;
thread_local bool convertersAreMissing = false;
thread_local std::size_t convertersWanted = 0;
thread_local bool randomIsMissing = false;
thread_local std::size_t randomWanted = 0;

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

void *filled(void *block, std::size_t size, std::size_t from) {
    if (!block) return nullptr;
    std::memset(static_cast<char *>(block) + from, filler->byte, size - from);
    filler->bytes += size - from;
    filler->sizes[block] = size;
    return block;
}

void *obtain(std::size_t size) {
    void *block = __real_malloc(size);
    return filler ? filled(block, size, 0) : block;
}

void *obtainCleared(std::size_t count, std::size_t size) {
    void *block = __real_calloc(count, size);
    if (filler && block) filler->sizes[block] = count * size;
    return block;
}

void giveBack(void *block) {
    if (filler && block) {
        const auto known = filler->sizes.find(block);
        if (known != filler->sizes.end()) {
            filled(block, known->second, 0);
            filler->sizes.erase(block);
        }
    }
    __real_free(block);
}

void *resize(void *block, std::size_t size) {
    if (!filler || (block && filler->sizes.count(block) == 0)) return __real_realloc(block, size);
    if (!block) return obtain(size);
    void *moved = obtain(size);
    if (!moved) return nullptr;
    const std::size_t before = filler->sizes[block];
    std::memcpy(moved, block, before < size ? before : size);
    giveBack(block);
    return moved;
}

// Cuts a transfer short or makes it fail; true when *result is the answer.
bool interfere(std::size_t *count, ssize_t *result) {
    const support::FilePlan &plan = files->plan;
    ++files->transfers;
    if (plan.failAt != 0 &&
        (plan.persistent ? files->transfers >= plan.failAt : files->transfers == plan.failAt)) {
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
    if (!files) return false;
    ++files->opens;
    if (!files->plan.failOpen) return false;
    errno = files->plan.openErrno ? files->plan.openErrno : EMFILE;
    return true;
}

int accountDescriptor(int fd) {
    if (files && fd >= 0) ++files->descriptors;
    return fd;
}

}  // namespace

void *__wrap_malloc(std::size_t size) {
    if (!heap) return obtain(size);
    return refuseAllocation(size) ? nullptr : account(obtain(size));
}

void *__wrap_calloc(std::size_t count, std::size_t size) {
    if (!heap) return obtainCleared(count, size);
    return refuseAllocation(count * size) ? nullptr : account(obtainCleared(count, size));
}

void *__wrap_realloc(void *block, std::size_t size) {
    if (!heap) return resize(block, size);
    if (refuseAllocation(size)) return nullptr;
    const bool known = !block || heap->live.erase(block) != 0;
    void *moved = resize(block, size);
    if (known) account(moved ? moved : block);
    return moved;
}

void __wrap_free(void *block) {
    if (heap && block) heap->live.erase(block);
    giveBack(block);
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
    if (!files || files->plan.syncErrno == 0) return __real_fsync(fd);
    errno = files->plan.syncErrno;
    return -1;
}

int __wrap_close(int fd) {
    const int result = __real_close(fd);
    if (!files) return result;
    ++files->closes;
    --files->descriptors;
    if (files->plan.closeErrno == 0) return result;
    errno = files->plan.closeErrno;
    return -1;
}

iconv_t __wrap_iconv_open(const char *to, const char *from) {
    ++convertersWanted;
    if (convertersAreMissing || (converters && converters->opening.refuses())) {
        errno = convertersAreMissing ? EINVAL : converters->opening.plan.error;
        return iconv_t(-1);
    }
    const iconv_t converter = __real_iconv_open(to, from);
    if (converters && converter != iconv_t(-1)) ++converters->opening.made;
    return converter;
}

std::size_t __wrap_iconv(iconv_t converter, char **input, std::size_t *inputLeft, char **output,
                         std::size_t *outputLeft) {
    if (converters && input && converters->converting.refuses()) {
        errno = converters->converting.plan.error;
        return static_cast<std::size_t>(-1);
    }
    return __real_iconv(converter, input, inputLeft, output, outputLeft);
}

int __wrap_iconv_close(iconv_t converter) {
    if (converters) --converters->opening.made;
    return __real_iconv_close(converter);
}

int __wrap_regcomp(regex_t *compiled, const char *pattern, int flags) {
    if (patterns && patterns->refuses()) return patterns->plan.error;
    const int result = __real_regcomp(compiled, pattern, flags);
    if (patterns && result == 0) ++patterns->made;
    return result;
}

void __wrap_regfree(regex_t *compiled) {
    if (patterns) --patterns->made;
    __real_regfree(compiled);
}

ssize_t __wrap_getrandom(void *buffer, std::size_t size, unsigned flags) {
    ++randomWanted;
    if (!randomIsMissing) return __real_getrandom(buffer, size, flags);
    errno = EAGAIN;
    return -1;
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

MissingRandom::MissingRandom() {
    randomIsMissing = true;
    randomWanted = 0;
}
MissingRandom::~MissingRandom() {
    randomIsMissing = false;
}
std::size_t MissingRandom::wanted() const {
    return randomWanted;
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

FilledHeap::FilledHeap(unsigned char byte) {
    filler = nullptr;
    auto *account = new FillAccount;
    account->byte = byte;
    filler = account;
}

FilledHeap::~FilledHeap() {
    FillAccount *account = filler;
    filler = nullptr;
    delete account;
}

std::size_t FilledHeap::bytesFilled() const {
    return filler->bytes;
}

FaultyFiles::FaultyFiles(const FilePlan &plan) {
    files = new FileAccount;
    files->plan = plan;
}

void FaultyFiles::begin(const FilePlan &plan) {
    const long descriptors = files->descriptors;
    *files = FileAccount{};
    files->plan = plan;
    files->descriptors = descriptors;
}

FaultyFiles::~FaultyFiles() {
    FileAccount *account = files;
    files = nullptr;
    delete account;
}

std::size_t FaultyFiles::opens() const {
    return files->opens;
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
std::size_t FaultyFiles::closes() const {
    return files->closes;
}
long FaultyFiles::openDescriptors() const {
    return files->descriptors;
}

FaultyConverters::FaultyConverters() {
    converters = new ConverterAccount;
}
FaultyConverters::~FaultyConverters() {
    delete converters;
    converters = nullptr;
}
void FaultyConverters::begin(const CallPlan &opening, const CallPlan &converting) {
    converters->opening.begin(opening);
    converters->converting.begin(converting);
}
std::size_t FaultyConverters::opens() const {
    return converters->opening.calls;
}
std::size_t FaultyConverters::conversions() const {
    return converters->converting.calls;
}
bool FaultyConverters::failed() const {
    return converters->opening.failed || converters->converting.failed;
}
long FaultyConverters::openConverters() const {
    return converters->opening.made;
}

FaultyPatterns::FaultyPatterns() {
    patterns = new CallAccount;
}
FaultyPatterns::~FaultyPatterns() {
    delete patterns;
    patterns = nullptr;
}
void FaultyPatterns::begin(const CallPlan &compiling) {
    patterns->begin(compiling);
}
std::size_t FaultyPatterns::compiled() const {
    return patterns->calls;
}
bool FaultyPatterns::failed() const {
    return patterns->failed;
}
long FaultyPatterns::openPatterns() const {
    return patterns->made;
}

}  // namespace support
