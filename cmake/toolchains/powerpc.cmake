# PowerPC, 32 bits, big-endian (Debian: g++-powerpc-linux-gnu, qemu-user).
set(CMAKE_SYSTEM_PROCESSOR ppc)
set(COMPACTXML_TRIPLE powerpc-linux-gnu)
set(COMPACTXML_EMULATOR qemu-ppc)
include(${CMAKE_CURRENT_LIST_DIR}/debian-cross.cmake)
