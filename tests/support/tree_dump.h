// tests/support/tree_dump.h - looks at every field of a tree.
#pragma once

#include <string>

#include "compactxml.h"

namespace support {

// Everything a node and the nodes below it hold, with the addresses of records and strings: equal
// before and after a call that must change nothing.
std::string dumpTree(const XML_DOM_Node *node);

// The names, types and values alone, such as "a(b,'text',[cdata])".
std::string outline(const XML_DOM_Node *node);

// "" when all links of the tree agree with one another, otherwise the first disagreement.
std::string brokenLink(const XML_DOM_Node *node);

}  // namespace support
