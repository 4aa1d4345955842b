#include "schema.h"

#include "ports.h"
#include "switch.h"

namespace bench {

const Schema kPortsSchema = {"ports", BENCH_PORTS_XSD, SchemaReg_ports, SchemaDereg_ports};
const Schema kSwitchSchema = {"switch", BENCH_SWITCH_XSD, SchemaReg_switch, SchemaDereg_switch};

}  // namespace bench
