/* Stands in for GNU libiconv in the tests of a build for musl, whose own iconv reads GB18030 but does not
 * write it: asks that one of everything, and turns its answers about GB18030 around. Not for use beyond
 * tests: the table is made without a lock. */
#include <errno.h>
#include <iconv.h>
#include <stdint.h>
#include <stdlib.h>
#include <strings.h>

/* Declared here: the header beside this file gives other names to them. */
void *libiconv_open(const char *to, const char *from);
size_t libiconv(void *converter, char **in, size_t *inLeft, char **out, size_t *outLeft);
int libiconv_close(void *converter);

struct Converter {
    iconv_t base;   /* to the encoding, or to UTF-32LE where that is GB18030 */
    iconv_t reader; /* from GB18030, where that is to be written */
    int writesGb18030;
};

/* The forms of two bytes, and ASCII; 0 for other characters. */
static uint16_t codes[0x10000];

/* One character, by way of bytes so that the machine's order does not matter. */
static uint32_t codePoint(const unsigned char *utf32) {
    return utf32[0] | (uint32_t)utf32[1] << 8 | (uint32_t)utf32[2] << 16;
}

/* The character of one form, or -1. */
static int32_t read(iconv_t reader, const unsigned char *form, size_t length) {
    unsigned char utf32[4];
    char *in = (char *)form, *out = (char *)utf32;
    size_t inLeft = length, outLeft = sizeof utf32;
    if (iconv(reader, &in, &inLeft, &out, &outLeft) != 0 || outLeft != 0) return -1;
    return (int32_t)codePoint(utf32);
}

static void learnShortForms(iconv_t reader) {
    for (unsigned c = 1; c < 0x80; ++c) codes[c] = (uint16_t)c;
    for (unsigned lead = 0x81; lead <= 0xFE; ++lead) {
        for (unsigned trail = 0x40; trail <= 0xFE; ++trail) {
            const unsigned char form[2] = {(unsigned char)lead, (unsigned char)trail};
            const int32_t c = read(reader, form, sizeof form);
            if (c >= 0 && c < 0x10000 && !codes[c]) codes[c] = (uint16_t)(lead << 8 | trail);
        }
    }
}

/* The forms of four bytes are numbered. */
static void longForm(uint32_t number, unsigned char *form) {
    form[0] = (unsigned char)(0x81 + number / 12600);
    form[1] = (unsigned char)(0x30 + number / 1260 % 10);
    form[2] = (unsigned char)(0x81 + number / 10 % 126);
    form[3] = (unsigned char)(0x30 + number % 10);
}

/* Finds a character among those of 8130 8130 to 8431 A439, which are in the order of the characters. */
static int findLongForm(iconv_t reader, int32_t wanted, unsigned char *form) {
    uint32_t first = 0, end = 39420;
    while (first < end) {
        const uint32_t middle = first + (end - first) / 2;
        longForm(middle, form);
        const int32_t c = read(reader, form, 4);
        if (c == wanted) return 1;
        if (c >= 0 && c < wanted) {
            first = middle + 1;
        } else {
            end = middle;
        }
    }
    return 0;
}

/* The bytes of a character, or none. */
static size_t encode(iconv_t reader, uint32_t c, unsigned char *bytes) {
    if (c >= 0x10000) {
        longForm(c - 0x10000 + 15 * 12600, bytes);
        return 4;
    }
    if (c && !codes[c]) return findLongForm(reader, (int32_t)c, bytes) ? 4 : 0;
    size_t count = 0;
    if (codes[c] > 0xFF) bytes[count++] = (unsigned char)(codes[c] >> 8);
    bytes[count++] = (unsigned char)codes[c];
    return count;
}

void *libiconv_open(const char *to, const char *from) {
    struct Converter *converter = malloc(sizeof *converter);
    if (!converter) return (void *)-1;
    const iconv_t none = (iconv_t)-1;
    converter->writesGb18030 = strcasecmp(to, "GB18030") == 0;
    converter->base = iconv_open(converter->writesGb18030 ? "UTF-32LE" : to, from);
    converter->reader = converter->writesGb18030 ? iconv_open("UTF-32LE", "GB18030") : none;
    if (converter->base != none && (!converter->writesGb18030 || converter->reader != none)) {
        if (converter->writesGb18030 && !codes['A']) learnShortForms(converter->reader);
        return converter;
    }
    if (converter->base != none) iconv_close(converter->base);
    free(converter);
    errno = EINVAL;
    return (void *)-1;
}

size_t libiconv(void *of, char **in, size_t *inLeft, char **out, size_t *outLeft) {
    struct Converter *converter = of;
    if (!converter->writesGb18030 || !in || !*in) {
        return iconv(converter->base, in, inLeft, out, outLeft);
    }
    while (*inLeft > 0) {
        unsigned char utf32[4], bytes[4];
        char *next = *in, *made = (char *)utf32;
        size_t left = *inLeft, room = sizeof utf32;
        const size_t result = iconv(converter->base, &next, &left, &made, &room);
        if (room == 0) {
            const size_t count = encode(converter->reader, codePoint(utf32), bytes);
            errno = count ? E2BIG : EILSEQ;
            if (count == 0 || count > *outLeft) return (size_t)-1;
            for (size_t i = 0; i < count; ++i) *(*out)++ = (char)bytes[i];
            *outLeft -= count;
        } else if (result == (size_t)-1) {
            return result;
        }
        *in = next;
        *inLeft = left;
    }
    return 0;
}

int libiconv_close(void *of) {
    struct Converter *converter = of;
    const int result = iconv_close(converter->base);
    if (converter->writesGb18030) iconv_close(converter->reader);
    free(converter);
    return result;
}
