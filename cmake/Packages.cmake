# Debian packages, which scripts/package makes with cpack: libcompactxml1, libcompactxml-dev and
# compactxml-tools.
set(CPACK_GENERATOR DEB)
# Whoever gives packages away is who answers for them: -DCPACK_PACKAGE_CONTACT="Name <address>".
set(CPACK_PACKAGE_CONTACT "CompactXML developers <developers@compactxml.example>"
  CACHE STRING "Maintainer of the packages")
# This default of cpack has it take the first line of each description below as the summary.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_NAME} built using CMake")
set(CPACK_PACKAGE_VENDOR "CompactXML")
set(CPACK_COMPONENTS_ALL runtime development tools)
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# In the order of the build the library is no package yet.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR})
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")

set(runtime_package libcompactxml${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${runtime_package})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/cmake/debian/triggers)
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "compact XML library for network equipment
CompactXML reads, queries, changes, writes and validates XML configuration
documents in the management programs of embedded Linux network equipment.
It knows thirteen encodings, Chinese ones among them, takes hostile input
and needs nothing but the C library.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libcompactxml-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${runtime_package} (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_RECOMMENDS "compactxml-tools (= ${PROJECT_VERSION})")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "compact XML library for network equipment - development files
CompactXML reads, queries, changes, writes and validates XML configuration
documents in the management programs of embedded Linux network equipment.

Here are its headers for C and C++, the static library, and what pkg-config
and CMake need to find it.")

set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME compactxml-tools)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION text)
set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS "${runtime_package} (= ${PROJECT_VERSION})")
set(CPACK_COMPONENT_TOOLS_DESCRIPTION "check, edit and validate XML documents, compile XML Schema
cxml checks, validates, prints, queries, edits and compares XML documents.
xsd2c compiles XML Schema documents to constant records of C, which programs
link and validate documents with.")

# What Debian asks of every package, put in where cpack has collected the files.
configure_file(cmake/debian/prepare.cmake.in debian/prepare.cmake @ONLY)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_BINARY_DIR}/debian/prepare.cmake)
include(CPack)
