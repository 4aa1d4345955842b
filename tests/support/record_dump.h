// tests/support/record_dump.h - looks at every field of compiled schemas.
#pragma once

#include <string>

#include "compactxml.h"

namespace support {

// Everything that is registered with a root, but for the built-in schema's own objects, and all
// that it refers to: a line for each record. Records have numbers in the order in which they are
// come upon and no addresses, so that two roots whose schemas say the same give the same text.
std::string dumpRecords(const SchemaRoot &root);

}  // namespace support
