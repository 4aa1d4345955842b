#include <compactxml.hpp>

#include "ports.h"

int main() {
    const auto ports = compactxml::parse("<ports><port>1</port></ports>");
    compactxml::Schemas schemas;
    return ports && schemas.add(SchemaReg_ports, SchemaDereg_ports) && schemas.validate(*ports) &&
                   Schema_NET_portNumber()->name == std::string_view("portNumber")
               ? 0
               : 1;
}
