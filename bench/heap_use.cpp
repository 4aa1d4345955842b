// A program of its own, since counting would slow what the benchmark measures: how many blocks and
// bytes each contestant asks of the heap for one parse, and for building one tree. It defines
// malloc and its kin in front of the C library's, which the shared libraries then use as well.
//
// Writes one JSON object a line.
#include <malloc.h>

#include <cerrno>
#include <cstdio>
#include <string>

#include "contestant.h"
#include "documents.h"

extern "C" {
void *__libc_malloc(std::size_t size);
void *__libc_calloc(std::size_t count, std::size_t size);
void *__libc_realloc(void *block, std::size_t size);
void *__libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void *block);
}

namespace {

// Sizes are the heap's own (malloc_usable_size), since they are known again when a block is freed.
struct Account {
    std::size_t calls = 0;  // malloc, calloc and realloc
    std::size_t live = 0;
    std::size_t liveBlocks = 0;
    std::size_t peak = 0;
};
Account account;
bool counting = false;

void *gained(void *block) {
    if (!counting || !block) return block;
    ++account.calls;
    ++account.liveBlocks;
    account.live += malloc_usable_size(block);
    if (account.live > account.peak) account.peak = account.live;
    return block;
}

void losing(void *block) {
    if (!counting || !block) return;
    --account.liveBlocks;
    account.live -= malloc_usable_size(block);
}

}  // namespace

extern "C" {

void *malloc(std::size_t size) noexcept {
    return gained(__libc_malloc(size));
}

void *calloc(std::size_t count, std::size_t size) noexcept {
    return gained(__libc_calloc(count, size));
}

void *realloc(void *block, std::size_t size) noexcept {
    losing(block);  // a failed realloc, which keeps its block, ends this program anyway
    return gained(__libc_realloc(block, size));
}

void *memalign(std::size_t alignment, std::size_t size) noexcept {
    return gained(__libc_memalign(alignment, size));
}

void *aligned_alloc(std::size_t alignment, std::size_t size) noexcept {
    return memalign(alignment, size);
}

int posix_memalign(void **out, std::size_t alignment, std::size_t size) noexcept {
    void *block = memalign(alignment, size);
    if (!block) return ENOMEM;
    *out = block;
    return 0;
}

void free(void *block) noexcept {
    losing(block);
    __libc_free(block);
}

}  // extern "C"

namespace bench {
namespace {

void start() {
    account = {};
    counting = true;
}

void report(const char *job, const Contestant &contestant, const Document &document) {
    counting = false;
    std::printf(
        "{\"job\": \"%s\", \"document\": \"%s\", \"contestant\": \"%s\", \"document_bytes\": %zu, "
        "\"calls\": %zu, \"peak_bytes\": %zu, \"kept_blocks\": %zu, \"kept_bytes\": %zu}\n",
        job, document.label.c_str(), contestant.name, document.bytes.size(), account.calls,
        account.peak, account.liveBlocks, account.live);
}

bool measure(const Contestant &contestant, const Document &document) {
    bool ok = true;
    if (contestant.parse) {
        Tally warm;  // what a library keeps for its own life is not counted
        ok = contestant.parse("<a/>", warm);
        Tally tally;
        start();
        ok = contestant.parse(document.bytes, tally) && ok;
        report("parse", contestant, document);
    }
    if (contestant.build) {
        std::string bytes = document.bytes;
        std::string small = "<a/>";
        if (void *warm = contestant.build(small)) contestant.destroy(warm);
        start();
        void *tree = contestant.build(bytes);
        report("build", contestant, document);
        ok = ok && tree;
        if (tree) contestant.destroy(tree);
    }
    return ok;
}

}  // namespace
}  // namespace bench

int main() {
    bool ok = true;
    for (const std::size_t size : {std::size_t{4000}, std::size_t{1000000}}) {
        const bench::Document &document = bench::document(bench::Kind::configuration, size);
        for (const bench::Contestant *contestant : bench::kContestants) {
            ok = bench::measure(*contestant, document) && ok;
        }
    }
    return ok ? 0 : 1;
}
