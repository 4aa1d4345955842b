/* Loads the library at run time: dlopen_user PATH_OF_LIBRARY. */
#include <compactxml.h>
#include <dlfcn.h>
#include <stdio.h>
#include <string.h>

typedef XML_DOM_Node *BuildTree(const char *, uint32_t, uint32_t, char *);
typedef const char *GetName(const XML_DOM_Node *);
typedef void Delete(XML_DOM_Node *);

/* An address as a function, which ISO C does not convert but POSIX does. */
static void take(void *library, const char *name, void *function) {
    void *address = dlsym(library, name);
    memcpy(function, &address, sizeof address);
}

int main(int argc, char **argv) {
    static const char document[] = "<a/>";
    BuildTree *build;
    GetName *nameOf;
    Delete *destroy;
    void *library = dlopen(argc == 2 ? argv[1] : "", RTLD_NOW | RTLD_LOCAL);
    if (!library) return fprintf(stderr, "%s\n", dlerror()), 1;
    take(library, "XML_DOM_BuildTreeByMem", &build);
    take(library, "XML_DOM_GetNodeName", &nameOf);
    take(library, "XML_DOM_DelNode", &destroy);
    if (!build || !nameOf || !destroy) return 1;
    XML_DOM_Node *root = build(document, sizeof document - 1, 0, NULL);
    const char *name = nameOf(root);
    const int good = name && strcmp(name, "a") == 0;
    destroy(root);
    return dlclose(library) == 0 && good ? 0 : 1;
}
