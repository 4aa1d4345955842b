# IBM Z, 64 bits, big-endian (Debian: g++-s390x-linux-gnu, qemu-user).
set(CMAKE_SYSTEM_PROCESSOR s390x)
set(COMPACTXML_TRIPLE s390x-linux-gnu)
set(COMPACTXML_EMULATOR qemu-s390x)
include(${CMAKE_CURRENT_LIST_DIR}/debian-cross.cmake)
