/* The tasks of docs/guide.md, one function each, run one after another. Each function returns 1
 * when everything came out as the guide says. */
#include <compactxml.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "switch.h"

/* Says what went wrong and where; the value is 1 when all is well. */
static int check(int good, const char *what) {
    if (!good) fprintf(stderr, "guide: %s\n", what);
    return good;
}

/* [convert] */
/* Converts a string between two encodings into a new string; the caller frees it. Null for null and
 * for a string that does not convert. */
static char *convert(const char *text, uint32_t from, uint32_t to) {
    XML_IO_OutStream *stream = XML_IO_MemOutStreamCreate(from, to);
    char *converted = NULL;
    if (text && XML_IO_OutStreamAppend(stream, text, (uint32_t)strlen(text) + 1) == XML_OK) {
        converted = XML_IO_MemOutStreamDetachBuf(stream, NULL);
    }
    XML_IO_OutStreamDestroy(stream);
    return converted;
}
/* [convert end] */

/* [read file] */
static int readFile(const char *path) {
    char error[512] = "cannot open the file";
    XML_DOM_Node *root = XML_DOM_BuildTreeByFile(path, sizeof error, error);
    if (!root) {
        fprintf(stderr, "%s: %s\n", path, error);
        return 0;
    }
    printf("read <%s>, encoding %s\n", XML_DOM_GetNodeName(root),
           XML_DOM_EncodingEnumToStr(XML_DOM_GetEncoding(root)));
    XML_DOM_DelNode(root);
    return 1;
}
/* [read file end] */

/* [read pieces] */
static XML_DOM_Node *readPieces(void) {
    static const unsigned char head[] = "<vlans><vlan id='10'>off";
    static const unsigned char tail[] = "ice</vlan></vlans>";
    XML_IO_MemChunk second = {NULL, sizeof tail - 1, tail};
    XML_IO_MemChunk first = {&second, sizeof head - 1, head};
    XML_IO_MemList list = {&first};
    return XML_DOM_BuildTreeByMemList(&list, 0, NULL);
}
/* [read pieces end] */

/* [find] */
/* The next element of this name among a node and the siblings after it; null if there is none. */
static XML_DOM_Node *firstNamed(XML_DOM_Node *node, const char *name) {
    while (node && XML_Strcmp(XML_DOM_GetNodeName(node), name) != 0) {
        node = XML_DOM_GetNextSibling(node);
    }
    return node;
}
/* [find end] */

static int readValues(void) {
    static const char document[] =
        "<interfaces xmlns='urn:example:if' xmlns:q='urn:example:qos'>"
        "<interface name='1/0/1' q:class='voice'><mtu>1500</mtu></interface>"
        "<interface name='1/0/2'><script><![CDATA[if a < b]]></script></interface>"
        "</interfaces>";
    XML_DOM_Node *root = XML_DOM_BuildTreeByMem(document, sizeof document - 1, 0, NULL);
    int good = check(root != NULL, "the document was not read");

    /* [values] */
    for (XML_DOM_Node *port = XML_DOM_GetFirstChild(root); port;
         port = XML_DOM_GetNextSibling(port)) {
        const char *name = XML_DOM_GetNodeAttrValByName(port, "name");
        const char *class = XML_DOM_GetNodeNsAttribute(port, "urn:example:qos", "class");
        XML_DOM_Node *child = XML_DOM_GetFirstChild(port);
        const char *text = XML_DOM_GetFirstTextChildValue(child);
        const char *script = XML_DOM_GetFirstCDataChildValue(child);
        printf("port %s, class %s: %s is %s\n", name, class ? class : "none",
               XML_DOM_GetNodeName(child),
               text     ? text
               : script ? script
                        : "");
    }
    /* [values end] */

    XML_DOM_Node *port = XML_DOM_GetFirstChild(root);
    /* [namespaces] */
    const char *prefix = NULL, *namespaceName = NULL;
    if (XML_DOM_GetNodeNameSpace(port, &prefix, &namespaceName) == XML_OK) {
        printf("prefix %s, namespace %s\n", prefix ? prefix : "none",
               namespaceName ? namespaceName : "none");
    }
    for (XML_DOM_Attr *attribute = XML_DOM_GetFirstAttr(port); attribute;
         attribute = XML_DOM_GetNextAttr(attribute)) {
        const char *name = NULL, *attributeNamespace = NULL;
        XML_DOM_GetAttrNameSpace(attribute, &name, &attributeNamespace);
        printf("attribute {%s}%s = %s\n", attributeNamespace ? attributeNamespace : "", name,
               XML_DOM_GetAttrValByHandle(attribute));
    }
    /* [namespaces end] */
    good &= check(XML_Strcmp(namespaceName, "urn:example:if") == 0, "wrong namespace");
    good &= check(
        XML_Strcmp(XML_DOM_GetNodeNsAttribute(port, "urn:example:qos", "class"), "voice") == 0,
        "wrong class");
    XML_DOM_DelNode(root);
    return good;
}

