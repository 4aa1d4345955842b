/* load_library.c - prints how many nanoseconds it takes to load a shared library and to give it up.
 *
 *   compactxml_bench_load NAME
 *
 * A program of its own, which links nothing but the C library: what the library needs beyond that
 * is part of the time, as the C++ run-time library for those written in C++.
 */
#include <dlfcn.h>
#include <stdio.h>
#include <time.h>

static long long now(void) {
    struct timespec time;
    clock_gettime(CLOCK_MONOTONIC, &time);
    return time.tv_sec * 1000000000ll + time.tv_nsec;
}

int main(int argc, char **argv) {
    if (argc != 2) {
        fprintf(stderr, "usage: compactxml_bench_load NAME\n");
        return 2;
    }
    const long long start = now();
    void *library = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
    if (!library || dlclose(library) != 0) {
        fprintf(stderr, "%s\n", dlerror());
        return 1;
    }
    printf("%lld\n", now() - start);
    return 0;
}
