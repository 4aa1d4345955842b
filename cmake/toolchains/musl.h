// cmake/toolchains/musl.h - read before all else: what the C++ headers, which are made for glibc, take for
// given and musl has not.
#ifdef __cplusplus
#define __GLIBC_PREREQ(major, minor) 0
#include <bits/c++config.h>
#undef _GLIBCXX_USE_PTHREAD_COND_CLOCKWAIT
#undef _GLIBCXX_USE_PTHREAD_MUTEX_CLOCKLOCK
#undef _GLIBCXX_USE_PTHREAD_RWLOCK_CLOCKLOCK
#define __locale_t locale_t
// Of use to streams alone, which nothing here has.
enum {
    _ISupper = 1 << 0,
    _ISlower = 1 << 1,
    _ISalpha = 1 << 2,
    _ISdigit = 1 << 3,
    _ISxdigit = 1 << 4,
    _ISspace = 1 << 5,
    _ISprint = 1 << 6,
    _ISblank = 1 << 7,
    _IScntrl = 1 << 8,
    _ISpunct = 1 << 9
};
#endif
