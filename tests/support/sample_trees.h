// tests/support/sample_trees.h - trees made by hand for the tests of what reads trees.
#pragma once

#include <cstdint>

#include "tests/support/owners.h"

namespace support {

// <r xmlns:p="urn:p" xmlns="urn:d" a="1" p:b="<&>"> with every kind of child, mixed with text; the
// root of a document. ASCII and Chinese text in GB18030.
NodePtr richDocument(std::uint32_t encoding = XML_ENCODING_UTF_8);

// A random tree of a few dozen nodes; the root of a document for even seeds. Its text is GB18030
// that every encoding can hold when plain, otherwise with rarer and broken characters too.
NodePtr randomTree(std::uint32_t seed, bool plain);

}  // namespace support
