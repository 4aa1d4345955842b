// parser/context.h - the state of one parse.
#pragma once

#include <cstddef>
#include <cstdint>

#include "compactxml.h"
#include "io/memory.h"
#include "parser/namespace_scope.h"

// An attribute of the start tag being read. Its strings lie in the parser's buffers, which may move
// until the tag is complete: until then the offsets count, from then on the pointers.
struct XML_Parser_Attr {
    XML_Parser_Attr *next;  // the one before it in the document
    const char *prefix;
    const char *namespaceName;
    const char *localName;
    const char *value;
    XML_Parser_Ns *binding;
    std::size_t nameAt;
    std::size_t valueAt;
    std::size_t valueLength;
    std::uint32_t prefixLength;
    std::uint32_t localLength;
};

namespace cxml {

// A qualified name in a buffer, as two strings: the prefix, if there is one, then the local name.
struct QName {
    std::size_t at;
    std::uint32_t prefixLength;  // 0 without a prefix
    std::uint32_t localLength;

    const char *prefix(const char *buffer) const {
        return prefixLength != 0 ? buffer + at : nullptr;
    }
    const char *local(const char *buffer) const {
        return buffer + at + (prefixLength != 0 ? prefixLength + std::size_t{1} : 0);
    }
};

// An element whose end tag has not been read.
struct OpenElement {
    QName name;              // in openNames
    std::size_t bindings;    // in scope before it
    XML_Parser_Ns *binding;  // of its own prefix, or the default one; may be null
};

// Everything a parse needs beyond what callbacks see. Buffers are emptied, not freed, between uses,
// so a parse in full swing allocates nothing.
struct Parser : XML_Parser_Ctx {
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
