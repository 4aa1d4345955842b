// tools/cxml/path.h - paths as people type and read them.
//
// A path is what XML_DOM_SelectSingleNode takes, and also whatever XML_DOM_GetXPath prints: names
// divided by slashes, each with a position in brackets if there are several ("/config/port[3]/mtu").
// It begins at the root: with a slash the first name is the root's, without one a child's. In UTF-8.
#pragma once

#include <string>
#include <string_view>

#include "compactxml.h"

namespace tool {

// The element that a path selects, or null. A path without a position is answered by the library.
// Fails with kTrouble for what is no path: nothing, "a[", "a[0]", text that is not UTF-8.
XML_DOM_Node *findNode(XML_DOM_Node *root, std::string_view path);

// The same, but fails with kRefused and "FILE: no element PATH".
XML_DOM_Node *requireNode(XML_DOM_Node *root, std::string_view path, const std::string &fileName);

// Where a node stands, in UTF-8 and printable, whatever its length; for a text its parent's path.
std::string pathOf(const XML_DOM_Node *node);

// The name of an element with its prefix, in UTF-8 and printable.
std::string qualifiedName(const XML_DOM_Node *element);

}  // namespace tool
