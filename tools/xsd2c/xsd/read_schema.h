// tools/xsd2c/xsd/read_schema.h - the front end: from schema documents to components.
#pragma once

#include <string>

#include "xsd2c/xsd/components.h"

namespace xsd2c {

// Reads a schema document and all that it includes and imports. What is wrong goes to diagnostics;
// components are complete only if nothing did.
//   path  as the user typed it
void readSchema(const std::string &path, Components &components, Diagnostics &diagnostics);

}  // namespace xsd2c
