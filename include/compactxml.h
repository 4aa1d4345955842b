/* compactxml.h - reading, building, editing and writing XML configuration documents.
 *
 * C11 and C++20. All of libcompactxml is declared here; compactxml.hpp is an optional layer on top.
 *
 * What holds for every function here:
 *
 *   Results      A uint32_t result is XML_OK (0) or XML_REFUSED (0x40010001), unless the entry or
 *                its group says otherwise. Functions that return a pointer return null where they
 *                refuse.
 *   Arguments    A missing (null) pointer is refused without side effects. An output pointer named
 *                lengthOut may be null. Getters answer null (or the value told) for null.
 *   Failure      A refused call leaves the tree or stream as it was, but for what an output stream
 *                holds back of a character that an append split; what was half made is freed.
 *                Exhausted memory is a refusal like any other.
 *   Records      A node belongs to its parent, a root and a detached node to the caller, who frees
 *                it with all below it by XML_DOM_DelNode. Attributes and declarations belong to
 *                their element.
 *   Strings      Strings handed in are copied. Strings handed out belong to the record they come
 *                from and live as long as it does, unless the entry says that the caller frees
 *                them (always with free()). Lengths and sizes count bytes.
 *   Text         A tree built from a document holds its text in GB18030; a tree built by hand
 *                holds the bytes it was given, and the serializer reads them as GB18030.
 *   Threads      Nothing is locked and nothing is shared: one tree, stream or parse belongs to one
 *                thread at a time, and different ones may be used in parallel.
 *   Stack        No call recurses over its input; every call gets by with a 64 KiB thread stack
 *                whatever the depth of the document.
 */
#ifndef COMPACTXML_H
#define COMPACTXML_H

#include <stdint.h>

#if defined(__GNUC__) || defined(__clang__)
#define COMPACTXML_API __attribute__((visibility("default")))
#define COMPACTXML_PRINTF(format, first) __attribute__((__format__(__printf__, format, first)))
#else
#define COMPACTXML_API
#define COMPACTXML_PRINTF(format, first)
#endif

