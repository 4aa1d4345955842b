# 32-bit ARM with hardware floating point, little-endian (Debian: g++-arm-linux-gnueabihf, qemu-user).
set(CMAKE_SYSTEM_PROCESSOR armv7l)
set(COMPACTXML_TRIPLE arm-linux-gnueabihf)
set(COMPACTXML_EMULATOR qemu-arm)
include(${CMAKE_CURRENT_LIST_DIR}/debian-cross.cmake)
# Says nothing of what gcc 7 changed in calls: all is built by the same compiler.
set(CMAKE_CXX_FLAGS_INIT -Wno-psabi)
