// The table of results: each with a call that gives it.
#include <compactxml.h>

#include <cstddef>
#include <cstdio>
#include <cstring>

#include "tables.h"
#include "tree_tools.h"

namespace messages {
namespace {

std::uint32_t visit(XML_DOM_Node *, void *, std::uint32_t) {
    return XML_OK;
}

// A sink that takes nothing.
std::uint32_t refuse(void *, const char *, std::uint32_t) {
    return XML_REFUSED;
}

// One row: what a call is expected to give, as the reader writes it, and what it gives.
void add(Table &table, const char *name, std::uint32_t expected, const char *meaning,
         const char *call, std::uint32_t result) {
    char hexadecimal[16] = "";
    std::snprintf(hexadecimal, sizeof hexadecimal, result > 9 ? "0x%08X" : "%u", result);
    expect(result == expected, std::string(call) + " gives " + hexadecimal);
    const bool isNamed = std::strchr("0123456789", *name) == nullptr;
    table.rows.push_back({isNamed ? std::string("`") + name + "`, " + hexadecimal : hexadecimal,
                          meaning, std::string("`") + call + "`"});
}

// The call comes last, for it may hold commas.
#define CALL(table, name, meaning, ...) add(table, #name, name, meaning, #__VA_ARGS__, __VA_ARGS__)

}  // namespace

Table resultTable() {
    Table table{"results", {"result", "meaning", "for instance"}, {}};
    static const char kDocument[] = "<vlan><id>1</id></vlan>";
    const demo::Owned<XML_DOM_Node> owner{
        XML_DOM_BuildTreeByMem(kDocument, sizeof kDocument - 1, 0, nullptr)};
    XML_DOM_Node *root = owner.get();
    XML_DOM_Node *text = XML_DOM_GetFirstChild(XML_DOM_GetFirstChild(root));
    const SchemaTypedRef anyType = {Schema_BLDIN_anyType(), SCHEMA_KIND_COMPLEX_TYPE};
    char reason[512] = "";

    CALL(table, XML_OK, "success", XML_DOM_SetNodeName(root, "port"));
    CALL(table, XML_REFUSED,
         "an invalid argument or a failed operation; every refusal that is not told otherwise",
         XML_DOM_SetNodeName(root, "a b"));
    CALL(table, XML_MISSING, "a missing argument",
         XML_DOM_ScanTree(XML_DOM_GetFirstChild(text), visit, root));
    CALL(table, XML_MISSING, "an empty one", Schema_ReplaceInnerTypeNS("", "", "urn:example"));
    CALL(table, XML_NO_VALUE, "content that cannot have a simple value",
         Schema_checkValueOfElement(&anyType, "1", sizeof reason, reason));
    CALL(table, 2 * XML_REFUSED, "from the writing functions: the sum of several failures",
         XML_OutTextString("1<2", refuse, root));

    const char plain[] = "<a/>", strange[] = "\xFF";
    XML_IO_InStream *stream = XML_IO_ByMem(plain, sizeof plain - 1);
    XML_IO_InStream *noise = XML_IO_ByMem(strange, sizeof strange - 1);
    CALL(table, 2, "from `XML_IO_SwitchEncoding` alone: memory failure, or no stream",
         XML_IO_SwitchEncoding(NULL, XML_ENCODING_UTF_8));
    CALL(table, 3, "likewise: unsupported encoding",
         XML_IO_SwitchEncoding(stream, XML_ENCODING_UNKNOWN));
    CALL(table, 4, "likewise: bytes that are none of the encoding's characters",
         XML_IO_SwitchEncoding(noise, XML_ENCODING_GB2312));
    XML_IO_DestroyByMem(noise);
    XML_IO_DestroyByMem(stream);
    return table;
}

}  // namespace messages
