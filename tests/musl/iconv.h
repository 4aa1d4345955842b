/* tests/musl/iconv.h - an iconv beside the C library's, under the names that GNU libiconv has. */
#ifndef COMPACTXML_TESTS_MUSL_ICONV_H
#define COMPACTXML_TESTS_MUSL_ICONV_H

#include <stddef.h>

#define iconv_open libiconv_open
#define iconv libiconv
#define iconv_close libiconv_close

typedef void *iconv_t;

#ifdef __cplusplus
extern "C" {
#endif
iconv_t iconv_open(const char *to, const char *from);
size_t iconv(iconv_t converter, char **in, size_t *inLeft, char **out, size_t *outLeft);
int iconv_close(iconv_t converter);
#ifdef __cplusplus
}
#endif

#endif
