/* Reads a document of any size without building a tree: the parser calls back for each element and
 * text, and what a callback does not keep is gone. Counts what it sees, and prints the path of
 * every element that carries a given attribute.
 *
 *   stream_events FILE [ATTRIBUTE]
 */
#include <compactxml.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

enum { kPathSize = 1024 };

typedef struct {
    const char *wanted; /* local name of the attribute to look for; null for none */
    unsigned long elements, attributes, texts, textBytes, sections, comments, found;
    unsigned depth, maxDepth;
    size_t pathLength; /* also beyond kPathSize, so that leaving an element can undo entering it */
    char path[kPathSize];
} Survey;

static Survey *surveyOf(XML_Parser_Ctx *context) {
    return context->handler->userData;
}

/* Appends "/name" to the path, as far as it fits. */
static void enter(Survey *survey, const char *name) {
    if (survey->pathLength < kPathSize) {
        snprintf(survey->path + survey->pathLength, kPathSize - survey->pathLength, "/%s", name);
    }
    survey->pathLength += 1 + strlen(name);
    if (++survey->depth > survey->maxDepth) survey->maxDepth = survey->depth;
}

static void leave(Survey *survey, const char *name) {
    survey->pathLength -= 1 + strlen(name);
    if (survey->pathLength < kPathSize) survey->path[survey->pathLength] = '\0';
    --survey->depth;
}

/* [callbacks] */
static void onStartElement(XML_Parser_Ctx *context, const char *localName, const char *prefix,
                           const char *namespaceName, int declarationCount,
                           const char **declarations, int attributeCount, int defaultedCount,
                           const char **attributes) {
    Survey *survey = surveyOf(context);
    (void)prefix, (void)namespaceName, (void)declarationCount, (void)declarations;
    (void)defaultedCount;
    enter(survey, localName);
    ++survey->elements;
    survey->attributes += (unsigned long)attributeCount;
    /* Five strings for each attribute: name, prefix, namespace name, value, end of the value. */
    for (int i = 0; i < attributeCount; ++i, attributes += 5) {
        if (survey->wanted && strcmp(attributes[0], survey->wanted) == 0) {
            ++survey->found;
            printf("%5d: %s %s=\"%s\"\n", (int)context->line, survey->path, attributes[0],
                   attributes[3]);
        }
    }
}

static void onEndElement(XML_Parser_Ctx *context, const char *localName, const char *prefix,
                         const char *namespaceName) {
    (void)prefix, (void)namespaceName;
    leave(surveyOf(context), localName);
}

/* The arguments are always the same four: line, column, a piece of the document, the message. */
static void onError(XML_Parser_Ctx *context, const char *format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const int line = va_arg(arguments, int);
    const int column = va_arg(arguments, int);
    const char *snippet = va_arg(arguments, const char *);
    const char *message = va_arg(arguments, const char *);
    va_end(arguments);
    fprintf(stderr, "%d:%d: %s (code %d) near: %s\n", line, column, message, (int)context->status,
            snippet);
}
/* [callbacks end] */

static void onCharacters(XML_Parser_Ctx *context, const char *text, int length) {
    (void)text;
    ++surveyOf(context)->texts;
    surveyOf(context)->textBytes += (unsigned long)length;
}

static void onCData(XML_Parser_Ctx *context, const char *text, int length) {
    (void)text;
    ++surveyOf(context)->sections;
    surveyOf(context)->textBytes += (unsigned long)length;
}

static void onComment(XML_Parser_Ctx *context, const char *text) {
    (void)text;
    ++surveyOf(context)->comments;
}

int main(int argc, char **argv) {
    if (argc < 2 || argc > 3) {
        fprintf(stderr, "usage: stream_events FILE [ATTRIBUTE]\n");
        return EXIT_FAILURE;
    }
    /* [parse] */
    static Survey survey;
    survey.wanted = argc == 3 ? argv[2] : NULL;

    XML_SAX_Handler handler;
    memset(&handler, 0, sizeof handler);
    handler.userData = &survey;
    handler.startElementNs = onStartElement;
    handler.endElementNs = onEndElement;
    handler.characters = onCharacters;
    handler.cdataBlock = onCData;
    handler.comment = onComment;
    handler.error = onError;
    if (XML_Parser_ByFile(argv[1], &handler) != XML_OK) {
        fprintf(stderr, "%s: not accepted\n", argv[1]);
        return EXIT_FAILURE;
    }
    /* [parse end] */
    printf("%lu elements, %lu attributes, %lu texts, %lu CDATA sections, %lu comments\n",
           survey.elements, survey.attributes, survey.texts, survey.sections, survey.comments);
    printf("%lu bytes of text, at most %u elements deep\n", survey.textBytes, survey.maxDepth);
    if (survey.wanted) printf("%lu times \"%s\"\n", survey.found, survey.wanted);
    return EXIT_SUCCESS;
}