static int useChinese(void) {
    static const char document[] =
        "<port><description>\xe4\xbc\x9a\xe8\xae\xae</description></port>";
    XML_DOM_Node *root = XML_DOM_BuildTreeByMem(document, sizeof document - 1, 0, NULL);
    XML_DOM_Node *description = XML_DOM_GetFirstChild(root);

    /* [chinese] */
    /* Out of the tree: GB18030 to UTF-8, for a terminal or a log. */
    char *shown = convert(XML_DOM_GetFirstTextChildValue(description), XML_ENCODING_GB18030,
                          XML_ENCODING_UTF_8);
    printf("description: %s\n", shown ? shown : "(cannot be shown)");

    /* Into the tree: the other way round. */
    char *stored = convert("\xe8\xae\xb2\xe5\xae\xa4", XML_ENCODING_UTF_8, XML_ENCODING_GB18030);
    uint32_t result = XML_DOM_SetNodeValue(XML_DOM_GetFirstChild(description), stored);
    /* [chinese end] */

    char *written = NULL;
    int good = check(result == XML_OK, "the value was not set");
    good &= check(XML_DOM_TranslateStr(root, XML_DOM_NO_DECLARATION, &written, NULL) == XML_OK,
                  "the tree was not written");
    good &= check(XML_Strcmp(written,
                             "<port><description>\xe8\xae\xb2\xe5\xae\xa4"
                             "</description></port>") == 0,
                  "the value came out wrong");
    free(written);
    free(stored);
    free(shown);
    XML_DOM_DelNode(root);
    return good;
}

/* [build] */
/* Builds <i:interface xmlns:i="..." name="lag1"><i:mtu>9216</i:mtu></i:interface> as a document. */
static XML_DOM_Node *buildInterface(void) {
    XML_DOM_Node *root = XML_DOM_CreateElementNode("interface");
    XML_DOM_Node *mtu = XML_DOM_CreateElementWithText("mtu", "9216");
    uint32_t failures = 0;
    failures |= XML_DOM_SetRoot(root);
    failures |= XML_DOM_AddNodeNameSpace(root, "i", "urn:example:if");
    failures |= XML_DOM_SetNodeNameSpace(root, "i");
    failures |= XML_DOM_AddAttr(root, NULL, "name", "lag1") == NULL;
    if (XML_DOM_AddChildNode(root, mtu) != XML_OK) {
        failures = 1;
        XML_DOM_DelNode(mtu); /* not attached, so still ours */
    } else {
        failures |= XML_DOM_SetNodeNameSpace(mtu, "i"); /* resolved through the parent */
    }
    if (failures) {
        XML_DOM_DelNode(root);
        return NULL;
    }
    return root;
}
/* [build end] */

