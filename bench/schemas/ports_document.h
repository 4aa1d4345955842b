// ports_document.h - a list of ports, valid by ports.xsd or with a mistake in its last port.
#pragma once

#include <cstddef>
#include <string>

namespace bench {

std::string makePorts(std::size_t size, bool valid);

}  // namespace bench
