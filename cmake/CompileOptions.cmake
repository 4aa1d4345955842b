# Warnings, sanitizers and coverage, the same for every target of this project.
function(compactxml_compile_options target)
  target_compile_features(${target} PRIVATE c_std_11 cxx_std_20)
  set_target_properties(${target} PROPERTIES C_EXTENSIONS OFF CXX_EXTENSIONS OFF)
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Wshadow -Wpointer-arith -Wcast-qual -Wformat=2 -Wundef
    $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor -Woverloaded-virtual>
    $<$<BOOL:${COMPACTXML_WERROR}>:-Werror>
    -ffunction-sections -fdata-sections)
  if(COMPACTXML_SANITIZE)
    target_compile_options(${target} PRIVATE
      -fsanitize=${COMPACTXML_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer -g)
  endif()
  if(COMPACTXML_COVERAGE)
    target_compile_options(${target} PRIVATE --coverage -O0 -g)
  endif()
endfunction()

if(COMPACTXML_SANITIZE)
  add_link_options(-fsanitize=${COMPACTXML_SANITIZE})
endif()
if(COMPACTXML_COVERAGE)
  add_link_options(--coverage)
endif()
