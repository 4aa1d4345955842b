# Finds iconv, in the C library or beside it, and asks whether it can write what trees are held in.
find_package(Iconv REQUIRED)
set(COMPACTXML_ICONV_LIBRARIES "")
if(NOT Iconv_IS_BUILT_IN)
  set(COMPACTXML_ICONV_LIBRARIES Iconv::Iconv)
endif()

if(NOT CMAKE_CROSSCOMPILING)
  include(CheckCXXSourceRuns)
  set(CMAKE_REQUIRED_LIBRARIES ${COMPACTXML_ICONV_LIBRARIES})
  check_cxx_source_runs("
    #include <iconv.h>
    int main() { return iconv_open(\"GB18030\", \"UTF-8\") == iconv_t(-1); }" COMPACTXML_ICONV_GB18030)
  unset(CMAKE_REQUIRED_LIBRARIES)
  if(NOT COMPACTXML_ICONV_GB18030)
    message(WARNING "iconv cannot convert to GB18030 here: no document with characters "
                    "beyond ASCII could be built into a tree. "
                    "Install the C library's conversion modules, or GNU libiconv.")
  endif()
endif()
