# Finds an iconv that can write what trees are held in: the C library's, or else one beside it.
include(CheckCSourceRuns)

# Sets a variable, which is kept, to whether what find_package found can convert to GB18030.
function(compactxml_ask_iconv answer)
  set(CMAKE_REQUIRED_LIBRARIES Iconv::Iconv)
  set(CMAKE_REQUIRED_QUIET ON)
  check_c_source_runs("
    #include <iconv.h>
    int main(void) { return iconv_open(\"GB18030\", \"UTF-8\") == (iconv_t)-1; }" ${answer})
endfunction()

find_package(Iconv REQUIRED)
set(iconv_writes_trees "not asked")
if(NOT CMAKE_CROSSCOMPILING OR CMAKE_CROSSCOMPILING_EMULATOR)
  set(answer COMPACTXML_ICONV_GB18030)
  if(Iconv_IS_BUILT_IN)
    compactxml_ask_iconv(${answer})
    if(NOT ${answer})
      # GNU libiconv may stand beside musl.
      set(Iconv_IS_BUILT_IN OFF CACHE BOOL "Whether the C library's iconv is taken" FORCE)
      find_package(Iconv QUIET)
      # The target is the one of the first search.
      set_target_properties(Iconv::Iconv PROPERTIES
        INTERFACE_INCLUDE_DIRECTORIES "${Iconv_INCLUDE_DIRS}"
        INTERFACE_LINK_LIBRARIES "${Iconv_LIBRARIES}")
      if(NOT Iconv_FOUND)
        set(Iconv_IS_BUILT_IN ON CACHE BOOL "Whether the C library's iconv is taken" FORCE)
        find_package(Iconv REQUIRED)
      endif()
    endif()
  endif()
  if(NOT Iconv_IS_BUILT_IN)
    set(answer COMPACTXML_LIBICONV_GB18030)
    compactxml_ask_iconv(${answer})
  endif()
  set(iconv_writes_trees no)
  if(${answer})
    set(iconv_writes_trees yes)
  endif()
endif()

set(COMPACTXML_ICONV_LIBRARIES "")
set(iconv_place "the C library's")
if(NOT Iconv_IS_BUILT_IN)
  set(COMPACTXML_ICONV_LIBRARIES Iconv::Iconv)
  set(iconv_place "${Iconv_LIBRARIES}")
endif()
message(STATUS "iconv: ${iconv_place}; writes GB18030: ${iconv_writes_trees}")
if(iconv_writes_trees STREQUAL no)
  message(WARNING "iconv cannot convert to GB18030 here: no document with characters beyond ASCII could "
                  "be built into a tree. Install the C library's conversion modules, or GNU libiconv: "
                  "-DIconv_IS_BUILT_IN=OFF -DIconv_INCLUDE_DIR=... -DIconv_LIBRARY=...")
endif()
