// fuzz/support/converters.h - keeps the C library's conversion modules loaded.
#pragma once

namespace fuzz {

// Opens a converter from and to every encoding and keeps it: otherwise glibc loads a module anew
// with nearly every converter that is opened, which takes longer than what is tested.
void holdConverters();

}  // namespace fuzz
