# Debian packages, one for each component of the installed tree: `cpack --preset release`.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME veldnls)
set(CPACK_PACKAGE_CONTACT "The veldnls developers")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_COMPONENTS_ALL runtime development tool)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(veldnls_runtime_package libveldnls${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${veldnls_runtime_package})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION "National-language support for data servers
One loadable module that names, compares, converts and validates character
encodings: code pages of Windows, ISO 8859, PC, Macintosh and EBCDIC, multi-byte
encodings of Chinese, Japanese and Korean, and the Unicode forms. Its locales
format and parse numbers, money, dates and times.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libveldnls-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${veldnls_runtime_package} (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "National-language support for data servers (development files)
Headers for C and C++, the host layer as a static library, and what CMake and
pkg-config need to find them.")

# The program loads the module by itself, so that no dependency follows from what it links.
set(CPACK_DEBIAN_TOOL_PACKAGE_NAME veldnls-tool)
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION text)
set(CPACK_DEBIAN_TOOL_PACKAGE_DEPENDS "${veldnls_runtime_package} (>= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_TOOL_DESCRIPTION "Text between encodings and values in locales, by veldnls
The program veld converts files between any two encodings of the library and
tells what is lost, validates files, and shows on which characters two encodings
differ. It formats and parses numbers, money, dates and times in a locale, and
shows the tables of encodings and locales.")

# Where Debian looks for it, and only in packages.
foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  string(TOUPPER ${component} veldnls_component)
  install(FILES COPYRIGHT DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${CPACK_DEBIAN_${veldnls_component}_PACKAGE_NAME}
    RENAME copyright COMPONENT ${component} EXCLUDE_FROM_ALL)
endforeach()

include(CPack)
