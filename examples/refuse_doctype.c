/* Reads a document only if it has no document type declaration, for programs whose documents go to
 * other XML parsers as well. This library passes such a declaration over; others read it, and may see
 * another document.
 *
 *   refuse_doctype DOCUMENT
 */
#include <compactxml.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

/* [refuse] */
/* Whether a document may have a document type declaration. In UTF-8, GB18030, GBK and GB2312 a byte of
 * ASCII is always the character, so the beginning of a declaration cannot hide, nor be part of
 * another character. The other encodings have a NUL in every character of ASCII; documents in
 * these are refused outright. So is one with these characters in a comment or a CDATA section. */
static int mayHaveDoctype(const char *document, size_t length) {
    static const char kDeclaration[] = "<!DOCTYPE";
    const size_t size = sizeof kDeclaration - 1;
    const char *at = document, *end = document + length;
    if (memchr(document, '\0', length)) return 1;
    while ((at = memchr(at, '<', (size_t)(end - at)))) {
        if ((size_t)(end - at) >= size && memcmp(at, kDeclaration, size) == 0) return 1;
        ++at;
    }
    return 0;
}
/* [refuse end] */

int main(int argc, char **argv) {
    char error[256] = "";
    if (argc != 2) return fprintf(stderr, "usage: refuse_doctype DOCUMENT\n"), EXIT_FAILURE;
    const char *document = argv[1];
    const size_t length = strlen(document);
    if (mayHaveDoctype(document, length)) return fprintf(stderr, "a DOCTYPE\n"), EXIT_FAILURE;
    XML_DOM_Node *root = XML_DOM_BuildTreeByMem(document, (uint32_t)length, sizeof error, error);
    if (!root) return fprintf(stderr, "%s\n", error), EXIT_FAILURE;
    printf("root %s\n", XML_DOM_GetNodeName(root));
    XML_DOM_DelNode(root);
    return EXIT_SUCCESS;
}