static int selectAndCopy(void) {
    static const char document[] =
        "<config><vlans><vlan><id>10</id><name>office</name></vlan></vlans><backup/></config>";
    XML_DOM_Node *root = XML_DOM_BuildTreeByMem(document, sizeof document - 1, 0, NULL);
    int good = 1;

    /* [select] */
    unsigned long long id = 0;
    if (XML_DOM_GetSelectSingleNodeAsUInt64(root, "vlans/vlan/id", &id) == XML_OK) {
        char path[128];
        XML_DOM_Node *vlan = XML_DOM_SelectSingleNode(root, "/config/vlans/vlan");
        XML_DOM_GetXPath(vlan, sizeof path, path); /* "/config/vlans[1]/vlan[1]" */
        printf("VLAN %llu at %s is %s\n", id, path, XML_DOM_GetSelectSingleNodeText(vlan, "name"));
    }
    /* [select end] */
    good &= check(id == 10, "the identifier was not found");

    /* [copy] */
    XML_DOM_Node *vlans = XML_DOM_SelectSingleNode(root, "vlans");
    XML_DOM_Node *backup = XML_DOM_SelectSingleNode(root, "backup");
    uint32_t result = XML_DOM_CopySubTree(backup, vlans); /* all children of vlans */
    XML_DOM_Node *archive = XML_DOM_CopyRoot(root);       /* a new document: <config/> */
    if (result == XML_OK) result = XML_DOM_AdoptChildren(backup, archive); /* moved there */
    /* [copy end] */
    good &= check(result == XML_OK && XML_DOM_SelectSingleNode(archive, "vlan/id") != NULL &&
                      XML_DOM_GetFirstChild(backup) == NULL,
                  "the copy did not arrive");
    XML_DOM_DelNode(archive);
    XML_DOM_DelNode(root);
    return good;
}

static int changeTree(void) {
    static const char document[] =
        "<vlan id='10'><name>office</name><isolated/><mtu>1500</mtu></vlan>";
    XML_DOM_Node *vlan = XML_DOM_BuildTreeByMem(document, sizeof document - 1, 0, NULL);
    uint32_t failures = 0;

    /* [change] */
    XML_DOM_Node *name = firstNamed(XML_DOM_GetFirstChild(vlan), "name");
    XML_DOM_Node *isolated = firstNamed(name, "isolated");
    XML_DOM_Node *mtu = firstNamed(name, "mtu");

    failures |= XML_DOM_SetNodeValue(XML_DOM_GetFirstChild(name), "office-3f"); /* its text */
    XML_DOM_DelAttr(vlan, NULL, "id"); /* an attribute is changed by replacing it */
    failures |= XML_DOM_AddAttr(vlan, NULL, "id", "11") == NULL;
    failures |= XML_DOM_SetNodeName(mtu, "l2-mtu");
    XML_DOM_Node *state = XML_DOM_CreateElementWithText("state", "active");
    if (XML_DOM_InsertBeforeNode(mtu, state) != XML_OK) XML_DOM_DelNode(state), failures = 1;
    XML_DOM_DelNode(isolated);                    /* takes itself out of its parent first */
    XML_DOM_Clip(name);                           /* takes it out and keeps it ... */
    failures |= XML_DOM_AddChildNode(vlan, name); /* ... here to put it back as the last child */
    /* [change end] */

    char *written = NULL;
    int good = check(failures == 0, "an edit was refused");
    good &= check(XML_DOM_TranslateStr(vlan, XML_DOM_NO_DECLARATION, &written, NULL) == XML_OK &&
                      strcmp(written,
                             "<vlan id=\"11\"><state>active</state><l2-mtu>1500</l2-mtu>"
                             "<name>office-3f</name></vlan>") == 0,
                  "the edited tree came out wrong");
    free(written);
    XML_DOM_DelNode(vlan);
    return good;
}

/* [sink] */
static uint32_t toStdio(void *context, const char *bytes, uint32_t length) {
    return fwrite(bytes, 1, length, context) == length ? XML_OK : XML_REFUSED;
}

static uint32_t printDocument(const XML_DOM_Node *root) {
    uint32_t result = XML_DOM_OutPutTranslateStr(root, 0, toStdio, stdout);
    putchar('\n');
    return result;
}
/* [sink end] */

