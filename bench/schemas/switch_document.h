// switch_document.h - the configuration of a switch, valid by switch.xsd or with a mistake in its
// last route.
#pragma once

#include <cstddef>
#include <string>

namespace bench {

std::string makeSwitch(std::size_t size, bool valid);

}  // namespace bench
