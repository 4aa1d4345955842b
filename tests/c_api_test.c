/* A C11 program against the shared library: builds a small tree by hand, writes it, reads it back
 * and compares. Says what went wrong and returns 1, or returns 0. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "compactxml.h"

static int failures = 0;

static void expect(int holds, const char *what) {
    if (!holds) {
        printf("c_api_test: %s\n", what);
        ++failures;
    }
}

static int same(const char *a, const char *b) {
    return a && b && strcmp(a, b) == 0;
}

/* <sw:switch xmlns:sw="urn:example" xmlns="urn:default"><port id="7"> x&lt;y </port>... */
static XML_DOM_Node *build(void) {
    XML_DOM_Node *root = XML_DOM_CreateElementNode("switch");
    XML_DOM_Node *port = XML_DOM_CreateElementWithText("port", " x<y ");
    XML_DOM_Node *note = XML_DOM_CreateElementWithCData("note", "a & b");
    expect(XML_DOM_SetRoot(root) == XML_OK, "a root");
    expect(XML_DOM_AddNodeNameSpace(root, "sw", "urn:example") == XML_OK, "a declaration");
    expect(XML_DOM_AddNodeNameSpace(root, NULL, "urn:default") == XML_OK, "a default declaration");
    expect(XML_DOM_SetNodeNameSpace(root, "sw") == XML_OK, "a prefix");
    expect(XML_DOM_AddAttr(port, NULL, "id", "7") != NULL, "an attribute");
    expect(XML_DOM_AddAttr(port, "sw", "id", "8") == NULL, "an undeclared prefix is refused");
    expect(XML_DOM_AddChildNode(root, port) == XML_OK, "the first child");
    expect(XML_DOM_AddChildNode(root, note) == XML_OK, "the second child");
    expect(XML_DOM_AddAttr(port, "sw", "id", "8") != NULL, "a prefix declared above");
    expect(XML_DOM_InsertBeforeNode(port, XML_DOM_CreateElementNode("first")) == XML_OK, "insert");
    return root;
}

struct Collected {
    char bytes[1024];
    uint32_t length;
};

static uint32_t collect(void *context, const char *bytes, uint32_t length) {
    struct Collected *collected = context;
    if (length > sizeof collected->bytes - collected->length) return 1;
    memcpy(collected->bytes + collected->length, bytes, length);
    collected->length += length;
    return 0;
}

struct Counts {
    int starts, ends, texts;
};

static void onStart(XML_Parser_Ctx *context, const char *localName, const char *prefix,
                    const char *namespaceName, int declarationCount, const char **declarations,
                    int attributeCount, int defaultedCount, const char **attributes) {
    struct Counts *counts = context->handler->userData;
    (void)localName, (void)prefix, (void)namespaceName, (void)declarations, (void)attributes;
    (void)declarationCount, (void)attributeCount, (void)defaultedCount;
    ++counts->starts;
}

static void onEnd(XML_Parser_Ctx *context, const char *localName, const char *prefix,
                  const char *namespaceName) {
    struct Counts *counts = context->handler->userData;
    (void)localName, (void)prefix, (void)namespaceName;
    ++counts->ends;
}

static void onText(XML_Parser_Ctx *context, const char *text, int length) {
    struct Counts *counts = context->handler->userData;
    expect((size_t)length == strlen(text), "the length of a text");
    ++counts->texts;
}

static void readBack(const char *text, uint32_t length) {
    char message[256] = "";
    XML_DOM_Node *root = XML_DOM_BuildTreeByMem(text, length, sizeof message, message);
    XML_DOM_Node *port;
    const char *prefix = NULL, *namespaceName = NULL;
    if (!root) {
        printf("c_api_test: %s\n", message);
        ++failures;
        return;
    }
    expect(same(XML_DOM_GetNodeName(root), "switch"), "the root's name");
    expect(XML_DOM_GetNodeNameSpace(root, &prefix, &namespaceName) == XML_OK, "its namespace");
    expect(same(prefix, "sw") && same(namespaceName, "urn:example"), "its expanded name");
    expect(XML_DOM_GetEncoding(root) == XML_ENCODING_UTF_8, "the encoding");
    expect(same(XML_DOM_GetVersion(root), "1.0"), "the version");
    port = XML_DOM_GetNextSibling(XML_DOM_GetFirstChild(root));
    expect(XML_DOM_GetRoot(port) == root && XML_DOM_GetNodeParent(port) == root, "the links");
    expect(same(XML_DOM_GetFirstTextChildValue(port), " x<y "), "the text");
    expect(same(XML_DOM_GetNodeAttrValByName(port, "id"), "7"), "the attribute");
    expect(same(XML_DOM_GetNodeNsAttribute(port, "urn:example", "id"), "8"), "the prefixed one");
    expect(same(XML_DOM_GetFirstCDataChildValue(XML_DOM_GetNextSibling(port)), "a & b"), "CDATA");
    XML_DOM_DelNode(root);

    XML_SAX_Handler handler;
    struct Counts counts = {0, 0, 0};
    memset(&handler, 0, sizeof handler);
    handler.userData = &counts;
    handler.startElementNs = onStart;
    handler.endElementNs = onEnd;
    handler.characters = onText;
    expect(XML_Parser_ByMem(text, length, &handler) == XML_OK, "the parse");
    expect(counts.starts == 4 && counts.ends == 4 && counts.texts == 1, "the callbacks");
}

int main(void) {
    static const char expected[] =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>"
        "<sw:switch xmlns:sw=\"urn:example\" xmlns=\"urn:default\"><first/>"
        "<port id=\"7\" sw:id=\"8\">&#x20;x&lt;y&#x20;</port>"
        "<note><![CDATA[a & b]]></note></sw:switch>";
    XML_DOM_Node *root = build();
    char *text = NULL;
    uint32_t length = 0;
    struct Collected collected = {{0}, 0};

    expect(XML_DOM_TranslateStr(root, 0, &text, &length) == XML_OK, "writing");
    expect(same(text, expected) && length == sizeof expected - 1, "what was written");
    expect(XML_DOM_OutPutTranslateStr(root, 0, collect, &collected) == XML_OK, "the sink");
    expect(text && collected.length == length && memcmp(collected.bytes, text, length) == 0,
           "what the sink got");
    if (text) readBack(text, length);
    free(text);
    XML_DOM_DelNode(root);
    expect(XML_DOM_EncodingStrToEnum("gb18030") == XML_ENCODING_GB18030, "the encoding table");
    return failures != 0;
}
