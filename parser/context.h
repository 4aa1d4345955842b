// parser/context.h - the state of one parse.
#pragma once

#include <cstddef>
#include <cstdint>

#include "compactxml.h"
#include "io/memory.h"
#include "parser/namespace_scope.h"
#include "parser/position.h"

namespace cxml {

// A qualified name in a buffer, as two strings: the prefix, if there is one, then the local name.
struct QName {
    std::size_t at;
    std::uint32_t localOffset;  // 0 without a prefix
    std::uint32_t localLength;

    const char *prefix(const char *buffer) const {
        return localOffset != 0 ? buffer + at : nullptr;
    }
    std::size_t prefixLength() const { return localOffset - 1; }  // if there is one
    const char *local(const char *buffer) const { return buffer + at + localOffset; }
};

}  // namespace cxml

// An attribute of the start tag being read. Its strings lie in the parser's buffers, which may move
// until the tag is complete.
struct XML_Parser_Attr {
    XML_Parser_Attr *next;   // the one before it in the document
    XML_Parser_Ns *binding;  // of its prefix; null without one
    cxml::QName name;        // in tagNames
    std::size_t valueAt;     // in scratch
    std::size_t valueLength;
};

namespace cxml {

// An element whose end tag has not been read.
struct OpenElement {
    QName name;              // in openNames
    bool isPlain;            // the name is ASCII
    std::size_t bindings;    // in scope before it
    XML_Parser_Ns *binding;  // of its own prefix, or the default one; may be null
};

// Everything a parse needs beyond what callbacks see. Buffers are emptied, not freed, between uses,
// so a parse in full swing allocates nothing.
struct Parser : XML_Parser_Ctx {
    Position position;  // the context's line and column are behind it between callbacks
    // What the input buffer holds of characters that need no refill; see noteBuffer().
    const Byte *runEnd;
    const Byte *refillFrom;

    ByteBuffer openNames;  // the names of the open elements, end to end
    GrowingArray<OpenElement> open;
    ByteBuffer scratch;   // a text, a comment, an instruction; a tag's values
    ByteBuffer tagNames;  // a tag's attribute names
    GrowingArray<XML_Parser_Attr> tagAttributes;
    GrowingArray<const char *> attributeArgs;
    GrowingArray<const char *> declarationArgs;
    GrowingArray<std::uint32_t> attributeTable;  // for finding duplicates among many
    NamespaceScope scope;
    XML_Parser_Ns xmlBinding;  // what "xml" is bound to where nobody declares it
};

}  // namespace cxml
