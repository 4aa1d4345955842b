# What is installed, in three components, which are packages of their own in cmake/Packages.cmake:
#
#   runtime       the shared library
#   development   headers, static library, pkg-config file, CMake package
#   tools         cxml and xsd2c with manual pages and completion; see tools/
#
# Everything may be moved together afterwards: no file names the place of another but from its own.
include(CMakePackageConfigHelpers)
set(package_directory ${CMAKE_INSTALL_LIBDIR}/cmake/compactxml)

set_target_properties(compactxml_static PROPERTIES EXPORT_NAME static)
install(TARGETS compactxml compactxml_static EXPORT compactxmlTargets
  LIBRARY COMPONENT runtime NAMELINK_COMPONENT development
  ARCHIVE COMPONENT development)
install(FILES include/compactxml.h include/compactxml.hpp TYPE INCLUDE COMPONENT development)

configure_package_config_file(cmake/compactxmlConfig.cmake.in compactxmlConfig.cmake
  INSTALL_DESTINATION ${package_directory})
write_basic_package_version_file(compactxmlConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(EXPORT compactxmlTargets NAMESPACE compactxml:: DESTINATION ${package_directory}
  COMPONENT development)
# Of its own, since who only links the library needs no tools.
if(PROJECT_IS_TOP_LEVEL AND NOT COMPACTXML_TOOLS STREQUAL OFF)
  install(EXPORT compactxmlToolsTargets NAMESPACE compactxml:: DESTINATION ${package_directory}
    COMPONENT tools)
endif()
install(FILES cmake/CompactXmlSchema.cmake
  ${CMAKE_CURRENT_BINARY_DIR}/compactxmlConfig.cmake
  ${CMAKE_CURRENT_BINARY_DIR}/compactxmlConfigVersion.cmake
  DESTINATION ${package_directory} COMPONENT development)

set(pkgconfig_directory ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
set(pkgconfig_prefix "${CMAKE_INSTALL_PREFIX}")
if(NOT IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}" AND NOT IS_ABSOLUTE "${CMAKE_INSTALL_INCLUDEDIR}")
  file(RELATIVE_PATH up "/${pkgconfig_directory}" "/")
  string(REGEX REPLACE "/$" "" up "${up}")
  set(pkgconfig_prefix "\${pcfiledir}/${up}")
endif()
cmake_path(ABSOLUTE_PATH CMAKE_INSTALL_LIBDIR BASE_DIRECTORY "\${prefix}"
  OUTPUT_VARIABLE pkgconfig_libdir)
cmake_path(ABSOLUTE_PATH CMAKE_INSTALL_INCLUDEDIR BASE_DIRECTORY "\${prefix}"
  OUTPUT_VARIABLE pkgconfig_includedir)
set(pkgconfig_private_libraries "")
if(COMPACTXML_ICONV_LIBRARIES)
  list(JOIN Iconv_LIBRARIES " " pkgconfig_private_libraries)
endif()
configure_file(cmake/compactxml.pc.in compactxml.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/compactxml.pc DESTINATION ${pkgconfig_directory}
  COMPONENT development)
