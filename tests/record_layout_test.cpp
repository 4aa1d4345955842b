// The binary interface: order, width and place of every public field, for pointers of 4 and 8
// bytes.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "compactxml.h"
#include "tests/support/layout.h"

namespace {

FIELD_AT(XML_DOM_Node, firstAttr, 0, 0);
FIELD_AT(XML_DOM_Node, lastAttr, 4, 8);
FIELD_AT(XML_DOM_Node, firstNsDecl, 8, 16);
FIELD_AT(XML_DOM_Node, lastNsDecl, 12, 24);
FIELD_AT(XML_DOM_Node, ns, 16, 32);
FIELD_AT(XML_DOM_Node, docInfo, 20, 40);
FIELD_AT(XML_DOM_Node, firstChild, 24, 48);
FIELD_AT(XML_DOM_Node, lastChild, 28, 56);
FIELD_AT(XML_DOM_Node, nextSibling, 32, 64);
FIELD_AT(XML_DOM_Node, parent, 36, 72);
FIELD_AT(XML_DOM_Node, name, 40, 80);
FIELD_AT(XML_DOM_Node, value, 44, 88);
FIELD_AT(XML_DOM_Node, type, 48, 96);
SIZE_IS(XML_DOM_Node, 52, 104);
FIELD_IS(XML_DOM_Node, firstAttr, XML_DOM_Attr *);
FIELD_IS(XML_DOM_Node, lastAttr, XML_DOM_Attr *);
FIELD_IS(XML_DOM_Node, firstNsDecl, XML_DOM_NsDecl *);
FIELD_IS(XML_DOM_Node, lastNsDecl, XML_DOM_NsDecl *);
FIELD_IS(XML_DOM_Node, ns, XML_DOM_NsDecl *);
FIELD_IS(XML_DOM_Node, docInfo, XML_DOM_DocInfo *);
FIELD_IS(XML_DOM_Node, name, char *);
FIELD_IS(XML_DOM_Node, value, char *);
FIELD_IS(XML_DOM_Node, type, std::uint32_t);

FIELD_AT(XML_DOM_DocInfo, root, 0, 0);
FIELD_AT(XML_DOM_DocInfo, version, 4, 8);
FIELD_AT(XML_DOM_DocInfo, encoding, 8, 16);
SIZE_IS(XML_DOM_DocInfo, 12, 24);
FIELD_IS(XML_DOM_DocInfo, version, const char *);
FIELD_IS(XML_DOM_DocInfo, encoding, std::uint32_t);

FIELD_AT(XML_DOM_Attr, next, 0, 0);
FIELD_AT(XML_DOM_Attr, owner, 4, 8);
FIELD_AT(XML_DOM_Attr, ns, 8, 16);
FIELD_AT(XML_DOM_Attr, name, 12, 24);
FIELD_AT(XML_DOM_Attr, value, 16, 32);
SIZE_IS(XML_DOM_Attr, 20, 40);

FIELD_AT(XML_DOM_NsDecl, next, 0, 0);
FIELD_AT(XML_DOM_NsDecl, prefix, 4, 8);
FIELD_AT(XML_DOM_NsDecl, namespaceName, 8, 16);
SIZE_IS(XML_DOM_NsDecl, 12, 24);

FIELD_AT(DOM_XPath_Cursor, rest, 0, 0);
FIELD_AT(DOM_XPath_Cursor, step, 4, 8);
FIELD_AT(DOM_XPath_Cursor, flags, 260, 264);
SIZE_IS(DOM_XPath_Cursor, 264, 272);
FIELD_IS(DOM_XPath_Cursor, rest, char *);
FIELD_IS(DOM_XPath_Cursor, step, char[256]);
FIELD_IS(DOM_XPath_Cursor, flags, std::uint32_t);

FIELD_AT(XML_DOM_TranslateState, names, 0, 0);
FIELD_AT(XML_DOM_TranslateState, depth, 128, 256);
FIELD_AT(XML_DOM_TranslateState, userData, 132, 264);
FIELD_AT(XML_DOM_TranslateState, textCallback, 136, 272);
SIZE_IS(XML_DOM_TranslateState, 140, 280);
FIELD_IS(XML_DOM_TranslateState, depth, std::uint32_t);
static_assert(sizeof(XML_DOM_TranslateState::names) / sizeof(const char *) == 32);

FIELD_AT(XML_IO_MemChunk, next, 0, 0);
FIELD_AT(XML_IO_MemChunk, length, 4, 8);
FIELD_AT(XML_IO_MemChunk, data, 8, 16);
SIZE_IS(XML_IO_MemChunk, 12, 24);
FIELD_IS(XML_IO_MemChunk, length, std::uint32_t);
FIELD_IS(XML_IO_MemChunk, data, const unsigned char *);

FIELD_AT(XML_IO_MemList, first, 0, 0);
SIZE_IS(XML_IO_MemList, 4, 8);

FIELD_AT(XML_IO_MemListCursor, chunk, 0, 0);
FIELD_AT(XML_IO_MemListCursor, position, 4, 8);
SIZE_IS(XML_IO_MemListCursor, 8, 16);
FIELD_IS(XML_IO_MemListCursor, chunk, const XML_IO_MemChunk *);
FIELD_IS(XML_IO_MemListCursor, position, std::uint32_t);

FIELD_AT(XML_IO_InStream, base, 0, 0);
FIELD_AT(XML_IO_InStream, mark, 4, 8);
FIELD_AT(XML_IO_InStream, cur, 8, 16);
FIELD_AT(XML_IO_InStream, end, 12, 24);
FIELD_AT(XML_IO_InStream, capacity, 16, 32);
FIELD_AT(XML_IO_InStream, rawBase, 20, 40);
FIELD_AT(XML_IO_InStream, rawMark, 24, 48);
FIELD_AT(XML_IO_InStream, rawCur, 28, 56);
FIELD_AT(XML_IO_InStream, rawEnd, 32, 64);
FIELD_AT(XML_IO_InStream, rawCapacity, 36, 72);
FIELD_AT(XML_IO_InStream, source, 40, 80);
FIELD_AT(XML_IO_InStream, readFn, 44, 88);
FIELD_AT(XML_IO_InStream, encoding, 48, 96);
FIELD_AT(XML_IO_InStream, converter, 52, 104);
FIELD_AT(XML_IO_InStream, state, 56, 112);
SIZE_AT_LEAST(XML_IO_InStream, 60, 120);
FIELD_IS(XML_IO_InStream, capacity, std::uint32_t);
FIELD_IS(XML_IO_InStream, rawCapacity, std::uint32_t);
FIELD_IS(XML_IO_InStream, source, std::uintptr_t);
FIELD_IS(XML_IO_InStream, encoding, std::uint32_t);
FIELD_IS(XML_IO_InStream, converter, void *);
FIELD_IS(XML_IO_InStream, state, std::uint32_t);

FIELD_AT(XML_IO_MemBuf, data, 0, 0);
FIELD_AT(XML_IO_MemBuf, length, 4, 8);
FIELD_AT(XML_IO_MemBuf, capacity, 8, 12);
SIZE_IS(XML_IO_MemBuf, 12, 16);
FIELD_IS(XML_IO_MemBuf, length, std::uint32_t);
FIELD_IS(XML_IO_MemBuf, capacity, std::uint32_t);

FIELD_AT(XML_IO_OutStream, target, 0, 0);
FIELD_AT(XML_IO_OutStream, sink, 4, 8);
FIELD_AT(XML_IO_OutStream, converter, 8, 16);
FIELD_AT(XML_IO_OutStream, pendingCount, 12, 24);
FIELD_AT(XML_IO_OutStream, pendingBytes, 16, 28);
FIELD_AT(XML_IO_OutStream, kind, 20, 32);
SIZE_AT_LEAST(XML_IO_OutStream, 24, 40);
FIELD_IS(XML_IO_OutStream, target, std::uintptr_t);
FIELD_IS(XML_IO_OutStream, converter, void *);
FIELD_IS(XML_IO_OutStream, pendingCount, std::uint32_t);
FIELD_IS(XML_IO_OutStream, kind, std::uint32_t);
static_assert(sizeof(XML_IO_OutStream::pendingBytes) == 4);

// The handler is 32 slots, each as wide as a pointer.
#define SLOT_IS(field, number) FIELD_AT(XML_SAX_Handler, field, (number)*4, (number)*8)
SLOT_IS(reserved0, 0);
SLOT_IS(startDocument, 12);
SLOT_IS(endDocument, 13);
SLOT_IS(reserved14, 14);
SLOT_IS(characters, 16);
SLOT_IS(comment, 17);
SLOT_IS(cdataBlock, 18);
SLOT_IS(processingInstruction, 19);
SLOT_IS(error, 20);
SLOT_IS(reserved21, 21);
SLOT_IS(userData, 28);
SLOT_IS(startElementNs, 29);
SLOT_IS(endElementNs, 30);
SLOT_IS(reserved31, 31);
SIZE_IS(XML_SAX_Handler, 128, 256);

FIELD_AT(XML_Parser_Ctx, handler, 0, 0);
FIELD_AT(XML_Parser_Ctx, input, 4, 8);
FIELD_AT(XML_Parser_Ctx, attributes, 8, 16);
FIELD_AT(XML_Parser_Ctx, freeAttributes, 12, 24);
FIELD_AT(XML_Parser_Ctx, namespaces, 16, 32);
FIELD_AT(XML_Parser_Ctx, encoding, 20, 40);
FIELD_AT(XML_Parser_Ctx, status, 24, 44);
FIELD_AT(XML_Parser_Ctx, line, 28, 48);
FIELD_AT(XML_Parser_Ctx, column, 32, 52);
FIELD_AT(XML_Parser_Ctx, version, 36, 56);
SIZE_AT_LEAST(XML_Parser_Ctx, 40, 64);
FIELD_IS(XML_Parser_Ctx, encoding, std::uint32_t);
FIELD_IS(XML_Parser_Ctx, status, std::int32_t);
FIELD_IS(XML_Parser_Ctx, line, std::int32_t);
FIELD_IS(XML_Parser_Ctx, column, std::int32_t);
FIELD_IS(XML_Parser_Ctx, version, const char *);

// Plain C records, whatever the language that includes the header.
static_assert(std::is_standard_layout_v<XML_DOM_Node> && std::is_trivial_v<XML_DOM_Node>);
static_assert(std::is_standard_layout_v<XML_IO_InStream> && std::is_trivial_v<XML_IO_InStream>);
static_assert(std::is_standard_layout_v<XML_IO_OutStream> && std::is_trivial_v<XML_IO_OutStream>);
static_assert(std::is_standard_layout_v<XML_SAX_Handler> && std::is_trivial_v<XML_SAX_Handler>);
static_assert(std::is_standard_layout_v<XML_Parser_Ctx> && std::is_trivial_v<XML_Parser_Ctx>);

// Values that compiled callers carry in themselves.
static_assert(XML_OK == 0 && XML_REFUSED == 0x40010001 && XML_MISSING == 0x20010002);
static_assert(XML_DOM_NODE_ELEMENT == 1 && XML_DOM_NODE_TEXT == 2 && XML_DOM_NODE_CDATA == 3);
static_assert(XML_ENCODING_UTF_8 == 0 && XML_ENCODING_UTF_16LE == 1 && XML_ENCODING_UTF_16BE == 2);
static_assert(XML_ENCODING_GB2312 == 3 && XML_ENCODING_UTF_32LE == 4 && XML_ENCODING_UTF_32BE == 5);
static_assert(XML_ENCODING_UTF_16 == 6 && XML_ENCODING_UTF_32 == 7 && XML_ENCODING_GBK == 8);
static_assert(XML_ENCODING_GB18030 == 9 && XML_ENCODING_UCS_4 == 10 && XML_ENCODING_UCS_4BE == 11);
static_assert(XML_ENCODING_UCS_4LE == 12 && XML_ENCODING_UNKNOWN == 13);
static_assert(XML_DOM_NO_DECLARATION == 1);

// Nothing crosses the boundary as an exception.
static_assert(noexcept(XML_DOM_DelNode(nullptr)) &&noexcept(XML_DOM_GetRoot(nullptr)));
static_assert(noexcept(XML_IO_Grow(nullptr)) &&noexcept(XML_CheckQName(nullptr)));
static_assert(noexcept(XML_DOM_BuildTreeByMem(nullptr, 0, 0, nullptr)));

// The fields that compilers see are the ones that the library writes.
TEST(RecordLayout, TheLibraryAgrees) {
    XML_DOM_Node *node = XML_DOM_CreateElementNode("a");
    ASSERT_NE(node, nullptr);
    const auto *bytes = reinterpret_cast<const unsigned char *>(node);
    std::uint32_t type = 0;
    std::memcpy(&type, bytes + support::pick(48, 96), sizeof type);
    EXPECT_EQ(type, XML_DOM_NODE_ELEMENT);
    const char *name = nullptr;
    std::memcpy(&name, bytes + support::pick(40, 80), sizeof name);
    EXPECT_STREQ(name, "a");
    XML_DOM_DelNode(node);
}

}  // namespace
