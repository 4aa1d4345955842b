// Every exported function with each of its pointers missing in turn: refused with the value that
// its kind of result has for that, and nothing else happens.
#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <set>
#include <string>
#include <vector>

#include "compactxml.h"
#include "dom/builder.h"
#include "tests/support/faults.h"
#include "tests/support/owners.h"
#include "tests/support/sample_trees.h"
#include "tests/support/tree_dump.h"

namespace {

// Good arguments for everything.
struct Objects {
    Objects()
        : root(support::richDocument()),
          loose(XML_DOM_CreateElementNode("loose")),
          out(XML_IO_MemOutStreamCreate(0, 0)),
          in(XML_IO_ByMem("<a/>", 4)) {
        element = root->firstChild;
        text = element->firstChild;
        attribute = root->firstAttr;
        chunk.length = 4;
        chunk.data = reinterpret_cast<const unsigned char *>("<a/>");
        list.first = &chunk;
        XML_IO_OutStreamAppend(out.get(), "abc", 3);
        Schema_InitRoot(&schemaRoot);
        validation.valid = 1;
        report.code = 1;
        cxml::XML_DOM_BuildInit(&handler, &state, sizeof error, error);
        context.handler = &handler;
    }
    ~Objects() {
        XML_DOM_DelNode(state.root);
        cxml::XML_DOM_BuildFini(&handler);
        XML_IO_DestroyByMem(in);
        Schema_ExitRoot(&schemaRoot);
    }
    Objects(const Objects &) = delete;
    Objects &operator=(const Objects &) = delete;

    // Everything that a refused call could have changed.
    std::string image() const {
        const XML_IO_MemBuf *buffer = reinterpret_cast<const XML_IO_MemBuf *>(out->target);
        return support::dumpTree(root.get()) + support::dumpTree(loose.get()) +
               support::dumpTree(state.root) + std::string(buffer->data, buffer->length) +
               std::to_string(in->cur - in->base) + std::to_string(in->state) +
               std::to_string(number) + std::to_string(signedNumber) +
               std::to_string(unsignedNumber) + name + error + (pointer ? pointer : "(null)") +
               std::to_string(validation.valid) + std::to_string(schemaRoot.simpleTypes.count) +
               std::to_string(schemaRoot.complexTypes.count) +
               std::to_string(schemaRoot.elements.count) + (split.rest ? split.rest : "(null)") +
               std::to_string(report.code);
    }