/* [save] */
/* Writes a document to a file in a chosen encoding. An output stream appends, so the file is
 * removed first; write to a new name and rename it where a power cut must not leave half a file. */
static uint32_t save(XML_DOM_Node *root, const char *path, uint32_t encoding) {
    char *text = NULL;
    uint32_t length = 0;
    uint32_t result = XML_DOM_SetEncoding(root, encoding);
    if (result == XML_OK) result = XML_DOM_TranslateStr(root, 0, &text, &length);
    if (result == XML_OK) {
        remove(path);
        XML_IO_OutStream *file =
            XML_IO_FileOutStreamCreate(path, encoding, encoding); /* equal: no conversion */
        result = XML_IO_OutStreamAppend(file, text, length);
        XML_IO_FileOutStreamFlush(file);
        XML_IO_OutStreamDestroy(file);
    }
    free(text);
    return result;
}
/* [save end] */

/* [convert document] */
/* Writes the document of one file to another one in another encoding, such as "GB18030". */
static uint32_t convertDocument(const char *from, const char *to, const char *encodingName) {
    uint32_t encoding = XML_DOM_EncodingStrToEnum(encodingName);
    XML_DOM_Node *root = XML_DOM_BuildTreeByFile(from, 0, NULL);
    uint32_t result = save(root, to, encoding); /* refuses null and XML_ENCODING_UNKNOWN */
    XML_DOM_DelNode(root);
    return result;
}
/* [convert document end] */

/* [convert stream] */
/* Appends all that a file holds, in UTF-8, to another file in another encoding. Pieces may end within a
 * character. */
static uint32_t convertStream(FILE *from, const char *to, uint32_t encoding) {
    char piece[512];
    size_t length;
    XML_IO_OutStream *stream = XML_IO_FileOutStreamCreate(to, XML_ENCODING_UTF_8, encoding);
    uint32_t result = stream ? XML_OK : XML_REFUSED;
    while (result == XML_OK && (length = fread(piece, 1, sizeof piece, from)) > 0) {
        result = XML_IO_OutStreamAppend(stream, piece, (uint32_t)length);
    }
    if (ferror(from)) result = XML_REFUSED;
    if (stream && stream->pendingCount > 0) result = XML_REFUSED; /* half a character at the end */
    XML_IO_FileOutStreamFlush(stream);
    XML_IO_OutStreamDestroy(stream);
    return result;
}
/* [convert stream end] */

/* [check] */
/* Tells whether a document is well-formed, without building anything. */
static int isWellFormed(const char *document) {
    return XML_Parser_ByMem(document, (uint32_t)strlen(document), NULL) == XML_OK;
}
/* [check end] */

static int handleErrors(void) {
    XML_DOM_Node *vlan = XML_DOM_CreateElementNode("vlan");
    XML_DOM_Node *text = XML_DOM_CreateTextNode("office");

    /* [refusals] */
    uint32_t failures = 0;
    failures |= XML_DOM_SetNodeName(vlan, "VLAN 10"); /* refused: a name has no blank */
    failures |= XML_DOM_AddChildNode(vlan, text);
    failures |= XML_DOM_AddAttr(vlan, NULL, "id", "10") == NULL;
    if (failures != XML_OK) printf("something was refused\n"); /* the rest was done */
    /* [refusals end] */
    int good = check(failures == XML_REFUSED && XML_DOM_GetFirstChild(vlan) == text, "refusals");
    XML_DOM_DelNode(vlan);

    /* [errors] */
    static const char broken[] = "<vlans>\n  <vlan id=10/>\n</vlans>";
    char error[256];
    if (!XML_DOM_BuildTreeByMem(broken, sizeof broken - 1, sizeof error, error)) {
        printf("%s\n", error); /* GB18030; the same bytes as UTF-8 while it is ASCII */
    }
    /* [errors end] */
    return good & check(strncmp(error, "The Line 2 Column 12 :", 22) == 0, error) &
           check(isWellFormed("<a/>") && !isWellFormed("<a>"), "well-formedness");
}

