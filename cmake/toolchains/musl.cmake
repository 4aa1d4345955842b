# musl on this machine's processor (Debian: musl-tools, g++). Debian has no C++ library for musl, and the
# compiled library needs none: only headers are taken from the one for glibc. Programs in C++ cannot be
# linked.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR ${CMAKE_HOST_SYSTEM_PROCESSOR})
set(CMAKE_C_COMPILER musl-gcc)
set(CMAKE_CXX_COMPILER musl-gcc)

execute_process(COMMAND musl-gcc -dumpversion OUTPUT_VARIABLE version OUTPUT_STRIP_TRAILING_WHITESPACE)
execute_process(COMMAND musl-gcc -dumpmachine OUTPUT_VARIABLE machine OUTPUT_STRIP_TRAILING_WHITESPACE)
set(CMAKE_CXX_FLAGS_INIT
  "-isystem /usr/include/c++/${version} -isystem /usr/include/${machine}/c++/${version} -include ${CMAKE_CURRENT_LIST_DIR}/musl.h")

# The headers and libraries of this machine are glibc's.
string(REPLACE -gnu -musl musl_machine ${machine})
set(CMAKE_FIND_ROOT_PATH /usr/lib/${musl_machine} /usr/include/${musl_machine})
if(COMPACTXML_TARGET_ROOT)
  list(PREPEND CMAKE_FIND_ROOT_PATH ${COMPACTXML_TARGET_ROOT})
endif()
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# What is built runs here, with musl's loader.
set(CMAKE_CROSSCOMPILING_EMULATOR /usr/bin/env)
