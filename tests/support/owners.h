// tests/support/owners.h - smart pointers for what the library hands out.
#pragma once

#include <cstdlib>
#include <memory>

#include "compactxml.h"

namespace support {

struct Release {
    void operator()(XML_DOM_Node *node) const { XML_DOM_DelNode(node); }
    void operator()(XML_IO_OutStream *stream) const { XML_IO_OutStreamDestroy(stream); }
    void operator()(char *text) const { std::free(text); }
};

using NodePtr = std::unique_ptr<XML_DOM_Node, Release>;  // detached nodes and roots only
using StreamPtr = std::unique_ptr<XML_IO_OutStream, Release>;
using TextPtr = std::unique_ptr<char, Release>;

}  // namespace support