    support::NodePtr root, loose;
    XML_DOM_Node *element, *text;
    XML_DOM_Attr *attribute;
    support::StreamPtr out;
    XML_IO_InStream *in;
    XML_IO_MemChunk chunk{};
    XML_IO_MemList list{};
    XML_SAX_Handler handler{};
    cxml::XML_DOM_BuildState state;
    XML_Parser_Ctx context{};
    SchemaRoot schemaRoot;
    SchemaValidateContext validation{};
    SchemaTypedRef string = {Schema_BLDIN_string(), SCHEMA_KIND_SIMPLE_TYPE};
    SchemaTypedRef nothing = {nullptr, SCHEMA_KIND_SIMPLE_TYPE};
    SchemaFacet facet = {"1", SCHEMA_FACET_LENGTH, SCHEMA_TYPE_STRING};
    SchemaDateTimeValue time{};
    // Outputs.
    SchemaSplitState split{};
    SchemaErrorInfo report{};
    std::uint32_t number = 42;
    long long signedNumber = 42;
    unsigned long long unsignedNumber = 42;
    DOM_XPath_Cursor cursor{};
    const char *name = "unset";
    char *pointer = error;
    char error[64] = "unset";
};

std::uint32_t sink(void *, const char *, std::uint32_t) {
    return 0;
}

std::uint32_t visit(XML_DOM_Node *, void *userData, std::uint32_t) {
    *static_cast<char *>(userData) = '!';  // must not be called
    return 0;
}

using Result = std::uint64_t;
Result asResult(std::uint32_t code) {
    return code;
}
Result asResult(int number) {
    return static_cast<Result>(number);
}
Result asResult(const void *pointer) {
    return reinterpret_cast<std::uintptr_t>(pointer);
}

constexpr Result kBelow = static_cast<Result>(-1);  // of a comparison

struct Case {
    const char *function;
    const char *missing;
    Result refusal;
    Result (*call)(Objects &o);
};

#define ANSWERS(refusal, function, missing, ...)                                                 \
    Case {                                                                                       \
#function, missing, refusal, [](Objects &o) { (void)o; return asResult(function(__VA_ARGS__)); } \
    }
#define REFUSES(function, missing, ...) ANSWERS(XML_REFUSED, function, missing, __VA_ARGS__)
#define IS_NULL(function, missing, ...) ANSWERS(0, function, missing, __VA_ARGS__)
#define DOES_NOTHING(function, missing, ...)                                                \
    Case {                                                                                  \
#function, missing, 0, [](Objects &o) { (void)o; function(__VA_ARGS__); return Result{0}; } \
    }

const Case kCases[] = {
    // Nodes and documents
    IS_NULL(XML_DOM_GetRoot, "node", nullptr),
    IS_NULL(XML_DOM_GetVersion, "node", nullptr),
    ANSWERS(XML_ENCODING_UNKNOWN, XML_DOM_GetEncoding, "node", nullptr),
    REFUSES(XML_DOM_SetEncoding, "node", nullptr, 1),
    REFUSES(XML_DOM_SetVersion, "node", nullptr, "1.0"),
    REFUSES(XML_DOM_SetVersion, "version", o.root.get(), nullptr),
    REFUSES(XML_DOM_SetRoot, "node", nullptr),
    IS_NULL(XML_DOM_GetNodeParent, "node", nullptr),
    IS_NULL(XML_DOM_GetFirstChild, "node", nullptr),
    IS_NULL(XML_DOM_GetNextSibling, "node", nullptr),
    ANSWERS(0, XML_DOM_GetNodeType, "node", nullptr),
    IS_NULL(XML_DOM_GetNodeName, "node", nullptr),
    IS_NULL(XML_DOM_GetNodeValue, "node", nullptr),
    IS_NULL(XML_DOM_GetFirstTextChildValue, "node", nullptr),
    IS_NULL(XML_DOM_GetFirstCDataChildValue, "node", nullptr),
    IS_NULL(XML_DOM_CreateElementNode, "name", nullptr),
    IS_NULL(XML_DOM_CreateElementNodeInner, "name", nullptr),
    IS_NULL(XML_DOM_CreateTextualNodeInner, "bytes", XML_DOM_NODE_TEXT, nullptr, 3),
    IS_NULL(XML_DOM_CreateTextNode, "text", nullptr),
    IS_NULL(XML_DOM_CreateCDataNode, "text", nullptr),
    IS_NULL(XML_DOM_CreateElementWithText, "name", nullptr, "t"),
    IS_NULL(XML_DOM_CreateElementWithCData, "name", nullptr, "t"),
    REFUSES(XML_DOM_AddChildNode, "parent", nullptr, o.loose.get()),
    REFUSES(XML_DOM_AddChildNode, "child", o.root.get(), nullptr),
    REFUSES(XML_DOM_InsertBeforeNode, "reference", nullptr, o.loose.get()),
    REFUSES(XML_DOM_InsertBeforeNode, "newnode", o.element, nullptr),
    REFUSES(XML_DOM_SetNodeName, "node", nullptr, "n"),
    REFUSES(XML_DOM_SetNodeName, "name", o.element, nullptr),
    REFUSES(XML_DOM_SetNodeValue, "node", nullptr, "v"),
    REFUSES(XML_DOM_SetNodeValue, "value", o.text, nullptr),
    ANSWERS(0, XML_Strcmp, "both", nullptr, nullptr),
    ANSWERS(0, XML_Strcmp, "a", nullptr, ""),
    ANSWERS(0, XML_Strcmp, "b", "", nullptr),
    // Copies, paths and scans
    ANSWERS(XML_OK, XML_DOM_AdoptChildren, "from", nullptr, o.loose.get()),
    // Loses a child where there is one, which is its own test.
    ANSWERS(XML_OK, XML_DOM_AdoptChildren, "to", o.loose.get(), nullptr),
    IS_NULL(XML_DOM_CopyNode, "node", nullptr),
    REFUSES(XML_DOM_CopySubTree, "target", nullptr, o.element),
    REFUSES(XML_DOM_CopySubTree, "source", o.element, nullptr),
    IS_NULL(XML_DOM_CopyRoot, "node", nullptr),
    ANSWERS(0, XML_DOM_GetXPath, "node", nullptr, sizeof o.error, o.error),
    ANSWERS(0, XML_DOM_GetXPath, "buffer", o.element, sizeof o.error, nullptr),
    ANSWERS(XML_MISSING, XML_DOM_ScanTree, "node", nullptr, visit, nullptr),
    ANSWERS(XML_MISSING, XML_DOM_ScanTree, "visit", o.root.get(), nullptr, nullptr),
    IS_NULL(XML_DOM_SelectSingleNode, "context", nullptr, "/"),
    IS_NULL(XML_DOM_SelectSingleNode, "path", o.root.get(), nullptr),
    IS_NULL(XML_DOM_GetSelectSingleNodeText, "context", nullptr, "/"),
    IS_NULL(XML_DOM_GetSelectSingleNodeText, "path", o.root.get(), nullptr),
    REFUSES(XML_DOM_GetSelectSingleNodeAsInt64, "context", nullptr, "/", &o.signedNumber),
    REFUSES(XML_DOM_GetSelectSingleNodeAsInt64, "path", o.root.get(), nullptr, &o.signedNumber),
    REFUSES(XML_DOM_GetSelectSingleNodeAsInt64, "valueOut", o.root.get(), "/", nullptr),
    REFUSES(XML_DOM_GetSelectSingleNodeAsUInt64, "context", nullptr, "/", &o.unsignedNumber),
    REFUSES(XML_DOM_GetSelectSingleNodeAsUInt64, "path", o.root.get(), nullptr, &o.unsignedNumber),
    REFUSES(XML_DOM_GetSelectSingleNodeAsUInt64, "valueOut", o.root.get(), "/", nullptr),
    ANSWERS(0, DOM_XPath_ParseNextXPathContext, "cursor", nullptr),
    ANSWERS(0, DOM_XPath_ParseNextXPath4Root, "cursor", nullptr),
    IS_NULL(DOM_XPath_GetNodeFromContext, "node", nullptr, &o.cursor),
    IS_NULL(DOM_XPath_GetNodeFromContext, "cursor", o.root.get(), nullptr),
    IS_NULL(DOM_XPath_GetRootElement, "node", nullptr, &o.cursor),
    IS_NULL(DOM_XPath_GetRootElement, "cursor", o.root.get(), nullptr),

    // Attributes and namespaces
    IS_NULL(XML_DOM_AddAttr, "element", nullptr, nullptr, "n", "v"),
    IS_NULL(XML_DOM_AddAttr, "name", o.element, nullptr, nullptr, "v"),
    IS_NULL(XML_DOM_AddAttr, "value", o.element, nullptr, "n", nullptr),
    IS_NULL(XML_DOM_AddAttrInner, "element", nullptr, "n", "v"),
    IS_NULL(XML_DOM_AddAttrInner, "name", o.element, nullptr, "v"),
    IS_NULL(XML_DOM_AddAttrInner, "value", o.element, "n", nullptr),
    REFUSES(XML_DOM_SetAttrNsInner, "attribute", nullptr, "p"),
    REFUSES(XML_DOM_SetAttrNsInner, "both", nullptr, nullptr),
    DOES_NOTHING(XML_DOM_DelAttr, "element", nullptr, nullptr, "a"),
    DOES_NOTHING(XML_DOM_DelAttr, "name", o.root.get(), nullptr, nullptr),
    IS_NULL(XML_DOM_GetFirstAttr, "element", nullptr),
    IS_NULL(XML_DOM_GetNextAttr, "attribute", nullptr),
    IS_NULL(XML_DOM_GetAttrValByHandle, "attribute", nullptr),
    REFUSES(XML_DOM_GetAttrNameSpace, "attribute", nullptr, &o.name, &o.name),
    REFUSES(XML_DOM_GetAttrNameSpace, "both outputs", o.attribute, nullptr, nullptr),
    IS_NULL(XML_DOM_GetNodeNsAttribute, "element", nullptr, "urn:d", "a"),
    IS_NULL(XML_DOM_GetNodeNsAttribute, "name", o.root.get(), "urn:d", nullptr),
    IS_NULL(XML_DOM_GetNodeAttrValByName, "element", nullptr, "a"),
    IS_NULL(XML_DOM_GetNodeAttrValByName, "name", o.root.get(), nullptr),
    REFUSES(XML_DOM_AddNodeNameSpace, "element", nullptr, "p", "u"),
    REFUSES(XML_DOM_AddNodeNameSpace, "name for a prefix", o.element, "n", nullptr),
    REFUSES(XML_DOM_SetNodeDefineNsVal, "element", nullptr, "p", "u"),
    REFUSES(XML_DOM_SetNodeDefineNsVal, "name for a prefix", o.element, "n", nullptr),
    REFUSES(XML_DOM_AddNodeNameSpaceInner, "element", nullptr, "p", "u", 1),
    REFUSES(XML_DOM_AddNodeNameSpaceInner, "name", o.element, "n", nullptr, 1),
    REFUSES(XML_DOM_SetNodeNameSpace, "element", nullptr, "p"),
    REFUSES(XML_DOM_GetNodeNameSpace, "element", nullptr, &o.name, &o.name),
    REFUSES(XML_DOM_GetNodeNameSpace, "both outputs", o.element, nullptr, nullptr),
    // Encodings and removal
    ANSWERS(XML_ENCODING_UNKNOWN, XML_DOM_EncodingStrToEnum, "name", nullptr),
    DOES_NOTHING(XML_DOM_Clip, "node", nullptr),
    DOES_NOTHING(XML_DOM_DelNode, "node", nullptr),
    // Writing
    REFUSES(XML_OutTextString, "text", nullptr, sink, nullptr),
    REFUSES(XML_OutTextString, "writer", "t", nullptr, nullptr),
    IS_NULL(XML_DOM_NodeBegin2Str, "node", nullptr, 0, &o.number),
    IS_NULL(XML_DOM_NodeBegin2Str, "both", nullptr, 0, nullptr),
    IS_NULL(XML_DOM_NodeEnd2Str, "node", nullptr, &o.number),
    IS_NULL(XML_DOM_NodeEnd2Str, "both", nullptr, nullptr),
    REFUSES(XML_DOM_TranslateStr, "node", nullptr, 0, &o.pointer, &o.number),
    REFUSES(XML_DOM_TranslateStr, "buffer", o.root.get(), 0, nullptr, &o.number),
    REFUSES(XML_DOM_TranslateStrEx, "node", nullptr, 0, nullptr, &o.pointer, &o.number),
    REFUSES(XML_DOM_TranslateStrEx, "buffer", o.root.get(), 0, nullptr, nullptr, &o.number),
    REFUSES(XML_DOM_TranslateStr4AllChild, "node", nullptr, &o.pointer, &o.number),
    REFUSES(XML_DOM_TranslateStr4AllChild, "buffer", o.root.get(), nullptr, &o.number),
    REFUSES(XML_DOM_OutPutTranslateStr, "node", nullptr, 0, sink, nullptr),
    REFUSES(XML_DOM_OutPutTranslateStr, "sink", o.root.get(), 0, nullptr, nullptr),
    // Building
    IS_NULL(XML_DOM_BuildTreeByFile, "path and message", nullptr, 64, nullptr),
    IS_NULL(XML_DOM_BuildTreeByMem, "buffer and message", nullptr, 4, 64, nullptr),
    IS_NULL(XML_DOM_BuildTreeByMemList, "list and message", nullptr, 64, nullptr),
    DOES_NOTHING(XML_SAX_StartElementNs, "context", nullptr, "a", nullptr, nullptr, 0, nullptr, 0,
                 0, nullptr),
    DOES_NOTHING(XML_SAX_EndElementNs, "context", nullptr, "a", nullptr, nullptr),
    DOES_NOTHING(XML_SAX_Characters, "context", nullptr, "t", 1),
    DOES_NOTHING(XML_SAX_CData, "context", nullptr, "t", 1),
    DOES_NOTHING(XML_SAX_EndDocument, "context", nullptr),
    DOES_NOTHING(XML_SAX_Error, "context", nullptr, "m"),
    DOES_NOTHING(XML_SAX_Error, "format", &o.context, nullptr),
    // Parsing and checking
    REFUSES(XML_Parser_ByFile, "path", nullptr, &o.handler),
    REFUSES(XML_Parser_ByFile, "both", nullptr, nullptr),
    REFUSES(XML_Parser_ByMem, "buffer", nullptr, 4, &o.handler),
    REFUSES(XML_Parser_ByMem, "both", nullptr, 4, nullptr),
    REFUSES(XML_Parser_ByMemList, "list", nullptr, &o.handler),
    REFUSES(XML_Parser_ByMemList, "both", nullptr, nullptr),
    REFUSES(XML_CheckNamespace, "uri", "p", nullptr),
    REFUSES(XML_CheckNamespace, "both", nullptr, nullptr),
    REFUSES(XML_CheckQName, "name", nullptr),
    // Input streams
    IS_NULL(XML_IO_ByMem, "buffer", nullptr, 4),
    IS_NULL(XML_IO_ByFile, "path", nullptr),
    IS_NULL(XML_IO_ByMemList, "list", nullptr),
    DOES_NOTHING(XML_IO_Grow, "stream", nullptr),
    ANSWERS(2, XML_IO_SwitchEncoding, "stream", nullptr, 1),
    ANSWERS(2, XML_IO_SwitchEncoding, "stream", nullptr, 0),
    ANSWERS(0, XML_IO_Strncmp, "stream", nullptr, "<a", 2),
    ANSWERS(0, XML_IO_Strncmp, "s", o.in, nullptr, 2),
    ANSWERS(0, XML_IO_Strncasecmp, "stream", nullptr, "<a", 2),
    ANSWERS(0, XML_IO_Strncasecmp, "s", o.in, nullptr, 2),
    DOES_NOTHING(XML_IO_DestroyByMem, "stream", nullptr),
    DOES_NOTHING(XML_IO_DestroyByFile, "stream", nullptr),
    DOES_NOTHING(XML_IO_DestroyByMemList, "stream", nullptr),
    // Output streams
    IS_NULL(XML_IO_FileOutStreamCreate, "path", nullptr, 0, 0),
    REFUSES(XML_IO_OutStreamAppend, "stream", nullptr, "x", 1),
    ANSWERS(0, XML_IO_OutStreamAppend, "bytes", o.out.get(), nullptr, 1),
    ANSWERS(0, XML_IO_OutStreamAppend, "both", nullptr, nullptr, 1),
    REFUSES(XML_IO_OutStreamAppendSafe, "stream", nullptr, "x", 1),
    ANSWERS(0, XML_IO_OutStreamAppendSafe, "bytes", o.out.get(), nullptr, 1),
    ANSWERS(0, XML_IO_OutStreamAppendSafe, "both", nullptr, nullptr, 1),
    REFUSES(XML_IO_OutStreamAppendString, "stream", nullptr, "x"),
    ANSWERS(0, XML_IO_OutStreamAppendString, "s", o.out.get(), nullptr),
    ANSWERS(0, XML_IO_OutStreamAppendString, "both", nullptr, nullptr),
    IS_NULL(XML_IO_MemOutStreamGetBuf, "stream", nullptr, &o.number),
    IS_NULL(XML_IO_MemOutStreamGetBuf, "both", nullptr, nullptr),
    IS_NULL(XML_IO_MemOutStreamDetachBuf, "stream", nullptr, &o.number),
    IS_NULL(XML_IO_MemOutStreamDetachBuf, "both", nullptr, nullptr),
    DOES_NOTHING(XML_IO_MemOutStreamCleanBuf, "stream", nullptr),
    DOES_NOTHING(XML_IO_FileOutStreamFlush, "stream", nullptr),
    DOES_NOTHING(XML_IO_OutStreamDestroy, "stream", nullptr),
    // Values of simple types
    ANSWERS(0, XML_IsMatchRegex, "pattern", nullptr, "t"),
    ANSWERS(0, XML_IsMatchRegex, "text", ".", nullptr),
    ANSWERS(0, SCHEMA_CheckBaseTypeNonNull, "value", SCHEMA_TYPE_STRING, nullptr),
    ANSWERS(0, Schema_CheckBaseType, "type", nullptr, "v", sizeof o.error, o.error),
    ANSWERS(0, Schema_CheckBaseType, "value", Schema_BLDIN_string(), nullptr, sizeof o.error,
            o.error),
    ANSWERS(0, Schema_CheckBaseType, "buffer", Schema_BLDIN_string(), "v", 64, nullptr),
    ANSWERS(0, Schema_CheckBaseType, "buffer for a message", Schema_BLDIN_int(), "v", 64, nullptr),
    ANSWERS(kBelow, Schema_CmpDateTime, "a", nullptr, &o.time),
    ANSWERS(kBelow, Schema_CmpDateTime, "b", &o.time, nullptr),
    ANSWERS(kBelow, Schema_CmpDateTime, "both", nullptr, nullptr),
    REFUSES(Schema_CheckFacet, "facet", nullptr, "v", sizeof o.error, o.error),
    REFUSES(Schema_CheckFacet, "value", &o.facet, nullptr, sizeof o.error, o.error),
    REFUSES(Schema_CheckFacet, "buffer", &o.facet, "v", sizeof o.error, nullptr),
    DOES_NOTHING(Schema_CheckFacets, "facets", nullptr, 1, "v", sizeof o.error, &o.validation,
                 o.error),
    DOES_NOTHING(Schema_CheckFacets, "value", &o.facet, 1, nullptr, sizeof o.error, &o.validation,
                 o.error),
    DOES_NOTHING(Schema_CheckFacets, "context", &o.facet, 1, "long", sizeof o.error, nullptr,
                 o.error),
    DOES_NOTHING(Schema_CheckFacets, "buffer", &o.facet, 1, "long", 64, &o.validation, nullptr),
    DOES_NOTHING(Schema_CheckSimpleType, "type", nullptr, "v", sizeof o.error, &o.validation,
                 o.error),
    DOES_NOTHING(Schema_CheckSimpleType, "context", Schema_BLDIN_int(), "v", sizeof o.error,
                 nullptr, o.error),
    DOES_NOTHING(Schema_CheckSimpleType, "buffer", Schema_BLDIN_int(), "v", 64, &o.validation,
                 nullptr),
    REFUSES(Schema_checkValueOfElement, "type", nullptr, "v", sizeof o.error, o.error),
    REFUSES(Schema_checkValueOfElement, "object of the type", &o.nothing, "v", sizeof o.error,
            o.error),
    REFUSES(Schema_checkValueOfElement, "buffer", &o.string, "v", 64, nullptr),
    IS_NULL(Schema_FoundKestBltInType, "name", nullptr, nullptr),
    ANSWERS(0, Schema_checkKestBltInType, "row", nullptr, "1", sizeof o.error, o.error),
    ANSWERS(0, Schema_checkKestBltInType, "value", Schema_FoundKestBltInType("OID", nullptr),
            nullptr, sizeof o.error, o.error),
    ANSWERS(0, Schema_checkKestBltInType, "buffer", Schema_FoundKestBltInType("OID", nullptr), "1",
            64, nullptr),
    IS_NULL(Schema_GetFirstSplitStr, "text", nullptr, ",", sizeof o.error, o.error, &o.split),
    IS_NULL(Schema_GetFirstSplitStr, "separator", "a,b", nullptr, sizeof o.error, o.error,
            &o.split),
    IS_NULL(Schema_GetFirstSplitStr, "item", "a,b", ",", 64, nullptr, &o.split),
    IS_NULL(Schema_GetFirstSplitStr, "state", "a,b", ",", sizeof o.error, o.error, nullptr),
    IS_NULL(Schema_GetNextSplitStr, "state", nullptr),
    ANSWERS(0, Schema_LanguageHandler, "value", nullptr),
    // Schemas
    DOES_NOTHING(Schema_InitRoot, "root", nullptr),
    DOES_NOTHING(Schema_ExitRoot, "root", nullptr),
    REFUSES(Schema_RegTopObject, "root", nullptr, &o.string),
    REFUSES(Schema_RegTopObject, "object", &o.schemaRoot, nullptr),
    ANSWERS(XML_OK, Schema_DeregTopObject, "root", nullptr, &o.string),
    ANSWERS(XML_OK, Schema_DeregTopObject, "object", &o.schemaRoot, nullptr),
    ANSWERS(XML_MISSING, Schema_ReplaceInnerTypeNS, "type name", nullptr, nullptr, "urn:t"),
    REFUSES(Schema_CheckAttrsAsElement, "root", nullptr, "a", "v", sizeof o.error, o.error),
    REFUSES(Schema_CheckAttrsAsElement, "path", &o.schemaRoot, nullptr, "v", sizeof o.error,
            o.error),
    REFUSES(Schema_ValidateXml, "root element", nullptr, &o.schemaRoot, &o.report),
    REFUSES(Schema_ValidateXml, "schema root", o.root.get(), nullptr, &o.report),
    REFUSES(Schema_ValidateXml, "error info", o.root.get(), &o.schemaRoot, nullptr),
    REFUSES(Schema_ValidateXmlEx, "root element", nullptr, &o.schemaRoot, 1, &o.report),
    REFUSES(Schema_ValidateXmlEx, "schema root", o.root.get(), nullptr, 1, &o.report),
    REFUSES(Schema_ValidateXmlEx, "error info", o.root.get(), &o.schemaRoot, 1, nullptr),
    REFUSES(Schema_GetErrorDesc, "error info", nullptr, 512, o.error),
    REFUSES(Schema_GetErrorDesc, "buffer", &o.report, 512, nullptr),
    DOES_NOTHING(Schema_Debug_ShowMsg, "format", nullptr),
    DOES_NOTHING(Schema_Debug_ShowMsgLine, "format", nullptr),
    DOES_NOTHING(Schema_Debug_ShowNode, "node", nullptr, "function"),
    DOES_NOTHING(Schema_Debug_ShowNode, "function name", o.root.get(), nullptr),
    DOES_NOTHING(Schema_Debug_ListTopObjects, "root", nullptr),
    // The sum of 31 refusals.
    ANSWERS(0xC01F001F, SchemaReg_xml_schema_buildin, "root", nullptr),
    ANSWERS(XML_OK, SchemaDereg_xml_schema_buildin, "root", nullptr),
};

TEST(NullArguments, AreRefusedWithoutEffect) {
    Objects objects;
    const std::string before = objects.image();
    for (const Case &row : kCases) {
        SCOPED_TRACE(std::string(row.function) + " without " + row.missing);
        const support::FaultyHeap heap(0);
        const Result result = row.call(objects);
        EXPECT_EQ(result, row.refusal);
        EXPECT_EQ(heap.blocksInUse(), 0u);
        EXPECT_EQ(objects.image(), before);
    }
}

// The table above is complete: every function of the shared library is in it but those that take
// no pointer.
TEST(NullArguments, NoFunctionIsForgotten) {
    std::set<std::string> expected;
    std::ifstream list(COMPACTXML_SOURCE_DIR "/tests/exported_symbols.txt");
    ASSERT_TRUE(list.is_open());
    for (std::string name; std::getline(list, name);) expected.insert(name);
    EXPECT_GT(expected.size(), 80u);
    EXPECT_EQ(expected.erase("XML_DOM_EncodingEnumToStr"), 1u);
    EXPECT_EQ(expected.erase("XML_IO_MemOutStreamCreate"), 1u);
    EXPECT_EQ(expected.erase("Schema_IsValidDay"), 1u);
    EXPECT_EQ(expected.erase("Schema_Debug_Enable"), 1u);
    EXPECT_EQ(expected.erase("Schema_Debug_BlankAdd"), 1u);
    EXPECT_EQ(expected.erase("Schema_Debug_BlankSub"), 1u);
    EXPECT_EQ(
        std::erase_if(expected,
                      [](const std::string &name) { return name.starts_with("Schema_BLDIN_"); }),
        31u);
    EXPECT_EQ(expected.erase("g_szGatherXsd_xml_schema_buildin"), 1u);  // no function
    std::set<std::string> covered;
    for (const Case &row : kCases) covered.insert(row.function);
    EXPECT_EQ(covered, expected);
}

// Missing outputs that may be missing, and messages for missing inputs.
TEST(NullArguments, OptionalOnes) {
    Objects o;
    std::uint32_t length = 0;
    EXPECT_NE(XML_IO_MemOutStreamGetBuf(o.out.get(), nullptr), nullptr);
    EXPECT_STREQ(support::TextPtr(XML_DOM_NodeBegin2Str(o.element, 0, nullptr)).get(), "<p:e>");
    EXPECT_STREQ(support::TextPtr(XML_DOM_NodeEnd2Str(o.element, &length)).get(), "</p:e>");
    EXPECT_EQ(XML_Parser_ByMem("<a/>", 4, nullptr), XML_OK);
    EXPECT_EQ(XML_Parser_ByMemList(&o.list, nullptr), XML_OK);
    const support::NodePtr quiet(XML_DOM_BuildTreeByMem("<a/>", 4, 0, nullptr));
    EXPECT_TRUE(quiet);
    EXPECT_EQ(XML_DOM_BuildTreeByMem(nullptr, 4, sizeof o.error, o.error), nullptr);
    EXPECT_STREQ(o.error, "Invalid parameter.");
    o.error[0] = '\0';
    EXPECT_EQ(XML_DOM_BuildTreeByFile(nullptr, sizeof o.error, o.error), nullptr);
    EXPECT_STREQ(o.error, "Invalid parameter.");
    o.error[0] = '\0';
    EXPECT_EQ(XML_DOM_BuildTreeByMemList(nullptr, sizeof o.error, o.error), nullptr);
    EXPECT_STREQ(o.error, "Invalid parameter.");
    // Missing values of simple types are empty ones, missing namespaces none.
    EXPECT_EQ(Schema_checkValueOfElement(&o.string, nullptr, sizeof o.error, o.error), XML_OK);
    Schema_CheckSimpleType(Schema_BLDIN_string(), nullptr, sizeof o.error, &o.validation, o.error);
    EXPECT_EQ(o.validation.valid, 1);
    Schema_CheckSimpleType(Schema_BLDIN_int(), nullptr, sizeof o.error, &o.validation, o.error);
    EXPECT_EQ(o.validation.valid, 0);
    EXPECT_STREQ(o.error, "int cannot be empty.");
    EXPECT_EQ(Schema_ReplaceInnerTypeNS("OID", nullptr, nullptr), XML_OK);
    EXPECT_NE(Schema_FoundKestBltInType("OID", nullptr), nullptr);
}

// The callbacks of the builder have no result: they fail the parse that they belong to.
TEST(NullArguments, BuilderCallbacksFailTheParse) {
    using Call = void (*)(Objects &);
    const Call kCalls[] = {
        [](Objects &o) {
            XML_SAX_StartElementNs(&o.context, nullptr, nullptr, nullptr, 0, nullptr, 0, 0,
                                   nullptr);
        },
        [](Objects &o) {
            XML_SAX_StartElementNs(&o.context, "a", nullptr, nullptr, 1, nullptr, 0, 0, nullptr);
        },
        [](Objects &o) {
            XML_SAX_StartElementNs(&o.context, "a", nullptr, nullptr, 0, nullptr, 1, 0, nullptr);
        },
        [](Objects &o) { XML_SAX_Characters(&o.context, nullptr, 1); },
        [](Objects &o) { XML_SAX_CData(&o.context, nullptr, 1); },
        [](Objects &o) { XML_SAX_EndDocument(&o.context); },  // no root
    };
    int number = 0;
    for (const Call call : kCalls) {
        Objects objects;
        call(objects);
        EXPECT_EQ(objects.context.status, 1) << number++;
    }
    // Without a handler or a state there is nothing to work on and nobody to tell.
    Objects objects;
    XML_Parser_Ctx bare{};
    for (int withHandler = 0; withHandler < 2; ++withHandler) {
        XML_SAX_Handler empty{};
        bare.handler = withHandler ? &empty : nullptr;
        XML_SAX_StartElementNs(&bare, "a", nullptr, nullptr, 0, nullptr, 0, 0, nullptr);
        XML_SAX_EndElementNs(&bare, "a", nullptr, nullptr);
        XML_SAX_Characters(&bare, "t", 1);
        XML_SAX_CData(&bare, "t", 1);
        XML_SAX_EndDocument(&bare);
        XML_SAX_Error(&bare, "m");
    }
}

}  // namespace
