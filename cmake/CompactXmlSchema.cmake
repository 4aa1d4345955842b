# compactxml_add_schema(TARGET SCHEMA... [PREFIX NAME] [STRICT])
#
# Compiles XML Schema documents with xsd2c and adds what it writes to a target of this directory:
# for configs/switch.xsd the header "switch.h", which the target's sources include, and the records
# behind it. Schemas that one of them includes or imports need not be named; the build runs again
# when any of them changes.
#
#   PREFIX NAME   as xsd2c --prefix
#   STRICT        as xsd2c --strict: what cannot be enforced fails the build
function(compactxml_add_schema target)
  cmake_parse_arguments(PARSE_ARGV 1 argument "STRICT" "PREFIX" "")
  if(NOT argument_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "compactxml_add_schema(${target}): no schema is given")
  endif()
  # When cross-compiling, the compiler of the host is wanted and not the one built for the target.
  # -DCOMPACTXML_XSD2C=... names one in any case.
  if(NOT COMPACTXML_XSD2C AND TARGET compactxml::xsd2c AND NOT CMAKE_CROSSCOMPILING)
    set(xsd2c compactxml::xsd2c)
  else()
    find_program(COMPACTXML_XSD2C xsd2c REQUIRED)
    set(xsd2c "${COMPACTXML_XSD2C}")
  endif()
  set(options)
  if(argument_STRICT)
    list(APPEND options --strict)
  endif()
  if(argument_PREFIX)
    list(APPEND options --prefix "${argument_PREFIX}")
  endif()

  set(directory "${CMAKE_CURRENT_BINARY_DIR}/${target}_schemas")
  file(MAKE_DIRECTORY "${directory}")
  foreach(schema IN LISTS argument_UNPARSED_ARGUMENTS)
    cmake_path(ABSOLUTE_PATH schema BASE_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}" NORMALIZE)
    cmake_path(GET schema STEM LAST_ONLY name)
    string(MAKE_C_IDENTIFIER "${name}" name)
    set(unit "${directory}/${name}")
    add_custom_command(
      OUTPUT "${unit}.c" "${unit}.h"
      COMMAND ${xsd2c} ${options} -o "${directory}" --depfile "${unit}.d" "${schema}"
      DEPENDS "${schema}" ${xsd2c}
      DEPFILE "${unit}.d"
      COMMENT "Compiling schema ${name}"
      VERBATIM)
    target_sources(${target} PRIVATE "${unit}.c" "${unit}.h")
  endforeach()
  target_include_directories(${target} PRIVATE "${directory}")
endfunction()
