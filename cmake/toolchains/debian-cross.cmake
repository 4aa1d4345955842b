# What Debian's cross compilers have in common: a toolchain file sets COMPACTXML_TRIPLE, the processor
# and the emulator's name, and includes this.
#
# COMPACTXML_TARGET_ROOT may name a directory that holds what is there for the target beyond its C
# library: packages to build with, and the files that programs look for when they run.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_C_COMPILER ${COMPACTXML_TRIPLE}-gcc)
set(CMAKE_CXX_COMPILER ${COMPACTXML_TRIPLE}-g++)

# Programs run here, all else is the target's.
set(CMAKE_FIND_ROOT_PATH /usr/${COMPACTXML_TRIPLE})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(CMAKE_CROSSCOMPILING_EMULATOR ${COMPACTXML_EMULATOR} -L /usr/${COMPACTXML_TRIPLE})
if(COMPACTXML_TARGET_ROOT)
  list(PREPEND CMAKE_FIND_ROOT_PATH ${COMPACTXML_TARGET_ROOT})
  set(CMAKE_CROSSCOMPILING_EMULATOR ${COMPACTXML_EMULATOR} -L ${COMPACTXML_TARGET_ROOT})
endif()
