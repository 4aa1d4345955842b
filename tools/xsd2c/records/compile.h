// tools/xsd2c/records/compile.h - from components to the validator's records.
#pragma once

#include "xsd2c/records/records.h"
#include "xsd2c/xsd/components.h"
#include "xsd2c/xsd/diagnostics.h"

namespace xsd2c {

// Compiles components in which the front end found nothing wrong. What the records cannot hold goes
// to diagnostics; records can be used only if nothing there is an error.
void compileSchema(const Components &components, Records &records, Diagnostics &diagnostics);

}  // namespace xsd2c
