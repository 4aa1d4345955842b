# Warnings, sanitizers and coverage, the same for every target of this project.
function(compactxml_compile_options target)
  target_compile_features(${target} PRIVATE c_std_11 cxx_std_20)
  set_target_properties(${target} PROPERTIES C_EXTENSIONS OFF CXX_EXTENSIONS OFF)
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Wshadow -Wpointer-arith -Wcast-qual -Wformat=2 -Wundef
    $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor -Woverloaded-virtual>
    $<$<BOOL:${COMPACTXML_WERROR}>:-Werror>
    -ffunction-sections -fdata-sections)
  # That unsigned numbers wrap and that bits are cut off is defined, and no mistake in a test or a tool;
  # the library alone is held to saying so where it means it.
  if(COMPACTXML_SANITIZE AND
      (NOT COMPACTXML_SANITIZE STREQUAL integer OR target STREQUAL compactxml_objects))
    target_compile_options(${target} PRIVATE
      -fsanitize=${COMPACTXML_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer -g1)
    if(COMPACTXML_SANITIZE STREQUAL integer)
      # Shifts are there to shift bits out.
      target_compile_options(${target} PRIVATE -fno-sanitize=unsigned-shift-base)
    endif()
  endif()
endfunction()

# For code with much std::string: gcc 12 sees copies that overlap, and writes beyond arrays, where there
# are none.
function(compactxml_quiet_gcc_12 target)
  target_compile_options(${target} PRIVATE
    "$<$<AND:$<CXX_COMPILER_ID:GNU>,$<VERSION_LESS:$<CXX_COMPILER_VERSION>,13>>:-Wno-restrict;-Wno-array-bounds;-Wno-stringop-overflow;-Wno-stringop-overread>")
endfunction()

if(COMPACTXML_SANITIZE)
  add_link_options(-fsanitize=${COMPACTXML_SANITIZE})
endif()
if(COMPACTXML_COVERAGE)
  add_link_options(--coverage)
endif()

# A program finds the library wherever the two are installed or moved together.
function(compactxml_find_library_beside program)
  if(NOT IS_ABSOLUTE "${CMAKE_INSTALL_BINDIR}" AND NOT IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}")
    file(RELATIVE_PATH library_directory "/${CMAKE_INSTALL_BINDIR}" "/${CMAKE_INSTALL_LIBDIR}")
    set_target_properties(${program} PROPERTIES INSTALL_RPATH "$ORIGIN/${library_directory}")
  endif()
endfunction()