#ifdef __cplusplus
#define COMPACTXML_NOEXCEPT noexcept
extern "C" {
#else
#define COMPACTXML_NOEXCEPT
#endif

/* ---------------------------------------------------------------- constants */

#define XML_OK 0u                /* success */
#define XML_REFUSED 0x40010001u  /* an invalid argument or a failed operation */
#define XML_MISSING 0x20010002u  /* a missing argument, of XML_DOM_ScanTree and few others */
#define XML_NO_VALUE 0x40010008u /* content that cannot have a simple value */

/* Types of a node. */
#define XML_DOM_NODE_ELEMENT 1u /* a name; may have attributes, declarations and children */
#define XML_DOM_NODE_TEXT 2u    /* character data: a value, no name, no children */
#define XML_DOM_NODE_CDATA 3u   /* the content of a CDATA section: a value, no name, no children */

/* Encoding numbers. XML_ENCODING_UNKNOWN is no encoding but the answer "none". */
#define XML_ENCODING_UTF_8 0u
#define XML_ENCODING_UTF_16LE 1u
#define XML_ENCODING_UTF_16BE 2u
#define XML_ENCODING_GB2312 3u
#define XML_ENCODING_UTF_32LE 4u
#define XML_ENCODING_UTF_32BE 5u
#define XML_ENCODING_UTF_16 6u
#define XML_ENCODING_UTF_32 7u
#define XML_ENCODING_GBK 8u
#define XML_ENCODING_GB18030 9u
#define XML_ENCODING_UCS_4 10u
#define XML_ENCODING_UCS_4BE 11u
#define XML_ENCODING_UCS_4LE 12u
#define XML_ENCODING_UNKNOWN 13u

/* Flags of a step of a path. */
#define DOM_XPATH_ROOT_STEP 1u /* the step stood behind a slash of its own: it names the root */
#define DOM_XPATH_NO_NODE 2u   /* the step selects nothing; no parser sets it */

/* Serialization flags: bit 0 leaves out the XML declaration; all other bits are ignored. */
#define XML_DOM_NO_DECLARATION 1u

/* Kinds of components of a compiled schema. */
#define SCHEMA_KIND_ELEMENT_WILDCARD 2
#define SCHEMA_KIND_ATTRIBUTE 5
#define SCHEMA_KIND_ATTRIBUTE_GROUP 6
#define SCHEMA_KIND_COMPLEX_RESTRICTION 7
#define SCHEMA_KIND_COMPLEX_EXTENSION 8
#define SCHEMA_KIND_COMPLEX_TYPE 9
#define SCHEMA_KIND_MODEL_GROUP 10
#define SCHEMA_KIND_ALL 11
#define SCHEMA_KIND_CHOICE 12
#define SCHEMA_KIND_SEQUENCE 13
#define SCHEMA_KIND_ELEMENT 14
#define SCHEMA_KIND_SIMPLE_RESTRICTION 26
#define SCHEMA_KIND_SIMPLE_EXTENSION 27
#define SCHEMA_KIND_SIMPLE_TYPE 29

/* Kinds of facets; others are not checked. */
#define SCHEMA_FACET_ENUMERATION 15u
#define SCHEMA_FACET_LENGTH 17u
#define SCHEMA_FACET_MAX_EXCLUSIVE 18u
#define SCHEMA_FACET_MAX_INCLUSIVE 19u
#define SCHEMA_FACET_MAX_LENGTH 20u
#define SCHEMA_FACET_MIN_EXCLUSIVE 21u
#define SCHEMA_FACET_MIN_INCLUSIVE 22u
#define SCHEMA_FACET_MIN_LENGTH 23u
#define SCHEMA_FACET_PATTERN 24u
#define SCHEMA_FACET_TOTAL_DIGITS 25u

/* Codes of the built-in simple types; 0 is no built-in type, 2, 16, 17 and 18 are not in use. */
#define SCHEMA_TYPE_ANY_SIMPLE_TYPE 1u
#define SCHEMA_TYPE_BYTE 3u
#define SCHEMA_TYPE_SHORT 4u
#define SCHEMA_TYPE_UNSIGNED_BYTE 5u
#define SCHEMA_TYPE_UNSIGNED_SHORT 6u
#define SCHEMA_TYPE_INT 7u
#define SCHEMA_TYPE_LONG 8u
#define SCHEMA_TYPE_UNSIGNED_INT 9u
#define SCHEMA_TYPE_UNSIGNED_LONG 10u
#define SCHEMA_TYPE_INTEGER 11u
#define SCHEMA_TYPE_POSITIVE_INTEGER 12u
#define SCHEMA_TYPE_NON_POSITIVE_INTEGER 13u
#define SCHEMA_TYPE_NEGATIVE_INTEGER 14u
#define SCHEMA_TYPE_NON_NEGATIVE_INTEGER 15u
#define SCHEMA_TYPE_DURATION 19u
#define SCHEMA_TYPE_DATE_TIME 20u
#define SCHEMA_TYPE_DATE 21u
#define SCHEMA_TYPE_TIME 22u
#define SCHEMA_TYPE_G_YEAR 23u
#define SCHEMA_TYPE_G_MONTH 24u
#define SCHEMA_TYPE_G_DAY 25u
#define SCHEMA_TYPE_G_YEAR_MONTH 26u
#define SCHEMA_TYPE_G_MONTH_DAY 27u
#define SCHEMA_TYPE_STRING 28u
#define SCHEMA_TYPE_BOOLEAN 29u
#define SCHEMA_TYPE_HEX_BINARY 30u
#define SCHEMA_TYPE_BASE64_BINARY 31u
#define SCHEMA_TYPE_ANY_URI 32u
#define SCHEMA_TYPE_QNAME 33u
#define SCHEMA_TYPE_LANGUAGE 34u

/* ---------------------------------------------------------------- records
 *
 * The order and width of the fields are part of the binary interface. Callers read trees through
 * the functions below rather than through the fields.
 */

typedef struct XML_DOM_Node XML_DOM_Node;
typedef struct XML_DOM_DocInfo XML_DOM_DocInfo;
typedef struct XML_DOM_Attr XML_DOM_Attr;
typedef struct XML_DOM_NsDecl XML_DOM_NsDecl;
typedef struct XML_DOM_TranslateState XML_DOM_TranslateState;
typedef struct DOM_XPath_Cursor DOM_XPath_Cursor;
typedef struct XML_IO_MemChunk XML_IO_MemChunk;
typedef struct XML_IO_MemList XML_IO_MemList;
typedef struct XML_IO_MemListCursor XML_IO_MemListCursor;
typedef struct XML_IO_InStream XML_IO_InStream;
typedef struct XML_IO_MemBuf XML_IO_MemBuf;
typedef struct XML_IO_OutStream XML_IO_OutStream;
typedef struct XML_SAX_Handler XML_SAX_Handler;
typedef struct XML_Parser_Ctx XML_Parser_Ctx;
typedef struct XML_Parser_Attr XML_Parser_Attr; /* private to the parser */
typedef struct XML_Parser_Ns XML_Parser_Ns;     /* private to the parser */

/* A node of a tree: an element, a text or a CDATA section. It owns its strings, attributes,
 * declarations and children; XML_DOM_DelNode frees all of them. */
struct XML_DOM_Node {
    XML_DOM_Attr *firstAttr;
    XML_DOM_Attr *lastAttr;
    XML_DOM_NsDecl *firstNsDecl; /* declarations made on this element, one at most per prefix */
    XML_DOM_NsDecl *lastNsDecl;
    XML_DOM_NsDecl *ns;       /* qualifies the name; null without a prefix; not owned */
    XML_DOM_DocInfo *docInfo; /* set on the root of a document alone */
    XML_DOM_Node *firstChild;
    XML_DOM_Node *lastChild;
    XML_DOM_Node *nextSibling;
    XML_DOM_Node *parent;
    char *name;  /* local name of an element; null otherwise */
    char *value; /* text of a text or CDATA node; null otherwise */
    uint32_t type;
};

/* What makes an element the root of a document. */
struct XML_DOM_DocInfo {
    XML_DOM_Node *root;
    const char *version; /* the library's constant "1.0", never freed */
    uint32_t encoding;   /* of the document when it is written: XML_ENCODING_* */
};

/* An attribute of an element. */
struct XML_DOM_Attr {
    XML_DOM_Attr *next;
    XML_DOM_Node *owner;
    XML_DOM_NsDecl *ns; /* qualifies the name; null without a prefix; not owned */
    char *name;         /* local name */
    char *value;
};

/* A namespace declaration of an element. */
struct XML_DOM_NsDecl {
    XML_DOM_NsDecl *next;
    char *prefix;        /* null for the default namespace */
    char *namespaceName; /* empty for an undeclared default namespace */
};

/* What XML_DOM_TranslateStrEx shows to a text callback. The caller sets depth to 0, and userData
 * and textCallback as needed. During a callback names[0] to names[depth - 1] are the local names
 * of the open elements, from the node at which writing began down to the text's parent. Below 32
 * levels depth goes on counting but names keeps the first 32. */
struct XML_DOM_TranslateState {
    const char *names[32];
    uint32_t depth;
    void *userData;
    const char *(*textCallback)(XML_DOM_Node *text, XML_DOM_TranslateState *state, void *userData);
};

/* How far a path has been read, for callers that apply a path step by step. Zero the whole record,
 * then point rest at a copy of the path that may be written. */
struct DOM_XPath_Cursor {
    char *rest;     /* what has not been read; null when the path is used up */
    char step[256]; /* name of the current step, cut to 255 bytes */
    uint32_t flags; /* DOM_XPATH_* */
};

/* One piece of a document that lies in several buffers. The bytes are the caller's and are never
 * written. length may be 0. */
struct XML_IO_MemChunk {
    XML_IO_MemChunk *next; /* null for the last */
    uint32_t length;
    const unsigned char *data;
};

/* A document in several buffers. */
struct XML_IO_MemList {
    XML_IO_MemChunk *first;
};

/* How far a stream has read a memory list. */
struct XML_IO_MemListCursor {
    const XML_IO_MemChunk *chunk;
    uint32_t position; /* bytes already read from chunk */
};

/* A source of UTF-8 bytes over memory, a file or a memory list.
 *
 *   base .. mark .. cur .. end    what may be dropped, what is kept, what is still unread
 *   raw fields                    source bytes not yet converted, while a conversion runs
 *   state                         0 more may come, 1 source exhausted, 2 memory failure,
 *                                 3 unsupported encoding, 4 conversion failure
 *
 * The library allocates this record and keeps private fields behind the last one. */
struct XML_IO_InStream {
    unsigned char *base;
    unsigned char *mark;
    unsigned char *cur;
    unsigned char *end;
    uint32_t capacity;
    unsigned char *rawBase;
    unsigned char *rawMark;
    unsigned char *rawCur;
    unsigned char *rawEnd;
    uint32_t rawCapacity;
    uintptr_t source; /* file descriptor or XML_IO_MemListCursor */
    uint32_t (*readFn)(uintptr_t source, uint32_t count, unsigned char *destination);
    uint32_t encoding; /* of the source: XML_ENCODING_* */
    void *converter;   /* iconv descriptor; (void *)-1 while not converting */
    uint32_t state;
};

/* The growing buffer of a memory output stream; data[length] is NUL after any write. */
struct XML_IO_MemBuf {
    char *data;
    uint32_t length;
    uint32_t capacity;
};

/* A sink of bytes, to memory or to a file, with an optional conversion in front of it. The library
 * allocates this record and keeps private fields behind the last one. */
struct XML_IO_OutStream {
    uintptr_t target; /* XML_IO_MemBuf (owned), or a file descriptor */
    uint32_t (*sink)(uintptr_t target, const char *bytes, uint32_t length);
    void *converter;               /* iconv descriptor; (void *)-1 without conversion */
    uint32_t pendingCount;         /* bytes held back because they begin a split character */
    unsigned char pendingBytes[4]; /* those bytes */
    uint32_t kind;                 /* 0 memory, 1 file */
};

/* The callbacks of a parse, 32 pointer-sized slots. Zero the whole record, then set the slots that
 * are wanted; a null slot is skipped. Every string handed to a callback belongs to the parser and
 * lives during that call only. A callback that fails sets context->status to a number other than
 * 0, which ends the parse with that number as its code.
 *
 *   startDocument          after the XML declaration, or where it would stand
 *   endDocument            when nothing but comments and such follows the root element
 *   characters             a run of text between two pieces of markup: references replaced, literal
 *                          white space at both ends removed, never empty; ends in NUL
 *   comment                what lies between "<!--" and "-->"
 *   cdataBlock             the content of a CDATA section; may be empty; does not end in NUL
 *   processingInstruction  target, and what follows the white space behind it (null if nothing)
 *   error                  once, when the parse fails: format "The Line %d Column %d :\"%s\", %s"
 *                          with line, column, a snippet of the document (at most 63 bytes, UTF-8)
 *                          and the message
 *   startElementNs         local name, prefix (null if none), namespace name (null if none);
 *                          declarations made here: count, and pairs of prefix (or null) and
 *                          namespace name; attributes: count, 0, and groups of five: local name,
 *                          prefix or null, namespace name or null, value, pointer to its NUL
 *   endElementNs           local name, prefix, namespace name, as for the start
 */
struct XML_SAX_Handler {
    void *reserved0[12];
    void (*startDocument)(XML_Parser_Ctx *context);
    void (*endDocument)(XML_Parser_Ctx *context);
    void *reserved14[2];
    void (*characters)(XML_Parser_Ctx *context, const char *text, int length);
    void (*comment)(XML_Parser_Ctx *context, const char *text);
    void (*cdataBlock)(XML_Parser_Ctx *context, const char *text, int length);
    void (*processingInstruction)(XML_Parser_Ctx *context, const char *target, const char *data);
    void (*error)(XML_Parser_Ctx *context, const char *format, ...);
    void *reserved21[7];
    void *userData; /* the caller's own; never touched */
    void (*startElementNs)(XML_Parser_Ctx *context, const char *localName, const char *prefix,
                           const char *namespaceName, int declarationCount,
                           const char **declarations, int attributeCount, int defaultedCount,
                           const char **attributes);
    void (*endElementNs)(XML_Parser_Ctx *context, const char *localName, const char *prefix,
                         const char *namespaceName);
    void *reserved31;
};

/* A running parse, the first argument of every callback. The library allocates this record and
 * keeps private fields behind the last one; callbacks write nothing but status. */
struct XML_Parser_Ctx {
    XML_SAX_Handler *handler;
    XML_IO_InStream *input;
    XML_Parser_Attr *attributes;
    XML_Parser_Attr *freeAttributes;
    XML_Parser_Ns *namespaces;
    uint32_t encoding;   /* of the stream at the start, then the declared one */
    int32_t status;      /* 0, or the code that ends the parse */
    int32_t line;        /* from 1; CR LF is one line break; never above INT32_MAX */
    int32_t column;      /* from 1, in characters; likewise */
    const char *version; /* "1.0" after the prolog, null before */
};

/* Takes a piece of text. Returns 0, or any other number for failure. */
typedef uint32_t (*XML_WriteFn)(void *context, const char *bytes, uint32_t length);

/* Takes a node of a scan; reserved is 0. Returns 0 to go on, any other number to end the scan. */
typedef uint32_t (*XML_DOM_VisitFn)(XML_DOM_Node *node, void *userData, uint32_t reserved);

/* ---------------------------------------------------------------- records of compiled schemas
 *
 * What xsd2c writes: static, constant data that refers to itself by pointers. The library reads it
 * and never allocates, changes or frees any of it; it must outlive every root it is registered
 * with. Texts are NUL-terminated and, as far as they are compared with documents, in GB18030. An
 * array has exactly as many entries as its count says, none of them null. Flags are set when 1.
 */

typedef struct SchemaFacet SchemaFacet;
typedef struct SchemaSimpleType SchemaSimpleType;
typedef struct SchemaDateTimeValue SchemaDateTimeValue;
typedef struct SchemaDurationValue SchemaDurationValue;
typedef struct SchemaKestType SchemaKestType;
typedef struct SchemaSplitState SchemaSplitState;
typedef struct SchemaTypedRef SchemaTypedRef;
typedef struct SchemaTypedRef SchemaTopObject; /* what a root is asked to take */
typedef struct SchemaElementDecl SchemaElementDecl;
typedef struct SchemaAttributeDecl SchemaAttributeDecl;
typedef struct SchemaWildcard SchemaWildcard;
typedef struct SchemaElementWildcard SchemaElementWildcard;
typedef struct SchemaAttributeGroup SchemaAttributeGroup;
typedef struct SchemaModelGroup SchemaModelGroup;
typedef struct SchemaComplexType SchemaComplexType;
typedef struct SchemaDerivation SchemaDerivation;
typedef struct SchemaObjectList SchemaObjectList;
typedef struct SchemaRoot SchemaRoot;
typedef struct SchemaErrorInfo SchemaErrorInfo;
typedef struct SchemaValidateContext SchemaValidateContext;
struct SchemaContentCursor; /* private to the validator */

/* One facet of a restriction. */
struct SchemaFacet {
    const char *value; /* a number, a pattern, an allowed value ... */
    uint32_t kind;     /* SCHEMA_FACET_* */
    uint32_t baseCode; /* SCHEMA_TYPE_* of the restricted type: how values compare */
};

/* A simple type: built in (builtinCode), a union (memberCount of 2 or more), a type of network
 * equipment (known by its name), or else a restriction. */
struct SchemaSimpleType {
    const SchemaSimpleType *const *members; /* of a union; or [0], the base of a restriction */
    const SchemaFacet *facets;
    const char *name;
    const char *ns;
    uint32_t builtinCode; /* SCHEMA_TYPE_*, or 0 */
    uint32_t facetCount;
    uint32_t memberCount;
    uint16_t flags16; /* not read */
};

/* A date or a time, as far as its type has the fields; others are 0. */
struct SchemaDateTimeValue {
    uint16_t year, month, day, hour, minute, second;
    uint16_t tzHour, tzMinute;
    char fraction[21]; /* digits behind the decimal point of the seconds */
    char tzSign;       /* 0 without an offset; '+' east of UTC, '-' west of it */
};

/* A duration, each field carried into the next greater one. */
struct SchemaDurationValue {
    uint16_t years, months, days, hours, minutes, seconds;
};

/* A type of network equipment. */
struct SchemaKestType {
    uint32_t (*check)(const char *value, uint32_t size, char *buffer); /* 1 valid, 0 not */
    const char *namespaceName;                                         /* null for none */
    const char *typeName;
};

/* How far a text has been split. The text, the item buffer and this record are the caller's. */
struct SchemaSplitState {
    char *item;
    const char *rest;
    const char *separator;
    uint32_t size; /* bytes at item */
};

/* A component and its kind. */
struct SchemaTypedRef {
    const void *object;
    int32_t kind; /* SCHEMA_KIND_* */
};

/* A global or local element declaration. */
struct SchemaElementDecl {
    const SchemaElementDecl *ref; /* the global declaration that this particle refers to, or null */
    const char *name;
    const char *targetNamespace;       /* null or "" for none */
    const char *substitutionGroupName; /* of the head it may stand for, or null */
    const char *substitutionGroupNamespace;
    const void *type; /* by typeKind; null leaves content and attributes unexamined */
    const char *fixedValue;
    uint32_t minOccurs;
    uint32_t maxOccurs;               /* 0xFFFFFFFF for unbounded */
    int32_t typeKind;                 /* SCHEMA_KIND_SIMPLE_TYPE or SCHEMA_KIND_COMPLEX_TYPE */
    int32_t form;                     /* 0 as elementFormDefault says, 1 qualified, 2 unqualified */
    int32_t hasFixed;                 /* whether fixedValue counts */
    uint16_t abstract;                /* only members of its substitution group may appear */
    uint16_t nillable;                /* may be without any content */
    const char *alternativeNamespace; /* instead of targetNamespace in mode 1, unless empty */
};

/* A global or local attribute declaration, and the use of one. */
struct SchemaAttributeDecl {
    const SchemaAttributeDecl *ref; /* the global declaration that this use refers to, or null */
    const SchemaSimpleType *type;
    const char *name;
    const char *targetNamespace;
    const char *fixedValue;
    int32_t use;      /* 1 prohibited, 2 required, others optional */
    int32_t form;     /* 0 as attributeFormDefault says, 1 qualified, 2 unqualified */
    int32_t hasFixed; /* whether fixedValue counts */
};

/* Attributes of any name. */
struct SchemaWildcard {
    const char *targetNamespace;     /* what "##other" excludes */
    const char *namespaceConstraint; /* "##any", "##other", or names divided by single blanks */
    int32_t processContents;         /* 2 skip, 1 lax, others strict */
};

/* Elements of any name, as a particle. */
struct SchemaElementWildcard {
    const char *targetNamespace;
    const char *namespaceConstraint;
    uint32_t minOccurs;
    uint32_t maxOccurs;
    int32_t processContents;
};

struct SchemaAttributeGroup {
    const SchemaAttributeDecl *const *attributeUses;
    const SchemaAttributeGroup *const *attributeGroups;
    const SchemaWildcard *attributeWildcard; /* or null */
    const SchemaAttributeGroup *ref;         /* the global group this one stands for, or null */
    const void *unread5;
    const void *unread6;
    uint32_t attributeUseCount;
    uint32_t attributeGroupCount;
};

/* Particles in sequence, in any order, or one of them. */
struct SchemaModelGroup {
    const SchemaTypedRef *particles; /* elements, wildcards and model groups */
    uint32_t minOccurs;
    uint32_t maxOccurs;
    uint32_t particleCount;
    int32_t compositor; /* SCHEMA_KIND_ALL, SCHEMA_KIND_CHOICE or SCHEMA_KIND_SEQUENCE */
};

/* A complex type; empty when content and particle are null. */
struct SchemaComplexType {
    const SchemaAttributeDecl *const *attributeUses;
    const SchemaAttributeGroup *const *attributeGroups;
    const SchemaDerivation *content;  /* its complexContent or simpleContent, or null */
    const SchemaModelGroup *particle; /* its content model when it is not derived, or null */
    const void *unread5;
    const SchemaWildcard *attributeWildcard;
    const char *name; /* null or "" for an anonymous type */
    const char *targetNamespace;
    uint32_t attributeUseCount;
    uint32_t attributeGroupCount;
    uint16_t mixed; /* whether text may stand between child elements */
};

/* How a complex type is derived from another type. */
struct SchemaDerivation {
    const SchemaWildcard *attributeWildcard;
    const SchemaAttributeDecl *const *attributeUses;
    const SchemaAttributeGroup *const *attributeGroups;
    const SchemaModelGroup *particle; /* added by an extension, allowed by a restriction, or null */
    const void *unread5;
    const SchemaFacet *facets; /* of a simple restriction */
    const void *baseType;
    int32_t
        derivationKind;   /* SCHEMA_KIND_COMPLEX_* or SCHEMA_KIND_SIMPLE_RESTRICTION, _EXTENSION */
    int32_t baseTypeKind; /* SCHEMA_KIND_SIMPLE_TYPE or SCHEMA_KIND_COMPLEX_TYPE */
    uint32_t attributeUseCount;
    uint32_t facetCount;
    uint32_t attributeGroupCount;
};

/* Registered objects of one kind. */
struct SchemaObjectList {
    const void **items; /* null while there are none */
    uint32_t capacity;
    uint32_t count;
};

/* The top-level objects of all schemas that documents are validated against. The caller provides the
 * record, the library the arrays in it. */
struct SchemaRoot {
    SchemaObjectList simpleTypes;
    SchemaObjectList attributes;
    SchemaObjectList elements;
    SchemaObjectList complexTypes;
    SchemaObjectList spare; /* always empty */
    SchemaObjectList attributeGroups;
    uint32_t attributeFormDefault; /* 1 qualified, 2 unqualified */
    uint32_t elementFormDefault;
};

/* The first thing that is wrong with a document. Strings belong to the document and the schema. */
struct SchemaErrorInfo {
    uint32_t code;
    XML_DOM_Node *node;
    const char *name, *ns;         /* of an element */
    const char *attrName, *attrNs; /* of an attribute */
    char text[1024];               /* what a value check said */
};

/* A validation; its first fields are a SchemaErrorInfo. Callers of the value checks zero the record
 * and set valid to 1, which a failed check sets to 0. */
struct SchemaValidateContext {
    uint32_t code;
    XML_DOM_Node *node;
    const char *name, *ns;
    const char *attrName, *attrNs;
    char text[1024];
    const SchemaRoot *root;
    struct SchemaContentCursor *cursor;
    XML_DOM_Node *docRoot;
    uint32_t matched;
    uint16_t valid;
    uint16_t mode;
};

/* ---------------------------------------------------------------- encodings */

/* Names an encoding.
 *
 * Returns the name, such as "UTF-8"; it belongs to the library. Null for XML_ENCODING_UNKNOWN and
 * every greater number. */
COMPACTXML_API const char *XML_DOM_EncodingEnumToStr(uint32_t encoding) COMPACTXML_NOEXCEPT;

/* Finds the number of an encoding by its name, ignoring ASCII case. There are no aliases.
 *
 * Returns the number; XML_ENCODING_UNKNOWN for null and for any other name. */
COMPACTXML_API uint32_t XML_DOM_EncodingStrToEnum(const char *name) COMPACTXML_NOEXCEPT;

/* ---------------------------------------------------------------- documents */

/* Finds the root element of the document that a node belongs to.
 *
 * Returns the root; null if no node at or above this one is the root of a document.
 * Cost: one step for each ancestor, as for every function of this group. */
COMPACTXML_API XML_DOM_Node *XML_DOM_GetRoot(const XML_DOM_Node *node) COMPACTXML_NOEXCEPT;

/* Tells the XML version of the node's document: the library's constant "1.0", or null without a
 * document. */
COMPACTXML_API const char *XML_DOM_GetVersion(const XML_DOM_Node *node) COMPACTXML_NOEXCEPT;

/* Tells the encoding number of the node's document; XML_ENCODING_UNKNOWN for null and without a
 * document. */
COMPACTXML_API uint32_t XML_DOM_GetEncoding(const XML_DOM_Node *node) COMPACTXML_NOEXCEPT;

/* Sets the encoding in which the node's document will be written.
 *
 *   encoding     XML_ENCODING_UTF_8 to XML_ENCODING_UCS_4LE
 *
 * Refuses a greater number and a node without a document. */
COMPACTXML_API uint32_t XML_DOM_SetEncoding(XML_DOM_Node *node,
                                            uint32_t encoding) COMPACTXML_NOEXCEPT;

/* Sets the XML version of the node's document.
 *
 *   version      exactly "1.0"; the library stores a constant of its own
 *
 * Refuses any other version and a node without a document. */
COMPACTXML_API uint32_t XML_DOM_SetVersion(XML_DOM_Node *node,
                                           const char *version) COMPACTXML_NOEXCEPT;

/* Makes a detached element the root of a new document of version "1.0", encoding UTF-8.
 *
 * Refuses a node that is no element, has a parent or is a root already; exhausted memory. */
COMPACTXML_API uint32_t XML_DOM_SetRoot(XML_DOM_Node *node) COMPACTXML_NOEXCEPT;

/* ---------------------------------------------------------------- navigation */

/* The parent; null for a root and a detached node. */
COMPACTXML_API XML_DOM_Node *XML_DOM_GetNodeParent(const XML_DOM_Node *node) COMPACTXML_NOEXCEPT;

/* The first child, or null. */
COMPACTXML_API XML_DOM_Node *XML_DOM_GetFirstChild(const XML_DOM_Node *node) COMPACTXML_NOEXCEPT;

/* The next node under the same parent, or null. */
COMPACTXML_API XML_DOM_Node *XML_DOM_GetNextSibling(const XML_DOM_Node *node) COMPACTXML_NOEXCEPT;

/* The type, XML_DOM_NODE_*; 0 for null. */
COMPACTXML_API uint32_t XML_DOM_GetNodeType(const XML_DOM_Node *node) COMPACTXML_NOEXCEPT;

/* The local name of an element; null for other nodes. */
COMPACTXML_API const char *XML_DOM_GetNodeName(const XML_DOM_Node *node) COMPACTXML_NOEXCEPT;

/* The text of a text or CDATA node; null for an element. */
COMPACTXML_API const char *XML_DOM_GetNodeValue(const XML_DOM_Node *node) COMPACTXML_NOEXCEPT;

/* The value of the first text child, or null. */
COMPACTXML_API const char *XML_DOM_GetFirstTextChildValue(const XML_DOM_Node *node)
    COMPACTXML_NOEXCEPT;

/* The value of the first CDATA child, or null. */
COMPACTXML_API const char *XML_DOM_GetFirstCDataChildValue(const XML_DOM_Node *node)
    COMPACTXML_NOEXCEPT;

/* ---------------------------------------------------------------- creating nodes */

/* Creates a detached element.
 *
 *   name         a name without a colon, in GB18030
 *
 * Returns the element, which the caller attaches or frees with XML_DOM_DelNode. Null if
 * XML_CheckQName refuses the name, or for exhausted memory. */
COMPACTXML_API XML_DOM_Node *XML_DOM_CreateElementNode(const char *name) COMPACTXML_NOEXCEPT;

/* Creates a detached element, its name unchecked. Null for a null name or exhausted memory. */
COMPACTXML_API XML_DOM_Node *XML_DOM_CreateElementNodeInner(const char *name) COMPACTXML_NOEXCEPT;

/* Creates a detached node that has a value, from counted bytes.
 *
 *   type         stored as it is, normally XML_DOM_NODE_TEXT or XML_DOM_NODE_CDATA
 *   bytes        the value; need not end in NUL
 *   length       bytes at bytes; a NUL is stored behind them
 *
 * Returns the node; null for null bytes or exhausted memory. */
COMPACTXML_API XML_DOM_Node *XML_DOM_CreateTextualNodeInner(uint32_t type, const char *bytes,
                                                            uint32_t length) COMPACTXML_NOEXCEPT;

/* Creates a detached text node; the text may be empty. Null for a null text, a text of 4 GB or
 * more, or exhausted memory. */
COMPACTXML_API XML_DOM_Node *XML_DOM_CreateTextNode(const char *text) COMPACTXML_NOEXCEPT;

/* Creates a detached CDATA node; the text may be empty and is not checked: it may hold "]]>", which
 * then ends the section early when it is written. Null as for XML_DOM_CreateTextNode. */
COMPACTXML_API XML_DOM_Node *XML_DOM_CreateCDataNode(const char *text) COMPACTXML_NOEXCEPT;

/* Creates a detached element with one text child.
 *
 *   name         as for XML_DOM_CreateElementNode
 *   text         null gives an element without children
 *
 * Returns the element; null if the element or the text cannot be created. */
COMPACTXML_API XML_DOM_Node *XML_DOM_CreateElementWithText(const char *name,
                                                           const char *text) COMPACTXML_NOEXCEPT;

/* Creates a detached element with one CDATA child; otherwise as XML_DOM_CreateElementWithText. */
COMPACTXML_API XML_DOM_Node *XML_DOM_CreateElementWithCData(const char *name,
                                                            const char *text) COMPACTXML_NOEXCEPT;

/* ---------------------------------------------------------------- building and changing trees */

/* Appends a detached node as the last child of an element, which then owns it.
 *
 * Refuses, in this order: a null argument; a parent that is no element; a child that has a parent;
 * a child that is the root of a document; a child that is the parent itself or above it. Cost:
 * constant, but for a child with children one step for each ancestor of the parent. */
COMPACTXML_API uint32_t XML_DOM_AddChildNode(XML_DOM_Node *parent,
                                             XML_DOM_Node *child) COMPACTXML_NOEXCEPT;

/* Inserts a node immediately before another under the same parent, which then owns it.
 *
 *   reference    a node that has a parent
 *   newnode      a detached node; this is not checked, and a node that is still linked elsewhere or
 *                stands above the reference breaks the tree
 *
 * Refuses a null argument and a reference without a parent. Cost: one step for each sibling before
 * the reference. */
COMPACTXML_API uint32_t XML_DOM_InsertBeforeNode(XML_DOM_Node *reference,
                                                 XML_DOM_Node *newnode) COMPACTXML_NOEXCEPT;

/* Renames an element. Refuses a name that XML_CheckQName refuses, and a node that is no element;
 * the old name then stays. */
COMPACTXML_API uint32_t XML_DOM_SetNodeName(XML_DOM_Node *node,
                                            const char *name) COMPACTXML_NOEXCEPT;

/* Sets the text of a text or CDATA node.
 *
 *   value        not empty; the very pointer that the node holds is accepted and changes nothing
 *
 * Refuses an empty value and an element; the old value then stays. */
COMPACTXML_API uint32_t XML_DOM_SetNodeValue(XML_DOM_Node *node,
                                             const char *value) COMPACTXML_NOEXCEPT;

/* Detaches a node from its parent; it then belongs to the caller, with everything below it.
 *
 * Does nothing for null and for a node without a parent. The node must not outlive ancestors whose
 * namespace declarations it uses. Cost: one step for each sibling before the node. */
COMPACTXML_API void XML_DOM_Clip(XML_DOM_Node *node) COMPACTXML_NOEXCEPT;

/* Detaches a node and frees it with everything below it. Does nothing for null.
 *
 * Cost: linear in what is freed (and one step for each sibling before the node); no memory, no
 * recursion. */
COMPACTXML_API void XML_DOM_DelNode(XML_DOM_Node *node) COMPACTXML_NOEXCEPT;

/* Moves all children of one node, in order, behind the children of an element.
 *
 *   from         null, and a node without children, have nothing to move; so has to itself
 *   to           an element
 *
 * Returns 0 when all are moved. Intended: at the first child that XML_DOM_AddChildNode refuses for
 * this parent (the first one, if to is null or no element; one that stands above to) it returns
 * XML_REFUSED, with the children before it moved, those behind it still under from, and this child
 * detached, so that whoever holds no pointer to it has lost it.
 * Cost: one step for each child, and for each ancestor of to. */
COMPACTXML_API uint32_t XML_DOM_AdoptChildren(XML_DOM_Node *from,
                                              XML_DOM_Node *to) COMPACTXML_NOEXCEPT;

/* Copies one node without its children.
 *
 *   node         of an element the name, declarations, prefix and attributes are copied; prefixes
 *                that it takes from above are declared on the copy
 *
 * Returns the copy, detached; the caller attaches it or frees it with XML_DOM_DelNode. Null for
 * exhausted memory, and for an element that uses a prefix which is declared nowhere at or above. */
COMPACTXML_API XML_DOM_Node *XML_DOM_CopyNode(const XML_DOM_Node *node) COMPACTXML_NOEXCEPT;

/* Appends deep copies of all children of one node to an element; the node's own name, attributes
 * and declarations are not copied.
 *
 *   target       an element, which may be the source or stand below it: what this call appends is
 *                not copied again
 *   source       never changed, but by being the target
 *
 * Intended: a prefix that is declared in the copy's new place keeps that meaning, even where it
 * stood for another namespace in the old one. Other prefixes are declared on the copied element that
 * uses them. Refuses a null argument, a target that is no element, exhausted memory and a prefix
 * declared nowhere; whatever was appended is then gone again.
 * Cost: linear in what is copied, and in the declarations above both nodes. */
COMPACTXML_API uint32_t XML_DOM_CopySubTree(XML_DOM_Node *target,
                                            const XML_DOM_Node *source) COMPACTXML_NOEXCEPT;

/* Makes a new document whose root is a copy of the root of the node's document, without children,
 * of the same version and encoding.
 *
 * Returns the new root, which the caller frees with XML_DOM_DelNode. Null for a node without a
 * document, and as XML_DOM_CopyNode. */
COMPACTXML_API XML_DOM_Node *XML_DOM_CopyRoot(const XML_DOM_Node *node) COMPACTXML_NOEXCEPT;

/* Compares two strings as strcmp does, a null string counting as the empty one. Returns a number
 * below, at or above 0; never refuses. */
COMPACTXML_API int XML_Strcmp(const char *a, const char *b) COMPACTXML_NOEXCEPT;

/* ---------------------------------------------------------------- paths and scans */

/* Writes where a node stands, as "/root/name[position]/...".
 *
 *   size         bytes at buffer, room for the final NUL included
 *   buffer       takes the path, cut to size; always ends in NUL
 *
 * Each step below the root has a position, counted from 1 among siblings of the same name. Names
 * are written as stored, in GB18030 and without prefix; a text or CDATA node has the path of its
 * parent. Returns the length in bytes of what stands in the buffer; 0, with nothing written, for a
 * missing argument or a size of 0. Cost: the depth, and the siblings before each step written. */
COMPACTXML_API uint32_t XML_DOM_GetXPath(const XML_DOM_Node *node, uint32_t size,
                                         char *buffer) COMPACTXML_NOEXCEPT;

/* Visits a node, all below it, and its following siblings with all below them, in document order.
 *
 *   visit        must not change the tree; any result but 0 ends the scan
 *   userData     handed to visit
 *
 * Returns 0; XML_REFUSED when visit ended the scan, whatever number it returned; XML_MISSING for a
 * null node or function. */
COMPACTXML_API uint32_t XML_DOM_ScanTree(XML_DOM_Node *node, XML_DOM_VisitFn visit,
                                         void *userData) COMPACTXML_NOEXCEPT;

/* Selects one element by the names on the way to it.
 *
 *   context      where the path begins
 *   path         "a/b" selects the first child b of the first child a of context; "/r/a" begins at
 *                the root, named r, and only succeeds from a node that bears the root's name.
 *                GB18030, compared as stored: local names without prefix. Cut to 1023 bytes, each
 *                step to 255
 *
 * There are no positions, wildcards or attributes, and no second try with a later sibling. A path
 * that is empty or ends in a slash selects nothing, but for "/", which is the root. A slash behind
 * a slash begins at the root again. Returns the element, or null. */
COMPACTXML_API XML_DOM_Node *XML_DOM_SelectSingleNode(const XML_DOM_Node *context,
                                                      const char *path) COMPACTXML_NOEXCEPT;

/* The value of the first text child of the element that a path selects; it belongs to the tree.
 * Null if nothing is selected or there is no text child; a CDATA child is none. */
COMPACTXML_API const char *XML_DOM_GetSelectSingleNodeText(const XML_DOM_Node *context,
                                                           const char *path) COMPACTXML_NOEXCEPT;

/* Reads the text of XML_DOM_GetSelectSingleNodeText as a decimal integer, as sscanf("%lld") would:
 * white space before it and anything behind it are passed over, a number out of range becomes the
 * nearest one.
 *
 *   valueOut     takes the number; untouched when refused
 *
 * Refuses a missing text and one that does not begin with a number. */
COMPACTXML_API uint32_t XML_DOM_GetSelectSingleNodeAsInt64(const XML_DOM_Node *context,
                                                           const char *path,
                                                           long long *valueOut) COMPACTXML_NOEXCEPT;

/* Reads an unsigned integer as XML_DOM_GetSelectSingleNodeAsInt64 does, as sscanf("%llu") would: a
 * minus sign is accepted, and -1 gives the greatest number. */
COMPACTXML_API uint32_t
XML_DOM_GetSelectSingleNodeAsUInt64(const XML_DOM_Node *context, const char *path,
                                    unsigned long long *valueOut) COMPACTXML_NOEXCEPT;

/* Reads the next step of a path into cursor->step and cursor->flags and moves cursor->rest behind
 * it. Returns 1, or 0 when the path is used up (and for null). */
COMPACTXML_API uint32_t DOM_XPath_ParseNextXPathContext(DOM_XPath_Cursor *cursor)
    COMPACTXML_NOEXCEPT;

/* Reads a root step, where cursor->rest begins with a slash; a slash with nothing behind it leaves
 * the step as it is. Returns 1; 0 for null and for a path that is used up. */
COMPACTXML_API uint32_t DOM_XPath_ParseNextXPath4Root(DOM_XPath_Cursor *cursor) COMPACTXML_NOEXCEPT;

/* Applies the current step to a node: a root step as DOM_XPath_GetRootElement, any other selects the
 * first child element of that name. Returns the element, or null. */
COMPACTXML_API XML_DOM_Node *DOM_XPath_GetNodeFromContext(
    const XML_DOM_Node *node, const DOM_XPath_Cursor *cursor) COMPACTXML_NOEXCEPT;

/* Applies a root step: the root of the node's document, if the node bears the root's name and the
 * step is empty or that name too; otherwise null. */
COMPACTXML_API XML_DOM_Node *DOM_XPath_GetRootElement(
    const XML_DOM_Node *node, const DOM_XPath_Cursor *cursor) COMPACTXML_NOEXCEPT;

/* ---------------------------------------------------------------- attributes */

/* Adds an attribute at the end of an element's list; the element owns it.
 *
 *   prefix       null or empty for none; otherwise declared on the element or above, or "xml"
 *   name         a name without a colon, not "xmlns", in GB18030
 *   value        may be empty
 *
 * Returns the attribute. Null, with the list unchanged, for a null element or value, a bad name, an
 * attribute of the same local name and namespace name, an undeclared prefix or exhausted memory.
 * Cost: one step for each attribute present. */
COMPACTXML_API XML_DOM_Attr *XML_DOM_AddAttr(XML_DOM_Node *element, const char *prefix,
                                             const char *name,
                                             const char *value) COMPACTXML_NOEXCEPT;

/* Adds an attribute without a namespace and without checking anything but null pointers. Returns the
 * attribute, which the element owns; null for a null argument or exhausted memory. */
COMPACTXML_API XML_DOM_Attr *XML_DOM_AddAttrInner(XML_DOM_Node *element, const char *name,
                                                  const char *value) COMPACTXML_NOEXCEPT;

/* Sets the prefix of an attribute, resolved from its element; null or empty removes it. Refuses a
 * null attribute and an undeclared prefix; the attribute then stays as it was. Whether another
 * attribute has that name already is not looked for. */
COMPACTXML_API uint32_t XML_DOM_SetAttrNsInner(XML_DOM_Attr *attribute,
                                               const char *prefix) COMPACTXML_NOEXCEPT;

/* Removes and frees the first attribute of this local name and prefix.
 *
 *   prefix       compared as text, not by namespace name; null or empty means none
 *
 * Does nothing if there is no such attribute. */
COMPACTXML_API void XML_DOM_DelAttr(XML_DOM_Node *element, const char *prefix,
                                    const char *name) COMPACTXML_NOEXCEPT;

/* The first attribute, or null. */
COMPACTXML_API XML_DOM_Attr *XML_DOM_GetFirstAttr(const XML_DOM_Node *element) COMPACTXML_NOEXCEPT;

/* The attribute after this one, or null. */
COMPACTXML_API XML_DOM_Attr *XML_DOM_GetNextAttr(const XML_DOM_Attr *attribute) COMPACTXML_NOEXCEPT;

/* The value of an attribute; null for null. */
COMPACTXML_API const char *XML_DOM_GetAttrValByHandle(const XML_DOM_Attr *attribute)
    COMPACTXML_NOEXCEPT;

/* Tells the expanded name of an attribute.
 *
 *   nameOut       takes the local name; may be null
 *   namespaceOut  takes the namespace name, or null if it has no prefix; may be null
 *
 * Refuses a null attribute, and two null outputs. */
COMPACTXML_API uint32_t XML_DOM_GetAttrNameSpace(const XML_DOM_Attr *attribute,
                                                 const char **nameOut,
                                                 const char **namespaceOut) COMPACTXML_NOEXCEPT;

/* Finds the value of an attribute by namespace name and local name.
 *
 *   namespaceName  null accepts any. An attribute without a prefix counts as being in the default
 *                  namespace that is in scope, if there is one
 *
 * Returns the value of the first match, or null. */
COMPACTXML_API const char *XML_DOM_GetNodeNsAttribute(const XML_DOM_Node *element,
                                                      const char *namespaceName,
                                                      const char *name) COMPACTXML_NOEXCEPT;

/* Finds the value of the first attribute of this local name, whatever its namespace; or null. */
COMPACTXML_API const char *XML_DOM_GetNodeAttrValByName(const XML_DOM_Node *element,
                                                        const char *name) COMPACTXML_NOEXCEPT;

/* ---------------------------------------------------------------- namespaces */

/* Declares a prefix on an element.
 *
 *   prefix         null or empty declares the default namespace
 *   namespaceName  null or empty undeclares the default namespace and is refused with a prefix
 *
 * Refuses a null element, a prefix that this element has declared already, and exhausted memory.
 * Neither prefix nor name is checked further: see XML_CheckQName and XML_CheckNamespace. */
COMPACTXML_API uint32_t XML_DOM_AddNodeNameSpace(XML_DOM_Node *element, const char *prefix,
                                                 const char *namespaceName) COMPACTXML_NOEXCEPT;

/* Declares a prefix on an element or gives the declaration that is there a new namespace name,
 * for all that use it; otherwise as XML_DOM_AddNodeNameSpace. */
COMPACTXML_API uint32_t XML_DOM_SetNodeDefineNsVal(XML_DOM_Node *element, const char *prefix,
                                                   const char *namespaceName) COMPACTXML_NOEXCEPT;

/* Declares a prefix without looking at the pair.
 *
 *   prefix         null for the default namespace; "" is the same prefix but is stored and
 *                  written as ""
 *   namespaceName  stored as it is
 *   replace        0 refuses a prefix that is there already, other values replace its name
 *
 * Refuses a null element or namespace name; exhausted memory. */
COMPACTXML_API uint32_t XML_DOM_AddNodeNameSpaceInner(XML_DOM_Node *element, const char *prefix,
                                                      const char *namespaceName,
                                                      uint32_t replace) COMPACTXML_NOEXCEPT;

/* Sets the prefix of an element's name.
 *
 *   prefix       declared on the element or above, or "xml"; null or empty removes the prefix,
 *                which leaves the element in the default namespace that is in scope
 *
 * Refuses a node that is no element, and an undeclared prefix. */
COMPACTXML_API uint32_t XML_DOM_SetNodeNameSpace(XML_DOM_Node *element,
                                                 const char *prefix) COMPACTXML_NOEXCEPT;

/* Tells the prefix and the namespace name of an element.
 *
 *   prefixOut     may be null
 *   namespaceOut  may be null
 *
 * Without a prefix the default namespace in scope answers; without one both outputs become null.
 * Refuses a null element, and two null outputs. */
COMPACTXML_API uint32_t XML_DOM_GetNodeNameSpace(const XML_DOM_Node *element,
                                                 const char **prefixOut,
                                                 const char **namespaceOut) COMPACTXML_NOEXCEPT;

/* ---------------------------------------------------------------- writing
 *
 * Text is written compactly: no indentation, empty elements as "/>", declarations before
 * attributes. Only "<", ">" and "&" are escaped, and one white-space character at each end of a
 * text; quotes are not, so an attribute value that holds '"' does not come out well-formed. Output
 * is converted from GB18030 to the document's encoding (UTF-8 without a document); text that does
 * not convert fails the call. A result other than 0 is the sum of the failures and need not be
 * XML_REFUSED.
 */

/* Writes a text escaped.
 *
 *   text         in any ASCII-compatible encoding; passed on byte for byte
 *   write        called for each piece, in order; never with a length of 0
 *   context      handed to write
 *
 * Returns the sum of write's results (never 0 after a failure); XML_REFUSED for a null text or
 * writer. */
COMPACTXML_API uint32_t XML_OutTextString(const char *text, XML_WriteFn write,
                                          void *context) COMPACTXML_NOEXCEPT;

/* Writes the beginning of a node: the XML declaration for a root (unless XML_DOM_NO_DECLARATION),
 * then the start tag of an element, always closed with ">", or all of a text or CDATA node.
 *
 *   lengthOut    takes the length in bytes without the terminating NUL
 *
 * Returns a new string that ends in a NUL of the document's encoding; the caller frees it. Null, with
 * lengthOut untouched, for a null node and if anything fails. */
COMPACTXML_API char *XML_DOM_NodeBegin2Str(const XML_DOM_Node *node, uint32_t flags,
                                           uint32_t *lengthOut) COMPACTXML_NOEXCEPT;

/* Writes the end tag of an element; nothing for other nodes. Otherwise as XML_DOM_NodeBegin2Str.
 *
 * In UTF-16 and UTF-32 the buffer may begin with a byte order mark even where the length is 0. */
COMPACTXML_API char *XML_DOM_NodeEnd2Str(const XML_DOM_Node *node,
                                         uint32_t *lengthOut) COMPACTXML_NOEXCEPT;

/* Writes a node with everything below it into a new buffer, after the XML declaration if the node
 * is a root and XML_DOM_NO_DECLARATION is not set.
 *
 *   bufferOut    takes the buffer, which the caller frees; untouched on failure
 *   lengthOut    takes its length in bytes without the terminating NUL
 *
 * Refuses a null node or bufferOut, text that does not convert, output of 4 GB or more, and exhausted
 * memory. Cost: linear in the output. */
COMPACTXML_API uint32_t XML_DOM_TranslateStr(const XML_DOM_Node *node, uint32_t flags,
                                             char **bufferOut,
                                             uint32_t *lengthOut) COMPACTXML_NOEXCEPT;

/* Writes as XML_DOM_TranslateStr does, asking a callback for the text of each text node.
 *
 *   state        see XML_DOM_TranslateState; may be null. A callback that returns null fails
 *                the call */
COMPACTXML_API uint32_t XML_DOM_TranslateStrEx(const XML_DOM_Node *node, uint32_t flags,
                                               XML_DOM_TranslateState *state, char **bufferOut,
                                               uint32_t *lengthOut) COMPACTXML_NOEXCEPT;

/* Writes the children of a node one after another, without the node's own tags and without a
 * declaration; otherwise as XML_DOM_TranslateStr. No children give an empty string. */
COMPACTXML_API uint32_t XML_DOM_TranslateStr4AllChild(const XML_DOM_Node *node, char **bufferOut,
                                                      uint32_t *lengthOut) COMPACTXML_NOEXCEPT;

/* Writes as XML_DOM_TranslateStr does, piece by piece to a sink instead of into one buffer.
 *
 *   sink         gets each piece in the document's encoding; its bytes live during the call only.
 *                Any result but 0 fails the call
 *   sinkContext  handed to sink
 *
 * Refuses a null node or sink, text that does not convert, exhausted memory and what the sink fails;
 * the pieces before it have been handed over then. A failed piece ends the list of declarations,
 * attributes or children it stands in; end tags are still offered. */
COMPACTXML_API uint32_t XML_DOM_OutPutTranslateStr(const XML_DOM_Node *node, uint32_t flags,
                                                   XML_WriteFn sink,
                                                   void *sinkContext) COMPACTXML_NOEXCEPT;

/* ---------------------------------------------------------------- building trees from documents
 *
 * White space at both ends of a text is dropped, and text of nothing else; comments, processing
 * instructions and the document type declaration are passed over. No entity is expanded and nothing
 * but the named file is opened.
 *
 * errorBuffer takes one message, cut to errorSize bytes (the NUL included) and in GB18030, when the
 * result is null; it may be null. It is untouched when the file cannot be opened, and may be where
 * memory is exhausted before the parse begins.
 */

/* Parses the document in a file and returns the root element of a new tree.
 *
 *   path         the file; "" and unreadable files are refused
 *   errorSize    bytes at errorBuffer, room for the final NUL included
 *   errorBuffer  takes the message
 *
 * Returns the root, which the caller frees with XML_DOM_DelNode. Returns null, with nothing left
 * allocated, for a missing argument, exhausted memory or a document that is not accepted.
 * Cost: one pass over the input; one heap block for each node and for each string. */
COMPACTXML_API XML_DOM_Node *XML_DOM_BuildTreeByFile(const char *path, uint32_t errorSize,
                                                     char *errorBuffer) COMPACTXML_NOEXCEPT;

/* Parses one whole document in memory and returns the root element of a new tree.
 *
 *   buffer       the document, in any encoding the library knows; not kept, need not end in NUL
 *   length       bytes at buffer; 0 is refused
 *
 * Otherwise as XML_DOM_BuildTreeByFile. */
COMPACTXML_API XML_DOM_Node *XML_DOM_BuildTreeByMem(const char *buffer, uint32_t length,
                                                    uint32_t errorSize,
                                                    char *errorBuffer) COMPACTXML_NOEXCEPT;

/* Parses one whole document that lies in a list of buffers, cut anywhere; otherwise as
 * XML_DOM_BuildTreeByFile. */
COMPACTXML_API XML_DOM_Node *XML_DOM_BuildTreeByMemList(const XML_IO_MemList *list,
                                                        uint32_t errorSize,
                                                        char *errorBuffer) COMPACTXML_NOEXCEPT;

/* Begins an element. This and the five that follow are the callbacks that build the tree, for the
 * library's own parses only: handler->userData must be the builder's own state. They report failure,
 * such as exhausted memory, by setting context->status to 1. */
COMPACTXML_API void XML_SAX_StartElementNs(XML_Parser_Ctx *context, const char *localName,
                                           const char *prefix, const char *namespaceName,
                                           int declarationCount, const char **declarations,
                                           int attributeCount, int defaultedCount,
                                           const char **attributes) COMPACTXML_NOEXCEPT;

/* Ends the element that XML_SAX_StartElementNs began. */
COMPACTXML_API void XML_SAX_EndElementNs(XML_Parser_Ctx *context, const char *localName,
                                         const char *prefix,
                                         const char *namespaceName) COMPACTXML_NOEXCEPT;

/* Adds a text node; nothing if the first byte is NUL. */
COMPACTXML_API void XML_SAX_Characters(XML_Parser_Ctx *context, const char *text,
                                       int length) COMPACTXML_NOEXCEPT;

/* Adds a CDATA node; nothing if the first byte is NUL. */
COMPACTXML_API void XML_SAX_CData(XML_Parser_Ctx *context, const char *text,
                                  int length) COMPACTXML_NOEXCEPT;

/* Stores the document's encoding and version on the root. */
COMPACTXML_API void XML_SAX_EndDocument(XML_Parser_Ctx *context) COMPACTXML_NOEXCEPT;

/* Formats the message into the caller's error buffer and frees the partial tree. */
COMPACTXML_PRINTF(2, 3)
COMPACTXML_API void XML_SAX_Error(XML_Parser_Ctx *context, const char *format,
                                  ...) COMPACTXML_NOEXCEPT;

/* ---------------------------------------------------------------- parsing with callbacks
 *
 * Each returns 0 when the document was accepted and XML_REFUSED when it was not, after
 * handler->error was called once. handler may be null: the parse then checks the document.
 * XML_REFUSED without an error call means a missing argument, a file that cannot be opened or
 * memory exhausted before the parse began. Memory: what the deepest nesting and the longest single
 * name, value or text need.
 */

/* Parses the document in a file.
 *
 *   path         the file; "" and unreadable files are refused */
COMPACTXML_API uint32_t XML_Parser_ByFile(const char *path,
                                          XML_SAX_Handler *handler) COMPACTXML_NOEXCEPT;

/* Parses one whole document in memory.
 *
 *   buffer       any known encoding; need not end in NUL; never written
 *   length       bytes at buffer; 0 is refused */
COMPACTXML_API uint32_t XML_Parser_ByMem(const char *buffer, uint32_t length,
                                         XML_SAX_Handler *handler) COMPACTXML_NOEXCEPT;

/* Parses one whole document that lies in a list of buffers, cut anywhere. */
COMPACTXML_API uint32_t XML_Parser_ByMemList(const XML_IO_MemList *list,
                                             XML_SAX_Handler *handler) COMPACTXML_NOEXCEPT;

/* Checks a namespace declaration.
 *
 *   prefix       null or empty for the default namespace
 *   uri          the namespace name; null is refused
 *
 * Refuses an empty name for a prefix, the prefix "xmlns", the name reserved for it, and every
 * pairing of the prefix "xml" or the XML namespace name with anything but each other. */
COMPACTXML_API uint32_t XML_CheckNamespace(const char *prefix, const char *uri) COMPACTXML_NOEXCEPT;

/* Checks that a string in GB18030 is a name without a colon (Namespaces in XML 1.0, NCName). Refuses
 * every other one, null and the empty one among them, and exhausted memory, which a name beyond ASCII
 * may need. */
COMPACTXML_API uint32_t XML_CheckQName(const char *name) COMPACTXML_NOEXCEPT;

/* ---------------------------------------------------------------- input streams
 *
 * A stream recognises a byte order mark when it opens; that what follows cannot be converted is no
 * refusal but shows in state. It keeps at least 64 bytes ahead of cur
 * while the source has them, provided that XML_IO_Grow is called after each character read.
 */

/* Opens a stream over memory, which is used in place and never written.
 *
 *   length       bytes at buffer; 0 is refused
 *
 * Returns the stream, to be released with XML_IO_DestroyByMem; null for null bytes, length 0 and
 * exhausted memory. */
COMPACTXML_API XML_IO_InStream *XML_IO_ByMem(const char *buffer,
                                             uint32_t length) COMPACTXML_NOEXCEPT;

/* Opens a stream over a file. Returns the stream, to be released with XML_IO_DestroyByFile; null for
 * a file that cannot be opened and exhausted memory. */
COMPACTXML_API XML_IO_InStream *XML_IO_ByFile(const char *path) COMPACTXML_NOEXCEPT;

/* Opens a stream over a memory list, which must outlive it. Returns the stream, to be released with
 * XML_IO_DestroyByMemList; null for a null list and exhausted memory. */
COMPACTXML_API XML_IO_InStream *XML_IO_ByMemList(const XML_IO_MemList *list) COMPACTXML_NOEXCEPT;

/* Refills the buffer if state is 0 and fewer than 64 bytes lie ahead of cur. Bytes before mark may
 * be dropped and all four pointers may move. The outcome is in state. */
COMPACTXML_API void XML_IO_Grow(XML_IO_InStream *stream) COMPACTXML_NOEXCEPT;

/* Changes the encoding that the rest of the source is read in.
 *
 *   encoding     XML_ENCODING_*; XML_ENCODING_UTF_8 ends conversion
 *
 * Returns 0 on success, also for memory; the unchanged state when it is above 1 or the encoding is
 * the present one; 2 memory failure (and null stream), 3 unsupported encoding, 4 text that does not
 * convert. */
COMPACTXML_API uint32_t XML_IO_SwitchEncoding(XML_IO_InStream *stream,
                                              uint32_t encoding) COMPACTXML_NOEXCEPT;

/* Tells whether the n bytes at cur are the first n bytes of s: 1, or 0 (also when fewer than n
 * bytes are buffered). Never refills. */
COMPACTXML_API int XML_IO_Strncmp(const XML_IO_InStream *stream, const char *s,
                                  uint32_t n) COMPACTXML_NOEXCEPT;

/* Compares as XML_IO_Strncmp does, ignoring ASCII case: 1 or 0. */
COMPACTXML_API int XML_IO_Strncasecmp(const XML_IO_InStream *stream, const char *s,
                                      uint32_t n) COMPACTXML_NOEXCEPT;

/* Releases a stream of XML_IO_ByMem; null does nothing. */
COMPACTXML_API void XML_IO_DestroyByMem(XML_IO_InStream *stream) COMPACTXML_NOEXCEPT;

/* Releases a stream of XML_IO_ByFile and closes its file; null does nothing. */
COMPACTXML_API void XML_IO_DestroyByFile(XML_IO_InStream *stream) COMPACTXML_NOEXCEPT;

/* Releases a stream of XML_IO_ByMemList, but not the list; null does nothing. */
COMPACTXML_API void XML_IO_DestroyByMemList(XML_IO_InStream *stream) COMPACTXML_NOEXCEPT;

/* ---------------------------------------------------------------- output streams
 *
 * Two equal encodings, even two unknown ones, mean no conversion.
 */

/* Creates a stream that collects bytes in memory.
 *
 * Returns the stream, to be released with XML_IO_OutStreamDestroy; null for a pair of encodings
 * that cannot be converted and for exhausted memory. */
COMPACTXML_API XML_IO_OutStream *XML_IO_MemOutStreamCreate(
    uint32_t sourceEncoding, uint32_t targetEncoding) COMPACTXML_NOEXCEPT;

/* Creates a stream that appends to a file, which is created (mode 0640) if it is missing and never
 * truncated. Otherwise as XML_IO_MemOutStreamCreate; the file may have been created when null is
 * returned. */
COMPACTXML_API XML_IO_OutStream *XML_IO_FileOutStreamCreate(
    const char *path, uint32_t sourceEncoding, uint32_t targetEncoding) COMPACTXML_NOEXCEPT;

/* Appends bytes. A character cut off at their end is held back (at most 3 bytes) and completed by
 * the next append.
 *
 * Returns 0; 0 also for null bytes or length 0, even on a null stream. XML_REFUSED for a null
 * stream, text that does not convert, exhausted memory or a failed write; what earlier 256-byte
 * chunks of the converted text held has then been written. */
COMPACTXML_API uint32_t XML_IO_OutStreamAppend(XML_IO_OutStream *stream, const char *bytes,
                                               uint32_t length) COMPACTXML_NOEXCEPT;

/* Appends as XML_IO_OutStreamAppend does, but holds back a "?" for each byte of a character cut off
 * at the end, so that half a character can never come out. */
COMPACTXML_API uint32_t XML_IO_OutStreamAppendSafe(XML_IO_OutStream *stream, const char *bytes,
                                                   uint32_t length) COMPACTXML_NOEXCEPT;

/* Appends a NUL-terminated string, without its NUL, as XML_IO_OutStreamAppend does. Refuses a string
 * of 4 GB or more, too. */
COMPACTXML_API uint32_t XML_IO_OutStreamAppendString(XML_IO_OutStream *stream,
                                                     const char *s) COMPACTXML_NOEXCEPT;

/* Gives the content of a memory stream, NUL-terminated and still owned by the stream; it is good
 * until the next call on the stream. Null when it is empty, and, with lengthOut untouched, for null
 * and for a file stream. */
COMPACTXML_API char *XML_IO_MemOutStreamGetBuf(XML_IO_OutStream *stream,
                                               uint32_t *lengthOut) COMPACTXML_NOEXCEPT;

/* Takes the content out of a memory stream; the caller frees it and the stream is empty. Otherwise
 * as XML_IO_MemOutStreamGetBuf. */
COMPACTXML_API char *XML_IO_MemOutStreamDetachBuf(XML_IO_OutStream *stream,
                                                  uint32_t *lengthOut) COMPACTXML_NOEXCEPT;

/* Empties a memory stream and keeps its allocation. Bytes held back stay held back. */
COMPACTXML_API void XML_IO_MemOutStreamCleanBuf(XML_IO_OutStream *stream) COMPACTXML_NOEXCEPT;

/* Calls fsync on the file of a file stream; does nothing for others. That it failed is not told. */
COMPACTXML_API void XML_IO_FileOutStreamFlush(XML_IO_OutStream *stream) COMPACTXML_NOEXCEPT;

/* Releases a stream; null does nothing. The file is closed, not synced; held-back bytes are lost. */
COMPACTXML_API void XML_IO_OutStreamDestroy(XML_IO_OutStream *stream) COMPACTXML_NOEXCEPT;

/* ---------------------------------------------------------------- values of simple types
 *
 * Values are checked as they are: nothing is trimmed. A result of 1 means valid and 0 invalid unless
 * an entry says otherwise. buffer takes a message in English when a value is invalid, cut to size
 * bytes with the final NUL; it may be written while a value turns out valid, too. No check allocates
 * but, in the C library, those of a pattern facet and of a QName beyond ASCII; where memory is
 * exhausted a pattern does not match and such a name is none.
 */

/* Tells whether a text matches a POSIX extended regular expression somewhere, in the locale of the
 * process: 1 or 0. 0 also for a null argument, an expression that does not compile, and a text of 2 GB
 * or more, which the C library cannot count. */
COMPACTXML_API uint32_t XML_IsMatchRegex(const char *pattern, const char *text) COMPACTXML_NOEXCEPT;

/* Checks a value of a built-in type.
 *
 *   code         SCHEMA_TYPE_*; types without a check, such as anySimpleType, have no valid value
 *   value        not empty
 *
 * Intended: "|" counts as a sign of integers and time zones; the unbounded integer types are held to
 * 64 bits; every colon makes a QName invalid; a language is one of a list. */
COMPACTXML_API uint32_t SCHEMA_CheckBaseTypeNonNull(uint32_t code,
                                                    const char *value) COMPACTXML_NOEXCEPT;

/* Checks a value of a built-in type with a message, which quotes at most size - 111 bytes of it.
 *
 *   value        may be empty, which is valid for string, base64Binary and anySimpleType */
COMPACTXML_API uint32_t Schema_CheckBaseType(const SchemaSimpleType *type, const char *value,
                                             uint32_t size, char *buffer) COMPACTXML_NOEXCEPT;

/* Tells whether a day exists: 1 or 0. Years are 1 to 9999. */
COMPACTXML_API uint32_t Schema_IsValidDay(uint32_t year, uint32_t month,
                                          uint32_t day) COMPACTXML_NOEXCEPT;

/* Compares two times in UTC. Fields of 0 count as the first; an offset without "+" or "-" counts for
 * nothing.
 *
 * Returns a number greater than 0 when a is later, and less than 0 when it is earlier or either is
 * null; for the same second it compares the fractions as text. */
COMPACTXML_API int Schema_CmpDateTime(const SchemaDateTimeValue *a,
                                      const SchemaDateTimeValue *b) COMPACTXML_NOEXCEPT;

/* Checks a value against one facet. Lengths count bytes; patterns match anywhere in the value.
 *
 * Returns 0 when it holds; XML_REFUSED, with a message, when it does not. */
COMPACTXML_API uint32_t Schema_CheckFacet(const SchemaFacet *facet, const char *value,
                                          uint32_t size, char *buffer) COMPACTXML_NOEXCEPT;

/* Checks a value against facets: one of the enumerations, if there are any, and all others must hold.
 * Sets context->valid to 0 when they do not, and never to 1. */
COMPACTXML_API void Schema_CheckFacets(const SchemaFacet *facets, uint32_t count, const char *value,
                                       uint32_t size, SchemaValidateContext *context,
                                       char *buffer) COMPACTXML_NOEXCEPT;

/* Checks a value against a simple type of any kind.
 *
 *   value        null counts as ""
 *
 * Sets context->valid to 0 when it is invalid, and never to 1. */
COMPACTXML_API void Schema_CheckSimpleType(const SchemaSimpleType *type, const char *value,
                                           uint32_t size, SchemaValidateContext *context,
                                           char *buffer) COMPACTXML_NOEXCEPT;

/* Checks the text of an element against its type.
 *
 *   type         a simple type, or a complex type with simple content
 *   value        null counts as ""
 *
 * Returns 0 when it is valid; XML_REFUSED when not; XML_NO_VALUE for a complex type whose content
 * cannot be a text. */
COMPACTXML_API uint32_t Schema_checkValueOfElement(const SchemaTypedRef *type, const char *value,
                                                   uint32_t size, char *buffer) COMPACTXML_NOEXCEPT;

/* Finds a type of network equipment by name: OID, _Ipv6Address, IPV6_ADDR_PREFIX, _PortRange,
 * _VlanRange, _Ipv4Mask or _IfIndexRange.
 *
 *   namespaceName  null or "", unless Schema_ReplaceInnerTypeNS said otherwise
 *
 * Returns the row of the library's table, or null. */
COMPACTXML_API const SchemaKestType *Schema_FoundKestBltInType(
    const char *typeName, const char *namespaceName) COMPACTXML_NOEXCEPT;

/* Checks a value of a type of network equipment. A row without a check has only valid values. */
COMPACTXML_API uint32_t Schema_checkKestBltInType(const SchemaKestType *row, const char *value,
                                                  uint32_t size, char *buffer) COMPACTXML_NOEXCEPT;

/* Begins to split a text and gives the first item.
 *
 *   separator    one character, as a string
 *   size         bytes at item, at least 2
 *   item         takes each item in turn, cut to size
 *   state        for Schema_GetNextSplitStr; refers to all of the above
 *
 * Returns item; null for an empty text and when refused. Intended: the rest of an item that was cut
 * is the next item, without its first character if a separator follows. */
COMPACTXML_API char *Schema_GetFirstSplitStr(const char *text, const char *separator, uint32_t size,
                                             char *item,
                                             SchemaSplitState *state) COMPACTXML_NOEXCEPT;

/* Gives the next item, or null when there is none. */
COMPACTXML_API char *Schema_GetNextSplitStr(SchemaSplitState *state) COMPACTXML_NOEXCEPT;

/* Tells whether a value is one of the language codes that the library knows: 1 or 0. */
COMPACTXML_API uint32_t Schema_LanguageHandler(const char *value) COMPACTXML_NOEXCEPT;

/* ---------------------------------------------------------------- schemas
 *
 * Registering and deregistering must not run while another thread validates against the same root;
 * different roots may be used by different threads.
 */

/* Prepares a root: clears the record, whatever it held, sets its defaults (attributes unqualified,
 * elements qualified) and registers the built-in types. Does nothing for null. Types that memory does
 * not suffice for are left out without a word; SchemaReg_xml_schema_buildin would tell. */
COMPACTXML_API void Schema_InitRoot(SchemaRoot *root) COMPACTXML_NOEXCEPT;

/* Deregisters the built-in types. Objects of other schemas stay until they are deregistered, which
 * also frees the lists. Does nothing for null. */
COMPACTXML_API void Schema_ExitRoot(SchemaRoot *root) COMPACTXML_NOEXCEPT;

/* Appends an object to the list of its kind: a simple or complex type, an element, an attribute or an
 * attribute group. Duplicates are not looked for; searches find the first.
 *
 * Refuses a null argument, other kinds, and exhausted memory; the list then stays as it was. */
COMPACTXML_API uint32_t Schema_RegTopObject(SchemaRoot *root,
                                            const SchemaTopObject *topObject) COMPACTXML_NOEXCEPT;

/* Removes an object from the list of its kind, the last object of which takes its place. Frees a list
 * that is empty then. Ignores what is not there. Always returns 0. */
COMPACTXML_API uint32_t Schema_DeregTopObject(SchemaRoot *root,
                                              const SchemaTopObject *topObject) COMPACTXML_NOEXCEPT;

/* Moves a type of network equipment into a namespace, for all roots of the process.
 *
 *   typeName       as for Schema_FoundKestBltInType
 *   searchArg      the namespace in which it is now
 *   namespaceName  kept as it is, not copied: it must outlive all validations; null for none
 *
 * Must not run while anything is validated. Returns XML_MISSING for a null or empty type name, and
 * XML_REFUSED when there is no such type. */
COMPACTXML_API uint32_t Schema_ReplaceInnerTypeNS(const char *typeName, const char *searchArg,
                                                  const char *namespaceName) COMPACTXML_NOEXCEPT;

/* Finds an element declaration along a path of names, and may check a value against it.
 *
 *   path         names divided by ".": the first of a registered element, each further one of an
 *                element in the content of the type found so far (base types first, then in order)
 *   value        null only looks for the declaration
 *   buffer       null likewise; otherwise takes the message
 *
 * Returns 0; XML_REFUSED for a missing root or path, a name that is not found and a value that the
 * declaration's simple type does not have. */
COMPACTXML_API uint32_t Schema_CheckAttrsAsElement(const SchemaRoot *root, const char *path,
                                                   const char *value, uint32_t size,
                                                   char *buffer) COMPACTXML_NOEXCEPT;

/* ---------------------------------------------------------------- the built-in schema */

/* A built-in type, for the records of other schemas. Returns a constant record of the library; never
 * null. */
COMPACTXML_API const SchemaSimpleType *Schema_BLDIN_anySimpleType(void) COMPACTXML_NOEXCEPT;
COMPACTXML_API const SchemaSimpleType *Schema_BLDIN_byte(void) COMPACTXML_NOEXCEPT;
COMPACTXML_API const SchemaSimpleType *Schema_BLDIN_short(void) COMPACTXML_NOEXCEPT;
COMPACTXML_API const SchemaSimpleType *Schema_BLDIN_unsignedByte(void) COMPACTXML_NOEXCEPT;
COMPACTXML_API const SchemaSimpleType *Schema_BLDIN_unsignedShort(void) COMPACTXML_NOEXCEPT;
COMPACTXML_API const SchemaSimpleType *Schema_BLDIN_int(void) COMPACTXML_NOEXCEPT;
COMPACTXML_API const SchemaSimpleType *Schema_BLDIN_long(void) COMPACTXML_NOEXCEPT;
COMPACTXML_API const SchemaSimpleType *Schema_BLDIN_unsignedInt(void) COMPACTXML_NOEXCEPT;
COMPACTXML_API const SchemaSimpleType *Schema_BLDIN_unsignedLong(void) COMPACTXML_NOEXCEPT;
COMPACTXML_API const SchemaSimpleType *Schema_BLDIN_integer(void) COMPACTXML_NOEXCEPT;
COMPACTXML_API const SchemaSimpleType *Schema_BLDIN_positiveInteger(void) COMPACTXML_NOEXCEPT;
COMPACTXML_API const SchemaSimpleType *Schema_BLDIN_nonPositiveInteger(void) COMPACTXML_NOEXCEPT;
COMPACTXML_API const SchemaSimpleType *Schema_BLDIN_negativeInteger(void) COMPACTXML_NOEXCEPT;
COMPACTXML_API const SchemaSimpleType *Schema_BLDIN_nonNegativeInteger(void) COMPACTXML_NOEXCEPT;
COMPACTXML_API const SchemaSimpleType *Schema_BLDIN_duration(void) COMPACTXML_NOEXCEPT;
COMPACTXML_API const SchemaSimpleType *Schema_BLDIN_dateTime(void) COMPACTXML_NOEXCEPT;
COMPACTXML_API const SchemaSimpleType *Schema_BLDIN_date(void) COMPACTXML_NOEXCEPT;
COMPACTXML_API const SchemaSimpleType *Schema_BLDIN_time(void) COMPACTXML_NOEXCEPT;
COMPACTXML_API const SchemaSimpleType *Schema_BLDIN_gYear(void) COMPACTXML_NOEXCEPT;
COMPACTXML_API const SchemaSimpleType *Schema_BLDIN_gMonth(void) COMPACTXML_NOEXCEPT;
COMPACTXML_API const SchemaSimpleType *Schema_BLDIN_gDay(void) COMPACTXML_NOEXCEPT;
COMPACTXML_API const SchemaSimpleType *Schema_BLDIN_gYearMonth(void) COMPACTXML_NOEXCEPT;
COMPACTXML_API const SchemaSimpleType *Schema_BLDIN_gMonthDay(void) COMPACTXML_NOEXCEPT;
COMPACTXML_API const SchemaSimpleType *Schema_BLDIN_string(void) COMPACTXML_NOEXCEPT;
COMPACTXML_API const SchemaSimpleType *Schema_BLDIN_boolean(void) COMPACTXML_NOEXCEPT;
COMPACTXML_API const SchemaSimpleType *Schema_BLDIN_hexBinary(void) COMPACTXML_NOEXCEPT;
COMPACTXML_API const SchemaSimpleType *Schema_BLDIN_base64Binary(void) COMPACTXML_NOEXCEPT;
COMPACTXML_API const SchemaSimpleType *Schema_BLDIN_anyURI(void) COMPACTXML_NOEXCEPT;
COMPACTXML_API const SchemaSimpleType *Schema_BLDIN_QName(void) COMPACTXML_NOEXCEPT;
COMPACTXML_API const SchemaSimpleType *Schema_BLDIN_language(void) COMPACTXML_NOEXCEPT;
/* The built-in complex type, which has no content. Returns a constant record of the library; never
 * null. */
COMPACTXML_API const SchemaComplexType *Schema_BLDIN_anyType(void) COMPACTXML_NOEXCEPT;

/* Registers the built-in types, as Schema_InitRoot does. Returns the sum of the 31 results: 0 when
 * all succeeded. */
COMPACTXML_API uint32_t SchemaReg_xml_schema_buildin(SchemaRoot *root) COMPACTXML_NOEXCEPT;

/* Deregisters the built-in types. Always returns 0. */
COMPACTXML_API uint32_t SchemaDereg_xml_schema_buildin(SchemaRoot *root) COMPACTXML_NOEXCEPT;

/* Names the schema document behind the built-in types; not read by the library. */
COMPACTXML_API extern const char *g_szGatherXsd_xml_schema_buildin;

/* ---------------------------------------------------------------- validation
 *
 * Checks a tree against the schemas of a root. The first thing that is wrong ends a run: the children
 * of an element are checked in order, each with everything below it, before the attributes of the
 * element; of an element of a simple type the attributes come first. The tree and the root are only
 * read. Cost: linear in the document, times what its schema asks for each element.
 */

/* Validates a document.
 *
 *   rootElement  the root of the document
 *   errorInfo    takes the first error, or zeros; its strings live as long as tree and schemas do
 *
 * Returns 0 for every document that was looked at: it is valid when errorInfo->code is 0. XML_REFUSED
 * for a missing argument, with errorInfo untouched, and for exhausted memory, with a code of 0. */
COMPACTXML_API uint32_t Schema_ValidateXml(XML_DOM_Node *rootElement, const SchemaRoot *schemaRoot,
                                           SchemaErrorInfo *errorInfo) COMPACTXML_NOEXCEPT;

/* Validates as Schema_ValidateXml does.
 *
 *   mode         1 compares with the alternative namespaces of element declarations, where they have
 *                one; the declaration of the root is still found by its target namespace.
 *                Others (16 bits are kept) are as 0, which is Schema_ValidateXml */
COMPACTXML_API uint32_t Schema_ValidateXmlEx(XML_DOM_Node *rootElement,
                                             const SchemaRoot *schemaRoot, uint32_t mode,
                                             SchemaErrorInfo *errorInfo) COMPACTXML_NOEXCEPT;

/* Tells in English what is wrong with a document. The tree must still be there: it names the place by
 * its path, cut to 511 bytes.
 *
 *   size         bytes at buffer, at least 512
 *   buffer       takes the message, in the encoding of the tree; untouched for code 0
 *
 * Refuses a missing argument, a smaller size and a code above 12. Intended: the message of code 6 ends
 * with the path of the parent, without the end of the sentence. */
COMPACTXML_API uint32_t Schema_GetErrorDesc(const SchemaErrorInfo *errorInfo, uint32_t size,
                                            char *buffer) COMPACTXML_NOEXCEPT;

/* ---------------------------------------------------------------- debug trace
 *
 * Shows on standard output which elements are being validated. The switch and the indentation are
 * shared by all threads and not locked: a help for debugging one thread.
 */

/* Switches the trace on (1) or off (others; 16 bits are kept). Returns what it was. */
COMPACTXML_API uint32_t Schema_Debug_Enable(uint32_t flag) COMPACTXML_NOEXCEPT;

/* Indents further lines by two more blanks. */
COMPACTXML_API void Schema_Debug_BlankAdd(void) COMPACTXML_NOEXCEPT;

/* Indents further lines by two blanks less; below zero the number wraps. */
COMPACTXML_API void Schema_Debug_BlankSub(void) COMPACTXML_NOEXCEPT;

/* Prints a message, cut to 1023 bytes, when the trace is on. */
COMPACTXML_PRINTF(1, 2)
COMPACTXML_API void Schema_Debug_ShowMsg(const char *format, ...) COMPACTXML_NOEXCEPT;

/* The same, behind the start of a new, indented line. */
COMPACTXML_PRINTF(1, 2)
COMPACTXML_API void Schema_Debug_ShowMsgLine(const char *format, ...) COMPACTXML_NOEXCEPT;

/* Prints a new line with a node's path, first text, namespace and address, when the trace is on; looks
 * at the node in any case. */
COMPACTXML_API void Schema_Debug_ShowNode(const XML_DOM_Node *node,
                                          const char *functionName) COMPACTXML_NOEXCEPT;

/* Prints how many top-level elements a root has and which, when the trace is on. */
COMPACTXML_API void Schema_Debug_ListTopObjects(const SchemaRoot *root) COMPACTXML_NOEXCEPT;

#ifdef __cplusplus
}
#endif

#endif /* COMPACTXML_H */