/* [validate] */
/* Tells what is wrong with a document, if anything is; false then. */
static int isValid(XML_DOM_Node *root, const SchemaRoot *schemas) {
    SchemaErrorInfo error;
    if (Schema_ValidateXml(root, schemas, &error) != XML_OK) return 0; /* memory exhausted */
    if (error.code == 0) return 1;
    char message[512];
    Schema_GetErrorDesc(&error, sizeof message, message);
    printf("%s\n", message); /* in the encoding of the tree, GB18030 */
    return 0;
}

static int validateFile(const char *path) {
    SchemaRoot schemas; /* made once, for any number of documents */
    Schema_InitRoot(&schemas);
    uint32_t result = SchemaReg_switch(&schemas);
    XML_DOM_Node *root = XML_DOM_BuildTreeByFile(path, 0, NULL);
    int valid = result == XML_OK && root && isValid(root, &schemas);
    XML_DOM_DelNode(root);
    SchemaDereg_switch(&schemas);
    Schema_ExitRoot(&schemas);
    return valid;
}
/* [validate end] */

/* Tells whether a file holds these bytes and no others. */
static int holds(const char *path, const char *bytes, size_t length) {
    char content[64];
    FILE *file = fopen(path, "rb");
    size_t got = file ? fread(content, 1, sizeof content, file) : 0;
    if (file) fclose(file);
    return got == length && memcmp(content, bytes, length) == 0;
}

/* Converts a file that holds plain text, and then one that holds a document. */
static int convertFiles(const char *path) {
    FILE *text = tmpfile();
    if (!text) return check(0, "no temporary file");
    fputs("\xe4\xbc\x9a", text);
    rewind(text);
    remove(path);
    int good = check(convertStream(text, path, XML_ENCODING_GB18030) == XML_OK, "not converted") &
               check(holds(path, "\xbb\xe1", 2), "converted wrongly");
    fputs("\xe8\xae", text); /* two bytes of three */
    rewind(text);
    good &= check(convertStream(text, path, XML_ENCODING_GB18030) != XML_OK, "half a character");
    fclose(text);

    static const char document[] = "<a>\xe4\xbc\x9a</a>";
    static const char expected[] = "<?xml version=\"1.0\" encoding=\"GB18030\"?><a>\xbb\xe1</a>";
    FILE *file = fopen(path, "wb");
    if (!file) return check(0, "no file");
    fputs(document, file);
    fclose(file);
    good &= check(convertDocument(path, path, "GB18030") == XML_OK, "no document converted") &
            check(holds(path, expected, sizeof expected - 1), "the document came out wrong");
    return good & check(convertDocument(path, path, "EBCDIC") != XML_OK, "an unknown encoding");
}

int main(int argc, char **argv) {
    if (argc != 3) {
        fprintf(stderr, "usage: guide DOCUMENT FILE_TO_WRITE\n");
        return EXIT_FAILURE;
    }
    int good = readFile(argv[1]) & readValues() & selectAndCopy() & useChinese() & changeTree() &
               handleErrors();
    good &= check(validateFile(argv[1]), "the configuration is not valid");

    XML_DOM_Node *vlans = readPieces();
    const char *text = XML_DOM_GetFirstTextChildValue(XML_DOM_GetFirstChild(vlans));
    good &= check(XML_Strcmp(text, "office") == 0, "the pieces were not read as one document");
    XML_DOM_DelNode(vlans);

    XML_DOM_Node *interface = buildInterface();
    good &= check(printDocument(interface) == XML_OK, "the interface was not printed");
    good &= check(save(interface, argv[2], XML_ENCODING_UTF_16LE) == XML_OK, "nothing saved");
    XML_DOM_DelNode(interface);
    good &= readFile(argv[2]);
    good &= convertFiles(argv[2]);
    return good ? EXIT_SUCCESS : EXIT_FAILURE;
}
