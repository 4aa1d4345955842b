// dom/builder.h - the state of a build and what the builder is made of.
#pragma once

#include <cstdint>

#include "compactxml.h"
#include "parser/context.h"

namespace cxml {

// What the handler's userData points at during a build.
struct XML_DOM_BuildState {
    XML_DOM_Node *root = nullptr;     // null until the first start tag, and again after an error
    XML_DOM_Node *current = nullptr;  // receives new children; null outside the root element
    // Each conversion overwrites the stream's buffer, and an attribute needs two strings at once.
    XML_IO_OutStream *nameStream = nullptr;
    XML_IO_OutStream *valueStream = nullptr;
    char *errorBuffer = nullptr;
    uint32_t errorSize = 0;
    // The declarations of the current element and those above it, by prefix: a walk up the tree
    // would cost as much as the tree is deep for every prefixed name.
    NamespaceScope scope;
    // Whether the library's own parser makes the calls. It knows the lengths of its strings and
    // keeps track of what is declared, so that the scope above stays empty.
    bool ownParser = false;
};

// Prepares a state and a handler that builds into it. Refuses when a stream cannot be created.
uint32_t XML_DOM_BuildInit(XML_SAX_Handler *handler, XML_DOM_BuildState *state, uint32_t errorSize,
                           char *errorBuffer) noexcept;

// Releases the streams; never the tree.
void XML_DOM_BuildFini(XML_SAX_Handler *handler) noexcept;

// Converts UTF-8 to the tree's encoding. The result, *length bytes, is good until the next
// conversion on the same stream, or as long as bytes. Null for what does not convert.
const char *XML_DOM_BuildConvert(XML_IO_OutStream *stream, const char *bytes,
                                 uint32_t *length) noexcept;

}  // namespace cxml
