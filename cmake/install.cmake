# The installed tree, in four components: `runtime` is the module under its versioned names, `development` what hosts are
# built with, `tool` the command-line host, `documents` whose facts the tree holds.

# Libraries of one architecture have a folder of their own, under every prefix, so that one build serves all prefixes.
if(CMAKE_LIBRARY_ARCHITECTURE AND NOT DEFINED CMAKE_INSTALL_LIBDIR)
  set(CMAKE_INSTALL_LIBDIR lib/${CMAKE_LIBRARY_ARCHITECTURE} CACHE PATH "Folder of libraries, below the prefix")
endif()
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

# ---- runtime, and its unversioned link for linkers ----

install(TARGETS veldnls
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development)

# ---- development ----

install(TARGETS veldnls_hostlib ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
install(DIRECTORY ${CMAKE_SOURCE_DIR}/include/veldnls ${VELDNLS_GENERATED_DIR}/veldnls
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development FILES_MATCHING PATTERN *.h)

set(veldnls_config_folder ${CMAKE_INSTALL_LIBDIR}/cmake/veldnls)
configure_package_config_file(cmake/veldnlsConfig.cmake.in ${CMAKE_BINARY_DIR}/veldnlsConfig.cmake
  INSTALL_DESTINATION ${veldnls_config_folder}
  PATH_VARS CMAKE_INSTALL_INCLUDEDIR CMAKE_INSTALL_LIBDIR)
write_basic_package_version_file(${CMAKE_BINARY_DIR}/veldnlsConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/veldnlsConfig.cmake ${CMAKE_BINARY_DIR}/veldnlsConfigVersion.cmake
  DESTINATION ${veldnls_config_folder} COMPONENT development)

# From the folder of the .pc files, so that the tree may be moved.
set(veldnls_pc_folder ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX BASE_DIRECTORY ${CMAKE_INSTALL_PREFIX}/${veldnls_pc_folder}
  OUTPUT_VARIABLE veldnls_pc_prefix)
foreach(name veldnls veldnls-host)
  configure_file(cmake/${name}.pc.in ${CMAKE_BINARY_DIR}/${name}.pc @ONLY)
  install(FILES ${CMAKE_BINARY_DIR}/${name}.pc DESTINATION ${veldnls_pc_folder} COMPONENT development)
endforeach()

# ---- tool ----

# The program finds the module by the way from its own folder, wherever the tree stands.
cmake_path(RELATIVE_PATH CMAKE_INSTALL_FULL_LIBDIR BASE_DIRECTORY ${CMAKE_INSTALL_FULL_BINDIR}
  OUTPUT_VARIABLE veld_module_folder)
target_compile_definitions(veld_parts PRIVATE
  VELD_INSTALL_FOLDER="${veld_module_folder}" VELD_MODULE_NAME="$<TARGET_SONAME_FILE_NAME:veldnls>")
install(TARGETS veld RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tool)
install(FILES apps/veld/veld.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tool)
install(FILES apps/veld/veld.bash-completion
  DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME veld COMPONENT tool)

# ---- documents; each package has its own copy ----

install(FILES COPYRIGHT DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/veldnls RENAME copyright COMPONENT documents)
