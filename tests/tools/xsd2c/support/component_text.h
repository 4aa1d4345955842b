// tests/tools/xsd2c/support/component_text.h - components as text, to compare with.
#pragma once

#include <string>

#include "xsd2c/xsd/components.h"

// Each top-level component on lines of its own, with all that stands within it.
std::string textOf(const xsd2c::Components &components);
