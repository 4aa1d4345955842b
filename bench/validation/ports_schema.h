// ports_schema.h - ports.xsd in the records that the validator reads.
#pragma once

#include "compactxml.h"

namespace bench {

const SchemaTopObject &portsSchema();

}  // namespace bench
