// A program of its own, since counting would slow what the benchmark measures: how many blocks and
// bytes each contestant asks of the heap for one parse, and for building one tree. It defines
// malloc and its kin in front of the C library's, which the shared libraries then use as well.
//
// Writes one JSON object a line.
#include <malloc.h>

#include <cerrno>
#include <cstdio>
#include <string>
#include <vector>

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
        if (void *warm = contestant.build(small, Encoding::utf8)) contestant.destroy(warm);
        start();
        void *tree = contestant.build(bytes, document.encoding);
        report("build", contestant, document);
        ok = ok && tree;
        if (tree) contestant.destroy(tree);
    }
    return ok;
}

}  // namespace
}  // namespace bench

// The labels of documents, or none for the usual ones.
int main(int argc, char **argv) {
    std::vector<std::string> labels(argv + 1, argv + argc);
    if (labels.empty()) {
        labels = {"rpc/4k",           "configuration/10k", "configuration/100k",
                  "configuration/1M", "configuration/10M", "text/1M",
                  "attributes/1M",    "chinese/1M"};
    }
    bool ok = true;
    for (const std::string &label : labels) {
        const bench::Document *document = bench::findDocument(label);
        ok = ok && document;
        if (!document) continue;
        for (const bench::Contestant *contestant : bench::contestants()) {
            if (contestant->takes(*document)) ok = bench::measure(*contestant, *document) && ok;
        }
    }
    return ok ? 0 : 1;
}
