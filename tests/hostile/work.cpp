#include "tests/hostile/work.h"

#include <iconv.h>
#include <regex.h>
#include <unistd.h>

#include <cstring>

namespace {

// Pieces of work that are not basic blocks, in these.
constexpr std::uint64_t kCall = 8, kAllocation = 40, kBytesAtOnce = 16;

std::uint64_t done;

void passOver(std::size_t bytes) {
    done += kCall + bytes / kBytesAtOnce;
}

}  // namespace

namespace hostile {

std::uint64_t workSoFar() {
    return done;
}

testing::AssertionResult staysLevel(const Effort &one, const Effort &eight) {
    constexpr std::uint64_t kStart = 4000;  // what a call does whatever its input
    const auto perByte = [](const Effort &effort) {
        return static_cast<double>(effort.work) / static_cast<double>(effort.bytes);
    };
    if (one.work == 0) return testing::AssertionFailure() << "no work was counted";
    const double allowed = 2 * perByte(one) * static_cast<double>(eight.bytes) + kStart;
    if (static_cast<double>(eight.work) <= allowed) return testing::AssertionSuccess();
    return testing::AssertionFailure() << perByte(one) << " for each of " << one.bytes << " bytes, "
                                       << perByte(eight) << " for each of " << eight.bytes;
}

}  // namespace hostile

// ---------------------------------------------------------------- where the library calls in

extern "C" {

void __sanitizer_cov_trace_pc();
void __sanitizer_cov_trace_pc() {
    ++done;
}

void *__real_malloc(std::size_t size);
void *__real_calloc(std::size_t count, std::size_t size);
void *__real_realloc(void *block, std::size_t size);
void *__wrap_malloc(std::size_t size);
void *__wrap_calloc(std::size_t count, std::size_t size);
void *__wrap_realloc(void *block, std::size_t size);

void *__wrap_malloc(std::size_t size) {
    done += kAllocation;
    return __real_malloc(size);
}

void *__wrap_calloc(std::size_t count, std::size_t size) {
    done += kAllocation;
    passOver(count * size);
    return __real_calloc(count, size);
}

// Grown blocks count as moved.
void *__wrap_realloc(void *block, std::size_t size) {
    done += kAllocation;
    passOver(size);
    return __real_realloc(block, size);
}

void *__real_memcpy(void *to, const void *from, std::size_t size);
void *__real_memmove(void *to, const void *from, std::size_t size);
void *__real_memset(void *to, int byte, std::size_t size);
int __real_memcmp(const void *a, const void *b, std::size_t size);
void *__real_memchr(const void *bytes, int byte, std::size_t size);
void *__wrap_memcpy(void *to, const void *from, std::size_t size);
void *__wrap_memmove(void *to, const void *from, std::size_t size);
void *__wrap_memset(void *to, int byte, std::size_t size);
int __wrap_memcmp(const void *a, const void *b, std::size_t size);
void *__wrap_memchr(const void *bytes, int byte, std::size_t size);

void *__wrap_memcpy(void *to, const void *from, std::size_t size) {
    passOver(size);
    return __real_memcpy(to, from, size);
}

void *__wrap_memmove(void *to, const void *from, std::size_t size) {
    passOver(size);
    return __real_memmove(to, from, size);
}

void *__wrap_memset(void *to, int byte, std::size_t size) {
    passOver(size);
    return __real_memset(to, byte, size);
}

int __wrap_memcmp(const void *a, const void *b, std::size_t size) {
    const auto *left = static_cast<const char *>(a), *right = static_cast<const char *>(b);
    std::size_t same = 0;
    while (same < size && left[same] == right[same]) ++same;
    passOver(same);
    return __real_memcmp(a, b, size);
}

void *__wrap_memchr(const void *bytes, int byte, std::size_t size) {
    void *found = __real_memchr(bytes, byte, size);
    passOver(found ? static_cast<std::size_t>(static_cast<const char *>(found) -
                                              static_cast<const char *>(bytes))
                   : size);
    return found;
}

std::size_t __real_strlen(const char *text);
std::size_t __real_strnlen(const char *text, std::size_t most);
int __real_strcmp(const char *a, const char *b);
int __real_strncmp(const char *a, const char *b, std::size_t most);
char *__real_strchr(const char *text, int c);
char *__real_strrchr(const char *text, int c);
char *__real_strstr(const char *text, const char *part);
std::size_t __wrap_strlen(const char *text);
std::size_t __wrap_strnlen(const char *text, std::size_t most);
int __wrap_strcmp(const char *a, const char *b);
int __wrap_strncmp(const char *a, const char *b, std::size_t most);
char *__wrap_strchr(const char *text, int c);
char *__wrap_strrchr(const char *text, int c);
char *__wrap_strstr(const char *text, const char *part);

std::size_t __wrap_strlen(const char *text) {
    const std::size_t length = __real_strlen(text);
    passOver(length);
    return length;
}

std::size_t __wrap_strnlen(const char *text, std::size_t most) {
    const std::size_t length = __real_strnlen(text, most);
    passOver(length);
    return length;
}

int __wrap_strcmp(const char *a, const char *b) {
    std::size_t same = 0;
    while (a[same] != '\0' && a[same] == b[same]) ++same;
    passOver(same);
    return __real_strcmp(a, b);
}

int __wrap_strncmp(const char *a, const char *b, std::size_t most) {
    std::size_t same = 0;
    while (same < most && a[same] != '\0' && a[same] == b[same]) ++same;
    passOver(same);
    return __real_strncmp(a, b, most);
}

// Where a search for something in a text ended.
static void passTo(const char *text, const char *found) {
    passOver(found ? static_cast<std::size_t>(found - text) : __real_strlen(text));
}

char *__wrap_strchr(const char *text, int c) {
    char *found = __real_strchr(text, c);
    passTo(text, found);
    return found;
}

char *__wrap_strrchr(const char *text, int c) {
    passOver(__real_strlen(text));
    return __real_strrchr(text, c);
}

char *__wrap_strstr(const char *text, const char *part) {
    char *found = __real_strstr(text, part);
    passTo(text, found);
    return found;
}

std::size_t __real_iconv(iconv_t converter, char **from, std::size_t *fromLeft, char **to,
                         std::size_t *toLeft);
std::size_t __wrap_iconv(iconv_t converter, char **from, std::size_t *fromLeft, char **to,
                         std::size_t *toLeft);
ssize_t __real_read(int file, void *to, std::size_t size);
ssize_t __wrap_read(int file, void *to, std::size_t size);
int __real_regexec(const regex_t *pattern, const char *text, std::size_t count, regmatch_t *matches,
                   int flags);
int __wrap_regexec(const regex_t *pattern, const char *text, std::size_t count, regmatch_t *matches,
                   int flags);

std::size_t __wrap_iconv(iconv_t converter, char **from, std::size_t *fromLeft, char **to,
                         std::size_t *toLeft) {
    const std::size_t before = fromLeft ? *fromLeft : 0;
    const std::size_t result = __real_iconv(converter, from, fromLeft, to, toLeft);
    done += kAllocation + (before - (fromLeft ? *fromLeft : 0));
    return result;
}

ssize_t __wrap_read(int file, void *to, std::size_t size) {
    const ssize_t result = __real_read(file, to, size);
    passOver(result > 0 ? static_cast<std::size_t>(result) : 0);
    return result;
}

int __wrap_regexec(const regex_t *pattern, const char *text, std::size_t count, regmatch_t *matches,
                   int flags) {
    done += kCall + __real_strlen(text);
    return __real_regexec(pattern, text, count, matches, flags);
}

}  // extern "C"
