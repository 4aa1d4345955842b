# The C library's functions that tests make fail: a program's calls of them go to
# tests/support/faults.cpp, which it links.
function(compactxml_wrap_calls program)
  foreach(name malloc calloc realloc free open open64 read write fsync close
      iconv_open iconv iconv_close regcomp regfree getrandom)
    target_link_options(${program} PRIVATE "-Wl,--wrap=${name}")
  endforeach()
endfunction()
