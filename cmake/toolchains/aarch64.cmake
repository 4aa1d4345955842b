# 64-bit ARM, little-endian (Debian: g++-aarch64-linux-gnu, qemu-user).
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(COMPACTXML_TRIPLE aarch64-linux-gnu)
set(COMPACTXML_EMULATOR qemu-aarch64)
include(${CMAKE_CURRENT_LIST_DIR}/debian-cross.cmake)
